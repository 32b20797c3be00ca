// Shapes on the backing image, read back pixel by pixel.

#include "platform/draw/draw_shapes.h"

#include <gtest/gtest.h>
#include <climits>

#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"
#include "port_fixture.h"

namespace {

constexpr long kRed = 0x0000FF;
constexpr long kGreen = 0x00FF00;
constexpr long kBlue = 0xFF0000;
constexpr long kBlack = 0x000000;

tagRECT Rect(int left, int top, int right, int bottom) { return {left, top, right, bottom}; }

// ---- colours ----------------------------------------------------------------------------------

using DrawColour = PortTest;

TEST_F(DrawColour, RedIs255AndBlueIs255Times65536)
{
    DrawBar(255, Rect(0, 0, 4, 4));
    EXPECT_EQ(port.PixelAt(1, 1), kRedPixel);
    DrawBar(255L * 65536, Rect(0, 0, 4, 4));
    EXPECT_EQ(port.PixelAt(1, 1), kBluePixel);
    DrawBar(255L * 256, Rect(0, 0, 4, 4));
    EXPECT_EQ(port.PixelAt(1, 1), kGreenPixel);
}

TEST_F(DrawColour, ChannelsLandUnchangedInTheImage)
{
    // 0x20 becomes the 16-bit 0x2000 and the image keeps its high byte, 0x20 again.
    DrawBar(0x00804020, Rect(0, 0, 2, 2));
    EXPECT_EQ(port.PixelAt(0, 0), 0xFF204080u);
    DrawBar(0x00010203, Rect(0, 0, 2, 2));
    EXPECT_EQ(port.PixelAt(0, 0), 0xFF030201u);
}

TEST_F(DrawColour, BitsAboveBlueAreIgnored)
{
    DrawBar(0x7F0000FF, Rect(0, 0, 2, 2));
    EXPECT_EQ(port.PixelAt(0, 0), kRedPixel);
}

TEST_F(DrawColour, SetColorAndEveryColouredCallSetThePen)
{
    SetColor(0x123456);
    EXPECT_EQ(gDrawState.penColor, 0x123456);
    DrawBox(kGreen, Rect(1, 1, 5, 5), 1);
    EXPECT_EQ(gDrawState.penColor, kGreen);
    DrawLine(kBlue, 0, 0, 3, 3, 1);
    EXPECT_EQ(gDrawState.penColor, kBlue);
    DrawBar(kRed, Rect(0, 0, 1, 1));
    EXPECT_EQ(gDrawState.penColor, kRed);
    EXPECT_EQ(CountNot(), 16 + 3);  // the line crosses the box at (1, 1); the bar is on the line
}

TEST_F(DrawColour, SetBackColorSetsTheBackground)
{
    long before = gDrawState.backColor;
    SetBackColor(0x00A0B0C0);
    EXPECT_EQ(gDrawState.backColor, 0x00A0B0C0);
    EXPECT_EQ(CountNot(), 0);  // nothing drawn
    SetBackColor(before);
}

// ---- rectangles -------------------------------------------------------------------------------

using DrawBarFill = PortTest;

TEST_F(DrawBarFill, FillLeavesOutTheRightColumnAndBottomRow)
{
    DrawBar(kRed, Rect(10, 10, 20, 20));
    EXPECT_EQ(Count(kRedPixel), 100);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 19, 19}));
}

TEST_F(DrawBarFill, EmptyAndInvertedRectanglesDrawNothing)
{
    DrawBar(kRed, Rect(10, 10, 10, 20));
    DrawBar(kRed, Rect(10, 10, 20, 10));
    DrawBar(kRed, Rect(20, 20, 10, 10));
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawBarFill, HugeRectangleFillsThePortAndNoMore)
{
    DrawBar(kRed, Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX));
    EXPECT_EQ(Count(kRedPixel), 64 * 48);
}

TEST_F(DrawBarFill, PartlyOutsideIsClipped)
{
    DrawBar(kRed, Rect(-5, -5, 3, 2));
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 2, 1}));
    DrawBar(kRed, Rect(60, 45, 100, 100));
    EXPECT_EQ(Count(kRedPixel), 6 + 4 * 3);
}

TEST_F(DrawBarFill, TakesTheDrawingOrigin)
{
    port.SetOrigin(100, 50);
    DrawBar(kRed, Rect(100, 50, 104, 52));
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 3, 1}));
}

using DrawBoxOutline = PortTest;

TEST_F(DrawBoxOutline, OutlineIncludesTheRightAndBottomEdges)
{
    DrawBox(kBlue, Rect(10, 10, 20, 20), 1);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 20, 20}));
    EXPECT_EQ(Count(kBluePixel), 40);
    EXPECT_EQ(port.PixelAt(15, 15), kWhitePixel);
    EXPECT_EQ(port.PixelAt(20, 15), kBluePixel);
    EXPECT_EQ(port.PixelAt(15, 20), kBluePixel);
}

TEST_F(DrawBoxOutline, AroundTheSameBarItLiesOnePixelOutsideRightAndBottom)
{
    tagRECT r = Rect(10, 10, 20, 20);
    DrawBar(kRed, r);
    DrawBox(kBlue, r, 1);
    // Left and top: the frame covers the bar's first column and row.
    EXPECT_EQ(port.PixelAt(10, 15), kBluePixel);
    EXPECT_EQ(port.PixelAt(15, 10), kBluePixel);
    EXPECT_EQ(port.PixelAt(11, 15), kRedPixel);
    // Right and bottom: the bar's last column and row stay, the frame is just outside them.
    EXPECT_EQ(port.PixelAt(19, 15), kRedPixel);
    EXPECT_EQ(port.PixelAt(20, 15), kBluePixel);
    EXPECT_EQ(port.PixelAt(15, 19), kRedPixel);
    EXPECT_EQ(port.PixelAt(15, 20), kBluePixel);
    EXPECT_EQ(Count(kRedPixel), 81);
}

TEST_F(DrawBoxOutline, ThickPenLiesInside)
{
    DrawBox(kBlue, Rect(10, 10, 29, 29), 3);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 29, 29}));
    EXPECT_EQ(port.PixelAt(12, 20), kBluePixel);
    EXPECT_EQ(port.PixelAt(13, 20), kWhitePixel);
    EXPECT_EQ(port.PixelAt(27, 20), kBluePixel);
    EXPECT_EQ(port.PixelAt(26, 20), kWhitePixel);
    EXPECT_EQ(Count(kBluePixel), 20 * 20 - 14 * 14);
}

TEST_F(DrawBoxOutline, PenWiderThanHalfFillsTheBox)
{
    DrawBox(kBlue, Rect(10, 10, 15, 15), 3);
    EXPECT_EQ(Count(kBluePixel), 36);
}

TEST_F(DrawBoxOutline, ZeroSizeIsOnePixelAndInvertedIsNothing)
{
    DrawBox(kBlue, Rect(10, 10, 10, 10), 1);
    EXPECT_EQ(Count(kBluePixel), 1);
    DrawBox(kRed, Rect(30, 30, 29, 40), 1);
    DrawBox(kRed, Rect(30, 30, 40, 29), 1);
    EXPECT_EQ(Count(kRedPixel), 0);
}

TEST_F(DrawBoxOutline, PenBelowOneDrawsNothing)
{
    DrawBox(kBlue, Rect(10, 10, 20, 20), 0);
    DrawBox(kBlue, Rect(10, 10, 20, 20), -3);
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawBoxOutline, HugeBoxesAreSafe)
{
    DrawBox(kBlue, Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), 1);
    EXPECT_EQ(CountNot(), 0);  // its sides are all far outside
    DrawBox(kBlue, Rect(-10, -10, INT_MAX, INT_MAX), 11);
    EXPECT_EQ(Count(kBluePixel), 64 + 47);  // row 0 and column 0 of its 11-pixel sides
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawBox(kBlue, Rect(0, 0, 10, 10), INT_MAX);
    EXPECT_EQ(Count(kBluePixel), 11 * 11);
}

TEST_F(DrawBoxOutline, ExclusiveOrModeUndoesItself)
{
    FillWithPattern();
    std::vector<uint32_t> before = Snapshot();
    DrawBox(0x00FF00FF, Rect(5, 5, 40, 30), 2, kPenXor);
    EXPECT_NE(Snapshot(), before);
    EXPECT_EQ(port.PixelAt(5, 20), before[20 * 64 + 5] ^ 0x00FF00FFu);
    DrawBox(0x00FF00FF, Rect(5, 5, 40, 30), 2, kPenXor);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(DrawBoxOutline, ModesOtherThanExclusiveOrPaint)
{
    DrawBox(kBlue, Rect(10, 10, 20, 20), 1, 1001);
    EXPECT_EQ(Count(kBluePixel), 40);
}

// ---- lines ------------------------------------------------------------------------------------

using DrawLinePen = PortTest;

TEST_F(DrawLinePen, Width3FromTenTenToTwentyTenCoversRows9To11)
{
    DrawLine(kBlack, 10, 10, 20, 10, 3);
    EXPECT_EQ(Ink(), (InkBounds{9, 9, 21, 11}));
    EXPECT_EQ(Count(kBlackPixel), 3 * 13);
}

TEST_F(DrawLinePen, RectangleFormIsTheSameLine)
{
    DrawLine(kBlack, Rect(10, 10, 20, 10), 3);
    EXPECT_EQ(Ink(), (InkBounds{9, 9, 21, 11}));
    EXPECT_EQ(Count(kBlackPixel), 39);
}

TEST_F(DrawLinePen, Width2HangsDownAndRight)
{
    DrawLine(kBlack, 10, 10, 20, 10, 2);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 21, 11}));
}

TEST_F(DrawLinePen, BothEndsAreDrawn)
{
    DrawLine(kBlack, 5, 5, 5, 5, 1);
    EXPECT_EQ(Count(kBlackPixel), 1);
    DrawLine(kBlack, 10, 20, 10, 30, 1);
    EXPECT_EQ(Count(kBlackPixel), 12);
    EXPECT_EQ(port.PixelAt(10, 30), kBlackPixel);
}

TEST_F(DrawLinePen, OnePointPerStepNearestTheLine)
{
    DrawLine(kBlack, 0, 0, 4, 2, 1);
    // Exact heights 0, 0.5, 1, 1.5, 2: halves go down.
    EXPECT_EQ(Picture(0, 0, 4, 2), "#....\n.##..\n...##\n");
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawLine(kBlack, 0, 0, 6, 2, 1);
    EXPECT_EQ(Picture(0, 0, 6, 2), "##.....\n..###..\n.....##\n");
}

TEST_F(DrawLinePen, EitherDirectionGivesTheSamePixels)
{
    const int lines[][4] = {{3, 4, 40, 17}, {50, 2, 7, 33}, {1, 40, 60, 39}, {30, 1, 31, 46}};
    for (const auto& l : lines) {
        for (int width : {1, 2, 3, 5}) {
            DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
            DrawLine(kBlack, l[0], l[1], l[2], l[3], width);
            std::vector<uint32_t> forwards = Snapshot();
            DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
            DrawLine(kBlack, l[2], l[3], l[0], l[1], width);
            EXPECT_EQ(Snapshot(), forwards) << l[0] << "," << l[1] << " width " << width;
        }
    }
}

TEST_F(DrawLinePen, DiagonalIsOnePixelPerRow)
{
    DrawLine(kBlack, 2, 2, 12, 12, 1);
    EXPECT_EQ(Count(kBlackPixel), 11);
    for (int i = 2; i <= 12; ++i)
        EXPECT_EQ(port.PixelAt(i, i), kBlackPixel);
}

TEST_F(DrawLinePen, ThickSteepLineIsTheUnionOfPenSquares)
{
    DrawLine(kBlack, 20, 5, 23, 25, 3);
    // Every row between the ends holds exactly a 3-pixel run when the line is this steep, and
    // the shape starts and ends with the pen square shifted up-left by one.
    EXPECT_EQ(Ink(), (InkBounds{19, 4, 24, 26}));
    for (int y = 4; y <= 26; ++y) {
        int run = 0;
        for (int x = 0; x < 64; ++x)
            run += port.PixelAt(x, y) == kBlackPixel;
        EXPECT_GE(run, 3) << "row " << y;
        EXPECT_LE(run, 4) << "row " << y;
    }
}

TEST_F(DrawLinePen, EndlessLinesAreClippedNotWalked)
{
    DrawLine(kBlack, INT_MIN, INT_MIN, INT_MAX, INT_MAX, 1);
    // The exact diagonal through the port.
    EXPECT_EQ(Count(kBlackPixel), 48);
    EXPECT_EQ(port.PixelAt(30, 30), kBlackPixel);
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawLine(kBlack, INT_MIN, 10, INT_MAX, 10, INT_MAX);
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 63, 47}));
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawLine(kBlack, -1000, 100, 1000, 100, 1);
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawLinePen, PenBelowOneDrawsNothing)
{
    DrawLine(kBlack, 0, 0, 10, 10, 0);
    DrawLine(kBlack, 0, 0, 10, 10, -2);
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawLinePen, ExclusiveOrTwiceRestores)
{
    FillWithPattern();
    std::vector<uint32_t> before = Snapshot();
    DrawLine(0x00FFFFFF, 3, 40, 60, 2, 4, kPenXor);
    EXPECT_NE(Snapshot(), before);
    DrawLine(0x00FFFFFF, 3, 40, 60, 2, 4, kPenXor);
    EXPECT_EQ(Snapshot(), before);
}

// ---- rounded rectangles and ovals -------------------------------------------------------------

using DrawRound = PortTest;

TEST_F(DrawRound, BarWithoutCornersIsTheBar)
{
    DrawRoundBar(kRed, Rect(10, 10, 20, 20), 0);
    EXPECT_EQ(Count(kRedPixel), 100);
}

TEST_F(DrawRound, BarLosesItsCornersAndKeepsItsSides)
{
    DrawRoundBar(kRed, Rect(10, 10, 40, 30), 8);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 39, 29}));
    EXPECT_EQ(port.PixelAt(10, 10), kWhitePixel);
    EXPECT_EQ(port.PixelAt(39, 29), kWhitePixel);
    EXPECT_EQ(port.PixelAt(10, 20), kRedPixel);
    EXPECT_EQ(port.PixelAt(25, 10), kRedPixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 39, 29));
}

TEST_F(DrawRound, BoxIncludesItsEdgesAndIsHollow)
{
    DrawRoundBox(kBlack, Rect(10, 10, 40, 30), 6, 1);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 40, 30}));
    EXPECT_EQ(port.PixelAt(10, 10), kWhitePixel);
    EXPECT_EQ(port.PixelAt(40, 20), kBlackPixel);
    EXPECT_EQ(port.PixelAt(25, 30), kBlackPixel);
    EXPECT_EQ(port.PixelAt(25, 20), kWhitePixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 40, 30));
}

TEST_F(DrawRound, BoxOutlineIsClosed)
{
    DrawRoundBox(kBlack, Rect(10, 10, 40, 30), 12, 1);
    // Flood the outside from a corner; the inside must stay unreached.
    std::vector<uint8_t> seen(64 * 48);
    std::vector<std::pair<int, int>> todo = {{0, 0}};
    while (!todo.empty()) {
        auto [x, y] = todo.back();
        todo.pop_back();
        if (x < 0 || y < 0 || x >= 64 || y >= 48 || seen[y * 64 + x] ||
            port.PixelAt(x, y) != kWhitePixel)
            continue;
        seen[y * 64 + x] = 1;
        todo.push_back({x + 1, y});
        todo.push_back({x - 1, y});
        todo.push_back({x, y + 1});
        todo.push_back({x, y - 1});
    }
    EXPECT_FALSE(seen[20 * 64 + 25]) << Picture(8, 8, 42, 32);
}

TEST_F(DrawRound, CornerLargerThanTheRectangleIsTheOval)
{
    DrawRoundBar(kRed, Rect(10, 10, 30, 30), 1000);
    std::vector<uint32_t> rounded = Snapshot();
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawCirBar(kRed, Rect(10, 10, 30, 30));
    EXPECT_EQ(Snapshot(), rounded);
}

TEST_F(DrawRound, OvalFillTouchesEachSideOfItsRectangleOnly)
{
    DrawCirBar(kGreen, Rect(10, 5, 50, 25));
    EXPECT_EQ(Ink(), (InkBounds{10, 5, 49, 24}));
    EXPECT_EQ(port.PixelAt(10, 5), kWhitePixel);
    EXPECT_EQ(port.PixelAt(30, 15), kGreenPixel);
    EXPECT_TRUE(IsSymmetric(10, 5, 49, 24));
}

TEST_F(DrawRound, CircleIsTheSameTurnedAQuarter)
{
    DrawCirBar(kGreen, Rect(3, 3, 30, 30));
    for (int y = 3; y < 30; ++y)
        for (int x = 3; x < 30; ++x)
            ASSERT_EQ(port.PixelAt(x, y), port.PixelAt(y, x)) << x << "," << y;
}

TEST_F(DrawRound, SmallOvals)
{
    DrawCirBar(kGreen, Rect(0, 0, 1, 1));
    EXPECT_EQ(Count(kGreenPixel), 1);
    DrawCirBar(kGreen, Rect(10, 10, 12, 12));
    EXPECT_EQ(Count(kGreenPixel), 5);
    // Pixel centres inside the inscribed oval: the corners of 3 x 3 are (1.41 < 1.5 from the
    // centre), those of 4 x 4 are not (2.12 > 2).
    DrawCirBar(kGreen, Rect(20, 20, 23, 23));
    EXPECT_EQ(Picture(20, 20, 22, 22), "###\n###\n###\n");
    DrawCirBar(kGreen, Rect(30, 30, 34, 34));
    EXPECT_EQ(Picture(30, 30, 33, 33), ".##.\n####\n####\n.##.\n");
}

TEST_F(DrawRound, OvalOutlineIncludesItsEdgesAndIsOnePixelThin)
{
    DrawCir(kBlack, Rect(10, 10, 40, 30), 1);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 40, 30}));
    EXPECT_EQ(port.PixelAt(25, 20), kWhitePixel);
    EXPECT_EQ(port.PixelAt(10, 20), kBlackPixel);
    EXPECT_EQ(port.PixelAt(11, 20), kWhitePixel);
    EXPECT_EQ(port.PixelAt(40, 20), kBlackPixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 40, 30));
}

TEST_F(DrawRound, ThickOvalOutline)
{
    DrawCir(kBlack, Rect(10, 10, 40, 40), 4);
    EXPECT_EQ(port.PixelAt(13, 25), kBlackPixel);
    EXPECT_EQ(port.PixelAt(14, 25), kWhitePixel);
    EXPECT_EQ(port.PixelAt(37, 25), kBlackPixel);
    EXPECT_EQ(port.PixelAt(36, 25), kWhitePixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 40, 40));
}

TEST_F(DrawRound, HugeAndEmptyOvalsAreSafe)
{
    DrawCirBar(kGreen, Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX));
    EXPECT_EQ(Count(kGreenPixel), 64 * 48);  // the port lies deep inside it
    DrawCir(kBlack, Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), 1);
    DrawRoundBox(kBlack, Rect(INT_MIN, 0, INT_MAX, 47), INT_MAX, 1);
    DrawCir(kBlack, Rect(30, 30, 20, 20), 1);
    DrawCirBar(kBlack, Rect(30, 30, 30, 40));
    EXPECT_EQ(Count(kBlackPixel), 64 * 2);  // the round box's straight top and bottom
}

// ---- check boxes and radio buttons --------------------------------------------------------------

using DrawCheckBox = PortTest;

TEST_F(DrawCheckBox, OffIsAFilledBoxInABlackOutline)
{
    DrawCheck(kRed, Rect(10, 10, 22, 22), false);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 22, 22}));
    EXPECT_EQ(Count(kBlackPixel), 4 * 12);
    EXPECT_EQ(Count(kRedPixel), 11 * 11 - 0);
    EXPECT_EQ(port.PixelAt(11, 11), kRedPixel);
    EXPECT_EQ(port.PixelAt(21, 21), kRedPixel);
    EXPECT_EQ(port.PixelAt(22, 22), kBlackPixel);
}

TEST_F(DrawCheckBox, OnAddsTheDiagonalsOfTheBoxShrunkByTwo)
{
    DrawCheck(kRed, Rect(10, 10, 22, 22), true);
    for (int i = 0; i <= 8; ++i) {
        EXPECT_EQ(port.PixelAt(12 + i, 12 + i), kBlackPixel);
        EXPECT_EQ(port.PixelAt(20 - i, 12 + i), kBlackPixel);
    }
    EXPECT_EQ(port.PixelAt(11, 11), kRedPixel);
    EXPECT_EQ(port.PixelAt(21, 21), kRedPixel);
    EXPECT_EQ(Count(kBlackPixel), 4 * 12 + 17);  // the diagonals share their middle pixel
    EXPECT_TRUE(IsSymmetric(10, 10, 22, 22));
}

using DrawRadioButton = PortTest;

TEST_F(DrawRadioButton, OffIsAnOvalOutlineInTheColour)
{
    DrawRadio(kBlue, Rect(10, 10, 22, 22), false);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 22, 22}));
    EXPECT_EQ(port.PixelAt(16, 16), kWhitePixel);
    EXPECT_EQ(port.PixelAt(10, 16), kBluePixel);
    EXPECT_EQ(port.PixelAt(22, 16), kBluePixel);
    EXPECT_EQ(port.PixelAt(10, 10), kWhitePixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 22, 22));
}

TEST_F(DrawRadioButton, OnFillsTheOvalFromTwoInToOneShortOfTheFarEdges)
{
    DrawRadio(kBlue, Rect(10, 10, 22, 22), true);
    // The dot is the fill of (12, 12)-(21, 21): columns and rows 12 to 20.
    EXPECT_EQ(port.PixelAt(16, 16), kBluePixel);
    EXPECT_EQ(port.PixelAt(12, 16), kBluePixel);
    EXPECT_EQ(port.PixelAt(20, 16), kBluePixel);
    EXPECT_EQ(port.PixelAt(11, 16), kWhitePixel);
    EXPECT_EQ(port.PixelAt(21, 16), kWhitePixel);
    EXPECT_EQ(port.PixelAt(16, 11), kWhitePixel);
    EXPECT_EQ(port.PixelAt(16, 21), kWhitePixel);
    EXPECT_TRUE(IsSymmetric(10, 10, 22, 22));
}

// ---- polygons and triangles -------------------------------------------------------------------

using DrawPolygonShape = PortTest;

const tagPOINT kSquare[] = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};

TEST_F(DrawPolygonShape, FillOfASquareIsTheBar)
{
    DrawPolygon(kRed, -1, 4, kSquare);
    EXPECT_EQ(Count(kRedPixel), 100);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 19, 19}));
}

TEST_F(DrawPolygonShape, FramedOutlineIsClosedAndIncludesTheFarEdges)
{
    DrawPolygon(kRed, kBlue, 4, kSquare);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 20, 20}));
    EXPECT_EQ(Count(kBluePixel), 40);
    EXPECT_EQ(Count(kRedPixel), 81);
    EXPECT_EQ(port.PixelAt(10, 15), kBluePixel);  // the closing side
}

TEST_F(DrawPolygonShape, NegativeFillLeavesTheOutlineOpen)
{
    DrawPolygon(-1, kBlue, 4, kSquare);
    EXPECT_EQ(Count(kRedPixel), 0);
    EXPECT_EQ(port.PixelAt(10, 15), kWhitePixel);  // (10, 20) is not joined back to (10, 10)
    EXPECT_EQ(port.PixelAt(15, 10), kBluePixel);
    EXPECT_EQ(port.PixelAt(20, 15), kBluePixel);
    EXPECT_EQ(port.PixelAt(15, 20), kBluePixel);
    EXPECT_EQ(Count(kBluePixel), 31);
}

TEST_F(DrawPolygonShape, NegativeFrameDrawsNoOutline)
{
    DrawPolygon(kRed, -1, 4, kSquare);
    EXPECT_EQ(Count(kBluePixel), 0);
    DrawPolygon(-1, -1, 4, kSquare);
    EXPECT_EQ(CountNot(), 100);
}

TEST_F(DrawPolygonShape, SelfCrossingShapesFillByEvenOdd)
{
    // Two overlapping squares as one outline: the overlap is outside.
    const tagPOINT shape[] = {{10, 10}, {30, 10}, {30, 30}, {20, 30},
                              {20, 20}, {40, 20}, {40, 40}, {10, 40}};
    DrawPolygon(kRed, -1, 8, shape);
    EXPECT_EQ(port.PixelAt(15, 15), kRedPixel);
    EXPECT_EQ(port.PixelAt(25, 25), kWhitePixel);
    EXPECT_EQ(port.PixelAt(35, 35), kRedPixel);
}

TEST_F(DrawPolygonShape, CountsBelowOneAndNullPointsDrawNothing)
{
    DrawPolygon(kRed, kBlue, 0, kSquare);
    DrawPolygon(kRed, kBlue, -5, kSquare);
    DrawPolygon(kRed, kBlue, 4, nullptr);
    EXPECT_EQ(CountNot(), 0);
    DrawPolygon(kRed, kBlue, 1, kSquare);
    EXPECT_EQ(Count(kBluePixel), 1);
    DrawPolygon(kRed, kBlue, 2, kSquare);
    EXPECT_EQ(Count(kBluePixel), 11);
    EXPECT_EQ(Count(kRedPixel), 0);
}

TEST_F(DrawPolygonShape, ExtremePointsAreSafe)
{
    const tagPOINT wide[] = {
        {INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}};
    DrawPolygon(kRed, kBlue, 4, wide);
    EXPECT_EQ(Count(kRedPixel), 64 * 48);
    const tagPOINT sliver[] = {{INT_MIN, 0}, {INT_MAX, 47}, {INT_MIN, 20}};
    DrawPolygon(kGreen, -1, 3, sliver);
    EXPECT_GT(Count(kGreenPixel), 0);
}

using DrawTriangleForms = PortTest;

TEST_F(DrawTriangleForms, TheThreeFormsAgree)
{
    DrawTriangle(kRed, 20, 30, 30, 20, 10, 20);
    std::vector<uint32_t> coordinates = Snapshot();
    EXPECT_GT(Count(kRedPixel), 0);

    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawTriangle(kRed, tagPOINT{20, 30}, tagPOINT{30, 20}, tagPOINT{10, 20});
    EXPECT_EQ(Snapshot(), coordinates);

    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawTriangle(kRed, 20, 30, 10, kTriangleDown);
    EXPECT_EQ(Snapshot(), coordinates);
}

TEST_F(DrawTriangleForms, DirectionsPointTheTipAway)
{
    // Filled as every shape is: the pixels whose centres are inside, so the tip (30, 10) lands
    // on pixel 29 (centre 29.5 is on the inside of the tip's half-pixel) and the base row on
    // 22..36.
    DrawTriangle(kRed, 30, 10, 8, kTriangleUp);
    EXPECT_EQ(Ink(), (InkBounds{22, 10, 36, 17}));
    EXPECT_EQ(port.PixelAt(29, 10), kRedPixel);
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawTriangle(kRed, 30, 20, 8, kTriangleRight);
    EXPECT_EQ(Ink(), (InkBounds{22, 13, 28, 26}));
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawTriangle(kRed, 30, 20, 8, kTriangleLeft);
    EXPECT_EQ(Ink(), (InkBounds{30, 12, 37, 27}));
}

TEST_F(DrawTriangleForms, FrameOutlinesIt)
{
    DrawTriangle(kRed, 30, 10, 8, kTriangleUp, kBlack);
    EXPECT_EQ(port.PixelAt(30, 10), kBlackPixel);
    EXPECT_EQ(port.PixelAt(22, 18), kBlackPixel);
    EXPECT_EQ(port.PixelAt(38, 18), kBlackPixel);
    EXPECT_EQ(port.PixelAt(30, 15), kRedPixel);
}

TEST_F(DrawTriangleForms, SizeBelowOneDrawsNothing)
{
    DrawTriangle(kRed, 30, 10, 0, kTriangleUp, kBlack);
    DrawTriangle(kRed, 30, 10, -4, kTriangleUp, kBlack);
    EXPECT_EQ(CountNot(), 0);
}

using DrawPolyLinePath = PortTest;

TEST_F(DrawPolyLinePath, JoinsThePointsWithoutClosing)
{
    const tagPOINT path[] = {{10, 10}, {20, 10}, {20, 20}};
    DrawPolyLine(kBlue, 1, 3, path);
    EXPECT_EQ(Count(kBluePixel), 21);
    EXPECT_EQ(port.PixelAt(15, 15), kWhitePixel);
}

TEST_F(DrawPolyLinePath, ThickSegmentsAreCentredLikeLines)
{
    const tagPOINT path[] = {{10, 10}, {20, 10}};
    DrawPolyLine(kBlue, 3, 2, path);
    EXPECT_EQ(Ink(), (InkBounds{9, 9, 21, 11}));
}

TEST_F(DrawPolyLinePath, EmptyListsAreSafe)
{
    const tagPOINT one[] = {{5, 5}};
    DrawPolyLine(kBlue, 1, 0, one);
    DrawPolyLine(kBlue, 1, -1, one);
    DrawPolyLine(kBlue, 1, 3, nullptr);
    EXPECT_EQ(CountNot(), 0);
    DrawPolyLine(kBlue, 1, 1, one);
    EXPECT_EQ(Count(kBluePixel), 1);
}

// ---- split boxes and sliders ------------------------------------------------------------------

using DrawSplitBoxSides = PortTest;

TEST_F(DrawSplitBoxSides, TopLeftInTheFirstColourBottomRightInTheSecond)
{
    DrawSplitBox(kRed, kBlue, Rect(10, 10, 20, 20));
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 20, 20}));
    EXPECT_EQ(port.PixelAt(10, 10), kRedPixel);
    EXPECT_EQ(port.PixelAt(15, 10), kRedPixel);
    EXPECT_EQ(port.PixelAt(10, 15), kRedPixel);
    EXPECT_EQ(port.PixelAt(20, 10), kBluePixel);  // top-right corner
    EXPECT_EQ(port.PixelAt(10, 20), kBluePixel);  // bottom-left corner
    EXPECT_EQ(port.PixelAt(20, 15), kBluePixel);
    EXPECT_EQ(port.PixelAt(15, 20), kBluePixel);
    EXPECT_EQ(Count(kRedPixel), 19);
    EXPECT_EQ(Count(kBluePixel), 21);
    EXPECT_EQ(port.PixelAt(15, 15), kWhitePixel);
}

TEST_F(DrawSplitBoxSides, WidthThickensBothHalves)
{
    DrawSplitBox(kRed, kBlue, Rect(10, 10, 30, 30), 2);
    EXPECT_EQ(port.PixelAt(11, 20), kRedPixel);
    EXPECT_EQ(port.PixelAt(12, 20), kWhitePixel);
    EXPECT_EQ(port.PixelAt(29, 20), kBluePixel);
    EXPECT_EQ(port.PixelAt(28, 20), kWhitePixel);
    DrawSplitBox(kRed, kBlue, Rect(40, 40, 30, 30), 2);  // inverted: nothing
    DrawSplitBox(kRed, kBlue, Rect(40, 30, 50, 40), 0);
    EXPECT_EQ(Count(kBluePixel) + Count(kRedPixel), 21 * 21 - 17 * 17);
}

using DrawSliderBar = PortTest;

TEST_F(DrawSliderBar, KnobSitsAtTheValuesShareOfTheBar)
{
    // Bar 10..60 (51 columns): 50 of 100 puts the knob's middle on 10 + trunc(0.5 x 50) = 35.
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 10, 61, 20), 50, 100, false);
    EXPECT_EQ(port.PixelAt(35, 15), kWhitePixel);
    EXPECT_EQ(port.PixelAt(34, 15), kWhitePixel);
    EXPECT_EQ(port.PixelAt(36, 15), kWhitePixel);
    EXPECT_EQ(port.PixelAt(33, 15), kBlackPixel);
    EXPECT_EQ(port.PixelAt(37, 15), kBlackPixel);
    EXPECT_EQ(port.PixelAt(32, 15), 0xFF606060u);  // the part left of the knob
    EXPECT_EQ(port.PixelAt(38, 15), 0xFFC0C0C0u);  // the rest of the bar
    // Framed inside the rectangle.
    EXPECT_EQ(port.PixelAt(10, 15), kBlackPixel);
    EXPECT_EQ(port.PixelAt(60, 15), kBlackPixel);
    EXPECT_EQ(port.PixelAt(20, 10), kBlackPixel);
    EXPECT_EQ(port.PixelAt(20, 19), kBlackPixel);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 60, 19}));
}

TEST_F(DrawSliderBar, EndsAndOutOfRangeValues)
{
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 10, 61, 20), 0, 100, false);
    EXPECT_EQ(port.PixelAt(10, 15), kWhitePixel);  // knob middle on the first column
    EXPECT_EQ(Ink(), (InkBounds{8, 10, 60, 19}));
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 10, 61, 20), 250, 100, false);
    EXPECT_EQ(port.PixelAt(60, 15), kWhitePixel);  // on the last
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 62, 19}));
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 10, 61, 20), -5, 100, false);
    EXPECT_EQ(port.PixelAt(10, 15), kWhitePixel);
    DrawBar(0xFFFFFF, Rect(0, 0, 64, 48));
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 10, 61, 20), 5, 0, false);
    EXPECT_EQ(port.PixelAt(10, 15), kWhitePixel);
}

TEST_F(DrawSliderBar, ShowValueWritesItOnTheBar)
{
    DrawState saved = gDrawState;
    FontRecord* font = MakeFont("Sans", 10, 0);
    SelectFont(font, -1, 0);
    DrawSlider(0xC0C0C0, 0xC0C0C0, Rect(0, 10, 64, 30), 0, 100, false);
    int without = Count(kBlackPixel);
    DrawSlider(0xC0C0C0, 0xC0C0C0, Rect(0, 10, 64, 30), 0, 100, true);
    EXPECT_GT(Count(kBlackPixel), without);
    // The text stays inside the bar.
    EXPECT_EQ(Ink(), (InkBounds{0, 10, 63, 29}));
    RemoveFont(font);
    gDrawState = saved;
}

TEST_F(DrawSliderBar, EmptyRectangleDrawsNothing)
{
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 10, 10, 20), 50, 100, true);
    DrawSlider(0xC0C0C0, 0x606060, Rect(10, 20, 60, 10), 50, 100, true);
    EXPECT_EQ(CountNot(), 0);
}

// ---- no port ----------------------------------------------------------------------------------

TEST(DrawShapes, WithoutAPortNothingHappens)
{
    SetDrawDC(nullptr);
    tagRECT r = Rect(0, 0, 10, 10);
    DrawBox(kRed, r, 1);
    DrawBar(kRed, r);
    DrawLine(kRed, r, 2);
    DrawLine(kRed, 0, 0, 5, 5, 1);
    DrawRoundBox(kRed, r, 4, 1);
    DrawRoundBar(kRed, r, 4);
    DrawCir(kRed, r, 1);
    DrawCirBar(kRed, r);
    DrawCheck(kRed, r, true);
    DrawRadio(kRed, r, true);
    DrawPolygon(kRed, kBlue, 4, kSquare);
    DrawTriangle(kRed, 5, 5, 3, kTriangleUp, kBlue);
    DrawPolyLine(kRed, 1, 4, kSquare);
    DrawSplitBox(kRed, kBlue, r);
    DrawSlider(kRed, kBlue, r, 1, 2, true);
    EXPECT_EQ(gDrawState.penColor, kBlue);

    DrawPort empty;  // no image at all
    SetDrawDC(&empty);
    DrawBar(kRed, r);
    DrawCheck(kRed, r, true);
    EXPECT_EQ(empty.Width(), 0);
    SetDrawDC(nullptr);
}

}  // namespace
