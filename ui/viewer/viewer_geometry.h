#pragma once
// Where the viewer stands and how its content is laid out: the start rectangle from the stored
// settings, the height that fits the show's shape, the picture area and the control strip.
//
// Coordinates: window rectangles are screen pixels (CPWnd); the picture area and the controls are
// client pixels, the picture from the top (trunc(width x aspect) rows), then the control strip.

#include "platform/base/types.h"

constexpr int kViewerStrip = 24;       // rows of the control strip under the picture
constexpr int kViewerButtonSize = 19;  // the transport and add-key buttons are squares
constexpr int kViewerCodeWidth = 80;   // the timecode box
constexpr int kViewerMinWidth = 80;    // no viewer is narrower
constexpr long kViewerMinPlace = 32;   // a stored top or left below this reads as this

// A setting that was never stored.
constexpr long kNotStored = -2147483647L - 1;

// Where the viewer first stands, from the owner's rectangle and the stored "ViewerTop",
// "ViewerLeft" and "ViewerWidth" (kNotStored when absent). dualScreen lets it leave the owner.
tagRECT ViewerStartRect(const tagRECT& owner, long storedTop, long storedLeft, long storedWidth,
                        bool dualScreen);

// Keeps the width and makes the height fit a picture of `aspect` height per width, the caption
// and the control strip.
tagRECT ViewerFittedRect(const tagRECT& rect, float aspect, int captionHeight);

// The picture area of a client rectangle: everything above the control strip.
tagRECT ViewerPictureArea(const tagRECT& client);

// The controls on the strip, from the bottom of the (grown) client rectangle.
struct ViewerControls {
    tagRECT backwards;
    tagRECT stop;
    tagRECT forwards;
    tagRECT addKey;
    tagRECT timecode;
};
ViewerControls ViewerControlLayout(int bottom);

// The television-safe outlines over a picture area: the title-safe box (drawn rounded with
// `corner`) and the action-safe box.
struct ViewerSafeAreas {
    tagRECT title;
    int corner;
    tagRECT action;
};
ViewerSafeAreas ViewerSafeAreasOf(const tagRECT& picture);
