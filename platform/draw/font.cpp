#include "platform/draw/font.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QString>
#include <cstring>
#include <new>

#include "platform/base/to_qt.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font_qt.h"

// The drawing state lives here because SelectFont is the first to write it; the drawing
// primitives read and extend it.
DrawState gDrawState = {0x00000000, 0x00FFFFFF, false, 12, 11, 0};

FontRecord* pCurFont = nullptr;

namespace {

// One fixed font file per style from a Debian package (fonts-dejavu-core), so a text measures
// the same on every machine whatever fonts it has installed. Italic is slanted by Qt.
const char* const kStandardFontFiles[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf",
};
// What the program asks for; resolved to the registered family.
const char* const kStandardFamilyName = "Sans";

bool sFontsLoaded = false;  // the registration has run with an application present
bool sFontsFound = false;   // and found the font files
QByteArray sFamily = kStandardFamilyName;

bool HaveGuiApplication()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

// Text is set one point smaller than the record asks, on purpose: the program's layouts were
// measured that way. The upper bound only keeps absurd records within what Qt takes.
int PixelSize(long size)
{
    constexpr long kLargest = 4096;
    if (size <= 2)
        return 1;
    if (size - 1 > kLargest)
        return kLargest;
    return static_cast<int>(size - 1);
}

}  // namespace

// No hinting: hinted advances depend on the desktop's font settings, unhinted ones only on the
// font file.
QFont CurrentQtFont()
{
    QFont font(ToQString(StandardFontFamily()));
    font.setPixelSize(gDrawState.fontPixelSize);
    font.setBold((gDrawState.fontStyle & kFontBold) != 0);
    font.setItalic((gDrawState.fontStyle & kFontItalic) != 0);
    font.setUnderline((gDrawState.fontStyle & kFontUnderline) != 0);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setKerning(true);
    return font;
}

bool LoadStandardFonts()
{
    if (sFontsLoaded)
        return sFontsFound;
    if (!HaveGuiApplication())
        return false;
    sFontsLoaded = true;

    QString family;
    for (const char* file : kStandardFontFiles) {
        int id = QFontDatabase::addApplicationFont(ToQPath(file));
        if (id < 0)
            continue;
        QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (family.isEmpty() && !families.isEmpty())
            family = families.first();
    }
    if (family.isEmpty())
        return false;

    sFontsFound = true;
    sFamily = family.toUtf8();
    // Other Qt code asking for the standard family by name gets the same font.
    QFont::insertSubstitution(ToQString(kStandardFamilyName), family);
    return true;
}

const char* StandardFontFamily()
{
    LoadStandardFonts();
    return sFamily.constData();
}

FontRecord* MakeFont(const char* face, long size, int style)
{
    FontRecord* font = new (std::nothrow) FontRecord;
    if (!font)
        return nullptr;
    std::strncpy(font->face, face ? face : "", kFontFaceSize - 1);
    font->face[kFontFaceSize - 1] = 0;
    font->size = size;
    font->style = style;
    return font;
}

void RemoveFont(FontRecord* font)
{
    if (!font)
        return;
    if (font == pCurFont)
        pCurFont = nullptr;
    delete font;
}

void SelectFont(FontRecord* font, long backColour, int mode)
{
    if (!font)
        return;
    pCurFont = font;
    gDrawState.fontSize = font->size;
    gDrawState.fontPixelSize = PixelSize(font->size);
    gDrawState.fontStyle = font->style & (kFontBold | kFontItalic | kFontUnderline);
    if (mode == -1 && backColour != -1)
        gDrawState.backColor = backColour;
    gDrawState.textOpaque = mode == -1;
}

long GetTextWidth(const char* text)
{
    if (!text || !*text || !HaveGuiApplication())
        return 0;
    QFontMetrics metrics(CurrentQtFont());
    return metrics.horizontalAdvance(ToQString(text));
}
