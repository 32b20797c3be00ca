// Scroll bars: where they lie, their limits, the user's tracking.

#include "platform/wnd/scroll_bars_qt.h"

#include <gtest/gtest.h>
#include <QScrollBar>

#include "wnd_test_support.h"

namespace {

// A 200 x 150 content with both bars.
struct Scrolled {
    RecordingWindow window;
    explicit Scrolled(long bars = kStyleHorizontalBar | kStyleVerticalBar)
    {
        window.Create(nullptr, bars);
        window.SetWinRect(10, 10, 210, 160, true);
        ProcessEvents();
        window.log.clear();
    }
    QScrollBar* Horizontal() { return window.GetImpl()->horizontal; }
    QScrollBar* Vertical() { return window.GetImpl()->vertical; }
};

TEST(ScrollBars, StartWithAMaximumOf100)
{
    Scrolled s;
    EXPECT_EQ(s.window.GetScrollMaximumX(), 100);
    EXPECT_EQ(s.window.GetScrollMaximumY(), 100);
    // The canvas is smaller than what the window shows: nothing to scroll.
    EXPECT_EQ(s.window.GetScrollLimitX(), 0);
    s.window.SetViewScrollX(50, true);
    EXPECT_EQ(s.window.GetViewScrollX(), 0);
}

TEST(ScrollBars, LieAlongTheRightAndBottomEdges)
{
    Scrolled both;
    EXPECT_EQ(both.Vertical()->geometry(), QRect(200 - 16, -1, 16, 150 - 15));
    EXPECT_EQ(both.Horizontal()->geometry(), QRect(-1, 150 - 17, 200 - 15, 16));
    Scrolled vertical(kStyleVerticalBar);
    EXPECT_EQ(vertical.Vertical()->geometry(), QRect(200 - 16, -1, 16, 151));
    EXPECT_EQ(vertical.Horizontal(), nullptr);
    Scrolled horizontal(kStyleHorizontalBar);
    EXPECT_EQ(horizontal.Horizontal()->geometry(), QRect(-1, 150 - 17, 201, 16));
    // They follow a new size.
    both.window.SetWinRect(10, 10, 310, 210, false);
    EXPECT_EQ(both.Vertical()->geometry(), QRect(300 - 16, -1, 16, 200 - 15));
}

TEST(ScrollBars, ValuesAreKeptBetweenZeroAndTheMaximumLessWhatTheWindowShows)
{
    Scrolled s;
    s.window.SetViewScrollRange(1000, 500);
    // 200 wide less the vertical bar shows 184 pixels; 150 high less the horizontal bar, 134.
    EXPECT_EQ(s.window.GetScrollLimitX(), 816);
    EXPECT_EQ(s.window.GetScrollLimitY(), 366);
    s.window.SetViewScrollX(5000, true);
    EXPECT_EQ(s.window.GetViewScrollX(), 816);
    s.window.SetViewScrollY(-5, false);
    EXPECT_EQ(s.window.GetViewScrollY(), 0);
    s.window.SetViewScrollY(200, false);
    EXPECT_EQ(s.window.GetViewScrollY(), 200);
    // A smaller canvas brings the value back within it.
    s.window.SetViewScrollRange(300, 500);
    EXPECT_EQ(s.window.GetViewScrollX(), 116);
    // Setting a value is the program's own: no paint message.
    ProcessEvents();
    EXPECT_EQ(s.window.Count(kMsgPaint), 0);
}

TEST(ScrollBars, WindowWithoutABarHasNoScroll)
{
    Scrolled s(kStyleVerticalBar);
    s.window.SetViewScrollRange(1000, 1000);
    s.window.SetViewScrollX(40, true);
    EXPECT_EQ(s.window.GetViewScrollX(), 0);
    EXPECT_FALSE(s.window.ScrollControl(kScrollBarHorizontal, 60));
    // Without a horizontal bar the vertical one shows the whole height.
    EXPECT_EQ(s.window.GetScrollLimitY(), 850);
}

TEST(ScrollBars, UserArrowsMoveAnEightiethAndPagesAnEighthOfTheSpan)
{
    Scrolled s;
    s.window.SetViewScrollRange(1000, 4134);  // vertical span 4000
    QScrollBar* bar = s.Vertical();
    bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(s.window.GetViewScrollY(), 50);
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(s.window.GetViewScrollY(), 550);
    bar->triggerAction(QAbstractSlider::SliderPageStepSub);
    bar->triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(s.window.GetViewScrollY(), 0);
    bar->triggerAction(QAbstractSlider::SliderToMaximum);
    EXPECT_EQ(s.window.GetViewScrollY(), 4000);
    bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(s.window.GetViewScrollY(), 4000);
    // The window is painted once the value is in.
    int painted = -1;
    s.window.onMessage = [&](unsigned int msg, long, long) {
        if (msg == kMsgPaint)
            painted = s.window.GetViewScrollY();
    };
    bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
    ProcessEvents();
    EXPECT_EQ(painted, 3950);
    EXPECT_GE(s.window.Count(kMsgPaint), 1);
}

TEST(ScrollBars, ThumbGivesItsTrackedValueWithinTheSpan)
{
    Scrolled s;
    s.window.SetViewScrollRange(1184, 134);  // horizontal span 1000
    QScrollBar* bar = s.Horizontal();
    bar->setSliderDown(true);
    bar->setSliderPosition(640);
    bar->setSliderDown(false);
    EXPECT_EQ(s.window.GetViewScrollX(), 640);
    ProcessEvents();
    EXPECT_GE(s.window.Count(kMsgPaint), 1);
}

TEST(ScrollBars, SmallSpanArrowsDoNotMove)
{
    Scrolled s;
    s.window.SetViewScrollRange(263, 134);  // span 79: 79 / 80 is 0
    s.Horizontal()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(s.window.GetViewScrollX(), 0);
    s.Horizontal()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(s.window.GetViewScrollX(), 9);
}

TEST(ScrollControl, MovesByPixelsWithinTheLimitsAndRedraws)
{
    Scrolled s;
    s.window.SetViewScrollRange(1000, 1000);
    EXPECT_TRUE(s.window.ScrollControl(kScrollBarVertical, 60));
    EXPECT_TRUE(s.window.ScrollControl(kScrollBarVertical, 60));
    EXPECT_EQ(s.window.GetViewScrollY(), 120);
    EXPECT_TRUE(s.window.ScrollControl(kScrollBarVertical, -600));
    EXPECT_EQ(s.window.GetViewScrollY(), 0);
    EXPECT_FALSE(s.window.ScrollControl(kScrollBarVertical, -60));
    ProcessEvents();
    EXPECT_EQ(s.window.Count(kMsgPaint), 1);
    EXPECT_FALSE(s.window.ScrollControl(99, 60));
}

TEST(ShowScrollBar, ResetsTheOriginAndShowsTheBars)
{
    Scrolled s;
    s.window.SetWindowOrigin(30, 40);
    s.Vertical()->hide();
    s.window.ShowScrollBar(false, false);
    EXPECT_EQ(s.window.GetWindowOriginX(), 0);
    EXPECT_EQ(s.window.GetWindowOriginY(), 0);
    EXPECT_TRUE(s.Vertical()->isVisible());
}

}  // namespace
