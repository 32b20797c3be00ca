#pragma once
// Coverage: the pixels one drawing call touches, gathered as row spans of the current port's
// image and then painted, exclusive-ored or exclusive-ored through the 50 % pattern in one go.
// A pixel is touched once however many pieces of the shape cover it, which is what lets an
// exclusive-or drawing undo itself. For the drawing files of this folder only.
//
// Shapes are given in window coordinates; the port's origin is subtracted here. They are taken
// as 64-bit values so that sums like right + 1 of an extreme rectangle cannot overflow, and
// everything is clipped to the image before a single pixel is visited.
//
// The pixel rules every primitive shares:
//   fills  cover the pixels whose centres lie inside the shape, so the right column and the
//          bottom row of a rectangle stay out
//   pen    a square of `width` pixels hanging down and right of each point it passes over
//   lines  one point per step along the longer axis, the one nearest the exact line; a point
//          exactly half-way goes to the larger coordinate, whichever end the line starts from

#include <cstdint>
#include <vector>

#include "platform/base/types.h"

class DrawPort;

// The image pixel (0xFFRRGGBB) of a colour 0x00BBGGRR. Each channel is widened to 16 bits by
// multiplying by 256 (255 gives 0xFF00, never 0xFFFF) and the image keeps the high byte, so the
// 8-bit channels land unchanged. Bits above the blue byte are ignored.
uint32_t PixelOfColour(long colour);

class Coverage {
public:
    // Gathers pixels of `port`'s image; a null or empty port gathers nothing.
    explicit Coverage(DrawPort* port);

    // The pixels of left <= x < right, top <= y < bottom.
    void AddRect(int64_t left, int64_t top, int64_t right, int64_t bottom);
    // The frame of that rectangle with a pen `width` pixels wide inside it (the whole rectangle
    // when the pen is wider than half of it). Callers wanting the edges included widen the
    // rectangle by one to the right and bottom first. A width below 1 adds nothing.
    void AddFrame(int64_t left, int64_t top, int64_t right, int64_t bottom, int64_t width);
    // The rectangle with quarter-oval corners cornerWidth x cornerHeight (each at most the
    // rectangle's size); corners of 0 give the plain rectangle, corners of the whole size the
    // inscribed oval.
    void AddRoundRect(int64_t left, int64_t top, int64_t right, int64_t bottom, int64_t cornerWidth,
                      int64_t cornerHeight);
    // Its frame: the shape less the same shape shrunk by `width` on every side, its corners
    // shrunk by 2 x width.
    void AddRoundFrame(int64_t left, int64_t top, int64_t right, int64_t bottom,
                       int64_t cornerWidth, int64_t cornerHeight, int64_t width);
    // The line from (x1, y1) to (x2, y2), both ends included, drawn with the square pen.
    void AddLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2, int64_t width);
    // The inside of the polygon through count points, closed back to the first, by the
    // even-odd rule. Fewer than 3 points add nothing.
    void AddPolygon(const tagPOINT* points, int count);

    bool IsEmpty() const { return spans.empty(); }
    // Counts the covered pixels.
    int64_t PixelCount();

    // Sets every covered pixel.
    void Paint(uint32_t pixel);
    // Exclusive-ors every covered pixel with mask.
    void Invert(uint32_t mask);
    // Exclusive-ors the covered pixels of the 50 % pattern (the window pixels whose x + y is
    // even) with mask and leaves the others alone.
    void InvertHalftone(uint32_t mask);

private:
    struct Span {
        int32_t y;
        int32_t left;   // first pixel
        int32_t right;  // one past the last
    };

    // Image coordinates in, clipped here.
    void AddSpan(int64_t y, int64_t left, int64_t right);
    // Sorts the spans and merges the ones that overlap or touch.
    void Merge();

    DrawPort* port;
    int64_t width = 0;
    int64_t height = 0;
    int64_t originX = 0;
    int64_t originY = 0;
    std::vector<Span> spans;
    bool merged = true;
};
