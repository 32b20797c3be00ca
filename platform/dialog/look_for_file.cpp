#include "platform/dialog/look_for_file.h"

#include "platform/dialog/message_box.h"
#include "platform/dialog/remembered_folder.h"
#include "platform/file/file_dialog.h"

namespace {

constexpr const char* kAllFiles = "All Files (*.*)|*.*||";

}  // namespace

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
    bool remembered = RememberedFolder(&folder);
    FSpec chosen{};
    if (!OpenFileDialog(owner, &chosen, kAllFiles, "", remembered ? &folder : nullptr, false))
        return false;
    *file = chosen;
    return true;
}
