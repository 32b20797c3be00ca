#include "platform/draw/coverage.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/draw/draw_port.h"

// Index
//   [colour]    PixelOfColour
//   [spans]     clipping, merging, painting
//   [shapes]    rectangles, rounded rectangles and ovals, lines, polygons

namespace {

using Wide = __int128;  // products of two 64-bit coordinates

// Rounds toward minus infinity; den > 0. Divides in 64 bits when the values allow, which is
// nearly always and much faster.
Wide FloorDiv(Wide num, Wide den)
{
    constexpr Wide kLow = std::numeric_limits<int64_t>::min();
    constexpr Wide kHigh = std::numeric_limits<int64_t>::max();
    if (num >= kLow && num <= kHigh && den <= kHigh) {
        int64_t n = static_cast<int64_t>(num), d = static_cast<int64_t>(den);
        int64_t q = n / d;
        return (n % d != 0 && n < 0) ? q - 1 : q;
    }
    Wide q = num / den;
    if (num % den != 0 && num < 0)
        --q;
    return q;
}

Wide CeilDiv(Wide num, Wide den) { return -FloorDiv(-num, den); }

}  // namespace

// ---- [colour] -------------------------------------------------------------------------------

uint32_t PixelOfColour(long colour)
{
    // The 16-bit channel value is what the program's colour rule defines; the image stores 8.
    uint32_t red16 = static_cast<uint32_t>(colour & 0xFF) * 256;
    uint32_t green16 = static_cast<uint32_t>((colour >> 8) & 0xFF) * 256;
    uint32_t blue16 = static_cast<uint32_t>((colour >> 16) & 0xFF) * 256;
    return 0xFF000000u | ((red16 >> 8) << 16) | ((green16 >> 8) << 8) | (blue16 >> 8);
}

// ---- [spans] --------------------------------------------------------------------------------

Coverage::Coverage(DrawPort* drawPort) : port(drawPort)
{
    if (!port || port->Width() < 1 || port->Height() < 1) {
        port = nullptr;
        return;
    }
    width = port->Width();
    height = port->Height();
    originX = port->OriginX();
    originY = port->OriginY();
}

void Coverage::AddSpan(int64_t y, int64_t left, int64_t right)
{
    if (!port || y < 0 || y >= height)
        return;
    left = std::max<int64_t>(left, 0);
    right = std::min(right, width);
    if (left >= right)
        return;
    spans.push_back(
        {static_cast<int32_t>(y), static_cast<int32_t>(left), static_cast<int32_t>(right)});
    merged = false;
}

void Coverage::Merge()
{
    if (merged)
        return;
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) {
        return a.y != b.y ? a.y < b.y : a.left < b.left;
    });
    size_t kept = 0;
    for (size_t i = 0; i < spans.size(); ++i) {
        if (kept > 0 && spans[kept - 1].y == spans[i].y && spans[i].left <= spans[kept - 1].right) {
            spans[kept - 1].right = std::max(spans[kept - 1].right, spans[i].right);
            continue;
        }
        spans[kept++] = spans[i];
    }
    spans.resize(kept);
    merged = true;
}

int64_t Coverage::PixelCount()
{
    Merge();
    int64_t count = 0;
    for (const Span& span : spans)
        count += span.right - span.left;
    return count;
}

void Coverage::Paint(uint32_t pixel)
{
    Merge();
    for (const Span& span : spans)
        std::fill(port->Row(span.y) + span.left, port->Row(span.y) + span.right, pixel);
}

void Coverage::Invert(uint32_t mask)
{
    Merge();
    for (const Span& span : spans) {
        uint32_t* row = port->Row(span.y);
        for (int32_t x = span.left; x < span.right; ++x)
            row[x] ^= mask;
    }
}

void Coverage::InvertHalftone(uint32_t mask)
{
    Merge();
    for (const Span& span : spans) {
        uint32_t* row = port->Row(span.y);
        // The pattern belongs to the window, so it does not shift when the origin moves.
        int64_t first = span.left + ((span.left + originX + span.y + originY) & 1);
        for (int64_t x = first; x < span.right; x += 2)
            row[x] ^= mask;
    }
}

// ---- [shapes] -------------------------------------------------------------------------------

void Coverage::AddRect(int64_t left, int64_t top, int64_t right, int64_t bottom)
{
    if (!port)
        return;
    left -= originX;
    right -= originX;
    top = std::max<int64_t>(top - originY, 0);
    bottom = std::min(bottom - originY, height);
    for (int64_t y = top; y < bottom; ++y)
        AddSpan(y, left, right);
}

void Coverage::AddFrame(int64_t left, int64_t top, int64_t right, int64_t bottom, int64_t pen)
{
    if (pen < 1 || right <= left || bottom <= top)
        return;
    if (2 * pen >= right - left || 2 * pen >= bottom - top) {
        AddRect(left, top, right, bottom);
        return;
    }
    AddRect(left, top, right, top + pen);
    AddRect(left, bottom - pen, right, bottom);
    AddRect(left, top + pen, left + pen, bottom - pen);
    AddRect(right - pen, top + pen, right, bottom - pen);
}

namespace {

// The pixels of row y (image coordinates) inside a rounded rectangle, as [x0, x1). All values
// in image coordinates; the corners are already within the rectangle's size.
//
// Each corner is a quarter of the oval cornerWidth x cornerHeight. The oval is worked in doubled
// coordinates, where pixel centres are odd numbers, so that both sides of a row come from the
// same whole number and every shape is exactly symmetric.
bool RoundRectRow(int64_t y, int64_t left, int64_t top, int64_t right, int64_t bottom,
                  int64_t cornerWidth, int64_t cornerHeight, int64_t* x0, int64_t* x1)
{
    if (y < top || y >= bottom || right <= left)
        return false;
    *x0 = left;
    *x1 = right;
    if (cornerWidth <= 0 || cornerHeight <= 0)
        return true;
    int64_t row = y;
    if (2 * y + 1 > top + bottom)
        row = top + bottom - 1 - y;                     // the lower half mirrors the upper
    int64_t dy = 2 * row + 1 - 2 * top - cornerHeight;  // doubled, from the corner oval's centre
    if (dy >= 0)
        return true;  // between the corners: the whole row
    long double q = static_cast<long double>(dy) / static_cast<long double>(cornerHeight);
    long double halfWidth2 = cornerWidth * std::sqrt(1.0L - q * q);
    // The tolerance keeps a boundary that is exactly a whole number from falling either way.
    int64_t reach = static_cast<int64_t>(std::floor(halfWidth2 + 1e-7L));
    // Doubled offsets of pixel centres from the oval's centre have the parity of 1 - width.
    if (((reach + cornerWidth + 1) & 1) != 0)
        --reach;
    if (reach < 0)
        return false;
    *x0 = (2 * left + cornerWidth - reach - 1) / 2;
    *x1 = right - (*x0 - left);
    return true;
}

void ClampCorners(int64_t left, int64_t top, int64_t right, int64_t bottom, int64_t* cornerWidth,
                  int64_t* cornerHeight)
{
    *cornerWidth = std::clamp<int64_t>(*cornerWidth, 0, std::max<int64_t>(right - left, 0));
    *cornerHeight = std::clamp<int64_t>(*cornerHeight, 0, std::max<int64_t>(bottom - top, 0));
}

}  // namespace

void Coverage::AddRoundRect(int64_t left, int64_t top, int64_t right, int64_t bottom,
                            int64_t cornerWidth, int64_t cornerHeight)
{
    if (!port || right <= left || bottom <= top)
        return;
    ClampCorners(left, top, right, bottom, &cornerWidth, &cornerHeight);
    left -= originX;
    right -= originX;
    top -= originY;
    bottom -= originY;
    int64_t first = std::max<int64_t>(top, 0);
    int64_t last = std::min(bottom, height);
    for (int64_t y = first; y < last; ++y) {
        int64_t x0, x1;
        if (RoundRectRow(y, left, top, right, bottom, cornerWidth, cornerHeight, &x0, &x1))
            AddSpan(y, x0, x1);
    }
}

void Coverage::AddRoundFrame(int64_t left, int64_t top, int64_t right, int64_t bottom,
                             int64_t cornerWidth, int64_t cornerHeight, int64_t pen)
{
    if (!port || pen < 1 || right <= left || bottom <= top)
        return;
    ClampCorners(left, top, right, bottom, &cornerWidth, &cornerHeight);
    if (2 * pen >= right - left || 2 * pen >= bottom - top) {
        AddRoundRect(left, top, right, bottom, cornerWidth, cornerHeight);
        return;
    }
    left -= originX;
    right -= originX;
    top -= originY;
    bottom -= originY;
    int64_t innerCornerWidth = std::max<int64_t>(cornerWidth - 2 * pen, 0);
    int64_t innerCornerHeight = std::max<int64_t>(cornerHeight - 2 * pen, 0);
    int64_t first = std::max<int64_t>(top, 0);
    int64_t last = std::min(bottom, height);
    for (int64_t y = first; y < last; ++y) {
        int64_t x0, x1, inner0, inner1;
        if (!RoundRectRow(y, left, top, right, bottom, cornerWidth, cornerHeight, &x0, &x1))
            continue;
        if (!RoundRectRow(y, left + pen, top + pen, right - pen, bottom - pen, innerCornerWidth,
                          innerCornerHeight, &inner0, &inner1)) {
            AddSpan(y, x0, x1);
            continue;
        }
        AddSpan(y, x0, std::min(inner0, x1));
        AddSpan(y, std::max(inner1, x0), x1);
    }
}

void Coverage::AddLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2, int64_t pen)
{
    if (!port || pen < 1)
        return;
    x1 -= originX;
    x2 -= originX;
    y1 -= originY;
    y2 -= originY;
    const int64_t dx = x2 - x1;
    const int64_t dy = y2 - y1;
    const int64_t top = std::min(y1, y2);
    const int64_t first = std::max<int64_t>(top, 0);
    const int64_t last = std::min(std::max(y1, y2) + pen, height);
    // Straight lines (grids, frames) need no stepping at all.
    if (dx == 0) {
        for (int64_t y = first; y < last; ++y)
            AddSpan(y, x1, x1 + pen);
        return;
    }
    if (dy == 0) {
        for (int64_t y = first; y < last; ++y)
            AddSpan(y, std::min(x1, x2), std::max(x1, x2) + pen);
        return;
    }

    const int64_t steps = std::max(dx < 0 ? -dx : dx, dy < 0 ? -dy : dy);
    const Wide twiceSteps = Wide(2) * steps;
    // Point t of the line, 0 <= t <= steps: the exact position rounded half up on both axes
    // (on the longer axis it is exact).
    auto pointX = [&](int64_t t) {
        return x1 + static_cast<int64_t>(FloorDiv(Wide(2) * t * dx + steps, twiceSteps));
    };
    // The first t whose point has reached row `limit` going the line's own vertical way
    // (y >= limit going down, y <= limit going up), clamped to 0..steps + 1, worked backwards
    // from pointY(t) = y1 + floor((2 t dy + steps) / (2 steps)).
    auto firstReaching = [&](int64_t limit) {
        Wide k = Wide(limit) - y1;
        Wide t;
        if (dy > 0)  // 2 t dy + steps >= 2 steps k
            t = -FloorDiv(-(twiceSteps * k - steps), Wide(2) * dy);
        else  // 2 t |dy| > steps - 2 steps (k + 1)
            t = FloorDiv(steps - twiceSteps * (k + 1), Wide(2) * -dy) + 1;
        return static_cast<int64_t>(std::clamp<Wide>(t, 0, Wide(steps) + 1));
    };
    // Row y is covered by the pen squares of the points with y - pen < point y <= y; those form
    // one run of t, and the run's squares join into one span of the row.
    const bool down = dy > 0;
    for (int64_t y = first; y < last; ++y) {
        int64_t runStart = down ? firstReaching(y - pen + 1) : firstReaching(y);
        int64_t runEnd = (down ? firstReaching(y + 1) : firstReaching(y - pen)) - 1;
        if (runStart > runEnd)
            continue;
        int64_t xa = pointX(runStart), xb = pointX(runEnd);
        AddSpan(y, std::min(xa, xb), std::max(xa, xb) + pen);
    }
}

void Coverage::AddPolygon(const tagPOINT* points, int count)
{
    if (!port || !points || count < 3)
        return;
    int64_t top = points[0].y, bottom = points[0].y;
    for (int i = 1; i < count; ++i) {
        top = std::min<int64_t>(top, points[i].y);
        bottom = std::max<int64_t>(bottom, points[i].y);
    }
    int64_t first = std::max<int64_t>(top - originY, 0);
    int64_t last = std::min(bottom - originY, height);
    std::vector<int64_t> crossings;
    for (int64_t y = first; y < last; ++y) {
        // Doubled window y of the row's pixel centres; vertices are whole, so never on it.
        const int64_t centre2 = 2 * (y + originY) + 1;
        crossings.clear();
        for (int i = 0; i < count; ++i) {
            const tagPOINT& a = points[i];
            const tagPOINT& b = points[(i + 1) % count];
            if ((2 * int64_t(a.y) < centre2) == (2 * int64_t(b.y) < centre2))
                continue;
            // The first pixel whose centre is right of the crossing x:
            // ceil(x - 1/2) with x = a.x + (centre2 - 2 a.y) dx / (2 dy), in exact arithmetic.
            Wide dx = int64_t(b.x) - a.x;
            Wide dy = int64_t(b.y) - a.y;
            Wide num = (centre2 - 2 * int64_t(a.y)) * dx - dy;
            Wide den = 2 * dy;
            if (den < 0) {
                num = -num;
                den = -den;
            }
            crossings.push_back(int64_t(a.x) - originX + static_cast<int64_t>(CeilDiv(num, den)));
        }
        std::sort(crossings.begin(), crossings.end());
        for (size_t i = 0; i + 1 < crossings.size(); i += 2)
            AddSpan(y, crossings[i], crossings[i + 1]);
    }
}
