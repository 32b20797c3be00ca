#include "ui/commands/recent_shows.h"

#include <cstdio>

#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/util/text.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"

namespace {

void KeyName(int index, char* key, size_t size)
{
    std::snprintf(key, size, "RecentShow%d", index + 1);
}

void Store(const std::vector<std::string>& paths)
{
    for (int i = 0; i < kRecentShowCount; ++i) {
        char key[32];
        KeyName(i, key, sizeof key);
        // Emptied first, so a longer path further up finds room in the store.
        char empty[1] = {0};
        SetIniItem(key, empty);
    }
    for (int i = 0; i < kRecentShowCount && i < static_cast<int>(paths.size()); ++i) {
        char key[32];
        KeyName(i, key, sizeof key);
        std::string value = paths[static_cast<size_t>(i)];
        SetIniItem(key, value.data());
    }
}

}  // namespace

std::vector<std::string> RecentShows()
{
    std::vector<std::string> paths;
    for (int i = 0; i < kRecentShowCount; ++i) {
        char key[32];
        KeyName(i, key, sizeof key);
        char path[kMaxPathLength + 1] = {};
        GetIniString(key, "", path, kMaxPathLength);
        if (path[0] != 0)
            paths.emplace_back(path);
    }
    return paths;
}

namespace {

// Stores the recent shows with `path` taken out, and first when `first`, and shows them.
void StoreWithout(const char* path, bool first)
{
    std::vector<std::string> paths;
    if (first)
        paths.emplace_back(path);
    for (const std::string& old : RecentShows()) {
        if (old != path)
            paths.push_back(old);
    }
    Store(paths);
    if (pMain)
        ShowRecentShowsIn(pMain->Menu);
}

}  // namespace

void NoteRecentShow(const char* path)
{
    if (!path || !path[0])
        return;
    StoreWithout(path, true);
}

void ForgetRecentShow(const char* path)
{
    if (!path)
        return;
    StoreWithout(path, false);
}

std::string RecentShowOfCommand(int command)
{
    int index = command - kCmdFirstRecentShow;
    std::vector<std::string> paths = RecentShows();
    if (index < 0 || index >= static_cast<int>(paths.size()))
        return "";
    return paths[static_cast<size_t>(index)];
}

void ShowRecentShowsIn(CPMenu& menu)
{
    std::vector<MenuListEntry> entries;
    int command = kCmdFirstRecentShow;
    for (const std::string& path : RecentShows()) {
        // The show's name first, its folder after it, so that two shows of one name differ.
        char name[kMaxPathLength + 1] = {};
        std::snprintf(name, sizeof name, "%s", path.c_str());
        StripFilePath(name);
        StripFileExt(name);
        entries.push_back({command++, std::string(name) + "  (" + path + ")"});
    }
    menu.SetItemList(kCmdRecentShows, entries);
}
