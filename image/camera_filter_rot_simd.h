#pragma once
// The rotating filter's bilinear vector loops, one file per instruction set
// (camera_filter_rot_simd_avx2.cpp, camera_filter_rot_simd_avx512.cpp), each compiled with its
// own target flags and called only on processors that have the set (camera_filter_rot.cpp
// chooses). Both instantiate the same steps (camera_filter_rot_simd_steps.h) with their own
// register operations, and include nothing but the intrinsics, this header and the steps, for the
// reason camera_filter_crop_simd.h gives.
//
// The samples are worked out lane by lane with the plain loop's single-precision operations in
// the same order (multiplies and adds are never fused), so the bytes are the plain loop's.

#include <cstdint>

// One destination row of bilinear samples: sample x lies at source column column + x ×
// columnStep and row row + x × rowStep; its taps are dx columns and dy rows apart. A sample
// whose position is not within [dx, width − dx − 1] × [dy, height − dy − 1] (or not a number)
// is outside and gets the word `outside`.
struct RotRowJob {
    const unsigned char* source;  // the source's first row
    long rowBytes;
    int sourceWidth;
    int sourceHeight;
    float column;
    float row;
    float columnStep;
    float rowStep;
    int dx;
    int dy;
    // Where the samples of the next row lie, relative to this row's: the loops ask for those
    // source bytes while they work on this row. A turned row takes a few bytes from each of
    // hundreds of source rows, a pattern the processor's own prefetching does not follow.
    float aheadColumn;
    float aheadRow;
    uint32_t outside;    // blue, green, red, alpha of an outside sample
    unsigned char* out;  // the row's first pixel, 4 bytes each
    int width;
};

// Samples 0 to n − 1 of the row, n being `width` rounded down to the register's lanes; answers
// n. `pixelBytes` is 3 or 4: from 3-byte pixels alpha is 255, from 4-byte ones it is
// interpolated. Each 3-byte pixel is read as a 32-bit word, one byte past the pixel: the source
// must have 4 readable bytes past its last pixel.
int SampleRotRowAvx2(const RotRowJob& job, int pixelBytes);
int SampleRotRowAvx512(const RotRowJob& job, int pixelBytes);
