// The show file: sizes, layout, both byte orders, ease encoding, versions and damaged files
// (show files on disk: show_file_io_tests.cpp).

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc_fixture.h"
#include "platform/dialog/message_box.h"
#include "platform/file/endian.h"
#include "support/bmp_files.h"
#include "support/malformed_files.h"

namespace {

using pxtest::PathSpec;

class ShowFile : public DocFixture {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        UseSettings("");
    }

    // Two real pictures with a few keys each, starting at 0 and 120.
    void MakeShow()
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("a.bmp"), 40, 30, {200, 10, 10}));
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("b.bmp"), 50, 20, {10, 200, 10}));
        FSpec a = PathSpec(dir.File("a.bmp"));
        FSpec b = PathSpec(dir.File("b.bmp"));
        doc->LoadPicture(&a, 0, 0);
        doc->LoadPicture(&b, 1, 120);
        ASSERT_EQ(doc->picCount, 2);
        doc->SetKey(1, KeyAt(60, 10.0f, 12.0f), 0);
        KeyStruct eased = KeyAt(100, 30.0f, 14.0f);
        eased.Ease = 3050.0f;
        eased.Rotation = 15.0f;
        doc->SetKey(2, eased, 0);
        doc->SetKey(1, KeyAt(40, 20.0f, 5.0f), 1);
        doc->keys[1][0].TransLen = 10.0f;
        doc->matteColor = 0x123456;
        doc->border = 4;
        doc->preBlur = 2;
        doc->showWord = 0x3133;
    }

    std::vector<char> Save()
    {
        long size = doc->SaveShow(nullptr, nullptr);
        std::vector<char> bytes(static_cast<size_t>(size), '\x5A');
        EXPECT_EQ(doc->SaveShow(nullptr, bytes.data()), size);
        return bytes;
    }

    // A new document read from the bytes, as opening a show does.
    std::unique_ptr<CDoc> Load(const std::vector<char>& bytes, const std::string& settings = "")
    {
        LoadSettings(settings);
        auto loaded = std::make_unique<CDoc>();
        EXPECT_TRUE(
            loaded->LoadShow(nullptr, bytes.data(), static_cast<long>(bytes.size()), false));
        return loaded;
    }

    template <typename T>
    static T At(const std::vector<char>& bytes, long offset)
    {
        T value;
        std::memcpy(&value, bytes.data() + offset, sizeof value);
        return value;
    }

    template <typename T>
    static void SetAt(std::vector<char>& bytes, long offset, T value)
    {
        std::memcpy(bytes.data() + offset, &value, sizeof value);
    }

    pxtest::TempDir dir;
};

// Reverses every number of a show file laid out as SaveShow writes it, independently of the reader.
std::vector<char> OtherByteOrder(std::vector<char> bytes)
{
    auto flop = [&](long offset, int count) { FlopEndian(bytes.data() + offset, count); };
    int32_t length;
    std::memcpy(&length, bytes.data() + 4, 4);
    flop(0, 2);
    flop(2, 2);
    flop(4, 4);
    long at = 8;
    while (at + 262 <= length - 20) {
        flop(at, 2);
        flop(at + 2, 4);
        at += 262;
        int32_t count;
        std::memcpy(&count, bytes.data() + at, 4);
        flop(at, 4);
        at += 4;
        for (int key = 0; key < count; ++key, at += 56) {
            for (int field = 0; field < 13; ++field)
                flop(at + 4 * field, 4);
            flop(at + 52, 2);
            flop(at + 54, 2);
        }
    }
    flop(at, 4);
    flop(at + 4, 4);
    flop(at + 8, 4);
    flop(at + 12, 2);
    flop(at + 14, 2);
    return bytes;
}

void ExpectSameShow(const CDoc& a, const CDoc& b)
{
    ASSERT_EQ(a.picCount, b.picCount);
    for (int pic = 0; pic < a.picCount; ++pic) {
        ASSERT_EQ(a.keyCount[pic], b.keyCount[pic]) << pic;
        EXPECT_EQ(std::memcmp(&a.picSpec[pic], &b.picSpec[pic], sizeof(FSpec)), 0) << pic;
        EXPECT_EQ(std::memcmp(a.keys[pic], b.keys[pic], sizeof(KeyStruct) * a.keyCount[pic]), 0)
            << pic;
    }
    EXPECT_EQ(a.matteColor, b.matteColor);
    EXPECT_EQ(a.border, b.border);
    EXPECT_EQ(a.preBlur, b.preBlur);
    EXPECT_EQ(a.showWord, b.showWord);
    EXPECT_EQ(a.showID, b.showID);
    EXPECT_EQ(a.hasExtraSpec, b.hasExtraSpec);
}

TEST_F(ShowFile, OnePictureWithOneKeySaves406BytesAfterTheKeyIsDoubled)
{
    MakePictures({0});
    doc->keys[0][0].XPos = 33.0f;
    EXPECT_EQ(doc->SaveShow(nullptr, nullptr), 406);
    ASSERT_EQ(doc->keyCount[0], 2);
    EXPECT_EQ(doc->keys[0][1].Frame, 30);  // one second at 29.97
    EXPECT_EQ(doc->keys[0][1].XPos, 33.0f);
    std::vector<char> bytes = Save();
    EXPECT_EQ(bytes.size(), 406u);
    EXPECT_EQ(At<int32_t>(bytes, 4), 406);
}

TEST_F(ShowFile, HeaderRecordsAndTrailerAreLaidOutInOrder)
{
    MakeShow();
    doc->showLength = 900;
    std::vector<char> bytes = Save();
    ASSERT_EQ(bytes.size(), static_cast<size_t>(28 + (266 + 56 * 3) + (266 + 56 * 2)));
    EXPECT_EQ(At<uint16_t>(bytes, 0), 0x1234);
    EXPECT_EQ(At<uint16_t>(bytes, 2), doc->showID);
    EXPECT_EQ(std::string(bytes.data() + 8 + 6), dir.File("a.bmp"));
    EXPECT_EQ(At<int32_t>(bytes, 8 + 262), 3);
    long firstKey = 8 + 266;
    EXPECT_EQ(At<float>(bytes, firstKey + 4), 110.0f);   // Spare1: the version stamp
    EXPECT_EQ(At<float>(bytes, firstKey + 44), 900.0f);  // ShowLen
    long second = firstKey + 3 * 56;
    EXPECT_EQ(std::string(bytes.data() + second + 6), dir.File("b.bmp"));
    EXPECT_EQ(At<float>(bytes, second + 266 + 36), 120.0f);  // PicStart of picture 1
    long trailer = static_cast<long>(bytes.size()) - 20;
    EXPECT_EQ(At<int32_t>(bytes, trailer), 0x123456);
    EXPECT_EQ(At<int32_t>(bytes, trailer + 4), 4);
    EXPECT_EQ(At<int32_t>(bytes, trailer + 8), 2);
    EXPECT_EQ(At<int16_t>(bytes, trailer + 12), 0);
    EXPECT_EQ(At<uint16_t>(bytes, trailer + 14), 0x3133);
    // The last four bytes are counted but left as the buffer had them.
    EXPECT_EQ(bytes[bytes.size() - 1], '\x5A');
    EXPECT_FALSE(doc->dirty);
}

TEST_F(ShowFile, SavedLoadedAndSavedAgainIsByteIdenticalApartFromTheIdentifier)
{
    MakeShow();
    std::vector<char> first = Save();
    std::unique_ptr<CDoc> loaded = Load(first);
    ExpectSameShow(*doc, *loaded);
    long size = loaded->SaveShow(nullptr, nullptr);
    std::vector<char> second(static_cast<size_t>(size), '\x5A');
    loaded->SaveShow(nullptr, second.data());
    ASSERT_EQ(first.size(), second.size());
    SetAt<uint16_t>(second, 2, At<uint16_t>(first, 2));
    EXPECT_EQ(first, second);
}

TEST_F(ShowFile, OtherByteOrderLoadsToTheSameDocument)
{
    MakeShow();
    std::vector<char> bytes = Save();
    std::vector<char> swapped = OtherByteOrder(bytes);
    ASSERT_EQ(At<uint16_t>(swapped, 0), 0x3412);
    std::unique_ptr<CDoc> plain = Load(bytes);
    std::unique_ptr<CDoc> other = Load(swapped);
    ExpectSameShow(*plain, *other);
    EXPECT_EQ(other->keys[0][2].Ease, 3050.0f);
    EXPECT_EQ(other->keys[0][2].Rotation, 15.0f);
}

TEST_F(ShowFile, EaseZeroIsWrittenAsTheEncodedDefaultAndReadsBackAsZero)
{
    MakeShow();
    std::vector<char> bytes = Save();
    long secondKey = 8 + 266 + 56;
    EXPECT_EQ(At<float>(bytes, secondKey + 32), 1000.0f);  // kind 0 + 1, x 1000
    EXPECT_EQ(doc->keys[0][1].Ease, 0.0f);                 // the document keeps 0
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->keys[0][1].Ease, 0.0f);
    EXPECT_EQ(loaded->keys[0][2].Ease, 3050.0f);
}

TEST_F(ShowFile, EaseZeroReadsBackExplicitUnderAnotherDefault)
{
    MakeShow();
    std::vector<char> bytes = Save();
    std::unique_ptr<CDoc> loaded = Load(bytes, "EaseType=1\r\n");
    EXPECT_EQ(loaded->keys[0][1].Ease, 1000.0f);
}

TEST_F(ShowFile, DefaultWithoutCurvesEncodesOneMore)
{
    UseSettings("EaseType=18\r\n");
    EXPECT_EQ(doc->EncodedDefaultEase(), 3001.0f);
}

TEST_F(ShowFile, VersionHundredKeepsTheTrailerButNotTheShowWord)
{
    MakeShow();
    std::vector<char> bytes = Save();
    SetAt<float>(bytes, 8 + 266 + 4, 100.0f);
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->matteColor, 0x123456);
    EXPECT_EQ(loaded->border, 4);
    EXPECT_EQ(loaded->preBlur, 2);
    EXPECT_EQ(loaded->showWord, 12850);
}

TEST_F(ShowFile, VersionEightyReadsNoTrailer)
{
    MakeShow();
    std::vector<char> bytes = Save();
    SetAt<float>(bytes, 8 + 266 + 4, 80.0f);
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->border, 0);
    EXPECT_EQ(loaded->preBlur, 0);
    EXPECT_EQ(loaded->showWord, 12850);
}

TEST_F(ShowFile, BorderIsClampedIntoMinusOneToHundred)
{
    MakeShow();
    std::vector<char> bytes = Save();
    SetAt<int32_t>(bytes, static_cast<long>(bytes.size()) - 16, 5000);
    EXPECT_EQ(Load(bytes)->border, 100);
    SetAt<int32_t>(bytes, static_cast<long>(bytes.size()) - 16, -7);
    EXPECT_EQ(Load(bytes)->border, -1);
}

TEST_F(ShowFile, VideoColoursFlagIsReadButNotApplied)
{
    MakeShow();
    std::vector<char> bytes = Save();
    SetAt<int16_t>(bytes, static_cast<long>(bytes.size()) - 8, 1);
    EXPECT_FALSE(Load(bytes)->videoColors);
}

TEST_F(ShowFile, ExtraRecordWithCountZeroIsLoadedAndKept)
{
    MakeShow();
    doc->hasExtraSpec = true;
    doc->extraSpec = PathSpec("/somewhere/extra.aif");
    std::vector<char> bytes = Save();
    ASSERT_EQ(bytes.size(), static_cast<size_t>(28 + (266 + 56 * 3) + (266 + 56 * 2) + 266));
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->picCount, 2);
    ASSERT_TRUE(loaded->hasExtraSpec);
    EXPECT_STREQ(loaded->extraSpec.name, "/somewhere/extra.aif");
    EXPECT_EQ(loaded->matteColor, 0x123456);
}

TEST_F(ShowFile, NullBufferOrUnknownMagicIsRefusedAndChangesNothing)
{
    MakeShow();
    std::vector<char> bytes = Save();
    EXPECT_FALSE(doc->LoadShow(nullptr, nullptr, 100, false));
    bytes[0] = 'X';
    EXPECT_FALSE(doc->LoadShow(nullptr, bytes.data(), static_cast<long>(bytes.size()), false));
    EXPECT_FALSE(doc->LoadShow(nullptr, bytes.data(), 3, false));
    EXPECT_EQ(doc->picCount, 2);
    EXPECT_EQ(doc->border, 4);
}

TEST_F(ShowFile, ShortLengthStopsAtTheLastWholeRecord)
{
    MakeShow();
    std::vector<char> bytes = Save();
    // L ends inside the second picture's keys: only the first picture is read.
    SetAt<int32_t>(bytes, 4, 8 + 266 + 56 * 3 + 266 + 56);
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->picCount, 1);
    EXPECT_EQ(loaded->keyCount[0], 3);
}

TEST_F(ShowFile, LengthPastTheBufferReadsOnlyTheBufferAndTheTrailerCanGoMissing)
{
    MakeShow();
    std::vector<char> bytes = Save();
    SetAt<int32_t>(bytes, 4, 0x7FFFFFFF);
    bytes.resize(bytes.size() - 10);  // the trailer is cut short
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->picCount, 2);
    EXPECT_EQ(loaded->border, 0);
    EXPECT_EQ(loaded->showWord, 12850);
}

TEST_F(ShowFile, KeyCountsBeyondTheTableAreCutToSixtyFour)
{
    MakeShow();
    std::vector<char> bytes = Save();
    // Picture 0 claims 65 keys: its record does not fit, so reading stops before it.
    SetAt<int32_t>(bytes, 8 + 262, 65);
    EXPECT_EQ(Load(bytes)->picCount, 0);
    SetAt<int32_t>(bytes, 8 + 262, static_cast<int32_t>(0xFFFFFFFF));
    EXPECT_EQ(Load(bytes)->picCount, 0);
}

TEST_F(ShowFile, SixtyFiveKeysThatFitKeepTheFirstSixtyFour)
{
    std::vector<char> bytes(8 + 266 + 56 * 65 + 20, 0);
    SetAt<uint16_t>(bytes, 0, 0x1234);
    SetAt<int32_t>(bytes, 4, static_cast<int32_t>(bytes.size()));
    SetAt<int32_t>(bytes, 8 + 262, 65);
    for (int key = 0; key < 65; ++key)
        SetAt<int32_t>(bytes, 8 + 266 + 56 * key + 48, key * 2);
    std::unique_ptr<CDoc> loaded = Load(bytes);
    // The picture's file name is empty, so it is not put into the show, but its keys were read.
    EXPECT_EQ(loaded->keyCount[0], 64);
    EXPECT_EQ(loaded->keys[0][63].Frame, 126);
}

TEST_F(ShowFile, NotANumberAndInfiniteFieldsLoadWithoutHarm)
{
    MakeShow();
    std::vector<char> bytes = Save();
    float values[] = {std::numeric_limits<float>::quiet_NaN(),
                      std::numeric_limits<float>::infinity(),
                      -std::numeric_limits<float>::infinity()};
    for (float value : values) {
        std::vector<char> damaged = bytes;
        for (long field = 0; field < 12; ++field)
            for (int key = 0; key < 3; ++key)
                SetAt<float>(damaged, 8 + 266 + 56 * key + 4 * field, value);
        std::unique_ptr<CDoc> loaded = Load(damaged);
        EXPECT_EQ(loaded->keyCount[0], 3);
        CDIB frame(32, 24, 32);
        loaded->RenderFrame(10, 0, false, 32, 24, &frame, false);
        loaded->GotoFrame(200, false);
    }
}

TEST_F(ShowFile, SlatewhirlStoresTheAspectRatioAndReadsItBack)
{
    SetEnvName("Slatewhirl Parallaxotron");
    UseSettings("AspectMode=5625\r\n");
    MakeShow();
    std::vector<char> bytes = Save();
    EXPECT_FLOAT_EQ(At<float>(bytes, 8 + 266 + 44), 0.5625f);
    std::unique_ptr<CDoc> loaded = Load(bytes, "AspectMode=7500\r\n");
    EXPECT_EQ(loaded->aspectMode, 5625);
    EXPECT_FLOAT_EQ(loaded->aspectRatio, 0.5625f);
    EXPECT_EQ(GetIniItem("AspectMode", 0), 5625);
    SetEnvName("Parallaxotron");
}

TEST_F(ShowFile, RescaleOnLoadScalesTheFirstPictureToTheShowLength)
{
    MakeShow();
    doc->showLength = 900;
    std::vector<char> bytes = Save();
    std::string text = "[Parallaxotron]\r\nVideoColors=0\r\nShowPicError=0\r\nRescaleShow=1\r\n";
    LoadIniText(text.data(), text.size());
    CDoc loaded;
    loaded.showLength = 1800;
    ASSERT_TRUE(loaded.LoadShow(nullptr, bytes.data(), static_cast<long>(bytes.size()), false));
    EXPECT_EQ(loaded.keys[0][1].Frame, 120);  // 60 x 1800 / 900
    EXPECT_EQ(loaded.keys[0][2].Frame, 200);
    EXPECT_EQ(loaded.keys[0][0].ShowLen, 1800.0f);
    EXPECT_EQ(loaded.keys[1][1].Frame, 40);  // only the first picture is rescaled
}

TEST_F(ShowFile, LoadingEmptiesTheUndoRing)
{
    MakeShow();
    std::vector<char> bytes = Save();
    std::string text = "[Parallaxotron]\r\nVideoColors=0\r\nShowPicError=0\r\n";
    LoadIniText(text.data(), text.size());
    CDoc loaded;
    loaded.Do(KeyAt(5), 0, 0);
    loaded.redoCount = 3;
    ASSERT_TRUE(loaded.LoadShow(nullptr, bytes.data(), static_cast<long>(bytes.size()), false));
    EXPECT_EQ(loaded.undoHead, -1);
    EXPECT_EQ(loaded.undoCount, 0);
    EXPECT_EQ(loaded.redoCount, 0);
    EXPECT_FALSE(loaded.dirty);
}

TEST_F(ShowFile, LoadingChopsTheShowToItsLength)
{
    MakeShow();
    std::vector<char> bytes = Save();
    std::string text = "[Parallaxotron]\r\nVideoColors=0\r\nShowPicError=0\r\n";
    LoadIniText(text.data(), text.size());
    CDoc loaded;
    loaded.showLength = 80;
    ASSERT_TRUE(loaded.LoadShow(nullptr, bytes.data(), static_cast<long>(bytes.size()), false));
    // Picture 1 starts past the end and goes; picture 0's move now ends at the show's end.
    EXPECT_EQ(loaded.picCount, 1);
    EXPECT_EQ(loaded.keyCount[0], 3);
    EXPECT_EQ(loaded.keys[0][2].Frame, 80);
}

TEST_F(ShowFile, MissingPictureIsReplacedByThePlaceholderWhenErrorsAreOff)
{
    MakeShow();
    std::vector<char> bytes = Save();
    std::remove(dir.File("b.bmp").c_str());
    std::unique_ptr<CDoc> loaded = Load(bytes);
    EXPECT_EQ(loaded->picCount, 2);
    EXPECT_EQ(loaded->picLoadState, 2);
}

TEST_F(ShowFile, MissingLastPicturesKeepTheirSlotsRecordsAndKeysThroughLoadAndSave)
{
    MakeShow();
    ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("c.bmp"), 30, 30, {10, 10, 200}));
    FSpec c = PathSpec(dir.File("c.bmp"));
    doc->LoadPicture(&c, 2, 300);
    doc->SetKey(1, KeyAt(50, 3.0f, 4.0f), 2);
    ASSERT_EQ(doc->picCount, 3);
    std::vector<char> first = Save();
    std::remove(dir.File("b.bmp").c_str());
    std::remove(dir.File("c.bmp").c_str());
    ClearMessageBoxScript();
    std::unique_ptr<CDoc> loaded = Load(first, "ShowPicError=1\r\n");
    ExpectSameShow(*doc, *loaded);
    // Each missing picture is reported.
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[1].text, "Can't open graphics file");
    long size = loaded->SaveShow(nullptr, nullptr);
    std::vector<char> second(static_cast<size_t>(size), '\x5A');
    loaded->SaveShow(nullptr, second.data());
    ASSERT_EQ(first.size(), second.size());
    SetAt<uint16_t>(second, 2, At<uint16_t>(first, 2));
    EXPECT_EQ(first, second);
}

TEST_F(ShowFile, ExtraRecordAfterTheSixtyFourthPictureIsReadAndSavedAgain)
{
    for (int pic = 0; pic < kMaxPictures; ++pic) {
        doc->SetPicStart(pic * 10, pic);
        std::snprintf(doc->picSpec[pic].name, sizeof doc->picSpec[pic].name, "/nowhere/pic%d.bmp",
                      pic);
        doc->SetKey(1, KeyAt(5), pic);
    }
    doc->picCount = kMaxPictures;
    doc->hasExtraSpec = true;
    doc->extraSpec = PathSpec("/somewhere/extra.aif");
    std::vector<char> first = Save();
    ASSERT_EQ(first.size(), static_cast<size_t>(28 + 64 * (266 + 2 * 56) + 266));
    std::unique_ptr<CDoc> loaded = Load(first);
    EXPECT_EQ(loaded->picCount, kMaxPictures);
    ASSERT_TRUE(loaded->hasExtraSpec);
    EXPECT_STREQ(loaded->extraSpec.name, "/somewhere/extra.aif");
    std::vector<char> second(first.size(), '\x5A');
    ASSERT_EQ(loaded->SaveShow(nullptr, second.data()), static_cast<long>(first.size()));
    SetAt<uint16_t>(second, 2, At<uint16_t>(first, 2));
    EXPECT_EQ(first, second);
}

}  // namespace

// The damaged shows kept in tests/data/show/malformed/ (most began as seeds of the show fuzz
// target): "1-" files load, repaired, and "0-" files are refused, leaving the show as it was.
// Whatever they claim, the show read from them stays within its tables, renders and saves again.
TEST_F(ShowFile, EveryKeptMalformedShowLoadsWithoutHarmOrIsRefused)
{
    std::vector<pxtest::MalformedFile> files = pxtest::MalformedFiles("show");
    ASSERT_GE(files.size(), 10u);
    for (const pxtest::MalformedFile& file : files) {
        SCOPED_TRACE(file.path);
        UseSettings("");
        MakeShow();
        bool loaded = doc->LoadShow(nullptr, reinterpret_cast<const char*>(file.bytes.data()),
                                    static_cast<long>(file.bytes.size()), false);
        EXPECT_EQ(loaded ? 1 : 0, file.code);
        if (!loaded) {
            EXPECT_EQ(doc->picCount, 2);
            continue;
        }
        ASSERT_GE(doc->picCount, 0);
        ASSERT_LE(doc->picCount, kMaxPictures);
        for (int pic = 0; pic < doc->picCount; ++pic) {
            EXPECT_GE(doc->keyCount[pic], 1) << pic;
            EXPECT_LE(doc->keyCount[pic], kMaxKeys) << pic;
        }
        CDIB frame(16, 12, 32);
        doc->RenderFrame(0, 0, false, 16, 12, &frame, false);
        doc->GotoFrame(30, false);
        std::vector<char> again = Save();
        std::unique_ptr<CDoc> reread = Load(again);
        EXPECT_EQ(reread->picCount, doc->picCount);
    }
}
