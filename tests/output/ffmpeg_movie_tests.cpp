// The FFmpeg back end on its own: the encoders behind the codes and their quality settings, the
// containers chosen by extension and the time bases they keep, which frame the reader shows at
// a time, and failures that leave no file behind. Files are read back with the demuxer alone
// (FFProbeMovieFile) as well as through the reader.

#include "output/ffmpeg_movie.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "support/file_size_limit.h"
#include "support/temp_dir.h"

namespace {

const char* const kAllTypes[] = {"avc1", "apcn", "mjpa", "png ", "rle ", "raw "};

// A frame buffer as the back end takes it: alpha, red, green, blue; rows top-down.
struct Buffer {
    Buffer(int w, int h) : width(w), height(h), bytes(static_cast<size_t>(4) * w * h, 0) {}

    unsigned char* Pixel(int x, int y)
    {
        return bytes.data() + (static_cast<size_t>(y) * width + x) * 4;
    }
    void Fill(unsigned char alpha, unsigned char red, unsigned char green, unsigned char blue)
    {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                unsigned char* p = Pixel(x, y);
                p[0] = alpha;
                p[1] = red;
                p[2] = green;
                p[3] = blue;
            }
        }
    }
    // Pseudo-random bytes that compress badly, so quality shows in the size.
    void Noise(unsigned seed)
    {
        for (unsigned char& byte : bytes) {
            seed = seed * 1103515245u + 12345u;
            byte = static_cast<unsigned char>(seed >> 16);
        }
    }
    // The mean of one channel (1 red, 2 green, 3 blue) over the buffer.
    double Mean(int channel) const
    {
        double sum = 0.0;
        for (size_t i = static_cast<size_t>(channel); i < bytes.size(); i += 4)
            sum += bytes[i];
        return sum / (static_cast<double>(width) * height);
    }

    int width;
    int height;
    std::vector<unsigned char> bytes;
};

FFWriteRequest Request(const std::string& path, const char* type, int width, int height,
                       long timeScale = 2997)
{
    FFWriteRequest request;
    request.path = path.c_str();
    request.width = width;
    request.height = height;
    request.timeScale = timeScale;
    std::memcpy(request.type, type, 4);
    return request;
}

// Writes the buffer `frames` times; true when every frame and the close went through.
bool WriteFrames(const FFWriteRequest& request, Buffer& buffer, int frames)
{
    if (!FFOpenMovieWriter(request))
        return false;
    bool written = true;
    for (int i = 0; i < frames && written; ++i)
        written = FFWriteMovieFrame(buffer.bytes.data(), true);
    return FFCloseMovieWriter() && written;
}

std::string Brand(const std::string& path)
{
    std::vector<unsigned char> bytes = pxtest::ReadBytes(path);
    if (bytes.size() < 12 || std::memcmp(bytes.data() + 4, "ftyp", 4) != 0)
        return "";
    return std::string(reinterpret_cast<const char*>(bytes.data() + 8), 4);
}

long FileSize(const std::string& path) { return static_cast<long>(pxtest::ReadBytes(path).size()); }

#define REQUIRE_ENCODER(type) \
    if (!FFHasEncoder(type))  \
    GTEST_SKIP() << "this FFmpeg has no encoder for '" << (type) << "'"

class FFMovie : public testing::Test {
protected:
    void SetUp() override { FFClearMovieError(); }
    void TearDown() override
    {
        FFCloseMovieWriter();
        FFCloseMovieReader();
    }

    pxtest::TempDir dir;
};

// ---- Codecs -----------------------------------------------------------------------------------

TEST_F(FFMovie, EveryCodeThatHasAnEncoderNamesIt)
{
    int available = 0;
    for (const char* type : kAllTypes) {
        EXPECT_EQ(FFHasEncoder(type), !FFEncoderName(type).empty()) << type;
        available += FFHasEncoder(type) ? 1 : 0;
    }
    // The native encoders of every FFmpeg build: Motion JPEG, PNG, Animation and raw frames.
    EXPECT_GE(available, 4);
    EXPECT_EQ(FFEncoderName("png "), "png");
    EXPECT_EQ(FFEncoderName("rle "), "qtrle");
    EXPECT_EQ(FFEncoderName("raw "), "rawvideo");
    EXPECT_EQ(FFEncoderName("mjpa"), "mjpeg");
}

TEST_F(FFMovie, UnknownOrShortCodesHaveNoEncoder)
{
    EXPECT_FALSE(FFHasEncoder("xvid"));
    EXPECT_FALSE(FFHasEncoder("png"));
    EXPECT_FALSE(FFHasEncoder(""));
    EXPECT_FALSE(FFHasEncoder(nullptr));
    EXPECT_EQ(FFEncoderName("xvid"), "");
    EXPECT_EQ(FFEncoderQuality("xvid", 512), "");
}

TEST_F(FFMovie, QualityStepsBecomeTheJpegScale)
{
    EXPECT_EQ(FFEncoderQuality("mjpa", 0), "qscale 24");
    EXPECT_EQ(FFEncoderQuality("mjpa", 256), "qscale 12");
    EXPECT_EQ(FFEncoderQuality("mjpa", 512), "qscale 6");
    EXPECT_EQ(FFEncoderQuality("mjpa", 768), "qscale 3");
    EXPECT_EQ(FFEncoderQuality("mjpa", 1023), "qscale 1");
}

TEST_F(FFMovie, FlashVideoQualityRunsTheWholeQuantiserScale)
{
    REQUIRE_ENCODER("flv1");
    EXPECT_EQ(FFEncoderName("flv1"), "flv");
    EXPECT_EQ(FFEncoderQuality("flv1", 0), "qscale 31");
    EXPECT_EQ(FFEncoderQuality("flv1", 767), "qscale 9");
    EXPECT_EQ(FFEncoderQuality("flv1", 1023), "qscale 1");
}

TEST_F(FFMovie, NamedContainerWinsOverTheExtension)
{
    REQUIRE_ENCODER("flv1");
    std::string path = dir.File("flash.bin");
    FFWriteRequest request = Request(path, "flv1", 32, 24, 3000);
    request.container = "swf";
    ASSERT_TRUE(FFOpenMovieWriter(request)) << FFMovieError();
    std::vector<unsigned char> frame(static_cast<size_t>(4) * request.width * request.height, 128);
    ASSERT_TRUE(FFWriteMovieFrame(frame.data(), true));
    ASSERT_TRUE(FFCloseMovieWriter()) << FFMovieError();
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.container, "swf");
    EXPECT_EQ(facts.codec, "flv1");
    EXPECT_EQ(facts.packets, 1);
}

TEST_F(FFMovie, QualityStepsBecomeTheH264RateFactor)
{
    REQUIRE_ENCODER("avc1");
    if (FFEncoderName("avc1") != "libx264")
        GTEST_SKIP() << "H.264 here is " << FFEncoderName("avc1") << ", which keeps its own rate";
    EXPECT_EQ(FFEncoderQuality("avc1", 0), "crf 35");
    EXPECT_EQ(FFEncoderQuality("avc1", 256), "crf 28");
    EXPECT_EQ(FFEncoderQuality("avc1", 512), "crf 23");
    EXPECT_EQ(FFEncoderQuality("avc1", 768), "crf 18");
    EXPECT_EQ(FFEncoderQuality("avc1", 1023), "crf 12");
}

TEST_F(FFMovie, H264UsesAFrameThreadAProcessorAndNoLookAheadBuffer)
{
    std::string threads =
        "threads=" + std::to_string(std::max(1u, std::thread::hardware_concurrency()));
    EXPECT_EQ(FFH264Params(), threads + ":sync-lookahead=0");
}

TEST_F(FFMovie, QualityStepsBecomeTheProResBitsPerMacroblock)
{
    REQUIRE_ENCODER("apcn");
    if (FFEncoderName("apcn") != "prores_ks")
        GTEST_SKIP() << "ProRes here is " << FFEncoderName("apcn") << ", which has no rate setting";
    EXPECT_EQ(FFEncoderQuality("apcn", 0), "bits_per_mb 250");
    EXPECT_EQ(FFEncoderQuality("apcn", 256), "bits_per_mb 450");
    EXPECT_EQ(FFEncoderQuality("apcn", 512), "bits_per_mb of the profile");
    EXPECT_EQ(FFEncoderQuality("apcn", 768), "bits_per_mb 1400");
    EXPECT_EQ(FFEncoderQuality("apcn", 1023), "bits_per_mb 2400");
}

TEST_F(FFMovie, LosslessCodecsTakeQualityAsEffortOrNotAtAll)
{
    EXPECT_EQ(FFEncoderQuality("png ", 0), "compression_level 1");
    EXPECT_EQ(FFEncoderQuality("png ", 512), "compression_level 6");
    EXPECT_EQ(FFEncoderQuality("png ", 1023), "compression_level 9");
    EXPECT_EQ(FFEncoderQuality("rle ", 0), "lossless");
    EXPECT_EQ(FFEncoderQuality("raw ", 1023), "lossless");
}

TEST_F(FFMovie, ValuesBetweenStepsTakeTheNearestStep)
{
    EXPECT_EQ(FFEncoderQuality("mjpa", 127), "qscale 24");
    EXPECT_EQ(FFEncoderQuality("mjpa", 128), "qscale 12");
    EXPECT_EQ(FFEncoderQuality("mjpa", 900), "qscale 1");
    EXPECT_EQ(FFEncoderQuality("mjpa", -5), "qscale 24");
    EXPECT_EQ(FFEncoderQuality("mjpa", 5000), "qscale 1");
}

TEST_F(FFMovie, BetterQualityMakesLargerFilesForLossyCodecs)
{
    for (const char* type : {"avc1", "apcn", "mjpa"}) {
        if (!FFHasEncoder(type))
            continue;
        long sizes[2] = {};
        for (int best = 0; best < 2; ++best) {
            std::string path = dir.File(std::string("q") + type[0] + std::to_string(best) + ".mov");
            FFWriteRequest request = Request(path, type, 96, 64);
            request.spatialQuality = best ? 1023 : 0;
            Buffer buffer(96, 64);
            ASSERT_TRUE(FFOpenMovieWriter(request)) << type << ": " << FFMovieError();
            for (unsigned i = 0; i < 4; ++i) {
                buffer.Noise(i + 1);
                ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
            }
            ASSERT_TRUE(FFCloseMovieWriter());
            sizes[best] = FileSize(path);
        }
        EXPECT_GT(sizes[1], sizes[0] * 3 / 2) << type;
    }
}

// ---- Writing ----------------------------------------------------------------------------------

TEST_F(FFMovie, TrackKeepsTheTimeScaleAndEveryFrameLasts100Units)
{
    std::string path = dir.File("scale.mov");
    Buffer buffer(16, 16);
    buffer.Fill(255, 10, 20, 30);
    ASSERT_TRUE(WriteFrames(Request(path, "png ", 16, 16, 2500), buffer, 10));
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.timeBaseNum, 1);
    EXPECT_EQ(facts.timeBaseDen, 2500);
    EXPECT_EQ(facts.duration, 1000);
    EXPECT_EQ(facts.packets, 10);
    EXPECT_EQ(facts.firstPts, 0);
    EXPECT_EQ(facts.lastEnd, 1000);
    EXPECT_EQ(facts.videoStreams, 1);
    EXPECT_EQ(facts.otherStreams, 0);
}

TEST_F(FFMovie, ContainerFollowsTheExtension)
{
    Buffer buffer(16, 16);
    buffer.Fill(255, 200, 100, 50);
    struct Case {
        const char* name;
        const char* container;
        const char* brand;
    };
    const Case cases[] = {{"a.mov", "mov,mp4,m4a,3gp,3g2,mj2", "qt  "},
                          {"a.mp4", "mov,mp4,m4a,3gp,3g2,mj2", "isom"},
                          {"a.mkv", "matroska,webm", ""},
                          {"a.avi", "avi", ""},
                          {"A.MOV", "mov,mp4,m4a,3gp,3g2,mj2", "qt  "}};
    for (const Case& each : cases) {
        std::string path = dir.File(each.name);
        ASSERT_TRUE(WriteFrames(Request(path, "mjpa", 16, 16), buffer, 3))
            << each.name << ": " << FFMovieError();
        FFMovieFacts facts;
        ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts)) << each.name;
        EXPECT_EQ(facts.container, each.container) << each.name;
        EXPECT_EQ(Brand(path), each.brand) << each.name;
        EXPECT_EQ(facts.codec, "mjpeg") << each.name;
        EXPECT_EQ(facts.packets, 3) << each.name;
    }
}

TEST_F(FFMovie, NameWithoutAKnownExtensionMakesAQuickTimeMovie)
{
    Buffer buffer(16, 16);
    for (const char* name : {"movie", "movie.px", "movie.txt"}) {
        std::string path = dir.File(name);
        ASSERT_TRUE(WriteFrames(Request(path, "png ", 16, 16), buffer, 2))
            << name << ": " << FFMovieError();
        EXPECT_EQ(Brand(path), "qt  ") << name;
    }
}

TEST_F(FFMovie, AviStoresOneTickPerFrame)
{
    std::string path = dir.File("ticks.avi");
    Buffer buffer(16, 16);
    ASSERT_TRUE(WriteFrames(Request(path, "mjpa", 16, 16, 2997), buffer, 6));
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    // 29.97 frames per second as 2997 / 100; no empty frames between the real ones.
    EXPECT_EQ(facts.timeBaseNum * 2997, facts.timeBaseDen * 100);
    EXPECT_EQ(facts.packets, 6);
    EXPECT_EQ(facts.duration, 6);
}

TEST_F(FFMovie, CodecTheContainerRefusesGivesWayToOneItTakes)
{
    REQUIRE_ENCODER("avc1");
    Buffer buffer(16, 16);
    // The muxer says in advance that MP4 holds no Animation frames.
    std::string mp4 = dir.File("rle.mp4");
    ASSERT_TRUE(FFOpenMovieWriter(Request(mp4, "rle ", 16, 16))) << FFMovieError();
    EXPECT_EQ(FFWritingType(), "avc1");
    ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
    ASSERT_TRUE(FFCloseMovieWriter());
    // Matroska refuses raw RGB only when its header is written.
    std::string mkv = dir.File("raw.mkv");
    ASSERT_TRUE(FFOpenMovieWriter(Request(mkv, "raw ", 16, 16))) << FFMovieError();
    EXPECT_EQ(FFWritingType(), "avc1");
    EXPECT_STREQ(FFMovieError(), "");
    ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
    ASSERT_TRUE(FFCloseMovieWriter());
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(mp4.c_str(), &facts));
    EXPECT_EQ(facts.codec, "h264");
    ASSERT_TRUE(FFProbeMovieFile(mkv.c_str(), &facts));
    EXPECT_EQ(facts.codec, "h264");
    EXPECT_EQ(facts.packets, 1);
    EXPECT_EQ(FFWritingType(), "");
}

TEST_F(FFMovie, FrameWithoutSampleAddsNoPacket)
{
    std::string path = dir.File("prime.mov");
    Buffer buffer(16, 16);
    ASSERT_TRUE(FFOpenMovieWriter(Request(path, "png ", 16, 16)));
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), false));
    ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
    ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), false));
    ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
    ASSERT_TRUE(FFCloseMovieWriter());
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.packets, 2);
    EXPECT_EQ(facts.duration, 200);
}

TEST_F(FFMovie, UnwritablePathFailsWithAReasonAndLeavesNoFile)
{
    std::string path = dir.File("missing/folder.mov");
    EXPECT_FALSE(FFOpenMovieWriter(Request(path, "png ", 16, 16)));
    EXPECT_NE(std::string(FFMovieError()).find("No such file or directory"), std::string::npos)
        << FFMovieError();
    EXPECT_TRUE(FFCloseMovieWriter());
    EXPECT_FALSE(pxtest::FileExists(path));
}

TEST_F(FFMovie, OddSizedH264IsPaddedTo420AndSaysSo)
{
    REQUIRE_ENCODER("avc1");
    std::vector<std::string> notices;
    FFSetNoticeHook(
        [](const char* text, void* heard) {
            static_cast<std::vector<std::string>*>(heard)->push_back(text);
        },
        &notices);
    std::string path = dir.File("odd.mp4");
    Buffer buffer(641, 361);
    buffer.Fill(255, 180, 90, 40);
    bool written = WriteFrames(Request(path, "avc1", 641, 361), buffer, 2);
    FFSetNoticeHook(nullptr, nullptr);
    ASSERT_TRUE(written) << FFMovieError();
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.width, 642);
    EXPECT_EQ(facts.height, 362);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0],
              "H.264 (avc1) needs even sides: the 641x361 frames are padded to 642x362, the last "
              "column or row repeated");
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height));
    Buffer back(width, height);
    ASSERT_TRUE(FFReadMovieFrame(0, back.bytes.data()));
    FFCloseMovieReader();
    EXPECT_NEAR(back.Mean(1), 180, 3);
    EXPECT_NEAR(back.Mean(3), 40, 3);
}

TEST_F(FFMovie, CodecTheContainerRefusesIsNamedWithTheOneUsed)
{
    REQUIRE_ENCODER("avc1");
    REQUIRE_ENCODER("apcn");
    std::vector<std::string> notices;
    FFSetNoticeHook(
        [](const char* text, void* heard) {
            static_cast<std::vector<std::string>*>(heard)->push_back(text);
        },
        &notices);
    Buffer buffer(16, 16);
    bool written = WriteFrames(Request(dir.File("prores.avi"), "apcn", 16, 16), buffer, 1);
    FFSetNoticeHook(nullptr, nullptr);
    ASSERT_TRUE(written) << FFMovieError();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0],
              "The avi container cannot hold ProRes 422 (apcn): writing H.264 (avc1) instead");
    EXPECT_FALSE(FFContainerTakes("x.avi", "apcn"));
    EXPECT_TRUE(FFContainerTakes("x.mov", "apcn"));
    EXPECT_TRUE(FFContainerTakes("x.mkv", "apcn"));
    EXPECT_FALSE(FFContainerTakes("x.mp4", "rle "));
    EXPECT_TRUE(FFContainerTakes("x.avi", "png "));
}

TEST_F(FFMovie, MovieTakesItsNameOnlyWhenClosedAndAFailedOneLeavesTheOldFile)
{
    std::string path = dir.File("take.mov");
    ASSERT_TRUE(pxtest::WriteText(path, "the previous movie"));
    Buffer buffer(128, 128);
    buffer.Noise(3);
    ASSERT_TRUE(FFOpenMovieWriter(Request(path, "png ", 128, 128)));
    ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
    EXPECT_EQ(pxtest::ReadText(path), "the previous movie") << "frames go to a file beside it";
    ASSERT_TRUE(FFCloseMovieWriter());
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.packets, 1);

    ASSERT_TRUE(pxtest::WriteText(path, "the previous movie"));
    bool written = true;
    {
        pxtest::FileSizeLimit limit(20 * 1024);
        ASSERT_TRUE(FFOpenMovieWriter(Request(path, "raw ", 128, 128)));
        for (int i = 0; i < 4 && written; ++i)
            written = FFWriteMovieFrame(buffer.bytes.data(), true);
        written = FFCloseMovieWriter() && written;
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(pxtest::ReadText(path), "the previous movie");
    EXPECT_EQ(std::system(("test $(ls -A " + dir.Path() + " | wc -l) -eq 1").c_str()), 0)
        << "no temporary file is left";
}

TEST_F(FFMovie, FolderStandingWhereTheMovieGoesFailsAndIsLeftAlone)
{
    // A folder stands where the movie should go: the file cannot be made at all.
    std::string folder = dir.File("taken.mov");
    ASSERT_EQ(std::system(("mkdir " + folder).c_str()), 0);
    EXPECT_FALSE(FFOpenMovieWriter(Request(folder, "png ", 16, 16)));
    EXPECT_NE(std::string(FFMovieError()), "");
    FFCloseMovieWriter();
    EXPECT_TRUE(pxtest::FileExists(folder));
}

TEST_F(FFMovie, MovieThatCannotBeFinishedIsRemoved)
{
    std::string path = dir.File("full.mov");
    Buffer buffer(128, 128);
    buffer.Noise(7);
    bool written = true;
    bool closed = true;
    {
        // The disk is "full" after 100 KB: raw 128 x 128 frames pass that by the second frame.
        pxtest::FileSizeLimit limit(100 * 1024);
        ASSERT_TRUE(FFOpenMovieWriter(Request(path, "raw ", 128, 128)));
        for (int i = 0; i < 8 && written; ++i)
            written = FFWriteMovieFrame(buffer.bytes.data(), true);
        closed = FFCloseMovieWriter();
    }
    EXPECT_FALSE(written);
    EXPECT_FALSE(closed);
    EXPECT_NE(std::string(FFMovieError()), "");
    EXPECT_FALSE(pxtest::FileExists(path));
}

TEST_F(FFMovie, ExistingFileIsReplaced)
{
    std::string path = dir.File("again.mov");
    ASSERT_TRUE(pxtest::WriteText(path, std::string(100000, 'x')));
    Buffer buffer(16, 16);
    ASSERT_TRUE(WriteFrames(Request(path, "png ", 16, 16), buffer, 2));
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.packets, 2);
    EXPECT_LT(FileSize(path), 100000);
}

TEST_F(FFMovie, CloseWithNothingOpenIsTrueAndWritingFails)
{
    EXPECT_TRUE(FFCloseMovieWriter());
    EXPECT_TRUE(FFCloseMovieWriter());
    Buffer buffer(4, 4);
    EXPECT_FALSE(FFWriteMovieFrame(buffer.bytes.data(), true));
    EXPECT_EQ(FFWritingType(), "");
}

TEST_F(FFMovie, OddSizesWorkWithEveryCodec)
{
    for (const char* type : kAllTypes) {
        if (!FFHasEncoder(type))
            continue;
        std::string path = dir.File(std::string("odd") + type[0] + ".mov");
        Buffer buffer(33, 17);
        buffer.Fill(255, 180, 90, 40);
        ASSERT_TRUE(WriteFrames(Request(path, type, 33, 17), buffer, 3))
            << type << ": " << FFMovieError();
        int width = 0;
        int height = 0;
        ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height)) << type;
        // H.264 frames are 4:2:0, in whole pairs of pixels: padded by one each way.
        bool padded = std::string(type) == "avc1";
        EXPECT_EQ(width, padded ? 34 : 33) << type;
        EXPECT_EQ(height, padded ? 18 : 17) << type;
        Buffer back(width, height);
        ASSERT_TRUE(FFReadMovieFrame(200, back.bytes.data())) << type;
        EXPECT_NEAR(back.Mean(1), 180, 4) << type;
        EXPECT_NEAR(back.Mean(2), 90, 4) << type;
        EXPECT_NEAR(back.Mean(3), 40, 4) << type;
        FFCloseMovieReader();
    }
}

// The same noise frames written once as top-down alpha-first buffers and once as bottom-up
// blue-first rows (a 32-bit CDIB's storage, read backwards through a negative stride), with
// alpha kept or not; the movies read back byte for byte alike.
void WriteBothWays(const FFWriteRequest& request, const std::string& otherPath, int frames,
                   std::vector<std::vector<unsigned char>>* decoded)
{
    for (int way = 0; way < 2; ++way) {
        FFWriteRequest asked = request;
        if (way == 1)
            asked.path = otherPath.c_str();
        ASSERT_TRUE(FFOpenMovieWriter(asked)) << FFMovieError();
        for (int i = 0; i < frames; ++i) {
            Buffer buffer(request.width, request.height);
            buffer.Noise(static_cast<unsigned>(31 * i + 5));
            if (way == 0) {
                ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true)) << FFMovieError();
                continue;
            }
            // Storage rows bottom first, each padded to a multiple of 4 bytes like a CDIB's
            // (always whole at 4 bytes a pixel), pixels blue, green, red, alpha.
            size_t row = static_cast<size_t>(4) * request.width;
            std::vector<unsigned char> storage(row * request.height);
            for (int y = 0; y < request.height; ++y) {
                const unsigned char* in = buffer.Pixel(0, y);
                unsigned char* out = storage.data() + row * (request.height - 1 - y);
                for (int x = 0; x < request.width; ++x, in += 4, out += 4) {
                    out[0] = in[3];
                    out[1] = in[2];
                    out[2] = in[1];
                    out[3] = in[0];
                }
            }
            FFFrameRows rows{storage.data() + row * (request.height - 1),
                             -static_cast<ptrdiff_t>(row), FFPixelOrder::kBgra};
            ASSERT_TRUE(FFWriteMovieRows(rows, true)) << FFMovieError();
        }
        ASSERT_TRUE(FFCloseMovieWriter()) << FFMovieError();
        int width = 0;
        int height = 0;
        ASSERT_TRUE(FFOpenMovieReader(asked.path, &width, &height)) << FFMovieError();
        for (int i = 0; i < frames; ++i) {
            Buffer back(width, height);
            ASSERT_TRUE(FFReadMovieFrame(100L * i, back.bytes.data())) << FFMovieError();
            decoded[way].push_back(back.bytes);
        }
        FFCloseMovieReader();
    }
}

TEST_F(FFMovie, BottomUpBlueFirstRowsMakeTheSameMovieAsTopDownBuffers)
{
    for (const char* type : kAllTypes) {
        // libx264 with several frame threads need not give the same bytes twice for the same
        // frames; every other encoder does.
        if (!FFHasEncoder(type) || std::string(type) == "avc1")
            continue;
        // An odd size as well.
        for (int size : {16, 17}) {
            for (bool keepAlpha : {false, true}) {
                SCOPED_TRACE(std::string(type) + " " + std::to_string(size) +
                             (keepAlpha ? " alpha" : " opaque"));
                std::string path = dir.File(std::string("top") + type[0] + ".mov");
                std::string other = dir.File(std::string("bottom") + type[0] + ".mov");
                FFWriteRequest request = Request(path, type, 2 * size, size);
                request.keepAlpha = keepAlpha;
                std::vector<std::vector<unsigned char>> decoded[2];
                WriteBothWays(request, other, 3, decoded);
                ASSERT_EQ(decoded[0].size(), 3u);
                ASSERT_EQ(decoded[1].size(), 3u);
                for (size_t i = 0; i < 3; ++i)
                    EXPECT_TRUE(decoded[0][i] == decoded[1][i]) << "frame " << i;
                // Whole files alike too: an uncompressed track's frames go into their packets
                // without the encoder, with the same times and key flags.
                EXPECT_TRUE(pxtest::ReadBytes(path) == pxtest::ReadBytes(other));
            }
        }
    }
}

TEST_F(FFMovie, FramesTheEncoderStillReadsKeepTheirPixels)
{
    // The encoders' threads read a frame while the next is converted into fresh memory: every
    // frame of a lossless movie comes back exactly as it was given.
    for (const char* type : {"raw ", "png ", "rle "}) {
        if (!FFHasEncoder(type))
            continue;
        SCOPED_TRACE(type);
        constexpr int kFrames = 12;
        std::string path = dir.File(std::string("each") + type[0] + ".mov");
        ASSERT_TRUE(FFOpenMovieWriter(Request(path, type, 64, 32))) << FFMovieError();
        std::vector<Buffer> given;
        for (int i = 0; i < kFrames; ++i) {
            given.emplace_back(64, 32);
            given.back().Noise(static_cast<unsigned>(i + 1));
            for (size_t a = 0; a < given.back().bytes.size(); a += 4)
                given.back().bytes[a] = 255;  // opaque
            ASSERT_TRUE(FFWriteMovieFrame(given.back().bytes.data(), true)) << FFMovieError();
        }
        ASSERT_TRUE(FFCloseMovieWriter()) << FFMovieError();
        int width = 0;
        int height = 0;
        ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height));
        for (int i = 0; i < kFrames; ++i) {
            Buffer back(64, 32);
            ASSERT_TRUE(FFReadMovieFrame(100L * i + 50, back.bytes.data()));
            EXPECT_TRUE(back.bytes == given[static_cast<size_t>(i)].bytes) << "frame " << i;
        }
        FFCloseMovieReader();
    }
}

TEST_F(FFMovie, MovieStoresAlphaOnlyInAPixelFormatWithAlpha)
{
    EXPECT_FALSE(FFMovieStoresAlpha());  // nothing open
    REQUIRE_ENCODER("png ");
    Buffer buffer(8, 8);
    buffer.Fill(255, 10, 20, 30);
    const std::string path = dir.File("alpha.mov");
    for (bool keepAlpha : {false, true}) {
        FFWriteRequest request = Request(path, "png ", 8, 8);
        request.keepAlpha = keepAlpha;
        ASSERT_TRUE(FFOpenMovieWriter(request)) << FFMovieError();
        EXPECT_EQ(FFMovieStoresAlpha(), keepAlpha);
        ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
        ASSERT_TRUE(FFCloseMovieWriter());
        EXPECT_FALSE(FFMovieStoresAlpha());
    }
    if (FFHasEncoder("avc1")) {
        const std::string h264 = dir.File("alpha.mp4");
        FFWriteRequest request = Request(h264, "avc1", 8, 8);
        request.keepAlpha = true;  // H.264 has no alpha to keep
        ASSERT_TRUE(FFOpenMovieWriter(request)) << FFMovieError();
        EXPECT_FALSE(FFMovieStoresAlpha());
        ASSERT_TRUE(FFCloseMovieWriter());
    }
}

TEST_F(FFMovie, EveryCodecKeepsAFlatColour)
{
    for (const char* type : kAllTypes) {
        if (!FFHasEncoder(type))
            continue;
        std::string path = dir.File(std::string("flat") + type[0] + ".mov");
        Buffer buffer(32, 16);
        buffer.Fill(255, 200, 120, 30);
        ASSERT_TRUE(WriteFrames(Request(path, type, 32, 16), buffer, 2))
            << type << ": " << FFMovieError();
        int width = 0;
        int height = 0;
        ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height)) << type;
        Buffer back(32, 16);
        ASSERT_TRUE(FFReadMovieFrame(100, back.bytes.data())) << type;
        EXPECT_NEAR(back.Mean(1), 200, 2) << type;
        EXPECT_NEAR(back.Mean(2), 120, 2) << type;
        EXPECT_NEAR(back.Mean(3), 30, 2) << type;
        FFCloseMovieReader();
    }
}

TEST_F(FFMovie, OddWidthProResIsWrittenAs4444)
{
    REQUIRE_ENCODER("apcn");
    if (FFEncoderName("apcn") != "prores_ks")
        GTEST_SKIP() << "ProRes here is " << FFEncoderName("apcn");
    Buffer even(34, 17);
    Buffer odd(33, 16);
    ASSERT_TRUE(WriteFrames(Request(dir.File("even.mov"), "apcn", 34, 17), even, 1));
    ASSERT_TRUE(WriteFrames(Request(dir.File("odd.mov"), "apcn", 33, 16), odd, 1));
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(dir.File("even.mov").c_str(), &facts));
    EXPECT_STREQ(facts.tag, "apcn");
    ASSERT_TRUE(FFProbeMovieFile(dir.File("odd.mov").c_str(), &facts));
    EXPECT_STREQ(facts.tag, "ap4h");
    EXPECT_EQ(facts.width, 33);
}

TEST_F(FFMovie, WidthOf4096Works)
{
    for (const char* type : {"avc1", "mjpa", "png "}) {
        if (!FFHasEncoder(type))
            continue;
        std::string path = dir.File(std::string("wide") + type[0] + ".mov");
        Buffer buffer(4096, 8);
        buffer.Fill(255, 30, 60, 90);
        ASSERT_TRUE(WriteFrames(Request(path, type, 4096, 8), buffer, 2))
            << type << ": " << FFMovieError();
        FFMovieFacts facts;
        ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
        EXPECT_EQ(facts.width, 4096) << type;
        EXPECT_EQ(facts.height, 8) << type;
        EXPECT_EQ(facts.packets, 2) << type;
    }
}

TEST_F(FFMovie, ZeroSizeOrRateIsRefused)
{
    std::string path = dir.File("none.mov");
    EXPECT_FALSE(FFOpenMovieWriter(Request(path, "png ", 0, 16)));
    EXPECT_FALSE(FFOpenMovieWriter(Request(path, "png ", 16, 16, 0)));
    EXPECT_NE(std::string(FFMovieError()), "");
    EXPECT_TRUE(FFCloseMovieWriter());
    EXPECT_FALSE(pxtest::FileExists(path));
}

// ---- Reading ----------------------------------------------------------------------------------

class FFMovieReading : public FFMovie {
protected:
    // Five flat frames; frame i has red 40 × i + 20.
    void WriteFive(const char* type, const std::string& path)
    {
        ASSERT_TRUE(FFOpenMovieWriter(Request(path, type, 16, 16))) << FFMovieError();
        Buffer buffer(16, 16);
        for (int i = 0; i < 5; ++i) {
            buffer.Fill(255, static_cast<unsigned char>(40 * i + 20), 128, 128);
            ASSERT_TRUE(FFWriteMovieFrame(buffer.bytes.data(), true));
        }
        ASSERT_TRUE(FFCloseMovieWriter());
    }

    // The index of the frame showing at `time` (from its red), or -1.
    int FrameAt(long time)
    {
        Buffer back(16, 16);
        if (!FFReadMovieFrame(time, back.bytes.data()))
            return -1;
        return static_cast<int>(std::lround((back.Mean(1) - 20) / 40));
    }
};

TEST_F(FFMovieReading, ShowsTheLastFrameThatStartsByTheTime)
{
    std::string path = dir.File("five.mov");
    WriteFive("png ", path);
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height));
    EXPECT_EQ(FFReadDuration(), 500);
    EXPECT_EQ(FFReadTimeScale(), 2997);
    EXPECT_EQ(FrameAt(0), 0);
    EXPECT_EQ(FrameAt(99), 0);
    EXPECT_EQ(FrameAt(100), 1);
    EXPECT_EQ(FrameAt(250), 2);
    EXPECT_EQ(FrameAt(499), 4);
    // After the end the last frame stays; going back finds earlier frames again.
    EXPECT_EQ(FrameAt(5000), 4);
    EXPECT_EQ(FrameAt(150), 1);
    EXPECT_EQ(FrameAt(0), 0);
    EXPECT_EQ(FrameAt(-50), 0);
    EXPECT_EQ(FrameAt(300), 3);
}

TEST_F(FFMovieReading, FramesOfAnH264MovieComeBackInAnyOrder)
{
    REQUIRE_ENCODER("avc1");
    std::string path = dir.File("order.mov");
    WriteFive("avc1", path);
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height));
    EXPECT_EQ(FFReadDuration(), 500);
    for (int frame : {3, 0, 4, 1, 2, 2, 0, 4}) {
        EXPECT_EQ(FrameAt(frame * 100 + 50), frame);
    }
}

TEST_F(FFMovieReading, MatroskaTimesAreMilliseconds)
{
    std::string path = dir.File("five.mkv");
    WriteFive("mjpa", path);
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height));
    EXPECT_EQ(FFReadTimeScale(), 1000);
    // Five frames of 1 / 29.97 second.
    EXPECT_NEAR(FFReadDuration(), 167, 1);
    EXPECT_EQ(FrameAt(0), 0);
    EXPECT_EQ(FrameAt(70), 2);
    EXPECT_EQ(FrameAt(160), 4);
}

TEST_F(FFMovieReading, NotAMovieFailsWithAReason)
{
    std::string path = dir.File("notes.mov");
    ASSERT_TRUE(pxtest::WriteText(path, "these are not frames\n"));
    int width = -1;
    int height = -1;
    EXPECT_FALSE(FFOpenMovieReader(path.c_str(), &width, &height));
    EXPECT_NE(std::string(FFMovieError()), "");
    EXPECT_EQ(width, -1);
    EXPECT_EQ(FFReadDuration(), 0);
    Buffer back(4, 4);
    EXPECT_FALSE(FFReadMovieFrame(0, back.bytes.data()));
    FFCloseMovieReader();
}

TEST_F(FFMovieReading, MissingFileFailsAndClosingTwiceIsSafe)
{
    int width = 0;
    int height = 0;
    EXPECT_FALSE(FFOpenMovieReader(dir.File("gone.mov").c_str(), &width, &height));
    EXPECT_NE(std::string(FFMovieError()).find("No such file or directory"), std::string::npos);
    FFCloseMovieReader();
    FFCloseMovieReader();
    EXPECT_EQ(FFReadTimeScale(), 0);
}

}  // namespace
