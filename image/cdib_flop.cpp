// CDIB: changes made in place: storage rows swapped (Flop, FlopFields), bytes swapped inside
// pixels (FlopRGB2BGR) and the alpha byte set (SetAlpha).

#include "image/cdib.h"

#include <algorithm>
#include <utility>

bool CDIB::Flop()
{
    if (!HasPixels())
        return false;
    // Storage row i trades places with its mirror; the middle row of an odd height stays.
    int height = GetHgt();
    long rowBytes = GetRowBytes();
    for (int i = 0; i < height / 2; ++i) {
        unsigned char* low = GetBitsAdd(i);
        std::swap_ranges(low, low + rowBytes, GetBitsAdd(height - 1 - i));
    }
    return true;
}

bool CDIB::FlopFields()
{
    if (!HasPixels())
        return false;
    // Storage rows 0-1, 2-3, ... trade places, which swaps the two fields of an interlaced frame;
    // the last row of an odd height has no partner and stays.
    int height = GetHgt();
    long rowBytes = GetRowBytes();
    for (int i = 0; i < height - 1; i += 2) {
        unsigned char* low = GetBitsAdd(i);
        std::swap_ranges(low, low + rowBytes, GetBitsAdd(i + 1));
    }
    return true;
}

bool CDIB::FlopRGB2BGR()
{
    // Blue and red are the first and third byte only of 24- and 32-bit pixels; smaller pixels
    // have no third byte, so they are refused and left as they are.
    if (!HasPixels() || PixelBytes() < 3)
        return false;
    int height = GetHgt();
    long width = GetWid();
    int pixelBytes = PixelBytes();
    for (int row = 0; row < height; ++row) {
        unsigned char* pixel = GetBitsAdd(row);
        for (long x = 0; x < width; ++x, pixel += pixelBytes)
            std::swap(pixel[0], pixel[2]);
    }
    return true;
}

bool CDIB::SetAlpha(int alpha)
{
    if (!HasPixels() || GetBitCount() != 32)
        return false;
    auto value = static_cast<unsigned char>(alpha & 0xFF);
    int height = GetHgt();
    long width = GetWid();
    for (int row = 0; row < height; ++row) {
        unsigned char* pixel = GetBitsAdd(row);
        for (long x = 0; x < width; ++x, pixel += 4)
            pixel[3] = value;
    }
    return true;
}
