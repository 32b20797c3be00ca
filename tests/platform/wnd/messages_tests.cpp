// Message numbers and the packing of points.

#include "platform/wnd/messages.h"

#include <gtest/gtest.h>

namespace {

TEST(MessageNumbers, NumbersAreTheProgramsOwn)
{
    EXPECT_EQ(kMsgResized, 1001u);
    EXPECT_EQ(kMsgMoved, 1002u);
    EXPECT_EQ(kMsgPaint, 1003u);
    EXPECT_EQ(kMsgClose, 1007u);
    EXPECT_EQ(kMsgButtonDown, 1009u);
    EXPECT_EQ(kMsgButtonUp, 1011u);
    EXPECT_EQ(kMsgSecondaryUp, 1012u);
    EXPECT_EQ(kMsgMouseMoved, 1013u);
    EXPECT_EQ(kMsgShortcut, 1017u);
    EXPECT_EQ(kMsgKeyUp, 1018u);
    EXPECT_EQ(kMsgKeyDown, 1019u);
    EXPECT_EQ(kMsgCommand, 1020u);
    EXPECT_EQ(kMsgEndLoop, 12345u);
    EXPECT_EQ(kShortcutMark, 2048);
}

TEST(PointParam, YHighXLow)
{
    EXPECT_EQ(MakePointParam(10, 20), (20L << 16) | 10);
    EXPECT_EQ(PointParamX(MakePointParam(10, 20)), 10);
    EXPECT_EQ(PointParamY(MakePointParam(10, 20)), 20);
    EXPECT_EQ(MakePointParam(0x7FFF, 1), (1L << 16) | 0x7FFF);
}

TEST(PointParam, PointsLeftOfOrAboveTheWindowReadBackNegative)
{
    long packed = MakePointParam(-5, -300);
    EXPECT_EQ(PointParamX(packed), -5);
    EXPECT_EQ(PointParamY(packed), -300);
    EXPECT_EQ(PointParamX(MakePointParam(-1, 7)), -1);
    EXPECT_EQ(PointParamY(MakePointParam(-1, 7)), 7);
}

}  // namespace
