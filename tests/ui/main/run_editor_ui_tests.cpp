// The editor's windows from start to end around their message loop: the show handed over is
// opened (a relative path too), a file that is not a show leaves an empty editor, and after the
// loop every window is gone and the document is no longer attached to them.

#include "ui/main/run_editor.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/window_list.h"
#include "support/close_when_shown.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"

namespace {

const std::string kDemoFolder = std::string(PX_SOURCE_DIR) + "/resources/demo";
constexpr const char* kProduct = "Hollerbank Parallaxotron";
constexpr const char* kDemoTitle = "Hollerbank Parallaxotron - demo";

// Once the window titled `title` shows, notes how many pictures the document holds then and
// closes the window.
void CloseWhenShown(const char* title, int* picturesSeen)
{
    pxtest::CloseWindowWhenShown(QString::fromUtf8(title),
                                 [picturesSeen]() { *picturesSeen = pDoc->picCount; });
}

// The document alone: the editor's windows are RunEditorWindows' to make and take down.
class RunEditor : public pxtest::Editor {
protected:
    void SetUp() override
    {
        pxtest::Editor::SetUp();
        pxtest::LoadEditorSettings("");
        pDoc = new CDoc;
        pDoc->standalone = 1;
    }
    void ExpectEverythingTakenDown()
    {
        EXPECT_EQ(pMain, nullptr);
        EXPECT_EQ(pStage, nullptr);
        EXPECT_EQ(pTime, nullptr);
        EXPECT_EQ(pViewer, nullptr);
        EXPECT_EQ(gWindowList.count, 0);
        // The link the windows gave the document was theirs: moving the document now must not
        // reach it (the sanitizer build sees a call through a link left behind).
        pDoc->GotoFrame(10, false);
    }
};

TEST_F(RunEditor, OpensTheShowHandedOverAndTakesEveryWindowDownAfterTheLoop)
{
    int pictures = -1;
    CloseWhenShown(kDemoTitle, &pictures);
    std::string show = kDemoFolder + "/demo.plx";
    EXPECT_EQ(RunEditorWindows(show.c_str()), 0);
    EXPECT_GT(pictures, 0);
    ExpectEverythingTakenDown();
}

TEST_F(RunEditor, RelativeShowPathIsOpenedFromTheWorkingFolder)
{
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(kDemoFolder);
    int pictures = -1;
    CloseWhenShown(kDemoTitle, &pictures);
    EXPECT_EQ(RunEditorWindows("demo.plx"), 0);
    std::filesystem::current_path(before);
    EXPECT_GT(pictures, 0);
}

TEST_F(RunEditor, FileThatIsNotAShowLeavesAnEmptyEditorUnderTheProductsName)
{
    std::string picture = kDemoFolder + "/lake.png";
    int pictures = -1;
    CloseWhenShown(kProduct, &pictures);
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunEditorWindows(picture.c_str()), 0);
    std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(pictures, 0);
    EXPECT_NE(said.find("is not a show that can be opened"), std::string::npos) << said;
    ExpectEverythingTakenDown();
}

TEST_F(RunEditor, NoShowOrAnEmptyPathStartsAnEmptyEditor)
{
    for (const char* path : {static_cast<const char*>(nullptr), ""}) {
        int pictures = -1;
        CloseWhenShown(kProduct, &pictures);
        EXPECT_EQ(RunEditorWindows(path), 0);
        EXPECT_EQ(pictures, 0);
        ExpectEverythingTakenDown();
    }
}

}  // namespace
