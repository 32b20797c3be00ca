#include "ui/viewer/cview.h"

#include <algorithm>

#include "doc/cdoc.h"
#include "platform/draw/draw_shapes.h"
#include "platform/ini/settings.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/viewer/viewer_geometry.h"

namespace {

constexpr long kPictureGround = 0x000000;
constexpr long kStripFace = 0xC0C0C0;

}  // namespace

CView::CView(CPWnd* ownerWindow) : owner(ownerWindow)
{
    tvSafe = GetIniItem("ShowTVSafe", 0) != 0;
    dualScreen = GetIniItem("DualScreenViewer", 0) != 0;
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
        FitToShow();
        pDoc->aspectRatio = aspect;
    }
    FitToShow();
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

long CView::HandleEvent(unsigned int msg, long wParam, long lParam)
{
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
    default:
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}

void CView::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    tagRECT strip = client;
    strip.top = std::max(client.top, client.bottom - kViewerStrip);
    tagRECT picture = client;
    picture.bottom = strip.top;
    DrawBar(kPictureGround, picture);
    DrawBar(kStripFace, strip);
}
