// The rotating filter's bilinear vector loop for processors with AVX-512 (compiled with
// -mavx512f only): 16 samples a step, the inside test in a mask register. The steps are
// camera_filter_rot_simd_steps.h's.

#include "image/camera_filter_rot_simd.h"

#if defined(__x86_64__)

#include "image/camera_filter_avx512.h"
#include "image/camera_filter_rot_simd_steps.h"

namespace {

struct Avx512 {
    using F = __m512;
    using I = __m512i;
    using M = __mmask16;
    static constexpr int kLanes = 16;

    static F SetF(float value) { return _mm512_set1_ps(value); }
    static I SetI(int value) { return _mm512_set1_epi32(value); }
    static I LaneIndexes()
    {
        return _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    }
    static F ToFloat(I a) { return _mm512_cvtepi32_ps(a); }
    static I Truncate(F a) { return _mm512_cvttps_epi32(a); }
    static F AddF(F a, F b) { return _mm512_add_ps(a, b); }
    static F SubF(F a, F b) { return _mm512_sub_ps(a, b); }
    static F MulF(F a, F b) { return _mm512_mul_ps(a, b); }
    static I AddI(I a, I b) { return _mm512_add_epi32(a, b); }
    static I MulLo(I a, I b) { return _mm512_mullo_epi32(a, b); }
    static I And(I a, I b) { return _mm512_and_si512(a, b); }
    static I Or(I a, I b) { return _mm512_or_si512(a, b); }
    template <int N>
    static I ShiftLeft(I a)
    {
        return _mm512_slli_epi32(a, N);
    }
    template <int N>
    static I ShiftRight(I a)
    {
        return _mm512_srli_epi32(a, N);
    }
    static I Min(I a, I b) { return _mm512_min_epi32(a, b); }
    static I Max(I a, I b) { return _mm512_max_epi32(a, b); }
    static M Inside(F column, F columnLow, F columnLimit, F row, F rowLow, F rowLimit)
    {
        M across = _mm512_cmp_ps_mask(column, columnLow, _CMP_GE_OQ) &
                   _mm512_cmp_ps_mask(column, columnLimit, _CMP_LE_OQ);
        return across & _mm512_cmp_ps_mask(row, rowLow, _CMP_GE_OQ) &
               _mm512_cmp_ps_mask(row, rowLimit, _CMP_LE_OQ);
    }
    static bool NoLane(M mask) { return mask == 0; }
    static I KeepInside(M mask, I a) { return _mm512_maskz_mov_epi32(mask, a); }
    static I Gather(const unsigned char* base, I offset, M mask)
    {
        return _mm512_mask_i32gather_epi32(_mm512_setzero_si512(), mask, offset, base, 1);
    }
    static I Select(M mask, I inside, I outside)
    {
        return _mm512_mask_blend_epi32(mask, outside, inside);
    }
    static void Store(unsigned char* at, I a) { _mm512_storeu_si512(at, a); }
    static void StoreInts(int* at, I a) { _mm512_store_si512(at, a); }
};

}  // namespace

int SampleRotRowAvx512(const RotRowJob& job, int pixelBytes)
{
    int done = SampleRotRowOf<Avx512>(job, pixelBytes);
    _mm256_zeroupper();
    return done;
}

#endif
