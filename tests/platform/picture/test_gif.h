#pragma once
// Test helper: GIF files written byte by byte, since Qt reads GIF but does not write it.

#include <algorithm>
#include <string>
#include <vector>

namespace pxtest {

// A GIF of palette indices, top line first, with a 256-entry colour table of (red, green, blue)
// triples. The LZW stream uses 9-bit codes throughout: a clear code every 250 pixels keeps the
// decoder's table from growing into 10-bit codes.
inline std::vector<unsigned char> MakeGif(int width, int height,
                                          const std::vector<unsigned char>& rgbTable,
                                          const std::vector<unsigned char>& indices)
{
    std::vector<unsigned char> bytes;
    auto put16 = [&bytes](int value) {
        bytes.push_back(static_cast<unsigned char>(value & 255));
        bytes.push_back(static_cast<unsigned char>(value >> 8));
    };
    for (char c : std::string("GIF89a"))
        bytes.push_back(static_cast<unsigned char>(c));
    put16(width);
    put16(height);
    bytes.push_back(0xF7);  // a global table of 256 entries
    bytes.push_back(0);
    bytes.push_back(0);
    for (size_t i = 0; i < 768; ++i)
        bytes.push_back(i < rgbTable.size() ? rgbTable[i] : 0);
    bytes.push_back(0x2C);
    put16(0);
    put16(0);
    put16(width);
    put16(height);
    bytes.push_back(0);
    bytes.push_back(8);  // minimum code size

    std::vector<int> codes{256};
    for (size_t i = 0; i < indices.size(); ++i) {
        if (i > 0 && i % 250 == 0)
            codes.push_back(256);
        codes.push_back(indices[i]);
    }
    codes.push_back(257);
    std::vector<unsigned char> packed;
    unsigned long bits = 0;
    int held = 0;
    for (int code : codes) {
        bits |= static_cast<unsigned long>(code) << held;
        held += 9;
        while (held >= 8) {
            packed.push_back(static_cast<unsigned char>(bits & 255));
            bits >>= 8;
            held -= 8;
        }
    }
    if (held > 0)
        packed.push_back(static_cast<unsigned char>(bits & 255));
    for (size_t at = 0; at < packed.size(); at += 255) {
        size_t block = std::min<size_t>(255, packed.size() - at);
        bytes.push_back(static_cast<unsigned char>(block));
        bytes.insert(bytes.end(), packed.begin() + static_cast<long>(at),
                     packed.begin() + static_cast<long>(at + block));
    }
    bytes.push_back(0);
    bytes.push_back(0x3B);
    return bytes;
}

}  // namespace pxtest
