// One frame of the show as movies show it: the renderer's frame, opaque where the filter leaves
// alpha alone, and the dissolve into the incoming picture.

#include "output/show_frame.h"

#include <gtest/gtest.h>

#include "doc/doc_fixture.h"
#include "doc/globals.h"
#include "image/cdib.h"
#include "platform/file/paths.h"
#include "support/bmp_files.h"
#include "support/temp_dir.h"

namespace {

using pxtest::Rgb;

class ShowFrame : public DocFixture {
protected:
    void SetUp() override
    {
        DocFixture::SetUp();
        UseSettings("");
        gFrameRate = 3000;
    }
    // Red from frame 0, blue from frame 20 with a dissolve of `transition` frames into it.
    void RedThenBlue(float transition)
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("red.bmp"), 32, 24, Rgb{200, 0, 0}));
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("blue.bmp"), 32, 24, Rgb{0, 0, 200}));
        FSpec red = PathFSpec(dir.File("red.bmp").c_str());
        FSpec blue = PathFSpec(dir.File("blue.bmp").c_str());
        doc->LoadPicture(&red, 0, 0);
        doc->LoadPicture(&blue, 1, 20);
        for (int pic = 0; pic < 2; ++pic) {
            KeyStruct last = doc->keys[pic][0];
            last.Frame = 20;
            doc->SetKey(1, last, pic);
        }
        doc->keys[1][0].TransLen = transition;
    }
    // Every key of picture `pic` gets this window width and rotation.
    void SetCamera(int pic, float width, float rotation)
    {
        for (int key = 0; key < doc->keyCount[pic]; ++key) {
            doc->keys[pic][key].Width = width;
            doc->keys[pic][key].Rotation = rotation;
        }
    }
    // True when every pixel of the frame has alpha 255.
    static bool Opaque(const CDIB& frame)
    {
        for (int row = 0; row < frame.GetHgt(); ++row)
            for (int x = 0; x < frame.GetWid(); ++x)
                if (frame.GetBitsAdd(row)[4 * x + 3] != 255)
                    return false;
        return true;
    }
    static const unsigned char* Middle(const CDIB& frame)
    {
        return frame.GetBitsAdd(frame.GetHgt() / 2) + frame.GetWid() / 2 * 4;
    }

    pxtest::TempDir dir;
};

TEST_F(ShowFrame, OutsideADissolveItIsTheRenderersFrame)
{
    RedThenBlue(10.0f);
    CDIB frame(16, 12, 32);
    CDIB incoming(1, 1, 32);
    CDIB plain(16, 12, 32);
    ASSERT_TRUE(RenderShowFrame(*doc, 5, 0, &frame, &incoming));
    ASSERT_TRUE(doc->RenderFrame(5, 0, false, 16, 12, &plain, true));
    EXPECT_EQ(Middle(frame)[2], Middle(plain)[2]);
    EXPECT_EQ(Middle(frame)[2], 200);
    EXPECT_EQ(Middle(frame)[3], 255);
}

TEST_F(ShowFrame, HalfwayThroughADissolveMixesBothPictures)
{
    RedThenBlue(10.0f);
    CDIB frame(16, 12, 32);
    CDIB incoming(1, 1, 32);
    ASSERT_TRUE(RenderShowFrame(*doc, 25, 0, &frame, &incoming));
    EXPECT_NEAR(Middle(frame)[2], 100, 2);  // red going
    EXPECT_NEAR(Middle(frame)[0], 100, 2);  // blue coming
    ASSERT_TRUE(RenderShowFrame(*doc, 20, 0, &frame, &incoming));
    EXPECT_NEAR(Middle(frame)[2], 200, 1) << "the dissolve starts from the outgoing picture";
}

// No pass presets alpha before a full-quality render: the straight and the rotating filter write
// it for every pixel, inside the picture and outside, whole frames and fields alike.
TEST_F(ShowFrame, FullQualityFramesOfATwentyFourBitPictureAreOpaqueFromAnyStart)
{
    RedThenBlue(0.0f);
    CDIB incoming(1, 1, 32);
    for (float rotation : {0.0f, 10.0f}) {
        SetCamera(0, 64.0f, rotation);  // twice the picture's width: outside pixels too
        for (int fieldMode : {0, 1, 3}) {
            CDIB frame(16, 12, 32);
            frame.SetAlpha(0);
            ASSERT_TRUE(RenderShowFrame(*doc, 5, fieldMode, &frame, &incoming));
            EXPECT_TRUE(Opaque(frame)) << "rotation " << rotation << ", field mode " << fieldMode;
        }
    }
}

// The draft renderer's nearest-pixel rotating filter leaves a 24-bit picture's alpha alone; the
// frame is made opaque before it runs.
TEST_F(ShowFrame, DraftRotatedFramesOfATwentyFourBitPictureAreOpaque)
{
    RedThenBlue(0.0f);
    doc->draftRender = true;
    SetCamera(0, 64.0f, 10.0f);
    CDIB frame(16, 12, 32);
    CDIB incoming(1, 1, 32);
    frame.SetAlpha(0);
    ASSERT_TRUE(RenderShowFrame(*doc, 5, 0, &frame, &incoming));
    EXPECT_TRUE(Opaque(frame));
    EXPECT_EQ(Middle(frame)[2], 200);
}

// The incoming picture of a dissolve starts as a new frame; mixed in, it keeps the frame opaque.
TEST_F(ShowFrame, DissolvesStayOpaqueInFullAndDraftRenders)
{
    RedThenBlue(10.0f);
    SetCamera(1, 32.0f, 10.0f);
    for (bool draft : {false, true}) {
        doc->draftRender = draft;
        CDIB frame(16, 12, 32);
        CDIB incoming(1, 1, 32);
        ASSERT_TRUE(RenderShowFrame(*doc, 25, 0, &frame, &incoming));
        EXPECT_TRUE(Opaque(incoming)) << (draft ? "draft" : "full quality");
        EXPECT_TRUE(Opaque(frame)) << (draft ? "draft" : "full quality");
    }
}

}  // namespace
