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

}  // namespace
