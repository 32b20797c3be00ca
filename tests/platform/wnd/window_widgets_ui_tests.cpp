// The Qt side of windows: which part of a window input lands on, paint delivery, the desktop's
// own moves and resizes.

#include "platform/wnd/window_widgets_qt.h"

#include <gtest/gtest.h>
#include <QLineEdit>
#include <QWindow>

#include "platform/draw/draw_state.h"
#include "platform/wnd/edit_box.h"
#include "platform/wnd/shell.h"
#include "wnd_test_support.h"

namespace {

WindowPart PartAt(QWidget* widget, QPoint at, QPoint* contentPoint = nullptr)
{
    WindowPart part;
    QPoint point;
    FindWindowOf(widget, &part, &point, at);
    if (contentPoint)
        *contentPoint = point;
    return part;
}

TEST(FindWindowOf, TellsThePartsOfAWindow)
{
    RecordingWindow main, document;
    main.Create(nullptr, kStyleBehind);
    main.SetWinRect(10, 10, 510, 410, true);
    document.Create(&main, kStyleDocument | kStyleVerticalBar);
    document.SetWinRect(40, 30, 240, 230, true);
    CPEditBox box;
    box.Create(&document, 10, 10, 80, 20, nullptr);

    FrameWidget* frame = document.GetImpl()->frame;
    QPoint at;
    EXPECT_EQ(PartAt(frame, QPoint(100, 5)), WindowPart::Caption);
    EXPECT_EQ(PartAt(frame, frame->CloseBoxRect().center()), WindowPart::CloseBox);
    EXPECT_EQ(PartAt(Content(&document), QPoint(50, 60), &at), WindowPart::Content);
    EXPECT_EQ(at, QPoint(50, 60));
    EXPECT_EQ(PartAt(Content(&document), QPoint(195, 170)), WindowPart::SizeBox);
    EXPECT_EQ(PartAt(document.GetImpl()->vertical, QPoint(3, 3)), WindowPart::ScrollBar);
    EXPECT_EQ(PartAt(box.GetField(), QPoint(2, 2), &at), WindowPart::EditField);
    EXPECT_EQ(at, QPoint(12, 12));
    // A caption point lies above the content.
    PartAt(frame, QPoint(100, 5), &at);
    EXPECT_EQ(at, QPoint(100, 5 - kDocumentCaption));
    WindowPart part;
    EXPECT_EQ(FindWindowOf(frame, &part, &at, QPoint()), &document);
    EXPECT_EQ(FindWindowOf(Content(&main), &part, &at, QPoint()), &main);
}

TEST(FindWindowOf, OtherDesktopWindowsBelongToNoWindow)
{
    RecordingWindow main;
    main.Create(nullptr, 0);
    QWidget popup(Frame(&main), Qt::Popup);
    WindowPart part;
    QPoint at;
    EXPECT_EQ(FindWindowOf(&popup, &part, &at, QPoint()), nullptr);
    EXPECT_EQ(part, WindowPart::None);
}

TEST(DeliverPaint, GivesThePortItsWindowAndPutsTheCallersStateBack)
{
    RecordingWindow a, b;
    a.Create(nullptr, 0);
    b.Create(nullptr, 0);
    GetDC(&b);
    gDrawState.backColor = 0x112233;
    DrawPort* seen = nullptr;
    a.onMessage = [&](unsigned int msg, long, long) {
        if (msg == kMsgPaint) {
            seen = GetDrawDC();
            gDrawState.backColor = 0x445566;
        }
    };
    DeliverPaint(&a);
    EXPECT_EQ(seen, a.GetPort());
    EXPECT_EQ(a.draws, 1);
    EXPECT_EQ(GetDrawDC(), b.GetPort());
    EXPECT_EQ(gDrawState.backColor, 0x112233);
    gDrawState.backColor = 0x00FFFFFF;
}

// Deletes itself on its paint message and answers 0, which would ask for OnDraw.
class SelfDeleting : public CPWnd {
public:
    explicit SelfDeleting(int* draws) : draws(draws) {}
    long HandleEvent(unsigned int msg, long, long) override
    {
        if (msg == kMsgPaint)
            delete this;
        return 0;
    }
    void OnDraw() override { ++*draws; }

private:
    int* draws;
};

TEST(DeliverPaint, AWindowDestroyedByItsPaintIsNotDrawnAfterwards)
{
    int draws = 0;
    auto* doomed = new SelfDeleting(&draws);
    doomed->Create(nullptr, 0);
    DrawPort other;
    SetDrawDC(&other);
    DeliverPaint(doomed);
    EXPECT_EQ(draws, 0);
    EXPECT_EQ(GetDrawDC(), &other);
    ProcessEvents();
    SetDrawDC(nullptr);
}

TEST(DesktopFrame, UserMovesAndResizesBecomeMessages)
{
    RecordingWindow window;
    window.Create(nullptr, kStyleDocument);
    window.SetWinRect(20, 30, 320, 230, true);
    ProcessEvents();
    // Showing it and the program's own changes are not the user's.
    window.SetWinRect(25, 35, 325, 235, false);
    ProcessEvents();
    EXPECT_EQ(window.Count(kMsgMoved), 0);
    EXPECT_EQ(window.Count(kMsgResized), 0);
    window.log.clear();

    // The desktop moves the window, then resizes it.
    Frame(&window)->windowHandle()->setGeometry(QRect(60, 70, 300, 200));
    ProcessEvents();
    EXPECT_EQ(window.InputMessages(), std::vector<unsigned int>{kMsgMoved});
    window.log.clear();
    Frame(&window)->windowHandle()->setGeometry(QRect(60, 70, 340, 260));
    ProcessEvents();
    ASSERT_GE(window.log.size(), 2u);
    EXPECT_EQ(window.log[0].msg, kMsgResized);
    EXPECT_EQ(window.log[1].msg, kMsgPaint);
    tagRECT r;
    window.GetClientRect(r);
    EXPECT_EQ(r.right, 340);
    EXPECT_EQ(window.GetPort()->Width(), 340);
}

TEST(DesktopFrame, ActivatingAWindowOtherThanTheMainOneRepaintsIt)
{
    RecordingWindow main, tool;
    main.Create(nullptr, kStyleBehind);
    tool.Create(nullptr, kStyleDocument);
    main.SetWinRect(10, 10, 210, 210, true);
    tool.SetWinRect(300, 0, 500, 200, true);
    ProcessEvents();
    main.log.clear();
    tool.log.clear();
    Frame(&main)->activateWindow();
    ProcessEvents();
    Frame(&tool)->activateWindow();
    ProcessEvents();
    EXPECT_EQ(main.Count(kMsgPaint), 0);
    EXPECT_EQ(tool.Count(kMsgPaint), 1);
}

TEST(FrameCaption, ShowsTheTitleOnTheLayersOwnTitleBar)
{
    RecordingWindow main, viewer;
    main.Create(nullptr, kStyleBehind);
    main.SetWinRect(10, 10, 410, 310, true);
    viewer.Create(&main, kStyleFloating);
    viewer.SetWinRect(50, 50, 250, 200, true);
    QImage before = Frame(&viewer)->grab(QRect(0, 0, 200, kFloatingCaption)).toImage();
    viewer.SetTitle("Viewer");
    QImage after = Frame(&viewer)->grab(QRect(0, 0, 200, kFloatingCaption)).toImage();
    EXPECT_NE(before, after);
    // The content starts below the bar.
    EXPECT_EQ(Content(&viewer)->y(), kFloatingCaption);
}

}  // namespace
