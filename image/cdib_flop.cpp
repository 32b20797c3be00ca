// CDIB: changes made in place: storage rows swapped (Flop, FlopFields), bytes swapped inside
// pixels (FlopRGB2BGR), the alpha byte set (SetAlpha) or dropped (DropAlpha).

#include "image/cdib.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/base/memory.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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
    // Whole pixels as 32-bit words, masked and merged, four at a time where the processor has SSE2:
    // the byte-by-byte store of every fourth byte was a tenth of a movie render. The mask and the
    // new alpha are laid out as bytes, so the word order of the machine does not matter.
    const unsigned char keepBytes[4] = {0xFF, 0xFF, 0xFF, 0x00};
    const unsigned char alphaBytes[4] = {0, 0, 0, static_cast<unsigned char>(alpha & 0xFF)};
    uint32_t keep = 0;
    uint32_t value = 0;
    std::memcpy(&keep, keepBytes, sizeof keep);
    std::memcpy(&value, alphaBytes, sizeof value);
    int height = GetHgt();
    long width = GetWid();
    for (int row = 0; row < height; ++row) {
        unsigned char* pixels = GetBitsAdd(row);
        long x = 0;
#if defined(__SSE2__)
        const __m128i keepFour = _mm_set1_epi32(static_cast<int>(keep));
        const __m128i valueFour = _mm_set1_epi32(static_cast<int>(value));
        for (; x + 4 <= width; x += 4) {
            auto* four = reinterpret_cast<__m128i*>(pixels + 4 * x);
            __m128i words = _mm_loadu_si128(four);
            _mm_storeu_si128(four, _mm_or_si128(_mm_and_si128(words, keepFour), valueFour));
        }
#endif
        for (; x < width; ++x) {
            uint32_t word = 0;
            std::memcpy(&word, pixels + 4 * x, sizeof word);
            word = (word & keep) | value;
            std::memcpy(pixels + 4 * x, &word, sizeof word);
        }
    }
    return true;
}

bool CDIB::DropAlpha()
{
    if (!HasPixels() || GetBitCount() != 32)
        return false;
    const int height = GetHgt();
    const long width = GetWid();
    const long wideRow = GetRowBytes();
    const long narrowRow = (width * 3 + 3) & ~3L;
    // Front to back: a pixel's three bytes land at or before where its four were, after every
    // pixel before it has been read, so nothing is overwritten before it is moved.
    for (int row = 0; row < height; ++row) {
        const unsigned char* from = bits + static_cast<ptrdiff_t>(row) * wideRow;
        unsigned char* to = bits + static_cast<ptrdiff_t>(row) * narrowRow;
        for (long x = 0; x < width; ++x) {
            unsigned char blue = from[4 * x];
            unsigned char green = from[4 * x + 1];
            unsigned char red = from[4 * x + 2];
            to[3 * x] = blue;
            to[3 * x + 1] = green;
            to[3 * x + 2] = red;
        }
        // The row's padding is zero, as in an image made 24-bit.
        std::memset(to + 3 * width, 0, static_cast<size_t>(narrowRow - 3 * width));
    }
    header->biBitCount = 24;
    const size_t wideBytes = static_cast<size_t>(wideRow) * static_cast<size_t>(height);
    const size_t narrowBytes = static_cast<size_t>(narrowRow) * static_cast<size_t>(height);
    // The filters may read a few bytes past the last row: those stay in the block.
    ReleaseMemBlockTail(bits, narrowBytes + 64, wideBytes);
    return true;
}
