#pragma once
// Globals of the show read by every window.

// Frame rate in hundredths of a frame per second (2997 is 29.97). Whole frames per second are
// (gFrameRate + 50) / 100 everywhere.
extern long gFrameRate;
// The current frame on the show's time line.
extern long gCurFrame;

// Whole frames per second: 30 at 2997, 25 at 2500, 24 at 2397 and 2400.
inline long FramesPerSecond() { return (gFrameRate + 50) / 100; }
