#pragma once
// The camera frame as the stage draws and grabs it: where its centre, corners and handle fall in
// window pixels, and which part of it a point hits.
//
// Coordinates: window pixels are the stage's content pixels (mouse points); picture pixels are
// the key's XPos, YPos and Width. One mapping serves drawing, hit tests and key markers:
//     window = trunc(picture x scale) - scroll + origin

#include "doc/key.h"
#include "platform/base/types.h"

// Hit codes of StageHit, which are also the drag modes.
constexpr int kHitNone = 0;
constexpr int kHitMove = 8;
constexpr int kHitRotate = 9;
constexpr int kHitResize = 10;
constexpr int kHitTilt = 11;

// Modifier flags of mouse messages the stage reads.
constexpr long kStageConstrain = 32;  // a move keeps one axis, a rotation snaps to 0, a tilt
                                      // turns Rot2 instead of Rot3
constexpr long kStageTiltFlag = 64;   // the rotation handle tilts instead

// How the stage maps picture pixels to window pixels.
struct StageView {
    float scale = 0.5f;  // stage pixels per picture pixel
    int scrollX = 0;     // scroll bars' values
    int scrollY = 0;
    int originX = 0;  // the picture's top-left corner on the canvas
    int originY = 0;
    float aspect = 0.75f;  // frame height per width
};

// The frame of one key in window pixels.
struct StageFrame {
    tagPOINT centre;
    int hw;              // half width
    int hh;              // half height
    tagPOINT corner[4];  // top-left, top-right, bottom-right, bottom-left, rotated
    tagPOINT handle;     // centre of the rotation handle, rotated
};

// Where the picture's corner sits when centred: max(0, (client - trunc(size x scale)) / 2).
int CentredOrigin(int clientSize, int pictureSize, float scale);

// The frame of `key`. Tilt skews the outline (the top-left and bottom-right corners move by +dx,
// +dy, the other two by -dx, -dy): a drawing aid, not a perspective.
StageFrame FrameOf(const KeyStruct& key, const StageView& view);

// Pixels around a corner that still grab it: 4, or hw / 6 for a half width above 23.
int GrabTolerance(int hw);
// Arm length of the centre cross: 4 below a half width of 40, else hw / 8.
int CrossArm(int hw);

// What (x, y) hits: the centre square (half the frame's height each side, never rotated) first,
// then the corners in order; the top-left corner rotates, or tilts with kStageTiltFlag.
int StageHit(const StageFrame& frame, int x, int y, long flags);

// A key marker (a key's centre in window pixels) within 7 pixels of (x, y) on both axes.
bool NearMarker(const KeyStruct& key, const StageView& view, int x, int y);
