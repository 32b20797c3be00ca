#pragma once
// Stopping a render from outside: SIGINT (Ctrl+C), SIGTERM (what timeout, schedulers and render
// farm managers send) and SIGHUP (the terminal went away) ask the running render to stop after
// its current frame; the movie is then closed with the frames made so far. A second signal of
// the same kind ends the program at once.

// Starts listening for the three signals.
void WatchForStopSignals();
// The signal that asked for a stop; 0 while none has.
int StopSignal();
// The exit code for a stop by `signal`: 128 + its number (SIGHUP 129, SIGINT 130, SIGTERM 143).
int ExitCodeOfStop(int signal);
// For tests: as if `signal` had arrived (0: none yet).
void SetStopSignal(int signal);
// For tests: as if SIGINT arrived once `frames` frames are in the movie (below 0: never).
void StopAfterFrames(long frames);
// Counts a frame written, for StopAfterFrames.
void NoteFrameWritten(long framesSoFar);
