// The command line's render: checks of the names asked for, the program's state for the run,
// each show opened with its pictures, the options from the built-in defaults (or --settings)
// and the arguments, then the movie through the render driver or one still.

#include "app/cli/render_command.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/cli/message_text.h"
#include "app/cli/progress_report.h"
#include "app/cli/stop_signals.h"
#include "app/start/program_start.h"
#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "output/movie.h"
#include "output/render_driver.h"
#include "platform/base/env.h"
#include "platform/base/replace_file.h"
#include "platform/dialog/message_box.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"

namespace {

// The "AspectMode" of letterboxed 16:9: one more than 16:9's 5625, on purpose.
constexpr int kLetterboxAspectMode = 5626;

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
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Every message is one line: "parallaxotron: " and the text, names escaped where not UTF-8.
void Say(std::FILE* err, const std::string& text)
{
    std::fprintf(err, "parallaxotron: %s\n", text.c_str());
}

std::string Shown(const std::string& path) { return PrintableText(path); }

// The program's file names hold kMaxPathLength characters: a longer one is refused, never cut.
bool PathFits(const std::string& path, const char* what, std::FILE* err)
{
    if (path.size() <= static_cast<size_t>(kMaxPathLength))
        return true;
    Say(err, std::string(what) + " " + Shown(path) + " is " + std::to_string(path.size()) +
                 " characters long; file names here hold at most " +
                 std::to_string(kMaxPathLength));
    return false;
}

bool SameFile(const std::string& a, const std::string& b)
{
    if (a == b)
        return true;
    std::error_code error;
    return std::filesystem::equivalent(a, b, error) && !error;
}

// Reads a settings file given with --settings, read-only; anything but a plain file is refused.
bool ReadSettingsFile(const std::string& path, std::string* text, std::FILE* err)
{
    int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat info;
    if (descriptor < 0 || fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        if (descriptor >= 0)
            close(descriptor);
        Say(err,
            "cannot read settings file " + Shown(path) +
                (descriptor < 0 ? std::string(": ") + std::strerror(errno) : ": not a plain file"));
        return false;
    }
    char bytes[kIniSize] = {};
    size_t count = 0;
    while (count < sizeof bytes) {
        ssize_t got = read(descriptor, bytes + count, sizeof bytes - count);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        count += static_cast<size_t>(got);
    }
    close(descriptor);
    text->assign(bytes, count);
    return true;
}

// The program's state for one command: the settings in memory (never saved), the worker, the
// one document.
class Session {
public:
    // Starts from the settings text the user named (empty: every setting at its built-in
    // default); the document made there reads its own settings from it.
    explicit Session(const std::string& settingsText)
        : doc(StartProgram(ProgramFront::kCommandLine, nullptr, settingsText))
    {
    }
    ~Session() { StopProgram(ProgramFront::kCommandLine); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    CDoc* doc;
};

// The picture loader's own words for why `picture` cannot be read, as it would show them.
std::string PictureLoaderMessage(CDoc& doc, FSpec picture)
{
    FSpec folder = PathFSpec(doc.altImageFolder);
    CDIB probe(1, 1, 24);
    // Answered here, so the loader's box is recorded instead of printed on its own line.
    PushMessageBoxAnswer(kBoxYes);
    probe.Load(&picture, &folder, true);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ClearMessageBoxScript();
    for (auto box = boxes.rbegin(); box != boxes.rend(); ++box)
        if (box->kind == MessageBoxKind::kError)
            return box->shownText;
    return "Can't open graphics file";
}

// Opens the show, its pictures found beside it when they are not where the show says.
bool OpenShow(CDoc& doc, const std::string& full, std::FILE* err)
{
    struct stat info;
    if (stat(full.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        Say(err, "cannot open show file " + Shown(full) + ": " +
                     (stat(full.c_str(), &info) != 0 ? std::strerror(errno) : "not a plain file"));
        return false;
    }
    std::string folder = std::filesystem::path(full).parent_path().string();
    std::memset(doc.altImageFolder, 0, sizeof doc.altImageFolder);
    std::strncpy(doc.altImageFolder, folder.c_str(), sizeof doc.altImageFolder - 1);
    doc.showPicError = false;
    FSpec spec = PathFSpec(full.c_str());
    switch (doc.OpenShowFile(&spec, false)) {
    case ShowFileResult::kCantOpen:
        Say(err, "cannot read show file " + Shown(full));
        return false;
    case ShowFileResult::kNotAShow:
        Say(err, Shown(full) + " is not a show file");
        return false;
    case ShowFileResult::kOpened:
        break;
    }
    if (doc.pictureFailures > 0) {
        std::string picture(doc.failedPicture.name,
                            strnlen(doc.failedPicture.name, kFSpecNameSize));
        Say(err, "picture " + Shown(picture) + " of " + Shown(full) + ": " +
                     Shown(PictureLoaderMessage(doc, doc.failedPicture)));
        return false;
    }
    if (doc.picCount == 0) {
        Say(err, Shown(full) + " has no pictures");
        return false;
    }
    return true;
}

// A frame as typed, in frames of the show (timecode at the show's rate).
bool FrameOf(const FrameText& text, const char* option, long* frame, std::FILE* err)
{
    if (!text.timecode) {
        *frame = text.frame;
        return true;
    }
    long perSecond = (gFrameRate + 50) / 100;
    if (text.fields[3] >= perSecond) {
        Say(err, std::string(option) + " " + text.text + ": the frames of a timecode run 00 to " +
                     std::to_string(perSecond - 1) + " at this show's rate");
        return false;
    }
    *frame = 0;
    StringToFrame(frame, text.text.c_str());
    return true;
}

std::string FrameAndTimecode(long frame)
{
    char timecode[kTimecodeSize];
    FrameToString(timecode, frame, false);
    return "frame " + std::to_string(frame) + " (" + timecode + ")";
}

// The options of the run: the built-in defaults, or the settings file's; then the arguments.
// False, with the message said, when a frame or the range does not fit the show.
bool ChooseOptions(CDoc& doc, const CommandLine& line, const std::string& show,
                   MovieOptions* chosen, std::FILE* err)
{
    MovieOptions options;
    if (line.settings) {
        options = LoadMovieOptions(doc);
    } else {
        options.width = kDefaultWidth;
        options.height = kDefaultHeight;
        options.framesPerSecond = kDefaultFramesPerSecond;
        options.quality = kDefaultQuality;
        options.holds = 0;
        options.fields = false;
        options.reverse = false;
        options.start = 0;
    }
    long showEnd = ShowEnd(doc);
    options.end = showEnd;
    options.width = line.width.value_or(options.width);
    options.height = line.height.value_or(options.height);
    options.framesPerSecond = line.framesPerSecond.value_or(options.framesPerSecond);
    options.quality = line.quality.value_or(options.quality);
    options.fields = line.fields || (line.settings && options.fields);
    options.reverse = line.reverse || (line.settings && options.reverse);
    if ((line.start && !FrameOf(*line.start, "--start", &options.start, err)) ||
        (line.end && !FrameOf(*line.end, "--end", &options.end, err)) ||
        (line.hold && !FrameOf(*line.hold, "--hold", &options.holds, err)))
        return false;
    std::string runs = Shown(show) + " runs from frame 0 to " + FrameAndTimecode(showEnd);
    if (options.start >= showEnd) {
        Say(err, "--start " + (line.start ? line.start->text : std::string("0")) +
                     " is outside the show: " + runs);
        return false;
    }
    if (options.end > showEnd) {
        Say(err, "--end " + line.end->text + " is outside the show: " + runs);
        return false;
    }
    if (options.end <= options.start) {
        Say(err, "--start " + (line.start ? line.start->text : std::string("0")) + " --end " +
                     (line.end ? line.end->text : std::to_string(showEnd)) +
                     " is an empty range: " + runs);
        return false;
    }
    *chosen = NormaliseMovieOptions(options);
    return true;
}

// The camera window's shape: --aspect, else the settings file's, else the shape of the frame.
void ChooseAspect(CDoc& doc, const CommandLine& line, int width, int height)
{
    if (line.aspect) {
        doc.aspectRatio = static_cast<float>(line.aspect->ratio);
        doc.aspectMode = line.aspect->letterbox
                             ? kLetterboxAspectMode
                             : static_cast<int>(line.aspect->ratio * 10000.0 + 0.5);
        if (line.aspect->letterbox)
            doc.aspectRatio = 0.5625f;
        return;
    }
    if (line.settings)
        return;  // the document read "AspectMode" from them
    double ratio = static_cast<double>(height) / static_cast<double>(width);
    doc.aspectRatio = static_cast<float>(ratio);
    doc.aspectMode = static_cast<int>(ratio * 10000.0 + 0.5);
    if (doc.aspectMode == kLetterboxAspectMode)
        doc.aspectMode = kLetterboxAspectMode - 1;  // a plain shape, never the letterbox marker
}

int RenderStill(CDoc& doc, const CommandLine& line, const std::string& show,
                const std::string& output, std::FILE* err)
{
    std::string kind = Lower(output);
    if (!EndsWith(kind, ".tga") && !EndsWith(kind, ".bmp")) {
        Say(err, "a still picture is written as .tga or .bmp, not " + Shown(output));
        return kExitUsage;
    }
    int width = line.width.value_or(kDefaultWidth);
    int height = line.height.value_or(kDefaultHeight);
    if (line.settings && !line.width) {
        MovieOptions remembered = LoadMovieOptions(doc);
        width = remembered.width;
        height = remembered.height;
    }
    long frame = 0;
    if (!FrameOf(*line.still, "--still", &frame, err))
        return kExitUsage;
    long showEnd = ShowEnd(doc);
    if (frame > showEnd) {
        Say(err, "--still " + line.still->text + " is outside the show: " + Shown(show) +
                     " runs from frame 0 to " + FrameAndTimecode(showEnd));
        return kExitUsage;
    }
    ChooseAspect(doc, line, width, height);
    CDIB picture(width, height, 32);
    if (picture.GetBitCount() != 32 ||
        !doc.RenderFrame(frame, 0, false, width, height, &picture, false)) {
        Say(err, "cannot render frame " + std::to_string(frame) + " at " + std::to_string(width) +
                     "x" + std::to_string(height));
        return kExitFailed;
    }
    FSpec spec = PathFSpec(output.c_str());
    // The picture writer's box is recorded rather than printed: the reason goes on our one line.
    PushMessageBoxAnswer(kBoxYes);
    bool saved = picture.Save(&spec, EndsWith(kind, ".tga") ? 1 : 0);
    ClearMessageBoxScript();
    TakeShownMessageBoxes();
    if (!saved) {
        std::string reason = LastFileReplacementError();
        Say(err, "cannot write " + Shown(output) + (reason.empty() ? "" : ": " + Shown(reason)));
        return kExitFailed;
    }
    if (!line.quiet)
        std::fprintf(err, "Wrote frame %ld to %s\n", frame, Shown(output).c_str());
    return kExitMade;
}

void SayNotice(const char* text, void* err)
{
    Say(static_cast<std::FILE*>(err), std::string("note: ") + PrintableText(text));
}

const char* SignalName(int signal)
{
    switch (signal) {
    case SIGHUP:
        return "SIGHUP";
    case SIGINT:
        return "SIGINT";
    case SIGTERM:
        return "SIGTERM";
    default:
        return "a signal";
    }
}

int RenderMovie(CDoc& doc, const CommandLine& line, const std::string& show,
                const std::string& output, std::FILE* err)
{
    MovieOptions options;
    if (!ChooseOptions(doc, line, show, &options, err))
        return kExitUsage;
    ChooseAspect(doc, line, options.width, options.height);

    char remembered[8] = {};
    if (line.settings)
        GetIniString("CodecType", "", remembered, 4);
    std::string codec = line.codec.value_or(remembered[0] != '\0' ? remembered : kDefaultCodec);
    if (!IsCodecAvailable(codec.c_str())) {
        Say(err,
            "unknown codec '" + Shown(codec) + "'; this build writes: " + AvailableCodecList());
        return kExitUsage;
    }
    UseCodec(codec.c_str());
    // The job asks for the codec only for QuickTime names; every kind of movie should get the
    // rate and quality of this command.
    if (!QTSelectCodec(nullptr, options.framesPerSecond, options.quality, false)) {
        Say(err, "the codec " + Shown(codec) + " could not be set up");
        return kExitFailed;
    }

    MovieJob job;
    job.options = options;
    job.movie = PathFSpec(output.c_str());
    job.storeSettings = false;
    job.reportInBoxes = false;
    ProgressReport progress(err, line.progress, line.quiet, MovieFrameCount(options));
    SetMovieNoticeHook(SayNotice, err);
    MovieJobResult result = MakeMovieFiles(doc, job, progress);
    SetMovieNoticeHook(nullptr, nullptr);
    progress.Finish();
    switch (result) {
    case MovieJobResult::kMade:
        break;
    case MovieJobResult::kCodecCancelled:
        Say(err, "the codec " + Shown(codec) + " could not be set up");
        return kExitFailed;
    case MovieJobResult::kNoMemory:
        Say(err, "no memory for " + std::to_string(options.width) + "x" +
                     std::to_string(options.height) + " frames");
        return kExitFailed;
    case MovieJobResult::kOpenFailed:
        Say(err, "cannot write movie " + Shown(output) + ": " + Shown(MovieLastError()));
        return kExitFailed;
    case MovieJobResult::kWriteFailed:
        Say(err, "writing movie " + Shown(output) + " failed: " + Shown(MovieLastError()));
        return kExitFailed;
    }
    if (StopSignal() != 0) {
        std::fprintf(err, "Stopped by %s: %s holds the %ld frames made so far\n",
                     SignalName(StopSignal()), Shown(output).c_str(), progress.Written());
        return ExitCodeOfStop(StopSignal());
    }
    if (!line.quiet)
        std::fprintf(err, "Wrote %ld frames to %s\n", progress.Written(), Shown(output).c_str());
    return kExitMade;
}

// Where each show's movie or still goes: the file named, or folder/<show name>.mov in a batch.
bool PlanOutputs(const CommandLine& line, const std::vector<std::string>& shows,
                 std::vector<std::string>* outputs, std::FILE* err, int* code)
{
    std::string output = Absolute(line.output);
    std::error_code error;
    bool folder = shows.size() > 1 || EndsWith(line.output, "/") ||
                  std::filesystem::is_directory(output, error);
    *code = kExitUsage;
    if (folder && line.kind == CommandKind::kStill) {
        Say(err, "a still is written to a file, not to the folder " + Shown(output));
        return false;
    }
    if (folder && !std::filesystem::is_directory(output, error)) {
        Say(err, "cannot write movies into " + Shown(output) + ": no such folder");
        *code = kExitFailed;
        return false;
    }
    for (const std::string& show : shows) {
        std::string target = output;
        if (folder)
            target = (std::filesystem::path(output) / std::filesystem::path(show).stem()).string() +
                     ".mov";
        if (!PathFits(target, "the output", err))
            return false;
        for (const std::string& each : shows) {
            if (SameFile(target, each)) {
                Say(err, "-o names the show itself: " + Shown(target));
                return false;
            }
        }
        outputs->push_back(target);
    }
    return true;
}

}  // namespace

int RunRenderCommand(const CommandLine& line, std::FILE* err)
{
    std::vector<std::string> shows;
    for (const std::string& show : line.shows) {
        shows.push_back(Absolute(show));
        if (!PathFits(shows.back(), "the show", err))
            return kExitUsage;
    }
    std::vector<std::string> outputs;
    int refusal = kExitUsage;
    if (!PlanOutputs(line, shows, &outputs, err, &refusal))
        return refusal;

    // Deterministic: an empty store (every setting at its default) unless a file is named. The
    // store is never saved, so the user's settings file is neither read nor written.
    std::string settingsText;
    if (line.settings && !ReadSettingsFile(*line.settings, &settingsText, err))
        return kExitFailed;
    Session session(settingsText);
    int worst = kExitMade;
    for (size_t i = 0; i < shows.size(); ++i) {
        if (StopSignal() != 0)
            break;
        int code = kExitFailed;
        if (OpenShow(*session.doc, shows[i], err))
            code = line.kind == CommandKind::kStill
                       ? RenderStill(*session.doc, line, shows[i], outputs[i], err)
                       : RenderMovie(*session.doc, line, shows[i], outputs[i], err);
        if (code != kExitMade && (worst == kExitMade || code > 128))
            worst = code;
        if (code == kExitUsage && shows.size() == 1)
            return code;
    }
    return worst;
}
