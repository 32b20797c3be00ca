#pragma once
// Font records and text measuring. Text is always set in the program's standard family; a font
// record only chooses the size and the style. Sizes are points at 72 dots per inch, so a point
// is a pixel whatever the screen. Measuring needs the application's QGuiApplication; without
// one every text measures 0.

constexpr int kFontFaceSize = 256;  // face name: 255 characters and a terminator

// Style bits of a font record.
constexpr int kFontBold = 1;
constexpr int kFontItalic = 2;
constexpr int kFontUnderline = 4;

struct FontRecord {
    char face[kFontFaceSize];  // kept as given; the standard family is used instead
    long size;                 // in points (= pixels); text is drawn one point smaller
    int style;                 // kFontBold | kFontItalic | kFontUnderline
};

// The font last selected, or null (none yet, or removed since).
extern FontRecord* pCurFont;

// Registers the standard family's font files with Qt once (later calls do nothing) and answers
// whether they were found. Called by the shell at start-up; measuring calls it as well.
bool LoadStandardFonts();
// The family every text is set in: the registered family, or the system's "Sans" when the font
// files are missing.
const char* StandardFontFamily();

// A new font record (face cut to 255 characters; null face is ""); null when out of memory.
FontRecord* MakeFont(const char* face, long size, int style);
// Frees the record; when it is the current font, pCurFont is forgotten (the drawing state keeps
// the font it was set in until another is selected).
void RemoveFont(FontRecord* font);
// Makes font current: the standard family, its style bits, one point less than its size. With
// mode -1 text is drawn opaque, and a backColour other than -1 (0x00BBGGRR) becomes the
// background colour; any other mode draws text transparent. A null font changes nothing.
void SelectFont(FontRecord* font, long backColour, int mode);

// Width in pixels of text (UTF-8) in the current font; 0 for a null or empty text.
long GetTextWidth(const char* text);
