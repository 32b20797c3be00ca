#include "platform/draw/dib_draw.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/draw/coverage.h"
#include "platform/draw/draw_port.h"

namespace {

using Wide = __int128;

bool IsDrawableDepth(int depth) { return depth == 8 || depth == 16 || depth == 24 || depth == 32; }

// The converted row, made on first use and kept for the rest of the run: drawing happens on the
// main thread only.
std::vector<uint32_t>& RowBuffer()
{
    static std::vector<uint32_t> row(kDIBDrawRowPixels);
    return row;
}

uint32_t Expand5(uint32_t value) { return (value << 3) | (value >> 2); }

// Converts pixels first..last (inclusive) of one storage row into the row buffer as 0xFFRRGGBB.
void ConvertRow(const unsigned char* line, int depth, const unsigned char* palette, int64_t first,
                int64_t last, uint32_t* out)
{
    for (int64_t x = first; x <= last; ++x) {
        uint32_t blue, green, red;
        switch (depth) {
        case 8: {
            uint32_t index = line[x];
            if (palette) {
                blue = palette[4 * index];
                green = palette[4 * index + 1];
                red = palette[4 * index + 2];
            } else {
                blue = green = red = index;
            }
            break;
        }
        case 16: {
            uint32_t word = line[2 * x] | (uint32_t(line[2 * x + 1]) << 8);
            red = Expand5((word >> 10) & 31);
            green = Expand5((word >> 5) & 31);
            blue = Expand5(word & 31);
            break;
        }
        case 24:
            blue = line[3 * x];
            green = line[3 * x + 1];
            red = line[3 * x + 2];
            break;
        default:  // 32
            blue = line[4 * x];
            green = line[4 * x + 1];
            red = line[4 * x + 2];
            break;
        }
        out[x] = 0xFF000000u | (red << 16) | (green << 8) | blue;
    }
}

}  // namespace

bool DIBDraw(const tagRECT& dest, const tagRECT& source, const unsigned char* rows, long width,
             long height, long rowBytes, int depth, DrawPort* port, const unsigned char* palette)
{
    DrawPort* target = port ? port : GetDrawDC();
    if (!target || target->Width() < 1 || target->Height() < 1)
        return false;

    const int64_t pictureHeight = height < 0 ? -int64_t(height) : int64_t(height);
    const bool readable = rows && width > 0 && pictureHeight > 0 && IsDrawableDepth(depth) &&
                          int64_t(rowBytes) >= (int64_t(width) * depth + 7) / 8;
    const bool inside = readable && source.left >= 0 && source.top >= 0 &&
                        source.left <= source.right && source.top <= source.bottom &&
                        source.right <= width && source.bottom <= pictureHeight;
    if (!inside) {
        Coverage black(target);
        black.AddRect(dest.left, dest.top, dest.right, dest.bottom);
        black.Paint(0xFF000000u);
        return false;
    }

    const int64_t destWidth = int64_t(dest.right) - dest.left;
    const int64_t destHeight = std::max<int64_t>(int64_t(dest.bottom) - dest.top, 1);
    // Single precision on purpose: which picture row a destination row shows depends on it.
    const float step =
        float(std::max<int64_t>(int64_t(source.bottom) - source.top, 1)) / float(destHeight);
    const int64_t sourceWidth = std::max<int64_t>(int64_t(source.right) - source.left, 1);
    const int64_t lastColumn = std::min<int64_t>(width, kDIBDrawRowPixels) - 1;

    // Only the destination pixels that land on the port's image are visited.
    const int64_t imageLeft = int64_t(dest.left) - target->OriginX();
    const int64_t imageTop = int64_t(dest.top) - target->OriginY();
    const int64_t firstColumn = std::max<int64_t>(0, -imageLeft);
    const int64_t endColumn = std::min<int64_t>(destWidth, target->Width() - imageLeft);
    const int64_t firstRow = std::max<int64_t>(0, -imageTop);
    const int64_t endRow = std::min<int64_t>(destHeight, target->Height() - imageTop);
    if (firstColumn >= endColumn || firstRow >= endRow)
        return true;

    std::vector<int64_t> columns(endColumn - firstColumn);
    for (int64_t i = firstColumn; i < endColumn; ++i) {
        int64_t column = source.left + static_cast<int64_t>(Wide(i) * sourceWidth / destWidth);
        columns[i - firstColumn] = std::min(column, lastColumn);
    }
    const int64_t convertFrom = *std::min_element(columns.begin(), columns.end());
    const int64_t convertTo = *std::max_element(columns.begin(), columns.end());

    uint32_t* converted = RowBuffer().data();
    for (int64_t y = firstRow; y < endRow; ++y) {
        int64_t pictureRow = source.top + static_cast<int64_t>(float(y) * step);
        pictureRow = std::min(pictureRow, pictureHeight - 1);
        // Bottom-up storage keeps the picture's top line in the last storage row.
        int64_t storageRow = height > 0 ? pictureHeight - 1 - pictureRow : pictureRow;
        ConvertRow(rows + storageRow * int64_t(rowBytes), depth, palette, convertFrom, convertTo,
                   converted);
        uint32_t* out = target->Row(static_cast<int>(imageTop + y));
        for (int64_t i = firstColumn; i < endColumn; ++i)
            out[imageLeft + i] = converted[columns[i - firstColumn]];
    }
    return true;
}
