// Rendering from the command line: the demo show into a movie and a still, and every failure
// with its message and a non-zero exit.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <unistd.h>
#include <csignal>

#include "app/cli/command_line.h"
#include "app/cli/render_command.h"
#include "app/cli/stop_signals.h"
#include "app/cli_shows.h"
#include "image/cdib.h"
#include "output/ffmpeg_movie.h"
#include "output/frame_queue.h"
#include "output/movie.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "support/file_size_limit.h"
#include "support/movie_frames.h"
#include "support/small_disk.h"
#include "support/temp_dir.h"

namespace {

std::string DemoFolder() { return PX_SOURCE_DIR "/resources/demo"; }

class RenderCommand : public testing::Test {
protected:
    void SetUp() override { SetStopSignal(0); }
    void TearDown() override { SetStopSignal(0); }

    // Runs the command line; what it says on stderr lands in `said`.
    int Run(std::vector<std::string> arguments)
    {
        CommandLine line = ParseCommandLine(arguments);
        EXPECT_TRUE(line.kind == CommandKind::kRender || line.kind == CommandKind::kStill)
            << line.error;
        std::FILE* err = std::tmpfile();
        int code = RunRenderCommand(line, err);
        std::fflush(err);
        std::rewind(err);
        said.clear();
        char buffer[512];
        while (std::fgets(buffer, sizeof buffer, err) != nullptr)
            said += buffer;
        std::fclose(err);
        return code;
    }

    std::string demo = DemoFolder() + "/demo.plx";
    pxtest::TempDir dir;
    std::string said;
};

TEST_F(RenderCommand, DemoShowRendersAMovieAndExitsZero)
{
    std::string out = dir.File("demo.mov");
    int code = Run({"--render", demo, "-o", out, "--size", "160x120", "--start", "0", "--end", "12",
                    "--codec", "png"});
    EXPECT_EQ(code, kExitMade) << said;
    EXPECT_EQ(pxtest::MovieFrames(out), 12);
    EXPECT_NE(said.find("Wrote 12 frames to " + out), std::string::npos) << said;
}

TEST_F(RenderCommand, ProgressLineCountsFramesAndTimeToGo)
{
    std::string out = dir.File("progress.mov");
    ASSERT_EQ(Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "3", "--codec", "png"}),
              kExitMade)
        << said;
    EXPECT_NE(said.find("frame 3 of 3, "), std::string::npos) << said;
    EXPECT_NE(said.find("Time to go: 00:00"), std::string::npos) << said;
}

TEST_F(RenderCommand, MissingShowExitsWithItsMessage)
{
    int code = Run({"--render", dir.File("nowhere.plx"), "-o", dir.File("out.mov")});
    EXPECT_EQ(code, kExitFailed);
    EXPECT_NE(said.find("cannot open show file"), std::string::npos) << said;
    EXPECT_FALSE(pxtest::FileExists(dir.File("out.mov")));
}

TEST_F(RenderCommand, FileThatIsNoShowExitsWithItsMessage)
{
    ASSERT_TRUE(pxtest::WriteText(dir.File("notes.plx"), "just some words"));
    EXPECT_EQ(Run({"--render", dir.File("notes.plx"), "-o", dir.File("out.mov")}), kExitFailed);
    EXPECT_NE(said.find("is not a show file"), std::string::npos) << said;
}

TEST_F(RenderCommand, UnreadablePictureExitsWithItsName)
{
    // The show alone, without its pictures beside it.
    std::filesystem::copy_file(demo, dir.File("lonely.plx"));
    int code = Run({"--render", dir.File("lonely.plx"), "-o", dir.File("out.mov"), "--end", "2"});
    EXPECT_EQ(code, kExitFailed);
    // One line, with the picture loader's own words.
    EXPECT_NE(said.find("parallaxotron: picture "), std::string::npos) << said;
    EXPECT_NE(said.find(".png of " + dir.File("lonely.plx") + ": Can't open graphics file\n"),
              std::string::npos)
        << said;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_FALSE(pxtest::FileExists(dir.File("out.mov")));
}

TEST_F(RenderCommand, UnknownCodecExitsWithTheCodecsThisBuildWrites)
{
    int code = Run({"--render", demo, "-o", dir.File("out.mov"), "--codec", "zzzz"});
    EXPECT_EQ(code, kExitUsage);
    EXPECT_NE(said.find("unknown codec 'zzzz'"), std::string::npos) << said;
    EXPECT_NE(said.find("png "), std::string::npos) << said;
    EXPECT_FALSE(pxtest::FileExists(dir.File("out.mov")));
}

TEST_F(RenderCommand, UnwritableOutputExitsWithItsMessage)
{
    std::string out = dir.File("missing/folder/out.mov");
    int code =
        Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "2", "--codec", "png"});
    EXPECT_EQ(code, kExitFailed);
    EXPECT_NE(said.find("cannot write movie " + out + ": "), std::string::npos) << said;
    EXPECT_NE(said.find("No such file or directory"), std::string::npos) << said;
}

TEST_F(RenderCommand, CtrlCKeepsAPlayableMovieOfTheFramesSoFar)
{
    std::string out = dir.File("stopped.mov");
    StopAfterFrames(5);
    int code =
        Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "40", "--codec", "png"});
    EXPECT_EQ(code, 130) << said;
    // The stop comes with the fifth frame written; the frames already rendered behind it, while
    // it was being encoded, are written too, so the movie holds every frame that was made.
    long frames = pxtest::MovieFrames(out);
    EXPECT_GE(frames, 5);
    EXPECT_LE(frames, 5 + MovieFrameQueue::kBuffers);
    EXPECT_NE(said.find("Stopped by SIGINT: " + out + " holds the " + std::to_string(frames) +
                        " frames made so far"),
              std::string::npos)
        << said;
}

TEST_F(RenderCommand, StillWritesOneFrameAsATarga)
{
    std::string out = dir.File("frame.tga");
    int code = Run({"--render", demo, "--still", "10", "-o", out, "--size", "80x60"});
    EXPECT_EQ(code, kExitMade) << said;
    CDIB picture(1, 1, 24);
    FSpec spec = PathFSpec(out.c_str());
    EXPECT_EQ(picture.Load(&spec, nullptr, false), 1);
    EXPECT_EQ(picture.GetWid(), 80);
    EXPECT_EQ(picture.GetHgt(), 60);
}

TEST_F(RenderCommand, StillRefusesAnotherKindOfPicture)
{
    EXPECT_EQ(Run({"--render", demo, "--still", "10", "-o", dir.File("frame.png")}), kExitUsage);
    EXPECT_NE(said.find("as .tga or .bmp"), std::string::npos) << said;
}

TEST_F(RenderCommand, RenderLeavesTheUsersSettingsFileUntouched)
{
    // A preferences folder of the test's own, holding settings the show and the options differ
    // from.
    const char* config = std::getenv("XDG_CONFIG_HOME");
    std::string savedConfig = config ? config : "";
    pxtest::TempDir preferences;
    setenv("XDG_CONFIG_HOME", preferences.Path().c_str(), 1);
    const std::string settings = preferences.File("Parallaxotron");
    const std::string before =
        "[Parallaxotron]\r\nAspectMode=5626\r\nCodecType=avc1\r\nMovieType=3\r\n";
    ASSERT_TRUE(pxtest::WriteText(settings, before));

    std::string out = dir.File("settings.mov");
    int code =
        Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "2", "--codec", "png"});
    std::string after = pxtest::ReadText(settings);
    if (config)
        setenv("XDG_CONFIG_HOME", savedConfig.c_str(), 1);
    else
        unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(code, kExitMade) << said;
    EXPECT_EQ(after, before);
}

// ---- Defaults and options ---------------------------------------------------------------

// The editor's settings file, as the test environment places it.
std::string EditorSettingsPath()
{
    char path[4096] = {};
    return GetIniFilePath(path, sizeof path) ? path : "";
}

TEST_F(RenderCommand, DefaultsAreBuiltInNotTheEditorsAndItsFileIsLeftAlone)
{
    std::string settings = EditorSettingsPath();
    ASSERT_FALSE(settings.empty());
    std::filesystem::create_directories(std::filesystem::path(settings).parent_path());
    std::string remembered =
        "[Parallaxotron]\r\nMovieWid=640\r\nMovieHgt=360\r\nMovieHold=00:00:10\r\nAspectMode=7500\r\n";
    std::string before = pxtest::FileExists(settings) ? pxtest::ReadText(settings) : std::string();
    ASSERT_TRUE(pxtest::WriteText(settings, remembered));
    struct stat stamp {};
    stat(settings.c_str(), &stamp);

    std::string out = dir.File("default.tga");
    int code = Run({"--render", demo, "--still", "10", "-o", out});
    struct stat after {};
    stat(settings.c_str(), &after);
    std::string left = pxtest::ReadText(settings);
    if (before.empty())
        std::filesystem::remove(settings);
    else
        pxtest::WriteText(settings, before);

    ASSERT_EQ(code, kExitMade) << said;
    CDIB picture(1, 1, 24);
    FSpec spec = PathFSpec(out.c_str());
    ASSERT_EQ(picture.Load(&spec, nullptr, false), 1);
    EXPECT_EQ(picture.GetWid(), 1920);
    EXPECT_EQ(picture.GetHgt(), 1080);
    EXPECT_EQ(left, remembered) << "the command line never writes the user's settings";
    EXPECT_EQ(after.st_mtim.tv_sec, stamp.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, stamp.st_mtim.tv_nsec);
}

TEST_F(RenderCommand, SettingsFileGivesTheEditorsChoicesWhenAskedAndStaysUnwritten)
{
    std::string settings = dir.File("my.ini");
    std::string text =
        "[Parallaxotron]\r\nMovieWid=96\r\nMovieHgt=54\r\nMovieHold=00:00:02\r\nCodecType=png \r\n";
    ASSERT_TRUE(pxtest::WriteText(settings, text));
    std::string out = dir.File("remembered.mov");
    ASSERT_EQ(Run({"--render", demo, "-o", out, "--end", "3", "--settings", settings}), kExitMade)
        << said;
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(out.c_str(), &facts));
    EXPECT_EQ(facts.width, 96);
    EXPECT_EQ(facts.height, 54);
    EXPECT_EQ(facts.codec, "png");
    EXPECT_EQ(facts.packets, 3 + 2 * 2) << "the remembered hold of 2 frames, at each end";
    EXPECT_EQ(pxtest::ReadText(settings), text);
}

TEST_F(RenderCommand, HoldAppliesOnlyWhereAsked)
{
    std::string plain = dir.File("plain.mov");
    std::string held = dir.File("held.mov");
    ASSERT_EQ(
        Run({"--render", demo, "-o", plain, "--size", "64x48", "--end", "4", "--codec", "png"}),
        kExitMade)
        << said;
    ASSERT_EQ(Run({"--render", demo, "-o", held, "--size", "64x48", "--end", "4", "--codec", "png",
                   "--hold", "3"}),
              kExitMade)
        << said;
    EXPECT_EQ(pxtest::MovieFrames(plain), 4);
    EXPECT_EQ(pxtest::MovieFrames(held), 4 + 2 * 3);
}

TEST_F(RenderCommand, FrameNumbersAreFramesAndTimecodesAreTimecodes)
{
    std::string number = dir.File("number.tga");
    std::string timecode = dir.File("timecode.tga");
    // At the demo's 29.97 (counted as 30 a second), frame 150 is 00:00:05:00.
    ASSERT_EQ(Run({"--render", demo, "--still", "150", "-o", number, "--size", "48x36"}), kExitMade)
        << said;
    ASSERT_EQ(Run({"--render", demo, "--still", "00:05:00", "-o", timecode, "--size", "48x36"}),
              kExitMade)
        << said;
    EXPECT_EQ(pxtest::ReadBytes(number), pxtest::ReadBytes(timecode));
    EXPECT_NE(said.find("Wrote frame 150 to"), std::string::npos) << said;
}

TEST_F(RenderCommand, LetterboxAspectPaintsBarsAndTheDefaultFollowsTheSize)
{
    std::string boxed = dir.File("boxed.bmp");
    ASSERT_EQ(Run({"--render", demo, "--still", "10", "-o", boxed, "--size", "64x48", "--aspect",
                   "16:9L"}),
              kExitMade)
        << said;
    CDIB picture(1, 1, 24);
    FSpec spec = PathFSpec(boxed.c_str());
    ASSERT_EQ(picture.Load(&spec, nullptr, false), 1);
    // Storage rows are bottom-up; the bars are at both ends either way.
    const unsigned char* top = picture.GetBitsAdd(0);
    EXPECT_EQ(top[0], 17);
    EXPECT_EQ(top[1], 17);
    EXPECT_EQ(top[2], 17);
    const unsigned char* middle = picture.GetBitsAdd(24);
    EXPECT_FALSE(middle[0] == 17 && middle[1] == 17 && middle[2] == 17);
}

TEST_F(RenderCommand, JsonProgressIsOneObjectALineAndQuietSaysNothing)
{
    ASSERT_EQ(Run({"--render", demo, "-o", dir.File("json.mov"), "--size", "64x48", "--end", "3",
                   "--codec", "png", "--progress", "json"}),
              kExitMade)
        << said;
    EXPECT_NE(said.find("{\"frame\":3,\"total\":3,\"fps\":"), std::string::npos) << said;
    EXPECT_NE(said.find(",\"eta_s\":0}\n"), std::string::npos) << said;
    ASSERT_EQ(Run({"--render", demo, "-o", dir.File("quiet.mov"), "--size", "64x48", "--end", "3",
                   "--codec", "png", "--quiet"}),
              kExitMade)
        << said;
    EXPECT_EQ(said, "");
}

TEST_F(RenderCommand, BatchWritesEachShowIntoTheFolder)
{
    ASSERT_TRUE(pxtest::WriteTwoPictureShow(dir.Path(), "first.plx", 6, 2.0f));
    ASSERT_TRUE(pxtest::WriteTwoPictureShow(dir.Path(), "second.plx", 4, 2.0f));
    std::filesystem::create_directory(dir.File("movies"));
    ASSERT_EQ(Run({"--render", dir.File("first.plx"), dir.File("second.plx"), "-o",
                   dir.File("movies/"), "--size", "32x24", "--codec", "png"}),
              kExitMade)
        << said;
    EXPECT_EQ(pxtest::MovieFrames(dir.File("movies/first.mov")), 12);
    EXPECT_EQ(pxtest::MovieFrames(dir.File("movies/second.mov")), 8);
}

// ---- Ranges -------------------------------------------------------------------------------

TEST_F(RenderCommand, EmptyRangeIsRefusedAndNothingIsWritten)
{
    std::string out = dir.File("empty.mov");
    EXPECT_EQ(Run({"--render", demo, "-o", out, "--start", "100", "--end", "100"}), kExitUsage);
    EXPECT_EQ(said, "parallaxotron: --start 100 --end 100 is an empty range: " + demo +
                        " runs from frame 0 to frame 1190 (00:00:39:20)\n");
    EXPECT_FALSE(pxtest::FileExists(out));
}

TEST_F(RenderCommand, RangeOutsideTheShowIsRefused)
{
    EXPECT_EQ(Run({"--render", demo, "-o", dir.File("late.mov"), "--start", "01:00:00:00"}),
              kExitUsage);
    EXPECT_NE(said.find("--start 01:00:00:00 is outside the show"), std::string::npos) << said;
    EXPECT_EQ(Run({"--render", demo, "-o", dir.File("late.mov"), "--end", "5000"}), kExitUsage);
    EXPECT_NE(said.find("--end 5000 is outside the show"), std::string::npos) << said;
    EXPECT_EQ(Run({"--render", demo, "--still", "99999", "-o", dir.File("late.tga")}), kExitUsage);
    EXPECT_NE(said.find("--still 99999 is outside the show"), std::string::npos) << said;
    EXPECT_EQ(Run({"--render", demo, "--still", "00:01:45", "-o", dir.File("late.tga")}),
              kExitUsage);
    EXPECT_NE(said.find("the frames of a timecode run 00 to 29"), std::string::npos) << said;
}

// ---- Files ----------------------------------------------------------------------------------

TEST_F(RenderCommand, OutputNamingTheShowIsRefusedAndTheShowKept)
{
    std::filesystem::copy_file(demo, dir.File("show.plx"));
    std::vector<unsigned char> show = pxtest::ReadBytes(dir.File("show.plx"));
    EXPECT_EQ(Run({"--render", dir.File("show.plx"), "-o", dir.File("show.plx")}), kExitUsage);
    EXPECT_EQ(said, "parallaxotron: -o names the show itself: " + dir.File("show.plx") + "\n");
    EXPECT_EQ(pxtest::ReadBytes(dir.File("show.plx")), show);
}

TEST_F(RenderCommand, PathOfThreeHundredCharactersIsRefusedNotCut)
{
    std::string out = dir.Path() + "/" + std::string(300 - dir.Path().size() - 5, 'n') + ".mov";
    ASSERT_EQ(out.size(), 300u);
    EXPECT_EQ(Run({"--render", demo, "-o", out}), kExitUsage);
    EXPECT_EQ(said, "parallaxotron: the output " + out +
                        " is 300 characters long; file names here hold at most 255\n");
    EXPECT_TRUE(std::filesystem::is_empty(dir.Path()));
}

TEST_F(RenderCommand, FullDiskFailsWithItsReasonAndKeepsThePreviousMovie)
{
    pxtest::SmallDisk disk(256 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << disk.Reason();
    std::string out = disk.File("movie.mov");
    ASSERT_EQ(Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "2", "--codec", "png"}),
              kExitMade)
        << said;
    std::vector<unsigned char> previous = pxtest::ReadBytes(out);
    EXPECT_EQ(
        Run({"--render", demo, "-o", out, "--size", "256x192", "--end", "30", "--codec", "raw"}),
        kExitFailed);
    EXPECT_NE(said.find("parallaxotron: writing movie " + out + " failed: "), std::string::npos)
        << said;
    EXPECT_NE(said.find("No space left on device"), std::string::npos) << said;
    EXPECT_EQ(pxtest::ReadBytes(out), previous);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.Path()), {}), 1)
        << "no temporary file left";
}

TEST_F(RenderCommand, FullDiskStillFailsAndKeepsThePreviousPicture)
{
    pxtest::SmallDisk disk(64 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << disk.Reason();
    std::string out = disk.File("frame.tga");
    ASSERT_TRUE(pxtest::WriteText(out, "an older, longer still picture than the new one will be"));
    EXPECT_EQ(Run({"--render", demo, "--still", "5", "-o", out, "--size", "320x240"}), kExitFailed);
    EXPECT_EQ(said, "parallaxotron: cannot write " + out + ": No space left on device\n");
    EXPECT_EQ(pxtest::ReadText(out), "an older, longer still picture than the new one will be");
}

TEST_F(RenderCommand, ReadOnlyFolderFailsWithItsReasonAndKeepsThePreviousMovie)
{
    pxtest::SmallDisk disk(256 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << disk.Reason();
    std::string out = disk.File("movie.mov");
    ASSERT_TRUE(pxtest::WriteText(out, "previous movie"));
    ASSERT_TRUE(disk.MakeReadOnly());
    EXPECT_EQ(Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "2", "--codec", "png"}),
              kExitFailed);
    EXPECT_NE(said.find("parallaxotron: cannot write movie " + out + ": "), std::string::npos)
        << said;
    EXPECT_NE(said.find("Read-only file system"), std::string::npos) << said;
    EXPECT_EQ(pxtest::ReadText(out), "previous movie");
}

TEST_F(RenderCommand, PipeAsAPictureIsRefusedAtOnce)
{
    ASSERT_TRUE(pxtest::WriteTwoPictureShow(dir.Path(), "pipe.plx", 6, 2.0f));
    std::filesystem::remove(dir.File("b.bmp"));
    ASSERT_EQ(mkfifo(dir.File("b.bmp").c_str(), 0666), 0);
    EXPECT_EQ(Run({"--render", dir.File("pipe.plx"), "-o", dir.File("out.mov")}), kExitFailed);
    EXPECT_EQ(said, "parallaxotron: picture " + dir.File("b.bmp") + " of " + dir.File("pipe.plx") +
                        ": Can't open graphics file\n");
}

TEST_F(RenderCommand, NamesThatAreNotUtf8AreEscapedInMessages)
{
    std::string show = dir.File("sh\xFFow.plx");
    EXPECT_EQ(Run({"--render", show, "-o", dir.File("out.mov")}), kExitFailed);
    EXPECT_NE(said.find("sh\\xFFow.plx"), std::string::npos) << said;
    EXPECT_EQ(said.find('\xFF'), std::string::npos) << said;
}

TEST_F(RenderCommand, StillReplacesALongerOlderFileWhole)
{
    std::string out = dir.File("frame.bmp");
    ASSERT_TRUE(pxtest::WriteBytes(out, std::vector<unsigned char>(100000, 0xEE)));
    ASSERT_EQ(Run({"--render", demo, "--still", "5", "-o", out, "--size", "16x16"}), kExitMade)
        << said;
    EXPECT_LT(pxtest::ReadBytes(out).size(), 2000u);
}

}  // namespace
