// The camera path drawn on a port of its own.

#include "ui/stage/draw_curve.h"

#include <gtest/gtest.h>

#include "doc/camera.h"
#include "platform/draw/draw_port.h"

namespace {

constexpr uint32_t kRgb = 0xFFFFFFu;

KeyStruct Key(float x, float y, int frame)
{
    KeyStruct key{};
    key.XPos = x;
    key.YPos = y;
    key.Width = 100.0f;
    key.Frame = frame;
    return key;
}

class Curve : public testing::Test {
protected:
    void SetUp() override
    {
        port.Resize(200, 100);
        SetDrawDC(&port);
    }
    void TearDown() override { SetDrawDC(nullptr); }
    // Paints the port black so that the white path shows.
    void Blacken()
    {
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                port.Row(y)[x] = 0xFF000000u;
    }
    DrawPort port;
};

TEST_F(Curve, StraightPathAtTheScaleFromTheOrigin)
{
    Blacken();
    KeyStruct keys[2] = {Key(0.0f, 40.0f, 0), Key(200.0f, 40.0f, 30)};
    DrawCurve(2, keys, kEaseNone | kEaseNoCurves, 10, 20, 0.5f, 0xFFFFFF);
    for (int x = 10; x <= 110; x += 10)
        EXPECT_EQ(port.PixelAt(x, 40) & kRgb, kRgb) << x;
    EXPECT_EQ(port.PixelAt(9, 40) & kRgb, 0u);
    EXPECT_EQ(port.PixelAt(111, 40) & kRgb, 0u);
    EXPECT_EQ(port.PixelAt(60, 41) & kRgb, 0u);
}

TEST_F(Curve, OneKeyIsOneDotAndNoKeysDrawNothing)
{
    Blacken();
    KeyStruct key = Key(100.0f, 100.0f, 0);
    DrawCurve(0, &key, 0, 0, 0, 1.0f, 0xFFFFFF);
    EXPECT_EQ(port.PixelAt(100, 100) & kRgb, 0u);
    DrawCurve(1, &key, 0, 0, 0, 0.5f, 0xFFFFFF);
    EXPECT_EQ(port.PixelAt(50, 50) & kRgb, kRgb);
    EXPECT_EQ(port.PixelAt(51, 50) & kRgb, 0u);
}

}  // namespace
