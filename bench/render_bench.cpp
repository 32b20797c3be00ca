// Frames per second of CDoc::RenderFrame: a 1920 x 1080 frame from a 6000 x 4000 picture with a
// slow pan and zoom, plain, with motion blur, and with both fields of an interlaced frame; and a
// dissolve frame between two 3000 x 2000 pictures read from files (outgoing and incoming
// rendered and mixed, as the movie driver does), beside a plain frame of the same show.

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <filesystem>
#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/base/env.h"
#include "platform/file/paths.h"
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
    state.counters["frames/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// Two 3000 x 2000 24-bit gradients as BMP files in a folder of their own, removed at exit.
class DissolvePictures {
public:
    DissolvePictures()
        : folder_(std::filesystem::temp_directory_path() /
                  ("parallaxotron-render-bench-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(folder_);
        for (int pic = 0; pic < 2; ++pic) {
            CDIB picture(3000, 2000, 24);
            for (int row = 0; row < 2000; ++row) {
                unsigned char* pixel = picture.GetBitsAdd(row);
                for (int x = 0; x < 3000; ++x, pixel += 3) {
                    pixel[0] = static_cast<unsigned char>(x / 12 + pic * 80);
                    pixel[1] = static_cast<unsigned char>(row / 8);
                    pixel[2] = static_cast<unsigned char>((x + row) / 20);
                }
            }
            FSpec spec = Spec(pic);
            picture.Save(&spec, 0);
        }
    }
    ~DissolvePictures()
    {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }
    DissolvePictures(const DissolvePictures&) = delete;
    DissolvePictures& operator=(const DissolvePictures&) = delete;

    FSpec Spec(int pic) const
    {
        return PathFSpec((folder_ / ("picture" + std::to_string(pic) + ".bmp")).c_str());
    }

private:
    std::filesystem::path folder_;
};

// Picture 0 from frame 0, picture 1 from frame 100 with a 50-frame dissolve into it.
std::unique_ptr<CDoc> MakeDissolveShow()
{
    static DissolvePictures pictures;
    SetEnvName("Parallaxotron");
    std::string settings = "[Parallaxotron]\r\nAspectMode=5625\r\n";
    LoadIniText(settings.data(), settings.size());
    auto doc = std::make_unique<CDoc>();
    for (int pic = 0; pic < 2; ++pic) {
        FSpec spec = pictures.Spec(pic);
        doc->LoadPicture(&spec, pic, pic * 100);
        doc->keys[pic][0].XPos = 1400.0f;
        doc->keys[pic][0].YPos = 1000.0f;
        doc->keys[pic][0].Width = 2800.0f;
        KeyStruct last = doc->keys[pic][0];
        last.XPos = 1600.0f;
        last.Width = 2600.0f;
        last.PicStart = 0.0f;
        last.Frame = 200;
        doc->SetKey(1, last, pic);
    }
    doc->keys[1][0].TransLen = 50.0f;
    return doc;
}

// A frame of the dissolve: the outgoing picture, the incoming one, mixed as the movie driver
// mixes them; or, for comparison, a plain frame of picture 0 before the dissolve.
void RenderDissolve(benchmark::State& state, bool dissolve)
{
    std::unique_ptr<CDoc> doc = MakeDissolveShow();
    CDIB out(kFrameWidth, kFrameHeight, 32);
    CDIB incoming(kFrameWidth, kFrameHeight, 32);
    long step = 0;
    for (auto _ : state) {
        long frame = dissolve ? 100 + step % 50 : step % 100;
        bool rendered =
            doc->RenderFrame(frame, 0, false, kFrameWidth, kFrameHeight, &out, dissolve);
        if (dissolve) {
            rendered = rendered && doc->RenderFrame(frame, 0, false, kFrameWidth, kFrameHeight,
                                                    &incoming, false);
            out.Dissolve(&incoming, 1.0f - static_cast<float>(frame - 100) / 50.0f);
        }
        if (!rendered)
            state.SkipWithError("frame not rendered");
        ++step;
        benchmark::DoNotOptimize(out.GetBitsAdd(0));
    }
    state.counters["frames/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_RenderFrame(benchmark::State& state) { RenderFrames(state, 0, 0, false); }
void BM_RenderFrameMotionBlur(benchmark::State& state) { RenderFrames(state, 0, 1, false); }
void BM_RenderFrameBothFields(benchmark::State& state) { RenderFrames(state, 3, 0, false); }
void BM_RenderFrameBothFieldsMotionBlur(benchmark::State& state)
{
    RenderFrames(state, 3, 1, false);
}
void BM_RenderFrameRotated(benchmark::State& state) { RenderFrames(state, 0, 0, true); }

void BM_RenderPlainFrameOfTheDissolveShow(benchmark::State& state) { RenderDissolve(state, false); }
void BM_RenderDissolveFrame(benchmark::State& state) { RenderDissolve(state, true); }

BENCHMARK(BM_RenderFrame)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameMotionBlur)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameBothFields)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameBothFieldsMotionBlur)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderFrameRotated)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderPlainFrameOfTheDissolveShow)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RenderDissolveFrame)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
