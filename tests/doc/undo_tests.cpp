#include "doc_fixture.h"

namespace {

using UndoTest = DocFixture;

TEST_F(UndoTest, DeleteUndoRedoUndoRestoresTheKeyAtItsSortedPlace)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(10, 1.0f), 0);
    doc->SetKey(2, KeyAt(20, 2.0f), 0);
    doc->SetKey(3, KeyAt(30, 3.0f), 0);
    doc->DeleteKey(2, 0);
    ASSERT_EQ(doc->keyCount[0], 3);

    doc->UnDo();
    ASSERT_EQ(doc->keyCount[0], 4);
    EXPECT_EQ(doc->keys[0][2].Frame, 20);
    EXPECT_EQ(doc->keys[0][2].XPos, 2.0f);
    EXPECT_EQ(doc->keys[0][2].Reserved[1], 0);
    EXPECT_EQ(doc->keys[0][3].Frame, 30);

    doc->ReDo();
    ASSERT_EQ(doc->keyCount[0], 3);
    EXPECT_EQ(doc->keys[0][2].Frame, 30);

    doc->UnDo();
    ASSERT_EQ(doc->keyCount[0], 4);
    EXPECT_EQ(doc->keys[0][2].XPos, 2.0f);
}

TEST_F(UndoTest, UndoAndRedoWithNothingRecordedDoNothing)
{
    MakePictures({0});
    doc->UnDo();
    doc->ReDo();
    EXPECT_EQ(doc->undoHead, -1);
    EXPECT_EQ(doc->undoCount, 0);
    EXPECT_EQ(doc->redoCount, 0);
    EXPECT_FALSE(doc->dirty);
}

TEST_F(UndoTest, AfterFortyEditsOnlyTheLastThirtyTwoCanBeUndone)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(0), 0);
    for (int edit = 1; edit <= 40; ++edit) {
        doc->Do(doc->keys[0][1], 1, 0);
        doc->keys[0][1].Frame = edit;
    }
    int undone = 0;
    while (doc->undoCount > 0) {
        doc->UnDo();
        ++undone;
    }
    EXPECT_EQ(undone, 32);
    EXPECT_EQ(doc->keys[0][1].Frame, 8);
    EXPECT_EQ(doc->redoCount, 32);
}

TEST_F(UndoTest, UndoingAPictureSwapSwapsBackAndKeepsBothStarts)
{
    MakePictures({0, 100, 200, 300});
    doc->ChangePicTiming(203, 3);
    ASSERT_STREQ(doc->picSpec[2].name, "pic3");
    doc->UnDo();
    EXPECT_STREQ(doc->picSpec[2].name, "pic2");
    EXPECT_STREQ(doc->picSpec[3].name, "pic3");
    EXPECT_EQ(doc->GetPicStart(2), 200);
    EXPECT_EQ(doc->GetPicStart(3), 300);
    doc->ReDo();
    EXPECT_STREQ(doc->picSpec[2].name, "pic3");
}

TEST_F(UndoTest, PictureStartChangeSwapsKeyZeroBackAndForth)
{
    MakePictures({0, 100, 200});
    doc->ChangePicTiming(150, 1);
    ASSERT_EQ(doc->GetPicStart(1), 150);
    doc->UnDo();
    EXPECT_EQ(doc->GetPicStart(1), 100);
    doc->ReDo();
    EXPECT_EQ(doc->GetPicStart(1), 150);
    doc->UnDo();
    EXPECT_EQ(doc->GetPicStart(1), 100);
}

TEST_F(UndoTest, KeyPutBackKeepsItsPictureAndClearsItsAction)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(40, 9.0f), 1);
    doc->Do(doc->keys[1][1], 1, 1);
    doc->keys[1][1].XPos = 50.0f;
    doc->UnDo();
    EXPECT_EQ(doc->keys[1][1].XPos, 9.0f);
    EXPECT_EQ(doc->keys[1][1].Reserved[0], 1);
    EXPECT_EQ(doc->keys[1][1].Reserved[1], 0);
}

TEST_F(UndoTest, RedoOfADeleteTouchesOnlyTheEntrysOwnPicture)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(20, 1.0f), 0);
    doc->SetKey(1, KeyAt(20, 2.0f), 1);
    doc->DeleteKey(1, 1);
    doc->UnDo();
    doc->ReDo();
    EXPECT_EQ(doc->keyCount[0], 2);
    EXPECT_EQ(doc->keys[0][1].XPos, 1.0f);
    EXPECT_EQ(doc->keyCount[1], 1);
}

TEST_F(UndoTest, UndoHeadWrapsBelowZeroToTheTopOfTheRing)
{
    MakePictures({0});
    doc->Do(doc->keys[0][0], 0, 0);
    EXPECT_EQ(doc->undoHead, 0);
    doc->UnDo();
    EXPECT_EQ(doc->undoHead, 31);
    doc->ReDo();
    EXPECT_EQ(doc->undoHead, 0);
}

TEST_F(UndoTest, RecordingLeavesTheRedoCountAsItIs)
{
    MakePictures({0});
    doc->Do(doc->keys[0][0], 0, 0);
    doc->UnDo();
    EXPECT_EQ(doc->redoCount, 1);
    doc->Do(doc->keys[0][0], 0, 0);
    EXPECT_EQ(doc->redoCount, 1);
}

TEST_F(UndoTest, DeletedKeyIsNotPutBackIntoAFullPicture)
{
    MakePictures({0});
    for (int key = 1; key < 64; ++key)
        doc->SetKey(key, KeyAt(key), 0);
    doc->DeleteKey(5, 0);
    doc->SetKey(63, KeyAt(99), 0);
    ASSERT_EQ(doc->keyCount[0], 64);
    doc->UnDo();
    EXPECT_EQ(doc->keyCount[0], 64);
}

TEST_F(UndoTest, ClearShowEmptiesTheRing)
{
    MakePictures({0});
    doc->Do(doc->keys[0][0], 0, 0);
    doc->UnDo();
    doc->ClearShow();
    EXPECT_EQ(doc->undoHead, -1);
    EXPECT_EQ(doc->undoCount, 0);
    EXPECT_EQ(doc->redoCount, 0);
}

TEST_F(UndoTest, UndoWithUndoCountZeroAndRedoWithRedoCountZeroLeaveShowAndRing)
{
    MakePictures({0, 100, 200});
    ASSERT_TRUE(doc->ChangePicTiming(150, 1));
    ASSERT_EQ(doc->undoCount, 1);
    ASSERT_EQ(doc->redoCount, 0);

    // The ring holds an entry, but the redo count is 0: nothing is applied.
    doc->ReDo();
    EXPECT_EQ(doc->GetPicStart(1), 150);
    EXPECT_EQ(doc->undoHead, 0);
    EXPECT_EQ(doc->undoCount, 1);
    EXPECT_EQ(doc->redoCount, 0);

    doc->UnDo();
    ASSERT_EQ(doc->GetPicStart(1), 100);
    ASSERT_EQ(doc->undoCount, 0);
    ASSERT_EQ(doc->redoCount, 1);
    int head = doc->undoHead;

    // The entry is now its own inverse (start 150), but the undo count is 0: nothing is applied.
    doc->UnDo();
    EXPECT_EQ(doc->GetPicStart(1), 100);
    EXPECT_EQ(doc->undoHead, head);
    EXPECT_EQ(doc->undoCount, 0);
    EXPECT_EQ(doc->redoCount, 1);
    EXPECT_EQ(doc->undoRing[0].PicStart, 150.0f);
}

}  // namespace
