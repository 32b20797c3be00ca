// The in-place 1 2 1 / 2 4 2 / 1 2 1 blur of the raster image's colours and of its alpha.

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "adjust_pixels.h"
#include "cdib_pixels.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::RowChannel;

namespace {

using Bytes = std::vector<unsigned char>;
using Grid = std::vector<Bytes>;  // grid[row][x], row 0 = storage row 0

// Gives byte `channel` of every pixel its value from the grid.
void SetChannel(CDIB& image, int channel, const Grid& grid)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            image.GetBitsAdd(row)[x * pixelBytes + channel] = grid[row][x];
}

Grid Channel(const CDIB& image, int channel)
{
    Grid grid;
    for (int row = 0; row < image.GetHgt(); ++row)
        grid.push_back(RowChannel(image, row, channel));
    return grid;
}

// Uneven bytes: a straight-line pattern would come out of the kernel unchanged.
void FillUneven(CDIB& image)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            for (int b = 0; b < pixelBytes; ++b)
                image.GetBitsAdd(row)[x * pixelBytes + b] =
                    static_cast<unsigned char>((x * x * 13 + row * row * 7 + b * 50) % 256);
}

// ---------------------------------------------------------------------------------------------
// Blur

template <typename T>
class BlurAtColourDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(BlurAtColourDepth, pxtest::ColourDepths, pxtest::DepthNames);

TYPED_TEST(BlurAtColourDepth, ThreeByThreeImageChangesOnlyItsCentreByTheKernel)
{
    CDIB image(3, 3, TypeParam::kBits);
    // Blue: 1 + 2·2 + 3 + 2·4 + 4·5 + 2·6 + 7 + 2·8 + 200 = 271, 271 >> 4 = 16.
    SetChannel(image, 0, {{1, 2, 3}, {4, 5, 6}, {7, 8, 200}});
    // Green: all 255 sums to 4080, 4080 >> 4 = 255.
    SetChannel(image, 1, Grid(3, Bytes(3, 255)));
    // Red: only the centre, 4 · 255 = 1020, 1020 >> 4 = 63.
    SetChannel(image, 2, {{0, 0, 0}, {0, 255, 0}, {0, 0, 0}});
    if (TypeParam::kBits == 32)
        SetChannel(image, 3, {{9, 8, 7}, {6, 5, 4}, {3, 2, 1}});
    pxtest::MarkOutsideBytes(image, 0xB1);

    image.Blur(1);
    EXPECT_EQ(Channel(image, 0), (Grid{{1, 2, 3}, {4, 16, 6}, {7, 8, 200}}));
    EXPECT_EQ(Channel(image, 1), Grid(3, Bytes(3, 255)));
    EXPECT_EQ(Channel(image, 2), (Grid{{0, 0, 0}, {0, 63, 0}, {0, 0, 0}}));
    if (TypeParam::kBits == 32) {
        EXPECT_EQ(Channel(image, 3), (Grid{{9, 8, 7}, {6, 5, 4}, {3, 2, 1}}));
    }
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0xB1));
}

TYPED_TEST(BlurAtColourDepth, PixelToTheLeftIsReadAlreadyBlurred)
{
    CDIB image(4, 3, TypeParam::kBits);
    SetChannel(image, 1, {{0, 0, 0, 0}, {0, 160, 0, 0}, {0, 0, 0, 0}});
    image.Blur(0);
    // First centre: 4 · 160 = 640 → 40. The second reads that 40 to its left: 2 · 40 = 80 → 5
    // (from the untouched 160 it would be 20).
    EXPECT_EQ(Channel(image, 1), (Grid{{0, 0, 0, 0}, {0, 40, 5, 0}, {0, 0, 0, 0}}));
}

TYPED_TEST(BlurAtColourDepth, RowBeforeIsReadAlreadyBlurred)
{
    CDIB image(3, 4, TypeParam::kBits);
    SetChannel(image, 2, {{0, 0, 0}, {0, 160, 0}, {0, 0, 0}, {0, 0, 0}});
    image.Blur(0);
    // Storage row 1 is blurred first (640 → 40); row 2 then reads 40 below it: 80 → 5.
    EXPECT_EQ(Channel(image, 2), (Grid{{0, 0, 0}, {0, 40, 0}, {0, 5, 0}, {0, 0, 0}}));
}

TYPED_TEST(BlurAtColourDepth, PixelsRightAndAboveAreReadUnblurred)
{
    CDIB image(4, 4, TypeParam::kBits);
    // The 160 at (row 2, x 2) is read by the centre (1, 1) before its own turn comes.
    SetChannel(image, 0, {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 160, 0}, {0, 0, 0, 0}});
    image.Blur(0);
    // (1, 1): 160 → 10. (1, 2): 2 · 10 (left, blurred) + 2 · 160 (above) = 340 → 21.
    // (2, 1): 2 · 10 (below) + 21 (below right) + 2 · 160 (right) = 361 → 22.
    // (2, 2): 10 (below left) + 2 · 21 (below) + 2 · 22 (left) + 4 · 160 = 736 → 46.
    EXPECT_EQ(Channel(image, 0),
              (Grid{{0, 0, 0, 0}, {0, 10, 21, 0}, {0, 22, 46, 0}, {0, 0, 0, 0}}));
}

TYPED_TEST(BlurAtColourDepth, OuterRowsAndColumnsKeepTheirValues)
{
    CDIB image(7, 6, TypeParam::kBits);
    FillUneven(image);
    CDIB original(7, 6, TypeParam::kBits);
    ASSERT_TRUE(image.Copy(&original, false));
    image.Blur(3);
    EXPECT_EQ(pxtest::RowPixels(image, 0), pxtest::RowPixels(original, 0));
    EXPECT_EQ(pxtest::RowPixels(image, 5), pxtest::RowPixels(original, 5));
    for (int row = 1; row < 5; ++row) {
        EXPECT_EQ(pxtest::Pixel(image, 0, row), pxtest::Pixel(original, 0, row));
        EXPECT_EQ(pxtest::Pixel(image, 6, row), pxtest::Pixel(original, 6, row));
    }
    EXPECT_NE(AllRows(image), AllRows(original));
}

TYPED_TEST(BlurAtColourDepth, AlphaIsLeftAlone)
{
    CDIB image(6, 5, TypeParam::kBits);
    FillUneven(image);
    CDIB original(6, 5, TypeParam::kBits);
    ASSERT_TRUE(image.Copy(&original, false));
    image.Blur(1);
    if (TypeParam::kBits == 32) {
        EXPECT_EQ(Channel(image, 3), Channel(original, 3));
    }
    EXPECT_NE(Channel(image, 0), Channel(original, 0));
}

TYPED_TEST(BlurAtColourDepth, TwoPixelHighImageChangesNothing)
{
    CDIB image(9, 2, TypeParam::kBits);
    FillPattern(image);
    Bytes before = AllRows(image);
    image.Blur(1);
    EXPECT_EQ(AllRows(image), before);
}

TYPED_TEST(BlurAtColourDepth, ImagesWithoutAnInnerPixelChangeNothing)
{
    for (auto [width, height] : {std::pair{1, 1}, std::pair{2, 2}, std::pair{2, 9},
                                 std::pair{1, 8192}, std::pair{8192, 1}}) {
        CDIB image(width, height, TypeParam::kBits);
        FillPattern(image);
        pxtest::MarkOutsideBytes(image, 0x3C);
        Bytes before = AllRows(image);
        image.Blur(1);
        EXPECT_EQ(AllRows(image), before) << width << " × " << height;
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x3C)) << width << " × " << height;
    }
}

TYPED_TEST(BlurAtColourDepth, IntegerArgumentHasNoEffect)
{
    CDIB first(8, 6, TypeParam::kBits);
    FillUneven(first);
    CDIB second(8, 6, TypeParam::kBits);
    ASSERT_TRUE(first.Copy(&second, false));
    CDIB third(8, 6, TypeParam::kBits);
    ASSERT_TRUE(first.Copy(&third, false));
    first.Blur(0);
    second.Blur(7);
    third.Blur(-100);
    EXPECT_EQ(AllRows(second), AllRows(first));
    EXPECT_EQ(AllRows(third), AllRows(first));
    CDIB untouched(8, 6, TypeParam::kBits);
    FillUneven(untouched);
    EXPECT_NE(AllRows(first), AllRows(untouched));
}

TYPED_TEST(BlurAtColourDepth, WidestRowsStayInsideTheirPixels)
{
    for (int width : {8191, 8192}) {
        CDIB image(width, 3, TypeParam::kBits);
        FillPattern(image);
        pxtest::MarkOutsideBytes(image, 0x3C);
        image.Blur(1);
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x3C)) << width;
    }
}

TEST(Blur, UniformPictureStaysUniform)
{
    CDIB image(5, 5, 24);
    pxtest::FillChannel(image, 0, 200);
    pxtest::FillChannel(image, 1, 17);
    pxtest::FillChannel(image, 2, 255);
    Bytes before = AllRows(image);
    image.Blur(1);
    EXPECT_EQ(AllRows(image), before);
}

template <typename T>
class BlurAtPaletteDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(BlurAtPaletteDepth, pxtest::PaletteDepths, pxtest::DepthNames);

TYPED_TEST(BlurAtPaletteDepth, BlurAndBlurAlphaChangeNothing)
{
    CDIB image(5, 5, TypeParam::kBits);
    FillPattern(image);
    pxtest::MarkOutsideBytes(image, 0x3C);
    Bytes before = AllRows(image);
    image.Blur(1);
    EXPECT_EQ(AllRows(image), before);
    EXPECT_EQ(image.BlurAlpha(), 0);
    EXPECT_EQ(AllRows(image), before);
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x3C));
}

TEST(Blur, EmptyImageIsLeftEmpty)
{
    CDIB image(9000, 3, 24);
    ASSERT_EQ(image.header, nullptr);
    image.Blur(1);
    EXPECT_EQ(image.BlurAlpha(), 0);
    EXPECT_EQ(image.bits, nullptr);
}

// ---------------------------------------------------------------------------------------------
// BlurAlpha

TEST(BlurAlpha, BlursAlphaByTheSameKernelAndOrderAndLeavesColours)
{
    CDIB image(4, 3, 32);
    FillPattern(image);
    SetChannel(image, 3, {{0, 0, 0, 0}, {0, 160, 0, 0}, {0, 0, 0, 0}});
    CDIB original(4, 3, 32);
    ASSERT_TRUE(image.Copy(&original, false));
    image.BlurAlpha();
    // The pixel right of the 160 is 0 and stays 0; the 160 itself becomes 640 >> 4 = 40.
    EXPECT_EQ(Channel(image, 3), (Grid{{0, 0, 0, 0}, {0, 40, 0, 0}, {0, 0, 0, 0}}));
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_EQ(Channel(image, channel), Channel(original, channel));
}

TEST(BlurAlpha, LeftNeighbourIsReadAlreadyBlurred)
{
    CDIB image(4, 3, 32);
    SetChannel(image, 3, {{0, 0, 0, 0}, {0, 160, 16, 0}, {0, 0, 0, 0}});
    image.BlurAlpha();
    // 160 → 640 + 2 · 16 = 672 → 42; the 16 then reads that 42: 84 + 64 = 148 → 9.
    EXPECT_EQ(Channel(image, 3), (Grid{{0, 0, 0, 0}, {0, 42, 9, 0}, {0, 0, 0, 0}}));
}

TEST(BlurAlpha, TransparentPixelStaysTransparentAndIsStillRead)
{
    CDIB image(4, 3, 32);
    SetChannel(image, 3, {{160, 160, 160, 160}, {160, 0, 160, 160}, {160, 160, 160, 160}});
    image.BlurAlpha();
    // (1, 1) is skipped. (1, 2) reads it as 0 on its left:
    // 160 + 320 + 160 + 0 + 640 + 320 + 160 + 320 + 160 = 2240 → 140.
    EXPECT_EQ(Channel(image, 3),
              (Grid{{160, 160, 160, 160}, {160, 0, 140, 160}, {160, 160, 160, 160}}));
}

TEST(BlurAlpha, FaintPixelAmongTransparentOnesFollowsTheKernelToZero)
{
    CDIB image(3, 3, 32);
    SetChannel(image, 3, {{0, 0, 0}, {0, 15, 0}, {0, 0, 0}});
    image.BlurAlpha();
    // Only zero pixels are kept: 4 · 15 = 60 → 3.
    EXPECT_EQ(Channel(image, 3), (Grid{{0, 0, 0}, {0, 3, 0}, {0, 0, 0}}));
}

TEST(BlurAlpha, AnswersTheNumberOfRowsWithCentres)
{
    CDIB five(3, 5, 32);
    EXPECT_EQ(five.BlurAlpha(), 3);
    CDIB two(3, 2, 32);
    EXPECT_EQ(two.BlurAlpha(), 0);
}

TEST(BlurAlpha, TwentyFourBitImageIsLeftAlone)
{
    CDIB image(5, 5, 24);
    FillPattern(image);
    pxtest::MarkOutsideBytes(image, 0x3C);
    Bytes before = AllRows(image);
    EXPECT_EQ(image.BlurAlpha(), 0);
    EXPECT_EQ(AllRows(image), before);
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x3C));
}

TEST(BlurAlpha, SmallAndWideImagesStayInsideTheirPixels)
{
    for (auto [width, height] :
         {std::pair{1, 1}, std::pair{2, 2}, std::pair{3, 3}, std::pair{8192, 3}}) {
        CDIB image(width, height, 32);
        FillPattern(image);
        pxtest::MarkOutsideBytes(image, 0x3C);
        image.BlurAlpha();
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x3C)) << width << " × " << height;
    }
}

}  // namespace
