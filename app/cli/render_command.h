#pragma once
// Rendering from the command line: show files in, movies or one picture out, with progress on
// stderr and a stop signal ending the movie cleanly with the frames made so far.

#include <cstdio>

#include "app/cli/command_line.h"

// Exit codes of the command line (listed by --help and the README).
constexpr int kExitMade = 0;    // every file asked for was completely written
constexpr int kExitFailed = 1;  // a file could not be read or written
constexpr int kExitUsage = 2;   // an option is wrong or does not fit the show
// A stop by a signal exits 128 + the signal's number (stop_signals.h).

// The built-in defaults: the result depends only on the show and the options given.
constexpr int kDefaultWidth = 1920;
constexpr int kDefaultHeight = 1080;
constexpr float kDefaultFramesPerSecond = 29.97f;
constexpr int kDefaultQuality = 100;

// Runs a kRender or kStill command; messages go to `err`. Answers the exit code.
int RunRenderCommand(const CommandLine& line, std::FILE* err);
