// Rendering frames: the camera's view of the picture, fields, transitions, motion blur, the
// letterbox, size limits and the picture cache behind them.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc_fixture.h"
#include "image/picture_import.h"
#include "platform/dialog/message_box.h"
#include "support/bmp_files.h"

namespace {

using pxtest::PathSpec;
using pxtest::Rgb;

// A picture whose every pixel tells its place.
Rgb Pattern(int x, int y)
{
    return Rgb{static_cast<uint8_t>(x * 5 + 1), static_cast<uint8_t>(y * 7 + 2),
               static_cast<uint8_t>((x + y) * 3 + 3)};
}

class Render : public DocFixture {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        UseSettings("");
        gFrameRate = 2997;
    }

    // Picture 0: a 40 x 30 pattern with the camera exactly on it (two still keys).
    void LoadPatternPicture()
    {
        ASSERT_TRUE(pxtest::WriteBmp24(dir.File("pattern.bmp"), 40, 30, Pattern));
        FSpec spec = PathSpec(dir.File("pattern.bmp"));
        doc->LoadPicture(&spec, 0, 0);
        ASSERT_EQ(doc->picCount, 1);
        KeyStruct still = doc->keys[0][0];
        still.Frame = 100;
        doc->SetKey(1, still, 0);
    }

    // Two flat pictures: red from frame 0, green from frame 100, the camera panning over each.
    void LoadTwoPictures()
    {
        ASSERT_TRUE(pxtest::WriteBmp24(dir.File("red.bmp"), 80, 60, [](int x, int) {
            return Rgb{static_cast<uint8_t>(100 + x), 0, 0};
        }));
        ASSERT_TRUE(pxtest::WriteBmp24(dir.File("green.bmp"), 80, 60, [](int x, int) {
            return Rgb{0, static_cast<uint8_t>(100 + x), 0};
        }));
        FSpec red = PathSpec(dir.File("red.bmp"));
        FSpec green = PathSpec(dir.File("green.bmp"));
        doc->LoadPicture(&red, 0, 0);
        doc->LoadPicture(&green, 1, 100);
        for (int pic = 0; pic < 2; ++pic) {
            doc->keys[pic][0].XPos = 20.0f;
            doc->keys[pic][0].YPos = 30.0f;
            doc->keys[pic][0].Width = 40.0f;
            KeyStruct later = doc->keys[pic][0];
            later.XPos = 60.0f;
            later.Frame = 100;
            later.PicStart = 0.0f;
            doc->SetKey(1, later, pic);
        }
    }

    static std::vector<unsigned char> Row(const CDIB& image, int row)
    {
        const unsigned char* at = image.GetBitsAdd(row);
        return std::vector<unsigned char>(at, at + image.GetWid() * 4);
    }

    static std::vector<unsigned char> Pixels(const CDIB& image)
    {
        const unsigned char* at = image.GetBitsAdd(0);
        return std::vector<unsigned char>(at, at + image.GetRowBytes() * image.GetHgt());
    }

    // Blue, green, red and alpha of the pattern at picture line y, as a 24-bit source renders.
    static std::vector<unsigned char> PatternRow(int y, int width)
    {
        std::vector<unsigned char> row;
        for (int x = 0; x < width; ++x) {
            Rgb c = Pattern(x, y);
            row.insert(row.end(), {c.blue, c.green, c.red, 255});
        }
        return row;
    }

    pxtest::TempDir dir;
};

TEST_F(Render, CameraExactlyOnThePictureReproducesItAtOneToOne)
{
    LoadPatternPicture();
    CDIB out(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(50, 0, false, 40, 30, &out, false));
    for (int row = 0; row < 30; ++row)
        EXPECT_EQ(Row(out, row), PatternRow(29 - row, 40)) << row;
}

TEST_F(Render, BothFieldsOfAStillCameraGiveTheWholeFrame)
{
    LoadPatternPicture();
    CDIB whole(40, 30, 32);
    CDIB fields(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(50, 0, false, 40, 30, &whole, false));
    ASSERT_TRUE(doc->RenderFrame(50, 3, false, 40, 30, &fields, false));
    EXPECT_EQ(Pixels(fields), Pixels(whole));
}

TEST_F(Render, SingleFieldOfTheOtherOrderSamplesHalfARowLater)
{
    LoadPatternPicture();
    CDIB out(40, 30, 32);
    // "FlopTopField" is off, so an even field (oddField false) takes the half-row shift.
    ASSERT_TRUE(doc->RenderFrame(50, 1, false, 40, 30, &out, false));
    for (int row = 0; row < 28; ++row) {
        std::vector<unsigned char> lower = PatternRow(29 - row, 40);
        std::vector<unsigned char> upper = PatternRow(28 - row, 40);
        std::vector<unsigned char> expected(lower.size());
        for (size_t i = 0; i < lower.size(); ++i)
            expected[i] = static_cast<unsigned char>((lower[i] + upper[i]) / 2);
        EXPECT_EQ(Row(out, row), expected) << row;
    }
    CDIB plain(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(50, 1, true, 40, 30, &plain, false));
    EXPECT_EQ(Row(plain, 3), PatternRow(26, 40));
}

TEST_F(Render, LetterboxFrameOf640By480HasSixtyBarRowsAtEachEnd)
{
    UseSettings("AspectMode=5626\r\n");
    LoadPatternPicture();
    CDIB out(640, 480, 32);
    ASSERT_TRUE(doc->RenderFrame(10, 0, false, 640, 480, &out, false));
    std::vector<unsigned char> bar;
    for (int x = 0; x < 640; ++x)
        bar.insert(bar.end(), {17, 17, 17, 255});
    for (int row = 0; row < 60; ++row) {
        EXPECT_EQ(Row(out, row), bar) << row;
        EXPECT_EQ(Row(out, 479 - row), bar) << row;
    }
    EXPECT_NE(Row(out, 60), bar);
    EXPECT_NE(Row(out, 419), bar);
}

TEST_F(Render, LetterboxBarRowsAreTheRowsTheRendererPaints)
{
    UseSettings("AspectMode=5626\r\n");
    EXPECT_EQ(doc->LetterboxBarRows(640, 480), 60);
    EXPECT_EQ(doc->LetterboxBarRows(0, 480), 0);
    UseSettings("AspectMode=5625\r\n");
    EXPECT_EQ(doc->LetterboxBarRows(640, 480), 0);
}

TEST_F(Render, AtFiftyFramesASecondTheSecondFieldFlagIsAlwaysOff)
{
    LoadTwoPictures();
    CDIB first(40, 30, 32);
    CDIB second(40, 30, 32);
    gFrameRate = 5000;
    ASSERT_TRUE(doc->RenderFrame(40, 1, true, 40, 30, &first, false));
    ASSERT_TRUE(doc->RenderFrame(40, 2, true, 40, 30, &second, false));
    EXPECT_EQ(Pixels(first), Pixels(second));
    // At 29.97 the second field's camera is half a frame on.
    gFrameRate = 2997;
    ASSERT_TRUE(doc->RenderFrame(40, 2, true, 40, 30, &second, false));
    EXPECT_NE(Pixels(first), Pixels(second));
    gFrameRate = 2997;
}

TEST_F(Render, OutgoingPictureOfATransitionMovesOnThroughTheOverlap)
{
    LoadTwoPictures();
    doc->keys[1][0].TransLen = 10.0f;
    CDIB outgoing(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(105, 0, false, 40, 30, &outgoing, true));
    EXPECT_EQ(doc->keys[0][1].Frame, 100);  // put back after the render

    // The same camera from a show where picture 0's last key really is at 110.
    doc->keys[0][1].Frame = 110;
    doc->keys[1][0].TransLen = 0.0f;
    doc->picCount = 1;
    CDIB expected(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(105, 0, false, 40, 30, &expected, false));
    EXPECT_EQ(Pixels(outgoing), Pixels(expected));
    EXPECT_GT(outgoing.GetBitsAdd(10)[2], 0);  // red: picture 0
}

TEST_F(Render, IncomingPictureOfATransitionIsTheNewOne)
{
    LoadTwoPictures();
    doc->keys[1][0].TransLen = 10.0f;
    CDIB incoming(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(105, 0, false, 40, 30, &incoming, false));
    EXPECT_EQ(incoming.GetBitsAdd(10)[2], 0);
    EXPECT_GT(incoming.GetBitsAdd(10)[1], 0);  // green: picture 1
}

TEST_F(Render, MotionBlurMixesInTheSampleHalfAFrameEarlier)
{
    LoadTwoPictures();
    CDIB now(40, 30, 32);
    CDIB earlier(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(50, 0, false, 40, 30, &now, false));
    ASSERT_TRUE(doc->RenderFrame(49, 2, false, 40, 30, &earlier, false));
    now.Dissolve(&earlier, 0.5f);

    doc->blurFrames = 1;
    CDIB blurred(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(50, 0, false, 40, 30, &blurred, false));
    EXPECT_EQ(doc->blurFrames, 1);
    EXPECT_EQ(Pixels(blurred), Pixels(now));
}

TEST_F(Render, FrameBeforeTheStartComesFromTheFirstPicture)
{
    LoadTwoPictures();
    doc->blurFrames = 1;
    CDIB out(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(-5, 0, false, 40, 30, &out, false));
    EXPECT_GT(out.GetBitsAdd(10)[2], 0);
    EXPECT_EQ(out.GetBitsAdd(10)[1], 0);
}

TEST_F(Render, SizesOutsideTheLimitsOrNoImageAreRefused)
{
    LoadTwoPictures();
    CDIB out(40, 30, 32);
    EXPECT_FALSE(doc->RenderFrame(10, 0, false, 0, 30, &out, false));
    EXPECT_FALSE(doc->RenderFrame(10, 0, false, 40, 8193, &out, false));
    EXPECT_FALSE(doc->RenderFrame(10, 0, false, 40, 30, nullptr, false));
    EXPECT_EQ(doc->keys[0][1].Frame, 100);
}

// Red from frame 0, a picture whose file is gone from frame 100, blue from frame 200.
class RenderWithAMissingPicture : public Render {
protected:
    void MakeShow()
    {
        const char* names[3] = {"red.bmp", "gone.bmp", "blue.bmp"};
        const Rgb colours[3] = {{200, 0, 0}, {0, 200, 0}, {0, 0, 200}};
        for (int pic = 0; pic < 3; ++pic) {
            ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File(names[pic]), 40, 30, colours[pic]));
            FSpec spec = PathSpec(dir.File(names[pic]));
            doc->LoadPicture(&spec, pic, pic * 100);
            KeyStruct later = doc->keys[pic][0];
            later.Frame = 100;
            later.PicStart = 0.0f;
            doc->SetKey(1, later, pic);
        }
        ASSERT_EQ(doc->picCount, 3);
        std::remove(dir.File("gone.bmp").c_str());
        // Nothing of the pictures stays in memory: each is read again when its frames come.
        doc->FlopPic(0, 2);
        doc->FlopPic(0, 2);
    }

    static std::vector<unsigned char> Placeholder(int width, int height)
    {
        CDIB placeholder(1, 1, 24);
        EXPECT_TRUE(BitmapToDIB(&placeholder, 133));
        CDIB scaled(width, height, 32);
        EXPECT_TRUE(placeholder.CopyScale(&scaled, 0, 0));
        return Pixels(scaled);
    }

    // Renders frames and checks each against its own picture: red, the placeholder, blue.
    void ExpectEachPictureInItsOwnFrames()
    {
        const std::vector<unsigned char> placeholder = Placeholder(40, 30);
        for (long frame : {10L, 150L, 160L, 250L, 260L, 199L, 50L, 120L, 280L}) {
            CDIB out(40, 30, 32);
            ASSERT_TRUE(doc->RenderFrame(frame, 0, false, 40, 30, &out, false)) << frame;
            const unsigned char* middle = out.GetBitsAdd(15) + 20 * 4;
            if (frame < 100) {
                EXPECT_EQ(middle[2], 200) << frame;
                EXPECT_EQ(middle[0], 0) << frame;
            } else if (frame < 200) {
                EXPECT_EQ(Pixels(out), placeholder) << frame;
            } else {
                EXPECT_EQ(middle[0], 200) << frame;
                EXPECT_EQ(middle[2], 0) << frame;
            }
        }
    }
};

TEST_F(RenderWithAMissingPicture, OnlyTheMissingPicturesFramesArePlaceholdersWhenErrorsAreOff)
{
    MakeShow();
    ExpectEachPictureInItsOwnFrames();
}

TEST_F(RenderWithAMissingPicture, OnlyTheMissingPicturesFramesArePlaceholdersWhenErrorsAreShown)
{
    UseSettings("ShowPicError=1\r\n");
    MakeShow();
    ClearMessageBoxScript();
    ExpectEachPictureInItsOwnFrames();
    // The message comes when the picture is read, not at every one of its frames.
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_FALSE(boxes.empty());
    EXPECT_LE(boxes.size(), 2u);
    for (const ShownMessageBox& box : boxes)
        EXPECT_EQ(box.text, "Can't open graphics file");
}

TEST_F(Render, RotationAddedToTheCurrentPictureTakesEffectAtOnce)
{
    LoadTwoPictures();
    ASSERT_EQ(doc->curPic, 1);
    CDIB plain(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(150, 0, false, 40, 30, &plain, false));
    doc->keys[1][0].Rotation = 30.0f;
    doc->keys[1][1].Rotation = 30.0f;
    CDIB turned(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(150, 0, false, 40, 30, &turned, false));
    EXPECT_NE(Pixels(turned), Pixels(plain));
    // The same frame with the picture read again after the change.
    ASSERT_TRUE(doc->LoadPictureBuffer(0, true));
    CDIB reread(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(150, 0, false, 40, 30, &reread, false));
    EXPECT_EQ(Pixels(turned), Pixels(reread));
}

TEST_F(Render, DissolveAndMotionBlurFramesReusePreparedPicturesWithTheSameBytes)
{
    LoadTwoPictures();
    doc->keys[1][0].TransLen = 10.0f;
    doc->blurFrames = 1;
    // What each frame is when every picture is read afresh for it.
    std::vector<std::vector<unsigned char>> fresh;
    for (long frame = 98; frame < 112; ++frame) {
        for (bool outgoing : {true, false}) {
            doc->FlopPic(0, 1);
            doc->FlopPic(0, 1);
            CDIB out(40, 30, 32);
            ASSERT_TRUE(doc->RenderFrame(frame, 0, false, 40, 30, &out, outgoing));
            fresh.push_back(Pixels(out));
        }
    }
    // Both pictures in memory; their files change on disk, and the frames do not.
    doc->FlopPic(0, 1);
    doc->FlopPic(0, 1);
    CDIB first(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(105, 0, false, 40, 30, &first, true));
    ASSERT_TRUE(doc->RenderFrame(105, 0, false, 40, 30, &first, false));
    int loads = doc->pictureFileLoads;
    ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("red.bmp"), 80, 60, {0, 0, 255}));
    ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("green.bmp"), 80, 60, {0, 0, 255}));
    size_t index = 0;
    for (long frame = 98; frame < 112; ++frame) {
        for (bool outgoing : {true, false}) {
            CDIB out(40, 30, 32);
            ASSERT_TRUE(doc->RenderFrame(frame, 0, false, 40, 30, &out, outgoing));
            EXPECT_EQ(Pixels(out), fresh[index++])
                << frame << (outgoing ? " outgoing" : " incoming");
        }
    }
    EXPECT_EQ(doc->pictureFileLoads, loads);
}

TEST_F(Render, DraftRenderSamplesTheNearestPixel)
{
    UseSettings("DraftRender=1\r\n");
    LoadPatternPicture();
    CDIB out(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(50, 1, false, 40, 30, &out, false));
    // No averaging between rows: every row is a row of the picture.
    EXPECT_EQ(Row(out, 5), PatternRow(24, 40));
}

TEST_F(Render, RenderingTheSamePictureTwiceDoesNotReloadIt)
{
    LoadPatternPicture();
    CDIB first(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(10, 0, false, 40, 30, &first, false));
    ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("pattern.bmp"), 40, 30, {0, 0, 0}));
    CDIB second(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(20, 0, false, 40, 30, &second, false));
    EXPECT_EQ(Pixels(first), Pixels(second));
}

TEST_F(Render, SteppingForwardAcrossAPictureChangeCopiesTheLookAheadImage)
{
    LoadTwoPictures();
    ASSERT_TRUE(doc->GotoFrame(90, false));
    EXPECT_EQ(doc->curPic, 0);
    EXPECT_EQ(doc->lookAheadPic, 1);
    // Picture 1's file changes on disk: the frame still shows what was loaded ahead.
    ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("green.bmp"), 80, 60, {0, 0, 255}));
    CDIB out(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(110, 0, false, 40, 30, &out, false));
    EXPECT_EQ(doc->curPic, 1);
    EXPECT_GT(out.GetBitsAdd(10)[1], 0);
    EXPECT_EQ(out.GetBitsAdd(10)[0], 0);
}

TEST_F(Render, SwappingPicturesForgetsTheImagesInMemory)
{
    LoadTwoPictures();
    ASSERT_TRUE(doc->GotoFrame(90, false));
    doc->FlopPic(0, 1);
    EXPECT_EQ(doc->curPic, -1);
    EXPECT_EQ(doc->lookAheadPic, -1);
    CDIB out(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(10, 0, false, 40, 30, &out, false));
    EXPECT_GT(out.GetBitsAdd(10)[1], 0);  // green is picture 0 now
}

TEST_F(Render, AtFiftyFramesASecondFieldSwapAndBothFieldsStillSampleTheFrameItself)
{
    UseSettings("FieldSwap=1\r\n");
    LoadTwoPictures();
    ASSERT_TRUE(doc->fieldSwap);
    gFrameRate = 5000;
    CDIB swapped(40, 30, 32);
    CDIB both(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(40, 0, false, 40, 30, &swapped, false));
    ASSERT_TRUE(doc->RenderFrame(40, 3, false, 40, 30, &both, false));
    doc->fieldSwap = false;
    CDIB plain(40, 30, 32);
    ASSERT_TRUE(doc->RenderFrame(40, 0, false, 40, 30, &plain, false));
    // "FieldSwap" would make the whole frame a second field, and mode 3's second pass takes the
    // other flag; at 50.00 frames a second both stay on the frame itself.
    EXPECT_EQ(Pixels(swapped), Pixels(plain));
    EXPECT_EQ(Pixels(both), Pixels(plain));
    // At 29.97 the swapped whole frame is half a frame on, so the comparison above can tell.
    gFrameRate = 2997;
    doc->fieldSwap = true;
    ASSERT_TRUE(doc->RenderFrame(40, 0, false, 40, 30, &swapped, false));
    EXPECT_NE(Pixels(swapped), Pixels(plain));
}

}  // namespace
