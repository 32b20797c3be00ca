#pragma once
// The movie layer: writes CDIB frames as the one video track of a movie file, compressed with
// the codec chosen in the compression settings dialog, and reads frames of a movie back into a
// CDIB. At most one movie is open for writing and one for reading, in module state, so the
// operations are plain functions. Nothing here shows a message: failures answer false and
// MovieLastError says why.
//
// Timing: the movie's time scale is trunc(frames per second × 100 + 0.5) units per second
// (29.97 gives 2997, 25 gives 2500) and every written frame lasts exactly 100 units, one frame
// period. The frame numbers given to the writer do not set the time: frames are laid end to end
// in the order written.
//
// Codecs are named by their four-character codes: "avc1" (H.264), "apcn" (ProRes 422), "mjpa"
// (Motion JPEG A), "png " (PNG), "rle " (Animation) and "raw " (uncompressed). A code given
// with fewer than four characters ("png") is filled with spaces. The chosen code is kept in the
// "CodecType" setting.
//
// Calling order for writing: QTSelectCodec (once, before the first movie or when the user asks),
// then QTMovieWriteOpen, any number of QTMovieWriteFrame, then QTMovieWriteClose, also after a
// failed open. One thread at a time: the render driver writes its frames from a thread of its
// own while the next one renders.

#include <string>

class CDIB;
class CPWnd;
struct FSpec;

// The frame number that primes the writer without adding a frame to the movie.
constexpr long kPrimeFrameNumber = -999;

// Start and stop of the movie services: QTOpenMovies answers 1 (nothing to prepare);
// QTCloseMovies forgets the codec settings of this run and answers 0.
int QTOpenMovies();
int QTCloseMovies();

// Lets the user choose and set up the codec in the compression settings dialog, over `parent`
// (the active window when null), starting from "CodecType" and the quality the render asks for
// (0..100, see SpatialQualityOf). False when cancelled: nothing is stored then. On OK the choice
// holds for the following movies and "CodecType" is written. With a codec given by UseCodec,
// or with no window system (the command line), the choice is taken without a dialog.
// `backEndOption` is for other movie back ends; this one does not use it.
bool QTSelectCodec(CPWnd* parent, float framesPerSecond, int quality, bool backEndOption);

// Creates the movie `file` (replacing an existing one) with the size of `firstFrame`, the time
// scale of `framesPerSecond` and the codec chosen last, and primes it with `firstFrame`, which
// adds no frame. The container follows the file's extension: .mov (and names FFmpeg does not
// know) QuickTime, .mp4, .avi, .mkv and any other FFmpeg writes theirs; a codec the container
// cannot hold gives way to one it can. A 32-bit first frame makes a movie that keeps alpha where
// the codec can store it (see SetMovieFramesOpaque). `notFirstMovie` (a later movie of a batch),
// `quality` (the codec's quality comes from QTSelectCodec here) and `totalFrames` are for other
// movie back ends.
bool QTMovieWriteOpen(bool notFirstMovie, FSpec* file, CDIB* firstFrame, float framesPerSecond,
                      int quality, long totalFrames);
// Compresses `frame` (24 or 32 bits, the movie's size) and appends it as the next frame. The
// frame number kPrimeFrameNumber (-999) only primes: the frame is converted, nothing is added.
// A 32-bit frame is read where it lies, with no copy of its own.
bool QTMovieWriteFrame(long frameNumber, CDIB* frame);
// Whether the movies opened from now on get only opaque frames (the render driver's frames are
// made opaque): they are then written without alpha, in the codec's RGB form where it has one,
// at three bytes a pixel instead of four. Off, a 32-bit first frame makes a movie that keeps
// alpha.
void SetMovieFramesOpaque(bool opaque);
// Whether the movie being written stores alpha; false when none is open.
bool QTMovieStoresAlpha();
// Finishes and closes the movie. True when the movie was stored whole, or when none had been
// started (nothing open, or an open that failed). The file of a failed open and a movie that
// could not be finished are removed, so no half-written file looks complete.
bool QTMovieWriteClose();

// Opens a movie for reading and makes `frame` a 32-bit image of the movie's size.
bool QTMovieReadOpen(FSpec* file, CDIB* frame);
// Puts the frame showing at `time` (in the movie's own time units from its start) into `frame`,
// re-created at the movie's size and 32 bits: storage row height − 1 − y takes picture row y,
// channels blue, green, red, alpha. Movies without alpha read back with alpha 255.
bool QTMovieReadFrame(long time, CDIB* frame);
// Closes the movie being read; true, also when none was open.
bool QTMovieReadClose();
// The read movie's duration in its own time units (its video track's time scale); 0 when none
// is open.
long QTGetMovieDuration();
// The program's frame rate gFrameRate (hundredths of a frame per second), unchanged.
float QTGetMovieFrameRate();

// ---- Codecs for the command line and tests --------------------------------------------------

// The codec a movie is written with when nothing else was chosen: H.264.
extern const char kDefaultCodec[];
// True when this FFmpeg has an encoder for the code.
bool IsCodecAvailable(const char* fourcc);
// The codes this FFmpeg can write, with their names: "avc1 (H.264), apcn (ProRes 422), ...".
std::string AvailableCodecList();
// Chooses the codec from now on, without a dialog: QTSelectCodec takes it as it is, and a movie
// opened without QTSelectCodec uses it. Null or "" goes back to the dialog.
void UseCodec(const char* fourcc);
// Whether a movie of this name (its container follows the extension, as QTMovieWriteOpen picks
// it) can hold the code, by FFmpeg's own judgement: what the codec choice should offer.
bool IsCodecWritableIn(const char* fourcc, const char* moviePath);
// Who hears what the user should know about a movie being opened (the codec written instead of
// one the container refused, a frame size rounded for the codec): the editor keeps the texts to
// show after the render, the command line prints each on stderr. Null: nobody.
using MovieNoticeHook = void (*)(const char* text, void* context);
void SetMovieNoticeHook(MovieNoticeHook hook, void* context);
// The last failure of the movie layer as text; "" when the last open went without one.
const char* MovieLastError();

// The spatial quality of a render quality: below 20 least (0), 20..39 low (256), 40..59
// normal (512), 60..79 high (768), 80 and above best (1023).
int SpatialQualityOf(int quality);
// The time scale of a frame rate: trunc(framesPerSecond × 100 + 0.5).
long MovieTimeScale(float framesPerSecond);

// The codec settings the next movie is written with.
struct MovieCodecSettings {
    char type[5] = {};         // four-character code
    int spatialQuality = 512;  // 0 least .. 1023 best
    long frameRate = 0;  // hundredths of a frame per second of the last selection; 0 before one
};
MovieCodecSettings GetMovieCodecSettings();
