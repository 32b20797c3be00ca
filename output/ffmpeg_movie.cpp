// The movie back end on FFmpeg.
//
//   [SECTION] Failures: av_strerror and FFmpeg's own error lines
//   [SECTION] Codecs: the encoders behind the four-character codes, pixel formats, quality
//   [SECTION] Writing
//   [SECTION] Reading
//   [SECTION] Inspection

#include "output/ffmpeg_movie.h"
#include "output/rgb_rows.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/base/replace_file.h"

namespace {

// Every frame lasts this many time units; the time scale is frames per second × 100.
constexpr int64_t kFrameDuration = 100;
// Rows of a frame in the encoder's pixel format start this many bytes apart at least, and the
// frame's memory has as many spare bytes at its end, for vector code reading past the last pixel
// (as FFmpeg's own frames have).
constexpr int kPictureAlignment = 64;

// ---- [SECTION] Failures ---------------------------------------------------------------------

std::mutex mErrorMutex;
std::string mLastError;    // what MovieLastError shows
std::string mLastLogLine;  // FFmpeg's last error line since the last clear

// FFmpeg reports the reason of many failures only in its log (libx264's "width not divisible by
// 2", a muxer's "codec not currently supported in container"). Those lines are kept for the
// failure text instead of going to stderr; everything less than an error is dropped. Encoders
// may log from their own threads, hence the lock.
void KeepLogLine(void* context, int level, const char* format, va_list arguments)
{
    if (level > AV_LOG_ERROR)
        return;
    char line[512];
    int prefix = 1;
    va_list copy;
    va_copy(copy, arguments);
    av_log_format_line2(context, level, format, copy, line, sizeof line, &prefix);
    va_end(copy);
    // Called from FFmpeg's C code: nothing may leave it as an exception. A line that cannot be
    // kept (no memory for it) is dropped.
    try {
        std::string text = line;
        std::replace(text.begin(), text.end(), '\n', ' ');
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
            text.pop_back();
        std::lock_guard<std::mutex> lock(mErrorMutex);
        mLastLogLine = text;
    } catch (...) {
    }
}

void TakeOverFFmpegLog()
{
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(KeepLogLine); });
}

// Records a failure: what was being done, FFmpeg's text for the code and its last error line.
void SetError(const std::string& what, int code)
{
    std::string text = what;
    if (code < 0) {
        char reason[AV_ERROR_MAX_STRING_SIZE] = {};
        av_strerror(code, reason, sizeof reason);
        text += ": ";
        text += reason;
    }
    std::lock_guard<std::mutex> lock(mErrorMutex);
    if (!mLastLogLine.empty() && text.find(mLastLogLine) == std::string::npos)
        text += " (" + mLastLogLine + ")";
    mLastError = text;
    mLastLogLine.clear();
}

void SetError(const std::string& what) { SetError(what, 0); }

// For the catch blocks that keep exceptions inside this module: the text of an allocation that
// failed, if there is still room to keep it.
void SetErrorNoThrow(const char* what) noexcept
{
    try {
        SetError(what);
    } catch (...) {
    }
}

// ---- [SECTION] Codecs -----------------------------------------------------------------------

struct CodecPlan {
    const char* type;
    AVCodecID id;
    const char* encoders[8];  // tried in this order; the first that opens is used
};

// The software encoders come first; the hardware ones only open where their device exists.
const CodecPlan kPlans[] = {
    {"avc1",
     AV_CODEC_ID_H264,
     {"libx264", "libopenh264", "h264_videotoolbox", "h264_nvenc", "h264_qsv", "h264_amf",
      "h264_mf", nullptr}},
    {"apcn", AV_CODEC_ID_PRORES, {"prores_ks", "prores", "prores_aw", nullptr}},
    {"mjpa", AV_CODEC_ID_MJPEG, {"mjpeg", nullptr}},
    {"png ", AV_CODEC_ID_PNG, {"png", nullptr}},
    {"rle ", AV_CODEC_ID_QTRLE, {"qtrle", nullptr}},
    {"raw ", AV_CODEC_ID_RAWVIDEO, {"rawvideo", nullptr}},
    // Flash video (Sorenson H.263), for the Flash export only: the movie codec choice does not
    // offer it.
    {"flv1", AV_CODEC_ID_FLV1, {"flv", nullptr}},
};

const CodecPlan* FindPlan(const char* type)
{
    if (type == nullptr)
        return nullptr;
    for (const CodecPlan& plan : kPlans) {
        if (std::strncmp(plan.type, type, 4) == 0 && std::strlen(type) >= 4)
            return &plan;
    }
    return nullptr;
}

bool IsMovFamily(const AVOutputFormat* format)
{
    return format != nullptr &&
           (std::strcmp(format->name, "mov") == 0 || std::strcmp(format->name, "mp4") == 0 ||
            std::strcmp(format->name, "ipod") == 0 || std::strcmp(format->name, "3gp") == 0 ||
            std::strcmp(format->name, "3g2") == 0 || std::strcmp(format->name, "psp") == 0);
}

bool IsAvi(const AVOutputFormat* format)
{
    return format != nullptr && std::strcmp(format->name, "avi") == 0;
}

bool Supports(const AVCodec* codec, AVPixelFormat format)
{
    if (codec->pix_fmts == nullptr)
        return true;
    for (const AVPixelFormat* each = codec->pix_fmts; *each != AV_PIX_FMT_NONE; ++each) {
        if (*each == format)
            return true;
    }
    return false;
}

bool HalvesChroma(AVPixelFormat format)
{
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    return descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0 &&
           (descriptor->log2_chroma_w > 0 || descriptor->log2_chroma_h > 0);
}

// The pixel format the encoder gets. Codecs that can hold alpha get a format with alpha only
// when the movie keeps it. H.264 is always 4:2:0, the one form that browsers, phones and
// hardware players all decode; its frames are made even by the writer (see EncodedSide). ProRes
// 4:2:2 spoils the last column of an odd width, so odd widths are written as ProRes 4444. Raw
// frames in AVI are the DIB's blue-first order; QuickTime's raw frames are alpha/red first.
AVPixelFormat PickPixelFormat(const AVCodec* codec, const char* type, bool keepAlpha, int width,
                              int height, const AVOutputFormat* container)
{
    bool odd = (width % 2) != 0 || (height % 2) != 0;
    std::vector<AVPixelFormat> wanted;
    std::string code(type, 4);
    if (code == "avc1") {
        wanted = {AV_PIX_FMT_YUV420P, AV_PIX_FMT_NV12};
    } else if (code == "apcn") {
        if ((width % 2) != 0)
            wanted = {AV_PIX_FMT_YUV444P10LE};
        else
            wanted = {AV_PIX_FMT_YUV422P10LE, AV_PIX_FMT_YUV422P10};
    } else if (code == "mjpa") {
        wanted = {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUVJ444P};
    } else if (code == "png ") {
        wanted = keepAlpha ? std::vector<AVPixelFormat>{AV_PIX_FMT_RGBA, AV_PIX_FMT_RGB24}
                           : std::vector<AVPixelFormat>{AV_PIX_FMT_RGB24, AV_PIX_FMT_RGBA};
    } else if (code == "rle ") {
        wanted = keepAlpha ? std::vector<AVPixelFormat>{AV_PIX_FMT_ARGB, AV_PIX_FMT_RGB24}
                           : std::vector<AVPixelFormat>{AV_PIX_FMT_RGB24, AV_PIX_FMT_ARGB};
    } else if (code == "flv1") {
        wanted = {AV_PIX_FMT_YUV420P};
    } else if (code == "raw ") {
        if (IsAvi(container))
            wanted = keepAlpha ? std::vector<AVPixelFormat>{AV_PIX_FMT_BGRA, AV_PIX_FMT_BGR24}
                               : std::vector<AVPixelFormat>{AV_PIX_FMT_BGR24, AV_PIX_FMT_BGRA};
        else
            wanted = keepAlpha ? std::vector<AVPixelFormat>{AV_PIX_FMT_ARGB, AV_PIX_FMT_RGB24}
                               : std::vector<AVPixelFormat>{AV_PIX_FMT_RGB24, AV_PIX_FMT_ARGB};
    }
    for (AVPixelFormat format : wanted) {
        if (Supports(codec, format))
            return format;
    }
    // An encoder that takes none of the above (a hardware H.264 encoder, say) gets its own first
    // format, at even sizes only when it halves chroma.
    if (codec->pix_fmts != nullptr) {
        for (const AVPixelFormat* each = codec->pix_fmts; *each != AV_PIX_FMT_NONE; ++each) {
            if (!(odd && HalvesChroma(*each)))
                return *each;
        }
    }
    return AV_PIX_FMT_NONE;
}

// 0 least, 1 low, 2 normal, 3 high, 4 best, from the spatial quality 0 / 256 / 512 / 768 / 1023;
// values in between go to the nearest level.
int QualityLevel(int spatialQuality) { return std::clamp((spatialQuality + 128) / 256, 0, 4); }

// libx264's constant rate factor: 23 is its own default, 18 is commonly taken as visually
// lossless, 12 is near transparent.
constexpr int kH264Crf[5] = {35, 28, 23, 18, 12};
// prores_ks bits per macroblock; 0 keeps the profile's own rate (632 to 1050 for 422 standard,
// by frame size), which is what "normal" means for this codec.
constexpr int kProResBitsPerMb[5] = {250, 450, 0, 1400, 2400};
// The JPEG quantiser scale: 1 is finest, 31 coarsest.
constexpr int kJpegQscale[5] = {24, 12, 6, 3, 1};
// zlib effort for PNG frames: the picture is exact at every setting, only size and time change.
constexpr int kPngCompression[5] = {1, 3, 6, 8, 9};

// libx264 keeps every frame of its look-ahead whole: its own copy of the picture, four
// quarter-size planes and their cost tables, about 6.6 MB a frame at 1920 x 1080 (a look-ahead
// of 20 takes 132 MB off a 1080p render). Its automatic thread count (one and a half frame
// threads a processor) and the extra buffer between its look-ahead thread and the encoder each
// hold frames more without changing a byte of the movie; they go. The look-ahead itself (40
// frames) stays: a slow pan over a still picture is where its long view pays most, and a shorter
// one costs picture quality at the same rate factor (or bytes at the same quality).
// Applies the quality to the encoder before it opens; answers the setting as text.
std::string ApplyQuality(AVCodecContext* media, const char* type, int spatialQuality,
                         AVDictionary** options)
{
    int level = QualityLevel(spatialQuality);
    std::string code(type, 4);
    char text[64] = {};
    const char* name = media->codec != nullptr ? media->codec->name : "";
    if (code == "avc1") {
        if (std::strcmp(name, "libx264") == 0) {
            av_dict_set_int(options, "crf", kH264Crf[level], 0);
            av_dict_set(options, "x264-params", FFH264Params().c_str(), 0);
            std::snprintf(text, sizeof text, "crf %d", kH264Crf[level]);
        } else {
            std::snprintf(text, sizeof text, "encoder default");
        }
    } else if (code == "apcn") {
        bool full = media->pix_fmt == AV_PIX_FMT_YUV444P10LE;
        if (std::strcmp(name, "prores_ks") == 0) {
            av_dict_set(options, "profile", full ? "4444" : "standard", 0);
            if (kProResBitsPerMb[level] > 0) {
                av_dict_set_int(options, "bits_per_mb", kProResBitsPerMb[level], 0);
                std::snprintf(text, sizeof text, "bits_per_mb %d", kProResBitsPerMb[level]);
            } else {
                std::snprintf(text, sizeof text, "bits_per_mb of the profile");
            }
        } else {
            // The other ProRes encoder takes its profile from the context.
            media->profile = full ? FF_PROFILE_PRORES_4444 : FF_PROFILE_PRORES_STANDARD;
            std::snprintf(text, sizeof text, "profile standard");
        }
    } else if (code == "mjpa") {
        media->flags |= AV_CODEC_FLAG_QSCALE;
        media->global_quality = kJpegQscale[level] * FF_QP2LAMBDA;
        media->qmin = 1;
        media->qmax = 31;
        std::snprintf(text, sizeof text, "qscale %d", kJpegQscale[level]);
    } else if (code == "flv1") {
        // Flash video takes a fixed quantiser for every frame: 31 coarsest at the least quality
        // to 1 finest at the best, in even steps between.
        int qscale = std::clamp(31 - spatialQuality * 30 / 1023, 1, 31);
        media->flags |= AV_CODEC_FLAG_QSCALE;
        media->global_quality = qscale * FF_QP2LAMBDA;
        media->qmin = 1;
        media->qmax = 31;
        std::snprintf(text, sizeof text, "qscale %d", qscale);
    } else if (code == "png ") {
        media->compression_level = kPngCompression[level];
        std::snprintf(text, sizeof text, "compression_level %d", kPngCompression[level]);
    } else {
        std::snprintf(text, sizeof text, "lossless");
    }
    return text;
}

// Fills in an encoder for a frame of the given size: size, timing, pixel format, colour and
// quality. False when no pixel format fits.
bool SetUpEncoder(AVCodecContext* media, const char* type, int width, int height, long timeScale,
                  int spatialQuality, bool keepAlpha, const AVOutputFormat* container,
                  AVDictionary** options)
{
    const AVCodec* codec = media->codec;
    AVPixelFormat format = PickPixelFormat(codec, type, keepAlpha, width, height, container);
    if (format == AV_PIX_FMT_NONE)
        return false;
    media->width = width;
    media->height = height;
    media->pix_fmt = format;
    media->time_base = AVRational{1, static_cast<int>(timeScale)};
    media->framerate = AVRational{static_cast<int>(timeScale), static_cast<int>(kFrameDuration)};
    media->sample_aspect_ratio = AVRational{1, 1};
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    if (descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0) {
        if (std::string(type, 4) == "mjpa") {
            // JPEG frames are full range with the BT.601 matrix, as JFIF has them.
            media->color_range = AVCOL_RANGE_JPEG;
            media->colorspace = AVCOL_SPC_BT470BG;
        } else if (std::string(type, 4) == "flv1") {
            // Flash video has no way to name its colours: players take video range BT.601.
            media->color_range = AVCOL_RANGE_MPEG;
            media->colorspace = AVCOL_SPC_BT470BG;
        } else {
            // Video range, BT.709, and said so in the file, so players need not guess by size.
            media->color_range = AVCOL_RANGE_MPEG;
            media->colorspace = AVCOL_SPC_BT709;
            media->color_primaries = AVCOL_PRI_BT709;
            media->color_trc = AVCOL_TRC_BT709;
        }
    }
    ApplyQuality(media, type, spatialQuality, options);
    return true;
}

struct ProbedEncoder {
    const AVCodec* codec = nullptr;
};

std::mutex mProbeMutex;
std::map<std::string, ProbedEncoder> mProbed;

// The first encoder of the code's plan that opens for a small frame; remembered.
const AVCodec* ProbeEncoder(const char* type)
{
    const CodecPlan* plan = FindPlan(type);
    if (plan == nullptr)
        return nullptr;
    TakeOverFFmpegLog();
    std::lock_guard<std::mutex> lock(mProbeMutex);
    auto known = mProbed.find(plan->type);
    if (known != mProbed.end())
        return known->second.codec;
    ProbedEncoder found;
    for (const char* const* name = plan->encoders; *name != nullptr && found.codec == nullptr;
         ++name) {
        const AVCodec* codec = avcodec_find_encoder_by_name(*name);
        if (codec == nullptr || codec->id != plan->id)
            continue;
        AVCodecContext* media = avcodec_alloc_context3(codec);
        AVDictionary* options = nullptr;
        if (media != nullptr &&
            SetUpEncoder(media, plan->type, 64, 64, 2500, 512, false, nullptr, &options) &&
            avcodec_open2(media, codec, &options) >= 0)
            found.codec = codec;
        av_dict_free(&options);
        avcodec_free_context(&media);
    }
    {
        // A failed probe is not a failure of anything the user asked for.
        std::lock_guard<std::mutex> errorLock(mErrorMutex);
        mLastLogLine.clear();
    }
    mProbed[plan->type] = found;
    return found.codec;
}

// The codes tried, in order, when a container refuses the one asked for.
const char* const kFallbackOrder[] = {"avc1", "mjpa", "png ", "raw ", "apcn", "rle "};

bool ContainerTakes(const AVOutputFormat* container, AVCodecID id)
{
    // 1 yes, 0 no, below 0 the muxer cannot tell: then it is tried. The strictness is the one
    // FFmpeg's own command line works with.
    return avformat_query_codec(container, id, FF_COMPLIANCE_NORMAL) != 0;
}

// H.264 in 4:2:0 codes whole pairs of pixels each way (its cropping too), so an odd side is
// padded by one: the picture keeps every pixel and its last column or row is repeated.
int EncodedSide(const char* type, int side)
{
    return std::strncmp(type, "avc1", 4) == 0 ? side + (side % 2) : side;
}

// The container for the path: by extension, a QuickTime movie when FFmpeg knows no muxer for it.
const AVOutputFormat* ContainerFor(const char* path)
{
    const AVOutputFormat* container = av_guess_format(nullptr, path, nullptr);
    if (container == nullptr || (container->flags & AVFMT_NOFILE) != 0 ||
        container->video_codec == AV_CODEC_ID_NONE)
        container = av_guess_format("mov", nullptr, nullptr);
    return container;
}

// "ProRes 422 (apcn)", for messages.
std::string CodecTitle(const char* type)
{
    static const struct {
        const char* type;
        const char* name;
    } kTitles[] = {{"avc1", "H.264"}, {"apcn", "ProRes 422"}, {"mjpa", "Motion JPEG"},
                   {"png ", "PNG"},   {"rle ", "Animation"},  {"raw ", "uncompressed"}};
    std::string code(type, strnlen(type, 4));
    for (const auto& title : kTitles) {
        if (std::strncmp(title.type, type, 4) == 0) {
            while (!code.empty() && code.back() == ' ')
                code.pop_back();
            return std::string(title.name) + " (" + code + ")";
        }
    }
    return code;
}

void (*mNoticeHook)(const char*, void*) = nullptr;
void* mNoticeContext = nullptr;

void Notice(const std::string& text)
{
    if (mNoticeHook != nullptr)
        mNoticeHook(text.c_str(), mNoticeContext);
}

}  // namespace

bool FFHasEncoder(const char* type) { return ProbeEncoder(type) != nullptr; }

std::string FFEncoderName(const char* type)
{
    const AVCodec* codec = ProbeEncoder(type);
    return codec != nullptr ? codec->name : "";
}

std::string FFEncoderQuality(const char* type, int spatialQuality)
{
    const AVCodec* codec = ProbeEncoder(type);
    if (codec == nullptr)
        return "";
    AVCodecContext* media = avcodec_alloc_context3(codec);
    if (media == nullptr)
        return "";
    AVDictionary* options = nullptr;
    std::string text = ApplyQuality(media, FindPlan(type)->type, spatialQuality, &options);
    av_dict_free(&options);
    avcodec_free_context(&media);
    return text;
}

std::string FFH264Params()
{
    unsigned processors = std::max(1u, std::thread::hardware_concurrency());
    return "threads=" + std::to_string(processors) + ":sync-lookahead=0";
}

// ---- [SECTION] Writing ----------------------------------------------------------------------

namespace {

AVFormatContext* mWriteMovie = nullptr;              // the movie file being written
AVStream* mWriteTrack = nullptr;                     // its one video track
AVCodecContext* mWriteMedia = nullptr;               // the encoder that fills the track
AVFrame* mWritePicture = nullptr;                    // one frame in the encoder's pixel format
SwsContext* mWriteScaler = nullptr;                  // frame rows to encoder pixel format
AVPixelFormat mWriteScalerSource = AV_PIX_FMT_NONE;  // the rows' pixel format it converts
AVPacket* mCompressedData = nullptr;                 // one compressed frame on its way to the file
// Frames for mWritePicture while the encoder's threads still read the last ones, and the packets
// of an uncompressed RGB track: used again once let go, instead of fresh memory every frame.
AVBufferPool* mPicturePool = nullptr;
AVBufferPool* mPacketPool = nullptr;
int64_t mWriteNextPts = 0;  // in the encoder's time base
int mWriteWidth = 0;        // the frames given, in pixels
int mWriteHeight = 0;
int mEncodedWidth = 0;  // the frames encoded: the same, or padded to even sides
int mEncodedHeight = 0;
std::vector<unsigned char> mPadded;  // a frame padded to the encoded size
bool mWriteHeaderStored = false;     // the container's header is in the file
// The movie is written to a temporary file beside its name and renamed into place when finished.
std::unique_ptr<FileReplacement> mWriteReplacement;
std::string mWritePath;
std::string mWriteType;

// Hands mCompressedData (times in the encoder's time base) to the muxer as one frame, in the
// track's time base, and empties it.
bool StorePacket()
{
    mCompressedData->duration = kFrameDuration;
    mCompressedData->stream_index = mWriteTrack->index;
    av_packet_rescale_ts(mCompressedData, mWriteMedia->time_base, mWriteTrack->time_base);
    int result = av_interleaved_write_frame(mWriteMovie, mCompressedData);
    av_packet_unref(mCompressedData);
    if (result < 0) {
        SetError("Cannot write a frame to " + mWritePath, result);
        return false;
    }
    return true;
}

// Hands every packet the encoder has ready to the muxer.
bool StoreReadyPackets()
{
    for (;;) {
        int result = avcodec_receive_packet(mWriteMedia, mCompressedData);
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return true;
        if (result < 0) {
            SetError("Cannot compress a frame", result);
            return false;
        }
        if (!StorePacket())
            return false;
    }
}

enum class OpenResult { kOpened, kRefused, kFailed };

// Frees everything the writer holds; removes the file it made when that is not a finished movie.
void ReleaseWriter(bool removeFile)
{
    if (mWriteMovie != nullptr && mWriteMovie->pb != nullptr && mWriteMovie->oformat != nullptr &&
        (mWriteMovie->oformat->flags & AVFMT_NOFILE) == 0)
        avio_closep(&mWriteMovie->pb);
    if (mWriteReplacement != nullptr && removeFile)
        mWriteReplacement->Abandon();
    mWriteReplacement.reset();
    sws_freeContext(mWriteScaler);
    mWriteScaler = nullptr;
    mWriteScalerSource = AV_PIX_FMT_NONE;
    av_frame_free(&mWritePicture);
    av_packet_free(&mCompressedData);
    avcodec_free_context(&mWriteMedia);
    // Buffers still out (none once the encoder is gone) free the pools when they come back.
    av_buffer_pool_uninit(&mPicturePool);
    av_buffer_pool_uninit(&mPacketPool);
    avformat_free_context(mWriteMovie);
    mWriteMovie = nullptr;
    mWriteTrack = nullptr;
    mWriteNextPts = 0;
    mWriteWidth = 0;
    mWriteHeight = 0;
    mWriteHeaderStored = false;
    mEncodedWidth = 0;
    mEncodedHeight = 0;
    mPadded.clear();
    mPadded.shrink_to_fit();
    mWritePath.clear();
    mWriteType.clear();
}

// Gives mWritePicture memory of its own from the pool, in place of memory the encoder may still
// read. Nothing is copied: every byte of the frame is written before it is encoded.
bool TakePooledPicture()
{
    const auto format = static_cast<AVPixelFormat>(mWritePicture->format);
    AVBufferRef* memory = av_buffer_pool_get(mPicturePool);
    if (memory == nullptr)
        return false;
    for (AVBufferRef*& held : mWritePicture->buf)
        av_buffer_unref(&held);
    mWritePicture->buf[0] = memory;
    return av_image_fill_arrays(mWritePicture->data, mWritePicture->linesize, memory->data, format,
                                mWritePicture->width, mWritePicture->height,
                                kPictureAlignment) >= 0;
}

// The converter from frames whose pixels are `source` to the encoder's pixel format; kept while
// the frames keep their order of bytes.
bool MakeWriteScaler(AVPixelFormat source)
{
    if (mWriteScaler != nullptr && mWriteScalerSource == source)
        return true;
    sws_freeContext(mWriteScaler);
    mWriteScaler = sws_getContext(
        mEncodedWidth, mEncodedHeight, source, mEncodedWidth, mEncodedHeight, mWriteMedia->pix_fmt,
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP, nullptr, nullptr,
        nullptr);
    mWriteScalerSource = source;
    if (mWriteScaler == nullptr) {
        SetError(std::string("Cannot convert frames to ") +
                 av_get_pix_fmt_name(mWriteMedia->pix_fmt));
        return false;
    }
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(mWriteMedia->pix_fmt);
    if (descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0) {
        int matrix = mWriteMedia->colorspace == AVCOL_SPC_BT709 ? SWS_CS_ITU709 : SWS_CS_ITU601;
        int fullRange = mWriteMedia->color_range == AVCOL_RANGE_JPEG ? 1 : 0;
        sws_setColorspaceDetails(mWriteScaler, sws_getCoefficients(SWS_CS_DEFAULT), 1,
                                 sws_getCoefficients(matrix), fullRange, 0, 1 << 16, 1 << 16);
    }
    return true;
}

// Sets up the writer for one codec: kRefused when the container turned the codec down at its
// header (another codec may do), kFailed for anything else.
OpenResult OpenWriterAs(const FFWriteRequest& request, const AVOutputFormat* container,
                        const char* type)
{
    mWritePath = request.path;
    mWriteWidth = request.width;
    mWriteHeight = request.height;
    mEncodedWidth = EncodedSide(type, request.width);
    mEncodedHeight = EncodedSide(type, request.height);
    mWriteType = type;
    const AVCodec* codec = ProbeEncoder(type);
    int result = avformat_alloc_output_context2(&mWriteMovie, container, nullptr, request.path);
    if (result < 0 || mWriteMovie == nullptr) {
        SetError("Cannot set up the movie " + mWritePath, result);
        return OpenResult::kFailed;
    }
    mWriteMedia = avcodec_alloc_context3(codec);
    mCompressedData = av_packet_alloc();
    mWritePicture = av_frame_alloc();
    if (mWriteMedia == nullptr || mCompressedData == nullptr || mWritePicture == nullptr) {
        SetError("Not enough memory for the movie", AVERROR(ENOMEM));
        return OpenResult::kFailed;
    }
    AVDictionary* options = nullptr;
    if (!SetUpEncoder(mWriteMedia, type, mEncodedWidth, mEncodedHeight, request.timeScale,
                      request.spatialQuality, request.keepAlpha, container, &options)) {
        SetError(std::string(codec->name) + " has no pixel format for a " +
                 std::to_string(request.width) + "x" + std::to_string(request.height) + " frame");
        return OpenResult::kFailed;
    }
    if ((container->flags & AVFMT_GLOBALHEADER) != 0)
        mWriteMedia->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    // AVI stores no presentation times, only the order of the frames: frames that the encoder
    // reorders (B-frames) would come back late.
    if (IsAvi(container))
        mWriteMedia->max_b_frames = 0;
    // As many encoding threads as the encoder finds worth it: the context's default is one,
    // which leaves the second processor idle while a frame compresses.
    mWriteMedia->thread_count = 0;
    result = avcodec_open2(mWriteMedia, codec, &options);
    av_dict_free(&options);
    if (result < 0) {
        SetError(std::string("Cannot start the ") + codec->name + " encoder for " +
                     std::to_string(request.width) + "x" + std::to_string(request.height) +
                     " frames",
                 result);
        return OpenResult::kFailed;
    }

    mWriteTrack = avformat_new_stream(mWriteMovie, nullptr);
    if (mWriteTrack == nullptr) {
        SetError("Cannot add the video track", AVERROR(ENOMEM));
        return OpenResult::kFailed;
    }
    result = avcodec_parameters_from_context(mWriteTrack->codecpar, mWriteMedia);
    if (result < 0) {
        SetError("Cannot describe the video track", result);
        return OpenResult::kFailed;
    }
    AVDictionary* muxing = nullptr;
    if (IsMovFamily(container)) {
        // QuickTime keeps the time scale as given: without this the muxer doubles a scale under
        // 10000 until it is not, and 2997 would be stored as 11988.
        mWriteTrack->time_base = AVRational{1, static_cast<int>(request.timeScale)};
        av_dict_set_int(&muxing, "video_track_timescale", request.timeScale, 0);
        // The movie header counts in the same units, so its duration is exact (in thousandths of
        // a second, 12 frames at 29.97 would read 0.401 s): movies rendered in chunks and joined
        // end to end then meet without a gap.
        av_dict_set_int(&muxing, "movie_timescale", request.timeScale, 0);
        // Motion JPEG A is the QuickTime name for these frames; the muxer would say Photo JPEG.
        if (std::strcmp(container->name, "mov") == 0 && mWriteType == "mjpa")
            mWriteTrack->codecpar->codec_tag = MKTAG('m', 'j', 'p', 'a');
    } else {
        // One frame per tick, for the muxers that store a constant rate (AVI would pad the gaps
        // between frames 100 ticks apart with empty frames).
        mWriteTrack->time_base =
            AVRational{static_cast<int>(kFrameDuration), static_cast<int>(request.timeScale)};
    }
    mWriteTrack->avg_frame_rate = mWriteMedia->framerate;

    if ((container->flags & AVFMT_NOFILE) == 0) {
        mWriteReplacement = std::make_unique<FileReplacement>(mWritePath);
        if (!mWriteReplacement->Begin()) {
            av_dict_free(&muxing);
            SetError(mWriteReplacement->Error());
            return OpenResult::kFailed;
        }
        result = avio_open(&mWriteMovie->pb, mWriteReplacement->TemporaryPath().c_str(),
                           AVIO_FLAG_WRITE);
        if (result < 0) {
            av_dict_free(&muxing);
            SetError("Cannot create " + mWritePath, result);
            return OpenResult::kFailed;
        }
    }
    result = avformat_write_header(mWriteMovie, &muxing);
    av_dict_free(&muxing);
    if (result < 0) {
        SetError(std::string("Cannot start the movie ") + mWritePath + " with " + codec->name,
                 result);
        return OpenResult::kRefused;
    }
    mWriteHeaderStored = true;

    mWritePicture->format = mWriteMedia->pix_fmt;
    mWritePicture->width = mEncodedWidth;
    mWritePicture->height = mEncodedHeight;
    // Some encoders (ProRes) store the colour description of each frame, not the encoder's.
    mWritePicture->color_range = mWriteMedia->color_range;
    mWritePicture->colorspace = mWriteMedia->colorspace;
    mWritePicture->color_primaries = mWriteMedia->color_primaries;
    mWritePicture->color_trc = mWriteMedia->color_trc;
    mWritePicture->sample_aspect_ratio = mWriteMedia->sample_aspect_ratio;
    // A fixed quantiser scale goes with every frame; the encoder takes it from there.
    if ((mWriteMedia->flags & AV_CODEC_FLAG_QSCALE) != 0)
        mWritePicture->quality = mWriteMedia->global_quality;
    result = av_image_get_buffer_size(mWriteMedia->pix_fmt, mEncodedWidth, mEncodedHeight,
                                      kPictureAlignment);
    if (result > 0)
        mPicturePool =
            av_buffer_pool_init(static_cast<size_t>(result) + kPictureAlignment, nullptr);
    if (mPicturePool == nullptr || !TakePooledPicture()) {
        SetError("Not enough memory for a frame", result < 0 ? result : AVERROR(ENOMEM));
        return OpenResult::kFailed;
    }
    if (mWriteMedia->codec_id == AV_CODEC_ID_RAWVIDEO && mWriteMedia->pix_fmt == AV_PIX_FMT_RGB24) {
        mPacketPool = av_buffer_pool_init(
            static_cast<size_t>(3) * mEncodedWidth * mEncodedHeight + AV_INPUT_BUFFER_PADDING_SIZE,
            nullptr);
        if (mPacketPool == nullptr) {
            SetError("Not enough memory for a frame", AVERROR(ENOMEM));
            return OpenResult::kFailed;
        }
    }
    if (!MakeWriteScaler(AV_PIX_FMT_BGRA))
        return OpenResult::kFailed;
    if (mEncodedWidth != request.width || mEncodedHeight != request.height)
        mPadded.assign(static_cast<size_t>(4) * mEncodedWidth * mEncodedHeight, 0);
    mWriteNextPts = 0;
    return OpenResult::kOpened;
}

// The frame's rows at the encoded size, top-down: each row with its last pixel repeated, the
// last row repeated below.
FFFrameRows PadFrame(const FFFrameRows& frame)
{
    size_t given = static_cast<size_t>(4) * mWriteWidth;
    size_t padded = static_cast<size_t>(4) * mEncodedWidth;
    for (int y = 0; y < mEncodedHeight; ++y) {
        const unsigned char* from = frame.top + frame.stride * std::min(y, mWriteHeight - 1);
        unsigned char* to = mPadded.data() + padded * static_cast<size_t>(y);
        std::memcpy(to, from, given);
        for (size_t x = given; x < padded; x += 4)
            std::memcpy(to + x, from + given - 4, 4);
    }
    return FFFrameRows{mPadded.data(), static_cast<ptrdiff_t>(padded), frame.order};
}

// The codes to try for the container, best first: the one asked for, then the fallbacks.
std::vector<const char*> TypesForContainer(const AVOutputFormat* container, const char* type)
{
    std::vector<const char*> types;
    auto add = [&](const CodecPlan* plan) {
        if (plan == nullptr || ProbeEncoder(plan->type) == nullptr ||
            !ContainerTakes(container, plan->id))
            return;
        for (const char* known : types) {
            if (known == plan->type)
                return;
        }
        types.push_back(plan->type);
    };
    add(FindPlan(type));
    for (const char* other : kFallbackOrder)
        add(FindPlan(other));
    return types;
}

}  // namespace

bool FFOpenMovieWriter(const FFWriteRequest& request)
{
    TakeOverFFmpegLog();
    FFCloseMovieWriter();
    if (request.path == nullptr || request.path[0] == '\0') {
        SetError("No movie file named");
        return false;
    }
    if (request.width < 1 || request.height < 1 || request.timeScale < 1 ||
        request.timeScale > INT32_MAX) {
        SetError("A movie needs a frame size and a frame rate");
        return false;
    }
    const AVOutputFormat* container = request.container != nullptr
                                          ? av_guess_format(request.container, nullptr, nullptr)
                                          : ContainerFor(request.path);
    if (container == nullptr) {
        SetError(std::string("This FFmpeg cannot write ") +
                 (request.container != nullptr ? request.container : "QuickTime") + " movies");
        return false;
    }
    for (const char* type : TypesForContainer(container, request.type)) {
        OpenResult result = OpenWriterAs(request, container, type);
        if (result == OpenResult::kOpened) {
            // A codec the container refused on the way is no failure of the movie, but the user
            // asked for it and is told what was used instead.
            FFClearMovieError();
            if (std::strncmp(type, request.type, 4) != 0)
                Notice(std::string("The ") + container->name + " container cannot hold " +
                       CodecTitle(request.type) + ": writing " + CodecTitle(type) + " instead");
            if (mEncodedWidth != request.width || mEncodedHeight != request.height)
                Notice(CodecTitle(type) + " needs even sides: the " +
                       std::to_string(request.width) + "x" + std::to_string(request.height) +
                       " frames are padded to " + std::to_string(mEncodedWidth) + "x" +
                       std::to_string(mEncodedHeight) + ", the last column or row repeated");
            return true;
        }
        if (result == OpenResult::kFailed)
            return false;
        ReleaseWriter(true);
    }
    SetError(std::string("No codec of this FFmpeg can be written into a ") + container->name +
             " file");
    return false;
}

bool FFWriteMovieFrame(const unsigned char* frame, bool addSample)
{
    return FFWriteMovieRows(
        FFFrameRows{frame, static_cast<ptrdiff_t>(4) * mWriteWidth, FFPixelOrder::kArgb},
        addSample);
}

namespace {

// An opaque frame of an uncompressed RGB track, reordered straight into its packet: the encoder
// would only copy the rows, tightly packed, into a packet of its own.
bool StoreRgbPacket(const FFFrameRows& frame, bool addSample)
{
    AVBufferRef* memory = av_buffer_pool_get(mPacketPool);
    if (memory == nullptr) {
        SetError("Not enough memory for a frame", AVERROR(ENOMEM));
        return false;
    }
    const ptrdiff_t rowBytes = static_cast<ptrdiff_t>(3) * mEncodedWidth;
    BgraRowsToRgb(frame.top, frame.stride, mEncodedWidth, mEncodedHeight, memory->data, rowBytes);
    if (!addSample) {  // a priming frame is converted, not stored
        av_buffer_unref(&memory);
        return true;
    }
    const int bytes = static_cast<int>(rowBytes * mEncodedHeight);
    std::memset(memory->data + bytes, 0, AV_INPUT_BUFFER_PADDING_SIZE);
    av_packet_unref(mCompressedData);
    mCompressedData->buf = memory;
    mCompressedData->data = memory->data;
    mCompressedData->size = bytes;
    mCompressedData->pts = mWriteNextPts;
    mCompressedData->dts = mWriteNextPts;
    mCompressedData->flags = AV_PKT_FLAG_KEY;
    mWriteNextPts += kFrameDuration;
    return StorePacket();
}

}  // namespace

bool FFWriteMovieRows(const FFFrameRows& given, bool addSample)
{
    if (mWriteMedia == nullptr || mWriteScaler == nullptr || !mWriteHeaderStored ||
        given.top == nullptr) {
        SetError("No movie is open for writing");
        return false;
    }
    FFFrameRows frame = mPadded.empty() ? given : PadFrame(given);
    if (mPacketPool != nullptr && frame.order == FFPixelOrder::kBgra)
        return StoreRgbPacket(frame, addSample);
    // The encoder's threads may still be reading the last frame.
    if (av_frame_is_writable(mWritePicture) == 0 && !TakePooledPicture()) {
        SetError("Not enough memory for a frame", AVERROR(ENOMEM));
        return false;
    }
    if (!MakeWriteScaler(frame.order == FFPixelOrder::kBgra ? AV_PIX_FMT_BGRA : AV_PIX_FMT_ARGB))
        return false;
    if (frame.order == FFPixelOrder::kBgra && mWriteMedia->pix_fmt == AV_PIX_FMT_RGB24) {
        // Opaque frames of PNG and animation movies (and uncompressed ones from other rows):
        // only the bytes move, and swscale does that one pixel at a time.
        BgraRowsToRgb(frame.top, frame.stride, mEncodedWidth, mEncodedHeight,
                      mWritePicture->data[0], mWritePicture->linesize[0]);
    } else {
        // swscale walks the rows by the stride, so bottom-up storage goes in as it is.
        const uint8_t* planes[4] = {frame.top, nullptr, nullptr, nullptr};
        const int strides[4] = {static_cast<int>(frame.stride), 0, 0, 0};
        if (sws_scale(mWriteScaler, planes, strides, 0, mEncodedHeight, mWritePicture->data,
                      mWritePicture->linesize) != mEncodedHeight) {
            SetError("Cannot convert a frame");
            return false;
        }
    }
    // The encoder has no way to take a frame and drop what it makes of it without breaking the
    // frames that follow, so a priming frame stops here: it has been converted, not encoded.
    if (!addSample)
        return true;
    mWritePicture->pts = mWriteNextPts;
    mWriteNextPts += kFrameDuration;
    int result = avcodec_send_frame(mWriteMedia, mWritePicture);
    if (result < 0) {
        SetError("Cannot compress a frame", result);
        return false;
    }
    if (!StoreReadyPackets()) {
        return false;
    }
    return true;
}

bool FFCloseMovieWriter()
{
    // Nothing stored yet (nothing open, or an open that failed) means nothing to finish.
    bool stored = true;
    bool complete = mWriteHeaderStored;
    if (mWriteHeaderStored) {
        if (avcodec_send_frame(mWriteMedia, nullptr) < 0 || !StoreReadyPackets())
            stored = false;
        int result = av_write_trailer(mWriteMovie);
        if (result < 0) {
            SetError("Cannot finish the movie", result);
            stored = false;
        }
        // Every byte must have reached the file before it takes the movie's name.
        if (mWriteMovie->pb != nullptr && (mWriteMovie->oformat->flags & AVFMT_NOFILE) == 0) {
            result = avio_closep(&mWriteMovie->pb);
            if (stored && result < 0) {
                SetError("Cannot write the movie " + mWritePath, result);
                stored = false;
            }
        }
        if (stored && mWriteReplacement != nullptr && !mWriteReplacement->Commit()) {
            SetError(mWriteReplacement->Error());
            stored = false;
        }
        complete = stored;
    }
    ReleaseWriter(!complete);
    return stored;
}

void FFSetNoticeHook(void (*hook)(const char* text, void* context), void* context)
{
    mNoticeHook = hook;
    mNoticeContext = context;
}

bool FFContainerTakes(const char* path, const char* type)
{
    const CodecPlan* plan = FindPlan(type);
    const AVOutputFormat* container = path != nullptr ? ContainerFor(path) : nullptr;
    return plan != nullptr && container != nullptr && ContainerTakes(container, plan->id);
}

std::string FFWritingType() { return mWriteMedia != nullptr ? mWriteType : std::string(); }

bool FFMovieStoresAlpha()
{
    if (mWriteMedia == nullptr || !mWriteHeaderStored)
        return false;
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(mWriteMedia->pix_fmt);
    return descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

// ---- [SECTION] Reading ----------------------------------------------------------------------

namespace {

AVFormatContext* mReadMovie = nullptr;  // the movie file being read
AVCodecContext* mReadMedia = nullptr;   // the decoder of its video stream
AVFrame* mReadShown = nullptr;          // the frame showing at the last time asked for
AVFrame* mReadAhead = nullptr;          // the next frame, decoded but not yet shown
AVPacket* mReadPacket = nullptr;
SwsContext* mReadScaler = nullptr;  // decoded pixel format to the frame buffer
AVFrame* mReadConverted = nullptr;  // a decoded frame converted, in rows padded for swscale
int mReadStream = -1;
int mReadWidth = 0;
int mReadHeight = 0;
int64_t mReadStart = 0;                            // the stream's first time, in its time base
AVColorSpace mReadMatrix = AVCOL_SPC_UNSPECIFIED;  // the matrix the container names
int64_t mReadShownPts = 0;
int64_t mReadAheadPts = 0;
int64_t mReadLastPts = -1;
bool mReadShownValid = false;
bool mReadAheadValid = false;
bool mReadDraining = false;  // the end of the file has been handed to the decoder
bool mReadAtStart = true;    // nothing read since open or the last seek to the start

int64_t PtsOf(const AVFrame* frame)
{
    if (frame->best_effort_timestamp != AV_NOPTS_VALUE)
        return frame->best_effort_timestamp;
    if (frame->pts != AV_NOPTS_VALUE)
        return frame->pts;
    return mReadLastPts + 1;
}

// The next decoded frame into `frame`: 0, AVERROR_EOF at the end, another error on failure.
int DecodeNext(AVFrame* frame)
{
    for (;;) {
        int result = avcodec_receive_frame(mReadMedia, frame);
        if (result == 0) {
            mReadLastPts = PtsOf(frame);
            return 0;
        }
        if (result != AVERROR(EAGAIN))
            return result;
        if (mReadDraining)
            return AVERROR_EOF;
        result = av_read_frame(mReadMovie, mReadPacket);
        mReadAtStart = false;
        if (result == AVERROR_EOF) {
            mReadDraining = true;
            result = avcodec_send_packet(mReadMedia, nullptr);
            if (result < 0 && result != AVERROR_EOF)
                return result;
            continue;
        }
        if (result < 0)
            return result;
        if (mReadPacket->stream_index == mReadStream) {
            result = avcodec_send_packet(mReadMedia, mReadPacket);
            av_packet_unref(mReadPacket);
            // A damaged packet is skipped: the next one may decode.
            if (result < 0 && result != AVERROR(EAGAIN) && result != AVERROR_INVALIDDATA)
                return result;
        } else {
            av_packet_unref(mReadPacket);
        }
    }
}

bool SeekTo(int64_t pts)
{
    int result = av_seek_frame(mReadMovie, mReadStream, pts, AVSEEK_FLAG_BACKWARD);
    if (result < 0)
        result = avformat_seek_file(mReadMovie, mReadStream, INT64_MIN, pts, pts, 0);
    if (result < 0) {
        SetError("Cannot find the frame", result);
        return false;
    }
    avcodec_flush_buffers(mReadMedia);
    mReadDraining = false;
    mReadShownValid = false;
    mReadAheadValid = false;
    mReadAtStart = false;
    return true;
}

bool ConvertShown(unsigned char* out)
{
    AVPixelFormat format = static_cast<AVPixelFormat>(mReadShown->format);
    mReadScaler = sws_getCachedContext(mReadScaler, mReadShown->width, mReadShown->height, format,
                                       mReadWidth, mReadHeight, AV_PIX_FMT_ARGB,
                                       SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr,
                                       nullptr, nullptr);
    if (mReadScaler == nullptr) {
        SetError(std::string("Cannot convert frames from ") +
                 (av_get_pix_fmt_name(format) != nullptr ? av_get_pix_fmt_name(format) : "?"));
        return false;
    }
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    if (descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0) {
        // The matrix the frame names, else the one the container names; unnamed, the usual
        // guess by size (HD is BT.709).
        AVColorSpace named =
            mReadShown->colorspace != AVCOL_SPC_UNSPECIFIED ? mReadShown->colorspace : mReadMatrix;
        int matrix = SWS_CS_ITU601;
        if (named == AVCOL_SPC_BT709 ||
            (named == AVCOL_SPC_UNSPECIFIED && mReadShown->height >= 720))
            matrix = SWS_CS_ITU709;
        else if (named == AVCOL_SPC_BT2020_NCL || named == AVCOL_SPC_BT2020_CL)
            matrix = SWS_CS_BT2020;
        else if (named == AVCOL_SPC_SMPTE240M)
            matrix = SWS_CS_SMPTE240M;
        bool fullRange = mReadShown->color_range == AVCOL_RANGE_JPEG ||
                         format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P ||
                         format == AV_PIX_FMT_YUVJ444P;
        sws_setColorspaceDetails(mReadScaler, sws_getCoefficients(matrix), fullRange ? 1 : 0,
                                 sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    }
    // swscale's vector code may write past the end of a row whose width is not a whole number
    // of its vectors, so it writes into a frame with padded rows, not into the caller's buffer.
    if (mReadConverted == nullptr || mReadConverted->width != mReadWidth ||
        mReadConverted->height != mReadHeight) {
        av_frame_free(&mReadConverted);
        mReadConverted = av_frame_alloc();
        if (mReadConverted == nullptr) {
            SetError("Not enough memory for a frame", AVERROR(ENOMEM));
            return false;
        }
        mReadConverted->format = AV_PIX_FMT_ARGB;
        mReadConverted->width = mReadWidth;
        mReadConverted->height = mReadHeight;
        int result = av_frame_get_buffer(mReadConverted, 0);
        if (result < 0) {
            av_frame_free(&mReadConverted);
            SetError("Not enough memory for a frame", result);
            return false;
        }
    }
    if (sws_scale(mReadScaler, mReadShown->data, mReadShown->linesize, 0, mReadShown->height,
                  mReadConverted->data, mReadConverted->linesize) != mReadHeight) {
        SetError("Cannot convert a frame");
        return false;
    }
    size_t rowBytes = static_cast<size_t>(4) * mReadWidth;
    for (int y = 0; y < mReadHeight; ++y)
        std::memcpy(out + rowBytes * y, mReadConverted->data[0] + mReadConverted->linesize[0] * y,
                    rowBytes);
    return true;
}

}  // namespace

namespace {

// The sides a movie frame may have; the frame buffer and the CDIB it is copied into are made
// only for sizes within them.
constexpr int kLargestReadSide = 8192;

bool ReadableSize(int width, int height)
{
    return width >= 1 && height >= 1 && width <= kLargestReadSide && height <= kLargestReadSide;
}

// A video stream whose header states a size out of range, before anything is decoded; 0 × 0
// means the header does not say and the decoder has to find out.
bool StatesUnreadableSize(const AVFormatContext* movie)
{
    for (unsigned i = 0; i < movie->nb_streams; ++i) {
        const AVCodecParameters* parameters = movie->streams[i]->codecpar;
        if (parameters->codec_type != AVMEDIA_TYPE_VIDEO)
            continue;
        if ((parameters->width != 0 || parameters->height != 0) &&
            !ReadableSize(parameters->width, parameters->height))
            return true;
    }
    return false;
}

// Decoders, also those the stream probe opens, refuse frames of more pixels than the largest
// readable frame has, whatever a packet states.
constexpr const char* kLargestReadPixels = "67108864";  // 8192 × 8192

bool OpenMovieReader(const char* path, int* width, int* height)
{
    std::string name = path;
    int result = avformat_open_input(&mReadMovie, path, nullptr, nullptr);
    if (result < 0) {
        SetError("Cannot open " + name, result);
        mReadMovie = nullptr;
        return false;
    }
    if (StatesUnreadableSize(mReadMovie)) {
        SetError(name + " states a frame size outside 1 to 8192 pixels");
        FFCloseMovieReader();
        return false;
    }
    // One set of decoder options per stream for the probe, each bounding the frame size.
    std::vector<AVDictionary*> probeOptions(mReadMovie->nb_streams, nullptr);
    for (AVDictionary*& options : probeOptions)
        av_dict_set(&options, "max_pixels", kLargestReadPixels, 0);
    result =
        avformat_find_stream_info(mReadMovie, probeOptions.empty() ? nullptr : probeOptions.data());
    for (AVDictionary*& options : probeOptions)
        av_dict_free(&options);
    if (result < 0) {
        SetError("Cannot read " + name, result);
        FFCloseMovieReader();
        return false;
    }
    const AVCodec* codec = nullptr;
    mReadStream = av_find_best_stream(mReadMovie, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (mReadStream < 0 || codec == nullptr) {
        SetError(name + " has no video that this FFmpeg decodes",
                 mReadStream < 0 ? mReadStream : 0);
        FFCloseMovieReader();
        return false;
    }
    AVStream* stream = mReadMovie->streams[mReadStream];
    // The size is checked before the decoder and its frames exist.
    if (!ReadableSize(stream->codecpar->width, stream->codecpar->height)) {
        SetError(name + " does not state a frame size of 1 to 8192 pixels");
        FFCloseMovieReader();
        return false;
    }
    mReadMedia = avcodec_alloc_context3(codec);
    mReadShown = av_frame_alloc();
    mReadAhead = av_frame_alloc();
    mReadPacket = av_packet_alloc();
    if (mReadMedia == nullptr || mReadShown == nullptr || mReadAhead == nullptr ||
        mReadPacket == nullptr) {
        SetError("Not enough memory to read " + name, AVERROR(ENOMEM));
        FFCloseMovieReader();
        return false;
    }
    result = avcodec_parameters_to_context(mReadMedia, stream->codecpar);
    if (result >= 0) {
        mReadMedia->pkt_timebase = stream->time_base;
        AVDictionary* options = nullptr;
        av_dict_set(&options, "max_pixels", kLargestReadPixels, 0);
        result = avcodec_open2(mReadMedia, codec, &options);
        av_dict_free(&options);
    }
    if (result < 0) {
        SetError(std::string("Cannot start the ") + codec->name + " decoder", result);
        FFCloseMovieReader();
        return false;
    }
    mReadWidth = stream->codecpar->width;
    mReadHeight = stream->codecpar->height;
    mReadStart = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
    mReadMatrix = stream->codecpar->color_space;
    mReadAtStart = true;
    *width = mReadWidth;
    *height = mReadHeight;
    return true;
}

}  // namespace

bool FFOpenMovieReader(const char* path, int* width, int* height)
{
    TakeOverFFmpegLog();
    FFCloseMovieReader();
    if (path == nullptr || path[0] == '\0' || width == nullptr || height == nullptr) {
        SetErrorNoThrow("No movie file named");
        return false;
    }
    try {
        return OpenMovieReader(path, width, height);
    } catch (...) {
        FFCloseMovieReader();
        SetErrorNoThrow("Not enough memory to open the movie");
        return false;
    }
}

long FFReadDuration()
{
    if (mReadMovie == nullptr)
        return 0;
    AVStream* stream = mReadMovie->streams[mReadStream];
    if (stream->duration != AV_NOPTS_VALUE)
        return static_cast<long>(stream->duration);
    if (mReadMovie->duration != AV_NOPTS_VALUE)
        return static_cast<long>(
            av_rescale_q(mReadMovie->duration, AV_TIME_BASE_Q, stream->time_base));
    return 0;
}

long FFReadTimeScale()
{
    if (mReadMovie == nullptr)
        return 0;
    AVRational base = mReadMovie->streams[mReadStream]->time_base;
    return base.num == 1 ? base.den : static_cast<long>(av_rescale(1, base.den, base.num));
}

bool FFReadMovieFrame(long time, unsigned char* frame)
try {
    if (mReadMovie == nullptr || frame == nullptr) {
        SetError("No movie is open for reading");
        return false;
    }
    int64_t target = mReadStart + time;
    // Going back, or jumping from nothing, needs a seek; going forward decodes on from here.
    if (!mReadShownValid || target < mReadShownPts) {
        if (!mReadAtStart && !SeekTo(target))
            return false;
    }
    for (;;) {
        if (!mReadAheadValid) {
            int result = DecodeNext(mReadAhead);
            if (result == AVERROR_EOF)
                break;
            if (result < 0) {
                SetError("Cannot decode a frame", result);
                return false;
            }
            mReadAheadValid = true;
            mReadAheadPts = PtsOf(mReadAhead);
        }
        if (mReadShownValid && mReadAheadPts > target)
            break;
        std::swap(mReadShown, mReadAhead);
        mReadShownPts = mReadAheadPts;
        mReadShownValid = true;
        mReadAheadValid = false;
        av_frame_unref(mReadAhead);
    }
    if (!mReadShownValid) {
        SetError("The movie has no frame to show");
        return false;
    }
    return ConvertShown(frame);
} catch (...) {
    // Only the failure texts allocate here.
    SetErrorNoThrow("Not enough memory to read a frame");
    return false;
}

void FFCloseMovieReader()
{
    sws_freeContext(mReadScaler);
    mReadScaler = nullptr;
    av_frame_free(&mReadConverted);
    av_frame_free(&mReadShown);
    av_frame_free(&mReadAhead);
    av_packet_free(&mReadPacket);
    avcodec_free_context(&mReadMedia);
    if (mReadMovie != nullptr)
        avformat_close_input(&mReadMovie);
    mReadStream = -1;
    mReadWidth = 0;
    mReadHeight = 0;
    mReadStart = 0;
    mReadMatrix = AVCOL_SPC_UNSPECIFIED;
    mReadShownPts = 0;
    mReadAheadPts = 0;
    mReadLastPts = -1;
    mReadShownValid = false;
    mReadAheadValid = false;
    mReadDraining = false;
    mReadAtStart = true;
}

// ---- [SECTION] Inspection -------------------------------------------------------------------

const char* FFMovieError()
{
    std::lock_guard<std::mutex> lock(mErrorMutex);
    return mLastError.c_str();
}

void FFClearMovieError()
{
    std::lock_guard<std::mutex> lock(mErrorMutex);
    mLastError.clear();
    mLastLogLine.clear();
}

void FFSetMovieError(const char* text) { SetErrorNoThrow(text != nullptr ? text : ""); }

bool FFProbeMovieFile(const char* path, FFMovieFacts* facts)
{
    TakeOverFFmpegLog();
    *facts = FFMovieFacts();
    AVFormatContext* movie = nullptr;
    if (avformat_open_input(&movie, path, nullptr, nullptr) < 0)
        return false;
    if (avformat_find_stream_info(movie, nullptr) < 0) {
        avformat_close_input(&movie);
        return false;
    }
    int video = -1;
    for (unsigned i = 0; i < movie->nb_streams; ++i) {
        if (movie->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO) {
            ++facts->videoStreams;
            if (video < 0)
                video = static_cast<int>(i);
        } else {
            ++facts->otherStreams;
        }
    }
    facts->container = movie->iformat->name;
    if (video < 0) {
        avformat_close_input(&movie);
        return true;
    }
    AVStream* stream = movie->streams[video];
    const AVCodecParameters* parameters = stream->codecpar;
    facts->codec = avcodec_get_name(parameters->codec_id);
    if (parameters->codec_tag != 0) {
        for (int i = 0; i < 4; ++i)
            facts->tag[i] = static_cast<char>((parameters->codec_tag >> (8 * i)) & 0xFF);
    }
    facts->width = parameters->width;
    facts->height = parameters->height;
    facts->timeBaseNum = stream->time_base.num;
    facts->timeBaseDen = stream->time_base.den;
    facts->duration = stream->duration != AV_NOPTS_VALUE ? stream->duration : -1;
    const AVPixFmtDescriptor* descriptor =
        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(parameters->format));
    facts->alpha = descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
    AVPacket* packet = av_packet_alloc();
    bool first = true;
    while (packet != nullptr && av_read_frame(movie, packet) >= 0) {
        if (packet->stream_index == video) {
            ++facts->packets;
            if ((packet->flags & AV_PKT_FLAG_KEY) != 0)
                ++facts->keyPackets;
            if (packet->pts != AV_NOPTS_VALUE) {
                if (first || packet->pts < facts->firstPts)
                    facts->firstPts = packet->pts;
                facts->lastEnd =
                    std::max<long long>(facts->lastEnd, packet->pts + packet->duration);
                first = false;
            }
        }
        av_packet_unref(packet);
    }
    av_packet_free(&packet);
    avformat_close_input(&movie);
    return true;
}
