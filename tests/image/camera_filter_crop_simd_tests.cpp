// Every kind of loop the camera filters have on this processor (plain, SSE4.1, AVX2, AVX-512)
// renders the same bytes: thousands of random windows, sizes, depths, qualities and field codes,
// windows past the picture's edges and one-pixel pictures and frames, through FilterCrop and
// FilterRot; and the two passes of the straight crop alone over random rows and columns, up to
// the row counts where the weights' sum wraps.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "image/camera_filter.h"
#include "image/camera_filter_crop_passes.h"
#include "image/cdib.h"

namespace {

using Bytes = std::vector<unsigned char>;

// The vector loop kinds this processor runs, each to be compared with the plain loops.
std::vector<CameraLoops> VectorLoops()
{
    std::vector<CameraLoops> kinds;
    for (CameraLoops kind : {CameraLoops::kSse41, CameraLoops::kAvx2, CameraLoops::kAvx512})
        if (kind <= BestCameraLoops())
            kinds.push_back(kind);
    return kinds;
}

std::string NameOf(CameraLoops kind)
{
    switch (kind) {
    case CameraLoops::kAvx512:
        return "AVX-512";
    case CameraLoops::kAvx2:
        return "AVX2";
    case CameraLoops::kSse41:
        return "SSE4.1";
    default:
        return "plain";
    }
}

// Runs `render` with the given loops, restoring the settings afterwards.
template <typename Render>
auto WithLoops(CameraLoops kind, Render render)
{
    const bool savedPlain = gCameraFilterPlainLoops;
    const CameraLoops savedLoops = gCameraFilterLoops;
    gCameraFilterPlainLoops = kind == CameraLoops::kPlain;
    gCameraFilterLoops = kind;
    auto result = render();
    gCameraFilterPlainLoops = savedPlain;
    gCameraFilterLoops = savedLoops;
    return result;
}

// Random bytes, or now and then all 255 (the largest sums) or all 0.
void FillRandom(unsigned char* bytes, size_t count, std::mt19937& random)
{
    int kind = static_cast<int>(random() % 8);
    for (size_t i = 0; i < count; ++i)
        bytes[i] = kind == 0 ? 255 : (kind == 1 ? 0 : static_cast<unsigned char>(random()));
}

std::unique_ptr<CDIB> RandomPicture(long width, long height, int bits, std::mt19937& random)
{
    auto picture = std::make_unique<CDIB>(width, height, bits);
    FillRandom(picture->GetBitsAdd(0),
               static_cast<size_t>(picture->GetRowBytes() * picture->GetHgt()), random);
    return picture;
}

struct Window {
    float left;
    float top;
    float width;
    float height;
    float angle;
    float tiltV;
    float tiltH;
    int quality;
    int fieldCode;
};

// A window somewhere around the picture: often past its edges, sometimes exactly on it, at whole
// or fractional positions, from strong enlargements to strong reductions.
Window RandomWindow(long pictureWidth, long pictureHeight, long frameWidth, long frameHeight,
                    std::mt19937& random)
{
    auto uniform = [&](float from, float to) {
        return std::uniform_real_distribution<float>(from, to)(random);
    };
    auto scale = [&](long frame) {
        switch (random() % 4) {
        case 0:
            return static_cast<float>(frame) * uniform(0.0f, 1.0f);  // enlargement
        case 1:
            return static_cast<float>(frame) * uniform(1.0f, 4.0f);  // the fixed taps
        case 2:
            return static_cast<float>(frame) * uniform(4.0f, 300.0f);  // many pixels, wrapping
        default:
            return static_cast<float>(frame * static_cast<long>(1 + random() % 3));  // whole
        }
    };
    Window w{};
    w.width = scale(frameWidth);
    w.height = scale(frameHeight);
    w.left = uniform(-0.5f, 1.1f) * static_cast<float>(pictureWidth);
    w.top = uniform(-0.5f, 1.1f) * static_cast<float>(pictureHeight);
    switch (random() % 4) {
    case 0:  // exactly the picture
        w.left = 0.0f;
        w.top = 0.0f;
        w.width = static_cast<float>(pictureWidth);
        w.height = static_cast<float>(pictureHeight);
        break;
    case 1:  // whole-pixel position
        w.left = static_cast<float>(static_cast<long>(w.left));
        w.top = static_cast<float>(static_cast<long>(w.top));
        break;
    default:
        break;
    }
    if (random() % 2 == 0) {
        w.angle = uniform(-180.0f, 180.0f);
        w.tiltV = random() % 2 == 0 ? 0.0f : uniform(-30.0f, 30.0f);
        w.tiltH = random() % 2 == 0 ? 0.0f : uniform(-30.0f, 30.0f);
    }
    const int qualities[] = {100, 90, 51, 50, 49, 0};
    w.quality = qualities[random() % 6];
    const int fieldCodes[] = {0, 1, 10, 11};
    w.fieldCode = fieldCodes[random() % 4];
    return w;
}

// The frame `window` gives, rendered with `rotating` choosing the filter, every byte preset to a
// marker so that rows left alone compare too.
Bytes Render(CDIB& picture, const Window& w, long frameWidth, long frameHeight, bool rotating)
{
    CDIB frame(frameWidth, frameHeight, 32);
    const size_t bytes = static_cast<size_t>(frame.GetRowBytes() * frame.GetHgt());
    std::memset(frame.GetBitsAdd(0), 0xA5, bytes);
    picture.useRotFilter = rotating;
    EXPECT_TRUE(frame.FilterCrop(&picture, w.left, w.top, w.width, w.height, w.angle, w.tiltV,
                                 w.tiltH, 0, w.quality, w.fieldCode));
    picture.useRotFilter = false;
    const unsigned char* at = frame.GetBitsAdd(0);
    return Bytes(at, at + bytes);
}

// Random pictures and frames from one pixel up, with random windows, through one filter.
void CompareFilterLoops(bool rotating, int pictures, int windowsPerPicture)
{
    std::mt19937 random(rotating ? 2024u : 1987u);
    for (int p = 0; p < pictures; ++p) {
        const int bits = random() % 2 == 0 ? 24 : 32;
        const long pictureWidth = p % 7 == 0 ? 1 : static_cast<long>(1 + random() % 90);
        const long pictureHeight = p % 11 == 0 ? 1 : static_cast<long>(1 + random() % 70);
        auto picture = RandomPicture(pictureWidth, pictureHeight, bits, random);
        for (int n = 0; n < windowsPerPicture; ++n) {
            const long frameWidth = n % 5 == 0 ? 1 : static_cast<long>(1 + random() % 41);
            const long frameHeight = n % 7 == 0 ? 1 : static_cast<long>(1 + random() % 23);
            Window w = RandomWindow(pictureWidth, pictureHeight, frameWidth, frameHeight, random);
            Bytes plain = WithLoops(CameraLoops::kPlain, [&] {
                return Render(*picture, w, frameWidth, frameHeight, rotating);
            });
            for (CameraLoops kind : VectorLoops()) {
                Bytes vector = WithLoops(
                    kind, [&] { return Render(*picture, w, frameWidth, frameHeight, rotating); });
                ASSERT_EQ(vector, plain)
                    << NameOf(kind) << " picture " << pictureWidth << "x" << pictureHeight << "x"
                    << bits << " frame " << frameWidth << "x" << frameHeight << " window " << w.left
                    << ", " << w.top << ", " << w.width << " x " << w.height << " angle " << w.angle
                    << " tilts " << w.tiltV << ", " << w.tiltH << " quality " << w.quality
                    << " field code " << w.fieldCode;
            }
        }
    }
}

TEST(CameraFilterLoops, ProcessorRunsTheLoopsItReports)
{
    // The plain loops always; the vector ones only up to what the processor has.
    EXPECT_EQ(WithLoops(CameraLoops::kPlain, [] { return ActiveCameraLoops(); }),
              CameraLoops::kPlain);
    for (CameraLoops kind : VectorLoops())
        EXPECT_EQ(WithLoops(kind, [] { return ActiveCameraLoops(); }), kind);
    EXPECT_LE(WithLoops(CameraLoops::kAvx512, [] { return ActiveCameraLoops(); }),
              BestCameraLoops());
}

TEST(CameraFilterLoops, StraightCropGivesTheSameBytesWithEveryLoopKind)
{
    CompareFilterLoops(false, 60, 50);
}

TEST(CameraFilterLoops, RotatingFilterGivesTheSameBytesWithEveryLoopKind)
{
    CompareFilterLoops(true, 40, 40);
}

TEST(CameraFilterLoops, RowPassGivesTheSameBytesWithEveryLoopKind)
{
    // Every row count from 1 to 258 (the weights' sum passes 65536 at 257), random first and
    // last weights and byte ranges, the rows `stride` apart.
    std::mt19937 random(7);
    constexpr long kWidth = 150;
    constexpr long kStride = kWidth + 13;
    Bytes rows(static_cast<size_t>(kStride * 260));
    for (int count = 1; count <= 258; ++count) {
        for (int n = 0; n < 3; ++n) {
            FillRandom(rows.data(), rows.size(), random);
            Span span{};
            span.count = count;
            span.firstWeight = 1 + static_cast<uint32_t>(random() % (count == 1 ? 511 : 256));
            span.lastWeight = count == 1 ? span.firstWeight : 1 + random() % 256;
            uint64_t total = span.firstWeight + (count > 1 ? span.lastWeight : 0) +
                             kWeightOne * static_cast<uint64_t>(count > 2 ? count - 2 : 0);
            span.wide = total >= 65536;
            span.reciprocal =
                kReciprocalOne / static_cast<uint32_t>(std::max<uint64_t>(total % 65536, 1));
            const long from = static_cast<long>(random() % 40);
            const long to = from + static_cast<long>(random() % (kWidth - from + 1));
            auto blend = [&] {
                Bytes line(kWidth, 0xEE);
                BlendRows(rows.data(), kStride, span, line.data(), from, to);
                return line;
            };
            Bytes plain = WithLoops(CameraLoops::kPlain, blend);
            for (CameraLoops kind : VectorLoops())
                ASSERT_EQ(WithLoops(kind, blend), plain)
                    << NameOf(kind) << " rows " << count << " weights " << span.firstWeight << ", "
                    << span.lastWeight << " bytes " << from << " to " << to;
        }
    }
}

TEST(CameraFilterLoops, ColumnPassGivesTheSameBytesWithEveryLoopKind)
{
    // Random columns of 1 to 4 pixels (or outside, or of no weight) over a random line with its
    // pad, rows of 1 to 40 pixels, both depths.
    std::mt19937 random(11);
    for (int n = 0; n < 3000; ++n) {
        const int pixelBytes = random() % 2 == 0 ? 3 : 4;
        const int width = 1 + static_cast<int>(random() % 40);
        const long linePixels = 1 + static_cast<long>(random() % 60);
        const uint32_t padOffset = static_cast<uint32_t>(linePixels * pixelBytes);
        Bytes line(padOffset + 60);
        FillRandom(line.data(), padOffset, random);
        WriteOutsideRow(line.data() + padOffset, 60 / 4, pixelBytes);
        std::vector<CropColumn> columns(static_cast<size_t>(width));
        for (CropColumn& column : columns) {
            Span span{};
            span.count = static_cast<int>(std::min<long>(random() % 5, linePixels));
            span.outside = random() % 10 == 0;
            span.first = static_cast<int64_t>(random() % (linePixels - span.count + 1));
            span.firstWeight = 1 + static_cast<uint32_t>(random() % (span.count == 1 ? 511 : 256));
            span.lastWeight = span.count == 1 ? span.firstWeight : 1 + random() % 256;
            uint32_t total = span.count == 0
                                 ? 0
                                 : span.firstWeight + (span.count > 1 ? span.lastWeight : 0) +
                                       kWeightOne * (span.count > 2 ? span.count - 2 : 0);
            span.reciprocal = kReciprocalOne / std::max<uint32_t>(total, 1);
            column = MakeCropColumn(span, pixelBytes);
        }
        std::vector<CropTaps> taps(static_cast<size_t>(width));
        const int tapCount = MakeCropTaps(columns.data(), width, padOffset, taps.data());
        ASSERT_GT(tapCount, 0);
        auto blend = [&] {
            Bytes out(static_cast<size_t>(4 * width + 8), 0xEE);
            BlendColumnTaps(line.data(), taps.data(), tapCount, width, pixelBytes, out.data());
            return out;
        };
        Bytes plain = WithLoops(CameraLoops::kPlain, blend);
        for (CameraLoops kind : VectorLoops())
            ASSERT_EQ(WithLoops(kind, blend), plain)
                << NameOf(kind) << " columns " << width << " depth " << 8 * pixelBytes;
    }
}

}  // namespace
