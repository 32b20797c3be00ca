#include "platform/wnd/edit_box.h"

#include <QFont>
#include <QLineEdit>
#include <QPointer>
#include <cstring>

#include "platform/base/from_qt.h"
#include "platform/base/to_qt.h"
#include "platform/base/utf8.h"
#include "platform/draw/draw_state.h"
#include "platform/util/text.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/edit_box_field_qt.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_widgets_qt.h"

CPEditBox* gMacEditBox = nullptr;
tagRECT gEditRect = {0, 0, 0, 0};

namespace {

constexpr int kEditTextSize = 256;  // 255 characters and a terminator
constexpr long kDefaultEditFontSize = 12;

QFont QtFontOf(const FontRecord& record)
{
    // As SelectFont sets text: the standard family, one point under the record's size.
    QFont font(ToQString(StandardFontFamily()));
    font.setPixelSize(record.size > 2 ? static_cast<int>(record.size - 1) : 1);
    font.setBold((record.style & kFontBold) != 0);
    font.setItalic((record.style & kFontItalic) != 0);
    font.setUnderline((record.style & kFontUnderline) != 0);
    return font;
}

}  // namespace

struct CPEditBox::Field {
    QPointer<QLineEdit> edit;
};

CPEditBox::CPEditBox() : field(new Field), rect{0, 0, 0, 0}, owner(nullptr), fontRecord{}
{
    std::strcpy(fontRecord.face, "Sans");
    fontRecord.size = kDefaultEditFontSize;
    fontRecord.style = 0;
}

CPEditBox::~CPEditBox()
{
    Remove();
    if (gMacEditBox == this)
        gMacEditBox = nullptr;
    delete field;
}

bool CPEditBox::Create(CPWnd* window, int x, int y, int width, int height, FontRecord* font)
{
    if (!window || !window->IsCreated() || !GetContentWidget(window))
        return false;
    if (gMacEditBox && gMacEditBox != this)
        gMacEditBox->Remove();
    Remove();

    owner = window;
    rect = {x, y, x + width, y + height};
    if (font)
        fontRecord = *font;
    auto* edit = new QLineEdit(GetContentWidget(window));
    edit->setGeometry(x, y, width, height);
    edit->setFont(QtFontOf(fontRecord));
    edit->show();
    field->edit = edit;
    Focus();
    return true;
}

bool CPEditBox::IsOpen() const { return field->edit != nullptr; }

QLineEdit* CPEditBox::GetField() const { return field->edit; }

void CPEditBox::SetString(const char* text, bool select)
{
    if (!IsOpen())
        return;
    // Room for the text and an ellipsis, which is empty here: a value is cut, not marked.
    char buffer[kEditTextSize + 4];
    CopyUtf8(buffer, text, kEditTextSize - 1);

    // Measured in the field's own font; the drawing state is left as it was.
    DrawState savedState = gDrawState;
    FontRecord* savedFont = pCurFont;
    SelectFont(&fontRecord, -1, 0);
    ShrinkTextWidth(buffer, (rect.right - rect.left) - kEditMargin, "");
    gDrawState = savedState;
    pCurFont = savedFont;

    field->edit->setText(ToQString(buffer));
    if (select)
        field->edit->selectAll();
    else
        field->edit->deselect();
    Focus();
    Draw();
}

void CPEditBox::GetString(char* out, int max) const
{
    if (!out || max <= 0)
        return;
    if (!IsOpen()) {
        out[0] = 0;
        return;
    }
    std::string text = FromQString(field->edit->text());
    CopyUtf8(out, text.c_str(), static_cast<size_t>(max - 1));
}

void CPEditBox::Focus()
{
    if (!IsOpen())
        return;
    gMacEditBox = this;
    gEditRect = rect;
    field->edit->setFocus(Qt::OtherFocusReason);
}

void CPEditBox::Draw()
{
    if (IsOpen())
        field->edit->update();
}

void CPEditBox::SetFont(FontRecord* font)
{
    if (!font)
        return;
    fontRecord = *font;
    if (IsOpen())
        field->edit->setFont(QtFontOf(fontRecord));
}

void CPEditBox::Remove()
{
    if (gMacEditBox == this) {
        gMacEditBox = nullptr;
        gEditRect = {0, 0, 0, 0};
    }
    QLineEdit* edit = field->edit;
    field->edit = nullptr;
    if (!edit)
        return;
    edit->hide();
    // A field removed while one of its own events is being handed out is let go by Qt first.
    if (IsDispatchingInput())
        edit->deleteLater();
    else
        delete edit;
}

QLineEdit* ActiveEditField() { return gMacEditBox ? gMacEditBox->GetField() : nullptr; }

CPWnd* ActiveEditOwner()
{
    return gMacEditBox && gMacEditBox->IsOpen() ? gMacEditBox->GetOwner() : nullptr;
}

void RemoveEditBoxIn(CPWnd* window)
{
    if (gMacEditBox && gMacEditBox->GetOwner() == window)
        gMacEditBox->Remove();
}
