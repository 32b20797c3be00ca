#pragma once
// CTime: the time line under the stage: the show's pictures and keys along a frame axis, the cut
// line at the current frame, and the drags that re-time keys, pictures and transitions.
//
// Coordinates:
//   window rectangles   screen pixels (CPWnd), placed from the main window's rectangle
//   window pixels       mouse points; content x = window x + horizontal scroll, taken at once
//                       by every handler, so everything below works in content x
//   content x           x = frame x 60 / scale + 4 (timeline_geometry.h); drawing sets the
//                       window origin to the scroll so it draws in content x too
//   frames              absolute show frames; a key's Frame is relative to its picture's start

#include "doc/key.h"
#include "platform/base/types.h"
#include "platform/wnd/cpwnd.h"
#include "ui/timeline/timeline_edit.h"
#include "ui/timeline/timeline_geometry.h"

constexpr int kTimelineHeight = 48;      // the key and transition rows and the scroll bar
constexpr int kTimelinePanelRoom = 130;  // left of it: the key information panel

// The time line's window rectangle in its parent's: in the strip the stage leaves under itself,
// right of the key information panel.
tagRECT TimelineWindowRect(const tagRECT& parent, int captionHeight, int menuHeight);

class CTime : public CPWnd {
public:
    explicit CTime(CPWnd* parent);
    ~CTime() override;

    long HandleEvent(unsigned int msg, long wParam, long lParam) override;
    void OnDraw() override;

    // Frame x 60 / scale + 4, and back (never below frame 0).
    long ToPix(long frame) const;
    long FromPix(long x) const;
    // Chooses the scale for a show of `length` frames and the scrollable extent.
    void SetMaxTime(long length);
    // Redraws the whole time line.
    void Refresh();
    // The cut line at the current frame, exclusive-or: drawing it twice removes it.
    void DrawCutline();
    // The key editor for `key`, placed at (x, y) in the stage's window pixels; true when the user
    // accepted the changes into `key`.
    bool EditKey(KeyStruct& key, int x, int y);
    // Where a double click at window x opens the key editor, in the stage's window pixels: 250
    // pixels left of the pointer (not left of 8), near the stage's bottom.
    tagPOINT KeyEditorPlace(int windowX) const;

    int scale = 30;       // frames per 60 pixels
    int extent = 0;       // scrollable width in pixels
    TimelinePress press;  // the drag under way (kNone: none)
    long downX = 0;       // content x of the button-down
    long markX = -1;      // content x of the drag mark on screen, -1 none

private:
    void Layout();
    void DrawTimeBar();
    void DrawKeyMarker(long x, bool first);
    // The drag's exclusive-or mark at content x (drawing it twice removes it).
    void DrawDragMark(long x);
    void MoveDragMark(long x);
    void CancelDrag();
    void Press(long x, long y);
    void Hover(long x, long y);
    void Release(long x, long wParam);
    void DoubleClick(long x, long y, int windowX);

    CPWnd* parent;
};
