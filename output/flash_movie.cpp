#include "output/flash_movie.h"

#include <algorithm>
#include <climits>
#include <new>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "image/cdib.h"
#include "output/ffmpeg_movie.h"
#include "output/render_driver.h"
#include "output/show_frame.h"
#include "platform/file/paths.h"

namespace {

constexpr char kFlashVideo[] = "flv1";
constexpr char kFlashContainer[] = "swf";
constexpr int kLargestFlashSide = 4096;

unsigned char Over(unsigned char pixel, unsigned char background, unsigned alpha)
{
    return static_cast<unsigned char>((pixel * alpha + background * (255 - alpha) + 127) / 255);
}

// The show's whole frames per second, as the editor counts them everywhere.
long ShowRate() { return std::max((gFrameRate + 50) / 100, 1L); }

// Renders and writes the frames until all `count` are written or `progress` asks to stop.
// Answers the frames written, or -1 when one could not be written.
long WriteFlashFrames(CDoc& doc, const FlashMovieOptions& options, long count,
                      std::vector<unsigned char>& argb, CDIB& frame, RenderProgress* progress)
{
    CDIB incoming(1, 1, 32);
    int bars = doc.LetterboxBarRows(options.width, options.height);
    for (long i = 0; i < count; ++i) {
        long showFrame = options.start + FlashShowFrame(i, ShowRate(), options.framesPerSecond);
        gCurFrame = showFrame;
        if (progress != nullptr) {
            progress->Progress(static_cast<double>(i) / static_cast<double>(count), kRenderingText);
            progress->ShowFrame(showFrame);
            if (progress->CancelRequested())
                return i;
        }
        RenderShowFrame(doc, showFrame, 0, &frame, &incoming);
        FlattenOnBackground(frame, options.backgroundColour, bars, argb.data());
        if (!FFWriteMovieFrame(argb.data(), true))
            return -1;
    }
    return count;
}

}  // namespace

long FlashFrameCount(long showFrames, long showRate, int framesPerSecond)
{
    if (showFrames < 1 || showRate < 1 || framesPerSecond < 1)
        return 0;
    long long frames = static_cast<long long>(showFrames) * framesPerSecond;
    return static_cast<long>((frames + showRate - 1) / showRate);
}

long FlashShowFrame(long index, long showRate, int framesPerSecond)
{
    if (framesPerSecond < 1)
        return 0;
    return static_cast<long>(static_cast<long long>(index) * showRate / framesPerSecond);
}

void FlattenOnBackground(const CDIB& frame, long colour, int barRows, unsigned char* argb)
{
    int width = frame.GetWid();
    int height = frame.GetHgt();
    int pixelBytes = frame.GetBitCount() / 8;
    auto red = static_cast<unsigned char>(colour & 0xFF);
    auto green = static_cast<unsigned char>((colour >> 8) & 0xFF);
    auto blue = static_cast<unsigned char>((colour >> 16) & 0xFF);
    for (int y = 0; y < height; ++y) {
        const unsigned char* in = frame.GetBitsAdd(height - 1 - y);
        unsigned char* out = argb + static_cast<size_t>(y) * 4 * width;
        bool bar = y < barRows || y >= height - barRows;
        for (int x = 0; x < width; ++x, in += pixelBytes, out += 4) {
            unsigned alpha = bar ? 0 : (pixelBytes == 4 ? in[3] : 255);
            out[0] = 255;
            out[1] = Over(in[2], red, alpha);
            out[2] = Over(in[1], green, alpha);
            out[3] = Over(in[0], blue, alpha);
        }
    }
}

int MakeFlashMovie(CDoc& doc, const char* path, const FlashMovieOptions& options,
                   RenderProgress* progress)
{
    FFClearMovieError();
    if (path == nullptr || path[0] == '\0' || options.width < 1 || options.height < 1 ||
        options.width > kLargestFlashSide || options.height > kLargestFlashSide ||
        options.framesPerSecond < 1 || options.framesPerSecond > kFastestFlashRate) {
        FFSetMovieError(
            "A Flash movie needs a file, a frame size of 1 to 4096 and 1 to 255 "
            "frames per second");
        return kFlashBadOptions;
    }
    long count = FlashFrameCount(options.end - options.start, ShowRate(), options.framesPerSecond);
    if (count < 1 || count > INT_MAX) {
        FFSetMovieError("The show has no frames to export");
        return kFlashBadOptions;
    }
    CDIB frame(options.width, options.height, 32);
    std::vector<unsigned char> argb;
    try {
        argb.assign(static_cast<size_t>(4) * options.width * options.height, 0);
    } catch (const std::bad_alloc&) {
        argb.clear();
    }
    if (frame.GetBitCount() != 32 || frame.GetWid() != options.width || argb.empty()) {
        FFSetMovieError("Not enough memory for the Flash movie");
        return kFlashNoMemory;
    }

    FFWriteRequest request;
    request.path = path;
    request.container = kFlashContainer;
    request.width = options.width;
    request.height = options.height;
    request.timeScale = static_cast<long>(options.framesPerSecond) * 100;
    std::copy(kFlashVideo, kFlashVideo + 4, request.type);
    request.spatialQuality = std::clamp(options.quality, 0, 100) * 1023 / 100;
    if (!FFOpenMovieWriter(request)) {
        FFCloseMovieWriter();
        return kFlashOpenFailed;
    }
    long current = gCurFrame;
    long written = WriteFlashFrames(doc, options, count, argb, frame, progress);
    if (!FFCloseMovieWriter())
        written = -1;
    gCurFrame = current;
    doc.GotoFrame(current, false);
    return written >= 0 ? static_cast<int>(written) : kFlashWriteFailed;
}

int SaveFlashMovie(FSpec* file, int quality, long backgroundColour, int framesPerSecond,
                   RenderProgress* progress)
{
    char path[kMaxPathLength + 1] = {};
    if (pDoc == nullptr || file == nullptr || !GetFSpecPath(file, path))
        return kFlashBadOptions;
    MovieOptions movie = LoadMovieOptions(*pDoc);
    FlashMovieOptions options;
    options.width = movie.width;
    options.height = movie.height;
    options.start = 0;
    options.end = ShowEnd(*pDoc);
    options.framesPerSecond = framesPerSecond;
    options.quality = quality;
    options.backgroundColour = backgroundColour;
    return MakeFlashMovie(*pDoc, path, options, progress);
}
