#pragma once
// One editor per user. The first editor listens at a local address; a later launch with a show
// hands the show's path to it and ends, so a show opened from the desktop ("open with", a double
// click) joins the editor already running. A handed-over path reaches the editor as the desktop's
// own open-file request, and so the same open-document handler (shell.h).
// Main thread only; needs the program's application (application.h).

#include <string>

// Where the user's editor listens: a socket in $XDG_RUNTIME_DIR (private to the user) when it is
// set, else in the temporary folder under a name carrying the user's id.
std::string EditorInstanceAddress();

// Hands `path` (the file system's bytes, at most kLongestHandedPath of them; absolute, since the
// editor runs in a folder of its own) to the editor listening at `address`. True once the whole
// path is with that editor's connection; false when none listens there (no socket, or one left by
// an editor that ended) or it does not take the connection within `waitMilliseconds`.
bool HandToRunningEditor(const std::string& address, const std::string& path,
                         int waitMilliseconds = 3000);

// Listens at `address` until StopEditorListener: each path handed over is posted to the
// application as an open-file request. A socket left behind by an editor that ended is replaced.
// False when another editor listens there already, or the socket cannot be made.
bool StartEditorListener(const std::string& address);
// Stops listening and removes the socket; nothing when not listening.
void StopEditorListener();

// The longest path one hand-over carries; a longer announcement ends the connection unread.
constexpr int kLongestHandedPath = 4096;
