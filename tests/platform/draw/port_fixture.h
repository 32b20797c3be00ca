#pragma once
// A white drawing port made current for each test, and ways to read it back.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/draw/draw_port.h"

constexpr uint32_t kWhitePixel = 0xFFFFFFFFu;
constexpr uint32_t kBlackPixel = 0xFF000000u;
constexpr uint32_t kRedPixel = 0xFFFF0000u;
constexpr uint32_t kGreenPixel = 0xFF00FF00u;
constexpr uint32_t kBluePixel = 0xFF0000FFu;

// The smallest rectangle holding every pixel that is not the background; right and bottom are
// the last such column and row (inclusive). All -1 when there is none.
struct InkBounds {
    int left = -1, top = -1, right = -1, bottom = -1;
    bool operator==(const InkBounds&) const = default;
};

class PortTest : public testing::Test {
protected:
    void SetUp() override
    {
        port.Resize(64, 48);
        SetDrawDC(&port);
    }
    void TearDown() override { SetDrawDC(nullptr); }

    std::vector<uint32_t> Snapshot() const
    {
        std::vector<uint32_t> pixels;
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                pixels.push_back(port.PixelAt(x, y));
        return pixels;
    }

    int Count(uint32_t pixel) const
    {
        int count = 0;
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                count += port.PixelAt(x, y) == pixel;
        return count;
    }

    int CountNot(uint32_t background = kWhitePixel) const
    {
        return port.Width() * port.Height() - Count(background);
    }

    InkBounds Ink(uint32_t background = kWhitePixel) const
    {
        InkBounds bounds;
        for (int y = 0; y < port.Height(); ++y) {
            for (int x = 0; x < port.Width(); ++x) {
                if (port.PixelAt(x, y) == background)
                    continue;
                if (bounds.left < 0) {
                    bounds = {x, y, x, y};
                    continue;
                }
                bounds.left = std::min(bounds.left, x);
                bounds.right = std::max(bounds.right, x);
                bounds.top = std::min(bounds.top, y);
                bounds.bottom = std::max(bounds.bottom, y);
            }
        }
        return bounds;
    }

    // Rows of '#' (not the background) and '.', for readable failure messages and shape checks.
    std::string Picture(int left, int top, int right, int bottom,
                        uint32_t background = kWhitePixel) const
    {
        std::string text;
        for (int y = top; y <= bottom; ++y) {
            for (int x = left; x <= right; ++x)
                text += port.PixelAt(x, y) == background ? '.' : '#';
            text += '\n';
        }
        return text;
    }

    // Paints every pixel a different colour, so that a change anywhere shows.
    void FillWithPattern()
    {
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                port.Row(y)[x] = 0xFF000000u | uint32_t(x * 4) << 16 | uint32_t(y * 5) << 8 |
                                 uint32_t((x * 7 + y * 3) & 0xFF);
    }

    // True when the non-background pixels are the same after mirroring left-right within
    // columns left..right (inclusive) and top-bottom within rows top..bottom.
    bool IsSymmetric(int left, int top, int right, int bottom) const
    {
        for (int y = top; y <= bottom; ++y) {
            for (int x = left; x <= right; ++x) {
                uint32_t here = port.PixelAt(x, y);
                if (here != port.PixelAt(left + right - x, y) ||
                    here != port.PixelAt(x, top + bottom - y))
                    return false;
            }
        }
        return true;
    }

    DrawPort port;
};
