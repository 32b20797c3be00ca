#pragma once
// CPGetColor: the colour picker, drawn over a window and run until it is answered; the described
// dialogs open it for their colour rows ("@L"). What it shows and where is in color_picker.h.

#include "platform/dialog/color_picker.h"

class CPWnd;

// Runs the picker with its top-left corner at (x, y), window pixels of `owner`, on *colour
// (0x00BBGGRR), under `title`. Input is read with GetAMessage:
//   Return or "OK" ends it and *colour receives the colour shown (the very value given when
//   nothing was changed); Esc, "Cancel", or a button-down outside the picker or in another
//   window ends it and leaves *colour alone;
//   the hue strip and the "Luminance" and "Saturation" sliders follow the pointer while the
//   button is held; "<" and ">" step through the textures of "TextureFolder"; a click on the
//   texture (and a drag over it) takes the colour of the pixel under the pointer;
//   pointer moves and button-ups the picker does not use go to the owner.
// The pixels under the picker are put back before it returns. False at once, with *colour
// untouched, without a created owner or without a colour.
bool CPGetColor(CPWnd* owner, int x, int y, long* colour, const char* title);

// Draws the picker on the current drawing port, in the dialog font, which stays selected.
void DrawGetColor(const ColorPicker& picker);
