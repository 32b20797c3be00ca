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

#if PX_CAMERA_AVX2

// Channel `Channel` (byte of each 32-bit word) of eight samples as floats.
template <int Channel>
__attribute__((target("avx2"))) inline __m256 ChannelOf(__m256i words)
{
    return _mm256_cvtepi32_ps(
        _mm256_and_si256(_mm256_srli_epi32(words, 8 * Channel), _mm256_set1_epi32(0xFF)));
}

// One channel of eight bilinear samples, truncated and moved back to its byte of the word.
template <int Channel>
__attribute__((target("avx2"))) inline __m256i InterpolateChannel(__m256i w00, __m256i w01,
                                                                  __m256i w10, __m256i w11,
                                                                  __m256 fx, __m256 fy)
{
    __m256 q00 = ChannelOf<Channel>(w00);
    __m256 q01 = ChannelOf<Channel>(w01);
    __m256 q10 = ChannelOf<Channel>(w10);
    __m256 q11 = ChannelOf<Channel>(w11);
    __m256 top = _mm256_add_ps(q00, _mm256_mul_ps(_mm256_sub_ps(q01, q00), fx));
    __m256 bottom = _mm256_add_ps(q10, _mm256_mul_ps(_mm256_sub_ps(q11, q10), fx));
    __m256 value = _mm256_add_ps(top, _mm256_mul_ps(_mm256_sub_ps(bottom, top), fy));
    return _mm256_slli_epi32(_mm256_cvttps_epi32(value), 8 * Channel);
}

// The bilinear sampler eight samples at a time: positions, the inside test and the pixel
// addresses in the lanes of one vector; the four pixels of each inside sample gathered as 32-bit
// words (outside lanes read nothing); each channel interpolated in a vector of its own with the
// same single-precision operations as the plain loop, so the bytes are the same. From a 24-bit
// source each word takes one byte past the pixel (inside the row block, whose allocation ends 4
// bytes past the last row); that byte is dropped and alpha is 255.
template <int PixelBytes>
__attribute__((target("avx2"))) void SampleBilinearAvx2(const SourceView& source,
                                                        const SampleLine& line, int dy, int width,
                                                        unsigned char* out)
{
    const __m256 columnLow = _mm256_set1_ps(static_cast<float>(line.dx));
    const __m256 columnLimit = _mm256_set1_ps(static_cast<float>(source.width - line.dx - 1));
    const __m256 rowLow = _mm256_set1_ps(static_cast<float>(dy));
    const __m256 rowLimit = _mm256_set1_ps(static_cast<float>(source.height - dy - 1));
    const __m256 startColumn = _mm256_set1_ps(line.column);
    const __m256 startRow = _mm256_set1_ps(line.row);
    const __m256 columnStep = _mm256_set1_ps(line.columnStep);
    const __m256 rowStep = _mm256_set1_ps(line.rowStep);
    const __m256i rowBytes = _mm256_set1_epi32(static_cast<int>(source.rowBytes));
    const __m256i pixelBytes = _mm256_set1_epi32(PixelBytes);
    const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    const __m256i opaque = _mm256_set1_epi32(PixelBytes == 3 ? static_cast<int>(0xFF000000u) : 0);
    const __m256i outside = _mm256_set1_epi32(
        static_cast<int>(0x111111u | static_cast<uint32_t>(OutsideAlpha(PixelBytes * 8)) << 24));
    const auto* p00 = reinterpret_cast<const int*>(source.base);
    const auto* p01 = reinterpret_cast<const int*>(source.base + line.dx * PixelBytes);
    const auto* p10 = reinterpret_cast<const int*>(source.base + dy * source.rowBytes);
    const auto* p11 =
        reinterpret_cast<const int*>(source.base + dy * source.rowBytes + line.dx * PixelBytes);
    int x = 0;
    for (; x + 8 <= width; x += 8) {
        __m256 xs = _mm256_cvtepi32_ps(_mm256_add_epi32(_mm256_set1_epi32(x), lanes));
        __m256 column = _mm256_add_ps(startColumn, _mm256_mul_ps(xs, columnStep));
        __m256 row = _mm256_add_ps(startRow, _mm256_mul_ps(xs, rowStep));
        // Ordered comparisons: a position that is not a number is outside.
        __m256 inside = _mm256_and_ps(_mm256_and_ps(_mm256_cmp_ps(column, columnLow, _CMP_GE_OQ),
                                                    _mm256_cmp_ps(column, columnLimit, _CMP_LE_OQ)),
                                      _mm256_and_ps(_mm256_cmp_ps(row, rowLow, _CMP_GE_OQ),
                                                    _mm256_cmp_ps(row, rowLimit, _CMP_LE_OQ)));
        __m256i mask = _mm256_castps_si256(inside);
        if (_mm256_testz_si256(mask, mask)) {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * x), outside);
            continue;
        }
        __m256i wholeColumn = _mm256_cvttps_epi32(column);
        __m256i wholeRow = _mm256_cvttps_epi32(row);
        __m256 fx = _mm256_sub_ps(column, _mm256_cvtepi32_ps(wholeColumn));
        __m256 fy = _mm256_sub_ps(row, _mm256_cvtepi32_ps(wholeRow));
        __m256i offset =
            _mm256_and_si256(mask, _mm256_add_epi32(_mm256_mullo_epi32(wholeRow, rowBytes),
                                                    _mm256_mullo_epi32(wholeColumn, pixelBytes)));
        const __m256i none = _mm256_setzero_si256();
        __m256i w00 = _mm256_mask_i32gather_epi32(none, p00, offset, mask, 1);
        __m256i w01 = _mm256_mask_i32gather_epi32(none, p01, offset, mask, 1);
        __m256i w10 = _mm256_mask_i32gather_epi32(none, p10, offset, mask, 1);
        __m256i w11 = _mm256_mask_i32gather_epi32(none, p11, offset, mask, 1);
        __m256i result = _mm256_or_si256(opaque, InterpolateChannel<0>(w00, w01, w10, w11, fx, fy));
        result = _mm256_or_si256(result, InterpolateChannel<1>(w00, w01, w10, w11, fx, fy));
        result = _mm256_or_si256(result, InterpolateChannel<2>(w00, w01, w10, w11, fx, fy));
        if constexpr (PixelBytes == 4)
            result = _mm256_or_si256(result, InterpolateChannel<3>(w00, w01, w10, w11, fx, fy));
        result = _mm256_blendv_epi8(outside, result, mask);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * x), result);
    }
    // The last samples in the plain loop. Clear the vector registers' upper halves first: plain
    // code after 256-bit code with dirty upper halves runs far slower (the compiler does not do
    // it before a tail call).
    _mm256_zeroupper();
    SampleBilinear<PixelBytes>(source, line, dy, x, width, out);
}

bool UseAvx2() { return ActiveCameraLoops() == CameraLoops::kAvx2; }

#endif  // PX_CAMERA_AVX2

template <int PixelBytes>
void SampleRow(const SourceView& source, const SampleLine& line, int dy, int width, bool nearest,
               unsigned char* out)
{
    if (nearest) {
        SampleNearest<PixelBytes>(source, line, dy, width, out);
        return;
    }
#if PX_CAMERA_AVX2
    if (UseAvx2()) {
        SampleBilinearAvx2<PixelBytes>(source, line, dy, width, out);
        return;
    }
#endif
    SampleBilinear<PixelBytes>(source, line, dy, 0, width, out);
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

    for (int r = rows.first; r < rows.end; r += rows.step) {
        // Every row's ends come from its own index, so either thread places a row alike.
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

        SampleLine line{SampleCoordinate(startColumn), SampleCoordinate(startRow),
                        SampleCoordinate((endColumn - startColumn) / destinationWidth),
                        SampleCoordinate((endRow - startRow) / destinationWidth),
                        TapSpacing(rowWidth / destinationWidth, view.width)};
        unsigned char* out = GetBitsAdd(r);
        if (view.pixelBytes == 4)
            SampleRow<4>(view, line, dy, destinationWidth, nearest, out);
        else
            SampleRow<3>(view, line, dy, destinationWidth, nearest, out);
    }
    return true;
}
