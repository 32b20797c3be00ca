// Where the stage stands in the main window.

#include "ui/stage/cstage.h"

#include <gtest/gtest.h>

namespace {

TEST(StageWindowRect, ParentLessScrollBarsCaptionMenuAndTimelineRoom)
{
    tagRECT rect = StageWindowRect({0, 0, 1280, 800}, 0, 22);
    EXPECT_EQ(rect.left, 16);
    EXPECT_EQ(rect.top, 16 + 22);
    EXPECT_EQ(rect.right, 1280 - 16);
    EXPECT_EQ(rect.bottom, 800 - 16 - 84);
}

TEST(StageWindowRect, FollowsTheParentsPlace)
{
    tagRECT rect = StageWindowRect({100, 50, 740, 530}, 23, 0);
    EXPECT_EQ(rect.left, 116);
    EXPECT_EQ(rect.top, 50 + 16 + 23);
    EXPECT_EQ(rect.right, 724);
    EXPECT_EQ(rect.bottom, 530 - 16 - 84);
}

}  // namespace
