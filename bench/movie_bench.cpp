// The demo show into a movie: frames per second at 720 x 480 and 1920 x 1080, to H.264 and to
// PNG, with the time split between rendering the frames and encoding them.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "output/movie.h"
#include "platform/base/env.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"

namespace {

constexpr long kFrames = 60;  // two seconds of the demo's opening pan, per iteration

using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

std::unique_ptr<CDoc> OpenDemo()
{
    SetEnvName("Parallaxotron");
    std::string settings = "[Parallaxotron]\r\n";
    LoadIniText(settings.data(), settings.size());
    auto doc = std::make_unique<CDoc>();
    pDoc = doc.get();
    std::strncpy(doc->altImageFolder, PX_DEMO_FOLDER, sizeof doc->altImageFolder - 1);
    FSpec show = PathFSpec(PX_DEMO_FOLDER "/demo.plx");
    if (doc->OpenShowFile(&show, false) != ShowFileResult::kOpened)
        return nullptr;
    return doc;
}

void MakeDemoMovie(benchmark::State& state, int width, int height, const char* codec)
{
    std::unique_ptr<CDoc> doc = OpenDemo();
    if (!doc) {
        state.SkipWithError("the demo show did not open");
        return;
    }
    UseCodec(codec);
    if (!QTSelectCodec(nullptr, 29.97f, 100, false)) {
        state.SkipWithError("codec not available");
        return;
    }
    std::string path = "/tmp/parallaxotron-bench-" + std::to_string(width) + ".mov";
    FSpec movie = PathFSpec(path.c_str());
    CDIB frame(width, height, 32);
    double rendering = 0.0;
    double encoding = 0.0;
    for (auto _ : state) {
        if (!QTMovieWriteOpen(false, &movie, &frame, 29.97f, 100, kFrames)) {
            QTMovieWriteClose();
            state.SkipWithError("movie not opened");
            break;
        }
        for (long f = 0; f < kFrames; ++f) {
            Clock::time_point start = Clock::now();
            doc->RenderFrame(f, 0, false, width, height, &frame, true);
            Clock::time_point rendered = Clock::now();
            QTMovieWriteFrame(-1, &frame);
            Clock::time_point encoded = Clock::now();
            rendering += Seconds(start, rendered);
            encoding += Seconds(rendered, encoded);
        }
        Clock::time_point closing = Clock::now();
        QTMovieWriteClose();
        encoding += Seconds(closing, Clock::now());
    }
    std::remove(path.c_str());
    double frames = static_cast<double>(state.iterations() * kFrames);
    state.counters["frames/s"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
    state.counters["render ms"] = rendering / frames * 1000.0;
    state.counters["encode ms"] = encoding / frames * 1000.0;
    state.counters["render/encode"] = encoding > 0.0 ? rendering / encoding : 0.0;
}

void Sd(benchmark::State& state, const char* codec) { MakeDemoMovie(state, 720, 480, codec); }

void Hd(benchmark::State& state, const char* codec) { MakeDemoMovie(state, 1920, 1080, codec); }

BENCHMARK_CAPTURE(Sd, avc1, "avc1")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Sd, png, "png ")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Hd, avc1, "avc1")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Hd, png, "png ")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
