#pragma once
// Shapes on the current drawing port (GetDrawDC), in window pixels. Without a current port, or
// with an empty one, nothing is drawn; nothing is ever drawn outside the port's image.
//
// Colours are 0x00BBGGRR (red in the low byte). Every call given a colour makes it the pen
// colour, as SetColor does.
//
// Outlines include the right and bottom edges, fills do not: DrawBox(c, r, 1) frames the pixels
// r.left..r.right by r.top..r.bottom, DrawBar(c, r) fills r.left..r.right - 1 by
// r.top..r.bottom - 1. An outline's pen lies inside that widened rectangle. A rectangle whose
// right is left of its left (or bottom above its top) is empty. Pens narrower than 1 draw
// nothing.

#include "platform/base/types.h"

// How a pen call puts its pixels down (the last, optional, argument).
constexpr int kPenCopy = 0;  // the shape is painted in its colour
constexpr int kPenXor = 1;   // the shape's pixels are exclusive-ored with the colour; the same
                             // call again puts them back
// Any other mode paints as kPenCopy.

// The pen colour, and the background colour behind opaque text (see SelectFont).
void SetColor(long colour);
void SetBackColor(long colour);

void DrawBox(long colour, const tagRECT& rect, int width, int mode = kPenCopy);
void DrawBar(long colour, const tagRECT& rect);

// A line from (left, top) to (right, bottom), both ends drawn. The square pen hangs down and
// right of each point; both ends first move up and left by (width - 1) / 2 so that a thick line
// is centred on the points given: width 3 from (10, 10) to (20, 10) covers rows 9 to 11.
void DrawLine(long colour, const tagRECT& rect, int width, int mode = kPenCopy);
void DrawLine(long colour, int x1, int y1, int x2, int y2, int width, int mode = kPenCopy);

// Rounded rectangles: the corners are quarter ovals `corner` pixels across (at most the
// rectangle's size).
void DrawRoundBox(long colour, const tagRECT& rect, int corner, int width, int mode = kPenCopy);
void DrawRoundBar(long colour, const tagRECT& rect, int corner);

// The oval inscribed in rect: outline (edges included) and fill.
void DrawCir(long colour, const tagRECT& rect, int width, int mode = kPenCopy);
void DrawCirBar(long colour, const tagRECT& rect);

// A check box: rect filled with colour inside a black 1-pixel outline (edges included); when
// on, a black cross, the two diagonals of rect shrunk by 2 on each side.
void DrawCheck(long colour, const tagRECT& rect, bool on);
// A radio button: a 1-pixel oval outline of rect in colour; when on, the filled oval from
// (left + 2, top + 2) to (right - 1, bottom - 1) in colour inside it.
void DrawRadio(long colour, const tagRECT& rect, bool on);

// The polygon through count points: filled in `fill`, outlined 1 pixel wide in `frame`. A
// negative fill draws no fill and leaves the outline open (the last point is not joined back to
// the first); a negative frame draws no outline. A null list or a count below 1 draws nothing.
void DrawPolygon(long fill, long frame, int count, const tagPOINT* points);

// Triangles, filled in colour (none when negative), outlined in frame (none when negative):
// from three points given as coordinates or as points, or pointing in `direction` (one of the
// four below, taken modulo 4) with its tip at (x, y), its base `size` pixels behind the tip and
// 2 x size wide (a size below 1 draws nothing). Filled like every shape, by pixel centres.
constexpr int kTriangleUp = 0;
constexpr int kTriangleRight = 1;
constexpr int kTriangleDown = 2;
constexpr int kTriangleLeft = 3;
void DrawTriangle(long colour, int x1, int y1, int x2, int y2, int x3, int y3, long frame = -1);
void DrawTriangle(long colour, const tagPOINT& a, const tagPOINT& b, const tagPOINT& c,
                  long frame = -1);
void DrawTriangle(long colour, int x, int y, int size, int direction, long frame = -1);

// Connected lines through count points, each as DrawLine draws it.
void DrawPolyLine(long colour, int width, int count, const tagPOINT* points, int mode = kPenCopy);

// A box in two colours, edges included: the top and left sides in colour1, the bottom and right
// sides (with the top-right and bottom-left corners) in colour2 — raised when colour1 is the
// lighter, sunken when it is the darker.
void DrawSplitBox(long colour1, long colour2, const tagRECT& rect, int width = 1);

// A horizontal slider filling rect: the bar in colour1, its part left of the knob in colour2, a
// black 1-pixel frame inside rect, and a knob: white, framed black, 5 pixels wide and as tall as
// the bar, centred on column
//     left + trunc(value / max x (right - left - 1))    (value / max taken within 0..1)
// so the knob's middle runs over every column of the bar and reaches 2 pixels beyond its ends.
// A max of 0 or less puts the knob at the left. With showValue the value is written in black in
// the current font, centred on the bar.
void DrawSlider(long colour1, long colour2, const tagRECT& rect, long value, long max,
                bool showValue);
