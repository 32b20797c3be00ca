#include "output/rgb_rows.h"

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#define PX_RGB_ROWS_SSSE3 1
#else
#define PX_RGB_ROWS_SSSE3 0
#endif

namespace {

// From `x` to the end of the row, one pixel at a time.
void RowTail(const unsigned char* in, int x, int width, unsigned char* out)
{
    for (; x < width; ++x) {
        out[3 * x] = in[4 * x + 2];
        out[3 * x + 1] = in[4 * x + 1];
        out[3 * x + 2] = in[4 * x];
    }
}

#if PX_RGB_ROWS_SSSE3

// Sixteen pixels a round: four loads of four pixels, each reordered to twelve bytes, packed into
// three stores of sixteen that fill the round's 48 output bytes exactly.
__attribute__((target("ssse3"))) void RowSsse3(const unsigned char* in, int width,
                                               unsigned char* out)
{
    const __m128i order = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    int x = 0;
    for (; x + 16 <= width; x += 16) {
        const auto* from = reinterpret_cast<const __m128i*>(in + 4 * x);
        __m128i a = _mm_shuffle_epi8(_mm_loadu_si128(from), order);
        __m128i b = _mm_shuffle_epi8(_mm_loadu_si128(from + 1), order);
        __m128i c = _mm_shuffle_epi8(_mm_loadu_si128(from + 2), order);
        __m128i d = _mm_shuffle_epi8(_mm_loadu_si128(from + 3), order);
        // a: 12 bytes, then 4 of b; b's other 8, then 8 of c; c's last 4, then d's 12.
        __m128i first = _mm_or_si128(a, _mm_slli_si128(b, 12));
        __m128i second = _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8));
        __m128i third = _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4));
        auto* to = reinterpret_cast<__m128i*>(out + 3 * x);
        _mm_storeu_si128(to, first);
        _mm_storeu_si128(to + 1, second);
        _mm_storeu_si128(to + 2, third);
    }
    RowTail(in, x, width, out);
}

bool HasSsse3()
{
    static const bool has = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("ssse3") != 0;
    }();
    return has;
}

#endif

}  // namespace

void BgraRowsToRgb(const unsigned char* top, ptrdiff_t stride, int width, int height,
                   unsigned char* out, ptrdiff_t outStride)
{
    for (int row = 0; row < height; ++row) {
        const unsigned char* in = top + row * stride;
        unsigned char* line = out + row * outStride;
#if PX_RGB_ROWS_SSSE3
        if (HasSsse3()) {
            RowSsse3(in, width, line);
            continue;
        }
#endif
        RowTail(in, 0, width, line);
    }
}
