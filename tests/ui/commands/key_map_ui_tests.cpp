// The main window's keyboard: Ctrl combinations that stand for commands, the plain keys of
// playback and navigation, and keys the other windows pass on.

#include "ui/commands/key_map.h"

#include "support/editor_fixture.h"
#include "ui/stage/cstage.h"
#include "ui/viewer/cview.h"

namespace {

class KeyMap : public pxtest::Editor {};

TEST(ShortcutCommand, LettersAndMarksMapToTheirCommands)
{
    EXPECT_EQ(ShortcutCommand('<', kMsgShortcut), 1045);
    EXPECT_EQ(ShortcutCommand('>', kMsgShortcut), 1044);
    EXPECT_EQ(ShortcutCommand('c', kMsgShortcut), 9000);
    EXPECT_EQ(ShortcutCommand('e', kMsgShortcut), 1010);
    EXPECT_EQ(ShortcutCommand('k', kMsgShortcut), 1013);
    EXPECT_EQ(ShortcutCommand('n', kMsgShortcut), 2005);
    EXPECT_EQ(ShortcutCommand('o', kMsgShortcut), 2004);
    EXPECT_EQ(ShortcutCommand('s', kMsgShortcut), kShortcutQuickSave);
    EXPECT_EQ(ShortcutCommand('v', kMsgShortcut), 9002);
    EXPECT_EQ(ShortcutCommand('x', kMsgShortcut), 9001);
    EXPECT_EQ(ShortcutCommand('y', kMsgShortcut), 9005);
    EXPECT_EQ(ShortcutCommand('z', kMsgShortcut), 9004);
    EXPECT_EQ(ShortcutCommand('Z', kMsgShortcut), 9004);
}

TEST(ShortcutCommand, SomeKeysBelongToOneMessageOnly)
{
    EXPECT_EQ(ShortcutCommand('q', kMsgShortcut), kShortcutClose);
    EXPECT_EQ(ShortcutCommand('q', kMsgKeyDown), kShortcutNone);
    EXPECT_EQ(ShortcutCommand('t', kMsgShortcut), 1037);
    EXPECT_EQ(ShortcutCommand('t', kMsgKeyDown), kShortcutNone);
    EXPECT_EQ(ShortcutCommand('~', kMsgKeyDown), 1011);
    EXPECT_EQ(ShortcutCommand('~', kMsgShortcut), kShortcutNone);
}

TEST(ShortcutCommand, KeysOutsideSixtyTo126MapToNothing)
{
    EXPECT_EQ(ShortcutCommand(';', kMsgShortcut), kShortcutNone);  // 59
    EXPECT_EQ(ShortcutCommand(127, kMsgShortcut), kShortcutNone);
    EXPECT_EQ(ShortcutCommand(1024, kMsgShortcut), kShortcutNone);
    EXPECT_EQ(ShortcutCommand('a', kMsgShortcut), kShortcutNone);
}

TEST_F(KeyMap, PlusAndMinusStepOneFrame)
{
    StartWithDemo();
    pDoc->GotoFrame(20, true);
    Key('+');
    EXPECT_EQ(gCurFrame, 21);
    Key('-');
    Key('-');
    EXPECT_EQ(gCurFrame, 19);
}

TEST_F(KeyMap, TabGoesToTheNextKeyOfTheShow)
{
    StartWithDemo();
    long first = pDoc->GetPicStart(0) + pDoc->keys[0][1].Frame;
    pDoc->GotoFrame(1, true);
    Key(kCharTab);
    EXPECT_EQ(gCurFrame, first);
    EXPECT_EQ(NextKeyFrameAfter(first), [] {
        // The next key after it over all pictures in order.
        for (int pic = 0; pic < pDoc->picCount; ++pic)
            for (int key = 0; key < pDoc->GetKeyCount(pic); ++key) {
                long at = pDoc->GetPicStart(pic) + pDoc->keys[pic][key].Frame;
                if (at > gCurFrame)
                    return at;
            }
        return -1L;
    }());
    EXPECT_EQ(NextKeyFrameAfter(1000000), -1);
}

TEST_F(KeyMap, ReturnAddsAKeyOnKeyDownOnly)
{
    StartWithDemo();
    long frame = pDoc->GetPicStart(0) + pDoc->keys[0][1].Frame / 2;
    pDoc->GotoFrame(frame, true);
    int keys = pDoc->GetKeyCount(0);
    PostAMessage(pMain, kMsgShortcut, kCharReturn, kShortcutMark);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    Key(kCharReturn);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys + 1);
    EXPECT_EQ(pDoc->FindKey(frame), 1);
}

TEST_F(KeyMap, PlaybackLettersSetTheViewersSpeed)
{
    StartWithDemo();
    // The viewer plays in a loop of its own until a key arrives; the speed it was given is what
    // is checked here, with the loop kept from starting.
    pViewer->loopRunning = true;
    Key('l');
    EXPECT_EQ(pViewer->speed, 1);
    Key('K');
    EXPECT_EQ(pViewer->speed, 0);
    Key('j');
    EXPECT_EQ(pViewer->speed, -1);
    Key('k');
    Key('R');
    EXPECT_EQ(pViewer->speed, -1);
    pViewer->loopRunning = false;
    pViewer->speed = 0;
}

TEST_F(KeyMap, KeyCode1024IsIgnored)
{
    StartWithDemo();
    EXPECT_EQ(pMain->HandleEvent(kMsgKeyDown, 1024, 0), 0);
    EXPECT_EQ(pMain->HandleEvent(kMsgShortcut, 1024, kShortcutMark), 0);
}

TEST_F(KeyMap, RealCtrlKeyOnTheStageReachesTheCommand)
{
    StartWithDemo();
    pDoc->GotoFrame(pDoc->GetPicStart(0), true);
    QWidget* stage = Content(pStage);
    SendKey(stage, QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    SendKey(stage, QEvent::KeyRelease, Qt::Key_C, Qt::ControlModifier);
    ProcessEvents();
    EXPECT_TRUE(pDoc->clipboard.HoldsKey());
    EXPECT_TRUE(Enabled(9002));
}

TEST_F(KeyMap, AboutNamesTheProductAndItsVersion)
{
    Start();
    PushMessageBoxAnswer(kBoxYes);
    ASSERT_TRUE(Choose(1026));
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].kind, MessageBoxKind::kError);
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
    EXPECT_NE(boxes[0].text.find("Hollerbank Parallaxotron"), std::string::npos);
    EXPECT_NE(boxes[0].text.find("version 5.1"), std::string::npos);
}

}  // namespace
