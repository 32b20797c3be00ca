// Frames per second of the camera filters at full quality: a 1920 x 1080 frame out of a
// 3840 x 2160 window of a 6000 x 4000 24-bit picture, the window at a fractional position as a
// moving camera leaves it. The straight crop and the rotating filter (10°), each on the calling
// thread alone and split over the calling thread and the worker task; and the one-thread runs
// with the narrower loops other processors take (SSE4.1 only, AVX2 without AVX-512, and the plain
// loops).
//
// Counters: frames/s, and MP/s = source megapixels of the window resampled per second.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>

#include "image/camera_filter.h"
#include "image/cdib.h"
#include "platform/task/worker.h"

namespace {

constexpr long kFrameWidth = 1920;
constexpr long kFrameHeight = 1080;
constexpr long kPictureWidth = 6000;
constexpr long kPictureHeight = 4000;
constexpr float kWindowLeft = 1000.37f;
constexpr float kWindowTop = 900.61f;
constexpr float kWindowWidth = 3840.0f;
constexpr float kWindowHeight = 2160.0f;
constexpr int kQuality = 100;

// A photograph-like picture: smooth gradients with a little noise.
std::unique_ptr<CDIB> MakePicture()
{
    auto picture = std::make_unique<CDIB>(kPictureWidth, kPictureHeight, 24);
    uint32_t noise = 12345;
    for (int row = 0; row < kPictureHeight; ++row) {
        unsigned char* pixel = picture->GetBitsAdd(row);
        for (long x = 0; x < kPictureWidth; ++x, pixel += 3) {
            noise = noise * 1664525u + 1013904223u;
            auto jitter = static_cast<int>(noise >> 28);
            pixel[0] = static_cast<unsigned char>((x * 255 / kPictureWidth + jitter) & 0xFF);
            pixel[1] = static_cast<unsigned char>((row * 255 / kPictureHeight + jitter) & 0xFF);
            pixel[2] = static_cast<unsigned char>(((x + row) / 8 + jitter) & 0xFF);
        }
    }
    return picture;
}

CDIB& Picture()
{
    static std::unique_ptr<CDIB> picture = MakePicture();
    return *picture;
}

// Renders frames with FilterCropMulti; `angle` != 0 takes the rotating path, `split` hands the
// first half of every frame to the worker task.
void RenderFrames(benchmark::State& state, float angle, bool split,
                  CameraLoops loops = CameraLoops::kAvx512)
{
    gCameraFilterLoops = loops;
    CDIB& picture = Picture();
    picture.useRotFilter = angle != 0.0f;
    CDIB frame(kFrameWidth, kFrameHeight, 32);
    if (split && !InitMPWithProcessors(2)) {
        state.SkipWithError("no worker task");
        return;
    }
    gMultiProcess = split;
    for (auto _ : state) {
        bool done = frame.FilterCropMulti(&picture, kWindowLeft, kWindowTop, kWindowWidth,
                                          kWindowHeight, angle, 0.0f, 0.0f, kQuality, 0);
        benchmark::DoNotOptimize(done);
        benchmark::DoNotOptimize(frame.GetBitsAdd(0));
        benchmark::ClobberMemory();
    }
    gMultiProcess = false;
    gCameraFilterLoops = CameraLoops::kAvx512;
    CloseMP();
    picture.useRotFilter = false;
    auto frames = static_cast<double>(state.iterations());
    state.counters["frames/s"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
    state.counters["MP/s"] = benchmark::Counter(
        frames * static_cast<double>(kWindowWidth) * static_cast<double>(kWindowHeight) / 1e6,
        benchmark::Counter::kIsRate);
}

void BM_FilterCrop(benchmark::State& s) { RenderFrames(s, 0.0f, false); }
void BM_FilterCropSplit(benchmark::State& s) { RenderFrames(s, 0.0f, true); }
void BM_FilterRot(benchmark::State& s) { RenderFrames(s, 10.0f, false); }
void BM_FilterRotSplit(benchmark::State& s) { RenderFrames(s, 10.0f, true); }
void BM_FilterCropAvx2Loops(benchmark::State& s)
{
    RenderFrames(s, 0.0f, false, CameraLoops::kAvx2);
}
void BM_FilterCropSse41Loops(benchmark::State& s)
{
    RenderFrames(s, 0.0f, false, CameraLoops::kSse41);
}
void BM_FilterCropPlainLoops(benchmark::State& s)
{
    RenderFrames(s, 0.0f, false, CameraLoops::kPlain);
}
void BM_FilterRotAvx2Loops(benchmark::State& s)
{
    RenderFrames(s, 10.0f, false, CameraLoops::kAvx2);
}
void BM_FilterRotPlainLoops(benchmark::State& s)
{
    RenderFrames(s, 10.0f, false, CameraLoops::kPlain);
}

#define PX_CAMERA_BENCHMARK(name) BENCHMARK(name)->Unit(benchmark::kMillisecond)->UseRealTime()
PX_CAMERA_BENCHMARK(BM_FilterCrop);
PX_CAMERA_BENCHMARK(BM_FilterCropSplit);
PX_CAMERA_BENCHMARK(BM_FilterRot);
PX_CAMERA_BENCHMARK(BM_FilterRotSplit);
PX_CAMERA_BENCHMARK(BM_FilterCropAvx2Loops);
PX_CAMERA_BENCHMARK(BM_FilterCropSse41Loops);
PX_CAMERA_BENCHMARK(BM_FilterCropPlainLoops);
PX_CAMERA_BENCHMARK(BM_FilterRotAvx2Loops);
PX_CAMERA_BENCHMARK(BM_FilterRotPlainLoops);

}  // namespace

BENCHMARK_MAIN();
