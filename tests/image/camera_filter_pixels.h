#pragma once
// Helpers for the camera filter tests: patterned sources, frames preset to a marker, pixel reads
// of the 32-bit frame, the outside colour, the depths the filters accept, and a plain reference
// of the straight crop worked out pixel by pixel from its definition (no tables, no premultiplied
// weights, 64-bit sums) against which the optimised passes are checked.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "image/camera_filter.h"
#include "image/cdib.h"
#include "image/cdib_pixels.h"

namespace pxtest {

using Rgba = std::array<unsigned char, 4>;

// A byte no filter writes by chance in the tests: rows left alone keep it.
constexpr unsigned char kMarker = 0xA5;

inline Rgba OutsideGrey(int sourceBits)
{
    return Rgba{17, 17, 17, static_cast<unsigned char>(sourceBits == 32 ? 0 : 255)};
}

// A source of the given size and depth with the pattern of cdib_pixels.h (no byte is 0, alpha
// varies too), so that every pixel differs from its neighbours.
inline std::unique_ptr<CDIB> PatternSource(long width, long height, int bits)
{
    auto source = std::make_unique<CDIB>(width, height, bits);
    FillPattern(*source);
    return source;
}

// A 32-bit frame with every byte set to the marker.
inline std::unique_ptr<CDIB> MarkedFrame(long width, long height)
{
    auto frame = std::make_unique<CDIB>(width, height, 32);
    std::memset(frame->GetBitsAdd(0), kMarker,
                static_cast<size_t>(frame->GetRowBytes() * frame->GetHgt()));
    return frame;
}

inline Rgba FramePixel(const CDIB& frame, long x, int row)
{
    const unsigned char* at = frame.GetBitsAdd(row) + x * 4;
    return Rgba{at[0], at[1], at[2], at[3]};
}

// The source pixel as it arrives in a 32-bit frame unchanged: alpha 255 from 24-bit sources.
inline Rgba SourcePixel(const CDIB& source, long x, int row)
{
    std::vector<unsigned char> bytes = Pixel(source, x, row);
    return Rgba{bytes[0], bytes[1], bytes[2],
                static_cast<unsigned char>(bytes.size() == 4 ? bytes[3] : 255)};
}

inline bool RowIsMarked(const CDIB& frame, int row)
{
    const unsigned char* at = frame.GetBitsAdd(row);
    for (long i = 0; i < frame.GetWid() * 4; ++i)
        if (at[i] != kMarker)
            return false;
    return true;
}

inline bool RowIsAll(const CDIB& frame, int row, const Rgba& colour)
{
    for (long x = 0; x < frame.GetWid(); ++x)
        if (FramePixel(frame, x, row) != colour)
            return false;
    return true;
}

inline bool FrameIsAll(const CDIB& frame, const Rgba& colour)
{
    for (int row = 0; row < frame.GetHgt(); ++row)
        if (!RowIsAll(frame, row, colour))
            return false;
    return true;
}

// Runs `render` once with the filters' vector loops (where the processor has them) and once with
// their plain loops, restoring the setting afterwards.
template <typename Render>
void WithEachLoopKind(Render render)
{
    const bool saved = gCameraFilterPlainLoops;
    for (bool plain : {false, true}) {
        gCameraFilterPlainLoops = plain;
        render(plain);
    }
    gCameraFilterPlainLoops = saved;
}

// The depths the camera filters accept, for typed test suites.
using CameraDepths = ::testing::Types<Depth<24>, Depth<32>>;

// ---- The straight crop, pixel by pixel ----

// The pixels under one destination pixel along one axis: pixel first + k weighs weights[k].
struct ReferenceSpan {
    bool outside = false;
    int64_t first = 0;
    std::vector<uint64_t> weights;
    uint64_t reciprocal = 0;
};

inline ReferenceSpan ReferenceSpanOf(float from, float to, int64_t size)
{
    ReferenceSpan span;
    if (!std::isfinite(from) || !std::isfinite(to) || from < -4.0e6f || to > 4.0e6f) {
        span.outside = true;
        return span;
    }
    auto i0 = static_cast<int64_t>(std::floor(from));
    auto i1 = static_cast<int64_t>(std::floor(to));
    int64_t n = i1 - i0;
    auto a = static_cast<uint64_t>((1.0f - (from - std::floor(from))) * 256.0f);
    auto b = static_cast<uint64_t>((to - std::floor(to)) * 256.0f);
    span.first = i0;
    if (n == 0) {
        span.weights = {a + b};
    } else {
        span.weights.assign(static_cast<size_t>(n + 1), 256);
        span.weights.front() = a;
        span.weights.back() = b;
    }
    uint64_t divisor = (a + b + static_cast<uint64_t>(std::max<int64_t>(256 * n - 256, 0))) % 65536;
    span.reciprocal = 0x100000 / std::max<uint64_t>(divisor, 1);
    bool any = false;
    for (size_t k = 0; k < span.weights.size(); ++k) {
        if (span.weights[k] == 0)
            continue;
        any = true;
        int64_t at = i0 + static_cast<int64_t>(k);
        if (at < 0 || at >= size)
            span.outside = true;
    }
    if (!any && (i0 < 0 || i0 >= size))
        span.outside = true;
    return span;
}

// The frame rows FilterCrop renders for part 0 and the field code, and the field shift.
inline std::vector<int> ReferenceRows(int height, int fieldCode)
{
    std::vector<int> rows;
    int step = fieldCode / 10 + 1;
    int first = step > 1 ? fieldCode % 10 : 0;
    for (int row = first; row < height; row += step)
        rows.push_back(row);
    return rows;
}

// Writes into `frame` what FilterCrop (part 0) must write, from the definition: a row pass into
// bytes, then a column pass over those bytes; sums in 64 bits, the stored byte its low 8 bits.
inline void ReferenceCrop(const CDIB& source, float left, float top, float width, float height,
                          int quality, int fieldCode, CDIB& frame)
{
    const int frameWidth = frame.GetWid();
    const int frameHeight = frame.GetHgt();
    const int bits = source.GetBitCount();
    const int pixelBytes = bits / 8;
    const float sx = width / static_cast<float>(frameWidth);
    const float sy = height / static_cast<float>(frameHeight);
    const int step = fieldCode / 10 + 1;
    const float shift = step > 1 ? 0.0f : static_cast<float>(fieldCode % 10) * sy * 0.5f;
    const Rgba outside = OutsideGrey(bits);
    auto put = [&](int x, int row, const Rgba& colour) {
        std::memcpy(frame.GetBitsAdd(row) + x * 4, colour.data(), 4);
    };
    for (int row : ReferenceRows(frameHeight, fieldCode)) {
        float v = top + static_cast<float>(row) * sy + shift;
        if (quality <= 50) {
            double whole = std::floor(v);
            for (int x = 0; x < frameWidth; ++x) {
                double column = std::floor(left + static_cast<float>(x) * sx);
                if (!(whole >= 0 && whole < source.GetHgt() && column >= 0 &&
                      column < source.GetWid())) {
                    put(x, row, outside);
                    continue;
                }
                put(x, row,
                    SourcePixel(source, static_cast<long>(column), static_cast<int>(whole)));
            }
            continue;
        }
        ReferenceSpan down = ReferenceSpanOf(v, v + sy, source.GetHgt());
        // One byte of the row pass: column `column`, channel `c`.
        auto lineByte = [&](int64_t column, int c) {
            uint64_t sum = 0;
            for (size_t k = 0; k < down.weights.size(); ++k)
                if (down.weights[k] != 0)
                    sum += down.weights[k] *
                           source.GetBitsAdd(static_cast<int>(
                               down.first + static_cast<int64_t>(k)))[column * pixelBytes + c];
            return static_cast<uint64_t>(((sum * down.reciprocal) >> 20) & 0xFF);
        };
        float u = left;
        for (int x = 0; x < frameWidth; ++x) {
            float next = u + sx;
            ReferenceSpan across = ReferenceSpanOf(u, next, source.GetWid());
            u = next;
            if (down.outside || across.outside) {
                put(x, row, outside);
                continue;
            }
            Rgba colour{0, 0, 0, 255};
            for (int c = 0; c < pixelBytes; ++c) {
                uint64_t sum = 0;
                for (size_t k = 0; k < across.weights.size(); ++k)
                    if (across.weights[k] != 0)
                        sum +=
                            across.weights[k] * lineByte(across.first + static_cast<int64_t>(k), c);
                colour[static_cast<size_t>(c)] =
                    static_cast<unsigned char>(((sum * across.reciprocal) >> 20) & 0xFF);
            }
            put(x, row, colour);
        }
    }
}

}  // namespace pxtest
