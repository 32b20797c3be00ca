#pragma once
// The pictures of the program's push buttons, painted by code: the viewer's transport buttons
// 102-112 and the main window's button 121/122.
//
//   stop           102 normal, 109 pressed, 110 disabled
//   play forwards  108 normal, 103 pressed, 104 disabled
//   play backwards 105 normal, 106 pressed, 107 disabled
//   add key        111 normal, 112 pressed
//   main window    122 normal, 121 pressed (a tick: hand the moves back to the host)
//
// A button is a light grey raised face with a black symbol; pressed, the face is darker, sunken
// and the symbol one pixel lower right; disabled, the symbol is grey.

#include "platform/base/types.h"

constexpr int kFirstButtonPicture = 102;
constexpr int kLastButtonPicture = 112;  // the last transport button
constexpr int kPanelButtonPressed = 121;
constexpr int kPanelButtonNormal = 122;

bool IsButtonPicture(int picture);
// Paints the picture into rect (right and bottom edges outside, as fills are) on the current
// drawing port, at the rectangle's size. False, with nothing drawn, for a number that is not a
// button picture, an empty rectangle or no current port.
bool DrawButtonPicture(const tagRECT& rect, int picture);
