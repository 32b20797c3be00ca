#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"

namespace {

using namespace pxtest;

int LoadTifBytes(CDIB& image, const Bytes& bytes)
{
    TempDir dir;
    return ReadThrough(dir, bytes, [&](CPFile* file) { return image.LoadTif(file); });
}

struct TifCase {
    bool bigEndian;
    int samples;
    long rowsPerStrip;
    int offsetType;
};

std::string CaseName(const ::testing::TestParamInfo<TifCase>& info)
{
    const TifCase& c = info.param;
    return std::string(c.bigEndian ? "MM" : "II") + "_Samples" + std::to_string(c.samples) +
           "_Rows" + std::to_string(c.rowsPerStrip) + "_Offsets" +
           (c.offsetType == 3 ? "16" : "32");
}

class TifLayout : public ::testing::TestWithParam<TifCase> {};

TEST_P(TifLayout, ReadsThePictureRightWayUp)
{
    const TifCase& c = GetParam();
    CDIB image(1, 1, 24);
    TifOptions options;
    options.width = 5;
    options.height = 7;
    options.bigEndian = c.bigEndian;
    options.samples = c.samples;
    options.rowsPerStrip = c.rowsPerStrip;
    options.offsetType = c.offsetType;
    ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0);
    EXPECT_EQ(image.GetBitCount(), c.samples * 8);
    EXPECT_EQ(image.GetWid(), 5);
    EXPECT_EQ(image.GetHgt(), 7);
    EXPECT_EQ(image.nominalWidth, 5);
    EXPECT_EQ(image.nominalHeight, 7);
    EXPECT_TRUE(HasPattern(image));
}

INSTANTIATE_TEST_SUITE_P(
    TifPicture, TifLayout,
    ::testing::Values(TifCase{false, 1, 0, 4}, TifCase{true, 1, 0, 4}, TifCase{false, 2, 0, 4},
                      TifCase{false, 3, 0, 4}, TifCase{true, 3, 0, 4}, TifCase{false, 4, 0, 4},
                      TifCase{true, 4, 0, 4}, TifCase{false, 3, 0, 3}, TifCase{true, 3, 0, 3},
                      TifCase{false, 3, 2, 4}, TifCase{true, 3, 2, 4}, TifCase{false, 3, 2, 3},
                      TifCase{true, 3, 2, 3}, TifCase{false, 1, 3, 3}, TifCase{true, 4, 1, 4},
                      TifCase{false, 3, 4, 3},  // two 16-bit offsets held in the entry itself
                      TifCase{true, 3, 4, 3},
                      TifCase{false, 3, 7, 4}),  // one strip listed with its rows tag
    CaseName);

TEST(TifPicture, GreyIsNotSwappedAndKeepsTheGreyRamp)
{
    CDIB image(5, 7, 8);
    image.GetPalette()[3] = PaletteEntry{9, 9, 9, 9};
    TifOptions options;
    options.width = 5;
    options.height = 7;
    options.samples = 1;
    ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0);
    EXPECT_TRUE(HasPattern(image));
    EXPECT_TRUE(IsGreyRamp(image));
}

TEST(TifPicture, MissingSamplesTagMeansOneSample)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.samples = 1;
    options.samplesTag = false;
    ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0);
    EXPECT_EQ(image.GetBitCount(), 8);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TifPicture, DirectoryAfterTheFirstFourKilobytesIsRead)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.width = 40;
    options.height = 50;  // 6,000 bytes of rows come before the directory
    ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TifPicture, DirectoryCrossingTheFirstFourKilobytesIsReadWhole)
{
    // The rows end just before 4,096, so the directory starts inside the first window and its
    // entries run past it.
    CDIB image(1, 1, 24);
    TifOptions options;
    options.width = 4;
    options.height = 3;
    options.dataGap = 4040 - 8 - 36 - 3;
    Bytes bytes = MakeTif(options);
    uint32_t directory = bytes[4] | bytes[5] << 8 | bytes[6] << 16 | uint32_t(bytes[7]) << 24;
    ASSERT_LT(directory, 4096u);
    ASSERT_GT(directory + 2 + 7 * 12, 4096u);  // seven entries
    ASSERT_EQ(LoadTifBytes(image, bytes), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TifPicture, LzwIsCompressed)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.compression = 5;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 1);
    options.compression = 32773;  // PackBits
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 1);
    EXPECT_EQ(image.GetWid(), 1) << "nothing created";
}

TEST(TifPicture, PlanesStoredApartAreUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.planar = true;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3);
    options.bigEndian = true;
    options.samples = 4;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3);
    EXPECT_EQ(image.GetWid(), 1) << "nothing created";
}

TEST(TifPicture, SamplesOfOtherThanEightBitsAreUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions sixteen;
    sixteen.bits = 16;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(sixteen)), 3);
    for (int bits : {1, 4, 12, 0}) {
        TifOptions options;
        options.bitsTag = bits;
        options.samples = 1;
        EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3) << bits;
    }
    // Without tag 258 a sample is one bit.
    TifOptions missing;
    missing.bitsTag = -2;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(missing)), 3);
    EXPECT_EQ(image.GetWid(), 1) << "nothing created";
}

TEST(TifPicture, EightBitsListedPerSampleAreRead)
{
    // One value per sample, in the entry (two samples) or in a table (three, four).
    for (int samples : {2, 3, 4}) {
        for (bool bigEndian : {false, true}) {
            CDIB image(1, 1, 24);
            TifOptions options;
            options.samples = samples;
            options.bigEndian = bigEndian;
            options.bitsPerSampleList = true;
            ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0) << samples;
            EXPECT_TRUE(HasPattern(image));
            // The last sample of another size: refused.
            options.bitsTag = 16;
            EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3) << samples;
        }
    }
}

TEST(TifPicture, BitsPerSampleTableOutsideTheFileIsUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.bitsPerSampleList = true;
    Bytes bytes = MakeTif(options);
    const size_t directory = bytes[4] | bytes[5] << 8;
    size_t at = directory + 2 + 2 * 12;  // the third entry is tag 258
    ASSERT_EQ(bytes[at], 258 & 255);
    Put(bytes, at + 8, 0x7FFFFFF0, 4, false);
    EXPECT_EQ(LoadTifBytes(image, bytes), 3);
}

TEST(TifPicture, OnlyGreyAndRgbAreRead)
{
    // White-is-zero, palette, transparency mask, CMYK, YCbCr, CIE Lab.
    for (int photometric : {0, 3, 4, 5, 6, 8}) {
        CDIB image(1, 1, 24);
        TifOptions options;
        options.photometric = photometric;
        options.samples = photometric == 3 || photometric == 0 ? 1 : photometric == 5 ? 4 : 3;
        EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3) << photometric;
        EXPECT_EQ(image.GetWid(), 1) << "nothing created";
    }
    for (int photometric : {1, 2}) {
        CDIB image(1, 1, 24);
        TifOptions options;
        options.photometric = photometric;
        options.samples = photometric == 1 ? 1 : 3;
        ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0) << photometric;
        EXPECT_TRUE(HasPattern(image));
    }
}

TEST(TifPicture, CompressionIsToldBeforeTheOtherRefusals)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.compression = 5;
    options.photometric = 6;
    options.planar = true;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 1);
}

TEST(TifPicture, SidesAboveTheLimitAreTooLarge)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.widthTag = 9000;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 2);
    options.widthTag = 0;
    options.heightTag = 8193;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 2);
}

TEST(TifPicture, BadHeadersAreUnreadable)
{
    CDIB image(1, 1, 24);
    Bytes bytes = MakeTif(TifOptions{});
    Bytes wrongMagic = bytes;
    wrongMagic[2] = 43;
    EXPECT_EQ(LoadTifBytes(image, wrongMagic), 3);
    Bytes mixed = bytes;
    mixed[0] = 'M';
    mixed[1] = 'M';  // big-endian mark, but 42 sits at byte 2
    EXPECT_EQ(LoadTifBytes(image, mixed), 3);
    EXPECT_EQ(LoadTifBytes(image, Bytes{'I', 'I', 42}), 3);
    EXPECT_EQ(LoadTifBytes(image, Bytes{}), 3);

    Bytes farDirectory = bytes;
    Put(farDirectory, 4, 0x7FFFFFF0, 4, false);
    EXPECT_EQ(LoadTifBytes(image, farDirectory), 3);
    Bytes lastByteDirectory = bytes;
    Put(lastByteDirectory, 4, static_cast<uint32_t>(bytes.size() - 1), 4, false);
    EXPECT_EQ(LoadTifBytes(image, lastByteDirectory), 3);
}

TEST(TifPicture, MissingOrUnusableTagsAreUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions five;
    five.samplesValue = 5;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(five)), 3);
    TifOptions many;
    many.samplesValue = 0xFFFF;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(many)), 3);
    TifOptions rational;
    rational.offsetType = 5;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(rational)), 3);
    TifOptions noStrips;
    noStrips.stripCountLess = 1;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(noStrips)), 3);

    // Rows per strip of 0 would never finish the picture.
    Bytes bytes = MakeTif(TifOptions{.rowsPerStrip = 2});
    size_t at = bytes.size() - 4 - 12;  // the last entry is tag 278
    ASSERT_EQ(bytes[at], 278 & 255);
    Put(bytes, at + 8, 0, 4, false);
    EXPECT_EQ(LoadTifBytes(image, bytes), 3);
}

TEST(TifPicture, TooFewStripsForTheRowsIsUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.rowsPerStrip = 2;
    options.stripCountLess = 1;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3);
    EXPECT_EQ(image.GetHgt(), 5) << "sized before the rows were read";
}

TEST(TifPicture, StripsBeyondThoseTheRowsNeedAreNotRead)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.rowsPerStrip = 2;
    options.stripCountExtra = 100000;  // a table far bigger than the picture, mostly missing
    Bytes bytes = MakeTif(options);
    ASSERT_EQ(LoadTifBytes(image, bytes), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TifPicture, HugeStripCountWithTheTableMissingIsUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.rowsPerStrip = 1;
    Bytes bytes = MakeTif(options);
    // Entry 273 (the sixth) claims four billion strips in a table at the end of the file.
    size_t entry = bytes.size() - 4 - 8 * 12 + 5 * 12;
    ASSERT_EQ(bytes[entry], 273 & 255);
    Put(bytes, entry + 4, 0xFFFFFFFF, 4, false);
    Put(bytes, entry + 8, static_cast<uint32_t>(bytes.size() - 8), 4, false);
    EXPECT_EQ(LoadTifBytes(image, bytes), 3);
}

TEST(TifPicture, StripsOutsideTheFileAreUnreadable)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.stripOffsetShift = 1 << 20;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3);
    // One strip that holds fewer rows than the height asks for: the read runs into the
    // directory and then off the end of the file.
    options.stripOffsetShift = 0;
    options.heightTag = 50;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(options)), 3);
    EXPECT_EQ(image.GetHgt(), 50);
}

TEST(TifPicture, DirectoryLoopIsNeverFollowed)
{
    CDIB image(1, 1, 24);
    TifOptions options;
    options.directoryLoop = true;
    ASSERT_EQ(LoadTifBytes(image, MakeTif(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TifPicture, DirectoryCountBeyondTheFileIsCutToWhatIsThere)
{
    CDIB image(1, 1, 24);
    Bytes bytes = MakeTif(TifOptions{});
    uint32_t directory = bytes[4] | bytes[5] << 8 | bytes[6] << 16 | uint32_t(bytes[7]) << 24;
    Put(bytes, directory, 0xFFFF, 2, false);
    ASSERT_EQ(LoadTifBytes(image, bytes), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(TifPicture, TargetWithoutHeaderIsRefused)
{
    CDIB empty(0, 0, 24);
    EXPECT_EQ(LoadTifBytes(empty, MakeTif(TifOptions{})), 4);
}

TEST(TifPicture, RefusedCreateIsOutOfMemory)
{
    SpyDIB image;
    image.fail = true;
    EXPECT_EQ(LoadTifBytes(image, MakeTif(TifOptions{.samples = 4})), 6);
    EXPECT_EQ(image.lastBits, 32);
}

}  // namespace

namespace {

TEST(TifPicture, EveryKeptMalformedFileIsRefusedWithItsCode)
{
    std::vector<MalformedFile> files = MalformedFiles("tif");
    ASSERT_FALSE(files.empty());
    for (const MalformedFile& file : files) {
        CDIB image(1, 1, 8);
        EXPECT_EQ(LoadTifBytes(image, ReadBytes(file.path)), file.code) << file.path;
    }
}

}  // namespace
