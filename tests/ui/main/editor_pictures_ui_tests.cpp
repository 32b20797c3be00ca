// The background tile, painted by code at the size it is drawn.

#include "ui/main/editor_pictures.h"

#include <gtest/gtest.h>
#include <set>
#include <vector>

#include "platform/draw/bitmap_draw.h"
#include "platform/draw/draw_port.h"

namespace {

uint32_t Rgb(long colour)  // 0x00BBGGRR to the port's 0xFFRRGGBB
{
    return 0xFF000000u | ((colour & 0xFF) << 16) | (colour & 0xFF00) | ((colour >> 16) & 0xFF);
}

// The tile drawn at `size` x `size` on a port of that size.
std::vector<uint32_t> Paint(int size)
{
    RegisterEditorPictures();
    DrawPort port;
    port.Resize(size, size);
    SetDrawDC(&port);
    EXPECT_TRUE(DrawBitmap({0, 0, size, size}, kBackgroundTile));
    std::vector<uint32_t> pixels;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            pixels.push_back(port.PixelAt(x, y));
    SetDrawDC(nullptr);
    return pixels;
}

TEST(BackgroundTile, IsTwoColoursWithALineEveryFourColumns)
{
    std::vector<uint32_t> pixels = Paint(kBackgroundTileSize);
    for (int y = 0; y < kBackgroundTileSize; ++y) {
        for (int x = 0; x < kBackgroundTileSize; ++x) {
            uint32_t expected = x % kTileStripe == 0 ? Rgb(kTileLine) : Rgb(kTileGround);
            ASSERT_EQ(pixels[size_t(y) * kBackgroundTileSize + size_t(x)], expected)
                << x << "," << y;
        }
    }
}

TEST(BackgroundTile, AtTwiceTheSizeEveryPixelIsDoubledWithoutBlending)
{
    std::vector<uint32_t> small = Paint(kBackgroundTileSize);
    std::vector<uint32_t> large = Paint(2 * kBackgroundTileSize);
    std::set<uint32_t> colours(large.begin(), large.end());
    EXPECT_EQ(colours, (std::set<uint32_t>{Rgb(kTileLine), Rgb(kTileGround)}));
    const int side = 2 * kBackgroundTileSize;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            ASSERT_EQ(large[size_t(y) * side + size_t(x)],
                      small[size_t(y / 2) * kBackgroundTileSize + size_t(x / 2)])
                << x << "," << y;
        }
    }
}

TEST(BackgroundTile, RowsAreAllAlikeSoTilesMeetAtAnyHeight)
{
    std::vector<uint32_t> pixels = Paint(kBackgroundTileSize);
    for (int y = 1; y < kBackgroundTileSize; ++y) {
        for (int x = 0; x < kBackgroundTileSize; ++x)
            ASSERT_EQ(pixels[size_t(y) * kBackgroundTileSize + size_t(x)], pixels[size_t(x)]);
    }
}

}  // namespace
