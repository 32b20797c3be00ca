#pragma once
// Qt's keys and modifiers in the program's terms: the one place the two meet.
//   Ctrl   the Command key: modifier bit 64 of mouse messages, shortcuts (1017)
//   Alt    the Control (Option) key: 0x800 of sLastKey, bit 64 of 1013 without Command
//   Shift  bit 32, 0x400 of sLastKey

#include <Qt>

class QKeyEvent;

// The bits of 1009, 1011 and 1012: Command 64, Command and Shift 96, Shift 32, else 0.
long ButtonBits(Qt::KeyboardModifiers modifiers);
// The bits of 1013: Command 64 (+32 with Shift); without Command, Control 64 + Shift 32.
long MoveBits(Qt::KeyboardModifiers modifiers);
// sLastKey for a key-down with these modifiers.
int KeyState(Qt::KeyboardModifiers modifiers);
// True for keys that only change modifiers (Shift, Ctrl, Alt, ...).
bool IsModifierKey(int key);
// The character of a key event as the program reads it (messages.h for keys without one): with
// Command held, the key's own character (a letter in lower case, in upper case with Shift), so
// shortcuts read the same whatever the keyboard makes of Ctrl; otherwise the typed character.
// 0 for keys the program has no character for.
long KeyCharacter(const QKeyEvent* event);
