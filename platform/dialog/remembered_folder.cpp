#include "platform/dialog/remembered_folder.h"

#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/util/text.h"

bool RememberedFolder(FSpec* folder)
{
    char path[kMaxPathLength + 1];
    GetIniString("InitialFolder", "", path, kMaxPathLength);
    if (path[0]) {
        *folder = PathFSpec(path);
        return true;
    }
    long volume = GetIniItem("InitialVrefnum", 0);
    long parent = GetIniItem("InitialParID", 0);
    if (volume == 0 && parent == 0)
        return false;
    *folder = FSpec{static_cast<int16_t>(volume), static_cast<int32_t>(parent), {}};
    return true;
}

void RememberFolderOf(const FSpec& file)
{
    char path[kMaxPathLength + 1] = {};
    if (!GetFSpecPath(&file, path) || path[0] == 0)
        return;
    StripFileName(path);
    SetIniItem("InitialFolder", path);
    SetIniItem("InitialVrefnum", static_cast<long>(file.vRefNum));
    SetIniItem("InitialParID", static_cast<long>(file.parID));
}
