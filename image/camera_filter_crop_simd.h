#pragma once
// The vector loops of the straight crop's two passes, one file per instruction set
// (camera_filter_crop_simd_sse41.cpp, _avx2.cpp, _avx512.cpp). Each file is compiled with its own
// target flags and called only on processors that have the set (camera_filter_crop_passes.cpp
// chooses). All instantiate the same steps (camera_filter_crop_simd_steps.h) with their own
// register operations. They include nothing but the intrinsics, this header and the steps, and
// keep their helpers file-local: an inline function shared with the rest of the program, compiled
// there with wider instructions, could be the copy the linker keeps for all.
//
// Both passes sum 8-bit pixels times 16-bit weights (at most 511) with multiply-add instructions
// into 32-bit sums S, then scale each sum once: byte = (S × reciprocal) >> 20. The plain loops
// multiply every pixel by its weight premultiplied by the reciprocal instead; the two are the
// same integers, since S × reciprocal = Σ (weight × reciprocal) × pixel exactly, and S ≤ 255 ×
// divisor with reciprocal = 2^20 ÷ divisor (truncated) keeps every product below 255 × 2^20.

#include <cstdint>

// One row pass: bytes [from, to) of `line` = (first × firstRow + 256 × each middle row + last ×
// lastRow) × reciprocal >> 20. A single row is given as firstRow = lastRow with last = 0.
struct CropRowJob {
    const unsigned char* firstRow;
    const unsigned char* lastRow;
    const unsigned char* middleRows;  // the first of `middleCount` rows, `stride` bytes apart
    long stride;
    int middleCount;  // at most 255: the weights' sum stays below 65536
    uint32_t first;   // weights of the first and last rows, at most 511
    uint32_t last;
    uint32_t reciprocal;  // 0x100000 ÷ divisor, the divisor being the weights' sum
    unsigned char* line;
    long from;
    long to;
};

// One destination column of the column pass as the vector loops read it: 16 bytes, so that two
// neighbouring columns fill the two halves of a 256-bit register. The column reads up to 4
// pixels from line byte `offset`; 16 bytes from there are readable.
struct CropVectorTap {
    uint32_t weights01;  // weights of taps 0 and 1, 16 bits each (tap 0 in the low half)
    uint32_t weights23;  // the same for taps 2 and 3
    uint32_t scale;      // the column's reciprocal
    uint32_t offset;
};

// The columns of one frame, `padded` of them (a multiple of 16; the extra ones read the pad at
// weight 0).
struct CropVectorTaps {
    const CropVectorTap* columns;
    int tapCount;  // 1 to 4
    int padded;
};

void BlendRowsSse41(const CropRowJob& job);
void BlendRowsAvx2(const CropRowJob& job);
void BlendRowsAvx512(const CropRowJob& job);

// Destination row `out` (4 bytes per pixel, `width` pixels) from `line`, whose pixels are
// `pixelBytes` (3 or 4) long; from 3-byte pixels alpha is 255.
void BlendColumnTapsSse41(const unsigned char* line, const CropVectorTaps& taps, int width,
                          int pixelBytes, unsigned char* out);
void BlendColumnTapsAvx2(const unsigned char* line, const CropVectorTaps& taps, int width,
                         int pixelBytes, unsigned char* out);
void BlendColumnTapsAvx512(const unsigned char* line, const CropVectorTaps& taps, int width,
                           int pixelBytes, unsigned char* out);
