#pragma once
// The steps of the rotating filter's bilinear vector loop, written once for any register width.
// Included only by camera_filter_rot_simd_avx2.cpp and camera_filter_rot_simd_avx512.cpp, after
// <immintrin.h>; each gives a struct of its instruction set's operations (`Ops`, below) and
// instantiates the loop with it, in an anonymous namespace of its own.
//
// What `Ops` has: the types F (floats), I (32-bit integers) and M (a lane mask) and kLanes;
// SetF, SetI, LaneIndexes (0, 1, 2, ...), ToFloat, Truncate (towards zero), AddF, SubF, MulF,
// AddI, MulLo, And, Or, ShiftLeft<N>, ShiftRight<N> (logical), Min, Max; Inside (the ordered
// range test of column and row, false for a position that is not a number), NoLane, KeepInside
// (zero in the other lanes), Gather (the 32-bit words at base + offset in the mask's lanes, zero
// in the others), Select (mask ? inside : outside), Store (unaligned) and StoreInts (aligned).

#include <cstddef>
#include <cstdint>

#include "image/camera_filter_rot_simd.h"

namespace {

// Samples this many ahead along the next row are asked for: far enough that they arrive before
// that row needs them, near enough that they are still in the first-level cache then.
constexpr float kAheadSamples = 48.0f;

// Channel `Channel` (byte of each 32-bit word) as floats.
template <typename Ops, int Channel>
inline typename Ops::F ChannelOf(typename Ops::I words)
{
    return Ops::ToFloat(Ops::And(Ops::template ShiftRight<8 * Channel>(words), Ops::SetI(0xFF)));
}

// One channel of the lanes' bilinear samples, truncated and moved back to its byte of the word:
// top = p00 + (p01 − p00) × fx, bottom likewise, value = top + (bottom − top) × fy.
template <typename Ops, int Channel>
inline typename Ops::I InterpolateChannel(typename Ops::I w00, typename Ops::I w01,
                                          typename Ops::I w10, typename Ops::I w11,
                                          typename Ops::F fx, typename Ops::F fy)
{
    using F = typename Ops::F;
    F q00 = ChannelOf<Ops, Channel>(w00);
    F q01 = ChannelOf<Ops, Channel>(w01);
    F q10 = ChannelOf<Ops, Channel>(w10);
    F q11 = ChannelOf<Ops, Channel>(w11);
    F top = Ops::AddF(q00, Ops::MulF(Ops::SubF(q01, q00), fx));
    F bottom = Ops::AddF(q10, Ops::MulF(Ops::SubF(q11, q10), fx));
    F value = Ops::AddF(top, Ops::MulF(Ops::SubF(bottom, top), fy));
    return Ops::template ShiftLeft<8 * Channel>(Ops::Truncate(value));
}

// Asks for the source bytes of every fourth lane's two tap rows at the next row's samples. The
// offsets are clamped into the source: they are hints, and a far position may give any offset.
// A source of dy rows or fewer has no inside sample and is not asked for.
template <typename Ops>
class LaterSamples {
public:
    explicit LaterSamples(const RotRowJob& job)
        : source_(reinterpret_cast<const char*>(job.source)), down_(job.dy * job.rowBytes),
          wanted_(job.sourceHeight > job.dy),
          column_(Ops::SetF(job.aheadColumn + kAheadSamples * job.columnStep)),
          row_(Ops::SetF(job.aheadRow + kAheadSamples * job.rowStep)),
          rowBytes_(Ops::SetI(static_cast<int>(job.rowBytes))),
          last_(Ops::SetI(wanted_ ? static_cast<int>((job.sourceHeight - 1) * job.rowBytes - down_)
                                  : 0))
    {
    }

    void AskFor(typename Ops::F column, typename Ops::F row, typename Ops::I pixelBytes) const
    {
        if (!wanted_)
            return;
        typename Ops::I offset =
            Ops::AddI(Ops::MulLo(Ops::Truncate(Ops::AddF(row, row_)), rowBytes_),
                      Ops::MulLo(Ops::Truncate(Ops::AddF(column, column_)), pixelBytes));
        offset = Ops::Min(Ops::Max(offset, Ops::SetI(0)), last_);
        alignas(64) int offsets[Ops::kLanes];
        Ops::StoreInts(offsets, offset);
#pragma GCC unroll 4
        for (int lane = 0; lane < Ops::kLanes; lane += 4) {
            _mm_prefetch(source_ + offsets[lane], _MM_HINT_T0);
            _mm_prefetch(source_ + offsets[lane] + down_, _MM_HINT_T0);
        }
    }

private:
    const char* source_;
    long down_;
    bool wanted_;
    typename Ops::F column_;
    typename Ops::F row_;
    typename Ops::I rowBytes_;
    typename Ops::I last_;
};

// The bilinear samples kLanes at a time: positions, the inside test and the pixel offsets in the
// lanes of one register; the four taps of each inside sample gathered as 32-bit words (outside
// lanes read nothing); each channel interpolated in a register of its own.
template <typename Ops, int PixelBytes>
int SampleRotRow(const RotRowJob& job)
{
    using F = typename Ops::F;
    using I = typename Ops::I;
    using M = typename Ops::M;
    const F columnLow = Ops::SetF(static_cast<float>(job.dx));
    const F columnLimit = Ops::SetF(static_cast<float>(job.sourceWidth - job.dx - 1));
    const F rowLow = Ops::SetF(static_cast<float>(job.dy));
    const F rowLimit = Ops::SetF(static_cast<float>(job.sourceHeight - job.dy - 1));
    const F startColumn = Ops::SetF(job.column);
    const F startRow = Ops::SetF(job.row);
    const F columnStep = Ops::SetF(job.columnStep);
    const F rowStep = Ops::SetF(job.rowStep);
    const I rowBytes = Ops::SetI(static_cast<int>(job.rowBytes));
    const I pixelBytes = Ops::SetI(PixelBytes);
    const I lanes = Ops::LaneIndexes();
    const I opaque = Ops::SetI(PixelBytes == 3 ? static_cast<int>(0xFF000000u) : 0);
    const I outside = Ops::SetI(static_cast<int>(job.outside));
    const ptrdiff_t across = static_cast<ptrdiff_t>(job.dx) * PixelBytes;
    const ptrdiff_t down = static_cast<ptrdiff_t>(job.dy) * job.rowBytes;
    const unsigned char* p00 = job.source;
    const unsigned char* p01 = p00 + across;
    const unsigned char* p10 = p00 + down;
    const unsigned char* p11 = p10 + across;
    const LaterSamples<Ops> later(job);
    // Copied: the byte stores below might otherwise be taken to change the job.
    unsigned char* const samples = job.out;
    const int width = job.width;
    int x = 0;
    for (; x + Ops::kLanes <= width; x += Ops::kLanes) {
        F xs = Ops::ToFloat(Ops::AddI(Ops::SetI(x), lanes));
        F column = Ops::AddF(startColumn, Ops::MulF(xs, columnStep));
        F row = Ops::AddF(startRow, Ops::MulF(xs, rowStep));
        later.AskFor(column, row, pixelBytes);
        M inside = Ops::Inside(column, columnLow, columnLimit, row, rowLow, rowLimit);
        unsigned char* out = samples + 4 * static_cast<ptrdiff_t>(x);
        if (Ops::NoLane(inside)) {
            Ops::Store(out, outside);
            continue;
        }
        I wholeColumn = Ops::Truncate(column);
        I wholeRow = Ops::Truncate(row);
        F fx = Ops::SubF(column, Ops::ToFloat(wholeColumn));
        F fy = Ops::SubF(row, Ops::ToFloat(wholeRow));
        I offset = Ops::KeepInside(
            inside, Ops::AddI(Ops::MulLo(wholeRow, rowBytes), Ops::MulLo(wholeColumn, pixelBytes)));
        I w00 = Ops::Gather(p00, offset, inside);
        I w01 = Ops::Gather(p01, offset, inside);
        I w10 = Ops::Gather(p10, offset, inside);
        I w11 = Ops::Gather(p11, offset, inside);
        I result = Ops::Or(opaque, InterpolateChannel<Ops, 0>(w00, w01, w10, w11, fx, fy));
        result = Ops::Or(result, InterpolateChannel<Ops, 1>(w00, w01, w10, w11, fx, fy));
        result = Ops::Or(result, InterpolateChannel<Ops, 2>(w00, w01, w10, w11, fx, fy));
        if constexpr (PixelBytes == 4)
            result = Ops::Or(result, InterpolateChannel<Ops, 3>(w00, w01, w10, w11, fx, fy));
        Ops::Store(out, Ops::Select(inside, result, outside));
    }
    return x;
}

template <typename Ops>
int SampleRotRowOf(const RotRowJob& job, int pixelBytes)
{
    return pixelBytes == 4 ? SampleRotRow<Ops, 4>(job) : SampleRotRow<Ops, 3>(job);
}

}  // namespace
