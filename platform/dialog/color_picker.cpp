#include "platform/dialog/color_picker.h"

#include <algorithm>

#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/texture_list.h"
#include "platform/ini/settings.h"
#include "platform/util/colour.h"

namespace {

constexpr int kControlLeft = 84;  // every control starts here, one column per level
constexpr int kReach = 4;         // strip and sliders take clicks this far beyond their ends
constexpr int kRowBand = 20;      // the band of a control row that takes its clicks
constexpr int kFolderSize = 256;  // "TextureFolder": a full path of up to 255 characters

tagRECT Offset(const ColorPicker& picker, int left, int top, int right, int bottom)
{
    return {picker.x + left, picker.y + top, picker.x + right, picker.y + bottom};
}

bool Inside(const tagRECT& r, int x, int y)
{
    return x >= r.left && x < r.right && y >= r.top && y < r.bottom;
}

// The band of a level control's row, with its reach beyond the ends.
bool InBand(const tagRECT& bar, int rowTop, int x, int y)
{
    return x >= bar.left - kReach && x < bar.right + kReach && y >= rowTop && y < rowTop + kRowBand;
}

long LevelAt(const tagRECT& bar, int x)
{
    return std::clamp<long>(long(x) - bar.left, 0, kPickerLevels);
}

long PackColour(long r, long g, long b) { return r | (g << 8) | (b << 16); }

}  // namespace

long ColourFromLevels(long hue, long luminance, long saturation)
{
    long r, g, b;
    HLS2RGB(hue, luminance, saturation, &r, &g, &b);
    return PackColour(r, g, b);
}

void OpenColorPicker(ColorPicker* picker, int x, int y, long colour, const char* title)
{
    *picker = ColorPicker();
    picker->x = std::clamp(x, -kDialogPositionLimit, kDialogPositionLimit);
    picker->y = std::clamp(y, -kDialogPositionLimit, kDialogPositionLimit);
    picker->original = colour;
    picker->colour = colour;
    long h, l, s;
    RGB2HLS(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF, &h, &l, &s);
    picker->hue = h;
    picker->luminance = l;
    picker->saturation = s;
    picker->title = title ? title : "";
    char folder[kFolderSize];
    GetIniString("TextureFolder", "", folder, kFolderSize - 1);
    picker->textures = ListTextures(folder);
}

void SetPickerLevels(ColorPicker* picker, long hue, long luminance, long saturation)
{
    picker->hue = std::clamp<long>(hue, 0, kPickerLevels);
    picker->luminance = std::clamp<long>(luminance, 0, kPickerLevels);
    picker->saturation = std::clamp<long>(saturation, 0, kPickerLevels);
    picker->colour = ColourFromLevels(picker->hue, picker->luminance, picker->saturation);
}

void SetPickerColour(ColorPicker* picker, long colour)
{
    picker->colour = colour & 0xFFFFFF;
    RGB2HLS(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF, &picker->hue,
            &picker->luminance, &picker->saturation);
}

void StepPickerTexture(ColorPicker* picker, int step)
{
    int last = static_cast<int>(picker->textures.size()) - 1;
    int next = std::clamp(picker->texture + step, -1, last);
    if (next == picker->texture)
        return;
    picker->texture = next;
    picker->preview.clear();
    if (next >= 0)
        LoadTexturePreview(picker->textures[size_t(next)], &picker->preview);
}

tagRECT PickerFrame(const ColorPicker& p) { return Offset(p, 0, 0, kPickerWidth, kPickerHeight); }
tagRECT PickerHueStrip(const ColorPicker& p)
{
    return Offset(p, kControlLeft, 37, kControlLeft + kPickerLevels + 1, 49);
}
tagRECT PickerLuminanceBar(const ColorPicker& p)
{
    return Offset(p, kControlLeft, 63, kControlLeft + kPickerLevels + 1, 73);
}
tagRECT PickerSaturationBar(const ColorPicker& p)
{
    return Offset(p, kControlLeft, 87, kControlLeft + kPickerLevels + 1, 97);
}
tagRECT PickerPreviousButton(const ColorPicker& p) { return Offset(p, 84, 108, 104, 124); }
tagRECT PickerNextButton(const ColorPicker& p) { return Offset(p, 108, 108, 128, 124); }
tagRECT PickerTexture(const ColorPicker& p)
{
    return Offset(p, kControlLeft, 132, kControlLeft + kTexturePreviewWidth,
                  132 + kTexturePreviewHeight);
}
tagRECT PickerSwatch(const ColorPicker& p) { return Offset(p, 196, 132, 368, 196); }
tagRECT PickerOkButton(const ColorPicker& p) { return Offset(p, 308, 220, 368, 236); }
tagRECT PickerCancelButton(const ColorPicker& p) { return Offset(p, 240, 220, 300, 236); }

PickerPart HitTestPicker(const ColorPicker& picker, int x, int y)
{
    tagRECT frame = PickerFrame(picker);
    if (x < frame.left || x > frame.right || y < frame.top || y > frame.bottom)
        return PickerPart::kOutside;
    if (InBand(PickerHueStrip(picker), picker.y + 36, x, y))
        return PickerPart::kHue;
    if (InBand(PickerLuminanceBar(picker), picker.y + 60, x, y))
        return PickerPart::kLuminance;
    if (InBand(PickerSaturationBar(picker), picker.y + 84, x, y))
        return PickerPart::kSaturation;
    if (Inside(PickerPreviousButton(picker), x, y))
        return PickerPart::kPreviousTexture;
    if (Inside(PickerNextButton(picker), x, y))
        return PickerPart::kNextTexture;
    if (Inside(PickerTexture(picker), x, y))
        return PickerPart::kTexture;
    if (Inside(PickerOkButton(picker), x, y))
        return PickerPart::kOk;
    if (Inside(PickerCancelButton(picker), x, y))
        return PickerPart::kCancel;
    return PickerPart::kNothing;
}

bool DragPicker(ColorPicker* picker, PickerPart part, int x, int y)
{
    long before = picker->colour;
    long hue = picker->hue, luminance = picker->luminance, saturation = picker->saturation;
    switch (part) {
    case PickerPart::kHue:
        SetPickerLevels(picker, LevelAt(PickerHueStrip(*picker), x), luminance, saturation);
        break;
    case PickerPart::kLuminance:
        SetPickerLevels(picker, hue, LevelAt(PickerLuminanceBar(*picker), x), saturation);
        break;
    case PickerPart::kSaturation:
        SetPickerLevels(picker, hue, luminance, LevelAt(PickerSaturationBar(*picker), x));
        break;
    case PickerPart::kTexture: {
        if (picker->preview.empty())
            return false;
        tagRECT area = PickerTexture(*picker);
        int column = std::clamp(x - area.left, 0, kTexturePreviewWidth - 1);
        int row = std::clamp(y - area.top, 0, kTexturePreviewHeight - 1);
        uint32_t word = picker->preview[size_t(row) * kTexturePreviewWidth + size_t(column)];
        SetPickerColour(picker, PackColour((word >> 16) & 0xFF, (word >> 8) & 0xFF, word & 0xFF));
        break;
    }
    default:
        return false;
    }
    return picker->colour != before || picker->hue != hue || picker->luminance != luminance ||
           picker->saturation != saturation;
}
