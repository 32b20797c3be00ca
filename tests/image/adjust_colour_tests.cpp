// Colour adjustments of the raster image: video-safe colours, contrast and brightness, tint.

#include <gtest/gtest.h>

#include <vector>

#include "adjust_pixels.h"
#include "cdib_pixels.h"
#include "platform/util/colour.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::Pixel;
using pxtest::SetPixel;

namespace {

using Bytes = std::vector<unsigned char>;

// A pixel of the image's depth: blue, green, red, and alpha for 32-bit images.
Bytes Colour(int bits, unsigned char blue, unsigned char green, unsigned char red,
             unsigned char alpha = 0)
{
    if (bits == 32)
        return {blue, green, red, alpha};
    return {blue, green, red};
}

// Every pixel gets the same colour (and alpha).
void FillColour(CDIB& image, unsigned char blue, unsigned char green, unsigned char red,
                unsigned char alpha = 0)
{
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            SetPixel(image, x, row, Colour(image.GetBitCount(), blue, green, red, alpha));
}

// Every colour byte gets a value inside 18..234; alpha bytes go through all of 0..255.
void FillSafe(CDIB& image)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            for (int b = 0; b < pixelBytes; ++b) {
                unsigned char pattern = pxtest::PatternByte(x, row, b);
                image.GetBitsAdd(row)[x * pixelBytes + b] =
                    b == 3 ? static_cast<unsigned char>(pattern * 37)
                           : static_cast<unsigned char>(18 + pattern % 217);
            }
}

// ---------------------------------------------------------------------------------------------
// VideoColors

template <typename T>
class VideoColorsAtColourDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(VideoColorsAtColourDepth, pxtest::ColourDepths, pxtest::DepthNames);

TYPED_TEST(VideoColorsAtColourDepth, PictureInsideTheSafeRangeIsLeftBitIdentical)
{
    CDIB image(9, 7, TypeParam::kBits);
    FillSafe(image);
    pxtest::MarkOutsideBytes(image, 0xEE);
    Bytes before = AllRows(image);
    image.VideoColors();
    EXPECT_EQ(AllRows(image), before);
}

TYPED_TEST(VideoColorsAtColourDepth, BothEndsOfTheSafeRangeCountAsSafe)
{
    CDIB image(2, 2, TypeParam::kBits);
    FillColour(image, 18, 234, 18);
    SetPixel(image, 1, 1, Colour(TypeParam::kBits, 234, 18, 234));
    Bytes before = AllRows(image);
    image.VideoColors();
    EXPECT_EQ(AllRows(image), before);
}

TYPED_TEST(VideoColorsAtColourDepth, OneBlackChannelOnTheLastPixelCompressesTheWholePicture)
{
    CDIB image(4, 3, TypeParam::kBits);
    FillColour(image, 128, 100, 234, 9);
    // The very last colour byte the scan reaches: the red of the top row's last pixel.
    SetPixel(image, 3, 2, Colour(TypeParam::kBits, 128, 100, 0, 9));
    pxtest::MarkOutsideBytes(image, 0xEE);
    image.VideoColors();

    // (128 × 86 + 1548) / 100 = 12556 / 100 = 125; (100 × 86 + 1548) / 100 = 10148 / 100 = 101;
    // (234 × 86 + 1548) / 100 = 21672 / 100 = 216; (0 × 86 + 1548) / 100 = 15. Alpha keeps 9.
    for (int row = 0; row < 3; ++row)
        for (long x = 0; x < 4; ++x) {
            unsigned char red = row == 2 && x == 3 ? 15 : 216;
            EXPECT_EQ(Pixel(image, x, row), Colour(TypeParam::kBits, 125, 101, red, 9))
                << "pixel " << x << " of row " << row;
        }
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0xEE));
}

TYPED_TEST(VideoColorsAtColourDepth, MapsZeroTo15And255To234And128To125)
{
    CDIB image(3, 2, TypeParam::kBits);
    FillColour(image, 0, 128, 255, 200);
    SetPixel(image, 0, 1, Colour(TypeParam::kBits, 17, 18, 1, 0));
    SetPixel(image, 1, 1, Colour(TypeParam::kBits, 99, 50, 254, 255));
    image.VideoColors();

    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 15, 125, 234, 200));
    EXPECT_EQ(Pixel(image, 2, 1), Colour(TypeParam::kBits, 15, 125, 234, 200));
    // 17: 3010 / 100 = 30; 18: 3096 / 100 = 30; 1: 1634 / 100 = 16.
    EXPECT_EQ(Pixel(image, 0, 1), Colour(TypeParam::kBits, 30, 30, 16, 0));
    // 99: 10062 / 100 = 100; 50: 5848 / 100 = 58; 254: 23392 / 100 = 233.
    EXPECT_EQ(Pixel(image, 1, 1), Colour(TypeParam::kBits, 100, 58, 233, 255));
}

TYPED_TEST(VideoColorsAtColourDepth, OneChannelJustOutsideEitherEndTriggersTheMapping)
{
    for (unsigned char outside :
         {static_cast<unsigned char>(17), static_cast<unsigned char>(235)}) {
        CDIB image(2, 2, TypeParam::kBits);
        FillColour(image, 200, 200, 200);
        SetPixel(image, 1, 0, Colour(TypeParam::kBits, 200, outside, 200));
        image.VideoColors();
        // 200: (17200 + 1548) / 100 = 187.
        EXPECT_EQ(Pixel(image, 0, 1), Colour(TypeParam::kBits, 187, 187, 187))
            << "channel " << int(outside);
    }
}

TEST(VideoColors, AlphaOutsideTheRangeDoesNotTriggerTheMapping)
{
    CDIB image(3, 3, 32);
    FillColour(image, 100, 100, 100, 0);
    SetPixel(image, 2, 2, {100, 100, 100, 255});
    Bytes before = AllRows(image);
    image.VideoColors();
    EXPECT_EQ(AllRows(image), before);
}

TEST(VideoColors, CompressedPictureWithChannelsBelow18IsCompressedAgain)
{
    CDIB image(1, 1, 24);
    SetPixel(image, 0, 0, {0, 128, 255});
    image.VideoColors();
    ASSERT_EQ(Pixel(image, 0, 0), (Bytes{15, 125, 234}));
    // 15 is still outside 18..234: (1290 + 1548) / 100 = 28, (10750 + 1548) / 100 = 122,
    // (20124 + 1548) / 100 = 216.
    image.VideoColors();
    EXPECT_EQ(Pixel(image, 0, 0), (Bytes{28, 122, 216}));
}

// ---------------------------------------------------------------------------------------------
// Contrast

template <typename T>
class ContrastAtColourDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(ContrastAtColourDepth, pxtest::ColourDepths, pxtest::DepthNames);

// One pixel per byte value: pixel c is (c, 255 − c, c), alpha 255 − c.
void FillRamp(CDIB& image)
{
    for (long c = 0; c < 256; ++c) {
        auto value = static_cast<unsigned char>(c);
        auto mirror = static_cast<unsigned char>(255 - c);
        SetPixel(image, c, 0, Colour(image.GetBitCount(), value, mirror, value, mirror));
    }
}

TYPED_TEST(ContrastAtColourDepth, FiftyAndFiftyChangesNothing)
{
    CDIB image(256, 1, TypeParam::kBits);
    FillRamp(image);
    Bytes before = AllRows(image);
    image.Contrast(50, 50);
    EXPECT_EQ(AllRows(image), before);
}

TYPED_TEST(ContrastAtColourDepth, FullContrastMaps64ToBlackAnd192ToWhite)
{
    CDIB image(3, 1, TypeParam::kBits);
    SetPixel(image, 0, 0, Colour(TypeParam::kBits, 64, 192, 128, 64));
    SetPixel(image, 1, 0, Colour(TypeParam::kBits, 100, 191, 65, 192));
    SetPixel(image, 2, 0, Colour(TypeParam::kBits, 0, 255, 63, 7));
    image.Contrast(100, 50);
    // Gain 2, offset −128: 64 → 0, 192 → 256 → 255, 128 → 128, 100 → 72, 191 → 254, 65 → 2,
    // 63 → −2 → 0. Alpha is left alone.
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 0, 255, 128, 64));
    EXPECT_EQ(Pixel(image, 1, 0), Colour(TypeParam::kBits, 72, 254, 2, 192));
    EXPECT_EQ(Pixel(image, 2, 0), Colour(TypeParam::kBits, 0, 255, 0, 7));
}

TYPED_TEST(ContrastAtColourDepth, FullBrightnessAdds92)
{
    CDIB image(2, 1, TypeParam::kBits);
    SetPixel(image, 0, 0, Colour(TypeParam::kBits, 100, 162, 163, 1));
    SetPixel(image, 1, 0, Colour(TypeParam::kBits, 0, 255, 1, 2));
    image.Contrast(50, 100);
    // Gain 1, offset (100 − 50) / 50 × 92 = 92.
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 192, 254, 255, 1));
    EXPECT_EQ(Pixel(image, 1, 0), Colour(TypeParam::kBits, 92, 255, 93, 2));
}

TYPED_TEST(ContrastAtColourDepth, NoBrightnessTakes92Away)
{
    CDIB image(1, 1, TypeParam::kBits);
    SetPixel(image, 0, 0, Colour(TypeParam::kBits, 100, 92, 93, 3));
    image.Contrast(50, 0);
    // Offset −92: 100 → 8, 92 → 0, 93 → 1.
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 8, 0, 1, 3));
}

TYPED_TEST(ContrastAtColourDepth, NoContrastGivesMidGreyFromTheMinus128Term)
{
    CDIB image(256, 1, TypeParam::kBits);
    FillRamp(image);
    image.Contrast(0, 50);
    // Gain 0, offset (0 − 50) / 50 × −128 = 128: every colour byte is 128.
    for (long c = 0; c < 256; ++c) {
        auto mirror = static_cast<unsigned char>(255 - c);
        EXPECT_EQ(Pixel(image, c, 0), Colour(TypeParam::kBits, 128, 128, 128, mirror));
    }
}

TYPED_TEST(ContrastAtColourDepth, SinglePrecisionResultIsTruncated)
{
    CDIB image(1, 1, TypeParam::kBits);
    SetPixel(image, 0, 0, Colour(TypeParam::kBits, 200, 3, 10));
    image.Contrast(51, 50);
    // Gain 1.02, offset 0.02 × −128 = −2.56: 200 → 201.44 → 201, 3 → 0.5 → 0, 10 → 7.64 → 7.
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 201, 0, 7));
}

TYPED_TEST(ContrastAtColourDepth, BothTermsOfTheOffsetAddUp)
{
    CDIB image(1, 1, TypeParam::kBits);
    SetPixel(image, 0, 0, Colour(TypeParam::kBits, 100, 0, 200));
    image.Contrast(75, 25);
    // Gain 1.5, offset −0.5 × 92 + 0.5 × −128 = −110: 100 → 40, 0 → 0, 200 → 190.
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 40, 0, 190));
}

TYPED_TEST(ContrastAtColourDepth, RowPaddingIsLeftAlone)
{
    CDIB image(5, 3, TypeParam::kBits);
    FillPattern(image);
    pxtest::MarkOutsideBytes(image, 0x5A);
    image.Contrast(100, 100);
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x5A));
}

// ---------------------------------------------------------------------------------------------
// Tint

template <typename T>
class TintAtColourDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(TintAtColourDepth, pxtest::ColourDepths, pxtest::DepthNames);

TYPED_TEST(TintAtColourDepth, GreyTintTurnsThePictureIntoGreysOfItsOwnLightness)
{
    CDIB image(4, 1, TypeParam::kBits);
    SetPixel(image, 0, 0, Colour(TypeParam::kBits, 0, 100, 200, 11));
    SetPixel(image, 1, 0, Colour(TypeParam::kBits, 30, 20, 10, 22));
    SetPixel(image, 2, 0, Colour(TypeParam::kBits, 255, 255, 255, 33));
    SetPixel(image, 3, 0, Colour(TypeParam::kBits, 77, 77, 77, 44));
    image.Tint(0x808080);
    // Red 200, green 100, blue 0: lightness (200 × 240 + 255) / 510 = 94, which as grey is
    // (94 × 255 + 120) / 240 = 100. Blue 30 to red 10: (40 × 240 + 255) / 510 = 19 → 20.
    // White stays white; a grey keeps its level. Alpha is left alone.
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 100, 100, 100, 11));
    EXPECT_EQ(Pixel(image, 1, 0), Colour(TypeParam::kBits, 20, 20, 20, 22));
    EXPECT_EQ(Pixel(image, 2, 0), Colour(TypeParam::kBits, 255, 255, 255, 33));
    EXPECT_EQ(Pixel(image, 3, 0), Colour(TypeParam::kBits, 77, 77, 77, 44));
}

TYPED_TEST(TintAtColourDepth, RedTintTurnsMidGreyPureRed)
{
    CDIB image(2, 1, TypeParam::kBits);
    FillColour(image, 128, 128, 128, 5);
    SetPixel(image, 1, 0, Colour(TypeParam::kBits, 0, 0, 0, 6));
    // Red 0x0000FF has hue 0 and saturation 240; grey 128 has lightness 120, where full
    // saturation reaches the pure colour. Black stays black.
    image.Tint(0x0000FF);
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 0, 0, 255, 5));
    EXPECT_EQ(Pixel(image, 1, 0), Colour(TypeParam::kBits, 0, 0, 0, 6));
}

TYPED_TEST(TintAtColourDepth, TintColourHasRedInItsLowByte)
{
    CDIB image(1, 1, TypeParam::kBits);
    FillColour(image, 128, 128, 128);
    image.Tint(0xFF0000);  // blue: hue 160
    EXPECT_EQ(Pixel(image, 0, 0), Colour(TypeParam::kBits, 255, 0, 0));
}

TYPED_TEST(TintAtColourDepth, EveryPixelTakesTheTintsHueAndSaturationWithItsOwnLightness)
{
    CDIB image(37, 11, TypeParam::kBits);
    FillPattern(image);
    CDIB original(37, 11, TypeParam::kBits);
    ASSERT_TRUE(image.Copy(&original, false));
    pxtest::MarkOutsideBytes(image, 0xA5);
    const long tint = 0x3060C0;  // red 0xC0, green 0x60, blue 0x30
    image.Tint(tint);

    long tintHue = 0;
    long tintLightness = 0;
    long tintSaturation = 0;
    RGB2HLS(0xC0, 0x60, 0x30, &tintHue, &tintLightness, &tintSaturation);
    for (int row = 0; row < 11; ++row)
        for (long x = 0; x < 37; ++x) {
            Bytes old = Pixel(original, x, row);
            long hue = 0;
            long lightness = 0;
            long saturation = 0;
            RGB2HLS(old[2], old[1], old[0], &hue, &lightness, &saturation);
            long red = 0;
            long green = 0;
            long blue = 0;
            HLS2RGB(tintHue, lightness, tintSaturation, &red, &green, &blue);
            Bytes expected = old;
            expected[0] = static_cast<unsigned char>(blue);
            expected[1] = static_cast<unsigned char>(green);
            expected[2] = static_cast<unsigned char>(red);
            ASSERT_EQ(Pixel(image, x, row), expected) << "pixel " << x << " of row " << row;
        }
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0xA5));
}

// ---------------------------------------------------------------------------------------------
// Depths the colour adjustments leave alone

template <typename T>
class ColourAdjustmentsAtPaletteDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(ColourAdjustmentsAtPaletteDepth, pxtest::PaletteDepths, pxtest::DepthNames);

TYPED_TEST(ColourAdjustmentsAtPaletteDepth, VideoColorsContrastAndTintChangeNothing)
{
    // Width 3 leaves padding in every row; bytes 0 and 255 would trigger every adjustment.
    CDIB image(3, 4, TypeParam::kBits);
    FillPattern(image);
    pxtest::SetPixel(image, 0, 0, Bytes(TypeParam::kBytes, 0));
    pxtest::SetPixel(image, 2, 3, Bytes(TypeParam::kBytes, 255));
    pxtest::MarkOutsideBytes(image, 0xC3);
    Bytes before = AllRows(image);
    image.VideoColors();
    EXPECT_EQ(AllRows(image), before);
    image.Contrast(100, 0);
    EXPECT_EQ(AllRows(image), before);
    image.Tint(0x0000FF);
    EXPECT_EQ(AllRows(image), before);
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0xC3));
}

TEST(ColourAdjustments, EmptyImageIsLeftEmpty)
{
    CDIB image(0, 0, 24);
    ASSERT_EQ(image.header, nullptr);
    image.VideoColors();
    image.Contrast(100, 100);
    image.Tint(0x0000FF);
    EXPECT_EQ(image.header, nullptr);
    EXPECT_EQ(image.bits, nullptr);
}

TEST(ColourAdjustments, WidestRowsStayInsideTheirPixels)
{
    for (int bits : {24, 32}) {
        CDIB image(8192, 3, bits);
        FillPattern(image);
        pxtest::SetPixel(image, 8191, 2, Colour(bits, 0, 0, 0));
        pxtest::MarkOutsideBytes(image, 0x77);
        image.VideoColors();
        Bytes last = Pixel(image, 8191, 2);
        EXPECT_EQ(Bytes(last.begin(), last.begin() + 3), (Bytes{15, 15, 15}));
        image.Contrast(100, 100);
        image.Tint(0x00FF00);
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x77)) << bits << " bits";
    }
}

TEST(ColourAdjustments, OddWidestRowKeepsItsPadding)
{
    CDIB image(8191, 2, 24);
    FillPattern(image);
    pxtest::SetPixel(image, 8190, 1, {0, 0, 0});
    pxtest::MarkOutsideBytes(image, 0x77);
    image.VideoColors();
    image.Contrast(0, 100);
    image.Tint(0x808080);
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x77));
    // Contrast(0, 100): gain 0, offset 92 + 128 = 220, and grey tint keeps it grey.
    EXPECT_EQ(Pixel(image, 8190, 1), (Bytes{220, 220, 220}));
}

}  // namespace
