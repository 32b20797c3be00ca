// Rubber bands: exclusive-or outlines that a second identical call removes.

#include "platform/draw/rubber.h"

#include <gtest/gtest.h>
#include <climits>

#include "port_fixture.h"

namespace {

constexpr uint32_t kInverted = 0xFF000000u;  // white, inverted

using RubberBand = PortTest;

TEST_F(RubberBand, BoxCornersInEitherOrderFrameTheSameRectangle)
{
    port.Resize(80, 80);
    RubberBox({50, 60, 10, 20}, 1);
    EXPECT_EQ(Ink(), (InkBounds{10, 20, 50, 60}));
    std::vector<uint32_t> reversed = Snapshot();
    port.Resize(80, 80);
    RubberBox({10, 20, 50, 60}, 1);
    EXPECT_EQ(Snapshot(), reversed);
    port.Resize(80, 80);
    RubberBox({50, 20, 10, 60}, 1);
    EXPECT_EQ(Snapshot(), reversed);
}

TEST_F(RubberBand, BoxIncludesItsEdgesWithThePenInside)
{
    RubberBox({10, 10, 20, 20}, 1, kRubberSolid);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 20, 20}));
    EXPECT_EQ(Count(kInverted), 40);
    port.Resize(64, 48);
    RubberBox({20, 20, 10, 10}, 3, kRubberSolid);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 20, 20}));
    EXPECT_EQ(port.PixelAt(12, 15), kInverted);
    EXPECT_EQ(port.PixelAt(13, 15), kWhitePixel);
}

TEST_F(RubberBand, HalftoneInvertsEveryOtherPixel)
{
    RubberBox({10, 10, 20, 20}, 1);
    EXPECT_EQ(Count(kInverted), 20);
    EXPECT_EQ(port.PixelAt(10, 10), kInverted);  // x + y even
    EXPECT_EQ(port.PixelAt(11, 10), kWhitePixel);
    EXPECT_EQ(port.PixelAt(12, 10), kInverted);
    EXPECT_EQ(port.PixelAt(20, 11), kWhitePixel);
    EXPECT_EQ(port.PixelAt(20, 12), kInverted);
}

TEST_F(RubberBand, PatternFollowsTheWindowNotTheImage)
{
    port.SetOrigin(1, 0);
    RubberBox({10, 10, 20, 20}, 1);
    // Window pixel (10, 10) is image pixel (9, 10).
    EXPECT_EQ(port.PixelAt(9, 10), kInverted);
    EXPECT_EQ(port.PixelAt(10, 10), kWhitePixel);
    EXPECT_EQ(Ink(), (InkBounds{9, 10, 19, 20}));
}

TEST_F(RubberBand, InvertsColoursNotJustWhite)
{
    port.Row(10)[10] = 0xFF123456u;
    RubberBox({10, 10, 20, 20}, 1, kRubberSolid);
    EXPECT_EQ(port.PixelAt(10, 10), 0xFFEDCBA9u);
}

class RubberTwice : public PortTest {
protected:
    void SetUp() override
    {
        PortTest::SetUp();
        FillWithPattern();
        before = Snapshot();
    }
    // Draws once (something must change), then again (everything must come back).
    template <typename Draw>
    void ExpectRestored(Draw draw, const char* what)
    {
        draw();
        EXPECT_NE(Snapshot(), before) << what << " drew nothing";
        draw();
        EXPECT_EQ(Snapshot(), before) << what << " did not restore the image";
    }
    std::vector<uint32_t> before;
};

TEST_F(RubberTwice, BoxRestoresEveryPixel)
{
    for (int pattern : {kRubberHalftone, kRubberSolid})
        for (int width : {1, 2, 3, 7})
            ExpectRestored([&] { RubberBox({50, 40, 5, 3}, width, pattern); }, "box");
}

TEST_F(RubberTwice, LineRestoresEveryPixel)
{
    for (int pattern : {kRubberHalftone, kRubberSolid})
        for (int width : {1, 2, 3, 6})
            ExpectRestored([&] { RubberLine({3, 40, 60, 7}, width, pattern); }, "line");
}

TEST_F(RubberTwice, CircleRestoresEveryPixel)
{
    for (int pattern : {kRubberHalftone, kRubberSolid})
        for (int width : {1, 2, 4})
            ExpectRestored([&] { RubberCir({55, 45, 4, 2}, width, pattern); }, "circle");
}

TEST_F(RubberTwice, PolygonRestoresEveryPixel)
{
    // A camera frame, skewed and rotated, with sides that cross near the corners.
    const tagPOINT frame[] = {{8, 5}, {55, 12}, {50, 44}, {3, 30}};
    const tagPOINT crossing[] = {{5, 5}, {60, 40}, {60, 5}, {5, 40}};
    for (int pattern : {kRubberHalftone, kRubberSolid}) {
        for (int width : {1, 2, 3}) {
            ExpectRestored([&] { RubberPolygon(4, frame, width, pattern); }, "frame");
            ExpectRestored([&] { RubberPolygon(4, crossing, width, pattern); }, "crossing");
        }
    }
}

TEST_F(RubberTwice, PartlyOutsideRestoresToo)
{
    ExpectRestored([] { RubberBox({-10, -10, 30, 100}, 2); }, "box");
    ExpectRestored([] { RubberCir({-40, 10, 40, 90}, 3); }, "circle");
    ExpectRestored([] { RubberLine({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, 1); }, "line");
}

TEST_F(RubberBand, CornersSharedBySidesAreInvertedOnce)
{
    const tagPOINT square[] = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};
    RubberPolygon(4, square, 1, kRubberSolid);
    EXPECT_EQ(port.PixelAt(10, 10), kInverted);
    EXPECT_EQ(port.PixelAt(20, 10), kInverted);
    EXPECT_EQ(port.PixelAt(20, 20), kInverted);
    EXPECT_EQ(Count(kInverted), 40);
}

TEST_F(RubberBand, PolygonIsClosedAndCentredLikeLines)
{
    const tagPOINT path[] = {{10, 10}, {20, 10}, {20, 20}};
    RubberPolygon(3, path, 1, kRubberSolid);
    EXPECT_EQ(port.PixelAt(15, 15), kInverted);  // the closing side, from (20, 20) to (10, 10)
    port.Resize(64, 48);
    const tagPOINT flat[] = {{10, 10}, {20, 10}};
    RubberPolygon(2, flat, 3, kRubberSolid);
    EXPECT_EQ(Ink(), (InkBounds{9, 9, 21, 11}));
}

TEST_F(RubberBand, LineIsCentredLikeDrawLine)
{
    RubberLine({10, 10, 20, 10}, 3, kRubberSolid);
    EXPECT_EQ(Ink(), (InkBounds{9, 9, 21, 11}));
    EXPECT_EQ(Count(kInverted), 39);
}

TEST_F(RubberBand, CircleIsTheOvalOfTheSortedCorners)
{
    RubberCir({40, 30, 10, 10}, 1, kRubberSolid);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 40, 30}));
    EXPECT_EQ(port.PixelAt(25, 20), kWhitePixel);
    EXPECT_EQ(port.PixelAt(10, 20), kInverted);
    EXPECT_EQ(port.PixelAt(10, 10), kWhitePixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 40, 30));
}

TEST_F(RubberBand, BadArgumentsDrawNothing)
{
    const tagPOINT one[] = {{5, 5}};
    RubberBox({10, 10, 20, 20}, 0);
    RubberBox({10, 10, 20, 20}, -1);
    RubberLine({10, 10, 20, 20}, 0);
    RubberCir({10, 10, 20, 20}, -2);
    RubberPolygon(0, one, 1);
    RubberPolygon(-3, one, 1);
    RubberPolygon(4, nullptr, 1);
    RubberPolygon(1, one, 0);
    RubberBox({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, 1);  // all four sides far outside
    EXPECT_EQ(CountNot(), 0);
    RubberPolygon(1, one, 1, kRubberSolid);
    EXPECT_EQ(Count(kInverted), 1);
}

TEST(RubberPort, WithoutAPortNothingHappens)
{
    const tagPOINT points[] = {{0, 0}, {5, 5}, {0, 5}};
    SetDrawDC(nullptr);
    RubberBox({0, 0, 10, 10}, 1);
    RubberLine({0, 0, 10, 10}, 1);
    RubberCir({0, 0, 10, 10}, 1);
    RubberPolygon(3, points, 1);
    DrawPort empty;
    SetDrawDC(&empty);
    RubberBox({0, 0, 10, 10}, 1);
    RubberPolygon(3, points, 2);
    EXPECT_EQ(empty.Width(), 0);
    SetDrawDC(nullptr);
}

}  // namespace
