// Drags and keys on the stage's current key.

#include "ui/stage/stage_edit.h"

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

TEST(StartDrag, AnchorIsThePressLessTheScaledCentre)
{
    StageDrag drag = StartDrag(Key(201.0f, 151.0f, 100.0f), 0.5f, kHitMove, 130, 90, 0);
    EXPECT_EQ(drag.startX, 100);
    EXPECT_EQ(drag.startY, 75);
    EXPECT_EQ(drag.anchorX, 30);
    EXPECT_EQ(drag.anchorY, 15);
}

TEST(StartDrag, RotationAndTiltContinueFromTheCurrentAngle)
{
    KeyStruct key = Key(200.0f, 200.0f, 100.0f);
    key.Rotation = 10.5f;
    key.Rot2 = -7.0f;
    key.Rot3 = 4.0f;
    EXPECT_EQ(StartDrag(key, 1.0f, kHitRotate, 50, 60, 0).anchorX, 50 - 21);
    EXPECT_EQ(StartDrag(key, 1.0f, kHitTilt, 50, 60, 0).anchorX, 50 - 8);
    EXPECT_EQ(StartDrag(key, 1.0f, kHitTilt, 50, 60, kStageConstrain).anchorX, 50 + 14);
}

TEST(DragKey, MoveFollowsTheMouseAtTheScale)
{
    KeyStruct key = Key(200.0f, 200.0f, 100.0f);
    StageDrag drag = StartDrag(key, 0.5f, kHitMove, 100, 100, 0);
    DragKey(key, drag, 0.5f, {100, 100}, 140, 90, 0);
    EXPECT_FLOAT_EQ(key.XPos, 280.0f);
    EXPECT_FLOAT_EQ(key.YPos, 180.0f);
}

TEST(DragKey, ConstrainedMoveKeepsTheAxisThatTravelledLess)
{
    KeyStruct key = Key(200.0f, 200.0f, 100.0f);
    StageDrag drag = StartDrag(key, 0.5f, kHitMove, 110, 105, 0);
    DragKey(key, drag, 0.5f, {100, 100}, 150, 115, kStageConstrain);
    EXPECT_FLOAT_EQ(key.XPos, 280.0f);
    EXPECT_FLOAT_EQ(key.YPos, 200.0f);
    DragKey(key, drag, 0.5f, {100, 100}, 120, 145, kStageConstrain);
    EXPECT_FLOAT_EQ(key.XPos, 200.0f);
    EXPECT_FLOAT_EQ(key.YPos, 280.0f);
    // Equal travel counts as vertical.
    DragKey(key, drag, 0.5f, {100, 100}, 120, 115, kStageConstrain);
    EXPECT_FLOAT_EQ(key.XPos, 200.0f);
    EXPECT_FLOAT_EQ(key.YPos, 220.0f);
}

TEST(DragKey, RotationIsTwoPixelsADegreeAndConstrainedSnapsToZeroEveryMove)
{
    KeyStruct key = Key(200.0f, 200.0f, 100.0f);
    key.Rotation = 10.0f;
    StageDrag drag = StartDrag(key, 1.0f, kHitRotate, 100, 100, 0);
    DragKey(key, drag, 1.0f, {200, 200}, 110, 100, 0);
    EXPECT_FLOAT_EQ(key.Rotation, 15.0f);
    DragKey(key, drag, 1.0f, {200, 200}, 130, 100, kStageConstrain);
    EXPECT_FLOAT_EQ(key.Rotation, 0.0f);
    DragKey(key, drag, 1.0f, {200, 200}, 160, 100, kStageConstrain);
    EXPECT_FLOAT_EQ(key.Rotation, 0.0f);
}

TEST(DragKey, TiltTurnsRot3OrConstrainedRot2AndStopsAtNinety)
{
    KeyStruct key = Key(200.0f, 200.0f, 100.0f);
    StageDrag drag = StartDrag(key, 1.0f, kHitTilt, 300, 100, 0);
    DragKey(key, drag, 1.0f, {200, 200}, 280, 100, 0);
    EXPECT_FLOAT_EQ(key.Rot3, -10.0f);
    DragKey(key, drag, 1.0f, {200, 200}, 0, 100, 0);
    EXPECT_FLOAT_EQ(key.Rot3, -90.0f);
    DragKey(key, drag, 1.0f, {200, 200}, 700, 100, 0);
    EXPECT_FLOAT_EQ(key.Rot3, 90.0f);
    StageDrag vertical = StartDrag(key, 1.0f, kHitTilt, 300, 100, kStageConstrain);
    DragKey(key, vertical, 1.0f, {200, 200}, 330, 100, kStageConstrain);
    EXPECT_FLOAT_EQ(key.Rot2, 15.0f);
    EXPECT_FLOAT_EQ(key.Rot3, 90.0f);
}

TEST(DragKey, ResizeTakesTheHorizontalDistanceInTheFramesOwnTurn)
{
    KeyStruct key = Key(200.0f, 200.0f, 100.0f);
    StageDrag drag = StartDrag(key, 0.5f, kHitResize, 0, 0, 0);
    DragKey(key, drag, 0.5f, {100, 100}, 160, 170, 0);
    EXPECT_FLOAT_EQ(key.Width, 240.0f);
    // Left of the centre counts the same, less the pixel RotatePoint's rounding takes (-59.5
    // truncates to -59).
    DragKey(key, drag, 0.5f, {100, 100}, 40, 100, 0);
    EXPECT_FLOAT_EQ(key.Width, 236.0f);
    key.Rotation = 90.0f;
    // Turned back by 270 degrees, (100, 160) lies 60 pixels right of the centre.
    DragKey(key, drag, 0.5f, {100, 100}, 100, 160, 0);
    EXPECT_NEAR(key.Width, 240.0f, 4.0f);
}

TEST(StageKey, ArrowsStepOnePixelOrPutTheFrameAgainstAnEdge)
{
    KeyStruct key = Key(200.0f, 150.0f, 100.0f);
    EXPECT_EQ(StageKey(key, kCharLeft, false, 640, 480, 0.75f), StageKeyResult::kChanged);
    EXPECT_FLOAT_EQ(key.XPos, 199.0f);
    StageKey(key, kCharRight, false, 640, 480, 0.75f);
    StageKey(key, kCharRight, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.XPos, 201.0f);
    StageKey(key, kCharUp, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.YPos, 149.0f);
    StageKey(key, kCharDown, false, 640, 480, 0.75f);
    StageKey(key, kCharDown, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.YPos, 151.0f);
    StageKey(key, kCharLeft, true, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.XPos, 50.0f);
    StageKey(key, kCharRight, true, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.XPos, 590.0f);
    StageKey(key, kCharUp, true, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.YPos, 37.5f);
    StageKey(key, kCharDown, true, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.YPos, 442.5f);
}

TEST(StageKey, PageUpNeverGoesBelowFour)
{
    KeyStruct key = Key(200.0f, 150.0f, 4.5f);
    StageKey(key, kCharPageUp, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.Width, 4.0f);
    StageKey(key, kCharPageUp, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.Width, 4.0f);
    key.Width = 100.0f;
    StageKey(key, kCharPageUp, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.Width, 99.0f);
}

TEST(StageKey, PageKeysWithOptionFitThePictureWidthOrHeight)
{
    KeyStruct key = Key(200.0f, 150.0f, 100.0f);
    StageKey(key, kCharPageDown, false, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.Width, 101.0f);
    StageKey(key, kCharPageUp, true, 640, 480, 0.75f);
    EXPECT_FLOAT_EQ(key.Width, 640.0f);
    StageKey(key, kCharPageDown, true, 640, 300, 0.75f);
    EXPECT_FLOAT_EQ(key.Width, 400.0f);
}

TEST(StageKey, HomeCentresWithOptionOnlyOtherKeysGoToTheMainWindow)
{
    KeyStruct key = Key(200.0f, 150.0f, 100.0f);
    EXPECT_EQ(StageKey(key, kCharHome, false, 640, 480, 0.75f), StageKeyResult::kPassOn);
    EXPECT_FLOAT_EQ(key.XPos, 200.0f);
    EXPECT_EQ(StageKey(key, kCharHome, true, 640, 480, 0.75f), StageKeyResult::kChanged);
    EXPECT_FLOAT_EQ(key.XPos, 320.0f);
    EXPECT_FLOAT_EQ(key.YPos, 240.0f);
    EXPECT_EQ(StageKey(key, 1024, false, 640, 480, 0.75f), StageKeyResult::kIgnored);
    EXPECT_EQ(StageKey(key, 'a', true, 640, 480, 0.75f), StageKeyResult::kPassOn);
    EXPECT_FLOAT_EQ(key.XPos, 320.0f);
}

}  // namespace
