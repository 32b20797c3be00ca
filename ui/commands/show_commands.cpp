#include "ui/commands/show_commands.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/base/replace_file.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/remembered_folder.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "ui/commands/key_commands.h"
#include "ui/commands/recent_shows.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

constexpr const char* kShowFilter = "Parallaxotron Files (*.plx)|*.plx|All Files (*.*)|*.*|";
constexpr const char* kSaveCurrentShow = "Do you want to save current show?";

void ShowViewer(bool on)
{
    if (pViewer)
        pViewer->Show(on ? 1 : 0);
}

std::string PathOf(const FSpec& file)
{
    char path[kMaxPathLength + 1] = {};
    return GetFSpecPath(&file, path) ? std::string(path) : std::string();
}

// The windows after the show was replaced or emptied.
void ShowChanged()
{
    if (pTime)
        pTime->SetMaxTime(pDoc->showLength);
    GotoCurrentFrame();
    if (pMain)
        pMain->Redraw();
}

// Before a modified show goes: false when the user cancelled or the save did not happen.
bool OfferToSave(const char* title)
{
    if (!pDoc->dirty)
        return true;
    BoxAnswer answer = YesNoCancelBox(kSaveCurrentShow, title);
    if (answer == kBoxCancel)
        return false;
    return answer == kBoxNo || SaveShowCommand();
}

}  // namespace

const char* ShowFileFilter() { return kShowFilter; }

bool WriteShowTo(const FSpec& file)
{
    if (!pDoc)
        return false;
    std::string path = PathOf(file);
    if (pDoc->WriteShowFile(&file))
        return true;
    std::string text = "The show could not be saved to " + path + ".";
    const std::string& reason = LastFileReplacementError();
    if (!reason.empty())
        text += "\n" + reason;
    text += "\nThe file that was there is unchanged.";
    ErrorBox(text.c_str(), kNoErrorNumber);
    return false;
}

bool SaveShowCommand()
{
    if (!pDoc)
        return false;
    FSpec file{};
    if (pDoc->showFile.IsSet())
        file = PathFSpec(pDoc->showFile.path);
    FSpec folder{};
    RememberedFolder(&folder);
    ShowViewer(false);
    bool chosen =
        SaveFileDialog(pMain, &file, kShowFilter, ".plx", folder.name[0] ? &folder : nullptr);
    ShowViewer(true);
    if (!chosen || !WriteShowTo(file))
        return false;
    pDoc->showFile.Set(file);
    RememberFolderOf(file);
    NoteRecentShow(pDoc->showFile.path);
    if (pMain)
        pMain->SetShowTitle(pDoc->showFile.path);
    return true;
}

bool QuickSaveCommand()
{
    if (!pDoc)
        return false;
    if (!pDoc->showFile.IsSet())
        return SaveShowCommand();
    long frame = gCurFrame;
    pDoc->GotoFrame(0, true);
    FSpec file = PathFSpec(pDoc->showFile.path);
    bool written = WriteShowTo(file);
    pDoc->GotoFrame(frame, true);
    return written;
}

void NewShowCommand()
{
    if (!pDoc)
        return;
    if (pDoc->dirty) {
        if (pDoc->standalone) {
            if (!OfferToSave("New Show"))
                return;
        } else if (!YesNoBox("Are you sure?", "New Show")) {
            return;
        }
    }
    if (pMain)
        pMain->SetShowTitle(nullptr);
    pDoc->ClearShow();
    gCurFrame = 0;
    ShowChanged();
}

bool OpenShowFrom(const FSpec& file)
{
    FSpec spec = file;
    if (!OpenDocumentFile(&spec, true)) {
        std::string text = PathOf(file) + " is not a show that can be opened.";
        ErrorBox(text.c_str(), kNoErrorNumber);
        return false;
    }
    RememberFolderOf(file);
    NoteRecentShow(pDoc->showFile.path);
    ShowChanged();
    return true;
}

void LoadShowCommand()
{
    if (!pDoc || !OfferToSave("New Show"))
        return;
    FSpec folder{};
    RememberedFolder(&folder);
    FSpec file{};
    ShowViewer(false);
    bool chosen = OpenFileDialog(pMain, &file, kShowFilter, ".plx",
                                 folder.name[0] ? &folder : nullptr, false);
    ShowViewer(true);
    if (chosen)
        OpenShowFrom(file);
}

void OpenRecentShowCommand(int command)
{
    std::string path = RecentShowOfCommand(command);
    if (!pDoc || path.empty())
        return;
    FSpec file = PathFSpec(path.c_str());
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        ForgetRecentShow(path.c_str());
        std::string text = "The show " + path + " is no longer there.";
        ErrorBox(text.c_str(), kNoErrorNumber);
        return;
    }
    if (!OfferToSave("New Show"))
        return;
    if (!OpenShowFrom(file))
        ForgetRecentShow(path.c_str());
}

bool MayCloseShow()
{
    if (!pDoc || !pDoc->standalone || !pDoc->dirty)
        return true;
    // A third button, Cancel, keeps the program running: closing is not always meant.
    BoxAnswer answer = YesNoCancelBox("Do you want to save this show?", "Exit Application");
    if (answer == kBoxCancel)
        return false;
    return answer == kBoxNo || SaveShowCommand();
}
