// DrawGetColor: painting the colour picker. Where each part goes is in color_picker.cpp.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/dialog_rows.h"
#include "platform/dialog/get_color.h"
#include "platform/dialog/texture_list.h"
#include "platform/draw/dib_draw.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/draw/font.h"
#include "platform/util/text.h"

namespace {

constexpr long kBlack = 0x000000;
constexpr long kWhite = 0xFFFFFF;
constexpr long kSliderDone = 0x606060;
constexpr long kNoTexture = 0xA0A0A0;
constexpr int kLabelEnd = 78;
constexpr int kValueLeft = 332;
constexpr int kNameLeft = 134;
constexpr int kNameRight = 368;
constexpr int kButtonCorner = 10;
constexpr int kSmallButtonCorner = 6;
constexpr int kMarkerSize = 4;
constexpr long kHueStripLevel = 120;       // the strip shows every hue at full colour:
constexpr long kHueStripSaturation = 240;  // middle luminance, whole saturation

// Texts sit 2 pixels below their row's top, as in the described dialogs.
void DrawRowText(const ColorPicker& p, int rowTop, const char* label, long value, bool showValue)
{
    DrawText(kBlack, label, p.x + kLabelEnd, p.y + rowTop + 2, kTextRight);
    if (!showValue)
        return;
    char text[24];
    std::snprintf(text, sizeof text, "%ld", value);
    DrawText(kBlack, text, p.x + kValueLeft, p.y + rowTop + 2, kTextLeft);
}

void DrawButton(const tagRECT& rect, int corner, const char* text)
{
    DrawRoundBar(kWhite, rect, corner);
    DrawRoundBox(kBlack, rect, corner, 1);
    DrawText(kBlack, text, rect.left + (rect.right - rect.left) / 2, rect.bottom - 14, kTextCentre);
}

// A frame just outside a filled area (whose right and bottom edges are not its own).
void FrameAround(const tagRECT& area)
{
    DrawBox(kBlack, {area.left - 1, area.top - 1, area.right, area.bottom}, 1);
}

void DrawHueStrip(const ColorPicker& p)
{
    tagRECT strip = PickerHueStrip(p);
    for (long hue = 0; hue <= kPickerLevels; ++hue) {
        int column = strip.left + static_cast<int>(hue);
        DrawBar(ColourFromLevels(hue, kHueStripLevel, kHueStripSaturation),
                {column, strip.top, column + 1, strip.bottom});
    }
    FrameAround(strip);
    DrawTriangle(kBlack, strip.left + static_cast<int>(p.hue), strip.bottom + 1, kMarkerSize,
                 kTriangleUp);
}

void DrawTextureRow(const ColorPicker& p)
{
    DrawRowText(p, 108, "Texture:", 0, false);
    DrawButton(PickerPreviousButton(p), kSmallButtonCorner, "<");
    DrawButton(PickerNextButton(p), kSmallButtonCorner, ">");
    // A name of up to 255 characters, the ellipsis and a terminator.
    char name[kDialogTextSize + 4] = "None";
    if (p.texture >= 0) {
        // The end of the path, which holds the file's name however deep its folder lies.
        const std::string& path = p.textures[size_t(p.texture)];
        size_t keep = std::min(path.size(), size_t(kDialogTextSize - 1));
        std::snprintf(name, kDialogTextSize, "%s", path.c_str() + (path.size() - keep));
        StripFilePath(name);
    }
    ShrinkTextWidth(name, kNameRight - kNameLeft, "...");
    DrawText(kBlack, name, p.x + kNameLeft, p.y + 110, kTextLeft);

    tagRECT area = PickerTexture(p);
    if (p.preview.size() == size_t(kTexturePreviewWidth) * kTexturePreviewHeight) {
        // Top row first: a negative height tells DIBDraw so.
        DIBDraw(area, {0, 0, kTexturePreviewWidth, kTexturePreviewHeight},
                reinterpret_cast<const unsigned char*>(p.preview.data()), kTexturePreviewWidth,
                -kTexturePreviewHeight, kTexturePreviewWidth * 4, 32);
    } else {
        DrawBar(kNoTexture, area);
    }
    FrameAround(area);
}

void DrawSwatch(const ColorPicker& p)
{
    tagRECT swatch = PickerSwatch(p);
    int middle = swatch.left + (swatch.right - swatch.left) / 2;
    DrawBar(p.original & 0xFFFFFF, {swatch.left, swatch.top, middle, swatch.bottom});
    DrawBar(p.colour & 0xFFFFFF, {middle, swatch.top, swatch.right, swatch.bottom});
    FrameAround(swatch);
    char text[64];
    std::snprintf(text, sizeof text, "Red %ld  Green %ld  Blue %ld", p.colour & 0xFF,
                  (p.colour >> 8) & 0xFF, (p.colour >> 16) & 0xFF);
    DrawText(kBlack, text, swatch.left, swatch.bottom + 4, kTextLeft);
}

}  // namespace

void DrawGetColor(const ColorPicker& p)
{
    SelectDialogFont();
    tagRECT frame = PickerFrame(p);
    DrawBar(kDialogFace, frame);
    DrawSplitBox(kDialogLight, kDialogShadow, frame);
    DrawRoundBar(kBlack, {p.x + 8, p.y + 8, p.x + kPickerWidth - 8, p.y + 24}, 4);
    DrawText(kWhite, p.title.c_str(), p.x + kPickerWidth / 2, p.y + 9, kTextCentre);

    DrawRowText(p, 36, "Hue:", p.hue, true);
    DrawHueStrip(p);
    DrawRowText(p, 60, "Luminance:", p.luminance, true);
    DrawSlider(kDialogFace, kSliderDone, PickerLuminanceBar(p), p.luminance, kPickerLevels, false);
    DrawRowText(p, 84, "Saturation:", p.saturation, true);
    DrawSlider(kDialogFace, kSliderDone, PickerSaturationBar(p), p.saturation, kPickerLevels,
               false);
    DrawTextureRow(p);
    DrawSwatch(p);

    DrawButton(PickerCancelButton(p), kButtonCorner, "Cancel");
    DrawButton(PickerOkButton(p), kButtonCorner, "OK");
}
