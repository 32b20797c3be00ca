#pragma once
// The camera between keys: a cubic curve through the keys (or straight lines), with each
// segment's time bent by an ease; and the two helpers that turn a camera frame about its centre.
//
// Ease codes. The show's default ("EaseType"): bits 0-3 the kind, bit 4 (16) no curves.
// A key's own Ease (0 = use the default): (kind + 1) x 1000 + speed, speed 0..999 read as
// s = speed / 100; an odd whole part switches curves off for that segment.
// Kinds: 0 slow in and out, 1 slow in, 2 slow out, 3 plain, 4 hold.

#include <vector>

#include "doc/key.h"
#include "platform/base/types.h"

constexpr int kEaseBoth = 0;
constexpr int kEaseIn = 1;
constexpr int kEaseOut = 2;
constexpr int kEaseNone = 3;
constexpr int kEaseHold = 4;
constexpr int kEaseNoCurves = 16;

// Field numbers of KeyStruct, as CurveFit takes them.
enum KeyField {
    kFieldXPos = 0,
    kFieldYPos = 2,
    kFieldWidth = 3,
    kFieldRot2 = 5,
    kFieldRot3 = 6,
    kFieldRotation = 7,
    kFieldEase = 8,
};

struct KeyEase {
    int kind;
    double speed;  // s: the share of the segment the ease takes (speed / 100)
    bool noCurves;
};

// The kind, speed and curve switch carried by a key's own Ease value (meaningful when above 0).
KeyEase DecodeKeyEase(float ease);

// Eased time for t in 0..1: ease in over 0..a, constant speed over a..b, ease out over b..1.
float CalcEase(float t, float a, float b);

// One field's value at frame r (relative to the picture's start) on the curve through n keys.
// secondField samples half a frame later. Rotation fields always follow straight lines.
float CurveFit(int n, const KeyStruct* keys, int field, long r, int secondField, int ease);

// Turns a point, or the two corners of a rectangle, about a centre (window or picture pixels).
void RotatePoint(tagPOINT& p, float degrees, const tagPOINT& centre);
void RotateRect(tagRECT& r, float degrees, const tagPOINT& centre);

// One point of the camera's path, in picture pixels.
struct CameraPathPoint {
    float x;
    float y;
};

// The camera centre of a picture at frames 0, 1, ... up to its last key's Frame (at most
// kMaxCameraPathPoints of them, evenly spread over a longer move): the path the stage draws.
constexpr long kMaxCameraPathPoints = 1L << 16;
std::vector<CameraPathPoint> CameraPath(int n, const KeyStruct* keys, int ease);
