// Modal loops reading input with GetAMessage and PeekAMessage.

#include "platform/wnd/message_queue.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QTimer>

#include "platform/draw/draw_port.h"
#include "platform/draw/draw_state.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/ticks.h"
#include "wnd_test_support.h"

namespace {

struct Reading {
    CPWnd* window = nullptr;
    unsigned int msg = 99;
    long wParam = -1;
    long lParam = -1;
    long time = -1;
    tagPOINT point = {-1, -1};
};

Reading Get()
{
    Reading r;
    GetAMessage(r.window, r.msg, r.wParam, r.lParam, r.time, r.point);
    return r;
}

Reading Peek()
{
    Reading r;
    PeekAMessage(r.window, r.msg, r.wParam, r.lParam, r.time, r.point);
    return r;
}

void PostMouse(QWidget* widget, QEvent::Type type, QPoint at, Qt::MouseButton button)
{
    Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::MouseButtons() : Qt::MouseButtons(button);
    QCoreApplication::postEvent(
        widget, new QMouseEvent(type, QPointF(at), QPointF(widget->mapToGlobal(at)), button, held,
                                Qt::ControlModifier));
}

struct Shown {
    RecordingWindow window;
    Shown()
    {
        window.Create(nullptr, 0);
        window.SetWinRect(100, 100, 300, 250, true);
        ProcessEvents();
        window.log.clear();
    }
};

TEST(GetAMessage, ReadsAButtonDownInsteadOfHandingItToTheWindow)
{
    Shown shown;
    PostMouse(Content(&shown.window), QEvent::MouseButtonPress, QPoint(12, 34), Qt::LeftButton);
    Reading r = Get();
    EXPECT_EQ(r.window, &shown.window);
    EXPECT_EQ(r.msg, kMsgButtonDown);
    EXPECT_EQ(r.wParam, 0);
    EXPECT_EQ(r.lParam, MakePointParam(12, 34));
    EXPECT_EQ(r.time, 0);
    EXPECT_EQ(r.point.x, 12);
    EXPECT_EQ(r.point.y, 34);
    EXPECT_EQ(shown.window.Count(kMsgButtonDown), 0);
}

TEST(GetAMessage, ReadsUpsMovesAndKeysInTheOrderTheyCame)
{
    Shown shown;
    QWidget* content = Content(&shown.window);
    PostMouse(content, QEvent::MouseButtonPress, QPoint(1, 2), Qt::LeftButton);
    QCoreApplication::postEvent(
        content, new QMouseEvent(QEvent::MouseMove, QPointF(3, 4),
                                 QPointF(content->mapToGlobal(QPoint(3, 4))), Qt::NoButton,
                                 Qt::LeftButton, Qt::NoModifier));
    // A right-button up reads as a plain button up.
    PostMouse(content, QEvent::MouseButtonRelease, QPoint(5, 6), Qt::RightButton);
    QCoreApplication::postEvent(
        content, new QKeyEvent(QEvent::KeyPress, Qt::Key_Q, Qt::ControlModifier, "\x11"));
    QCoreApplication::postEvent(content,
                                new QKeyEvent(QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier));
    std::vector<std::pair<unsigned int, long>> got;
    for (int i = 0; i < 5; ++i) {
        Reading r = Get();
        got.push_back({r.msg, r.msg == kMsgKeyDown || r.msg == kMsgKeyUp ? r.wParam : r.lParam});
    }
    std::vector<std::pair<unsigned int, long>> expected = {{kMsgButtonDown, MakePointParam(1, 2)},
                                                           {kMsgMouseMoved, MakePointParam(3, 4)},
                                                           {kMsgButtonUp, MakePointParam(5, 6)},
                                                           {kMsgKeyDown, 'q'},
                                                           {kMsgKeyUp, 27}};
    EXPECT_EQ(got, expected);
    EXPECT_TRUE(shown.window.InputMessages().empty());
}

TEST(GetAMessage, WaitsAtMostTwentyTicksAndAnswersNothing)
{
    Shown shown;
    QElapsedTimer clock;
    clock.start();
    long before = GetMilliTime();
    Reading r = Get();
    long ticks = GetMilliTime() - before;
    EXPECT_EQ(r.msg, 0u);
    EXPECT_EQ(r.wParam, 0);
    EXPECT_EQ(r.time, 0);
    EXPECT_GE(ticks, 19);
    EXPECT_LT(clock.elapsed(), 2000);
}

TEST(GetAMessage, InputArrivingWhileWaitingEndsTheWait)
{
    Shown shown;
    QTimer::singleShot(30, [&]() {
        PostMouse(Content(&shown.window), QEvent::MouseButtonPress, QPoint(9, 9), Qt::LeftButton);
    });
    // Had the wait run out first, there would be no message.
    Reading r = Get();
    EXPECT_EQ(r.msg, kMsgButtonDown);
}

TEST(PeekAMessage, DoesNotWait)
{
    Shown shown;
    QElapsedTimer clock;
    clock.start();
    Reading r = Peek();
    EXPECT_EQ(r.msg, 0u);
    // Well short of the 333 ms a wait would take.
    EXPECT_LT(clock.elapsed(), 250);
    PostMouse(Content(&shown.window), QEvent::MouseButtonRelease, QPoint(7, 8), Qt::LeftButton);
    r = Peek();
    EXPECT_EQ(r.msg, kMsgButtonUp);
    EXPECT_EQ(r.window, &shown.window);
}

TEST(DispatchAMessage, HandsTheMessageToTheWindow)
{
    Shown shown;
    PostMouse(Content(&shown.window), QEvent::MouseButtonPress, QPoint(4, 5), Qt::LeftButton);
    Reading r = Get();
    DispatchAMessage(r.window, r.msg, r.wParam, r.lParam, r.time, r.point);
    ASSERT_EQ(shown.window.Count(kMsgButtonDown), 1);
    EXPECT_EQ(shown.window.Last(kMsgButtonDown)->lParam, MakePointParam(4, 5));
    DispatchAMessage(nullptr, kMsgButtonDown, 0, 0, 0, r.point);
    EXPECT_EQ(shown.window.Count(kMsgButtonDown), 1);
}

TEST(ModalLoop, InputLeftUnreadReachesTheWindowAfterwards)
{
    Shown shown;
    QWidget* content = Content(&shown.window);
    PostMouse(content, QEvent::MouseButtonPress, QPoint(1, 1), Qt::LeftButton);
    PostMouse(content, QEvent::MouseButtonRelease, QPoint(2, 2), Qt::LeftButton);
    Reading r = Get();
    ASSERT_EQ(r.msg, kMsgButtonDown);
    EXPECT_EQ(shown.window.Count(kMsgButtonUp), 0);
    // The loop is over; the event loop turns again.
    ProcessEvents();
    ASSERT_EQ(shown.window.Count(kMsgButtonUp), 1);
    EXPECT_EQ(shown.window.Last(kMsgButtonUp)->lParam, MakePointParam(2, 2));
    EXPECT_EQ(shown.window.Last(kMsgButtonUp)->wParam, 64);
    EXPECT_EQ(shown.window.Count(kMsgButtonDown), 0);
}

TEST(ModalLoop, PaintMessagesStillGoOutWhileReading)
{
    Shown shown;
    DrawPort other;
    SetDrawDC(&other);
    long backColour = gDrawState.backColor;
    shown.window.onMessage = [](unsigned int msg, long, long) {
        if (msg == kMsgPaint)
            gDrawState.backColor = 0x123456;
    };
    shown.window.Redraw();
    Reading r = Peek();
    EXPECT_EQ(r.msg, 0u);
    EXPECT_EQ(shown.window.Count(kMsgPaint), 1);
    // The reader's drawing state is as it left it.
    EXPECT_EQ(GetDrawDC(), &other);
    EXPECT_EQ(gDrawState.backColor, backColour);
    SetDrawDC(nullptr);
}

TEST(ModalLoop, ReadsAClickOnAScrollBarAsAButtonDownWithoutScrolling)
{
    RecordingWindow window;
    window.Create(nullptr, kStyleVerticalBar);
    window.SetWinRect(100, 100, 300, 250, true);
    ProcessEvents();
    QScrollBar* bar = window.GetImpl()->vertical;
    PostMouse(bar, QEvent::MouseButtonPress, QPoint(5, 40), Qt::LeftButton);
    Reading r = Get();
    EXPECT_EQ(r.msg, kMsgButtonDown);
    EXPECT_EQ(r.point.x, bar->x() + 5);
    EXPECT_EQ(bar->value(), 0);
}

}  // namespace
