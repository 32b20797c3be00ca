// Qt's keys and modifiers in the program's terms.

#include "platform/wnd/input_qt.h"

#include <gtest/gtest.h>
#include <QKeyEvent>

#include "platform/wnd/messages.h"

namespace {

long Character(int key, Qt::KeyboardModifiers modifiers, const QString& text = QString())
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    return KeyCharacter(&event);
}

TEST(ButtonBits, CommandShiftAndBoth)
{
    EXPECT_EQ(ButtonBits(Qt::NoModifier), 0);
    EXPECT_EQ(ButtonBits(Qt::ControlModifier), 64);
    EXPECT_EQ(ButtonBits(Qt::ControlModifier | Qt::ShiftModifier), 96);
    EXPECT_EQ(ButtonBits(Qt::ShiftModifier), 32);
    EXPECT_EQ(ButtonBits(Qt::AltModifier), 0);
    EXPECT_EQ(ButtonBits(Qt::AltModifier | Qt::ShiftModifier), 32);
}

TEST(MoveBits, ControlCountsAsCommandWhenCommandIsNotHeld)
{
    EXPECT_EQ(MoveBits(Qt::AltModifier), 64);
    EXPECT_EQ(MoveBits(Qt::AltModifier | Qt::ShiftModifier), 96);
    EXPECT_EQ(MoveBits(Qt::ControlModifier | Qt::AltModifier), 64);
    EXPECT_EQ(MoveBits(Qt::ShiftModifier), 32);
}

TEST(KeyState, AltIsControlAndShiftIsShift)
{
    EXPECT_EQ(KeyState(Qt::AltModifier | Qt::ShiftModifier), 0xC00);
    EXPECT_EQ(KeyState(Qt::ShiftModifier), 0x400);
    EXPECT_EQ(KeyState(Qt::AltModifier), 0x800);
    EXPECT_EQ(KeyState(Qt::ControlModifier), 0);
}

TEST(KeyCharacter, KeysWithoutPrintableCharacters)
{
    EXPECT_EQ(Character(Qt::Key_Home, Qt::NoModifier), kCharHome);
    EXPECT_EQ(Character(Qt::Key_End, Qt::NoModifier), kCharEnd);
    EXPECT_EQ(Character(Qt::Key_Enter, Qt::KeypadModifier, "\r"), kCharEnter);
    EXPECT_EQ(Character(Qt::Key_Return, Qt::NoModifier, "\r"), kCharReturn);
    EXPECT_EQ(Character(Qt::Key_Backspace, Qt::NoModifier, "\b"), kCharBackspace);
    EXPECT_EQ(Character(Qt::Key_Backtab, Qt::ShiftModifier), kCharTab);
    EXPECT_EQ(Character(Qt::Key_PageUp, Qt::NoModifier), 11);
    EXPECT_EQ(Character(Qt::Key_PageDown, Qt::NoModifier), 12);
    EXPECT_EQ(Character(Qt::Key_Escape, Qt::NoModifier, "\x1b"), 27);
    EXPECT_EQ(Character(Qt::Key_Left, Qt::AltModifier), 28);
    EXPECT_EQ(Character(Qt::Key_Right, Qt::NoModifier), 29);
    EXPECT_EQ(Character(Qt::Key_Up, Qt::NoModifier), 30);
    EXPECT_EQ(Character(Qt::Key_Down, Qt::NoModifier), 31);
    EXPECT_EQ(Character(Qt::Key_Delete, Qt::NoModifier, "\x7f"), 127);
    EXPECT_EQ(Character(Qt::Key_F5, Qt::NoModifier), 0);
}

TEST(KeyCharacter, TypedCharactersWithoutCommand)
{
    EXPECT_EQ(Character(Qt::Key_R, Qt::NoModifier, "r"), 'r');
    EXPECT_EQ(Character(Qt::Key_R, Qt::ShiftModifier, "R"), 'R');
    EXPECT_EQ(Character(Qt::Key_Plus, Qt::ShiftModifier, "+"), '+');
    EXPECT_EQ(Character(Qt::Key_Space, Qt::NoModifier, " "), ' ');
    EXPECT_EQ(Character(Qt::Key_BraceLeft, Qt::ShiftModifier, "{"), '{');
    EXPECT_EQ(Character(Qt::Key_Eacute, Qt::NoModifier, QString::fromUtf8("\xC3\xA9")), 0xE9);
}

TEST(KeyCharacter, CommandKeysGiveTheKeysOwnCharacter)
{
    EXPECT_EQ(Character(Qt::Key_S, Qt::ControlModifier, "\x13"), 's');
    EXPECT_EQ(Character(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier, "\x1a"), 'Z');
    EXPECT_EQ(Character(Qt::Key_Less, Qt::ControlModifier | Qt::ShiftModifier, "<"), '<');
    EXPECT_EQ(Character(Qt::Key_AsciiTilde, Qt::ControlModifier | Qt::ShiftModifier), '~');
}

TEST(IsModifierKey, OnlyKeysThatChangeModifiers)
{
    EXPECT_TRUE(IsModifierKey(Qt::Key_Shift));
    EXPECT_TRUE(IsModifierKey(Qt::Key_Control));
    EXPECT_TRUE(IsModifierKey(Qt::Key_Alt));
    EXPECT_TRUE(IsModifierKey(Qt::Key_Meta));
    EXPECT_FALSE(IsModifierKey(Qt::Key_A));
    EXPECT_FALSE(IsModifierKey(Qt::Key_Escape));
}

}  // namespace
