#include "ui/dialogs/viewer_aspect.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "doc/cdoc.h"
#include "platform/dialog/cpdialog.h"
#include "platform/ini/settings.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/dialogs/viewer_hidden.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/viewer/cview.h"

namespace {

constexpr const char* kTitle = "Set Viewer Aspect ratio";
constexpr const char* kDescriptions[kViewerAspectRows] = {
    "@RViewer Shape|Square",     "@RVideo 4:3", "@RVideo 16:9", "@RImage", "@RSpecify",
    "Specify aspect ratio here",
};
constexpr int kDialogX = 50;
constexpr int kDialogY = 50;

// The fixed shapes, in the order they are tested; "Image" comes after them.
constexpr float kSquare = 1.0f;
constexpr float kVideo43 = 0.75f;
constexpr float kVideo169 = 0.5625f;

// The Render menu's aspect items and the aspect modes they stand for.
constexpr struct {
    int command;
    int mode;
} kRenderAspects[] = {{1030, 7500}, {1031, 5625}, {1032, 5626}};

}  // namespace

float PictureRatioOf(const CDoc& doc)
{
    int width = doc.image.GetWid();
    int height = doc.image.GetHgt();
    return width > 0 ? static_cast<float>(height) / static_cast<float>(width) : 0.0f;
}

ViewerAspectLists MakeViewerAspectDialog(float ratio, float pictureRatio)
{
    ViewerAspectLists lists;
    for (int row = 0; row < kViewerAspectRows; ++row)
        SetDialogValue(lists.descriptions, row, kDescriptions[row]);
    int selected = kAspectRowSpecify;
    if (ratio == kSquare)
        selected = kAspectRowSquare;
    else if (ratio == kVideo43)
        selected = kAspectRowVideo43;
    else if (ratio == kVideo169)
        selected = kAspectRowVideo169;
    else if (ratio == pictureRatio)
        selected = kAspectRowImage;
    SetDialogValue(lists.values, selected, "1");
    char text[kDialogRowSize];
    std::snprintf(text, sizeof text, "%0.4f", static_cast<double>(ratio));
    SetDialogValue(lists.values, kAspectRowTyped, text);
    return lists;
}

float ReadViewerAspectDialog(const ViewerAspectLists& lists, float pictureRatio)
{
    if (IsDialogValueOn(lists.values, kAspectRowSquare))
        return kSquare;
    if (IsDialogValueOn(lists.values, kAspectRowVideo43))
        return kVideo43;
    if (IsDialogValueOn(lists.values, kAspectRowVideo169))
        return kVideo169;
    if (IsDialogValueOn(lists.values, kAspectRowImage))
        return pictureRatio;
    char text[kDialogRowSize];
    GetDialogValue(lists.values, kAspectRowTyped, text);
    double typed = std::strtod(text, nullptr);
    // A ratio is a height over a width: a frame 10 000 times higher than wide is none.
    if (!(typed > 0.0) || typed > 10000.0)
        return 0.0f;
    return static_cast<float>(typed);
}

bool SetShowAspect(CDoc& doc, float ratio)
{
    if (!(ratio > 0.0f) || ratio == doc.aspectRatio)
        return false;
    doc.aspectRatio = ratio;
    doc.aspectMode = static_cast<int>(std::trunc(static_cast<double>(ratio) * 10000.0 + 0.5));
    SetIniItem("AspectMode", static_cast<long>(doc.aspectMode));
    return true;
}

void CMain::SetViewerAspect()
{
    if (pDoc == nullptr)
        return;
    float pictureRatio = PictureRatioOf(*pDoc);
    ViewerAspectLists lists = MakeViewerAspectDialog(pDoc->aspectRatio, pictureRatio);
    ViewerHidden hidden;
    int answer = CPDialog(EditorDialogOwner(), kDialogX, kDialogY, kViewerAspectRows,
                          lists.descriptions, lists.values, kTitle);
    hidden.ShowAgain();
    if (answer != kDialogConfirmed)
        return;
    if (!SetShowAspect(*pDoc, ReadViewerAspectDialog(lists, pictureRatio)))
        return;
    for (const auto& item : kRenderAspects)
        Menu.SetCheck(item.command, pDoc->aspectMode == item.mode);
    if (pViewer != nullptr)
        PostAMessage(pViewer, kMsgMoved, 0, 0);
    if (pStage != nullptr)
        pStage->Redraw();
}
