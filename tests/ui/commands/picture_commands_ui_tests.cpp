// "Load Picture": which slot a picture goes to, the file dialog, the size question, and the
// cases that add nothing.

#include "ui/commands/picture_commands.h"

#include "image/cdib.h"
#include "support/editor_fixture.h"
#include "ui/viewer/cview.h"

namespace {

class PictureCommands : public pxtest::Editor {
protected:
    // A Targa picture of the given size in the test's folder.
    std::string SmallPicture(int width, int height)
    {
        std::string path = dir.File("small.tga");
        CDIB picture(width, height, 24);
        FSpec spec = PathFSpec(path.c_str());
        EXPECT_TRUE(picture.Save(&spec, 1));
        return path;
    }
};

// A show of `count` pictures, each starting `spacing` frames after the one before, with one
// more key 40 frames in.
void FillShow(CDoc& doc, int count, long spacing)
{
    doc.picCount = count;
    for (int pic = 0; pic < count; ++pic) {
        doc.keyCount[pic] = 2;
        doc.keys[pic][0].PicStart = static_cast<float>(pic * spacing);
        doc.keys[pic][1] = doc.keys[pic][0];
        doc.keys[pic][1].PicStart = 0;
        doc.keys[pic][1].Frame = 40;
    }
}

TEST(ChoosePictureSlot, AnEmptyShowTakesThePictureAtFrameZero)
{
    CDoc doc;
    PictureSlot place = ChoosePictureSlot(doc, 500, 30, 30);
    EXPECT_EQ(place.slot, 0);
    EXPECT_EQ(place.frame, 0);
}

TEST(ChoosePictureSlot, APictureStartingJustBeforeTheFrameIsReplaced)
{
    CDoc doc;
    FillShow(doc, 3, 100);
    // 6 x 30 / 30 = 6 frames: 100 .. 105 replace picture 1.
    EXPECT_EQ(ChoosePictureSlot(doc, 100, 30, 30).slot, 1);
    EXPECT_EQ(ChoosePictureSlot(doc, 105, 30, 30).slot, 1);
    EXPECT_EQ(ChoosePictureSlot(doc, 105, 30, 30).frame, 105);
    // A wider timeline scale widens the reach: 6 x 300 / 30 = 60 frames.
    EXPECT_EQ(ChoosePictureSlot(doc, 150, 300, 30).slot, 1);
}

TEST(ChoosePictureSlot, OtherwiseThePictureGoesAfterTheLastOne)
{
    CDoc doc;
    FillShow(doc, 3, 100);
    // Past the last picture's start: the new picture starts where asked.
    PictureSlot after = ChoosePictureSlot(doc, 260, 30, 30);
    EXPECT_EQ(after.slot, 3);
    EXPECT_EQ(after.frame, 260);
    // Before it: a second after the last picture's last key.
    PictureSlot before = ChoosePictureSlot(doc, 150, 30, 30);
    EXPECT_EQ(before.slot, 3);
    EXPECT_EQ(before.frame, 200 + 40 + 30);
}

TEST(ChoosePictureSlot, SixtyFourPicturesAndNoneToReplaceFindNoSlot)
{
    CDoc doc;
    FillShow(doc, kMaxPictures, 100);
    EXPECT_EQ(ChoosePictureSlot(doc, 150, 30, 30).slot, -1);
    EXPECT_EQ(ChoosePictureSlot(doc, 6300, 30, 30).slot, 63);
}

TEST_F(PictureCommands, FirstPictureGoesToFrameZeroAndTheFolderIsRemembered)
{
    Start();
    gCurFrame = 300;
    PushFileDialogAnswer(pxtest::kLake.c_str());
    Ctrl('e');
    ASSERT_EQ(pDoc->picCount, 1);
    EXPECT_EQ(pDoc->GetPicStart(0), 0);
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_EQ(pDoc->keys[0][0].Width, 1200.0f);
    EXPECT_TRUE(pDoc->dirty);
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_FALSE(request.save);
    ASSERT_FALSE(request.nameFilters.empty());
    EXPECT_EQ(request.nameFilters[0].rfind("All Graphics Files", 0), 0u);
    char folder[300] = {};
    GetIniString("InitialFolder", "", folder, 255);
    EXPECT_EQ(std::string(folder) + "lake.png", PathFSpec(pxtest::kLake.c_str()).name);
    // The next dialog starts there.
    PushFileDialogCancel();
    Choose(1010);
    EXPECT_EQ(GetLastFileDialogRequest().folder + "/", folder);
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(PictureCommands, SecondPictureAwayFromTheFirstStartGoesAfterIt)
{
    Start();
    PushFileDialogAnswer(pxtest::kLake.c_str());
    Choose(1010);
    pDoc->GotoFrame(100, true);
    PushFileDialogAnswer(pxtest::kCity.c_str());
    Choose(1010);
    ASSERT_EQ(pDoc->picCount, 2);
    EXPECT_EQ(pDoc->GetPicStart(1), 100);
    EXPECT_EQ(gCurFrame, 100);
    EXPECT_NE(std::string(pDoc->picSpec[1].name).find("city.png"), std::string::npos);
}

TEST_F(PictureCommands, CancelAddsNothing)
{
    Start();
    PushFileDialogCancel();
    Choose(1010);
    EXPECT_EQ(pDoc->picCount, 0);
    EXPECT_FALSE(pDoc->dirty);
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(PictureCommands, AFileThatIsNotAPictureAddsNothing)
{
    Start();
    std::string junk = dir.File("notes.bmp");
    ASSERT_TRUE(pxtest::WriteText(junk, "not a picture"));
    PushFileDialogAnswer(junk.c_str());
    PushMessageBoxAnswer(kBoxYes);  // the reader's message
    Choose(1010);
    EXPECT_EQ(pDoc->picCount, 0);
    EXPECT_FALSE(pDoc->dirty);
    // The reader said why.
    EXPECT_EQ(BoxTexts().size(), 1u);
}

TEST_F(PictureCommands, SixtyFourPicturesAndNoSlotAddsNothing)
{
    Start();
    FillShow(*pDoc, kMaxPictures, 100);
    for (int pic = 0; pic < kMaxPictures; ++pic)
        pDoc->picSpec[pic] = PathFSpec(pxtest::kLake.c_str());
    gCurFrame = 150;
    PushFileDialogAnswer(pxtest::kCity.c_str());
    Choose(1010);
    EXPECT_EQ(pDoc->picCount, kMaxPictures);
    for (int pic = 0; pic < kMaxPictures; ++pic)
        EXPECT_EQ(std::string(pDoc->picSpec[pic].name).find("city"), std::string::npos) << pic;
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(PictureCommands, ANewSizeForAPictureWithMovesAsksToMatchThem)
{
    Start();
    PushFileDialogAnswer(pxtest::kLake.c_str());
    Choose(1010);
    pDoc->keyCount[0] = 2;
    pDoc->keys[0][1] = pDoc->keys[0][0];
    pDoc->keys[0][1].PicStart = 0;
    pDoc->keys[0][1].Frame = 60;
    pDoc->keys[0][1].XPos = 300.0f;
    pDoc->keys[0][1].Width = 400.0f;
    std::string small = SmallPicture(600, 400);

    gCurFrame = 0;
    PushFileDialogAnswer(small.c_str());
    PushMessageBoxAnswer(kBoxNo);
    Choose(1010);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0], "Match Moves: Match moves to new Picture size?");
    EXPECT_EQ(pDoc->keys[0][1].XPos, 300.0f);

    // Back to the large picture, then to the small one again, answering yes.
    PushFileDialogAnswer(pxtest::kLake.c_str());
    PushMessageBoxAnswer(kBoxNo);
    Choose(1010);
    PushFileDialogAnswer(small.c_str());
    PushMessageBoxAnswer(kBoxYes);
    Choose(1010);
    EXPECT_EQ(pDoc->keys[0][1].XPos, 150.0f);
    EXPECT_EQ(pDoc->keys[0][1].Width, 200.0f);
    EXPECT_EQ(pDoc->GetKeyCount(0), 2);
    TakeShownMessageBoxes();
}

TEST_F(PictureCommands, TheSameSizeAsksNothing)
{
    Start();
    PushFileDialogAnswer(pxtest::kLake.c_str());
    Choose(1010);
    pDoc->keyCount[0] = 2;
    pDoc->keys[0][1] = pDoc->keys[0][0];
    pDoc->keys[0][1].PicStart = 0;
    pDoc->keys[0][1].Frame = 60;
    gCurFrame = 0;
    PushFileDialogAnswer(pxtest::kCity.c_str());
    Choose(1010);
    EXPECT_TRUE(BoxTexts().empty());
    EXPECT_NE(std::string(pDoc->picSpec[0].name).find("city.png"), std::string::npos);
    EXPECT_EQ(pDoc->GetKeyCount(0), 2);
}

}  // namespace
