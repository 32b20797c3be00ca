#include "image/cdib.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <vector>

#include "image/cdib_pixels.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::IsAllZero;
using pxtest::Pixel;
using pxtest::RowPixels;
using pxtest::SetPixel;
using pxtest::SpyDIB;

using Bytes = std::vector<unsigned char>;

namespace {

Bytes Black(int pixelBytes) { return Bytes(static_cast<size_t>(pixelBytes), 0); }

// The depth a scaled copy of a source of `bits` is made in: its own, or 32 for 8-bit sources,
// since nothing is scaled into an 8-bit image.
int ScaledDepth(int bits) { return bits == 8 ? 32 : bits; }

// Source pixel (x, row) as it must arrive in an image of ScaledDepth: 8-bit pixels through the
// palette with alpha 0; 16-bit words lose their unused top bit; the others unchanged.
Bytes ScaledPixel(const CDIB& source, long x, int row)
{
    Bytes pixel = Pixel(source, x, row);
    if (source.GetBitCount() == 8) {
        const PaletteEntry& entry = source.GetPalette()[pixel[0]];
        return Bytes{entry.blue, entry.green, entry.red, 0};
    }
    if (source.GetBitCount() == 16)
        pixel[1] &= 0x7F;
    return pixel;
}

}  // namespace

// ---- CopyCrop: every depth ----

template <typename T>
class CopyCropAtEveryDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(CopyCropAtEveryDepth, pxtest::AllDepths, pxtest::DepthNames);

TYPED_TEST(CopyCropAtEveryDepth, WholeRectangleGivesACopyShiftedOneLineDownWithABlackTopLine)
{
    CDIB source(5, 4, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{0, 0, 5, 4}));
    ASSERT_EQ(destination.GetWid(), 5);
    ASSERT_EQ(destination.GetHgt(), 4);
    ASSERT_EQ(destination.GetBitCount(), TypeParam::kBits);
    // Storage row 3 is the top line of the picture.
    EXPECT_TRUE(IsAllZero(RowPixels(destination, 3)));
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(RowPixels(destination, row), RowPixels(source, row + 1)) << row;
}

TYPED_TEST(CopyCropAtEveryDepth, RectangleOneLineLowerLinesUpButNeverReachesTheBottomRow)
{
    // Picture line y comes from storage row height - y, and y = height is outside, so the
    // source's storage row 0 is never read.
    CDIB source(6, 3, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{0, 1, 6, 4}));
    for (int row = 1; row < 3; ++row)
        EXPECT_EQ(RowPixels(destination, row), RowPixels(source, row)) << row;
    EXPECT_TRUE(IsAllZero(RowPixels(destination, 0)));
}

TYPED_TEST(CopyCropAtEveryDepth, InnerRectanglePicksTheRightPixels)
{
    CDIB source(5, 4, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    // Picture lines 1 and 2, columns 1 to 3.
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{1, 1, 4, 3}));
    ASSERT_EQ(destination.GetWid(), 3);
    ASSERT_EQ(destination.GetHgt(), 2);
    for (long x = 0; x < 3; ++x) {
        // Line 1 (top, storage row 1) from storage row 4 - 1; line 2 from storage row 4 - 2.
        EXPECT_EQ(Pixel(destination, x, 1), Pixel(source, x + 1, 3)) << x;
        EXPECT_EQ(Pixel(destination, x, 0), Pixel(source, x + 1, 2)) << x;
    }
}

TYPED_TEST(CopyCropAtEveryDepth, PartLeftOfThePictureIsBlack)
{
    CDIB source(5, 4, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{-2, 1, 3, 2}));
    ASSERT_EQ(destination.GetWid(), 5);
    EXPECT_EQ(Pixel(destination, 0, 0), Black(TypeParam::kBytes));
    EXPECT_EQ(Pixel(destination, 1, 0), Black(TypeParam::kBytes));
    for (long x = 2; x < 5; ++x)
        EXPECT_EQ(Pixel(destination, x, 0), Pixel(source, x - 2, 3)) << x;
}

TYPED_TEST(CopyCropAtEveryDepth, PartFarLeftOfThePictureIsBlack)
{
    CDIB source(5, 4, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    // Three picture widths to the left, then two columns of the picture.
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{-15, 2, 2, 3}));
    ASSERT_EQ(destination.GetWid(), 17);
    for (long x = 0; x < 15; ++x)
        EXPECT_EQ(Pixel(destination, x, 0), Black(TypeParam::kBytes)) << x;
    EXPECT_EQ(Pixel(destination, 15, 0), Pixel(source, 0, 2));
    EXPECT_EQ(Pixel(destination, 16, 0), Pixel(source, 1, 2));
}

TYPED_TEST(CopyCropAtEveryDepth, PartRightOfThePictureIsBlack)
{
    CDIB source(5, 4, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{3, 1, 12, 2}));
    ASSERT_EQ(destination.GetWid(), 9);
    EXPECT_EQ(Pixel(destination, 0, 0), Pixel(source, 3, 3));
    EXPECT_EQ(Pixel(destination, 1, 0), Pixel(source, 4, 3));
    for (long x = 2; x < 9; ++x)
        EXPECT_EQ(Pixel(destination, x, 0), Black(TypeParam::kBytes)) << x;
}

TYPED_TEST(CopyCropAtEveryDepth, LinesAboveAndBelowThePictureAreBlack)
{
    CDIB source(3, 4, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    // Picture lines -2 to 5: only lines 1 to 3 exist in the source (line 0 is the black one).
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{0, -2, 3, 6}));
    ASSERT_EQ(destination.GetHgt(), 8);
    for (int line = -2; line < 6; ++line) {
        int row = 8 - 1 - (line + 2);
        if (line > 0 && line < 4)
            EXPECT_EQ(RowPixels(destination, row), RowPixels(source, 4 - line)) << line;
        else
            EXPECT_TRUE(IsAllZero(RowPixels(destination, row))) << line;
    }
}

TYPED_TEST(CopyCropAtEveryDepth, RectangleWhollyOutsideThePictureIsAllBlack)
{
    CDIB source(4, 4, TypeParam::kBits);
    FillPattern(source);
    const tagRECT outside[] = {
        {10, 0, 14, 4},    // right
        {-40, 1, -36, 3},  // far left
        {0, -20, 4, -10},  // above
        {0, 30, 4, 32},    // below
        {INT_MAX - 8, INT_MAX - 8, INT_MAX, INT_MAX},
        {INT_MIN, INT_MIN, INT_MIN + 16, INT_MIN + 2},
        {-8192, 2, 0, 3},  // the largest side, ending at the picture's edge
    };
    for (const tagRECT& rectangle : outside) {
        CDIB destination(1, 1, 24);
        ASSERT_TRUE(source.CopyCrop(&destination, rectangle)) << rectangle.left;
        EXPECT_EQ(destination.GetWid(), rectangle.right - rectangle.left);
        EXPECT_TRUE(IsAllZero(AllRows(destination))) << rectangle.left;
    }
}

TYPED_TEST(CopyCropAtEveryDepth, SameShapedDestinationIsRewrittenEntirely)
{
    CDIB source(4, 3, TypeParam::kBits);
    CDIB destination(4, 3, TypeParam::kBits);
    FillPattern(destination);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{0, 0, 4, 3}));
    EXPECT_TRUE(IsAllZero(AllRows(destination)));
}

// ---- CopyCrop ----

TEST(CopyCrop, EightBitCopiesTheWholePalette)
{
    CDIB source(4, 4, 8);
    for (int i = 0; i < 256; ++i)
        source.GetPalette()[i] = PaletteEntry{static_cast<uint8_t>(255 - i), 1, 2, 0};
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{0, 0, 2, 2}));
    EXPECT_EQ(0, std::memcmp(destination.GetPalette(), source.GetPalette(), 1024));
}

TEST(CopyCrop, SourceRowPaddingNeverShowsRightOfThePicture)
{
    CDIB source(3, 2, 8);  // 4-byte rows: one byte of padding
    const unsigned char row[4] = {9, 8, 7, 0xFF};
    source.PutLine(1, row);
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{0, 1, 5, 2}));
    EXPECT_EQ(RowPixels(destination, 0), (Bytes{9, 8, 7, 0, 0}));
}

TEST(CopyCrop, EmptyReversedOrOversizedRectanglesAreRefused)
{
    CDIB source(4, 4, 24);
    CDIB destination(2, 2, 24);
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{2, 0, 2, 4}));
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{0, 3, 4, 3}));
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{3, 0, 1, 2}));
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{0, 0, 8193, 2}));
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{INT_MIN, INT_MIN, INT_MAX, INT_MAX}));
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{INT_MAX, 0, INT_MIN, 2}));
    EXPECT_EQ(destination.GetWid(), 2);  // every Create refused: the destination is unchanged
}

TEST(CopyCrop, NullOrSameDestinationIsRefused)
{
    CDIB source(4, 4, 24);
    FillPattern(source);
    Bytes before = AllRows(source);
    EXPECT_FALSE(source.CopyCrop(nullptr, tagRECT{0, 0, 2, 2}));
    EXPECT_FALSE(source.CopyCrop(&source, tagRECT{0, 0, 2, 2}));
    EXPECT_EQ(source.GetWid(), 4);
    EXPECT_EQ(AllRows(source), before);
}

TEST(CopyCrop, CallsTheDestinationsCreateThroughTheVirtualTable)
{
    CDIB source(10, 10, 32);
    SpyDIB destination;
    ASSERT_TRUE(source.CopyCrop(&destination, tagRECT{2, 3, 9, 5}));
    EXPECT_EQ(destination.calls, 1);
    EXPECT_EQ(destination.lastWidth, 7);
    EXPECT_EQ(destination.lastHeight, 2);
    EXPECT_EQ(destination.lastBits, 32);
}

TEST(CopyCrop, FailsWhenTheDestinationsCreateFails)
{
    CDIB source(10, 10, 24);
    FillPattern(source);
    SpyDIB destination;
    destination.fail = true;
    EXPECT_FALSE(source.CopyCrop(&destination, tagRECT{0, 0, 1, 1}));
    EXPECT_EQ(destination.calls, 1);
    EXPECT_TRUE(IsAllZero(AllRows(destination)));  // the 1 × 1 image it started as
}

// ---- CopyScale: every depth ----

template <typename T>
class CopyScaleAtEveryDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(CopyScaleAtEveryDepth, pxtest::AllDepths, pxtest::DepthNames);

TYPED_TEST(CopyScaleAtEveryDepth, EqualSizeWithoutBorderIsAnExactCopy)
{
    CDIB source(5, 3, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(5, 3, TypeParam::kBits);
    ASSERT_TRUE(source.CopyScale(&destination, 0x00FFFFFF, 0));
    EXPECT_EQ(AllRows(destination), AllRows(source));
}

TYPED_TEST(CopyScaleAtEveryDepth, OnePixelFillsEveryPixelOfAThirtyTwoBitImage)
{
    CDIB source(1, 1, TypeParam::kBits);
    Bytes expected;  // blue, green, red, alpha as the destination must hold them
    switch (TypeParam::kBits) {
    case 8:
        source.GetPalette()[9] = PaletteEntry{30, 20, 10, 0};
        SetPixel(source, 0, 0, {9});
        expected = {30, 20, 10, 0};
        break;
    case 16:
        // Red 3, green 5, blue 7 in a little-endian 5-5-5 word: 0x0CA7.
        SetPixel(source, 0, 0, {0xA7, 0x0C});
        expected = {7 << 3, 5 << 3, 3 << 3, 0};
        break;
    case 24:
        SetPixel(source, 0, 0, {11, 22, 33});
        expected = {11, 22, 33, 0};
        break;
    default:
        SetPixel(source, 0, 0, {11, 22, 33, 44});
        expected = {11, 22, 33, 44};
        break;
    }
    CDIB destination(40, 30, 32);
    ASSERT_TRUE(source.CopyScale(&destination, 0x00FFFFFF, 0));
    for (int row = 0; row < 30; ++row)
        for (long x = 0; x < 40; ++x)
            ASSERT_EQ(Pixel(destination, x, row), expected) << x << "," << row;
}

TYPED_TEST(CopyScaleAtEveryDepth, BorderOfTenHasTheBorderColourOnEverySide)
{
    CDIB source(4, 4, TypeParam::kBits);
    FillPattern(source);
    int bits = ScaledDepth(TypeParam::kBits);
    CDIB destination(40, 30, bits);
    // Red 0x11, green 0x22, blue 0x33.
    ASSERT_TRUE(source.CopyScale(&destination, 0x00332211, 10));
    Bytes border;
    switch (bits) {
    case 16:
        border = {0x86, 0x08};  // (0x33 >> 3) | (0x20 << 2) | (0x10 << 7)
        break;
    case 24:
        border = {0x33, 0x22, 0x11};
        break;
    default:
        border = {0x33, 0x22, 0x11, 0};
        break;
    }
    float stepX = 4.0f / 20.0f;
    float stepY = 4.0f / 10.0f;
    for (int row = 0; row < 30; ++row) {
        for (long x = 0; x < 40; ++x) {
            if (x < 10 || x >= 30 || row < 10 || row >= 20) {
                ASSERT_EQ(Pixel(destination, x, row), border) << x << "," << row;
            } else {
                auto sourceX = static_cast<long>(static_cast<float>(x - 10) * stepX);
                auto sourceRow = static_cast<int>(static_cast<float>(row - 10) * stepY);
                ASSERT_EQ(Pixel(destination, x, row), ScaledPixel(source, sourceX, sourceRow))
                    << x << "," << row;
            }
        }
    }
}

TYPED_TEST(CopyScaleAtEveryDepth, DoubledAndHalvedAgainGivesTheImageBack)
{
    int bits = ScaledDepth(TypeParam::kBits);
    CDIB source(5, 3, TypeParam::kBits);
    FillPattern(source);
    CDIB large(10, 6, bits);
    CDIB back(5, 3, bits);
    ASSERT_TRUE(source.CopyScale(&large, 0, 0));
    ASSERT_TRUE(large.CopyScale(&back, 0, 0));
    for (int row = 0; row < 3; ++row) {
        for (long x = 0; x < 5; ++x) {
            Bytes expected = ScaledPixel(source, x, row);
            EXPECT_EQ(Pixel(back, x, row), expected) << x << "," << row;
            EXPECT_EQ(Pixel(large, 2 * x + 1, 2 * row + 1), expected) << x << "," << row;
        }
    }
}

// ---- CopyScale ----

TEST(CopyScale, HalvingTakesEverySecondPixelFromTheFirst)
{
    CDIB source(4, 4, 24);
    FillPattern(source);
    CDIB destination(2, 2, 24);
    ASSERT_TRUE(source.CopyScale(&destination, 0, 0));
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 2; ++x)
            EXPECT_EQ(Pixel(destination, x, row), Pixel(source, 2 * x, 2 * row));
}

TEST(CopyScale, SamplingTruncatesInSinglePrecision)
{
    // Steps of 4/6: columns 0, 0, 1, 2, 2, 3 (the fourth is 3 × 0.6666667f = 2.0000002).
    CDIB source(4, 1, 24);
    FillPattern(source);
    CDIB destination(6, 1, 24);
    ASSERT_TRUE(source.CopyScale(&destination, 0, 0));
    const long expected[] = {0, 0, 1, 2, 2, 3};
    for (long x = 0; x < 6; ++x)
        EXPECT_EQ(Pixel(destination, x, 0), Pixel(source, expected[x], 0)) << x;
}

TEST(CopyScale, SixteenBitWordsAreReadLittleEndian)
{
    CDIB source(3, 1, 16);
    SetPixel(source, 0, 0, {0x00, 0x7C});  // red
    SetPixel(source, 1, 0, {0xE0, 0x03});  // green
    SetPixel(source, 2, 0, {0x1F, 0x00});  // blue
    CDIB destination(3, 1, 24);
    ASSERT_TRUE(source.CopyScale(&destination, 0, 0));
    EXPECT_EQ(Pixel(destination, 0, 0), (Bytes{0, 0, 0xF8}));
    EXPECT_EQ(Pixel(destination, 1, 0), (Bytes{0, 0xF8, 0}));
    EXPECT_EQ(Pixel(destination, 2, 0), (Bytes{0xF8, 0, 0}));
}

TEST(CopyScale, SixteenBitWordsAreWrittenLittleEndian)
{
    CDIB source(1, 1, 24);
    SetPixel(source, 0, 0, {0x08, 0x80, 0xFF});  // blue, green, red
    CDIB destination(2, 1, 16);
    ASSERT_TRUE(source.CopyScale(&destination, 0, 0));
    // (0x08 >> 3) | (0x80 << 2) | (0xF8 << 7) = 0x7E01
    EXPECT_EQ(Pixel(destination, 0, 0), (Bytes{0x01, 0x7E}));
    EXPECT_EQ(Pixel(destination, 1, 0), (Bytes{0x01, 0x7E}));
}

TEST(CopyScale, ThirtyTwoBitSourceKeepsItsAlphaAndTheBorderHasNone)
{
    CDIB source(1, 1, 32);
    SetPixel(source, 0, 0, {1, 2, 3, 200});
    CDIB destination(3, 3, 32);
    ASSERT_TRUE(source.CopyScale(&destination, 0x00040506, 1));
    EXPECT_EQ(Pixel(destination, 1, 1), (Bytes{1, 2, 3, 200}));
    EXPECT_EQ(Pixel(destination, 0, 0), (Bytes{4, 5, 6, 0}));
    EXPECT_EQ(Pixel(destination, 2, 1), (Bytes{4, 5, 6, 0}));
}

TEST(CopyScale, DestinationOfAnotherSizeAndDepth)
{
    CDIB source(3, 5, 8);
    source.GetPalette()[1] = PaletteEntry{10, 20, 30, 0};
    source.GetPalette()[2] = PaletteEntry{40, 50, 60, 0};
    for (int row = 0; row < 5; ++row)
        source.PutLine(row, Bytes{1, 2, 1, 0}.data());
    CDIB destination(7, 2, 24);
    ASSERT_TRUE(source.CopyScale(&destination, 0, 0));
    // Step 3/7: columns 0, 0, 0, 1, 1, 2, 2.
    const Bytes one{10, 20, 30};
    const Bytes two{40, 50, 60};
    for (int row = 0; row < 2; ++row) {
        EXPECT_EQ(Pixel(destination, 2, row), one);
        EXPECT_EQ(Pixel(destination, 3, row), two);
        EXPECT_EQ(Pixel(destination, 4, row), two);
        EXPECT_EQ(Pixel(destination, 5, row), one);
    }
}

TEST(CopyScale, EightBitDestinationIsRefused)
{
    CDIB source(4, 4, 24);
    FillPattern(source);
    CDIB destination(8, 8, 8);
    EXPECT_FALSE(source.CopyScale(&destination, 0x00FFFFFF, 0));
    EXPECT_FALSE(source.CopyScale(&destination, 0x00FFFFFF, 2));
    EXPECT_TRUE(IsAllZero(AllRows(destination)));
}

TEST(CopyScale, EightBitToEightBitOfTheSameShapeIsStillACopy)
{
    CDIB source(4, 4, 8);
    FillPattern(source);
    CDIB destination(4, 4, 8);
    ASSERT_TRUE(source.CopyScale(&destination, 0, 0));
    EXPECT_EQ(AllRows(destination), AllRows(source));
}

TEST(CopyScale, BorderOfHalfTheSizeOrMoreFillsEverything)
{
    CDIB source(4, 4, 24);
    FillPattern(source);
    for (int border : {3, 4, 1000, INT_MAX}) {
        CDIB destination(6, 6, 24);
        ASSERT_TRUE(source.CopyScale(&destination, 0x00030201, border)) << border;
        for (int row = 0; row < 6; ++row)
            for (long x = 0; x < 6; ++x)
                ASSERT_EQ(Pixel(destination, x, row), (Bytes{3, 2, 1})) << border;
    }
}

TEST(CopyScale, NegativeBorderScalesPastTheEdgesWithoutOverrun)
{
    CDIB source(4, 4, 24);
    FillPattern(source);
    CDIB destination(4, 4, 24);
    // The scaled area is 6 × 6 centred on the destination; its outer pixels fall outside.
    ASSERT_TRUE(source.CopyScale(&destination, 0, -1));
    const long expected[] = {0, 1, 2, 2};  // (x + 1) × 4/6, truncated
    for (int row = 0; row < 4; ++row)
        for (long x = 0; x < 4; ++x)
            EXPECT_EQ(Pixel(destination, x, row),
                      Pixel(source, expected[x], static_cast<int>(expected[row])));

    for (int border : {-1000, -100000, INT_MIN}) {
        CDIB large(9, 7, 32);
        ASSERT_TRUE(source.CopyScale(&large, 0, border)) << border;
        // Every pixel is one of the source's pixels: nothing is left black.
        for (int row = 0; row < 7; ++row)
            for (long x = 0; x < 9; ++x)
                EXPECT_NE(Pixel(large, x, row)[0], 0) << border;
    }
}

TEST(CopyScale, NullEmptyOrSameImageIsRefused)
{
    CDIB source(4, 4, 24);
    FillPattern(source);
    Bytes before = AllRows(source);
    CDIB empty(0, 0, 24);
    EXPECT_FALSE(source.CopyScale(nullptr, 0, 0));
    EXPECT_FALSE(source.CopyScale(&empty, 0, 0));
    EXPECT_FALSE(empty.CopyScale(&source, 0, 0));
    EXPECT_FALSE(source.CopyScale(&source, 0, 1));
    EXPECT_TRUE(source.CopyScale(&source, 0, 0));  // the plain copy onto itself
    EXPECT_EQ(AllRows(source), before);
}

// ---- Create8Bit ----

template <typename T>
class Create8BitAtEveryDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(Create8BitAtEveryDepth, pxtest::AllDepths, pxtest::DepthNames);

TYPED_TEST(Create8BitAtEveryDepth, MakesAnEightBitImageOfTheSameSize)
{
    CDIB source(7, 3, TypeParam::kBits);
    FillPattern(source);
    for (bool grey : {true, false}) {
        CDIB destination(1, 1, 24);
        ASSERT_TRUE(source.Create8Bit(&destination, grey));
        EXPECT_EQ(destination.GetWid(), 7);
        EXPECT_EQ(destination.GetHgt(), 3);
        EXPECT_EQ(destination.GetBitCount(), 8);
    }
}

TEST(Create8Bit, GreyIndexIsTruncatedInSinglePrecision)
{
    CDIB source(5, 1, 24);
    SetPixel(source, 0, 0, {200, 150, 100});  // blue, green, red: 140.5
    SetPixel(source, 1, 0, {0, 200, 0});      // 117.99999 in single precision
    SetPixel(source, 2, 0, {255, 255, 255});
    SetPixel(source, 3, 0, {30, 20, 10});  // 18.099998
    SetPixel(source, 4, 0, {0, 0, 200});   // 60.000004
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.Create8Bit(&destination, true));
    EXPECT_EQ(RowPixels(destination, 0), (Bytes{140, 117, 255, 18, 60}));
}

TEST(Create8Bit, GreyPaletteIsARamp)
{
    CDIB source(2, 2, 24);
    CDIB destination(1, 1, 8);
    destination.GetPalette()[5] = PaletteEntry{0, 0, 0, 0};
    ASSERT_TRUE(source.Create8Bit(&destination, true));
    for (int i = 0; i < 256; ++i) {
        const PaletteEntry& entry = destination.GetPalette()[i];
        EXPECT_EQ(entry.blue, i);
        EXPECT_EQ(entry.green, i);
        EXPECT_EQ(entry.red, i);
        EXPECT_EQ(entry.reserved, 0);
    }
}

TEST(Create8Bit, ColourIndexIsThreeThreeTwo)
{
    CDIB source(3, 1, 24);
    SetPixel(source, 0, 0, {0xC0, 0x40, 0xA0});  // blue, green, red
    SetPixel(source, 1, 0, {0xFF, 0xFF, 0xFF});
    SetPixel(source, 2, 0, {0x3F, 0x1F, 0x1F});
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.Create8Bit(&destination, false));
    EXPECT_EQ(RowPixels(destination, 0), (Bytes{0xAB, 0xFF, 0x00}));
}

TEST(Create8Bit, ColourPaletteSpreadsTheThreeThreeTwoBits)
{
    CDIB source(2, 2, 24);
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.Create8Bit(&destination, false));
    const PaletteEntry* palette = destination.GetPalette();
    EXPECT_EQ(palette[0xAB].red, 0xA0);
    EXPECT_EQ(palette[0xAB].green, 0x40);
    EXPECT_EQ(palette[0xAB].blue, 0x60);
    EXPECT_EQ(palette[0xFF].red, 0xE0);
    EXPECT_EQ(palette[0xFF].green, 0xE0);
    EXPECT_EQ(palette[0xFF].blue, 0x60);
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(palette[i].red, i & 0xE0) << i;
        EXPECT_EQ(palette[i].green, (i * 8) & 0xE0) << i;
        EXPECT_EQ(palette[i].blue, (i & 3) << 5) << i;
        EXPECT_EQ(palette[i].reserved, 0) << i;
    }
}

TEST(Create8Bit, ThirtyTwoBitSourceIsReadThreeBytesAPixel)
{
    CDIB source(2, 1, 32);
    SetPixel(source, 0, 0, {0, 0, 0, 0xC0});
    SetPixel(source, 1, 0, {0x40, 0xA0, 0x00, 0x00});
    CDIB destination(1, 1, 8);
    ASSERT_TRUE(source.Create8Bit(&destination, false));
    // Index 1 comes from bytes 3 to 5: blue 0xC0 (pixel 0's alpha), green 0x40, red 0xA0.
    EXPECT_EQ(RowPixels(destination, 0), (Bytes{0x00, 0xAB}));
}

TEST(Create8Bit, SixteenBitSourceIsLittleEndianFiveFiveFive)
{
    CDIB source(3, 1, 16);
    SetPixel(source, 0, 0, {0x00, 0x7C});  // red
    SetPixel(source, 1, 0, {0xE0, 0x03});  // green
    SetPixel(source, 2, 0, {0x1F, 0x00});  // blue
    CDIB colour(1, 1, 8);
    ASSERT_TRUE(source.Create8Bit(&colour, false));
    EXPECT_EQ(RowPixels(colour, 0), (Bytes{0xE0, 0x1C, 0x03}));
    CDIB grey(1, 1, 8);
    ASSERT_TRUE(source.Create8Bit(&grey, true));
    // 248 × 0.3, 248 × 0.59, 248 × 0.11, truncated.
    EXPECT_EQ(RowPixels(grey, 0), (Bytes{74, 146, 27}));
}

TEST(Create8Bit, EightBitSourceKeepsItsIndicesAndPalette)
{
    CDIB source(5, 2, 8);
    FillPattern(source);
    for (int i = 0; i < 256; ++i)
        source.GetPalette()[i] = PaletteEntry{static_cast<uint8_t>(i), 0, 77, 0};
    for (bool grey : {true, false}) {
        CDIB destination(1, 1, 24);
        ASSERT_TRUE(source.Create8Bit(&destination, grey));
        EXPECT_EQ(AllRows(destination), AllRows(source));
        EXPECT_EQ(0, std::memcmp(destination.GetPalette(), source.GetPalette(), 1024));
    }
}

TEST(Create8Bit, CallsTheDestinationsCreateThroughTheVirtualTable)
{
    CDIB source(6, 5, 24);
    SpyDIB destination;
    ASSERT_TRUE(source.Create8Bit(&destination, true));
    EXPECT_EQ(destination.calls, 1);
    EXPECT_EQ(destination.lastWidth, 6);
    EXPECT_EQ(destination.lastHeight, 5);
    EXPECT_EQ(destination.lastBits, 8);
}

TEST(Create8Bit, FailsWhenTheDestinationsCreateFails)
{
    CDIB source(6, 5, 24);
    SpyDIB destination;
    destination.fail = true;
    EXPECT_FALSE(source.Create8Bit(&destination, false));
    EXPECT_EQ(destination.calls, 1);
    EXPECT_EQ(destination.GetBitCount(), 24);
}

TEST(Create8Bit, NullOrSameDestinationIsRefused)
{
    CDIB source(3, 3, 24);
    FillPattern(source);
    Bytes before = AllRows(source);
    EXPECT_FALSE(source.Create8Bit(nullptr, true));
    EXPECT_FALSE(source.Create8Bit(&source, true));
    EXPECT_EQ(source.GetBitCount(), 24);
    EXPECT_EQ(AllRows(source), before);
}
