#pragma once
// The editor's windows from start to end, inside a program already started (environment, movie
// services and the document in pDoc: see app/start/program_start.h).

// Attaches the editor to the document, makes the main window with its stage, timeline and
// viewer, opens the show at showPath when one is given, runs the message loop, then takes the
// windows down again in reverse. Answers the message loop's exit code.
int RunEditorWindows(const char* showPath);
