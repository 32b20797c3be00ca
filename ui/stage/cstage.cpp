#include "ui/stage/cstage.h"

#include <algorithm>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/rubber.h"
#include "platform/ini/settings.h"
#include "platform/util/rect.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/draw_curve.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

constexpr long kStageStyle = 99;         // a child with both scroll bars
constexpr int kScrollStep = 60;          // pixels a wheel notch scrolls
constexpr long kUnderStroke = 0xFFFFFF;  // white under the black stroke
constexpr long kBlack = 0;
constexpr long kPathColour = 0xFFFFFF;
constexpr int kHandleRadius = 4;

// Cursor kinds of the drag modes, and of the idle pointer.
constexpr int kCursorArrow = 1;
constexpr int kCursorOnMarker = 2;
constexpr int kCursorResize = 8;
constexpr int kCursorRotate = 12;
constexpr int kCursorMove = 13;
constexpr int kCursorTilt = 14;

// The key editor opens right of and below the pointer, but stays this far above the bottom.
constexpr int kEditorRight = 100;
constexpr int kEditorBelow = 30;
constexpr int kEditorRoomAtBottom = 160;

int CursorOfHit(int hit)
{
    switch (hit) {
    case kHitMove:
        return kCursorMove;
    case kHitResize:
        return kCursorResize;
    case kHitRotate:
        return kCursorRotate;
    case kHitTilt:
        return kCursorTilt;
    default:
        return kCursorArrow;
    }
}

}  // namespace

tagRECT StageWindowRect(const tagRECT& parent, int captionHeight, int menuHeight)
{
    tagRECT rect = parent;
    ScaleRect(&rect, -kScrollBarSize, -kScrollBarSize);
    rect.top += captionHeight + menuHeight;
    rect.bottom -= kRoomForTimeline;
    return rect;
}

CStage::CStage(CPWnd* owner) : parent(owner)
{
    pStage = nullptr;
    scale = static_cast<float>(GetIniItem("StageScale", 50)) / 100.0f;
    showCameraPath = GetIniItem("ShowCameraPath", 0) != 0;
    centrePicture = GetIniItem("CenterPic", 0) != 0;
    if (!Create(owner, kStageStyle))
        return;
    Show(1);
    HandleEvent(kMsgMoved, 0, 0);
    drag = StageDrag{};
    if (pDoc)
        pDoc->GetKey(0, currentKey, 0);
    pStage = this;
}

CStage::~CStage()
{
    if (pStage == this)
        pStage = nullptr;
}

void CStage::Layout()
{
    tagRECT rect = {0, 0, 640, 480};
    if (parent) {
        tagRECT outer;
        parent->GetWinRect(outer);
        rect = StageWindowRect(outer, parent->GetCaptionSize(), parent->GetMenuSize());
    }
    SetViewScrollRange(kStageCanvas, kStageCanvas);
    SetWinRect(rect, true);
}

StageView CStage::View() const
{
    StageView view;
    view.scale = scale;
    view.scrollX = GetViewScrollX();
    view.scrollY = GetViewScrollY();
    view.originX = originX;
    view.originY = originY;
    view.aspect = pDoc ? pDoc->aspectRatio : 0.75f;
    return view;
}

int CStage::MouseCheck(int x, int y, int flags) const
{
    return StageHit(FrameOf(currentKey, View()), x, y, flags);
}

void CStage::DrawCamera(bool rubber)
{
    if (!GetDC(this))
        return;
    // The frame is placed in window pixels (scroll and origin already in it).
    int drawingX = GetWindowOriginX();
    int drawingY = GetWindowOriginY();
    SetWindowOrigin(0, 0);
    StageFrame f = FrameOf(currentKey, View());
    int arm = CrossArm(f.hw);
    tagPOINT outline[5] = {f.corner[0], f.corner[1], f.corner[2], f.corner[3], f.corner[0]};
    tagRECT across = {f.centre.x - arm, f.centre.y, f.centre.x + arm, f.centre.y};
    tagRECT down = {f.centre.x, f.centre.y - arm, f.centre.x, f.centre.y + arm};
    tagRECT handle = {f.handle.x - kHandleRadius, f.handle.y - kHandleRadius,
                      f.handle.x + kHandleRadius, f.handle.y + kHandleRadius};
    if (rubber) {
        RubberPolygon(4, outline, 2);
        RubberLine(across, 2);
        RubberLine(down, 2);
        RubberCir(handle, 1);
    } else {
        for (int pass = 0; pass < 2; ++pass) {
            long colour = pass == 0 ? kUnderStroke : kBlack;
            int width = pass == 0 ? 3 : 1;
            DrawCir(colour, handle, width);
            DrawPolyLine(colour, width, 5, outline);
            DrawLine(colour, across, width);
            DrawLine(colour, down, width);
        }
    }
    SetWindowOrigin(drawingX, drawingY);
}

void CStage::RefreshPanels()
{
    if (pMain)
        pMain->ShowStats(currentKey);
    if (pViewer)
        pViewer->Refresh(drag.mode == kHitNone);  // the fast crop while the camera is dragged
}

void CStage::DragCamera(int x, int y, int flags)
{
    DrawCamera(true);
    DragKey(currentKey, drag, scale, FrameOf(currentKey, View()).centre, x, y, flags);
    DrawCamera(true);
    RefreshPanels();
}

int CStage::MarkerAt(int x, int y) const
{
    if (!pDoc)
        return -1;
    int pic = pDoc->FindCurPic(gCurFrame);
    StageView view = View();
    for (int i = 0; i < pDoc->GetKeyCount(pic); ++i) {
        KeyStruct key{};
        pDoc->GetKey(i, key, pic);
        if (NearMarker(key, view, x, y))
            return i;
    }
    return -1;
}

void CStage::Press(int x, int y, long flags)
{
    DrawCamera(true);
    int mode = MouseCheck(x, y, static_cast<int>(flags));
    drag = StageDrag{};
    if (mode == kHitNone) {
        // A press beside the frame starts nothing: the frame goes back as it was drawn.
        DrawCamera(true);
        return;
    }
    drag = StartDrag(currentKey, scale, mode, x, y, flags);
}

void CStage::Release(int x, int y)
{
    if (pTime)
        PostAMessage(pTime, kMsgEditEnded, 0, 0);
    if (drag.mode != kHitNone) {
        Redraw();
        if (pDoc && pDoc->autoAddKey)
            pDoc->AddKey();
    }
    drag = StageDrag{};
    if (!showCameraPath || !pDoc)
        return;
    int key = MarkerAt(x, y);
    if (key < 0)
        return;
    int pic = pDoc->FindCurPic(gCurFrame);
    KeyStruct marker{};
    pDoc->GetKey(key, marker, pic);
    pDoc->GotoFrame(pDoc->GetPicStart(pic) + marker.Frame, true);
}

void CStage::Hover(int x, int y, long flags)
{
    if (drag.mode != kHitNone) {
        DragCamera(x, y, static_cast<int>(flags));
        return;
    }
    int hit = MouseCheck(x, y, static_cast<int>(flags));
    if (hit == kHitNone && showCameraPath && MarkerAt(x, y) >= 0)
        ChangeCursor(kCursorOnMarker);
    else
        ChangeCursor(CursorOfHit(hit));
}

void CStage::DoubleClick(int x, int y)
{
    drag = StageDrag{};
    if (MouseCheck(x, y, 0) != kHitNone && pTime) {
        tagRECT client;
        GetClientRect(client);
        KeyStruct copy = currentKey;
        if (pTime->EditKey(
                copy, x + kEditorRight,
                std::min(y + kEditorBelow, static_cast<int>(client.bottom) - kEditorRoomAtBottom)))
            currentKey = copy;
    }
    Redraw();
}

long CStage::Key(unsigned int msg, long code, long lParam)
{
    int width = pDoc ? pDoc->image.GetWid() : 0;
    int height = pDoc ? pDoc->image.GetHgt() : 0;
    float aspect = pDoc ? pDoc->aspectRatio : 0.75f;
    switch (StageKey(currentKey, code, IsKeyPressed(kKeyStateControl), width, height, aspect)) {
    case StageKeyResult::kChanged:
        Redraw();
        return 1;
    case StageKeyResult::kIgnored:
        return 1;
    case StageKeyResult::kPassOn:
    default:
        return pMain ? pMain->HandleEvent(msg, code, lParam) : 0;
    }
}

long CStage::HandleEvent(unsigned int msg, long wParam, long lParam)
{
    int x = PointParamX(lParam);
    int y = PointParamY(lParam);
    switch (msg) {
    case kMsgResized:
    case kMsgMoved:
        Layout();
        return 0;
    case kMsgPaint:
        OnDraw();
        return 1;
    case kMsgButtonDown:
        Press(x, y, wParam);
        return 1;
    case kMsgMouseMoved:
        Hover(x, y, wParam);
        return 1;
    case kMsgButtonUp:
        Release(x, y);
        return 1;
    case kMsgSecondaryUp:
        DoubleClick(x, y);
        return 1;
    case kMsgShortcut:
    case kMsgKeyDown:
        return Key(msg, wParam, lParam);
    case kMsgWheelVertical:
        ScrollControl(kScrollBarVertical, wParam * kScrollStep);
        return 1;
    case kMsgWheelHorizontal:
        ScrollControl(kScrollBarHorizontal, wParam * kScrollStep);
        return 1;
    case kMsgCommand:
        return 1;
    case kMsgEditEnded:
        drag = StageDrag{};
        return 1;
    case kMsgClose:
        PostAMessage(this, kMsgCloseWindow, 0, 0);
        return 1;
    default:
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}

void CStage::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    originX = 0;
    originY = 0;
    int scrollX = GetViewScrollX();
    int scrollY = GetViewScrollY();
    SetWindowOrigin(scrollX, scrollY);
    int pictureWidth = pDoc ? pDoc->image.GetWid() : 0;
    int pictureHeight = pDoc ? pDoc->image.GetHgt() : 0;
    if (centrePicture) {
        originX = CentredOrigin(client.right, pictureWidth, scale);
        originY = CentredOrigin(client.bottom, pictureHeight, scale);
    }
    // The canvas: grey with a grid fixed to the canvas, so it does not move with a picture; the
    // picture then covers its part of it.
    tagRECT seen = {scrollX, scrollY, scrollX + client.right, scrollY + client.bottom};
    DrawBar(kStageGround, seen);
    for (int gx = seen.left / kStageGridStep * kStageGridStep; gx < seen.right;
         gx += kStageGridStep)
        DrawLine(kStageGrid, gx, seen.top, gx, seen.bottom, 1);
    for (int gy = seen.top / kStageGridStep * kStageGridStep; gy < seen.bottom;
         gy += kStageGridStep)
        DrawLine(kStageGrid, seen.left, gy, seen.right, gy, 1);
    if (pDoc && pictureWidth > 0 && pictureHeight > 0) {
        tagRECT picture = {originX, originY,
                           originX + static_cast<int>(static_cast<float>(pictureWidth) * scale),
                           originY + static_cast<int>(static_cast<float>(pictureHeight) * scale)};
        pDoc->image.Draw(picture, GetPort());
    }
    if (showCameraPath && pDoc) {
        int pic = pDoc->FindCurPic(gCurFrame);
        DrawCurve(pDoc->GetKeyCount(pic), pDoc->keys[pic], pDoc->defaultEase, originX, originY,
                  scale, kPathColour);
    }
    SetWindowOrigin(0, 0);
    DrawCamera(false);
    RefreshPanels();
    ShowScrollBar(true, true);
}
