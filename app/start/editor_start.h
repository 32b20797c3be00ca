#pragma once
// The editor as a program: the application on the display, the program's start-up sequence, the
// editor's windows and the message loop, then everything in reverse.

#include <string>

// Starts the application on the display, runs the editor (on the show at showPath when one is
// given) and answers the program's exit code; 1, with a message, when there is no display.
// argv[0] must outlive the call.
int RunEditor(char* programPath, const char* showPath);

// The editor as the user's one editor (single_instance.h): with a show, first offers its absolute
// path to the editor listening at `address` and answers 0 at once when that editor took it.
// Otherwise runs RunEditorSession, listening at `address` meanwhile, so that later launches hand
// their shows to this editor. RunEditor runs it at EditorInstanceAddress().
int RunEditorOrHandOver(void* instance, const char* showPath, const std::string& address);

// The editor inside an application that already exists: StartProgram for the editor, the
// windows and their message loop (RunEditorWindows), StopProgram. Answers the loop's exit code.
int RunEditorSession(void* instance, const char* showPath);
