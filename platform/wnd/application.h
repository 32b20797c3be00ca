#pragma once
// The program's connection to the desktop, made once at start, and pictures of windows as the
// screen shows them (for looking at the program's drawing without a person at the screen).
// Main thread only.

class CPWnd;

// Makes the application object that windows, fonts and dialogs need, on the platform Qt picks
// (a display; "offscreen" when QT_QPA_PLATFORM says so). False, with nothing made, when there is
// no display to reach or an application already exists. `argc` and `argv` must outlive it.
bool StartApplication(int& argc, char** argv);
// Ends the application made by StartApplication; windows must be gone before.
void StopApplication();

// Hands the system's pending events (showing and painting windows) to the program for about
// `milliseconds`.
void ProcessPendingEvents(int milliseconds);

// Writes the window as the screen shows it, frame and content, as a PNG file at `path` (UTF-8).
// Where the platform cannot read the screen back, the window is drawn into the picture instead.
// False when the window is not created or the file cannot be written.
bool SaveWindowPicture(CPWnd* window, const char* path);
