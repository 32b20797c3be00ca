#pragma once
// Helpers for the raster image tests: patterned pixels, row reads, one-pixel access by storage
// row (0 = bottom line), a depth list for typed tests and a spy that records Create calls.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "image/cdib.h"

namespace pxtest {

// Byte b of pixel x in storage row `row` of a patterned image: never 0, so black stands out.
inline unsigned char PatternByte(long x, long row, int b)
{
    return static_cast<unsigned char>((x * 7 + row * 31 + b * 3) % 255 + 1);
}

// Gives every pixel byte of the image its pattern byte; row padding is left as it is.
inline void FillPattern(CDIB& image)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (int row = 0; row < image.GetHgt(); ++row) {
        unsigned char* line = image.GetBitsAdd(row);
        for (long x = 0; x < image.GetWid(); ++x)
            for (int b = 0; b < pixelBytes; ++b)
                line[x * pixelBytes + b] = PatternByte(x, row, b);
    }
}

// The bytes of pixel x in storage row `row`.
inline std::vector<unsigned char> Pixel(const CDIB& image, long x, int row)
{
    int pixelBytes = image.GetBitCount() / 8;
    const unsigned char* at = image.GetBitsAdd(row) + x * pixelBytes;
    return std::vector<unsigned char>(at, at + pixelBytes);
}

inline void SetPixel(CDIB& image, long x, int row, const std::vector<unsigned char>& bytes)
{
    std::memcpy(image.GetBitsAdd(row) + x * (image.GetBitCount() / 8), bytes.data(), bytes.size());
}

// The pixel bytes of storage row `row`, padding left out.
inline std::vector<unsigned char> RowPixels(const CDIB& image, int row)
{
    const unsigned char* at = image.GetBitsAdd(row);
    return std::vector<unsigned char>(at, at + image.GetWid() * (image.GetBitCount() / 8));
}

// The whole row block: row size × height bytes, padding included.
inline std::vector<unsigned char> AllRows(const CDIB& image)
{
    const unsigned char* at = image.GetBitsAdd(0);
    return std::vector<unsigned char>(at, at + image.GetRowBytes() * image.GetHgt());
}

inline bool IsAllZero(const std::vector<unsigned char>& bytes)
{
    for (unsigned char byte : bytes)
        if (byte != 0)
            return false;
    return true;
}

// A depth for the typed test suites.
template <int Bits>
struct Depth {
    static constexpr int kBits = Bits;
    static constexpr int kBytes = Bits / 8;
};
using AllDepths = ::testing::Types<Depth<8>, Depth<16>, Depth<24>, Depth<32>>;

struct DepthNames {
    template <typename T>
    static std::string GetName(int)
    {
        return "Bits" + std::to_string(T::kBits);
    }
};

// Records every Create that reaches it through the virtual table; `fail` makes it refuse.
class SpyDIB : public CDIB {
public:
    SpyDIB() : CDIB(1, 1, 24) {}
    bool Create(long width, long height, int bitsPerPixel) override
    {
        ++calls;
        lastWidth = width;
        lastHeight = height;
        lastBits = bitsPerPixel;
        if (fail)
            return false;
        return CDIB::Create(width, height, bitsPerPixel);
    }

    int calls = 0;
    long lastWidth = 0;
    long lastHeight = 0;
    int lastBits = 0;
    bool fail = false;
};

}  // namespace pxtest
