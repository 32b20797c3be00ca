#pragma once
// Frame rows to the three-byte RGB rows of uncompressed and PNG movies, without the general
// converter: a plain reordering of bytes, done many pixels at a time where the processor can.

#include <cstddef>

// Writes `height` rows of `width` pixels. Source rows hold blue, green, red, alpha; row r starts
// at `top` + r × `stride` (negative for rows stored bottom-up). Output rows hold red, green,
// blue, top-down, `outStride` bytes apart. Alpha is dropped: the frame is opaque.
void BgraRowsToRgb(const unsigned char* top, ptrdiff_t stride, int width, int height,
                   unsigned char* out, ptrdiff_t outStride);
