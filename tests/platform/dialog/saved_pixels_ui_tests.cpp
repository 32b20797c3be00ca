// The pixels a panel covers, kept and put back.

#include "platform/dialog/saved_pixels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "platform/draw/draw_port.h"

namespace {

class SavedPixelsTest : public testing::Test {
protected:
    void SetUp() override
    {
        port.Resize(40, 30);
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                port.Row(y)[x] = 0xFF000000u | uint32_t(x) << 8 | uint32_t(y);
        before = Pixels();
    }

    std::vector<uint32_t> Pixels() const
    {
        std::vector<uint32_t> pixels;
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                pixels.push_back(port.PixelAt(x, y));
        return pixels;
    }

    void Paint(uint32_t colour)
    {
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                port.Row(y)[x] = colour;
    }

    DrawPort port;
    std::vector<uint32_t> before;
};

TEST_F(SavedPixelsTest, PutsBackTheRectangleEdgesIncluded)
{
    SavedPixels saved;
    saved.Save(&port, {5, 6, 10, 12});
    Paint(0xFFFFFFFFu);
    saved.Restore();
    for (int y = 0; y < port.Height(); ++y) {
        for (int x = 0; x < port.Width(); ++x) {
            bool inside = x >= 5 && x <= 10 && y >= 6 && y <= 12;
            EXPECT_EQ(port.PixelAt(x, y), inside ? before[size_t(y) * 40 + size_t(x)] : 0xFFFFFFFFu)
                << x << "," << y;
        }
    }
}

TEST_F(SavedPixelsTest, WindowOriginMovesTheRectangleOnTheImage)
{
    port.SetOrigin(100, 200);
    SavedPixels saved;
    saved.Save(&port, {100, 200, 101, 201});
    Paint(0);
    saved.Restore();
    EXPECT_EQ(port.PixelAt(0, 0), before[0]);
    EXPECT_EQ(port.PixelAt(1, 1), before[41]);
    EXPECT_EQ(port.PixelAt(2, 2), 0u);
}

TEST_F(SavedPixelsTest, PartsOutsideTheImageAreLeftOut)
{
    SavedPixels saved;
    saved.Save(&port, {-1000000000, -5, 1000000000, 1000000000});
    Paint(0);
    saved.Restore();
    EXPECT_EQ(Pixels(), before);
}

TEST_F(SavedPixelsTest, RectangleWhollyOutsideKeepsNothing)
{
    SavedPixels saved;
    saved.Save(&port, {50, 50, 60, 60});
    Paint(0);
    saved.Restore();
    EXPECT_EQ(port.PixelAt(0, 0), 0u);
    saved.Save(&port, {2147483000, 2147483000, 2147483647, 2147483647});
    saved.Restore();
    saved.Save(&port, {10, 10, 5, 5});  // backwards
    saved.Restore();
    EXPECT_EQ(port.PixelAt(7, 7), 0u);
}

TEST_F(SavedPixelsTest, ImageResizedSinceIsLeftAlone)
{
    SavedPixels saved;
    saved.Save(&port, {0, 0, 39, 29});
    port.Resize(20, 10);
    saved.Restore();
    EXPECT_EQ(port.PixelAt(0, 0), 0xFFFFFFFFu);  // a new image is white
}

TEST_F(SavedPixelsTest, NullPortKeepsNothing)
{
    SavedPixels saved;
    saved.Save(nullptr, {0, 0, 10, 10});
    saved.Restore();
    EXPECT_EQ(Pixels(), before);
}

}  // namespace
