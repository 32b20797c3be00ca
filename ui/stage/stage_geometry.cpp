#include "ui/stage/stage_geometry.h"

#include <algorithm>

#include "doc/camera.h"

namespace {

constexpr int kSmallestTolerance = 4;
constexpr int kSmallestCrossArm = 4;
constexpr int kHandleOffset = 7;  // the rotation handle sits this far inside the top-left corner
constexpr int kMarkerReach = 7;

bool Within(int x, int y, const tagPOINT& p, int reach)
{
    return x >= p.x - reach && x <= p.x + reach && y >= p.y - reach && y <= p.y + reach;
}

}  // namespace

int CentredOrigin(int clientSize, int pictureSize, float scale)
{
    int scaled = static_cast<int>(static_cast<float>(pictureSize) * scale);
    return std::max(0, (clientSize - scaled) / 2);
}

StageFrame FrameOf(const KeyStruct& key, const StageView& view)
{
    StageFrame f{};
    f.centre.x = static_cast<int>(key.XPos * view.scale) - view.scrollX + view.originX;
    f.centre.y = static_cast<int>(key.YPos * view.scale) - view.scrollY + view.originY;
    f.hw = static_cast<int>(key.Width * view.scale * 0.5f);
    f.hh = static_cast<int>(static_cast<float>(f.hw) * view.aspect);
    int dx = static_cast<int>(static_cast<float>(f.hw) * key.Rot3 / 180.0f);
    int dy = static_cast<int>(static_cast<float>(f.hh) * key.Rot2 / 180.0f);
    int cx = f.centre.x;
    int cy = f.centre.y;
    f.corner[0] = {cx - f.hw + dx, cy - f.hh + dy};
    f.corner[1] = {cx + f.hw - dx, cy - f.hh - dy};
    f.corner[2] = {cx + f.hw + dx, cy + f.hh + dy};
    f.corner[3] = {cx - f.hw - dx, cy + f.hh - dy};
    f.handle = {f.corner[0].x + kHandleOffset, f.corner[0].y + kHandleOffset};
    for (tagPOINT& corner : f.corner)
        RotatePoint(corner, key.Rotation, f.centre);
    RotatePoint(f.handle, key.Rotation, f.centre);
    return f;
}

int GrabTolerance(int hw) { return hw > 23 ? hw / 6 : kSmallestTolerance; }

int CrossArm(int hw) { return hw < 40 ? kSmallestCrossArm : hw >> 3; }

int StageHit(const StageFrame& frame, int x, int y, long flags)
{
    if (Within(x, y, frame.centre, frame.hh))
        return kHitMove;
    int t = GrabTolerance(frame.hw);
    for (int i = 0; i < 4; ++i) {
        if (!Within(x, y, frame.corner[i], t))
            continue;
        if (i > 0)
            return kHitResize;
        return (flags & kStageTiltFlag) != 0 ? kHitTilt : kHitRotate;
    }
    return kHitNone;
}

bool NearMarker(const KeyStruct& key, const StageView& view, int x, int y)
{
    tagPOINT marker = {static_cast<int>(key.XPos * view.scale) - view.scrollX + view.originX,
                       static_cast<int>(key.YPos * view.scale) - view.scrollY + view.originY};
    return Within(x, y, marker, kMarkerReach);
}
