#pragma once
// The shows opened or saved last, newest first, kept in the settings as "RecentShow1" ..
// "RecentShow4" and offered under "Recent Shows" in the File menu. The settings store is small
// (1,023 characters in all): a path it has no room for is simply not remembered.

#include <string>
#include <vector>

class CPMenu;

constexpr int kRecentShowCount = 4;
// The menu item that holds the list, and the commands of its entries (newest first).
constexpr int kCmdRecentShows = 2006;
constexpr int kCmdFirstRecentShow = 2010;

// The remembered paths, newest first, empty ones left out.
std::vector<std::string> RecentShows();
// Puts `path` first; an older entry of the same path goes, and the fifth falls off. The main
// window's menu follows.
void NoteRecentShow(const char* path);
// Removes `path` from the list (a show that is no longer there).
void ForgetRecentShow(const char* path);
// The path of recent-show command `command`, or "" when it names none.
std::string RecentShowOfCommand(int command);
// Shows the list under the File menu's "Recent Shows" item of `menu` (disabled while empty).
void ShowRecentShowsIn(CPMenu& menu);
