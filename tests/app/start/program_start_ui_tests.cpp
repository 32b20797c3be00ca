// The editor's start and stop: InitEnvironment's fonts and the settings saved at the end.

#include "app/start/program_start.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "doc/cdoc.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/wnd/shell.h"
#include "support/temp_dir.h"

namespace {

class EditorStart : public testing::Test {
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

    pxtest::TempDir dir;
    std::optional<std::string> savedConfig;
};

TEST_F(EditorStart, StartsTheEnvironmentAndStopFreesIt)
{
    CDoc* doc = StartProgram(ProgramFront::kEditor);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(pDoc, doc);
    EXPECT_EQ(gEnv.kind, kProgramKind);
    EXPECT_STREQ(gEnv.name, kProgramName);
    EXPECT_NE(Sans12, nullptr);
    StopProgram(ProgramFront::kEditor);
    EXPECT_EQ(pDoc, nullptr);
    EXPECT_EQ(Sans12, nullptr);
    EXPECT_EQ(gTaskData, nullptr);
}

TEST_F(EditorStart, StopSavesTheSettingsChangedWhileRunning)
{
    StartProgram(ProgramFront::kEditor);
    SetIniItem("AspectMode", 5625L);
    StopProgram(ProgramFront::kEditor);
    std::string saved = pxtest::ReadText(dir.File(kProgramName));
    EXPECT_NE(saved.find("AspectMode=5625\r\n"), std::string::npos) << saved;
}

}  // namespace
