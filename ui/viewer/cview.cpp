#include "ui/viewer/cview.h"

#include <algorithm>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "platform/dialog/string_box.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/draw/font.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/message_queue.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/ticks.h"
#include "ui/editor_windows.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"

namespace {

constexpr long kPictureGround = 0x000000;
constexpr long kStripFace = 0x808080;
constexpr long kWhite = 0xFFFFFF;
constexpr long kBlack = 0x000000;
constexpr int kOutlineMode = 1001;
constexpr unsigned int kMsgShowHide = 1023;
constexpr unsigned int kMsgTimecodeClick = 1016;
constexpr long kUnhandledKey = 1024;
constexpr int kCursorArrow = 1;

bool SameCamera(const KeyStruct& a, const KeyStruct& b)
{
    return a.XPos == b.XPos && a.YPos == b.YPos && a.Width == b.Width && a.Rot2 == b.Rot2 &&
           a.Rot3 == b.Rot3 && a.Rotation == b.Rotation;
}

}  // namespace

CView::CView(CPWnd* ownerWindow) : owner(ownerWindow)
{
    tvSafe = GetIniItem("ShowTVSafe", 0) != 0;
    dualScreen = GetIniItem("DualScreenViewer", 0) != 0;
    // Whole ticks per frame: 2 at 60 ticks a second for every offered rate.
    ticksPerFrame =
        static_cast<int32_t>(std::max(1L, GetMilliTimeFreq() * 100 / std::max(1L, gFrameRate)));
    if (!Create(ownerWindow, kViewerStyle))
        return;
    tagRECT outer = {0, 0, 640, 480};
    if (ownerWindow)
        ownerWindow->GetWinRect(outer);
    tagRECT start = ViewerStartRect(outer, GetIniItem("ViewerTop", kNotStored),
                                    GetIniItem("ViewerLeft", kNotStored),
                                    GetIniItem("ViewerWidth", kNotStored), dualScreen);
    SetWinRect(start, false);
    SetTitle("Viewer");
    pViewer = this;
    // Sized twice, first for a tall picture, so that the window settles on the show's shape
    // whatever size it had.
    if (pDoc) {
        float aspect = pDoc->aspectRatio;
        pDoc->aspectRatio = 0.5f;
        HandleEvent(kMsgMoved, 0, 0);
        pDoc->aspectRatio = aspect;
    }
    HandleEvent(kMsgMoved, 0, 0);
    Show(1);
}

CView::~CView()
{
    if (pViewer == this)
        pViewer = nullptr;
}

void CView::FitToShow()
{
    tagRECT rect;
    GetWinRect(rect);
    float aspect = pDoc ? pDoc->aspectRatio : 0.75f;
    tagRECT fitted = ViewerFittedRect(rect, aspect, GetCaptionSize());
    SetWinRect(fitted, IsVisible());
    SetIniItem("ViewerTop", fitted.top);
    SetIniItem("ViewerLeft", fitted.left);
    SetIniItem("ViewerWidth", static_cast<long>(fitted.right) - fitted.left);
}

void CView::Refresh(bool force)
{
    tagRECT client;
    GetClientRect(client);
    tagRECT picture = ViewerPictureArea(client);
    int width = picture.right - picture.left;
    int height = picture.bottom - picture.top;
    if (width <= 0 || height <= 0 || pDoc == nullptr)
        return;
    KeyStruct camera = pStage ? pStage->currentKey : pDoc->currentCamera;
    if (!viewImage.Create(width, height, 32))
        return;
    int pic = pDoc->FindCurPic(gCurFrame);
    if (force && SameCamera(camera, pDoc->currentCamera) && pic == pDoc->curPic) {
        // The camera is the frame's own: the frame exactly as the movie renders it (transition
        // keys, letterbox and the placeholder of an unreadable picture included).
        pDoc->RenderFrame(gCurFrame, 0, false, width, height, &viewImage, false);
    } else {
        // A camera being edited on the stage, cut from the current picture.
        float aspect = pDoc->aspectRatio;
        float y = static_cast<float>(pDoc->image.GetHgt()) - camera.YPos;
        float left = camera.XPos - camera.Width / 2;
        float top = y - aspect * camera.Width / 2;
        float high = aspect * camera.Width;
        if (force || camera.Rotation != 0)
            viewImage.FilterCropMulti(&pDoc->image, left, top, camera.Width, high, camera.Rotation,
                                      camera.Rot2, camera.Rot3, pDoc->draftRender ? 0 : 100, 0);
        else
            viewImage.FilterCrop(&pDoc->image, left, top, camera.Width, high, 0, camera.Rot2,
                                 camera.Rot3, 0, 0, 0);
    }
    if (!GetDC(this))
        return;
    viewImage.Draw(picture, GetPort());
    if (tvSafe) {
        ViewerSafeAreas safe = ViewerSafeAreasOf(picture);
        DrawRoundBox(kWhite, safe.title, safe.corner, 1, kOutlineMode);
        DrawBox(kWhite, safe.action, 1, kOutlineMode);
    }
}

void CView::NextFrame(bool force)
{
    if (gCurFrame < 0 || gCurFrame > endFrame) {
        // Playback ends on the first or last frame it may show, never past them.
        gCurFrame = std::clamp(gCurFrame, 0L, static_cast<long>(endFrame));
        SetSpeed(0);
        return;
    }
    if (pDoc)
        pDoc->GotoFrame(gCurFrame, false);
    Refresh(force);
    uint32_t elapsed = static_cast<uint32_t>(GetMilliTime()) - static_cast<uint32_t>(startTick);
    int32_t n = static_cast<int32_t>(elapsed / static_cast<uint32_t>(ticksPerFrame));
    if (speed != 0)
        gCurFrame = static_cast<long>(n) * speed + startFrame;
}

void CView::PlayLoop(bool force)
{
    loopRunning = true;
    while (speed != 0) {
        NextFrame(force);
        if (pTime)
            pTime->Refresh();
        ShowCode(gCurFrame);
        CPWnd* window = nullptr;
        unsigned int msg = 0;
        long wParam = 0;
        long lParam = 0;
        long time = 0;
        tagPOINT point{0, 0};
        PeekAMessage(window, msg, wParam, lParam, time, point);
        if (msg == kMsgKeyDown)
            break;
        if (msg == kMsgButtonUp) {
            if (window != nullptr && pTime != nullptr && window == static_cast<CPWnd*>(pTime)) {
                gCurFrame = pTime->FromPix(point.x);
                startFrame = static_cast<int32_t>(gCurFrame);
                startTick = static_cast<int32_t>(GetMilliTime());
            } else if (window != this) {
                break;
            } else if (backwards.Check(point.x, point.y, -1) || stop.Check(point.x, point.y, -1) ||
                       forwards.Check(point.x, point.y, -1)) {
                break;
            }
        }
        if (gMacDone)
            break;
    }
    loopRunning = false;
    SetSpeed(0);
}

void CView::SetSpeed(int newSpeed)
{
    speed = newSpeed;
    if (GetDC(this)) {
        backwards.SetState(kButtonNormal);
        stop.SetState(kButtonNormal);
        forwards.SetState(kButtonNormal);
        if (speed == 1)
            forwards.SetState(kButtonHeld);
        if (speed == -1)
            backwards.SetState(kButtonHeld);
    }
    if (speed == 0 || pDoc == nullptr)
        return;
    endFrame = static_cast<int32_t>(pDoc->showLength);
    if (pDoc->standalone && pDoc->picCount > 0) {
        int lastPic = pDoc->picCount - 1;
        KeyStruct last{};
        pDoc->GetKey(pDoc->GetKeyCount(lastPic) - 1, last, lastPic);
        long lastKeyFrame = pDoc->GetPicStart(lastPic) + last.Frame;
        if (endFrame >= lastKeyFrame)
            endFrame = static_cast<int32_t>(lastKeyFrame);
    }
    if (speed == 1 && endFrame <= gCurFrame)
        gCurFrame = 0;
    startFrame = static_cast<int32_t>(gCurFrame);
    startTick = static_cast<int32_t>(GetMilliTime());
    if (!loopRunning)
        PlayLoop(true);
    pDoc->GotoFrame(gCurFrame, true);
}

void CView::ShowCode(long frame)
{
    if (!GetDC(this))
        return;
    DrawRoundBar(kWhite, timecodeBox, 6);
    DrawRoundBox(kBlack, timecodeBox, 6, 1, kOutlineMode);
    FontRecord* previous = pCurFont;
    SelectFont(Sans12, -1, 0);
    char text[64] = {};
    FrameToString(text, frame, false);
    DrawText(kBlack, text, timecodeBox.left + (timecodeBox.right - timecodeBox.left) / 2,
             timecodeBox.bottom - 17, kTextCentre);
    if (previous)
        SelectFont(previous, -1, 0);
}

void CView::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    tagRECT all = client;
    all.left -= 1;
    all.top -= 1;
    all.right += 1;
    all.bottom += 1;
    DrawBar(kStripFace, all);
    tagRECT picture = all;
    picture.bottom = std::max(all.top, all.bottom - kViewerStrip);
    DrawBar(kPictureGround, picture);
    ViewerControls controls = ViewerControlLayout(all.bottom);
    backwards.SetPos(controls.backwards);
    stop.SetPos(controls.stop);
    forwards.SetPos(controls.forwards);
    addKey.SetPos(controls.addKey);
    timecodeBox = controls.timecode;
    ShowCode(gCurFrame);
    Refresh(true);
}

void CView::AskTimecode()
{
    char value[kStringBoxAnswer + 1] = {};
    FrameToString(value, gCurFrame, false);
    if (!GetStringBox(value, "Timecode", "Type Timecode", nullptr))
        return;
    long frame = gCurFrame;
    StringToFrame(&frame, value);
    gCurFrame = frame;
    if (pDoc)
        pDoc->GotoFrame(gCurFrame, true);
}

long CView::HandleEvent(unsigned int msg, long wParam, long lParam)
{
    int x = PointParamX(lParam);
    int y = PointParamY(lParam);
    switch (msg) {
    case kMsgResized:
    case kMsgMoved:
        FitToShow();
        return 1;
    case kMsgPaint:
        OnDraw();
        return 1;
    case kMsgClose:
        PostAMessage(this, kMsgCloseWindow, 0, 0);
        return 1;
    case kMsgButtonDown:
        if (GetDC(this)) {
            backwards.Check(x, y, kButtonPressed);
            stop.Check(x, y, kButtonPressed);
            forwards.Check(x, y, kButtonPressed);
            addKey.Check(x, y, kButtonPressed);
        }
        return 1;
    case kMsgButtonUp: {
        if (pTime)
            pTime->HandleEvent(kMsgEditEnded, 0, 0);
        if (pStage)
            pStage->HandleEvent(kMsgEditEnded, 0, 0);
        tagRECT box = timecodeBox;
        if (x >= box.left && x < box.right && y >= box.top && y < box.bottom)
            AskTimecode();
        if (backwards.Check(x, y, -1))
            SetSpeed(-1);
        else if (stop.Check(x, y, -1))
            SetSpeed(0);
        else if (forwards.Check(x, y, -1))
            SetSpeed(1);
        else if (addKey.Check(x, y, -1) && pDoc)
            pDoc->AddKey();
        if (GetDC(this))
            addKey.SetState(kButtonNormal);
        return 1;
    }
    case kMsgMouseMoved:
        ChangeCursor(kCursorArrow);
        return 1;
    case kMsgTimecodeClick: {
        tagRECT box = timecodeBox;
        if (x >= box.left && x < box.right && y >= box.top && y < box.bottom)
            AskTimecode();
        return 1;
    }
    case kMsgShortcut:
    case kMsgKeyDown:
        if (wParam != kUnhandledKey && gMainWindowPtr)
            gMainWindowPtr->HandleEvent(msg, wParam, lParam);
        return 0;
    case kMsgShowHide:
        Show(wParam != 0 ? 1 : 0);
        return 1;
    default:
        if (msg < kMsgResized || msg > kMsgShowHide)
            return 0;
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}
