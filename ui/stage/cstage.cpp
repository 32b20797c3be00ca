#include "ui/stage/cstage.h"

#include "doc/cdoc.h"
#include "platform/draw/draw_shapes.h"
#include "platform/ini/settings.h"
#include "platform/util/rect.h"
#include "platform/wnd/messages.h"
#include "ui/editor_windows.h"

namespace {

constexpr long kStageStyle = 99;  // a child with both scroll bars

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
    dragMode = 0;
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

long CStage::HandleEvent(unsigned int msg, long wParam, long lParam)
{
    switch (msg) {
    case kMsgResized:
    case kMsgMoved:
        Layout();
        return 0;
    case kMsgPaint:
        OnDraw();
        return 1;
    case kMsgEditEnded:
        dragMode = 0;
        return 1;
    default:
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}

void CStage::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    int scrollX = GetViewScrollX();
    int scrollY = GetViewScrollY();
    SetWindowOrigin(scrollX, scrollY);
    // The empty canvas: grey with a grid fixed to the canvas, so it does not move with a picture.
    tagRECT seen = {scrollX, scrollY, scrollX + client.right, scrollY + client.bottom};
    DrawBar(kStageGround, seen);
    for (int x = seen.left / kStageGridStep * kStageGridStep; x < seen.right; x += kStageGridStep)
        DrawLine(kStageGrid, x, seen.top, x, seen.bottom, 1);
    for (int y = seen.top / kStageGridStep * kStageGridStep; y < seen.bottom; y += kStageGridStep)
        DrawLine(kStageGrid, seen.left, y, seen.right, y, 1);
}
