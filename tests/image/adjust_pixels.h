#pragma once
// Helpers for the picture adjustment tests: depth lists for the operations that work on colour
// depths only, and sentinels in the bytes that no adjustment may touch (row padding and the
// spare bytes past the last row).

#include <gtest/gtest.h>

#include <vector>

#include "cdib_pixels.h"
#include "image/cdib.h"

namespace pxtest {

using ColourDepths = ::testing::Types<Depth<24>, Depth<32>>;
using PaletteDepths = ::testing::Types<Depth<8>, Depth<16>>;

// The pixel block is allocated four bytes longer than its rows.
constexpr long kSpareBlockBytes = 4;

// Sets every padding byte of every row and the spare bytes after the last row to `value`.
inline void MarkOutsideBytes(CDIB& image, unsigned char value)
{
    long pixelBytes = image.GetWid() * (image.GetBitCount() / 8);
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long at = pixelBytes; at < image.GetRowBytes(); ++at)
            image.GetBitsAdd(row)[at] = value;
    unsigned char* spare = image.GetBitsAdd(image.GetHgt());
    for (long at = 0; at < kSpareBlockBytes; ++at)
        spare[at] = value;
}

// True when every padding byte and spare byte still holds `value`.
inline bool OutsideBytesAre(const CDIB& image, unsigned char value)
{
    long pixelBytes = image.GetWid() * (image.GetBitCount() / 8);
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long at = pixelBytes; at < image.GetRowBytes(); ++at)
            if (image.GetBitsAdd(row)[at] != value)
                return false;
    const unsigned char* spare = image.GetBitsAdd(image.GetHgt());
    for (long at = 0; at < kSpareBlockBytes; ++at)
        if (spare[at] != value)
            return false;
    return true;
}

// Gives byte `channel` of every pixel the value `value`.
inline void FillChannel(CDIB& image, int channel, unsigned char value)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            image.GetBitsAdd(row)[x * pixelBytes + channel] = value;
}

// Byte `channel` of every pixel of storage row `row`, left to right.
inline std::vector<unsigned char> RowChannel(const CDIB& image, int row, int channel)
{
    int pixelBytes = image.GetBitCount() / 8;
    std::vector<unsigned char> values;
    for (long x = 0; x < image.GetWid(); ++x)
        values.push_back(image.GetBitsAdd(row)[x * pixelBytes + channel]);
    return values;
}

}  // namespace pxtest
