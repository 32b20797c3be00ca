// DIBDraw: raster rows onto the backing image, read back pixel by pixel.

#include "platform/draw/dib_draw.h"

#include <gtest/gtest.h>
#include <climits>
#include <cstdint>
#include <vector>

#include "port_fixture.h"

namespace {

// A picture in storage rows, bottom row first, each padded to 4 bytes, as the image layer keeps
// it. Pixels are set in picture coordinates (row 0 at the top).
struct Rows {
    Rows(long width, long height, int depth)
        : width(width), height(height), depth(depth), rowBytes((width * depth / 8 + 3) / 4 * 4),
          bytes(size_t(rowBytes * height))
    {
    }
    unsigned char* At(long x, long pictureRow)
    {
        return bytes.data() + (height - 1 - pictureRow) * rowBytes + x * depth / 8;
    }
    // 24 and 32 bits: blue, green, red from a 0x00RRGGBB value.
    void Set(long x, long y, uint32_t rgb)
    {
        unsigned char* p = At(x, y);
        p[0] = rgb & 0xFF;
        p[1] = (rgb >> 8) & 0xFF;
        p[2] = (rgb >> 16) & 0xFF;
        if (depth == 32)
            p[3] = 0x5A;  // alpha, never shown
    }
    bool Draw(const tagRECT& dest, const tagRECT& source, DrawPort* port = nullptr,
              const unsigned char* palette = nullptr) const
    {
        return DIBDraw(dest, source, bytes.data(), width, height, rowBytes, depth, port, palette);
    }

    long width, height;
    int depth;
    long rowBytes;
    std::vector<unsigned char> bytes;
};

// A picture whose every pixel has its own colour: 0x00RRGGBB = (x << 16) | (y << 8) | 0x40.
Rows Numbered(long width, long height, int depth = 24)
{
    Rows rows(width, height, depth);
    for (long y = 0; y < height; ++y)
        for (long x = 0; x < width; ++x)
            rows.Set(x, y, uint32_t(x) << 16 | uint32_t(y) << 8 | 0x40);
    return rows;
}

uint32_t NumberedPixel(long x, long y)
{
    return 0xFF000000u | uint32_t(x) << 16 | uint32_t(y) << 8 | 0x40;
}

using DIBDrawTest = PortTest;

TEST_F(DIBDrawTest, OneToOneCopiesEveryPixelTopRowFirst)
{
    Rows rows = Numbered(5, 4);
    EXPECT_TRUE(rows.Draw({10, 20, 15, 24}, {0, 0, 5, 4}));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(port.PixelAt(10 + x, 20 + y), NumberedPixel(x, y)) << x << "," << y;
    EXPECT_EQ(Ink(), (InkBounds{10, 20, 14, 23}));
}

TEST_F(DIBDrawTest, RowsAreReadBottomUp)
{
    // The first storage row in memory is the picture's bottom line.
    Rows rows(1, 3, 24);
    rows.bytes[0 * rows.rowBytes + 2] = 0xFF;  // storage row 0: red
    rows.bytes[2 * rows.rowBytes + 0] = 0xFF;  // storage row 2: blue
    rows.Draw({0, 0, 1, 3}, {0, 0, 1, 3});
    EXPECT_EQ(port.PixelAt(0, 0), kBluePixel);
    EXPECT_EQ(port.PixelAt(0, 1), kBlackPixel);
    EXPECT_EQ(port.PixelAt(0, 2), kRedPixel);
}

TEST_F(DIBDrawTest, NegativeHeightMeansTopDownRows)
{
    Rows rows(1, 3, 24);
    rows.bytes[0 * rows.rowBytes + 2] = 0xFF;
    DIBDraw({0, 0, 1, 3}, {0, 0, 1, 3}, rows.bytes.data(), 1, -3, rows.rowBytes, 24);
    EXPECT_EQ(port.PixelAt(0, 0), kRedPixel);
    EXPECT_EQ(port.PixelAt(0, 2), kBlackPixel);
}

TEST_F(DIBDrawTest, TwentyFourBitPixelsAreBlueGreenRed)
{
    Rows rows(2, 1, 24);
    const unsigned char pixels[] = {0x11, 0x22, 0x33, 0xFE, 0x80, 0x01};
    std::copy(pixels, pixels + 6, rows.bytes.begin());
    rows.Draw({0, 0, 2, 1}, {0, 0, 2, 1});
    EXPECT_EQ(port.PixelAt(0, 0), 0xFF332211u);
    EXPECT_EQ(port.PixelAt(1, 0), 0xFF0180FEu);
}

TEST_F(DIBDrawTest, ThirtyTwoBitPixelsIgnoreAlpha)
{
    Rows rows = Numbered(3, 2, 32);
    rows.Draw({0, 0, 3, 2}, {0, 0, 3, 2});
    EXPECT_EQ(port.PixelAt(2, 1), NumberedPixel(2, 1));
}

TEST_F(DIBDrawTest, SixteenBitPixelsAreFiveFiveFive)
{
    Rows rows(3, 1, 16);
    auto put = [&](int x, uint16_t word) {
        rows.bytes[2 * x] = word & 0xFF;
        rows.bytes[2 * x + 1] = word >> 8;
    };
    put(0, 0x7C00);                     // red 31
    put(1, 0x03E0 | 0x8000);            // green 31; the top bit is not used
    put(2, (16 << 10) | (8 << 5) | 1);  // each 5-bit value widened to 8 bits
    rows.Draw({0, 0, 3, 1}, {0, 0, 3, 1});
    EXPECT_EQ(port.PixelAt(0, 0), kRedPixel);
    EXPECT_EQ(port.PixelAt(1, 0), kGreenPixel);
    EXPECT_EQ(port.PixelAt(2, 0), 0xFF844208u);
}

TEST_F(DIBDrawTest, EightBitPixelsUseThePaletteOrAGreyRamp)
{
    Rows rows(2, 1, 8);
    rows.bytes[0] = 0;
    rows.bytes[1] = 200;
    std::vector<unsigned char> palette(256 * 4, 0);
    palette[200 * 4 + 0] = 0x10;  // blue
    palette[200 * 4 + 1] = 0x20;  // green
    palette[200 * 4 + 2] = 0x30;  // red
    rows.Draw({0, 0, 2, 1}, {0, 0, 2, 1}, nullptr, palette.data());
    EXPECT_EQ(port.PixelAt(0, 0), kBlackPixel);
    EXPECT_EQ(port.PixelAt(1, 0), 0xFF302010u);
    rows.Draw({0, 1, 2, 2}, {0, 0, 2, 1});
    EXPECT_EQ(port.PixelAt(1, 1), 0xFFC8C8C8u);
}

TEST_F(DIBDrawTest, SourceOutsideThePicturePaintsTheDestinationBlack)
{
    Rows rows = Numbered(4, 4);
    const tagRECT outside[] = {{0, 0, 5, 4}, {-1, 0, 4, 4}, {0, -1, 4, 4},
                               {0, 0, 4, 5}, {3, 0, 2, 4},  {0, 3, 4, 2}};
    for (const tagRECT& source : outside) {
        port.Resize(64, 48);
        EXPECT_FALSE(rows.Draw({10, 10, 20, 15}, source));
        EXPECT_EQ(Count(kBlackPixel), 50)
            << source.left << "," << source.top << "," << source.right << "," << source.bottom;
        EXPECT_EQ(Ink(), (InkBounds{10, 10, 19, 14}));
    }
}

TEST_F(DIBDrawTest, UnreadableRowsPaintTheDestinationBlack)
{
    Rows rows = Numbered(4, 4);
    const tagRECT dest = {0, 0, 4, 4}, source = {0, 0, 4, 4};
    EXPECT_FALSE(DIBDraw(dest, source, nullptr, 4, 4, rows.rowBytes, 24));
    EXPECT_EQ(Count(kBlackPixel), 16);
    port.Resize(64, 48);
    EXPECT_FALSE(DIBDraw(dest, source, rows.bytes.data(), 4, 4, rows.rowBytes, 12));
    EXPECT_EQ(Count(kBlackPixel), 16);
    port.Resize(64, 48);
    EXPECT_FALSE(DIBDraw(dest, source, rows.bytes.data(), 4, 4, 11, 24));  // rows need 12 bytes
    EXPECT_EQ(Count(kBlackPixel), 16);
    port.Resize(64, 48);
    EXPECT_FALSE(DIBDraw(dest, {0, 0, 0, 0}, rows.bytes.data(), 0, 4, rows.rowBytes, 24));
    EXPECT_FALSE(DIBDraw(dest, {0, 0, 0, 0}, rows.bytes.data(), 4, 0, rows.rowBytes, 24));
    EXPECT_EQ(Count(kBlackPixel), 16);
}

TEST_F(DIBDrawTest, EnlargingRepeatsPixels)
{
    Rows rows = Numbered(2, 2);
    rows.Draw({0, 0, 4, 6}, {0, 0, 2, 2});
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(port.PixelAt(x, y), NumberedPixel(x / 2, y / 3)) << x << "," << y;
}

TEST_F(DIBDrawTest, ReducingPicksEveryNthPixel)
{
    Rows rows = Numbered(8, 8);
    rows.Draw({0, 0, 4, 2}, {0, 0, 8, 8});
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(port.PixelAt(x, 0), NumberedPixel(2 * x, 0));
        EXPECT_EQ(port.PixelAt(x, 1), NumberedPixel(2 * x, 4));
    }
}

TEST_F(DIBDrawTest, RowStepIsSinglePrecisionAndTruncated)
{
    // Ten rows onto three: step 10 / 3 = 3.3333333 gives rows 0, 3 and 6.
    Rows rows = Numbered(1, 10);
    rows.Draw({0, 0, 1, 3}, {0, 0, 1, 10});
    EXPECT_EQ(port.PixelAt(0, 0), NumberedPixel(0, 0));
    EXPECT_EQ(port.PixelAt(0, 1), NumberedPixel(0, 3));
    EXPECT_EQ(port.PixelAt(0, 2), NumberedPixel(0, 6));
    // Seven rows onto three: 7 / 3 = 2.3333333 gives 0, 2 and 4.
    rows.Draw({1, 0, 2, 3}, {0, 0, 1, 7});
    EXPECT_EQ(port.PixelAt(1, 1), NumberedPixel(0, 2));
    EXPECT_EQ(port.PixelAt(1, 2), NumberedPixel(0, 4));
}

TEST_F(DIBDrawTest, SourceOffsetsPickThePart)
{
    Rows rows = Numbered(10, 10);
    rows.Draw({0, 0, 3, 2}, {4, 6, 7, 8});
    EXPECT_EQ(port.PixelAt(0, 0), NumberedPixel(4, 6));
    EXPECT_EQ(port.PixelAt(2, 1), NumberedPixel(6, 7));
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 2, 1}));
}

TEST_F(DIBDrawTest, FlatDestinationStillDrawsOneRow)
{
    Rows rows = Numbered(4, 4);
    EXPECT_TRUE(rows.Draw({0, 10, 4, 10}, {0, 2, 4, 4}));
    EXPECT_EQ(port.PixelAt(0, 10), NumberedPixel(0, 2));
    EXPECT_EQ(Ink(), (InkBounds{0, 10, 3, 10}));
    port.Resize(64, 48);
    EXPECT_TRUE(rows.Draw({0, 10, 4, 5}, {0, 0, 4, 4}));
    EXPECT_EQ(Ink(), (InkBounds{0, 10, 3, 10}));
}

TEST_F(DIBDrawTest, NarrowOrInvertedDestinationDrawsNothing)
{
    Rows rows = Numbered(4, 4);
    EXPECT_TRUE(rows.Draw({10, 0, 10, 4}, {0, 0, 4, 4}));
    EXPECT_TRUE(rows.Draw({10, 0, 5, 4}, {0, 0, 4, 4}));
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DIBDrawTest, EmptySourceShowsItsFirstRowAndColumn)
{
    // A source of no height shows row `top` (at most the last row); no width, column `left`.
    Rows rows = Numbered(4, 4);
    rows.Draw({0, 0, 2, 3}, {1, 2, 1, 2});
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 2; ++x)
            EXPECT_EQ(port.PixelAt(x, y), NumberedPixel(1, 2));
    rows.Draw({0, 0, 2, 2}, {4, 4, 4, 4});  // the far corner itself: still within the picture
    EXPECT_EQ(port.PixelAt(1, 1), NumberedPixel(3, 3));
}

TEST_F(DIBDrawTest, ConvertedRowHolds8192Pixels)
{
    // A picture wider than the converted row: columns past it show the row's last pixel.
    Rows rows = Numbered(9000, 1);
    for (long x = 0; x < 9000; ++x)
        rows.Set(x, 0, uint32_t(x & 0xFFFF));
    EXPECT_TRUE(rows.Draw({0, 0, 10, 1}, {8188, 0, 8198, 1}));
    EXPECT_EQ(kDIBDrawRowPixels, 8192);
    EXPECT_EQ(port.PixelAt(0, 0), 0xFF000000u | 8188u);
    EXPECT_EQ(port.PixelAt(3, 0), 0xFF000000u | 8191u);
    EXPECT_EQ(port.PixelAt(4, 0), 0xFF000000u | 8191u);
    EXPECT_EQ(port.PixelAt(9, 0), 0xFF000000u | 8191u);
}

TEST_F(DIBDrawTest, ClippedToThePortAndTakesTheOrigin)
{
    Rows rows = Numbered(10, 10);
    port.SetOrigin(100, 200);
    rows.Draw({95, 195, 105, 205}, {0, 0, 10, 10});
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 4, 4}));
    EXPECT_EQ(port.PixelAt(0, 0), NumberedPixel(5, 5));
}

TEST_F(DIBDrawTest, HugeDestinationVisitsOnlyThePort)
{
    Rows rows = Numbered(2, 2);
    EXPECT_TRUE(rows.Draw({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, 0, 2, 2}));
    // The middle of the destination lies at the port: the picture's four quarters meet there.
    EXPECT_EQ(port.PixelAt(0, 0), NumberedPixel(1, 1));
    EXPECT_EQ(Count(NumberedPixel(1, 1)), 64 * 48);
    EXPECT_FALSE(rows.Draw({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, 0, 3, 2}));
    EXPECT_EQ(Count(kBlackPixel), 64 * 48);
}

TEST_F(DIBDrawTest, DrawsOnTheGivenPortOrTheCurrentOne)
{
    Rows rows = Numbered(2, 2);
    DrawPort other;
    other.Resize(4, 4);
    EXPECT_TRUE(rows.Draw({0, 0, 2, 2}, {0, 0, 2, 2}, &other));
    EXPECT_EQ(other.PixelAt(1, 1), NumberedPixel(1, 1));
    EXPECT_EQ(CountNot(), 0);

    SetDrawDC(nullptr);
    EXPECT_FALSE(rows.Draw({0, 0, 2, 2}, {0, 0, 2, 2}));
    DrawPort empty;
    EXPECT_FALSE(rows.Draw({0, 0, 2, 2}, {0, 0, 2, 2}, &empty));
    EXPECT_FALSE(rows.Draw({0, 0, 2, 2}, {0, 0, 9, 9}, &empty));
    EXPECT_EQ(empty.Width(), 0);
}

}  // namespace
