// The time line's scale, extent, pixel mapping and hit tests, over a plain document.

#include "ui/timeline/timeline_geometry.h"

#include <gtest/gtest.h>

#include "doc/doc_fixture.h"

namespace {

using TimelineHit = DocFixture;

TEST(TimelineScale, FollowsTheShowLengthAtNtscRate)
{
    // 29.97 frames per second: 30 whole frames.
    EXPECT_EQ(TimelineScale(60, 30), 5);
    EXPECT_EQ(TimelineScale(89, 30), 5);
    EXPECT_EQ(TimelineScale(90, 30), 10);
    EXPECT_EQ(TimelineScale(200, 30), 10);
    EXPECT_EQ(TimelineScale(240, 30), 30);
    EXPECT_EQ(TimelineScale(9000, 30), 30);
}

TEST(TimelineScale, NeverBelowOne)
{
    EXPECT_EQ(TimelineScale(100000, 0), 1);
    EXPECT_EQ(TimelineExtent(100, 0), 100 * 60 + 4);
}

TEST(TimelineExtent, SixtyPixelsPerScaleStepCappedAt32700)
{
    EXPECT_EQ(TimelineExtent(9000, 30), 9000 * 60 / 30 + 4);
    EXPECT_EQ(TimelineExtent(16348, 30), 32700);  // exactly the cap
    EXPECT_EQ(TimelineExtent(16349, 30), 32700);
    EXPECT_EQ(TimelineExtent(20000, 30), 32700);
    EXPECT_EQ(TimelineExtent(2000000000L, 30), 32700);
    EXPECT_EQ(TimelineExtent(-5, 30), 4);
}

TEST(TimelinePixels, FrameToPixelAndBack)
{
    EXPECT_EQ(TimelineToPix(0, 30), 4);
    EXPECT_EQ(TimelineToPix(30, 30), 64);
    EXPECT_EQ(TimelineToPix(7, 30), 4 + 14);
    EXPECT_EQ(TimelineFromPix(64, 30), 30);
    EXPECT_EQ(TimelineFromPix(0, 30), 0);  // never below frame 0
    EXPECT_EQ(TimelineFromPix(34, 30), 15);
    EXPECT_EQ(TimelineFromPix(16, 5), 1);
}

TEST(TimelineTolerances, PickAndDropShrinkAtFineScales)
{
    EXPECT_EQ(KeyPickTolerance(30), 4);
    EXPECT_EQ(KeyPickTolerance(8), 4);
    EXPECT_EQ(KeyPickTolerance(7), 3);
    EXPECT_EQ(KeyPickTolerance(5), 2);
    EXPECT_EQ(KeyDropTolerance(30), 5);
    EXPECT_EQ(KeyDropTolerance(10), 5);
    EXPECT_EQ(KeyDropTolerance(9), 4);
    EXPECT_EQ(KeyDropTolerance(5), 2);
}

TEST_F(TimelineHit, ClickThreeFramesFromAKeyPicksItFourDoesNot)
{
    MakePictures({0, 300});
    doc->SetKey(1, KeyAt(100), 0);
    doc->SetKey(1, KeyAt(50), 1);
    // S = 30: two pixels a frame.
    long keyX = TimelineToPix(100, 30);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX + 6, 20).key, 1);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX - 6, 20).key, 1);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX + 8, 20).key, -1);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX - 8, 20).key, -1);
    // A key of the second picture, its frame relative to that picture's start.
    TimelineKeyHit hit = FindTimelineKey(*doc, 30, TimelineToPix(353, 30), 20);
    EXPECT_EQ(hit.pic, 1);
    EXPECT_EQ(hit.key, 1);
    hit = FindTimelineKey(*doc, 30, TimelineToPix(301, 30), 20);
    EXPECT_EQ(hit.pic, 1);
    EXPECT_EQ(hit.key, 0);
}

TEST_F(TimelineHit, KeysAnswerOnlyOnTheKeyRow)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(100), 0);
    long keyX = TimelineToPix(100, 30);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX, 14).key, 1);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX, 30).key, 1);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX, 13).key, -1);
    EXPECT_EQ(FindTimelineKey(*doc, 30, keyX, 31).key, -1);
}

TEST_F(TimelineHit, NoPicturesNoKey)
{
    EXPECT_EQ(FindTimelineKey(*doc, 30, 4, 20).key, -1);
    EXPECT_EQ(FindTimelineTransition(*doc, 30, 4, 5), -1);
}

TEST_F(TimelineHit, TransitionHandleWithinElevenPixels)
{
    MakePictures({0, 300});
    KeyStruct first;
    doc->GetKey(0, first, 1);
    first.TransLen = 30;
    doc->SetKey(0, first, 1);
    long handle = TimelineToPix(330, 30);
    EXPECT_EQ(TransitionHandleX(*doc, 30, 1), handle);
    EXPECT_EQ(FindTimelineTransition(*doc, 30, handle, 5), 1);
    EXPECT_EQ(FindTimelineTransition(*doc, 30, handle + 11, 13), 1);
    EXPECT_EQ(FindTimelineTransition(*doc, 30, handle - 11, 0), 1);
    EXPECT_EQ(FindTimelineTransition(*doc, 30, handle + 12, 5), -1);
    EXPECT_EQ(FindTimelineTransition(*doc, 30, handle, 14), -1);  // the key row
}

TEST_F(TimelineHit, PictureZeroHasNoTransitionHandle)
{
    MakePictures({0, 300});
    EXPECT_EQ(FindTimelineTransition(*doc, 30, 4, 5), -1);
    MakePictures({0});
    doc->picCount = 1;
    EXPECT_EQ(FindTimelineTransition(*doc, 30, 4, 5), -1);
}

TEST_F(TimelineHit, HoldOnlyWhenNoCameraValueChanges)
{
    KeyStruct a = KeyAt(0, 10.0f, 20.0f);
    KeyStruct b = KeyAt(50, 10.0f, 20.0f);
    b.Ease = 2050.0f;  // frame and ease are not camera values
    EXPECT_TRUE(SegmentHolds(a, b));
    b.Rot3 = 1.0f;
    EXPECT_FALSE(SegmentHolds(a, b));
    b = a;
    b.Width = 101.0f;
    EXPECT_FALSE(SegmentHolds(a, b));
}

TEST(TimeBar, EaseMarksFollowTheKind)
{
    EXPECT_EQ(EaseMark(0.0f), nullptr);
    EXPECT_EQ(EaseMark(-1000.0f), nullptr);
    EXPECT_STREQ(EaseMark(1000.0f), "<>");
    EXPECT_STREQ(EaseMark(2050.0f), "<");
    EXPECT_STREQ(EaseMark(3001.0f), ">");
    EXPECT_STREQ(EaseMark(4000.0f), "=");
    // "Use Default" with a speed reads as kind 0.
    EXPECT_STREQ(EaseMark(36.0f), "<>");
}

}  // namespace
