#pragma once
// How the stage changes its current key: one mouse movement of a drag, and the arrow, page and
// Home keys.

#include "doc/key.h"
#include "platform/base/types.h"
#include "ui/stage/stage_geometry.h"

// A drag from its press: the anchor is the press point less the frame's scaled centre (for a
// rotation or tilt, less twice the angle, so the first movement continues from it).
struct StageDrag {
    int mode = kHitNone;
    int anchorX = 0;
    int anchorY = 0;
    int startX = 0;  // trunc(scale x XPos), trunc(scale x YPos) at the press
    int startY = 0;
};

StageDrag StartDrag(const KeyStruct& key, float scale, int mode, int x, int y, long flags);

// One mouse movement of a drag applied to the key. `centre` is the frame's centre in window
// pixels (the resize measures from it).
void DragKey(KeyStruct& key, const StageDrag& drag, float scale, const tagPOINT& centre, int x,
             int y, long flags);

// What a key press does on the stage.
enum class StageKeyResult {
    kChanged,  // the key changed: repaint
    kIgnored,  // taken and dropped
    kPassOn,   // for the main window (menu shortcuts)
};

// The arrow, page and Home keys, plain or with Option, on a picture of pictureWidth by
// pictureHeight.
StageKeyResult StageKey(KeyStruct& key, long code, bool option, int pictureWidth, int pictureHeight,
                        float aspect);
