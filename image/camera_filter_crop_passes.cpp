// The row and column passes of the straight camera crop.
//
// [SECTION] Shared pieces
// [SECTION] Plain loops: every processor; the definition the vector loops must match
// [SECTION] AVX2 loop of the general column pass, also run where AVX-512 is allowed (the fixed
//           taps and the row pass have theirs in camera_filter_crop_simd_*.cpp)
// [SECTION] Entry points: the vector loops where ActiveCameraLoops allows them

#include "image/camera_filter_crop_passes.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "image/camera_filter.h"
#include "image/camera_filter_simd.h"

namespace {

// ---- [SECTION] Shared pieces ----

// The stored byte: the low 8 bits of the scaled sum, as a byte store keeps them. Unless the
// divisor wrapped, the value is never above 255.
inline unsigned char ScaledByte(uint64_t scaledSum)
{
    return static_cast<unsigned char>((scaledSum >> kReciprocalShift) & 0xFF);
}

// One destination pixel of the column pass, any column that is not outside.
template <int PixelBytes>
inline void BlendPixel(const unsigned char* line, const CropColumn& column, unsigned char* out)
{
    const unsigned char* pixel = line + column.offset;
    const int count = column.count;
    for (int c = 0; c < PixelBytes; ++c) {
        uint64_t sum = 0;
        if (count > 0) {
            uint64_t between = 0;
            for (int k = 1; k < count - 1; ++k)
                between += pixel[k * PixelBytes + c];
            sum = uint64_t{column.first} * pixel[c] + uint64_t{column.middle} * between;
            if (count > 1)
                sum += uint64_t{column.last} * pixel[(count - 1) * PixelBytes + c];
        }
        if (column.reciprocal != 0)
            sum *= column.reciprocal;  // wrapped divisor: plain weights, scaled here
        out[c] = ScaledByte(sum);
    }
    if constexpr (PixelBytes == 3)
        out[3] = 255;
}

// ---- [SECTION] Plain loops ----

// line[i] = (c0 × r0[i] + c1 × r1[i] + … ) >> 20 for 1, 2 or 3 rows; sums fit 32 bits.
template <int Rows>
void BlendFewRowsPlain(const unsigned char* __restrict rows, long stride,
                       const uint32_t* coefficient, unsigned char* __restrict line, long from,
                       long to)
{
    const unsigned char* __restrict r0 = rows;
    const unsigned char* __restrict r1 = rows + (Rows > 1 ? stride : 0);
    const unsigned char* __restrict r2 = rows + (Rows > 2 ? 2 * stride : 0);
    const uint32_t c0 = coefficient[0];
    const uint32_t c1 = Rows > 1 ? coefficient[1] : 0;
    const uint32_t c2 = Rows > 2 ? coefficient[2] : 0;
    for (long i = from; i < to; ++i) {
        uint32_t sum = c0 * r0[i];
        if constexpr (Rows > 1)
            sum += c1 * r1[i];
        if constexpr (Rows > 2)
            sum += c2 * r2[i];
        line[i] = static_cast<unsigned char>(sum >> kReciprocalShift);
    }
}

// Any number of rows: those between the first and the last share one coefficient, so they are
// summed first, a block of bytes at a time.
void BlendManyRowsPlain(const unsigned char* rows, long stride, int count, uint32_t first,
                        uint32_t middle, uint32_t last, unsigned char* line, long from, long to)
{
    constexpr long kBlock = 64;
    uint32_t between[kBlock];
    for (long i = from; i < to; i += kBlock) {
        long length = std::min(kBlock, to - i);
        std::fill(between, between + length, 0u);
        for (int k = 1; k < count - 1; ++k) {
            const unsigned char* row = rows + k * stride + i;
            for (long j = 0; j < length; ++j)
                between[j] += row[j];
        }
        const unsigned char* r0 = rows + i;
        const unsigned char* rn = rows + (count - 1) * stride + i;
        for (long j = 0; j < length; ++j)
            line[i + j] = static_cast<unsigned char>(
                (first * r0[j] + middle * between[j] + last * rn[j]) >> kReciprocalShift);
    }
}

void BlendRowsPlain(const unsigned char* rows, long stride, int count, uint32_t first,
                    uint32_t middle, uint32_t last, unsigned char* line, long from, long to)
{
    switch (count) {
    case 1:
        BlendFewRowsPlain<1>(rows, stride, &first, line, from, to);
        break;
    case 2: {
        const uint32_t coefficients[] = {first, last};
        BlendFewRowsPlain<2>(rows, stride, coefficients, line, from, to);
        break;
    }
    case 3: {
        const uint32_t coefficients[] = {first, middle, last};
        BlendFewRowsPlain<3>(rows, stride, coefficients, line, from, to);
        break;
    }
    default:
        BlendManyRowsPlain(rows, stride, count, first, middle, last, line, from, to);
        break;
    }
}

template <int PixelBytes>
void BlendColumnsPlain(const unsigned char* line, const CropColumn* columns, int width,
                       unsigned char* out)
{
    for (int x = 0; x < width; ++x, out += 4) {
        if (columns[x].count < 0)
            WriteOutside(out, PixelBytes);
        else
            BlendPixel<PixelBytes>(line, columns[x], out);
    }
}

template <int PixelBytes, int Taps>
void BlendTapsPlain(const unsigned char* line, const CropTaps* taps, int width, unsigned char* out)
{
    for (int x = 0; x < width; ++x, out += 4) {
        const unsigned char* pixel = line + taps[x].offset;
        for (int c = 0; c < PixelBytes; ++c) {
            uint32_t sum = 0;
            for (int k = 0; k < Taps; ++k)
                sum += taps[x].coefficient[k] * pixel[k * PixelBytes + c];
            out[c] = static_cast<unsigned char>(sum >> kReciprocalShift);
        }
        if constexpr (PixelBytes == 3)
            out[3] = 255;
    }
}

template <int PixelBytes>
void BlendTapsPlainOf(const unsigned char* line, const CropTaps* taps, int tapCount, int width,
                      unsigned char* out)
{
    switch (tapCount) {
    case 1:
        BlendTapsPlain<PixelBytes, 1>(line, taps, width, out);
        break;
    case 2:
        BlendTapsPlain<PixelBytes, 2>(line, taps, width, out);
        break;
    case 3:
        BlendTapsPlain<PixelBytes, 3>(line, taps, width, out);
        break;
    default:
        BlendTapsPlain<PixelBytes, 4>(line, taps, width, out);
        break;
    }
}

// ---- [SECTION] AVX2 loop of the general column pass ----

#if PX_CAMERA_AVX2

// Four bytes from `at`, each widened to a 32-bit lane.
__attribute__((target("avx2"))) inline __m128i LoadPixel(const unsigned char* at)
{
    int32_t bytes;
    std::memcpy(&bytes, at, sizeof bytes);
    return _mm_cvtepu8_epi32(_mm_cvtsi32_si128(bytes));
}

// One destination pixel per step, its four channels in the four lanes. From a 24-bit line the
// fourth lane holds the next pixel's first byte and is replaced by 255.
template <int PixelBytes>
__attribute__((target("avx2"))) void BlendColumnsAvx2(const unsigned char* line,
                                                      const CropColumn* columns, int width,
                                                      unsigned char* out)
{
    const uint32_t opaque = PixelBytes == 3 ? 0xFF000000u : 0u;
    for (int x = 0; x < width; ++x, out += 4) {
        const CropColumn& column = columns[x];
        if (column.count < 0) {
            WriteOutside(out, PixelBytes);
            continue;
        }
        if (column.count == 0 || column.reciprocal != 0) {
            BlendPixel<PixelBytes>(line, column, out);
            continue;
        }
        const unsigned char* pixel = line + column.offset;
        __m128i sum =
            _mm_mullo_epi32(LoadPixel(pixel), _mm_set1_epi32(static_cast<int>(column.first)));
        if (column.count > 1) {
            const __m128i middle = _mm_set1_epi32(static_cast<int>(column.middle));
            for (int k = 1; k < column.count - 1; ++k)
                sum =
                    _mm_add_epi32(sum, _mm_mullo_epi32(LoadPixel(pixel + k * PixelBytes), middle));
            sum = _mm_add_epi32(sum,
                                _mm_mullo_epi32(LoadPixel(pixel + (column.count - 1) * PixelBytes),
                                                _mm_set1_epi32(static_cast<int>(column.last))));
        }
        sum = _mm_srli_epi32(sum, kReciprocalShift);
        __m128i bytes = _mm_packus_epi16(_mm_packus_epi32(sum, sum), _mm_setzero_si128());
        uint32_t value = static_cast<uint32_t>(_mm_cvtsi128_si32(bytes)) | opaque;
        std::memcpy(out, &value, sizeof value);
    }
}

#endif  // PX_CAMERA_AVX2

// A wrapped divisor (more than 256 source pixels under one destination pixel): the same sum in
// 64 bits, plain weights times the reciprocal.
void BlendRowsWide(const unsigned char* rows, long stride, const Span& span, unsigned char* line,
                   long from, long to)
{
    for (long i = from; i < to; ++i) {
        uint64_t sum = uint64_t{span.firstWeight} * rows[i];
        if (span.count > 1) {
            for (int k = 1; k < span.count - 1; ++k)
                sum += uint64_t{kWeightOne} * rows[k * stride + i];
            sum += uint64_t{span.lastWeight} * rows[(span.count - 1) * stride + i];
        }
        line[i] = ScaledByte(sum * span.reciprocal);
    }
}

}  // namespace

// ---- [SECTION] Entry points ----

CropColumn MakeCropColumn(const Span& span, int pixelBytes)
{
    CropColumn column{};
    if (span.outside) {
        column.count = -1;
        return column;
    }
    column.offset = static_cast<uint32_t>(span.first * pixelBytes);
    column.count = span.count;
    uint32_t scale = span.wide ? 1 : span.reciprocal;
    column.first = span.firstWeight * scale;
    column.middle = kWeightOne * scale;
    column.last = span.lastWeight * scale;
    column.reciprocal = span.wide ? span.reciprocal : 0;
    column.scale = scale;
    return column;
}

int MakeCropTaps(const CropColumn* columns, int destinationWidth, uint32_t padOffset,
                 CropTaps* taps)
{
    int tapCount = 1;
    for (int x = 0; x < destinationWidth; ++x) {
        const CropColumn& column = columns[x];
        if (column.reciprocal != 0 || column.count > kMaxTaps)
            return 0;
        tapCount = std::max(tapCount, static_cast<int>(column.count));
    }
    for (int x = 0; x < destinationWidth; ++x) {
        const CropColumn& column = columns[x];
        CropTaps& tap = taps[x];
        tap = CropTaps{};
        if (column.count < 0) {
            // The pad's first pixel at full weight over a divisor of 256: exactly the outside
            // colour.
            tap.offset = padOffset;
            tap.weight[0] = kWeightOne;
            tap.scale = kReciprocalOne / kWeightOne;
        } else if (column.count == 0) {
            tap.offset = padOffset;  // nothing weighs anything: all weights stay 0
        } else {
            tap.offset = column.offset;
            tap.scale = column.scale;
            for (int k = 0; k < column.count; ++k) {
                uint32_t coefficient =
                    k == 0 ? column.first : (k == column.count - 1 ? column.last : column.middle);
                // Premultiplied by the scale, so the division is exact: at most 511.
                tap.weight[k] = static_cast<uint16_t>(coefficient / column.scale);
            }
        }
        for (int k = 0; k < kMaxTaps; ++k)
            tap.coefficient[k] = tap.weight[k] * tap.scale;
    }
    return tapCount;
}

size_t CropVectorTapsBytes(int destinationWidth)
{
    size_t padded = (static_cast<size_t>(std::max(destinationWidth, 0)) + 15) & ~size_t{15};
    return padded * sizeof(CropVectorTap);
}

CropVectorTaps MakeCropVectorTaps(const CropTaps* taps, int tapCount, int destinationWidth,
                                  uint32_t padOffset, void* memory)
{
    const int padded = (std::max(destinationWidth, 0) + 15) & ~15;
    auto* columns = static_cast<CropVectorTap*>(memory);
    for (int x = 0; x < padded; ++x) {
        // Columns past the row's end read the pad at weight 0; their pixels are not stored.
        CropTaps tap{};
        tap.offset = padOffset;
        if (x < destinationWidth)
            tap = taps[x];
        columns[x] = CropVectorTap{static_cast<uint32_t>(tap.weight[0] | tap.weight[1] << 16),
                                   static_cast<uint32_t>(tap.weight[2] | tap.weight[3] << 16),
                                   tap.scale, tap.offset};
    }
    return CropVectorTaps{columns, tapCount, padded};
}

void BlendColumnTaps(const unsigned char* line, const CropTaps* taps,
                     const CropVectorTaps& vectorTaps, int destinationWidth, int pixelBytes,
                     unsigned char* out)
{
    switch (ActiveCameraLoops()) {
#if PX_CAMERA_AVX2
    case CameraLoops::kAvx512:
        BlendColumnTapsAvx512(line, vectorTaps, destinationWidth, pixelBytes, out);
        return;
    case CameraLoops::kAvx2:
        BlendColumnTapsAvx2(line, vectorTaps, destinationWidth, pixelBytes, out);
        return;
    case CameraLoops::kSse41:
        BlendColumnTapsSse41(line, vectorTaps, destinationWidth, pixelBytes, out);
        return;
#endif
    default:
        break;
    }
    if (pixelBytes == 4)
        BlendTapsPlainOf<4>(line, taps, vectorTaps.tapCount, destinationWidth, out);
    else
        BlendTapsPlainOf<3>(line, taps, vectorTaps.tapCount, destinationWidth, out);
}

void BlendColumnTaps(const unsigned char* line, const CropTaps* taps, int tapCount,
                     int destinationWidth, int pixelBytes, unsigned char* out)
{
    if (ActiveCameraLoops() == CameraLoops::kPlain) {
        if (pixelBytes == 4)
            BlendTapsPlainOf<4>(line, taps, tapCount, destinationWidth, out);
        else
            BlendTapsPlainOf<3>(line, taps, tapCount, destinationWidth, out);
        return;
    }
    if (destinationWidth < 1)
        return;
    // Laid out here for this one row; FilterCrop lays them out once per frame. The padding
    // entries read where the last column reads, at weight 0.
    std::vector<CropVectorTap> memory(CropVectorTapsBytes(destinationWidth) /
                                      sizeof(CropVectorTap));
    CropVectorTaps vectorTaps = MakeCropVectorTaps(
        taps, tapCount, destinationWidth, taps[destinationWidth - 1].offset, memory.data());
    BlendColumnTaps(line, taps, vectorTaps, destinationWidth, pixelBytes, out);
}

void BlendRows(const unsigned char* rows, long stride, const Span& span, unsigned char* line,
               long from, long to)
{
    if (from >= to)
        return;
    if (span.count == 0) {
        std::memset(line + from, 0, static_cast<size_t>(to - from));
        return;
    }
    if (span.wide) {
        BlendRowsWide(rows, stride, span, line, from, to);
        return;
    }
    const uint32_t first = span.firstWeight * span.reciprocal;
    const uint32_t middle = kWeightOne * span.reciprocal;
    const uint32_t last = span.lastWeight * span.reciprocal;
    if (span.count == 1 && first == kReciprocalOne) {
        // One row at full weight over a divisor of 256: the row itself.
        std::memcpy(line + from, rows + from, static_cast<size_t>(to - from));
        return;
    }
    const CameraLoops loops = ActiveCameraLoops();
    if (loops != CameraLoops::kPlain) {
        // A single row is its own last row at weight 0.
        const bool single = span.count == 1;
        CropRowJob job{rows,
                       single ? rows : rows + (span.count - 1) * stride,
                       rows + stride,
                       stride,
                       single ? 0 : span.count - 2,
                       span.firstWeight,
                       single ? 0 : span.lastWeight,
                       span.reciprocal,
                       line,
                       from,
                       to};
#if PX_CAMERA_AVX2
        if (loops == CameraLoops::kAvx512)
            BlendRowsAvx512(job);
        else if (loops == CameraLoops::kAvx2)
            BlendRowsAvx2(job);
        else
            BlendRowsSse41(job);
        return;
#endif
    }
    BlendRowsPlain(rows, stride, span.count, first, middle, last, line, from, to);
}

void BlendColumns(const unsigned char* line, const CropColumn* columns, int destinationWidth,
                  int pixelBytes, unsigned char* out)
{
#if PX_CAMERA_AVX2
    if (ActiveCameraLoops() >= CameraLoops::kAvx2) {
        if (pixelBytes == 4)
            BlendColumnsAvx2<4>(line, columns, destinationWidth, out);
        else
            BlendColumnsAvx2<3>(line, columns, destinationWidth, out);
        return;
    }
#endif
    if (pixelBytes == 4)
        BlendColumnsPlain<4>(line, columns, destinationWidth, out);
    else
        BlendColumnsPlain<3>(line, columns, destinationWidth, out);
}

void WriteOutside(unsigned char* out, int pixelBytes)
{
    out[0] = kOutsideLevel;
    out[1] = kOutsideLevel;
    out[2] = kOutsideLevel;
    out[3] = OutsideAlpha(pixelBytes * 8);
}

void ReadAheadRows(const unsigned char* rows, long stride, int count, long from, long to)
{
    constexpr uintptr_t kCacheLine = 64;
    for (int k = 0; k < count; ++k) {
        // Whole cache lines, from the one holding the first byte.
        auto line = reinterpret_cast<uintptr_t>(rows + k * stride + from) & ~(kCacheLine - 1);
        auto end = reinterpret_cast<uintptr_t>(rows + k * stride + to);
        for (; line < end; line += kCacheLine)
            __builtin_prefetch(reinterpret_cast<const void*>(line), 0, 1);
    }
}

void WriteOutsideRow(unsigned char* out, int destinationWidth, int pixelBytes)
{
    for (int x = 0; x < destinationWidth; ++x, out += 4)
        WriteOutside(out, pixelBytes);
}
