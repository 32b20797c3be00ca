// The movie layer: codec selection and the "CodecType" setting, the quality levels, timing, the
// priming frame, alpha, row and channel order, read-then-write round trips, containers and the
// failures a render must survive. Movies are written for real and read back both through the
// movie reader and with the demuxer alone (FFProbeMovieFile).

#include "output/movie.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "doc/globals.h"
#include "image/cdib.h"
#include "output/ffmpeg_movie.h"
#include "platform/base/env.h"
#include "platform/dialog/codec_dialog.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "support/file_size_limit.h"
#include "support/temp_dir.h"

namespace {

const char* const kAllCodecs[] = {"avc1", "apcn", "mjpa", "png ", "rle ", "raw "};
const char* const kLosslessCodecs[] = {"png ", "rle ", "raw "};

// One pixel as a CDIB stores it.
struct Bgra {
    uint8_t blue;
    uint8_t green;
    uint8_t red;
    uint8_t alpha;
};

bool operator==(const Bgra& a, const Bgra& b)
{
    return a.blue == b.blue && a.green == b.green && a.red == b.red && a.alpha == b.alpha;
}

std::ostream& operator<<(std::ostream& out, const Bgra& pixel)
{
    return out << "(b " << int(pixel.blue) << ", g " << int(pixel.green) << ", r " << int(pixel.red)
               << ", a " << int(pixel.alpha) << ")";
}

// Picture row y (top-down) is storage row height - 1 - y.
unsigned char* PixelOf(const CDIB& dib, int x, int y)
{
    return dib.GetBitsAdd(dib.GetHgt() - 1 - y) + x * (dib.GetBitCount() / 8);
}

void Paint(CDIB& dib, const std::function<Bgra(int x, int y)>& colour)
{
    for (int y = 0; y < dib.GetHgt(); ++y) {
        for (int x = 0; x < dib.GetWid(); ++x) {
            Bgra c = colour(x, y);
            unsigned char* p = PixelOf(dib, x, y);
            p[0] = c.blue;
            p[1] = c.green;
            p[2] = c.red;
            if (dib.GetBitCount() == 32)
                p[3] = c.alpha;
        }
    }
}

void PaintFlat(CDIB& dib, Bgra colour)
{
    Paint(dib, [colour](int, int) { return colour; });
}

Bgra PixelAt(const CDIB& dib, int x, int y)
{
    const unsigned char* p = PixelOf(dib, x, y);
    return Bgra{p[0], p[1], p[2], dib.GetBitCount() == 32 ? p[3] : uint8_t{0}};
}

// A pattern that tells every pixel, row and channel apart, alpha included.
Bgra Pattern(int x, int y)
{
    return Bgra{static_cast<uint8_t>(x * 7 + y * 3), static_cast<uint8_t>(200 - x * 5),
                static_cast<uint8_t>(y * 11 + 1), static_cast<uint8_t>((x * 13 + y * 29) & 0xFF)};
}

// All pixel bytes of the picture, row padding left out.
std::vector<uint8_t> PixelBytes(const CDIB& dib)
{
    std::vector<uint8_t> bytes;
    int rowBytes = dib.GetWid() * dib.GetBitCount() / 8;
    for (int row = 0; row < dib.GetHgt(); ++row)
        bytes.insert(bytes.end(), dib.GetBitsAdd(row), dib.GetBitsAdd(row) + rowBytes);
    return bytes;
}

std::string Trimmed(const char* code)
{
    std::string name = code;
    while (!name.empty() && name.back() == ' ')
        name.pop_back();
    return name;
}

class MovieLayer : public testing::Test {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        LoadSettings("");
        gFrameRate = 2997;
        ClearCodecDialogScript();
        UseCodec(nullptr);
        QTCloseMovies();
    }

    void TearDown() override
    {
        QTMovieWriteClose();
        QTMovieReadClose();
        UseCodec(nullptr);
        ClearCodecDialogScript();
        QTCloseMovies();
    }

    static void LoadSettings(const std::string& lines)
    {
        std::string text = "[Parallaxotron]\r\n" + lines;
        LoadIniText(text.data(), text.size());
    }

    static std::string Setting(const char* key)
    {
        char value[256] = {};
        GetIniString(key, "?", value, sizeof value - 1);
        return value;
    }

    FSpec MovieFile(const std::string& name) const { return PathFSpec(dir.File(name).c_str()); }

    // Chooses the codec as the command line does.
    static bool Choose(const char* codec, int quality = 50, float framesPerSecond = 29.97f)
    {
        UseCodec(codec);
        return QTSelectCodec(nullptr, framesPerSecond, quality, false);
    }

    bool Open(const std::string& name, CDIB* first, float framesPerSecond = 29.97f)
    {
        FSpec movie = MovieFile(name);
        return QTMovieWriteOpen(false, &movie, first, framesPerSecond, 100, 0);
    }

    FFMovieFacts Probe(const std::string& name) const
    {
        FFMovieFacts facts;
        EXPECT_TRUE(FFProbeMovieFile(dir.File(name).c_str(), &facts)) << name;
        return facts;
    }

    bool OpenToRead(const std::string& name, CDIB* frame)
    {
        FSpec movie = MovieFile(name);
        return QTMovieReadOpen(&movie, frame);
    }

    pxtest::TempDir dir;
};

#define REQUIRE_CODEC(code)      \
    if (!IsCodecAvailable(code)) \
    GTEST_SKIP() << "this FFmpeg has no encoder for '" << (code) << "'"

// ---- Timing and quality -----------------------------------------------------------------------

TEST_F(MovieLayer, TimeScaleIsTheFrameRateInHundredthsRoundedToTheNearest)
{
    EXPECT_EQ(MovieTimeScale(29.97f), 2997);
    EXPECT_EQ(MovieTimeScale(25.0f), 2500);
    EXPECT_EQ(MovieTimeScale(23.976f), 2398);
    EXPECT_EQ(MovieTimeScale(59.94f), 5994);
    EXPECT_EQ(MovieTimeScale(24.0f), 2400);
    EXPECT_EQ(MovieTimeScale(30.0f), 3000);
    EXPECT_EQ(MovieTimeScale(0.0f), 0);
}

TEST_F(MovieLayer, QualityAtTheStepEdgesSelectsSpatialQuality)
{
    EXPECT_EQ(SpatialQualityOf(19), 0);
    EXPECT_EQ(SpatialQualityOf(20), 256);
    EXPECT_EQ(SpatialQualityOf(59), 512);
    EXPECT_EQ(SpatialQualityOf(60), 768);
    EXPECT_EQ(SpatialQualityOf(80), 1023);
    EXPECT_EQ(SpatialQualityOf(0), 0);
    EXPECT_EQ(SpatialQualityOf(-10), 0);
    EXPECT_EQ(SpatialQualityOf(39), 256);
    EXPECT_EQ(SpatialQualityOf(40), 512);
    EXPECT_EQ(SpatialQualityOf(79), 768);
    EXPECT_EQ(SpatialQualityOf(100), 1023);
}

TEST_F(MovieLayer, SelectionOffersAndKeepsTheSpatialQualityOfTheRenderQuality)
{
    const int qualities[] = {19, 20, 59, 60, 80};
    const int spatial[] = {0, 256, 512, 768, 1023};
    for (int i = 0; i < 5; ++i) {
        PushCodecDialogAnswer(CodecDialogAnswer{});
        ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, qualities[i], false));
        std::vector<ShownCodecDialog> dialogs = TakeShownCodecDialogs();
        ASSERT_EQ(dialogs.size(), 1u);
        EXPECT_EQ(dialogs[0].offered.quality, spatial[i]) << qualities[i];
        EXPECT_EQ(GetMovieCodecSettings().spatialQuality, spatial[i]) << qualities[i];
        EXPECT_EQ(GetMovieCodecSettings().frameRate, 2997);
    }
}

TEST_F(MovieLayer, QualityChosenInTheDialogReachesTheEncoder)
{
    REQUIRE_CODEC("mjpa");
    long sizes[2] = {};
    for (int best = 0; best < 2; ++best) {
        CodecDialogAnswer answer;
        answer.type = "mjpa";
        answer.quality = best ? 1023 : 0;
        PushCodecDialogAnswer(answer);
        ASSERT_TRUE(QTSelectCodec(nullptr, 25.0f, 50, false));
        CDIB frame(64, 48, 32);
        Paint(frame, [](int x, int y) {
            return Bgra{uint8_t(x * 37 ^ y * 11), uint8_t(x * y), uint8_t(x + y * 5), 255};
        });
        std::string name = best ? "best.mov" : "least.mov";
        ASSERT_TRUE(Open(name, &frame));
        ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
        ASSERT_TRUE(QTMovieWriteClose());
        sizes[best] = static_cast<long>(pxtest::ReadBytes(dir.File(name)).size());
    }
    EXPECT_GT(sizes[1], sizes[0] * 2);
}

// ---- Every codec ------------------------------------------------------------------------------

class MovieEveryCodec : public MovieLayer, public testing::WithParamInterface<const char*> {};

TEST_P(MovieEveryCodec, WritesAPlayableQuickTimeMovie)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB frame(48, 32, 32);
    PaintFlat(frame, Bgra{0, 0, 0, 255});
    ASSERT_TRUE(Open("every.mov", &frame)) << MovieLastError();
    for (int i = 0; i < 5; ++i) {
        PaintFlat(frame,
                  Bgra{uint8_t(30 + i * 40), uint8_t(200 - i * 30), uint8_t(100 + i * 20), 255});
        ASSERT_TRUE(QTMovieWriteFrame(i, &frame)) << MovieLastError();
    }
    ASSERT_TRUE(QTMovieWriteClose()) << MovieLastError();

    FFMovieFacts facts = Probe("every.mov");
    EXPECT_EQ(facts.container, "mov,mp4,m4a,3gp,3g2,mj2");
    EXPECT_STREQ(facts.tag, codec);
    EXPECT_EQ(facts.packets, 5);
    EXPECT_EQ(facts.width, 48);
    EXPECT_EQ(facts.height, 32);

    CDIB back(1, 1, 24);
    ASSERT_TRUE(OpenToRead("every.mov", &back)) << MovieLastError();
    EXPECT_EQ(QTGetMovieDuration(), 500);
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(QTMovieReadFrame(i * 100, &back)) << MovieLastError();
        Bgra pixel = PixelAt(back, 24, 16);
        EXPECT_NEAR(pixel.blue, 30 + i * 40, 2) << i;
        EXPECT_NEAR(pixel.green, 200 - i * 30, 2) << i;
        EXPECT_NEAR(pixel.red, 100 + i * 20, 2) << i;
    }
}

TEST_P(MovieEveryCodec, At2997A300FrameMovieLasts30000UnitsOf2997PerSecond)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB frame(16, 16, 32);
    ASSERT_TRUE(Open("long.mov", &frame, 29.97f));
    for (int i = 0; i < 300; ++i) {
        PaintFlat(frame, Bgra{uint8_t(i), uint8_t(i / 2), 90, 255});
        ASSERT_TRUE(QTMovieWriteFrame(i, &frame));
    }
    ASSERT_TRUE(QTMovieWriteClose());

    FFMovieFacts facts = Probe("long.mov");
    EXPECT_EQ(facts.timeBaseNum, 1);
    EXPECT_EQ(facts.timeBaseDen, 2997);
    EXPECT_EQ(facts.duration, 30000);
    EXPECT_EQ(facts.packets, 300);

    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("long.mov", &back));
    EXPECT_EQ(QTGetMovieDuration(), 30000);
}

TEST_P(MovieEveryCodec, PrimingFrameAddsNoSample)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB first(16, 16, 32);
    PaintFlat(first, Bgra{250, 250, 250, 255});  // the priming frame: white
    ASSERT_TRUE(Open("prime.mov", &first));
    CDIB frame(16, 16, 32);
    PaintFlat(frame, Bgra{10, 10, 10, 255});  // the real frames: near black
    for (int i = 0; i < 7; ++i)
        ASSERT_TRUE(QTMovieWriteFrame(i, &frame));
    ASSERT_TRUE(QTMovieWriteFrame(kPrimeFrameNumber, &first));
    ASSERT_TRUE(QTMovieWriteClose());

    FFMovieFacts facts = Probe("prime.mov");
    EXPECT_EQ(facts.packets, 7);
    EXPECT_EQ(facts.duration, 700);
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("prime.mov", &back));
    ASSERT_TRUE(QTMovieReadFrame(0, &back));
    EXPECT_NEAR(PixelAt(back, 8, 8).green, 10, 2);
}

TEST_P(MovieEveryCodec, OddWidthAndHeightWrite)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB frame(33, 17, 32);
    PaintFlat(frame, Bgra{40, 90, 180, 255});
    ASSERT_TRUE(Open("odd.mov", &frame)) << MovieLastError();
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame)) << MovieLastError();
    ASSERT_TRUE(QTMovieWriteClose()) << MovieLastError();
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("odd.mov", &back));
    // H.264 is 4:2:0, in whole pairs of pixels: padded by one each way, the edge repeated.
    bool padded = std::string(codec) == "avc1";
    EXPECT_EQ(back.GetWid(), padded ? 34 : 33);
    EXPECT_EQ(back.GetHgt(), padded ? 18 : 17);
    ASSERT_TRUE(QTMovieReadFrame(0, &back));
    // The last column and the last row are as good as the rest.
    int right = back.GetWid() - 1;
    int bottom = back.GetHgt() - 1;
    for (Bgra pixel : {PixelAt(back, 32, 0), PixelAt(back, 32, 16), PixelAt(back, 0, 16),
                       PixelAt(back, 16, 8), PixelAt(back, right, bottom)}) {
        EXPECT_NEAR(pixel.blue, 40, 3) << pixel;
        EXPECT_NEAR(pixel.green, 90, 3) << pixel;
        EXPECT_NEAR(pixel.red, 180, 3) << pixel;
    }
}

INSTANTIATE_TEST_SUITE_P(Codecs, MovieEveryCodec, testing::ValuesIn(kAllCodecs),
                         [](const testing::TestParamInfo<const char*>& info) {
                             return Trimmed(info.param);
                         });

// ---- Alpha, rows and channels -----------------------------------------------------------------

class MovieLossless : public MovieLayer, public testing::WithParamInterface<const char*> {};

TEST_P(MovieLossless, TwentyFourBitFrameIsWrittenWithAlphaZero)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB first(8, 6, 32);
    PaintFlat(first, Bgra{1, 2, 3, 255});
    ASSERT_TRUE(Open("alpha0.mov", &first));
    CDIB frame(8, 6, 24);
    Paint(frame, Pattern);
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("alpha0.mov", &back));
    ASSERT_TRUE(QTMovieReadFrame(0, &back));
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 8; ++x) {
            Bgra expected = Pattern(x, y);
            expected.alpha = 0;
            ASSERT_EQ(PixelAt(back, x, y), expected) << x << "," << y;
        }
    }
}

TEST_P(MovieLossless, ThirtyTwoBitFrameKeepsItsAlpha)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB frame(8, 6, 32);
    Paint(frame, Pattern);
    EXPECT_FALSE(QTMovieStoresAlpha());  // nothing open
    ASSERT_TRUE(Open("alpha.mov", &frame));
    EXPECT_TRUE(QTMovieStoresAlpha());
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    EXPECT_FALSE(QTMovieStoresAlpha());
    EXPECT_TRUE(Probe("alpha.mov").alpha);
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("alpha.mov", &back));
    ASSERT_TRUE(QTMovieReadFrame(0, &back));
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 8; ++x)
            ASSERT_EQ(PixelAt(back, x, y), Pattern(x, y)) << x << "," << y;
    }
}

TEST_P(MovieLossless, MovieStartedWithATwentyFourBitFrameIsOpaque)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB frame(8, 6, 24);
    Paint(frame, Pattern);
    ASSERT_TRUE(Open("opaque.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    EXPECT_FALSE(Probe("opaque.mov").alpha);
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("opaque.mov", &back));
    ASSERT_TRUE(QTMovieReadFrame(0, &back));
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 8; ++x) {
            Bgra expected = Pattern(x, y);
            expected.alpha = 255;
            ASSERT_EQ(PixelAt(back, x, y), expected) << x << "," << y;
        }
    }
}

TEST_P(MovieLossless, OpaqueFramesAreWrittenWithoutAlphaAndReadBackTheSame)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB frame(9, 7, 32);
    Paint(frame, [](int x, int y) {
        Bgra pixel = Pattern(x, y);
        pixel.alpha = 255;
        return pixel;
    });
    SetMovieFramesOpaque(true);
    bool opened = Open("rgb.mov", &frame);
    SetMovieFramesOpaque(false);
    ASSERT_TRUE(opened);
    EXPECT_FALSE(QTMovieStoresAlpha());
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    // Three bytes a pixel in the file.
    EXPECT_FALSE(Probe("rgb.mov").alpha);
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("rgb.mov", &back));
    ASSERT_TRUE(QTMovieReadFrame(0, &back));
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 9; ++x)
            ASSERT_EQ(PixelAt(back, x, y), PixelAt(frame, x, y)) << x << "," << y;
    }
}

TEST_P(MovieLossless, ReadingAFrameAndWritingItBackGivesTheSamePicture)
{
    const char* codec = GetParam();
    REQUIRE_CODEC(codec);
    ASSERT_TRUE(Choose(codec));
    CDIB original(9, 7, 32);
    Paint(original, Pattern);
    ASSERT_TRUE(Open("first.mov", &original));
    ASSERT_TRUE(QTMovieWriteFrame(0, &original));
    ASSERT_TRUE(QTMovieWriteClose());

    CDIB once(1, 1, 32);
    ASSERT_TRUE(OpenToRead("first.mov", &once));
    ASSERT_TRUE(QTMovieReadFrame(0, &once));
    ASSERT_TRUE(QTMovieReadClose());
    EXPECT_EQ(PixelBytes(once), PixelBytes(original));

    ASSERT_TRUE(Open("second.mov", &once));
    ASSERT_TRUE(QTMovieWriteFrame(0, &once));
    ASSERT_TRUE(QTMovieWriteClose());
    CDIB twice(1, 1, 32);
    ASSERT_TRUE(OpenToRead("second.mov", &twice));
    ASSERT_TRUE(QTMovieReadFrame(0, &twice));
    EXPECT_EQ(PixelBytes(twice), PixelBytes(once));
}

INSTANTIATE_TEST_SUITE_P(Codecs, MovieLossless, testing::ValuesIn(kLosslessCodecs),
                         [](const testing::TestParamInfo<const char*>& info) {
                             return Trimmed(info.param);
                         });

TEST_F(MovieLayer, FramesAreStoredTopRowFirstRedFirst)
{
    REQUIRE_CODEC("raw ");
    ASSERT_TRUE(Choose("raw "));
    // Top row: two colours; bottom row: two more. Storage row 1 is the top of the picture.
    const Bgra colours[2][2] = {{{11, 22, 201, 0}, {33, 222, 44, 0}},
                                {{231, 55, 66, 0}, {77, 88, 99, 0}}};
    CDIB frame(2, 2, 24);
    Paint(frame, [&colours](int x, int y) { return colours[y][x]; });
    ASSERT_TRUE(Open("rows.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    // Raw 24-bit QuickTime frames are red, green, blue, rows top-down with no padding.
    std::vector<uint8_t> expected;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 2; ++x) {
            expected.push_back(colours[y][x].red);
            expected.push_back(colours[y][x].green);
            expected.push_back(colours[y][x].blue);
        }
    }
    std::vector<unsigned char> file = pxtest::ReadBytes(dir.File("rows.mov"));
    EXPECT_NE(std::search(file.begin(), file.end(), expected.begin(), expected.end()), file.end());
}

// ---- Codec selection and "CodecType" ----------------------------------------------------------

TEST_F(MovieLayer, CancelledSelectionLeavesCodecTypeAndTheLastChoice)
{
    REQUIRE_CODEC("png ");
    REQUIRE_CODEC("mjpa");
    LoadSettings("CodecType=mjpa\r\n");
    PushCodecDialogCancel();
    EXPECT_FALSE(QTSelectCodec(nullptr, 25.0f, 90, false));
    EXPECT_EQ(Setting("CodecType"), "mjpa");

    CodecDialogAnswer png;
    png.type = "png ";
    png.quality = 256;
    PushCodecDialogAnswer(png);
    ASSERT_TRUE(QTSelectCodec(nullptr, 25.0f, 90, false));
    CodecDialogAnswer raw;
    raw.ok = false;
    raw.type = "raw ";
    PushCodecDialogAnswer(raw);
    EXPECT_FALSE(QTSelectCodec(nullptr, 30.0f, 10, false));
    EXPECT_EQ(Setting("CodecType"), "png ");
    MovieCodecSettings settings = GetMovieCodecSettings();
    EXPECT_STREQ(settings.type, "png ");
    EXPECT_EQ(settings.spatialQuality, 256);
    EXPECT_EQ(settings.frameRate, 2500);
}

TEST_F(MovieLayer, ChosenCodecIsWrittenToCodecTypeAsFourCharacters)
{
    for (const char* codec : kAllCodecs) {
        if (!IsCodecAvailable(codec))
            continue;
        CodecDialogAnswer answer;
        answer.type = codec;
        PushCodecDialogAnswer(answer);
        ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, 50, false));
        EXPECT_EQ(Setting("CodecType"), codec);
        EXPECT_STREQ(GetMovieCodecSettings().type, codec);
    }
}

TEST_F(MovieLayer, DialogOffersTheAvailableCodecsByNameAndStartsFromCodecType)
{
    REQUIRE_CODEC("rle ");
    LoadSettings("CodecType=rle \r\n");
    PushCodecDialogAnswer(CodecDialogAnswer{});
    ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, 50, false));
    std::vector<ShownCodecDialog> dialogs = TakeShownCodecDialogs();
    ASSERT_EQ(dialogs.size(), 1u);
    EXPECT_EQ(dialogs[0].offered.type, "rle ");
    EXPECT_EQ(dialogs[0].way, CodecDialogWay::kScripted);
    std::vector<std::string> offered;
    for (const CodecDialogCodec& codec : dialogs[0].codecs) {
        offered.push_back(codec.type);
        EXPECT_FALSE(codec.name.empty());
    }
    std::vector<std::string> available;
    for (const char* codec : kAllCodecs) {
        if (IsCodecAvailable(codec))
            available.push_back(codec);
    }
    EXPECT_EQ(offered, available);
    EXPECT_EQ(dialogs[0].codecs.front().name,
              IsCodecAvailable("avc1") ? "H.264" : dialogs[0].codecs.front().name);
}

TEST_F(MovieLayer, UnknownRememberedCodecStartsTheDialogOnTheDefault)
{
    REQUIRE_CODEC(kDefaultCodec);
    LoadSettings("CodecType=xvid\r\n");
    PushCodecDialogAnswer(CodecDialogAnswer{});
    ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, 50, false));
    EXPECT_EQ(TakeShownCodecDialogs().at(0).offered.type, kDefaultCodec);
    EXPECT_EQ(Setting("CodecType"), kDefaultCodec);
}

TEST_F(MovieLayer, UseCodecTakesTheCodecWithoutADialog)
{
    REQUIRE_CODEC("png ");
    LoadSettings("CodecType=mjpa\r\n");
    UseCodec("png");
    ASSERT_TRUE(QTSelectCodec(nullptr, 24.0f, 70, false));
    EXPECT_TRUE(TakeShownCodecDialogs().empty());
    EXPECT_EQ(Setting("CodecType"), "png ");
    MovieCodecSettings settings = GetMovieCodecSettings();
    EXPECT_STREQ(settings.type, "png ");
    EXPECT_EQ(settings.spatialQuality, 768);
    EXPECT_EQ(settings.frameRate, 2400);
    // Cleared, the dialog decides again.
    UseCodec("");
    PushCodecDialogCancel();
    EXPECT_FALSE(QTSelectCodec(nullptr, 24.0f, 70, false));
    EXPECT_EQ(TakeShownCodecDialogs().size(), 1u);
}

TEST_F(MovieLayer, WithoutWindowsTheRememberedCodecIsTakenAsItIs)
{
    REQUIRE_CODEC("mjpa");
    LoadSettings("CodecType=mjpa\r\n");
    ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, 30, false));
    std::vector<ShownCodecDialog> dialogs = TakeShownCodecDialogs();
    ASSERT_EQ(dialogs.size(), 1u);
    EXPECT_EQ(dialogs[0].way, CodecDialogWay::kConsole);
    EXPECT_TRUE(dialogs[0].ok);
    EXPECT_STREQ(GetMovieCodecSettings().type, "mjpa");
    EXPECT_EQ(GetMovieCodecSettings().spatialQuality, 256);
    EXPECT_EQ(Setting("CodecType"), "mjpa");
}

TEST_F(MovieLayer, ClosingTheMovieServicesForgetsTheSelection)
{
    EXPECT_EQ(QTOpenMovies(), 1);
    PushCodecDialogAnswer(CodecDialogAnswer{});
    ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, 90, false));
    EXPECT_EQ(GetMovieCodecSettings().frameRate, 2997);
    EXPECT_EQ(QTCloseMovies(), 0);
    EXPECT_EQ(GetMovieCodecSettings().frameRate, 0);
    EXPECT_EQ(GetMovieCodecSettings().spatialQuality, 512);
    EXPECT_EQ(QTCloseMovies(), 0);
}

TEST_F(MovieLayer, AvailableCodecListNamesExactlyTheAvailableCodecs)
{
    std::string list = AvailableCodecList();
    const char* names[] = {"avc1 (H.264)", "apcn (ProRes 422)", "mjpa (Motion JPEG A)",
                           "png (PNG)",    "rle (Animation)",   "raw (Uncompressed)"};
    int available = 0;
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(list.find(names[i]) != std::string::npos, IsCodecAvailable(kAllCodecs[i]))
            << names[i];
        available += IsCodecAvailable(kAllCodecs[i]) ? 1 : 0;
    }
    EXPECT_EQ(static_cast<int>(std::count(list.begin(), list.end(), ',')), available - 1);
}

TEST_F(MovieLayer, ShortCodesAreFilledWithSpacesAndUnknownCodesAreUnavailable)
{
    EXPECT_STREQ(kDefaultCodec, "avc1");
    EXPECT_EQ(IsCodecAvailable("png"), IsCodecAvailable("png "));
    EXPECT_EQ(IsCodecAvailable("rle"), IsCodecAvailable("rle "));
    EXPECT_FALSE(IsCodecAvailable("xvid"));
    EXPECT_FALSE(IsCodecAvailable("pn"));
    EXPECT_FALSE(IsCodecAvailable(""));
    EXPECT_FALSE(IsCodecAvailable(nullptr));
}

// ---- Which codec a movie is written with ------------------------------------------------------

TEST_F(MovieLayer, MovieOpenedWithoutASelectionTakesCodecType)
{
    REQUIRE_CODEC("mjpa");
    LoadSettings("CodecType=mjpa\r\n");
    CDIB frame(16, 16, 32);
    ASSERT_TRUE(Open("setting.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    EXPECT_STREQ(Probe("setting.mov").tag, "mjpa");
}

TEST_F(MovieLayer, MovieWithNothingChosenIsH264)
{
    REQUIRE_CODEC("avc1");
    CDIB frame(16, 16, 32);
    ASSERT_TRUE(Open("default.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    EXPECT_STREQ(Probe("default.mov").tag, "avc1");
}

TEST_F(MovieLayer, UseCodecWinsOverTheLastSelection)
{
    REQUIRE_CODEC("png ");
    REQUIRE_CODEC("rle ");
    CodecDialogAnswer answer;
    answer.type = "rle ";
    PushCodecDialogAnswer(answer);
    ASSERT_TRUE(QTSelectCodec(nullptr, 29.97f, 50, false));
    UseCodec("png ");
    CDIB frame(16, 16, 32);
    ASSERT_TRUE(Open("used.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    EXPECT_STREQ(Probe("used.mov").tag, "png ");
}

// ---- Containers -------------------------------------------------------------------------------

TEST_F(MovieLayer, Mp4MkvAndAviHoldEveryFrame)
{
    for (const char* codec : {"avc1", "mjpa"}) {
        if (!IsCodecAvailable(codec))
            continue;
        ASSERT_TRUE(Choose(codec));
        for (const char* name : {"six.mp4", "six.mkv", "six.avi"}) {
            CDIB frame(32, 24, 32);
            ASSERT_TRUE(Open(name, &frame)) << codec << " " << name << ": " << MovieLastError();
            for (int i = 0; i < 6; ++i) {
                PaintFlat(frame, Bgra{uint8_t(20 + 40 * i), 128, 64, 255});
                ASSERT_TRUE(QTMovieWriteFrame(i, &frame));
            }
            ASSERT_TRUE(QTMovieWriteClose()) << codec << " " << name;
            EXPECT_EQ(Probe(name).packets, 6) << codec << " " << name;

            CDIB back(1, 1, 32);
            ASSERT_TRUE(OpenToRead(name, &back)) << codec << " " << name;
            long duration = QTGetMovieDuration();
            ASSERT_GT(duration, 0);
            for (int i = 0; i < 6; ++i) {
                ASSERT_TRUE(QTMovieReadFrame(i * duration / 6 + duration / 12, &back));
                EXPECT_NEAR(PixelAt(back, 16, 12).blue, 20 + 40 * i, 3)
                    << codec << " " << name << " " << i;
            }
            QTMovieReadClose();
        }
    }
}

// ---- Failures ---------------------------------------------------------------------------------

TEST_F(MovieLayer, UnwritablePathFailsAndCloseIsStillSafe)
{
    CDIB frame(16, 16, 32);
    EXPECT_FALSE(Open("no/such/folder/out.mov", &frame));
    EXPECT_NE(std::string(MovieLastError()), "");
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_FALSE(pxtest::FileExists(dir.File("no/such/folder/out.mov")));
    // The writer is closed: frames are refused until the next open.
    EXPECT_FALSE(QTMovieWriteFrame(0, &frame));
}

TEST_F(MovieLayer, MovieCutShortByAFullDiskLeavesNoFile)
{
    REQUIRE_CODEC("raw ");
    ASSERT_TRUE(Choose("raw "));
    CDIB frame(128, 128, 32);
    Paint(frame, Pattern);
    bool written = true;
    bool closed = true;
    {
        pxtest::FileSizeLimit limit(100 * 1024);
        ASSERT_TRUE(Open("full.mov", &frame));
        for (int i = 0; i < 8 && written; ++i)
            written = QTMovieWriteFrame(i, &frame);
        closed = QTMovieWriteClose();
    }
    EXPECT_FALSE(written);
    EXPECT_FALSE(closed);
    EXPECT_NE(std::string(MovieLastError()), "");
    EXPECT_FALSE(pxtest::FileExists(dir.File("full.mov")));
}

TEST_F(MovieLayer, ClosingWithNothingOpenIsSafe)
{
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_TRUE(QTMovieReadClose());
    EXPECT_TRUE(QTMovieReadClose());
    EXPECT_EQ(QTGetMovieDuration(), 0);
    CDIB frame(4, 4, 32);
    EXPECT_FALSE(QTMovieWriteFrame(0, &frame));
    EXPECT_FALSE(QTMovieReadFrame(0, &frame));
}

TEST_F(MovieLayer, MovieWithoutAPathOrFirstFrameIsRefused)
{
    CDIB frame(16, 16, 32);
    FSpec empty{};
    EXPECT_FALSE(QTMovieWriteOpen(false, &empty, &frame, 29.97f, 100, 0));
    EXPECT_NE(std::string(MovieLastError()), "");
    EXPECT_TRUE(QTMovieWriteClose());
    FSpec movie = MovieFile("nothing.mov");
    EXPECT_FALSE(QTMovieWriteOpen(false, &movie, nullptr, 29.97f, 100, 0));
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_FALSE(QTMovieWriteOpen(false, &movie, &frame, 0.0f, 100, 0));
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_FALSE(pxtest::FileExists(dir.File("nothing.mov")));
}

TEST_F(MovieLayer, FrameOfAnotherSizeOrDepthIsRefusedAndTheMovieGoesOn)
{
    REQUIRE_CODEC("png ");
    ASSERT_TRUE(Choose("png "));
    CDIB frame(16, 16, 32);
    ASSERT_TRUE(Open("sizes.mov", &frame));
    CDIB small(8, 8, 32);
    EXPECT_FALSE(QTMovieWriteFrame(0, &small));
    EXPECT_NE(std::string(MovieLastError()).find("8x8"), std::string::npos) << MovieLastError();
    CDIB grey(16, 16, 8);
    EXPECT_FALSE(QTMovieWriteFrame(1, &grey));
    EXPECT_FALSE(QTMovieWriteFrame(2, nullptr));
    EXPECT_TRUE(QTMovieWriteFrame(3, &frame));
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_EQ(Probe("sizes.mov").packets, 1);
}

TEST_F(MovieLayer, FrameNumbersDoNotSetTheTime)
{
    REQUIRE_CODEC("png ");
    ASSERT_TRUE(Choose("png "));
    CDIB frame(8, 8, 32);
    ASSERT_TRUE(Open("order.mov", &frame));
    const long numbers[] = {50, 3, 7, -1};
    for (int i = 0; i < 4; ++i) {
        PaintFlat(frame, Bgra{uint8_t(10 + i * 60), 0, 0, 255});
        ASSERT_TRUE(QTMovieWriteFrame(numbers[i], &frame));
    }
    ASSERT_TRUE(QTMovieWriteClose());
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("order.mov", &back));
    EXPECT_EQ(QTGetMovieDuration(), 400);
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(QTMovieReadFrame(i * 100, &back));
        EXPECT_EQ(PixelAt(back, 0, 0).blue, 10 + i * 60) << i;
    }
}

TEST_F(MovieLayer, FramesUpTo4096WideAreWritten)
{
    for (const char* codec : {"avc1", "png "}) {
        if (!IsCodecAvailable(codec))
            continue;
        ASSERT_TRUE(Choose(codec));
        CDIB frame(4096, 16, 32);
        Paint(frame, [](int x, int) { return Bgra{uint8_t(x >> 4), 100, 50, 255}; });
        ASSERT_TRUE(Open("wide.mov", &frame)) << codec << ": " << MovieLastError();
        ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
        ASSERT_TRUE(QTMovieWriteClose());
        CDIB back(1, 1, 32);
        ASSERT_TRUE(OpenToRead("wide.mov", &back));
        EXPECT_EQ(back.GetWid(), 4096);
        ASSERT_TRUE(QTMovieReadFrame(0, &back));
        EXPECT_NEAR(PixelAt(back, 4095, 8).blue, 255, 3) << codec;
        EXPECT_NEAR(PixelAt(back, 2048, 8).blue, 128, 3) << codec;
        QTMovieReadClose();
    }
}

// ---- Reading ----------------------------------------------------------------------------------

TEST_F(MovieLayer, ReadOpenMakesTheFrameA32BitImageOfTheMovieSize)
{
    REQUIRE_CODEC("png ");
    ASSERT_TRUE(Choose("png "));
    CDIB frame(20, 10, 24);
    ASSERT_TRUE(Open("size.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    CDIB back(3, 3, 24);
    ASSERT_TRUE(OpenToRead("size.mov", &back));
    EXPECT_EQ(back.GetWid(), 20);
    EXPECT_EQ(back.GetHgt(), 10);
    EXPECT_EQ(back.GetBitCount(), 32);
    // A frame handed to ReadFrame in another shape is made the movie's again.
    CDIB other(5, 5, 24);
    ASSERT_TRUE(QTMovieReadFrame(0, &other));
    EXPECT_EQ(other.GetWid(), 20);
    EXPECT_EQ(other.GetHgt(), 10);
    EXPECT_EQ(other.GetBitCount(), 32);
}

TEST_F(MovieLayer, FrameRateIsTheProgramsOwnNotTheMovies)
{
    REQUIRE_CODEC("png ");
    ASSERT_TRUE(Choose("png "));
    CDIB frame(8, 8, 32);
    ASSERT_TRUE(Open("rate.mov", &frame, 29.97f));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    gFrameRate = 2500;
    EXPECT_EQ(QTGetMovieFrameRate(), 2500.0f);
    CDIB back(1, 1, 32);
    ASSERT_TRUE(OpenToRead("rate.mov", &back));
    EXPECT_EQ(QTGetMovieFrameRate(), 2500.0f);
    gFrameRate = 2997;
}

// Rewrites the frame size that the first sample description of a QuickTime movie states (the
// 16-bit big-endian width and height, 28 bytes after its codec code). False when not found.
bool StateFrameSize(const std::string& path, const char* codec, int width, int height)
{
    std::vector<unsigned char> bytes = pxtest::ReadBytes(path);
    const unsigned char stsd[] = {'s', 't', 's', 'd'};
    auto description = std::search(bytes.begin(), bytes.end(), std::begin(stsd), std::end(stsd));
    auto code = std::search(description, bytes.end(), codec, codec + 4);
    if (description == bytes.end() || code == bytes.end() || bytes.end() - code < 32)
        return false;
    size_t at = static_cast<size_t>(code - bytes.begin()) + 28;
    bytes[at] = static_cast<unsigned char>(width >> 8);
    bytes[at + 1] = static_cast<unsigned char>(width);
    bytes[at + 2] = static_cast<unsigned char>(height >> 8);
    bytes[at + 3] = static_cast<unsigned char>(height);
    return pxtest::WriteBytes(path, bytes);
}

TEST_F(MovieLayer, MovieStatingAFrameSizeOutside1To8192IsRefusedBeforeAnythingIsAllocated)
{
    REQUIRE_CODEC("raw ");
    ASSERT_TRUE(Choose("raw "));
    CDIB frame(4, 2, 24);
    PaintFlat(frame, Bgra{10, 20, 30, 255});
    ASSERT_TRUE(Open("small.mov", &frame));
    ASSERT_TRUE(QTMovieWriteFrame(0, &frame));
    ASSERT_TRUE(QTMovieWriteClose());
    const std::vector<unsigned char> original = pxtest::ReadBytes(dir.File("small.mov"));

    // Sizes that would ask for gigabytes, or for nothing at all.
    for (auto [width, height] : {std::pair{60000, 60000}, std::pair{8193, 8193}, std::pair{8193, 2},
                                 std::pair{4, 8193}, std::pair{65535, 65535}, std::pair{0, 2}}) {
        ASSERT_TRUE(pxtest::WriteBytes(dir.File("stated.mov"), original));
        ASSERT_TRUE(StateFrameSize(dir.File("stated.mov"), "raw ", width, height));
        CDIB back(3, 3, 24);
        EXPECT_FALSE(OpenToRead("stated.mov", &back)) << width << "x" << height;
        // Refused for the size it states, not for want of memory after trying.
        EXPECT_NE(std::string(MovieLastError()).find("frame size"), std::string::npos)
            << MovieLastError();
        EXPECT_EQ(back.GetWid(), 3) << "the frame is left as it was";
        EXPECT_FALSE(QTMovieReadFrame(0, &back));
        EXPECT_TRUE(QTMovieReadClose());
    }
    // 8192 is still a size a movie may have.
    ASSERT_TRUE(pxtest::WriteBytes(dir.File("stated.mov"), original));
    ASSERT_TRUE(StateFrameSize(dir.File("stated.mov"), "raw ", 8192, 2));
    CDIB wide(3, 3, 24);
    ASSERT_TRUE(OpenToRead("stated.mov", &wide)) << MovieLastError();
    EXPECT_EQ(wide.GetWid(), 8192);
    EXPECT_EQ(wide.GetHgt(), 2);
}

TEST_F(MovieLayer, MissingMovieFailsToOpenWithAReason)
{
    CDIB back(1, 1, 32);
    EXPECT_FALSE(OpenToRead("absent.mov", &back));
    EXPECT_NE(std::string(MovieLastError()).find("No such file or directory"), std::string::npos);
    EXPECT_EQ(QTGetMovieDuration(), 0);
    EXPECT_FALSE(QTMovieReadFrame(0, &back));
    EXPECT_TRUE(QTMovieReadClose());
}

}  // namespace

namespace {

TEST(MovieCodecChoice, WritableCodecsFollowWhatFFmpegSaysTheContainerHolds)
{
    if (!IsCodecAvailable("apcn") || !IsCodecAvailable("rle"))
        GTEST_SKIP() << "this FFmpeg lacks a ProRes or Animation encoder";
    EXPECT_TRUE(IsCodecWritableIn("apcn", "movie.mov"));
    EXPECT_FALSE(IsCodecWritableIn("apcn", "movie.avi"));
    EXPECT_FALSE(IsCodecWritableIn("rle", "movie.mp4"));
    EXPECT_TRUE(IsCodecWritableIn("png", "movie.avi"));
    EXPECT_FALSE(IsCodecWritableIn("zzzz", "movie.mov"));
}

}  // namespace
