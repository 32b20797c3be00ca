#pragma once
// CView: the floating viewer window: what the camera sees, with the transport buttons and the
// timecode box in a 24-row strip below the picture.
//
// Coordinates:
//   window rectangles   screen pixels (CPWnd), placed from the main window's rectangle
//   content             the picture area from the top (trunc(width x aspect ratio) rows), then
//                       the control strip

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

    CPWnd* owner;
    CPButton backwards{105, 106, 107};
    CPButton stop{102, 109, 110};
    CPButton forwards{108, 103, 104};
    CPButton addKey{111, 112, 0};
    CDIB viewImage{16, 16, 8};
    bool tvSafe = false;
    bool dualScreen = false;

private:
    void FitToShow();
};
