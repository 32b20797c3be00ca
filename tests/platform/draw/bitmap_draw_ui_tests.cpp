// Stored pictures by number, drawn with DrawBitmap.

#include "platform/draw/bitmap_draw.h"

#include <gtest/gtest.h>
#include <climits>

#include "port_fixture.h"

namespace {

constexpr int kPicture = 9101;  // numbers of our own, clear of the program's pictures

// 2 x 2: red, green / blue, transparent black.
const uint32_t kQuarters[] = {0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0x00000000u};

class DrawBitmapTest : public PortTest {
protected:
    void SetUp() override
    {
        PortTest::SetUp();
        ASSERT_TRUE(RegisterBitmap(kPicture, kQuarters, 2, 2));
    }
    void TearDown() override
    {
        ForgetBitmap(kPicture);
        ForgetBitmap(kPicture + 1);
        PortTest::TearDown();
    }
};

TEST_F(DrawBitmapTest, DrawsThePictureScaledToTheRectangle)
{
    EXPECT_TRUE(DrawBitmap({10, 10, 14, 16}, kPicture));
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 13, 15}));
    EXPECT_EQ(port.PixelAt(10, 10), kRedPixel);
    EXPECT_EQ(port.PixelAt(11, 12), kRedPixel);
    EXPECT_EQ(port.PixelAt(12, 10), kGreenPixel);
    EXPECT_EQ(port.PixelAt(10, 13), kBluePixel);
    EXPECT_EQ(port.PixelAt(13, 15), kBlackPixel);  // copy mode ignores alpha
    EXPECT_EQ(Count(kRedPixel), 6);
}

TEST_F(DrawBitmapTest, TransparentModeSkipsPixelsWithoutAlpha)
{
    EXPECT_TRUE(DrawBitmap({10, 10, 12, 12}, kPicture, kBitmapTransparent));
    EXPECT_EQ(port.PixelAt(11, 11), kWhitePixel);
    EXPECT_EQ(port.PixelAt(10, 11), kBluePixel);
    EXPECT_EQ(CountNot(), 3);
}

TEST_F(DrawBitmapTest, ReducingPicksPixels)
{
    const uint32_t stripes[] = {0xFFFF0000u, 0xFFFFFFFFu, 0xFFFF0000u, 0xFFFFFFFFu};
    ASSERT_TRUE(RegisterBitmap(kPicture + 1, stripes, 4, 1));
    EXPECT_TRUE(DrawBitmap({0, 0, 2, 1}, kPicture + 1));
    EXPECT_EQ(Count(kRedPixel), 2);
}

TEST_F(DrawBitmapTest, UnknownPictureOrEmptyRectangleDrawsNothing)
{
    EXPECT_FALSE(DrawBitmap({0, 0, 10, 10}, kPicture + 1));
    EXPECT_FALSE(DrawBitmap({0, 0, 0, 10}, kPicture));
    EXPECT_FALSE(DrawBitmap({0, 10, 10, 5}, kPicture));
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawBitmapTest, NoPortDrawsNothing)
{
    SetDrawDC(nullptr);
    EXPECT_FALSE(DrawBitmap({0, 0, 10, 10}, kPicture));
    DrawPort empty;
    SetDrawDC(&empty);
    EXPECT_FALSE(DrawBitmap({0, 0, 10, 10}, kPicture));
    SetDrawDC(&port);
    EXPECT_EQ(CountNot(), 0);
}

TEST_F(DrawBitmapTest, ClippedToThePortAndTakesTheOrigin)
{
    port.SetOrigin(-5, -5);
    EXPECT_TRUE(DrawBitmap({-7, -7, -3, -3}, kPicture));
    // Window (-5, -5) is image (0, 0), and the rectangle's lower right quarter: each picture
    // pixel is 2 x 2, so that is the transparent black one.
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 1, 1}));
    EXPECT_EQ(Count(kBlackPixel), 4);

    port.SetOrigin(0, 0);
    EXPECT_TRUE(DrawBitmap({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, kPicture));
    EXPECT_EQ(Count(kBlackPixel), 64 * 48);  // (0, 0) is just past the middle
}

TEST(BitmapRegistry, KeepsACopyAndReplacesByNumber)
{
    uint32_t pixels[] = {0xFF102030u};
    ASSERT_TRUE(RegisterBitmap(kPicture, pixels, 1, 1));
    pixels[0] = 0;
    EXPECT_TRUE(HasBitmap(kPicture));
    DrawPort port;
    port.Resize(4, 4);
    SetDrawDC(&port);
    DrawBitmap({0, 0, 1, 1}, kPicture);
    EXPECT_EQ(port.PixelAt(0, 0), 0xFF102030u);

    const uint32_t other[] = {0xFF405060u};
    ASSERT_TRUE(RegisterBitmap(kPicture, other, 1, 1));
    DrawBitmap({0, 0, 1, 1}, kPicture);
    EXPECT_EQ(port.PixelAt(0, 0), 0xFF405060u);

    ForgetBitmap(kPicture);
    EXPECT_FALSE(HasBitmap(kPicture));
    ForgetBitmap(kPicture);  // twice is harmless
    SetDrawDC(nullptr);
}

TEST(BitmapRegistry, RefusesEmptyPictures)
{
    const uint32_t pixel[] = {0xFFFFFFFFu};
    EXPECT_FALSE(RegisterBitmap(kPicture, nullptr, 1, 1));
    EXPECT_FALSE(RegisterBitmap(kPicture, pixel, 0, 1));
    EXPECT_FALSE(RegisterBitmap(kPicture, pixel, 1, -1));
    EXPECT_FALSE(HasBitmap(kPicture));
}

tagRECT sPaintedRect;
int sPaintedPicture;

bool PaintMarker(const tagRECT& rect, int picture)
{
    sPaintedRect = rect;
    sPaintedPicture = picture;
    return picture != 0;
}

TEST(BitmapRegistry, PaintersPaintTheirOwnPictures)
{
    DrawPort port;
    port.Resize(4, 4);
    SetDrawDC(&port);
    ASSERT_TRUE(RegisterBitmapPainter(kPicture, PaintMarker));
    EXPECT_TRUE(HasBitmap(kPicture));
    EXPECT_TRUE(DrawBitmap({1, 2, 3, 4}, kPicture));
    EXPECT_EQ(sPaintedPicture, kPicture);
    EXPECT_EQ(sPaintedRect.left, 1);
    EXPECT_EQ(sPaintedRect.bottom, 4);

    EXPECT_FALSE(RegisterBitmapPainter(kPicture, nullptr));  // forgets it
    EXPECT_FALSE(HasBitmap(kPicture));
    SetDrawDC(nullptr);
}

}  // namespace
