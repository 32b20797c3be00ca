#pragma once
// Calls between the files of the shell and the windows; not for the program's other layers.

class CPWnd;

// ---- Windows (cpwnd.cpp) ----------------------------------------------------------------------
// True from a window's construction to its destruction.
bool IsWindowAlive(const CPWnd* window);
// The content has its size: the backing image follows it (drawn afresh), the bars realign.
void ContentSized(CPWnd* window);

// ---- Shell (shell.cpp, event_filter.cpp) --------------------------------------------------
// Installs the application-wide event filter that turns input into messages (once).
void InstallShellFilter();
// True while a modal loop is reading input (GetAMessage, PeekAMessage).
bool IsReadingInput();
// The user changed a window's frame: 1001 then the paint message; 1002.
void WindowResizedByUser(CPWnd* window);
void WindowMovedByUser(CPWnd* window);
// A desktop window became active: the paint message unless it is the main window, then the
// floating window to the front.
void WindowActivated(CPWnd* window);
// Forgets everything the shell holds about a window that goes: queued input, a drag under way.
void ForgetWindowInput(CPWnd* window);
// Ends a title-bar drag or size-box drag of the window (frame_tracking.cpp), and forgets it as
// the window holding the button (event_filter.cpp).
void ForgetTracking(CPWnd* window);
void ForgetPress(CPWnd* window);
// The window that took the button-down in its content while the button is still held, or null.
CPWnd* WindowHoldingButton();
// True while the shell is handing a system event to a window's code: a window or field deleted
// then is let go by Qt after the event instead of at once.
bool IsDispatchingInput();
// Marks such a stretch.
class DispatchScope {
public:
    DispatchScope();
    ~DispatchScope();
    DispatchScope(const DispatchScope&) = delete;
    DispatchScope& operator=(const DispatchScope&) = delete;
};
// Ends the running message loop when gMacDone has been set.
void CheckLoopEnd();
