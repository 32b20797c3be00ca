#include <cmath>
#include <cstring>
#include <limits>

#include "doc/camera.h"
#include "doc_fixture.h"
#include "platform/dialog/message_box.h"
#include "support/bmp_files.h"

namespace {

using TimingTest = DocFixture;

TEST_F(TimingTest, ShiftKeysMovesLaterKeysAndLaterPictures)
{
    MakePictures({0, 100, 200});
    doc->SetKey(1, KeyAt(20), 0);
    doc->SetKey(2, KeyAt(60), 0);
    EXPECT_TRUE(doc->ShiftKeys(30, 10));
    EXPECT_EQ(doc->keys[0][1].Frame, 20);
    EXPECT_EQ(doc->keys[0][2].Frame, 70);
    EXPECT_EQ(doc->GetPicStart(1), 110);
    EXPECT_EQ(doc->GetPicStart(2), 210);
    EXPECT_TRUE(doc->dirty);
    // One entry for the shifted key (its own index) and one per later picture.
    EXPECT_EQ(doc->undoCount, 3);
    EXPECT_EQ(doc->undoRing[0].Reserved[1], 2);
    EXPECT_EQ(doc->undoRing[0].Frame, 60);
}

TEST_F(TimingTest, ShiftKeysNeverMovesAKeyBelowZeroOrPastTheShowLength)
{
    MakePictures({0});
    doc->showLength = 100;
    doc->SetKey(1, KeyAt(20), 0);
    doc->SetKey(2, KeyAt(90), 0);
    doc->ShiftKeys(10, -50);
    EXPECT_EQ(doc->keys[0][1].Frame, 0);
    EXPECT_EQ(doc->keys[0][2].Frame, 40);
    doc->ShiftKeys(30, 500);
    EXPECT_EQ(doc->keys[0][2].Frame, 100);
}

TEST_F(TimingTest, ShiftKeysUndoesEveryKeyToItsOwnPlace)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(20), 0);
    doc->SetKey(2, KeyAt(60), 0);
    doc->ShiftKeys(10, 5);
    doc->UnDo();
    doc->UnDo();
    EXPECT_EQ(doc->keys[0][1].Frame, 20);
    EXPECT_EQ(doc->keys[0][2].Frame, 60);
}

TEST_F(TimingTest, ChangePicTimingOnPictureZeroDoesNothing)
{
    MakePictures({0, 100});
    EXPECT_FALSE(doc->ChangePicTiming(50, 0));
    EXPECT_EQ(doc->GetPicStart(0), 0);
    EXPECT_EQ(doc->undoCount, 0);
}

TEST_F(TimingTest, DropWithinSevenFramesOfThePreviousStartSwapsAndKeepsStarts)
{
    MakePictures({0, 100, 200, 300});
    EXPECT_TRUE(doc->ChangePicTiming(205, 3));
    EXPECT_STREQ(doc->picSpec[2].name, "pic3");
    EXPECT_STREQ(doc->picSpec[3].name, "pic2");
    EXPECT_EQ(doc->GetPicStart(2), 200);
    EXPECT_EQ(doc->GetPicStart(3), 300);
    const KeyStruct& entry = doc->undoRing[doc->undoHead];
    EXPECT_EQ(entry.Reserved[1], kUndoPictureSwap);
    EXPECT_EQ(entry.Frame, 2);
}

TEST_F(TimingTest, DropFurtherIntoThePreviousPictureMovesTheStart)
{
    MakePictures({0, 100, 200, 300});
    EXPECT_TRUE(doc->ChangePicTiming(250, 3));
    EXPECT_STREQ(doc->picSpec[3].name, "pic3");
    EXPECT_EQ(doc->GetPicStart(3), 250);
    EXPECT_EQ(doc->undoRing[doc->undoHead].Reserved[1], 0);
    EXPECT_EQ(doc->undoRing[doc->undoHead].PicStart, 300.0f);
}

TEST_F(TimingTest, DropOnAnEarlierPictureFarFromThePreviousStartSwaps)
{
    MakePictures({0, 100, 200, 300});
    EXPECT_TRUE(doc->ChangePicTiming(50, 3));
    EXPECT_STREQ(doc->picSpec[0].name, "pic3");
    EXPECT_STREQ(doc->picSpec[3].name, "pic0");
}

TEST_F(TimingTest, DropOnALaterPictureSwaps)
{
    MakePictures({0, 100, 200});
    EXPECT_TRUE(doc->ChangePicTiming(250, 1));
    EXPECT_STREQ(doc->picSpec[1].name, "pic2");
    EXPECT_STREQ(doc->picSpec[2].name, "pic1");
    EXPECT_EQ(doc->GetPicStart(1), 100);
}

TEST_F(TimingTest, DropInsideItsOwnPictureMovesTheStart)
{
    MakePictures({0, 100, 200});
    EXPECT_TRUE(doc->ChangePicTiming(150, 1));
    EXPECT_EQ(doc->GetPicStart(1), 150);
}

TEST_F(TimingTest, CopyPicCopiesKeysCountAndFileIncludingTheScratchSlot)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(30, 5.0f), 1);
    doc->CopyPic(64, 1);
    EXPECT_EQ(doc->keyCount[64], 2);
    EXPECT_EQ(doc->keys[64][1].XPos, 5.0f);
    EXPECT_STREQ(doc->picSpec[64].name, "pic1");
    EXPECT_EQ(doc->keys[64][0].PicStart, 100.0f);
    doc->CopyPic(-1, 1);
    doc->CopyPic(65, 1);
    doc->CopyPic(0, 65);
    EXPECT_STREQ(doc->picSpec[0].name, "pic0");
}

TEST_F(TimingTest, FlopPicForgetsTheCurrentAndLookAheadPictures)
{
    MakePictures({0, 100});
    doc->curPic = 1;
    doc->lookAheadPic = 0;
    doc->FlopPic(0, 1);
    EXPECT_EQ(doc->curPic, -1);
    EXPECT_EQ(doc->lookAheadPic, -1);
}

TEST_F(TimingTest, DeletePicOnTheOnlyPictureEmptiesTheShow)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(30), 0);
    doc->DeletePic(0);
    EXPECT_EQ(doc->picCount, 0);
    EXPECT_EQ(doc->GetKeyCount(0), 1);
    EXPECT_EQ(doc->picSpec[0].name[0], 0);
}

TEST_F(TimingTest, DeletingTheOnlyPictureLeavesAnEmptyShowThatLoadsNothing)
{
    UseSettings("ShowPicError=1\r\n");
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("a.bmp"), 8, 8, {1, 2, 3}));
    FSpec spec = pxtest::PathSpec(dir.File("a.bmp"));
    doc->LoadPicture(&spec, 0, 0);
    ASSERT_EQ(doc->picCount, 1);
    ClearMessageBoxScript();
    doc->DeletePic(0);
    EXPECT_EQ(doc->picCount, 0);
    EXPECT_TRUE(doc->GotoFrame(0, true));
    CDIB out(16, 12, 32);
    EXPECT_TRUE(doc->RenderFrame(0, 0, false, 16, 12, &out, false));
    EXPECT_EQ(doc->pictureFileLoads, 0);
    EXPECT_EQ(doc->pictureFailures, 0);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
    EXPECT_EQ(doc->SaveShow(nullptr, nullptr), 28);
}

TEST_F(TimingTest, PictureSlotsPastTheShowAreNeverLoaded)
{
    UseSettings("ShowPicError=1\r\n");
    MakePictures({0});
    doc->picCount = 0;
    doc->curPic = -1;
    ClearMessageBoxScript();
    EXPECT_FALSE(doc->LoadPictureBuffer(0, false));
    EXPECT_FALSE(doc->LoadPictureBuffer(5, true));
    EXPECT_EQ(doc->pictureFileLoads, 0);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
}

TEST_F(TimingTest, DeletePicMovesLaterPicturesIntoEarlierTimeSlots)
{
    MakePictures({0, 100, 200});
    doc->SetKey(1, KeyAt(30, 7.0f), 2);
    doc->curPic = 2;
    doc->lookAheadPic = 1;
    doc->DeletePic(1);
    EXPECT_EQ(doc->picCount, 2);
    EXPECT_STREQ(doc->picSpec[1].name, "pic2");
    EXPECT_EQ(doc->GetPicStart(1), 100);
    EXPECT_EQ(doc->keys[1][1].XPos, 7.0f);
    EXPECT_EQ(doc->curPic, -1);
    EXPECT_EQ(doc->lookAheadPic, -1);
    // The emptied slot is as in a new show.
    EXPECT_EQ(doc->keyCount[2], 1);
    EXPECT_EQ(doc->picSpec[2].name[0], 0);
    EXPECT_EQ(doc->keys[2][0].XPos, 200.0f);
}

TEST_F(TimingTest, ChopShowEndsTheMoveExactlyAtTheEnd)
{
    MakePictures({0, 200});
    doc->SetKey(1, KeyAt(50, 40.0f, 10.0f), 1);
    doc->SetKey(2, KeyAt(200, 400.0f, 90.0f), 1);
    KeyStruct expected;
    doc->QueueKey(&expected, 1, 300, 0);
    EXPECT_TRUE(doc->ChopShow(300));
    ASSERT_EQ(doc->keyCount[1], 3);
    EXPECT_EQ(doc->keys[1][0].Frame, 0);
    EXPECT_EQ(doc->keys[1][1].Frame, 50);
    EXPECT_EQ(doc->keys[1][2].Frame, 100);
    EXPECT_EQ(doc->keys[1][2].XPos, expected.XPos);
    EXPECT_EQ(doc->keys[1][2].YPos, expected.YPos);
    EXPECT_EQ(doc->keys[0][0].ShowLen, static_cast<float>(doc->showLength));
}

TEST_F(TimingTest, ChopShowDropsPicturesThatStartAfterTheEnd)
{
    MakePictures({0, 100, 400});
    EXPECT_TRUE(doc->ChopShow(300));
    EXPECT_EQ(doc->picCount, 2);
    EXPECT_FALSE(doc->ChopShow(-1));
}

TEST_F(TimingTest, ChopShowMarksTheShowModifiedOnlyWhenItCuts)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(50), 1);
    doc->dirty = false;
    EXPECT_TRUE(doc->ChopShow(300));
    EXPECT_FALSE(doc->dirty);
    EXPECT_TRUE(doc->ChopShow(120));
    EXPECT_TRUE(doc->dirty);
    EXPECT_EQ(doc->keys[1][1].Frame, 20);
}

TEST_F(TimingTest, ChopShowRemovesOnlyTheFirstOfTwoNeighboursPastTheEndInOnePass)
{
    MakePictures({0, 100, 400, 500});
    doc->ChopShow(300);
    EXPECT_EQ(doc->picCount, 3);
    EXPECT_STREQ(doc->picSpec[2].name, "pic3");
}

TEST_F(TimingTest, RescaleShowByOneFrameChangesNothing)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(900), 0);
    EXPECT_FALSE(doc->RescaleShow(1800, 1801));
    EXPECT_FALSE(doc->RescaleShow(0, 1800));
    EXPECT_FALSE(doc->RescaleShow(1800, 0));
    EXPECT_EQ(doc->keys[0][1].Frame, 900);
}

TEST_F(TimingTest, RescaleShowScalesTheFirstPicturesKeysOnly)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(900), 0);
    doc->SetKey(1, KeyAt(50), 1);
    EXPECT_TRUE(doc->RescaleShow(1800, 900));
    EXPECT_EQ(doc->keys[0][1].Frame, 450);
    EXPECT_EQ(doc->keys[1][1].Frame, 50);
    EXPECT_EQ(doc->keys[0][0].ShowLen, static_cast<float>(doc->showLength));
}

TEST_F(TimingTest, RescaleMovesScalesPositionsAndWidths)
{
    MakePictures({0});
    KeyStruct key = KeyAt(10, 100.0f, 50.0f);
    key.VertExtra = 20.0f;
    doc->SetKey(1, key, 0);
    doc->RescaleMoves(0, 1000, 500, 2000, 250);
    EXPECT_EQ(doc->keys[0][1].XPos, 200.0f);
    EXPECT_EQ(doc->keys[0][1].Width, 200.0f);
    EXPECT_EQ(doc->keys[0][1].YPos, 25.0f);
    EXPECT_EQ(doc->keys[0][1].VertExtra, 10.0f);
    doc->RescaleMoves(0, 0, 500, 2000, 250);
    EXPECT_EQ(doc->keys[0][1].XPos, 200.0f);
}

TEST_F(TimingTest, UniformSpeedOnAStraightMoveLeavesTheSecondKeyInPlace)
{
    MakePictures({0});
    doc->keys[0][0].XPos = 0.0f;
    doc->keys[0][0].YPos = 0.0f;
    doc->SetKey(1, KeyAt(100, 300.0f, 400.0f), 0);
    doc->ConstantMotion(0);
    EXPECT_NEAR(doc->keys[0][1].Frame, 100, 1);
}

TEST_F(TimingTest, UniformSpeedGivesEachSegmentFramesInProportionToItsLength)
{
    MakePictures({0});
    doc->defaultEase = kEaseNone | kEaseNoCurves;
    doc->keys[0][0].XPos = 0.0f;
    doc->keys[0][0].YPos = 0.0f;
    doc->SetKey(1, KeyAt(50, 300.0f), 0);
    doc->SetKey(2, KeyAt(100, 400.0f), 0);
    doc->ConstantMotion(0);
    EXPECT_NEAR(doc->keys[0][1].Frame, 75, 2);
    EXPECT_EQ(doc->undoRing[doc->undoHead].Reserved[1], 2);
}

TEST_F(TimingTest, UniformSpeedStopsWithoutMotionOrTime)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(100, 200.0f, 200.0f), 0);
    doc->keys[0][0].XPos = 200.0f;
    doc->keys[0][0].YPos = 200.0f;
    doc->ConstantMotion(0);
    EXPECT_EQ(doc->keys[0][1].Frame, 100);
    EXPECT_EQ(doc->undoCount, 0);
    doc->keys[0][1].Frame = 0;
    doc->ConstantMotion(0);
    EXPECT_EQ(doc->undoCount, 0);
}
TEST_F(TimingTest, DropExactlySevenFramesAfterThePreviousStartSwapsAndEightMoves)
{
    MakePictures({0, 100, 200, 300});
    doc->keys[2][0].XPos = 2.0f;
    doc->keys[3][0].XPos = 3.0f;
    EXPECT_TRUE(doc->ChangePicTiming(207, 3));
    EXPECT_EQ(doc->keys[2][0].XPos, 3.0f);
    EXPECT_EQ(doc->keys[3][0].XPos, 2.0f);
    EXPECT_EQ(doc->GetPicStart(2), 200);
    EXPECT_EQ(doc->GetPicStart(3), 300);
    EXPECT_EQ(doc->undoRing[doc->undoHead].Reserved[1], kUndoPictureSwap);

    doc->ClearShow();
    MakePictures({0, 100, 200, 300});
    doc->keys[2][0].XPos = 2.0f;
    doc->keys[3][0].XPos = 3.0f;
    EXPECT_TRUE(doc->ChangePicTiming(208, 3));
    EXPECT_EQ(doc->keys[2][0].XPos, 2.0f);
    EXPECT_EQ(doc->keys[3][0].XPos, 3.0f);
    EXPECT_EQ(doc->GetPicStart(2), 200);
    EXPECT_EQ(doc->GetPicStart(3), 208);
    EXPECT_EQ(doc->undoRing[doc->undoHead].Reserved[1], 0);
}

}  // namespace
