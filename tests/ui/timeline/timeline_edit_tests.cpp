// What a press on the time line starts and what the drags do to the show at button-up.

#include "ui/timeline/timeline_edit.h"

#include <gtest/gtest.h>

#include "doc/doc_fixture.h"
#include "ui/timeline/timeline_geometry.h"

namespace {

using TimelineEdit = DocFixture;

constexpr int kScale = 30;  // two pixels a frame

long X(long frame) { return TimelineToPix(frame, kScale); }

TEST_F(TimelineEdit, PressOnTheFirstKeyOfPictureZeroStartsNothing)
{
    MakePictures({0, 300});
    TimelinePress press = ClassifyPress(*doc, kScale, X(0), 20);
    EXPECT_EQ(press.drag, TimelineDrag::kNone);
    // Nothing happens at button-up either: no key moved, nothing recorded.
    EXPECT_EQ(doc->undoCount, 0);
}

TEST_F(TimelineEdit, PressOnALaterPicturesFirstKeyDragsItsStart)
{
    MakePictures({0, 300});
    TimelinePress press = ClassifyPress(*doc, kScale, X(301), 20);
    EXPECT_EQ(press.drag, TimelineDrag::kPicture);
    EXPECT_EQ(press.pic, 1);
}

TEST_F(TimelineEdit, PressClassifiesKeysTransitionsAndScrubbing)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(100), 0);
    TimelinePress press = ClassifyPress(*doc, kScale, X(101), 20);
    EXPECT_EQ(press.drag, TimelineDrag::kKey);
    EXPECT_EQ(press.pic, 0);
    EXPECT_EQ(press.key, 1);
    EXPECT_EQ(ClassifyPress(*doc, kScale, X(200), 20).drag, TimelineDrag::kScrub);
    press = ClassifyPress(*doc, kScale, X(300), 5);
    EXPECT_EQ(press.drag, TimelineDrag::kTransition);
    EXPECT_EQ(press.pic, 1);
    EXPECT_EQ(ClassifyPress(*doc, kScale, X(200), 5).drag, TimelineDrag::kScrub);
}

TEST_F(TimelineEdit, KeyDropRetimesSortsAndUndoes)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(100), 0);
    doc->SetKey(2, KeyAt(200), 0);
    doc->dirty = false;
    DropKey(*doc, kScale, 0, 1, 100, 115, false);
    EXPECT_EQ(doc->keys[0][1].Frame, 115);
    EXPECT_TRUE(doc->dirty);
    doc->UnDo();
    EXPECT_EQ(doc->keys[0][1].Frame, 100);
    // Past a later key: the keys come out in frame order.
    DropKey(*doc, kScale, 0, 1, 100, 250, false);
    EXPECT_EQ(doc->keys[0][1].Frame, 200);
    EXPECT_EQ(doc->keys[0][2].Frame, 250);
}

TEST_F(TimelineEdit, KeyDropWithoutMovementChangesNothing)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(100), 0);
    doc->dirty = false;
    DropKey(*doc, kScale, 0, 1, 100, 100, false);
    EXPECT_FALSE(doc->dirty);
    EXPECT_EQ(doc->undoCount, 0);
}

TEST_F(TimelineEdit, KeyDroppedOntoItsPicturesStartIsDeleted)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(50), 0);
    doc->SetKey(2, KeyAt(100), 0);
    // Key 2 dropped 4 frames after the start (tolerance 5 at S = 30): sorted to index 1, and that
    // one goes; the key at 50 stays.
    DropKey(*doc, kScale, 0, 2, 100, 4, false);
    ASSERT_EQ(doc->GetKeyCount(0), 2);
    EXPECT_EQ(doc->keys[0][1].Frame, 50);
    // 5 frames is outside the tolerance: kept.
    DropKey(*doc, kScale, 0, 1, 50, 5, false);
    ASSERT_EQ(doc->GetKeyCount(0), 2);
    EXPECT_EQ(doc->keys[0][1].Frame, 5);
}

TEST_F(TimelineEdit, KeyDroppedOntoALaterPictureStartOfItsOwnPictureIsDeleted)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(80), 1);
    DropKey(*doc, kScale, 1, 1, 380, 302, false);
    EXPECT_EQ(doc->GetKeyCount(1), 1);
}

TEST_F(TimelineEdit, KeyDroppedIntoAnotherPictureStaysWhereItWas)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(100), 0);
    DropKey(*doc, kScale, 0, 1, 100, 350, false);
    EXPECT_EQ(doc->keys[0][1].Frame, 100);
    EXPECT_EQ(doc->undoCount, 0);
}

TEST_F(TimelineEdit, ShiftDropMovesEveryLaterKey)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(100), 0);
    doc->SetKey(2, KeyAt(200), 0);
    DropKey(*doc, kScale, 0, 1, 100, 110, true);
    EXPECT_EQ(doc->keys[0][1].Frame, 110);
    EXPECT_EQ(doc->keys[0][2].Frame, 210);
    EXPECT_EQ(doc->GetPicStart(1), 310);
}

TEST_F(TimelineEdit, TransitionStopsOneFrameShortOfTheNextPicture)
{
    MakePictures({0, 300, 400});
    EXPECT_EQ(TransitionLengthAt(*doc, kScale, 1, X(330)), 30);
    EXPECT_EQ(TransitionLengthAt(*doc, kScale, 1, X(399)), 99);
    EXPECT_EQ(TransitionLengthAt(*doc, kScale, 1, X(450)), 99);
    EXPECT_EQ(TransitionLengthAt(*doc, kScale, 1, X(250)), 0);
    // The last picture has no next start to stop at.
    EXPECT_EQ(TransitionLengthAt(*doc, kScale, 2, X(700)), 300);
    DropTransition(*doc, kScale, 1, X(500));
    EXPECT_EQ(doc->keys[1][0].TransLen, 99.0f);
    EXPECT_TRUE(doc->dirty);
    doc->UnDo();
    EXPECT_EQ(doc->keys[1][0].TransLen, 0.0f);
}

TEST_F(TimelineEdit, PictureStartMovesOrSwaps)
{
    MakePictures({0, 100, 200});
    DropPictureStart(*doc, 2, 200, 200);
    EXPECT_EQ(doc->undoCount, 0);
    DropPictureStart(*doc, 2, 200, 220);
    EXPECT_EQ(doc->GetPicStart(2), 220);
    // Dropped onto picture 1 within 7 frames of its start: the two swap.
    DropPictureStart(*doc, 2, 220, 105);
    EXPECT_STREQ(doc->picSpec[1].name, "pic2");
    EXPECT_STREQ(doc->picSpec[2].name, "pic1");
    doc->UnDo();
    EXPECT_STREQ(doc->picSpec[1].name, "pic1");
    doc->UnDo();
    EXPECT_EQ(doc->GetPicStart(2), 200);
}

}  // namespace
