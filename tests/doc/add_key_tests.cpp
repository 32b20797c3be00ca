// The add-key command: new keys, replaced keys, the tolerance, the limit, undo and the beep.

#include <gtest/gtest.h>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc_fixture.h"
#include "recording_editor.h"

namespace {

class AddKeyCommand : public DocFixture {
protected:
    void SetUp() override
    {
        DocFixture::SetUp();
        gFrameRate = 2997;
        MakePictures({0, 200});
        doc->SetKey(1, KeyAt(100, 50.0f, 50.0f), 0);
        doc->dirty = false;
        editor.stageKey = KeyAt(0, 77.0f, 88.0f);
        editor.stageKey.Ease = 2050.0f;
        editor.stageKey.TransLen = 9.0f;
        editor.stageKey.Reserved[1] = 5;
        doc->AttachEditor(&editor);
    }

    void TearDown() override { doc->AttachEditor(nullptr); }

    RecordingEditor editor;
};

TEST_F(AddKeyCommand, NewKeyTakesTheStageCameraAtTheCurrentFrame)
{
    gCurFrame = 40;
    EXPECT_TRUE(doc->AddKey());
    ASSERT_EQ(doc->keyCount[0], 3);
    const KeyStruct& key = doc->keys[0][1];  // sorted between 0 and 100
    EXPECT_EQ(key.Frame, 40);
    EXPECT_EQ(key.XPos, 77.0f);
    EXPECT_EQ(key.YPos, 88.0f);
    EXPECT_EQ(key.Ease, 0.0f);
    EXPECT_EQ(key.TransLen, 0.0f);
    EXPECT_EQ(key.Reserved[1], 0);
    EXPECT_EQ(editor.beeps, 1);
    EXPECT_TRUE(doc->dirty);
}

TEST_F(AddKeyCommand, KeyInTheSecondPictureIsRelativeToItsStart)
{
    gCurFrame = 250;
    EXPECT_TRUE(doc->AddKey());
    ASSERT_EQ(doc->keyCount[1], 2);
    EXPECT_EQ(doc->keys[1][1].Frame, 50);
    EXPECT_EQ(doc->keys[1][1].PicStart, 200.0f);
}

TEST_F(AddKeyCommand, WithinThreeFramesOfAKeyReplacesIt)
{
    gCurFrame = 103;
    EXPECT_FALSE(doc->AddKey());
    ASSERT_EQ(doc->keyCount[0], 2);
    EXPECT_EQ(doc->keys[0][1].Frame, 103);
    EXPECT_EQ(doc->keys[0][1].XPos, 77.0f);
    EXPECT_EQ(doc->keys[0][1].Ease, 2050.0f);  // a replaced key takes the stage's ease
    EXPECT_EQ(editor.beeps, 0);
    gCurFrame = 96;
    EXPECT_TRUE(doc->AddKey());  // four frames away: a new key
}

TEST_F(AddKeyCommand, FineTimelineScaleWidensTheTolerance)
{
    editor.timelineScale = 2;  // tolerance 1 frame
    gCurFrame = 101;
    EXPECT_TRUE(doc->AddKey());
    editor.timelineScale = 7;  // tolerance 3 frames
    gCurFrame = 103;
    EXPECT_FALSE(doc->AddKey());
}

TEST_F(AddKeyCommand, KeyZeroStaysAtFrameZero)
{
    gCurFrame = 2;
    EXPECT_FALSE(doc->AddKey());
    EXPECT_EQ(doc->keys[0][0].Frame, 0);
    EXPECT_EQ(doc->keys[0][0].XPos, 77.0f);
}

TEST_F(AddKeyCommand, ReplacingKeyZeroKeepsThePicturesStartDissolveAndShowLength)
{
    doc->keys[1][0].TransLen = 12.0f;
    doc->keys[1][0].ShowLen = 900.0f;
    editor.stageKey.PicStart = 5.0f;
    editor.stageKey.ShowLen = 3.0f;
    gCurFrame = 202;
    EXPECT_FALSE(doc->AddKey());
    const KeyStruct& key = doc->keys[1][0];
    EXPECT_EQ(key.XPos, 77.0f);
    EXPECT_EQ(key.Frame, 0);
    EXPECT_EQ(key.PicStart, 200.0f);
    EXPECT_EQ(key.TransLen, 12.0f);
    EXPECT_EQ(key.ShowLen, 900.0f);
}

TEST_F(AddKeyCommand, PictureWithSixtyThreeKeysTakesNoMore)
{
    for (int key = 2; key < 63; ++key)
        doc->SetKey(key, KeyAt(100 + key * 10), 0);
    ASSERT_EQ(doc->keyCount[0], 63);
    gCurFrame = 50;
    EXPECT_FALSE(doc->AddKey());
    EXPECT_EQ(doc->keyCount[0], 63);
    // A replacement is still taken.
    gCurFrame = 100;
    doc->AddKey();
    EXPECT_EQ(doc->keys[0][1].XPos, 77.0f);
}

TEST_F(AddKeyCommand, UndoOfANewKeyRemovesIt)
{
    gCurFrame = 40;
    ASSERT_TRUE(doc->AddKey());
    doc->UnDo();
    EXPECT_EQ(doc->keyCount[0], 2);
    EXPECT_EQ(doc->keys[0][1].Frame, 100);
}

TEST_F(AddKeyCommand, UndoOfAReplacedKeyRestoresItsOldValues)
{
    gCurFrame = 101;
    ASSERT_FALSE(doc->AddKey());
    doc->UnDo();
    EXPECT_EQ(doc->keys[0][1].Frame, 100);
    EXPECT_EQ(doc->keys[0][1].XPos, 50.0f);
    doc->ReDo();
    EXPECT_EQ(doc->keys[0][1].XPos, 77.0f);
}

TEST_F(AddKeyCommand, WithoutAutoAddKeyItBeepsAndMovesOneSecondOn)
{
    doc->autoAddKey = false;
    doc->showLength = 1000;
    gCurFrame = 40;
    ASSERT_TRUE(doc->AddKey());
    EXPECT_EQ(editor.beeps, 1);
    EXPECT_EQ(gCurFrame, 70);
    gCurFrame = 101;
    ASSERT_FALSE(doc->AddKey());
    EXPECT_EQ(editor.beeps, 2);
    EXPECT_EQ(gCurFrame, 101);  // a replaced key other than key 0 stays
}

TEST_F(AddKeyCommand, CurrentFrameIsKeptInsideTheShow)
{
    doc->showLength = 150;
    gCurFrame = 400;
    doc->AddKey();
    EXPECT_EQ(doc->keys[0][doc->keyCount[0] - 1].Frame, 149);
}

TEST_F(AddKeyCommand, WithoutAnEditorTheComputedCameraIsAdded)
{
    doc->AttachEditor(nullptr);
    doc->currentCamera = KeyAt(0, 12.0f, 13.0f);
    gCurFrame = 40;
    EXPECT_TRUE(doc->AddKey());
    EXPECT_EQ(doc->keys[0][1].Frame, 40);
}

}  // namespace
