#include "ui/commands/view_commands.h"

#include <algorithm>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/timeline/timeline_geometry.h"
#include "ui/viewer/cview.h"

namespace {

constexpr int kNoCurvesBit = 16;
constexpr int kEaseKindMask = 15;
constexpr int kFirstEaseCommand = 1003;

// Scales are compared in whole percent, so 0.1 stored as a float still reads as 10.
int Percent(float scale) { return static_cast<int>(scale * 100.0f); }

void Check(int command, bool on)
{
    if (pMain)
        pMain->Menu.SetCheck(command, on);
}

void RedrawStage()
{
    if (pStage)
        pStage->Redraw();
}

// The Render menu's three aspect marks follow "AspectMode".
void CheckAspectItems(int mode)
{
    Check(1030, mode == 7500);
    Check(1031, mode == 5625);
    Check(1032, mode == 5626);
}

}  // namespace

float StageZoomIn(float scale)
{
    if (Percent(scale) == 10)
        scale = 0.125f;
    return std::min(scale * 2.0f, 1.0f);
}

float StageZoomOut(float scale)
{
    float half = scale / 2.0f;
    return Percent(half) < 25 ? 0.1f : half;
}

int EnlargeTimelineScale(int scale, long frameRate)
{
    long fps = (frameRate + 50) / 100;
    long wider = std::min(fps * 64, 2L * scale);
    if (fps > 0 && wider > fps)
        wider = wider / fps * fps;
    return static_cast<int>(std::max(wider, 1L));
}

int ContractTimelineScale(int scale, long frameRate)
{
    long narrower = std::max((frameRate + 50) / 400, static_cast<long>(scale / 2));
    narrower = narrower / 5 * 5;
    return static_cast<int>(std::max(narrower, 1L));
}

int EaseAfterKind(int ease, int command)
{
    return (ease & kNoCurvesBit) | (command - kFirstEaseCommand);
}

int EaseAfterNoCurves(int ease) { return ease ^ kNoCurvesBit; }

void ToggleCameraPath()
{
    if (!pStage)
        return;
    pStage->showCameraPath = !pStage->showCameraPath;
    Check(1000, pStage->showCameraPath);
    SetIniItem("ShowCameraPath", pStage->showCameraPath ? 1L : 0L);
    RedrawStage();
}

void ToggleAutoRescale()
{
    if (!pDoc)
        return;
    pDoc->rescaleShow = !pDoc->rescaleShow;
    Check(1002, pDoc->rescaleShow);
    SetIniItem("RescaleShow", pDoc->rescaleShow ? 1L : 0L);
}

void ChooseEase(int command)
{
    if (!pDoc || command < 1003 || command > 1006)
        return;
    pDoc->defaultEase = EaseAfterKind(pDoc->defaultEase, command);
    pDoc->DefaultEase();
    for (int item = 1003; item <= 1006; ++item)
        Check(item, item == kFirstEaseCommand + (pDoc->defaultEase & kEaseKindMask));
    SetIniItem("EaseType", static_cast<long>(pDoc->defaultEase));
    pDoc->dirty = true;
}

void ToggleNoCurves()
{
    if (!pDoc)
        return;
    pDoc->defaultEase = EaseAfterNoCurves(pDoc->defaultEase);
    Check(1007, (pDoc->defaultEase & kNoCurvesBit) != 0);
    pDoc->DefaultEase();
    SetIniItem("EaseType", static_cast<long>(pDoc->defaultEase));
    RedrawStage();
    pDoc->dirty = true;
}

void ChooseFrameRate(int command)
{
    static constexpr long kRates[] = {2997, 2500, 2397};
    if (command < 1015 || command > 1017)
        return;
    long rate = kRates[command - 1015];
    for (int item = 1015; item <= 1017; ++item)
        Check(item, item == command);
    gFrameRate = rate;
    SetIniItem("FrameRate", rate);
    if (pTime)
        pTime->Refresh();
    if (pViewer)
        pViewer->ShowCode(gCurFrame);
}

void ChooseAspect(int command)
{
    static constexpr int kModes[] = {7500, 5625, 5626};
    if (!pDoc || command < 1030 || command > 1032)
        return;
    int mode = kModes[command - 1030];
    pDoc->aspectMode = mode;
    pDoc->aspectRatio = CDoc::AspectRatioOf(mode);
    SetIniItem("AspectMode", static_cast<long>(mode));
    CheckAspectItems(mode);
    // The viewer takes the new shape; the stage draws the camera frame with it.
    if (pViewer)
        PostAMessage(pViewer, kMsgMoved, 0, 0);
    if (pDoc->picCount > 0)
        pDoc->GotoFrame(gCurFrame, true);
    RedrawStage();
}

void ToggleDraft()
{
    if (!pDoc)
        return;
    pDoc->draftRender = !pDoc->draftRender;
    Check(1033, pDoc->draftRender);
    SetIniItem("DraftRender", pDoc->draftRender ? 1L : 0L);
}

void ToggleMultiprocessor()
{
    gMultiProcess = !gMultiProcess;
    Check(1034, gMultiProcess);
    SetIniItem("MultiProcess", gMultiProcess ? 1L : 0L);
}

void ToggleMotionBlur()
{
    if (!pDoc)
        return;
    pDoc->blurFrames = pDoc->blurFrames != 0 ? 0 : 1;
    Check(1035, pDoc->blurFrames != 0);
    SetIniItem("BlurFrames", pDoc->blurFrames);
}

void ToggleTvSafe()
{
    if (!pViewer)
        return;
    pViewer->tvSafe = !pViewer->tvSafe;
    Check(1040, pViewer->tvSafe);
    SetIniItem("ShowTVSafe", pViewer->tvSafe ? 1L : 0L);
    pViewer->Refresh(true);
}

void ToggleCentrePicture()
{
    if (!pStage)
        return;
    pStage->centrePicture = !pStage->centrePicture;
    Check(1041, pStage->centrePicture);
    SetIniItem("CenterPic", pStage->centrePicture ? 1L : 0L);
    // The stage places the picture again when it lays itself out.
    PostAMessage(pStage, kMsgMoved, 0, 0);
    RedrawStage();
}

void ZoomStage(bool in)
{
    if (!pStage)
        return;
    pStage->scale = in ? StageZoomIn(pStage->scale) : StageZoomOut(pStage->scale);
    SetIniItem("StageScale", static_cast<long>(Percent(pStage->scale)));
    PostAMessage(pStage, kMsgMoved, 0, 0);
    RedrawStage();
    if (pMain)
        pMain->Redraw();  // the key panel marks the zoom
}

void ScaleTimeline(bool enlarge)
{
    if (!pTime)
        return;
    pTime->scale = enlarge ? EnlargeTimelineScale(pTime->scale, gFrameRate)
                           : ContractTimelineScale(pTime->scale, gFrameRate);
    SetIniItem("TimeScale", static_cast<long>(pTime->scale));
    pTime->extent = TimelineExtent(pDoc ? pDoc->showLength : 0, pTime->scale);
    PostAMessage(pTime, kMsgMoved, 0, 0);
    pTime->Refresh();
}
