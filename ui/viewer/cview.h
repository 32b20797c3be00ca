#pragma once
// CView: the floating viewer window: what the camera sees, with the transport buttons and the
// timecode box in a 24-row strip below the picture. It also plays the show in real time.
//
// Coordinates:
//   window rectangles   screen pixels (CPWnd), placed from the main window's rectangle
//   content             the picture area from the top (trunc(width x aspect ratio) rows), then
//                       the control strip (viewer_geometry.h)
//   frames              gCurFrame; playback computes them from the tick clock

#include <cstdint>

#include "image/cdib.h"
#include "platform/base/types.h"
#include "platform/wnd/button.h"
#include "platform/wnd/cpwnd.h"
#include "ui/viewer/viewer_geometry.h"

constexpr long kViewerStyle = 14;  // a floating window

class CView : public CPWnd {
public:
    explicit CView(CPWnd* owner);
    ~CView() override;

    long HandleEvent(unsigned int msg, long wParam, long lParam) override;
    void OnDraw() override;

    // Renders the stage's camera into the view image and draws it: the full filter when forced
    // or rotated, the fast nearest crop otherwise (while the camera is dragged).
    void Refresh(bool force);
    // Shows gCurFrame, then moves gCurFrame to where the clock says playback has got to.
    void NextFrame(bool force);
    // Plays until the speed returns to 0, polling input without waiting.
    void PlayLoop(bool force);
    // 0 stops, 1 plays forwards, -1 backwards.
    void SetSpeed(int newSpeed);
    // The timecode box with the frame's timecode.
    void ShowCode(long frame);

    CPWnd* owner;
    CPButton backwards{105, 106, 107};
    CPButton stop{102, 109, 110};
    CPButton forwards{108, 103, 104};
    CPButton addKey{111, 112, 0};
    tagRECT timecodeBox{0, 0, 0, 0};
    int32_t speed = 0;
    int32_t startTick = 0;
    int32_t ticksPerFrame = 1;
    int32_t startFrame = 0;
    int32_t endFrame = 0;
    bool loopRunning = false;
    bool tvSafe = false;
    bool dualScreen = false;
    CDIB viewImage{16, 16, 8};

private:
    void FitToShow();
    void AskTimecode();
};
