// The main window on the offscreen platform: its menu bar, title, Edit states, opening a show,
// the quit path, the key panel's marks and its children.

#include "ui/main/cmain.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/draw/draw_port.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/window_list.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"
#include "ui/main/doc_link.h"
#include "ui/main/editor_pictures.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

using pxtest::kDemoShow;
const std::string kDemoPicture = pxtest::kLake;

class MainWindow : public pxtest::Editor {
protected:
    static int ListIndex(const CPWnd* window)
    {
        for (int i = 0; i < gWindowList.count; ++i) {
            if (gWindowList.windows[i] == window)
                return i;
        }
        return -1;
    }
    static void Click(int x, int y)
    {
        PostAMessage(pMain, kMsgButtonDown, 0, MakePointParam(x, y));
        PostAMessage(pMain, kMsgButtonUp, 0, MakePointParam(x, y));
    }
};

TEST_F(MainWindow, MakesItsChildrenInOrderAndSetsTheGlobals)
{
    Start();
    ASSERT_NE(pStage, nullptr);
    ASSERT_NE(pTime, nullptr);
    ASSERT_NE(pViewer, nullptr);
    EXPECT_EQ(gMainWindowPtr, pMain);
    int main = ListIndex(pMain);
    int stage = ListIndex(pStage);
    int time = ListIndex(pTime);
    int viewer = ListIndex(pViewer);
    EXPECT_GE(main, 0);
    EXPECT_LT(main, stage);
    EXPECT_LT(stage, time);
    EXPECT_LT(time, viewer);
    EXPECT_EQ(pStage->GetParent(), pMain);
    EXPECT_EQ(pTime->GetParent(), pMain);
    EXPECT_EQ(pViewer->GetParent(), pMain);
    char viewerTitle[64];
    pViewer->GetTitle(viewerTitle, sizeof viewerTitle);
    EXPECT_STREQ(viewerTitle, "Viewer");
    // The stage covers the main window's content: the dialogs are drawn over it.
    EXPECT_EQ(EditorDialogOwner(), static_cast<CPWnd*>(pStage));
}

TEST_F(MainWindow, MenuBarHoldsTheFullTable)
{
    Start();
    EXPECT_EQ(pMain->Menu.GetMenuCount(), 6);
    EXPECT_EQ(pMain->Menu.GetItemCount(0), 16);  // File, with "Recent Shows"
    EXPECT_EQ(pMain->Menu.GetItemCount(1), 12);  // Edit
    EXPECT_EQ(pMain->Menu.GetID(0, 0), 1010);
    EXPECT_EQ(pMain->Menu.GetID(0, 15), 2001);
    EXPECT_EQ(pMain->Menu.GetID(5, 0), 1026);
    EXPECT_FALSE(Enabled(9004));
    EXPECT_TRUE(Enabled(1010));
}

TEST_F(MainWindow, WithoutFrameRateSettingNtscIsChecked)
{
    Start();
    EXPECT_TRUE(Checked(1015));
    EXPECT_FALSE(Checked(1016));
    EXPECT_FALSE(Checked(1017));
}

TEST_F(MainWindow, StoredRateOf3000ChecksNone)
{
    Start("FrameRate=3000\r\n");
    EXPECT_FALSE(Checked(1015));
    EXPECT_FALSE(Checked(1016));
    EXPECT_FALSE(Checked(1017));
}

TEST_F(MainWindow, EaseType19ChecksNoSlowsAndNoCurves)
{
    Start("EaseType=19\r\n");
    EXPECT_TRUE(Checked(1006));
    EXPECT_TRUE(Checked(1007));
    EXPECT_FALSE(Checked(1003));
}

TEST_F(MainWindow, EaseType16ChecksSlowInAndOutAndNoCurves)
{
    Start("EaseType=16\r\n");
    EXPECT_TRUE(Checked(1003));
    EXPECT_TRUE(Checked(1007));
    EXPECT_FALSE(Checked(1006));
}

TEST_F(MainWindow, WithoutMultiprocessorsNoMultipleProcessorsItemAndOtherCommandsStay)
{
    gCanMultiProcess = false;
    Start();
    int menu = 0;
    int item = 0;
    EXPECT_FALSE(Locate(1034, &menu, &item));
    ASSERT_TRUE(Locate(1035, &menu, &item));
    EXPECT_EQ(pMain->Menu.GetID(menu, item + 1), kMenuSeparator);
    EXPECT_EQ(pMain->Menu.GetID(menu, item + 2), 1036);
    EXPECT_TRUE(Locate(1041, &menu, &item));
}

TEST_F(MainWindow, WithMultiprocessorsTheItemFollowsItsSetting)
{
    gCanMultiProcess = true;
    Start("MultiProcess=1\r\n");
    EXPECT_TRUE(Checked(1034));
}

TEST_F(MainWindow, HostedFileMenuAppliesOrQuits)
{
    Start("", false);
    EXPECT_EQ(pMain->Menu.GetItemCount(0), 9);
    EXPECT_EQ(pMain->Menu.GetID(0, 7), 2001);
    EXPECT_EQ(pMain->Menu.GetID(0, 8), 2002);
}

TEST_F(MainWindow, TitleIsTheProductUntilAShowIsOpened)
{
    Start();
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron");
    pMain->SetShowTitle("/shows/My Trip.plx");
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - My Trip");
}

TEST_F(MainWindow, SelectionZeroEnablesCopyOnly)
{
    Start();
    pDoc->picCount = 1;
    pDoc->keyCount[0] = 2;
    pDoc->keys[0][1].Frame = 30;
    gCurFrame = 0;
    pMain->SetEditMenuOptions();
    EXPECT_TRUE(Enabled(9000));
    EXPECT_FALSE(Enabled(9001));
    EXPECT_FALSE(Enabled(9003));
    EXPECT_FALSE(Enabled(9002));

    gCurFrame = 30;
    pMain->SetEditMenuOptions();
    EXPECT_TRUE(Enabled(9000));
    EXPECT_TRUE(Enabled(9001));
    EXPECT_TRUE(Enabled(9003));
}

TEST_F(MainWindow, NoSelectionEnablesNoneOfCutCopyDelete)
{
    Start();
    pDoc->picCount = 1;
    pDoc->keyCount[0] = 2;
    pDoc->keys[0][1].Frame = 30;
    gCurFrame = 15;
    ASSERT_EQ(pDoc->GetKeySelection(), -1);
    pMain->SetEditMenuOptions();
    EXPECT_FALSE(Enabled(9000));
    EXPECT_FALSE(Enabled(9001));
    EXPECT_FALSE(Enabled(9003));
}

TEST_F(MainWindow, PasteUndoAndRedoFollowClipboardAndRing)
{
    Start();
    pDoc->clipboard.Put(KeyStruct{});
    pDoc->undoCount = 1;
    pMain->SetEditMenuOptions();
    EXPECT_TRUE(Enabled(9002));
    EXPECT_TRUE(Enabled(9004));
    EXPECT_FALSE(Enabled(9005));
    pDoc->clipboard.marker = kClipboardEmpty;
    pDoc->undoCount = 0;
    pDoc->redoCount = 2;
    pMain->SetEditMenuOptions();
    EXPECT_FALSE(Enabled(9002));
    EXPECT_FALSE(Enabled(9004));
    EXPECT_TRUE(Enabled(9005));
}

TEST_F(MainWindow, OpeningTheDemoShowSetsTitleShowFileAndStageKey)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - demo");
    EXPECT_STREQ(pDoc->showFile.path, kDemoShow.c_str());
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_EQ(pDoc->pictureFailures, 0);  // found beside the show
    KeyStruct first;
    pDoc->GetKey(0, first, 0);
    EXPECT_EQ(pStage->currentKey.XPos, first.XPos);
    EXPECT_EQ(pStage->currentKey.Width, first.Width);
}

TEST_F(MainWindow, FileThatIsNotAShowLeavesTheShowAsItWas)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    std::string junk = dir.File("notes.plx");
    ASSERT_TRUE(pxtest::WriteText(junk, "these are not the keys of a show at all"));
    EXPECT_FALSE(OpenShow(junk));
    EXPECT_FALSE(OpenShow(dir.File("missing.plx")));
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - demo");
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_STREQ(pDoc->showFile.path, kDemoShow.c_str());
}

TEST_F(MainWindow, ShowOf40000BytesLoadsCompletely)
{
    Start();
    // Eleven pictures of 64 keys each: past 40,000 bytes, the last keys far beyond 32,765.
    constexpr int kPictures = 11;
    FillWithEveryKey(kPictures, kDemoPicture, 100);
    std::string path = dir.File("long.plx");
    FSpec spec = PathFSpec(path.c_str());
    ASSERT_TRUE(pDoc->WriteShowFile(&spec));
    ASSERT_GE(std::filesystem::file_size(path), 40000u);

    pDoc->ClearShow();
    ASSERT_TRUE(OpenShow(path));
    EXPECT_EQ(pDoc->picCount, kPictures);
    EXPECT_EQ(pDoc->GetKeyCount(kPictures - 1), kMaxKeys);
    KeyStruct last;
    pDoc->GetKey(kMaxKeys - 1, last, kPictures - 1);
    EXPECT_EQ(last.XPos, 1000.0f + (kPictures - 1) * 100 + kMaxKeys - 1);
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - long");
}

TEST_F(MainWindow, CloseRequestEndsTheLoopWithCodeZero)
{
    Start();
    PostAMessage(pMain, kMsgClose, 0, 0);
    EXPECT_EQ(gMacDone, 1);
}

TEST_F(MainWindow, ExitCommandTakesTheClosePath)
{
    Start();
    PostAMessage(nullptr, kMsgCommand, 2001, 0);
    EXPECT_EQ(gMacDone, 1);
    gMacDone = 0;
    PostAMessage(pMain, kMsgShortcut, 'q', kShortcutMark);
    EXPECT_EQ(gMacDone, 1);
}

TEST_F(MainWindow, QuitWithoutApplyingEndsWithCodeOne)
{
    Start("", false);
    PostAMessage(nullptr, kMsgCommand, 2002, 0);
    EXPECT_EQ(gMacDone, 2);
}

TEST_F(MainWindow, PlusMarkGoesToTheNextKeyAndMinusBack)
{
    Start();
    pDoc->picCount = 1;
    pDoc->keyCount[0] = 3;
    pDoc->keys[0][1].Frame = 30;
    pDoc->keys[0][2].Frame = 90;
    gCurFrame = 0;
    tagRECT client;
    pMain->GetClientRect(client);
    int t = client.bottom - kPanelTopFromBottom;
    Click(client.left + 106, t + 65);
    EXPECT_EQ(gCurFrame, 30);
    Click(client.left + 106, t + 65);
    EXPECT_EQ(gCurFrame, 90);
    Click(client.left + 106, t + 65);  // no key after the last: stays
    EXPECT_EQ(gCurFrame, 90);
    Click(client.left + 96, t + 65);
    EXPECT_EQ(gCurFrame, 30);
    // Pressed on the mark, let go elsewhere: nothing.
    PostAMessage(pMain, kMsgButtonDown, 0, MakePointParam(client.left + 96, t + 65));
    PostAMessage(pMain, kMsgButtonUp, 0, MakePointParam(client.left + 300, t + 65));
    EXPECT_EQ(gCurFrame, 30);
}

TEST_F(MainWindow, PaintsTheTileAndThePanel)
{
    Start();
    pMain->Redraw();
    ASSERT_NE(GetDC(pMain), nullptr);
    pMain->OnDraw();
    DrawPort* port = pMain->GetPort();
    tagRECT client;
    pMain->GetClientRect(client);
    auto rgb = [](long colour) {
        return 0xFF000000u | ((colour & 0xFF) << 16) | (colour & 0xFF00) | ((colour >> 16) & 0xFF);
    };
    EXPECT_EQ(port->PixelAt(0, 0), rgb(kTileLine));
    EXPECT_EQ(port->PixelAt(1, 0), rgb(kTileGround));
    EXPECT_EQ(port->PixelAt(client.right - 1, 5),
              rgb((client.right - 1) % 4 == 0 ? kTileLine : kTileGround));
    // The stage starts at half size: the "50%" mark is filled, the "100%" mark is not.
    tagRECT full = ZoomMarkRect(client, 0);
    tagRECT half = ZoomMarkRect(client, 1);
    EXPECT_EQ(port->PixelAt(half.left + 5, half.top + 5), 0xFF000000u);
    EXPECT_NE(port->PixelAt(full.left + 5, full.top + 5), 0xFF000000u);
    // The plus mark's grey triangle.
    int t = client.bottom - kPanelTopFromBottom;
    EXPECT_EQ(port->PixelAt(client.left + 104, t + 63), 0xFF808080u);
}

TEST_F(MainWindow, HostedPanelPlacesThePushButton)
{
    Start("", false);
    GetDC(pMain);
    pMain->OnDraw();
    tagRECT client;
    pMain->GetClientRect(client);
    int t = client.bottom - kPanelTopFromBottom;
    const tagRECT& r = pMain->button.GetRect();
    EXPECT_EQ(r.left, client.left + 57);
    EXPECT_EQ(r.top, t + 15);
    EXPECT_EQ(r.right, client.left + 75);
    EXPECT_EQ(r.bottom, t + 33);
}

TEST_F(MainWindow, HostedPushButtonHandsTheMovesBackAndCloses)
{
    Start("", false);
    GetDC(pMain);
    pMain->OnDraw();
    const tagRECT r = pMain->button.GetRect();
    PostAMessage(pMain, kMsgButtonDown, 0, MakePointParam(r.left + 5, r.top + 5));
    EXPECT_EQ(pMain->button.GetState(), kButtonPressed);
    EXPECT_EQ(gMacDone, 0);
    PostAMessage(pMain, kMsgButtonUp, 0, MakePointParam(r.left + 5, r.top + 5));
    EXPECT_EQ(pMain->button.GetState(), kButtonNormal);
    EXPECT_EQ(gMacDone, 1);
}

TEST_F(MainWindow, StandaloneIgnoresClicksOutsideThePanelMarks)
{
    Start();
    Click(0, 0);
    Click(5, 5);
    EXPECT_EQ(gMacDone, 0);
    EXPECT_EQ(gCurFrame, 0);
}

TEST_F(MainWindow, DbgShowsThreeNumbersAsTheViewerTitle)
{
    Start();
    dbg(1, -2, 300000);
    char title[64];
    pViewer->GetTitle(title, sizeof title);
    EXPECT_STREQ(title, "1 -2 300000");
}

TEST_F(MainWindow, DeletingSavesOnceDeletesChildrenAndClearsPointers)
{
    Start();
    long saves = GetIniSaveCount();
    CPWnd* stage = pStage;
    delete pMain;
    pMain = nullptr;
    EXPECT_EQ(GetIniSaveCount(), saves + 1);
    EXPECT_EQ(pStage, nullptr);
    EXPECT_EQ(pTime, nullptr);
    EXPECT_EQ(pViewer, nullptr);
    EXPECT_EQ(gMainWindowPtr, nullptr);
    EXPECT_FALSE(IsWindowListed(stage));
    EXPECT_EQ(gWindowList.count, 0);
}

}  // namespace
