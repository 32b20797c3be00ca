#pragma once
// Text on the current drawing port (GetDrawDC), in the current font (SelectFont, font.h), in
// window pixels. Without a current port, or with an empty one, nothing is drawn.

// Where x lies on the text.
constexpr int kTextLeft = 0;    // the text starts at x (any value but the two below)
constexpr int kTextRight = 2;   // the text ends at x
constexpr int kTextCentre = 4;  // the text starts at x - width / 2, the half rounded toward zero

// Draws at most the first 255 bytes of text (UTF-8; a character is never cut in two) in colour,
// which becomes the pen colour. y is the top of the text: the baseline lies the current font
// record's size below it (the text itself is set one point smaller). Opaque text (SelectFont
// with mode -1) first fills the text's box, its width by the font's ascent plus descent, with the
// background colour. Glyphs are not smoothed: every pixel is the colour or left alone.
void DrawText(long colour, const char* text, int x, int y, int align);
