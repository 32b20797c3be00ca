// The rotating filter's bilinear vector loop for processors with AVX2 (compiled with -mavx2
// only): 8 samples a step. The steps are camera_filter_rot_simd_steps.h's.

#include "image/camera_filter_rot_simd.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include "image/camera_filter_rot_simd_steps.h"

namespace {

struct Avx2 {
    using F = __m256;
    using I = __m256i;
    using M = __m256i;  // all ones in a lane that is inside
    static constexpr int kLanes = 8;

    static F SetF(float value) { return _mm256_set1_ps(value); }
    static I SetI(int value) { return _mm256_set1_epi32(value); }
    static I LaneIndexes() { return _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7); }
    static F ToFloat(I a) { return _mm256_cvtepi32_ps(a); }
    static I Truncate(F a) { return _mm256_cvttps_epi32(a); }
    static F AddF(F a, F b) { return _mm256_add_ps(a, b); }
    static F SubF(F a, F b) { return _mm256_sub_ps(a, b); }
    static F MulF(F a, F b) { return _mm256_mul_ps(a, b); }
    static I AddI(I a, I b) { return _mm256_add_epi32(a, b); }
    static I MulLo(I a, I b) { return _mm256_mullo_epi32(a, b); }
    static I And(I a, I b) { return _mm256_and_si256(a, b); }
    static I Or(I a, I b) { return _mm256_or_si256(a, b); }
    template <int N>
    static I ShiftLeft(I a)
    {
        return _mm256_slli_epi32(a, N);
    }
    template <int N>
    static I ShiftRight(I a)
    {
        return _mm256_srli_epi32(a, N);
    }
    static I Min(I a, I b) { return _mm256_min_epi32(a, b); }
    static I Max(I a, I b) { return _mm256_max_epi32(a, b); }
    static M Inside(F column, F columnLow, F columnLimit, F row, F rowLow, F rowLimit)
    {
        F across = _mm256_and_ps(_mm256_cmp_ps(column, columnLow, _CMP_GE_OQ),
                                 _mm256_cmp_ps(column, columnLimit, _CMP_LE_OQ));
        F down = _mm256_and_ps(_mm256_cmp_ps(row, rowLow, _CMP_GE_OQ),
                               _mm256_cmp_ps(row, rowLimit, _CMP_LE_OQ));
        return _mm256_castps_si256(_mm256_and_ps(across, down));
    }
    static bool NoLane(M mask) { return _mm256_testz_si256(mask, mask) != 0; }
    static I KeepInside(M mask, I a) { return _mm256_and_si256(mask, a); }
    static I Gather(const unsigned char* base, I offset, M mask)
    {
        return _mm256_mask_i32gather_epi32(_mm256_setzero_si256(),
                                           reinterpret_cast<const int*>(base), offset, mask, 1);
    }
    static I Select(M mask, I inside, I outside)
    {
        return _mm256_blendv_epi8(outside, inside, mask);
    }
    static void Store(unsigned char* at, I a) { _mm256_storeu_si256(reinterpret_cast<I*>(at), a); }
    static void StoreInts(int* at, I a) { _mm256_store_si256(reinterpret_cast<I*>(at), a); }
};

}  // namespace

int SampleRotRowAvx2(const RotRowJob& job, int pixelBytes)
{
    int done = SampleRotRowOf<Avx2>(job, pixelBytes);
    // The caller's plain code runs far slower after 256-bit code with dirty upper halves.
    _mm256_zeroupper();
    return done;
}

#endif
