#pragma once
// The steps of the straight crop's vector loops, written once for any register width. Included
// only by camera_filter_crop_simd_sse41.cpp, _avx2.cpp and _avx512.cpp, after <immintrin.h>; each
// gives a struct of its instruction set's operations (`Ops`, below) and instantiates the loops
// with it. Everything stays in an anonymous namespace, so each of the three files keeps its own
// copy, compiled with its own target flags (see camera_filter_crop_simd.h).
//
// What `Ops` has: `Vec` (the register type) and `kBytes` (its width), Load/Store (unaligned),
// Zero, Set1, the byte and 16-bit unpacks, Add16/Add32, Madd16, ShiftLeft8, ScaleBack ((v ×
// reciprocal) >> 20 per 32-bit lane), PackUs32/PackUs16, Or, ShuffleBytes, Spread<Imm> (the
// 32-bit shuffle), Bytes(16 chars) (the 16 bytes in every 128-bit part), Prefetch (a hint, or
// nothing), and for the column pass LoadPixels (the source pixels of kBytes / 16 neighbouring
// destination columns, one column per 128-bit part) and InPixelOrder (puts the packed pixels of
// one step back in order).

#include <cstdint>

#include "image/camera_filter_crop_simd.h"

namespace {

constexpr int kShift = 20;  // the reciprocals' scale, 2^20

// One byte of the row pass, for the ends of a range too short for a vector.
inline unsigned char RowByte(const CropRowJob& job, long i)
{
    uint32_t middle = 0;
    for (int k = 0; k < job.middleCount; ++k)
        middle += job.middleRows[k * job.stride + i];
    uint32_t sum = job.first * job.firstRow[i] + job.last * job.lastRow[i] + (middle << 8);
    return static_cast<unsigned char>((sum * job.reciprocal) >> kShift);
}

// kBytes bytes of the row pass at byte i. The first and last rows are interleaved byte by byte
// and widened to 16-bit pairs, so that one multiply-add gives first × p + last × q per 32-bit
// lane; the middle rows, summed in 16 bits, join as sum << 8. Unpacking and packing both work
// within each 128-bit part in the same order, so the bytes come back in place.
template <typename Ops, int Middle>  // Middle: 0, 1, or -1 for any number of middle rows
inline void RowStep(const CropRowJob& job, typename Ops::Vec weights, typename Ops::Vec reciprocal,
                    long i)
{
    using Vec = typename Ops::Vec;
    const Vec zero = Ops::Zero();
    Vec p = Ops::Load(job.firstRow + i);
    Vec q = Ops::Load(job.lastRow + i);
    Ops::Prefetch(job.lastRow + i);
    Ops::Prefetch(job.firstRow + i);
    Vec low = Ops::UnpackLo8(p, q);
    Vec high = Ops::UnpackHi8(p, q);
    Vec s0 = Ops::Madd16(Ops::UnpackLo8(low, zero), weights);
    Vec s1 = Ops::Madd16(Ops::UnpackHi8(low, zero), weights);
    Vec s2 = Ops::Madd16(Ops::UnpackLo8(high, zero), weights);
    Vec s3 = Ops::Madd16(Ops::UnpackHi8(high, zero), weights);
    if constexpr (Middle != 0) {
        Vec middleLow;   // 16-bit sums × 256 of bytes 0-7 of each half
        Vec middleHigh;  // and of bytes 8-15
        if constexpr (Middle == 1) {
            Vec m = Ops::Load(job.middleRows + i);
            Ops::Prefetch(job.middleRows + i);
            middleLow = Ops::UnpackLo8(zero, m);
            middleHigh = Ops::UnpackHi8(zero, m);
        } else {
            middleLow = zero;
            middleHigh = zero;
            for (int k = 0; k < job.middleCount; ++k) {
                Vec m = Ops::Load(job.middleRows + k * job.stride + i);
                middleLow = Ops::Add16(middleLow, Ops::UnpackLo8(m, zero));
                middleHigh = Ops::Add16(middleHigh, Ops::UnpackHi8(m, zero));
            }
        }
        // Widened to 32 bits; the many-row sums (up to 255 × 255) are shifted there.
        Vec m0 = Ops::UnpackLo16(middleLow, zero);
        Vec m1 = Ops::UnpackHi16(middleLow, zero);
        Vec m2 = Ops::UnpackLo16(middleHigh, zero);
        Vec m3 = Ops::UnpackHi16(middleHigh, zero);
        if constexpr (Middle < 0) {
            m0 = Ops::ShiftLeft8(m0);
            m1 = Ops::ShiftLeft8(m1);
            m2 = Ops::ShiftLeft8(m2);
            m3 = Ops::ShiftLeft8(m3);
        }
        s0 = Ops::Add32(s0, m0);
        s1 = Ops::Add32(s1, m1);
        s2 = Ops::Add32(s2, m2);
        s3 = Ops::Add32(s3, m3);
    }
    s0 = Ops::ScaleBack(s0, reciprocal);
    s1 = Ops::ScaleBack(s1, reciprocal);
    s2 = Ops::ScaleBack(s2, reciprocal);
    s3 = Ops::ScaleBack(s3, reciprocal);
    // Every value is at most 255: the saturating packs only narrow.
    Ops::Store(job.line + i, Ops::PackUs16(Ops::PackUs32(s0, s1), Ops::PackUs32(s2, s3)));
}

template <typename Ops, int Middle>
void BlendRowsOf(const CropRowJob& job)
{
    constexpr long kStep = Ops::kBytes;
    if (job.to - job.from < kStep) {
        for (long i = job.from; i < job.to; ++i)
            job.line[i] = RowByte(job, i);
        return;
    }
    const typename Ops::Vec weights = Ops::Set1(static_cast<int>(job.first | job.last << 16));
    const typename Ops::Vec reciprocal = Ops::Set1(static_cast<int>(job.reciprocal));
    long i = job.from;
    for (; i + kStep <= job.to; i += kStep)
        RowStep<Ops, Middle>(job, weights, reciprocal, i);
    // The last bytes: one more step ending at `to`, over bytes already written with the same
    // values.
    if (i < job.to)
        RowStep<Ops, Middle>(job, weights, reciprocal, job.to - kStep);
}

template <typename Ops>
void BlendRows(const CropRowJob& job)
{
    if (job.middleCount == 0)
        BlendRowsOf<Ops, 0>(job);
    else if (job.middleCount == 1)
        BlendRowsOf<Ops, 1>(job);
    else
        BlendRowsOf<Ops, -1>(job);
}

// The byte order for the multiply-add of taps 0 and 1 (Tap 0) or 2 and 3 (Tap 2) of a pixel
// loaded at its first tap: per channel the 16-bit pair (tap k, tap k + 1); a 3-byte pixel's
// fourth pair is zero.
template <typename Ops, int PixelBytes, int Tap>
inline typename Ops::Vec PairOrder()
{
    constexpr char z = -128;  // a zero byte
    constexpr char a = static_cast<char>(Tap * PixelBytes);
    constexpr char b = static_cast<char>((Tap + 1) * PixelBytes);
    constexpr char a3 = PixelBytes == 4 ? static_cast<char>(a + 3) : z;
    constexpr char b3 = PixelBytes == 4 ? static_cast<char>(b + 3) : z;
    return Ops::Bytes(a, z, b, z, static_cast<char>(a + 1), z, static_cast<char>(b + 1), z,
                      static_cast<char>(a + 2), z, static_cast<char>(b + 2), z, a3, z, b3, z);
}

// The destination pixels x, x + 1, ... (one per 128-bit part) as the 32-bit sums of their
// channels, scaled back.
template <typename Ops, int PixelBytes, int Taps>
inline typename Ops::Vec ColumnSums(const unsigned char* line, const CropVectorTap* columns, int x)
{
    using Vec = typename Ops::Vec;
    // Each column's table entry in its half, spread per channel.
    Vec entries = Ops::Load(reinterpret_cast<const unsigned char*>(columns + x));
    Vec pixels = Ops::LoadPixels(line, columns, x);
    Vec sum = Ops::Madd16(Ops::ShuffleBytes(pixels, PairOrder<Ops, PixelBytes, 0>()),
                          Ops::template Spread<0x00>(entries));
    if constexpr (Taps > 2)
        sum =
            Ops::Add32(sum, Ops::Madd16(Ops::ShuffleBytes(pixels, PairOrder<Ops, PixelBytes, 2>()),
                                        Ops::template Spread<0x55>(entries)));
    return Ops::ScaleBack(sum, Ops::template Spread<0xAA>(entries));
}

template <typename Ops, int PixelBytes, int Taps>
void BlendTapsOf(const unsigned char* line, const CropVectorTaps& taps, int width,
                 unsigned char* out)
{
    using Vec = typename Ops::Vec;
    constexpr int kColumns = Ops::kBytes / 16;  // destination pixels per ColumnSums
    constexpr int kStep = 4 * kColumns;         // destination pixels per step
    const Vec opaque = Ops::Set1(PixelBytes == 3 ? static_cast<int>(0xFF000000u) : 0);
    for (int x = 0; x < width; x += kStep) {
        Vec a = ColumnSums<Ops, PixelBytes, Taps>(line, taps.columns, x);
        Vec b = ColumnSums<Ops, PixelBytes, Taps>(line, taps.columns, x + kColumns);
        Vec c = ColumnSums<Ops, PixelBytes, Taps>(line, taps.columns, x + 2 * kColumns);
        Vec d = ColumnSums<Ops, PixelBytes, Taps>(line, taps.columns, x + 3 * kColumns);
        Vec bytes = Ops::PackUs16(Ops::PackUs32(a, b), Ops::PackUs32(c, d));
        bytes = Ops::Or(Ops::InPixelOrder(bytes), opaque);
        if (x + kStep <= width) {
            Ops::Store(out + 4 * x, bytes);
        } else {
            // The last pixels of a row that is not a multiple of kStep wide (the table is).
            unsigned char last[Ops::kBytes];
            Ops::Store(last, bytes);
            for (int i = 0; i < 4 * (width - x); ++i)
                out[4 * x + i] = last[i];
        }
    }
}

template <typename Ops>
void BlendColumnTaps(const unsigned char* line, const CropVectorTaps& taps, int width,
                     int pixelBytes, unsigned char* out)
{
    if (pixelBytes == 4) {
        if (taps.tapCount <= 2)
            BlendTapsOf<Ops, 4, 2>(line, taps, width, out);
        else
            BlendTapsOf<Ops, 4, 4>(line, taps, width, out);
    } else {
        if (taps.tapCount <= 2)
            BlendTapsOf<Ops, 3, 2>(line, taps, width, out);
        else
            BlendTapsOf<Ops, 3, 4>(line, taps, width, out);
    }
}

}  // namespace
