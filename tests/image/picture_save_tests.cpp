#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"
#include "platform/base/file_types.h"
#include "platform/base/replace_file.h"
#include "platform/dialog/message_box.h"
#include "support/file_size_limit.h"

namespace {

using namespace pxtest;

// Saves through Save(CPFile*, format) into a new file and answers its bytes.
Bytes SaveBytes(CDIB& image, int format, bool* result = nullptr)
{
    TempDir dir;
    FSpec spec = PathSpec(dir.File("out"));
    CPFile file(&spec, kFileWrite);
    bool saved = image.Save(&file, format);
    if (result != nullptr)
        *result = saved;
    file.Close();
    return ReadBytes(dir.File("out"));
}

class Patterned : public CDIB {
public:
    Patterned(long width, long height, int bits) : CDIB(width, height, bits)
    {
        FillPattern(*this);
        if (bits == 8)
            for (int i = 0; i < 256; ++i)
                GetPalette()[i] = FilePaletteEntry(i);
    }
};

uint32_t LittleEndianAt(const Bytes& bytes, size_t at, int count)
{
    uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i)
        value = value << 8 | bytes[at + i];
    return value;
}

template <typename T>
class SavePictureDepth : public ::testing::Test {
};
TYPED_TEST_SUITE(SavePictureDepth, AllDepths, DepthNames);

TYPED_TEST(SavePictureDepth, TargaHeaderAndUnpaddedRowsFromTheBottomUp)
{
    const int bits = TypeParam::kBits;
    Patterned image(3, 2, bits);
    bool saved = false;
    Bytes bytes = SaveBytes(image, 1, &saved);
    EXPECT_TRUE(saved);
    const int pixelBytes = bits / 8;
    ASSERT_EQ(bytes.size(), 18u + 3 * 2 * pixelBytes);
    Bytes head(bytes.begin(), bytes.begin() + 18);
    Bytes want(18, 0);
    want[2] = 2;
    want[12] = 3;
    want[14] = 2;
    want[16] = static_cast<unsigned char>(bits);
    want[17] = bits == 32 ? 8 : 0;
    EXPECT_EQ(head, want);
    size_t at = 18;
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 3; ++x)
            for (int b = 0; b < pixelBytes; ++b)
                ASSERT_EQ(bytes[at++], PatternByte(x, row, b));
}

TYPED_TEST(SavePictureDepth, TargaReadsBackEqual)
{
    Patterned image(5, 3, TypeParam::kBits);
    TempDir dir;
    Bytes bytes = SaveBytes(image, 1);
    CDIB back(1, 1, 24);
    ASSERT_EQ(ReadThrough(dir, bytes, [&](CPFile* file) { return back.LoadTga(file); }), 0);
    EXPECT_EQ(back.GetBitCount(), TypeParam::kBits);
    EXPECT_EQ(AllRows(back), AllRows(image));
    if (TypeParam::kBits == 8) {
        EXPECT_TRUE(IsGreyRamp(back)) << "Targa files are written without a colour map";
    }
}

TYPED_TEST(SavePictureDepth, BmpHeaderFieldsAndLength)
{
    const int bits = TypeParam::kBits;
    Patterned image(3, 2, bits);
    Bytes bytes = SaveBytes(image, 0);
    const long rowBlock = RowBytes(3, bits) * 2;
    const uint32_t entries = bits == 8 ? 256 : 0;
    ASSERT_EQ(bytes.size(), 54 + 4 * entries + rowBlock);
    EXPECT_EQ(bytes[0], 'B');
    EXPECT_EQ(bytes[1], 'M');
    EXPECT_EQ(LittleEndianAt(bytes, 2, 4), rowBlock + 54 + 3 * entries);
    EXPECT_EQ(LittleEndianAt(bytes, 6, 4), 0u);
    EXPECT_EQ(LittleEndianAt(bytes, 10, 4), 54 + 3 * entries);
    EXPECT_EQ(std::memcmp(bytes.data() + 14, image.header, 40), 0) << "the header as held";
    EXPECT_EQ(
        std::memcmp(bytes.data() + 54 + 4 * entries, image.bits, static_cast<size_t>(rowBlock)), 0);
    if (entries > 0) {
        EXPECT_EQ(std::memcmp(bytes.data() + 54, image.GetPalette(), 1024), 0);
    }
}

TEST(SaveBmpPicture, EightBitFileStates822WhileItsRowsStartAt1078)
{
    Patterned image(4, 2, 8);
    Bytes bytes = SaveBytes(image, 0);
    EXPECT_EQ(LittleEndianAt(bytes, 10, 4), 822u);
    EXPECT_EQ(bytes[1078], PatternByte(0, 0, 0));
    EXPECT_EQ(LittleEndianAt(bytes, 2, 4), 822u + 8);
}

TEST(SaveBmpPicture, EightBitFileReadsBackFromTheStatedOffset)
{
    // The reader seeks to 822: the rows it gets are the last 256 bytes of the palette followed
    // by the pixels, cut to the row block. The palette itself reads back whole.
    Patterned image(16, 20, 8);
    TempDir dir;
    Bytes bytes = SaveBytes(image, 0);
    CDIB back(1, 1, 24);
    ASSERT_EQ(ReadThrough(dir, bytes, [&](CPFile* file) { return back.LoadBmp(file); }), 0);
    EXPECT_EQ(std::memcmp(back.GetPalette(), image.GetPalette(), 1024), 0);
    Bytes rows = AllRows(back);
    Bytes want(bytes.begin() + 822, bytes.begin() + 822 + 16 * 20);
    EXPECT_EQ(rows, want);
    EXPECT_EQ(
        std::memcmp(rows.data(), reinterpret_cast<unsigned char*>(image.GetPalette()) + 768, 256),
        0);
    EXPECT_EQ(std::memcmp(rows.data() + 256, image.bits, 16 * 20 - 256), 0);
}

class BmpRoundTrip : public ::testing::TestWithParam<int> {};

TEST_P(BmpRoundTrip, ReadsBackEqual)
{
    for (long width : {1L, 3L, 6L}) {
        Patterned image(width, 3, GetParam());
        TempDir dir;
        Bytes bytes = SaveBytes(image, 0);
        CDIB back(1, 1, 8);
        ASSERT_EQ(ReadThrough(dir, bytes, [&](CPFile* file) { return back.LoadBmp(file); }), 0);
        EXPECT_EQ(back.GetBitCount(), GetParam());
        EXPECT_EQ(AllRows(back), AllRows(image)) << width;
    }
}

INSTANTIATE_TEST_SUITE_P(SaveBmpPicture, BmpRoundTrip, ::testing::Values(16, 24, 32),
                         [](const ::testing::TestParamInfo<int>& info) {
                             return "Bits" + std::to_string(info.param);
                         });

TEST(SavePicture, FormatTwoWritesNothing)
{
    Patterned image(3, 2, 24);
    bool saved = false;
    Bytes bytes = SaveBytes(image, 2, &saved);
    EXPECT_TRUE(saved);
    EXPECT_TRUE(bytes.empty());
    CDIB empty(0, 0, 24);
    EXPECT_TRUE(empty.Save(static_cast<CPFile*>(nullptr), 2));
}

TEST(SavePicture, ImageWithoutHeaderIsNotSaved)
{
    CDIB empty(0, 0, 24);
    bool saved = true;
    Bytes bytes = SaveBytes(empty, 0, &saved);
    EXPECT_FALSE(saved);
    EXPECT_TRUE(bytes.empty());

    ClearMessageBoxScript();
    TempDir dir;
    FSpec spec = PathSpec(dir.File("none.bmp"));
    EXPECT_FALSE(empty.Save(&spec, 0));
    EXPECT_FALSE(FileExists(dir.File("none.bmp")));
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
}

TEST(SavePicture, NameWithTgaWritesATargaWhateverTheFormat)
{
    for (const char* name : {"frame.tga", "FRAME.TGA", "frame.tga.bak"}) {
        Patterned image(3, 2, 32);
        TempDir dir;
        FSpec spec = PathSpec(dir.File(name));
        ClearMessageBoxScript();
        ASSERT_TRUE(image.Save(&spec, 0)) << name;
        Bytes bytes = ReadBytes(dir.File(name));
        ASSERT_EQ(bytes.size(), 18u + 24) << name;
        EXPECT_EQ(bytes[2], 2);
        EXPECT_EQ(bytes[16], 32);
        EXPECT_EQ(bytes[17], 8);
        EXPECT_TRUE(TakeShownMessageBoxes().empty());
        char type[4];
        char creator[4];
        // Where the file system keeps types, a Targa carries the picture viewer's.
        if (GetFileTypeAndCreator(dir.File(name).c_str(), type, creator)) {
            EXPECT_EQ(std::string(type, 4), "TPIC");
            EXPECT_EQ(std::string(creator, 4), "ogle");
        }
    }
}

TEST(SavePicture, OtherNamesFollowTheFormat)
{
    Patterned image(3, 2, 24);
    TempDir dir;
    FSpec bmp = PathSpec(dir.File("still.bmp"));
    ASSERT_TRUE(image.Save(&bmp, 0));
    EXPECT_EQ(ReadBytes(dir.File("still.bmp"))[0], 'B');
    FSpec tga = PathSpec(dir.File("still.pic"));
    ASSERT_TRUE(image.Save(&tga, 1));
    EXPECT_EQ(ReadBytes(dir.File("still.pic")).size(), 18u + 18);
    FSpec nothing = PathSpec(dir.File("nothing.bmp"));
    ASSERT_TRUE(image.Save(&nothing, 2));
    EXPECT_TRUE(ReadBytes(dir.File("nothing.bmp")).empty());
}

TEST(SavePicture, FileThatCannotBeOpenedIsReported)
{
    Patterned image(3, 2, 24);
    TempDir dir;
    FSpec spec = PathSpec(dir.File("no-such-folder/frame.bmp"));
    ClearMessageBoxScript();
    EXPECT_FALSE(image.Save(&spec, 0));
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Error opening graphics file");
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
    EXPECT_EQ(boxes[0].shownText, "Error opening graphics file");
}

// An image whose stream writer fails, as a full disk would make it.
class RefusingWriter : public CDIB {
public:
    RefusingWriter() : CDIB(3, 2, 24) {}
    using CDIB::Save;
    bool Save(CPFile*, int) override { return false; }
};

TEST(SavePicture, FailedWriteIsReportedWithTheLoadersWording)
{
    RefusingWriter image;
    TempDir dir;
    FSpec spec = PathSpec(dir.File("frame.bmp"));
    ClearMessageBoxScript();
    EXPECT_FALSE(image.Save(&spec, 0));
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Error loading graphics file");
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
}

TEST(SavePicture, SavingOverALongerFileReplacesItWhole)
{
    Patterned image(4, 4, 24);
    TempDir dir;
    std::string path = dir.File("frame.bmp");
    ASSERT_TRUE(WriteBytes(path, Bytes(5000, 0xEE)));
    FSpec spec = PathSpec(path);
    ASSERT_TRUE(image.Save(&spec, 0));
    Bytes bytes = ReadBytes(path);
    EXPECT_LT(bytes.size(), 5000u) << "no tail of the older, longer file";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1)
        << "no temporary file left beside it";
    CDIB back(1, 1, 24);
    ASSERT_EQ(ReadThrough(
                  dir, bytes, [&](CPFile* file) { return back.LoadBmp(file); }, "copy"),
              0);
    EXPECT_EQ(AllRows(back), AllRows(image));
}

TEST(SavePicture, FullDiskKeepsThePreviousPictureAndSaysSo)
{
    Patterned image(64, 64, 24);
    TempDir dir;
    std::string path = dir.File("frame.tga");
    ASSERT_TRUE(WriteBytes(path, Bytes(100, 0xEE)));
    FSpec spec = PathSpec(path);
    ClearMessageBoxScript();
    {
        FileSizeLimit limit(4096);
        EXPECT_FALSE(image.Save(&spec, 1));
    }
    EXPECT_EQ(ReadBytes(path), Bytes(100, 0xEE));
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Error loading graphics file");
    EXPECT_EQ(LastFileReplacementError(), "File too large");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1)
        << "no temporary file left beside it";
}

}  // namespace
