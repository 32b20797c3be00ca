#include "ui/commands/still_image.h"

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "image/cdib.h"
#include "output/render_driver.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/remembered_folder.h"
#include "platform/file/file_dialog.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"

namespace {

constexpr const char* kStillFilter = "Targa Image (*.tga)|*.tga|";
constexpr int kSaveTarga = 1;

}  // namespace

const char* StillImageFilter() { return kStillFilter; }

bool MakeStillImageCommand()
{
    if (!pDoc)
        return false;
    FSpec folder{};
    RememberedFolder(&folder);
    FSpec file{};
    if (!SaveFileDialog(pMain, &file, kStillFilter, ".tga", folder.name[0] ? &folder : nullptr))
        return false;
    RememberFolderOf(file);
    // The movie's size, clamped as the movie takes it.
    MovieOptions options = LoadMovieOptions(*pDoc);
    CDIB still(1, 1, 32);
    if (options.width < 1 || options.height < 1 ||
        !still.Create(options.width, options.height, 32) ||
        !pDoc->RenderFrame(gCurFrame, 0, false, options.width, options.height, &still, false)) {
        ErrorBox("The still image could not be made at this size.", kNoErrorNumber);
        return false;
    }
    if (!still.Save(&file, kSaveTarga))
        return false;
    Sound(0);
    return true;
}
