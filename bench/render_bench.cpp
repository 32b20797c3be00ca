// Frames per second of CDoc::RenderFrame: a 1920 x 1080 frame from a 6000 x 4000 picture with a
// slow pan and zoom, plain, with motion blur, and with both fields of an interlaced frame.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"

namespace {

constexpr int kFrameWidth = 1920;
constexpr int kFrameHeight = 1080;

// A document whose picture 0 is already in memory: a 6000 x 4000 24-bit gradient.
std::unique_ptr<CDoc> MakeShow(bool rotate)
{
    SetEnvName("Parallaxotron");
    std::string settings = "[Parallaxotron]\r\nAspectMode=5625\r\n";
    LoadIniText(settings.data(), settings.size());
    auto doc = std::make_unique<CDoc>();
    doc->image.Create(6000, 4000, 24);
    for (int row = 0; row < 4000; ++row) {
        unsigned char* pixel = doc->image.GetBitsAdd(row);
        for (int x = 0; x < 6000; ++x, pixel += 3) {
            pixel[0] = static_cast<unsigned char>(x / 24);
            pixel[1] = static_cast<unsigned char>(row / 16);
            pixel[2] = static_cast<unsigned char>((x + row) / 40);
        }
    }
    doc->picCount = 1;
    doc->curPic = 0;
    doc->keys[0][0].XPos = 2500.0f;
    doc->keys[0][0].YPos = 2000.0f;
    doc->keys[0][0].Width = 3840.0f;
    KeyStruct last = doc->keys[0][0];
    last.XPos = 3500.0f;
    last.Width = 3600.0f;
    last.Rotation = rotate ? 10.0f : 0.0f;
    last.Frame = 3000;
    doc->SetKey(1, last, 0);
    doc->image.useRotFilter = rotate;
    return doc;
}

void RenderFrames(benchmark::State& state, int fieldMode, long blurFrames, bool rotate)
{
    std::unique_ptr<CDoc> doc = MakeShow(rotate);
    doc->blurFrames = blurFrames;
    CDIB out(kFrameWidth, kFrameHeight, 32);
    long frame = 1;
    for (auto _ : state) {
        if (!doc->RenderFrame(frame, fieldMode, false, kFrameWidth, kFrameHeight, &out, false))
            state.SkipWithError("frame not rendered");
        frame = frame % 2999 + 1;
        benchmark::DoNotOptimize(out.GetBitsAdd(0));
    }
    state.counters["frames/s"] = benchmark::Counter(static_cast<double>(state.iterations()),
                                                    benchmark::Counter::kIsRate);
}

void BM_RenderFrame(benchmark::State& state) { RenderFrames(state, 0, 0, false); }
void BM_RenderFrameMotionBlur(benchmark::State& state) { RenderFrames(state, 0, 1, false); }
void BM_RenderFrameBothFields(benchmark::State& state) { RenderFrames(state, 3, 0, false); }
void BM_RenderFrameBothFieldsMotionBlur(benchmark::State& state) { RenderFrames(state, 3, 1, false); }
void BM_RenderFrameRotated(benchmark::State& state) { RenderFrames(state, 0, 0, true); }

BENCHMARK(BM_RenderFrame)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameMotionBlur)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameBothFields)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameBothFieldsMotionBlur)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameRotated)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
