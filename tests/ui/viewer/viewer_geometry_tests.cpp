// Where the viewer first stands, how it fits the show's shape and where its controls lie.

#include "ui/viewer/viewer_geometry.h"

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

TEST(ViewerStartRect, StoredTopOrLeftOf31OrLessReadsAs32)
{
    for (long stored : {31L, 0L, -400L}) {
        tagRECT rect = ViewerStartRect({0, 0, 1280, 800}, stored, stored, 300, false);
        EXPECT_EQ(rect.top, 32) << stored;
        EXPECT_EQ(rect.left, 32) << stored;
    }
    tagRECT kept = ViewerStartRect({0, 0, 1280, 800}, 32, 33, 300, false);
    EXPECT_EQ(kept.top, 32);
    EXPECT_EQ(kept.left, 33);
}

TEST(ViewerStartRect, NarrowWindowIsWidenedTo80)
{
    tagRECT rect = ViewerStartRect({0, 0, 1280, 800}, 100, 200, 79, false);
    EXPECT_EQ(rect.right - rect.left, 80);
    tagRECT wide = ViewerStartRect({0, 0, 1280, 800}, 100, 200, 81, false);
    EXPECT_EQ(wide.right - wide.left, 81);
}

TEST(ViewerStartRect, OwnerOf1767OrLessGives220)
{
    tagRECT rect = ViewerStartRect({0, 0, 1767, 1000}, 100, 100, kNotStored, false);
    EXPECT_EQ(rect.right - rect.left, 220);
    tagRECT wider = ViewerStartRect({0, 0, 1768, 1000}, 100, 100, kNotStored, false);
    EXPECT_EQ(wider.right - wider.left, 1768 / 8);
}

TEST(ViewerFittedRect, ResizingRestoresTheAspectFromTheWidth)
{
    // Whatever height the window was dragged to, the width alone decides the new height.
    for (int bottom : {50, 300, 2000}) {
        tagRECT rect = ViewerFittedRect({100, 40, 420, bottom}, 0.75f, 20);
        EXPECT_EQ(rect.bottom, 40 + 240 + 20 + 24) << bottom;
        EXPECT_EQ(rect.right - rect.left, 320);
    }
    // trunc(width x ratio): 333 x 0.5625 = 187.3
    EXPECT_EQ(ViewerFittedRect({0, 0, 333, 0}, 0.5625f, 0).bottom, 187 + 24);
}

TEST(ViewerPictureArea, IsTheClientLessTheStrip)
{
    tagRECT client = {0, 0, 320, 240 + kViewerStrip};
    tagRECT picture = ViewerPictureArea(client);
    EXPECT_EQ(picture.bottom, 240);
    EXPECT_EQ(picture.right, 320);
    EXPECT_EQ(ViewerPictureArea({0, 0, 50, 10}).bottom, 0);  // no room: an empty area
}

TEST(ViewerControlLayout, ButtonsFromTheStripsLeftAndTheTimecodeBeforeAddKey)
{
    ViewerControls c = ViewerControlLayout(200);
    EXPECT_EQ(c.backwards.left, 4);
    EXPECT_EQ(c.backwards.top, 178);
    EXPECT_EQ(c.backwards.right - c.backwards.left, 19);
    EXPECT_EQ(c.backwards.bottom - c.backwards.top, 19);
    EXPECT_EQ(c.stop.left, 28);
    EXPECT_EQ(c.forwards.left, 52);
    EXPECT_EQ(c.addKey.left, 161);
    EXPECT_EQ(c.timecode.left, 76);  // 85 left of add key, 24 right of forwards
    EXPECT_EQ(c.timecode.right, 156);
    EXPECT_EQ(c.timecode.top, c.addKey.top);
    EXPECT_EQ(c.timecode.bottom, c.addKey.bottom);
}

TEST(ViewerSafeAreasOf, TitleAndActionInsets)
{
    ViewerSafeAreas a = ViewerSafeAreasOf({0, 0, 640, 480});
    // trunc(0.096 x 640) = 61, trunc(0.096 x 480) = 46; trunc(0.048 x ...) = 30, 23
    EXPECT_EQ(a.title.left, 61);
    EXPECT_EQ(a.title.right, 640 - 61);
    EXPECT_EQ(a.title.top, 46);
    EXPECT_EQ(a.title.bottom, 480 - 46);
    EXPECT_EQ(a.corner, 64);
    EXPECT_EQ(a.action.left, 30);
    EXPECT_EQ(a.action.top, 23);
    EXPECT_EQ(a.action.right, 610);
    EXPECT_EQ(a.action.bottom, 457);
}

}  // namespace
