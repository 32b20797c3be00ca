#pragma once
// Rectangle helpers. A tagRECT is left, top, right, bottom in whoever's coordinates hold it
// (window pixels or picture pixels). Every helper does its arithmetic in 64 bits and stores the
// low 32 bits back, so extreme values wrap instead of overflowing.

#include "platform/base/types.h"

// Sets the four sides.
void MakeRect(tagRECT* r, int left, int top, int right, int bottom);
// Grows by dx on the left and on the right and by dy on the top and on the bottom; negative
// values shrink.
void ScaleRect(tagRECT* r, int dx, int dy);
// Multiplies left and right by fx and top and bottom by fy, truncating toward zero. A negative
// factor f means division: it is replaced by -1 / f (-2 halves).
void SizeRect(tagRECT* r, double fx, double fy);

// right - left; with centre set, the horizontal centre left + (right - left) / 2 instead.
int RectWidth(const tagRECT* r, bool centre);
// bottom - top; with centre set, the vertical centre top + (bottom - top) / 2 instead.
int RectHgt(const tagRECT* r, bool centre);

// Adds dx to left and right and dy to top and bottom.
void MoveRectBy(tagRECT* r, int dx, int dy);
// Puts the left-top corner at (x, y), keeping the size.
void MoveRectTo(tagRECT* r, int x, int y);

// True when left <= x <= right and top <= y <= bottom: all four edges belong to the rectangle.
bool XYInRect(const tagRECT* r, int x, int y);
bool XYInRect(const tagRECT* r, tagPOINT p);

// Intersects r with clip in place. False when the result has zero width or zero height; an
// inverted result (the two did not meet) is not told apart and answers true.
bool ClipByRect(tagRECT* r, const tagRECT* clip);
// Orders the sides so that left <= right and top <= bottom.
void SortRect(tagRECT* r);
// True when every side of inner lies within outer, edges included. outer may be given with its
// corners either way round; inner is taken as it is.
bool RectInRect(const tagRECT* inner, const tagRECT* outer);
