// The editor from start to end inside one process: start on the demo show, quit through the
// window's close request (as the window manager asks), and everything is taken down again.

#include "app/start/editor_start.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileOpenEvent>
#include <QTimer>
#include <QWidget>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "platform/ini/settings.h"
#include "platform/instance/single_instance.h"
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

// The running editor, as a later launch finds it: a listener at the address that keeps the open
// requests it gets.
class RunningEditor : public QObject {
public:
    explicit RunningEditor(const std::string& address)
    {
        listening = StartEditorListener(address);
        QCoreApplication::instance()->installEventFilter(this);
    }
    ~RunningEditor() override
    {
        QCoreApplication::instance()->removeEventFilter(this);
        StopEditorListener();
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object != QCoreApplication::instance() || event->type() != QEvent::FileOpen)
            return false;
        paths.push_back(
            QFile::encodeName(static_cast<QFileOpenEvent*>(event)->file()).toStdString());
        return true;
    }

    void WaitForRequest()
    {
        QElapsedTimer clock;
        clock.start();
        while (paths.empty() && clock.elapsed() < 1000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }

    bool listening = false;
    std::vector<std::string> paths;
};

TEST_F(EditorRun, LaunchWithAShowHandsItsFullPathToTheRunningEditorAndEnds)
{
    std::string address = dir.File("editor");
    RunningEditor running(address);
    ASSERT_TRUE(running.listening);
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(kDemoShow).parent_path());

    int code = RunEditorOrHandOver(this, "demo.plx", address);
    std::filesystem::current_path(before);

    EXPECT_EQ(code, 0);
    EXPECT_EQ(pDoc, nullptr);
    EXPECT_EQ(gWindowList.count, 0);
    running.WaitForRequest();
    ASSERT_EQ(running.paths.size(), 1u);
    EXPECT_TRUE(std::filesystem::equivalent(running.paths[0], kDemoShow));
    EXPECT_EQ(running.paths[0].front(), '/');
}

TEST_F(EditorRun, RunningEditorOpensTheShowALaterLaunchHandsOver)
{
    std::string address = dir.File("editor");
    std::string seen;
    bool handed = false;
    // The later launch, once this editor's window is up.
    QTimer::singleShot(50, [&]() { handed = HandToRunningEditor(address, kDemoShow); });
    CloseWindowWhenShown(kDemoTitle, &seen);
    EXPECT_EQ(RunEditorOrHandOver(this, nullptr, address), 0);
    EXPECT_TRUE(handed);
    EXPECT_EQ(seen, kDemoTitle);
    // The editor has ended: its address is free again.
    EXPECT_FALSE(std::filesystem::exists(address));
    EXPECT_FALSE(HandToRunningEditor(address, kDemoShow));
}

TEST_F(EditorRun, WithNoEditorRunningALaunchWithAShowOpensItItself)
{
    std::string seen;
    CloseWindowWhenShown(kDemoTitle, &seen);
    EXPECT_EQ(RunEditorOrHandOver(this, kDemoShow.c_str(), dir.File("editor")), 0);
    EXPECT_EQ(seen, kDemoTitle);
}

}  // namespace
