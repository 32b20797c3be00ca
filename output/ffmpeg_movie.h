#pragma once
// The movie back end on FFmpeg: the encoders behind the four-character codec codes, the movie
// being written and the movie being read. Every FFmpeg call of the program is in
// ffmpeg_movie.cpp; this header speaks only plain types, so nothing above it sees FFmpeg.
//
// Frames cross this boundary as 32-bit frame buffers: alpha, red, green, blue in memory order,
// rows top-down (picture rows, not storage rows), each row exactly 4 × width bytes.
//
// One movie is written and one read at a time, as the movie layer asks, each by one thread at a
// time (the render driver writes from its encoding thread).

#include <cstddef>
#include <string>

// ---- Codecs -----------------------------------------------------------------------------------

// Whether this FFmpeg has an encoder for the code ("avc1", "apcn", "mjpa", "png ", "rle ",
// "raw ", and "flv1", Flash video, which only the Flash export writes) that opens for a small
// frame. Probed once per code and remembered.
bool FFHasEncoder(const char* type);
// The FFmpeg encoder that writes the code ("libx264", "prores_ks", ...); "" when there is none.
std::string FFEncoderName(const char* type);
// The encoder setting that the spatial quality (0 least .. 1023 best) becomes, as text
// ("crf 26", "qscale 8", "bits_per_mb 2400", "compression_level 9", "lossless").
std::string FFEncoderQuality(const char* type, int spatialQuality);

// The libx264 settings (x264-params text) every H.264 movie gets: one frame thread a processor
// and no frames buffered between the look-ahead and the encoder, which save memory and leave
// the movie's bytes as they were.
std::string FFH264Params();

// ---- Writing ----------------------------------------------------------------------------------

struct FFWriteRequest {
    const char* path = nullptr;  // the movie file; replaced when it exists
    int width = 0;               // the movie's size in pixels
    int height = 0;
    long timeScale = 0;        // time units per second; every frame lasts 100 of them
    char type[5] = {};         // the codec's four-character code
    int spatialQuality = 512;  // 0 least .. 1023 best
    bool keepAlpha = false;    // codecs that can carry alpha store it (png, rle, raw)
    // FFmpeg's muxer by name ("swf"); null: from the file's extension.
    const char* container = nullptr;
};

// Creates the movie file, its one video track and the encoder. The muxer follows the file's
// extension (a name FFmpeg does not know becomes a QuickTime movie); a codec that the container
// cannot hold gives way to one it can, and the notice hook hears of it. H.264 frames with an odd
// side are padded by one pixel (the notice hook hears that too). The movie is written to a
// temporary file beside the path and renamed over it by a successful close. False on any failure,
// with MovieLastError set; the caller still calls FFCloseMovieWriter, which then removes the
// unfinished file.
bool FFOpenMovieWriter(const FFWriteRequest& request);
// Converts one frame buffer for the encoder and, when addSample is set, encodes it as the next
// frame (100 time units after the last). Without addSample nothing is added to the movie: the
// frame only proves that it converts. False on failure.
bool FFWriteMovieFrame(const unsigned char* frame, bool addSample);
// The order of a frame's four bytes per pixel in memory.
enum class FFPixelOrder {
    kArgb,  // alpha, red, green, blue: the frame buffer above
    kBgra,  // blue, green, red, alpha: a 32-bit CDIB's storage
};
// A frame of the movie's size as rows where they lie: `top` is the first byte of the picture's
// top row, each row below starts `stride` bytes on (negative for storage kept bottom row first),
// every row holds 4 × width bytes.
struct FFFrameRows {
    const unsigned char* top = nullptr;
    ptrdiff_t stride = 0;
    FFPixelOrder order = FFPixelOrder::kArgb;
};
// FFWriteMovieFrame for rows as they lie: the converter to the encoder's pixels (swscale, or our
// own row loop for opaque frames of RGB movies) reads them in place, with no copy turned top-down
// or reordered first. The same frame gives the same movie either way.
bool FFWriteMovieRows(const FFFrameRows& frame, bool addSample);
// Drains the encoder, stores the movie's header and closes the file; releases everything and
// is safe when nothing is open. True when the movie was finished, or when none had been started
// (nothing open, or an open that failed). Only then does the movie take its name; the temporary
// file of a failed open or of a movie that could not be finished is removed, and a file that
// had the name before is left as it was.
bool FFCloseMovieWriter();
// Who hears what the user should know about a movie being opened: a codec its container
// refused and the one written instead, a frame size the codec needed rounded. Null: nobody.
void FFSetNoticeHook(void (*hook)(const char* text, void* context), void* context);
// Whether FFmpeg says a movie of this name (its container follows the extension) holds the code.
bool FFContainerTakes(const char* path, const char* type);
// The code the open movie is actually written with (a container may have refused the one asked
// for); "" when no movie is open for writing.
std::string FFWritingType();
// Whether the open movie stores alpha (its pixel format has an alpha channel); false when no movie
// is open for writing.
bool FFMovieStoresAlpha();

// ---- Reading ----------------------------------------------------------------------------------

// Opens the movie's first video stream and its decoder; `width` and `height` receive its size.
bool FFOpenMovieReader(const char* path, int* width, int* height);
// The movie's duration and time scale, in the video stream's own time units; 0 when none is open.
long FFReadDuration();
long FFReadTimeScale();
// Decodes the frame showing at `time` (time units from the movie's start: the last frame that
// starts at or before it, the first frame before the start, the last after the end) into the
// frame buffer of the movie's size.
bool FFReadMovieFrame(long time, unsigned char* frame);
// Releases the movie being read; safe when none is open.
void FFCloseMovieReader();

// ---- Failures and inspection ------------------------------------------------------------------

// The last failure as text; "" when there was none since FFClearMovieError.
const char* FFMovieError();
void FFClearMovieError();
// Records a failure found above the back end (a frame of the wrong size, a file with no path).
void FFSetMovieError(const char* text);

// What a movie file holds, read with the demuxer alone: no decoder, no state shared with the
// reader. For tests and diagnostics.
struct FFMovieFacts {
    std::string container;  // the demuxer's name ("mov,mp4,m4a,3gp,3g2,mj2", "matroska,webm", ...)
    std::string codec;      // the decoder's name of the stream's codec ("h264", "png", ...)
    char tag[5] = {};       // the stream's four-character code as stored; "" when none
    int width = 0;
    int height = 0;
    long timeBaseNum = 0;  // the video stream's time base
    long timeBaseDen = 0;
    long long duration = -1;  // in the stream's time base; -1 when the container does not say
    long packets = 0;         // video packets in the file
    long keyPackets = 0;      // of them, key frames
    long long firstPts = 0;   // presentation time of the earliest packet
    long long lastEnd = 0;    // the latest packet's presentation time plus its duration
    bool alpha = false;       // the stream's pixel format carries alpha
    int videoStreams = 0;
    int otherStreams = 0;
};
bool FFProbeMovieFile(const char* path, FFMovieFacts* facts);
