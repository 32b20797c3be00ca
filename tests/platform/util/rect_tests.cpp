#include "platform/util/rect.h"

#include <gtest/gtest.h>
#include <cstdint>

namespace {

tagRECT Rect(int left, int top, int right, int bottom)
{
    tagRECT r;
    MakeRect(&r, left, top, right, bottom);
    return r;
}

void ExpectRect(const tagRECT& r, int left, int top, int right, int bottom)
{
    EXPECT_EQ(r.left, left);
    EXPECT_EQ(r.top, top);
    EXPECT_EQ(r.right, right);
    EXPECT_EQ(r.bottom, bottom);
}

}  // namespace

TEST(MakeRect, SetsTheFourSidesInOrder)
{
    tagRECT r = {9, 9, 9, 9};
    MakeRect(&r, 1, 2, 3, 4);
    ExpectRect(r, 1, 2, 3, 4);
}

TEST(ScaleRect, GrowsEachSideByTheGivenAmount)
{
    tagRECT r = Rect(10, 20, 30, 40);
    ScaleRect(&r, 2, 5);
    ExpectRect(r, 8, 15, 32, 45);
}

TEST(ScaleRect, NegativeAmountsShrink)
{
    tagRECT r = Rect(10, 20, 30, 40);
    ScaleRect(&r, -3, -1);
    ExpectRect(r, 13, 21, 27, 39);
}

TEST(SizeRect, MultipliesEverySideAndTruncates)
{
    tagRECT r = Rect(3, 5, 7, 9);
    SizeRect(&r, 1.5, 0.5);
    ExpectRect(r, 4, 2, 10, 4);  // 4.5, 2.5, 10.5, 4.5 truncated
}

TEST(SizeRect, NegativeFactorDivides)
{
    tagRECT r = Rect(10, 21, 30, 41);
    SizeRect(&r, -2.0, -4.0);
    ExpectRect(r, 5, 5, 15, 10);  // halved; 5.25 and 10.25 truncated
}

TEST(SizeRect, TruncatesNegativeSidesTowardZero)
{
    tagRECT r = Rect(-7, -9, 7, 9);
    SizeRect(&r, -2.0, 0.5);
    ExpectRect(r, -3, -4, 3, 4);
}

TEST(SizeRect, HugeProductsStopAtTheLimits)
{
    tagRECT r = Rect(-2000000000, 0, 2000000000, 1);
    SizeRect(&r, 4.0, 1.0);
    ExpectRect(r, INT32_MIN, 0, INT32_MAX, 1);
}

TEST(RectWidth, IsRightMinusLeft)
{
    tagRECT r = Rect(10, 0, 25, 0);
    EXPECT_EQ(RectWidth(&r, false), 15);
    tagRECT inverted = Rect(25, 0, 10, 0);
    EXPECT_EQ(RectWidth(&inverted, false), -15);
}

TEST(RectWidth, CentreRoundsTowardZero)
{
    tagRECT r = Rect(10, 0, 25, 0);
    EXPECT_EQ(RectWidth(&r, true), 17);  // 10 + 15 / 2
    tagRECT inverted = Rect(25, 0, 10, 0);
    EXPECT_EQ(RectWidth(&inverted, true), 18);  // 25 + (-15) / 2 = 25 - 7
}

TEST(RectHgt, IsBottomMinusTopAndCentre)
{
    tagRECT r = Rect(0, -5, 0, 8);
    EXPECT_EQ(RectHgt(&r, false), 13);
    EXPECT_EQ(RectHgt(&r, true), 1);  // -5 + 13 / 2
}

TEST(MoveRectBy, ShiftsAllSides)
{
    tagRECT r = Rect(1, 2, 3, 4);
    MoveRectBy(&r, 10, -20);
    ExpectRect(r, 11, -18, 13, -16);
}

TEST(MoveRectTo, PutsLeftTopAtThePointAndKeepsTheSize)
{
    tagRECT r = Rect(10, 20, 110, 70);
    MoveRectTo(&r, -5, 3);
    ExpectRect(r, -5, 3, 95, 53);
}

TEST(XYInRect, AllFourEdgesAreInside)
{
    tagRECT r = Rect(10, 20, 30, 40);
    EXPECT_TRUE(XYInRect(&r, 10, 20));
    EXPECT_TRUE(XYInRect(&r, 30, 40));  // right and bottom edges
    EXPECT_TRUE(XYInRect(&r, 30, 25));
    EXPECT_TRUE(XYInRect(&r, 15, 40));
    EXPECT_FALSE(XYInRect(&r, 31, 25));
    EXPECT_FALSE(XYInRect(&r, 15, 41));
    EXPECT_FALSE(XYInRect(&r, 9, 25));
    EXPECT_FALSE(XYInRect(&r, 15, 19));
}

TEST(XYInRect, PointFormAgreesWithCoordinates)
{
    tagRECT r = Rect(10, 20, 30, 40);
    EXPECT_TRUE(XYInRect(&r, tagPOINT{30, 40}));
    EXPECT_FALSE(XYInRect(&r, tagPOINT{31, 40}));
}

TEST(ClipByRect, KeepsTheOverlap)
{
    tagRECT r = Rect(0, 0, 100, 100);
    tagRECT clip = Rect(20, -10, 150, 60);
    EXPECT_TRUE(ClipByRect(&r, &clip));
    ExpectRect(r, 20, 0, 100, 60);
}

TEST(ClipByRect, ZeroWidthOrHeightIsFalse)
{
    tagRECT r = Rect(0, 0, 100, 100);
    tagRECT touching = Rect(100, 0, 200, 100);
    EXPECT_FALSE(ClipByRect(&r, &touching));
    EXPECT_EQ(RectWidth(&r, false), 0);

    tagRECT s = Rect(0, 0, 100, 100);
    tagRECT below = Rect(0, 100, 100, 200);
    EXPECT_FALSE(ClipByRect(&s, &below));
}

TEST(ClipByRect, InvertedResultIsNotDetected)
{
    tagRECT r = Rect(0, 0, 10, 10);
    tagRECT apart = Rect(50, 50, 60, 60);
    EXPECT_TRUE(ClipByRect(&r, &apart));
    ExpectRect(r, 50, 50, 10, 10);
}

TEST(SortRect, OrdersBothPairs)
{
    tagRECT r = Rect(50, 60, 10, 20);
    SortRect(&r);
    ExpectRect(r, 10, 20, 50, 60);
    tagRECT ordered = Rect(1, 2, 3, 4);
    SortRect(&ordered);
    ExpectRect(ordered, 1, 2, 3, 4);
}

TEST(RectInRect, EdgesAreInclusive)
{
    tagRECT outer = Rect(0, 0, 100, 100);
    tagRECT same = outer;
    EXPECT_TRUE(RectInRect(&same, &outer));
    tagRECT inside = Rect(10, 10, 90, 90);
    EXPECT_TRUE(RectInRect(&inside, &outer));
    tagRECT over = Rect(10, 10, 101, 90);
    EXPECT_FALSE(RectInRect(&over, &outer));
    tagRECT above = Rect(10, -1, 90, 90);
    EXPECT_FALSE(RectInRect(&above, &outer));
}

TEST(RectInRect, OuterGivenReversedIsSortedFirst)
{
    tagRECT outer = Rect(100, 100, 0, 0);
    tagRECT inside = Rect(10, 10, 90, 90);
    EXPECT_TRUE(RectInRect(&inside, &outer));
    EXPECT_EQ(outer.left, 100);  // the caller's rectangle is left as given
    tagRECT over = Rect(10, 10, 90, 120);
    EXPECT_FALSE(RectInRect(&over, &outer));
}

TEST(RectInRect, InnerIsTakenAsGiven)
{
    tagRECT outer = Rect(0, 0, 100, 100);
    tagRECT reversedInside = Rect(90, 90, 10, 10);
    EXPECT_TRUE(RectInRect(&reversedInside, &outer));
}

TEST(MoveRectBy, ExtremeValuesWrapWithoutOverflow)
{
    tagRECT r = Rect(INT32_MAX, 0, INT32_MAX, 0);
    MoveRectBy(&r, 1, 0);
    EXPECT_EQ(r.left, INT32_MIN);
}
