#pragma once
// The editor on the offscreen platform for the command tests: a document, the main window with
// its children, the settings in a folder of the test's own, and the scripted answers of the
// message boxes and file dialogs cleared before and checked used up after.

#include <gtest/gtest.h>
#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/message_box.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/wnd_test_support.h"
#include "support/temp_dir.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"

namespace pxtest {

// The demo show's folder, found from the test data folder CTest names (PX_TEST_DATA).
inline std::string DemoFile(const std::string& name)
{
    const char* data = std::getenv("PX_TEST_DATA");
    std::filesystem::path path(std::string(data ? data : "tests/data") + "/../../resources/demo/");
    return (path / name).lexically_normal().string();
}
inline const std::string kDemoShow = DemoFile("demo.plx");
inline const std::string kLake = DemoFile("lake.png");
inline const std::string kCity = DemoFile("city.png");
inline const std::string kMeadow = DemoFile("meadow.png");

class Editor : public testing::Test {
protected:
    void SetUp() override
    {
        setenv("XDG_CONFIG_HOME", dir.Path().c_str(), 1);
        InitEnvironment(nullptr, "Parallaxotron", 101);
        gCurFrame = 0;
        gMacDone = 0;
        gFrameRate = 2997;
        ClearMessageBoxScript();
        ClearFileDialogScript();
    }
    void TearDown() override
    {
        // Every answer a test queued was asked for.
        EXPECT_EQ(CountMessageBoxAnswers(), 0);
        EXPECT_EQ(CountFileDialogAnswers(), 0);
        ClearMessageBoxScript();
        ClearFileDialogScript();
        delete pMain;
        pMain = nullptr;
        delete pDoc;
        pDoc = nullptr;
        CloseEnvironment();
    }
    // The settings this run starts with; then the document and the main window.
    void Start(const std::string& settings = "", bool standalone = true)
    {
        std::string text = "[Parallaxotron]\r\nShowPicError=0\r\n" + settings;
        LoadIniText(text.data(), text.size());
        gFrameRate = GetIniItem("FrameRate", 2997);
        pDoc = new CDoc;
        pDoc->standalone = standalone ? 1 : 0;
        pDoc->AttachEditor(&link);
        pMain = new CMain(nullptr);
        pMain->SetWinRect(0, 0, 1280, 800, true);
        ProcessEvents();
    }
    // The editor with the demo show open, unmodified.
    void StartWithDemo(const std::string& settings = "")
    {
        Start(settings);
        FSpec spec = PathFSpec(kDemoShow.c_str());
        ASSERT_TRUE(OpenDocumentFile(&spec, true));
        pDoc->dirty = false;
    }

    // A menu command as the menu bar sends it.
    static void Command(int command) { PostAMessage(nullptr, kMsgCommand, command, 0); }
    // Ctrl + `key` as the window layer sends it to the main window.
    static void Ctrl(char key) { PostAMessage(pMain, kMsgShortcut, key, kShortcutMark); }
    // A plain key pressed in the main window.
    static void Key(long key) { PostAMessage(pMain, kMsgKeyDown, key, 0); }

    // Where a command sits in the menu bar; false when it is in none.
    static bool Locate(int command, int* menu, int* item)
    {
        for (int m = 0; m < pMain->Menu.GetMenuCount(); ++m) {
            for (int i = 0; i < pMain->Menu.GetItemCount(m); ++i) {
                if (pMain->Menu.GetID(m, i) == command) {
                    *menu = m;
                    *item = i;
                    return true;
                }
            }
        }
        return false;
    }
    static bool Checked(int command)
    {
        int menu = 0;
        int item = 0;
        return Locate(command, &menu, &item) && pMain->Menu.IsItemChecked(menu, item);
    }
    static bool Enabled(int command)
    {
        int menu = 0;
        int item = 0;
        return Locate(command, &menu, &item) && pMain->Menu.IsItemEnabled(menu, item);
    }
    // Chooses the item of `command` in the menu bar, as a click on it does, and lets the
    // command arrive. False when the item is not there.
    static bool Choose(int command)
    {
        int menu = 0;
        int item = 0;
        if (!Locate(command, &menu, &item))
            return false;
        QMenu* list = pMain->Menu.GetMenuBar()->actions().at(menu)->menu();
        list->actions().at(item)->trigger();
        ProcessEvents();
        return true;
    }
    static std::string Title()
    {
        char title[600];
        pMain->GetTitle(title, sizeof title);
        return title;
    }
    // The key of the current picture at the current frame, or false.
    static bool KeyHere(KeyStruct* key)
    {
        int index = pDoc->FindKey(gCurFrame);
        if (index < 0)
            return false;
        pDoc->GetKey(index, *key, pDoc->FindCurPic(gCurFrame));
        return true;
    }
    // The message boxes since the last call: their texts, in order.
    static std::vector<std::string> BoxTexts()
    {
        std::vector<std::string> texts;
        for (const ShownMessageBox& box : TakeShownMessageBoxes())
            texts.push_back(box.title + ": " + box.text);
        return texts;
    }

    TempDir dir;
    EditorDocLink link;
};

}  // namespace pxtest
