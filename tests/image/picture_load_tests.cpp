#include <gtest/gtest.h>

#include <sys/stat.h>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"
#include "image/picture_import.h"
#include "platform/dialog/message_box.h"
#include "platform/file/paths.h"

namespace {

using namespace pxtest;

int LoadBytes(CDIB& image, const Bytes& bytes)
{
    TempDir dir;
    return ReadThrough(dir, bytes, [&](CPFile* file) { return image.Load(file); });
}

// Loads a file through Load(FSpec*, ...) and hands back the boxes it showed.
struct FileLoad {
    int result;
    std::vector<ShownMessageBox> boxes;
};

FileLoad LoadFile(CDIB& image, const Bytes& bytes, bool showErrors)
{
    TempDir dir;
    std::string path = dir.File("picture.img");
    WriteBytes(path, bytes);
    FSpec spec = PathSpec(path);
    ClearMessageBoxScript();
    int result = image.Load(&spec, nullptr, showErrors);
    return FileLoad{result, TakeShownMessageBoxes()};
}

// The placeholder: built-in picture 133, 320 x 240, 32 bits, opaque.
bool IsPlaceholder(const CDIB& image)
{
    return image.GetWid() == 320 && image.GetHgt() == 240 && image.GetBitCount() == 32 &&
           image.GetBitsAdd(0)[3] == 255;
}

// ---- Load(CPFile*): the format is told by the first bytes ----------------------------------

TEST(LoadPicture, PhotoshopSignatureGoesToThePhotoshopReader)
{
    CDIB image(1, 1, 24);
    PsdOptions options;
    options.channels = 4;
    ASSERT_EQ(LoadBytes(image, MakePsd(options)), 0);
    EXPECT_EQ(image.GetBitCount(), 32);
    EXPECT_TRUE(HasPattern(image));
    options.littleEndian = true;
    ASSERT_EQ(LoadBytes(image, MakePsd(options)), 0);
    EXPECT_TRUE(HasPattern(image));
    options.mode = 4;
    EXPECT_EQ(LoadBytes(image, MakePsd(options)), 3) << "CMYK";
}

TEST(LoadPicture, ByteOrderMarksGoToTheTiffReader)
{
    for (bool bigEndian : {false, true}) {
        CDIB image(1, 1, 24);
        TifOptions options;
        options.bigEndian = bigEndian;
        ASSERT_EQ(LoadBytes(image, MakeTif(options)), 0);
        EXPECT_TRUE(HasPattern(image));
        options.compression = 5;
        // Refused by the TIFF reader, and the platform cannot decode its rows either: the TIFF
        // reader's code.
        EXPECT_EQ(LoadBytes(image, MakeTif(options)), 1);
    }
}

// The pattern's blue, green and red in a picture the platform importer made (32 bits, opaque).
::testing::AssertionResult HasImportedPattern(const CDIB& image)
{
    if (image.GetBitCount() != 32)
        return ::testing::AssertionFailure() << image.GetBitCount() << " bits";
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            for (int b = 0; b < 4; ++b) {
                const unsigned char want = b == 3 ? 255 : PatternByte(x, row, b);
                if (image.GetBitsAdd(row)[x * 4 + b] != want)
                    return ::testing::AssertionFailure()
                           << "pixel " << x << " of storage row " << row << ", byte " << b;
            }
    return ::testing::AssertionSuccess();
}

TEST(LoadPicture, TiffTheReaderRefusesGoesToThePlatformImporter)
{
    for (bool bigEndian : {false, true}) {
        CDIB planes(1, 1, 24);
        ASSERT_EQ(LoadBytes(planes, MakeTif(TifOptions{.bigEndian = bigEndian, .planar = true})),
                  0);
        EXPECT_EQ(planes.GetWid(), 3);
        EXPECT_EQ(planes.GetHgt(), 5);
        EXPECT_TRUE(HasImportedPattern(planes));

        CDIB deep(1, 1, 24);
        ASSERT_EQ(LoadBytes(deep, MakeTif(TifOptions{.bigEndian = bigEndian, .bits = 16})), 0);
        EXPECT_TRUE(HasImportedPattern(deep));
    }
}

TEST(LoadPicture, TiffNeitherReaderNorImporterTakesGivesTheReadersCode)
{
    CDIB image(1, 1, 24);
    // A palette picture whose rows lie past the end of the file.
    const TifOptions brokenPalette{.samples = 1, .stripOffsetShift = 100000, .photometric = 3};
    EXPECT_EQ(LoadBytes(image, MakeTif(brokenPalette)), 3);
    // CMYK claimed for three samples.
    EXPECT_EQ(LoadBytes(image, MakeTif(TifOptions{.photometric = 5})), 3);
    // Too wide for either.
    EXPECT_EQ(LoadBytes(image, MakeTif(TifOptions{.widthTag = 9000})), 2);
}

TEST(LoadPicture, BmOrMbGoesToTheBmpReader)
{
    CDIB image(1, 1, 24);
    BmpOptions options;
    options.bits = 32;
    ASSERT_EQ(LoadBytes(image, MakeBmp(options)), 0);
    EXPECT_TRUE(HasPattern(image));
    Bytes reversed = MakeBmp(options);
    reversed[0] = 'M';
    reversed[1] = 'B';
    ASSERT_EQ(LoadBytes(image, reversed), 0);
    EXPECT_TRUE(HasPattern(image));
    options.bits = 4;
    EXPECT_EQ(LoadBytes(image, MakeBmp(options)), 5);
}

TEST(LoadPicture, EverythingElseIsTriedAsTarga)
{
    CDIB image(1, 1, 24);
    TgaOptions options;
    options.depth = 16;
    options.descriptor = 0x20;
    ASSERT_EQ(LoadBytes(image, MakeTga(options)), 0);
    EXPECT_EQ(image.GetBitCount(), 16);
    EXPECT_TRUE(HasPattern(image));
}

TEST(LoadPicture, WhatNoReaderTakesIsUnreadable)
{
    CDIB image(1, 1, 24);
    EXPECT_EQ(LoadBytes(image, Bytes{'h', 'e', 'l', 'l', 'o'}), 3);
    EXPECT_EQ(LoadBytes(image, Bytes(100, 0x41)), 3);
    EXPECT_EQ(LoadBytes(image, Bytes{}), 3);
    // A run-length Targa: the Targa reader refuses it and so does the platform.
    TgaOptions options;
    options.type = 10;
    EXPECT_EQ(LoadBytes(image, MakeTga(options)), 3);
}

TEST(LoadPicture, TargetWithoutHeaderIsRefused)
{
    CDIB empty(0, 0, 24);
    EXPECT_EQ(LoadBytes(empty, MakeBmp(BmpOptions{})), 4);
    EXPECT_EQ(LoadBytes(empty, Bytes(100, 0x41)), 4);
}

// ---- Load(FSpec*, FSpec*, bool): messages, the alternative folder, the placeholder ----------

TEST(LoadPictureFile, LoadedFileAnswersOneAndShowsNothing)
{
    CDIB image(1, 1, 24);
    FileLoad load = LoadFile(image, MakeBmp(BmpOptions{}), true);
    EXPECT_EQ(load.result, 1);
    EXPECT_TRUE(load.boxes.empty());
    EXPECT_TRUE(HasPattern(image));
}

struct Refusal {
    const char* what;
    std::function<Bytes()> make;
    int code;
    const char* shown;
};

class LoadRefusal : public ::testing::TestWithParam<Refusal> {};

TEST_P(LoadRefusal, ShowsTheMessageOfItsCode)
{
    const Refusal& refusal = GetParam();
    CDIB image(1, 1, 24);
    FileLoad load = LoadFile(image, refusal.make(), true);
    EXPECT_EQ(load.result, 0);
    ASSERT_EQ(load.boxes.size(), 1u);
    EXPECT_EQ(load.boxes[0].kind, MessageBoxKind::kError);
    EXPECT_EQ(load.boxes[0].shownText, refusal.shown);
    bool numbered = refusal.code == 3 || refusal.code == 4;
    EXPECT_EQ(load.boxes[0].code, numbered ? refusal.code : kNoErrorNumber);
}

INSTANTIATE_TEST_SUITE_P(
    LoadPictureFile, LoadRefusal,
    ::testing::Values(
        Refusal{"FourBitBmp", [] { return MakeBmp(BmpOptions{.bits = 4}); }, 5,
                "Images must have 256 colors or more"},
        Refusal{"Rle8Bmp", [] { return MakeBmp(BmpOptions{.bits = 8, .compression = 1}); }, 1,
                "Can't read compressed images"},
        Refusal{"WideBmp", [] { return MakeBmp(BmpOptions{.widthField = 9000}); }, 2,
                "Images must be smaller than 8192 pixels"},
        Refusal{"LzwTiff", [] { return MakeTif(TifOptions{.compression = 5}); }, 1,
                "Can't read compressed images"},
        Refusal{"BrokenPaletteTiff",
                [] {
                    return MakeTif(
                        TifOptions{.samples = 1, .stripOffsetShift = 100000, .photometric = 3});
                },
                3, "Can't read image file  [ 3 ]"},
        Refusal{"CmykPsd", [] { return MakePsd(PsdOptions{.channels = 4, .mode = 4}); }, 3,
                "Can't read image file  [ 3 ]"},
        Refusal{"ShortBmp", [] { return MakeBmp(BmpOptions{.keepBytes = 60}); }, 3,
                "Can't read image file  [ 3 ]"},
        Refusal{"NotAPicture", [] { return Bytes(64, 0x41); }, 3, "Can't read image file  [ 3 ]"}),
    [](const ::testing::TestParamInfo<Refusal>& info) { return std::string(info.param.what); });

TEST(LoadPictureFile, OutOfMemoryHasItsOwnMessage)
{
    SpyDIB image;
    image.fail = true;
    FileLoad load = LoadFile(image, MakeBmp(BmpOptions{}), true);
    EXPECT_EQ(load.result, 0);
    ASSERT_EQ(load.boxes.size(), 1u);
    EXPECT_EQ(load.boxes[0].shownText, "Not enough memory to load image");
    EXPECT_EQ(load.boxes[0].code, kNoErrorNumber);
}

TEST(LoadPictureFile, TargetWithoutHeaderShowsItsNumber)
{
    CDIB empty(0, 0, 24);
    FileLoad load = LoadFile(empty, MakeBmp(BmpOptions{}), true);
    EXPECT_EQ(load.result, 0);
    ASSERT_EQ(load.boxes.size(), 1u);
    EXPECT_EQ(load.boxes[0].shownText, "Can't read image file  [ 4 ]");
    EXPECT_EQ(load.boxes[0].code, 4);
}

TEST(LoadPictureFile, MissingFileIsReportedWhenAsked)
{
    CDIB image(2, 2, 24);
    TempDir dir;
    FSpec spec = PathSpec(dir.File("gone.bmp"));
    ClearMessageBoxScript();
    EXPECT_EQ(image.Load(&spec, nullptr, true), 0);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].shownText, "Can't open graphics file");
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
    EXPECT_EQ(image.GetWid(), 2) << "the image is left alone";
}

TEST(LoadPictureFile, MissingFileBecomesThePlaceholderSilently)
{
    CDIB image(2, 2, 24);
    TempDir dir;
    FSpec spec = PathSpec(dir.File("gone.bmp"));
    ClearMessageBoxScript();
    EXPECT_EQ(image.Load(&spec, nullptr, false), 2);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
    EXPECT_TRUE(IsPlaceholder(image));
}

TEST(LoadPictureFile, UnreadableFileBecomesThePlaceholderSilently)
{
    CDIB image(2, 2, 24);
    FileLoad load = LoadFile(image, MakeBmp(BmpOptions{.bits = 4}), false);
    EXPECT_EQ(load.result, 2);
    EXPECT_TRUE(load.boxes.empty());
    EXPECT_TRUE(IsPlaceholder(image));
}

TEST(LoadPictureFile, SameNameInTheAlternativeFolderIsTried)
{
    TempDir original;
    TempDir moved;
    ASSERT_TRUE(WriteBytes(moved.File("beach.tga"), MakeTga(TgaOptions{.width = 4})));
    FSpec file = PathSpec(original.File("beach.tga"));
    FSpec folder = PathSpec(moved.Path());
    CDIB image(1, 1, 24);
    ClearMessageBoxScript();
    ASSERT_EQ(image.Load(&file, &folder, true), 1);
    EXPECT_EQ(image.GetWid(), 4);
    EXPECT_TRUE(HasPattern(image));
    EXPECT_TRUE(TakeShownMessageBoxes().empty());

    // A folder given with its trailing separator, and one in native form.
    FSpec withSlash = PathSpec(moved.Path() + "/");
    CDIB again(1, 1, 24);
    EXPECT_EQ(again.Load(&file, &withSlash, true), 1);
    NativeFileRef ref;
    GetFSSpecFromPath(moved.Path().c_str(), &ref);
    FSpec native{};
    native.vRefNum = ref.vRefNum;
    native.parID = ref.parID;
    std::snprintf(native.name, sizeof native.name, "%s", ref.name);
    CDIB third(1, 1, 24);
    EXPECT_EQ(third.Load(&file, &native, true), 1);
    EXPECT_EQ(third.GetWid(), 4);
}

TEST(LoadPictureFile, EmptyAlternativeFolderIsNotTried)
{
    TempDir dir;
    ASSERT_TRUE(WriteBytes(dir.File("beach.tga"), MakeTga(TgaOptions{})));
    // The file's leaf exists in the current folder's sense only through the alternative; an
    // empty alternative name must not turn into "/beach.tga" or "beach.tga".
    FSpec file = PathSpec(dir.File("elsewhere/beach.tga"));
    FSpec folder{};
    folder.vRefNum = kPathFormMarker;
    folder.parID = kPathFormMarker;
    CDIB image(1, 1, 24);
    ClearMessageBoxScript();
    EXPECT_EQ(image.Load(&file, &folder, true), 0);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].shownText, "Can't open graphics file");
}

TEST(LoadPictureFile, AlternativeFolderWithoutTheFileStillFails)
{
    TempDir original;
    TempDir moved;
    FSpec file = PathSpec(original.File("beach.tga"));
    FSpec folder = PathSpec(moved.Path());
    CDIB image(1, 1, 24);
    ClearMessageBoxScript();
    EXPECT_EQ(image.Load(&file, &folder, false), 2);
    EXPECT_TRUE(IsPlaceholder(image));
}

TEST(LoadPictureFile, NameFillingItsWholeRecordIsReadOnlyWithinIt)
{
    // A record from a show file may hold 256 name characters and no terminator; the retry in the
    // alternative folder takes its leaf from those bytes alone (the first 255, as every copy of a
    // name does: "pic.tga" ends as "pic.tg"). The record sits at the very end of its block, so a
    // read past it is caught.
    TempDir moved;
    ASSERT_TRUE(WriteBytes(moved.File("pic.tg"), MakeTga(TgaOptions{.width = 3})));
    auto file = std::make_unique<FSpec>();
    file->vRefNum = kPathFormMarker;
    file->parID = kPathFormMarker;
    const std::string name = std::string(kFSpecNameSize - 8, 'x') + "/pic.tga";
    std::memcpy(file->name, name.data(), sizeof file->name);
    FSpec folder = PathSpec(moved.Path());
    CDIB image(1, 1, 24);
    ClearMessageBoxScript();
    EXPECT_EQ(image.Load(file.get(), &folder, true), 1);
    EXPECT_EQ(image.GetWid(), 3);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
}

int gProviderCalls = 0;
int ProvideHostPicture(CDIB* target)
{
    ++gProviderCalls;
    target->Create(7, 5, 32);
    return 1;
}

TEST(LoadPictureFile, HostTimelineReplacesTheFile)
{
    SetSourceImageProvider(ProvideHostPicture);
    gGetImageFromTimeline = true;
    gProviderCalls = 0;
    CDIB image(1, 1, 24);
    FSpec missing = PathSpec("/no/such/picture.bmp");
    ClearMessageBoxScript();
    int result = image.Load(&missing, nullptr, true);
    gGetImageFromTimeline = false;
    SetSourceImageProvider(nullptr);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(gProviderCalls, 1);
    EXPECT_EQ(image.GetWid(), 7);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
    EXPECT_EQ(GetSourceImage(&image), 0) << "no provider, no picture";
}

}  // namespace

namespace {

TEST(LoadPictureFile, PipeAndFolderAreRefusedAtOnceWithTheOpenMessage)
{
    TempDir dir;
    std::string pipe = dir.File("pipe.tga");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0666), 0);
    for (const std::string& path : {pipe, dir.Path()}) {
        CDIB image(2, 2, 24);
        FSpec spec = PathSpec(path);
        ClearMessageBoxScript();
        EXPECT_EQ(image.Load(&spec, nullptr, true), 0) << path;
        std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
        ASSERT_EQ(boxes.size(), 1u) << path;
        EXPECT_EQ(boxes[0].shownText, "Can't open graphics file");
    }
}

}  // namespace
