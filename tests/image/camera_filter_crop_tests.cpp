#include "image/cdib.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "image/camera_filter_pixels.h"
#include "platform/task/worker.h"

using pxtest::FrameIsAll;
using pxtest::FramePixel;
using pxtest::MarkedFrame;
using pxtest::OutsideGrey;
using pxtest::PatternSource;
using pxtest::Rgba;
using pxtest::RowIsAll;
using pxtest::RowIsMarked;
using pxtest::SourcePixel;

namespace {

constexpr int kFiltered = 100;
constexpr int kNearest = 0;

// FilterCrop over all rows without rotation or tilt.
bool Crop(CDIB& frame, CDIB& source, float left, float top, float width, float height,
          int quality = kFiltered, int fieldCode = 0, int part = 0)
{
    return frame.FilterCrop(&source, left, top, width, height, 0.0f, 0.0f, 0.0f, part, quality,
                            fieldCode);
}

// A source whose every pixel is one colour (alpha included for 32-bit sources).
std::unique_ptr<CDIB> PlainSource(long width, long height, int bits, unsigned char level)
{
    auto source = std::make_unique<CDIB>(width, height, bits);
    std::memset(source->GetBitsAdd(0), level,
                static_cast<size_t>(source->GetRowBytes() * source->GetHgt()));
    return source;
}

// Compares the whole frame with the plain reference of the straight crop, rendered with the
// vector loops and with the plain loops.
void ExpectMatchesReference(CDIB& source, float left, float top, float width, float height,
                            int quality, int fieldCode, long frameWidth, long frameHeight)
{
    auto expected = MarkedFrame(frameWidth, frameHeight);
    pxtest::ReferenceCrop(source, left, top, width, height, quality, fieldCode, *expected);
    pxtest::WithEachLoopKind([&](bool plain) {
        auto frame = MarkedFrame(frameWidth, frameHeight);
        ASSERT_TRUE(Crop(*frame, source, left, top, width, height, quality, fieldCode));
        for (int row = 0; row < frameHeight; ++row)
            for (long x = 0; x < frameWidth; ++x)
                ASSERT_EQ(FramePixel(*frame, x, row), FramePixel(*expected, x, row))
                    << "pixel " << x << " of row " << row << ", window " << left << ", " << top
                    << ", " << width << " x " << height << ", quality " << quality
                    << (plain ? ", plain loops" : ", vector loops");
    });
}

}  // namespace

// ---- Every accepted source depth ----

template <typename T>
class CropAtEveryDepth : public ::testing::Test {
protected:
    static constexpr int kBits = T::kBits;
};
TYPED_TEST_SUITE(CropAtEveryDepth, pxtest::CameraDepths, pxtest::DepthNames);

TYPED_TEST(CropAtEveryDepth, OneToOneWindowReproducesSourcePixels)
{
    // The window is exactly the picture: one source pixel per frame pixel (n = 1, a = 256,
    // b = 0), every edge row and column included.
    auto source = PatternSource(13, 9, this->kBits);
    auto frame = MarkedFrame(13, 9);
    ASSERT_TRUE(Crop(*frame, *source, 0.0f, 0.0f, 13.0f, 9.0f));
    for (int row = 0; row < 9; ++row)
        for (long x = 0; x < 13; ++x)
            EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row)) << x << ", " << row;
    ExpectMatchesReference(*source, 0.0f, 0.0f, 13.0f, 9.0f, kFiltered, 0, 13, 9);
}

TYPED_TEST(CropAtEveryDepth, OneToOneWindowAtWholePixelOffsetReproducesThatPart)
{
    auto source = PatternSource(20, 15, this->kBits);
    auto frame = MarkedFrame(7, 5);
    ASSERT_TRUE(Crop(*frame, *source, 13.0f, 10.0f, 7.0f, 5.0f));
    for (int row = 0; row < 5; ++row)
        for (long x = 0; x < 7; ++x)
            EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x + 13, row + 10));
}

TYPED_TEST(CropAtEveryDepth, NearestOneToOneWindowReproducesSourcePixels)
{
    auto source = PatternSource(11, 6, this->kBits);
    auto frame = MarkedFrame(11, 6);
    ASSERT_TRUE(Crop(*frame, *source, 0.0f, 0.0f, 11.0f, 6.0f, 50));
    for (int row = 0; row < 6; ++row)
        for (long x = 0; x < 11; ++x)
            EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row));
}

TYPED_TEST(CropAtEveryDepth, WindowWhollyOutsideGivesOutsideGrey)
{
    auto source = PatternSource(16, 12, this->kBits);
    const Rgba grey = OutsideGrey(this->kBits);
    struct Window {
        float left, top;
    };
    // Far left, just left, far right, just right, below, just below, above, just above.
    const Window windows[] = {{-1000.0f, 2.0f}, {-8.0f, 2.0f}, {5000.0f, 2.0f}, {16.0f, 2.0f},
                              {2.0f, -900.0f},  {2.0f, -6.0f}, {2.0f, 700.0f},  {2.0f, 12.0f}};
    for (int quality : {kNearest, kFiltered}) {
        for (const Window& window : windows) {
            auto frame = MarkedFrame(8, 6);
            ASSERT_TRUE(Crop(*frame, *source, window.left, window.top, 8.0f, 6.0f, quality));
            EXPECT_TRUE(FrameIsAll(*frame, grey))
                << "window at " << window.left << ", " << window.top << ", quality " << quality;
        }
    }
}

TYPED_TEST(CropAtEveryDepth, WindowPartlyLeftOfThePictureGreysOnlyTheOutsideColumns)
{
    // Half a pixel left of the picture: column 0 reads source column -1 and is outside; column 1
    // reads columns 0 and 1, half each.
    auto source = PatternSource(10, 4, this->kBits);
    auto frame = MarkedFrame(4, 4);
    ASSERT_TRUE(Crop(*frame, *source, -0.5f, 0.0f, 4.0f, 4.0f));
    const Rgba grey = OutsideGrey(this->kBits);
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(FramePixel(*frame, 0, row), grey);
        Rgba left = SourcePixel(*source, 0, row);
        Rgba right = SourcePixel(*source, 1, row);
        Rgba mixed = FramePixel(*frame, 1, row);
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(mixed[c], ((128 * left[c] + 128 * right[c]) * 4096u) >> 20);
    }
}

TYPED_TEST(CropAtEveryDepth, WindowPartlyBelowAndAboveGreysOnlyTheOutsideRows)
{
    auto source = PatternSource(6, 8, this->kBits);
    const Rgba grey = OutsideGrey(this->kBits);
    for (int quality : {kNearest, kFiltered}) {
        auto frame = MarkedFrame(6, 14);
        ASSERT_TRUE(Crop(*frame, *source, 0.0f, -3.0f, 6.0f, 14.0f, quality));
        for (int row = 0; row < 14; ++row) {
            bool inside = row >= 3 && row < 11;
            if (!inside) {
                EXPECT_TRUE(RowIsAll(*frame, row, grey)) << row;
                continue;
            }
            for (long x = 0; x < 6; ++x)
                EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row - 3));
        }
    }
}

TYPED_TEST(CropAtEveryDepth, StrongReductionNearEveryEdgeStaysInsideThePicture)
{
    // Windows reaching to each edge at 7 source pixels per frame pixel: the rows and columns
    // read end exactly at the picture's last ones.
    auto source = PatternSource(63, 49, this->kBits);
    for (int quality : {kNearest, kFiltered}) {
        ExpectMatchesReference(*source, 0.0f, 0.0f, 63.0f, 49.0f, quality, 0, 9, 7);
        ExpectMatchesReference(*source, 0.4f, 0.3f, 62.6f, 48.7f, quality, 0, 9, 7);
        ExpectMatchesReference(*source, -3.5f, -2.25f, 70.0f, 56.0f, quality, 0, 9, 7);
    }
}

TYPED_TEST(CropAtEveryDepth, HugeWindowAroundThePictureIsOutside)
{
    // Every frame pixel covers more than the whole picture, so each reads outside it.
    auto source = PatternSource(30, 20, this->kBits);
    auto frame = MarkedFrame(5, 4);
    ASSERT_TRUE(Crop(*frame, *source, -1.0e6f, -1.0e6f, 2.0e6f, 2.0e6f));
    EXPECT_TRUE(FrameIsAll(*frame, OutsideGrey(this->kBits)));
    ASSERT_TRUE(Crop(*frame, *source, -1.0e30f, -1.0e30f, 3.0e38f, 3.0e38f));
    EXPECT_TRUE(FrameIsAll(*frame, OutsideGrey(this->kBits)));
    ASSERT_TRUE(Crop(*frame, *source, 0.0f, 0.0f, std::numeric_limits<float>::infinity(),
                     std::numeric_limits<float>::infinity()));
    EXPECT_TRUE(FrameIsAll(*frame, OutsideGrey(this->kBits)));
}

TYPED_TEST(CropAtEveryDepth, WindowSmallerThanOnePixelEnlargesItsPixel)
{
    // A quarter of a source pixel spread over 4 x 4 frame pixels: every frame pixel lies within
    // source pixel (5, 3) and shows it, weighed (a + b) over a divisor of a + b.
    auto source = PatternSource(9, 7, this->kBits);
    auto frame = MarkedFrame(4, 4);
    ASSERT_TRUE(Crop(*frame, *source, 5.25f, 3.25f, 0.25f, 0.25f));
    Rgba pixel = SourcePixel(*source, 5, 3);
    for (int row = 0; row < 4; ++row) {
        for (long x = 0; x < 4; ++x) {
            Rgba got = FramePixel(*frame, x, row);
            for (int c = 0; c < 3; ++c) {
                EXPECT_LE(got[c], pixel[c]);
                EXPECT_GE(got[c] + 2, pixel[c]);  // the truncated reciprocal may lose a step
            }
        }
    }
    ExpectMatchesReference(*source, 5.25f, 3.25f, 0.25f, 0.25f, kFiltered, 0, 4, 4);
    ExpectMatchesReference(*source, 8.9f, 6.9f, 0.05f, 0.05f, kFiltered, 0, 3, 3);
    ExpectMatchesReference(*source, -0.01f, -0.01f, 0.02f, 0.02f, kFiltered, 0, 3, 3);
}

TYPED_TEST(CropAtEveryDepth, OnePixelFrameAveragesTheWholeWindow)
{
    auto source = PatternSource(8, 8, this->kBits);
    for (int quality : {kNearest, kFiltered}) {
        ExpectMatchesReference(*source, 0.0f, 0.0f, 8.0f, 8.0f, quality, 0, 1, 1);
        ExpectMatchesReference(*source, 2.5f, 1.5f, 3.0f, 3.0f, quality, 0, 1, 1);
        ExpectMatchesReference(*source, 7.5f, 7.5f, 3.0f, 3.0f, quality, 0, 1, 1);
    }
    // 2 x 2 pixels of one value average to that value (divisor 256 + 256 + 256 · 0 … = 512).
    auto plain = PlainSource(2, 2, this->kBits, 200);
    auto frame = MarkedFrame(1, 1);
    ASSERT_TRUE(Crop(*frame, *plain, 0.0f, 0.0f, 2.0f, 2.0f));
    EXPECT_EQ(FramePixel(*frame, 0, 0),
              (Rgba{200, 200, 200, static_cast<unsigned char>(this->kBits == 32 ? 200 : 255)}));
}

TYPED_TEST(CropAtEveryDepth, FrameOf8192ColumnsFromANarrowSource)
{
    auto source = PatternSource(37, 3, this->kBits);
    for (int quality : {kNearest, kFiltered})
        ExpectMatchesReference(*source, -1.5f, 0.0f, 40.0f, 3.0f, quality, 0, 8192, 2);
}

TYPED_TEST(CropAtEveryDepth, WideSourceFillsAWideFrame)
{
    // 8192 source columns: byte offsets past 32767 in the column table.
    auto source = PatternSource(8192, 3, this->kBits);
    auto frame = MarkedFrame(8192, 3);
    ASSERT_TRUE(Crop(*frame, *source, 0.0f, 0.0f, 8192.0f, 3.0f));
    for (int row = 0; row < 3; ++row)
        for (long x : {0L, 1L, 4095L, 8190L, 8191L})
            EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row));
    ExpectMatchesReference(*source, 10.3f, 0.2f, 8181.4f, 2.5f, kFiltered, 0, 8192, 2);
}

TYPED_TEST(CropAtEveryDepth, UndefinedPositionsGiveOutsideGrey)
{
    auto source = PatternSource(10, 10, this->kBits);
    const float undefined = std::numeric_limits<float>::quiet_NaN();
    for (int quality : {kNearest, kFiltered}) {
        auto frame = MarkedFrame(4, 3);
        ASSERT_TRUE(Crop(*frame, *source, undefined, 1.0f, 4.0f, 3.0f, quality));
        EXPECT_TRUE(FrameIsAll(*frame, OutsideGrey(this->kBits)));
        ASSERT_TRUE(Crop(*frame, *source, 1.0f, undefined, 4.0f, 3.0f, quality));
        EXPECT_TRUE(FrameIsAll(*frame, OutsideGrey(this->kBits)));
    }
}

TYPED_TEST(CropAtEveryDepth, FieldCodesRenderTheirRowsAtEveryHeight)
{
    auto source = PatternSource(19, 23, this->kBits);
    for (int height : {1, 2, 5, 6, 11}) {
        for (int fieldCode : {0, 1, 10, 11}) {
            for (int quality : {kNearest, kFiltered}) {
                ExpectMatchesReference(*source, 0.7f, 1.3f, 15.0f, 17.5f, quality, fieldCode, 7,
                                       height);
                ExpectMatchesReference(*source, -4.5f, -6.0f, 30.0f, 35.0f, quality, fieldCode, 7,
                                       height);
            }
        }
    }
}

TYPED_TEST(CropAtEveryDepth, OptimisedPassesMatchThePlainReference)
{
    // Random windows (reductions, enlargements, partly outside, fractional everywhere) against
    // the pixel-by-pixel reference.
    auto source = PatternSource(57, 41, this->kBits);
    std::mt19937 random(20240611);
    std::uniform_real_distribution<float> position(-20.0f, 60.0f);
    std::uniform_real_distribution<float> size(0.2f, 80.0f);
    std::uniform_int_distribution<int> frameSide(1, 23);
    const int fieldCodes[] = {0, 1, 10, 11};
    for (int trial = 0; trial < 150; ++trial) {
        float left = position(random);
        float top = position(random);
        float width = size(random);
        float height = size(random);
        int quality = trial % 3 == 0 ? 50 : 51 + trial % 50;
        int fieldCode = fieldCodes[trial % 4];
        ExpectMatchesReference(*source, left, top, width, height, quality, fieldCode,
                               frameSide(random), frameSide(random));
        if (this->HasFatalFailure())
            return;
    }
}

TYPED_TEST(CropAtEveryDepth, ManyRowsAndColumnsPerPixelMatchThePlainReference)
{
    // Reductions of 5 to 60 source pixels per frame pixel take the many-rows paths.
    auto source = PatternSource(300, 240, this->kBits);
    ExpectMatchesReference(*source, 0.0f, 0.0f, 300.0f, 240.0f, kFiltered, 0, 5, 4);
    ExpectMatchesReference(*source, 3.7f, 2.1f, 290.0f, 230.0f, kFiltered, 0, 11, 7);
    ExpectMatchesReference(*source, 1.5f, 0.5f, 240.0f, 200.0f, kFiltered, 1, 48, 40);
}

TYPED_TEST(CropAtEveryDepth, WrappedDivisorsMatchThePlainReference)
{
    // 300 and more source pixels under one frame pixel in both directions: 64-bit sums.
    auto source = PatternSource(700, 640, this->kBits);
    ExpectMatchesReference(*source, 0.0f, 0.0f, 700.0f, 640.0f, kFiltered, 0, 2, 2);
    ExpectMatchesReference(*source, 3.3f, 1.7f, 650.5f, 600.25f, kFiltered, 0, 2, 1);
    ExpectMatchesReference(*source, 0.5f, 0.5f, 690.0f, 2.0f, kFiltered, 0, 2, 2);
}

// ---- Fixed-point arithmetic ----

TEST(CropArithmetic, FractionalWeightsAreEightBitFixedPoint)
{
    // u = 0.25 and sx = 1: a = trunc(0.75 × 256) = 192, b = trunc(0.25 × 256) = 64, divisor 256,
    // reciprocal 0x100000 / 256 = 4096.
    CDIB source(3, 1, 24);
    unsigned char* pixels = source.GetBitsAdd(0);
    pixels[0] = 10;   // column 0 blue
    pixels[3] = 210;  // column 1 blue
    auto frame = MarkedFrame(1, 1);
    ASSERT_TRUE(frame->FilterCrop(&source, 0.25f, 0.0f, 1.0f, 1.0f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], ((192u * 10 + 64u * 210) * 4096u) >> 20);
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 60);
}

TEST(CropArithmetic, TruncatedReciprocalDarkensAOneAndAHalfReduction)
{
    // 1.5 source pixels per frame pixel: divisor 256 + 128 = 384, reciprocal 0x100000 / 384 =
    // 2730 (truncated), so white comes out 255 × 384 × 2730 >> 20 = 254 in each pass.
    auto source = PlainSource(3, 1, 24, 255);
    auto frame = MarkedFrame(2, 1);
    ASSERT_TRUE(frame->FilterCrop(source.get(), 0.0f, 0.0f, 3.0f, 1.0f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), (Rgba{254, 254, 254, 255}));
    EXPECT_EQ(FramePixel(*frame, 1, 0), (Rgba{254, 254, 254, 255}));
    // Both passes: 1.5 rows as well, so 254 is reduced once more: 254 × 384 × 2730 >> 20 = 253.
    auto square = PlainSource(3, 3, 24, 255);
    auto small = MarkedFrame(2, 2);
    ASSERT_TRUE(small->FilterCrop(square.get(), 0.0f, 0.0f, 3.0f, 3.0f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*small, 0, 0), (Rgba{253, 253, 253, 255}));
}

TEST(CropArithmetic, TwoToOneReductionAveragesPairsWithTruncation)
{
    CDIB source(4, 2, 32);
    unsigned char* bottom = source.GetBitsAdd(0);
    unsigned char* top = source.GetBitsAdd(1);
    const unsigned char blues[2][4] = {{10, 21, 100, 0}, {30, 40, 255, 254}};
    for (int x = 0; x < 4; ++x) {
        bottom[x * 4] = blues[0][x];
        top[x * 4] = blues[1][x];
        bottom[x * 4 + 3] = 255;
        top[x * 4 + 3] = 0;
    }
    auto frame = MarkedFrame(2, 1);
    ASSERT_TRUE(frame->FilterCrop(&source, 0.0f, 0.0f, 4.0f, 2.0f, 0, 0, 0, 0, 100, 0));
    // Rows first (into bytes), then columns: ((10 + 30) / 2 + (21 + 40) / 2) / 2 = (20 + 30) / 2.
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 25);
    // (100 + 255) / 2 = 177, (0 + 254) / 2 = 127, (177 + 127) / 2 = 152.
    EXPECT_EQ(FramePixel(*frame, 1, 0)[0], 152);
    // Alpha is averaged like the colours from a 32-bit source: (255 + 0) / 2 = 127.
    EXPECT_EQ(FramePixel(*frame, 0, 0)[3], 127);
}

TEST(CropArithmetic, DivisorIsKeptIn16Bits)
{
    // 599.5 rows under one frame pixel: a' = 256, b' = 128, m = 599, so D = (384 + 256 × 598)
    // mod 65536 = 22400 and the reciprocal 0x100000 / 22400 = 46. A plain 10 sums to 10 × 153472
    // and is stored as the low byte of 10 × 153472 × 46 >> 20 = 67.
    auto source = PlainSource(1, 600, 24, 10);
    auto frame = MarkedFrame(1, 1);
    ASSERT_TRUE(frame->FilterCrop(source.get(), 0.0f, 0.0f, 1.0f, 599.5f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), (Rgba{67, 67, 67, 255}));
    // The same across columns: 599.5 columns into one.
    auto wide = PlainSource(600, 1, 24, 10);
    ASSERT_TRUE(frame->FilterCrop(wide.get(), 0.0f, 0.0f, 599.5f, 1.0f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), (Rgba{67, 67, 67, 255}));
}

TEST(CropArithmetic, PastTheWrapTheStoredByteIsTheLowByte)
{
    // 257.5 pixels under one: the weights add up to 256 + 128 + 256 × 256 = 65920, the divisor
    // wraps to 384 and the reciprocal is 2730; 10 × 65920 × 2730 >> 20 = 1716, stored as 180.
    auto tall = PlainSource(1, 258, 24, 10);
    auto frame = MarkedFrame(1, 1);
    ASSERT_TRUE(frame->FilterCrop(tall.get(), 0.0f, 0.0f, 1.0f, 257.5f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), (Rgba{180, 180, 180, 255}));
    auto wide = PlainSource(258, 1, 24, 10);
    ASSERT_TRUE(frame->FilterCrop(wide.get(), 0.0f, 0.0f, 257.5f, 1.0f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), (Rgba{180, 180, 180, 255}));
}

TEST(CropArithmetic, OutsideRowsAndColumnsAreWrittenNotAveraged)
{
    // Outside pixels are exactly 17, even where an average with the pad would give less.
    auto source = PatternSource(8, 8, 32);
    auto frame = MarkedFrame(6, 6);
    ASSERT_TRUE(frame->FilterCrop(source.get(), -6.0f, -6.0f, 9.0f, 9.0f, 0, 0, 0, 0, 100, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), (Rgba{17, 17, 17, 0}));
    EXPECT_EQ(FramePixel(*frame, 5, 0), (Rgba{17, 17, 17, 0}));
    EXPECT_EQ(FramePixel(*frame, 0, 5), (Rgba{17, 17, 17, 0}));
}

// ---- Quality threshold ----

TEST(CropQuality, Quality50SamplesTheNearestPixelAnd51Averages)
{
    // Half a pixel to the right: nearest takes column floor(0.5 + x), averaging mixes two.
    CDIB source(4, 1, 24);
    unsigned char* pixels = source.GetBitsAdd(0);
    for (int x = 0; x < 4; ++x)
        pixels[x * 3] = static_cast<unsigned char>(40 * x + 20);
    auto frame = MarkedFrame(3, 1);
    ASSERT_TRUE(frame->FilterCrop(&source, 0.5f, 0.0f, 3.0f, 1.0f, 0, 0, 0, 0, 50, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 20);
    EXPECT_EQ(FramePixel(*frame, 1, 0)[0], 60);
    ASSERT_TRUE(frame->FilterCrop(&source, 0.5f, 0.0f, 3.0f, 1.0f, 0, 0, 0, 0, 51, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 40);  // (128 × 20 + 128 × 60) × 4096 >> 20
    EXPECT_EQ(FramePixel(*frame, 1, 0)[0], 80);
}

TEST(CropQuality, NearestCopiesAlphaFrom32BitAndGives255From24Bit)
{
    auto source32 = PatternSource(5, 5, 32);
    auto source24 = PatternSource(5, 5, 24);
    auto frame = MarkedFrame(5, 5);
    ASSERT_TRUE(frame->FilterCrop(source32.get(), 0, 0, 5, 5, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(FramePixel(*frame, 2, 3)[3], pxtest::Pixel(*source32, 2, 3)[3]);
    ASSERT_TRUE(frame->FilterCrop(source24.get(), 0, 0, 5, 5, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(FramePixel(*frame, 2, 3)[3], 255);
}

// ---- Field codes ----

TEST(CropFields, FieldCode10RendersEvenRowsOnly)
{
    auto source = PatternSource(8, 9, 24);
    auto frame = MarkedFrame(8, 9);
    ASSERT_TRUE(frame->FilterCrop(source.get(), 0, 0, 8, 9, 0, 0, 0, 0, 100, 10));
    for (int row = 0; row < 9; ++row) {
        if (row % 2 == 0) {
            for (long x = 0; x < 8; ++x)
                EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row));
        } else {
            EXPECT_TRUE(RowIsMarked(*frame, row)) << row;
        }
    }
}

TEST(CropFields, FieldCode11RendersOddRowsOnly)
{
    auto source = PatternSource(8, 9, 32);
    auto frame = MarkedFrame(8, 9);
    ASSERT_TRUE(frame->FilterCrop(source.get(), 0, 0, 8, 9, 0, 0, 0, 0, 100, 11));
    for (int row = 0; row < 9; ++row) {
        if (row % 2 == 1) {
            for (long x = 0; x < 8; ++x)
                EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row));
        } else {
            EXPECT_TRUE(RowIsMarked(*frame, row)) << row;
        }
    }
}

TEST(CropFields, FieldCode1ShiftsEveryRowByHalfARow)
{
    // Two source rows per frame row: half a frame row is one source row, so fieldCode 1 at top 0
    // renders what fieldCode 0 renders at top 1.
    auto source = PatternSource(6, 20, 24);
    auto shifted = MarkedFrame(6, 8);
    auto moved = MarkedFrame(6, 8);
    for (int quality : {kNearest, kFiltered}) {
        ASSERT_TRUE(shifted->FilterCrop(source.get(), 0, 0, 6, 16, 0, 0, 0, 0, quality, 1));
        ASSERT_TRUE(moved->FilterCrop(source.get(), 0, 1, 6, 16, 0, 0, 0, 0, quality, 0));
        EXPECT_EQ(pxtest::AllRows(*shifted), pxtest::AllRows(*moved));
    }
    // Every row is rendered.
    for (int row = 0; row < 8; ++row)
        EXPECT_FALSE(RowIsMarked(*shifted, row));
}

TEST(CropFields, FieldRowsSampleAtTheirOwnPositions)
{
    // Row 3 of field 11 is row 3 of the whole frame.
    auto source = PatternSource(12, 30, 24);
    auto field = MarkedFrame(5, 7);
    auto whole = MarkedFrame(5, 7);
    ASSERT_TRUE(field->FilterCrop(source.get(), 1.3f, 2.6f, 10.0f, 25.0f, 0, 0, 0, 0, 100, 11));
    ASSERT_TRUE(whole->FilterCrop(source.get(), 1.3f, 2.6f, 10.0f, 25.0f, 0, 0, 0, 0, 100, 0));
    for (int row : {1, 3, 5})
        EXPECT_EQ(pxtest::RowPixels(*field, row), pxtest::RowPixels(*whole, row));
}

// ---- Parts ----

TEST(CropParts, Part1RendersRowsUpToOnePastTheMiddle)
{
    auto source = PatternSource(6, 9, 24);
    auto frame = MarkedFrame(6, 9);
    ASSERT_TRUE(frame->FilterCrop(source.get(), 0, 0, 6, 9, 0, 0, 0, 1, 100, 0));
    for (int row = 0; row < 9; ++row)
        EXPECT_EQ(RowIsMarked(*frame, row), row >= 9 / 2 + 1) << row;
}

TEST(CropParts, Part2StartsAfterTheWorkersLastRowWhateverTheOffset)
{
    // Height 10: the worker renders rows 0 to 5. The caller's part starts at the middle plus the
    // offset, but never on a worker's row nor past the worker's end (no row is left out).
    auto source = PatternSource(6, 10, 24);
    const int saved = gMultiProcOffset;
    for (int offset : {0, 1, -2, 3}) {
        gMultiProcOffset = offset;
        auto frame = MarkedFrame(6, 10);
        ASSERT_TRUE(frame->FilterCrop(source.get(), 0, 0, 6, 10, 0, 0, 0, 2, 100, 0));
        for (int row = 0; row < 10; ++row)
            EXPECT_EQ(RowIsMarked(*frame, row), row < 6) << row << " offset " << offset;
    }
    gMultiProcOffset = saved;
}

TEST(CropParts, Part2OfAFieldStartsOnARowOfThatField)
{
    // Height 10: the middle is 5 and the worker renders up to row 5. Field 0 starts at 6,
    // field 1 at 7 (the worker has 1, 3 and 5).
    auto source = PatternSource(6, 10, 24);
    auto even = MarkedFrame(6, 10);
    auto odd = MarkedFrame(6, 10);
    ASSERT_TRUE(even->FilterCrop(source.get(), 0, 0, 6, 10, 0, 0, 0, 2, 100, 10));
    ASSERT_TRUE(odd->FilterCrop(source.get(), 0, 0, 6, 10, 0, 0, 0, 2, 100, 11));
    for (int row = 0; row < 10; ++row) {
        EXPECT_EQ(RowIsMarked(*even, row), !(row >= 6 && row % 2 == 0)) << row;
        EXPECT_EQ(RowIsMarked(*odd, row), !(row >= 7 && row % 2 == 1)) << row;
    }
}

// ---- Refusals ----

TEST(CropRefusals, SourcesOfOtherDepthsAreRefused)
{
    auto frame = MarkedFrame(4, 4);
    for (int bits : {8, 16}) {
        auto source = PatternSource(4, 4, bits);
        EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 4, 4, 0, 0, 0, 0, 100, 0)) << bits;
        EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 4, 4, 0, 0, 0, 0, 0, 0)) << bits;
    }
    for (int row = 0; row < 4; ++row)
        EXPECT_TRUE(RowIsMarked(*frame, row));
}

TEST(CropRefusals, MissingSourceOrFrameOfOtherDepthIsRefused)
{
    auto frame = MarkedFrame(4, 4);
    EXPECT_FALSE(frame->FilterCrop(nullptr, 0, 0, 4, 4, 0, 0, 0, 0, 100, 0));
    CDIB empty(0, 0, 24);
    EXPECT_FALSE(frame->FilterCrop(&empty, 0, 0, 4, 4, 0, 0, 0, 0, 100, 0));
    auto source = PatternSource(4, 4, 24);
    CDIB frame24(4, 4, 24);
    EXPECT_FALSE(frame24.FilterCrop(source.get(), 0, 0, 4, 4, 0, 0, 0, 0, 100, 0));
    CDIB noFrame(0, 0, 32);
    EXPECT_FALSE(noFrame.FilterCrop(source.get(), 0, 0, 4, 4, 0, 0, 0, 0, 100, 0));
}

TEST(CropRefusals, NegativeOrUndefinedWindowSizeIsRefused)
{
    auto source = PatternSource(8, 8, 24);
    auto frame = MarkedFrame(4, 4);
    const float undefined = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, -4, 4, 0, 0, 0, 0, 100, 0));
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 4, -4, 0, 0, 0, 0, 100, 0));
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, undefined, 4, 0, 0, 0, 0, 100, 0));
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 4, undefined, 0, 0, 0, 0, 100, 0));
    for (int row = 0; row < 4; ++row)
        EXPECT_TRUE(RowIsMarked(*frame, row));
    // A window of no size samples one spot and is accepted.
    EXPECT_TRUE(frame->FilterCrop(source.get(), 2.5f, 2.5f, 0, 0, 0, 0, 0, 0, 100, 0));
    EXPECT_FALSE(RowIsMarked(*frame, 0));
}

TEST(CropRefusals, UnknownPartOrNegativeRowStepIsRefused)
{
    auto source = PatternSource(8, 8, 24);
    auto frame = MarkedFrame(4, 4);
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 8, 8, 0, 0, 0, 3, 100, 0));
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 8, 8, 0, 0, 0, -1, 100, 0));
    EXPECT_FALSE(frame->FilterCrop(source.get(), 0, 0, 8, 8, 0, 0, 0, 0, 100, -10));
    for (int row = 0; row < 4; ++row)
        EXPECT_TRUE(RowIsMarked(*frame, row));
}

TEST(CropRouting, SourceMarkedForRotationTakesTheRotatingFilter)
{
    auto source = PatternSource(30, 30, 24);
    source->useRotFilter = true;
    auto routed = MarkedFrame(10, 10);
    auto direct = MarkedFrame(10, 10);
    ASSERT_TRUE(
        routed->FilterCrop(source.get(), 3.3f, 4.4f, 20, 20, 12.0f, 3.0f, -2.0f, 0, 100, 0));
    ASSERT_TRUE(direct->FilterRot(source.get(), 3.3f, 4.4f, 20, 20, 12.0f, 3.0f, -2.0f, 0, 100, 0));
    EXPECT_EQ(pxtest::AllRows(*routed), pxtest::AllRows(*direct));
}
