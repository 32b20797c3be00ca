// DrawGetColor on a backing image, read back pixel by pixel: the panel, the title bar, the hue
// strip, the sliders, the texture and the swatch of old and new colour.

#include <gtest/gtest.h>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/dialog/color_picker.h"
#include "platform/dialog/get_color.h"
#include "platform/dialog/texture_list.h"
#include "platform/draw/draw_port.h"
#include "platform/draw/font.h"
#include "platform/util/colour.h"

namespace {

constexpr int kX = 10;  // the picker's corner on the image
constexpr int kY = 6;
constexpr uint32_t kBackground = 0xFF123456u;  // the image before the picker
constexpr uint32_t kFace = 0xFFC0C0C0u;
constexpr uint32_t kLight = 0xFFFFFFFFu;
constexpr uint32_t kShadow = 0xFF404040u;
constexpr uint32_t kBlack = 0xFF000000u;
constexpr uint32_t kWhite = 0xFFFFFFFFu;
constexpr uint32_t kSliderDone = 0xFF606060u;
constexpr uint32_t kNoTexture = 0xFFA0A0A0u;

// A colour (0x00BBGGRR) as the image holds it (0xFFRRGGBB).
uint32_t Pixel(long colour)
{
    return 0xFF000000u | uint32_t(colour & 0xFF) << 16 | uint32_t(colour & 0xFF00) |
           uint32_t((colour >> 16) & 0xFF);
}

uint32_t HuePixel(long hue)
{
    long r, g, b;
    HLS2RGB(hue, 120, 240, &r, &g, &b);
    return 0xFF000000u | uint32_t(r) << 16 | uint32_t(g) << 8 | uint32_t(b);
}

class DrawGetColorTest : public testing::Test {
protected:
    void SetUp() override
    {
        port.Resize(400, 260);
        Fill(kBackground);
        SetDrawDC(&port);
        picker = Picker(0x0000FF, "Choose Color");
    }
    void TearDown() override { SetDrawDC(nullptr); }

    static ColorPicker Picker(long colour, const char* title, int x = kX, int y = kY)
    {
        ColorPicker p;
        p.x = x;
        p.y = y;
        p.original = colour;
        p.title = title;
        SetPickerColour(&p, colour);
        return p;
    }

    void Fill(uint32_t pixel)
    {
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                port.Row(y)[x] = pixel;
    }

    // Pixels relative to the picker's corner.
    uint32_t At(int dx, int dy) const { return port.PixelAt(kX + dx, kY + dy); }

    // Pixels of the rectangle (inclusive, relative to the picker) that are `pixel`.
    int Count(int left, int top, int right, int bottom, uint32_t pixel) const
    {
        int n = 0;
        for (int y = top; y <= bottom; ++y)
            for (int x = left; x <= right; ++x)
                n += At(x, y) == pixel;
        return n;
    }

    std::vector<uint32_t> Region(int left, int top, int right, int bottom) const
    {
        std::vector<uint32_t> pixels;
        for (int y = top; y <= bottom; ++y)
            for (int x = left; x <= right; ++x)
                pixels.push_back(At(x, y));
        return pixels;
    }

    DrawPort port;
    ColorPicker picker;
};

TEST_F(DrawGetColorTest, FillsThePanelWithTheDialogFace)
{
    DrawGetColor(picker);
    EXPECT_EQ(At(4, 200), kFace);
    EXPECT_EQ(At(1, 1), kFace);
    EXPECT_EQ(At(375, 245), kFace);
    EXPECT_EQ(At(40, 230), kFace);
    EXPECT_EQ(At(200, 210), kFace);
}

TEST_F(DrawGetColorTest, FramesThePanelRaisedWithItsEdgesIncluded)
{
    DrawGetColor(picker);
    EXPECT_EQ(At(0, 0), kLight);
    EXPECT_EQ(At(100, 0), kLight);
    EXPECT_EQ(At(0, 100), kLight);
    EXPECT_EQ(At(100, 246), kShadow);
    EXPECT_EQ(At(376, 100), kShadow);
    EXPECT_EQ(At(376, 0), kShadow) << "the shadow takes the top-right corner";
    EXPECT_EQ(At(0, 246), kShadow) << "and the bottom-left one";
    EXPECT_EQ(At(376, 246), kShadow);
}

TEST_F(DrawGetColorTest, DrawsNothingOutsideThePanel)
{
    DrawGetColor(picker);
    int changed = 0;
    for (int y = 0; y < port.Height(); ++y) {
        for (int x = 0; x < port.Width(); ++x) {
            bool inside = x >= kX && x <= kX + kPickerWidth && y >= kY && y <= kY + kPickerHeight;
            if (!inside)
                changed += port.PixelAt(x, y) != kBackground;
        }
    }
    EXPECT_EQ(changed, 0);
}

TEST_F(DrawGetColorTest, TitleBarIsBlackWithTheTitleInWhiteAroundTheMiddle)
{
    DrawGetColor(picker);
    EXPECT_EQ(At(12, 16), kBlack);
    EXPECT_EQ(At(364, 16), kBlack);
    EXPECT_EQ(At(100, 8), kBlack);
    EXPECT_EQ(At(100, 23), kBlack);
    EXPECT_EQ(At(100, 24), kFace) << "the bar's bottom edge is not filled";
    EXPECT_EQ(At(100, 7), kFace);

    int leftmost = 1000, rightmost = -1;
    for (int y = 9; y <= 23; ++y) {
        for (int x = 9; x <= 366; ++x) {
            if (At(x, y) != kWhite)
                continue;
            leftmost = std::min(leftmost, x);
            rightmost = std::max(rightmost, x);
        }
    }
    ASSERT_GE(rightmost, 0) << "no title drawn";
    EXPECT_GT(rightmost - leftmost, 20);
    EXPECT_NEAR((leftmost + rightmost) / 2.0, kPickerWidth / 2.0, 4.0);
}

TEST_F(DrawGetColorTest, AnEmptyTitleLeavesTheBarBlack)
{
    picker.title.clear();
    DrawGetColor(picker);
    EXPECT_EQ(Count(12, 10, 364, 22, kBlack), (364 - 12 + 1) * (22 - 10 + 1));
}

TEST_F(DrawGetColorTest, EveryHueStripColumnHasItsHuesColour)
{
    DrawGetColor(picker);
    for (int hue = 0; hue <= 240; ++hue) {
        for (int row = 37; row <= 48; ++row)
            ASSERT_EQ(At(84 + hue, row), HuePixel(hue)) << "hue " << hue << " row " << row;
    }
    EXPECT_EQ(At(84, 42), 0xFFFF0000u) << "hue 0 is red";
    EXPECT_EQ(At(84 + 80, 42), 0xFF00FF00u);
    EXPECT_EQ(At(84 + 160, 42), 0xFF0000FFu);
    EXPECT_EQ(At(84 + 240, 42), 0xFFFF0000u) << "and so is 240";
}

TEST_F(DrawGetColorTest, HueStripIsFramedJustOutside)
{
    DrawGetColor(picker);
    EXPECT_EQ(At(83, 42), kBlack);
    EXPECT_EQ(At(325, 42), kBlack);
    EXPECT_EQ(At(200, 36), kBlack);
    EXPECT_EQ(At(200, 49), kBlack);
}

TEST_F(DrawGetColorTest, MarkerUnderTheStripPointsAtTheHue)
{
    SetPickerLevels(&picker, 100, 120, 240);
    DrawGetColor(picker);
    EXPECT_GT(Count(84 + 100, 50, 84 + 100, 55, kBlack), 0);
    EXPECT_EQ(Count(84 + 30, 50, 84 + 60, 55, kBlack), 0);
    EXPECT_EQ(Count(84 + 140, 50, 84 + 200, 55, kBlack), 0);

    Fill(kBackground);
    SetPickerLevels(&picker, 30, 120, 240);
    DrawGetColor(picker);
    EXPECT_GT(Count(84 + 30, 50, 84 + 30, 55, kBlack), 0);
    EXPECT_EQ(Count(84 + 90, 50, 84 + 110, 55, kBlack), 0);
}

TEST_F(DrawGetColorTest, SlidersAreFilledUpToTheirLevels)
{
    SetPickerLevels(&picker, 0, 120, 240);
    DrawGetColor(picker);
    // Luminance 120: the knob at column 84 + 120.
    EXPECT_EQ(At(84 + 60, 68), kSliderDone);
    EXPECT_EQ(At(84 + 116, 68), kSliderDone);
    EXPECT_EQ(At(84 + 120, 68), kWhite);
    EXPECT_EQ(At(84 + 124, 68), kFace);
    EXPECT_EQ(At(84 + 200, 68), kFace);
    // Saturation 240: done all the way.
    EXPECT_EQ(At(84 + 5, 92), kSliderDone);
    EXPECT_EQ(At(84 + 235, 92), kSliderDone);
    EXPECT_EQ(At(84 + 240, 92), kWhite);
}

TEST_F(DrawGetColorTest, ValuesAreWrittenRightOfTheControls)
{
    SetPickerLevels(&picker, 0, 120, 240);
    DrawGetColor(picker);
    std::vector<uint32_t> before = Region(332, 36, 375, 52);
    EXPECT_GT(Count(332, 36, 375, 52, kBlack), 0);
    EXPECT_GT(Count(9, 36, 78, 52, kBlack), 0) << "the label";

    Fill(kBackground);
    SetPickerLevels(&picker, 200, 120, 240);
    DrawGetColor(picker);
    EXPECT_NE(Region(332, 36, 375, 52), before);
}

TEST_F(DrawGetColorTest, SwatchShowsTheOldColourLeftAndTheNewOneRight)
{
    picker = Picker(0x7F0000FF, "Choose Color");  // the top byte is not shown
    SetPickerLevels(&picker, 160, 120, 240);
    ASSERT_EQ(picker.colour, 0xFF0000);
    DrawGetColor(picker);
    const uint32_t red = 0xFFFF0000u, blue = 0xFF0000FFu;
    EXPECT_EQ(At(196, 132), red);
    EXPECT_EQ(At(281, 195), red);
    EXPECT_EQ(Count(196, 132, 281, 195, red), 86 * 64);
    EXPECT_EQ(At(282, 132), blue);
    EXPECT_EQ(At(367, 195), blue);
    EXPECT_EQ(Count(282, 132, 367, 195, blue), 86 * 64);
    EXPECT_EQ(At(195, 160), kBlack);
    EXPECT_EQ(At(368, 160), kBlack);
    EXPECT_EQ(At(250, 131), kBlack);
    EXPECT_EQ(At(250, 196), kBlack);
}

TEST_F(DrawGetColorTest, SwatchHalvesMatchWhenNothingChanged)
{
    picker = Picker(0x336699, "Choose Color");
    DrawGetColor(picker);
    EXPECT_EQ(Count(196, 132, 367, 195, Pixel(0x336699)), 172 * 64);
}

TEST_F(DrawGetColorTest, TheNewColoursChannelsAreWrittenUnderTheSwatch)
{
    DrawGetColor(picker);
    std::vector<uint32_t> red = Region(196, 198, 375, 214);
    EXPECT_GT(Count(196, 198, 375, 214, kBlack), 0);
    Fill(kBackground);
    picker = Picker(0x00FF00, "Choose Color");
    DrawGetColor(picker);
    EXPECT_NE(Region(196, 198, 375, 214), red);
}

TEST_F(DrawGetColorTest, TextureAreaIsPlainGreyWithoutATexture)
{
    DrawGetColor(picker);
    EXPECT_EQ(
        Count(84, 132, 84 + kTexturePreviewWidth - 1, 132 + kTexturePreviewHeight - 1, kNoTexture),
        kTexturePreviewWidth * kTexturePreviewHeight);
    EXPECT_EQ(At(83, 150), kBlack);
    EXPECT_EQ(At(84 + kTexturePreviewWidth, 150), kBlack);
    EXPECT_EQ(At(120, 131), kBlack);
    EXPECT_EQ(At(120, 132 + kTexturePreviewHeight), kBlack);
}

TEST_F(DrawGetColorTest, TextureAreaShowsThePreviewPixelForPixelTopRowFirst)
{
    picker.textures = {"/pictures/numbered.png"};
    picker.texture = 0;
    picker.preview.resize(size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
    for (int y = 0; y < kTexturePreviewHeight; ++y)
        for (int x = 0; x < kTexturePreviewWidth; ++x)
            picker.preview[size_t(y) * kTexturePreviewWidth + size_t(x)] =
                uint32_t(x) << 16 | uint32_t(y) << 8 | 0x40;
    DrawGetColor(picker);
    for (int y = 0; y < kTexturePreviewHeight; ++y)
        for (int x = 0; x < kTexturePreviewWidth; ++x)
            ASSERT_EQ(At(84 + x, 132 + y), 0xFF000040u | uint32_t(x) << 16 | uint32_t(y) << 8)
                << x << ", " << y;
}

TEST_F(DrawGetColorTest, AnUnreadableTextureShowsGreyButItsName)
{
    DrawGetColor(picker);
    std::vector<uint32_t> none = Region(134, 108, 368, 124);
    EXPECT_GT(Count(134, 108, 368, 124, kBlack), 0) << "\"None\" is written";

    Fill(kBackground);
    picker.textures = {"/pictures/Brushed Steel.png"};
    picker.texture = 0;
    picker.preview.clear();
    DrawGetColor(picker);
    EXPECT_NE(Region(134, 108, 368, 124), none);
    EXPECT_EQ(
        Count(84, 132, 84 + kTexturePreviewWidth - 1, 132 + kTexturePreviewHeight - 1, kNoTexture),
        kTexturePreviewWidth * kTexturePreviewHeight);
}

TEST_F(DrawGetColorTest, TheTexturesNameIsShownWithoutItsFolder)
{
    picker.textures = {"/a/b/Brushed.png"};
    picker.texture = 0;
    DrawGetColor(picker);
    std::vector<uint32_t> withFolder = Region(134, 108, 368, 124);
    Fill(kBackground);
    picker.textures = {"/elsewhere/entirely/Brushed.png"};
    DrawGetColor(picker);
    EXPECT_EQ(Region(134, 108, 368, 124), withFolder);
}

TEST_F(DrawGetColorTest, TheTexturesWholeNameIsShownUnderADeepFolder)
{
    picker.textures = {"/a/Brushed.png"};
    picker.texture = 0;
    DrawGetColor(picker);
    std::vector<uint32_t> shallow = Region(134, 108, 368, 124);
    Fill(kBackground);
    // A path longer than the texts the dialogs build (256 characters).
    picker.textures = {"/" + std::string(200, 'f') + "/" + std::string(50, 'g') + "/Brushed.png"};
    ASSERT_GT(picker.textures[0].size(), 256u);
    DrawGetColor(picker);
    EXPECT_EQ(Region(134, 108, 368, 124), shallow);
}

TEST_F(DrawGetColorTest, ALongTextureNameStaysLeftOfThePanelsEdge)
{
    picker.textures = {"/p/" + std::string(200, 'W') + ".png"};
    picker.texture = 0;
    DrawGetColor(picker);
    EXPECT_GT(Count(134, 108, 368, 124, kBlack), 0);
    EXPECT_EQ(Count(369, 108, 375, 124, kBlack), 0);
}

TEST_F(DrawGetColorTest, ButtonsAreWhiteRoundedBoxesWithBlackFramesAndLabels)
{
    DrawGetColor(picker);
    for (tagRECT r : {PickerOkButton(picker), PickerCancelButton(picker),
                      PickerPreviousButton(picker), PickerNextButton(picker)}) {
        int mid = (r.left + r.right) / 2 - kX;
        EXPECT_EQ(At(mid, r.top - kY), kBlack) << r.left;
        EXPECT_EQ(At(mid, r.bottom - kY), kBlack) << r.left << ": the bottom edge is framed";
        EXPECT_EQ(At(r.left - kX, r.top - kY), kFace) << r.left << ": rounded corner";
        int left = r.left - kX + 1, top = r.top - kY + 1;
        int right = r.right - kX - 1, bottom = r.bottom - kY - 1;
        EXPECT_GT(Count(left, top, right, bottom, kWhite), 0) << r.left;
        EXPECT_GT(Count(left, top, right, bottom, kBlack), 0) << r.left << ": the label";
    }
}

TEST_F(DrawGetColorTest, DrawsTheSameWhereverThePickerLies)
{
    DrawGetColor(picker);
    std::vector<uint32_t> here = Region(0, 0, kPickerWidth, kPickerHeight);
    Fill(kBackground);
    ColorPicker moved = picker;
    moved.x = kX + 13;
    moved.y = kY + 7;
    DrawGetColor(moved);
    std::vector<uint32_t> there;
    for (int y = 0; y <= kPickerHeight; ++y)
        for (int x = 0; x <= kPickerWidth; ++x)
            there.push_back(port.PixelAt(moved.x + x, moved.y + y));
    EXPECT_EQ(there, here);
}

TEST_F(DrawGetColorTest, LeavesTheDialogFontSelected)
{
    pCurFont = nullptr;
    DrawGetColor(picker);
    EXPECT_NE(pCurFont, nullptr);
}

TEST(DrawGetColor, DrawsNothingWithoutAPort)
{
    SetDrawDC(nullptr);
    ColorPicker picker;
    picker.title = "Choose Color";
    DrawGetColor(picker);  // must not crash
    EXPECT_EQ(GetDrawDC(), nullptr);
}

}  // namespace
