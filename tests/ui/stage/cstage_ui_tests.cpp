// The stage in the editor on the offscreen platform: its messages, painting, and a walk-through
// of camera edits made with real mouse input, each ending as a key of the show with undo.

#include "ui/stage/cstage.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/posted_input.h"
#include "platform/draw/draw_port.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/wnd_test_support.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"

namespace {

class Stage : public pxtest::Editor {
protected:
    // The editor on the demo show, at a frame of picture 0 with no key near it.
    void StartAtFreeFrame(const std::string& settings = "")
    {
        StartWithDemo(settings);
        ASSERT_FALSE(HasFatalFailure());
        ASSERT_NE(pStage, nullptr);
        ASSERT_GT(pDoc->GetKeyCount(0), 1);
        KeyStruct second{};
        pDoc->GetKey(1, second, 0);
        frame = pDoc->GetPicStart(0) + second.Frame / 2;
        ASSERT_EQ(pDoc->FindKey(frame), -1);
        pDoc->GotoFrame(frame, true);
        pDoc->dirty = false;
        ProcessEvents();
    }
    static StageFrame Frame() { return FrameOf(pStage->currentKey, pStage->View()); }
    static long At(int x, int y) { return MakePointParam(x, y); }
    static void Send(unsigned int msg, long wParam, int x, int y)
    {
        pStage->HandleEvent(msg, wParam, MakePointParam(x, y));
    }
    // Press at `from`, move in steps of 10 pixels to `from` + (dx, 0), release there: real Qt
    // input on the stage's content.
    static void Drag(tagPOINT from, int dx, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* content = Content(pStage);
        Press(content, QPoint(from.x, from.y), modifiers);
        for (int step = 10; step <= dx; step += 10)
            SendMouse(content, QEvent::MouseMove, QPoint(from.x + step, from.y), Qt::NoButton,
                      modifiers);
        Release(content, QPoint(from.x + dx, from.y), modifiers);
        ProcessEvents();
    }
    // The Edit menu's commands are handled elsewhere; the document's own undo ring is what
    // they call.
    static void Undo() { pDoc->UnDo(); }
    static void Redo() { pDoc->ReDo(); }

    long frame = 0;
};

TEST_F(Stage, PressOnTheCentreStartsAMoveAndTheReleaseAddsTheKeyWithUndo)
{
    StartAtFreeFrame();
    int keys = pDoc->GetKeyCount(0);
    int undo = pDoc->undoCount;
    StageFrame f = Frame();
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y);
    EXPECT_EQ(pStage->DragMode(), kHitMove);
    Send(kMsgMouseMoved, 0, f.centre.x + 10, f.centre.y + 4);
    Send(kMsgButtonUp, 0, f.centre.x + 10, f.centre.y + 4);
    EXPECT_EQ(pStage->DragMode(), kHitNone);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys + 1);
    EXPECT_EQ(pDoc->undoCount, undo + 1);
    EXPECT_TRUE(pDoc->dirty);
}

TEST_F(Stage, WithoutAutoAddKeyTheReleaseLeavesTheShowAlone)
{
    StartAtFreeFrame("AutoAddKey=0\r\n");
    int keys = pDoc->GetKeyCount(0);
    StageFrame f = Frame();
    float x = pStage->currentKey.XPos;
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y);
    Send(kMsgMouseMoved, 0, f.centre.x + 20, f.centre.y);
    Send(kMsgButtonUp, 0, f.centre.x + 20, f.centre.y);
    EXPECT_GT(pStage->currentKey.XPos, x);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
    EXPECT_FALSE(pDoc->dirty);
}

TEST_F(Stage, PressOffTheFrameStartsNothing)
{
    StartAtFreeFrame();
    StageFrame f = Frame();
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y - f.hh - 20);
    EXPECT_EQ(pStage->DragMode(), kHitNone);
    int keys = pDoc->GetKeyCount(0);
    Send(kMsgButtonUp, 0, f.centre.x, f.centre.y - f.hh - 20);
    EXPECT_EQ(pDoc->GetKeyCount(0), keys);
}

TEST_F(Stage, PressBesideTheFrameLeavesTheDrawingAsItWas)
{
    StartAtFreeFrame();
    pStage->HandleEvent(kMsgPaint, 0, 0);
    DrawPort* port = pStage->GetPort();
    ASSERT_NE(port, nullptr);
    StageFrame f = Frame();
    auto sample = [&] {
        std::string pixels;
        for (int x = f.corner[0].x - 4; x <= f.corner[1].x + 4; ++x)
            pixels += std::to_string(port->PixelAt(x, f.corner[0].y)) + ",";
        return pixels;
    };
    std::string before = sample();
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y - f.hh - 20);
    EXPECT_EQ(sample(), before);
}

TEST_F(Stage, EditEndedAndDoubleClickCancelTheDrag)
{
    StartAtFreeFrame();
    StageFrame f = Frame();
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y);
    pStage->HandleEvent(kMsgEditEnded, 0, 0);
    EXPECT_EQ(pStage->DragMode(), kHitNone);
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y);
    KeyStruct before = pStage->currentKey;
    // The double click opens the key editor on the frame; Esc cancels it.
    PostEscape(pStage);
    Send(kMsgSecondaryUp, 0, f.centre.x, f.centre.y);
    EXPECT_EQ(pStage->DragMode(), kHitNone);
    EXPECT_FLOAT_EQ(pStage->currentKey.XPos, before.XPos);
    EXPECT_FLOAT_EQ(pStage->currentKey.Width, before.Width);
}

TEST_F(Stage, CursorFollowsWhatThePointerIsOver)
{
    StartAtFreeFrame();
    StageFrame f = Frame();
    Send(kMsgMouseMoved, 0, f.centre.x, f.centre.y);
    EXPECT_EQ(GetCursorImage(), kCursorImageMove);
    Send(kMsgMouseMoved, 0, f.corner[2].x, f.corner[2].y);
    EXPECT_EQ(GetCursorImage(), kCursorImageResize);
    Send(kMsgMouseMoved, 0, f.corner[0].x, f.corner[0].y);
    EXPECT_EQ(GetCursorImage(), kCursorImageRotate);
    Send(kMsgMouseMoved, kModCommand, f.corner[0].x, f.corner[0].y);
    EXPECT_EQ(GetCursorImage(), kCursorImageTilt);
    Send(kMsgMouseMoved, 0, f.centre.x, f.centre.y - f.hh - 20);
    EXPECT_EQ(GetCursorImage(), kCursorImageArrow);
}

TEST_F(Stage, KeysChangeTheCurrentKeyAndHomeGoesOnPlain)
{
    StartAtFreeFrame();
    KeyStruct before = pStage->currentKey;
    pStage->HandleEvent(kMsgKeyDown, kCharRight, 0);
    EXPECT_FLOAT_EQ(pStage->currentKey.XPos, before.XPos + 1.0f);
    pStage->HandleEvent(kMsgKeyDown, kCharPageDown, 0);
    EXPECT_FLOAT_EQ(pStage->currentKey.Width, before.Width + 1.0f);
    EXPECT_EQ(pStage->HandleEvent(kMsgKeyDown, 1024, 0), 1);
    pStage->HandleEvent(kMsgKeyDown, kCharHome, 0);
    EXPECT_FLOAT_EQ(pStage->currentKey.XPos, before.XPos + 1.0f);
    // A key that comes as a shortcut goes through the same table.
    pStage->HandleEvent(kMsgShortcut, kCharUp, kShortcutMark);
    EXPECT_FLOAT_EQ(pStage->currentKey.YPos, before.YPos - 1.0f);
}

TEST_F(Stage, OptionArrowAndOptionHomeFromRealKeys)
{
    StartAtFreeFrame();
    QWidget* content = Content(pStage);
    float width = pStage->currentKey.Width;
    SendKey(content, QEvent::KeyPress, Qt::Key_Left, Qt::AltModifier);
    SendKey(content, QEvent::KeyRelease, Qt::Key_Left, Qt::AltModifier);
    ProcessEvents();
    EXPECT_FLOAT_EQ(pStage->currentKey.XPos, width / 2.0f);
    SendKey(content, QEvent::KeyPress, Qt::Key_Home, Qt::AltModifier);
    SendKey(content, QEvent::KeyRelease, Qt::Key_Home, Qt::AltModifier);
    ProcessEvents();
    EXPECT_FLOAT_EQ(pStage->currentKey.XPos, static_cast<float>(pDoc->image.GetWid()) / 2.0f);
    EXPECT_FLOAT_EQ(pStage->currentKey.YPos, static_cast<float>(pDoc->image.GetHgt()) / 2.0f);
}

TEST_F(Stage, WheelScrollsSixtyPixelsANotch)
{
    StartAtFreeFrame();
    pStage->HandleEvent(kMsgWheelVertical, 1, At(10, 10));
    EXPECT_EQ(pStage->GetViewScrollY(), 60);
    pStage->HandleEvent(kMsgWheelHorizontal, 2, At(10, 10));
    EXPECT_EQ(pStage->GetViewScrollX(), 120);
    // The frame is found where it is drawn, scroll included.
    StageFrame f = Frame();
    Send(kMsgButtonDown, 0, f.centre.x, f.centre.y);
    EXPECT_EQ(pStage->DragMode(), kHitMove);
}

TEST_F(Stage, PaintingShowsThePictureCentredAndTheFrameInBlack)
{
    StartAtFreeFrame("CenterPic=1\r\n");
    pStage->HandleEvent(kMsgPaint, 0, 0);
    tagRECT client;
    pStage->GetClientRect(client);
    int width = static_cast<int>(static_cast<float>(pDoc->image.GetWid()) * pStage->scale);
    EXPECT_EQ(pStage->originX, std::max(0, (static_cast<int>(client.right) - width) / 2));
    StageFrame f = Frame();
    DrawPort* port = pStage->GetPort();
    ASSERT_NE(port, nullptr);
    // The black middle of the cross, the white under-stroke beside its arm.
    EXPECT_EQ(port->PixelAt(f.centre.x, f.centre.y) & 0xFFFFFFu, 0u);
    EXPECT_EQ(port->PixelAt(f.centre.x + 2, f.centre.y - 1) & 0xFFFFFFu, 0xFFFFFFu);
}

TEST_F(Stage, RubberFrameDrawnTwiceLeavesEveryPixelAsItWas)
{
    StartAtFreeFrame();
    pStage->HandleEvent(kMsgPaint, 0, 0);
    DrawPort* port = pStage->GetPort();
    ASSERT_NE(port, nullptr);
    StageFrame f = Frame();
    auto sample = [&] {
        std::string pixels;
        for (int y = f.centre.y - f.hh - 8; y <= f.centre.y + f.hh + 8; y += 1)
            for (int x = f.centre.x - f.hw - 8; x <= f.centre.x + f.hw + 8; x += 1)
                pixels += std::to_string(port->PixelAt(x, y)) + ",";
        return pixels;
    };
    std::string before = sample();
    pStage->DrawCamera(true);
    EXPECT_NE(sample(), before);
    pStage->DrawCamera(true);
    EXPECT_EQ(sample(), before);
}

TEST_F(Stage, ReleaseOnAKeyMarkerJumpsToItsFrame)
{
    StartAtFreeFrame("ShowCameraPath=1\r\n");
    KeyStruct second{};
    pDoc->GetKey(1, second, 0);
    StageView view = pStage->View();
    int x = static_cast<int>(second.XPos * view.scale) - view.scrollX + view.originX + 3;
    int y = static_cast<int>(second.YPos * view.scale) - view.scrollY + view.originY - 3;
    if (pStage->MouseCheck(x, y, 0) != kHitNone)
        GTEST_SKIP() << "the marker lies under the frame in this show";
    Send(kMsgMouseMoved, 0, x, y);
    EXPECT_EQ(GetCursorImage(), kCursorImageCrosshair);
    Send(kMsgButtonUp, 0, x, y);
    EXPECT_EQ(gCurFrame, pDoc->GetPicStart(0) + second.Frame);
}

// ---- The walk-through: real mouse input on the stage's content ------------------------------

TEST_F(Stage, WalkThroughMoveDragAddsAKeyFortyPixelsOnWithUndoAndRedo)
{
    StartAtFreeFrame();
    float s = pStage->scale;
    float x = pStage->currentKey.XPos;
    float y = pStage->currentKey.YPos;
    Drag(Frame().centre, 40);
    KeyStruct key{};
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_EQ(key.Frame, gCurFrame - pDoc->GetPicStart(0));
    EXPECT_NEAR(key.XPos, x + 40.0f / s, 1.0f / s);
    EXPECT_NEAR(key.YPos, y, 1.0f / s);
    EXPECT_TRUE(pDoc->dirty);
    Undo();
    EXPECT_FALSE(KeyHere(&key));
    Redo();
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.XPos, x + 40.0f / s, 1.0f / s);
}

TEST_F(Stage, WalkThroughCornerDragWidensTheFrame)
{
    StartAtFreeFrame();
    float s = pStage->scale;
    float width = pStage->currentKey.Width;
    StageFrame f = Frame();
    Drag(f.corner[2], 40);
    KeyStruct key{};
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Width, width + 80.0f / s, 4.0f / s);
    EXPECT_TRUE(pDoc->dirty);
    Undo();
    EXPECT_FALSE(KeyHere(&key));
    Redo();
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Width, width + 80.0f / s, 4.0f / s);
}

TEST_F(Stage, WalkThroughRotationDragTurnsTwentyDegrees)
{
    StartAtFreeFrame();
    float rotation = pStage->currentKey.Rotation;
    Drag(Frame().corner[0], 40);
    KeyStruct key{};
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Rotation, rotation + 20.0f, 0.5f);
    EXPECT_TRUE(pDoc->HasRotationInShow(0));
    Undo();
    EXPECT_FALSE(KeyHere(&key));
    Redo();
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Rotation, rotation + 20.0f, 0.5f);
}

TEST_F(Stage, WalkThroughTiltDragsTurnRot3AndWithShiftRot2)
{
    StartAtFreeFrame();
    float rot3 = pStage->currentKey.Rot3;
    Drag(Frame().corner[0], 40, Qt::ControlModifier);
    KeyStruct key{};
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Rot3, rot3 + 20.0f, 0.5f);
    Undo();
    EXPECT_FALSE(KeyHere(&key));
    Redo();
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Rot3, rot3 + 20.0f, 0.5f);

    float rot2 = pStage->currentKey.Rot2;
    Drag(Frame().corner[0], 40, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Rot2, rot2 + 20.0f, 0.5f);
    EXPECT_NEAR(key.Rot3, rot3 + 20.0f, 0.5f);
    Undo();
    ASSERT_TRUE(KeyHere(&key));
    EXPECT_NEAR(key.Rot2, rot2, 0.01f);
}

}  // namespace
