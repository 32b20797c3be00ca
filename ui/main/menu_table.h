#pragma once
// The main window's menu bar as a table: menus and items in the order they are added, each item
// with its command number, its text (with the "/X" shortcut suffix) and its initial state, the
// check marks read from the settings. Built as plain data so each variant can be checked
// without a window.

#include <vector>

// Which menu bar: the full program is standalone and not the reduced (Slatewhirl) variant.
struct MenuVariant {
    bool standalone = true;             // runs as its own application, not inside a video editor
    bool slatewhirl = false;            // the reduced variant of the program
    bool getImageFromTimeline = false;  // pictures come from the host's time line
    bool canMultiProcess = false;       // the machine offers a second processor
    bool hasHelpFile = false;           // a build with a help file ("Contents")
};

constexpr int kMenuSeparator = -1;
constexpr int kMenuTitle = 0;  // the line opens a new top-level menu named `text`

struct MenuLine {
    int command;       // kMenuTitle, kMenuSeparator or the command number
    const char* text;  // null for a separator
    int flags;         // kMenuItemChecked, kMenuItemDisabled (cpmenu.h), or 0
};

// The menu bar of the variant, check marks from the current settings (GetIniItem).
std::vector<MenuLine> MainMenuLines(const MenuVariant& variant);

// Command numbers the main window itself answers before the command handlers exist.
constexpr int kCmdExit = 2001;         // "Exit/Q", or "Apply Moves and Close/Q" when hosted
constexpr int kCmdQuitNoApply = 2002;  // "Quit - DON'T Apply changes" (hosted)
constexpr int kCmdUndo = 9004;
constexpr int kCmdRedo = 9005;
constexpr int kCmdCut = 9001;
constexpr int kCmdCopy = 9000;
constexpr int kCmdPaste = 9002;
constexpr int kCmdDelete = 9003;
