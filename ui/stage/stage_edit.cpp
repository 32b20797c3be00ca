#include "ui/stage/stage_edit.h"

#include <algorithm>
#include <cstdlib>

#include "doc/camera.h"
#include "platform/wnd/messages.h"

namespace {

constexpr float kDegreesPerPixel = 0.5f;  // two pixels of drag a degree
constexpr float kMostTilt = 90.0f;
constexpr float kSmallestWidth = 4.0f;
constexpr long kIgnoredKey = 1024;

}  // namespace

StageDrag StartDrag(const KeyStruct& key, float scale, int mode, int x, int y, long flags)
{
    StageDrag drag;
    drag.mode = mode;
    drag.startX = static_cast<int>(scale * key.XPos);
    drag.startY = static_cast<int>(scale * key.YPos);
    drag.anchorX = x - drag.startX;
    drag.anchorY = y - drag.startY;
    if (mode == kHitRotate)
        drag.anchorX = x - static_cast<int>(2.0f * key.Rotation);
    if (mode == kHitTilt) {
        float angle = (flags & kStageConstrain) != 0 ? key.Rot2 : key.Rot3;
        drag.anchorX = x - static_cast<int>(2.0f * angle);
    }
    return drag;
}

void DragKey(KeyStruct& key, const StageDrag& drag, float scale, const tagPOINT& centre, int x,
             int y, long flags)
{
    bool constrain = (flags & kStageConstrain) != 0;
    int d = x - drag.anchorX;
    switch (drag.mode) {
    case kHitMove: {
        int e = y - drag.anchorY;
        key.XPos = static_cast<float>(d) / scale;
        key.YPos = static_cast<float>(e) / scale;
        if (constrain) {
            // Travel from the press point: the axis that moved less keeps its start.
            if (std::abs(d - drag.startX) <= std::abs(e - drag.startY))
                key.XPos = static_cast<float>(drag.startX) / scale;
            else
                key.YPos = static_cast<float>(drag.startY) / scale;
        }
        break;
    }
    case kHitRotate:
        key.Rotation = constrain ? 0.0f : static_cast<float>(d) * kDegreesPerPixel;
        break;
    case kHitTilt:
        if (constrain)
            key.Rot2 = static_cast<float>(d) * kDegreesPerPixel;
        else
            key.Rot3 = static_cast<float>(d) * kDegreesPerPixel;
        key.Rot2 = std::clamp(key.Rot2, -kMostTilt, kMostTilt);
        key.Rot3 = std::clamp(key.Rot3, -kMostTilt, kMostTilt);
        break;
    case kHitResize: {
        tagPOINT mouse = {x, y};
        RotatePoint(mouse, 360.0f - key.Rotation, centre);
        key.Width = 2.0f * static_cast<float>(std::abs(mouse.x - centre.x)) / scale;
        break;
    }
    default:
        break;
    }
}

StageKeyResult StageKey(KeyStruct& key, long code, bool option, int pictureWidth, int pictureHeight,
                        float aspect)
{
    float w = static_cast<float>(pictureWidth);
    float h = static_cast<float>(pictureHeight);
    switch (code) {
    case kCharLeft:
        key.XPos = option ? key.Width / 2.0f : key.XPos - 1.0f;
        return StageKeyResult::kChanged;
    case kCharRight:
        key.XPos = option ? w - key.Width / 2.0f : key.XPos + 1.0f;
        return StageKeyResult::kChanged;
    case kCharUp:
        key.YPos = option ? key.Width / 2.0f * aspect : key.YPos - 1.0f;
        return StageKeyResult::kChanged;
    case kCharDown:
        key.YPos = option ? h - key.Width / 2.0f * aspect : key.YPos + 1.0f;
        return StageKeyResult::kChanged;
    case kCharPageUp:
        key.Width = option ? w : std::max(key.Width - 1.0f, kSmallestWidth);
        return StageKeyResult::kChanged;
    case kCharPageDown:
        if (option) {
            if (aspect > 0.0f)
                key.Width = h / aspect;
        } else {
            key.Width += 1.0f;
        }
        return StageKeyResult::kChanged;
    case kCharHome:
        if (!option)
            return StageKeyResult::kPassOn;
        key.XPos = w / 2.0f;
        key.YPos = h / 2.0f;
        return StageKeyResult::kChanged;
    case kIgnoredKey:
        return StageKeyResult::kIgnored;
    default:
        return StageKeyResult::kPassOn;
    }
}
