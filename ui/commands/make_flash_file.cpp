#include "ui/commands/make_flash_file.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "output/flash_movie.h"
#include "platform/dialog/cpdialog.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/remembered_folder.h"
#include "platform/file/file_dialog.h"
#include "platform/ini/settings.h"
#include "ui/commands/render_progress_window.h"
#include "ui/dialogs/viewer_hidden.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"

namespace {

constexpr const char* kTitle = "Make Flash File Options";
constexpr const char* kDescriptions[kFlashOptionsRows] = {
    "@LBackGround Color",
    "SWF Output FrameRate",
    "@SQuality",
};
// The second entry's odd form is the one the program has always offered.
constexpr const char* kFlashFilter = "Macromedia Flash Files (*.swf)|*.swf|All Files *.*|*.*||";
constexpr const char* kFlashExtension = ".swf";
constexpr int kDialogX = 50;
constexpr int kDialogY = 50;

std::string Setting(const char* key, const char* defaultValue)
{
    char value[kDialogRowSize] = {};
    GetIniString(key, defaultValue, value, kDialogRowText);
    return value;
}

// A colour component setting as its low byte; text that is not a number is 0.
long ComponentSetting(const char* key)
{
    long value = 0;
    if (!ReadIniNumber(Setting(key, "0").c_str(), &value))
        value = 0;
    return value & 0xFF;
}

void StoreNumber(const char* key, long number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%ld", number);
    SetIniItem(key, text);
}

int IntOf(long value) { return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX)); }

}  // namespace

FlashOptionsLists MakeFlashOptionsDialog()
{
    FlashOptionsLists lists;
    for (int row = 0; row < kFlashOptionsRows; ++row)
        SetDialogValue(lists.descriptions, row, kDescriptions[row]);
    long colour = ComponentSetting("FlashRed") + ComponentSetting("FlashGreen") * 256 +
                  ComponentSetting("FlashBlue") * 65536;
    char text[kDialogRowSize];
    std::snprintf(text, sizeof text, "%ld", colour);
    SetDialogValue(lists.values, kFlashRowColour, text);
    SetDialogValue(lists.values, kFlashRowRate, Setting("FlashFPS", "30").c_str());
    SetDialogValue(lists.values, kFlashRowQuality, Setting("FlashQuality", "75").c_str());
    return lists;
}

FlashChoice ReadFlashOptionsDialog(const FlashOptionsLists& lists)
{
    FlashChoice choice;
    choice.colour = GetDialogNumber(lists.values, kFlashRowColour);
    choice.framesPerSecond = IntOf(GetDialogNumber(lists.values, kFlashRowRate));
    choice.quality = IntOf(GetDialogNumber(lists.values, kFlashRowQuality));
    return choice;
}

void StoreFlashOptions(const FlashOptionsLists& lists)
{
    long colour = GetDialogNumber(lists.values, kFlashRowColour);
    StoreNumber("FlashRed", colour & 0xFF);
    StoreNumber("FlashGreen", (colour >> 8) & 0xFF);
    StoreNumber("FlashBlue", (colour >> 16) & 0xFF);
    char text[kDialogRowSize];
    GetDialogValue(lists.values, kFlashRowRate, text);
    SetIniItem("FlashFPS", text);
    GetDialogValue(lists.values, kFlashRowQuality, text);
    SetIniItem("FlashQuality", text);
}

bool CMain::MakeFlashFile()
{
    FSpec folder{};
    bool remembered = RememberedFolder(&folder);
    FlashOptionsLists lists = MakeFlashOptionsDialog();
    int answer = RunDialogWithoutViewer(EditorDialogOwner(), kDialogX, kDialogY, kFlashOptionsRows,
                                        lists.descriptions, lists.values, kTitle);
    if (pDoc != nullptr)
        pDoc->GotoFrame(gCurFrame, true);
    if (answer != kDialogConfirmed)
        return false;
    StoreFlashOptions(lists);
    FSpec file{};
    bool chosen = false;
    {
        ViewerHidden hidden;
        chosen = SaveFileDialog(this, &file, kFlashFilter, kFlashExtension,
                                remembered ? &folder : nullptr);
    }
    if (!chosen)
        return false;
    FlashChoice choice = ReadFlashOptionsDialog(lists);
    // The movie render's progress panel on the stage, and its Esc.
    EditorRenderProgress progress;
    int made =
        SaveFlashMovie(&file, choice.quality, choice.colour, choice.framesPerSecond, &progress);
    RedrawEditorWindows();  // the panel goes
    if (made >= 0) {
        ErrorBox("Flash file successfully made", kNoErrorNumber);
        return true;
    }
    ErrorBox("Error making movie!", kNoErrorNumber);
    return false;
}
