// Start and stop, the message loop, synchronous delivery, the desktop's requests.

#include "platform/wnd/shell.h"

#include <gtest/gtest.h>
#include <QFileOpenEvent>
#include <QTimer>
#include <string>

#include "platform/base/env.h"
#include "platform/task/worker.h"
#include "platform/wnd/edit_box.h"
#include "platform/wnd/window_list.h"
#include "wnd_test_support.h"

namespace {

TEST(PostAMessage, NullTargetCallsEveryLiveWindowOnceInListOrder)
{
    std::vector<Received> log;
    RecordingWindow a(&log), b(&log), c(&log);
    ASSERT_EQ(a.Create(nullptr, 0), 1);
    ASSERT_EQ(b.Create(nullptr, 0), 1);
    ASSERT_EQ(c.Create(nullptr, 0), 1);
    log.clear();

    EXPECT_EQ(PostAMessage(nullptr, kMsgCommand, 1042, 0), 1);
    std::vector<Received> expected = {
        {&a, kMsgCommand, 1042, 0}, {&b, kMsgCommand, 1042, 0}, {&c, kMsgCommand, 1042, 0}};
    EXPECT_EQ(log, expected);
}

TEST(PostAMessage, TargetGetsItAloneBeforeTheCallReturns)
{
    RecordingWindow a, b;
    a.Create(nullptr, 0);
    b.Create(nullptr, 0);
    a.log.clear();
    b.log.clear();
    PostAMessage(&b, 1234532, 7, 9);
    EXPECT_TRUE(a.log.empty());
    ASSERT_EQ(b.log.size(), 1u);
    EXPECT_EQ(b.log[0], (Received{&b, 1234532, 7, 9}));
}

TEST(PostAMessage, MessagesPostedByAHandlerAreHandledBeforeTheFirstPostReturns)
{
    std::vector<Received> log;
    RecordingWindow a(&log), b(&log);
    a.Create(nullptr, 0);
    b.Create(nullptr, 0);
    a.onMessage = [&](unsigned int msg, long, long) {
        if (msg == 5000)
            PostAMessage(&b, 5001, 0, 0);
    };
    log.clear();
    PostAMessage(nullptr, 5000, 0, 0);
    // a takes 5000 and passes 5001 to b before b sees 5000.
    std::vector<Received> expected = {{&a, 5000, 0, 0}, {&b, 5001, 0, 0}, {&b, 5000, 0, 0}};
    EXPECT_EQ(log, expected);
}

TEST(PostAMessage, WindowDestroyedByAnEarlierHandlerIsSkipped)
{
    RecordingWindow a, b;
    a.Create(nullptr, 0);
    b.Create(nullptr, 0);
    a.onMessage = [&](unsigned int msg, long, long) {
        if (msg == 5002)
            b.Destroy();
    };
    b.log.clear();
    PostAMessage(nullptr, 5002, 0, 0);
    EXPECT_EQ(b.Count(5002), 0);
}

TEST(PostAMessage, EndMessageSetsTheEndFlagBeforeDelivery)
{
    RecordingWindow a;
    a.Create(nullptr, 0);
    int seen = -1;
    a.onMessage = [&](unsigned int msg, long, long) {
        if (msg == kMsgEndLoop)
            seen = gMacDone;
    };
    PostAMessage(&a, kMsgEndLoop, 3, 0);
    EXPECT_EQ(seen, 4);
    EXPECT_EQ(gMacDone, 4);
    gMacDone = 0;
}

TEST(MessageLoop, EndMessageMakesTheLoopReturnItsCodeAfterTheCurrentEvent)
{
    RecordingWindow a;
    a.Create(nullptr, 0);
    a.log.clear();
    QTimer::singleShot(20, [&]() {
        PostAMessage(&a, kMsgEndLoop, 3, 0);
        // Still within the same event: delivered before the loop ends.
        PostAMessage(&a, 5003, 0, 0);
    });
    EXPECT_EQ(MessageLoop(), 3);
    EXPECT_EQ(a.Count(5003), 1);
    EXPECT_EQ(gMacDone, 4);
}

TEST(MessageLoop, ClearsTheEndFlagWhenItStarts)
{
    gMacDone = 9;
    QTimer::singleShot(10, []() { PostAMessage(nullptr, kMsgEndLoop, 0, 0); });
    EXPECT_EQ(MessageLoop(), 0);
}

TEST(MessageLoop, EndFlagSetDirectlyEndsTheLoopAtTheNextIdleTick)
{
    QTimer::singleShot(10, []() { gMacDone = 6; });
    EXPECT_EQ(MessageLoop(), 5);
}

TEST(MessageLoop, IdleTickSendsPointerMovesToTheWindowUnderThePointer)
{
    RecordingWindow a;
    a.Create(nullptr, 0);
    a.SetWinRect(200, 150, 400, 300, true);
    ProcessEvents();
    QCursor::setPos(QPoint(230, 170));
    a.log.clear();
    // The first tick ends the loop; should none come, the loop ends anyway.
    a.onMessage = [](unsigned int msg, long, long) {
        if (msg == kMsgMouseMoved)
            PostAMessage(nullptr, kMsgEndLoop, 0, 0);
    };
    QTimer fallback;
    fallback.setSingleShot(true);
    QObject::connect(&fallback, &QTimer::timeout,
                     []() { PostAMessage(nullptr, kMsgEndLoop, 1, 0); });
    fallback.start(3000);
    EXPECT_EQ(MessageLoop(), 0);
    ASSERT_GE(a.Count(kMsgMouseMoved), 1);
    const Received* tick = a.Last(kMsgMouseMoved);
    EXPECT_EQ(PointParamX(tick->lParam), 30);
    EXPECT_EQ(PointParamY(tick->lParam), 20);
}

TEST(MessageLoop, ACommandKeyInAChildWindowCanEndTheProgram)
{
    // The main window agrees to quit on 1007, as the program's does.
    RecordingWindow main, stage;
    main.Create(nullptr, kStyleBehind);
    main.SetWinRect(10, 10, 410, 310, true);
    stage.Create(&main, kStyleHorizontalBar | kStyleVerticalBar);
    stage.SetWinRect(20, 30, 300, 200, true);
    main.onMessage = [](unsigned int msg, long wParam, long lParam) {
        if (msg == kMsgShortcut && wParam == 'q' && lParam == kShortcutMark)
            PostAMessage(gFirstWin, kMsgClose, 0, 0);
        if (msg == kMsgClose)
            PostAMessage(gFirstWin, kMsgEndLoop, 0, 0);
    };
    QWidget* content = Content(&stage);
    QCoreApplication::postEvent(
        content, new QKeyEvent(QEvent::KeyPress, Qt::Key_Q, Qt::ControlModifier, "\x11"));
    // Should the key go astray, the loop still ends.
    QTimer fallback;
    fallback.setSingleShot(true);
    QObject::connect(&fallback, &QTimer::timeout,
                     []() { PostAMessage(nullptr, kMsgEndLoop, 7, 0); });
    fallback.start(3000);
    EXPECT_EQ(MessageLoop(), 0);
    EXPECT_EQ(main.Count(kMsgClose), 1);
    EXPECT_EQ(stage.Count(kMsgShortcut), 0);
    // The paint messages went out while the loop ran.
    EXPECT_EQ(main.Count(kMsgPaint), 1);
    EXPECT_EQ(stage.Count(kMsgPaint), 1);
}

TEST(IsKeyPressed, ShiftAndControlHeldAtAKeyDown)
{
    RecordingWindow a;
    a.Create(nullptr, 0);
    SendKey(Content(&a), QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier | Qt::AltModifier, "A");
    EXPECT_TRUE(IsKeyPressed(0xC00));
    EXPECT_FALSE(IsKeyPressed(0x400));
    EXPECT_FALSE(IsKeyPressed(0x800));
    SendKey(Content(&a), QEvent::KeyRelease, Qt::Key_A, Qt::ShiftModifier | Qt::AltModifier, "A");
    EXPECT_EQ(sLastKey, 0);
    EXPECT_TRUE(IsKeyPressed(0));
}

TEST(IsKeyPressed, ShiftAloneIsExactlyShift)
{
    RecordingWindow a;
    a.Create(nullptr, 0);
    SendKey(Content(&a), QEvent::KeyPress, Qt::Key_B, Qt::ShiftModifier, "B");
    EXPECT_TRUE(IsKeyPressed(0x400));
    EXPECT_FALSE(IsKeyPressed(0xC00));
    SendKey(Content(&a), QEvent::KeyRelease, Qt::Key_B, Qt::ShiftModifier, "B");
}

TEST(ConvertControlKey, TrueOnlyForTheShortcutMark)
{
    long w = 's', l = kShortcutMark;
    EXPECT_TRUE(ConvertControlKey(w, l));
    EXPECT_EQ(w, 's');
    l = 0;
    EXPECT_FALSE(ConvertControlKey(w, l));
}

TEST(PackSystemVersion, PacksDecimalDigitsIntoNibbles)
{
    EXPECT_EQ(PackSystemVersion(10, 3, 9), 0x1039);
    EXPECT_EQ(PackSystemVersion(6, 1, 0), 0x0610);
    EXPECT_EQ(PackSystemVersion(12, 14, 27), 0x1299);
}

TEST(ShellEnvironment, InitMakesTheFontsAndRecordsTheScreenAndCloseFreesThem)
{
    ASSERT_EQ(InitEnvironment(reinterpret_cast<void*>(1),
                              "A program name that is much longer than "
                              "sixty-three characters, so it gets cut",
                              101),
              1);
    EXPECT_EQ(gEnv.kind, 101);
    EXPECT_EQ(std::string(gEnv.name).size(), 63u);
    ASSERT_NE(Sans8, nullptr);
    EXPECT_EQ(Sans8->size, 8);
    EXPECT_EQ(Sans10->size, 10);
    EXPECT_EQ(Sans12->size, 12);
    EXPECT_EQ(Sans14B->size, 13);
    EXPECT_EQ(Sans14B->style, kFontBold);
    EXPECT_EQ(Sans20->size, 20);
    EXPECT_STREQ(Sans10->face, "Sans");
    EXPECT_GT(gScreenRect.right - gScreenRect.left, 0);
    EXPECT_GT(gOSVersionNumber, 0);

    // A second start keeps the fonts it has.
    FontRecord* first = Sans12;
    InitEnvironment(nullptr, "Parallaxotron", 101);
    EXPECT_EQ(Sans12, first);

    SelectFont(Sans12, -1, 0);
    CloseEnvironment();
    EXPECT_EQ(Sans8, nullptr);
    EXPECT_EQ(Sans14B, nullptr);
    EXPECT_EQ(pCurFont, nullptr);
    EXPECT_EQ(gTaskData, nullptr);
    SetEnvName("Parallaxotron");
}

TEST(ShellEnvironment, CloseDisposesOfTheActiveEditBox)
{
    InitEnvironment(nullptr, "Parallaxotron", 101);
    RecordingWindow a;
    a.Create(nullptr, 0);
    CPEditBox box;
    ASSERT_TRUE(box.Create(&a, 4, 4, 80, 20, nullptr));
    ASSERT_EQ(gMacEditBox, &box);
    CloseEnvironment();
    EXPECT_EQ(gMacEditBox, nullptr);
    EXPECT_FALSE(box.IsOpen());
}

// ---- Requests from the desktop -------------------------------------------------------------

std::vector<std::string> sOpened;
bool sOpenFlag = false;

bool RecordOpen(FSpec* spec, bool flag)
{
    // The record is packed: its numbers are read by value.
    int volume = spec->vRefNum;
    int folder = spec->parID;
    EXPECT_EQ(volume, kPathFormMarker);
    EXPECT_EQ(folder, kPathFormMarker);
    sOpened.push_back(spec->name);
    sOpenFlag = flag;
    return true;
}

TEST(OpenDocumentRequest, OnlyTheFirstFileOfTheListIsOpened)
{
    sOpened.clear();
    SetOpenDocumentHandler(RecordOpen);
    const char* paths[] = {"/shows/one.plx", "/shows/two.plx"};
    EXPECT_TRUE(OpenAppleEventHandler(2, paths));
    EXPECT_EQ(sOpened, std::vector<std::string>{"/shows/one.plx"});
    EXPECT_TRUE(sOpenFlag);
    SetOpenDocumentHandler(nullptr);
    EXPECT_FALSE(OpenAppleEventHandler(2, paths));
}

TEST(OpenDocumentRequest, DesktopRequestOpensTheFirstFileOfABatch)
{
    sOpened.clear();
    SetOpenDocumentHandler(RecordOpen);
    RecordingWindow main;
    main.Create(nullptr, 0);
    QFileOpenEvent first(QStringLiteral("/shows/first.plx"));
    QFileOpenEvent second(QStringLiteral("/shows/second.plx"));
    QCoreApplication::sendEvent(QCoreApplication::instance(), &first);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &second);
    EXPECT_EQ(sOpened, std::vector<std::string>{"/shows/first.plx"});
    // A later request is a list of its own.
    ProcessEvents();
    QFileOpenEvent third(QStringLiteral("/shows/third.plx"));
    QCoreApplication::sendEvent(QCoreApplication::instance(), &third);
    EXPECT_EQ(sOpened.back(), "/shows/third.plx");
    SetOpenDocumentHandler(nullptr);
}

TEST(OpenDocumentRequest, CommandLineGivesItsFirstDocument)
{
    sOpened.clear();
    SetOpenDocumentHandler(RecordOpen);
    const char* arguments[] = {"--verbose", "/shows/a.plx", "/shows/b.plx"};
    EXPECT_TRUE(OpenCommandLineDocument(3, arguments));
    EXPECT_EQ(sOpened, std::vector<std::string>{"/shows/a.plx"});
    const char* options[] = {"--gtest_filter=x"};
    EXPECT_FALSE(OpenCommandLineDocument(1, options));
    SetOpenDocumentHandler(nullptr);
}

TEST(QuitRequest, DesktopQuitRequestSendsCloseToTheMainWindowOnly)
{
    RecordingWindow main, other;
    main.Create(nullptr, 0);
    other.Create(nullptr, 0);
    ASSERT_EQ(gFirstWin, &main);
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
    EXPECT_EQ(main.Count(kMsgClose), 1);
    EXPECT_EQ(other.Count(kMsgClose), 0);
    QuitAppleEventHandler();
    EXPECT_EQ(main.Count(kMsgClose), 2);
}

TEST(QuitRequest, ClosingADesktopWindowAsksTheMainWindowAndKeepsItOpen)
{
    RecordingWindow main;
    main.Create(nullptr, kStyleBehind);
    main.Show(1);
    ProcessEvents();
    EXPECT_FALSE(Frame(&main)->close());
    EXPECT_TRUE(main.IsVisible());
    EXPECT_EQ(main.Count(kMsgClose), 1);
}

}  // namespace
