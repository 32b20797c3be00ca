#include "platform/wnd/input_qt.h"

#include <QKeyEvent>

#include "platform/wnd/messages.h"

long ButtonBits(Qt::KeyboardModifiers modifiers)
{
    bool command = (modifiers & Qt::ControlModifier) != 0;
    bool shift = (modifiers & Qt::ShiftModifier) != 0;
    if (command)
        return shift ? kModCommand | kModShift : kModCommand;
    return shift ? kModShift : 0;
}

long MoveBits(Qt::KeyboardModifiers modifiers)
{
    // Command gives 64; without it the Control key gives the same bit.
    long bits = (modifiers & (Qt::ControlModifier | Qt::AltModifier)) ? kModCommand : 0;
    if (modifiers & Qt::ShiftModifier)
        bits |= kModShift;
    return bits;
}

int KeyState(Qt::KeyboardModifiers modifiers)
{
    int state = 0;
    if (modifiers & Qt::AltModifier)
        state |= kKeyStateControl;
    if (modifiers & Qt::ShiftModifier)
        state |= kKeyStateShift;
    return state;
}

bool IsModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case 0:
    case Qt::Key_unknown:
        return true;
    default:
        return false;
    }
}

long KeyCharacter(const QKeyEvent* event)
{
    int key = event->key();
    switch (key) {
    case Qt::Key_Home:
        return kCharHome;
    case Qt::Key_End:
        return kCharEnd;
    case Qt::Key_Enter:
        return kCharEnter;
    case Qt::Key_Return:
        return kCharReturn;
    case Qt::Key_Backspace:
        return kCharBackspace;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return kCharTab;
    case Qt::Key_PageUp:
        return kCharPageUp;
    case Qt::Key_PageDown:
        return kCharPageDown;
    case Qt::Key_Escape:
        return kCharEscape;
    case Qt::Key_Left:
        return kCharLeft;
    case Qt::Key_Right:
        return kCharRight;
    case Qt::Key_Up:
        return kCharUp;
    case Qt::Key_Down:
        return kCharDown;
    case Qt::Key_Delete:
        return kCharDelete;
    default:
        break;
    }
    bool shift = (event->modifiers() & Qt::ShiftModifier) != 0;
    bool command = (event->modifiers() & Qt::ControlModifier) != 0;
    if (!command) {
        // What the keyboard typed, layout and dead keys included.
        QString text = event->text();
        if (!text.isEmpty()) {
            char32_t c = text.toUcs4().value(0);
            if (c >= 0x20 && c != 0x7F)
                return static_cast<long>(c);
        }
    }
    // Qt names the keys of the printable ASCII characters by those characters, letters in
    // upper case.
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return shift ? key : key - Qt::Key_A + 'a';
    if (key >= 0x20 && key <= 0x7E)
        return key;
    return 0;
}
