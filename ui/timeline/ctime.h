#pragma once
// CTime: the time line under the stage: the show's pictures and keys along a frame axis.
//
// Coordinates:
//   window rectangles   screen pixels (CPWnd), placed from the main window's rectangle
//   time line pixels    x = frame x 60 / scale + 4 from the axis start; the content shows them
//                       from the horizontal scroll position on

#include "doc/key.h"
#include "platform/base/types.h"
#include "platform/wnd/cpwnd.h"
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
    // The key editor for `key`, placed at (x, y) in the stage's window pixels; true when the user
    // accepted the changes into `key`.
    bool EditKey(KeyStruct& key, int x, int y);

    int scale = 30;  // frames per 60 pixels
    int extent = 0;  // scrollable width in pixels

private:
    void Layout();

    CPWnd* parent;
};
