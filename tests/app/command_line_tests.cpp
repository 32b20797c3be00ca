// Reading the command line: modes, options, and every refusal with its message.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/cli/command_line.h"

namespace {

CommandLine Parse(std::vector<std::string> arguments)
{
    return ParseCommandLine(arguments);
}

TEST(CommandLine, NoArgumentsOpensTheEditor)
{
    EXPECT_EQ(Parse({}).kind, CommandKind::kEditor);
    CommandLine line = Parse({"show.plx"});
    EXPECT_EQ(line.kind, CommandKind::kEditor);
    EXPECT_EQ(line.show, "show.plx");
}

TEST(CommandLine, RenderTakesEveryOption)
{
    CommandLine line = Parse({"--render", "demo.plx", "-o", "out.mov", "--size", "1280x720", "--fps", "25",
                              "--start", "00:00:02:00", "--end", "10:00", "--quality", "80", "--fields",
                              "--reverse", "--codec", "png"});
    ASSERT_EQ(line.kind, CommandKind::kRender) << line.error;
    EXPECT_EQ(line.show, "demo.plx");
    EXPECT_EQ(line.output, "out.mov");
    EXPECT_EQ(*line.width, 1280);
    EXPECT_EQ(*line.height, 720);
    EXPECT_EQ(*line.framesPerSecond, 25.0f);
    EXPECT_EQ(*line.start, "00:00:02:00");
    EXPECT_EQ(*line.end, "10:00");
    EXPECT_EQ(*line.quality, 80);
    EXPECT_TRUE(line.fields);
    EXPECT_TRUE(line.reverse);
    EXPECT_EQ(*line.codec, "png ");  // padded to four characters
}

TEST(CommandLine, OptionsLeftOutStayUnset)
{
    CommandLine line = Parse({"--render", "demo.plx", "--output", "out.mp4"});
    ASSERT_EQ(line.kind, CommandKind::kRender);
    EXPECT_FALSE(line.width.has_value());
    EXPECT_FALSE(line.framesPerSecond.has_value());
    EXPECT_FALSE(line.codec.has_value());
    EXPECT_FALSE(line.fields);
}

TEST(CommandLine, StillTakesAFrameAndAPicture)
{
    CommandLine line = Parse({"--render", "demo.plx", "--still", "150", "-o", "frame.tga"});
    ASSERT_EQ(line.kind, CommandKind::kStill);
    EXPECT_EQ(line.stillFrame, "150");
    CommandLine positional = Parse({"--still", "00:05:00", "demo.plx", "-o", "frame.bmp"});
    EXPECT_EQ(positional.kind, CommandKind::kStill);
    EXPECT_EQ(positional.show, "demo.plx");
}

TEST(CommandLine, HelpWinsOverEverythingElse)
{
    EXPECT_EQ(Parse({"--render", "x.plx", "--help"}).kind, CommandKind::kHelp);
    EXPECT_EQ(Parse({"-h"}).kind, CommandKind::kHelp);
    std::string text = UsageText();
    for (const char* option : {"--render", "-o", "--size", "--fps", "--start", "--end", "--quality", "--fields",
                               "--reverse", "--codec", "--still", "--help"})
        EXPECT_NE(text.find(option), std::string::npos) << option;
}

void ExpectUsageError(std::vector<std::string> arguments, const std::string& words)
{
    CommandLine line = Parse(arguments);
    EXPECT_EQ(line.kind, CommandKind::kUsageError);
    EXPECT_NE(line.error.find(words), std::string::npos) << line.error;
}

TEST(CommandLine, MistakesAreRefusedWithWhatWasWrong)
{
    ExpectUsageError({"--render"}, "needs a show file");
    ExpectUsageError({"--render", "x.plx"}, "no output file");
    ExpectUsageError({"--render", "x.plx", "-o"}, "needs a file name");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--size", "5000x10"}, "--size");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--size", "640"}, "--size");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--fps", "fast"}, "--fps");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--fps", "-3"}, "--fps");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--quality", "101"}, "--quality");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--codec", "h264x"}, "--codec");
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--frobnicate"}, "unknown option --frobnicate");
    ExpectUsageError({"a.plx", "b.plx"}, "more than one show");
    ExpectUsageError({"--still", "3", "-o", "f.tga"}, "no show file");
}

}  // namespace
