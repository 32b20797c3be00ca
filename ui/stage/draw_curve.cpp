#include "ui/stage/draw_curve.h"

#include <vector>

#include "doc/camera.h"
#include "platform/base/types.h"
#include "platform/draw/draw_shapes.h"

void DrawCurve(int n, const KeyStruct* keys, int ease, int originX, int originY, float scale,
               long colour)
{
    std::vector<CameraPathPoint> path = CameraPath(n, keys, ease);
    std::vector<tagPOINT> points;
    points.reserve(path.size());
    for (const CameraPathPoint& p : path) {
        tagPOINT point = {static_cast<int>(p.x * scale) + originX,
                          static_cast<int>(p.y * scale) + originY};
        // Frames that stand still add nothing to the line.
        if (!points.empty() && points.back().x == point.x && points.back().y == point.y)
            continue;
        points.push_back(point);
    }
    if (points.size() == 1)
        points.push_back(points.front());
    DrawPolyLine(colour, 1, static_cast<int>(points.size()), points.data());
}
