// The viewer in the editor on the offscreen platform: its pixels against the movie renderer, the
// fast crop while dragging, the TV-safe outlines, its messages, the timecode prompt and real-time
// playback driven by the clock.

#include "ui/viewer/cview.h"

#include <gtest/gtest.h>
#include <QTimer>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "platform/dialog/string_box.h"
#include "platform/draw/draw_port.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/ticks.h"
#include "platform/wnd/wnd_test_support.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"
#include "ui/stage/stage_geometry.h"

namespace {

class Viewer : public pxtest::Editor {
protected:
    // The editor on the demo show, without motion blur (a frame is then one render).
    void StartOnDemo(const std::string& settings = "")
    {
        Start(settings);
        pDoc->blurFrames = 0;
        ASSERT_TRUE(OpenShow(pxtest::kDemoShow));
        ASSERT_NE(pViewer, nullptr);
        pDoc->blurFrames = 0;
        ProcessEvents();
    }
    // The frame of the last key of the last picture.
    static long LastKeyFrame()
    {
        int pic = pDoc->picCount - 1;
        KeyStruct last{};
        pDoc->GetKey(pDoc->GetKeyCount(pic) - 1, last, pic);
        return pDoc->GetPicStart(pic) + last.Frame;
    }
    // The view image against the movie renderer's frame of the same size, byte for byte.
    static void ExpectViewEqualsRenderFrame(long frame)
    {
        pDoc->GotoFrame(frame, false);
        pViewer->Refresh(true);
        int w = pViewer->viewImage.GetWid();
        int h = pViewer->viewImage.GetHgt();
        ASSERT_GT(w, 16);
        CDIB movie(w, h, 32);
        ASSERT_TRUE(pDoc->RenderFrame(frame, 0, false, w, h, &movie, false));
        for (int row = 0; row < h; ++row) {
            ASSERT_EQ(std::memcmp(pViewer->viewImage.GetBitsAdd(row), movie.GetBitsAdd(row),
                                  static_cast<size_t>(w) * 4),
                      0)
                << "frame " << frame << " row " << row;
        }
    }
    static QPoint Centre(const tagRECT& r)
    {
        return QPoint((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    }
    // A release on a viewer button, through Qt as the user's click would come.
    static void ClickLater(int milliseconds, const tagRECT& button)
    {
        QPoint at = Centre(button);
        QTimer::singleShot(milliseconds, [at]() {
            if (pViewer)
                Release(Content(pViewer), at);
        });
    }
};

TEST_F(Viewer, PictureAreaIsTruncWidthTimesRatioHigh)
{
    StartOnDemo();
    tagRECT client;
    pViewer->GetClientRect(client);
    int width = client.right - client.left;
    EXPECT_EQ(client.bottom - client.top,
              static_cast<int>(static_cast<float>(width) * pDoc->aspectRatio) + kViewerStrip);
    EXPECT_EQ(GetIniItem("ViewerWidth", -1), static_cast<long>(width));
}

TEST_F(Viewer, ResizeRestoresTheAspectAndStoresThePlace)
{
    StartOnDemo();
    tagRECT rect;
    pViewer->GetWinRect(rect);
    rect.right = rect.left + 300;
    rect.bottom = rect.top + 900;  // any height: the width decides
    pViewer->SetWinRect(rect, true);
    pViewer->HandleEvent(kMsgResized, 0, 0);
    tagRECT client;
    pViewer->GetClientRect(client);
    EXPECT_EQ(client.right - client.left, 300);
    EXPECT_EQ(client.bottom - client.top,
              static_cast<int>(300.0f * pDoc->aspectRatio) + kViewerStrip);
    pViewer->GetWinRect(rect);
    EXPECT_EQ(GetIniItem("ViewerTop", -1), static_cast<long>(rect.top));
    EXPECT_EQ(GetIniItem("ViewerLeft", -1), static_cast<long>(rect.left));
    EXPECT_EQ(GetIniItem("ViewerWidth", -1), 300L);
}

TEST_F(Viewer, StoredPlaceBelow32ReadsAs32)
{
    StartOnDemo("ViewerTop=31\r\nViewerLeft=5\r\nViewerWidth=20\r\n");
    tagRECT rect;
    pViewer->GetWinRect(rect);
    EXPECT_EQ(rect.top, 32);
    EXPECT_EQ(rect.left, 32);
    EXPECT_EQ(rect.right - rect.left, 80);  // widened to 80
}

TEST_F(Viewer, FullRefreshEqualsTheMovieFrame)
{
    StartOnDemo();
    ASSERT_GT(pDoc->picCount, 1);
    // A rotated camera on the first picture's second key.
    ASSERT_GT(pDoc->GetKeyCount(0), 1);
    pDoc->keys[0][1].Rotation = 17.5f;
    pDoc->keys[0][1].Rot3 = 4.0f;
    KeyStruct second{};
    pDoc->GetKey(1, second, 0);
    ExpectViewEqualsRenderFrame(pDoc->GetPicStart(0) + second.Frame);
    ExpectViewEqualsRenderFrame(pDoc->GetPicStart(0) + second.Frame / 2);
    // Frames inside the dissolve into the second picture, and frame 100.
    long start = pDoc->GetPicStart(1);
    long transition = static_cast<long>(pDoc->keys[1][0].TransLen);
    ASSERT_GT(transition, 2);
    ExpectViewEqualsRenderFrame(start + 1);
    ExpectViewEqualsRenderFrame(start + transition / 2);
    ExpectViewEqualsRenderFrame(100);
}

TEST_F(Viewer, DragRefreshIsTheNearestCropOfTheStagesCamera)
{
    StartOnDemo();
    pDoc->GotoFrame(10, false);
    pStage->currentKey.XPos += 31.0f;
    pStage->currentKey.Width *= 0.8f;
    pStage->currentKey.Rotation = 0;
    pViewer->Refresh(false);
    int w = pViewer->viewImage.GetWid();
    int h = pViewer->viewImage.GetHgt();
    CDIB expected(w, h, 32);
    const KeyStruct& k = pStage->currentKey;
    float high = pDoc->aspectRatio * k.Width;
    float top = static_cast<float>(pDoc->image.GetHgt()) - k.YPos - high / 2;
    ASSERT_TRUE(expected.FilterCrop(&pDoc->image, k.XPos - k.Width / 2, top, k.Width, high, 0,
                                    k.Rot2, k.Rot3, 0, 0, 0));
    for (int row = 0; row < h; ++row)
        ASSERT_EQ(std::memcmp(pViewer->viewImage.GetBitsAdd(row), expected.GetBitsAdd(row),
                              static_cast<size_t>(w) * 4),
                  0)
            << row;
}

// The port's pixel of a picture-area point against the view image's.
bool PortShowsViewImage(int x, int y)
{
    const unsigned char* p =
        pViewer->viewImage.GetBitsAdd(pViewer->viewImage.GetHgt() - 1 - y) + x * 4;
    uint32_t rgb = (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[1]) << 8) | p[0];
    return (pViewer->GetPort()->PixelAt(x, y) & 0xFFFFFF) == rgb;
}

TEST_F(Viewer, TvSafeOffDrawsNothingOverThePicture)
{
    StartOnDemo();
    pDoc->GotoFrame(100, false);
    pViewer->Refresh(true);
    ViewerSafeAreas safe = ViewerSafeAreasOf(ViewerPictureArea([] {
        tagRECT c;
        pViewer->GetClientRect(c);
        return c;
    }()));
    int w = pViewer->viewImage.GetWid();
    int h = pViewer->viewImage.GetHgt();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            ASSERT_TRUE(PortShowsViewImage(x, y)) << x << "," << y;
    // With the flag on, the action-safe outline is white over the picture.
    pViewer->tvSafe = true;
    pViewer->Refresh(true);
    int mid = (safe.action.top + safe.action.bottom) / 2;
    EXPECT_EQ(pViewer->GetPort()->PixelAt(safe.action.left, mid) & 0xFFFFFF, 0xFFFFFFu);
}

TEST_F(Viewer, CloseRequestDoesNotCloseTheViewer)
{
    StartOnDemo();
    EXPECT_EQ(pViewer->HandleEvent(kMsgClose, 0, 0), 1);
    ProcessEvents();
    ASSERT_NE(pViewer, nullptr);
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(Viewer, ShowHideMessage)
{
    StartOnDemo();
    pViewer->HandleEvent(1023, 0, 0);
    EXPECT_FALSE(pViewer->IsVisible());
    pViewer->HandleEvent(1023, 1, 0);
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(Viewer, MessagesOutsideItsRangeAreNotHandled)
{
    StartOnDemo();
    EXPECT_EQ(pViewer->HandleEvent(1000, 0, 0), 0);
    EXPECT_EQ(pViewer->HandleEvent(1024, 0, 0), 0);
}

TEST_F(Viewer, PointerMoveShowsTheArrow)
{
    StartOnDemo();
    ChangeCursor(11);
    pViewer->HandleEvent(kMsgMouseMoved, 0, MakePointParam(5, 5));
    EXPECT_EQ(GetCursorImage(), CursorImageForKind(1));
}

TEST_F(Viewer, TimecodeClickAsksAndJumps)
{
    StartOnDemo();
    pDoc->GotoFrame(0, false);
    char code[64] = {};
    FrameToString(code, 120, false);
    PushStringBoxAnswer(code);
    tagRECT box = pViewer->timecodeBox;
    ASSERT_GT(box.right, box.left);
    QPoint at = Centre(box);
    pViewer->HandleEvent(kMsgButtonUp, 0, MakePointParam(at.x(), at.y()));
    auto shown = TakeShownStringBoxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "Timecode");
    EXPECT_EQ(shown[0].prompt, "Type Timecode");
    EXPECT_EQ(gCurFrame, 120);
    // A cancel leaves the frame; 1016 asks as well.
    PushStringBoxCancel();
    pViewer->HandleEvent(1016, 0, MakePointParam(at.x(), at.y()));
    EXPECT_EQ(TakeShownStringBoxes().size(), 1u);
    EXPECT_EQ(gCurFrame, 120);
    // Outside the box nothing is asked.
    pViewer->HandleEvent(1016, 0, MakePointParam(2, 2));
    EXPECT_TRUE(TakeShownStringBoxes().empty());
}

TEST_F(Viewer, AddKeyButtonAddsAKey)
{
    StartOnDemo();
    int pic = 0;
    KeyStruct second{};
    pDoc->GetKey(1, second, pic);
    long frame = pDoc->GetPicStart(pic) + second.Frame / 2;
    pDoc->GotoFrame(frame, false);
    int keys = pDoc->GetKeyCount(pic);
    QPoint at = Centre(pViewer->addKey.GetRect());
    pViewer->HandleEvent(kMsgButtonUp, 0, MakePointParam(at.x(), at.y()));
    EXPECT_EQ(pDoc->GetKeyCount(pic), keys + 1);
}

TEST_F(Viewer, PlayForOneSecondFollowsTheClock)
{
    StartOnDemo();
    pDoc->GotoFrame(0, false);
    ASSERT_GT(LastKeyFrame(), 60);
    ClickLater(1000, pViewer->stop.GetRect());
    long before = GetMilliTime();
    QPoint at = Centre(pViewer->forwards.GetRect());
    Release(Content(pViewer), at);  // returns when playback stops
    long ticks = GetMilliTime() - before;
    EXPECT_EQ(pViewer->speed, 0);
    EXPECT_FALSE(pViewer->loopRunning);
    long expected = ticks / pViewer->ticksPerFrame;
    EXPECT_NEAR(gCurFrame, expected, 2) << ticks << " ticks";
    EXPECT_GE(ticks, 55);
    EXPECT_LE(gCurFrame, LastKeyFrame());
}

TEST_F(Viewer, PlaybackStopsAtTheLastKey)
{
    StartOnDemo();
    long last = LastKeyFrame();
    ASSERT_LT(last, pDoc->showLength);
    pDoc->GotoFrame(last - 6, false);
    ClickLater(3000, pViewer->stop.GetRect());  // only a safety net
    pViewer->SetSpeed(1);
    EXPECT_EQ(gCurFrame, last);
    EXPECT_EQ(pViewer->speed, 0);
}

TEST_F(Viewer, PlayAtOrAfterTheEndRestartsFromZero)
{
    StartOnDemo();
    pDoc->GotoFrame(LastKeyFrame(), false);
    ClickLater(150, pViewer->stop.GetRect());
    pViewer->SetSpeed(1);
    EXPECT_LT(gCurFrame, 20);
}

TEST_F(Viewer, BackwardsPlayFromFrame10StopsAtZero)
{
    StartOnDemo();
    pDoc->GotoFrame(10, false);
    ClickLater(3000, pViewer->stop.GetRect());  // only a safety net
    long before = GetMilliTime();
    pViewer->SetSpeed(-1);
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_EQ(pViewer->speed, 0);
    EXPECT_LT(GetMilliTime() - before, 120);  // it stopped by itself, not by the click
}

TEST_F(Viewer, KeyDownEndsPlayback)
{
    StartOnDemo();
    pDoc->GotoFrame(0, false);
    QTimer::singleShot(200, []() {
        if (pViewer)
            SendKey(Content(pViewer), QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    });
    pViewer->SetSpeed(1);
    EXPECT_EQ(pViewer->speed, 0);
    EXPECT_GT(gCurFrame, 0);
}

TEST_F(Viewer, QuitDuringPlaybackEndsTheLoop)
{
    StartOnDemo();
    pDoc->GotoFrame(0, false);
    QTimer::singleShot(200, []() { gMacDone = 1; });
    pViewer->SetSpeed(1);
    EXPECT_EQ(pViewer->speed, 0);
    EXPECT_FALSE(pViewer->loopRunning);
}

TEST_F(Viewer, ButtonDownPressesOnlyTheButtonHit)
{
    StartOnDemo();
    QPoint at = Centre(pViewer->forwards.GetRect());
    pViewer->HandleEvent(kMsgButtonDown, 0, MakePointParam(at.x(), at.y()));
    EXPECT_EQ(pViewer->forwards.GetState(), kButtonPressed);
    EXPECT_EQ(pViewer->backwards.GetState(), kButtonNormal);
    EXPECT_EQ(pViewer->stop.GetState(), kButtonNormal);
    EXPECT_EQ(pViewer->addKey.GetState(), kButtonNormal);
    // The pressed picture differs from the normal one somewhere in the button.
    bool changed = false;
    const tagRECT& r = pViewer->forwards.GetRect();
    pViewer->forwards.SetState(kButtonNormal);
    std::vector<uint32_t> normal;
    for (int y = r.top; y < r.bottom; ++y)
        for (int x = r.left; x < r.right; ++x)
            normal.push_back(pViewer->GetPort()->PixelAt(x, y));
    pViewer->HandleEvent(kMsgButtonDown, 0, MakePointParam(at.x(), at.y()));
    size_t i = 0;
    for (int y = r.top; y < r.bottom; ++y)
        for (int x = r.left; x < r.right; ++x)
            changed = changed || pViewer->GetPort()->PixelAt(x, y) != normal[i++];
    EXPECT_TRUE(changed);
}

TEST_F(Viewer, ButtonUpEndsTheStagesDrag)
{
    StartOnDemo();
    StageFrame f = FrameOf(pStage->currentKey, pStage->View());
    Press(Content(pStage), QPoint(f.centre.x, f.centre.y));
    ASSERT_NE(pStage->DragMode(), kHitNone);
    pViewer->HandleEvent(kMsgButtonUp, 0, MakePointParam(2, 2));
    EXPECT_EQ(pStage->DragMode(), kHitNone);
}

TEST_F(Viewer, BackwardsPlayAtTheEndDoesNotRestartFromZero)
{
    StartOnDemo();
    long last = LastKeyFrame();
    pDoc->GotoFrame(last, false);
    ClickLater(150, pViewer->stop.GetRect());
    pViewer->SetSpeed(-1);
    EXPECT_LT(gCurFrame, last);
    EXPECT_GT(gCurFrame, last - 20);
}

TEST_F(Viewer, HostedPlaybackRunsPastTheLastKeyToTheShowsEnd)
{
    StartOnDemo();
    pDoc->standalone = 0;
    long last = LastKeyFrame();
    ASSERT_LT(last + 10, pDoc->showLength);
    pDoc->GotoFrame(last - 2, false);
    ClickLater(400, pViewer->stop.GetRect());
    pViewer->SetSpeed(1);
    EXPECT_GT(gCurFrame, last);
    EXPECT_EQ(pViewer->endFrame, pDoc->showLength);
}

TEST_F(Viewer, TicksPerFrameFromTheClockAndTheRate)
{
    StartOnDemo();
    EXPECT_EQ(pViewer->ticksPerFrame, GetMilliTimeFreq() * 100 / gFrameRate);
    EXPECT_GE(pViewer->ticksPerFrame, 1);
}

TEST_F(Viewer, KeysGoToTheMainWindowUnchangedAndAreNotHandled)
{
    StartOnDemo();
    RecordingWindow main;
    CPWnd* saved = gMainWindowPtr;
    gMainWindowPtr = &main;
    EXPECT_EQ(pViewer->HandleEvent(kMsgKeyDown, 'x', 0), 0);
    EXPECT_EQ(pViewer->HandleEvent(kMsgShortcut, 'q', 7), 0);
    EXPECT_EQ(pViewer->HandleEvent(kMsgKeyDown, 1024, 0), 0);  // this code is not passed on
    gMainWindowPtr = saved;
    ASSERT_EQ(main.log.size(), 2u);
    EXPECT_EQ(main.log[0], (Received{&main, kMsgKeyDown, 'x', 0}));
    EXPECT_EQ(main.log[1], (Received{&main, kMsgShortcut, 'q', 7}));
}

TEST_F(Viewer, StageDragShowsTheNearestCropInTheViewer)
{
    StartOnDemo();
    KeyStruct second{};
    pDoc->GetKey(1, second, 0);
    pDoc->GotoFrame(pDoc->GetPicStart(0) + second.Frame / 2, true);
    ProcessEvents();
    StageFrame f = FrameOf(pStage->currentKey, pStage->View());
    QPoint from(f.centre.x, f.centre.y);
    Press(Content(pStage), from);
    SendMouse(Content(pStage), QEvent::MouseMove, from + QPoint(20, 0), Qt::LeftButton);
    ASSERT_NE(pStage->DragMode(), kHitNone);
    const KeyStruct& k = pStage->currentKey;
    ASSERT_EQ(k.Rotation, 0.0f);
    int w = pViewer->viewImage.GetWid();
    int h = pViewer->viewImage.GetHgt();
    CDIB expected(w, h, 32);
    float high = pDoc->aspectRatio * k.Width;
    float top = static_cast<float>(pDoc->image.GetHgt()) - k.YPos - high / 2;
    ASSERT_TRUE(expected.FilterCrop(&pDoc->image, k.XPos - k.Width / 2, top, k.Width, high, 0,
                                    k.Rot2, k.Rot3, 0, 0, 0));
    for (int row = 0; row < h; ++row)
        ASSERT_EQ(std::memcmp(pViewer->viewImage.GetBitsAdd(row), expected.GetBitsAdd(row),
                              static_cast<size_t>(w) * 4),
                  0)
            << row;
    Release(Content(pStage), from + QPoint(20, 0));
}

}  // namespace
