// The editor's dialogs and the movie render's progress panel in a real window on an X display
// (run under xvfb-run by CTest, one test a window): opens the demo show in the editor, brings up
// the window named on the command line, takes a picture of the screen while it is up and compares
// it with the kept reference picture. A dialog is then ended with a real Esc key press (QTest) on
// the window it reads, and must answer Cancel and leave the show unchanged.
//
//   px_dialog_window_check window show.plx reference.png screenshot.png
//
// window: movie_options, render_progress, prep_pictures, advanced_options, viewer_aspect,
// flash_options.

#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <cstring>
#include <functional>

#include "doc/cdoc.h"
#include "platform/wnd/window_widgets_qt.h"
#include "support/window_check.h"
#include "ui/commands/make_movie_file.h"
#include "ui/commands/render_progress_window.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"

namespace {

using namespace pxtest;

constexpr const char* kProgram = "px_dialog_window_check";
// How long a window is given to show and paint before its picture is taken.
constexpr int kSettleMs = 800;

QImage GrabScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

// A dialog: the command that runs it (until it is answered) and the window whose input it reads.
struct DialogWindow {
    const char* name;
    std::function<void()> run;
    std::function<CPWnd*()> reader;
};

CPWnd* MainWindow() { return pMain; }
CPWnd* Stage() { return pStage; }

const DialogWindow kDialogs[] = {
    {"movie_options", [] { MakeMovieFile(false); }, Stage},
    {"prep_pictures", [] { pMain->ImagePrep(); }, MainWindow},
    {"advanced_options", [] { pMain->SpecialOptions(); }, MainWindow},
    {"viewer_aspect", [] { pMain->SetViewerAspect(); }, MainWindow},
    {"flash_options", [] { pMain->MakeFlashFile(); }, MainWindow},
};

const DialogWindow* gDialog = nullptr;
bool gProgressPanel = false;

// The dialog up, pictured, then ended with Esc typed on its window.
bool ShotOfDialog(const DialogWindow& dialog, QImage* shot)
{
    bool taken = false;
    QTimer::singleShot(kSettleMs, [&] {
        *shot = GrabScreen();
        taken = true;
        QTest::keyClick(GetContentWidget(dialog.reader()), Qt::Key_Escape);
    });
    dialog.run();
    if (!taken) {
        std::fprintf(stderr, "%s: %s ended before it was pictured\n", kProgram, dialog.name);
        return false;
    }
    if (pDoc->dirty) {
        std::fprintf(stderr, "%s: Esc on %s changed the show\n", kProgram, dialog.name);
        return false;
    }
    return true;
}

// The panel as a render shows it at 40 % of the movie, the viewer on the frame being made. The
// estimate is taken right after the start, so the time to go reads 00:00 on any machine.
bool ShotOfProgressPanel(QImage* shot)
{
    EditorRenderProgress progress;
    const char* text = "Rendering... (Hit Esc key to cancel)";
    progress.ShowFrame(60);
    Settle(kSettleMs);
    progress.Progress(0.0, text);
    progress.Progress(0.4, text);
    Settle(kSettleMs / 4);
    *shot = GrabScreen();
    return !progress.CancelRequested() && progress.TimeText() == "Time to go: 00:00";
}

int Check(const char* show, const char* referencePath, const char* screenshotPath)
{
    EditorDocLink link;
    if (!OpenEditorOn(show, &link) || !pStage) {
        std::fprintf(stderr, "%s: the show did not open\n", kProgram);
        return kCheckFailed;
    }
    pDoc->dirty = false;
    Settle(kSettleMs);
    QImage shot;
    bool ok = gProgressPanel ? ShotOfProgressPanel(&shot) : ShotOfDialog(*gDialog, &shot);
    if (!ok || !SaveScreenshot(kProgram, shot, screenshotPath))
        return kCheckFailed;
    return CompareWithReference(kProgram, shot, referencePath, screenshotPath);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s window show.plx reference.png screenshot.png\n", kProgram);
        return kCheckFailed;
    }
    gProgressPanel = std::strcmp(argv[1], "render_progress") == 0;
    for (const DialogWindow& dialog : kDialogs) {
        if (std::strcmp(argv[1], dialog.name) == 0)
            gDialog = &dialog;
    }
    if (!gDialog && !gProgressPanel) {
        std::fprintf(stderr, "%s: no window called %s\n", kProgram, argv[1]);
        return kCheckFailed;
    }
    // The rest is the frame every real-window check has: `program show reference screenshot`.
    argv[1] = argv[0];
    return RunWindowCheck(argc - 1, argv + 1, kProgram, Check);
}
