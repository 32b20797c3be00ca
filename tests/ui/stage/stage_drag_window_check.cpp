// The stage in a real window on an X display (run under xvfb-run by CTest): opens the demo show
// in the editor, drags the camera frame 40 pixels right by its centre with mouse events on the
// stage, checks that the show got the moved key, takes a picture of the screen and compares it
// with the kept reference picture.
//
//   px_stage_drag_check show.plx reference.png screenshot.png

#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QScreen>
#include <cmath>
#include <cstdio>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/wnd/window_widgets_qt.h"
#include "support/window_check.h"
#include "ui/editor_windows.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"

namespace {

using namespace pxtest;

constexpr const char* kProgram = "px_stage_drag_check";
constexpr int kDrag = 40;

// Builds the editor on the show, drags, checks the key and the screen.
int Check(const char* show, const char* referencePath, const char* screenshotPath)
{
    EditorDocLink link;
    if (!OpenEditorOn(show, &link) || !pStage || pDoc->GetKeyCount(0) < 2) {
        std::fprintf(stderr, "%s: the show did not open\n", kProgram);
        return kCheckFailed;
    }
    // Half-way to the second key, where no key is yet.
    KeyStruct second{};
    pDoc->GetKey(1, second, 0);
    pDoc->GotoFrame(pDoc->GetPicStart(0) + second.Frame / 2, true);
    Settle(800);

    float x = pStage->currentKey.XPos;
    float scale = pStage->scale;
    tagPOINT centre = FrameOf(pStage->currentKey, pStage->View()).centre;
    QWidget* content = GetContentWidget(pStage);
    QPoint from(centre.x, centre.y);
    Press(content, from);
    for (int step = 10; step <= kDrag; step += 10)
        Move(content, from + QPoint(step, 0));
    Release(content, from + QPoint(kDrag, 0));
    Settle(800);

    int index = pDoc->FindKey(gCurFrame);
    KeyStruct key{};
    if (index >= 0)
        pDoc->GetKey(index, key, 0);
    float wanted = x + static_cast<float>(kDrag) / scale;
    if (index < 0 || std::abs(key.XPos - wanted) > 1.0f / scale || !pDoc->dirty) {
        std::fprintf(stderr, "%s: no moved key at the frame (XPos %.1f, wanted %.1f)\n", kProgram,
                     static_cast<double>(key.XPos), static_cast<double>(wanted));
        return kCheckFailed;
    }

    QImage shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
    if (!SaveScreenshot(kProgram, shot, screenshotPath))
        return kCheckFailed;
    return CompareWithReference(kProgram, shot, referencePath, screenshotPath);
}

}  // namespace

int main(int argc, char** argv) { return RunWindowCheck(argc, argv, kProgram, Check); }
