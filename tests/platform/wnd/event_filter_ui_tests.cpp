// System input on the program's windows turned into numbered messages.

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QFileOpenEvent>
#include <QLineEdit>
#include <QMenuBar>

#include "platform/wnd/cpmenu.h"
#include "platform/wnd/edit_box.h"
#include "platform/wnd/shell.h"
#include "wnd_test_support.h"

namespace {

// A main window with a child window inside it, both shown.
struct Desk {
    RecordingWindow main;
    RecordingWindow child;
    Desk()
    {
        main.Create(nullptr, kStyleBehind);
        main.SetWinRect(10, 10, 610, 410, true);
        child.Create(&main, 0);
        child.SetWinRect(50, 40, 250, 190, true);
        ProcessEvents();
        main.log.clear();
        child.log.clear();
    }
};

TEST(InputButtonDown, LeftPressInTheContentSendsItsModifierBitsAndPoint)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    Press(content, QPoint(10, 20));
    Press(content, QPoint(11, 21), Qt::ControlModifier);
    Press(content, QPoint(12, 22), Qt::ControlModifier | Qt::ShiftModifier);
    Press(content, QPoint(13, 23), Qt::ShiftModifier);
    Press(content, QPoint(14, 24), Qt::AltModifier);
    std::vector<Received> expected = {
        {&desk.child, kMsgButtonDown, 0, MakePointParam(10, 20)},
        {&desk.child, kMsgButtonDown, 64, MakePointParam(11, 21)},
        {&desk.child, kMsgButtonDown, 96, MakePointParam(12, 22)},
        {&desk.child, kMsgButtonDown, 32, MakePointParam(13, 23)},
        {&desk.child, kMsgButtonDown, 0, MakePointParam(14, 24)},
    };
    std::vector<Received> got;
    for (const Received& r : desk.child.log)
        if (r.msg == kMsgButtonDown)
            got.push_back(r);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(desk.main.Count(kMsgButtonDown), 0);
}

TEST(InputButtonUp, LeftReleaseIs1011AndRightRelease1012)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    Press(content, QPoint(5, 6));
    Release(content, QPoint(5, 6), Qt::ShiftModifier);
    Press(content, QPoint(7, 8), Qt::NoModifier, Qt::RightButton);
    Release(content, QPoint(7, 8), Qt::NoModifier, Qt::RightButton);
    EXPECT_EQ(
        desk.child.InputMessages(),
        (std::vector<unsigned int>{kMsgButtonDown, kMsgButtonUp, kMsgButtonDown, kMsgSecondaryUp}));
    EXPECT_EQ(desk.child.Last(kMsgButtonUp)->wParam, 32);
    EXPECT_EQ(desk.child.Last(kMsgSecondaryUp)->lParam, MakePointParam(7, 8));
}

TEST(InputButtonUp, TheReleaseEndingADoubleClickIs1012)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    Press(content, QPoint(5, 6));
    Release(content, QPoint(5, 6));
    SendMouse(content, QEvent::MouseButtonDblClick, QPoint(5, 6), Qt::LeftButton);
    Release(content, QPoint(5, 6));
    Press(content, QPoint(5, 6));
    Release(content, QPoint(5, 6));
    EXPECT_EQ(desk.child.InputMessages(),
              (std::vector<unsigned int>{kMsgButtonDown, kMsgButtonUp, kMsgButtonDown,
                                         kMsgSecondaryUp, kMsgButtonDown, kMsgButtonUp}));
}

TEST(InputButtonUp, CtrlClickIsACommandClickNotASecondaryOne)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    Press(content, QPoint(5, 6), Qt::ControlModifier);
    Release(content, QPoint(5, 6), Qt::ControlModifier);
    EXPECT_EQ(desk.child.Count(kMsgSecondaryUp), 0);
    EXPECT_EQ(desk.child.Last(kMsgButtonUp)->wParam, 64);
}

TEST(InputButtonUp, WindowHoldingTheButtonGetsTheReleaseWithPointsOutsideIt)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    Press(content, QPoint(5, 6));
    Move(content, QPoint(-20, 300));
    Release(content, QPoint(-20, 300));
    EXPECT_EQ(PointParamX(desk.child.Last(kMsgMouseMoved)->lParam), -20);
    EXPECT_EQ(PointParamY(desk.child.Last(kMsgButtonUp)->lParam), 300);
    EXPECT_EQ(desk.main.Count(kMsgButtonUp), 0);
}

TEST(InputPointerMoved, CommandOrControlGive64AndShift32)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    Move(content, QPoint(1, 2));
    Move(content, QPoint(1, 2), Qt::ControlModifier);
    Move(content, QPoint(1, 2), Qt::ControlModifier | Qt::ShiftModifier);
    Move(content, QPoint(1, 2), Qt::AltModifier);
    Move(content, QPoint(1, 2), Qt::AltModifier | Qt::ShiftModifier);
    Move(content, QPoint(1, 2), Qt::ShiftModifier);
    std::vector<long> bits;
    for (const Received& r : desk.child.log)
        if (r.msg == kMsgMouseMoved)
            bits.push_back(r.wParam);
    EXPECT_EQ(bits, (std::vector<long>{0, 64, 96, 64, 96, 32}));
}

TEST(InputPress, BringsTheWindowForwardButLeavesTheMainWindowBehind)
{
    Desk desk;
    RecordingWindow second, floating;
    second.Create(&desk.main, 0);
    second.SetWinRect(60, 50, 200, 150, true);
    floating.Create(&desk.main, kStyleFloating);
    floating.SetWinRect(300, 50, 400, 150, true);
    ProcessEvents();
    QWidget* parent = Content(&desk.main);
    auto topChild = [&]() {
        QWidget* top = nullptr;
        for (QObject* o : parent->children())
            if (auto* w = qobject_cast<QWidget*>(o); w && w->isVisible() && w != nullptr)
                if (dynamic_cast<FrameWidget*>(w))
                    top = w;
        return top;
    };
    EXPECT_EQ(topChild(), Frame(&floating));
    Press(Content(&desk.child), QPoint(3, 3));
    Release(Content(&desk.child), QPoint(3, 3));
    // The child came forward, and the floating window went back on top of it.
    QObjectList order = parent->children();
    EXPECT_GT(order.indexOf(Frame(&desk.child)), order.indexOf(Frame(&second)));
    EXPECT_EQ(topChild(), Frame(&floating));
    EXPECT_EQ(gFloatWin, &floating);
}

TEST(InputWheel, NotchesBecomeScrollMessagesDownAndRightPositive)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    SendWheel(content, QPoint(4, 5), QPoint(0, -120));
    SendWheel(content, QPoint(4, 5), QPoint(0, 240));
    SendWheel(content, QPoint(4, 5), QPoint(0, -120), Qt::ShiftModifier);
    SendWheel(content, QPoint(4, 5), QPoint(120, 0));
    // Half notches add up.
    SendWheel(content, QPoint(4, 5), QPoint(0, -60));
    SendWheel(content, QPoint(4, 5), QPoint(0, -60));
    std::vector<Received> got;
    for (const Received& r : desk.child.log)
        if (r.msg == kMsgWheelVertical || r.msg == kMsgWheelHorizontal)
            got.push_back(r);
    long at = MakePointParam(4, 5);
    std::vector<Received> expected = {{&desk.child, kMsgWheelVertical, 1, at},
                                      {&desk.child, kMsgWheelVertical, -2, at},
                                      {&desk.child, kMsgWheelHorizontal, 1, at},
                                      {&desk.child, kMsgWheelHorizontal, -1, at},
                                      {&desk.child, kMsgWheelVertical, 1, at}};
    EXPECT_EQ(got, expected);
}

TEST(InputKeys, PlainKeysGoToTheWindowWithTheKeyboard)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    SendKey(content, QEvent::KeyPress, Qt::Key_K, Qt::NoModifier, "k");
    SendKey(content, QEvent::KeyRelease, Qt::Key_K, Qt::NoModifier, "k");
    SendKey(content, QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    SendKey(content, QEvent::KeyPress, Qt::Key_PageUp, Qt::NoModifier);
    SendKey(content, QEvent::KeyPress, Qt::Key_Home, Qt::NoModifier);
    SendKey(content, QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    SendKey(content, QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier, "\t");
    SendKey(content, QEvent::KeyPress, Qt::Key_Plus, Qt::ShiftModifier, "+");
    std::vector<Received> expected = {
        {&desk.child, kMsgKeyDown, 'k', 0}, {&desk.child, kMsgKeyUp, 'k', 0},
        {&desk.child, kMsgKeyDown, 28, 0},  {&desk.child, kMsgKeyDown, 11, 0},
        {&desk.child, kMsgKeyDown, 1, 0},   {&desk.child, kMsgKeyDown, 27, 0},
        {&desk.child, kMsgKeyDown, 9, 0},   {&desk.child, kMsgKeyDown, '+', 0},
    };
    EXPECT_EQ(desk.child.log, expected);
    EXPECT_TRUE(desk.main.log.empty());
}

TEST(InputKeys, CommandKeysGoToTheMainWindowAsShortcuts)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    SendKey(content, QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, "\x13");
    SendKey(content, QEvent::KeyPress, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier, "\x1a");
    SendKey(content, QEvent::KeyPress, Qt::Key_Greater, Qt::ControlModifier | Qt::ShiftModifier,
            ">");
    std::vector<Received> expected = {{&desk.main, kMsgShortcut, 's', kShortcutMark},
                                      {&desk.main, kMsgShortcut, 'Z', kShortcutMark},
                                      {&desk.main, kMsgShortcut, '>', kShortcutMark}};
    EXPECT_EQ(desk.main.log, expected);
    EXPECT_EQ(desk.child.Count(kMsgKeyDown), 0);
    EXPECT_EQ(desk.child.Count(kMsgShortcut), 0);
}

// Counts the palette changes of a widget.
class PaletteWatch : public QObject {
public:
    std::vector<QColor> backgrounds;

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::PaletteChange)
            backgrounds.push_back(static_cast<QWidget*>(object)->palette().color(QPalette::Window));
        return false;
    }
};

TEST(InputKeys, CommandKeyFlashesTheMenuBarTwice)
{
    Desk desk;
    CPMenu menu;
    menu.Create(&desk.main);
    menu.AddTopLevel("File", 0);
    QMenuBar* bar = menu.GetMenuBar();
    QColor normal = bar->palette().color(QPalette::Window);
    QColor highlight = bar->palette().color(QPalette::Highlight);
    PaletteWatch watch;
    bar->installEventFilter(&watch);
    SendKey(Content(&desk.child), QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, "\x13");
    QElapsedTimer clock;
    clock.start();
    while (watch.backgrounds.size() < 4 && clock.elapsed() < 3000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    // Nothing more follows.
    QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
    bar->removeEventFilter(&watch);
    EXPECT_EQ(watch.backgrounds, (std::vector<QColor>{highlight, normal, highlight, normal}));
}

TEST(InputKeys, ModifierKeysAloneSendNothingAndKeepTheState)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    SendKey(content, QEvent::KeyPress, Qt::Key_J, Qt::AltModifier, "j");
    EXPECT_EQ(sLastKey, 0x800);
    SendKey(content, QEvent::KeyPress, Qt::Key_Shift, Qt::AltModifier | Qt::ShiftModifier);
    SendKey(content, QEvent::KeyRelease, Qt::Key_Shift, Qt::AltModifier);
    EXPECT_EQ(sLastKey, 0x800);
    EXPECT_EQ(desk.child.log.size(), 1u);
    SendKey(content, QEvent::KeyRelease, Qt::Key_J, Qt::AltModifier, "j");
    EXPECT_EQ(sLastKey, 0);
}

TEST(InputKeys, RepeatsAreKeyDownsWithoutKeyUpsBetween)
{
    Desk desk;
    QWidget* content = Content(&desk.child);
    SendKey(content, QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    SendKey(content, QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier, QString(), true);
    SendKey(content, QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, QString(), true);
    SendKey(content, QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier);
    EXPECT_EQ(desk.child.InputMessages(),
              (std::vector<unsigned int>{kMsgKeyDown, kMsgKeyDown, kMsgKeyUp}));
}

TEST(InputKeys, ActiveEditBoxTakesEveryKeyButEscape)
{
    Desk desk;
    CPEditBox box;
    ASSERT_TRUE(box.Create(&desk.child, 10, 10, 100, 20, nullptr));
    QWidget* content = Content(&desk.child);
    // Keys sent to the window reach the field.
    SendKey(content, QEvent::KeyPress, Qt::Key_4, Qt::NoModifier, "4");
    SendKey(box.GetField(), QEvent::KeyPress, Qt::Key_2, Qt::NoModifier, "2");
    SendKey(box.GetField(), QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, "\x13");
    char text[16];
    box.GetString(text, sizeof text);
    EXPECT_STREQ(text, "42");
    EXPECT_EQ(desk.child.Count(kMsgKeyDown), 0);
    EXPECT_EQ(desk.main.Count(kMsgShortcut), 0);
    SendKey(box.GetField(), QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    ASSERT_NE(desk.child.Last(kMsgKeyDown), nullptr);
    EXPECT_EQ(desk.child.Last(kMsgKeyDown)->wParam, 27);
}

TEST(InputEditBox, ClickStrictlyInsideIsTheEditBoxsAndOnItsEdgeTheWindows)
{
    Desk desk;
    CPEditBox box;
    ASSERT_TRUE(box.Create(&desk.child, 10, 10, 100, 20, nullptr));
    QLineEdit* field = box.GetField();
    // (5, 5) in the field is (15, 15) in the window: strictly inside.
    Press(field, QPoint(5, 5));
    Release(field, QPoint(5, 5));
    EXPECT_EQ(desk.child.Count(kMsgButtonDown), 0);
    EXPECT_EQ(desk.child.Count(kMsgButtonUp), 0);
    // Its left edge is the window's.
    Press(field, QPoint(0, 5));
    Release(field, QPoint(0, 5));
    ASSERT_EQ(desk.child.Count(kMsgButtonDown), 1);
    EXPECT_EQ(desk.child.Last(kMsgButtonDown)->lParam, MakePointParam(10, 15));
    EXPECT_EQ(desk.child.Count(kMsgButtonUp), 1);
}

TEST(InputMenu, ChoosingAnItemBroadcastsItsCommand)
{
    Desk desk;
    CPMenu menu;
    menu.Create(&desk.main);
    menu.AddTopLevel("File", 0);
    menu.AddItem(2005, "New Show/N", 0);
    menu.AddItem(2003, "Save Show/S", 0);
    QMenuBar* bar = menu.GetMenuBar();
    ASSERT_NE(bar, nullptr);
    QList<QAction*> items = bar->actions().first()->menu()->actions();
    ASSERT_EQ(items.size(), 2);
    items[1]->trigger();
    ProcessEvents();
    ASSERT_NE(desk.main.Last(kMsgCommand), nullptr);
    EXPECT_EQ(desk.main.Last(kMsgCommand)->wParam, 2003);
    EXPECT_EQ(desk.child.Last(kMsgCommand)->wParam, 2003);
    // The shortcut's key comes as 1017 only: pressing it does not choose the item too.
    desk.main.log.clear();
    SendKey(Content(&desk.child), QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, "\x13");
    ProcessEvents();
    EXPECT_EQ(desk.main.Count(kMsgShortcut), 1);
    EXPECT_EQ(desk.main.Count(kMsgCommand), 0);
}

TEST(InputElsewhere, OnAnotherDesktopWindowIsLeftAlone)
{
    Desk desk;
    QWidget other;
    other.resize(50, 50);
    Press(&other, QPoint(3, 3));
    SendKey(&other, QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    EXPECT_TRUE(desk.main.log.empty());
    EXPECT_TRUE(desk.child.log.empty());
}

}  // namespace
