#pragma once
// The Flash export: the show's frames as a Flash (SWF) movie of Flash video, written by the movie
// back end with FFmpeg's swf muxer and its Sorenson H.263 ("flv1") encoder.
//
// Timing: the export samples the show's time line at its own rate, so a show lasts as long in
// the Flash movie as in the editor. Movie frame i shows show frame start + i x S / F (integer
// division), S the show's whole frames per second ((gFrameRate + 50) / 100) and F the export's;
// frames are made while that stays before the end.
//
// Colour: where a frame is not opaque (a 32-bit picture with alpha, kept when "IgnoreAlpha" is
// off) it is laid over the background colour; the letterbox bars of letterboxed 16:9 are the
// background colour.

#include <cstdint>

class CDIB;
class CDoc;
class RenderProgress;
struct FSpec;

// What SaveFlashMovie and MakeFlashMovie answer: frames written (0 or more), or a failure.
constexpr int kFlashBadOptions = -1;  // no file, no frames, a size or rate out of range
constexpr int kFlashNoMemory = -2;
constexpr int kFlashOpenFailed = -3;   // the file could not be started (MovieLastError says why)
constexpr int kFlashWriteFailed = -4;  // a frame or the end of the file could not be written

// The fastest rate the file format stores (8.8 fixed point frames per second).
constexpr int kFastestFlashRate = 255;

struct FlashMovieOptions {
    int width = 720;  // frame size in pixels, 1..4096
    int height = 480;
    long start = 0;  // show frames start .. end (exclusive)
    long end = 0;
    int framesPerSecond = 30;   // the movie's rate, 1..kFastestFlashRate
    int quality = 75;           // 0 least .. 100 best; sets the encoder's quantiser
    long backgroundColour = 0;  // 0x00BBGGRR
};

// Movie frames of an export of `showFrames` frames at `showRate` whole frames per second into a
// movie of `framesPerSecond`; 0 when any of them is below 1.
long FlashFrameCount(long showFrames, long showRate, int framesPerSecond);
// The show frame (from the export's start) that movie frame `index` shows.
long FlashShowFrame(long index, long showRate, int framesPerSecond);

// One rendered 32-bit frame as the 32-bit frame buffer of the movie back end (alpha, red, green,
// blue, rows top-down), laid over `colour`: each channel is (pixel x a + colour x (255 - a) +
// 127) / 255 with a the pixel's alpha, and alpha is 255. `barRows` rows at the top and at the
// bottom are the colour alone. `argb` holds 4 x width x height bytes.
void FlattenOnBackground(const CDIB& frame, long colour, int barRows, unsigned char* argb);

// Writes the Flash movie of the show frames of `options` to `path` (replaced only by a complete
// file). The current frame is the same afterwards. Answers frames written, or a negative code.
// With `progress`, each frame is reported before it is made, as the movie render reports its
// frames (the part done, what is made, the show frame); when it asks to stop, the export ends
// there and the file is finished with the frames made so far, which counts as made.
int MakeFlashMovie(CDoc& doc, const char* path, const FlashMovieOptions& options,
                   RenderProgress* progress = nullptr);

// The whole show of the document (pDoc) to `file`, at the movie size last chosen ("MovieWid" x
// "MovieHgt"), with the given quality (0..100), background colour (0x00BBGGRR) and rate.
// Answers 0 or more on success, negative on failure. `progress` as for MakeFlashMovie.
int SaveFlashMovie(FSpec* file, int quality, long backgroundColour, int framesPerSecond,
                   RenderProgress* progress = nullptr);
