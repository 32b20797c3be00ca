#pragma once
// What a press on the time line starts, and what each drag does to the show when the button
// comes up. Plain functions over the document; every change records its undo entry first.
// Frames are absolute show frames; x values are content pixels (window x + scroll).

class CDoc;

enum class TimelineDrag {
    kNone,        // nothing under the press that can move (key 0 of the first picture)
    kScrub,       // empty row: the press scrubs the current frame
    kKey,         // a key other than its picture's first
    kPicture,     // a picture's start (its key 0), picture 1 and up
    kTransition,  // a picture's transition handle
};

struct TimelinePress {
    TimelineDrag drag = TimelineDrag::kNone;
    int pic = -1;  // the picture dragged (key, start or transition)
    int key = -1;  // the key dragged
};

// What a button-down at content point (x, y) starts.
TimelinePress ClassifyPress(const CDoc& doc, int scale, long x, long y);

// A key drag from frame f0 to f1 ends. With shift every key from f0 on moves by f1 - f0
// (ShiftKeys). When f0 and f1 lie in the same picture the key is re-timed to f1 and the
// picture's keys sorted; dropped within the drop tolerance of its picture's start, it is
// deleted instead. Nothing when f0 = f1.
void DropKey(CDoc& doc, int scale, int pic, int key, long f0, long f1, bool shift);

// The transition of picture `pic` dragged to content x: its length in frames, never below 0 and,
// unless it is the last picture, ending one frame before the next picture's start.
long TransitionLengthAt(const CDoc& doc, int scale, int pic, long x);
// Stores that length as the picture's TransLen (undo entry first) and marks the show modified.
void DropTransition(CDoc& doc, int scale, int pic, long x);

// A picture's start dragged from frame f0 to f1: moved, or swapped with the picture dropped on
// (ChangePicTiming). Nothing when f0 = f1.
void DropPictureStart(CDoc& doc, int pic, long f0, long f1);
