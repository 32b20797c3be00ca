// The straight crop's vector loops for processors with AVX2 (compiled with -mavx2 only): 32 bytes
// of the row pass and 8 destination pixels of the column pass per step. The steps themselves are
// camera_filter_crop_simd_steps.h's; this file gives them the 256-bit operations, which work
// within each 128-bit half as the SSE4.1 ones do on the whole register.

#include "image/camera_filter_crop_simd.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include "image/camera_filter_crop_simd_steps.h"

namespace {

struct Avx2 {
    using Vec = __m256i;
    static constexpr long kBytes = 32;
    // Rows are read this many bytes ahead of the step that needs them: the row pass waits on
    // memory more than on arithmetic.
    static constexpr long kAhead = 1024;

    static Vec Load(const unsigned char* at)
    {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
    }
    static void Store(unsigned char* at, Vec v)
    {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), v);
    }
    static void Prefetch(const unsigned char* at)
    {
        _mm_prefetch(reinterpret_cast<const char*>(at + kAhead), _MM_HINT_T0);
    }
    static Vec Zero() { return _mm256_setzero_si256(); }
    static Vec Set1(int value) { return _mm256_set1_epi32(value); }
    static Vec UnpackLo8(Vec a, Vec b) { return _mm256_unpacklo_epi8(a, b); }
    static Vec UnpackHi8(Vec a, Vec b) { return _mm256_unpackhi_epi8(a, b); }
    static Vec UnpackLo16(Vec a, Vec b) { return _mm256_unpacklo_epi16(a, b); }
    static Vec UnpackHi16(Vec a, Vec b) { return _mm256_unpackhi_epi16(a, b); }
    static Vec Add16(Vec a, Vec b) { return _mm256_add_epi16(a, b); }
    static Vec Add32(Vec a, Vec b) { return _mm256_add_epi32(a, b); }
    static Vec Madd16(Vec a, Vec b) { return _mm256_madd_epi16(a, b); }
    static Vec ShiftLeft8(Vec a) { return _mm256_slli_epi32(a, 8); }
    static Vec ScaleBack(Vec a, Vec reciprocal)
    {
        return _mm256_srli_epi32(_mm256_mullo_epi32(a, reciprocal), kShift);
    }
    static Vec PackUs32(Vec a, Vec b) { return _mm256_packus_epi32(a, b); }
    static Vec PackUs16(Vec a, Vec b) { return _mm256_packus_epi16(a, b); }
    static Vec Or(Vec a, Vec b) { return _mm256_or_si256(a, b); }
    static Vec ShuffleBytes(Vec a, Vec order) { return _mm256_shuffle_epi8(a, order); }
    template <int Imm>
    static Vec Spread(Vec a)
    {
        return _mm256_shuffle_epi32(a, Imm);
    }
    template <typename... Chars>
    static Vec Bytes(Chars... bytes)
    {
        return _mm256_setr_epi8(bytes..., bytes...);
    }
    // Column x's pixels in the lower half, x + 1's in the upper.
    static Vec LoadPixels(const unsigned char* line, const CropVectorTap* columns, int x)
    {
        return _mm256_inserti128_si256(
            _mm256_castsi128_si256(
                _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + columns[x].offset))),
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + columns[x + 1].offset)), 1);
    }
    // The packs leave the pixels of a step in the order 0 2 4 6 1 3 5 7.
    static Vec InPixelOrder(Vec bytes)
    {
        return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
    }
};

}  // namespace

void BlendRowsAvx2(const CropRowJob& job)
{
    BlendRows<Avx2>(job);
    _mm256_zeroupper();
}

void BlendColumnTapsAvx2(const unsigned char* line, const CropVectorTaps& taps, int width,
                         int pixelBytes, unsigned char* out)
{
    BlendColumnTaps<Avx2>(line, taps, width, pixelBytes, out);
    _mm256_zeroupper();
}

#endif
