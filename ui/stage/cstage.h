#pragma once
// CStage: the child window of the main window where the camera is placed on the current picture.
//
// Coordinates:
//   window rectangles   screen pixels (CPWnd), placed from the main window's rectangle
//   canvas              stage pixels of the 4096 x 4096 area the scroll bars move over; the
//                       content shows it from the scroll position on
//   picture pixels      the current key's XPos, YPos and Width; stage pixels are picture
//                       pixels x scale

#include "doc/key.h"
#include "platform/base/types.h"
#include "platform/wnd/cpwnd.h"
#include "ui/stage/stage_edit.h"
#include "ui/stage/stage_geometry.h"

constexpr int kStageCanvas = 4096;
constexpr int kStageGridStep = 24;
constexpr long kStageGround = 0xC0C0C0;
constexpr long kStageGrid = 0xA0A0A0;
constexpr int kRoomForTimeline = 84;

// The stage's window rectangle in its parent's: the parent's rectangle shrunk by a scroll bar's
// thickness all round, its top moved down by the parent's caption and menu bar, its bottom up
// by the room the timeline takes.
tagRECT StageWindowRect(const tagRECT& parent, int captionHeight, int menuHeight);

class CStage : public CPWnd {
public:
    explicit CStage(CPWnd* parent);
    ~CStage() override;

    long HandleEvent(unsigned int msg, long wParam, long lParam) override;
    void OnDraw() override;

    // What (x, y) in window pixels hits on the current key's frame (kHitNone .. kHitTilt).
    int MouseCheck(int x, int y, int flags) const;
    // The frame of the current key: in exclusive-or with `rubber` (a second call erases it),
    // else white under black so that it shows on any picture.
    void DrawCamera(bool rubber);
    // One movement of the drag in progress: erase, change the key, draw again, refresh the key
    // panel and the viewer.
    void DragCamera(int x, int y, int flags);
    // The mapping of picture pixels to window pixels now (scale, scroll, origin, aspect).
    StageView View() const;
    int DragMode() const { return drag.mode; }

    float scale = 0.5f;  // stage pixels per picture pixel ("StageScale" / 100)
    int originX = 0;     // where the picture's top-left corner lies on the canvas
    int originY = 0;
    bool showCameraPath = false;
    bool centrePicture = false;
    KeyStruct currentKey{};  // the key being edited

private:
    void Layout();
    void Press(int x, int y, long flags);
    void Release(int x, int y);
    void Hover(int x, int y, long flags);
    void DoubleClick(int x, int y);
    // The keys table; keys the stage does not use go on to the main window as they came.
    long Key(unsigned int msg, long code, long lParam);
    // The first key of the current picture whose marker lies within reach of (x, y), or -1.
    int MarkerAt(int x, int y) const;
    // The key panel shows the current key; the viewer draws it again.
    void RefreshPanels();

    CPWnd* parent;
    StageDrag drag;
};
