// FilterCrop: the straight camera window, an area-averaging crop in 8-bit fixed point.
//
// Every destination pixel averages the source area under it. A source pixel wholly under it
// weighs 256; the partly covered first and last pixels of a span weigh their covered part in
// 256ths (truncated). The weighted sum is divided by multiplying it with 0x100000 ÷ divisor and
// shifting right by 20, so the inner loops hold only integer multiplies, adds and shifts.
//
// Two passes per destination row: the row pass averages the source rows under the row into a
// source-wide line buffer (every column the column pass will read), the column pass averages the
// line buffer's pixels under each destination column (both in camera_filter_crop_passes.cpp).
// Offsets, weights and reciprocals of the columns are computed here once per call.
//
// Quality 50 and below samples the nearest pixel instead (the rotating filter already
// interpolates at 50; the straight crop keeps the cheap path one step longer, as it always has).
//
// Where a span reads a pixel outside the picture, the destination pixel gets the outside colour
// (17, 17, 17; alpha 0 from 32-bit sources, 255 from 24-bit ones). A pixel whose weight is 0 is
// never read, so a window that is exactly the picture reproduces it, edges included.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "image/camera_filter.h"
#include "image/camera_filter_crop_passes.h"
#include "platform/base/memory.h"

namespace {

// The line buffer is followed by this many bytes of outside colour, as the column tables have
// always pointed outside columns at it; the vector column loops' 16-byte reads from a column's
// first pixel (or from the pad itself) land here.
constexpr long kPadBytes = 60;

// Whole part of a position (floor), kept in a range far outside any picture, so that huge or
// undefined camera values end up outside instead of overflowing.
int64_t WholePart(float position)
{
    constexpr float kFar = 1.0e9f;
    if (!(position > -kFar))  // also catches a value that is not a number
        return -static_cast<int64_t>(kFar);
    if (position > kFar)
        return static_cast<int64_t>(kFar);
    return static_cast<int64_t>(std::floor(position));
}

// The source pixels (columns or rows) under one destination pixel whose area runs from `from` to
// `to` (from + the step, in single precision), in a picture `size` pixels across.
//
// With i0 = floor(from), i1 = floor(to), n = i1 − i0: pixel i0 weighs a = trunc((1 − frac(from))
// × 256), pixels i0+1 … i0+n−1 weigh 256, pixel i0+n weighs b = trunc(frac(to) × 256); with n = 0
// the one pixel i0 weighs a + b. The divisor is (a + b + max(256 × n − 256, 0)) mod 65536, never
// below 1. Pixels of weight 0 at either end are left out of the span.
Span MakeSpan(float from, float to, int64_t size)
{
    Span span{};
    int64_t i0 = WholePart(from);
    int64_t i1 = WholePart(to);
    // Whatever the weights, such a span reads a pixel outside (or nothing, starting outside).
    if (i0 < -1 || i1 > size) {
        span.outside = true;
        return span;
    }
    int64_t n = i1 - i0;
    auto a = static_cast<uint32_t>((1.0f - (from - static_cast<float>(i0))) * 256.0f);
    auto b = static_cast<uint32_t>((to - static_cast<float>(i1)) * 256.0f);

    uint64_t total;  // the sum of the weights, before the divisor's 16 bits
    int64_t firstIndex;
    int64_t lastIndex;
    if (n == 0) {
        total = a + b;
        firstIndex = 0;
        lastIndex = 0;
        span.firstWeight = a + b;
        span.lastWeight = a + b;
    } else {
        total = a + b + static_cast<uint64_t>(kWeightOne) * static_cast<uint64_t>(n - 1);
        firstIndex = a == 0 ? 1 : 0;
        lastIndex = b == 0 ? n - 1 : n;
        auto weightAt = [&](int64_t k) { return k == 0 ? a : (k == n ? b : kWeightOne); };
        span.firstWeight = weightAt(firstIndex);
        span.lastWeight = weightAt(lastIndex);
    }
    span.count = static_cast<int>(std::max<int64_t>(lastIndex - firstIndex + 1, 0));
    if (span.count == 0) {
        // Nothing weighs anything (a very strong enlargement straddling a pixel border): the sum
        // is 0. Such a span is outside when the pixel it starts in is.
        span.first = i0;
        span.outside = i0 < 0 || i0 >= size;
    } else {
        span.first = i0 + firstIndex;
        span.outside = span.first < 0 || i0 + lastIndex >= size;
    }

    uint32_t divisor = static_cast<uint32_t>(total % 65536);
    divisor = std::max<uint32_t>(divisor, 1);
    span.reciprocal = kReciprocalOne / divisor;
    // Below 65536 the divisor is the weights' sum, so sum × reciprocal stays below 255 × 2^20
    // and the scaled value is a byte. A wrapped divisor takes the 64-bit path, which keeps the
    // low 8 bits of whatever comes out.
    span.wide = total >= 65536;
    return span;
}

// The work block of one call, one AllocMemBlock: the source-wide line buffer, its pad, the column
// table and the same columns as fixed taps, plain and laid out for the vector loops. The nearest
// path keeps its source columns where the column table would be.
struct WorkBlock {
    unsigned char* memory = nullptr;
    unsigned char* line = nullptr;
    CropColumn* columns = nullptr;
    CropTaps* taps = nullptr;
    void* vectorTaps = nullptr;
    int32_t* nearestColumns = nullptr;

    ~WorkBlock()
    {
        if (memory != nullptr)
            FreeMemBlock(memory);
    }
};

bool AllocWorkBlock(WorkBlock* work, long lineBytes, int sourceBits, int destinationWidth)
{
    size_t tableOffset = (static_cast<size_t>(lineBytes) + kPadBytes + 15) & ~size_t{15};
    size_t tapsOffset = tableOffset + sizeof(CropColumn) * static_cast<size_t>(destinationWidth);
    size_t vectorOffset = tapsOffset + sizeof(CropTaps) * static_cast<size_t>(destinationWidth);
    size_t bytes = vectorOffset + CropVectorTapsBytes(destinationWidth);
    work->memory = static_cast<unsigned char*>(AllocMemBlock(bytes));
    if (work->memory == nullptr)
        return false;
    work->line = work->memory;
    work->columns = reinterpret_cast<CropColumn*>(work->memory + tableOffset);
    work->taps = reinterpret_cast<CropTaps*>(work->memory + tapsOffset);
    work->vectorTaps = work->memory + vectorOffset;
    work->nearestColumns = reinterpret_cast<int32_t*>(work->memory + tableOffset);
    // The line buffer starts clear (the row pass fills only the columns that are read); the pad
    // holds the outside colour with its alpha.
    std::memset(work->line, 0, static_cast<size_t>(lineBytes));
    unsigned char* pad = work->line + lineBytes;
    std::memset(pad, kOutsideLevel, kPadBytes);
    if (sourceBits == 32)
        for (long i = 3; i < kPadBytes; i += 4)
            pad[i] = OutsideAlpha(sourceBits);
    return true;
}

// The nearest-pixel path: each destination pixel copies source pixel floor(left + x × sx) of
// source row floor(v). `columns` holds the source column of each destination column, or -1
// where it is outside the picture.
void NearestRow(const unsigned char* sourceRow, int pixelBytes, const int32_t* columns,
                int destinationWidth, unsigned char* out)
{
    for (int x = 0; x < destinationWidth; ++x, out += 4) {
        int32_t column = columns[x];
        if (column < 0) {
            WriteOutside(out, pixelBytes);
            continue;
        }
        const unsigned char* pixel = sourceRow + static_cast<ptrdiff_t>(column) * pixelBytes;
        out[0] = pixel[0];
        out[1] = pixel[1];
        out[2] = pixel[2];
        out[3] = pixelBytes == 4 ? pixel[3] : 255;
    }
}

// Source rows asked for ahead of a destination row at most: all the rows a reduction of up to
// 4 : 1 adds. Asking for the many rows of a stronger one at once could push the first of them out
// of the cache before their turn.
constexpr int64_t kReadAheadRows = 4;

// The source rows under destination row `r`.
Span SourceRowsUnder(const CameraRows& rows, float top, float sy, int r, int64_t sourceHeight)
{
    float v = CameraRowPosition(rows, top, sy, r);
    return MakeSpan(v, v + sy, sourceHeight);
}

}  // namespace

bool CDIB::FilterCrop(CDIB* source, float left, float top, float width, float height, float angle,
                      float tiltV, float tiltH, int part, int quality, int fieldCode)
{
    if (source != nullptr && source->useRotFilter)
        return FilterRot(source, left, top, width, height, angle, tiltV, tiltH, part, quality,
                         fieldCode);
    CameraRows rows{};
    if (!CameraFilterAccepts(*this, source, width, height, part, fieldCode, &rows))
        return false;

    const int destinationWidth = GetWid();
    const int destinationHeight = GetHgt();
    const int sourceWidth = source->GetWid();
    const int sourceHeight = source->GetHgt();
    const int sourceBits = source->GetBitCount();
    const int pixelBytes = sourceBits / 8;
    const long sourceRowBytes = source->GetRowBytes();
    const unsigned char* sourceBase = source->GetBitsAdd(0);
    const long lineBytes = static_cast<long>(pixelBytes) * sourceWidth;

    // Source pixels per destination pixel.
    const float sx = width / static_cast<float>(destinationWidth);
    const float sy = height / static_cast<float>(destinationHeight);
    const bool nearest = quality <= 50;

    WorkBlock work;
    if (!AllocWorkBlock(&work, lineBytes, sourceBits, destinationWidth))
        return false;

    if (nearest) {
        int32_t* columns = work.nearestColumns;
        for (int x = 0; x < destinationWidth; ++x) {
            int64_t column = WholePart(left + static_cast<float>(x) * sx);
            columns[x] = column >= 0 && column < sourceWidth ? static_cast<int32_t>(column) : -1;
        }
        for (int r = rows.first; r < rows.end; r += rows.step) {
            unsigned char* out = GetBitsAdd(r);
            int64_t row = WholePart(CameraRowPosition(rows, top, sy, r));
            if (row < 0 || row >= sourceHeight) {
                WriteOutsideRow(out, destinationWidth, pixelBytes);
                continue;
            }
            NearestRow(sourceBase + row * sourceRowBytes, pixelBytes, columns, destinationWidth,
                       out);
        }
        return true;
    }

    // Column table: positions accumulated by repeated addition of sx, in single precision.
    // The row pass covers [lineFrom, lineTo): every byte any inside column reads.
    long lineFrom = lineBytes;
    long lineTo = 0;
    float u = left;
    for (int x = 0; x < destinationWidth; ++x) {
        float next = u + sx;
        Span span = MakeSpan(u, next, sourceWidth);
        u = next;
        CropColumn& column = work.columns[x];
        column = MakeCropColumn(span, pixelBytes);
        if (!span.outside && span.count > 0) {
            lineFrom = std::min(lineFrom, static_cast<long>(column.offset));
            lineTo = std::max(lineTo, static_cast<long>(column.offset) +
                                          static_cast<long>(span.count) * pixelBytes);
        }
    }

    // Up to 4 pixels per column (reductions to a quarter and enlargements): the branch-free pass.
    const int tapCount =
        MakeCropTaps(work.columns, destinationWidth, static_cast<uint32_t>(lineBytes), work.taps);
    CropVectorTaps vectorTaps{};
    if (tapCount > 0)
        vectorTaps = MakeCropVectorTaps(work.taps, tapCount, destinationWidth,
                                        static_cast<uint32_t>(lineBytes), work.vectorTaps);

    Span span = SourceRowsUnder(rows, top, sy, rows.first, sourceHeight);
    for (int r = rows.first; r < rows.end; r += rows.step) {
        unsigned char* out = GetBitsAdd(r);
        // The next row's span comes first, so that the source rows it adds can be asked for while
        // this row's column pass runs.
        Span next{};
        if (r + rows.step < rows.end)
            next = SourceRowsUnder(rows, top, sy, r + rows.step, sourceHeight);
        if (span.outside) {
            WriteOutsideRow(out, destinationWidth, pixelBytes);
        } else {
            if (lineFrom < lineTo) {
                BlendRows(sourceBase + span.first * sourceRowBytes, sourceRowBytes, span, work.line,
                          lineFrom, lineTo);
                int64_t added = std::max(next.first, span.first + span.count);
                int64_t addedEnd = std::min(next.first + next.count, added + kReadAheadRows);
                if (!next.outside && added < addedEnd)
                    ReadAheadRows(sourceBase + added * sourceRowBytes, sourceRowBytes,
                                  static_cast<int>(addedEnd - added), lineFrom, lineTo);
            }
            if (tapCount > 0)
                BlendColumnTaps(work.line, work.taps, vectorTaps, destinationWidth, pixelBytes,
                                out);
            else
                BlendColumns(work.line, work.columns, destinationWidth, pixelBytes, out);
        }
        span = next;
    }
    return true;
}
