// The command line's start and stop: the document in pDoc with its default length, the worker
// task started and stopped, and the user's settings file never rewritten.

#include "app/start/program_start.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "support/temp_dir.h"

namespace {

// Each test has a preferences folder of its own (never the user's real one); the environment
// is put back after.
class CommandLineStart : public testing::Test {
protected:
    void SetUp() override
    {
        const char* config = std::getenv("XDG_CONFIG_HOME");
        if (config)
            savedConfig = config;
        setenv("XDG_CONFIG_HOME", dir.Path().c_str(), 1);
    }
    void TearDown() override
    {
        if (savedConfig)
            setenv("XDG_CONFIG_HOME", savedConfig->c_str(), 1);
        else
            unsetenv("XDG_CONFIG_HOME");
    }

    std::string SettingsPath() const { return dir.File(kProgramName); }

    pxtest::TempDir dir;
    std::optional<std::string> savedConfig;
};

TEST_F(CommandLineStart, MakesTheDocumentWithFiveMinutesOfFrames)
{
    CDoc* doc = StartProgram(ProgramFront::kCommandLine);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(pDoc, doc);
    EXPECT_EQ(doc->showLength, (gFrameRate * 60 / 100) * 5);
    EXPECT_STREQ(gEnv.name, kProgramName);
    StopProgram(ProgramFront::kCommandLine);
    EXPECT_EQ(pDoc, nullptr);
}

TEST_F(CommandLineStart, StartsTheWorkerAndStopsIt)
{
    StartProgram(ProgramFront::kCommandLine);
    // The worker exists on a machine with more than one processor, and never without one.
    EXPECT_EQ(gTaskData != nullptr, gCanMultiProcess);
    StopProgram(ProgramFront::kCommandLine);
    EXPECT_EQ(gTaskData, nullptr);
}

TEST_F(CommandLineStart, TakesTheSettingsItIsGivenNotTheUsersFile)
{
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), "[Parallaxotron]\r\nMultiProcess=0\r\n"));
    StartProgram(ProgramFront::kCommandLine);
    EXPECT_EQ(GetIniItem("MultiProcess", 7), 7);
    StopProgram(ProgramFront::kCommandLine);

    StartProgram(ProgramFront::kCommandLine, nullptr, "[Parallaxotron]\r\nMultiProcess=3\r\n");
    EXPECT_EQ(GetIniItem("MultiProcess", 7), 3);
    StopProgram(ProgramFront::kCommandLine);
}

TEST_F(CommandLineStart, StopLeavesTheSettingsFileAsItWas)
{
    const std::string before = "[Parallaxotron]\r\nAspectMode=7500\r\nCodecType=avc1\r\n";
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), before));
    StartProgram(ProgramFront::kCommandLine);
    SetIniItem("AspectMode", 5625L);
    char codec[] = "png ";
    SetIniItem("CodecType", codec);
    StopProgram(ProgramFront::kCommandLine);
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), before);
}

TEST_F(CommandLineStart, MakesNoSettingsFileWhereThereIsNone)
{
    StartProgram(ProgramFront::kCommandLine);
    SetIniItem("AspectMode", 5625L);
    StopProgram(ProgramFront::kCommandLine);
    EXPECT_FALSE(std::filesystem::exists(SettingsPath()));
}

}  // namespace
