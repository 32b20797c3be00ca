// Text on the backing image, in the registered standard font, read back pixel by pixel.

#include "platform/draw/draw_text.h"

#include <gtest/gtest.h>
#include <climits>
#include <string>

#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"
#include "port_fixture.h"

namespace {

constexpr long kRed = 0x0000FF;
constexpr long kBlack = 0x000000;

class DrawTextTest : public PortTest {
protected:
    void SetUp() override
    {
        PortTest::SetUp();
        port.Resize(200, 60);
        ASSERT_TRUE(LoadStandardFonts());
        savedState = gDrawState;
        Select(12, 0);
    }
    void TearDown() override
    {
        if (font)
            RemoveFont(font);
        gDrawState = savedState;
        PortTest::TearDown();
    }
    void Select(long size, int style, long back = -1, int mode = 0)
    {
        if (font)
            RemoveFont(font);
        font = MakeFont("Geneva", size, style);
        SelectFont(font, back, mode);
    }
    void Clear() { port.Resize(port.Width(), port.Height()); }

    FontRecord* font = nullptr;
    DrawState savedState{};
};

TEST_F(DrawTextTest, CentredTextElevenPixelsWideAtHundredStartsAtNinetyFive)
{
    ASSERT_EQ(GetTextWidth("W"), 11);  // DejaVu Sans at 11 pixels, unhinted
    DrawText(kBlack, "W", 100, 10, kTextCentre);
    std::vector<uint32_t> centred = Snapshot();
    ASSERT_GT(CountNot(), 0);
    Clear();
    DrawText(kBlack, "W", 95, 10, kTextLeft);
    EXPECT_EQ(Snapshot(), centred);
}

TEST_F(DrawTextTest, CentringHalvesTheWidthTowardZero)
{
    ASSERT_EQ(GetTextWidth("W"), 11);
    // Half of 11 is 5, not 6: x = 100 and x = 101 start one pixel apart.
    DrawText(kBlack, "W", 101, 10, kTextCentre);
    std::vector<uint32_t> centred = Snapshot();
    Clear();
    DrawText(kBlack, "W", 96, 10, kTextLeft);
    EXPECT_EQ(Snapshot(), centred);
}

TEST_F(DrawTextTest, RightAlignedTextEndsAtX)
{
    long width = GetTextWidth("Hello, world");
    ASSERT_EQ(width, 65);
    DrawText(kBlack, "Hello, world", 150, 10, kTextRight);
    std::vector<uint32_t> right = Snapshot();
    Clear();
    DrawText(kBlack, "Hello, world", 150 - 65, 10, kTextLeft);
    EXPECT_EQ(Snapshot(), right);
}

TEST_F(DrawTextTest, OtherAlignmentsStartAtX)
{
    DrawText(kBlack, "Key", 20, 10, kTextLeft);
    std::vector<uint32_t> left = Snapshot();
    for (int align : {1, 3, 5, -1, 99}) {
        Clear();
        DrawText(kBlack, "Key", 20, 10, align);
        EXPECT_EQ(Snapshot(), left) << "align " << align;
    }
}

TEST_F(DrawTextTest, InkStaysWithinTheMeasuredWidth)
{
    DrawText(kBlack, "Hello, world", 20, 10, kTextLeft);
    InkBounds ink = Ink();
    EXPECT_GE(ink.left, 20);
    EXPECT_LE(ink.right, 20 + 65 - 1);
    EXPECT_GE(ink.right, 20 + 60);
}

TEST_F(DrawTextTest, BaselineIsTheRecordSizeBelowTheTop)
{
    // "H" has no descender: its last row is the one above the baseline.
    DrawText(kBlack, "H", 20, 10, kTextLeft);
    EXPECT_EQ(Ink().bottom, 10 + 12 - 1);
    Clear();
    Select(20, 0);
    DrawText(kBlack, "H", 20, 10, kTextLeft);
    EXPECT_EQ(Ink().bottom, 10 + 20 - 1);
    // The capital's height follows the pixel size (one less than the record's size).
    int capitalHeight = Ink().bottom - Ink().top + 1;
    EXPECT_GE(capitalHeight, 13);
    EXPECT_LE(capitalHeight, 14);
}

TEST_F(DrawTextTest, GlyphsAreNotSmoothed)
{
    DrawText(kRed, "Camera path, easing & key 12", 2, 10, kTextLeft);
    EXPECT_GT(Count(kRedPixel), 50);
    EXPECT_EQ(Count(kRedPixel) + Count(kWhitePixel), 200 * 60);
}

TEST_F(DrawTextTest, SetsThePenColour)
{
    DrawText(0x00123456, "a", 2, 2, kTextLeft);
    EXPECT_EQ(gDrawState.penColor, 0x00123456);
    EXPECT_GT(Count(0xFF563412u), 0);
}

TEST_F(DrawTextTest, TransparentTextLeavesTheGroundAlone)
{
    DrawBar(0x00FF00, {0, 0, 200, 60});
    DrawText(kBlack, "Hello", 20, 10, kTextLeft);
    EXPECT_EQ(Count(kGreenPixel) + Count(kBlackPixel), 200 * 60);
}

TEST_F(DrawTextTest, OpaqueTextFillsItsBoxWithTheBackground)
{
    Select(12, 0, 0x00FF0000, -1);  // blue background, opaque
    DrawText(kBlack, "Hello", 20, 10, kTextLeft);
    long width = GetTextWidth("Hello");
    InkBounds box = Ink();
    EXPECT_EQ(box.left, 20);
    EXPECT_EQ(box.right, 20 + width - 1);
    // The font's ascent (10 pixels at this size) above the baseline at 22, its descent (3)
    // below it.
    EXPECT_EQ(box.top, 12);
    EXPECT_EQ(box.bottom, 24);
    EXPECT_EQ(Count(kBluePixel) + Count(kBlackPixel) + Count(kWhitePixel), 200 * 60);
    EXPECT_GT(Count(kBluePixel), 0);
    // Every pixel of the box is ink or background.
    for (int y = box.top; y <= box.bottom; ++y)
        for (int x = box.left; x <= box.right; ++x)
            ASSERT_NE(port.PixelAt(x, y), kWhitePixel) << x << "," << y;
}

TEST_F(DrawTextTest, AtMost255BytesAreDrawn)
{
    port.Resize(1200, 30);
    Select(8, 0);
    std::string full(300, 'i');
    DrawText(kBlack, std::string(255, 'i').c_str(), 0, 5, kTextLeft);
    std::vector<uint32_t> cut = Snapshot();
    Clear();
    DrawText(kBlack, full.c_str(), 0, 5, kTextLeft);
    EXPECT_EQ(Snapshot(), cut);
    // The 255 bytes are measured for the alignment too.
    Clear();
    DrawText(kBlack, full.c_str(), 1100, 5, kTextRight);
    EXPECT_LE(Ink().right, 1099);
    EXPECT_GE(Ink().left, 1100 - GetTextWidth(std::string(255, 'i').c_str()));
}

TEST_F(DrawTextTest, ACharacterIsNeverCutInTwo)
{
    port.Resize(1200, 30);
    Select(8, 0);
    std::string text(254, 'o');
    DrawText(kBlack, text.c_str(), 0, 5, kTextLeft);
    std::vector<uint32_t> plain = Snapshot();
    Clear();
    text += "\xC3\xA9";  // a two-byte character across the 255th byte
    DrawText(kBlack, text.c_str(), 0, 5, kTextLeft);
    EXPECT_EQ(Snapshot(), plain);
}

TEST_F(DrawTextTest, TakesTheDrawingOrigin)
{
    DrawText(kBlack, "Key", 20, 10, kTextLeft);
    std::vector<uint32_t> plain = Snapshot();
    Clear();
    port.SetOrigin(-30, 40);
    DrawText(kBlack, "Key", -10, 50, kTextLeft);
    EXPECT_EQ(Snapshot(), plain);
}

TEST_F(DrawTextTest, NothingForNullEmptyOrFarAwayText)
{
    DrawText(kBlack, nullptr, 10, 10, kTextLeft);
    DrawText(kBlack, "", 10, 10, kTextLeft);
    DrawText(kBlack, "far", INT_MIN, INT_MIN, kTextRight);
    DrawText(kBlack, "far", INT_MAX, INT_MAX, kTextCentre);
    DrawText(kBlack, "far", INT_MAX, 10, kTextLeft);
    DrawText(kBlack, "far", 10, INT_MAX, kTextLeft);
    DrawText(kBlack, "far", 10, INT_MIN, kTextLeft);
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawTextTest, PartlyOutsideIsClipped)
{
    DrawText(kBlack, "Clipped", -20, -6, kTextLeft);
    DrawText(kBlack, "Clipped", 180, 50, kTextLeft);
    EXPECT_GT(CountNot(), 0);
}

TEST(DrawTextPort, WithoutAPortNothingHappens)
{
    SetDrawDC(nullptr);
    DrawText(kBlack, "nothing", 0, 0, kTextLeft);
    DrawPort empty;
    SetDrawDC(&empty);
    DrawText(kBlack, "nothing", 0, 0, kTextLeft);
    EXPECT_EQ(empty.Width(), 0);
    SetDrawDC(nullptr);
}

}  // namespace
