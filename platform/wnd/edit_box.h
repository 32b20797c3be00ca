#pragma once
// CPEditBox: the one-line text field for typing a value into a window. Only one edit box is
// active in the program at a time (gMacEditBox, gEditRect); while it is active it takes the
// keys (all but Esc) and the clicks strictly inside its rectangle.

#include "platform/base/types.h"
#include "platform/draw/font.h"

class CPWnd;
class QLineEdit;

constexpr int kEditMargin = 8;  // pixels of the width a set text leaves free

class CPEditBox {
public:
    CPEditBox();
    ~CPEditBox();
    CPEditBox(const CPEditBox&) = delete;
    CPEditBox& operator=(const CPEditBox&) = delete;

    // The rectangle is (x, y, x + width, y + height) in the owner's content. Any active edit box
    // is disposed of first; the field is made in `font` (the standard 12 point when null),
    // focused, and becomes the active one. False when there is no window to put it in.
    bool Create(CPWnd* owner, int x, int y, int width, int height, FontRecord* font);
    // Sets the text, first shortened to what fits in the width less 8 pixels in the field's font;
    // with `select` all of it is selected. Activates and draws the field.
    void SetString(const char* text, bool select);
    // Copies the text (UTF-8): at most max - 1 bytes, never part of a character, terminated.
    void GetString(char* out, int max) const;
    // Makes this the active edit box and gives it the keys.
    void Focus();
    // Redraws the field in its rectangle.
    void Draw();
    void SetFont(FontRecord* font);
    // Disposes of the field; clears gMacEditBox when this was the active one.
    void Remove();

    bool IsOpen() const;
    const tagRECT& GetRect() const { return rect; }
    CPWnd* GetOwner() const { return owner; }
    QLineEdit* GetField() const;

private:
    struct Field;
    Field* field;
    tagRECT rect;
    CPWnd* owner;
    FontRecord fontRecord;
};

extern CPEditBox* gMacEditBox;
extern tagRECT gEditRect;
