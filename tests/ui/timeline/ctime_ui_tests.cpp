// The time line in the editor on the offscreen platform, driven by real mouse input: key drags
// with undo, a picture swap, the transition limit and the key editor.

#include "ui/timeline/ctime.h"

#include <gtest/gtest.h>
#include <QTimer>
#include <cstdlib>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/posted_input.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/key_dialog.h"

namespace {

// Every test starts on the demo show.
class Timeline : public pxtest::Editor {
protected:
    void SetUp() override
    {
        pxtest::Editor::SetUp();
        StartWithDemo();
        ASSERT_FALSE(HasFatalFailure());
        ASSERT_NE(pTime, nullptr);
        ASSERT_GE(pDoc->picCount, 3);
        pTime->SetMaxTime(pDoc->showLength);
        pDoc->dirty = false;
        ProcessEvents();
    }
    // Window x of an absolute frame (the time line is not scrolled in these tests).
    static int XOf(long frame) { return static_cast<int>(pTime->ToPix(frame)); }
    // Press at (x, y), move in steps of 5 pixels to x + dx, release there.
    static void Drag(int x, int y, int dx, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* content = Content(pTime);
        Press(content, QPoint(x, y), modifiers);
        int step = dx >= 0 ? 5 : -5;
        for (int moved = step; dx >= 0 ? moved <= dx : moved >= dx; moved += step)
            SendMouse(content, QEvent::MouseMove, QPoint(x + moved, y), Qt::NoButton, modifiers);
        Release(content, QPoint(x + dx, y), modifiers);
        ProcessEvents();
    }
    // A double click at (x, y) with the key editor's answer posted to the stage first; Esc
    // follows after two seconds should the posted input not end it.
    static void DoubleClick(int x, int y)
    {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [] { PostEscape(pStage); });
        guard.start(2000);
        QWidget* content = Content(pTime);
        Press(content, QPoint(x, y));
        Release(content, QPoint(x, y));
        SendMouse(content, QEvent::MouseButtonDblClick, QPoint(x, y), Qt::LeftButton);
        Release(content, QPoint(x, y));
        ProcessEvents();
        EXPECT_TRUE(guard.isActive()) << "the key editor did not end on the input it was given";
    }
    static DialogLayout EditorLayout(int windowX)
    {
        tagPOINT at = pTime->KeyEditorPlace(windowX);
        KeyStruct any{};
        KeyDialogLists lists = MakeKeyDialog(any);
        return MakeDialogLayout(at.x, at.y, kKeyDialogRows, lists.descriptions, false);
    }
    static void PostItemClick(const DialogLayout& layout, int row)
    {
        tagRECT area = DialogValueArea(layout, row);
        PostClick(pStage, (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }
    static bool PostSpeedClick(const DialogLayout& layout, int value)
    {
        tagRECT bar = DialogSliderBar(layout, kKeyRowSpeed);
        for (int x = bar.left; x <= bar.right; ++x)
            if (DialogSliderValueAt(layout, kKeyRowSpeed, x) == value) {
                PostClick(pStage, x, (bar.top + bar.bottom) / 2);
                return true;
            }
        return false;
    }
};

constexpr int kKeyY = 22;

TEST_F(Timeline, KeyDraggedThirtyPixelsRightMovesByThoseFramesAndUndoes)
{
    ASSERT_GT(pDoc->GetKeyCount(0), 1);
    KeyStruct key{};
    pDoc->GetKey(1, key, 0);
    long frame = key.Frame;
    Drag(XOf(pDoc->GetPicStart(0) + frame), kKeyY, 30);
    pDoc->GetKey(1, key, 0);
    long expected = frame + 30L * pTime->scale / 60;
    long onePixel = (pTime->scale + 59) / 60;
    EXPECT_NEAR(key.Frame, expected, onePixel);
    EXPECT_GT(key.Frame, frame);
    pDoc->UnDo();
    pDoc->GetKey(1, key, 0);
    EXPECT_EQ(key.Frame, frame);
}

TEST_F(Timeline, FirstKeyOfPictureZeroDoesNotMove)
{
    Drag(XOf(0), kKeyY, 40);
    EXPECT_EQ(pDoc->GetPicStart(0), 0);
    EXPECT_EQ(pDoc->undoCount, 0);
}

TEST_F(Timeline, PictureStartDroppedOntoThePreviousPictureSwapsThem)
{
    FSpec first = pDoc->picSpec[1];
    FSpec second = pDoc->picSpec[2];
    long start1 = pDoc->GetPicStart(1);
    long start2 = pDoc->GetPicStart(2);
    // From picture 2's start to 3 frames after picture 1's.
    int from = XOf(start2);
    int to = XOf(start1 + 3);
    Drag(from, kKeyY, to - from);
    EXPECT_STREQ(pDoc->picSpec[1].name, second.name);
    EXPECT_STREQ(pDoc->picSpec[2].name, first.name);
    EXPECT_EQ(pDoc->GetPicStart(1), start1);
    EXPECT_EQ(pDoc->GetPicStart(2), start2);
}

TEST_F(Timeline, TransitionStopsOneFrameShortOfTheNextPicture)
{
    long start1 = pDoc->GetPicStart(1);
    long start2 = pDoc->GetPicStart(2);
    int handle = static_cast<int>(TransitionHandleX(*pDoc, pTime->scale, 1));
    Drag(handle, 6, XOf(start2 + 20) - handle);
    KeyStruct first{};
    pDoc->GetKey(0, first, 1);
    EXPECT_EQ(first.TransLen, static_cast<float>(start2 - start1 - 1));
    pDoc->UnDo();
}

TEST_F(Timeline, DoubleClickedKeyTakesSlowInAtHalfSpeed)
{
    KeyStruct key{};
    pDoc->GetKey(1, key, 0);
    int x = XOf(pDoc->GetPicStart(0) + key.Frame);
    DialogLayout layout = EditorLayout(x);
    PostItemClick(layout, kKeyRowIn);
    ASSERT_TRUE(PostSpeedClick(layout, 50));
    PostReturn(pStage);
    DoubleClick(x, kKeyY);
    pDoc->GetKey(1, key, 0);
    EXPECT_EQ(key.Ease, 2050.0f);
    KeyDialogLists lists = MakeKeyDialog(key);
    EXPECT_TRUE(IsDialogValueOn(lists.values, kKeyRowIn));
    EXPECT_EQ(GetDialogNumber(lists.values, kKeyRowSpeed), 50);
}

TEST_F(Timeline, CancelledKeyEditorChangesNothing)
{
    KeyStruct before{};
    pDoc->GetKey(1, before, 0);
    int x = XOf(pDoc->GetPicStart(0) + before.Frame);
    DialogLayout layout = EditorLayout(x);
    PostItemClick(layout, kKeyRowNone);
    PostEscape(pStage);
    DoubleClick(x, kKeyY);
    KeyStruct after{};
    pDoc->GetKey(1, after, 0);
    EXPECT_EQ(after.Ease, before.Ease);
    EXPECT_EQ(after.XPos, before.XPos);
    EXPECT_EQ(after.Frame, before.Frame);
}

TEST_F(Timeline, EditEndedCancelsTheDrag)
{
    KeyStruct key{};
    pDoc->GetKey(1, key, 0);
    QWidget* content = Content(pTime);
    Press(content, QPoint(XOf(key.Frame), kKeyY));
    EXPECT_EQ(pTime->press.drag, TimelineDrag::kKey);
    pTime->HandleEvent(kMsgEditEnded, 0, 0);
    EXPECT_EQ(pTime->press.drag, TimelineDrag::kNone);
    Release(content, QPoint(XOf(key.Frame) + 30, kKeyY));
    ProcessEvents();
    pDoc->GetKey(1, key, 0);
    EXPECT_EQ(pDoc->undoCount, 0);
}

TEST_F(Timeline, WheelScrollsSixtyPixelsAStep)
{
    pTime->HandleEvent(kMsgWheelHorizontal, 2, 0);
    ASSERT_GT(pTime->GetScrollLimitX(), 120);
    EXPECT_EQ(pTime->GetViewScrollX(), 120);
    pTime->HandleEvent(kMsgWheelHorizontal, -1, 0);
    EXPECT_EQ(pTime->GetViewScrollX(), 60);
}

}  // namespace
