#pragma once
// The Qt side of the current font, for the portable layer's own files only.

#include <QFont>

// The font of the drawing state (family, pixel size, style bits), unhinted and kerned: the font
// GetTextWidth measures with, and so the one DrawText must set text in.
QFont CurrentQtFont();
