#pragma once
// The editor from start to end: the program's start and stop order around the message loop.

// Starts the application on the display, runs the editor (on the show at showPath when one is
// given) and answers the program's exit code; 1, with a message, when there is no display.
// argv[0] must outlive the call.
int RunEditor(char* programPath, const char* showPath);

// The editor inside an application that already exists: environment, movie services, the
// document, the main window and its children, the message loop, then all of it in reverse.
// Answers the message loop's exit code.
int RunEditorSession(void* instance, const char* showPath);
