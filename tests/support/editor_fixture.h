#pragma once
// The editor on the offscreen platform, for every test of its windows, dialogs and commands:
// the settings in a folder of the test's own, the document and the main window with its
// children, the scripted answers of the message boxes, string box, codec and file dialogs
// cleared before and checked used up after, and the usual ways in: menu commands, keys and clicks
// posted to the main window before a dialog starts reading them, as the user would give them.
//
// A test calls Start (or StartWithDemo) once it has chosen its settings; a test of a piece that
// needs less (the document alone) makes just that in its SetUp after this one's.

#include <gtest/gtest.h>
#include <QAction>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "output/movie.h"
#include "platform/dialog/codec_dialog.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/dialog_rows.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/posted_input.h"
#include "platform/dialog/string_box.h"
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
#include "ui/stage/cstage.h"

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

// The text of row `row` of a dialog's rows (its descriptions or its values).
inline std::string RowText(const char* rows, int row)
{
    char text[kDialogRowSize];
    GetDialogValue(rows, row, text);
    return text;
}

// The settings the editor starts with: `settings` (lines "key=value\r\n") after the line that
// keeps a missing picture from asking; the first line of a key wins. Also sets the frame rate
// from them, as the program's start does.
inline void LoadEditorSettings(const std::string& settings)
{
    std::string text = "[Parallaxotron]\r\nShowPicError=0\r\n" + settings;
    LoadIniText(text.data(), text.size());
    gFrameRate = GetIniItem("FrameRate", 2997);
}

// A document attached to the editor through `link`, and the main window with its children.
inline void MakeEditorWindows(EditorDocLink* link, bool standalone)
{
    pDoc = new CDoc;
    pDoc->standalone = standalone ? 1 : 0;
    pDoc->AttachEditor(link);
    pMain = new CMain(nullptr);
}

// Every window and the document gone again.
inline void TakeEditorDown()
{
    delete pMain;
    pMain = nullptr;
    delete pDoc;
    pDoc = nullptr;
}

class Editor : public testing::Test {
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
        gFrameRate = 2997;
        ClearScripts();
        UseCodec(nullptr);
    }
    void TearDown() override
    {
        // Every answer a test queued was asked for.
        EXPECT_EQ(CountMessageBoxAnswers(), 0);
        EXPECT_EQ(CountFileDialogAnswers(), 0);
        EXPECT_EQ(CountStringBoxAnswers(), 0);
        EXPECT_EQ(CountCodecDialogAnswers(), 0);
        ClearScripts();
        TakeEditorDown();
        CloseEnvironment();
    }
    static void ClearScripts()
    {
        ClearMessageBoxScript();
        ClearFileDialogScript();
        ClearStringBoxScript();
        ClearCodecDialogScript();
    }
    // The settings this run starts with; then the document and the main window, 1280 × 800.
    void Start(const std::string& settings = "", bool standalone = true)
    {
        LoadEditorSettings(settings);
        MakeEditorWindows(&link, standalone);
        pMain->SetWinRect(0, 0, 1280, 800, true);
        ProcessEvents();
    }
    // The editor with the demo show open, unmodified.
    void StartWithDemo(const std::string& settings = "")
    {
        Start(settings);
        ASSERT_TRUE(OpenShow(kDemoShow));
        pDoc->dirty = false;
    }
    // `pictures` pictures of `picture`, `length` frames apart, each with every key it may have,
    // the keys 4 frames apart: key k of picture p at x = 1000 + 100 p + k. Eleven of them make a
    // show file of more than 40,000 bytes.
    static void FillWithEveryKey(int pictures, const std::string& picture, int length)
    {
        pDoc->picCount = pictures;
        for (int pic = 0; pic < pictures; ++pic) {
            pDoc->picSpec[pic] = PathFSpec(picture.c_str());
            pDoc->keys[pic][0].PicStart = static_cast<float>(pic * length);
            pDoc->keyCount[pic] = kMaxKeys;
            for (int key = 1; key < kMaxKeys; ++key) {
                pDoc->keys[pic][key] = pDoc->keys[pic][0];
                pDoc->keys[pic][key].PicStart = 0;
                pDoc->keys[pic][key].Frame = key * 4;
                pDoc->keys[pic][key].XPos = static_cast<float>(1000 + pic * 100 + key);
            }
        }
    }
    // Opens a show as the desktop hands one over.
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

    // A menu command as the menu bar sends it.
    static void Command(int command) { PostAMessage(nullptr, kMsgCommand, command, 0); }
    // Ctrl + `key` as the window layer sends it to the main window.
    static void Ctrl(char key) { PostAMessage(pMain, kMsgShortcut, key, kShortcutMark); }
    // A plain key pressed in the main window.
    static void Key(long key) { PostAMessage(pMain, kMsgKeyDown, key, 0); }

    // A real Esc key press and release on `window`'s content, as the user types it.
    static void TypeEscape(CPWnd* window)
    {
        const QString escape = QStringLiteral("\x1b");
        SendKey(Content(window), QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, escape);
        SendKey(Content(window), QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier, escape);
    }

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

    // A click in the value area of a row of a dialog of these rows at the usual place, on the
    // window the dialogs are drawn over.
    static void ClickRow(int count, const char* descriptions, int row)
    {
        DialogLayout layout = MakeDialogLayout(kDialogX, kDialogY, count, descriptions, false);
        tagRECT area = DialogValueArea(layout, row);
        PostClick(EditorDialogOwner(), (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }
    // Runs `command` (a dialog reading the input posted before); fails the test when the input
    // given did not end it within `limitMs` (then Esc ends it). A command that goes on to a
    // render reading input between frames needs a limit for the whole render: Esc stops that too.
    template <typename Command>
    static void RunAnswered(Command command, int limitMs = 2000)
    {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [] { PostEscape(EditorDialogOwner()); });
        guard.start(limitMs);
        command();
        EXPECT_TRUE(guard.isActive()) << "the dialog did not end on the input it was given";
    }
    // Runs the dialog `command` opens and ends it with Esc once it is up; true when the stage,
    // which covers the main window's content, showed it meanwhile (a dialog drawn on the main
    // window itself is hidden under the stage).
    template <typename Command>
    static bool ShownOverTheStage(Command command)
    {
        QImage before = Content(pStage)->grab().toImage();
        bool shown = false;
        QTimer::singleShot(100, [&before, &shown] {
            shown = Content(pStage)->grab().toImage() != before;
            PostEscape(EditorDialogOwner());
        });
        RunAnswered(command);
        return shown;
    }

    TempDir dir;
    EditorDocLink link;
};

}  // namespace pxtest
