// The straight crop's vector loops for processors with AVX2 (compiled with -mavx2 only): 32 bytes
// of the row pass and 8 destination pixels of the column pass per step.

#include "image/camera_filter_crop_simd.h"

#if defined(__x86_64__)

#include <immintrin.h>

namespace {

constexpr int kShift = 20;  // the reciprocals' scale, 2^20
// Rows are read this many bytes ahead of the step that needs them: the row pass waits on memory
// more than on arithmetic.
constexpr long kAhead = 1024;

inline __m256i Load(const unsigned char* at)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
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

// 32 bytes of the row pass at byte i. The first and last rows are interleaved byte by byte and
// widened to 16-bit pairs, so that one multiply-add gives first × p + last × q per 32-bit lane;
// the middle rows, summed in 16 bits, join as sum << 8. Unpacking and packing both work within
// each 128-bit half in the same order, so the bytes come back in place.
template <int Middle>  // 0, 1, or -1 for any number of middle rows
inline void RowStep(const CropRowJob& job, __m256i weights, __m256i reciprocal, long i)
{
    const __m256i zero = _mm256_setzero_si256();
    __m256i p = Load(job.firstRow + i);
    __m256i q = Load(job.lastRow + i);
    _mm_prefetch(reinterpret_cast<const char*>(job.lastRow + i + kAhead), _MM_HINT_T0);
    _mm_prefetch(reinterpret_cast<const char*>(job.firstRow + i + kAhead), _MM_HINT_T0);
    __m256i low = _mm256_unpacklo_epi8(p, q);
    __m256i high = _mm256_unpackhi_epi8(p, q);
    __m256i s0 = _mm256_madd_epi16(_mm256_unpacklo_epi8(low, zero), weights);
    __m256i s1 = _mm256_madd_epi16(_mm256_unpackhi_epi8(low, zero), weights);
    __m256i s2 = _mm256_madd_epi16(_mm256_unpacklo_epi8(high, zero), weights);
    __m256i s3 = _mm256_madd_epi16(_mm256_unpackhi_epi8(high, zero), weights);
    if constexpr (Middle != 0) {
        __m256i middleLow;   // 16-bit sums × 256 of bytes 0-7 of each half
        __m256i middleHigh;  // and of bytes 8-15
        if constexpr (Middle == 1) {
            __m256i m = Load(job.middleRows + i);
            _mm_prefetch(reinterpret_cast<const char*>(job.middleRows + i + kAhead), _MM_HINT_T0);
            middleLow = _mm256_unpacklo_epi8(zero, m);
            middleHigh = _mm256_unpackhi_epi8(zero, m);
        } else {
            middleLow = zero;
            middleHigh = zero;
            for (int k = 0; k < job.middleCount; ++k) {
                __m256i m = Load(job.middleRows + k * job.stride + i);
                middleLow = _mm256_add_epi16(middleLow, _mm256_unpacklo_epi8(m, zero));
                middleHigh = _mm256_add_epi16(middleHigh, _mm256_unpackhi_epi8(m, zero));
            }
        }
        // Widened to 32 bits; the many-row sums (up to 255 × 255) are shifted there.
        __m256i m0 = _mm256_unpacklo_epi16(middleLow, zero);
        __m256i m1 = _mm256_unpackhi_epi16(middleLow, zero);
        __m256i m2 = _mm256_unpacklo_epi16(middleHigh, zero);
        __m256i m3 = _mm256_unpackhi_epi16(middleHigh, zero);
        if constexpr (Middle < 0) {
            m0 = _mm256_slli_epi32(m0, 8);
            m1 = _mm256_slli_epi32(m1, 8);
            m2 = _mm256_slli_epi32(m2, 8);
            m3 = _mm256_slli_epi32(m3, 8);
        }
        s0 = _mm256_add_epi32(s0, m0);
        s1 = _mm256_add_epi32(s1, m1);
        s2 = _mm256_add_epi32(s2, m2);
        s3 = _mm256_add_epi32(s3, m3);
    }
    s0 = _mm256_srli_epi32(_mm256_mullo_epi32(s0, reciprocal), kShift);
    s1 = _mm256_srli_epi32(_mm256_mullo_epi32(s1, reciprocal), kShift);
    s2 = _mm256_srli_epi32(_mm256_mullo_epi32(s2, reciprocal), kShift);
    s3 = _mm256_srli_epi32(_mm256_mullo_epi32(s3, reciprocal), kShift);
    // Every value is at most 255: the saturating packs only narrow.
    __m256i bytes = _mm256_packus_epi16(_mm256_packus_epi32(s0, s1), _mm256_packus_epi32(s2, s3));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(job.line + i), bytes);
}

template <int Middle>
void BlendRowsOf(const CropRowJob& job)
{
    constexpr long kStep = 32;
    if (job.to - job.from < kStep) {
        for (long i = job.from; i < job.to; ++i)
            job.line[i] = RowByte(job, i);
        return;
    }
    const __m256i weights = _mm256_set1_epi32(static_cast<int>(job.first | job.last << 16));
    const __m256i reciprocal = _mm256_set1_epi32(static_cast<int>(job.reciprocal));
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
inline __m256i PairOrder()
{
    constexpr char z = -128;  // a zero byte
    constexpr char a = static_cast<char>(Tap * PixelBytes);
    constexpr char b = static_cast<char>((Tap + 1) * PixelBytes);
    constexpr char a3 = PixelBytes == 4 ? static_cast<char>(a + 3) : z;
    constexpr char b3 = PixelBytes == 4 ? static_cast<char>(b + 3) : z;
    return _mm256_setr_epi8(a, z, b, z, a + 1, z, b + 1, z, a + 2, z, b + 2, z, a3, z, b3, z,  //
                            a, z, b, z, a + 1, z, b + 1, z, a + 2, z, b + 2, z, a3, z, b3, z);
}

// Two destination pixels, x and x + 1, as the 32-bit sums of their channels scaled back: pixel x
// in the lower half, x + 1 in the upper.
template <int PixelBytes, int Taps>
inline __m256i TwoPixels(const unsigned char* line, const CropVectorTap* columns, int x)
{
    // Column x's table entry in the lower half, x + 1's in the upper; spread per channel.
    __m256i entries = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(columns + x));
    __m256i pixels = _mm256_inserti128_si256(
        _mm256_castsi128_si256(
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + columns[x].offset))),
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + columns[x + 1].offset)), 1);
    __m256i sum = _mm256_madd_epi16(_mm256_shuffle_epi8(pixels, PairOrder<PixelBytes, 0>()),
                                    _mm256_shuffle_epi32(entries, 0x00));
    if constexpr (Taps > 2)
        sum = _mm256_add_epi32(
            sum, _mm256_madd_epi16(_mm256_shuffle_epi8(pixels, PairOrder<PixelBytes, 2>()),
                                   _mm256_shuffle_epi32(entries, 0x55)));
    return _mm256_srli_epi32(_mm256_mullo_epi32(sum, _mm256_shuffle_epi32(entries, 0xAA)), kShift);
}

template <int PixelBytes, int Taps>
void BlendTapsOf(const unsigned char* line, const CropVectorTaps& taps, int width,
                 unsigned char* out)
{
    const __m256i opaque = _mm256_set1_epi32(PixelBytes == 3 ? static_cast<int>(0xFF000000u) : 0);
    // The packs leave the pixels in the order 0 2 4 6 1 3 5 7.
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    for (int x = 0; x < width; x += 8) {
        __m256i p01 = TwoPixels<PixelBytes, Taps>(line, taps.columns, x);
        __m256i p23 = TwoPixels<PixelBytes, Taps>(line, taps.columns, x + 2);
        __m256i p45 = TwoPixels<PixelBytes, Taps>(line, taps.columns, x + 4);
        __m256i p67 = TwoPixels<PixelBytes, Taps>(line, taps.columns, x + 6);
        __m256i bytes =
            _mm256_packus_epi16(_mm256_packus_epi32(p01, p23), _mm256_packus_epi32(p45, p67));
        bytes = _mm256_or_si256(_mm256_permutevar8x32_epi32(bytes, order), opaque);
        if (x + 8 <= width) {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * x), bytes);
        } else {
            // The last pixels of a row that is not a multiple of 8 wide (the table is).
            alignas(32) unsigned char last[32];
            _mm256_store_si256(reinterpret_cast<__m256i*>(last), bytes);
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

void BlendRowsAvx2(const CropRowJob& job)
{
    if (job.middleCount == 0)
        BlendRowsOf<0>(job);
    else if (job.middleCount == 1)
        BlendRowsOf<1>(job);
    else
        BlendRowsOf<-1>(job);
    _mm256_zeroupper();
}

void BlendColumnTapsAvx2(const unsigned char* line, const CropVectorTaps& taps, int width,
                         int pixelBytes, unsigned char* out)
{
    if (pixelBytes == 4)
        BlendTapsOfDepth<4>(line, taps, width, out);
    else
        BlendTapsOfDepth<3>(line, taps, width, out);
    _mm256_zeroupper();
}

#endif
