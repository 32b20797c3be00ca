// The editor from start to end inside one process: start on the demo show, quit through the
// window's close request (as the window manager asks), and everything is taken down again.

#include "app/start/editor_start.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/window_list.h"
#include "support/close_when_shown.h"
#include "support/temp_dir.h"
#include "ui/editor_windows.h"

namespace {

const std::string kDemoShow = std::string(PX_SOURCE_DIR) + "/resources/demo/demo.plx";
constexpr const char* kDemoTitle = "Hollerbank Parallaxotron - demo";

// Closes the window titled `title` once it shows; the title seen is kept in `seen`.
void CloseWindowWhenShown(const char* title, std::string* seen)
{
    pxtest::CloseWindowWhenShown(QString::fromUtf8(title), [title, seen]() { *seen = title; });
}

class EditorRun : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_CONFIG_HOME", dir.Path().c_str(), 1); }
    pxtest::TempDir dir;
};

TEST_F(EditorRun, StartsOnTheDemoShowAndQuitsThroughTheCloseRequest)
{
    std::string seen;
    CloseWindowWhenShown(kDemoTitle, &seen);
    EXPECT_EQ(RunEditorSession(this, kDemoShow.c_str()), 0);
    EXPECT_EQ(seen, kDemoTitle);
    EXPECT_EQ(pMain, nullptr);
    EXPECT_EQ(pDoc, nullptr);
    EXPECT_EQ(pStage, nullptr);
    EXPECT_EQ(gWindowList.count, 0);
    EXPECT_TRUE(std::filesystem::exists(dir.File("Parallaxotron")));
}

TEST_F(EditorRun, TwentyRunsInARowEachWriteTheSettingsOnce)
{
    for (int run = 0; run < 20; ++run) {
        long saves = GetIniSaveCount();
        std::string seen;
        CloseWindowWhenShown(kDemoTitle, &seen);
        ASSERT_EQ(RunEditorSession(this, kDemoShow.c_str()), 0) << run;
        EXPECT_EQ(seen, kDemoTitle) << run;
        EXPECT_EQ(GetIniSaveCount(), saves + 1) << run;
        EXPECT_EQ(gWindowList.count, 0) << run;
    }
}

TEST_F(EditorRun, WithoutAShowTheTitleIsTheProduct)
{
    std::string seen;
    CloseWindowWhenShown("Hollerbank Parallaxotron", &seen);
    EXPECT_EQ(RunEditorSession(this, nullptr), 0);
    EXPECT_EQ(seen, "Hollerbank Parallaxotron");
}

TEST_F(EditorRun, AShowThatCannotBeOpenedStillOpensTheEditor)
{
    std::string seen;
    CloseWindowWhenShown("Hollerbank Parallaxotron", &seen);
    EXPECT_EQ(RunEditorSession(this, dir.File("missing.plx").c_str()), 0);
    EXPECT_EQ(seen, "Hollerbank Parallaxotron");
}

TEST_F(EditorRun, DesktopOpenRequestGoesThroughOpenDocumentFile)
{
    std::string seen;
    QTimer::singleShot(20, []() {
        const char* paths[] = {kDemoShow.c_str(), "/ignored/second.plx"};
        OpenAppleEventHandler(2, paths);
    });
    CloseWindowWhenShown(kDemoTitle, &seen);
    EXPECT_EQ(RunEditorSession(this, nullptr), 0);
    EXPECT_EQ(seen, kDemoTitle);
}

}  // namespace
