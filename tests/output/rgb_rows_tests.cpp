// Frame rows to RGB rows: every width around the sixteen-pixel rounds, rows stored top-down and
// bottom-up, and nothing written past a row's last pixel.

#include "output/rgb_rows.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

constexpr unsigned char kGuard = 0xA5;

// Pixel x of source row r holds bytes that name it, so a byte in the wrong place shows.
unsigned char SourceByte(int x, int row, int channel)
{
    return static_cast<unsigned char>(x * 7 + row * 31 + channel * 101 + 3);
}

// Converts a width x height frame laid out top-down or bottom-up and checks every output byte
// and the guard bytes after each row.
void CheckFrame(int width, int height, bool bottomUp)
{
    const ptrdiff_t rowBytes = 4 * static_cast<ptrdiff_t>(width);
    std::vector<unsigned char> storage(static_cast<size_t>(rowBytes * height));
    // Row r of the picture, wherever the storage keeps it.
    auto rowAt = [&](int row) {
        int stored = bottomUp ? height - 1 - row : row;
        return storage.data() + stored * rowBytes;
    };
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x)
            for (int channel = 0; channel < 4; ++channel)
                rowAt(row)[4 * x + channel] = SourceByte(x, row, channel);

    const ptrdiff_t outStride = 3 * static_cast<ptrdiff_t>(width) + 5;
    std::vector<unsigned char> out(static_cast<size_t>(outStride * height), kGuard);
    BgraRowsToRgb(rowAt(0), bottomUp ? -rowBytes : rowBytes, width, height, out.data(), outStride);
    for (int row = 0; row < height; ++row) {
        const unsigned char* line = out.data() + row * outStride;
        for (int x = 0; x < width; ++x) {
            ASSERT_EQ(line[3 * x], SourceByte(x, row, 2)) << width << " " << x << " " << row;
            ASSERT_EQ(line[3 * x + 1], SourceByte(x, row, 1)) << width << " " << x << " " << row;
            ASSERT_EQ(line[3 * x + 2], SourceByte(x, row, 0)) << width << " " << x << " " << row;
        }
        for (ptrdiff_t pad = 3 * static_cast<ptrdiff_t>(width); pad < outStride; ++pad)
            ASSERT_EQ(line[pad], kGuard) << width << " " << row;
    }
}

TEST(BgraRowsToRgb, EveryWidthAroundTheRoundsMovesEachByteToItsPlace)
{
    for (int width = 1; width <= 70; ++width)
        CheckFrame(width, 3, false);
}

TEST(BgraRowsToRgb, RowsStoredBottomUpComeOutTopDown)
{
    for (int width : {1, 15, 16, 17, 48, 1920})
        CheckFrame(width, 4, true);
}

TEST(BgraRowsToRgb, NoRowsWritesNothing)
{
    std::vector<unsigned char> in(64, 1);
    std::vector<unsigned char> out(64, kGuard);
    BgraRowsToRgb(in.data(), 64, 16, 0, out.data(), 48);
    BgraRowsToRgb(in.data(), 64, 0, 1, out.data(), 48);
    EXPECT_EQ(out, std::vector<unsigned char>(64, kGuard));
}

}  // namespace
