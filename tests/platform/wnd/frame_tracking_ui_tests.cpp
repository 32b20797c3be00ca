// Title-bar drags, the size box and the close box of the frames the layer draws.

#include "platform/wnd/frame_tracking_qt.h"

#include <gtest/gtest.h>

#include "platform/wnd/shell.h"
#include "wnd_test_support.h"

namespace {

struct Desk {
    RecordingWindow main;
    RecordingWindow document;
    Desk()
    {
        main.Create(nullptr, kStyleBehind);
        main.SetWinRect(10, 10, 710, 510, true);
        document.Create(&main, kStyleDocument);
        document.SetWinRect(100, 80, 400, 330, true);
        ProcessEvents();
        main.log.clear();
        document.log.clear();
    }
    FrameWidget* DocumentFrame() { return document.GetImpl()->frame; }
};

// The pointer at a place on the screen, as the widget holding the button sees it while it moves.
void SendAt(QWidget* widget, QEvent::Type type, QPoint global)
{
    Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::MouseButtons() : Qt::LeftButton;
    QMouseEvent event(type, QPointF(widget->mapFromGlobal(global)), QPointF(global), Qt::LeftButton,
                      held, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

TEST(FrameTitleBar, DragMovesTheWindowAndThenSends1002)
{
    Desk desk;
    QWidget* frame = desk.DocumentFrame();
    QPoint start = frame->mapToGlobal(QPoint(150, 10));
    SendAt(frame, QEvent::MouseButtonPress, start);
    SendAt(frame, QEvent::MouseMove, start + QPoint(20, 15));
    EXPECT_EQ(desk.document.Count(kMsgMoved), 0);
    SendAt(frame, QEvent::MouseMove, start + QPoint(30, 30));
    SendAt(frame, QEvent::MouseButtonRelease, start + QPoint(30, 30));
    tagRECT r;
    desk.document.GetWinRect(r);
    EXPECT_EQ(r.left, 130);
    EXPECT_EQ(r.top, 110);
    EXPECT_EQ(r.right, 430);
    EXPECT_EQ(desk.document.InputMessages(), std::vector<unsigned int>{kMsgMoved});
    EXPECT_FALSE(IsTracking());
}

TEST(FrameSizeBox, ResizeSends1001ThenPaint)
{
    Desk desk;
    QWidget* content = Content(&desk.document);
    QPoint corner(content->width() - 5, content->height() - 5);
    Press(content, corner);
    Move(content, corner + QPoint(40, 30));
    EXPECT_EQ(desk.document.Count(kMsgResized), 0);
    Release(content, corner + QPoint(40, 30));
    tagRECT r;
    desk.document.GetWinRect(r);
    EXPECT_EQ(r.right - r.left, 340);
    EXPECT_EQ(r.bottom - r.top, 280);
    ASSERT_GE(desk.document.log.size(), 2u);
    EXPECT_EQ(desk.document.log[0].msg, kMsgResized);
    EXPECT_EQ(desk.document.log[1].msg, kMsgPaint);
    EXPECT_EQ(desk.document.Count(kMsgButtonDown), 0);
    // The new size has its image already drawn: no second paint follows.
    ProcessEvents();
    EXPECT_EQ(desk.document.Count(kMsgPaint), 1);
}

TEST(FrameSizeBox, KeepsSixtyByEightyAtLeastAndTheScreenAtMost)
{
    Desk desk;
    QWidget* content = Content(&desk.document);
    QPoint corner(content->width() - 5, content->height() - 5);
    Press(content, corner);
    Release(content, corner + QPoint(-1000, -1000));
    tagRECT r;
    desk.document.GetWinRect(r);
    EXPECT_EQ(r.right - r.left, 60);
    EXPECT_EQ(r.bottom - r.top, 80);

    InitEnvironment(nullptr, "Parallaxotron", 101);
    corner = QPoint(content->width() - 5, content->height() - 5);
    Press(content, corner);
    Release(content, corner + QPoint(5000, 5000));
    desk.document.GetWinRect(r);
    EXPECT_EQ(r.right - r.left, gScreenRect.right - gScreenRect.left);
    EXPECT_EQ(r.bottom - r.top, gScreenRect.bottom - gScreenRect.top);
    CloseEnvironment();
}

TEST(FrameSizeBox, UnchangedSizeSendsNothing)
{
    Desk desk;
    QWidget* content = Content(&desk.document);
    QPoint corner(content->width() - 5, content->height() - 5);
    Press(content, corner);
    Release(content, corner);
    EXPECT_TRUE(desk.document.log.empty());
}

TEST(FrameCloseBox, ReleasedInsideSendsCloseToTheMainWindow)
{
    Desk desk;
    FrameWidget* frame = desk.DocumentFrame();
    QPoint box = frame->CloseBoxRect().center();
    Press(frame, box);
    Release(frame, box);
    EXPECT_EQ(desk.main.Count(kMsgClose), 1);
    EXPECT_EQ(desk.document.Count(kMsgClose), 0);
    // Let go outside the box: nothing.
    Press(frame, box);
    Release(frame, box + QPoint(60, 0));
    EXPECT_EQ(desk.main.Count(kMsgClose), 1);
}

TEST(FrameTracking, EndsWhenItsWindowGoes)
{
    Desk desk;
    QWidget* frame = desk.DocumentFrame();
    Press(frame, QPoint(150, 10));
    EXPECT_TRUE(IsTracking());
    desk.document.Destroy();
    EXPECT_FALSE(IsTracking());
}

}  // namespace
