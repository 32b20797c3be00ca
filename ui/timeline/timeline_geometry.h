#pragma once
// Where things stand on the time line, as plain functions of the scale S (frames per 60 pixels).
//
// Coordinates:
//   content x   time line pixels from the content's left edge: window x + horizontal scroll
//   frames      absolute frames of the show (a picture's key frames are relative to its start)
// Every x these functions take is a content x: callers add the scroll offset first.

class CDoc;

constexpr int kTimelineAxisStart = 4;
constexpr int kLargestTimelineExtent = 32700;
// Rows along y: the transition row above the key row.
constexpr int kTransitionRowBottom = 13;
constexpr int kKeyRowTop = 14;
constexpr int kKeyRowBottom = 30;

// The scale for a show of `length` frames at `fps` whole frames per second: 5 below three
// seconds, 10 below eight, else fps (never below 1).
int TimelineScale(long length, long fps);
// Scrollable width: length x 60 / S + 4, at most 32700.
int TimelineExtent(long length, int scale);

// Frame x 60 / S + 4, and back (never below frame 0).
long TimelineToPix(long frame, int scale);
long TimelineFromPix(long x, int scale);

// A click this many frames from a key (strictly less) picks it: 4, or S / 2 below S = 8.
int KeyPickTolerance(int scale);
// A key dropped closer than this to its picture's start is deleted: 5, or S / 2 up to S = 9.
int KeyDropTolerance(int scale);

// What a content point on the key row hits.
struct TimelineKeyHit {
    int pic = -1;  // the picture under the point (FindCurPic of its frame)
    int key = -1;  // the first key of it within the pick tolerance, stored order; -1 none
};
// Nothing without pictures.
TimelineKeyHit FindTimelineKey(const CDoc& doc, int scale, long x, long y);

// The picture (1 and up) whose transition handle is within 11 pixels of a content point on the
// transition row, or -1.
int FindTimelineTransition(const CDoc& doc, int scale, long x, long y);
// The handle's x: start x 60 / S + TransLen x 60 / S + 4.
long TransitionHandleX(const CDoc& doc, int scale, int pic);

struct KeyStruct;

// True when the segment between two keys has no motion: every camera value is the same.
bool SegmentHolds(const KeyStruct& from, const KeyStruct& to);
// The ease mark drawn 14 pixels right of a key's marker: "<>", "<", ">" or "=" for a key's own
// ease kind, null for a key that uses the show's default (Ease 0 or below).
const char* EaseMark(float ease);
constexpr int kEaseMarkOffset = 14;
