#include <gtest/gtest.h>

#include <cstring>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"

namespace {

using namespace pxtest;

int LoadTgaBytes(CDIB& image, const Bytes& bytes)
{
    TempDir dir;
    return ReadThrough(dir, bytes, [&](CPFile* file) { return image.LoadTga(file); });
}

template <typename T>
class TgaPictureDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(TgaPictureDepth, AllDepths, DepthNames);

TYPED_TEST(TgaPictureDepth, BottomLeftOriginRowsAreTheImagesRows)
{
    for (long width : {1L, 3L, 7L}) {
        CDIB image(1, 1, 24);
        TgaOptions options;
        options.width = width;
        options.height = 4;
        options.depth = TypeParam::kBits;
        options.type = TypeParam::kBits == 8 ? 3 : 2;
        ASSERT_EQ(LoadTgaBytes(image, MakeTga(options)), 0);
        EXPECT_EQ(image.GetBitCount(), TypeParam::kBits);
        EXPECT_EQ(image.GetWid(), width);
        EXPECT_EQ(image.nominalWidth, width);
        EXPECT_EQ(image.nominalHeight, 4);
        EXPECT_TRUE(HasPattern(image)) << width;
    }
}

TYPED_TEST(TgaPictureDepth, TopLeftOriginIsFlippedAfterReading)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.width = 5;
    options.height = 3;
    options.depth = TypeParam::kBits;
    options.descriptor = 0x20 | (TypeParam::kBits == 32 ? 8 : 0);
    ASSERT_EQ(LoadTgaBytes(image, MakeTga(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TgaPicture, IdFieldAndColourMapAreSkippedAndTheMapIsNotUsed)
{
    CDIB image(3, 2, 8);
    image.GetPalette()[9] = PaletteEntry{1, 2, 3, 0};
    TgaOptions options;
    options.depth = 8;
    options.type = 1;  // colour-mapped
    options.idLength = 11;
    options.mapType = 1;
    options.mapLength = 256;
    options.mapBits = 24;
    ASSERT_EQ(LoadTgaBytes(image, MakeTga(options)), 0);
    EXPECT_TRUE(HasPattern(image));
    EXPECT_TRUE(IsGreyRamp(image));
}

TEST(TgaPicture, FifteenBitMapEntriesTakeTwoBytes)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.mapType = 1;
    options.mapLength = 5;
    options.mapBits = 15;
    ASSERT_EQ(LoadTgaBytes(image, MakeTga(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TgaPicture, MapLengthWithoutAColourMapIsNotSkipped)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.mapType = 0;
    options.mapLength = 40;  // describes a map the file does not have
    ASSERT_EQ(LoadTgaBytes(image, MakeTga(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TgaPicture, RunLengthTypesAreCompressed)
{
    for (int type : {9, 10, 11, 32, 255}) {
        CDIB image(1, 1, 24);
        TgaOptions options;
        options.type = type;
        EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 1) << type;
        EXPECT_EQ(image.GetWid(), 1) << "nothing created";
    }
}

TEST(TgaPicture, DepthsWithoutWholeBytePixelsAreUnreadable)
{
    for (int depth : {0, 1, 4, 7, 15, 33, 40, 64}) {
        CDIB image(1, 1, 24);
        TgaOptions options;
        options.depth = depth;
        options.type = 10;  // the depth is looked at first
        EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 3) << depth;
    }
}

TEST(TgaPicture, EmptySidesAreUnreadable)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.width = 0;
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 3);
    options.width = 2;
    options.height = 0;
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 3);
}

TEST(TgaPicture, SidesAboveTheLimitAreTooLarge)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.width = 9000;
    options.height = 1;
    options.keepBytes = 18;
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 2);
    options.width = 1;
    options.height = 65535;
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 2);
}

TEST(TgaPicture, ShortFilesAreUnreadableAndKeepTheRowsRead)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.width = 2;
    options.height = 3;
    options.keepBytes = 18 + 6 + 2;  // one row and part of the next
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 3);
    EXPECT_EQ(image.GetWid(), 2);
    EXPECT_EQ(image.GetHgt(), 3);
    EXPECT_EQ(Pixel(image, 1, 0),
              (std::vector<unsigned char>{PatternByte(1, 0, 0), PatternByte(1, 0, 1),
                                          PatternByte(1, 0, 2)}));
    options.keepBytes = 10;
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(options)), 3);
}

TEST(TgaPicture, RowsAreClearedBeforeTheyAreRead)
{
    CDIB image(3, 2, 24);
    std::memset(image.bits, 0x5A, static_cast<size_t>(image.GetRowBytes() * 2));
    ASSERT_EQ(LoadTgaBytes(image, MakeTga(TgaOptions{})), 0);
    // Row padding: three bytes after the nine pixel bytes of each row.
    for (int row = 0; row < 2; ++row)
        for (int i = 9; i < 12; ++i)
            EXPECT_EQ(image.GetBitsAdd(row)[i], 0);
}

TEST(TgaPicture, TargetWithoutHeaderIsRefused)
{
    CDIB empty(0, 0, 24);
    EXPECT_EQ(LoadTgaBytes(empty, MakeTga(TgaOptions{})), 4);
}

TEST(TgaPicture, RefusedCreateIsOutOfMemory)
{
    SpyDIB image;
    image.fail = true;
    EXPECT_EQ(LoadTgaBytes(image, MakeTga(TgaOptions{})), 6);
    EXPECT_EQ(image.lastBits, 24);
}

}  // namespace

namespace {

TEST(TgaPicture, EveryKeptMalformedFileIsRefusedWithItsCode)
{
    std::vector<MalformedFile> files = MalformedFiles("tga");
    ASSERT_FALSE(files.empty());
    for (const MalformedFile& file : files) {
        CDIB image(1, 1, 8);
        EXPECT_EQ(LoadTgaBytes(image, ReadBytes(file.path)), file.code) << file.path;
    }
}

}  // namespace
