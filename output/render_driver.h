#pragma once
// The movie render driver: the show's frames, one after another, through the frame renderer into
// the open movie (MakeMovie), and the whole job of making one or several movie files once their
// options are chosen (MakeMovieFiles). The option dialogs belong to the editor; the command line
// fills the same options from its arguments.

#include <string>
#include <vector>

#include "image/cdib.h"
#include "platform/file/fspec.h"

class CDoc;

// The progress text while the frames of a movie or an export are made.
constexpr const char* kRenderingText = "Rendering... (Hit Esc key to cancel)";

// What the user sees while frames are made, and how they stop it.
class RenderProgress {
public:
    virtual ~RenderProgress() = default;
    // The run is `fraction` done (0 to 1); text says what is being made.
    virtual void Progress(double fraction, const char* text) = 0;
    // Frame `frame` of the show is about to be rendered.
    virtual void ShowFrame(long frame) = 0;
    // One more frame is in the movie.
    virtual void FrameWritten() = 0;
    // Esc in the editor, Ctrl+C on the command line: the run ends after the current frame.
    virtual bool CancelRequested() = 0;
};

// The options of "Make Movie Options", as numbers.
struct MovieOptions {
    int width = 720;                 // 0..4096
    int height = 480;                // 0..4096
    long start = 0;                  // first frame
    long end = 0;                    // exclusive bound of the run; before start renders backwards
    long holds = 0;                  // copies of the first and of the last frame
    float framesPerSecond = 29.97f;  // 0..60
    int quality = 100;
    bool fields = true;    // both interlaced fields
    bool reverse = false;  // the run again, backwards
};

// The end of a show: its last picture's start plus that picture's last key.
long ShowEnd(const CDoc& doc);
// The options as last used ("MovieWid", "MovieHgt", "MovieStart", "MovieHold", "MovieFPS",
// "MovieQuality", "MovieFields", "MovieReverse"), the end being the end of the show.
MovieOptions LoadMovieOptions(const CDoc& doc);
// Clamps sizes to 0..4096 and the rate to 0..60 (60 or more is 60).
MovieOptions NormaliseMovieOptions(MovieOptions options);
// Writes the options back into the settings, timecodes as normalised text.
void StoreMovieOptions(const MovieOptions& options);
// The kind of movie a file name asks for: 2 ".dps", 1 ".mov", 3 ".rtv", otherwise 0.
int MovieTypeOf(const char* name);

// Renders frames start .. end (exclusive; backwards when end is before start) with holds at both
// ends into the open movie. False when a frame could not be written; a cancel keeps it true.
bool MakeMovie(CDoc& doc, CDIB* frame, int fieldMode, long startFrame, long endFrame,
               long holdFrames, int quality, RenderProgress& progress);

// How a movie job ended.
enum class MovieJobResult {
    kMade,
    kCodecCancelled,  // the codec choice was cancelled
    kNoMemory,        // "Not Enough Memory to Make Movie"
    kOpenFailed,      // "Error Opening Movie File"
    kWriteFailed,     // a frame could not be written; the movie was closed
};

struct MovieJob {
    MovieOptions options;
    FSpec movie{};              // the movie file, or in batch mode one in the output folder
    std::vector<FSpec> shows;   // batch mode: the show files; empty: the document's show
    bool storeSettings = true;  // remember the options and the movie type
    bool reportInBoxes = true;  // the editor's message boxes; the command line says its own
};

// Everything "Make Movie" does once the options and the file are chosen: the codec, the frame
// buffer, each show's movie with its holds and reverse run, the messages and the settings.
MovieJobResult MakeMovieFiles(CDoc& doc, const MovieJob& job, RenderProgress& progress);

// The frames a job writes for one show: the run, both holds, doubled for the reverse run.
long MovieFrameCount(const MovieOptions& options);
