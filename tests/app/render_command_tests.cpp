// Rendering from the command line: the demo show into a movie and a still, and every failure
// with its message and a non-zero exit.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/cli/command_line.h"
#include "app/cli/render_command.h"
#include "image/cdib.h"
#include "output/movie.h"
#include "platform/file/paths.h"
#include "support/movie_frames.h"
#include "support/temp_dir.h"

namespace {

std::string DemoFolder()
{
    return PX_SOURCE_DIR "/resources/demo";
}

class RenderCommand : public testing::Test {
protected:
    void SetUp() override { SetInterruptRequested(false); }
    void TearDown() override { SetInterruptRequested(false); }

    // Runs the command line; what it says on stderr lands in `said`.
    int Run(std::vector<std::string> arguments)
    {
        CommandLine line = ParseCommandLine(arguments);
        EXPECT_TRUE(line.kind == CommandKind::kRender || line.kind == CommandKind::kStill) << line.error;
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
    EXPECT_NE(said.find("cannot read picture"), std::string::npos) << said;
    EXPECT_NE(said.find(".png"), std::string::npos) << said;
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
    int code = Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "2", "--codec", "png"});
    EXPECT_EQ(code, kExitFailed);
    EXPECT_NE(said.find("cannot write movie " + out), std::string::npos) << said;
}

TEST_F(RenderCommand, CtrlCKeepsAPlayableMovieOfTheFramesSoFar)
{
    std::string out = dir.File("stopped.mov");
    InterruptAfterFrames(5);
    int code = Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "40", "--codec", "png"});
    EXPECT_EQ(code, kExitStopped) << said;
    EXPECT_EQ(pxtest::MovieFrames(out), 5);
    EXPECT_NE(said.find("holds the 5 frames made so far"), std::string::npos) << said;
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
    // A preferences folder of the test's own, holding settings the show and the options differ from.
    const char* config = std::getenv("XDG_CONFIG_HOME");
    std::string savedConfig = config ? config : "";
    pxtest::TempDir preferences;
    setenv("XDG_CONFIG_HOME", preferences.Path().c_str(), 1);
    const std::string settings = preferences.File("Parallaxotron");
    const std::string before =
        "[Parallaxotron]\r\nAspectMode=5626\r\nCodecType=avc1\r\nMovieType=3\r\n";
    ASSERT_TRUE(pxtest::WriteText(settings, before));

    std::string out = dir.File("settings.mov");
    int code = Run({"--render", demo, "-o", out, "--size", "64x48", "--end", "2", "--codec", "png"});
    std::string after = pxtest::ReadText(settings);
    if (config)
        setenv("XDG_CONFIG_HOME", savedConfig.c_str(), 1);
    else
        unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(code, kExitMade) << said;
    EXPECT_EQ(after, before);
}

}  // namespace
