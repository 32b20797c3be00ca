// The viewer in a real window on an X display (run under xvfb-run by CTest): opens the demo show
// in the editor, goes to frame 100, checks that the viewer's picture area on the screen shows the
// movie renderer's frame, then compares a picture of the viewer's content with the kept
// reference picture.
//
//   px_viewer_frame_check show.plx reference.png screenshot.png

#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <cstdio>

#include "doc/cdoc.h"
#include "platform/wnd/window_widgets_qt.h"
#include "support/window_check.h"
#include "ui/editor_windows.h"
#include "ui/main/doc_link.h"
#include "ui/viewer/cview.h"

namespace {

using namespace pxtest;

constexpr const char* kProgram = "px_viewer_frame_check";
constexpr long kFrame = 100;

// Pixels of the picture area on the screen that are not the rendered frame's.
int CountOffFrame(const QImage& shot, const CDIB& frame)
{
    int differing = 0;
    int rows = frame.GetHgt();
    for (int y = 0; y < rows && y < shot.height(); ++y) {
        const unsigned char* row = frame.GetBitsAdd(rows - 1 - y);
        for (int x = 0; x < frame.GetWid() && x < shot.width(); ++x) {
            const unsigned char* p = row + x * 4;
            differing += NearColour(shot.pixel(x, y), qRgb(p[2], p[1], p[0])) ? 0 : 1;
        }
    }
    return differing;
}

int Check(const char* show, const char* referencePath, const char* screenshotPath)
{
    EditorDocLink link;
    if (!OpenEditorOn(show, &link) || !pViewer) {
        std::fprintf(stderr, "%s: the show did not open\n", kProgram);
        return kCheckFailed;
    }
    pDoc->GotoFrame(kFrame, true);
    Settle(800);

    QWidget* content = GetContentWidget(pViewer);
    QPoint origin = content->mapToGlobal(QPoint(0, 0));
    QImage shot = QGuiApplication::primaryScreen()
                      ->grabWindow(0, origin.x(), origin.y(), content->width(), content->height())
                      .toImage()
                      .convertToFormat(QImage::Format_RGB32);
    if (!SaveScreenshot(kProgram, shot, screenshotPath))
        return kCheckFailed;
    CDIB frame(pViewer->viewImage.GetWid(), pViewer->viewImage.GetHgt(), 32);
    if (!pDoc->RenderFrame(kFrame, 0, false, frame.GetWid(), frame.GetHgt(), &frame, false)) {
        std::fprintf(stderr, "%s: frame %ld did not render\n", kProgram, kFrame);
        return kCheckFailed;
    }
    int offFrame = CountOffFrame(shot, frame);
    if (offFrame > 0) {
        std::fprintf(stderr, "%s: %d picture pixels are not frame %ld's\n", kProgram, offFrame,
                     kFrame);
        return kCheckFailed;
    }
    return CompareWithReference(kProgram, shot, referencePath, screenshotPath);
}

}  // namespace

int main(int argc, char** argv) { return RunWindowCheck(argc, argv, kProgram, Check); }
