// FilterRot: the rotated and tilted camera window, sampled bilinearly in single precision.
//
// Each destination row is a straight line through the source: its two ends are placed on the
// window (moved by the keystone tilts), rotated about the window's centre, and the samples step
// from the left end towards the right end in destination-width equal steps. The row geometry is
// worked out in double precision (the rotation's sine and cosine are doubles), the samples in
// single precision.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "image/camera_filter.h"
#include "image/camera_filter_rot_simd.h"
#include "image/camera_filter_simd.h"

namespace {

// Degrees to radians. Deliberately this short value, not the exact π ÷ 180: the rotation of every
// rendered show depends on it.
constexpr double kDegreeFactor = 0.0174532;

// The distance between the bilinear sampler's taps for a span of `sourcePerPixel` source pixels
// per destination pixel: half of it, at least 1, so that strong reductions still take in a wide
// area. Never above `limit` (a tap spacing that large puts every sample outside anyway).
int TapSpacing(double sourcePerPixel, int limit)
{
    double half = std::fabs(std::trunc(sourcePerPixel * 0.5));
    if (!(half < static_cast<double>(limit)))  // also a span that is not a number
        return limit;
    return half < 1.0 ? 1 : static_cast<int>(half);
}

// A row-geometry value as a sample coordinate: far positions are kept far (and finite) instead of
// overflowing single precision; a value that is not a number stays one and samples outside.
float SampleCoordinate(double value)
{
    constexpr double kFar = 1.0e30;
    if (value > kFar)
        return static_cast<float>(kFar);
    if (value < -kFar)
        return static_cast<float>(-kFar);
    return static_cast<float>(value);
}

void WriteOutside(unsigned char* out, unsigned char alpha)
{
    out[0] = kOutsideLevel;
    out[1] = kOutsideLevel;
    out[2] = kOutsideLevel;
    out[3] = alpha;
}

// Where the samples of one destination row lie: source column and row of sample x are
// column + x × columnStep and row + x × rowStep.
struct SampleLine {
    float column;
    float row;
    float columnStep;
    float rowStep;
    int dx;  // tap spacing across columns
    // Where the next row's samples lie, relative to these: the vector loops read ahead there.
    float aheadColumn = 0.0f;
    float aheadRow = 0.0f;
};

// The source the samples are read from.
struct SourceView {
    const unsigned char* base;
    long rowBytes;
    int width;
    int height;
    int pixelBytes;
};

template <int PixelBytes>
void SampleNearest(const SourceView& source, const SampleLine& line, int dy, int width,
                   unsigned char* out)
{
    const float columnLimit = static_cast<float>(source.width - line.dx - 1);
    const float rowLimit = static_cast<float>(source.height - dy - 1);
    const float columnLow = static_cast<float>(line.dx);
    const float rowLow = static_cast<float>(dy);
    for (int x = 0; x < width; ++x, out += 4) {
        float column = line.column + static_cast<float>(x) * line.columnStep;
        float row = line.row + static_cast<float>(x) * line.rowStep;
        // Written so that a position that is not a number is outside too.
        if (!(column >= columnLow && column <= columnLimit && row >= rowLow && row <= rowLimit)) {
            WriteOutside(out, OutsideAlpha(PixelBytes * 8));
            continue;
        }
        const unsigned char* pixel = source.base + static_cast<ptrdiff_t>(row) * source.rowBytes +
                                     static_cast<ptrdiff_t>(column) * PixelBytes;
        out[0] = pixel[0];
        out[1] = pixel[1];
        out[2] = pixel[2];
        // The pixel's last byte goes to the byte of the same index: alpha from a 32-bit source;
        // from a 24-bit one red again, so the destination keeps its own alpha (callers preset it).
        out[PixelBytes - 1] = pixel[PixelBytes - 1];
    }
}

// Samples `first` to `width` - 1 of the row into `out` (the row's first pixel) + 4 × sample.
template <int PixelBytes>
void SampleBilinear(const SourceView& source, const SampleLine& line, int dy, int first, int width,
                    unsigned char* out)
{
    const float columnLimit = static_cast<float>(source.width - line.dx - 1);
    const float rowLimit = static_cast<float>(source.height - dy - 1);
    const float columnLow = static_cast<float>(line.dx);
    const float rowLow = static_cast<float>(dy);
    const ptrdiff_t across = static_cast<ptrdiff_t>(line.dx) * PixelBytes;
    const ptrdiff_t down = static_cast<ptrdiff_t>(dy) * source.rowBytes;
    for (int x = first; x < width; ++x) {
        float column = line.column + static_cast<float>(x) * line.columnStep;
        float row = line.row + static_cast<float>(x) * line.rowStep;
        if (!(column >= columnLow && column <= columnLimit && row >= rowLow && row <= rowLimit)) {
            WriteOutside(out + 4 * x, OutsideAlpha(PixelBytes * 8));
            continue;
        }
        auto wholeColumn = static_cast<int>(column);
        auto wholeRow = static_cast<int>(row);
        float fx = column - static_cast<float>(wholeColumn);
        float fy = row - static_cast<float>(wholeRow);
        const unsigned char* p00 = source.base +
                                   static_cast<ptrdiff_t>(wholeRow) * source.rowBytes +
                                   static_cast<ptrdiff_t>(wholeColumn) * PixelBytes;
        const unsigned char* p01 = p00 + across;
        const unsigned char* p10 = p00 + down;
        const unsigned char* p11 = p10 + across;
        for (int c = 0; c < PixelBytes; ++c) {
            float top = static_cast<float>(p00[c]) + static_cast<float>(p01[c] - p00[c]) * fx;
            float bottom = static_cast<float>(p10[c]) + static_cast<float>(p11[c] - p10[c]) * fx;
            out[4 * x + c] =
                static_cast<unsigned char>(static_cast<int>(top + (bottom - top) * fy));
        }
        if constexpr (PixelBytes == 3)
            out[4 * x + 3] = 255;
    }
}

template <int PixelBytes>
void SampleRow(const SourceView& source, const SampleLine& line, int dy, int width, bool nearest,
               unsigned char* out)
{
    if (nearest) {
        SampleNearest<PixelBytes>(source, line, dy, width, out);
        return;
    }
    int done = 0;
#if PX_CAMERA_AVX2
    const CameraLoops loops = ActiveCameraLoops();
    if (loops >= CameraLoops::kAvx2) {
        const RotRowJob job{
            source.base,
            source.rowBytes,
            source.width,
            source.height,
            line.column,
            line.row,
            line.columnStep,
            line.rowStep,
            line.dx,
            dy,
            line.aheadColumn,
            line.aheadRow,
            kOutsideLevel * 0x010101u | static_cast<uint32_t>(OutsideAlpha(PixelBytes * 8)) << 24,
            out,
            width};
        done = loops == CameraLoops::kAvx512 ? SampleRotRowAvx512(job, PixelBytes)
                                             : SampleRotRowAvx2(job, PixelBytes);
    }
#endif
    // The plain loop: the whole row, or the samples after the vector loop's last step.
    SampleBilinear<PixelBytes>(source, line, dy, done, width, out);
}

}  // namespace

bool CDIB::FilterRot(CDIB* source, float left, float top, float width, float height, float angle,
                     float tiltV, float tiltH, int part, int quality, int fieldCode)
{
    CameraRows rows{};
    if (!CameraFilterAccepts(*this, source, width, height, part, fieldCode, &rows))
        return false;

    const int destinationWidth = GetWid();
    const int destinationHeight = GetHgt();
    const SourceView view{source->GetBitsAdd(0), source->GetRowBytes(), source->GetWid(),
                          source->GetHgt(), source->GetBitCount() / 8};
    const float sy = height / static_cast<float>(destinationHeight);

    const double cosA = std::cos(angle * kDegreeFactor);
    const double sinA = std::sin(angle * -kDegreeFactor);

    // Keystone, in source pixels: row r's left edge moves inwards by kxStep × r and its width
    // shrinks by twice that (top and bottom widths differ by 4 × kx); its left end starts ky rows
    // before the row's nominal position and its right end ky rows after it, and the two drift
    // apart by kyStep per row (the left end advances by (height − 2 × ky) ÷ destination height
    // per row, the right end by (height + 2 × ky) ÷ destination height).
    const float ky = tiltV / 90.0f * height * 0.25f;
    const float kx = tiltH / 90.0f * width * 0.25f;
    const double kxStep = 2.0 * kx / destinationHeight;
    const double kyStep = 2.0 * ky / destinationHeight;

    const double centreColumn = static_cast<double>(left) + width / 2.0;
    const double centreRow = static_cast<double>(top) + height / 2.0;
    const int dy = TapSpacing(sy, view.height);
    // 49 and below samples the nearest pixel; 50 already interpolates here, one step earlier
    // than the straight crop, as the two filters always have.
    const bool nearest = quality <= 49;

    // Every row's ends come from its own index, so either thread places a row alike.
    auto lineOf = [&](int r) {
        double rowLeft = left + r * kxStep;
        double rowWidth = width - 2.0 * r * kxStep;
        double v = CameraRowPosition(rows, top, sy, r);
        double leftRow = v - ky - r * kyStep;
        double rightRow = v + ky + r * kyStep;

        double ox = rowLeft - centreColumn;
        double oy = leftRow - centreRow;
        double startRow = centreRow + ox * sinA + oy * cosA;
        double startColumn = centreColumn + ox * cosA - oy * sinA;
        ox = rowLeft + rowWidth - centreColumn;
        oy = rightRow - centreRow;
        double endRow = centreRow + ox * sinA + oy * cosA;
        double endColumn = centreColumn + ox * cosA - oy * sinA;

        return SampleLine{SampleCoordinate(startColumn), SampleCoordinate(startRow),
                          SampleCoordinate((endColumn - startColumn) / destinationWidth),
                          SampleCoordinate((endRow - startRow) / destinationWidth),
                          TapSpacing(rowWidth / destinationWidth, view.width)};
    };
    SampleLine next = lineOf(rows.first);
    for (int r = rows.first; r < rows.end; r += rows.step) {
        SampleLine line = next;
        next = lineOf(r + rows.step);
        line.aheadColumn = next.column - line.column;
        line.aheadRow = next.row - line.row;
        unsigned char* out = GetBitsAdd(r);
        if (view.pixelBytes == 4)
            SampleRow<4>(view, line, dy, destinationWidth, nearest, out);
        else
            SampleRow<3>(view, line, dy, destinationWidth, nearest, out);
    }
    return true;
}
