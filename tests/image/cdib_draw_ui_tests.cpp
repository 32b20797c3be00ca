// Drawing a raster image on a port: rows land top line first, palettes are used, an empty image
// draws nothing.

#include <gtest/gtest.h>

#include <algorithm>

#include "image/cdib.h"
#include "platform/draw/draw_port.h"

namespace {

constexpr uint32_t kWhite = 0xFFFFFFFFu;

// A 2 x 2 24-bit picture: top line red, blue; bottom line green, white.
void PaintQuarters(CDIB& image)
{
    unsigned char* bottom = image.GetBitsAdd(0);
    unsigned char* top = image.GetBitsAdd(1);
    const unsigned char topLine[6] = {0, 0, 255, 255, 0, 0};
    const unsigned char bottomLine[6] = {0, 255, 0, 255, 255, 255};
    std::copy(topLine, topLine + 6, top);
    std::copy(bottomLine, bottomLine + 6, bottom);
}

class CDIBDraw : public testing::Test {
protected:
    void SetUp() override { port.Resize(4, 4); }
    DrawPort port;
};

TEST_F(CDIBDraw, WholeImageIsScaledIntoTheDestinationTopLineFirst)
{
    CDIB image(2, 2, 24);
    PaintQuarters(image);
    tagRECT destination{0, 0, 4, 4};
    image.Draw(destination, &port);
    EXPECT_EQ(port.PixelAt(0, 0), 0xFFFF0000u);
    EXPECT_EQ(port.PixelAt(3, 1), 0xFF0000FFu);
    EXPECT_EQ(port.PixelAt(1, 3), 0xFF00FF00u);
    EXPECT_EQ(port.PixelAt(2, 2), 0xFFFFFFFFu);
}

TEST_F(CDIBDraw, SourceRectangleIsPassedOnUnchanged)
{
    CDIB image(2, 2, 24);
    PaintQuarters(image);
    tagRECT destination{0, 0, 4, 4};
    tagRECT source{1, 0, 2, 1};  // the top right pixel alone
    image.Draw(destination, source, &port);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(port.PixelAt(x, y), 0xFF0000FFu) << x << "," << y;
}

TEST_F(CDIBDraw, EightBitImagesTakeTheirColoursFromThePalette)
{
    CDIB image(1, 1, 8);
    image.GetPalette()[7] = PaletteEntry{10, 20, 30, 0};
    image.GetBitsAdd(0)[0] = 7;
    tagRECT destination{0, 0, 4, 4};
    image.Draw(destination, &port);
    EXPECT_EQ(port.PixelAt(2, 2), 0xFF1E140Au);
}

TEST_F(CDIBDraw, EmptyImageDrawsNothing)
{
    CDIB image(0, 0, 24);
    tagRECT destination{0, 0, 4, 4};
    image.Draw(destination, &port);
    tagRECT source{0, 0, 1, 1};
    image.Draw(destination, source, &port);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(port.PixelAt(x, y), kWhite);
}

TEST_F(CDIBDraw, NullContextDrawsOnTheCurrentPort)
{
    CDIB image(1, 1, 32);
    image.GetBitsAdd(0)[1] = 200;
    SetDrawDC(&port);
    tagRECT destination{1, 1, 2, 2};
    image.Draw(destination, nullptr);
    SetDrawDC(nullptr);
    EXPECT_EQ(port.PixelAt(1, 1), 0xFF00C800u);
    EXPECT_EQ(port.PixelAt(0, 0), kWhite);
}

}  // namespace
