#include "ui/dialogs/advanced_options.h"

#include <cstdio>
#include <cstring>

#include "doc/globals.h"
#include "platform/dialog/cpdialog.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/dialogs/viewer_aspect.h"
#include "ui/dialogs/viewer_hidden.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/viewer/cview.h"

namespace {

constexpr const char* kTitle = "Advanced Options";
constexpr const char* kDescriptions[kAdvancedOptionsRows] = {
    "@CFlop Field Order",     "@CFlop Top Field",           "@CMulti-Proc Offset",
    "@CSpecial Aspect Ratio", "@FAlternative Image Folder", "@CShow Pic Errors",
    "@CViewer on 2nd Screen",
};
constexpr int kDialogX = 50;
constexpr int kDialogY = 50;

void SetCheck(char* values, int row, bool on) { SetDialogValue(values, row, on ? "1" : ""); }

}  // namespace

AdvancedOptionsLists MakeAdvancedOptionsDialog(const AdvancedValues& values)
{
    AdvancedOptionsLists lists;
    for (int row = 0; row < kAdvancedOptionsRows; ++row)
        SetDialogValue(lists.descriptions, row, kDescriptions[row]);
    SetCheck(lists.values, kAdvancedRowFieldSwap, values.fieldSwap);
    SetCheck(lists.values, kAdvancedRowTopField, values.flopTopField);
    SetCheck(lists.values, kAdvancedRowMultiProc, values.multiProcOffset != 0);
    SetCheck(lists.values, kAdvancedRowSpecialAspect, false);
    SetDialogValue(lists.values, kAdvancedRowFolder, values.folder);
    SetCheck(lists.values, kAdvancedRowPicErrors, values.showPicError);
    SetCheck(lists.values, kAdvancedRowSecondScreen, values.dualScreen);
    return lists;
}

AdvancedChoice ReadAdvancedOptionsDialog(const AdvancedOptionsLists& lists,
                                         const AdvancedValues& shown)
{
    AdvancedChoice choice;
    choice.values = shown;
    AdvancedValues& values = choice.values;
    values.fieldSwap = IsDialogValueOn(lists.values, kAdvancedRowFieldSwap);
    values.flopTopField = IsDialogValueOn(lists.values, kAdvancedRowTopField);
    if (!IsDialogValueOn(lists.values, kAdvancedRowMultiProc))
        values.multiProcOffset = 0;
    else if (shown.multiProcOffset == 0)
        values.multiProcOffset = 1;
    choice.specialAspect = IsDialogValueOn(lists.values, kAdvancedRowSpecialAspect);
    // The row shows at most 63 characters of the folder; only a different text means a pick.
    char before[kDialogRowSize] = {};
    char after[kDialogRowSize] = {};
    GetDialogValue(MakeAdvancedOptionsDialog(shown).values, kAdvancedRowFolder, before);
    GetDialogValue(lists.values, kAdvancedRowFolder, after);
    if (std::strcmp(before, after) != 0) {
        choice.folderPicked = true;
        std::snprintf(values.folder, sizeof values.folder, "%s", after);
    }
    values.showPicError = IsDialogValueOn(lists.values, kAdvancedRowPicErrors);
    values.dualScreen = IsDialogValueOn(lists.values, kAdvancedRowSecondScreen);
    return choice;
}

void CMain::SpecialOptions()
{
    if (pDoc == nullptr)
        return;
    AdvancedValues shown;
    shown.fieldSwap = pDoc->fieldSwap;
    shown.flopTopField = pDoc->flopTopField;
    shown.multiProcOffset = gMultiProcOffset;
    std::snprintf(shown.folder, sizeof shown.folder, "%s", pDoc->altImageFolder);
    shown.showPicError = pDoc->showPicError;
    shown.dualScreen = pViewer != nullptr && pViewer->dualScreen;
    AdvancedOptionsLists lists = MakeAdvancedOptionsDialog(shown);
    bool specialAspect = false;
    {
        ViewerHidden hidden;
        int answer = CPDialog(EditorDialogOwner(), kDialogX, kDialogY, kAdvancedOptionsRows,
                              lists.descriptions, lists.values, kTitle);
        if (answer == kDialogConfirmed) {
            AdvancedChoice choice = ReadAdvancedOptionsDialog(lists, shown);
            const AdvancedValues& values = choice.values;
            pDoc->fieldSwap = values.fieldSwap;
            SetIniItem("FieldSwap", values.fieldSwap ? 1L : 0L);
            pDoc->flopTopField = values.flopTopField;
            SetIniItem("FlopTopField", values.flopTopField ? 1L : 0L);
            gMultiProcOffset = values.multiProcOffset;
            SetIniItem("MultiProcOffset", static_cast<long>(values.multiProcOffset));
            specialAspect = choice.specialAspect;
            if (choice.folderPicked) {
                std::snprintf(pDoc->altImageFolder, sizeof pDoc->altImageFolder, "%s",
                              values.folder);
                char folder[kTextSetting];
                std::snprintf(folder, sizeof folder, "%s", values.folder);
                SetIniItem("AltImageFolder", folder);
            }
            pDoc->showPicError = values.showPicError;
            SetIniItem("ShowPicError", values.showPicError ? 1L : 0L);
            if (pViewer != nullptr)
                pViewer->dualScreen = values.dualScreen;
            SetIniItem("DualScreenViewer", values.dualScreen ? 1L : 0L);
        }
    }
    // The viewer-shape dialog hides and shows the viewer itself, so it runs once this one has
    // given the viewer back.
    if (specialAspect)
        PostAMessage(this, kMsgCommand, kViewerAspectCommand, 0);
    Redraw();
    pDoc->GotoFrame(0, true);
}
