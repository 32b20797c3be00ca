// The colour picker's state, layout and edits: levels from colours and colours from levels, what a
// click lands on, dragging over the controls and stepping through the textures of
// "TextureFolder". Textures are real picture files, so this runs with a QApplication.

#include "platform/dialog/color_picker.h"

#include <gtest/gtest.h>
#include <QImage>
#include <QString>
#include <string>
#include <vector>

#include "platform/dialog/texture_list.h"
#include "platform/ini/settings.h"
#include "platform/util/colour.h"
#include "support/temp_dir.h"

namespace {

constexpr int kX = 30;  // where the pickers of these tests lie, window pixels
constexpr int kY = 40;

long Pack(long r, long g, long b) { return r | (g << 8) | (b << 16); }

long ColourOfLevels(long hue, long luminance, long saturation)
{
    long r, g, b;
    HLS2RGB(hue, luminance, saturation, &r, &g, &b);
    return Pack(r, g, b);
}

void SetTextureFolder(const std::string& folder)
{
    std::string value = folder;
    SetIniItem("TextureFolder", value.data());
}

// A picture file of one colour (0xRRGGBB); the format follows the name's extension.
bool SavePicture(const std::string& path, uint32_t rgb, int width = 8, int height = 8)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(0xFF000000u | rgb);
    return image.save(QString::fromStdString(path));
}

class ColorPickerTest : public testing::Test {
protected:
    void SetUp() override { SetTextureFolder(""); }
    void TearDown() override { SetTextureFolder(""); }

    ColorPicker Opened(long colour = 0x0000FF)
    {
        ColorPicker picker;
        OpenColorPicker(&picker, kX, kY, colour, "Choose Color");
        return picker;
    }
};

// ---------------------------------------------------------------------------------------------
// Opening, levels and colours

TEST_F(ColorPickerTest, OpeningTakesTheLevelsFromTheColour)
{
    ColorPicker red = Opened(0x0000FF);
    EXPECT_EQ(red.hue, 0);
    EXPECT_EQ(red.luminance, 120);
    EXPECT_EQ(red.saturation, 240);

    ColorPicker green = Opened(0x00FF00);
    EXPECT_EQ(green.hue, 80);
    EXPECT_EQ(green.luminance, 120);
    EXPECT_EQ(green.saturation, 240);

    ColorPicker blue = Opened(0xFF0000);
    EXPECT_EQ(blue.hue, 160);

    ColorPicker grey = Opened(0x808080);
    EXPECT_EQ(grey.hue, 0);
    EXPECT_EQ(grey.saturation, 0);
    EXPECT_EQ(grey.luminance, 120);

    long h, l, s;
    RGB2HLS(0x56, 0x34, 0x12, &h, &l, &s);
    ColorPicker brown = Opened(0x123456);
    EXPECT_EQ(brown.hue, h);
    EXPECT_EQ(brown.luminance, l);
    EXPECT_EQ(brown.saturation, s);
}

TEST_F(ColorPickerTest, OpeningKeepsTheGivenValueAsBothOldAndShownColour)
{
    ColorPicker picker;
    OpenColorPicker(&picker, 12, 34, 0x7F123456, "Pick");
    EXPECT_EQ(picker.x, 12);
    EXPECT_EQ(picker.y, 34);
    EXPECT_EQ(picker.original, 0x7F123456);
    EXPECT_EQ(picker.colour, 0x7F123456) << "nothing is edited yet";
    EXPECT_EQ(picker.title, "Pick");
    EXPECT_EQ(picker.texture, -1);
    EXPECT_TRUE(picker.preview.empty());
    // The top byte plays no part in the levels.
    long h, l, s;
    RGB2HLS(0x56, 0x34, 0x12, &h, &l, &s);
    EXPECT_EQ(picker.hue, h);
    EXPECT_EQ(picker.luminance, l);
    EXPECT_EQ(picker.saturation, s);
}

TEST_F(ColorPickerTest, OpeningForgetsWhatThePickerHeldBefore)
{
    ColorPicker picker;
    picker.textures = {"/nowhere/a.png"};
    picker.texture = 0;
    picker.preview.assign(10, 1u);
    OpenColorPicker(&picker, 0, 0, 0, nullptr);
    EXPECT_TRUE(picker.textures.empty());
    EXPECT_EQ(picker.texture, -1);
    EXPECT_TRUE(picker.preview.empty());
    EXPECT_EQ(picker.title, "") << "a null title is an empty one";
}

TEST_F(ColorPickerTest, OpeningListsTheTexturesOfTheTextureFolderSetting)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("b.png"), 0x00FF00));
    ASSERT_TRUE(SavePicture(dir.File("a.bmp"), 0xFF0000));
    SetTextureFolder(dir.Path());
    ColorPicker picker = Opened();
    ASSERT_EQ(picker.textures.size(), 2u);
    EXPECT_EQ(picker.textures[0], dir.File("a.bmp"));
    EXPECT_EQ(picker.textures[1], dir.File("b.png"));
    EXPECT_EQ(picker.texture, -1) << "none is shown until asked for";
    EXPECT_TRUE(picker.preview.empty());
}

TEST(SetPickerLevels, KeepsEachLevelWithinZeroTo240)
{
    ColorPicker picker;
    SetPickerLevels(&picker, -5, 300, 999);
    EXPECT_EQ(picker.hue, 0);
    EXPECT_EQ(picker.luminance, 240);
    EXPECT_EQ(picker.saturation, 240);
    EXPECT_EQ(picker.colour, 0xFFFFFF) << "full luminance is white";

    SetPickerLevels(&picker, 241, -1, -100);
    EXPECT_EQ(picker.hue, 240);
    EXPECT_EQ(picker.luminance, 0);
    EXPECT_EQ(picker.saturation, 0);
    EXPECT_EQ(picker.colour, 0x000000);
}

TEST(SetPickerLevels, MakesTheColourThroughHLS2RGB)
{
    ColorPicker picker;
    SetPickerLevels(&picker, 0, 120, 240);
    EXPECT_EQ(picker.colour, 0x0000FF) << "red in the low byte";
    SetPickerLevels(&picker, 80, 120, 240);
    EXPECT_EQ(picker.colour, 0x00FF00);
    SetPickerLevels(&picker, 160, 120, 240);
    EXPECT_EQ(picker.colour, 0xFF0000);
    for (long hue : {7L, 37L, 119L, 201L, 240L}) {
        SetPickerLevels(&picker, hue, 99, 150);
        EXPECT_EQ(picker.colour, ColourOfLevels(hue, 99, 150)) << "hue " << hue;
    }
}

TEST(SetPickerLevels, LeavesTheOldColourAlone)
{
    ColorPicker picker;
    picker.original = 0x123456;
    SetPickerLevels(&picker, 80, 120, 240);
    EXPECT_EQ(picker.original, 0x123456);
}

TEST(SetPickerColour, KeepsTheExactColourAndClearsTheTopByte)
{
    ColorPicker picker;
    SetPickerColour(&picker, 0xAB123456);
    EXPECT_EQ(picker.colour, 0x123456);
    long h, l, s;
    RGB2HLS(0x56, 0x34, 0x12, &h, &l, &s);
    EXPECT_EQ(picker.hue, h);
    EXPECT_EQ(picker.luminance, l);
    EXPECT_EQ(picker.saturation, s);
}

TEST(SetPickerColour, KeepsAColourTheLevelsCannotMakeAgain)
{
    // Near black, the 0..240 levels are coarser than the channels.
    const long colour = 0x090807;
    long h, l, s;
    RGB2HLS(0x07, 0x08, 0x09, &h, &l, &s);
    ASSERT_NE(ColourOfLevels(h, l, s), colour) << "pick a colour that does not survive the levels";
    ColorPicker picker;
    SetPickerColour(&picker, colour);
    EXPECT_EQ(picker.colour, colour);
    EXPECT_EQ(picker.luminance, l);
}

// ---------------------------------------------------------------------------------------------
// Layout and hit test

TEST_F(ColorPickerTest, PartsLieWhereTheLayoutSays)
{
    ColorPicker p = Opened();
    auto expect = [](const tagRECT& r, int left, int top, int right, int bottom) {
        EXPECT_EQ(r.left, kX + left);
        EXPECT_EQ(r.top, kY + top);
        EXPECT_EQ(r.right, kX + right);
        EXPECT_EQ(r.bottom, kY + bottom);
    };
    expect(PickerFrame(p), 0, 0, 376, 246);
    expect(PickerHueStrip(p), 84, 37, 325, 49);
    expect(PickerLuminanceBar(p), 84, 63, 325, 73);
    expect(PickerSaturationBar(p), 84, 87, 325, 97);
    expect(PickerPreviousButton(p), 84, 108, 104, 124);
    expect(PickerNextButton(p), 108, 108, 128, 124);
    expect(PickerTexture(p), 84, 132, 84 + kTexturePreviewWidth, 132 + kTexturePreviewHeight);
    expect(PickerSwatch(p), 196, 132, 368, 196);
    expect(PickerCancelButton(p), 240, 220, 300, 236);
    expect(PickerOkButton(p), 308, 220, 368, 236);
}

TEST_F(ColorPickerTest, HitTestAnswersOutsideOnlyBeyondThePanelsEdges)
{
    ColorPicker p = Opened();
    EXPECT_EQ(HitTestPicker(p, kX, kY), PickerPart::kNothing);
    EXPECT_EQ(HitTestPicker(p, kX + 376, kY + 246), PickerPart::kNothing) << "edges belong to it";
    EXPECT_EQ(HitTestPicker(p, kX + 376, kY), PickerPart::kNothing);
    EXPECT_EQ(HitTestPicker(p, kX, kY + 246), PickerPart::kNothing);
    EXPECT_EQ(HitTestPicker(p, kX - 1, kY + 100), PickerPart::kOutside);
    EXPECT_EQ(HitTestPicker(p, kX + 377, kY + 100), PickerPart::kOutside);
    EXPECT_EQ(HitTestPicker(p, kX + 100, kY - 1), PickerPart::kOutside);
    EXPECT_EQ(HitTestPicker(p, kX + 100, kY + 247), PickerPart::kOutside);
    EXPECT_EQ(HitTestPicker(p, -100000, 5000000), PickerPart::kOutside);
}

TEST_F(ColorPickerTest, TheTitleLabelsSwatchAndGapsAreNothing)
{
    ColorPicker p = Opened();
    EXPECT_EQ(HitTestPicker(p, kX + 100, kY + 16), PickerPart::kNothing) << "title bar";
    EXPECT_EQ(HitTestPicker(p, kX + 40, kY + 42), PickerPart::kNothing) << "the hue label";
    EXPECT_EQ(HitTestPicker(p, kX + 250, kY + 160), PickerPart::kNothing) << "the swatch";
    EXPECT_EQ(HitTestPicker(p, kX + 200, kY + 57), PickerPart::kNothing) << "between rows";
    EXPECT_EQ(HitTestPicker(p, kX + 305, kY + 228), PickerPart::kNothing) << "between buttons";
}

TEST(HitTestPicker, StripAnswersFourPixelsBeyondItsEnds)
{
    ColorPicker p;
    p.x = kX;
    p.y = kY;
    const int row = kY + 42;
    EXPECT_EQ(HitTestPicker(p, kX + 84, row), PickerPart::kHue);
    EXPECT_EQ(HitTestPicker(p, kX + 324, row), PickerPart::kHue);
    EXPECT_EQ(HitTestPicker(p, kX + 80, row), PickerPart::kHue);
    EXPECT_EQ(HitTestPicker(p, kX + 79, row), PickerPart::kNothing);
    EXPECT_EQ(HitTestPicker(p, kX + 328, row), PickerPart::kHue);
    EXPECT_EQ(HitTestPicker(p, kX + 329, row), PickerPart::kNothing);
}

TEST(HitTestPicker, StripTakesItsWholeTwentyPixelRow)
{
    ColorPicker p;
    p.x = kX;
    p.y = kY;
    EXPECT_EQ(HitTestPicker(p, kX + 200, kY + 35), PickerPart::kNothing);
    EXPECT_EQ(HitTestPicker(p, kX + 200, kY + 36), PickerPart::kHue);
    EXPECT_EQ(HitTestPicker(p, kX + 200, kY + 52), PickerPart::kHue) << "the marker below it";
    EXPECT_EQ(HitTestPicker(p, kX + 200, kY + 55), PickerPart::kHue);
    EXPECT_EQ(HitTestPicker(p, kX + 200, kY + 56), PickerPart::kNothing);
}

TEST(HitTestPicker, SlidersAnswerOverTheirRowsAndFourPixelsBeyondTheirEnds)
{
    ColorPicker p;
    p.x = kX;
    p.y = kY;
    struct Row {
        int top;
        PickerPart part;
    };
    for (Row row : {Row{60, PickerPart::kLuminance}, Row{84, PickerPart::kSaturation}}) {
        int top = kY + row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 200, top - 1), PickerPart::kNothing) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 200, top), row.part) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 200, top + 19), row.part) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 200, top + 20), PickerPart::kNothing) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 80, top + 8), row.part) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 79, top + 8), PickerPart::kNothing) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 328, top + 8), row.part) << row.top;
        EXPECT_EQ(HitTestPicker(p, kX + 329, top + 8), PickerPart::kNothing) << row.top;
    }
}

TEST(HitTestPicker, ButtonsAndTextureAnswerInsideTheirRectanglesOnly)
{
    ColorPicker p;
    p.x = kX;
    p.y = kY;
    struct Case {
        tagRECT rect;
        PickerPart part;
    };
    for (Case c : {Case{PickerPreviousButton(p), PickerPart::kPreviousTexture},
                   Case{PickerNextButton(p), PickerPart::kNextTexture},
                   Case{PickerTexture(p), PickerPart::kTexture},
                   Case{PickerCancelButton(p), PickerPart::kCancel},
                   Case{PickerOkButton(p), PickerPart::kOk}}) {
        const tagRECT& r = c.rect;
        int midX = (r.left + r.right) / 2, midY = (r.top + r.bottom) / 2;
        EXPECT_EQ(HitTestPicker(p, r.left, r.top), c.part) << r.left;
        EXPECT_EQ(HitTestPicker(p, r.right - 1, r.bottom - 1), c.part) << r.left;
        EXPECT_EQ(HitTestPicker(p, midX, midY), c.part) << r.left;
        // Right and bottom edges are not theirs.
        EXPECT_NE(HitTestPicker(p, r.right, midY), c.part) << r.left;
        EXPECT_NE(HitTestPicker(p, midX, r.bottom), c.part) << r.left;
        EXPECT_NE(HitTestPicker(p, r.left - 1, midY), c.part) << r.left;
        EXPECT_NE(HitTestPicker(p, midX, r.top - 1), c.part) << r.left;
    }
}

TEST(HitTestPicker, FollowsThePickersPosition)
{
    ColorPicker p;
    p.x = -50;
    p.y = 1000;
    EXPECT_EQ(HitTestPicker(p, -50 + 200, 1000 + 68), PickerPart::kLuminance);
    EXPECT_EQ(HitTestPicker(p, 200, 68), PickerPart::kOutside);
}

// ---------------------------------------------------------------------------------------------
// Dragging

TEST_F(ColorPickerTest, DraggingTheStripTakesTheHueOfTheColumn)
{
    ColorPicker p = Opened(0x0000FF);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kHue, kX + 84 + 160, kY + 42));
    EXPECT_EQ(p.hue, 160);
    EXPECT_EQ(p.luminance, 120);
    EXPECT_EQ(p.saturation, 240);
    EXPECT_EQ(p.colour, 0xFF0000);
    EXPECT_EQ(p.original, 0x0000FF);
    // The row does not matter once dragging.
    EXPECT_TRUE(DragPicker(&p, PickerPart::kHue, kX + 84 + 80, kY + 500));
    EXPECT_EQ(p.colour, 0x00FF00);
}

TEST_F(ColorPickerTest, DraggingKeepsTheLevelWithinZeroTo240)
{
    ColorPicker p = Opened(0x0000FF);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kLuminance, kX - 1000, kY));
    EXPECT_EQ(p.luminance, 0);
    EXPECT_EQ(p.colour, 0x000000);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kLuminance, kX + 84 + 241, kY));
    EXPECT_EQ(p.luminance, 240);
    EXPECT_EQ(p.colour, 0xFFFFFF);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kSaturation, kX + 84 - 3, kY));
    EXPECT_EQ(p.saturation, 0);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kHue, 2000000000, kY));
    EXPECT_EQ(p.hue, 240);
}

TEST_F(ColorPickerTest, DraggingEachSliderMakesTheColourFromTheNewLevel)
{
    ColorPicker p = Opened(0x0000FF);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kLuminance, kX + 84 + 200, kY + 68));
    EXPECT_EQ(p.luminance, 200);
    EXPECT_EQ(p.colour, ColourOfLevels(0, 200, 240));
    EXPECT_TRUE(DragPicker(&p, PickerPart::kSaturation, kX + 84 + 60, kY + 92));
    EXPECT_EQ(p.saturation, 60);
    EXPECT_EQ(p.hue, 0);
    EXPECT_EQ(p.luminance, 200);
    EXPECT_EQ(p.colour, ColourOfLevels(0, 200, 60));
}

TEST_F(ColorPickerTest, DraggingAnswersWhetherAnythingChanged)
{
    ColorPicker p = Opened(0x0000FF);
    EXPECT_FALSE(DragPicker(&p, PickerPart::kLuminance, kX + 84 + 120, kY + 68))
        << "already at 120";
    EXPECT_EQ(p.colour, 0x0000FF);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kLuminance, kX + 84 + 121, kY + 68));
    EXPECT_FALSE(DragPicker(&p, PickerPart::kLuminance, kX + 84 + 121, kY + 68));
    // A grey keeps its colour over the hue strip, but the hue itself moves.
    ColorPicker grey = Opened(0x808080);
    EXPECT_TRUE(DragPicker(&grey, PickerPart::kHue, kX + 84 + 100, kY + 42));
    EXPECT_EQ(grey.hue, 100);
    EXPECT_EQ(grey.colour, 0x808080);
}

TEST_F(ColorPickerTest, DraggingTheOtherPartsChangesNothing)
{
    ColorPicker p = Opened(0x123456);
    for (PickerPart part :
         {PickerPart::kOutside, PickerPart::kNothing, PickerPart::kOk, PickerPart::kCancel,
          PickerPart::kPreviousTexture, PickerPart::kNextTexture}) {
        EXPECT_FALSE(DragPicker(&p, part, kX + 84 + 10, kY + 42));
        EXPECT_EQ(p.colour, 0x123456);
    }
    EXPECT_FALSE(DragPicker(&p, PickerPart::kTexture, kX + 90, kY + 140)) << "no texture shown";
    EXPECT_EQ(p.colour, 0x123456);
}

TEST_F(ColorPickerTest, DraggingOverTheTextureTakesThePixelsColourExactly)
{
    ColorPicker p = Opened(0x0000FF);
    p.preview.assign(size_t(kTexturePreviewWidth) * kTexturePreviewHeight, 0x00808080u);
    p.preview[5 * kTexturePreviewWidth + 10] = 0x00112233u;  // 0x00RRGGBB
    p.preview[0] = 0x00010203u;
    p.preview[size_t(kTexturePreviewHeight) * kTexturePreviewWidth - 1] = 0x00ABCDEFu;
    EXPECT_TRUE(DragPicker(&p, PickerPart::kTexture, kX + 84 + 10, kY + 132 + 5));
    EXPECT_EQ(p.colour, 0x332211) << "red 0x11 in the low byte";
    long h, l, s;
    RGB2HLS(0x11, 0x22, 0x33, &h, &l, &s);
    EXPECT_EQ(p.hue, h);
    EXPECT_EQ(p.luminance, l);
    EXPECT_EQ(p.saturation, s);
    // Beyond the picture the nearest pixel is taken.
    EXPECT_TRUE(DragPicker(&p, PickerPart::kTexture, kX - 500, kY - 500));
    EXPECT_EQ(p.colour, 0x030201);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kTexture, kX + 5000, kY + 5000));
    EXPECT_EQ(p.colour, 0xEFCDAB);
    EXPECT_FALSE(DragPicker(&p, PickerPart::kTexture, kX + 5000, kY + 5000));
}

// ---------------------------------------------------------------------------------------------
// Textures

class PickerTextures : public ColorPickerTest {
protected:
    void SetUp() override
    {
        ColorPickerTest::SetUp();
        ASSERT_TRUE(SavePicture(dir.File("1-red.png"), 0xFF0000));
        ASSERT_TRUE(SavePicture(dir.File("2-green.bmp"), 0x00FF00));
        ASSERT_TRUE(SavePicture(dir.File("3-blue.png"), 0x0000FF));
        SetTextureFolder(dir.Path());
    }

    pxtest::TempDir dir;
};

TEST_F(PickerTextures, SteppingForwardShowsEachTextureAndStopsAtTheLast)
{
    ColorPicker p = Opened();
    ASSERT_EQ(p.textures.size(), 3u);
    const uint32_t expected[3] = {0xFF0000u, 0x00FF00u, 0x0000FFu};
    for (int i = 0; i < 3; ++i) {
        StepPickerTexture(&p, 1);
        ASSERT_EQ(p.texture, i);
        ASSERT_EQ(p.preview.size(), size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
        EXPECT_EQ(p.preview[0], expected[i]) << i;
        EXPECT_EQ(p.preview.back(), expected[i]) << i;
    }
    StepPickerTexture(&p, 1);
    EXPECT_EQ(p.texture, 2) << "no further than the last";
    EXPECT_EQ(p.preview.front(), 0x0000FFu);
    StepPickerTexture(&p, 100);
    EXPECT_EQ(p.texture, 2);
}

TEST_F(PickerTextures, SteppingBackStopsAtNone)
{
    ColorPicker p = Opened();
    StepPickerTexture(&p, -1);
    EXPECT_EQ(p.texture, -1);
    EXPECT_TRUE(p.preview.empty());
    StepPickerTexture(&p, 2);
    EXPECT_EQ(p.texture, 1);
    EXPECT_EQ(p.preview.front(), 0x00FF00u);
    StepPickerTexture(&p, -1);
    EXPECT_EQ(p.texture, 0);
    EXPECT_EQ(p.preview.front(), 0xFF0000u);
    StepPickerTexture(&p, -1);
    EXPECT_EQ(p.texture, -1);
    EXPECT_TRUE(p.preview.empty()) << "none shows no picture";
    StepPickerTexture(&p, -7);
    EXPECT_EQ(p.texture, -1);
}

TEST_F(PickerTextures, SteppingDoesNotTouchTheColour)
{
    ColorPicker p = Opened(0x123456);
    StepPickerTexture(&p, 1);
    EXPECT_EQ(p.colour, 0x123456);
    EXPECT_EQ(p.original, 0x123456);
}

TEST_F(PickerTextures, AShownTextureGivesItsColourWhenDraggedOver)
{
    ColorPicker p = Opened(0x000000);
    StepPickerTexture(&p, 2);
    EXPECT_TRUE(DragPicker(&p, PickerPart::kTexture, kX + 84 + 40, kY + 132 + 30));
    EXPECT_EQ(p.colour, 0x00FF00);
}

TEST(PickerTexturesWithoutAFolder, SteppingDoesNothing)
{
    ColorPicker p;
    StepPickerTexture(&p, 1);
    EXPECT_EQ(p.texture, -1);
    StepPickerTexture(&p, -1);
    EXPECT_EQ(p.texture, -1);
    EXPECT_TRUE(p.preview.empty());
}

TEST_F(ColorPickerTest, ATextureThatCannotBeReadShowsNoneButKeepsItsName)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("a.png"), 0x336699));
    ASSERT_TRUE(pxtest::WriteText(dir.File("b.png"), "not a picture at all"));
    SetTextureFolder(dir.Path());
    ColorPicker p = Opened(0x0000FF);
    ASSERT_EQ(p.textures.size(), 2u);
    StepPickerTexture(&p, 1);
    ASSERT_FALSE(p.preview.empty());
    StepPickerTexture(&p, 1);
    EXPECT_EQ(p.texture, 1) << "the unreadable one is still the one chosen";
    EXPECT_EQ(p.textures[1], dir.File("b.png"));
    EXPECT_TRUE(p.preview.empty()) << "the good one's picture is gone";
    EXPECT_FALSE(DragPicker(&p, PickerPart::kTexture, kX + 90, kY + 140));
    EXPECT_EQ(p.colour, 0x0000FF);
    StepPickerTexture(&p, -1);
    EXPECT_EQ(p.preview.front(), 0x336699u);
}

}  // namespace
