#pragma once
// The colour picker's state, layout and edits; CPGetColor (get_color.h) runs it and
// DrawGetColor draws it.
//
// The picker edits one colour (0x00BBGGRR) through the program's hue-lightness-saturation
// model (platform/util/colour.h, all three 0..240): a hue strip, "Luminance" and "Saturation"
// sliders, and a "Texture" chooser that steps through the pictures of the "TextureFolder"
// setting and picks the colour of the texture pixel clicked. Old and new colour are shown side
// by side. Positions are window pixels relative to the picker's top-left corner (x, y):
//
//   panel           (0, 0) - (376, 246), title bar (8, 8) - (368, 24)
//   "Hue"           strip x + 84 .. x + 324 (one column per hue 0..240), y + 37 .. y + 48
//   "Luminance"     slider (84, 63) - (325, 73), one column per level
//   "Saturation"    slider (84, 87) - (325, 97)
//   "Texture"       "<" (84, 108) - (104, 124), ">" (108, 108) - (128, 124), name at x + 134
//   texture         (84, 132) - (180, 196), the texture scaled to 96 x 64
//   swatch          (196, 132) - (368, 196): the old colour left, the new one right
//   "Cancel"        (240, 220) - (300, 236), "OK" (308, 220) - (368, 236)
//
// Labels end at x + 78, values start at x + 332.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/types.h"

constexpr int kPickerWidth = 376;
constexpr int kPickerHeight = 246;
constexpr long kPickerLevels = 240;  // hue, luminance and saturation run 0..240

struct ColorPicker {
    int x = 0;  // top-left corner, window pixels
    int y = 0;
    long original = 0;  // the colour the picker opened with
    long colour = 0;    // the colour it shows, 0x00BBGGRR (the original untouched until an edit)
    long hue = 0;
    long luminance = 0;
    long saturation = 0;
    std::vector<std::string> textures;  // from "TextureFolder"
    int texture = -1;                   // the one shown, -1 for none
    std::vector<uint32_t> preview;      // its picture (texture_list.h); empty without one
    std::string title;
};

// Starts the picker at (x, y) on `colour`: hue, luminance and saturation from it, the textures
// of the "TextureFolder" setting listed, none shown yet.
void OpenColorPicker(ColorPicker* picker, int x, int y, long colour, const char* title);

// The colour (0x00BBGGRR) that hue, luminance and saturation (0..240 each) make.
long ColourFromLevels(long hue, long luminance, long saturation);
// Sets hue, luminance and saturation (each kept within 0..240) and the colour they make.
void SetPickerLevels(ColorPicker* picker, long hue, long luminance, long saturation);
// Sets the colour exactly (its top byte cleared) and the levels that describe it.
void SetPickerColour(ColorPicker* picker, long colour);
// Shows the texture `step` places on (down to none, up to the last); a texture that cannot be
// read shows as none while its name stays.
void StepPickerTexture(ColorPicker* picker, int step);

enum class PickerPart {
    kOutside,  // outside the panel: cancels
    kNothing,
    kHue,
    kLuminance,
    kSaturation,
    kPreviousTexture,
    kNextTexture,
    kTexture,  // on the texture's picture
    kOk,
    kCancel,
};

tagRECT PickerFrame(const ColorPicker& picker);
tagRECT PickerHueStrip(const ColorPicker& picker);  // the columns of hues 0..240, exclusive edges
tagRECT PickerLuminanceBar(const ColorPicker& picker);
tagRECT PickerSaturationBar(const ColorPicker& picker);
tagRECT PickerPreviousButton(const ColorPicker& picker);
tagRECT PickerNextButton(const ColorPicker& picker);
tagRECT PickerTexture(const ColorPicker& picker);
tagRECT PickerSwatch(const ColorPicker& picker);
tagRECT PickerOkButton(const ColorPicker& picker);
tagRECT PickerCancelButton(const ColorPicker& picker);

// What a button-down at (clickX, clickY), window pixels, lands on. The strip and the sliders
// answer over their whole row and 4 pixels beyond either end.
PickerPart HitTestPicker(const ColorPicker& picker, int clickX, int clickY);

// Follows the pointer over a part being dragged: the strip and the sliders take the level of
// the column under it (clamped to 0..240), the texture the colour of the pixel under it (clamped
// to the picture; nothing without one). Answers whether anything changed.
bool DragPicker(ColorPicker* picker, PickerPart part, int clickX, int clickY);
