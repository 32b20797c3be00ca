// The transport buttons' pictures.

#include "platform/wnd/button_pictures.h"

#include <gtest/gtest.h>
#include <set>
#include <vector>

#include "platform/draw/draw_port.h"

namespace {

// The picture drawn alone on a white 19 x 19 port.
std::vector<uint32_t> Paint(int picture, bool* drawn = nullptr)
{
    DrawPort port;
    port.Resize(19, 19);
    SetDrawDC(&port);
    tagRECT r = {0, 0, 19, 19};
    bool result = DrawButtonPicture(r, picture);
    if (drawn)
        *drawn = result;
    std::vector<uint32_t> pixels;
    for (int y = 0; y < 19; ++y)
        for (int x = 0; x < 19; ++x)
            pixels.push_back(port.PixelAt(x, y));
    SetDrawDC(nullptr);
    return pixels;
}

TEST(ButtonPictures, EveryNumberFrom102To112IsAPictureOfItsOwn)
{
    std::set<std::vector<uint32_t>> seen;
    for (int picture = kFirstButtonPicture; picture <= kLastButtonPicture; ++picture) {
        bool drawn = false;
        std::vector<uint32_t> pixels = Paint(picture, &drawn);
        EXPECT_TRUE(drawn) << picture;
        EXPECT_TRUE(IsButtonPicture(picture));
        seen.insert(pixels);
    }
    EXPECT_EQ(seen.size(), 11u);
}

TEST(ButtonPictures, OtherNumbersDrawNothing)
{
    for (int picture : {0, 101, 113, 120, 123, -1}) {
        bool drawn = true;
        std::vector<uint32_t> pixels = Paint(picture, &drawn);
        EXPECT_FALSE(drawn) << picture;
        EXPECT_FALSE(IsButtonPicture(picture));
        for (uint32_t p : pixels)
            ASSERT_EQ(p, 0xFFFFFFFFu);
    }
}

TEST(ButtonPictures, MainWindowButtonHasANormalAndAPressedPicture)
{
    bool normalDrawn = false;
    bool pressedDrawn = false;
    std::vector<uint32_t> normal = Paint(kPanelButtonNormal, &normalDrawn);
    std::vector<uint32_t> pressed = Paint(kPanelButtonPressed, &pressedDrawn);
    EXPECT_TRUE(normalDrawn);
    EXPECT_TRUE(pressedDrawn);
    EXPECT_NE(normal, pressed);
    EXPECT_EQ(normal[3 * 19 + 3], 0xFFD4D4D4u);
    EXPECT_EQ(pressed[3 * 19 + 3], 0xFFA8A8A8u);
    // The tick is drawn in black on the normal face.
    int ink = 0;
    for (uint32_t p : normal)
        ink += p == 0xFF000000u;
    EXPECT_GT(ink, 4);
}

TEST(ButtonPictures, DisabledSymbolIsGreyAndPressedFaceDarker)
{
    std::vector<uint32_t> normal = Paint(108);
    std::vector<uint32_t> pressed = Paint(103);
    std::vector<uint32_t> disabled = Paint(104);
    auto count = [](const std::vector<uint32_t>& pixels, uint32_t colour) {
        int n = 0;
        for (uint32_t p : pixels)
            n += p == colour;
        return n;
    };
    EXPECT_GT(count(normal, 0xFF000000u), 4);
    EXPECT_EQ(count(disabled, 0xFF000000u), 0);
    EXPECT_GT(count(disabled, 0xFF909090u), 4);
    // Inside the bevel, the face colour.
    EXPECT_EQ(normal[3 * 19 + 3], 0xFFD4D4D4u);
    EXPECT_EQ(pressed[3 * 19 + 3], 0xFFA8A8A8u);
}

TEST(ButtonPictures, NeedACurrentPortAndARectangle)
{
    SetDrawDC(nullptr);
    tagRECT r = {0, 0, 19, 19};
    EXPECT_FALSE(DrawButtonPicture(r, 102));
    DrawPort port;
    port.Resize(19, 19);
    SetDrawDC(&port);
    tagRECT empty = {5, 5, 5, 9};
    EXPECT_FALSE(DrawButtonPicture(empty, 102));
    SetDrawDC(nullptr);
}

TEST(ButtonPictures, AreTakenFromTheDrawingOrigin)
{
    DrawPort port;
    port.Resize(40, 40);
    port.SetOrigin(10, 10);
    SetDrawDC(&port);
    tagRECT r = {10, 10, 29, 29};
    ASSERT_TRUE(DrawButtonPicture(r, 102));
    EXPECT_NE(port.PixelAt(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(port.PixelAt(19, 19), 0xFFFFFFFFu);
    SetDrawDC(nullptr);
}

}  // namespace
