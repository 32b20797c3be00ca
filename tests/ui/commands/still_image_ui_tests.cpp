// "Make Still Image": the frame at the movie's size as a Targa picture, read back equal to the
// rendered frame; cancel and failures.

#include "ui/commands/still_image.h"

#include "image/cdib.h"
#include "support/editor_fixture.h"

namespace {

class StillImage : public pxtest::Editor {};

TEST_F(StillImage, TheCurrentFrameAtTheMovieSizeIsSavedAsATarga)
{
    StartWithDemo("MovieWid=160\r\nMovieHgt=120\r\n");
    pDoc->GotoFrame(45, true);
    std::string path = dir.File("frame.tga");
    PushFileDialogAnswer(path.c_str());
    ASSERT_TRUE(Choose(1037));
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_TRUE(request.save);
    EXPECT_EQ(request.defaultSuffix, "tga");
    EXPECT_EQ(request.fileType, "TPIC");
    ASSERT_EQ(request.nameFilters.size(), 1u);
    EXPECT_EQ(request.nameFilters[0], "Targa Image (*.tga)");

    CDIB expected(160, 120, 32);
    ASSERT_TRUE(pDoc->RenderFrame(45, 0, false, 160, 120, &expected, false));
    CDIB loaded(1, 1, 32);
    FSpec spec = PathFSpec(path.c_str());
    ASSERT_EQ(loaded.Load(&spec, nullptr, false), 1);
    ASSERT_EQ(loaded.GetWid(), 160);
    ASSERT_EQ(loaded.GetHgt(), 120);
    int bytes = loaded.GetBitCount() / 8;
    int differing = 0;
    for (int row = 0; row < 120; ++row)
        for (int x = 0; x < 160; ++x)
            for (int c = 0; c < 3; ++c)
                differing +=
                    expected.GetBitsAdd(row)[x * 4 + c] != loaded.GetBitsAdd(row)[x * bytes + c];
    EXPECT_EQ(differing, 0);
    // The file starts as a Targa does: no ID, no colour map, true colour.
    std::vector<unsigned char> head = pxtest::ReadBytes(path);
    ASSERT_GE(head.size(), 18u);
    EXPECT_EQ(head[2], 2);
}

TEST_F(StillImage, CancelWritesNothing)
{
    StartWithDemo();
    PushFileDialogCancel();
    EXPECT_FALSE(MakeStillImageCommand());
    EXPECT_TRUE(std::filesystem::is_empty(dir.Path()) ||
                !std::filesystem::exists(dir.File("frame.tga")));
}

TEST_F(StillImage, AFolderThatIsNotThereIsReportedAndNothingIsLeft)
{
    StartWithDemo("MovieWid=64\r\nMovieHgt=48\r\n");
    std::string path = dir.File("missing/frame.tga");
    PushFileDialogAnswer(path.c_str());
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_FALSE(MakeStillImageCommand());
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(BoxTexts().size(), 1u);
}

TEST_F(StillImage, AZeroMovieSizeSaysSoAndWritesNothing)
{
    StartWithDemo("MovieWid=0\r\nMovieHgt=48\r\n");
    std::string path = dir.File("frame.tga");
    PushFileDialogAnswer(path.c_str());
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_FALSE(MakeStillImageCommand());
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(BoxTexts().size(), 1u);
}

}  // namespace
