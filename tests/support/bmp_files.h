#pragma once
// Picture files for the tests of the document and the renderers, written byte by byte:
// uncompressed 24-bit BMPs whose pixels follow a function of (x, y), y counted from the top.

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/file/fspec.h"
#include "platform/file/paths.h"
#include "support/temp_dir.h"

namespace pxtest {

struct Rgb {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

inline void PutLittle(std::vector<unsigned char>& out, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

inline bool WriteBmp24(const std::string& path, int width, int height,
                       const std::function<Rgb(int x, int y)>& colour)
{
    uint32_t rowBytes = (static_cast<uint32_t>(width) * 3 + 3) & ~3u;
    uint32_t dataBytes = rowBytes * static_cast<uint32_t>(height);
    std::vector<unsigned char> file;
    file.push_back('B');
    file.push_back('M');
    PutLittle(file, 54 + dataBytes, 4);
    PutLittle(file, 0, 4);
    PutLittle(file, 54, 4);
    PutLittle(file, 40, 4);
    PutLittle(file, static_cast<uint32_t>(width), 4);
    PutLittle(file, static_cast<uint32_t>(height), 4);
    PutLittle(file, 1, 2);
    PutLittle(file, 24, 2);
    PutLittle(file, 0, 4);
    PutLittle(file, dataBytes, 4);
    PutLittle(file, 1600, 4);
    PutLittle(file, 1600, 4);
    PutLittle(file, 0, 4);
    PutLittle(file, 0, 4);
    for (int row = 0; row < height; ++row) {
        int y = height - 1 - row;  // bottom line first
        for (int x = 0; x < width; ++x) {
            Rgb c = colour(x, y);
            file.push_back(c.blue);
            file.push_back(c.green);
            file.push_back(c.red);
        }
        for (uint32_t pad = static_cast<uint32_t>(width) * 3; pad < rowBytes; ++pad)
            file.push_back(0);
    }
    return WriteBytes(path, file);
}

// A picture of one colour.
inline bool WriteFlatBmp(const std::string& path, int width, int height, Rgb colour)
{
    return WriteBmp24(path, width, height, [colour](int, int) { return colour; });
}

inline FSpec PathSpec(const std::string& path) { return PathFSpec(path.c_str()); }

}  // namespace pxtest
