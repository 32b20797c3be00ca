// The pixel gathering every shape and rubber band is built on.

#include "platform/draw/coverage.h"

#include <gtest/gtest.h>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "port_fixture.h"

namespace {

constexpr int64_t kFar = int64_t(1) << 40;  // beyond any 32-bit coordinate

TEST(DrawPixelOfColour, EachChannelGoesThroughSixteenBitsUnchanged)
{
    EXPECT_EQ(PixelOfColour(255), 0xFFFF0000u);
    EXPECT_EQ(PixelOfColour(255L * 65536), 0xFF0000FFu);
    EXPECT_EQ(PixelOfColour(0x00C08040), 0xFF4080C0u);
    EXPECT_EQ(PixelOfColour(0), 0xFF000000u);
    EXPECT_EQ(PixelOfColour(-1), 0xFFFFFFFFu);  // only the three channel bytes count
}

using DrawCoverage = PortTest;

TEST_F(DrawCoverage, OverlappingPiecesCountOnce)
{
    Coverage coverage(&port);
    EXPECT_TRUE(coverage.IsEmpty());
    coverage.AddRect(0, 0, 10, 10);
    coverage.AddRect(5, 5, 15, 15);
    coverage.AddRect(10, 0, 12, 1);  // touching, on the same row
    EXPECT_EQ(coverage.PixelCount(), 100 + 100 - 25 + 2);
    coverage.Invert(0x00FFFFFF);
    EXPECT_EQ(Count(kBlackPixel), 177);
}

TEST_F(DrawCoverage, PaintSetsEveryCoveredPixel)
{
    Coverage coverage(&port);
    coverage.AddFrame(0, 0, 5, 5, 1);
    coverage.Paint(kRedPixel);
    EXPECT_EQ(Count(kRedPixel), 16);
    EXPECT_EQ(Ink(), (InkBounds{0, 0, 4, 4}));
}

TEST_F(DrawCoverage, HalftoneTakesEveryOtherPixelOfTheWindow)
{
    Coverage coverage(&port);
    coverage.AddRect(0, 0, 4, 2);
    coverage.InvertHalftone(0x00FFFFFF);
    EXPECT_EQ(Picture(0, 0, 3, 1), "#.#.\n.#.#\n");
}

TEST_F(DrawCoverage, EverythingIsClippedToThePort)
{
    Coverage coverage(&port);
    coverage.AddRect(-kFar, -kFar, kFar, kFar);
    EXPECT_EQ(coverage.PixelCount(), 64 * 48);
    Coverage outside(&port);
    outside.AddRect(64, 0, 100, 48);
    outside.AddRect(0, 48, 64, 100);
    outside.AddRect(-10, -10, 0, 0);
    outside.AddRoundRect(100, 100, 200, 200, 50, 50);
    outside.AddLine(-5, -5, -5, 100, 4);
    outside.AddPolygon(nullptr, 3);
    EXPECT_TRUE(outside.IsEmpty());
}

TEST_F(DrawCoverage, LinesBeyondThirtyTwoBitsStayExact)
{
    Coverage diagonal(&port);
    diagonal.AddLine(-kFar, -kFar, kFar, kFar, 1);
    EXPECT_EQ(diagonal.PixelCount(), 48);
    Coverage wide(&port);
    wide.AddLine(-kFar, 0, kFar, 0, kFar);  // a pen far larger than the port
    EXPECT_EQ(wide.PixelCount(), 64 * 48);
    Coverage steep(&port);
    steep.AddLine(10, -kFar, 11, kFar, 1);  // the step from 10 to 11 falls at row 0
    steep.Paint(kBlackPixel);
    EXPECT_EQ(Count(kBlackPixel), 48);
    EXPECT_EQ(port.PixelAt(11, 0), kBlackPixel);
    EXPECT_EQ(port.PixelAt(11, 47), kBlackPixel);
}

// The pen rule done the slow way: every point of the line, each stamping its square.
std::vector<uint8_t> StampedLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2, int64_t pen,
                                 int width, int height)
{
    std::vector<uint8_t> grid(size_t(width) * height);
    int64_t dx = x2 - x1, dy = y2 - y1;
    int64_t steps = std::max(std::abs(dx), std::abs(dy));
    auto rounded = [&](int64_t t, int64_t d) {
        if (steps == 0)
            return int64_t(0);
        // floor((2 t d + steps) / (2 steps))
        int64_t num = 2 * t * d + steps, den = 2 * steps;
        return num >= 0 ? num / den : -((-num + den - 1) / den);
    };
    for (int64_t t = 0; t <= steps; ++t) {
        int64_t px = x1 + rounded(t, dx), py = y1 + rounded(t, dy);
        for (int64_t y = py; y < py + pen; ++y)
            for (int64_t x = px; x < px + pen; ++x)
                if (x >= 0 && y >= 0 && x < width && y < height)
                    grid[size_t(y * width + x)] = 1;
    }
    return grid;
}

TEST_F(DrawCoverage, LinesAreThePenStampedAtEveryPoint)
{
    uint32_t seed = 12345;
    auto next = [&](int range) {
        seed = seed * 1103515245u + 12345u;
        return int((seed >> 8) % uint32_t(range)) - range / 4;
    };
    for (int i = 0; i < 400; ++i) {
        int64_t x1 = next(96), y1 = next(72), x2 = next(96), y2 = next(72);
        int64_t pen = 1 + (i % 5);
        port.Resize(64, 48);
        Coverage coverage(&port);
        coverage.AddLine(x1, y1, x2, y2, pen);
        coverage.Paint(kBlackPixel);
        std::vector<uint8_t> expected = StampedLine(x1, y1, x2, y2, pen, 64, 48);
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 64; ++x)
                ASSERT_EQ(port.PixelAt(x, y) == kBlackPixel, expected[size_t(y * 64 + x)] != 0)
                    << "line " << x1 << "," << y1 << " to " << x2 << "," << y2 << " pen " << pen
                    << " at " << x << "," << y;
    }
}

TEST_F(DrawCoverage, PolygonsFillPixelCentres)
{
    const tagPOINT diamond[] = {{20, 10}, {30, 20}, {20, 30}, {10, 20}};
    Coverage coverage(&port);
    coverage.AddPolygon(diamond, 4);
    // Row y holds the pixels whose centres x + 0.5 lie in [20 - h, 20 + h), h = 10 - |y + 0.5 -
    // 20|: a centre on the left edge is in, one on the right edge is out.
    coverage.Paint(kBlackPixel);
    EXPECT_EQ(Ink(), (InkBounds{10, 10, 28, 29}));
    EXPECT_EQ(Count(kBlackPixel), 200);
    EXPECT_EQ(Picture(18, 10, 21, 10), ".#..\n");  // h = 0.5: only the centre 19.5
    EXPECT_EQ(Picture(9, 19, 30, 19), ".###################..\n");
}

TEST_F(DrawCoverage, RoundFramesAreTheShapeLessTheShrunkShape)
{
    Coverage frame(&port);
    frame.AddRoundFrame(10, 10, 30, 30, 20, 20, 2);
    Coverage outer(&port);
    outer.AddRoundRect(10, 10, 30, 30, 20, 20);
    Coverage inner(&port);
    inner.AddRoundRect(12, 12, 28, 28, 16, 16);
    EXPECT_EQ(frame.PixelCount(), outer.PixelCount() - inner.PixelCount());
}

TEST(DrawCoverageNoPort, GathersNothing)
{
    Coverage none(nullptr);
    none.AddRect(0, 0, 10, 10);
    none.AddLine(0, 0, 10, 10, 3);
    EXPECT_TRUE(none.IsEmpty());
    EXPECT_EQ(none.PixelCount(), 0);
    none.Paint(kRedPixel);
    none.Invert(0xFFFFFF);
    none.InvertHalftone(0xFFFFFF);
    DrawPort empty;
    Coverage onEmpty(&empty);
    onEmpty.AddRect(0, 0, 10, 10);
    EXPECT_TRUE(onEmpty.IsEmpty());
}

}  // namespace
