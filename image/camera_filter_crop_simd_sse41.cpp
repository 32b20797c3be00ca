// The straight crop's vector loops for processors with SSE4.1 (compiled with -msse4.1 only): 16
// bytes of the row pass and 4 destination pixels of the column pass per step. The same steps as
// the AVX2 loops on half the width.

#include "image/camera_filter_crop_simd.h"

#if defined(__x86_64__)

#include <immintrin.h>

namespace {

constexpr int kShift = 20;  // the reciprocals' scale, 2^20

inline __m128i Load(const unsigned char* at)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

// One byte of the row pass, for the ends of a range too short for a vector.
inline unsigned char RowByte(const CropRowJob& job, long i)
{
    uint32_t middle = 0;
    for (int k = 0; k < job.middleCount; ++k)
        middle += job.middleRows[k * job.stride + i];
    uint32_t sum = job.first * job.firstRow[i] + job.last * job.lastRow[i] + (middle << 8);
    return static_cast<unsigned char>((sum * job.reciprocal) >> kShift);
}

// 16 bytes of the row pass at byte i. The first and last rows are interleaved byte by byte and
// widened to 16-bit pairs, so that one multiply-add gives first × p + last × q per 32-bit lane;
// the middle rows, summed in 16 bits, join as sum << 8.
template <int Middle>  // 0, 1, or -1 for any number of middle rows
inline void RowStep(const CropRowJob& job, __m128i weights, __m128i reciprocal, long i)
{
    const __m128i zero = _mm_setzero_si128();
    __m128i p = Load(job.firstRow + i);
    __m128i q = Load(job.lastRow + i);
    __m128i low = _mm_unpacklo_epi8(p, q);
    __m128i high = _mm_unpackhi_epi8(p, q);
    __m128i s0 = _mm_madd_epi16(_mm_unpacklo_epi8(low, zero), weights);
    __m128i s1 = _mm_madd_epi16(_mm_unpackhi_epi8(low, zero), weights);
    __m128i s2 = _mm_madd_epi16(_mm_unpacklo_epi8(high, zero), weights);
    __m128i s3 = _mm_madd_epi16(_mm_unpackhi_epi8(high, zero), weights);
    if constexpr (Middle != 0) {
        __m128i middleLow;   // 16-bit sums × 256 of bytes 0-7
        __m128i middleHigh;  // and of bytes 8-15
        if constexpr (Middle == 1) {
            __m128i m = Load(job.middleRows + i);
            middleLow = _mm_unpacklo_epi8(zero, m);
            middleHigh = _mm_unpackhi_epi8(zero, m);
        } else {
            middleLow = zero;
            middleHigh = zero;
            for (int k = 0; k < job.middleCount; ++k) {
                __m128i m = Load(job.middleRows + k * job.stride + i);
                middleLow = _mm_add_epi16(middleLow, _mm_unpacklo_epi8(m, zero));
                middleHigh = _mm_add_epi16(middleHigh, _mm_unpackhi_epi8(m, zero));
            }
        }
        // Widened to 32 bits; the many-row sums (up to 255 × 255) are shifted there.
        __m128i m0 = _mm_unpacklo_epi16(middleLow, zero);
        __m128i m1 = _mm_unpackhi_epi16(middleLow, zero);
        __m128i m2 = _mm_unpacklo_epi16(middleHigh, zero);
        __m128i m3 = _mm_unpackhi_epi16(middleHigh, zero);
        if constexpr (Middle < 0) {
            m0 = _mm_slli_epi32(m0, 8);
            m1 = _mm_slli_epi32(m1, 8);
            m2 = _mm_slli_epi32(m2, 8);
            m3 = _mm_slli_epi32(m3, 8);
        }
        s0 = _mm_add_epi32(s0, m0);
        s1 = _mm_add_epi32(s1, m1);
        s2 = _mm_add_epi32(s2, m2);
        s3 = _mm_add_epi32(s3, m3);
    }
    s0 = _mm_srli_epi32(_mm_mullo_epi32(s0, reciprocal), kShift);
    s1 = _mm_srli_epi32(_mm_mullo_epi32(s1, reciprocal), kShift);
    s2 = _mm_srli_epi32(_mm_mullo_epi32(s2, reciprocal), kShift);
    s3 = _mm_srli_epi32(_mm_mullo_epi32(s3, reciprocal), kShift);
    // Every value is at most 255: the saturating packs only narrow.
    __m128i bytes = _mm_packus_epi16(_mm_packus_epi32(s0, s1), _mm_packus_epi32(s2, s3));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(job.line + i), bytes);
}

template <int Middle>
void BlendRowsOf(const CropRowJob& job)
{
    constexpr long kStep = 16;
    if (job.to - job.from < kStep) {
        for (long i = job.from; i < job.to; ++i)
            job.line[i] = RowByte(job, i);
        return;
    }
    const __m128i weights = _mm_set1_epi32(static_cast<int>(job.first | job.last << 16));
    const __m128i reciprocal = _mm_set1_epi32(static_cast<int>(job.reciprocal));
    long i = job.from;
    for (; i + kStep <= job.to; i += kStep)
        RowStep<Middle>(job, weights, reciprocal, i);
    // The last bytes: one more step ending at `to`, over bytes already written with the same
    // values.
    if (i < job.to)
        RowStep<Middle>(job, weights, reciprocal, job.to - kStep);
}

// The byte order for the multiply-add of taps 0 and 1 (Tap 0) or 2 and 3 (Tap 2) of a pixel
// loaded at its first tap: per channel the 16-bit pair (tap k, tap k + 1); a 3-byte pixel's
// fourth pair is zero.
template <int PixelBytes, int Tap>
inline __m128i PairOrder()
{
    constexpr char z = -128;  // a zero byte
    constexpr char a = static_cast<char>(Tap * PixelBytes);
    constexpr char b = static_cast<char>((Tap + 1) * PixelBytes);
    constexpr char a3 = PixelBytes == 4 ? static_cast<char>(a + 3) : z;
    constexpr char b3 = PixelBytes == 4 ? static_cast<char>(b + 3) : z;
    return _mm_setr_epi8(a, z, b, z, a + 1, z, b + 1, z, a + 2, z, b + 2, z, a3, z, b3, z);
}

// Destination pixel x as the 32-bit sums of its channels, scaled back.
template <int PixelBytes, int Taps>
inline __m128i OnePixel(const unsigned char* line, const CropVectorTap* columns, int x)
{
    // The column's table entry, spread per channel.
    __m128i entry = _mm_loadu_si128(reinterpret_cast<const __m128i*>(columns + x));
    __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + columns[x].offset));
    __m128i sum = _mm_madd_epi16(_mm_shuffle_epi8(pixels, PairOrder<PixelBytes, 0>()),
                                 _mm_shuffle_epi32(entry, 0x00));
    if constexpr (Taps > 2)
        sum =
            _mm_add_epi32(sum, _mm_madd_epi16(_mm_shuffle_epi8(pixels, PairOrder<PixelBytes, 2>()),
                                              _mm_shuffle_epi32(entry, 0x55)));
    return _mm_srli_epi32(_mm_mullo_epi32(sum, _mm_shuffle_epi32(entry, 0xAA)), kShift);
}

template <int PixelBytes, int Taps>
void BlendTapsOf(const unsigned char* line, const CropVectorTaps& taps, int width,
                 unsigned char* out)
{
    const __m128i opaque = _mm_set1_epi32(PixelBytes == 3 ? static_cast<int>(0xFF000000u) : 0);
    for (int x = 0; x < width; x += 4) {
        __m128i bytes = _mm_packus_epi16(
            _mm_packus_epi32(OnePixel<PixelBytes, Taps>(line, taps.columns, x),
                             OnePixel<PixelBytes, Taps>(line, taps.columns, x + 1)),
            _mm_packus_epi32(OnePixel<PixelBytes, Taps>(line, taps.columns, x + 2),
                             OnePixel<PixelBytes, Taps>(line, taps.columns, x + 3)));
        bytes = _mm_or_si128(bytes, opaque);
        if (x + 4 <= width) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * x), bytes);
        } else {
            // The last pixels of a row that is not a multiple of 4 wide (the table is).
            alignas(16) unsigned char last[16];
            _mm_store_si128(reinterpret_cast<__m128i*>(last), bytes);
            for (int i = 0; i < 4 * (width - x); ++i)
                out[4 * x + i] = last[i];
        }
    }
}

template <int PixelBytes>
void BlendTapsOfDepth(const unsigned char* line, const CropVectorTaps& taps, int width,
                      unsigned char* out)
{
    if (taps.tapCount <= 2)
        BlendTapsOf<PixelBytes, 2>(line, taps, width, out);
    else
        BlendTapsOf<PixelBytes, 4>(line, taps, width, out);
}

}  // namespace

void BlendRowsSse41(const CropRowJob& job)
{
    if (job.middleCount == 0)
        BlendRowsOf<0>(job);
    else if (job.middleCount == 1)
        BlendRowsOf<1>(job);
    else
        BlendRowsOf<-1>(job);
}

void BlendColumnTapsSse41(const unsigned char* line, const CropVectorTaps& taps, int width,
                          int pixelBytes, unsigned char* out)
{
    if (pixelBytes == 4)
        BlendTapsOfDepth<4>(line, taps, width, out);
    else
        BlendTapsOfDepth<3>(line, taps, width, out);
}

#endif
