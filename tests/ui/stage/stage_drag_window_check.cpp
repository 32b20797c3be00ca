// The stage in a real window on an X display (run under xvfb-run by CTest): opens the demo show
// in the editor, drags the camera frame 40 pixels right by its centre with mouse events on the
// stage, checks that the show got the moved key, takes a picture of the screen and compares it
// with the kept reference picture.
//
//   px_stage_drag_check show.plx reference.png screenshot.png
//
// PX_UPDATE_REFERENCE=1 writes the reference picture anew (look at it before committing it).
// Exit codes: 0 passed, 1 failed, 77 skipped (no display).

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QScreen>
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
#include "ui/stage/cstage.h"

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kSkipped = 77;
constexpr int kChannelTolerance = 40;
constexpr double kDifferingShare = 0.005;
constexpr int kDrag = 40;

void Settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

void SendMouse(QWidget* widget, QEvent::Type type, QPoint at, Qt::MouseButtons held)
{
    Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, QPointF(at), QPointF(widget->mapToGlobal(at)), button, held,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

int CountDiffering(const QImage& a, const QImage& b)
{
    int differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            QRgb p = a.pixel(x, y);
            QRgb q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > kChannelTolerance ||
                std::abs(qGreen(p) - qGreen(q)) > kChannelTolerance ||
                std::abs(qBlue(p) - qBlue(q)) > kChannelTolerance)
                ++differing;
        }
    }
    return differing;
}

// Builds the editor on the show, drags, checks the key and the screen.
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
    if (!OpenDocumentFile(&spec, true) || !pStage || pDoc->GetKeyCount(0) < 2) {
        std::fprintf(stderr, "px_stage_drag_check: the show did not open\n");
        return kFailed;
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
    SendMouse(content, QEvent::MouseButtonPress, from, Qt::LeftButton);
    for (int step = 10; step <= kDrag; step += 10)
        SendMouse(content, QEvent::MouseMove, from + QPoint(step, 0), Qt::LeftButton);
    SendMouse(content, QEvent::MouseButtonRelease, from + QPoint(kDrag, 0), Qt::NoButton);
    Settle(800);

    int index = pDoc->FindKey(gCurFrame);
    KeyStruct key{};
    if (index >= 0)
        pDoc->GetKey(index, key, 0);
    float wanted = x + static_cast<float>(kDrag) / scale;
    if (index < 0 || std::abs(key.XPos - wanted) > 1.0f / scale || !pDoc->dirty) {
        std::fprintf(stderr,
                     "px_stage_drag_check: no moved key at the frame (XPos %.1f, wanted %.1f)\n",
                     static_cast<double>(key.XPos), static_cast<double>(wanted));
        return kFailed;
    }

    QImage shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
    if (shot.isNull() || !shot.save(QString::fromLocal8Bit(screenshotPath), "PNG")) {
        std::fprintf(stderr, "px_stage_drag_check: cannot take or write the screenshot\n");
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
        std::fprintf(stderr, "px_stage_drag_check: no reference picture of the screen's size\n");
        return kFailed;
    }
    int differing = CountDiffering(shot, reference);
    double share = static_cast<double>(differing) / (shot.width() * shot.height());
    std::printf("%d pixels differ from the reference (%.3f%%)\n", differing, share * 100);
    if (share > kDifferingShare) {
        std::fprintf(stderr, "px_stage_drag_check: the screen differs from %s; see %s\n",
                     referencePath, screenshotPath);
        return kFailed;
    }
    return kPassed;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: px_stage_drag_check show.plx reference.png screenshot.png\n");
        return kFailed;
    }
    if (!std::getenv("DISPLAY")) {
        std::fprintf(stderr, "px_stage_drag_check: skipped, no X display\n");
        return kSkipped;
    }
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("QT_SCALE_FACTOR", "1", 1);
    // A settings folder of its own, so the picture does not depend on earlier runs.
    char folder[] = "/tmp/px_stage_drag_XXXXXX";
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
