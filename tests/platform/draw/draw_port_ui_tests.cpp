// The backing image windows draw into, and the current port.

#include <gtest/gtest.h>

#include "platform/draw/draw_port.h"

namespace {

TEST(DrawPort, NewPortIsEmptyAndResizeGivesAWhiteImage)
{
    DrawPort port;
    EXPECT_EQ(port.Width(), 0);
    EXPECT_EQ(port.Row(0), nullptr);
    port.Resize(30, 20);
    EXPECT_EQ(port.Width(), 30);
    EXPECT_EQ(port.Height(), 20);
    EXPECT_EQ(port.PixelAt(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(port.PixelAt(29, 19), 0xFFFFFFFFu);
}

TEST(DrawPort, RowsAreTopFirstAndPixelsOutsideReadZero)
{
    DrawPort port;
    port.Resize(4, 3);
    port.Row(2)[3] = 0xFF123456u;
    EXPECT_EQ(port.PixelAt(3, 2), 0xFF123456u);
    EXPECT_EQ(port.PixelAt(4, 2), 0u);
    EXPECT_EQ(port.PixelAt(-1, 0), 0u);
    EXPECT_EQ(port.Row(3), nullptr);
    port.Resize(0, 5);
    EXPECT_EQ(port.Width(), 0);
}

TEST(DrawPort, OriginIsKeptUntilTheImageIsRemade)
{
    DrawPort port;
    port.Resize(4, 3);
    EXPECT_EQ(port.OriginX(), 0);
    port.SetOrigin(120, -30);
    EXPECT_EQ(port.OriginX(), 120);
    EXPECT_EQ(port.OriginY(), -30);
    port.Row(0)[0] = 0xFF000000u;  // writing pixels keeps it
    EXPECT_EQ(port.OriginX(), 120);
    port.Resize(5, 5);
    EXPECT_EQ(port.OriginX(), 0);
    EXPECT_EQ(port.OriginY(), 0);
}

TEST(DrawPort, CurrentPortIsForgottenWhenItGoes)
{
    {
        DrawPort port;
        SetDrawDC(&port);
        EXPECT_EQ(GetDrawDC(), &port);
    }
    EXPECT_EQ(GetDrawDC(), nullptr);
}

}  // namespace
