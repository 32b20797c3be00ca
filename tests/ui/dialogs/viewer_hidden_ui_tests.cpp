// The viewer out of the way of the main window's dialogs: hidden while one is open and shown
// again afterwards, only when it was showing.

#include "ui/dialogs/viewer_hidden.h"

#include <gtest/gtest.h>

#include "platform/dialog/dialog_rows.h"
#include "support/editor_fixture.h"
#include "ui/viewer/cview.h"

namespace {

using ViewerHiddenTest = pxtest::Editor;

TEST_F(ViewerHiddenTest, HidesTheViewerForItsScope)
{
    Start();
    ASSERT_TRUE(pViewer->IsVisible());
    {
        ViewerHidden hidden;
        EXPECT_FALSE(pViewer->IsVisible());
    }
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(ViewerHiddenTest, ShowAgainShowsItOnce)
{
    Start();
    ViewerHidden hidden;
    hidden.ShowAgain();
    EXPECT_TRUE(pViewer->IsVisible());
    pViewer->Show(0);
    hidden.ShowAgain();
    EXPECT_FALSE(pViewer->IsVisible()) << "a second call shows nothing";
}

TEST_F(ViewerHiddenTest, ViewerThatWasHiddenStaysHidden)
{
    Start();
    pViewer->Show(0);
    {
        ViewerHidden hidden;
    }
    EXPECT_FALSE(pViewer->IsVisible());
}

TEST_F(ViewerHiddenTest, DialogRunsWithTheViewerHidden)
{
    Start();
    char descriptions[kDialogRowSize] = "@COne";
    char values[kDialogRowSize] = "";
    bool hiddenMeanwhile = false;
    QTimer::singleShot(50, [&hiddenMeanwhile] {
        hiddenMeanwhile = !pViewer->IsVisible();
        PostReturn(pMain);
    });
    EXPECT_EQ(RunDialogWithoutViewer(pMain, kDialogX, kDialogY, 1, descriptions, values, "Test"),
              1);
    EXPECT_TRUE(hiddenMeanwhile);
    EXPECT_TRUE(pViewer->IsVisible());
}

}  // namespace
