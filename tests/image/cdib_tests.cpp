#include "image/cdib.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <vector>

#include "image/cdib_pixels.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::IsAllZero;
using pxtest::SpyDIB;

// ---- Construction and Create ----

TEST(CDIB, ConstructorFillsTheHeaderOfANewImage)
{
    CDIB image(5, 3, 24);
    ASSERT_NE(image.header, nullptr);
    ASSERT_NE(image.bits, nullptr);
    EXPECT_EQ(image.header->biSize, 40u);
    EXPECT_EQ(image.header->biWidth, 5);
    EXPECT_EQ(image.header->biHeight, 3);
    EXPECT_EQ(image.header->biPlanes, 1);
    EXPECT_EQ(image.header->biBitCount, 24);
    EXPECT_EQ(image.header->biCompression, 0u);
    EXPECT_EQ(image.header->biSizeImage, 0u);
    EXPECT_EQ(image.header->biXPelsPerMeter, 1600);
    EXPECT_EQ(image.header->biYPelsPerMeter, 1600);
    EXPECT_EQ(image.header->biClrUsed, 0u);
    EXPECT_EQ(image.header->biClrImportant, 0u);
    EXPECT_EQ(image.nominalWidth, 5);
    EXPECT_EQ(image.nominalHeight, 3);
    EXPECT_FALSE(image.useRotFilter);
}

TEST(CDIB, ConstructorWithABadSizeLeavesAnEmptyImage)
{
    CDIB image(0, 10, 24);
    EXPECT_EQ(image.header, nullptr);
    EXPECT_EQ(image.bits, nullptr);
    EXPECT_FALSE(image.useRotFilter);
}

TEST(Create, NewImageIsAllZeroAtEveryDepth)
{
    for (int bits : {8, 16, 24, 32}) {
        CDIB image(7, 5, bits);
        ASSERT_NE(image.header, nullptr) << bits;
        EXPECT_TRUE(IsAllZero(AllRows(image))) << bits;
    }
}

TEST(Create, NewThirtyTwoBitImageHasAlphaZero)
{
    CDIB image(3, 2, 32);
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 3; ++x)
            EXPECT_EQ(pxtest::Pixel(image, x, row)[3], 0);
}

TEST(Create, PixelBlockHasFourSpareBytesPastTheLastRow)
{
    // The sanitizer build turns a write past the block into a failure.
    CDIB image(3, 2, 8);
    unsigned char* end = image.bits + image.GetRowBytes() * image.GetHgt();
    std::memset(end, 0xAB, 4);
    EXPECT_EQ(end[3], 0xAB);
}

TEST(Create, EightBitImageGetsAGreyRamp)
{
    CDIB image(2, 2, 8);
    PaletteEntry* palette = image.GetPalette();
    ASSERT_NE(palette, nullptr);
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(palette[i].blue, i);
        EXPECT_EQ(palette[i].green, i);
        EXPECT_EQ(palette[i].red, i);
        EXPECT_EQ(palette[i].reserved, 0);
    }
}

TEST(Create, SideOutOfRangeFailsAndKeepsThePreviousPixels)
{
    CDIB image(4, 3, 24);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    unsigned char* bits = image.bits;
    EXPECT_FALSE(image.Create(8193, 10, 24));
    EXPECT_FALSE(image.Create(0, 10, 24));
    EXPECT_FALSE(image.Create(10, 0, 24));
    EXPECT_FALSE(image.Create(10, 8193, 24));
    EXPECT_FALSE(image.Create(-5, 10, 24));
    EXPECT_FALSE(image.Create(LONG_MAX, LONG_MIN, 24));
    EXPECT_EQ(image.bits, bits);
    EXPECT_EQ(image.GetWid(), 4);
    EXPECT_EQ(image.GetHgt(), 3);
    EXPECT_EQ(image.GetBitCount(), 24);
    EXPECT_EQ(AllRows(image), before);
}

TEST(Create, LargestSideIsAccepted)
{
    CDIB image(1, 1, 24);
    EXPECT_TRUE(image.Create(8192, 1, 8));
    EXPECT_EQ(image.GetWid(), 8192);
    EXPECT_EQ(image.GetRowBytes(), 8192);
    EXPECT_EQ(image.nominalWidth, 8192);
    EXPECT_EQ(image.nominalHeight, 1);
}

TEST(Create, SameDimensionsKeepThePixels)
{
    CDIB image(4, 3, 32);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    unsigned char* bits = image.bits;
    image.nominalWidth = 99;  // kept too: nothing is made anew
    EXPECT_TRUE(image.Create(4, 3, 32));
    EXPECT_EQ(image.bits, bits);
    EXPECT_EQ(AllRows(image), before);
    EXPECT_EQ(image.nominalWidth, 99);
}

TEST(Create, OtherDimensionsGiveAnAllZeroImage)
{
    CDIB image(4, 3, 24);
    FillPattern(image);
    EXPECT_TRUE(image.Create(5, 3, 24));
    EXPECT_EQ(image.GetWid(), 5);
    EXPECT_TRUE(IsAllZero(AllRows(image)));
    FillPattern(image);
    EXPECT_TRUE(image.Create(5, 3, 32));  // same size, other depth
    EXPECT_EQ(image.GetBitCount(), 32);
    EXPECT_TRUE(IsAllZero(AllRows(image)));
    EXPECT_EQ(image.nominalWidth, 5);
    EXPECT_EQ(image.nominalHeight, 3);
}

TEST(Create, TwoAndFourBitImagesAreRefusedAndTheImageKept)
{
    CDIB image(4, 3, 24);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    EXPECT_FALSE(image.Create(4, 3, 2));
    EXPECT_FALSE(image.Create(16, 16, 4));
    EXPECT_EQ(image.GetBitCount(), 24);
    EXPECT_EQ(AllRows(image), before);

    CDIB fourBit(16, 16, 4);
    EXPECT_EQ(fourBit.header, nullptr);
    EXPECT_EQ(fourBit.GetWid(), 0);
}

TEST(Create, DepthsOtherThanWholeBytePixelsAreRefused)
{
    for (int bits : {0, 1, 2, 4, 12, 15, 48, 64, -8}) {
        CDIB image(4, 4, bits);
        EXPECT_EQ(image.header, nullptr) << bits;
        EXPECT_EQ(image.bits, nullptr) << bits;
    }
}

TEST(Create, EmptyImageCanBeCreatedLater)
{
    CDIB image(0, 0, 24);
    ASSERT_EQ(image.header, nullptr);
    EXPECT_TRUE(image.Create(2, 2, 16));
    EXPECT_EQ(image.GetWid(), 2);
    EXPECT_EQ(image.GetBitCount(), 16);
}

// ---- Sizes ----

TEST(GetWid, MultipleAlwaysAddsOneWholeMultiple)
{
    CDIB image(640, 480, 8);
    EXPECT_EQ(image.GetWid(16), 656);
    EXPECT_EQ(image.GetHgt(16), 496);
    EXPECT_EQ(image.GetWid(0), 640);
    EXPECT_EQ(image.GetHgt(0), 480);
    EXPECT_EQ(image.GetWid(), 640);

    CDIB other(500, 481, 8);
    EXPECT_EQ(other.GetWid(16), 512);
    EXPECT_EQ(other.GetHgt(16), 496);
}

TEST(GetWid, EmptyImageIsZeroWide)
{
    CDIB image(0, 0, 8);
    EXPECT_EQ(image.GetWid(), 0);
    EXPECT_EQ(image.GetHgt(), 0);
    EXPECT_EQ(image.GetWid(16), 0);
    EXPECT_EQ(image.GetHgt(16), 0);
    EXPECT_EQ(image.GetBitCount(), 0);
}

TEST(GetHgt, IsTheAbsoluteHeaderHeight)
{
    CDIB image(4, 6, 24);
    image.header->biHeight = -6;  // a top-down header as a reader may leave it
    EXPECT_EQ(image.GetHgt(), 6);
}

TEST(GetRowBytes, PixelBytesArePaddedToFour)
{
    EXPECT_EQ(CDIB(3, 1, 24).GetRowBytes(), 12);
    EXPECT_EQ(CDIB(3, 1, 8).GetRowBytes(), 4);
    EXPECT_EQ(CDIB(1, 1, 32).GetRowBytes(), 4);
    EXPECT_EQ(CDIB(1, 1, 16).GetRowBytes(), 4);
    EXPECT_EQ(CDIB(3, 1, 16).GetRowBytes(), 8);
    EXPECT_EQ(CDIB(4, 1, 24).GetRowBytes(), 12);
    EXPECT_EQ(CDIB(5, 1, 24).GetRowBytes(), 16);
    EXPECT_EQ(CDIB(0, 1, 24).GetRowBytes(), 0);
}

TEST(GetBitsAdd, StorageRowsFollowEachOtherFromTheBottom)
{
    CDIB image(3, 4, 24);
    EXPECT_EQ(image.GetBitsAdd(0), image.bits);
    EXPECT_EQ(image.GetBitsAdd(3), image.bits + 3 * 12);
    CDIB empty(0, 0, 24);
    EXPECT_EQ(empty.GetBitsAdd(0), nullptr);
}

TEST(GetPalette, FollowsTheHeaderInTheSameBlock)
{
    CDIB image(3, 4, 8);
    EXPECT_EQ(reinterpret_cast<unsigned char*>(image.GetPalette()),
              reinterpret_cast<unsigned char*>(image.header) + 40);
    CDIB empty(0, 0, 8);
    EXPECT_EQ(empty.GetPalette(), nullptr);
}

// ---- Row access ----

TEST(GetLine, CopiesAtMostTheRowOrTheLimit)
{
    CDIB image(3, 2, 24);  // 12-byte rows
    FillPattern(image);
    std::vector<unsigned char> buffer(64, 0xEE);
    image.GetLine(1, buffer.data(), 32767);
    EXPECT_EQ(0, std::memcmp(buffer.data(), image.GetBitsAdd(1), 12));
    EXPECT_EQ(buffer[12], 0xEE);

    std::vector<unsigned char> limited(64, 0xEE);
    image.GetLine(1, limited.data(), 5);
    EXPECT_EQ(0, std::memcmp(limited.data(), image.GetBitsAdd(1), 5));
    EXPECT_EQ(limited[5], 0xEE);
}

TEST(GetLine, CopiesAWholeRowOfTheWidestThirtyTwoBitImage)
{
    CDIB image(8192, 2, 32);
    image.GetBitsAdd(1)[32767] = 0x5A;  // the last byte of the top row
    std::vector<unsigned char> buffer(8192 * 4 + 32, 0);
    image.GetLine(1, buffer.data(), static_cast<long>(buffer.size()));
    EXPECT_EQ(buffer[32767], 0x5A);
}

TEST(GetLine, RowOutsideTheImageOrNoLimitReadsNothing)
{
    CDIB image(3, 2, 8);
    FillPattern(image);
    std::vector<unsigned char> buffer(64, 0xEE);
    image.GetLine(-1, buffer.data(), 32767);
    image.GetLine(2, buffer.data(), 32767);
    image.GetLine(INT_MAX, buffer.data(), 32767);
    image.GetLine(INT_MIN, buffer.data(), 32767);
    image.GetLine(0, buffer.data(), 0);
    image.GetLine(0, buffer.data(), -4);
    image.GetLine(0, nullptr, 32767);
    EXPECT_EQ(buffer, std::vector<unsigned char>(64, 0xEE));
}

TEST(PutLine, WritesTheWholeRowPaddingIncluded)
{
    CDIB image(3, 2, 8);  // 4-byte rows: 3 pixels and one byte of padding
    const unsigned char row[4] = {1, 2, 3, 4};
    image.PutLine(1, row);
    EXPECT_EQ(0, std::memcmp(image.GetBitsAdd(1), row, 4));
    EXPECT_TRUE(IsAllZero(std::vector<unsigned char>(image.bits, image.bits + 4)));
}

TEST(PutLine, RowOutsideTheImageWritesNothing)
{
    CDIB image(3, 2, 24);
    std::vector<unsigned char> row(64, 0x77);
    image.PutLine(-1, row.data());
    image.PutLine(2, row.data());
    image.PutLine(INT_MAX, row.data());
    image.PutLine(INT_MIN, row.data());
    image.PutLine(0, nullptr);
    EXPECT_TRUE(IsAllZero(AllRows(image)));
}

// ---- Copy ----

template <typename T>
class CopyAtEveryDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(CopyAtEveryDepth, pxtest::AllDepths, pxtest::DepthNames);

TYPED_TEST(CopyAtEveryDepth, WithCreateMakesAnIdenticalImage)
{
    CDIB source(5, 3, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(1, 1, 24);
    ASSERT_TRUE(source.Copy(&destination, true));
    EXPECT_EQ(destination.GetWid(), 5);
    EXPECT_EQ(destination.GetHgt(), 3);
    EXPECT_EQ(destination.GetBitCount(), TypeParam::kBits);
    EXPECT_EQ(AllRows(destination), AllRows(source));
}

TYPED_TEST(CopyAtEveryDepth, WithoutCreateFillsTheSameShapedImage)
{
    CDIB source(6, 2, TypeParam::kBits);
    FillPattern(source);
    CDIB destination(6, 2, TypeParam::kBits);
    unsigned char* bits = destination.bits;
    ASSERT_TRUE(source.Copy(&destination, false));
    EXPECT_EQ(destination.bits, bits);
    EXPECT_EQ(AllRows(destination), AllRows(source));
}

TEST(Swap, ExchangesPixelsSizesAndFlagsWithoutCopying)
{
    CDIB first(5, 3, 24);
    FillPattern(first);
    first.useRotFilter = true;
    CDIB second(2, 7, 32);
    std::vector<unsigned char> firstRows = AllRows(first);
    unsigned char* firstBits = first.bits;
    first.Swap(second);
    EXPECT_EQ(second.bits, firstBits);
    EXPECT_EQ(second.GetWid(), 5);
    EXPECT_EQ(second.GetBitCount(), 24);
    EXPECT_TRUE(second.useRotFilter);
    EXPECT_EQ(AllRows(second), firstRows);
    EXPECT_EQ(first.GetWid(), 2);
    EXPECT_EQ(first.GetHgt(), 7);
    EXPECT_EQ(first.GetBitCount(), 32);
    EXPECT_FALSE(first.useRotFilter);
}

TEST(Copy, PaletteIsNotCopied)
{
    CDIB source(2, 2, 8);
    source.GetPalette()[7] = PaletteEntry{1, 2, 3, 0};
    CDIB destination(1, 1, 24);
    ASSERT_TRUE(source.Copy(&destination, true));
    EXPECT_EQ(destination.GetPalette()[7].blue, 7);
    EXPECT_EQ(destination.GetPalette()[7].red, 7);
}

TEST(Copy, NullOrEmptyImagesAreRefused)
{
    CDIB source(2, 2, 24);
    EXPECT_FALSE(source.Copy(nullptr, true));
    CDIB empty(0, 0, 24);
    CDIB destination(2, 2, 24);
    EXPECT_FALSE(empty.Copy(&destination, true));
    EXPECT_FALSE(source.Copy(&empty, false));  // nothing to copy into
    EXPECT_EQ(empty.header, nullptr);
}

TEST(Copy, SmallerDestinationWithoutCreateGetsOnlyWhatFits)
{
    CDIB source(8, 8, 32);
    FillPattern(source);
    CDIB destination(2, 2, 32);
    ASSERT_TRUE(source.Copy(&destination, false));
    // Bytes go over in one piece, so the small image holds the first 16 bytes of the large one.
    EXPECT_EQ(AllRows(destination), std::vector<unsigned char>(source.bits, source.bits + 16));
}

TEST(Copy, CallsTheDestinationsCreateThroughTheVirtualTable)
{
    CDIB source(5, 4, 16);
    SpyDIB destination;
    ASSERT_TRUE(source.Copy(&destination, true));
    EXPECT_EQ(destination.calls, 1);
    EXPECT_EQ(destination.lastWidth, 5);
    EXPECT_EQ(destination.lastHeight, 4);
    EXPECT_EQ(destination.lastBits, 16);
}

TEST(Copy, FailsWhenTheDestinationsCreateFails)
{
    CDIB source(5, 4, 16);
    SpyDIB destination;
    destination.fail = true;
    EXPECT_FALSE(source.Copy(&destination, true));
    EXPECT_EQ(destination.calls, 1);
    EXPECT_EQ(destination.GetWid(), 1);  // untouched
}

TEST(Copy, WithoutCreateDoesNotCallCreate)
{
    CDIB source(1, 1, 24);
    SpyDIB destination;
    EXPECT_TRUE(source.Copy(&destination, false));
    EXPECT_EQ(destination.calls, 0);
}

TEST(Copy, OntoItselfChangesNothing)
{
    CDIB image(3, 3, 24);
    FillPattern(image);
    std::vector<unsigned char> before = AllRows(image);
    EXPECT_TRUE(image.Copy(&image, true));
    EXPECT_EQ(AllRows(image), before);
}

// ---- Empty image ----

TEST(EmptyImage, EveryOperationAnswersFalseNullOrNothing)
{
    CDIB empty(0, 0, 24);
    CDIB other(2, 2, 24);
    tagRECT rectangle{0, 0, 2, 2};
    EXPECT_EQ(empty.GetRowBytes(), 0);
    EXPECT_EQ(empty.GetBitsAdd(0), nullptr);
    EXPECT_EQ(empty.GetPalette(), nullptr);
    EXPECT_FALSE(empty.Copy(&other, true));
    EXPECT_FALSE(empty.CopyCrop(&other, rectangle));
    EXPECT_FALSE(empty.CopyScale(&other, 0, 0));
    EXPECT_FALSE(empty.Create8Bit(&other, true));
    EXPECT_FALSE(empty.Flop());
    EXPECT_FALSE(empty.FlopFields());
    EXPECT_FALSE(empty.FlopRGB2BGR());
    EXPECT_FALSE(empty.SetAlpha(255));
    unsigned char buffer[16] = {};
    empty.GetLine(0, buffer, 16);
    empty.PutLine(0, buffer);
    EXPECT_EQ(empty.header, nullptr);
    EXPECT_EQ(other.GetWid(), 2);  // the would-be destination is left alone
}
