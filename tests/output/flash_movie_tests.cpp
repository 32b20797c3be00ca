// The Flash export: its frame schedule, frames laid over the background colour, and real SWF
// files of the demo show read back by ffprobe and by FFmpeg's decoder.

#include "output/flash_movie.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "doc/doc_fixture.h"
#include "doc/globals.h"
#include "image/cdib.h"
#include "output/ffmpeg_movie.h"
#include "output/show_frame.h"
#include "platform/file/paths.h"
#include "support/temp_dir.h"

namespace {

const std::string kDemoFolder = std::string(PX_SOURCE_DIR) + "/resources/demo";

// What ffprobe says, one "key=value" line each; "" when it cannot be run.
std::string Probe(const std::string& path)
{
    std::string command =
        "ffprobe -v error -count_frames -select_streams v:0 -show_entries "
        "stream=codec_name,r_frame_rate,nb_read_frames,width,height -show_entries "
        "format=format_name -of default=noprint_wrappers=1 '" +
        path + "' 2>/dev/null";
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return "";
    std::string said;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe) != nullptr)
        said += buffer;
    pclose(pipe);
    return said;
}

bool HaveFfprobe() { return std::system("ffprobe -version > /dev/null 2>&1") == 0; }

// Fills a 32-bit frame with one colour and alpha.
void Fill(CDIB& frame, unsigned char b, unsigned char g, unsigned char r, unsigned char a)
{
    int width = frame.GetWid();
    int height = frame.GetHgt();
    for (int y = 0; y < height; ++y) {
        unsigned char* pixel = frame.GetBitsAdd(y);
        for (int x = 0; x < width; ++x, pixel += 4) {
            pixel[0] = b;
            pixel[1] = g;
            pixel[2] = r;
            pixel[3] = a;
        }
    }
}

class FlashMovie : public DocFixture {
protected:
    void SetUp() override
    {
        DocFixture::SetUp();
        UseSettings("");
        gFrameRate = 2997;
        gCurFrame = 0;
    }

    // The demo show, its pictures found beside it.
    void OpenDemo()
    {
        std::string folder = kDemoFolder + "/";
        std::snprintf(doc->altImageFolder, sizeof doc->altImageFolder, "%s", folder.c_str());
        FSpec show = PathFSpec((kDemoFolder + "/demo.plx").c_str());
        ASSERT_EQ(doc->OpenShowFile(&show, true), ShowFileResult::kOpened);
        ASSERT_GT(doc->picCount, 0);
    }

    FlashMovieOptions Options(int width, int height, long frames, int rate)
    {
        FlashMovieOptions options;
        options.width = width;
        options.height = height;
        options.start = 0;
        options.end = frames;
        options.framesPerSecond = rate;
        options.quality = 75;
        options.backgroundColour = 0;
        return options;
    }

    pxtest::TempDir dir;
};

TEST(FlashSchedule, SameRateShowsEveryFrame)
{
    EXPECT_EQ(FlashFrameCount(60, 30, 30), 60);
    for (long i = 0; i < 60; ++i)
        EXPECT_EQ(FlashShowFrame(i, 30, 30), i);
}

TEST(FlashSchedule, HalfRateShowsEverySecondFrameForTheSameTime)
{
    EXPECT_EQ(FlashFrameCount(60, 30, 15), 30);
    EXPECT_EQ(FlashShowFrame(1, 30, 15), 2);
    EXPECT_EQ(FlashShowFrame(29, 30, 15), 58);
    // An odd length keeps its last frame.
    EXPECT_EQ(FlashFrameCount(61, 30, 15), 31);
    EXPECT_EQ(FlashShowFrame(30, 30, 15), 60);
}

TEST(FlashSchedule, NoFramesOrNoRateMakesNothing)
{
    EXPECT_EQ(FlashFrameCount(0, 30, 30), 0);
    EXPECT_EQ(FlashFrameCount(60, 30, 0), 0);
    EXPECT_EQ(FlashFrameCount(-5, 30, 30), 0);
    EXPECT_EQ(FlashShowFrame(10, 30, 0), 0);
}

TEST(FlattenOnBackground, OpaquePixelsKeepTheirColourAndRowsGoTopDown)
{
    CDIB frame(2, 2, 32);
    Fill(frame, 10, 20, 30, 255);
    // Storage row 0 is the bottom row of the picture.
    frame.GetBitsAdd(0)[2] = 99;
    std::vector<unsigned char> argb(16);
    FlattenOnBackground(frame, 0x0000FF, 0, argb.data());
    EXPECT_EQ(argb[0], 255);
    EXPECT_EQ(argb[1], 30);
    EXPECT_EQ(argb[2], 20);
    EXPECT_EQ(argb[3], 10);
    EXPECT_EQ(argb[8 + 1], 99);  // bottom row, first pixel: red 99
}

TEST(FlattenOnBackground, TransparentPixelsTakeTheBackgroundAndHalfAlphaMixes)
{
    std::vector<unsigned char> argb(4);
    CDIB pixel(1, 1, 32);
    Fill(pixel, 10, 20, 30, 0);
    FlattenOnBackground(pixel, 0x123456, 0, argb.data());
    EXPECT_EQ(argb[0], 255);
    EXPECT_EQ(argb[1], 0x56);  // red is the colour's low byte
    EXPECT_EQ(argb[2], 0x34);
    EXPECT_EQ(argb[3], 0x12);
    Fill(pixel, 0, 0, 200, 128);
    FlattenOnBackground(pixel, 0x000000, 0, argb.data());
    EXPECT_EQ(argb[1], (200 * 128 + 127) / 255);
}

TEST(FlattenOnBackground, LetterboxBarsAreTheBackgroundColour)
{
    CDIB frame(2, 6, 32);
    Fill(frame, 17, 17, 17, 255);
    std::vector<unsigned char> argb(2 * 6 * 4);
    FlattenOnBackground(frame, 0x00FF00, 1, argb.data());
    auto greenAt = [&](int row) { return argb[static_cast<size_t>(row) * 8 + 2]; };
    EXPECT_EQ(greenAt(0), 255);
    EXPECT_EQ(greenAt(5), 255);
    EXPECT_EQ(greenAt(1), 17);
    EXPECT_EQ(greenAt(4), 17);
}

TEST_F(FlashMovie, TwoSecondsOfTheDemoShowIsAnSwfOfSixtyFramesAtThirty)
{
    OpenDemo();
    std::string path = dir.File("demo.swf");
    gCurFrame = 17;
    ASSERT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(320, 240, 60, 30)), 60) << FFMovieError();
    EXPECT_EQ(gCurFrame, 17) << "the current frame is the same afterwards";
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.container, "swf");
    EXPECT_EQ(facts.codec, "flv1");
    EXPECT_EQ(facts.packets, 60);
    if (!HaveFfprobe())
        GTEST_SKIP() << "ffprobe is not installed: the file was checked with the demuxer only";
    std::string said = Probe(path);
    EXPECT_NE(said.find("format_name=swf"), std::string::npos) << said;
    EXPECT_NE(said.find("codec_name=flv1"), std::string::npos) << said;
    EXPECT_NE(said.find("r_frame_rate=30/1"), std::string::npos) << said;
    EXPECT_NE(said.find("nb_read_frames=60"), std::string::npos) << said;
    EXPECT_NE(said.find("width=320"), std::string::npos) << said;
}

TEST_F(FlashMovie, FifteenFramesPerSecondKeepsTheShowsLength)
{
    OpenDemo();
    std::string path = dir.File("slow.swf");
    ASSERT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(160, 120, 60, 15)), 30) << FFMovieError();
    if (!HaveFfprobe())
        GTEST_SKIP() << "ffprobe is not installed";
    std::string said = Probe(path);
    EXPECT_NE(said.find("r_frame_rate=15/1"), std::string::npos) << said;
    EXPECT_NE(said.find("nb_read_frames=30"), std::string::npos) << said;
}

TEST_F(FlashMovie, FirstFrameDecodedIsCloseToTheRenderedFrame)
{
    OpenDemo();
    std::string path = dir.File("first.swf");
    constexpr int kW = 320;
    constexpr int kH = 240;
    ASSERT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(kW, kH, 2, 30)), 2) << FFMovieError();
    CDIB rendered(kW, kH, 32);
    CDIB incoming(1, 1, 32);
    ASSERT_TRUE(RenderShowFrame(*doc, 0, 0, &rendered, &incoming));
    std::vector<unsigned char> expected(4 * kW * kH);
    FlattenOnBackground(rendered, 0, 0, expected.data());
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height)) << FFMovieError();
    ASSERT_EQ(width, kW);
    ASSERT_EQ(height, kH);
    std::vector<unsigned char> decoded(4 * kW * kH);
    ASSERT_TRUE(FFReadMovieFrame(0, decoded.data())) << FFMovieError();
    FFCloseMovieReader();
    double total = 0.0;
    for (size_t i = 0; i < decoded.size(); i += 4) {
        for (size_t c = 1; c < 4; ++c)
            total += std::abs(static_cast<int>(decoded[i + c]) - static_cast<int>(expected[i + c]));
    }
    double mean = total / (3.0 * kW * kH);
    RecordProperty("mean_absolute_difference", std::to_string(mean));
    std::printf("first frame: mean absolute difference %.3f of 255\n", mean);
    EXPECT_LT(mean, 4.0);
}

TEST_F(FlashMovie, LetterboxBarsShowTheBackgroundColour)
{
    UseSettings("AspectMode=5626\r\n");
    OpenDemo();
    std::string path = dir.File("letterbox.swf");
    FlashMovieOptions options = Options(320, 240, 1, 30);
    options.backgroundColour = 0x0000FF;  // red
    ASSERT_EQ(MakeFlashMovie(*doc, path.c_str(), options), 1) << FFMovieError();
    ASSERT_EQ(doc->LetterboxBarRows(320, 240), 30);
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(path.c_str(), &width, &height)) << FFMovieError();
    std::vector<unsigned char> decoded(static_cast<size_t>(4) * width * height);
    ASSERT_TRUE(FFReadMovieFrame(0, decoded.data())) << FFMovieError();
    FFCloseMovieReader();
    for (int row : {4, 235}) {
        const unsigned char* pixel = decoded.data() + (static_cast<size_t>(row) * width + 160) * 4;
        EXPECT_GT(pixel[1], 220) << row;
        EXPECT_LT(pixel[2], 40) << row;
        EXPECT_LT(pixel[3], 40) << row;
    }
}

TEST_F(FlashMovie, UnwritablePlaceFailsAndLeavesNoFile)
{
    OpenDemo();
    std::string path = dir.File("no/such/folder/demo.swf");
    EXPECT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(64, 48, 4, 30)), kFlashOpenFailed);
    EXPECT_FALSE(pxtest::FileExists(path));
}

TEST_F(FlashMovie, RatesOutsideTheFormatAndEmptyShowsAreRefused)
{
    std::string path = dir.File("bad.swf");
    EXPECT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(64, 48, 4, 0)), kFlashBadOptions);
    EXPECT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(64, 48, 4, 256)), kFlashBadOptions);
    EXPECT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(0, 48, 4, 30)), kFlashBadOptions);
    EXPECT_EQ(MakeFlashMovie(*doc, path.c_str(), Options(64, 48, 0, 30)), kFlashBadOptions);
    EXPECT_EQ(MakeFlashMovie(*doc, nullptr, Options(64, 48, 4, 30)), kFlashBadOptions);
    EXPECT_FALSE(pxtest::FileExists(path));
}

TEST_F(FlashMovie, SaveFlashMovieExportsTheWholeShowAtTheMovieSize)
{
    UseSettings("MovieWid=96\r\nMovieHgt=72\r\n");
    OpenDemo();
    pDoc = doc.get();
    std::string path = dir.File("whole.swf");
    FSpec file = PathFSpec(path.c_str());
    long end = 0;
    {
        int last = doc->picCount - 1;
        end = doc->GetPicStart(last) + doc->keys[last][doc->GetKeyCount(last) - 1].Frame;
    }
    // At 3 frames per second the whole demo show stays short to write.
    int written = SaveFlashMovie(&file, 50, 0, 3);
    pDoc = nullptr;
    ASSERT_EQ(written, FlashFrameCount(end, 30, 3)) << FFMovieError();
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.width, 96);
    EXPECT_EQ(facts.height, 72);
    EXPECT_EQ(facts.packets, written);
}

}  // namespace
