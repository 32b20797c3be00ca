// The alpha channel: a one-pixel edge of one alpha, and alpha taken from a matte.

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "adjust_pixels.h"
#include "cdib_pixels.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::Pixel;
using pxtest::RowChannel;
using pxtest::SetPixel;

namespace {

using Bytes = std::vector<unsigned char>;

// ---------------------------------------------------------------------------------------------
// SetAlphaEdge

TEST(SetAlphaEdge, SetsTheOuterRingAndLeavesTheInsideAndTheColours)
{
    CDIB image(5, 4, 32);
    FillPattern(image);
    pxtest::FillChannel(image, 3, 9);
    CDIB original(5, 4, 32);
    ASSERT_TRUE(image.Copy(&original, false));
    EXPECT_TRUE(image.SetAlphaEdge(200));

    EXPECT_EQ(RowChannel(image, 0, 3), Bytes(5, 200));
    EXPECT_EQ(RowChannel(image, 1, 3), (Bytes{200, 9, 9, 9, 200}));
    EXPECT_EQ(RowChannel(image, 2, 3), (Bytes{200, 9, 9, 9, 200}));
    EXPECT_EQ(RowChannel(image, 3, 3), Bytes(5, 200));
    for (int channel = 0; channel < 3; ++channel)
        for (int row = 0; row < 4; ++row)
            EXPECT_EQ(RowChannel(image, row, channel), RowChannel(original, row, channel));
}

TEST(SetAlphaEdge, UsesTheLowByteOfTheAlpha)
{
    CDIB image(3, 3, 32);
    EXPECT_TRUE(image.SetAlphaEdge(0x107));
    EXPECT_EQ(RowChannel(image, 0, 3), Bytes(3, 7));
    EXPECT_TRUE(image.SetAlphaEdge(-1));
    EXPECT_EQ(RowChannel(image, 1, 3), (Bytes{255, 0, 255}));
}

TEST(SetAlphaEdge, ThinImagesAreAllEdge)
{
    for (auto [width, height] : {std::pair{1, 1}, std::pair{1, 6}, std::pair{6, 1}, std::pair{2, 2},
                                 std::pair{8192, 3}, std::pair{3, 8192}}) {
        CDIB image(width, height, 32);
        pxtest::FillChannel(image, 3, 1);
        pxtest::MarkOutsideBytes(image, 0x42);
        EXPECT_TRUE(image.SetAlphaEdge(0));
        for (int row = 0; row < height; ++row) {
            Bytes alpha = RowChannel(image, row, 3);
            bool inner = row > 0 && row < height - 1;
            for (int x = 0; x < width; ++x) {
                bool edge = !inner || x == 0 || x == width - 1;
                ASSERT_EQ(alpha[x], edge ? 0 : 1)
                    << width << " × " << height << " at " << x << ", " << row;
            }
        }
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x42));
    }
}

TEST(SetAlphaEdge, ImageWithoutAlphaAnswersFalseAndIsUnchanged)
{
    for (int bits : {8, 16, 24}) {
        CDIB image(3, 3, bits);
        FillPattern(image);
        pxtest::MarkOutsideBytes(image, 0x42);
        Bytes before = AllRows(image);
        EXPECT_FALSE(image.SetAlphaEdge(255)) << bits << " bits";
        EXPECT_EQ(AllRows(image), before) << bits << " bits";
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x42));
    }
}

TEST(SetAlphaEdge, EmptyImageAnswersFalse)
{
    CDIB image(0, 0, 32);
    EXPECT_FALSE(image.SetAlphaEdge(255));
}

// ---------------------------------------------------------------------------------------------
// AddAlpha

// An 8-bit matte whose index at (x, row) is x + 10 × row + 1.
void FillMatteIndices(CDIB& matte)
{
    for (int row = 0; row < matte.GetHgt(); ++row)
        for (long x = 0; x < matte.GetWid(); ++x)
            matte.GetBitsAdd(row)[x] = static_cast<unsigned char>(x + 10 * row + 1);
}

TEST(AddAlpha, TwentyFourBitImageGainsAFourthByteFromTheMatte)
{
    CDIB image(3, 2, 24);
    FillPattern(image);
    CDIB original(3, 2, 24);
    ASSERT_TRUE(image.Copy(&original, false));
    CDIB matte(3, 2, 8);
    FillMatteIndices(matte);

    EXPECT_TRUE(image.AddAlpha(&matte));
    ASSERT_EQ(image.GetBitCount(), 32);
    ASSERT_EQ(image.GetWid(), 3);
    ASSERT_EQ(image.GetHgt(), 2);
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 3; ++x) {
            Bytes expected = Pixel(original, x, row);
            expected.push_back(static_cast<unsigned char>(x + 10 * row + 1));
            EXPECT_EQ(Pixel(image, x, row), expected) << x << ", " << row;
        }
}

TEST(AddAlpha, AlphaIsTheFirstByteOfEachMattePixelAtEveryMatteDepth)
{
    for (int matteBits : {8, 16, 24, 32}) {
        CDIB image(3, 2, 24);
        FillPattern(image);
        CDIB matte(3, 2, matteBits);
        // Blue (or index, or low byte of the word) 40 + x + row; the other bytes far away.
        int matteBytes = matteBits / 8;
        for (int row = 0; row < 2; ++row)
            for (long x = 0; x < 3; ++x) {
                Bytes pixel(matteBytes, 250);
                pixel[0] = static_cast<unsigned char>(40 + x + row);
                SetPixel(matte, x, row, pixel);
            }
        EXPECT_TRUE(image.AddAlpha(&matte)) << matteBits << "-bit matte";
        for (int row = 0; row < 2; ++row)
            EXPECT_EQ(RowChannel(image, row, 3), (Bytes{static_cast<unsigned char>(40 + row),
                                                        static_cast<unsigned char>(41 + row),
                                                        static_cast<unsigned char>(42 + row)}))
                << matteBits << "-bit matte, row " << row;
    }
}

TEST(AddAlpha, ThirtyTwoBitImageKeepsItsColoursAndReplacesItsAlpha)
{
    CDIB image(2, 2, 32);
    SetPixel(image, 0, 0, {1, 2, 3, 4});
    SetPixel(image, 1, 0, {5, 6, 7, 8});
    SetPixel(image, 0, 1, {9, 10, 11, 12});
    SetPixel(image, 1, 1, {13, 14, 15, 16});
    CDIB matte(2, 2, 32);
    FillPattern(matte);
    pxtest::FillChannel(matte, 0, 77);
    EXPECT_TRUE(image.AddAlpha(&matte));
    EXPECT_EQ(Pixel(image, 0, 0), (Bytes{1, 2, 3, 77}));
    EXPECT_EQ(Pixel(image, 1, 0), (Bytes{5, 6, 7, 77}));
    EXPECT_EQ(Pixel(image, 0, 1), (Bytes{9, 10, 11, 77}));
    EXPECT_EQ(Pixel(image, 1, 1), (Bytes{13, 14, 15, 77}));
}

TEST(AddAlpha, PaletteImageTakesItsPaletteColours)
{
    CDIB image(2, 1, 8);
    image.GetPalette()[3] = PaletteEntry{30, 60, 90, 0};
    image.GetPalette()[200] = PaletteEntry{1, 2, 3, 0};
    image.GetBitsAdd(0)[0] = 3;
    image.GetBitsAdd(0)[1] = 200;
    CDIB matte(2, 1, 8);
    matte.GetBitsAdd(0)[0] = 128;
    matte.GetBitsAdd(0)[1] = 255;
    EXPECT_TRUE(image.AddAlpha(&matte));
    ASSERT_EQ(image.GetBitCount(), 32);
    EXPECT_EQ(Pixel(image, 0, 0), (Bytes{30, 60, 90, 128}));
    EXPECT_EQ(Pixel(image, 1, 0), (Bytes{1, 2, 3, 255}));
}

TEST(AddAlpha, FiveFiveFiveImageTakesItsFieldsShiftedUp)
{
    CDIB image(2, 1, 16);
    // Red 31, green 1, blue 2: 0b0'11111'00001'00010 = 0x7C22, low byte first.
    SetPixel(image, 0, 0, {0x22, 0x7C});
    // Red 0, green 31, blue 31: 0x03FF.
    SetPixel(image, 1, 0, {0xFF, 0x03});
    CDIB matte(2, 1, 24);
    pxtest::FillChannel(matte, 0, 99);
    EXPECT_TRUE(image.AddAlpha(&matte));
    EXPECT_EQ(Pixel(image, 0, 0), (Bytes{16, 8, 248, 99}));
    EXPECT_EQ(Pixel(image, 1, 0), (Bytes{248, 248, 0, 99}));
}

TEST(AddAlpha, MatteOfAnotherSizeAnswersFalseAndLeavesTheImage)
{
    CDIB image(4, 3, 24);
    FillPattern(image);
    Bytes before = AllRows(image);
    CDIB wider(5, 3, 8);
    CDIB higher(4, 4, 8);
    for (CDIB* matte : {&wider, &higher}) {
        EXPECT_FALSE(image.AddAlpha(matte));
        EXPECT_EQ(image.GetBitCount(), 24);
        EXPECT_EQ(AllRows(image), before);
    }
}

TEST(AddAlpha, MissingOrEmptyMatteAnswersFalseAndLeavesTheImage)
{
    CDIB image(4, 3, 24);
    FillPattern(image);
    Bytes before = AllRows(image);
    EXPECT_FALSE(image.AddAlpha(nullptr));
    CDIB empty(0, 0, 8);
    EXPECT_FALSE(image.AddAlpha(&empty));
    EXPECT_EQ(image.GetBitCount(), 24);
    EXPECT_EQ(AllRows(image), before);
}

TEST(AddAlpha, EmptyImageAnswersFalse)
{
    CDIB image(0, 0, 24);
    CDIB matte(1, 1, 8);
    EXPECT_FALSE(image.AddAlpha(&matte));
    EXPECT_EQ(image.header, nullptr);
}

TEST(AddAlpha, ImageAsItsOwnMatteTakesAlphaFromItsOldFirstBytes)
{
    CDIB image(3, 2, 24);
    FillPattern(image);
    CDIB original(3, 2, 24);
    ASSERT_TRUE(image.Copy(&original, false));
    EXPECT_TRUE(image.AddAlpha(&image));
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 3; ++x) {
            Bytes expected = Pixel(original, x, row);
            expected.push_back(expected[0]);
            EXPECT_EQ(Pixel(image, x, row), expected) << x << ", " << row;
        }
}

TEST(AddAlpha, WidestOddRowsStayInsideEveryBlock)
{
    for (int imageBits : {8, 16, 24, 32}) {
        CDIB image(8191, 2, imageBits);
        FillPattern(image);
        CDIB matte(8191, 2, 8);
        FillPattern(matte);
        matte.GetBitsAdd(1)[8190] = 201;
        pxtest::MarkOutsideBytes(matte, 0x24);
        EXPECT_TRUE(image.AddAlpha(&matte)) << imageBits;
        EXPECT_EQ(Pixel(image, 8190, 1)[3], 201) << imageBits;
        EXPECT_TRUE(pxtest::OutsideBytesAre(matte, 0x24)) << imageBits;
    }
    CDIB wide(8192, 1, 24);
    CDIB matte(8192, 1, 32);
    EXPECT_TRUE(wide.AddAlpha(&matte));
}

}  // namespace
