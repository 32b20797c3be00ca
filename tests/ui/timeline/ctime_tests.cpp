// Where the time line stands, and its frame-to-pixel mapping.

#include "ui/timeline/ctime.h"

#include <gtest/gtest.h>

#include "doc/globals.h"
#include "ui/stage/cstage.h"

namespace {

TEST(TimelineWindowRect, LiesUnderTheStageRightOfTheKeyPanel)
{
    tagRECT parent = {0, 0, 1280, 800};
    tagRECT stage = StageWindowRect(parent, 0, 22);
    tagRECT rect = TimelineWindowRect(parent, 0, 22);
    EXPECT_EQ(rect.left, kTimelinePanelRoom);
    EXPECT_GT(rect.top, stage.bottom);
    EXPECT_EQ(rect.right, stage.right);
    EXPECT_EQ(rect.bottom - rect.top, kTimelineHeight);
    EXPECT_LE(rect.bottom, parent.bottom);
}

TEST(TimelineWindowRect, NeverInsideOut)
{
    tagRECT rect = TimelineWindowRect({0, 0, 60, 80}, 0, 0);
    EXPECT_GT(rect.right, rect.left);
}

TEST(TimelinePixels, SixtyPixelsPerScaleStepFromTheAxisStart)
{
    gFrameRate = 2997;
    CTime time(nullptr);  // no window: only the arithmetic
    time.scale = 30;
    EXPECT_EQ(time.ToPix(0), 4);
    EXPECT_EQ(time.ToPix(30), 64);
    EXPECT_EQ(time.FromPix(64), 30);
    EXPECT_EQ(time.FromPix(0), 0);
}

TEST(TimelinePixels, ScaleFollowsTheShowLength)
{
    gFrameRate = 2997;
    CTime time(nullptr);
    time.SetMaxTime(60);  // under 3 seconds
    EXPECT_EQ(time.scale, 5);
    time.SetMaxTime(200);  // under 8 seconds
    EXPECT_EQ(time.scale, 10);
    time.SetMaxTime(8990);
    EXPECT_EQ(time.scale, 30);
    EXPECT_EQ(time.extent, 8990 * 60 / 30 + 4);
    time.SetMaxTime(1000000);
    EXPECT_EQ(time.extent, kLargestTimelineExtent);
}

}  // namespace
