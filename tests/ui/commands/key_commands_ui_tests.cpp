// The Edit menu's commands on the demo show: the key clipboard, delete, undo and redo with the
// menu's states in step, and the picture-wide edits behind their questions.

#include "ui/commands/key_commands.h"

#include "support/editor_fixture.h"

namespace {

class KeyCommands : public pxtest::Editor {
protected:
    // The absolute frame of key `key` of picture `pic`.
    static long KeyFrame(int pic, int key)
    {
        return pDoc->GetPicStart(pic) + pDoc->keys[pic][key].Frame;
    }
    static void GoTo(long frame) { pDoc->GotoFrame(frame, true); }
};

TEST_F(KeyCommands, DeleteWithSelectionZeroDoesNothing)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 0));
    ASSERT_EQ(pDoc->GetKeySelection(), 0);
    int keys = pDoc->GetKeyCount(0);
    Command(9003);
    Key(kCharDelete);
    Key(kCharBackspace);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    EXPECT_EQ(pDoc->undoCount, 0);
    EXPECT_FALSE(pDoc->dirty);
}

TEST_F(KeyCommands, CutWithSelectionZeroDoesNothing)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 0));
    int keys = pDoc->GetKeyCount(0);
    Ctrl('x');
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    EXPECT_FALSE(pDoc->clipboard.HoldsKey());
    EXPECT_FALSE(Enabled(9002));
}

TEST_F(KeyCommands, CopyOfKeyZeroFillsTheClipboardAndEnablesPaste)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 0));
    Ctrl('c');
    ASSERT_TRUE(pDoc->clipboard.HoldsKey());
    EXPECT_EQ(pDoc->clipboard.key.XPos, pDoc->keys[0][0].XPos);
    EXPECT_EQ(pDoc->clipboard.key.Width, pDoc->keys[0][0].Width);
    EXPECT_TRUE(Enabled(9002));
}

TEST_F(KeyCommands, CopyWithoutASelectionLeavesTheClipboardEmpty)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 1) - 10);
    ASSERT_EQ(pDoc->GetKeySelection(), -1);
    Command(9000);
    EXPECT_FALSE(pDoc->clipboard.HoldsKey());
    EXPECT_EQ(pDoc->clipboard.marker, kClipboardEmpty);
}

TEST_F(KeyCommands, CutTakesTheKeyIntoTheClipboardAndUndoPutsItBack)
{
    StartWithDemo();
    long frame = KeyFrame(0, 1);
    GoTo(frame);
    KeyStruct cut = pDoc->keys[0][1];
    int keys = pDoc->GetKeyCount(0);
    ASSERT_TRUE(Enabled(9001));
    ASSERT_TRUE(Choose(9001));
    EXPECT_EQ(pDoc->GetKeyCount(0), keys - 1);
    ASSERT_TRUE(pDoc->clipboard.HoldsKey());
    EXPECT_EQ(pDoc->clipboard.key.XPos, cut.XPos);
    EXPECT_EQ(pDoc->FindKey(frame), -1);
    // The Edit menu follows: nothing to cut here now, something to undo and to paste.
    EXPECT_FALSE(Enabled(9001));
    EXPECT_TRUE(Enabled(9004));
    EXPECT_TRUE(Enabled(9002));
    ASSERT_TRUE(Choose(9004));
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    EXPECT_EQ(pDoc->keys[0][1].XPos, cut.XPos);
    EXPECT_TRUE(Enabled(9005));
    EXPECT_FALSE(Enabled(9004));
    Ctrl('y');
    EXPECT_EQ(pDoc->GetKeyCount(0), keys - 1);
}

TEST_F(KeyCommands, PasteWithoutASelectionAddsAKeyWithTheClipboardsCamera)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 0));
    Ctrl('c');
    KeyStruct copied = pDoc->clipboard.key;
    long frame = KeyFrame(0, 1) - 20;
    GoTo(frame);
    ASSERT_EQ(pDoc->GetKeySelection(), -1);
    int keys = pDoc->GetKeyCount(0);
    Ctrl('v');
    ASSERT_EQ(pDoc->GetKeyCount(0), keys + 1);
    KeyStruct pasted{};
    ASSERT_TRUE(KeyHere(&pasted));
    EXPECT_EQ(pasted.Frame, frame - pDoc->GetPicStart(0));
    EXPECT_EQ(pasted.XPos, copied.XPos);
    EXPECT_EQ(pasted.YPos, copied.YPos);
    EXPECT_EQ(pasted.Width, copied.Width);
    EXPECT_EQ(pasted.Rotation, copied.Rotation);
    // Two steps back: the paste, then the added key.
    Ctrl('z');
    Ctrl('z');
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    EXPECT_EQ(pDoc->FindKey(frame), -1);
}

TEST_F(KeyCommands, PasteOverASelectedKeyKeepsItsPlaceAndUndoRestoresIt)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 0));
    Ctrl('c');
    KeyStruct copied = pDoc->clipboard.key;
    long frame = KeyFrame(0, 1);
    GoTo(frame);
    KeyStruct old = pDoc->keys[0][1];
    ASSERT_NE(old.XPos, copied.XPos);
    int keys = pDoc->GetKeyCount(0);
    ASSERT_TRUE(Choose(9002));
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    const KeyStruct& now = pDoc->keys[0][1];
    EXPECT_EQ(now.XPos, copied.XPos);
    EXPECT_EQ(now.Width, copied.Width);
    EXPECT_EQ(now.Ease, copied.Ease);
    EXPECT_EQ(now.Frame, old.Frame);
    EXPECT_EQ(now.PicStart, old.PicStart);
    EXPECT_EQ(now.TransLen, old.TransLen);
    Command(9004);
    EXPECT_EQ(pDoc->keys[0][1].XPos, old.XPos);
    EXPECT_EQ(pDoc->keys[0][1].Width, old.Width);
    Command(9005);
    EXPECT_EQ(pDoc->keys[0][1].XPos, copied.XPos);
}

TEST_F(KeyCommands, PasteWithAnEmptyClipboardDoesNothing)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 1) - 20);
    int keys = pDoc->GetKeyCount(0);
    Ctrl('v');
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    EXPECT_EQ(pDoc->undoCount, 0);
}

TEST_F(KeyCommands, DeleteKeyRemovesTheSelectedKey)
{
    StartWithDemo();
    long frame = KeyFrame(0, 1);
    GoTo(frame);
    int keys = pDoc->GetKeyCount(0);
    Key(kCharDelete);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys - 1);
    EXPECT_TRUE(pDoc->dirty);
    EXPECT_FALSE(pDoc->clipboard.HoldsKey());
}

TEST_F(KeyCommands, DeletePictureAsksFirstAndNoKeepsIt)
{
    StartWithDemo();
    GoTo(pDoc->GetPicStart(1));
    PushMessageBoxAnswer(kBoxNo);
    ASSERT_TRUE(Choose(1023));
    EXPECT_EQ(pDoc->picCount, 4);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0], "Delete Picture: Are you sure?");

    FSpec third = pDoc->picSpec[2];
    PushMessageBoxAnswer(kBoxYes);
    Command(1023);
    EXPECT_EQ(pDoc->picCount, 3);
    EXPECT_STREQ(pDoc->picSpec[1].name, third.name);
}

TEST_F(KeyCommands, DeleteAllKeysLeavesKeyZeroOnTheWholePicture)
{
    StartWithDemo();
    GoTo(KeyFrame(0, 1));
    ASSERT_GT(pDoc->GetKeyCount(0), 1);
    PushMessageBoxAnswer(kBoxNo);
    Command(1024);
    ASSERT_GT(pDoc->GetKeyCount(0), 1);
    PushMessageBoxAnswer(kBoxYes);
    ASSERT_TRUE(Choose(1024));
    EXPECT_EQ(pDoc->GetKeyCount(0), 1);
    EXPECT_EQ(pDoc->keys[0][0].Width, static_cast<float>(pDoc->image.GetWid()));
    EXPECT_EQ(pDoc->keys[0][0].XPos, pDoc->image.GetWid() / 2.0f);
    EXPECT_EQ(pDoc->GetPicStart(0), 0);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[1], "Delete All Keys: Are you sure?");
}

TEST_F(KeyCommands, UniformSpeedAsksAndGoesToFrameZeroEitherWay)
{
    StartWithDemo();
    // Three keys an equal distance apart, the middle one bunched up at the start: even
    // spacing moves it.
    KeyStruct first = pDoc->keys[0][0];
    pDoc->keyCount[0] = 3;
    for (int key = 1; key < 3; ++key) {
        pDoc->keys[0][key] = first;
        pDoc->keys[0][key].PicStart = 0;
        pDoc->keys[0][key].XPos = first.XPos + 100.0f * static_cast<float>(key);
    }
    pDoc->keys[0][1].Frame = 2;
    pDoc->keys[0][2].Frame = 100;
    KeyStruct before = pDoc->keys[0][1];
    GoTo(40);
    PushMessageBoxAnswer(kBoxNo);
    Command(1022);
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_EQ(pDoc->keys[0][1].Frame, before.Frame);
    EXPECT_EQ(BoxTexts()[0], "Uniform Speed: Space keys at a uniform speed?");
    GoTo(40);
    PushMessageBoxAnswer(kBoxYes);
    ASSERT_TRUE(Choose(1022));
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_NE(pDoc->keys[0][1].Frame, before.Frame);
}

TEST_F(KeyCommands, UndoAndRedoItemsFollowTheRing)
{
    StartWithDemo();
    EXPECT_FALSE(Enabled(9004));
    EXPECT_FALSE(Enabled(9005));
    GoTo(KeyFrame(0, 1));
    Command(9003);
    EXPECT_TRUE(Enabled(9004));
    EXPECT_FALSE(Enabled(9005));
    Ctrl('z');
    EXPECT_FALSE(Enabled(9004));
    EXPECT_TRUE(Enabled(9005));
    // A menu item that is off does nothing when chosen; the shortcut goes to the command, which
    // checks the ring itself.
    int keys = pDoc->GetKeyCount(0);
    ASSERT_TRUE(Choose(9004));
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    Ctrl('z');
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
}

}  // namespace
