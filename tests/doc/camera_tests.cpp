#include "doc/camera.h"

#include <gtest/gtest.h>
#include <cmath>
#include <limits>
#include <vector>

#include "doc/cdoc.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"

namespace {

KeyStruct KeyAt(int frame, float x)
{
    KeyStruct key;
    KeyIdentity(key);
    key.Frame = frame;
    key.XPos = x;
    return key;
}

// Two keys: x 0 at frame 0, x 100 at frame 100.
std::vector<KeyStruct> TwoKeys() { return {KeyAt(0, 0.0f), KeyAt(100, 100.0f)}; }

TEST(CalcEase, StartsAtZeroAndEndsAtOneForEveryEaseWindow)
{
    for (int ai = 0; ai <= 10; ++ai) {
        for (int bi = ai; bi <= 10; ++bi) {
            float a = ai / 10.0f;
            float b = bi / 10.0f;
            if (!(a < 1.0f || b > 0.0f))
                continue;
            EXPECT_NEAR(CalcEase(0.0f, a, b), 0.0f, 1e-6) << a << " " << b;
            EXPECT_NEAR(CalcEase(1.0f, a, b), 1.0f, 1e-6) << a << " " << b;
        }
    }
}

TEST(CalcEase, KeepsTheTruncatedHalfTurnConstants)
{
    // Values computed with 3.1414 and 1.5707; pi and pi / 2 give 0.113930933 and 0.925710559.
    EXPECT_FLOAT_EQ(CalcEase(0.25f, 0.5f, 1.0f), 0.11394844949245453f);
    EXPECT_FLOAT_EQ(CalcEase(0.8f, 0.0f, 0.5f), 0.9256945848464966f);
}

TEST(CalcEase, IsLinearBetweenTheEases)
{
    float first = CalcEase(0.6f, 0.5f, 1.0f);
    float second = CalcEase(0.7f, 0.5f, 1.0f);
    float third = CalcEase(0.8f, 0.5f, 1.0f);
    EXPECT_NEAR(second - first, third - second, 1e-6);
}

TEST(DecodeKeyEase, SplitsKindSpeedAndCurveSwitch)
{
    KeyEase ease = DecodeKeyEase(2050.0f);
    EXPECT_EQ(ease.kind, 1);
    EXPECT_DOUBLE_EQ(ease.speed, 0.5);
    EXPECT_FALSE(ease.noCurves);

    ease = DecodeKeyEase(1001.0f);
    EXPECT_EQ(ease.kind, 0);
    EXPECT_DOUBLE_EQ(ease.speed, 0.01);
    EXPECT_TRUE(ease.noCurves);

    ease = DecodeKeyEase(4000.0f);
    EXPECT_EQ(ease.kind, 3);
    EXPECT_DOUBLE_EQ(ease.speed, 0.0);
}

TEST(DecodeKeyEase, DamagedValuesDecodeWithoutOverflow)
{
    KeyEase ease = DecodeKeyEase(std::numeric_limits<float>::infinity());
    EXPECT_GE(ease.speed, 0.0);
    ease = DecodeKeyEase(3.0e38f);
    EXPECT_LT(ease.speed, 10.0);
}

TEST(CurveFit, OneKeyGivesKeyZerosValueAtEveryFrame)
{
    KeyStruct key = KeyAt(0, 321.5f);
    for (long r : {-50L, 0L, 1L, 99L, 100000L})
        EXPECT_EQ(CurveFit(1, &key, kFieldXPos, r, 0, 0), 321.5f);
}

TEST(CurveFit, SymmetricEaseWithoutCurvesIsExactAtTheMiddleAndEnds)
{
    std::vector<KeyStruct> keys = TwoKeys();
    int ease = kEaseBoth | kEaseNoCurves;
    EXPECT_EQ(CurveFit(2, keys.data(), kFieldXPos, 50, 0, ease), 50.0f);
    EXPECT_EQ(CurveFit(2, keys.data(), kFieldXPos, 100, 0, ease), 100.0f);
    // sin(-1.5707) stops just short of -1: frame 0 lies 2e-9 of the segment in, well inside 1e-6.
    EXPECT_NEAR(CurveFit(2, keys.data(), kFieldXPos, 0, 0, ease), 0.0f, 1e-4);
}

TEST(CurveFit, TwoKeysWithCurvesFollowTheMirroredTangent)
{
    // m0 = 0, m1 = 100: the plain curve is 200u^2 - 100u^3.
    std::vector<KeyStruct> keys = TwoKeys();
    for (long r = 0; r < 100; r += 7) {
        double u = r / 100.0;
        EXPECT_NEAR(CurveFit(2, keys.data(), kFieldXPos, r, 0, kEaseNone),
                    200 * u * u - 100 * u * u * u, 1e-4);
    }
}

TEST(CurveFit, HoldGivesTheSegmentsFirstValueAtEveryFrame)
{
    std::vector<KeyStruct> keys = {KeyAt(0, 10.0f), KeyAt(50, 60.0f), KeyAt(100, 5.0f)};
    for (long r = 0; r < 50; ++r)
        EXPECT_EQ(CurveFit(3, keys.data(), kFieldXPos, r, 0, kEaseHold), 10.0f);
    for (long r = 50; r < 100; ++r)
        EXPECT_EQ(CurveFit(3, keys.data(), kFieldXPos, r, 0, kEaseHold), 60.0f);
}

TEST(CurveFit, AfterTheLastKeyAndBeforeTheFirstGivesTheLastValue)
{
    std::vector<KeyStruct> keys = {KeyAt(10, 10.0f), KeyAt(50, 60.0f)};
    EXPECT_EQ(CurveFit(2, keys.data(), kFieldXPos, 50, 0, 0), 60.0f);
    EXPECT_EQ(CurveFit(2, keys.data(), kFieldXPos, 5000, 0, 0), 60.0f);
    EXPECT_EQ(CurveFit(2, keys.data(), kFieldXPos, 0, 0, 0), 60.0f);
}

TEST(CurveFit, KeyEaseOfTwentyFiftyEasesInOverTheFirstHalfThenRunsAtConstantSpeed)
{
    std::vector<KeyStruct> keys = TwoKeys();
    keys[0].Ease = 2050.0f;
    // 2050 is even, so curves stay on; compare with the curve at the eased time.
    for (long r = 0; r < 100; r += 5) {
        double u = CalcEase(r / 100.0f, 0.5f, 1.0f);
        EXPECT_NEAR(CurveFit(2, keys.data(), kFieldXPos, r, 0, kEaseNone),
                    200 * u * u - 100 * u * u * u, 1e-3)
            << r;
    }
    // In the second half time runs at constant speed.
    float a = CalcEase(0.6f, 0.5f, 1.0f);
    float b = CalcEase(0.8f, 0.5f, 1.0f);
    float c = CalcEase(1.0f, 0.5f, 1.0f);
    EXPECT_NEAR(b - a, c - b, 1e-6);
}

TEST(CurveFit, OddKeyEaseSwitchesCurvesOffForItsSegmentOnly)
{
    std::vector<KeyStruct> keys = {KeyAt(0, 0.0f), KeyAt(100, 100.0f), KeyAt(200, 0.0f)};
    keys[0].Ease = 4001.0f;  // kind 3 (plain), speed 1, odd: straight
    EXPECT_NEAR(CurveFit(3, keys.data(), kFieldXPos, 25, 0, kEaseNone), 25.0f, 1e-4);
    // The second segment keeps its curve: it starts with the first segment's end tangent.
    float curved = CurveFit(3, keys.data(), kFieldXPos, 150, 0, kEaseNone);
    EXPECT_GT(std::fabs(curved - 50.0f), 1.0f);
}

TEST(CurveFit, TangentIsFlattenedWhenTheShorterMoveIsUnderAThirdOfTheLonger)
{
    // Moves of 100 and 10: f = 10 / 100 x 3 = 0.3 (real division, not 0).
    std::vector<KeyStruct> keys = {KeyAt(0, 0.0f), KeyAt(100, 100.0f), KeyAt(200, 110.0f)};
    double m1 = (110.0 - 0.0) / 2.0 * 0.3;
    double u = 0.5;
    double expected = 0 + 0 * u + (3 * 100.0 - m1) * u * u + (m1 + 2 * (0 - 100.0)) * u * u * u;
    EXPECT_NEAR(CurveFit(3, keys.data(), kFieldXPos, 50, 0, kEaseNone), expected, 1e-4);
}

TEST(CurveFit, SecondFieldSamplesHalfAFrameLaterAndNeverPastTheSegmentEnd)
{
    std::vector<KeyStruct> keys = TwoKeys();
    int ease = kEaseNone | kEaseNoCurves;
    EXPECT_FLOAT_EQ(CurveFit(2, keys.data(), kFieldXPos, 99, 1, ease), 99.5f);
    EXPECT_FLOAT_EQ(CurveFit(2, keys.data(), kFieldXPos, 0, 1, ease), 0.5f);
    EXPECT_LT(CurveFit(2, keys.data(), kFieldXPos, 99, 1, ease), 100.0f);
}

TEST(CurveFit, RotationFollowsStraightLinesEvenWhenAKeyAsksForCurves)
{
    std::vector<KeyStruct> keys = {KeyAt(0, 0.0f), KeyAt(100, 0.0f), KeyAt(200, 0.0f)};
    keys[1].Rotation = 90.0f;
    keys[0].Ease = 4000.0f;  // plain, curves on
    EXPECT_NEAR(CurveFit(3, keys.data(), kFieldRotation, 25, 0, kEaseNone | kEaseNoCurves), 22.5f,
                1e-4);
    EXPECT_NEAR(CurveFit(3, keys.data(), kFieldRotation, 25, 0, kEaseNone), 22.5f, 1e-4);
}

TEST(CurveFit, NoKeysGivesZero)
{
    KeyStruct key = KeyAt(0, 5.0f);
    EXPECT_EQ(CurveFit(0, &key, kFieldXPos, 10, 0, 0), 0.0f);
}

class QueueKeyTest : public testing::Test {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        std::string text = "[Parallaxotron]\r\n";
        LoadIniText(text.data(), text.size());
        doc = std::make_unique<CDoc>();
    }
    std::unique_ptr<CDoc> doc;
};

TEST_F(QueueKeyTest, OneKeyGivesThatKeyAtEveryFrame)
{
    KeyStruct out;
    doc->picCount = 1;
    doc->QueueKey(&out, 0, 500, 0);
    EXPECT_EQ(out.XPos, 200.0f);
    EXPECT_EQ(out.YPos, 200.0f);
    EXPECT_EQ(out.Width, 100.0f);
    EXPECT_EQ(out.Rotation, 0.0f);
    EXPECT_EQ(out.Frame, 0);
    EXPECT_EQ(out.PicStart, 0.0f);
}

TEST_F(QueueKeyTest, FramesAreRelativeToThePicturesStart)
{
    doc->picCount = 2;
    doc->SetPicStart(100, 1);
    doc->keys[1][0].XPos = 0.0f;
    KeyStruct second = KeyAt(100, 100.0f);
    second.YPos = 200.0f;
    second.Width = 100.0f;
    second.Rotation = 40.0f;
    doc->SetKey(1, second, 1);
    doc->defaultEase = kEaseBoth | kEaseNoCurves;
    KeyStruct out;
    doc->QueueKey(&out, 1, 150, 0);
    EXPECT_EQ(out.XPos, 50.0f);
    EXPECT_EQ(out.Rotation, 20.0f);
    EXPECT_EQ(out.YPos, 200.0f);
}

TEST_F(QueueKeyTest, EaseFieldHoldsTheCodeOfTheSegmentInForce)
{
    doc->picCount = 1;
    doc->keys[0][0].Ease = 2050.0f;
    KeyStruct second = KeyAt(100, 100.0f);
    second.Ease = 3010.0f;
    doc->SetKey(1, second, 0);
    doc->SetKey(2, KeyAt(200, 0.0f), 0);
    KeyStruct out;
    doc->QueueKey(&out, 0, 40, 0);
    EXPECT_EQ(out.Ease, 2050.0f);
    doc->QueueKey(&out, 0, 140, 0);
    EXPECT_EQ(out.Ease, 3010.0f);
}

TEST_F(QueueKeyTest, PictureWithoutKeysOrOutOfRangeGivesTheIdentityCamera)
{
    KeyStruct out;
    doc->keyCount[0] = 0;
    doc->QueueKey(&out, 0, 10, 0);
    EXPECT_EQ(out.XPos, 0.0f);
    out.XPos = 9.0f;
    doc->QueueKey(&out, 99, 10, 0);
    EXPECT_EQ(out.XPos, 0.0f);
}

TEST(RotatePoint, KeepsTheTruncatedDegreeConstant)
{
    // 90 x 0.0174532 falls just short of a quarter turn: x lands on 1, not 0.
    tagPOINT p = {100000, 0};
    RotatePoint(p, 90.0f, tagPOINT{0, 0});
    EXPECT_EQ(p.x, 1);
    EXPECT_EQ(p.y, 100000);
}

TEST(RotatePoint, TurnsAboutTheCentre)
{
    tagPOINT p = {10, 0};
    RotatePoint(p, 90.0f, tagPOINT{10, 10});
    EXPECT_EQ(p.x, 20);
    EXPECT_EQ(p.y, 10);
}

TEST(RotatePoint, AddsAHalfThenTruncatesTowardZero)
{
    // A half turn takes the offset 10 to -9.99999999; + 0.5 and truncation give -9, not -10.
    tagPOINT p = {20, 10};
    RotatePoint(p, 180.0f, tagPOINT{10, 10});
    EXPECT_EQ(p.x, 1);
    EXPECT_EQ(p.y, 10);
}

TEST(RotateRect, TurnsBothCornersAndRoundsTheTopWithItsOwnOffset)
{
    tagRECT r = {1, 0, 5, 5};
    RotateRect(r, 45.0f, tagPOINT{0, 0});
    EXPECT_EQ(r.left, 1);
    EXPECT_EQ(r.top, 0);  // 0.707 + 0.05 truncates to 0; + 0.5 would give 1
    EXPECT_EQ(r.right, 0);
    EXPECT_EQ(r.bottom, 7);

    tagRECT s = {10, 20, 50, 60};
    RotateRect(s, 30.0f, tagPOINT{30, 40});
    EXPECT_EQ(s.left, 24);
    EXPECT_EQ(s.top, 13);
    EXPECT_EQ(s.right, 37);
    EXPECT_EQ(s.bottom, 67);
}

TEST(RotateRect, DamagedAngleStaysWithinTheCoordinateRange)
{
    tagRECT r = {1, 2, 3, 4};
    RotateRect(r, std::numeric_limits<float>::quiet_NaN(), tagPOINT{0, 0});
    EXPECT_EQ(r.left, 0);
    EXPECT_EQ(r.top, 0);
}

TEST(CameraPath, SamplesTheCurveAtEveryFrameUpToTheLastKey)
{
    KeyStruct keys[2];
    KeyIdentity(keys[0]);
    KeyIdentity(keys[1]);
    keys[0].XPos = 10.0f;
    keys[0].YPos = 20.0f;
    keys[1].XPos = 110.0f;
    keys[1].YPos = 20.0f;
    keys[1].Frame = 50;
    std::vector<CameraPathPoint> path = CameraPath(2, keys, kEaseNone);
    ASSERT_EQ(path.size(), 51u);
    EXPECT_EQ(path.front().x, 10.0f);
    EXPECT_EQ(path.back().x, 110.0f);
    EXPECT_EQ(path[25].x, CurveFit(2, keys, kFieldXPos, 25, 0, kEaseNone));
    EXPECT_EQ(path[25].y, 20.0f);
}

TEST(CameraPath, LongMovesAreSpreadOverAFixedNumberOfPoints)
{
    KeyStruct keys[2];
    KeyIdentity(keys[0]);
    KeyIdentity(keys[1]);
    keys[1].Frame = 2000000000;
    std::vector<CameraPathPoint> path = CameraPath(2, keys, kEaseNone);
    EXPECT_LE(path.size(), static_cast<size_t>(kMaxCameraPathPoints + 1));
    EXPECT_TRUE(CameraPath(0, keys, kEaseNone).empty());
}

TEST_F(QueueKeyTest, OneKeyGivesEveryCameraFieldOfKeyZeroAtEveryFrameAndEase)
{
    doc->picCount = 1;
    ASSERT_EQ(doc->GetKeyCount(0), 1);
    KeyStruct& only = doc->keys[0][0];
    only.XPos = 321.5f;
    only.YPos = 12.25f;
    only.Width = 640.0f;
    only.Rotation = 30.0f;
    only.Rot2 = -4.5f;
    only.Rot3 = 7.0f;
    only.Ease = 2050.0f;
    for (int ease : {kEaseBoth, kEaseIn, kEaseHold, kEaseNone | kEaseNoCurves}) {
        doc->defaultEase = ease;
        for (long frame : {0L, 1L, 99L, 1799L, 100000L}) {
            for (int second : {0, 1}) {
                KeyStruct out;
                doc->QueueKey(&out, 0, frame, second);
                EXPECT_EQ(out.XPos, 321.5f) << ease << " " << frame << " " << second;
                EXPECT_EQ(out.YPos, 12.25f) << ease << " " << frame << " " << second;
                EXPECT_EQ(out.Width, 640.0f) << ease << " " << frame << " " << second;
                EXPECT_EQ(out.Rotation, 30.0f) << ease << " " << frame << " " << second;
                EXPECT_EQ(out.Rot2, -4.5f) << ease << " " << frame << " " << second;
                EXPECT_EQ(out.Rot3, 7.0f) << ease << " " << frame << " " << second;
                EXPECT_EQ(out.Ease, 2050.0f) << ease << " " << frame << " " << second;
            }
        }
    }
}

}  // namespace
