// Windows: creation, the live-window list, frames and content, titles, painting.

#include "platform/wnd/cpwnd.h"

#include <gtest/gtest.h>
#include <QMenuBar>
#include <memory>
#include <string>

#include "platform/draw/draw_port.h"
#include "platform/wnd/cpmenu.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/window_list.h"
#include "wnd_test_support.h"

namespace {

TEST(CPWndCreate, MakesAHiddenHundredPixelWindowAtTheOrigin)
{
    RecordingWindow window;
    ASSERT_EQ(window.Create(nullptr, 0), 1);
    EXPECT_FALSE(window.IsVisible());
    tagRECT r;
    window.GetWinRect(r);
    EXPECT_EQ(r.left, 0);
    EXPECT_EQ(r.top, 0);
    EXPECT_EQ(r.right, 100);
    EXPECT_EQ(r.bottom, 100);
    char title[8] = "x";
    window.GetTitle(title, sizeof title);
    EXPECT_STREQ(title, "");
    // Its backing image is the current port, sized to the content.
    EXPECT_EQ(GetDrawDC(), window.GetPort());
    EXPECT_EQ(window.GetPort()->Width(), 100);
    EXPECT_EQ(window.GetPort()->Height(), 100);
}

TEST(CPWndCreate, FirstWindowIsTheMainWindowAndAFloatingOneFloats)
{
    {
        RecordingWindow first, second, floating;
        first.Create(nullptr, 0);
        second.Create(nullptr, 0);
        floating.Create(&first, kStyleFloating);
        EXPECT_EQ(gFirstWin, &first);
        EXPECT_EQ(gFloatWin, &floating);
        EXPECT_TRUE(floating.IsFloat());
        EXPECT_FALSE(second.IsFloat());
    }
    EXPECT_EQ(gFirstWin, nullptr);
    EXPECT_EQ(gFloatWin, nullptr);
}

TEST(CPWndList, The257thWindowIsLeftOutAndGetsNoMessages)
{
    std::vector<std::unique_ptr<RecordingWindow>> windows;
    for (int i = 0; i < kMaxWindows + 1; ++i) {
        windows.push_back(std::make_unique<RecordingWindow>());
        ASSERT_EQ(windows.back()->Create(nullptr, 0), 1);
    }
    EXPECT_EQ(gWindowList.count, kMaxWindows);
    RecordingWindow& last = *windows.back();
    EXPECT_FALSE(IsWindowListed(&last));
    last.log.clear();
    PostAMessage(nullptr, kMsgCommand, 1000, 0);
    PostAMessage(&last, kMsgCommand, 1001, 0);
    EXPECT_TRUE(last.log.empty());
    EXPECT_EQ(windows[255]->Count(kMsgCommand), 1);
    // Its content gets no input messages either.
    Press(Content(&last), QPoint(3, 3));
    EXPECT_TRUE(last.log.empty());

    // A window that goes frees its place for the next one made; the left-out one stays out.
    windows[3]->Destroy();
    EXPECT_EQ(gWindowList.count, kMaxWindows - 1);
    RecordingWindow later;
    later.Create(nullptr, 0);
    EXPECT_TRUE(IsWindowListed(&later));
    EXPECT_FALSE(IsWindowListed(&last));
    EXPECT_EQ(gWindowList.windows[kMaxWindows - 1], &later);
}

TEST(CPWndDestroy, TakesTheWindowOutOfTheListAndItsWindowsWithIt)
{
    RecordingWindow parent, child, other;
    parent.Create(nullptr, 0);
    child.Create(&parent, 0);
    other.Create(nullptr, 0);
    EXPECT_EQ(gWindowList.count, 3);
    parent.Destroy();
    EXPECT_FALSE(parent.IsCreated());
    EXPECT_FALSE(child.IsCreated());
    EXPECT_EQ(gWindowList.count, 1);
    EXPECT_EQ(gWindowList.windows[0], &other);
    parent.Destroy();
    EXPECT_EQ(gWindowList.count, 1);
}

TEST(CPWndCaptionSize, FollowsTheStyle)
{
    RecordingWindow plain, document, floating, both, behind;
    plain.Create(nullptr, 0);
    document.Create(nullptr, kStyleDocument);
    floating.Create(nullptr, kStyleFloating);
    both.Create(nullptr, kStyleDocument | kStyleFloating);
    behind.Create(nullptr, kStyleBehind | kStyleCloseBox);
    EXPECT_EQ(plain.GetCaptionSize(), 0);
    EXPECT_EQ(document.GetCaptionSize(), 23);
    EXPECT_EQ(floating.GetCaptionSize(), 17);
    EXPECT_EQ(both.GetCaptionSize(), 23);
    EXPECT_EQ(behind.GetCaptionSize(), 0);
    EXPECT_EQ(plain.GetScrollSize(), 16);
}

TEST(CPWndSetWinRect, ChildRectanglesAreScreenPixelsAndIncludeTheCaption)
{
    RecordingWindow main, viewer;
    main.Create(nullptr, kStyleBehind);
    main.SetWinRect(100, 50, 700, 550, true);
    viewer.Create(&main, kStyleFloating | 8 | 2);
    viewer.SetWinRect(400, 130, 620, 300, true);
    tagRECT r;
    viewer.GetWinRect(r);
    EXPECT_EQ(r.left, 400);
    EXPECT_EQ(r.top, 130);
    EXPECT_EQ(r.right, 620);
    EXPECT_EQ(r.bottom, 300);
    // Inside the main window's content, whose top-left is (100, 50) on the screen.
    EXPECT_EQ(Frame(&viewer)->pos(), QPoint(300, 80));
    viewer.GetClientRect(r);
    EXPECT_EQ(r.left, 0);
    EXPECT_EQ(r.top, 0);
    EXPECT_EQ(r.right, 220);
    EXPECT_EQ(r.bottom, 170 - 17);
    EXPECT_EQ(viewer.GetBorderSize(), 0);
    EXPECT_EQ(viewer.GetPort()->Height(), 153);
    EXPECT_TRUE(viewer.IsVisible());
}

TEST(CPWndSetWinRect, TopLevelFrameIsItsAreaOnTheScreen)
{
    RecordingWindow main;
    main.Create(nullptr, kStyleBehind);
    tagRECT wanted = {10, 20, 410, 320};
    main.SetWinRect(wanted, false);
    EXPECT_FALSE(main.IsVisible());
    tagRECT r;
    main.GetWinRect(r);
    EXPECT_EQ(r.left, 10);
    EXPECT_EQ(r.bottom, 320);
    main.GetClientRect(r);
    EXPECT_EQ(r.right, 400);
    EXPECT_EQ(r.bottom, 300);
}

TEST(CPWndShow, ModesHideShowAndFillTheScreen)
{
    InitEnvironment(nullptr, "Parallaxotron", 101);
    RecordingWindow main;
    main.Create(nullptr, kStyleBehind);
    main.Show(1);
    EXPECT_TRUE(main.IsVisible());
    main.Show(0);
    EXPECT_FALSE(main.IsVisible());
    main.Show(2);
    EXPECT_TRUE(main.IsVisible());
    tagRECT r;
    main.GetWinRect(r);
    EXPECT_EQ(r.right - r.left, gScreenRect.right - gScreenRect.left);
    EXPECT_EQ(r.bottom - r.top, gScreenRect.bottom - gScreenRect.top);
    // The desktop keeps its own border on the screen: the window starts at the screen's corner.
    EXPECT_EQ(Frame(&main)->frameGeometry().topLeft(), QPoint(0, 0));
    CloseEnvironment();
}

TEST(CPWndMenuSize, IsTheMenuBarOfTheWindowsDesktopWindow)
{
    RecordingWindow main, child;
    main.Create(nullptr, kStyleBehind);
    main.SetWinRect(10, 10, 510, 410, true);
    child.Create(&main, 0);
    EXPECT_EQ(main.GetMenuSize(), 0);
    CPMenu menu;
    menu.Create(&main);
    menu.AddTopLevel("File", 0);
    int height = main.GetMenuSize();
    EXPECT_GT(height, 0);
    EXPECT_EQ(child.GetMenuSize(), height);
    // The content starts below the bar, and children are placed from the screen still.
    tagRECT r;
    main.GetClientRect(r);
    EXPECT_EQ(r.bottom, 400 - height);
    child.SetWinRect(20, 100, 120, 200, true);
    EXPECT_EQ(Frame(&child)->pos(), QPoint(10, 90 - height));
    menu.RestoreOriginalMenu();
    EXPECT_EQ(main.GetMenuSize(), 0);
}

TEST(CPWndTitle, IsKeptToTwoHundredFiftyFiveCharacters)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    window.SetTitle("Hollerbank Parallaxotron - My Trip");
    char title[64];
    window.GetTitle(title, sizeof title);
    EXPECT_STREQ(title, "Hollerbank Parallaxotron - My Trip");
    EXPECT_EQ(Frame(&window)->windowTitle(), QString("Hollerbank Parallaxotron - My Trip"));
    window.GetTitle(title, 11);
    EXPECT_STREQ(title, "Hollerbank");
    std::string longTitle(300, 'x');
    window.SetTitle(longTitle.c_str());
    char all[400];
    window.GetTitle(all, sizeof all);
    EXPECT_EQ(std::string(all).size(), 255u);
}

TEST(CPWndPaint, ShownWindowGetsOnePaintMessageAndOnDrawWhenItAnswersZero)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    ProcessEvents();
    EXPECT_EQ(window.Count(kMsgPaint), 0);
    window.SetWinRect(10, 10, 130, 100, true);
    ProcessEvents();
    EXPECT_EQ(window.Count(kMsgPaint), 1);
    EXPECT_EQ(window.draws, 1);
    // A window that paints in its handler answers 1 and is not drawn twice.
    window.paintAnswer = 1;
    window.Redraw();
    tagRECT part = {0, 0, 10, 10};
    window.Redraw(part, true);
    ProcessEvents();
    EXPECT_EQ(window.Count(kMsgPaint), 2);
    EXPECT_EQ(window.draws, 1);
}

TEST(CPWndPaint, DrawsIntoTheWindowsBackingImageWhichReachesTheScreen)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    window.onMessage = [&](unsigned int msg, long, long) {
        if (msg == kMsgPaint) {
            DrawPort* port = GetDrawDC();
            ASSERT_EQ(port, window.GetPort());
            port->Row(5)[7] = 0xFF0000FFu;
        }
    };
    window.SetWinRect(10, 10, 70, 50, true);
    ProcessEvents();
    EXPECT_EQ(window.GetPort()->PixelAt(7, 5), 0xFF0000FFu);
    QImage shot = Content(&window)->grab().toImage();
    EXPECT_EQ(shot.pixel(7, 5), 0xFF0000FFu);
}

TEST(CPWndPaint, RedrawAskedDuringTheWindowsOwnPaintDoesNotRepeat)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    window.onMessage = [&](unsigned int msg, long, long) {
        if (msg == kMsgPaint)
            window.Redraw();
    };
    window.Show(1);
    ProcessEvents();
    ProcessEvents();
    EXPECT_EQ(window.Count(kMsgPaint), 1);
}

TEST(CPWndPaint, NewSizeMeansANewImageAndAPaint)
{
    RecordingWindow window;
    window.Create(nullptr, 0);
    window.SetWinRect(10, 10, 110, 110, true);
    ProcessEvents();
    window.SetWinRect(10, 10, 150, 80, false);
    ProcessEvents();
    EXPECT_EQ(window.GetPort()->Width(), 140);
    EXPECT_EQ(window.GetPort()->Height(), 70);
    EXPECT_EQ(window.Count(kMsgPaint), 2);
}

TEST(CPWndGetDC, MakesTheWindowsImageCurrent)
{
    RecordingWindow a, b;
    a.Create(nullptr, 0);
    b.Create(nullptr, 0);
    EXPECT_EQ(GetDrawDC(), b.GetPort());
    EXPECT_EQ(GetDC(&a), a.GetPort());
    EXPECT_EQ(GetDrawDC(), a.GetPort());
    ReleaseDC(&a, a.GetPort());
    EXPECT_EQ(GetDrawDC(), a.GetPort());
    RecordingWindow never;
    EXPECT_EQ(GetDC(&never), nullptr);
    EXPECT_EQ(GetDrawDC(), a.GetPort());
}

TEST(CPWndOrigin, IsKeptWithTheBackingImage)
{
    RecordingWindow window;
    window.Create(nullptr, kStyleHorizontalBar | kStyleVerticalBar);
    window.SetWindowOrigin(120, 60);
    EXPECT_EQ(window.GetWindowOriginX(), 120);
    EXPECT_EQ(window.GetWindowOriginY(), 60);
    EXPECT_EQ(QPoint(window.GetPort()->OriginX(), window.GetPort()->OriginY()), QPoint(120, 60));
    window.SetWinRect(10, 10, 310, 210, false);
    EXPECT_EQ(QPoint(window.GetPort()->OriginX(), window.GetPort()->OriginY()), QPoint(120, 60));
    window.ShowScrollBar(true, true);
    EXPECT_EQ(window.GetWindowOriginX(), 0);
    EXPECT_EQ(QPoint(window.GetPort()->OriginX(), window.GetPort()->OriginY()), QPoint(0, 0));
}

}  // namespace
