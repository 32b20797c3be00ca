#pragma once
// The drawing state the drawing primitives read: what SelectFont and the colour calls leave
// behind for the next DrawText or fill. One state for the whole program, used on the main thread
// only, as the windows share one drawing port.

// The font text is set in: the standard family (StandardFontFamily() in font.h) at pixel size
// fontPixelSize with the style bits fontStyle, unhinted and kerned as GetTextWidth measures it,
// and the baseline fontSize pixels below the top of the text (the record's own size, one more
// than the pixel size).
struct DrawState {
    long penColor;      // pen colour 0x00BBGGRR, set by SetColor and every call given a colour
    long backColor;     // background colour 0x00BBGGRR, behind opaque text
    bool textOpaque;    // text drawn on the background colour (true) or transparent
    long fontSize;      // size of the selected font record, in points (= pixels)
    int fontPixelSize;  // size the text is set in: fontSize - 1, at least 1
    int fontStyle;      // kFontBold | kFontItalic | kFontUnderline
};

// Black pen, white background, transparent text, a plain 12-point font until the first SelectFont.
extern DrawState gDrawState;
