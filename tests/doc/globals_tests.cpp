// The show's globals: the frame rate's whole frames per second and the starting values.

#include <gtest/gtest.h>

#include "doc/globals.h"

namespace {

// Sets the frame rate for one test and puts the previous one back.
class FrameRate : public testing::Test {
protected:
    void TearDown() override { gFrameRate = saved; }
    long saved = gFrameRate;
};

TEST_F(FrameRate, WholeFramesPerSecondRoundTheRateToTheNearestFrame)
{
    gFrameRate = 2997;
    EXPECT_EQ(FramesPerSecond(), 30);
    gFrameRate = 2500;
    EXPECT_EQ(FramesPerSecond(), 25);
    gFrameRate = 2397;
    EXPECT_EQ(FramesPerSecond(), 24);
    gFrameRate = 2400;
    EXPECT_EQ(FramesPerSecond(), 24);
}

TEST_F(FrameRate, HalfAFrameRoundsUp)
{
    gFrameRate = 2450;
    EXPECT_EQ(FramesPerSecond(), 25);
    gFrameRate = 2449;
    EXPECT_EQ(FramesPerSecond(), 24);
}

TEST(Globals, ShowStartsAtFrameZeroAtTwentyNineNineSeven)
{
    EXPECT_EQ(gFrameRate, 2997);
    EXPECT_EQ(gCurFrame, 0);
}

}  // namespace
