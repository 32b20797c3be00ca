#include <gtest/gtest.h>

#include <cstring>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"

namespace {

using namespace pxtest;

int LoadBmpBytes(CDIB& image, const Bytes& bytes)
{
    TempDir dir;
    return ReadThrough(dir, bytes, [&](CPFile* file) { return image.LoadBmp(file); });
}

template <typename T>
class BmpPictureDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(BmpPictureDepth, AllDepths, DepthNames);

TYPED_TEST(BmpPictureDepth, ReadsTheRowsAsTheyLie)
{
    for (long width : {1L, 3L, 5L}) {
        CDIB image(1, 1, 24);
        BmpOptions options;
        options.width = width;
        options.height = 4;
        options.bits = TypeParam::kBits;
        ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0) << width;
        EXPECT_EQ(image.GetWid(), width);
        EXPECT_EQ(image.GetHgt(), 4);
        EXPECT_EQ(image.GetBitCount(), TypeParam::kBits);
        EXPECT_EQ(image.nominalWidth, width);
        EXPECT_EQ(image.nominalHeight, 4);
        EXPECT_TRUE(HasPattern(image)) << width;
    }
}

TEST(BmpPicture, EightBitPaletteIsTheFilesWholeTable)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.bits = 8;
    options.coloursUsed = 16;  // not consulted: all 256 entries are read
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    for (int i = 0; i < 256; ++i) {
        PaletteEntry want = FilePaletteEntry(i);
        ASSERT_EQ(std::memcmp(&image.GetPalette()[i], &want, 4), 0) << i;
    }
}

TEST(BmpPicture, PaletteFollowsALongerInformationHeader)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.bits = 8;
    options.infoSize = 124;
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    PaletteEntry want = FilePaletteEntry(200);
    EXPECT_EQ(std::memcmp(&image.GetPalette()[200], &want, 4), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(BmpPicture, FileEndingInsideThePaletteKeepsTheGreyRampForTheRest)
{
    // 1 x 1 pixel, palette cut after 8 entries, the stated offset pointing at the one row.
    CDIB image(1, 1, 8);
    image.GetPalette()[100] = PaletteEntry{1, 2, 3, 4};  // an old palette is not kept either
    BmpOptions options;
    options.bits = 8;
    options.width = 1;
    options.height = 1;
    Bytes bytes = MakeBmp(options);
    Bytes shortFile(bytes.begin(), bytes.begin() + 54 + 32);
    shortFile.insert(shortFile.end(), {PatternByte(0, 0, 0), 0, 0, 0});
    Put(shortFile, 2, static_cast<uint32_t>(shortFile.size()), 4, false);
    Put(shortFile, 10, static_cast<uint32_t>(shortFile.size() - 4), 4, false);
    ASSERT_EQ(LoadBmpBytes(image, shortFile), 0);
    PaletteEntry first = FilePaletteEntry(7);
    EXPECT_EQ(std::memcmp(&image.GetPalette()[7], &first, 4), 0);
    EXPECT_EQ(image.GetPalette()[100].blue, 100);
    EXPECT_EQ(image.GetPalette()[100].red, 100);
    EXPECT_EQ(image.GetPalette()[255].green, 255);
    EXPECT_TRUE(HasPattern(image));
}

TEST(BmpPicture, FourBitPicturesHaveTooFewColours)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.bits = 4;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 5);
    options.bits = 1;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 5);
}

TEST(BmpPicture, RunLengthAndBitfieldFilesAreCompressed)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.bits = 8;
    options.compression = 1;  // RLE8
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 1);
    options.bits = 4;
    options.compression = 2;  // RLE4: compression is looked at before the colours
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 1);
    options.bits = 32;
    options.compression = 3;  // bit fields
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 1);
}

TEST(BmpPicture, OnlyTheCompressionFieldsLowByteCounts)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.compression = 0x100;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(BmpPicture, SidesAboveTheLimitAreTooLarge)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.widthField = 9000;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 2);
    options.widthField = 0;
    options.heightField = 8193;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 2);
    EXPECT_EQ(image.GetWid(), 1) << "the target is not touched";
}

TEST(BmpPicture, TopDownFilesEndAsTooLarge)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.heightField = -2;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 2);
}

TEST(BmpPicture, SizeLimitItselfIsRead)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.width = 8192;
    options.height = 2;
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    EXPECT_EQ(image.GetWid(), 8192);
    EXPECT_TRUE(HasPattern(image));
}

TEST(BmpPicture, BadHeadersAreUnreadable)
{
    CDIB image(1, 1, 24);
    Bytes notBmp = MakeBmp(BmpOptions{});
    notBmp[0] = 'X';
    EXPECT_EQ(LoadBmpBytes(image, notBmp), 3);

    BmpOptions core;
    core.infoSize = 12;  // the oldest header form
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(core)), 3);

    BmpOptions odd;
    odd.bits = 15;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(odd)), 3);
    odd.bits = 48;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(odd)), 3);

    BmpOptions empty;
    empty.width = 0;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(empty)), 3);
    empty.width = 2;
    empty.height = 0;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(empty)), 3);

    BmpOptions cut;
    cut.keepBytes = 30;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(cut)), 3);
    EXPECT_EQ(LoadBmpBytes(image, Bytes{}), 3);
}

TEST(BmpPicture, MissingRowsAreUnreadableAndKeepTheSize)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.width = 4;
    options.height = 3;
    options.statedSize = 0;           // the whole row block is asked for
    options.keepBytes = 54 + 12 + 5;  // one row and a bit
    Bytes bytes = MakeBmp(options);
    EXPECT_EQ(LoadBmpBytes(image, bytes), 3);
    EXPECT_EQ(image.GetWid(), 4);
    EXPECT_EQ(image.GetHgt(), 3);
    EXPECT_EQ(RowPixels(image, 0), Bytes(bytes.begin() + 54, bytes.begin() + 66));
}

TEST(BmpPicture, StatedSizeLimitsTheBytesRead)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.width = 4;
    options.height = 3;
    options.statedSize = 54 + 12;  // one row's worth after the offset
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    EXPECT_EQ(Pixel(image, 3, 0),
              (std::vector<unsigned char>{PatternByte(3, 0, 0), PatternByte(3, 0, 1),
                                          PatternByte(3, 0, 2)}));
    EXPECT_TRUE(IsAllZero(RowPixels(image, 1)));
    EXPECT_TRUE(IsAllZero(RowPixels(image, 2)));
}

TEST(BmpPicture, RowsNotReadAreClearedInAReusedImage)
{
    CDIB image(4, 3, 24);
    std::memset(image.bits, 0x5A, static_cast<size_t>(image.GetRowBytes() * 3));
    BmpOptions options;
    options.width = 4;
    options.height = 3;
    options.statedSize = 54 + 12;
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    EXPECT_TRUE(IsAllZero(RowPixels(image, 2)));
}

TEST(BmpPicture, StatedSizeAtOrBelowTheOffsetReadsTheWholeBlock)
{
    for (int64_t stated : {int64_t(0), int64_t(54), int64_t(10)}) {
        CDIB image(1, 1, 24);
        BmpOptions options;
        options.statedSize = stated;
        ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0) << stated;
        EXPECT_TRUE(HasPattern(image)) << stated;
    }
}

TEST(BmpPicture, StatedSizeBeyondTheFileReadsNoMoreThanTheBlock)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.statedSize = 0xFFFFFFF0;
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(BmpPicture, RowsAreReadFromTheStatedOffset)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.gap = 37;
    ASSERT_EQ(LoadBmpBytes(image, MakeBmp(options)), 0);
    EXPECT_TRUE(HasPattern(image));

    // An offset past the end of the file leaves nothing to read.
    options.gap = 0;
    options.dataOffset = 1 << 30;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(options)), 3);
}

TEST(BmpPicture, TargetWithoutHeaderIsRefused)
{
    CDIB empty(0, 0, 24);
    ASSERT_EQ(empty.header, nullptr);
    EXPECT_EQ(LoadBmpBytes(empty, MakeBmp(BmpOptions{})), 4);
}

TEST(BmpPicture, RefusedCreateIsOutOfMemory)
{
    SpyDIB image;
    image.fail = true;
    EXPECT_EQ(LoadBmpBytes(image, MakeBmp(BmpOptions{})), 6);
    EXPECT_EQ(image.lastWidth, 3);
    EXPECT_EQ(image.lastHeight, 2);
    EXPECT_EQ(image.lastBits, 24);
}

}  // namespace

namespace {

TEST(BmpPicture, EveryKeptMalformedFileIsRefusedWithItsCode)
{
    std::vector<MalformedFile> files = MalformedFiles("bmp");
    ASSERT_FALSE(files.empty());
    for (const MalformedFile& file : files) {
        CDIB image(1, 1, 8);
        EXPECT_EQ(LoadBmpBytes(image, ReadBytes(file.path)), file.code) << file.path;
    }
}

}  // namespace
