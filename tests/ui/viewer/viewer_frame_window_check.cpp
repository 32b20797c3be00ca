// The viewer in a real window on an X display (run under xvfb-run by CTest): opens the demo show
// in the editor, goes to frame 100, checks that the viewer's picture area on the screen shows the
// movie renderer's frame, then compares a picture of the viewer's content with the kept
// reference picture.
//
//   px_viewer_frame_check show.plx reference.png screenshot.png
//
// PX_UPDATE_REFERENCE=1 writes the reference picture anew (look at it before committing it).
// Exit codes: 0 passed, 1 failed, 77 skipped (no display).

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/window_widgets_qt.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/viewer/cview.h"

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kSkipped = 77;
constexpr int kChannelTolerance = 40;
constexpr double kDifferingShare = 0.005;
constexpr long kFrame = 100;

void Settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

bool Near(QRgb p, QRgb q)
{
    return std::abs(qRed(p) - qRed(q)) <= kChannelTolerance &&
           std::abs(qGreen(p) - qGreen(q)) <= kChannelTolerance &&
           std::abs(qBlue(p) - qBlue(q)) <= kChannelTolerance;
}

int CountDiffering(const QImage& a, const QImage& b)
{
    int differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            differing += Near(a.pixel(x, y), b.pixel(x, y)) ? 0 : 1;
    }
    return differing;
}

// Pixels of the picture area on the screen that are not the rendered frame's.
int CountOffFrame(const QImage& shot, const CDIB& frame)
{
    int differing = 0;
    int rows = frame.GetHgt();
    for (int y = 0; y < rows && y < shot.height(); ++y) {
        const unsigned char* row = frame.GetBitsAdd(rows - 1 - y);
        for (int x = 0; x < frame.GetWid() && x < shot.width(); ++x) {
            const unsigned char* p = row + x * 4;
            differing += Near(shot.pixel(x, y), qRgb(p[2], p[1], p[0])) ? 0 : 1;
        }
    }
    return differing;
}

int Run(const char* show, const char* referencePath, const char* screenshotPath)
{
    EditorDocLink link;
    std::string settings = "[Parallaxotron]\r\nShowPicError=0\r\n";
    LoadIniText(settings.data(), settings.size());
    pDoc = new CDoc;
    pDoc->standalone = 1;
    pDoc->AttachEditor(&link);
    pMain = new CMain(nullptr);
    FSpec spec = PathFSpec(show);
    if (!OpenDocumentFile(&spec, true) || !pViewer) {
        std::fprintf(stderr, "px_viewer_frame_check: the show did not open\n");
        return kFailed;
    }
    pDoc->GotoFrame(kFrame, true);
    Settle(800);

    QWidget* content = GetContentWidget(pViewer);
    QPoint origin = content->mapToGlobal(QPoint(0, 0));
    QImage shot = QGuiApplication::primaryScreen()
                      ->grabWindow(0, origin.x(), origin.y(), content->width(), content->height())
                      .toImage()
                      .convertToFormat(QImage::Format_RGB32);
    if (shot.isNull() || !shot.save(QString::fromLocal8Bit(screenshotPath), "PNG")) {
        std::fprintf(stderr, "px_viewer_frame_check: cannot take or write the screenshot\n");
        return kFailed;
    }
    CDIB frame(pViewer->viewImage.GetWid(), pViewer->viewImage.GetHgt(), 32);
    if (!pDoc->RenderFrame(kFrame, 0, false, frame.GetWid(), frame.GetHgt(), &frame, false)) {
        std::fprintf(stderr, "px_viewer_frame_check: frame %ld did not render\n", kFrame);
        return kFailed;
    }
    int offFrame = CountOffFrame(shot, frame);
    if (offFrame > 0) {
        std::fprintf(stderr, "px_viewer_frame_check: %d picture pixels are not frame %ld's\n",
                     offFrame, kFrame);
        return kFailed;
    }
    if (std::getenv("PX_UPDATE_REFERENCE")) {
        if (!shot.save(QString::fromLocal8Bit(referencePath), "PNG"))
            return kFailed;
        std::printf("reference written to %s\n", referencePath);
        return kPassed;
    }
    QImage reference =
        QImage(QString::fromLocal8Bit(referencePath)).convertToFormat(QImage::Format_RGB32);
    if (reference.isNull() || reference.size() != shot.size()) {
        std::fprintf(stderr, "px_viewer_frame_check: no reference picture of the viewer's size\n");
        return kFailed;
    }
    int differing = CountDiffering(shot, reference);
    double share = static_cast<double>(differing) / (shot.width() * shot.height());
    std::printf("%d pixels differ from the reference (%.3f%%)\n", differing, share * 100);
    if (share > kDifferingShare) {
        std::fprintf(stderr, "px_viewer_frame_check: the viewer differs from %s; see %s\n",
                     referencePath, screenshotPath);
        return kFailed;
    }
    return kPassed;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr,
                     "usage: px_viewer_frame_check show.plx reference.png screenshot.png\n");
        return kFailed;
    }
    if (!std::getenv("DISPLAY")) {
        std::fprintf(stderr, "px_viewer_frame_check: skipped, no X display\n");
        return kSkipped;
    }
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("QT_SCALE_FACTOR", "1", 1);
    // A settings folder of its own, so the picture does not depend on earlier runs.
    char folder[] = "/tmp/px_viewer_frame_XXXXXX";
    if (!mkdtemp(folder))
        return kFailed;
    setenv("XDG_CONFIG_HOME", folder, 1);
    int code = kFailed;
    {
        QApplication app(argc, argv);
        InitEnvironment(nullptr, "Parallaxotron", 101);
        code = Run(argv[1], argv[2], argv[3]);
        delete pMain;
        pMain = nullptr;
        delete pDoc;
        pDoc = nullptr;
        CloseEnvironment();
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return code;
}
