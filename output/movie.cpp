// The movie layer: codec selection, the quality levels, the "CodecType" setting, the calling
// order and the copies between CDIB storage rows and the 32-bit frame buffers. The compressing,
// the files and everything else FFmpeg does is in ffmpeg_movie.cpp.

#include "output/movie.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "doc/globals.h"
#include "image/cdib.h"
#include "output/ffmpeg_movie.h"
#include "platform/dialog/codec_dialog.h"
#include "platform/file/fspec.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"

const char kDefaultCodec[] = "avc1";

namespace {

struct CodecName {
    const char* type;
    const char* name;
};

// Every codec this layer knows, in the order the dialog and the command line list them.
const CodecName kCodecNames[] = {
    {"avc1", "H.264"}, {"apcn", "ProRes 422"}, {"mjpa", "Motion JPEG A"},
    {"png ", "PNG"},   {"rle ", "Animation"},  {"raw ", "Uncompressed"},
};

constexpr int kNormalQuality = 512;

// The codec settings that outlive single movies: the stand-in for the standard compression
// component, opened by the first selection and closed by QTCloseMovies.
struct CodecComponent {
    bool open = false;
    char type[5] = {};
    int spatialQuality = kNormalQuality;
    long frameRate = 0;  // hundredths of a frame per second
};
CodecComponent mCurDlgCom;

// The codec UseCodec chose; empty when the dialog decides.
char mPreselected[5] = {};

// The 32-bit frame buffers of the movie being written and of the movie being read: alpha, red,
// green, blue in memory order, rows top-down, each row 4 × width bytes.
std::vector<unsigned char> mWriteGWorld;
int mWriteWidth = 0;
int mWriteHeight = 0;
bool mWriteOpen = false;
bool mOpaqueFrames = false;  // SetMovieFramesOpaque

std::vector<unsigned char> mReadGWorld;
int mReadWidth = 0;
int mReadHeight = 0;
bool mReadOpen = false;

// A code of up to four characters made four, filled with spaces; "" for null or empty.
std::string FourCharacters(const char* code)
{
    if (code == nullptr || code[0] == '\0')
        return "";
    std::string text(code, strnlen(code, 4));
    text.resize(4, ' ');
    return text;
}

void CopyType(char* out, const std::string& type)
{
    std::memset(out, 0, 5);
    std::memcpy(out, type.data(), std::min<size_t>(type.size(), 4));
}

const char* NameOf(const std::string& type)
{
    for (const CodecName& codec : kCodecNames) {
        if (type == codec.type)
            return codec.name;
    }
    return nullptr;
}

bool Known(const std::string& type) { return NameOf(type) != nullptr; }

// The code stored in "CodecType", four characters, or "".
std::string SettingCodec()
{
    char value[8] = {};
    GetIniString("CodecType", "", value, 4);
    return FourCharacters(value);
}

// The first of the codes that this FFmpeg can write: the one wanted, the default, then the rest
// in list order. "" when it can write none.
std::string UsableCodec(const std::string& wanted)
{
    if (Known(wanted) && FFHasEncoder(wanted.c_str()))
        return wanted;
    if (FFHasEncoder(kDefaultCodec))
        return kDefaultCodec;
    for (const CodecName& codec : kCodecNames) {
        if (FFHasEncoder(codec.type))
            return codec.type;
    }
    return "";
}

// The codec the next movie is written with: UseCodec's, else the last selection's, else the
// setting's.
std::string WritingCodec()
{
    if (mPreselected[0] != '\0')
        return UsableCodec(mPreselected);
    if (mCurDlgCom.open)
        return UsableCodec(mCurDlgCom.type);
    return UsableCodec(SettingCodec());
}

bool PathOf(FSpec* file, char* path)
{
    if (file == nullptr || !GetFSpecPath(file, path) || path[0] == '\0') {
        FFSetMovieError("The movie file has no path");
        return false;
    }
    return true;
}

bool FrameFits(const CDIB& frame)
{
    int depth = frame.GetBitCount();
    if (frame.GetWid() != mWriteWidth || frame.GetHgt() != mWriteHeight ||
        (depth != 24 && depth != 32)) {
        FFSetMovieError(("A " + std::to_string(frame.GetWid()) + "x" +
                         std::to_string(frame.GetHgt()) + " " + std::to_string(depth) +
                         "-bit frame does not fit a " + std::to_string(mWriteWidth) + "x" +
                         std::to_string(mWriteHeight) + " movie")
                            .c_str());
        return false;
    }
    return true;
}

// Frame buffer row y (top-down) takes CDIB storage row height − 1 − y; each pixel becomes alpha,
// red, green, blue, alpha being the CDIB pixel's fourth byte for 32-bit frames and 0 for 24-bit
// frames, which are read three bytes per pixel. Only 24-bit frames take this way: their alpha 0
// is not in their storage.
void CopyFrameIn(const CDIB& frame)
{
    int pixelBytes = frame.GetBitCount() / 8;
    mWriteGWorld.resize(static_cast<size_t>(4) * mWriteWidth * mWriteHeight);
    for (int y = 0; y < mWriteHeight; ++y) {
        const unsigned char* in = frame.GetBitsAdd(mWriteHeight - 1 - y);
        unsigned char* out = mWriteGWorld.data() + static_cast<size_t>(y) * 4 * mWriteWidth;
        for (int x = 0; x < mWriteWidth; ++x, in += pixelBytes, out += 4) {
            out[0] = pixelBytes == 4 ? in[3] : 0;
            out[1] = in[2];
            out[2] = in[1];
            out[3] = in[0];
        }
    }
}

// A 32-bit frame as it lies: storage row height − 1 is the picture's top row, and its bytes
// blue, green, red, alpha are the frame buffer's alpha, red, green, blue read backwards.
FFFrameRows RowsOf(const CDIB& frame)
{
    return FFFrameRows{frame.GetBitsAdd(frame.GetHgt() - 1), -frame.GetRowBytes(),
                       FFPixelOrder::kBgra};
}

// The reverse: CDIB storage row height − 1 − y takes frame buffer row y, and each pixel's bytes
// alpha, red, green, blue become blue, green, red, alpha.
void CopyFrameOut(CDIB* frame)
{
    for (int y = 0; y < mReadHeight; ++y) {
        const unsigned char* in = mReadGWorld.data() + static_cast<size_t>(y) * 4 * mReadWidth;
        unsigned char* out = frame->GetBitsAdd(mReadHeight - 1 - y);
        for (int x = 0; x < mReadWidth; ++x, in += 4, out += 4) {
            out[0] = in[3];
            out[1] = in[2];
            out[2] = in[1];
            out[3] = in[0];
        }
    }
}

// What the movie layer's operations answer when an allocation (a buffer, a text) fails: the
// failure stays inside the layer as its result.
bool OutOfMemory() noexcept
{
    FFSetMovieError("Not enough memory for the movie");
    return false;
}

}  // namespace

// ---- Services and codec selection -------------------------------------------------------------

int QTOpenMovies() { return 1; }

int QTCloseMovies()
{
    mCurDlgCom = CodecComponent();
    return 0;
}

int SpatialQualityOf(int quality)
{
    if (quality < 20)
        return 0;
    if (quality < 40)
        return 256;
    if (quality < 60)
        return 512;
    if (quality < 80)
        return 768;
    return 1023;
}

long MovieTimeScale(float framesPerSecond)
{
    // In double, so that 29.97 (29.9699993 as a float) still gives 2997.
    return static_cast<long>(std::trunc(static_cast<double>(framesPerSecond) * 100.0 + 0.5));
}

bool QTSelectCodec(CPWnd* parent, float framesPerSecond, int quality,
                   [[maybe_unused]] bool backEndOption)
try {
    FFClearMovieError();
    CodecComponent settings = mCurDlgCom;
    settings.open = true;
    std::string wanted = mPreselected[0] != '\0' ? std::string(mPreselected) : SettingCodec();
    std::string type = UsableCodec(wanted);
    if (type.empty()) {
        FFSetMovieError("This FFmpeg has no encoder for any of the movie codecs");
        return false;
    }
    CopyType(settings.type, type);
    settings.frameRate = MovieTimeScale(framesPerSecond);
    settings.spatialQuality = SpatialQualityOf(quality);

    if (mPreselected[0] == '\0' || !Known(mPreselected)) {
        std::vector<CodecDialogCodec> codecs;
        for (const CodecName& codec : kCodecNames) {
            if (FFHasEncoder(codec.type))
                codecs.push_back(CodecDialogCodec{codec.type, codec.name});
        }
        CodecDialogSettings chosen;
        chosen.type = settings.type;
        chosen.quality = settings.spatialQuality;
        if (!CodecSettingsDialog(parent, codecs, &chosen))
            return false;
        CopyType(settings.type, FourCharacters(chosen.type.c_str()));
        settings.spatialQuality = chosen.quality;
    }
    mCurDlgCom = settings;
    char value[5] = {};
    CopyType(value, settings.type);
    SetIniItem("CodecType", value);
    return true;
} catch (...) {
    return OutOfMemory();
}

MovieCodecSettings GetMovieCodecSettings()
{
    MovieCodecSettings settings;
    try {
        CopyType(settings.type, WritingCodec());
    } catch (...) {
        OutOfMemory();
    }
    settings.spatialQuality = mCurDlgCom.open ? mCurDlgCom.spatialQuality : kNormalQuality;
    settings.frameRate = mCurDlgCom.open ? mCurDlgCom.frameRate : 0;
    return settings;
}

bool IsCodecAvailable(const char* fourcc)
try {
    std::string type = FourCharacters(fourcc);
    return Known(type) && FFHasEncoder(type.c_str());
} catch (...) {
    return OutOfMemory();
}

std::string AvailableCodecList()
try {
    std::string list;
    for (const CodecName& codec : kCodecNames) {
        if (!FFHasEncoder(codec.type))
            continue;
        std::string shown = codec.type;
        while (!shown.empty() && shown.back() == ' ')
            shown.pop_back();
        if (!list.empty())
            list += ", ";
        list += shown + " (" + codec.name + ")";
    }
    return list;
} catch (...) {
    OutOfMemory();
    return std::string();
}

void UseCodec(const char* fourcc) { CopyType(mPreselected, FourCharacters(fourcc)); }

bool IsCodecWritableIn(const char* fourcc, const char* moviePath)
{
    return IsCodecAvailable(fourcc) && FFContainerTakes(moviePath, FourCharacters(fourcc).c_str());
}

void SetMovieNoticeHook(MovieNoticeHook hook, void* context) { FFSetNoticeHook(hook, context); }

const char* MovieLastError() { return FFMovieError(); }

// ---- Writing ----------------------------------------------------------------------------------

void SetMovieFramesOpaque(bool opaque) { mOpaqueFrames = opaque; }

bool QTMovieStoresAlpha() { return mWriteOpen && FFMovieStoresAlpha(); }

bool QTMovieWriteOpen([[maybe_unused]] bool notFirstMovie, FSpec* file, CDIB* firstFrame,
                      float framesPerSecond, [[maybe_unused]] int quality,
                      [[maybe_unused]] long totalFrames)
try {
    FFClearMovieError();
    char path[kMaxPathLength + 1] = {};
    if (!PathOf(file, path))
        return false;
    if (firstFrame == nullptr || firstFrame->GetBitCount() == 0) {
        FFSetMovieError("The movie has no first frame");
        return false;
    }
    long timeScale = MovieTimeScale(framesPerSecond);
    if (timeScale < 1) {
        FFSetMovieError("The movie's frame rate is not above 0");
        return false;
    }
    std::string type = WritingCodec();
    if (type.empty()) {
        FFSetMovieError("This FFmpeg has no encoder for any of the movie codecs");
        return false;
    }
    FFWriteRequest request;
    request.path = path;
    request.width = firstFrame->GetWid();
    request.height = firstFrame->GetHgt();
    request.timeScale = timeScale;
    CopyType(request.type, type);
    request.spatialQuality = mCurDlgCom.open ? mCurDlgCom.spatialQuality : kNormalQuality;
    request.keepAlpha = firstFrame->GetBitCount() == 32 && !mOpaqueFrames;

    mWriteOpen = true;
    mWriteWidth = request.width;
    mWriteHeight = request.height;
    mWriteGWorld.clear();
    if (!FFOpenMovieWriter(request))
        return false;
    return QTMovieWriteFrame(kPrimeFrameNumber, firstFrame);
} catch (...) {
    return OutOfMemory();
}

bool QTMovieWriteFrame(long frameNumber, CDIB* frame)
try {
    if (!mWriteOpen) {
        FFSetMovieError("No movie is open for writing");
        return false;
    }
    if (frame == nullptr || !FrameFits(*frame))
        return false;
    bool addSample = frameNumber != kPrimeFrameNumber;
    if (frame->GetBitCount() == 32)
        return FFWriteMovieRows(RowsOf(*frame), addSample);
    CopyFrameIn(*frame);
    return FFWriteMovieFrame(mWriteGWorld.data(), addSample);
} catch (...) {
    return OutOfMemory();
}

bool QTMovieWriteClose()
try {
    bool stored = FFCloseMovieWriter();
    mWriteGWorld.clear();
    mWriteGWorld.shrink_to_fit();
    mWriteWidth = 0;
    mWriteHeight = 0;
    mWriteOpen = false;
    return stored;
} catch (...) {
    return OutOfMemory();
}

// ---- Reading ----------------------------------------------------------------------------------

bool QTMovieReadOpen(FSpec* file, CDIB* frame)
{
    FFClearMovieError();
    QTMovieReadClose();
    char path[kMaxPathLength + 1] = {};
    if (!PathOf(file, path) || frame == nullptr)
        return false;
    int width = 0;
    int height = 0;
    if (!FFOpenMovieReader(path, &width, &height))
        return false;
    mReadOpen = true;
    mReadWidth = width;
    mReadHeight = height;
    // The reader has checked the size (1 to 8192 each way); the buffer may still not be had.
    try {
        mReadGWorld.assign(static_cast<size_t>(4) * width * height, 0);
    } catch (...) {
        QTMovieReadClose();
        return OutOfMemory();
    }
    if (!frame->Create(width, height, 32) || frame->GetBitCount() != 32) {
        FFSetMovieError("No room for a frame of the movie's size");
        return false;
    }
    return true;
}

bool QTMovieReadFrame(long time, CDIB* frame)
try {
    if (!mReadOpen || frame == nullptr) {
        FFSetMovieError("No movie is open for reading");
        return false;
    }
    if (!FFReadMovieFrame(time, mReadGWorld.data()))
        return false;
    if (!frame->Create(mReadWidth, mReadHeight, 32) || frame->GetBitCount() != 32 ||
        frame->GetWid() != mReadWidth || frame->GetHgt() != mReadHeight) {
        FFSetMovieError("No room for a frame of the movie's size");
        return false;
    }
    CopyFrameOut(frame);
    return true;
} catch (...) {
    return OutOfMemory();
}

bool QTMovieReadClose()
{
    FFCloseMovieReader();
    mReadGWorld.clear();
    mReadGWorld.shrink_to_fit();
    mReadWidth = 0;
    mReadHeight = 0;
    mReadOpen = false;
    return true;
}

long QTGetMovieDuration() { return mReadOpen ? FFReadDuration() : 0; }

float QTGetMovieFrameRate()
{
    // The open movie's time scale is asked for but deliberately not used: the program's frame
    // rate is what the callers work in, and a movie's scale need not be a frame rate at all.
    [[maybe_unused]] long timeScale = mReadOpen ? FFReadTimeScale() : 0;
    return static_cast<float>(gFrameRate);
}
