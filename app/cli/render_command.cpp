#include "app/cli/render_command.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

#include "app/start/program_start.h"
#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "output/movie.h"
#include "output/render_driver.h"
#include "platform/base/env.h"
#include "platform/file/paths.h"
#include "platform/task/worker.h"
#include "platform/ini/settings.h"

namespace {

std::atomic<bool> gInterrupted{false};
std::atomic<long> gInterruptAfter{-1};  // tests: frames after which Ctrl+C counts as pressed

extern "C" void OnInterrupt(int)
{
    gInterrupted.store(true);
    std::signal(SIGINT, SIG_DFL);
}

std::string Absolute(const std::string& path)
{
    std::error_code error;
    std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? path : full.lexically_normal().string();
}

std::string Lower(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool EndsWith(const std::string& text, const std::string& tail)
{
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

long FrameOfTimecode(const std::string& text)
{
    long frame = 0;
    StringToFrame(&frame, text.c_str());
    return frame;
}

// "frame n of N, f fps, time to go mm:ss" on stderr: rewritten in place on a terminal, a line
// every few seconds otherwise.
class StderrProgress : public RenderProgress {
public:
    StderrProgress(std::FILE* err, long total)
        : err_(err), total_(std::max(total, 1L)), terminal_(isatty(fileno(err)) != 0),
          started_(Clock::now()), lastShown_(started_)
    {
    }

    void Progress(double, const char*) override {}
    void ShowFrame(long) override {}
    bool CancelRequested() override { return InterruptRequested(); }

    void FrameWritten() override
    {
        ++written_;
        long after = gInterruptAfter.load();
        if (after >= 0 && written_ >= after)
            gInterrupted.store(true);
        Clock::time_point now = Clock::now();
        auto every = terminal_ ? std::chrono::milliseconds(200) : std::chrono::milliseconds(5000);
        if (now - lastShown_ >= every || written_ == total_) {
            lastShown_ = now;
            Show(now);
        }
    }

    void Finish()
    {
        if (terminal_ && written_ > 0)
            std::fputc('\n', err_);
    }

    long Written() const { return written_; }

private:
    using Clock = std::chrono::steady_clock;

    void Show(Clock::time_point now)
    {
        double seconds = std::chrono::duration<double>(now - started_).count();
        double rate = seconds > 0.0 ? written_ / seconds : 0.0;
        long left = rate > 0.0 ? static_cast<long>((total_ - written_) / rate + 0.5) : 0;
        std::fprintf(err_, "%sframe %ld of %ld, %.1f fps, Time to go: %02ld:%02ld%s", terminal_ ? "\r" : "",
                     written_, total_, rate, left / 60, left % 60, terminal_ ? "  " : "\n");
        std::fflush(err_);
    }

    std::FILE* err_;
    long total_;
    bool terminal_;
    Clock::time_point started_;
    Clock::time_point lastShown_;
    long written_ = 0;
};

// The program's state for one command: settings, the worker, the one document.
class Session {
public:
    Session() : doc(StartProgram(ProgramFront::kCommandLine)) {}
    ~Session() { StopProgram(ProgramFront::kCommandLine); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    CDoc* doc;
};

// Opens the show, its pictures found beside it when they are not where the show says.
bool OpenShow(CDoc& doc, const std::string& path, std::FILE* err)
{
    std::string full = Absolute(path);
    if (!std::filesystem::is_regular_file(full)) {
        std::fprintf(err, "parallaxotron: cannot open show file %s: no such file\n", full.c_str());
        return false;
    }
    if (doc.altImageFolder[0] == '\0') {
        std::string folder = std::filesystem::path(full).parent_path().string();
        std::strncpy(doc.altImageFolder, folder.c_str(), sizeof doc.altImageFolder - 1);
    }
    doc.showPicError = false;
    FSpec spec = PathFSpec(full.c_str());
    switch (doc.OpenShowFile(&spec, false)) {
    case ShowFileResult::kCantOpen:
        std::fprintf(err, "parallaxotron: cannot read show file %s\n", full.c_str());
        return false;
    case ShowFileResult::kNotAShow:
        std::fprintf(err, "parallaxotron: %s is not a show file\n", full.c_str());
        return false;
    case ShowFileResult::kOpened:
        break;
    }
    if (doc.pictureFailures > 0) {
        std::fprintf(err, "parallaxotron: cannot read picture %.*s of the show\n", kFSpecNameSize,
                     doc.failedPicture.name);
        return false;
    }
    if (doc.picCount == 0) {
        std::fprintf(err, "parallaxotron: %s has no pictures\n", full.c_str());
        return false;
    }
    return true;
}

int RenderStill(CDoc& doc, const CommandLine& line, std::FILE* err)
{
    std::string output = Absolute(line.output);
    std::string kind = Lower(output);
    if (!EndsWith(kind, ".tga") && !EndsWith(kind, ".bmp")) {
        std::fprintf(err, "parallaxotron: a still picture is written as .tga or .bmp, not %s\n", output.c_str());
        return kExitUsage;
    }
    MovieOptions options = LoadMovieOptions(doc);
    int width = line.width.value_or(options.width);
    int height = line.height.value_or(options.height);
    long frame = FrameOfTimecode(line.stillFrame);
    CDIB picture(width, height, 32);
    if (picture.GetBitCount() != 32 || !doc.RenderFrame(frame, 0, false, width, height, &picture, false)) {
        std::fprintf(err, "parallaxotron: cannot render frame %ld at %dx%d\n", frame, width, height);
        return kExitFailed;
    }
    FSpec spec = PathFSpec(output.c_str());
    if (!picture.Save(&spec, EndsWith(kind, ".tga") ? 1 : 0)) {
        std::fprintf(err, "parallaxotron: cannot write %s\n", output.c_str());
        return kExitFailed;
    }
    std::fprintf(err, "Wrote frame %ld to %s\n", frame, output.c_str());
    return kExitMade;
}

int RenderMovie(CDoc& doc, const CommandLine& line, std::FILE* err)
{
    MovieOptions options = LoadMovieOptions(doc);
    options.width = line.width.value_or(options.width);
    options.height = line.height.value_or(options.height);
    options.framesPerSecond = line.framesPerSecond.value_or(options.framesPerSecond);
    options.quality = line.quality.value_or(options.quality);
    options.fields = line.fields;
    options.reverse = line.reverse;
    if (line.start)
        options.start = FrameOfTimecode(*line.start);
    if (line.end)
        options.end = FrameOfTimecode(*line.end);
    options = NormaliseMovieOptions(options);

    char remembered[8] = {};
    GetIniString("CodecType", "", remembered, 4);
    std::string codec = line.codec.value_or(remembered[0] != '\0' ? remembered : kDefaultCodec);
    if (!IsCodecAvailable(codec.c_str())) {
        std::fprintf(err, "parallaxotron: unknown codec '%s'; this build writes: %s\n", codec.c_str(),
                     AvailableCodecList().c_str());
        return kExitUsage;
    }
    UseCodec(codec.c_str());
    // The job asks for the codec only for QuickTime names; every kind of movie should get the
    // rate and quality of this command.
    if (!QTSelectCodec(nullptr, options.framesPerSecond, options.quality, false)) {
        std::fprintf(err, "parallaxotron: the codec %s could not be set up\n", codec.c_str());
        return kExitFailed;
    }

    std::string output = Absolute(line.output);
    MovieJob job;
    job.options = options;
    job.movie = PathFSpec(output.c_str());
    job.storeSettings = false;
    StderrProgress progress(err, MovieFrameCount(options));
    MovieJobResult result = MakeMovieFiles(doc, job, progress);
    progress.Finish();
    switch (result) {
    case MovieJobResult::kMade:
        break;
    case MovieJobResult::kCodecCancelled:
        std::fprintf(err, "parallaxotron: the codec %s could not be set up\n", codec.c_str());
        return kExitFailed;
    case MovieJobResult::kNoMemory:
        std::fprintf(err, "parallaxotron: no memory for %dx%d frames\n", options.width, options.height);
        return kExitFailed;
    case MovieJobResult::kOpenFailed:
        std::fprintf(err, "parallaxotron: cannot write movie %s: %s\n", output.c_str(), MovieLastError());
        return kExitFailed;
    case MovieJobResult::kWriteFailed:
        std::fprintf(err, "parallaxotron: writing movie %s failed: %s\n", output.c_str(), MovieLastError());
        return kExitFailed;
    }
    if (InterruptRequested()) {
        std::fprintf(err, "Stopped: %s holds the %ld frames made so far\n", output.c_str(), progress.Written());
        return kExitStopped;
    }
    std::fprintf(err, "Wrote %ld frames to %s\n", progress.Written(), output.c_str());
    return kExitMade;
}

}  // namespace

void WatchForInterrupt()
{
    std::signal(SIGINT, OnInterrupt);
}

bool InterruptRequested()
{
    return gInterrupted.load();
}

void SetInterruptRequested(bool requested)
{
    gInterrupted.store(requested);
    gInterruptAfter.store(-1);
}

void InterruptAfterFrames(long frames)
{
    gInterruptAfter.store(frames);
}

int RunRenderCommand(const CommandLine& line, std::FILE* err)
{
    Session session;
    if (!OpenShow(*session.doc, line.show, err))
        return kExitFailed;
    if (line.kind == CommandKind::kStill)
        return RenderStill(*session.doc, line, err);
    return RenderMovie(*session.doc, line, err);
}
