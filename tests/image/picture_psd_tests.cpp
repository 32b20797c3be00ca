#include <gtest/gtest.h>

#include <string>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"

namespace {

using namespace pxtest;

int LoadPsdBytes(CDIB& image, const Bytes& bytes)
{
    TempDir dir;
    return ReadThrough(dir, bytes, [&](CPFile* file) { return image.LoadPsd(file); });
}

// Blue, green, red of every pixel equal the grey (or palette) value the file gives.
::testing::AssertionResult HasColoursOf(const CDIB& image, const PsdOptions& o)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (long r = 0; r < o.height; ++r)
        for (long x = 0; x < o.width; ++x) {
            const unsigned char* pixel =
                image.GetBitsAdd(static_cast<int>(o.height - 1 - r)) + x * pixelBytes;
            unsigned char value = PsdSample(o, 0, x, r);
            unsigned char want[3] = {value, value, value};
            if (o.mode == 2) {
                PaletteEntry entry = FilePaletteEntry(value);
                want[0] = entry.blue;
                want[1] = entry.green;
                want[2] = entry.red;
            }
            for (int b = 0; b < 3; ++b)
                if (pixel[b] != want[b])
                    return ::testing::AssertionFailure()
                           << "file row " << r << " pixel " << x << " byte " << b;
        }
    return ::testing::AssertionSuccess();
}

struct PsdCase {
    int mode;
    int channels;
    int compression;
    bool littleEndian = false;
};

std::string CaseName(const ::testing::TestParamInfo<PsdCase>& info)
{
    static const char* kModes[] = {"Bitmap", "Grey", "Indexed", "Rgb"};
    const PsdCase& c = info.param;
    return std::string(kModes[c.mode]) + std::to_string(c.channels) +
           (c.compression == 1 ? "_Packed" : "_Raw") + (c.littleEndian ? "_Swapped" : "");
}

class PsdLayout : public ::testing::TestWithParam<PsdCase> {};

TEST_P(PsdLayout, ReadsTheFlattenedPicture)
{
    const PsdCase& c = GetParam();
    PsdOptions options;
    options.width = 7;
    options.height = 4;
    options.mode = c.mode;
    options.channels = c.channels;
    options.compression = c.compression;
    options.littleEndian = c.littleEndian;
    CDIB image(1, 1, 8);
    ASSERT_EQ(LoadPsdBytes(image, MakePsd(options)), 0);
    EXPECT_EQ(image.GetWid(), 7);
    EXPECT_EQ(image.GetHgt(), 4);
    EXPECT_EQ(image.GetBitCount(), c.channels >= 4 ? 32 : 24);
    if (c.mode == 3 && c.channels >= 3) {
        EXPECT_TRUE(HasPattern(image));  // alpha too when there are four channels
    } else {
        EXPECT_TRUE(HasColoursOf(image, options));
    }
}

INSTANTIATE_TEST_SUITE_P(PsdPicture, PsdLayout,
                         ::testing::Values(PsdCase{1, 1, 0}, PsdCase{1, 1, 1}, PsdCase{1, 2, 0},
                                           PsdCase{1, 2, 1}, PsdCase{2, 1, 0}, PsdCase{2, 1, 1},
                                           PsdCase{3, 3, 0}, PsdCase{3, 3, 1}, PsdCase{3, 4, 0},
                                           PsdCase{3, 4, 1}, PsdCase{3, 5, 0}, PsdCase{3, 5, 1},
                                           PsdCase{3, 3, 0, true}, PsdCase{3, 4, 1, true}),
                         CaseName);

TEST(PsdPicture, CmykAndLaterModesAreUnreadable)
{
    for (int mode : {4, 7, 8, 9}) {
        CDIB image(1, 1, 24);
        PsdOptions options;
        options.mode = mode;
        options.channels = 4;
        EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 3) << mode;
    }
}

TEST(PsdPicture, SidesAboveTheLimitAreTooLarge)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.widthField = 9000;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 2);
    options.widthField = 0;
    options.heightField = 30000;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 2);
}

TEST(PsdPicture, OneBitPicturesHaveTooFewColours)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.mode = 0;
    options.channels = 1;
    options.channelBits = 1;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 5);
}

TEST(PsdPicture, WideChannelsAndOtherVersionsAreUnreadable)
{
    CDIB image(1, 1, 24);
    PsdOptions wide;
    wide.channelBits = 16;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(wide)), 3);
    wide.channelBits = 32;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(wide)), 3);
    PsdOptions large;
    large.version = 2;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(large)), 3);
    PsdOptions none;
    none.channels = 0;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(none)), 3);
    PsdOptions empty;
    empty.width = 0;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(empty)), 3);
}

TEST(PsdPicture, ZipCompressionIsCompressed)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.compression = 2;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 1);
    options.compression = 3;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 1);
}

TEST(PsdPicture, ColourDataBeyondThePaletteIsSkipped)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.mode = 2;
    options.channels = 1;
    options.colourDataLength = 768 + 1000;
    ASSERT_EQ(LoadPsdBytes(image, MakePsd(options)), 0);
    EXPECT_TRUE(HasColoursOf(image, options));
}

TEST(PsdPicture, ShortPaletteLeavesTheRestBlack)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.mode = 2;
    options.channels = 1;
    options.width = 1;
    options.height = 1;
    options.colourDataLength = 300;  // all reds, a few greens, no blues
    ASSERT_EQ(LoadPsdBytes(image, MakePsd(options)), 0);
    unsigned char index = PsdSample(options, 0, 0, 0);
    PaletteEntry entry = FilePaletteEntry(index);
    const unsigned char* pixel = image.GetBitsAdd(0);
    EXPECT_EQ(pixel[2], entry.red);
    EXPECT_EQ(pixel[1], index < 44 ? entry.green : 0);
    EXPECT_EQ(pixel[0], 0);
}

TEST(PsdPicture, ImageResourcesAndLayersAreSkippedByLength)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.resourcesLength = 5000;
    options.layersLength = 70001;
    ASSERT_EQ(LoadPsdBytes(image, MakePsd(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(PsdPicture, SectionsRunningOffTheFileAreUnreadable)
{
    CDIB image(1, 1, 24);
    Bytes bytes = MakePsd(PsdOptions{});
    Put(bytes, 30, 0xFFFFFFF0, 4, true);  // the image resources' length
    EXPECT_EQ(LoadPsdBytes(image, bytes), 3);
    for (long keep : {0L, 20L, 29L, 33L, 40L, 80L}) {
        PsdOptions options;
        options.keepBytes = keep;
        EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 3) << keep;
    }
}

TEST(PsdPicture, PackedRowThatDecodesShortIsUnreadable)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.compression = 1;
    options.width = 6;
    options.editPackedRow = [](long index, Bytes& row) {
        if (index == 4)
            row.resize(row.size() - 2);
    };
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 3);
}

TEST(PsdPicture, PackedRowThatDecodesLongIsCutToTheRow)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.compression = 1;
    options.width = 6;
    options.editPackedRow = [](long index, Bytes& row) {
        if (index == 1)
            row.insert(row.end(), {0xF0, 0x66, 2, 1, 2, 3});  // seventeen bytes too many
    };
    ASSERT_EQ(LoadPsdBytes(image, MakePsd(options)), 0);
    EXPECT_TRUE(HasPattern(image));
}

TEST(PsdPicture, PackedRowCountsBeyondTheFileAreUnreadable)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.compression = 1;
    options.editPackedRow = [](long index, Bytes& row) {
        if (index == 0)
            row.resize(60000, 0x80);  // a count the rest of the file cannot back
    };
    Bytes bytes = MakePsd(options);
    bytes.resize(bytes.size() - 59000);
    EXPECT_EQ(LoadPsdBytes(image, bytes), 3);
}

TEST(PsdPicture, TargetWithoutHeaderIsRefused)
{
    CDIB empty(0, 0, 24);
    EXPECT_EQ(LoadPsdBytes(empty, MakePsd(PsdOptions{})), 4);
}

TEST(PsdPicture, RefusedCreateIsOutOfMemory)
{
    SpyDIB image;
    image.fail = true;
    PsdOptions options;
    options.channels = 4;
    EXPECT_EQ(LoadPsdBytes(image, MakePsd(options)), 6);
    EXPECT_EQ(image.lastBits, 32);
}

}  // namespace

namespace {

TEST(PsdPicture, EveryKeptMalformedFileIsRefusedWithItsCode)
{
    std::vector<MalformedFile> files = MalformedFiles("psd");
    ASSERT_FALSE(files.empty());
    for (const MalformedFile& file : files) {
        CDIB image(1, 1, 8);
        EXPECT_EQ(LoadPsdBytes(image, ReadBytes(file.path)), file.code) << file.path;
    }
}

}  // namespace
