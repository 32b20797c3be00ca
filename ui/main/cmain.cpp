#include "ui/main/cmain.h"

#include <cstdio>
#include <cstring>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "image/picture_import.h"
#include "platform/base/env.h"
#include "platform/dialog/message_box.h"
#include "platform/draw/bitmap_draw.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/util/text.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/commands/key_commands.h"
#include "ui/commands/key_map.h"
#include "ui/commands/make_flash_file.h"
#include "ui/commands/make_movie_file.h"
#include "ui/commands/picture_commands.h"
#include "ui/commands/recent_shows.h"
#include "ui/commands/show_commands.h"
#include "ui/commands/still_image.h"
#include "ui/commands/view_commands.h"
#include "ui/dialogs/advanced_options.h"
#include "ui/dialogs/prep_pictures.h"
#include "ui/dialogs/viewer_aspect.h"
#include "ui/editor_windows.h"
#include "ui/main/edit_menu.h"
#include "ui/main/editor_pictures.h"
#include "ui/main/show_title.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

constexpr int kStartWidth = 640;
constexpr int kStartHeight = 480;

int EnabledFlag(bool enabled) { return enabled ? 0 : kMenuItemDisabled; }

// A key code the window layer sends for a key it has no character for.
constexpr long kIgnoredKey = 1024;
constexpr const char* kAboutText = "Hollerbank Parallaxotron\nversion 5.1";

}  // namespace

MenuVariant CurrentMenuVariant()
{
    MenuVariant variant;
    variant.standalone = pDoc ? pDoc->standalone != 0 : true;
    variant.slatewhirl = pDoc ? pDoc->slatewhirl : false;
    variant.getImageFromTimeline = gGetImageFromTimeline;
    variant.canMultiProcess = gCanMultiProcess;
    variant.hasHelpFile = gWin32;
    return variant;
}

CMain::CMain(void* /*parent*/) : variant(CurrentMenuVariant())
{
    RegisterEditorPictures();
    Create(nullptr, kMainWindowStyle);
    SetWinRect(0, 0, kStartWidth, kStartHeight, false);
    SetShowTitle(nullptr);

    Menu.Create(this);
    for (const MenuLine& line : MainMenuLines(variant)) {
        if (line.command == kMenuTitle)
            Menu.AddTopLevel(line.text, line.flags);
        else
            Menu.AddItem(line.command, line.text ? line.text : "", line.flags);
    }
    ShowRecentShowsIn(Menu);

    Show(2);
    gMainWindowPtr = this;

    stage = new CStage(this);
    timeline = new CTime(this);
    viewer = new CView(this);
}

CMain::~CMain()
{
    SaveIniFile();
    delete stage;
    delete timeline;
    delete viewer;
    Menu.RestoreOriginalMenu();
    gMainWindowPtr = nullptr;
}

void CMain::SetShowTitle(const char* path)
{
    char title[kTitleSize];
    MakeShowTitle(path, variant.slatewhirl ? gEnv.name : nullptr, title);
    SetTitle(title);
}

void CMain::SetEditMenuOptions()
{
    if (!pDoc)
        return;
    EditMenuState state = EditMenuStateFor(pDoc->GetKeySelection(), pDoc->clipboard.HoldsKey(),
                                           pDoc->undoCount, pDoc->redoCount);
    Menu.SetState(kCmdCut, EnabledFlag(state.cut));
    Menu.SetState(kCmdCopy, EnabledFlag(state.copy));
    Menu.SetState(kCmdPaste, EnabledFlag(state.paste));
    Menu.SetState(kCmdDelete, EnabledFlag(state.del));
    Menu.SetState(kCmdUndo, EnabledFlag(state.undo));
    Menu.SetState(kCmdRedo, EnabledFlag(state.redo));
}

void CMain::OnDraw()
{
    tagRECT client;
    GetClientRect(client);
    if (client.right <= client.left || client.bottom <= client.top)
        return;
    // Row by row from the top-left corner; the last row and column may be cut by the edges.
    for (int y = client.top; y < client.bottom; y += kBackgroundTileSize) {
        for (int x = client.left; x < client.right; x += kBackgroundTileSize)
            DrawBitmap({x, y, x + kBackgroundTileSize, y + kBackgroundTileSize}, kBackgroundTile);
    }
    KeyStruct key{};
    if (pStage)
        key = pStage->currentKey;
    else if (pDoc)
        key = pDoc->currentCamera;
    ShowStats(key);
}

void CMain::ShowStats(const KeyStruct& key)
{
    tagRECT client;
    GetClientRect(client);
    if (client.right <= client.left || client.bottom <= client.top || !GetDC(this))
        return;
    PanelSummary summary = pDoc ? SummaryOf(*pDoc) : PanelSummary{};
    DrawKeyPanel(client, key, pStage ? pStage->scale : 1.0f, summary, variant.standalone);
    if (!variant.standalone) {
        int top = client.bottom - kPanelTopFromBottom;
        button.SetPos({client.left + 57, top + 15, client.left + 75, top + 33});
    }
}

long CMain::Key(unsigned int msg, long key, long lParam)
{
    if (key == kIgnoredKey)
        return 0;
    if (ConvertControlKey(key, lParam)) {
        int command = ShortcutCommand(key, msg);
        KeyBoardFlush();
        switch (command) {
        case kShortcutNone:
            return 0;
        case kShortcutQuickSave:
            QuickSaveCommand();
            return 1;
        case kShortcutClose:
            return HandleEvent(kMsgClose, 0, 0);
        default:
            return Command(command);
        }
    }
    bool handled = PlainKeyCommand(key, msg);
    KeyBoardFlush();
    return handled ? 1 : 0;
}

// One line a command: the menus' items and the shortcuts that stand for them. Each command finds
// the picture at the current frame itself.
long CMain::Command(int command)
{
    // clang-format off
    switch (command) {
    case 1010: LoadPictureCommand(false); break;
    case 1011: LoadPictureCommand(true); break;
    case 2005: NewShowCommand(); break;
    case 2004: LoadShowCommand(); break;
    case 2003: SaveShowCommand(); break;
    case 1037: MakeStillImageCommand(); break;
    case 1013: MakeMovieFile(false); break;
    case 1014: MakeMovieFile(true); break;
    case kMakeFlashFileCommand: MakeFlashFile(); break;
    case kPrepPicturesCommand: ImagePrep(); break;
    case kAdvancedOptionsCommand: SpecialOptions(); break;
    case kViewerAspectCommand: SetViewerAspect(); break;
    case 1015: case 1016: case 1017: ChooseFrameRate(command); break;
    case kCmdExit: return HandleEvent(kMsgClose, 0, 0);
    case kCmdQuitNoApply: Quit(1); break;
    case kCmdUndo: UndoCommand(); break;
    case kCmdRedo: RedoCommand(); break;
    case kCmdCopy: CopyKeyCommand(); break;
    case kCmdCut: CutKeyCommand(); break;
    case kCmdDelete: DeleteKeyCommand(); break;
    case kCmdPaste: PasteKeyCommand(); break;
    case 1023: DeletePictureCommand(); break;
    case 1024: DeleteAllKeysCommand(); break;
    case 1022: UniformSpeedCommand(); break;
    case 1000: ToggleCameraPath(); break;
    case 1002: ToggleAutoRescale(); break;
    case 1003: case 1004: case 1005: case 1006: ChooseEase(command); break;
    case 1007: ToggleNoCurves(); break;
    case 1030: case 1031: case 1032: ChooseAspect(command); break;
    case 1033: ToggleDraft(); break;
    case 1034: ToggleMultiprocessor(); break;
    case 1035: ToggleMotionBlur(); break;
    case 1040: ToggleTvSafe(); break;
    case 1041: ToggleCentrePicture(); break;
    case 1042: ZoomStage(true); break;
    case 1043: ZoomStage(false); break;
    case 1044: ScaleTimeline(true); break;
    case 1045: ScaleTimeline(false); break;
    case 1026: ErrorBox(kAboutText, kNoErrorNumber); break;
    default:
        if (command < kCmdFirstRecentShow || command >= kCmdFirstRecentShow + kRecentShowCount)
            return 0;
        OpenRecentShowCommand(command);
        break;
    }
    // clang-format on
    return 1;
}

void CMain::Quit(long code)
{
    PostAMessage(this, kMsgEndLoop, code, 0);
    PostAMessage(this, kMsgCloseWindow, code, 0);
}

void CMain::StepToKey(PanelStep step)
{
    if (!pDoc)
        return;
    long frame = NeighbourKeyFrame(*pDoc, gCurFrame, step);
    if (frame < 0) {
        Sound(0);
        return;
    }
    pDoc->GotoFrame(frame, true);
    SetEditMenuOptions();
    Redraw();
}

long CMain::HandleEvent(unsigned int msg, long wParam, long lParam)
{
    switch (msg) {
    case kMsgResized:
    case kMsgMoved:
        if (pStage)
            PostAMessage(pStage, msg, wParam, lParam);
        if (pTime)
            PostAMessage(pTime, msg, wParam, lParam);
        return 0;
    case kMsgPaint:
        OnDraw();
        return 1;
    case kMsgClose:
        if (MayCloseShow())
            Quit(0);
        return 1;
    case kMsgCloseWindow:
        return 1;
    case kMsgButtonDown: {
        int x = PointParamX(lParam);
        int y = PointParamY(lParam);
        tagRECT client;
        GetClientRect(client);
        GetDC(this);
        // The push button is placed and shown only in the hosted variant; the plus and minus
        // marks only in the standalone one.
        if (variant.standalone)
            pressedStep = PanelStepAt(client, x, y);
        else
            button.Check(x, y, kButtonPressed);
        return 1;
    }
    case kMsgButtonUp: {
        int x = PointParamX(lParam);
        int y = PointParamY(lParam);
        tagRECT client;
        GetClientRect(client);
        GetDC(this);
        bool onButton = button.GetState() == kButtonPressed && button.Check(x, y, kButtonNormal);
        if (button.GetState() == kButtonPressed)
            button.SetState(kButtonNormal);
        PanelStep step = pressedStep;
        pressedStep = PanelStep::kNone;
        // Our choice for the panel's marks: plus goes to the next key of the picture, minus to
        // the previous one, when the button comes up on the mark it went down on.
        if (step != PanelStep::kNone && PanelStepAt(client, x, y) == step)
            StepToKey(step);
        // The push button shows only in the hosted variant, where it hands the moves back.
        if (onButton && !variant.standalone)
            Quit(0);
        return 1;
    }
    case kMsgMouseMoved:
        ChangeCursor(1);
        return 1;
    case kMsgShortcut:
    case kMsgKeyDown:
        return Key(msg, wParam, lParam);
    case kMsgCommand:
        return Command(static_cast<int>(wParam));
    default:
        return CPWnd::HandleEvent(msg, wParam, lParam);
    }
}

namespace {

// Without an "AltImageFolder" setting, pictures that are not where the show says are looked for
// beside the show, so a show travels with its pictures.
void LookForPicturesBeside(const FSpec& show)
{
    char setting[kTextSetting] = {};
    GetIniString("AltImageFolder", "", setting, kTextSetting - 1);
    if (setting[0] != 0)
        return;
    char folder[kMaxPathLength + 1] = {};
    if (!GetFSpecPath(&show, folder))
        return;
    StripFileName(folder);
    std::strncpy(pDoc->altImageFolder, folder, kTextSetting - 1);
    pDoc->altImageFolder[kTextSetting - 1] = 0;
}

}  // namespace

bool OpenDocumentFile(FSpec* file, bool flag)
{
    if (!file || !pDoc)
        return false;
    char keptFolder[kTextSetting];
    std::memcpy(keptFolder, pDoc->altImageFolder, sizeof keptFolder);
    LookForPicturesBeside(*file);
    if (pDoc->OpenShowFile(file, flag) != ShowFileResult::kOpened) {
        std::memcpy(pDoc->altImageFolder, keptFolder, sizeof keptFolder);
        return false;
    }
    pDoc->showFile.Set(*file);
    if (pMain) {
        pMain->SetShowTitle(pDoc->showFile.path);
        pMain->SetEditMenuOptions();
    }
    RedrawEditorWindows();
    return true;
}

void dbg(long a, long b, long c)
{
    char text[96];
    std::snprintf(text, sizeof text, "%ld %ld %ld", a, b, c);
    if (pViewer)
        pViewer->SetTitle(text);
}
