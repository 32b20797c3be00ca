#include "ui/timeline/ctime.h"

#include <algorithm>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/draw/draw_shapes.h"
#include "platform/ini/settings.h"
#include "platform/wnd/messages.h"
#include "ui/editor_windows.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/key_dialog.h"

namespace {

constexpr long kTimelineStyle = kStyleHorizontalBar;
constexpr long kTimelineGround = 0xFFFFFF;

}  // namespace

tagRECT TimelineWindowRect(const tagRECT& parent, int captionHeight, int menuHeight)
{
    tagRECT stage = StageWindowRect(parent, captionHeight, menuHeight);
    tagRECT rect;
    rect.left = parent.left + kTimelinePanelRoom;
    rect.top = stage.bottom + 2;
    rect.right = std::max(stage.right, rect.left + 1);
    rect.bottom = rect.top + kTimelineHeight;
    return rect;
}

CTime::CTime(CPWnd* owner) : parent(owner)
{
    scale = static_cast<int>(GetIniItem("TimeScale", FramesPerSecond()));
    if (!Create(owner, kTimelineStyle))
        return;
    SetMaxTime(pDoc ? pDoc->showLength : 0);
    Show(1);
    pTime = this;
}

CTime::~CTime()
{
    if (pTime == this)
        pTime = nullptr;
}

long CTime::ToPix(long frame) const
{
    return TimelineToPix(frame, scale);
}

long CTime::FromPix(long x) const
{
    return TimelineFromPix(x, scale);
}

void CTime::SetMaxTime(long length)
{
    // The document has no fixed-scale flag: the scale always follows the length.
    scale = TimelineScale(length, FramesPerSecond());
    extent = TimelineExtent(length, scale);
    HandleEvent(kMsgMoved, 0, 0);
}

void CTime::Layout()
{
    if (parent) {
        tagRECT outer;
        parent->GetWinRect(outer);
        SetWinRect(TimelineWindowRect(outer, parent->GetCaptionSize(), parent->GetMenuSize()),
                   true);
    }
    SetViewScrollRange(extent, 0);
}

long CTime::HandleEvent(unsigned int msg, long wParam, long lParam)
{
    switch (msg) {
    case kMsgResized:
    case kMsgMoved:
        Layout();
        return 0;
    case kMsgPaint:
        OnDraw();
        return 1;
    default:
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}

void CTime::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    DrawBar(kTimelineGround, client);
}

bool CTime::EditKey(KeyStruct& key, int x, int y)
{
    // The dialog is taller than the time line: it opens over the stage.
    CPWnd* owner = pStage ? static_cast<CPWnd*>(pStage) : this;
    return RunKeyDialog(owner, x, y, key);
}
