#pragma once
// The live-window list: the windows that receive messages, in the order they were created.
// A window is entered when it is created, if there is room, and leaves when it is destroyed; a
// window created while the list was full is never entered and never gets a message.

class CPWnd;

constexpr int kMaxWindows = 256;

struct WindowList {
    int count;
    CPWnd* windows[kMaxWindows];
};

extern WindowList gWindowList;

// Appends the window; false (and nothing changes) when the list is full or already holds it.
bool AddToWindowList(CPWnd* window);
// Takes the window out, keeping the order of the others.
void RemoveFromWindowList(CPWnd* window);
bool IsWindowListed(const CPWnd* window);
