#include "ui/timeline/ctime.h"

#include <algorithm>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/draw/font.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/key_dialog.h"
#include "ui/viewer/cview.h"

namespace {

constexpr long kTimelineStyle = kStyleHorizontalBar;
constexpr int kScrollStep = 60;  // pixels a wheel notch scrolls

// Colours (0x00BBGGRR).
constexpr long kGround = 0xFFFFFF;
constexpr long kPictureShades[2] = {0xF0D8C0, 0xC0E0F0};
constexpr long kTransitionShade = 0xA0A0A0;
constexpr long kRuler = 0x808080;
constexpr long kMarker = 0x000000;
constexpr long kStartMarker = 0x800000;
constexpr long kHold = 0x006000;
// Exclusive-ored over the white ground it shows red.
constexpr long kCutLine = kGround ^ 0x0000FF;
constexpr long kDragMark = 0xFFFFFF;  // exclusive-or: inverts what it covers

// Cursor kinds.
constexpr int kCursorArrow = 1;
constexpr int kCursorOnKey = 9;
constexpr int kCursorMovePicture = 13;

constexpr const char* kHoldText = " HOLD ";
constexpr int kMarkerRadius = 5;
constexpr int kMarkerTop = 17;
constexpr int kKeyEditorLeft = 250;  // the key editor opens this far left of the pointer
constexpr int kKeyEditorMargin = 8;

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
    press = TimelinePress{};
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

long CTime::ToPix(long frame) const { return TimelineToPix(frame, scale); }

long CTime::FromPix(long x) const { return TimelineFromPix(x, scale); }

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

void CTime::Refresh() { Redraw(); }

// --- Drawing ----------------------------------------------------------------------------------

void CTime::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    int scrollX = GetViewScrollX();
    SetWindowOrigin(scrollX, 0);
    DrawBar(kGround, {scrollX, 0, scrollX + client.right, client.bottom});
    DrawTimeBar();
    DrawCutline();
    // A drag mark on screen was wiped with the rest.
    markX = -1;
}

void CTime::DrawKeyMarker(long x, bool first)
{
    int left = static_cast<int>(x);
    if (first) {
        DrawBar(kStartMarker, {left, kKeyRowTop, left + 3, kKeyRowBottom + 1});
        return;
    }
    tagRECT circle = {left - kMarkerRadius, kMarkerTop, left + kMarkerRadius,
                      kMarkerTop + 2 * kMarkerRadius};
    DrawCirBar(kMarker, circle);
}

void CTime::DrawTimeBar()
{
    tagRECT client;
    GetClientRect(client);
    SelectDialogFont();
    // The ruler: a tick every 60 pixels (scale frames), taller every fifth.
    for (long x = kTimelineAxisStart, step = 0; x < extent; x += 60, ++step)
        DrawLine(kRuler, static_cast<int>(x), 0, static_cast<int>(x), step % 5 == 0 ? 6 : 3, 1);
    if (!pDoc)
        return;
    int pictures = pDoc->picCount;
    for (int pic = 0; pic < pictures; ++pic) {
        long start = pDoc->GetPicStart(pic);
        long end = pic + 1 < pictures ? pDoc->GetPicStart(pic + 1) : pDoc->showLength;
        int left = static_cast<int>(ToPix(start));
        int right = static_cast<int>(std::max(ToPix(end), static_cast<long>(left + 1)));
        DrawBar(kPictureShades[pic % 2], {left, kKeyRowTop, right, kKeyRowBottom + 1});
        if (pic >= 1) {
            // The transition: shaded from the start to its handle, a triangle on the handle.
            int handle = static_cast<int>(TransitionHandleX(*pDoc, scale, pic));
            if (handle > left)
                DrawBar(kTransitionShade, {left, 4, handle, kTransitionRowBottom});
            DrawTriangle(kMarker, handle, kTransitionRowBottom - 4, 8, 3);
        }
        int count = pDoc->GetKeyCount(pic);
        KeyStruct previous{};
        long previousX = left;
        for (int k = 0; k < count; ++k) {
            KeyStruct key{};
            pDoc->GetKey(k, key, pic);
            long x = ToPix(start + key.Frame);
            if (k > 0 && SegmentHolds(previous, key)) {
                long width = GetTextWidth(kHoldText);
                long from = previousX + kMarkerRadius;
                long to = x - kMarkerRadius;
                if (to - from > width) {
                    long middle = (from + to) / 2;
                    int lineY = kMarkerTop + kMarkerRadius;
                    DrawLine(kHold, static_cast<int>(from), lineY,
                             static_cast<int>(middle - width / 2), lineY, 1);
                    DrawLine(kHold, static_cast<int>(middle + width / 2), lineY,
                             static_cast<int>(to), lineY, 1);
                    DrawText(kHold, kHoldText, static_cast<int>(middle), kKeyRowTop, kTextCentre);
                }
            }
            DrawKeyMarker(x, k == 0);
            if (const char* mark = EaseMark(key.Ease))
                DrawText(kMarker, mark, static_cast<int>(x) + kEaseMarkOffset, kKeyRowTop,
                         kTextLeft);
            previous = key;
            previousX = x;
        }
    }
}

void CTime::DrawCutline()
{
    if (!GetDC(this))
        return;
    tagRECT client;
    GetClientRect(client);
    int drawingX = GetWindowOriginX();
    SetWindowOrigin(GetViewScrollX(), 0);
    int x = static_cast<int>(std::max(ToPix(gCurFrame), 3L));
    DrawLine(kCutLine, x, 5, x, std::max(client.bottom - 5, 6), 2, kPenXor);
    SetWindowOrigin(drawingX, 0);
}

// --- Drags ------------------------------------------------------------------------------------

void CTime::DrawDragMark(long x)
{
    if (!GetDC(this) || !pDoc)
        return;
    int drawingX = GetWindowOriginX();
    SetWindowOrigin(GetViewScrollX(), 0);
    int at = static_cast<int>(x);
    switch (press.drag) {
    case TimelineDrag::kKey:
        DrawCir(kDragMark, {at - 6, 16, at + 6, 28}, 1, kPenXor);
        break;
    case TimelineDrag::kPicture:
        DrawLine(kDragMark, at, 2, at, 2 + 44, 1, kPenXor);
        DrawLine(kDragMark, at + 3, 2, at + 3, 2 + 44, 1, kPenXor);
        break;
    case TimelineDrag::kTransition: {
        int left = static_cast<int>(ToPix(pDoc->GetPicStart(press.pic)));
        DrawBox(kDragMark, {std::min(left, at), 16, std::max(left, at), 28}, 1, kPenXor);
        break;
    }
    default:
        break;
    }
    SetWindowOrigin(drawingX, 0);
}

void CTime::MoveDragMark(long x)
{
    if (markX >= 0)
        DrawDragMark(markX);
    DrawDragMark(x);
    markX = x;
    // The viewer's timecode box follows the drag: the frame under the pointer, or for a
    // transition the length its box stands for (its width less 4 pixels at the scale).
    if (pViewer && pDoc) {
        bool transition = press.drag == TimelineDrag::kTransition;
        pViewer->ShowCode(transition ? FromPix(x - ToPix(pDoc->GetPicStart(press.pic)))
                                     : FromPix(x));
    }
}

void CTime::CancelDrag()
{
    if (markX >= 0)
        DrawDragMark(markX);
    markX = -1;
    press = TimelinePress{};
}

void CTime::Press(long x, long y)
{
    CancelDrag();
    downX = x;
    if (!pDoc)
        return;
    press = ClassifyPress(*pDoc, scale, x, y);
    if (press.drag == TimelineDrag::kKey || press.drag == TimelineDrag::kPicture ||
        press.drag == TimelineDrag::kTransition)
        MoveDragMark(x);
}

void CTime::Hover(long x, long y)
{
    if (!pDoc)
        return;
    switch (press.drag) {
    case TimelineDrag::kScrub: {
        long frame = FromPix(x);
        if (frame == gCurFrame)
            return;
        DrawCutline();
        pDoc->GotoFrame(frame, false);
        DrawCutline();
        if (pViewer) {
            pViewer->ShowCode(gCurFrame);
            pViewer->Refresh(false);
        }
        return;
    }
    case TimelineDrag::kKey:
    case TimelineDrag::kPicture:
        MoveDragMark(x);
        return;
    case TimelineDrag::kTransition:
        if (press.pic > 0)
            MoveDragMark(x);
        return;
    default:
        break;
    }
    TimelinePress under = ClassifyPress(*pDoc, scale, x, y);
    if (under.drag == TimelineDrag::kKey || under.drag == TimelineDrag::kTransition)
        ChangeCursor(kCursorOnKey);
    else if (under.drag == TimelineDrag::kPicture)
        ChangeCursor(kCursorMovePicture);
    else
        ChangeCursor(kCursorArrow);
}

void CTime::Release(long x, long wParam)
{
    if (pStage)
        pStage->HandleEvent(kMsgEditEnded, 0, 0);
    TimelinePress done = press;
    CancelDrag();
    if (!pDoc)
        return;
    long f0 = FromPix(downX);
    long f1 = FromPix(x);
    switch (done.drag) {
    case TimelineDrag::kKey:
        DropKey(*pDoc, scale, done.pic, done.key, f0, f1, (wParam & kModShift) != 0);
        break;
    case TimelineDrag::kTransition:
        DropTransition(*pDoc, scale, done.pic, x);
        break;
    case TimelineDrag::kPicture:
        DropPictureStart(*pDoc, done.pic, f0, f1);
        break;
    default:
        break;
    }
    pDoc->GotoFrame(f1, true);
    if (pMain && pStage)
        pMain->ShowStats(pStage->currentKey);
    Redraw();
}

void CTime::DoubleClick(long x, long y, int windowX)
{
    CancelDrag();
    if (!pDoc)
        return;
    TimelineKeyHit hit = FindTimelineKey(*pDoc, scale, x, y);
    if (hit.key < 0)
        return;
    KeyStruct key{};
    pDoc->GetKey(hit.key, key, hit.pic);
    pDoc->Do(key, hit.key, hit.pic);
    tagPOINT at = KeyEditorPlace(windowX);
    if (EditKey(key, at.x, at.y))
        pDoc->SetKey(hit.key, key, hit.pic);
    pDoc->GotoFrame(FromPix(x), true);
}

long CTime::HandleEvent(unsigned int msg, long wParam, long lParam)
{
    int windowX = PointParamX(lParam);
    long x = windowX + GetViewScrollX();
    long y = PointParamY(lParam);
    switch (msg) {
    case kMsgResized:
    case kMsgMoved:
        Layout();
        return 0;
    case kMsgPaint:
        OnDraw();
        return 1;
    case kMsgButtonDown:
        Press(x, y);
        return 1;
    case kMsgMouseMoved:
        Hover(x, y);
        return 1;
    case kMsgButtonUp:
        Release(x, wParam);
        return 1;
    case kMsgSecondaryUp:
        DoubleClick(x, y, windowX);
        return 1;
    case kMsgWheelHorizontal:
    case kMsgWheelVertical:
        ScrollControl(kScrollBarHorizontal, wParam * kScrollStep);
        return 1;
    case kMsgShortcut:
    case kMsgKeyDown:
        return pMain && wParam != 1024 ? pMain->HandleEvent(msg, wParam, lParam) : 0;
    case kMsgCommand:
        return 1;
    case kMsgEditEnded:
        CancelDrag();
        Redraw();
        return 1;
    case kMsgClose:
        PostAMessage(parent ? parent : this, kMsgCloseWindow, 0, 0);
        return 1;
    default:
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}

tagPOINT CTime::KeyEditorPlace(int windowX) const
{
    tagPOINT at = {std::max(windowX - kKeyEditorLeft, kKeyEditorMargin), kKeyEditorMargin};
    if (!pStage)
        return at;
    tagRECT mine;
    tagRECT stage;
    tagRECT client;
    GetWinRect(mine);
    pStage->GetWinRect(stage);
    pStage->GetClientRect(client);
    int dialogHeight = kDialogRowPitch * kKeyDialogRows + 78;
    at.x = std::max(mine.left - stage.left + windowX - kKeyEditorLeft, kKeyEditorMargin);
    at.y = std::max(client.bottom - dialogHeight - kKeyEditorMargin, kKeyEditorMargin);
    return at;
}

bool CTime::EditKey(KeyStruct& key, int x, int y)
{
    // The dialog is taller than the time line: it opens over the stage.
    CPWnd* owner = pStage ? static_cast<CPWnd*>(pStage) : this;
    return RunKeyDialog(owner, x, y, key);
}
