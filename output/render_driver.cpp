// The movie render driver: runs of frames into the open movie with holds, dissolves and a cancel,
// and the movie job around them.

#include "output/render_driver.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "output/frame_queue.h"
#include "output/movie.h"
#include "output/show_frame.h"
#include "platform/dialog/message_box.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"

namespace {

constexpr int kLargestMovieSide = 4096;
constexpr float kFastestMovieRate = 60.0f;
constexpr int kBothFields = 3;
constexpr const char* kHoldText = "Rendering Hold... (Hit any key to cancel)";

std::string Setting(const char* key, const char* defaultValue)
{
    char value[256] = {};
    GetIniString(key, defaultValue, value, sizeof value - 1);
    return value;
}

// A frame rate setting ("29.97"); text that does not start with a number, or a number too large
// for a float, gives the default.
float SettingRate(const char* key, float defaultRate)
{
    std::string text = Setting(key, "");
    char* end = nullptr;
    errno = 0;
    double rate = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || errno == ERANGE || !std::isfinite(rate) ||
        std::fabs(rate) > static_cast<double>(std::numeric_limits<float>::max()))
        return defaultRate;
    return static_cast<float>(rate);
}

long TimecodeFrames(const std::string& text)
{
    long frame = 0;
    StringToFrame(&frame, text.c_str());
    return frame;
}

void StoreText(const char* key, const std::string& text)
{
    std::string value = text;
    SetIniItem(key, value.data());
}

std::string Timecode(long frame)
{
    char text[kTimecodeSize];
    FrameToString(text, frame, true);
    return text;
}

// Queues the frame `holds` times, showing the hold's progress. False when a write has failed.
bool WriteHold(MovieFrameQueue& queue, CDIB* frame, long holds, RenderProgress& progress)
{
    for (long j = 0; j < holds; ++j) {
        progress.Progress(static_cast<double>(j) / static_cast<double>(holds), kHoldText);
        if (!queue.Queue(frame, progress))
            return false;
    }
    return true;
}

// Sets gMultiProcess for one frame and gives the user's choice back afterwards.
class SplitFrames {
public:
    explicit SplitFrames(bool split) : saved_(gMultiProcess) { gMultiProcess = split; }
    ~SplitFrames() { gMultiProcess = saved_; }
    SplitFrames(const SplitFrames&) = delete;
    SplitFrames& operator=(const SplitFrames&) = delete;

private:
    bool saved_;
};

bool WriteToMovie(CDIB* frame) { return QTMovieWriteFrame(-1, frame); }

// The movie of one show in batch mode: the output folder, the show's name without its
// extension, "B", and ".mov".
FSpec BatchMovieName(const FSpec& movie, const FSpec& show)
{
    char moviePath[kMaxPathLength + 1] = {};
    char showPath[kMaxPathLength + 1] = {};
    GetFSpecPath(&movie, moviePath);
    GetFSpecPath(&show, showPath);
    std::string folder = moviePath;
    folder = folder.substr(0, folder.find_last_of('/') + 1);
    std::string name = showPath;
    name = name.substr(name.find_last_of('/') + 1);
    name = name.substr(0, name.find_last_of('.'));
    return PathFSpec((folder + name + "B.mov").c_str());
}

}  // namespace

long ShowEnd(const CDoc& doc)
{
    int last = std::max(doc.picCount - 1, 0);
    int keys = std::max(doc.GetKeyCount(last), 1);
    return doc.GetPicStart(last) + doc.keys[last][keys - 1].Frame;
}

MovieOptions LoadMovieOptions(const CDoc& doc)
{
    MovieOptions options;
    options.width = static_cast<int>(GetIniItem("MovieWid", 720));
    options.height = static_cast<int>(GetIniItem("MovieHgt", 480));
    options.start = TimecodeFrames(Setting("MovieStart", "00:00:00"));
    options.end = ShowEnd(doc);
    options.holds = TimecodeFrames(Setting("MovieHold", "00:00:00"));
    options.framesPerSecond = SettingRate("MovieFPS", 29.97f);
    options.quality = static_cast<int>(GetIniItem("MovieQuality", 100));
    options.fields = !Setting("MovieFields", "1").empty();
    options.reverse = !Setting("MovieReverse", "").empty();
    return NormaliseMovieOptions(options);
}

MovieOptions NormaliseMovieOptions(MovieOptions options)
{
    options.width = std::clamp(options.width, 0, kLargestMovieSide);
    options.height = std::clamp(options.height, 0, kLargestMovieSide);
    float& rate = options.framesPerSecond;
    if (std::isnan(rate) || rate < 0.0f)
        rate = 0.0f;
    else if (rate >= kFastestMovieRate)
        rate = kFastestMovieRate;
    return options;
}

void StoreMovieOptions(const MovieOptions& options)
{
    char number[32];
    std::snprintf(number, sizeof number, "%d", options.width);
    StoreText("MovieWid", number);
    std::snprintf(number, sizeof number, "%d", options.height);
    StoreText("MovieHgt", number);
    StoreText("MovieStart", Timecode(options.start));
    StoreText("MovieHold", Timecode(options.holds));
    std::snprintf(number, sizeof number, "%.2f", static_cast<double>(options.framesPerSecond));
    StoreText("MovieFPS", number);
    std::snprintf(number, sizeof number, "%d", options.quality);
    StoreText("MovieQuality", number);
    StoreText("MovieFields", options.fields ? "1" : "");
    StoreText("MovieReverse", options.reverse ? "1" : "");
}

int MovieTypeOf(const char* name)
{
    if (std::strstr(name, ".dps") != nullptr)
        return 2;
    if (std::strstr(name, ".mov") != nullptr)
        return 1;
    if (std::strstr(name, ".rtv") != nullptr)
        return 3;
    return 0;
}

long MovieFrameCount(const MovieOptions& options)
{
    long run = std::labs(options.end - options.start) + 2 * options.holds;
    return options.reverse ? 2 * run : run;
}

bool MakeMovie(CDoc& doc, CDIB* frame, int fieldMode, long startFrame, long endFrame,
               long holdFrames, int quality, RenderProgress& progress)
{
    (void)quality;  // the codec took it when the movie was opened
    doc.GotoFrame(startFrame, true);
    gCurFrame = startFrame;
    long count = std::labs(endFrame - startFrame);
    long step = endFrame < startFrame ? -1 : 1;
    CDIB incoming(1, 1, 32);
    // Frame N + 1 renders here while frame N is compressed on the queue's thread.
    MovieFrameQueue queue(frame, MovieFrameQueue::kBuffers, WriteToMovie);
    bool result = true;
    for (long i = 0; i < count; ++i) {
        // A frame that could not be written ends the run before anything more is shown.
        if (queue.Failed()) {
            result = false;
            break;
        }
        CDIB* rendered = queue.Next(progress);
        // When the writing thread has had to wait for frames its processor has time to spare,
        // so the frame is split between this thread and the worker, whatever "MultiProcess"
        // says: the bytes are the same either way. While the writer is the slower side the
        // render stays on this thread alone, out of the encoder's way.
        SplitFrames split(gMultiProcess || queue.WriterWaitedForFrames());
        progress.Progress(static_cast<double>(i) / static_cast<double>(count), kRenderingText);
        progress.ShowFrame(gCurFrame);
        if (progress.CancelRequested())
            break;
        RenderShowFrame(doc, gCurFrame, fieldMode, rendered, &incoming);
        // The frame is a picture shown whole: no pixel of it may be transparent in a movie that
        // stores alpha. The filters leave alpha 0 outside a 32-bit picture, and the placeholder of
        // a picture that could not be read has alpha 0 throughout. The movies made here are
        // opened for opaque frames and store alpha only with a codec that has no form without it;
        // the others drop alpha anyway.
        if (QTMovieStoresAlpha())
            rendered->SetAlpha(255);
        if (i == 0 && !WriteHold(queue, rendered, holdFrames, progress)) {
            result = false;
            break;
        }
        if (!queue.Queue(rendered, progress)) {
            result = false;
            break;
        }
        gCurFrame += step;
    }
    // The run's frames are all in before the tail hold starts, so a late failure writes none of
    // it, as a failure found at once would not.
    if (!queue.Finish(progress))
        result = false;
    if (result && !WriteHold(queue, queue.Last(), holdFrames, progress))
        result = false;
    if (!queue.Finish(progress))
        result = false;
    doc.GotoFrame(gCurFrame, true);
    return result;
}

MovieJobResult MakeMovieFiles(CDoc& doc, const MovieJob& job, RenderProgress& progress)
{
    MovieOptions options = NormaliseMovieOptions(job.options);
    int fieldMode = options.fields ? kBothFields : 0;
    char moviePath[kMaxPathLength + 1] = {};
    GetFSpecPath(&job.movie, moviePath);
    if (std::strstr(moviePath, ".mov") != nullptr &&
        !QTSelectCodec(nullptr, options.framesPerSecond, options.quality, false))
        return MovieJobResult::kCodecCancelled;
    CDIB frame(options.width, options.height, 32);
    if (frame.GetBitCount() != 32) {
        if (job.reportInBoxes)
            ErrorBox("Not Enough Memory to Make Movie", -9999);
        return MovieJobResult::kNoMemory;
    }
    long total = MovieFrameCount(options);
    int movieType = MovieTypeOf(moviePath);

    MovieJobResult result = MovieJobResult::kMade;
    size_t runs = job.shows.empty() ? 1 : job.shows.size();
    bool first = true;
    for (size_t run = 0; run < runs; ++run) {
        FSpec movie = job.movie;
        long end = options.end;
        if (!job.shows.empty()) {
            if (doc.OpenShowFile(&job.shows[run], false) != ShowFileResult::kOpened)
                continue;
            movie = BatchMovieName(job.movie, job.shows[run]);
            end = ShowEnd(doc);
        }
        // MakeMovie makes every pixel opaque: the movie needs no alpha, and PNG, Animation and
        // uncompressed frames take three bytes a pixel instead of four.
        SetMovieFramesOpaque(true);
        bool opened = QTMovieWriteOpen(!first, &movie, &frame, options.framesPerSecond,
                                       options.quality, total);
        SetMovieFramesOpaque(false);
        if (!opened) {
            QTMovieWriteClose();
            if (job.reportInBoxes)
                ErrorBox("Error Opening Movie File", -9999);
            return MovieJobResult::kOpenFailed;
        }
        first = false;
        bool written = MakeMovie(doc, &frame, fieldMode, options.start, end, options.holds,
                                 options.quality, progress);
        if (written && options.reverse)
            written = MakeMovie(doc, &frame, fieldMode, end, options.start, options.holds,
                                options.quality, progress);
        if (!QTMovieWriteClose())
            written = false;
        if (!written)
            result = MovieJobResult::kWriteFailed;
    }
    if (job.storeSettings) {
        StoreMovieOptions(options);
        SetIniItem("MovieType", static_cast<long>(movieType));
    }
    if (result == MovieJobResult::kMade && job.reportInBoxes)
        ErrorBox("Movie file(s) successfully made", -9999);
    return result;
}
