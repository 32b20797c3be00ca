// Megapixels per second of the picture adjustments: each on a 1920 x 1080 32-bit frame (what the
// renderer hands them) and on a 6000 x 4000 24-bit picture (what the picture preparation hands
// them). BlurAlpha and SetAlphaEdge work on 32-bit images only and are measured on the frame.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "image/cdib.h"

namespace {

constexpr long kFrameWidth = 1920;
constexpr long kFrameHeight = 1080;
constexpr long kPictureWidth = 6000;
constexpr long kPictureHeight = 4000;

// A photograph-like picture: smooth gradients with a little noise, every alpha above 0 so that
// BlurAlpha has something to do everywhere, and a few pure black pixels so that VideoColors
// always compresses.
void FillPicture(CDIB& image)
{
    int pixelBytes = image.GetBitCount() / 8;
    uint32_t noise = 12345;
    for (int row = 0; row < image.GetHgt(); ++row) {
        unsigned char* pixel = image.GetBitsAdd(row);
        for (long x = 0; x < image.GetWid(); ++x, pixel += pixelBytes) {
            noise = noise * 1664525u + 1013904223u;
            auto jitter = static_cast<int>(noise >> 28);
            pixel[0] = static_cast<unsigned char>((x * 255 / image.GetWid() + jitter) & 0xFF);
            pixel[1] = static_cast<unsigned char>((row * 255 / image.GetHgt() + jitter) & 0xFF);
            pixel[2] = static_cast<unsigned char>(((x + row) / 8 + jitter) & 0xFF);
            if (pixelBytes == 4)
                pixel[3] = static_cast<unsigned char>(1 + (x + row) % 255);
        }
    }
    image.GetBitsAdd(0)[0] = 0;
}

// Runs `adjust` on a fresh copy of the test image each iteration; only `adjust` is timed.
void Measure(benchmark::State& state, long width, long height, int bits,
             const std::function<void(CDIB&)>& adjust)
{
    CDIB master(width, height, bits);
    FillPicture(master);
    CDIB image(width, height, bits);
    for (auto _ : state) {
        state.PauseTiming();
        image.Create(width, height, bits);  // AddAlpha leaves it 32-bit
        master.Copy(&image, false);
        state.ResumeTiming();
        adjust(image);
        benchmark::DoNotOptimize(image.GetBitsAdd(0));
        benchmark::ClobberMemory();
    }
    state.counters["MP/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * static_cast<double>(width * height) / 1e6,
        benchmark::Counter::kIsRate);
}

void Frame(benchmark::State& state, const std::function<void(CDIB&)>& adjust)
{
    Measure(state, kFrameWidth, kFrameHeight, 32, adjust);
}

void Picture(benchmark::State& state, const std::function<void(CDIB&)>& adjust)
{
    Measure(state, kPictureWidth, kPictureHeight, 24, adjust);
}

// The second image of a dissolve or the matte of AddAlpha.
std::unique_ptr<CDIB> MakeFilled(long width, long height, int bits)
{
    auto image = std::make_unique<CDIB>(width, height, bits);
    FillPicture(*image);
    return image;
}

void BM_VideoColorsFrame(benchmark::State& s)
{
    Frame(s, [](CDIB& i) { i.VideoColors(); });
}
void BM_VideoColorsPicture(benchmark::State& s)
{
    Picture(s, [](CDIB& i) { i.VideoColors(); });
}
void BM_ContrastFrame(benchmark::State& s)
{
    Frame(s, [](CDIB& i) { i.Contrast(70, 40); });
}
void BM_ContrastPicture(benchmark::State& s)
{
    Picture(s, [](CDIB& i) { i.Contrast(70, 40); });
}
void BM_TintFrame(benchmark::State& s)
{
    Frame(s, [](CDIB& i) { i.Tint(0x3070C0); });
}
void BM_TintPicture(benchmark::State& s)
{
    Picture(s, [](CDIB& i) { i.Tint(0x3070C0); });
}
void BM_BlurFrame(benchmark::State& s)
{
    Frame(s, [](CDIB& i) { i.Blur(1); });
}
void BM_BlurPicture(benchmark::State& s)
{
    Picture(s, [](CDIB& i) { i.Blur(1); });
}
void BM_BlurAlphaFrame(benchmark::State& s)
{
    Frame(s, [](CDIB& i) { i.BlurAlpha(); });
}
void BM_SetAlphaEdgeFrame(benchmark::State& s)
{
    Frame(s, [](CDIB& i) { i.SetAlphaEdge(0); });
}

void BM_DissolveFrame(benchmark::State& s)
{
    std::unique_ptr<CDIB> other = MakeFilled(kFrameWidth, kFrameHeight, 32);
    Frame(s, [&other](CDIB& i) { i.Dissolve(other.get(), 0.3f); });
}

void BM_DissolvePicture(benchmark::State& s)
{
    std::unique_ptr<CDIB> other = MakeFilled(kPictureWidth, kPictureHeight, 24);
    Picture(s, [&other](CDIB& i) { i.Dissolve(other.get(), 0.3f); });
}

void BM_AddAlphaFrame(benchmark::State& s)
{
    std::unique_ptr<CDIB> matte = MakeFilled(kFrameWidth, kFrameHeight, 8);
    Frame(s, [&matte](CDIB& i) { i.AddAlpha(matte.get()); });
}

void BM_AddAlphaPicture(benchmark::State& s)
{
    std::unique_ptr<CDIB> matte = MakeFilled(kPictureWidth, kPictureHeight, 8);
    Picture(s, [&matte](CDIB& i) { i.AddAlpha(matte.get()); });
}

#define PX_ADJUST_BENCHMARK(name) BENCHMARK(name)->Unit(benchmark::kMillisecond)->UseRealTime()
PX_ADJUST_BENCHMARK(BM_VideoColorsFrame);
PX_ADJUST_BENCHMARK(BM_VideoColorsPicture);
PX_ADJUST_BENCHMARK(BM_ContrastFrame);
PX_ADJUST_BENCHMARK(BM_ContrastPicture);
PX_ADJUST_BENCHMARK(BM_TintFrame);
PX_ADJUST_BENCHMARK(BM_TintPicture);
PX_ADJUST_BENCHMARK(BM_BlurFrame);
PX_ADJUST_BENCHMARK(BM_BlurPicture);
PX_ADJUST_BENCHMARK(BM_BlurAlphaFrame);
PX_ADJUST_BENCHMARK(BM_DissolveFrame);
PX_ADJUST_BENCHMARK(BM_DissolvePicture);
PX_ADJUST_BENCHMARK(BM_SetAlphaEdgeFrame);
PX_ADJUST_BENCHMARK(BM_AddAlphaFrame);
PX_ADJUST_BENCHMARK(BM_AddAlphaPicture);

}  // namespace

BENCHMARK_MAIN();
