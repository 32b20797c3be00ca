// The straight crop's vector loops for processors with AVX-512 (compiled with -mavx512f
// -mavx512bw only): 64 bytes of the row pass and 16 destination pixels of the column pass per
// step. The steps themselves are camera_filter_crop_simd_steps.h's; this file gives them the
// 512-bit operations, which work within each 128-bit quarter as the SSE4.1 ones do on the whole
// register.

#include "image/camera_filter_crop_simd.h"

#if defined(__x86_64__)

#include "image/camera_filter_avx512.h"
#include "image/camera_filter_crop_simd_steps.h"

namespace {

struct Avx512 {
    using Vec = __m512i;
    static constexpr long kBytes = 64;
    static constexpr long kAhead = 1024;  // as the AVX2 loops read ahead

    static Vec Load(const unsigned char* at) { return _mm512_loadu_si512(at); }
    static void Store(unsigned char* at, Vec v) { _mm512_storeu_si512(at, v); }
    static void Prefetch(const unsigned char* at)
    {
        _mm_prefetch(reinterpret_cast<const char*>(at + kAhead), _MM_HINT_T0);
    }
    static Vec Zero() { return _mm512_setzero_si512(); }
    static Vec Set1(int value) { return _mm512_set1_epi32(value); }
    static Vec UnpackLo8(Vec a, Vec b) { return _mm512_unpacklo_epi8(a, b); }
    static Vec UnpackHi8(Vec a, Vec b) { return _mm512_unpackhi_epi8(a, b); }
    static Vec UnpackLo16(Vec a, Vec b) { return _mm512_unpacklo_epi16(a, b); }
    static Vec UnpackHi16(Vec a, Vec b) { return _mm512_unpackhi_epi16(a, b); }
    static Vec Add16(Vec a, Vec b) { return _mm512_add_epi16(a, b); }
    static Vec Add32(Vec a, Vec b) { return _mm512_add_epi32(a, b); }
    static Vec Madd16(Vec a, Vec b) { return _mm512_madd_epi16(a, b); }
    static Vec ShiftLeft8(Vec a) { return _mm512_slli_epi32(a, 8); }
    static Vec ScaleBack(Vec a, Vec reciprocal)
    {
        return _mm512_srli_epi32(_mm512_mullo_epi32(a, reciprocal), kShift);
    }
    static Vec PackUs32(Vec a, Vec b) { return _mm512_packus_epi32(a, b); }
    static Vec PackUs16(Vec a, Vec b) { return _mm512_packus_epi16(a, b); }
    static Vec Or(Vec a, Vec b) { return _mm512_or_si512(a, b); }
    static Vec ShuffleBytes(Vec a, Vec order) { return _mm512_shuffle_epi8(a, order); }
    template <int Imm>
    static Vec Spread(Vec a)
    {
        return _mm512_shuffle_epi32(a, static_cast<_MM_PERM_ENUM>(Imm));
    }
    template <typename... Chars>
    static Vec Bytes(Chars... bytes)
    {
        return _mm512_broadcast_i32x4(_mm_setr_epi8(bytes...));
    }
    // Columns x to x + 3, one in each quarter.
    static Vec LoadPixels(const unsigned char* line, const CropVectorTap* columns, int x)
    {
        auto at = [&](int k) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + columns[x + k].offset));
        };
        __m512i v = _mm512_castsi128_si512(at(0));
        v = _mm512_inserti32x4(v, at(1), 1);
        v = _mm512_inserti32x4(v, at(2), 2);
        return _mm512_inserti32x4(v, at(3), 3);
    }
    // The packs leave the pixels of a step in the order 0 4 8 12 1 5 9 13 2 6 10 14 3 7 11 15.
    static Vec InPixelOrder(Vec bytes)
    {
        return _mm512_permutexvar_epi32(
            _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), bytes);
    }
};

}  // namespace

void BlendRowsAvx512(const CropRowJob& job)
{
    BlendRows<Avx512>(job);
    _mm256_zeroupper();
}

void BlendColumnTapsAvx512(const unsigned char* line, const CropVectorTaps& taps, int width,
                           int pixelBytes, unsigned char* out)
{
    BlendColumnTaps<Avx512>(line, taps, width, pixelBytes, out);
    _mm256_zeroupper();
}

#endif
