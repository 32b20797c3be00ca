#pragma once
// CMain: the application's frame window. It owns the menu bar, carries the stage, the timeline
// and the viewer, tiles its own background, shows the key information panel and keeps its
// title in step with the open show.
//
// Coordinates:
//   window rectangle   screen pixels (CPWnd); the children are placed from it
//   content            pixels from the content's top-left corner, under the menu bar: the
//                      background tiles and the key panel (bottom-left) are drawn here, and
//                      mouse points arrive in it

#include "doc/key.h"
#include "platform/file/fspec.h"
#include "platform/wnd/button.h"
#include "platform/wnd/cpmenu.h"
#include "platform/wnd/cpwnd.h"
#include "ui/main/key_panel.h"
#include "ui/main/menu_table.h"

class CStage;
class CTime;
class CView;

constexpr long kMainWindowStyle = kStyleBehind;

// The menu variant of this run: the document's standalone and reduced-variant flags and the
// platform's abilities.
MenuVariant CurrentMenuVariant();

class CMain : public CPWnd {
public:
    // Builds the window, its menu bar and its three children. parent is not used: the main
    // window is a top-level window.
    explicit CMain(void* parent);
    // Saves the settings, deletes the stage, the timeline and the viewer in that order and puts
    // back the menu bar that was there before.
    ~CMain() override;

    long HandleEvent(unsigned int msg, long wParam, long lParam) override;
    void OnDraw() override;

    // "Hollerbank Parallaxotron", and " - " and the show's name when path is given.
    void SetShowTitle(const char* path);
    // Enables the Edit items from the document's selection, clipboard and undo ring.
    void SetEditMenuOptions();
    // Draws the key information panel for `key` (the stage's current key).
    void ShowStats(const KeyStruct& key);

    // The option dialogs (ui/dialogs/) and the Flash export (ui/commands/make_flash_file.cpp).
    void ImagePrep();        // "Prep Pictures"
    void SpecialOptions();   // "Advanced Options"
    void SetViewerAspect();  // "Set Viewer Aspect ratio"
    // Asks the export's options and file and writes the Flash movie; true when a file was made.
    bool MakeFlashFile();

    CPMenu Menu;
    CPButton button{122, 121, 0, 0};
    MenuVariant variant;

private:
    // Messages 1017 and 1019: Ctrl combinations become commands, plain keys play and navigate.
    long Key(unsigned int msg, long key, long lParam);
    // Message 1020: one menu command (or the command a shortcut stands for). 1 when handled.
    long Command(int command);
    // The quit path of the close box, the window manager, Exit and Ctrl+Q: ends the message
    // loop with `code`.
    void Quit(long code);
    // The key panel's plus and minus marks: to the next or previous key of the picture.
    void StepToKey(PanelStep step);

    CStage* stage = nullptr;
    CTime* timeline = nullptr;
    CView* viewer = nullptr;
    PanelStep pressedStep = PanelStep::kNone;
};

// Opens a show file handed over by the desktop or named on the command line: the whole file is
// read; a file that cannot be read, or that is not a show, leaves the current show as it was and
// answers false. flag: go to the show's start afterwards.
bool OpenDocumentFile(FSpec* file, bool flag);

// Diagnostic aid: shows the three numbers as the viewer's title.
void dbg(long a, long b, long c);
