#include "platform/draw/rubber.h"

#include <algorithm>
#include <cstdint>

#include "platform/draw/coverage.h"
#include "platform/draw/draw_port.h"

namespace {

constexpr uint32_t kInvert = 0x00FFFFFF;

void Invert(Coverage& coverage, int pattern)
{
    if (pattern == kRubberSolid)
        coverage.Invert(kInvert);
    else
        coverage.InvertHalftone(kInvert);
}

// The rectangle with its corners in order, right and bottom widened to include the edges.
struct Bounds {
    int64_t left, top, right, bottom;
};

Bounds Inclusive(const tagRECT& rect)
{
    return {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom),
            int64_t(std::max(rect.left, rect.right)) + 1,
            int64_t(std::max(rect.top, rect.bottom)) + 1};
}

void AddCentredLine(Coverage& coverage, const tagPOINT& a, const tagPOINT& b, int width)
{
    int64_t shift = width > 1 ? (width - 1) / 2 : 0;
    coverage.AddLine(a.x - shift, a.y - shift, b.x - shift, b.y - shift, width);
}

}  // namespace

void RubberBox(const tagRECT& rect, int width, int pattern)
{
    Coverage coverage(GetDrawDC());
    Bounds box = Inclusive(rect);
    coverage.AddFrame(box.left, box.top, box.right, box.bottom, width);
    Invert(coverage, pattern);
}

void RubberLine(const tagRECT& rect, int width, int pattern)
{
    Coverage coverage(GetDrawDC());
    AddCentredLine(coverage, {rect.left, rect.top}, {rect.right, rect.bottom}, width);
    Invert(coverage, pattern);
}

void RubberCir(const tagRECT& rect, int width, int pattern)
{
    Coverage coverage(GetDrawDC());
    Bounds box = Inclusive(rect);
    coverage.AddRoundFrame(box.left, box.top, box.right, box.bottom, box.right - box.left,
                           box.bottom - box.top, width);
    Invert(coverage, pattern);
}

void RubberPolygon(int count, const tagPOINT* points, int width, int pattern)
{
    if (!points || count < 1)
        return;
    Coverage coverage(GetDrawDC());
    for (int i = 0; i < count; ++i)
        AddCentredLine(coverage, points[i], points[(i + 1) % count], width);
    Invert(coverage, pattern);
}
