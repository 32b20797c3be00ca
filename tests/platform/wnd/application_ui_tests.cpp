// The application object and pictures of windows.

#include "platform/wnd/application.h"

#include <gtest/gtest.h>
#include <QImage>

#include "platform/draw/draw_port.h"
#include "platform/draw/draw_shapes.h"
#include "support/temp_dir.h"
#include "wnd_test_support.h"

namespace {

TEST(StartApplication, RefusesASecondApplication)
{
    int argc = 1;
    char name[] = "again";
    char* argv[] = {name, nullptr};
    EXPECT_FALSE(StartApplication(argc, argv));
    EXPECT_NE(QCoreApplication::instance(), nullptr);
}

TEST(SaveWindowPicture, WritesTheWindowAsItIsDrawn)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    window.SetWinRect(0, 0, 120, 90, true);
    ProcessPendingEvents(20);
    GetDC(&window);
    DrawBar(0x0000FF, {10, 10, 30, 20});  // red
    window.Redraw();
    ProcessPendingEvents(20);

    pxtest::TempDir dir;
    std::string path = dir.File("window.png");
    ASSERT_TRUE(SaveWindowPicture(&window, path.c_str()));
    QImage picture(QString::fromStdString(path));
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.width(), 120);
    EXPECT_EQ(picture.height(), 90);
    QPoint content = Content(&window)->mapTo(Frame(&window)->window(), QPoint(0, 0));
    EXPECT_EQ(picture.pixel(content + QPoint(15, 15)) & 0xFFFFFFu, 0xFF0000u);
    EXPECT_EQ(picture.pixel(content + QPoint(40, 40)) & 0xFFFFFFu,
              window.GetPort()->PixelAt(40, 40) & 0xFFFFFFu);
}

TEST(SaveWindowPicture, RefusesWithoutAWindowOrAWritablePath)
{
    RecordingWindow notCreated;
    EXPECT_FALSE(SaveWindowPicture(&notCreated, "/tmp/never.png"));
    EXPECT_FALSE(SaveWindowPicture(nullptr, "/tmp/never.png"));
    RecordingWindow window;
    window.Create(nullptr, 0);
    EXPECT_FALSE(SaveWindowPicture(&window, nullptr));
    EXPECT_FALSE(SaveWindowPicture(&window, "/no/such/folder/window.png"));
}

TEST(ProcessPendingEvents, DeliversPostedEvents)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    window.SetWinRect(0, 0, 50, 50, true);
    ProcessPendingEvents(10);
    window.log.clear();
    QWidget* content = Content(&window);
    QCoreApplication::postEvent(
        content, new QMouseEvent(QEvent::MouseButtonPress, QPointF(3, 4),
                                 QPointF(content->mapToGlobal(QPoint(3, 4))), Qt::LeftButton,
                                 Qt::LeftButton, Qt::NoModifier));
    ProcessPendingEvents(0);
    EXPECT_EQ(window.Count(kMsgButtonDown), 1);
}

}  // namespace
