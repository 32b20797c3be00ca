// The editor's render progress: the panel's geometry, the time-to-go estimate and its text, and
// the keys read between frames.

#include "ui/commands/render_progress_window.h"

#include <gtest/gtest.h>
#include <cmath>

#include "platform/dialog/posted_input.h"
#include "platform/wnd/cpwnd.h"

namespace {

TEST(RenderProgressPanel, SitsInTheMiddleWithTheBarBetweenItsTexts)
{
    ProgressPanelLayout layout = MakeProgressPanelLayout(tagRECT{0, 0, 600, 400});
    EXPECT_EQ(layout.panel.left + layout.panel.right, 600);
    EXPECT_EQ(layout.panel.top + layout.panel.bottom, 400);
    EXPECT_GT(layout.bar.left, layout.panel.left);
    EXPECT_LT(layout.bar.right, layout.panel.right);
    EXPECT_LT(layout.textY, layout.bar.top);
    EXPECT_GE(layout.timeY, layout.bar.bottom);
    EXPECT_EQ(layout.textX, 300);
}

TEST(RenderProgressPanel, TheDonePartGrowsWithTheFractionAndStaysInTheBar)
{
    tagRECT bar{10, 5, 110, 17};
    EXPECT_EQ(ProgressDonePart(bar, 0.0).right, 10);
    EXPECT_EQ(ProgressDonePart(bar, 0.25).right, 35);
    EXPECT_EQ(ProgressDonePart(bar, 1.0).right, 110);
    EXPECT_EQ(ProgressDonePart(bar, 7.0).right, 110);
    EXPECT_EQ(ProgressDonePart(bar, -1.0).right, 10);
    EXPECT_EQ(ProgressDonePart(bar, std::nan("")).right, 10);
    EXPECT_EQ(ProgressDonePart(bar, 0.5).top, 5);
    EXPECT_EQ(ProgressDonePart(bar, 0.5).bottom, 17);
}

TEST(RenderProgressTime, TheRestTakesAsLongAsWhatIsDoneTook)
{
    EXPECT_EQ(SecondsToGo(10.0, 0.25), 30);
    EXPECT_EQ(SecondsToGo(10.0, 0.5), 10);
    EXPECT_EQ(SecondsToGo(10.0, 1.0), 0);
    EXPECT_EQ(SecondsToGo(3.0, 0.0), -1);
    EXPECT_EQ(SecondsToGo(3.0, std::nan("")), -1);
    EXPECT_EQ(SecondsToGo(1e9, 1e-9), 86400);
}

TEST(RenderProgressTime, IsShownInMinutesAndSeconds)
{
    EXPECT_EQ(TimeToGoText(65), "Time to go: 01:05");
    EXPECT_EQ(TimeToGoText(0), "Time to go: 00:00");
    EXPECT_EQ(TimeToGoText(-1), "");
}

TEST(EditorRenderProgress, ShowsTheTextAndTheFraction)
{
    EditorRenderProgress progress;
    progress.Progress(0.0, "Rendering... (Hit Esc key to cancel)");
    EXPECT_EQ(progress.Text(), "Rendering... (Hit Esc key to cancel)");
    EXPECT_EQ(progress.TimeText(), "");
    progress.Progress(0.5, "Rendering... (Hit Esc key to cancel)");
    EXPECT_EQ(progress.Fraction(), 0.5);
    EXPECT_EQ(progress.TimeText().rfind("Time to go: 00:0", 0), 0u) << progress.TimeText();
}

class EditorRenderInput : public testing::Test {
protected:
    void SetUp() override
    {
        window.Create(nullptr, 0);
        window.SetWinRect(0, 0, 200, 150, true);
        ProcessEvents();
    }
    CPWnd window;
    EditorRenderProgress progress;
};

TEST_F(EditorRenderInput, EscWaitingStopsTheRun)
{
    PostEscape(&window);
    EXPECT_TRUE(progress.CancelRequested());
    // It stays stopped.
    EXPECT_TRUE(progress.CancelRequested());
}

TEST_F(EditorRenderInput, OtherInputIsReadAndDropped)
{
    PostKey(&window, Qt::Key_A, QStringLiteral("a"));
    PostClick(&window, 20, 20);
    PostReturn(&window);
    EXPECT_FALSE(progress.CancelRequested());
    // Esc behind other input is still found.
    PostKey(&window, Qt::Key_B, QStringLiteral("b"));
    PostEscape(&window);
    EXPECT_TRUE(progress.CancelRequested());
}

TEST_F(EditorRenderInput, EscDuringAHoldIsSeenAtTheNextFrame)
{
    progress.Progress(0.0, "Rendering Hold... (Hit any key to cancel)");
    PostEscape(&window);
    progress.Progress(0.5, "Rendering Hold... (Hit any key to cancel)");
    // The key was read while the hold was written; nothing is left waiting for the windows.
    EXPECT_TRUE(progress.CancelRequested());
}

TEST_F(EditorRenderInput, NothingWaitingGoesOn) { EXPECT_FALSE(progress.CancelRequested()); }

}  // namespace
