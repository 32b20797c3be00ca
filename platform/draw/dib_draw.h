#pragma once
// DIBDraw: puts part of a raster image onto a drawing port, scaled, one destination row at a
// time. The image is handed over as its pixel rows, so this layer needs no image type:
//
//   rows      the first byte of storage row 0
//   width     pixels per row
//   height    rows; positive: storage row 0 is the bottom line of the picture (the usual
//             layout); negative: -height rows, storage row 0 the top line
//   rowBytes  bytes from one storage row to the next
//   depth     8 (index into palette, 256 entries of blue, green, red, unused; a grey ramp when
//             palette is null), 16 (5-5-5 little-endian words), 24 (blue, green, red) or
//             32 (blue, green, red, unused)
//
// source is in picture pixels with rows counted from the top, dest in window pixels of `port`
// (the current port when null). Fills exclude their right and bottom edges, as DrawBar does.

#include "platform/base/types.h"

class DrawPort;

// Pixels converted per row, whatever the image's width: every picture the program makes fits.
constexpr long kDIBDrawRowPixels = 8192;

// When source does not lie within the image (edges included; right before left or bottom above
// top counts as outside) or the rows cannot be read (null, a side of 0, a depth not listed
// above, rows shorter than their pixels), dest is painted black and false is answered.
// Otherwise destination row y (from 0 to dest height - 1, and row 0 alone when dest is 1 high
// or less) shows picture row
//     source top + trunc(y x step),  step = max(source height, 1) / max(dest height, 1)
// worked in single precision and taken at most at the last row; destination column i shows
// column source left + trunc(i x max(source width, 1) / dest width) of that row, taken at most
// at the last pixel of the image and of the converted row. Answers true.
bool DIBDraw(const tagRECT& dest, const tagRECT& source, const unsigned char* rows, long width,
             long height, long rowBytes, int depth, DrawPort* port = nullptr,
             const unsigned char* palette = nullptr);
