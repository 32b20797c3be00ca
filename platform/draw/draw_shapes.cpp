#include "platform/draw/draw_shapes.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>

#include "platform/draw/coverage.h"
#include "platform/draw/draw_port.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/draw_text.h"

namespace {

constexpr long kBlack = 0x000000;
constexpr long kWhite = 0xFFFFFF;

void Put(Coverage& coverage, long colour, int mode)
{
    if (mode == kPenXor)
        coverage.Invert(PixelOfColour(colour) & 0x00FFFFFFu);
    else
        coverage.Paint(PixelOfColour(colour));
}

// A thick pen is centred on the points it is given: both ends move up and left by this much.
int64_t PenShift(int width) { return width > 1 ? (width - 1) / 2 : 0; }

void AddCentredLine(Coverage& coverage, int64_t x1, int64_t y1, int64_t x2, int64_t y2, int width)
{
    int64_t shift = PenShift(width);
    coverage.AddLine(x1 - shift, y1 - shift, x2 - shift, y2 - shift, width);
}

int32_t Saturate(int64_t value)
{
    return static_cast<int32_t>(std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

}  // namespace

void SetColor(long colour) { gDrawState.penColor = colour; }

void SetBackColor(long colour) { gDrawState.backColor = colour; }

void DrawBox(long colour, const tagRECT& rect, int width, int mode)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    coverage.AddFrame(rect.left, rect.top, int64_t(rect.right) + 1, int64_t(rect.bottom) + 1,
                      width);
    Put(coverage, colour, mode);
}

void DrawBar(long colour, const tagRECT& rect)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    coverage.AddRect(rect.left, rect.top, rect.right, rect.bottom);
    Put(coverage, colour, kPenCopy);
}

void DrawLine(long colour, const tagRECT& rect, int width, int mode)
{
    DrawLine(colour, rect.left, rect.top, rect.right, rect.bottom, width, mode);
}

void DrawLine(long colour, int x1, int y1, int x2, int y2, int width, int mode)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    AddCentredLine(coverage, x1, y1, x2, y2, width);
    Put(coverage, colour, mode);
}

void DrawRoundBox(long colour, const tagRECT& rect, int corner, int width, int mode)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    coverage.AddRoundFrame(rect.left, rect.top, int64_t(rect.right) + 1, int64_t(rect.bottom) + 1,
                           corner, corner, width);
    Put(coverage, colour, mode);
}

void DrawRoundBar(long colour, const tagRECT& rect, int corner)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    coverage.AddRoundRect(rect.left, rect.top, rect.right, rect.bottom, corner, corner);
    Put(coverage, colour, kPenCopy);
}

void DrawCir(long colour, const tagRECT& rect, int width, int mode)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    int64_t right = int64_t(rect.right) + 1, bottom = int64_t(rect.bottom) + 1;
    coverage.AddRoundFrame(rect.left, rect.top, right, bottom, right - rect.left, bottom - rect.top,
                           width);
    Put(coverage, colour, mode);
}

void DrawCirBar(long colour, const tagRECT& rect)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    coverage.AddRoundRect(rect.left, rect.top, rect.right, rect.bottom,
                          int64_t(rect.right) - rect.left, int64_t(rect.bottom) - rect.top);
    Put(coverage, colour, kPenCopy);
}

void DrawCheck(long colour, const tagRECT& rect, bool on)
{
    SetColor(colour);
    Coverage box(GetDrawDC());
    box.AddRect(rect.left, rect.top, rect.right, rect.bottom);
    Put(box, colour, kPenCopy);

    Coverage ink(GetDrawDC());
    ink.AddFrame(rect.left, rect.top, int64_t(rect.right) + 1, int64_t(rect.bottom) + 1, 1);
    if (on) {
        int64_t left = int64_t(rect.left) + 2, top = int64_t(rect.top) + 2;
        int64_t right = int64_t(rect.right) - 2, bottom = int64_t(rect.bottom) - 2;
        ink.AddLine(left, top, right, bottom, 1);
        ink.AddLine(right, top, left, bottom, 1);
    }
    Put(ink, kBlack, kPenCopy);
}

void DrawRadio(long colour, const tagRECT& rect, bool on)
{
    SetColor(colour);
    Coverage coverage(GetDrawDC());
    int64_t right = int64_t(rect.right) + 1, bottom = int64_t(rect.bottom) + 1;
    coverage.AddRoundFrame(rect.left, rect.top, right, bottom, right - rect.left, bottom - rect.top,
                           1);
    if (on) {
        int64_t left = int64_t(rect.left) + 2, top = int64_t(rect.top) + 2;
        int64_t dotRight = int64_t(rect.right) - 1, dotBottom = int64_t(rect.bottom) - 1;
        coverage.AddRoundRect(left, top, dotRight, dotBottom, dotRight - left, dotBottom - top);
    }
    Put(coverage, colour, kPenCopy);
}

void DrawPolygon(long fill, long frame, int count, const tagPOINT* points)
{
    if (fill >= 0)
        SetColor(fill);
    if (frame >= 0)
        SetColor(frame);
    if (!points || count < 1)
        return;
    if (fill >= 0) {
        Coverage inside(GetDrawDC());
        inside.AddPolygon(points, count);
        Put(inside, fill, kPenCopy);
    }
    if (frame >= 0) {
        Coverage outline(GetDrawDC());
        // Without a fill the outline stays open: the last point is not joined to the first.
        int segments = fill >= 0 ? count : count - 1;
        if (count == 1)
            outline.AddLine(points[0].x, points[0].y, points[0].x, points[0].y, 1);
        for (int i = 0; i < segments; ++i) {
            const tagPOINT& a = points[i];
            const tagPOINT& b = points[(i + 1) % count];
            outline.AddLine(a.x, a.y, b.x, b.y, 1);
        }
        Put(outline, frame, kPenCopy);
    }
}

void DrawTriangle(long colour, int x1, int y1, int x2, int y2, int x3, int y3, long frame)
{
    const tagPOINT points[3] = {{x1, y1}, {x2, y2}, {x3, y3}};
    DrawPolygon(colour, frame, 3, points);
}

void DrawTriangle(long colour, const tagPOINT& a, const tagPOINT& b, const tagPOINT& c, long frame)
{
    const tagPOINT points[3] = {a, b, c};
    DrawPolygon(colour, frame, 3, points);
}

void DrawTriangle(long colour, int x, int y, int size, int direction, long frame)
{
    if (size < 1)
        return;
    // The base's corners lie `back` behind the tip and `across` to either side of its axis.
    const int64_t back = size, across = size;
    tagPOINT points[3] = {{x, y}, {x, y}, {x, y}};
    switch (direction & 3) {
    case kTriangleUp:
        points[1] = {Saturate(int64_t(x) - across), Saturate(int64_t(y) + back)};
        points[2] = {Saturate(int64_t(x) + across), Saturate(int64_t(y) + back)};
        break;
    case kTriangleRight:
        points[1] = {Saturate(int64_t(x) - back), Saturate(int64_t(y) - across)};
        points[2] = {Saturate(int64_t(x) - back), Saturate(int64_t(y) + across)};
        break;
    case kTriangleDown:
        points[1] = {Saturate(int64_t(x) + across), Saturate(int64_t(y) - back)};
        points[2] = {Saturate(int64_t(x) - across), Saturate(int64_t(y) - back)};
        break;
    default:  // kTriangleLeft
        points[1] = {Saturate(int64_t(x) + back), Saturate(int64_t(y) + across)};
        points[2] = {Saturate(int64_t(x) + back), Saturate(int64_t(y) - across)};
        break;
    }
    DrawPolygon(colour, frame, 3, points);
}

void DrawPolyLine(long colour, int width, int count, const tagPOINT* points, int mode)
{
    SetColor(colour);
    if (!points || count < 1)
        return;
    Coverage coverage(GetDrawDC());
    if (count == 1)
        AddCentredLine(coverage, points[0].x, points[0].y, points[0].x, points[0].y, width);
    for (int i = 0; i + 1 < count; ++i)
        AddCentredLine(coverage, points[i].x, points[i].y, points[i + 1].x, points[i + 1].y, width);
    Put(coverage, colour, mode);
}

void DrawSplitBox(long colour1, long colour2, const tagRECT& rect, int width)
{
    SetColor(colour1);
    SetColor(colour2);
    int64_t left = rect.left, top = rect.top;
    int64_t right = int64_t(rect.right) + 1, bottom = int64_t(rect.bottom) + 1;
    if (width < 1 || right <= left || bottom <= top)
        return;
    // The first colour's sides go down first; the second colour's sides then take the corners
    // they share.
    Coverage first(GetDrawDC());
    first.AddRect(left, top, right, std::min(top + width, bottom));
    first.AddRect(left, top, std::min(left + width, right), bottom);
    Put(first, colour1, kPenCopy);
    Coverage second(GetDrawDC());
    second.AddRect(left, std::max(bottom - width, top), right, bottom);
    second.AddRect(std::max(right - width, left), top, right, bottom);
    Put(second, colour2, kPenCopy);
}

void DrawSlider(long colour1, long colour2, const tagRECT& rect, long value, long max,
                bool showValue)
{
    SetColor(colour1);
    SetColor(colour2);
    int64_t left = rect.left, top = rect.top, right = rect.right, bottom = rect.bottom;
    if (right <= left || bottom <= top)
        return;
    double share = max > 0 ? std::clamp(double(value) / double(max), 0.0, 1.0) : 0.0;
    int64_t knob = left + static_cast<int64_t>(share * double(right - left - 1));

    Coverage bar(GetDrawDC());
    bar.AddRect(knob, top, right, bottom);
    Put(bar, colour1, kPenCopy);
    Coverage done(GetDrawDC());
    done.AddRect(left, top, knob, bottom);
    Put(done, colour2, kPenCopy);

    Coverage frame(GetDrawDC());
    frame.AddFrame(left, top, right, bottom, 1);
    Put(frame, kBlack, kPenCopy);

    // The knob goes over the bar's frame at either end.
    Coverage knobFace(GetDrawDC());
    knobFace.AddRect(knob - 1, top + 1, knob + 2, bottom - 1);
    Put(knobFace, kWhite, kPenCopy);
    Coverage knobFrame(GetDrawDC());
    knobFrame.AddFrame(knob - 2, top, knob + 3, bottom, 1);
    Put(knobFrame, kBlack, kPenCopy);

    if (showValue) {
        char text[32];
        std::snprintf(text, sizeof text, "%ld", value);
        int64_t middle = left + (right - left) / 2;
        int64_t textTop = top + (bottom - top - gDrawState.fontSize) / 2;
        DrawText(kBlack, text, Saturate(middle), Saturate(textTop), kTextCentre);
        SetColor(colour2);
    }
}
