#pragma once
// Frame numbers as timecode text, at the show's frame rate gFrameRate (hundredths of a frame per
// second). Non-drop-frame: HH:MM:SS:FF.

constexpr int kTimecodeSize = 12;  // the longest text, HH:MM:SS:FF, and its terminator

// Writes frame as HH:MM:SS:FF (11 characters), or MM:SS:FF (8) with shortForm. A negative frame
// is written by its magnitude with "." instead of ":" before the frames. Hours wrap at 12.
// out holds kTimecodeSize bytes.
void FrameToString(char* out, long frame, bool shortForm);
// Reads timecode typed by the user into *frame. The separators are free: from the end, each run
// of one or two digits is the next field (frames, seconds, minutes, hours). A text that begins
// with "+" or "-" moves the value *frame held on entry by that much instead. A text without
// digits leaves *frame as it was.
void StringToFrame(long* frame, const char* text);
