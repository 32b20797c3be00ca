#pragma once
// The keyboard of the main window: Ctrl combinations that stand for menu commands, and the plain
// keys of playback and navigation the other windows pass on.

// What a Ctrl combination asks for besides a command number.
constexpr int kShortcutNone = 0;
constexpr int kShortcutQuickSave = -1;  // Ctrl+S
constexpr int kShortcutClose = -2;      // Ctrl+Q: the close request

// The command of Ctrl + `key` on key message `msg` (1017 or 1019): a command number,
// kShortcutQuickSave, kShortcutClose, or kShortcutNone. Only keys 60 to 126 map; letters are
// taken in either case. Ctrl+Q and Ctrl+T act on 1017 only, Ctrl+~ on 1019 only.
int ShortcutCommand(long key, unsigned int msg);

// A plain key on message `msg`: Delete and Backspace delete the key at the current frame; R, J,
// K, L play backwards, stop and play forwards; + and - step one frame; Tab goes to the next key
// of the show; Return (1019 only) adds a key. True when the key was one of these.
bool PlainKeyCommand(long key, unsigned int msg);

// The frame of the first key, over all pictures in order, whose absolute frame lies after
// `frame`; -1 when there is none.
long NextKeyFrameAfter(long frame);
