// The camera frame on the stage: geometry, hit tests, drags and keys.

#include "ui/stage/stage_geometry.h"

#include <gtest/gtest.h>

#include "platform/wnd/messages.h"

namespace {

KeyStruct Key(float x, float y, float width)
{
    KeyStruct key{};
    key.XPos = x;
    key.YPos = y;
    key.Width = width;
    return key;
}

StageView View(float scale)
{
    StageView view;
    view.scale = scale;
    view.aspect = 0.75f;
    return view;
}

TEST(FrameOf, CentreAndHalfSizesTruncateAtTheScale)
{
    StageView view = View(0.5f);
    view.scrollX = 10;
    view.scrollY = 20;
    view.originX = 3;
    view.originY = 4;
    StageFrame f = FrameOf(Key(201.0f, 151.0f, 161.0f), view);
    EXPECT_EQ(f.centre.x, 100 - 10 + 3);
    EXPECT_EQ(f.centre.y, 75 - 20 + 4);
    EXPECT_EQ(f.hw, 40);
    EXPECT_EQ(f.hh, 30);
}

// Every corner goes through RotatePoint, also unturned: it adds a half and truncates toward
// zero, so an offset of -80 comes back as -79 while +80 stays +80.
TEST(FrameOf, UnturnedCornersAndHandle)
{
    StageFrame f = FrameOf(Key(200.0f, 200.0f, 160.0f), View(1.0f));  // hw 80, hh 60
    EXPECT_EQ(f.corner[0].x, 121);
    EXPECT_EQ(f.corner[0].y, 141);
    EXPECT_EQ(f.corner[1].x, 280);
    EXPECT_EQ(f.corner[1].y, 141);
    EXPECT_EQ(f.corner[2].x, 280);
    EXPECT_EQ(f.corner[2].y, 260);
    EXPECT_EQ(f.corner[3].x, 121);
    EXPECT_EQ(f.corner[3].y, 260);
    EXPECT_EQ(f.handle.x, 128);
    EXPECT_EQ(f.handle.y, 148);
}

TEST(FrameOf, TiltSkewsTheOutlineWithTheDeliberateSignPattern)
{
    KeyStruct key = Key(200.0f, 200.0f, 160.0f);
    key.Rot3 = 90.0f;  // dx = 80 x 90 / 180 = 40
    key.Rot2 = 60.0f;  // dy = 60 x 60 / 180 = 20
    StageFrame f = FrameOf(key, View(1.0f));
    EXPECT_EQ(f.corner[0].x, 200 - 80 + 40 + 1);
    EXPECT_EQ(f.corner[0].y, 200 - 60 + 20 + 1);
    EXPECT_EQ(f.corner[1].x, 200 + 80 - 40);
    EXPECT_EQ(f.corner[1].y, 200 - 60 - 20 + 1);
    EXPECT_EQ(f.corner[2].x, 200 + 80 + 40);
    EXPECT_EQ(f.corner[2].y, 200 + 60 + 20);
    EXPECT_EQ(f.corner[3].x, 200 - 80 - 40 + 1);
    EXPECT_EQ(f.corner[3].y, 200 + 60 - 20);
}

TEST(FrameOf, RotationTurnsCornersAndHandleAboutTheCentre)
{
    KeyStruct key = Key(200.0f, 200.0f, 160.0f);
    key.Rotation = 90.0f;
    StageFrame f = FrameOf(key, View(1.0f));
    // (-80, -60) about the centre turns to (60, -80) (-79 after the half and the truncation).
    EXPECT_EQ(f.corner[0].x, 260);
    EXPECT_EQ(f.corner[0].y, 121);
    // The handle (-73, -53) turns to (53, -73).
    EXPECT_EQ(f.handle.x, 253);
    EXPECT_EQ(f.handle.y, 128);
}

TEST(GrabTolerance, FourUpToHalfWidth23ThenASixth)
{
    EXPECT_EQ(GrabTolerance(0), 4);
    EXPECT_EQ(GrabTolerance(23), 4);
    EXPECT_EQ(GrabTolerance(24), 4);
    EXPECT_EQ(GrabTolerance(36), 6);
    EXPECT_EQ(GrabTolerance(60), 10);
}

TEST(CrossArm, FourBelowHalfWidth40ThenAnEighth)
{
    EXPECT_EQ(CrossArm(39), 4);
    EXPECT_EQ(CrossArm(40), 5);
    EXPECT_EQ(CrossArm(80), 10);
}

TEST(CentredOrigin, HundredPixelPictureAtHalfScaleInFiveHundredPixels)
{
    EXPECT_EQ(CentredOrigin(500, 100, 0.5f), 225);
    EXPECT_EQ(CentredOrigin(40, 100, 0.5f), 0);
}

TEST(StageHit, CentreSquareCornersAndMisses)
{
    StageFrame f = FrameOf(Key(200.0f, 200.0f, 240.0f), View(1.0f));  // hw 120, hh 90, t 20
    ASSERT_EQ(f.corner[0].x, 81);
    ASSERT_EQ(f.corner[0].y, 111);
    EXPECT_EQ(StageHit(f, 200, 200, 0), kHitMove);
    EXPECT_EQ(StageHit(f, 200 + 90, 200 - 90, 0), kHitMove);
    EXPECT_EQ(StageHit(f, 81, 111, 0), kHitRotate);
    EXPECT_EQ(StageHit(f, 81 - 20, 111 + 20, 0), kHitRotate);
    EXPECT_EQ(StageHit(f, 81 - 21, 111, 0), kHitNone);
    EXPECT_EQ(StageHit(f, 81, 111, kStageTiltFlag), kHitTilt);
    EXPECT_EQ(StageHit(f, f.corner[1].x, f.corner[1].y, kStageTiltFlag), kHitResize);
    EXPECT_EQ(StageHit(f, f.corner[2].x, f.corner[2].y, 0), kHitResize);
    EXPECT_EQ(StageHit(f, f.corner[3].x, f.corner[3].y, 0), kHitResize);
    EXPECT_EQ(StageHit(f, 200, 100, 0), kHitNone);
}

TEST(StageHit, ToleranceFollowsTheHalfWidth)
{
    StageFrame small = FrameOf(Key(200.0f, 200.0f, 48.0f), View(1.0f));  // hw 24: t 4
    ASSERT_EQ(small.corner[0].x, 177);
    ASSERT_EQ(small.corner[0].y, 183);
    EXPECT_EQ(StageHit(small, 177 - 4, 183 - 4, 0), kHitRotate);
    EXPECT_EQ(StageHit(small, 177 - 5, 183, 0), kHitNone);
    StageFrame tiny = FrameOf(Key(200.0f, 200.0f, 46.0f), View(1.0f));  // hw 23: t 4
    EXPECT_EQ(StageHit(tiny, tiny.corner[0].x - 4, tiny.corner[0].y, 0), kHitRotate);
    EXPECT_EQ(StageHit(tiny, tiny.corner[0].x - 5, tiny.corner[0].y, 0), kHitNone);
    StageFrame large = FrameOf(Key(200.0f, 200.0f, 120.0f), View(1.0f));  // hw 60: t 10
    ASSERT_EQ(large.corner[0].x, 141);
    ASSERT_EQ(large.corner[0].y, 156);
    EXPECT_EQ(StageHit(large, 141 - 10, 156 - 10, 0), kHitRotate);
    EXPECT_EQ(StageHit(large, 141 - 11, 156, 0), kHitNone);
}

TEST(StageHit, CentreSquareWinsOverAnOverlappingCorner)
{
    // hw 4, hh 3: the top-left corner at (97, 98) lies on the centre square's edge.
    StageFrame f = FrameOf(Key(100.0f, 100.0f, 8.0f), View(1.0f));
    ASSERT_EQ(f.corner[0].x, 97);
    ASSERT_EQ(f.corner[0].y, 98);
    EXPECT_EQ(StageHit(f, 97, 98, 0), kHitMove);
    EXPECT_EQ(StageHit(f, 94, 98, 0), kHitRotate);
}

TEST(NearMarker, SevenPixelsOnBothAxes)
{
    StageView view = View(0.5f);
    view.originX = 10;
    KeyStruct key = Key(100.0f, 100.0f, 50.0f);  // marker at (60, 50)
    EXPECT_TRUE(NearMarker(key, view, 67, 43));
    EXPECT_FALSE(NearMarker(key, view, 68, 50));
    EXPECT_FALSE(NearMarker(key, view, 60, 58));
}

}  // namespace
