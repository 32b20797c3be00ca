// In-place changes of the raster image: row flops, the red/blue swap and the alpha byte.

#include <gtest/gtest.h>

#include "cdib_pixels.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::Pixel;
using pxtest::RowPixels;

namespace {

template <typename T>
class FlopAtEveryDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(FlopAtEveryDepth, pxtest::AllDepths, pxtest::DepthNames);

TYPED_TEST(FlopAtEveryDepth, FiveRowsSwapZeroFourAndOneThree)
{
    CDIB image(3, 5, TypeParam::kBits);
    FillPattern(image);
    CDIB original(3, 5, TypeParam::kBits);
    ASSERT_TRUE(image.Copy(&original, false));
    ASSERT_TRUE(image.Flop());
    EXPECT_EQ(RowPixels(image, 0), RowPixels(original, 4));
    EXPECT_EQ(RowPixels(image, 1), RowPixels(original, 3));
    EXPECT_EQ(RowPixels(image, 2), RowPixels(original, 2));
    EXPECT_EQ(RowPixels(image, 3), RowPixels(original, 1));
    EXPECT_EQ(RowPixels(image, 4), RowPixels(original, 0));
}

TYPED_TEST(FlopAtEveryDepth, FieldsOfFiveRowsSwapZeroOneAndTwoThreeAndLeaveFour)
{
    CDIB image(3, 5, TypeParam::kBits);
    FillPattern(image);
    CDIB original(3, 5, TypeParam::kBits);
    ASSERT_TRUE(image.Copy(&original, false));
    ASSERT_TRUE(image.FlopFields());
    EXPECT_EQ(RowPixels(image, 0), RowPixels(original, 1));
    EXPECT_EQ(RowPixels(image, 1), RowPixels(original, 0));
    EXPECT_EQ(RowPixels(image, 2), RowPixels(original, 3));
    EXPECT_EQ(RowPixels(image, 3), RowPixels(original, 2));
    EXPECT_EQ(RowPixels(image, 4), RowPixels(original, 4));
}

TYPED_TEST(FlopAtEveryDepth, FlopTwiceGivesTheImageBack)
{
    CDIB image(7, 6, TypeParam::kBits);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    ASSERT_TRUE(image.Flop());
    ASSERT_TRUE(image.Flop());
    ASSERT_TRUE(image.FlopFields());
    ASSERT_TRUE(image.FlopFields());
    EXPECT_EQ(AllRows(image), before);
}

TEST(Flop, OneRowImageIsUnchanged)
{
    CDIB image(4, 1, 24);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    EXPECT_TRUE(image.Flop());
    EXPECT_TRUE(image.FlopFields());
    EXPECT_EQ(AllRows(image), before);
}

TEST(FlopRGB2BGR, SwapsBlueAndRedOfTwentyFourBitPixels)
{
    CDIB image(3, 2, 24);
    pxtest::SetPixel(image, 2, 1, {10, 20, 30});
    ASSERT_TRUE(image.FlopRGB2BGR());
    EXPECT_EQ(Pixel(image, 2, 1), (std::vector<unsigned char>{30, 20, 10}));
    EXPECT_EQ(Pixel(image, 0, 0), (std::vector<unsigned char>{0, 0, 0}));
}

TEST(FlopRGB2BGR, SwapsBlueAndRedOfThirtyTwoBitPixelsAndKeepsAlpha)
{
    CDIB image(2, 2, 32);
    pxtest::SetPixel(image, 1, 0, {10, 20, 30, 40});
    ASSERT_TRUE(image.FlopRGB2BGR());
    EXPECT_EQ(Pixel(image, 1, 0), (std::vector<unsigned char>{30, 20, 10, 40}));
}

TEST(FlopRGB2BGR, RowPaddingIsUntouched)
{
    CDIB image(3, 1, 24);  // 9 pixel bytes, 3 bytes of padding
    FillPattern(image);
    unsigned char* padding = image.GetBitsAdd(0) + 9;
    padding[0] = 0xA1;
    padding[1] = 0xA2;
    padding[2] = 0xA3;
    ASSERT_TRUE(image.FlopRGB2BGR());
    EXPECT_EQ(padding[0], 0xA1);
    EXPECT_EQ(padding[1], 0xA2);
    EXPECT_EQ(padding[2], 0xA3);
}

TEST(FlopRGB2BGR, PixelsWithoutAThirdByteAreLeftAlone)
{
    CDIB image(3, 2, 16);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    EXPECT_FALSE(image.FlopRGB2BGR());
    EXPECT_EQ(AllRows(image), before);
}

TEST(SetAlpha, SetsTheFourthByteOfEveryPixelToTheLowByte)
{
    CDIB image(3, 2, 32);
    FillPattern(image);
    ASSERT_TRUE(image.SetAlpha(0x1C8));
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 3; ++x) {
            std::vector<unsigned char> pixel = Pixel(image, x, row);
            EXPECT_EQ(pixel[3], 0xC8);
            EXPECT_EQ(pixel[0], pxtest::PatternByte(x, row, 0));
        }
}

TEST(SetAlpha, EveryWidthKeepsTheColoursOfWholeGroupsAndOfTheLastPixels)
{
    // Pixels go four at a time and the rest one by one: widths 1 to 13 cover both and the seam.
    for (long width = 1; width <= 13; ++width) {
        CDIB image(width, 3, 32);
        FillPattern(image);
        ASSERT_TRUE(image.SetAlpha(-1)) << width;
        for (int row = 0; row < 3; ++row)
            for (long x = 0; x < width; ++x) {
                std::vector<unsigned char> pixel = Pixel(image, x, row);
                EXPECT_EQ(pixel[3], 0xFF) << width << " " << x << " " << row;
                for (int byte = 0; byte < 3; ++byte)
                    EXPECT_EQ(pixel[byte], pxtest::PatternByte(x, row, byte))
                        << width << " " << x << " " << row << " " << byte;
            }
    }
}

TEST(SetAlpha, TwentyFourBitImageAnswersFalseAndChangesNothing)
{
    CDIB image(3, 2, 24);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    EXPECT_FALSE(image.SetAlpha(255));
    EXPECT_EQ(AllRows(image), before);
}

TEST(DropAlpha, ThirtyTwoBitImageBecomesTwentyFourBitWithItsColoursAndZeroPadding)
{
    for (long width : {1L, 2L, 3L, 4L, 5L, 17L}) {
        CDIB image(width, 4, 32);
        FillPattern(image);
        ASSERT_TRUE(image.DropAlpha()) << width;
        EXPECT_EQ(image.GetBitCount(), 24);
        EXPECT_EQ(image.GetWid(), width);
        EXPECT_EQ(image.GetHgt(), 4);
        EXPECT_EQ(image.GetRowBytes(), (width * 3 + 3) & ~3L);
        for (int row = 0; row < 4; ++row) {
            for (long x = 0; x < width; ++x) {
                std::vector<unsigned char> pixel = Pixel(image, x, row);
                ASSERT_EQ(pixel.size(), 3u);
                for (int byte = 0; byte < 3; ++byte)
                    EXPECT_EQ(pixel[byte], pxtest::PatternByte(x, row, byte))
                        << width << " " << x << " " << row;
            }
            const unsigned char* line = image.GetBitsAdd(row);
            for (long pad = 3 * width; pad < image.GetRowBytes(); ++pad)
                EXPECT_EQ(line[pad], 0) << width << " " << row;
        }
    }
}

TEST(DropAlpha, LargePictureGivesBackTheEndOfItsBlockAndKeepsItsPixels)
{
    // Large enough for the block's unused end to span whole memory pages.
    CDIB image(1500, 1000, 32);
    FillPattern(image);
    ASSERT_TRUE(image.DropAlpha());
    for (int row : {0, 499, 999})
        for (long x : {0L, 777L, 1499L})
            for (int byte = 0; byte < 3; ++byte)
                EXPECT_EQ(Pixel(image, x, row)[static_cast<size_t>(byte)],
                          pxtest::PatternByte(x, row, byte));
}

TEST(DropAlpha, OtherDepthsAnswerFalseAndChangeNothing)
{
    for (int bits : {8, 16, 24}) {
        CDIB image(5, 3, bits);
        FillPattern(image);
        std::vector<unsigned char> before = AllRows(image);
        EXPECT_FALSE(image.DropAlpha()) << bits;
        EXPECT_EQ(image.GetBitCount(), bits);
        EXPECT_EQ(AllRows(image), before);
    }
    CDIB empty(0, 0, 32);
    EXPECT_FALSE(empty.DropAlpha());
}

TEST(FlopOperations, EmptyImageAnswersFalse)
{
    CDIB image(0, 0, 24);
    EXPECT_FALSE(image.Flop());
    EXPECT_FALSE(image.FlopFields());
    EXPECT_FALSE(image.FlopRGB2BGR());
    EXPECT_FALSE(image.SetAlpha(0));
}

}  // namespace
