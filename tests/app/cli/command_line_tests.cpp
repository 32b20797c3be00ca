// Reading the command line: modes, options, and every refusal with its message.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/cli/command_line.h"

namespace {

CommandLine Parse(std::vector<std::string> arguments) { return ParseCommandLine(arguments); }

TEST(CommandLine, NoArgumentsOpensTheEditor)
{
    EXPECT_EQ(Parse({}).kind, CommandKind::kEditor);
    CommandLine line = Parse({"show.plx"});
    EXPECT_EQ(line.kind, CommandKind::kEditor);
    EXPECT_EQ(line.shows, std::vector<std::string>{"show.plx"});
}

TEST(CommandLine, RenderTakesEveryOption)
{
    CommandLine line = Parse({"--render", "demo.plx", "-o", "out.mov", "--size", "1280x720",
                              "--fps", "25", "--start", "00:00:02:00", "--end", "10:00",
                              "--quality", "80", "--fields", "--reverse", "--codec", "png"});
    ASSERT_EQ(line.kind, CommandKind::kRender) << line.error;
    EXPECT_EQ(line.shows, std::vector<std::string>{"demo.plx"});
    EXPECT_EQ(line.output, "out.mov");
    EXPECT_EQ(*line.width, 1280);
    EXPECT_EQ(*line.height, 720);
    EXPECT_EQ(*line.framesPerSecond, 25.0f);
    EXPECT_EQ(line.start->text, "00:00:02:00");
    EXPECT_TRUE(line.start->timecode);
    EXPECT_EQ(line.start->fields[2], 2);
    EXPECT_EQ(line.end->text, "10:00");
    EXPECT_EQ(line.end->fields[2], 10);
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
    EXPECT_FALSE(line.still->timecode);
    EXPECT_EQ(line.still->frame, 150);
    CommandLine positional = Parse({"--still", "00:05:00", "demo.plx", "-o", "frame.bmp"});
    EXPECT_EQ(positional.kind, CommandKind::kStill);
    EXPECT_EQ(positional.shows, std::vector<std::string>{"demo.plx"});
}

TEST(CommandLine, HelpWinsOverEverythingElse)
{
    EXPECT_EQ(Parse({"--render", "x.plx", "--help"}).kind, CommandKind::kHelp);
    EXPECT_EQ(Parse({"-h"}).kind, CommandKind::kHelp);
    std::string text = UsageText();
    for (const char* option : {"--render",
                               "-o",
                               "--size",
                               "--fps",
                               "--start",
                               "--end",
                               "--quality",
                               "--fields",
                               "--reverse",
                               "--codec",
                               "--still",
                               "--help",
                               "--settings",
                               "--hold",
                               "--aspect",
                               "--progress",
                               "--quiet",
                               "--version",
                               "Exit codes",
                               "129",
                               "130",
                               "143",
                               "default 1920x1080",
                               "default 29.97",
                               "default avc1",
                               "default 100"})
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
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--frobnicate"},
                     "unknown option --frobnicate");
    ExpectUsageError({"a.plx", "b.plx"}, "more than one show");
    ExpectUsageError({"--still", "3", "-o", "f.tga"}, "no show file");
}

TEST(CommandLine, FramesAreNumbersOfDigitsOrTimecodesWithColons)
{
    FrameText frame;
    ASSERT_TRUE(ParseFrameText("150", &frame));
    EXPECT_FALSE(frame.timecode);
    EXPECT_EQ(frame.frame, 150);
    ASSERT_TRUE(ParseFrameText("01:02:03:04", &frame));
    EXPECT_TRUE(frame.timecode);
    EXPECT_EQ(frame.fields[0], 1);
    EXPECT_EQ(frame.fields[3], 4);
    ASSERT_TRUE(ParseFrameText("5:00", &frame));
    EXPECT_EQ(frame.fields[2], 5);
    EXPECT_EQ(frame.fields[3], 0);
    for (const char* wrong : {"abc", "", "-5", "+5", "1.5", "12a", "1:2:3:4:5", "99:99:99:99",
                              "00:60:00", ":", "1::2", "123:00", "1234567890"})
        EXPECT_FALSE(ParseFrameText(wrong, &frame)) << wrong;
}

TEST(CommandLine, StillThatIsNoFrameIsAUsageError)
{
    ExpectUsageError(
        {"--render", "x.plx", "--still", "abc", "-o", "f.tga"},
        "--still needs a frame number (digits only, e.g. 150) or a timecode with colons");
    ExpectUsageError({"--render", "x.plx", "--start", "99:99:99:99", "-o", "f.mov"},
                     "not '99:99:99:99'");
    ExpectUsageError({"--render", "x.plx", "--hold", "1.5", "-o", "f.mov"},
                     "--hold needs a frame number");
}

TEST(CommandLine, AspectsAreNamedShapesOrWidthToHeight)
{
    AspectChoice aspect;
    ASSERT_TRUE(ParseAspect("4:3", &aspect));
    EXPECT_DOUBLE_EQ(aspect.ratio, 0.75);
    EXPECT_FALSE(aspect.letterbox);
    ASSERT_TRUE(ParseAspect("16:9L", &aspect));
    EXPECT_DOUBLE_EQ(aspect.ratio, 0.5625);
    EXPECT_TRUE(aspect.letterbox);
    ASSERT_TRUE(ParseAspect("2:1", &aspect));
    EXPECT_DOUBLE_EQ(aspect.ratio, 0.5);
    for (const char* wrong : {"wide", "4x3", "0:3", "4:0", "4:", "1000:1"})
        EXPECT_FALSE(ParseAspect(wrong, &aspect)) << wrong;
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--aspect", "wide"},
                     "--aspect needs 4:3, 16:9, 16:9L");
}

TEST(CommandLine, ProgressQuietVersionSettingsAndBatch)
{
    CommandLine line = Parse({"--render", "a.plx", "b.plx", "-o", "out/", "--progress", "json",
                              "--quiet", "--settings", "my.ini"});
    ASSERT_EQ(line.kind, CommandKind::kRender) << line.error;
    EXPECT_EQ(line.shows, (std::vector<std::string>{"a.plx", "b.plx"}));
    EXPECT_EQ(line.progress, ProgressStyle::kJson);
    EXPECT_TRUE(line.quiet);
    EXPECT_EQ(*line.settings, "my.ini");
    EXPECT_EQ(Parse({"--version"}).kind, CommandKind::kVersion);
    EXPECT_EQ(VersionText().rfind("parallaxotron ", 0), 0u);
    ExpectUsageError({"--render", "x.plx", "-o", "y.mov", "--progress", "dots"},
                     "--progress needs bar, lines or json");
    ExpectUsageError({"--render", "a.plx", "b.plx", "--still", "3", "-o", "f.tga"},
                     "--still renders one show");
}

}  // namespace
