#include "ui/timeline/key_dialog.h"

#include <algorithm>
#include <cstdio>

#include "doc/frame_math.h"
#include "platform/dialog/cpdialog.h"
#include "ui/editor_windows.h"
#include "ui/viewer/cview.h"

namespace {

constexpr const char* kTitle = "Set KeyFrame Options";
constexpr const char* kDescriptions[kKeyDialogRows] = {
    "Horizontal Position",
    "Vertical Position",
    "Width",
    "Rotation",
    "@REases|Use Default",
    "@RIn & Out",
    "@RIn",
    "@ROut",
    "@RNone",
    "@SEase Speed",
    "@CNo Curves",
};
constexpr int kEaseButtons = 5;

void SetNumber(char* values, int row, long number)
{
    char text[kDialogRowSize];
    std::snprintf(text, sizeof text, "%ld", number);
    SetDialogValue(values, row, text);
}

}  // namespace

KeyDialogLists MakeKeyDialog(const KeyStruct& key)
{
    KeyDialogLists lists;
    for (int row = 0; row < kKeyDialogRows; ++row)
        std::snprintf(lists.descriptions + row * kDialogRowSize, kDialogRowSize, "%s",
                      kDescriptions[row]);
    SetNumber(lists.values, kKeyRowX, FrameOfFloat(key.XPos));
    SetNumber(lists.values, kKeyRowY, FrameOfFloat(key.YPos));
    SetNumber(lists.values, kKeyRowWidth, FrameOfFloat(key.Width));
    SetNumber(lists.values, kKeyRowRotation, FrameOfFloat(key.Rotation));
    long ease = FrameOfFloat(key.Ease);
    long button = std::clamp(FrameOf(static_cast<double>(key.Ease) / 1000.0 + 0.5), 0, 4);
    SetDialogValue(lists.values, kKeyRowDefault + static_cast<int>(button), "1");
    SetNumber(lists.values, kKeyRowSpeed, (ease % 1000) & ~1L);
    SetDialogValue(lists.values, kKeyRowNoCurves, ease % 2 != 0 ? "1" : "");
    return lists;
}

void ReadKeyDialog(const KeyDialogLists& lists, KeyStruct& key)
{
    key.XPos = static_cast<float>(GetDialogNumber(lists.values, kKeyRowX));
    key.YPos = static_cast<float>(GetDialogNumber(lists.values, kKeyRowY));
    key.Width = static_cast<float>(GetDialogNumber(lists.values, kKeyRowWidth));
    key.Rotation = static_cast<float>(GetDialogNumber(lists.values, kKeyRowRotation));
    long ease = 0;
    for (int button = 0; button < kEaseButtons; ++button)
        if (IsDialogValueOn(lists.values, kKeyRowDefault + button))
            ease = button * 1000L;
    // A typed-in speed is kept within one kind's thousand.
    ease += std::clamp(GetDialogNumber(lists.values, kKeyRowSpeed), 0L, 998L) & ~1L;
    if (IsDialogValueOn(lists.values, kKeyRowNoCurves))
        ease += 1;
    key.Ease = static_cast<float>(ease);
}

bool RunKeyDialog(CPWnd* owner, int x, int y, KeyStruct& key)
{
    KeyDialogLists lists = MakeKeyDialog(key);
    CPWnd* viewer = pViewer;
    bool viewerShown = viewer && viewer->IsVisible();
    if (viewerShown)
        viewer->Show(0);
    int answer = CPDialog(owner, x, y, kKeyDialogRows, lists.descriptions, lists.values, kTitle);
    if (viewerShown && pViewer == viewer)
        viewer->Show(1);
    if (answer != kDialogConfirmed)
        return false;
    ReadKeyDialog(lists, key);
    return true;
}
