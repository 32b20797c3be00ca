#pragma once
// The editor on the offscreen platform for the tests of its dialogs and commands: a document on
// a settings store of the test's own lines, the main window with its children, and input posted
// to the main window before a dialog starts reading it, as the user would click and type.

#include <gtest/gtest.h>
#include <QTimer>
#include <cstdlib>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/posted_input.h"
#include "platform/dialog/string_box.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "support/temp_dir.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"

class EditorFixture : public testing::Test {
protected:
    // Where the main window's dialogs open.
    static constexpr int kDialogX = 50;
    static constexpr int kDialogY = 50;

    void SetUp() override
    {
        setenv("XDG_CONFIG_HOME", dir.Path().c_str(), 1);
        InitEnvironment(nullptr, "Parallaxotron", 101);
        gCurFrame = 0;
        gMacDone = 0;
        ClearScripts();
    }
    void TearDown() override
    {
        delete pMain;
        pMain = nullptr;
        delete pDoc;
        pDoc = nullptr;
        ClearScripts();
        CloseEnvironment();
    }
    static void ClearScripts()
    {
        ClearMessageBoxScript();
        ClearFileDialogScript();
        ClearStringBoxScript();
    }
    // The settings this run starts with (lines "key=value\r\n"); then the document and the main
    // window.
    void Start(const std::string& settings = "")
    {
        std::string text = "[Parallaxotron]\r\nShowPicError=0\r\n" + settings;
        LoadIniText(text.data(), text.size());
        pDoc = new CDoc;
        pDoc->standalone = 1;
        pDoc->AttachEditor(&link);
        pMain = new CMain(nullptr);
        pMain->SetWinRect(0, 0, 1280, 800, true);
        ProcessEvents();
    }
    // Opens a show as the desktop hands one over (the demo show: PX_SOURCE_DIR of the test).
    static bool OpenShow(const std::string& path)
    {
        FSpec spec = PathFSpec(path.c_str());
        bool opened = OpenDocumentFile(&spec, true);
        ProcessEvents();
        return opened;
    }
    static std::string Setting(const char* key)
    {
        char value[300] = {};
        GetIniString(key, "?", value, sizeof value - 1);
        return value;
    }
    // A click in the value area of a row of a dialog of these rows at the usual place.
    static void ClickRow(int count, const char* descriptions, int row)
    {
        DialogLayout layout = MakeDialogLayout(kDialogX, kDialogY, count, descriptions, false);
        tagRECT area = DialogValueArea(layout, row);
        PostClick(pMain, (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }
    // Runs `command` (a dialog reading the input posted before); fails the test when the input
    // given did not end it within two seconds.
    template <typename Command>
    static void RunAnswered(Command command)
    {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [] { PostEscape(pMain); });
        guard.start(2000);
        command();
        EXPECT_TRUE(guard.isActive()) << "the dialog did not end on the input it was given";
    }

    pxtest::TempDir dir;
    EditorDocLink link;
};
