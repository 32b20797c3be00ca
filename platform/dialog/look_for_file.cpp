#include "platform/dialog/look_for_file.h"

#include "platform/dialog/message_box.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"

namespace {

constexpr const char* kAllFiles = "All Files (*.*)|*.*||";

}  // namespace

bool GetRememberedFolder(FSpec* folder)
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

bool LookForFile(CPWnd* owner, FSpec* file)
{
    if (!owner) {
        ErrorBox("Can't open file!", kNoErrorNumber);
        return false;
    }
    if (!file)
        return false;
    if (!YesNoBox("Do you want to look for it?", "Can't Open File!"))
        return false;
    FSpec folder{};
    bool remembered = GetRememberedFolder(&folder);
    FSpec chosen{};
    if (!OpenFileDialog(owner, &chosen, kAllFiles, "", remembered ? &folder : nullptr, false))
        return false;
    *file = chosen;
    return true;
}
