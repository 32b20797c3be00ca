// Time and memory to load a 6000 x 4000 picture: a 24-bit BMP (the program's own reader, rows
// read straight into the image) and a JPEG (the platform importer, decoded by Qt and copied into
// a 32-bit image). Both files are written here, into a temporary folder, before the first run.
//
// Besides the time per load, each benchmark reports peak_MB: how far one load raises the
// process's peak resident memory above where it started, measured in a child process made for
// that load alone, so that neither the other benchmark nor the files' own making counts.

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QImage>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "image/cdib.h"
#include "platform/file/cpfile.h"
#include "platform/file/fspec.h"

namespace {

constexpr long kWidth = 6000;
constexpr long kHeight = 4000;

FSpec PathSpec(const std::string& path)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::snprintf(spec.name, sizeof spec.name, "%s", path.c_str());
    return spec;
}

// A picture with smooth gradients and fine detail, so the JPEG is of a photograph's size.
void Paint(CDIB& image)
{
    for (long row = 0; row < kHeight; ++row) {
        unsigned char* line = image.GetBitsAdd(static_cast<int>(row));
        for (long x = 0; x < kWidth; ++x) {
            line[x * 3 + 0] = static_cast<unsigned char>((x * 255) / kWidth);
            line[x * 3 + 1] = static_cast<unsigned char>((row * 255) / kHeight);
            line[x * 3 + 2] = static_cast<unsigned char>(((x ^ row) * 7) & 255);
        }
    }
}

struct Files {
    std::string folder;
    std::string bmp;
    std::string jpeg;

    Files()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "px-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        folder = pattern;
        bmp = folder + "/large.bmp";
        jpeg = folder + "/large.jpg";

        CDIB image(kWidth, kHeight, 24);
        Paint(image);
        FSpec spec = PathSpec(bmp);
        if (!image.Save(&spec, 0))
            std::abort();
        // The same pixels for Qt: its RGB888 rows are red first, ours blue first.
        QImage picture(kWidth, kHeight, QImage::Format_RGB888);
        for (long row = 0; row < kHeight; ++row) {
            const unsigned char* from = image.GetBitsAdd(static_cast<int>(kHeight - 1 - row));
            unsigned char* to = picture.scanLine(static_cast<int>(row));
            for (long x = 0; x < kWidth; ++x) {
                to[x * 3 + 0] = from[x * 3 + 2];
                to[x * 3 + 1] = from[x * 3 + 1];
                to[x * 3 + 2] = from[x * 3 + 0];
            }
        }
        if (!picture.save(QString::fromStdString(jpeg), "JPEG", 90))
            std::abort();
    }
    ~Files()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

const Files& TheFiles()
{
    static Files files;
    return files;
}

// Loads the file through the format-recognising loader; the result code.
int LoadOnce(const std::string& path, CDIB& image)
{
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    return image.Load(&file);
}

long ResidentBytes()
{
    long pages = 0;
    long resident = 0;
    FILE* statm = std::fopen("/proc/self/statm", "r");
    if (statm == nullptr)
        return 0;
    if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
        resident = 0;
    std::fclose(statm);
    return resident * sysconf(_SC_PAGESIZE);
}

// One load in a child process: its peak resident memory above its resident memory at the start,
// in megabytes; -1 when the child failed.
double PeakMegabytesOfOneLoad(const std::string& path)
{
    int channel[2];
    if (pipe(channel) != 0)
        return -1;
    pid_t child = fork();
    if (child == 0) {
        close(channel[0]);
        long before = ResidentBytes();
        double megabytes = -1;
        {
            CDIB image(1, 1, 24);
            if (LoadOnce(path, image) == 0) {
                rusage usage{};
                getrusage(RUSAGE_SELF, &usage);
                megabytes = (usage.ru_maxrss * 1024.0 - before) / (1024.0 * 1024.0);
            }
        }
        ssize_t written = write(channel[1], &megabytes, sizeof megabytes);
        _exit(written == sizeof megabytes ? 0 : 1);
    }
    close(channel[1]);
    double megabytes = -1;
    if (child < 0 || read(channel[0], &megabytes, sizeof megabytes) != sizeof megabytes)
        megabytes = -1;
    close(channel[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
    return megabytes;
}

void RunLoad(benchmark::State& state, const std::string& path, int wantBits)
{
    for (auto _ : state) {
        CDIB image(1, 1, 24);
        int code = LoadOnce(path, image);
        if (code != 0 || image.GetBitCount() != wantBits || image.GetWid() != kWidth) {
            state.SkipWithError("the picture did not load");
            return;
        }
        benchmark::DoNotOptimize(image.bits);
    }
    state.counters["peak_MB"] = PeakMegabytesOfOneLoad(path);
    state.counters["file_MB"] =
        static_cast<double>(std::filesystem::file_size(path)) / (1024.0 * 1024.0);
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}

void BM_LoadBmp24(benchmark::State& state) { RunLoad(state, TheFiles().bmp, 24); }

void BM_LoadJpeg(benchmark::State& state) { RunLoad(state, TheFiles().jpeg, 32); }

BENCHMARK(BM_LoadBmp24)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadJpeg)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
