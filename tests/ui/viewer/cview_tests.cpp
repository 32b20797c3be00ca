// Where the viewer first stands and how it fits the show's shape.

#include "ui/viewer/cview.h"

#include <gtest/gtest.h>

namespace {

TEST(ViewerStartRect, DefaultsNearTheOwnersTopRight)
{
    tagRECT rect = ViewerStartRect({0, 0, 1280, 800}, kNotStored, kNotStored, kNotStored, false);
    EXPECT_EQ(rect.top, 80);
    EXPECT_EQ(rect.left, 1280 - 220 - 40);
    EXPECT_EQ(rect.right, 1280 - 64);  // kept 64 pixels inside the owner's right edge
}

TEST(ViewerStartRect, WideOwnerGivesAnEighthOfItsWidth)
{
    tagRECT rect = ViewerStartRect({0, 0, 2400, 1200}, kNotStored, 100, kNotStored, false);
    EXPECT_EQ(rect.right - rect.left, 300);
    tagRECT placed = ViewerStartRect({0, 0, 2400, 1200}, kNotStored, kNotStored, kNotStored, false);
    EXPECT_EQ(placed.left, 2400 - 300 - 40);
}

TEST(ViewerStartRect, StoredPlaceIsKeptWithinTheOwner)
{
    tagRECT rect = ViewerStartRect({0, 0, 1280, 800}, 10, 5000, 400, false);
    EXPECT_EQ(rect.top, 32);
    EXPECT_EQ(rect.left, 1280 - 64);
    EXPECT_EQ(rect.right, rect.left + 80);  // at least 80 wide
    tagRECT free = ViewerStartRect({0, 0, 1280, 800}, 900, 2000, 400, true);
    EXPECT_EQ(free.top, 900);
    EXPECT_EQ(free.left, 2000);
    EXPECT_EQ(free.right, 2400);
}

TEST(ViewerStartRect, NegativeWidthCountsAsNone)
{
    tagRECT rect = ViewerStartRect({0, 0, 1280, 800}, 100, 100, -50, false);
    EXPECT_EQ(rect.right, 180);
}

TEST(ViewerFittedRect, PictureRowsCaptionAndStrip)
{
    tagRECT rect = ViewerFittedRect({10, 20, 230, 100}, 0.75f, 17);
    EXPECT_EQ(rect.left, 10);
    EXPECT_EQ(rect.right, 230);
    EXPECT_EQ(rect.bottom, 20 + 165 + 17 + kViewerStrip);
    EXPECT_EQ(ViewerFittedRect({0, 0, 221, 0}, 0.5625f, 0).bottom, 124 + kViewerStrip);
}

}  // namespace
