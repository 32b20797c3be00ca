// Loading pictures into the show: border, depth, adjustments, the starting camera, the loader
// behind the look-ahead image, and moving the current frame.

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/picture_cache.h"
#include "doc_fixture.h"
#include "recording_editor.h"
#include "support/bmp_files.h"

namespace {

using pxtest::PathSpec;
using pxtest::Rgb;

class PictureCache : public DocFixture {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        UseSettings("");
    }

    FSpec Picture(const std::string& name, int width, int height, Rgb colour)
    {
        EXPECT_TRUE(pxtest::WriteFlatBmp(dir.File(name), width, height, colour));
        return PathSpec(dir.File(name));
    }

    static std::vector<unsigned char> Pixels(const CDIB& image)
    {
        const unsigned char* at = image.GetBitsAdd(0);
        return std::vector<unsigned char>(at, at + image.GetRowBytes() * image.GetHgt());
    }

    pxtest::TempDir dir;
};

TEST_F(PictureCache, BorderIsTruncatedHalfPercentsOfTheWidthInTheMatteColour)
{
    FSpec spec = Picture("a.bmp", 40, 30, {200, 100, 50});
    doc->border = 11;              // 11 / 200 x 40 = 2.2 -> 2 pixels
    doc->matteColor = 0x00302010;  // red 0x10, green 0x20, blue 0x30
    doc->LoadPicture(&spec, 0, 0);
    ASSERT_EQ(doc->image.GetWid(), 44);
    ASSERT_EQ(doc->image.GetHgt(), 34);
    const unsigned char* corner = doc->image.GetBitsAdd(0);
    EXPECT_EQ(corner[0], 0x30);
    EXPECT_EQ(corner[1], 0x20);
    EXPECT_EQ(corner[2], 0x10);
    const unsigned char* inside = doc->image.GetBitsAdd(2) + 2 * 3;
    EXPECT_EQ(inside[0], 50);
    EXPECT_EQ(inside[1], 100);
    EXPECT_EQ(inside[2], 200);
}

TEST_F(PictureCache, NoBorderForZeroOrNegativeBorders)
{
    EXPECT_EQ(BorderPixels(0, 640), 0);
    EXPECT_EQ(BorderPixels(-1, 640), 0);
    EXPECT_EQ(BorderPixels(3, 640), 9);  // 3 / 200 x 640 = 9.6
}

TEST_F(PictureCache, PicturesAreKeptAtTwentyFourBitsWhenAlphaIsIgnored)
{
    FSpec spec = Picture("a.bmp", 8, 8, {1, 2, 3});
    doc->LoadPicture(&spec, 0, 0);
    EXPECT_EQ(doc->image.GetBitCount(), 24);
    EXPECT_EQ(PictureDepth(8, 32), 24);
    EXPECT_EQ(PictureDepth(32, 32), 32);
    EXPECT_EQ(PictureDepth(32, 24), 24);
    EXPECT_EQ(PictureDepth(24, 32), 24);
}

TEST_F(PictureCache, ContrastFromTheShowWordAndVideoColoursApply)
{
    UseSettings("VideoColors=1\r\n");
    FSpec spec = Picture("a.bmp", 8, 8, {255, 0, 128});
    doc->showWord = 50 | (60 << 8);  // contrast 50, brightness 60
    doc->LoadPicture(&spec, 0, 0);
    // Brightness 60 adds 10 / 50 x 92 = 18.4; then video-safe colours map c to (c x 86 + 1548) /
    // 100.
    const unsigned char* pixel = doc->image.GetBitsAdd(0);
    auto expected = [](int c) {
        float x = static_cast<float>(c) * 1.0f + 18.4f;
        int adjusted = x >= 255.0f ? 255 : (x > 0.0f ? static_cast<int>(x) : 0);
        return (adjusted * 86 + 1548) / 100;
    };
    EXPECT_EQ(pixel[2], expected(255));
    EXPECT_EQ(pixel[1], expected(0));
    EXPECT_EQ(pixel[0], expected(128));
}

// A decoded picture with every byte different, as the loaders leave it.
void PaintGradient(CDIB& image)
{
    for (int y = 0; y < image.GetHgt(); ++y) {
        unsigned char* row = image.GetBitsAdd(y);
        for (long x = 0; x < image.GetRowBytes(); ++x)
            row[x] = static_cast<unsigned char>(7 * y + 3 * x + 1);
    }
}

TEST_F(PictureCache, DecodedPictureWithoutBorderMovesIntoThePreparedImageUnchanged)
{
    PicturePreparation preparation;
    preparation.depth = 32;
    preparation.showWord = 50 | (60 << 8);
    for (int bits : {24, 32}) {
        CDIB loaded(7, 5, bits);
        PaintGradient(loaded);
        CDIB expected(1, 1, 24);
        ASSERT_TRUE(PreparePicture(expected, loaded, preparation));
        const unsigned char* decodedPixels = loaded.GetBitsAdd(0);
        CDIB target(3, 3, 24);
        target.useRotFilter = true;
        ASSERT_TRUE(PrepareLoadedPicture(target, loaded, preparation));
        // The decoded pixels themselves, adjusted in place: no second copy of the picture.
        EXPECT_EQ(target.GetBitsAdd(0), decodedPixels) << bits;
        EXPECT_EQ(target.GetBitCount(), bits);
        EXPECT_EQ(Pixels(target), Pixels(expected)) << bits;
        EXPECT_EQ(target.nominalWidth, expected.nominalWidth);
        EXPECT_EQ(target.nominalHeight, expected.nominalHeight);
        EXPECT_TRUE(target.useRotFilter);
    }
}

TEST_F(PictureCache, DecodedPictureWithABorderIsCopiedAsBefore)
{
    PicturePreparation bordered;
    bordered.border = 40;  // 20 % of the width each side
    CDIB loaded(10, 6, 32);
    PaintGradient(loaded);
    std::vector<unsigned char> decoded = Pixels(loaded);
    CDIB expected(1, 1, 24);
    ASSERT_TRUE(PreparePicture(expected, loaded, bordered));
    CDIB target(1, 1, 24);
    ASSERT_TRUE(PrepareLoadedPicture(target, loaded, bordered));
    EXPECT_EQ(target.GetWid(), expected.GetWid());
    EXPECT_EQ(target.GetBitCount(), expected.GetBitCount());
    EXPECT_EQ(Pixels(target), Pixels(expected));
    EXPECT_EQ(Pixels(loaded), decoded);
}

TEST_F(PictureCache, ShowWithoutAlphaDropsTheDecodedAlphaInPlaceWithTheSameBytesAsACopy)
{
    PicturePreparation ignoringAlpha;
    ignoringAlpha.depth = 24;
    // Widths whose 24-bit rows need 0 to 3 bytes of padding.
    for (int width : {4, 5, 6, 7, 10}) {
        CDIB loaded(width, 6, 32);
        PaintGradient(loaded);
        CDIB expected(1, 1, 24);
        ASSERT_TRUE(PreparePicture(expected, loaded, ignoringAlpha));
        const unsigned char* decodedPixels = loaded.GetBitsAdd(0);
        CDIB target(1, 1, 24);
        ASSERT_TRUE(PrepareLoadedPicture(target, loaded, ignoringAlpha));
        EXPECT_EQ(target.GetBitsAdd(0), decodedPixels) << width;
        EXPECT_EQ(target.GetBitCount(), 24);
        EXPECT_EQ(target.GetWid(), width);
        EXPECT_EQ(target.GetRowBytes(), expected.GetRowBytes());
        EXPECT_EQ(Pixels(target), Pixels(expected)) << width;
    }
}

TEST_F(PictureCache, NeutralShowWordLeavesThePictureAlone)
{
    FSpec spec = Picture("a.bmp", 8, 8, {7, 8, 9});
    doc->showWord = '1' | ('3' << 8);
    doc->LoadPicture(&spec, 0, 0);
    const unsigned char* pixel = doc->image.GetBitsAdd(3);
    EXPECT_EQ(pixel[0], 9);
    EXPECT_EQ(pixel[1], 8);
    EXPECT_EQ(pixel[2], 7);
}

TEST_F(PictureCache, NewPictureGetsACameraOnTheWholeOfIt)
{
    FSpec spec = Picture("a.bmp", 40, 30, {1, 2, 3});
    doc->keys[0][0].Rotation = 12.0f;
    doc->LoadPicture(&spec, 0, 77);
    const KeyStruct& key = doc->keys[0][0];
    EXPECT_EQ(key.Width, 40.0f);
    EXPECT_EQ(key.XPos, 20.0f);
    EXPECT_EQ(key.YPos, 15.0f);
    EXPECT_EQ(key.Rotation, 0.0f);
    EXPECT_EQ(doc->GetPicStart(0), 0);  // slot 0 always starts at 0
    EXPECT_TRUE(doc->dirty);
}

TEST_F(PictureCache, SlatewhirlCameraTakesTheWholeHeightOfATallPicture)
{
    SetEnvName("Slatewhirl");
    UseSettings("");
    FSpec spec = Picture("tall.bmp", 30, 60, {1, 2, 3});
    doc->LoadPicture(&spec, 0, 0);
    EXPECT_EQ(doc->keys[0][0].Width, 60.0f / 0.75f);
    SetEnvName("Parallaxotron");
}

TEST_F(PictureCache, PictureWithKeysKeepsItsCamera)
{
    FSpec spec = Picture("a.bmp", 40, 30, {1, 2, 3});
    doc->SetKey(1, KeyAt(30, 5.0f, 6.0f), 2);
    doc->keys[2][0].XPos = 9.0f;
    doc->LoadPicture(&spec, 2, 150);
    EXPECT_EQ(doc->keys[2][0].XPos, 9.0f);
    EXPECT_EQ(doc->GetPicStart(2), 150);
    EXPECT_EQ(doc->picCount, 3);
}

TEST_F(PictureCache, ShortPathsAndMissingFilesAddNothing)
{
    FSpec shortName = PathSpec("/a");
    doc->LoadPicture(&shortName, 0, 0);
    EXPECT_EQ(doc->picCount, 0);
    UseSettings("ShowPicError=1\r\n");
    FSpec missing = PathSpec(dir.File("missing.bmp"));
    doc->LoadPicture(&missing, 0, 0);
    EXPECT_EQ(doc->picCount, 0);
    EXPECT_EQ(doc->picLoadState, 0);
}

TEST_F(PictureCache, NegativeSlotIsIgnored)
{
    FSpec a = Picture("a.bmp", 8, 8, {1, 2, 3});
    FSpec b = Picture("b.bmp", 6, 6, {4, 5, 6});
    doc->LoadPicture(&a, 0, 0);
    doc->LoadPicture(&b, -1, 10);
    doc->LoadPicture(&b, -64, 10);
    EXPECT_EQ(doc->picCount, 1);
    EXPECT_STREQ(doc->picSpec[0].name, dir.File("a.bmp").c_str());
    EXPECT_EQ(doc->curPic, 0);
    EXPECT_EQ(doc->image.GetWid(), 8);
}

TEST_F(PictureCache, SlotsPastTheLastAreCutToSixtyThree)
{
    FSpec spec = Picture("a.bmp", 8, 8, {1, 2, 3});
    doc->LoadPicture(&spec, 200, 10);
    EXPECT_EQ(doc->picCount, 64);
    EXPECT_STREQ(doc->picSpec[63].name, dir.File("a.bmp").c_str());
}

TEST_F(PictureCache, CacheLoaderGivesTheSameImageAsLoadPicture)
{
    UseSettings("VideoColors=1\r\n");
    doc->border = 20;
    doc->matteColor = 0x0000FF;
    doc->preBlur = 1;
    doc->showWord = 60 | (45 << 8);
    ASSERT_TRUE(pxtest::WriteBmp24(dir.File("a.bmp"), 30, 20, [](int x, int y) {
        return Rgb{static_cast<uint8_t>(x * 8), static_cast<uint8_t>(y * 12), 90};
    }));
    FSpec a = PathSpec(dir.File("a.bmp"));
    FSpec b = Picture("b.bmp", 10, 10, {0, 0, 0});
    doc->LoadPicture(&a, 0, 0);
    CDIB direct(1, 1, 24);
    ASSERT_TRUE(doc->image.Copy(&direct, true));
    doc->LoadPicture(&b, 1, 50);
    ASSERT_TRUE(doc->LoadPictureBuffer(0, true));
    ASSERT_EQ(doc->image.GetWid(), direct.GetWid());
    EXPECT_EQ(Pixels(doc->image), Pixels(direct));
}

TEST_F(PictureCache, LoaderRequestFillsItsTargetClearsBusyAndAnswersTheResult)
{
    FSpec spec = Picture("a.bmp", 12, 10, {9, 9, 9});
    CDIB target(1, 1, 24);
    bool busy = true;
    int result = -1;
    auto* request = new PictureLoadRequest;
    request->target = &target;
    request->spec = spec;
    request->busy = &busy;
    request->result = &result;
    request->preparation.border = 50;  // a quarter of the width on each side
    EXPECT_EQ(lbThreadFunc(request), 1);
    EXPECT_FALSE(busy);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(target.GetWid(), 12 + 2 * 3);
}

TEST_F(PictureCache, LookAheadIsLoadedOnlyWhenAsked)
{
    FSpec a = Picture("a.bmp", 8, 8, {1, 2, 3});
    FSpec b = Picture("b.bmp", 8, 8, {4, 5, 6});
    doc->LoadPicture(&a, 0, 0);
    doc->LoadPicture(&b, 1, 50);
    ASSERT_TRUE(doc->LoadPictureBuffer(0, true));
    EXPECT_EQ(doc->lookAheadPic, -1);
    doc->curPic = -1;
    ASSERT_TRUE(doc->LoadPictureBuffer(0, false));
    EXPECT_EQ(doc->lookAheadPic, 1);
    // The last picture has nothing after it.
    ASSERT_TRUE(doc->LoadPictureBuffer(1, false));
    EXPECT_EQ(doc->lookAheadPic, 1);
}

TEST_F(PictureCache, RotatedFlagFollowsThePicturesKeys)
{
    FSpec a = Picture("a.bmp", 8, 8, {1, 2, 3});
    FSpec b = Picture("b.bmp", 8, 8, {4, 5, 6});
    doc->LoadPicture(&a, 0, 0);
    doc->LoadPicture(&b, 1, 50);
    doc->keys[1][0].Rotation = 5.0f;
    ASSERT_TRUE(doc->LoadPictureBuffer(0, true));
    EXPECT_FALSE(doc->image.useRotFilter);
    ASSERT_TRUE(doc->LoadPictureBuffer(1, true));
    EXPECT_TRUE(doc->image.useRotFilter);
}

TEST_F(PictureCache, GotoFrameClampsLoadsAndComputesTheCamera)
{
    FSpec a = Picture("a.bmp", 40, 30, {1, 2, 3});
    doc->LoadPicture(&a, 0, 0);
    doc->SetKey(1, KeyAt(100, 60.0f, 15.0f), 0);
    doc->showLength = 300;
    RecordingEditor editor;
    doc->AttachEditor(&editor);
    ASSERT_TRUE(doc->GotoFrame(1000, true));
    EXPECT_EQ(gCurFrame, 300);
    EXPECT_EQ(doc->currentCamera.XPos, 60.0f);
    EXPECT_EQ(editor.stageKey.XPos, 60.0f);
    ASSERT_EQ(editor.refreshedFrames.size(), 1u);
    EXPECT_EQ(editor.refreshedFrames[0], 300);
    ASSERT_TRUE(doc->GotoFrame(-20, false));
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_EQ(editor.refreshedFrames.size(), 1u);
    EXPECT_EQ(editor.keysSet, 2);
    doc->AttachEditor(nullptr);
}

TEST_F(PictureCache, GotoFrameWithoutAnEditorStillComputesTheCamera)
{
    FSpec a = Picture("a.bmp", 40, 30, {1, 2, 3});
    doc->LoadPicture(&a, 0, 0);
    ASSERT_TRUE(doc->GotoFrame(5, true));
    EXPECT_EQ(doc->currentCamera.Width, 40.0f);
}

TEST_F(PictureCache, BusyCursorShowsWhileAPictureLoads)
{
    RecordingEditor editor;
    doc->AttachEditor(&editor);
    FSpec a = Picture("a.bmp", 8, 8, {1, 2, 3});
    doc->LoadPicture(&a, 0, 0);
    EXPECT_EQ(editor.busyCalls, (std::vector<bool>{true, false}));
    doc->AttachEditor(nullptr);
}

}  // namespace
