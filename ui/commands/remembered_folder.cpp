#include "ui/commands/remembered_folder.h"

#include <cstring>

#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/util/text.h"

FSpec RememberedFolder()
{
    char folder[kMaxPathLength + 1] = {};
    GetIniString("InitialFolder", "", folder, kMaxPathLength);
    if (folder[0] == 0)
        return FSpec{};
    return PathFSpec(folder);
}

void RememberFolderOf(const FSpec& file)
{
    char folder[kMaxPathLength + 1] = {};
    if (!GetFSpecPath(&file, folder))
        return;
    StripFileName(folder);
    SetIniItem("InitialFolder", folder);
    // A path names the folder on this platform; the two numbers only follow it.
    SetIniItem("InitialVrefnum", static_cast<long>(kPathFormMarker));
    SetIniItem("InitialParID", static_cast<long>(GetFolderID(folder)));
}
