#pragma once
// CPMenu: the menu bar of the main window, built from the program's menu table. A table of
// 8 menus x 16 items holds each item's command identifier (9999 where there is none); choosing
// an item broadcasts message 1020 with its identifier (messages.h).
//
// Item texts are given with the menu system's meta-characters: "/X" makes X the item's
// Command-key (Ctrl) shortcut and is not shown; the shortcut is shown beside the item, and its
// key reaches the program as message 1017, never as the item itself. "&" is shown as itself.

#include <string>
#include <vector>

class CPWnd;
class QMenuBar;

constexpr int kMenuCount = 8;
constexpr int kMenuItemCount = 16;
constexpr int kEmptyMenuSlot = 9999;
constexpr int kFirstMenuID = 1000;
constexpr int kMaxMenuTitle = 255;

// Flags of AddTopLevel and AddItem.
constexpr int kMenuItemChecked = 1;
constexpr int kMenuItemDisabled = 2;
constexpr int kMenuDisabled = 4;  // AddTopLevel: the whole menu

// One entry of a list hung under a menu item (SetItemList).
struct MenuListEntry {
    int id;            // broadcast with message 1020 when the entry is chosen
    std::string text;  // shown as it is: no shortcut suffix is read from it
};

class CPMenu {
public:
    CPMenu();
    // Puts back the menu bar that was there before Create.
    ~CPMenu();
    CPMenu(const CPMenu&) = delete;
    CPMenu& operator=(const CPMenu&) = delete;

    // Fills the table with 9999, sets the menu bar in place before aside and gives `window`'s
    // desktop window (the main window's when null) a new, empty one.
    void Create(CPWnd* window);
    // Appends a menu (identifier 1000 for the first, one more than the previous after that;
    // title cut at 255 characters) and makes it the current menu. Flag 4 disables the whole
    // menu. A ninth menu is refused, and the items added after it go nowhere.
    void AddTopLevel(const char* title, int flags);
    // Appends an item to the current menu and stores `id` in the menu's next table slot. An id
    // of -1 is a separator line (it takes a slot too). Flag 2 adds it disabled, flag 1 checked.
    // A menu holds at most 16 items: a seventeenth is refused and nothing changes.
    void AddItem(int id, const char* text, int flags);
    // The identifier in the table, or -1 when menu is not 0-7 or item not 0-15.
    int GetID(int menu, int item) const;
    // For the first slot holding `id` in each menu: checked when flag 1 is set (else not),
    // disabled when flag 2 is set (else enabled).
    void SetState(int id, int flags);
    // Sets or clears the check mark of the first slot holding `id` in each menu.
    void SetCheck(int id, bool on);
    // Hangs a list under the first item holding `id` in each menu, replacing the list it had:
    // the item opens a submenu of the entries, each broadcasting message 1020 with its own id
    // when chosen. An empty list leaves the item disabled. The entries take no table slots.
    void SetItemList(int id, const std::vector<MenuListEntry>& entries);
    // The entries hung under `id` (the first item holding it), as last set.
    std::vector<MenuListEntry> GetItemList(int id) const;
    // Puts back the menu bar that was in place before Create, once.
    void RestoreOriginalMenu();

    // How many menus and items there are; whether an item shows a check mark, is enabled.
    int GetMenuCount() const;
    int GetItemCount(int menu) const;
    bool IsItemChecked(int menu, int item) const;
    bool IsItemEnabled(int menu, int item) const;
    // The Qt bar, for the portable layer and tests; null before Create.
    QMenuBar* GetMenuBar() const;

    struct Impl;

private:
    Impl* impl;
};

// The command of item `item` (counted from 1) of menu `menuID` (counted from 1000) in the menu
// bar built last: the table entry for (menuID - 1000, item - 1), or -1 for a menu outside
// 1000-1007, an item outside 1-16, or no menu bar.
int MenuCommand(int menuID, int item);
