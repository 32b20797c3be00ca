// The straight crop's vector loops for processors with SSE4.1 (compiled with -msse4.1 only): 16
// bytes of the row pass and 4 destination pixels of the column pass per step. The steps
// themselves are camera_filter_crop_simd_steps.h's; this file gives them the 128-bit operations.

#include "image/camera_filter_crop_simd.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include "image/camera_filter_crop_simd_steps.h"

namespace {

struct Sse41 {
    using Vec = __m128i;
    static constexpr long kBytes = 16;

    static Vec Load(const unsigned char* at)
    {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    }
    static void Store(unsigned char* at, Vec v)
    {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(at), v);
    }
    static void Prefetch([[maybe_unused]] const unsigned char* at) {}
    static Vec Zero() { return _mm_setzero_si128(); }
    static Vec Set1(int value) { return _mm_set1_epi32(value); }
    static Vec UnpackLo8(Vec a, Vec b) { return _mm_unpacklo_epi8(a, b); }
    static Vec UnpackHi8(Vec a, Vec b) { return _mm_unpackhi_epi8(a, b); }
    static Vec UnpackLo16(Vec a, Vec b) { return _mm_unpacklo_epi16(a, b); }
    static Vec UnpackHi16(Vec a, Vec b) { return _mm_unpackhi_epi16(a, b); }
    static Vec Add16(Vec a, Vec b) { return _mm_add_epi16(a, b); }
    static Vec Add32(Vec a, Vec b) { return _mm_add_epi32(a, b); }
    static Vec Madd16(Vec a, Vec b) { return _mm_madd_epi16(a, b); }
    static Vec ShiftLeft8(Vec a) { return _mm_slli_epi32(a, 8); }
    static Vec ScaleBack(Vec a, Vec reciprocal)
    {
        return _mm_srli_epi32(_mm_mullo_epi32(a, reciprocal), kShift);
    }
    static Vec PackUs32(Vec a, Vec b) { return _mm_packus_epi32(a, b); }
    static Vec PackUs16(Vec a, Vec b) { return _mm_packus_epi16(a, b); }
    static Vec Or(Vec a, Vec b) { return _mm_or_si128(a, b); }
    static Vec ShuffleBytes(Vec a, Vec order) { return _mm_shuffle_epi8(a, order); }
    template <int Imm>
    static Vec Spread(Vec a)
    {
        return _mm_shuffle_epi32(a, Imm);
    }
    template <typename... Chars>
    static Vec Bytes(Chars... bytes)
    {
        return _mm_setr_epi8(bytes...);
    }
    // One destination column per step of ColumnSums.
    static Vec LoadPixels(const unsigned char* line, const CropVectorTap* columns, int x)
    {
        return Load(line + columns[x].offset);
    }
    static Vec InPixelOrder(Vec bytes) { return bytes; }
};

}  // namespace

void BlendRowsSse41(const CropRowJob& job) { BlendRows<Sse41>(job); }

void BlendColumnTapsSse41(const unsigned char* line, const CropVectorTaps& taps, int width,
                          int pixelBytes, unsigned char* out)
{
    BlendColumnTaps<Sse41>(line, taps, width, pixelBytes, out);
}

#endif
