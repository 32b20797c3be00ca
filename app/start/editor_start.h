#pragma once
// The editor as a program: the application on the display, the program's start-up sequence, the
// editor's windows and the message loop, then everything in reverse.

// Starts the application on the display, runs the editor (on the show at showPath when one is
// given) and answers the program's exit code; 1, with a message, when there is no display.
// argv[0] must outlive the call.
int RunEditor(char* programPath, const char* showPath);

// The editor inside an application that already exists: StartProgram for the editor, the
// windows and their message loop (RunEditorWindows), StopProgram. Answers the loop's exit code.
int RunEditorSession(void* instance, const char* showPath);
