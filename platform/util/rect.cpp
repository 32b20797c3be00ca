#include "platform/util/rect.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace {

// The low 32 bits of a 64-bit result: the sides are 32-bit, and a wrapped side is better than
// undefined arithmetic on a hostile rectangle.
int32_t Low32(int64_t value) { return static_cast<int32_t>(value); }

// A side times a factor, truncated toward zero; products beyond 32 bits stop at the limits.
int32_t ScaleSide(int32_t side, double factor)
{
    double product = std::trunc(side * factor);
    if (std::isnan(product))
        return 0;
    if (product >= 2147483647.0)
        return INT32_MAX;
    if (product <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(product);
}

// -2 stands for "divide by 2".
double Factor(double f) { return f < 0 ? -1.0 / f : f; }

}  // namespace

void MakeRect(tagRECT* r, int left, int top, int right, int bottom)
{
    r->left = left;
    r->top = top;
    r->right = right;
    r->bottom = bottom;
}

void ScaleRect(tagRECT* r, int dx, int dy)
{
    r->left = Low32(int64_t(r->left) - dx);
    r->right = Low32(int64_t(r->right) + dx);
    r->top = Low32(int64_t(r->top) - dy);
    r->bottom = Low32(int64_t(r->bottom) + dy);
}

void SizeRect(tagRECT* r, double fx, double fy)
{
    fx = Factor(fx);
    fy = Factor(fy);
    r->left = ScaleSide(r->left, fx);
    r->right = ScaleSide(r->right, fx);
    r->top = ScaleSide(r->top, fy);
    r->bottom = ScaleSide(r->bottom, fy);
}

int RectWidth(const tagRECT* r, bool centre)
{
    int64_t width = int64_t(r->right) - r->left;
    return Low32(centre ? r->left + width / 2 : width);
}

int RectHgt(const tagRECT* r, bool centre)
{
    int64_t height = int64_t(r->bottom) - r->top;
    return Low32(centre ? r->top + height / 2 : height);
}

void MoveRectBy(tagRECT* r, int dx, int dy)
{
    r->left = Low32(int64_t(r->left) + dx);
    r->right = Low32(int64_t(r->right) + dx);
    r->top = Low32(int64_t(r->top) + dy);
    r->bottom = Low32(int64_t(r->bottom) + dy);
}

void MoveRectTo(tagRECT* r, int x, int y)
{
    r->right = Low32(int64_t(x) + (int64_t(r->right) - r->left));
    r->bottom = Low32(int64_t(y) + (int64_t(r->bottom) - r->top));
    r->left = x;
    r->top = y;
}

bool XYInRect(const tagRECT* r, int x, int y)
{
    return x >= r->left && x <= r->right && y >= r->top && y <= r->bottom;
}

bool XYInRect(const tagRECT* r, tagPOINT p) { return XYInRect(r, p.x, p.y); }

bool ClipByRect(tagRECT* r, const tagRECT* clip)
{
    if (clip->left > r->left)
        r->left = clip->left;
    if (clip->top > r->top)
        r->top = clip->top;
    if (clip->right < r->right)
        r->right = clip->right;
    if (clip->bottom < r->bottom)
        r->bottom = clip->bottom;
    return r->right != r->left && r->bottom != r->top;
}

void SortRect(tagRECT* r)
{
    if (r->left > r->right)
        std::swap(r->left, r->right);
    if (r->top > r->bottom)
        std::swap(r->top, r->bottom);
}

bool RectInRect(const tagRECT* inner, const tagRECT* outer)
{
    tagRECT o = *outer;
    SortRect(&o);
    auto across = [&](int32_t x) { return x >= o.left && x <= o.right; };
    auto down = [&](int32_t y) { return y >= o.top && y <= o.bottom; };
    return across(inner->left) && across(inner->right) && down(inner->top) && down(inner->bottom);
}
