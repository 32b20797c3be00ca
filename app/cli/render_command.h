#pragma once
// Rendering from the command line: a show file in, a movie or one picture out, with progress on
// stderr and Ctrl+C ending the movie cleanly with the frames made so far.

#include <cstdio>

#include "app/cli/command_line.h"

// Exit codes of the command line.
constexpr int kExitMade = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;
constexpr int kExitStopped = 130;  // Ctrl+C: what was made is kept

// Runs a kRender or kStill command; messages go to `err`. Answers the exit code.
int RunRenderCommand(const CommandLine& line, std::FILE* err);

// Ctrl+C asks the running render to stop after its current frame (a second one ends the program).
void WatchForInterrupt();
bool InterruptRequested();
// For tests: as if Ctrl+C had been pressed (true) or not yet (false).
void SetInterruptRequested(bool requested);
// For tests: as if Ctrl+C were pressed once `frames` frames are in the movie.
void InterruptAfterFrames(long frames);
