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

constexpr int kViewerStrip = 24;  // rows of the control strip under the picture
constexpr long kViewerStyle = 14;  // a floating window

// A setting that was never stored.
constexpr long kNotStored = -2147483647L - 1;

// Where the viewer first stands, from the owner's rectangle and the stored "ViewerTop",
// "ViewerLeft" and "ViewerWidth" (kNotStored when absent). dualScreen lets it leave the owner.
tagRECT ViewerStartRect(const tagRECT& owner, long storedTop, long storedLeft, long storedWidth,
                        bool dualScreen);
// Keeps the width and makes the height fit a picture of `aspect` height per width, the caption
// and the control strip.
tagRECT ViewerFittedRect(const tagRECT& rect, float aspect, int captionHeight);

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
