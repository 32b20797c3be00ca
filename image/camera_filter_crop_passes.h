#pragma once
// The two passes of the straight camera crop (camera_filter_crop_passes.cpp), used by FilterCrop
// (camera_filter_crop.cpp): the row pass averages source rows into a source-wide line of bytes,
// the column pass averages the line's pixels into one destination row.
//
// Both sum weighted bytes and scale the sum by a reciprocal: byte = (sum × reciprocal) >> 20,
// stored as its low 8 bits. Each pass has a plain loop and vector loops with the same results
// (camera_filter_crop_simd.h); ActiveCameraLoops (camera_filter.h) chooses.

#include <cstddef>
#include <cstdint>

#include "image/camera_filter_crop_simd.h"

constexpr uint32_t kWeightOne = 256;           // one whole source pixel
constexpr uint32_t kReciprocalOne = 0x100000;  // reciprocals are scaled by 2^20 …
constexpr int kReciprocalShift = 20;           // … and the products shifted back by 20

// The source pixels (columns or rows) under one destination pixel.
struct Span {
    bool outside;          // a pixel it reads lies outside the picture
    int64_t first;         // first pixel read
    int count;             // pixels read: first weight, 256s, last weight; 0 when none weighs
    uint32_t firstWeight;  // of the first pixel read (of the only one when count is 1)
    uint32_t lastWeight;   // of the last pixel read, when count is 2 or more
    uint32_t reciprocal;   // 0x100000 ÷ divisor
    bool wide;             // the divisor wrapped at 16 bits: 64-bit sums, the result's low byte
};

// One destination column of the column pass. Unless the column is wide (reciprocal != 0), its
// weights are premultiplied by the reciprocal: (w0 × p0 + 256 × p1 … + w1 × pn) × R is
// w0R × p0 + 256R × p1 … + w1R × pn, and it fits 32 bits.
struct CropColumn {
    uint32_t offset;  // line buffer byte of the first pixel read
    int32_t count;    // pixels read; -1 outside the picture
    uint32_t first;
    uint32_t middle;
    uint32_t last;
    uint32_t reciprocal;  // 0 unless wide; then the weights above are plain
    uint32_t scale;       // what the weights above were premultiplied by: 1 when wide
};

CropColumn MakeCropColumn(const Span& span, int pixelBytes);

// The same columns as a fixed number of taps each, for a column pass without branches: tap k of
// a column reads the pixel k after `offset` with `coefficient[k]` (0 for taps past its span);
// outside columns read the pad, which holds the outside colour, at full weight. The coefficients
// are weight[k] × scale: the vector loops sum the 16-bit weights first and scale once.
constexpr int kMaxTaps = 4;
struct CropTaps {
    uint32_t offset;
    uint32_t coefficient[kMaxTaps];
    uint16_t weight[kMaxTaps];
    uint32_t scale;
};

// Fills `taps` from `columns` and answers the number of taps (1 to 4), or 0 when a column reads
// more than 4 pixels or needs 64-bit sums; then the general column pass is used. `padOffset` is
// the line buffer byte where the pad begins; the pad holds at least 16 bytes past any tap.
int MakeCropTaps(const CropColumn* columns, int destinationWidth, uint32_t padOffset,
                 CropTaps* taps);

// The row pass over bytes [from, to) of `line` for the source rows of `span`, the first of them
// at `rows`, the next ones `stride` bytes further each.
void BlendRows(const unsigned char* rows, long stride, const Span& span, unsigned char* line,
               long from, long to);

// Asks for bytes [from, to) of `count` source rows, the first at `rows`, the next ones `stride`
// bytes further each, to be brought into the second-level cache ahead of the row pass that will
// read them. A picture's row crosses a page every few kilobytes, and at each the processor's own
// prefetching starts over; asked for a row early, the memory works while the column pass runs.
void ReadAheadRows(const unsigned char* rows, long stride, int count, long from, long to);

// The column pass: destination row `out` (4 bytes per pixel) from `line`, whose pixels are
// `pixelBytes` long; the line is followed by at least 4 readable bytes.
void BlendColumns(const unsigned char* line, const CropColumn* columns, int destinationWidth,
                  int pixelBytes, unsigned char* out);

// The column pass over fixed taps: the same bytes as BlendColumns for the same columns.
void BlendColumnTaps(const unsigned char* line, const CropTaps* taps, int tapCount,
                     int destinationWidth, int pixelBytes, unsigned char* out);

// The fixed taps laid out once per frame for the vector loops, in `memory` of
// CropVectorTapsBytes(destinationWidth) bytes, 4-byte aligned. The entries past the row's end
// read 16 bytes from `padOffset` at weight 0.
size_t CropVectorTapsBytes(int destinationWidth);
CropVectorTaps MakeCropVectorTaps(const CropTaps* taps, int tapCount, int destinationWidth,
                                  uint32_t padOffset, void* memory);

// BlendColumnTaps with the layout above already made (`vectorTaps` from the same taps).
void BlendColumnTaps(const unsigned char* line, const CropTaps* taps,
                     const CropVectorTaps& vectorTaps, int destinationWidth, int pixelBytes,
                     unsigned char* out);

// The outside colour into one destination pixel, or a whole row of them, for a source of
// `pixelBytes` bytes per pixel.
void WriteOutside(unsigned char* out, int pixelBytes);
void WriteOutsideRow(unsigned char* out, int destinationWidth, int pixelBytes);
