#pragma once
// The frame of the real-window checks (small programs CTest runs under xvfb-run): the editor
// opened on a show, waiting for the screen to settle, a screenshot written beside the build, and
// the comparison with a kept reference picture. PX_UPDATE_REFERENCE=1 writes the reference anew
// (look at it before committing it). Exit codes: 0 passed, 1 failed, 77 skipped (no display).

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "doc/cdoc.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"

namespace pxtest {

constexpr int kCheckPassed = 0;
constexpr int kCheckFailed = 1;
constexpr int kCheckSkipped = 77;

// Fonts and window managers differ a little between machines: a pixel counts as different only
// past this much in one channel, and a picture only when more than this share of pixels do.
constexpr int kChannelTolerance = 40;
constexpr double kDifferingShare = 0.005;

// Runs the event loop for a while, so windows are shown and painted.
inline void Settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

inline bool NearColour(QRgb p, QRgb q)
{
    return std::abs(qRed(p) - qRed(q)) <= kChannelTolerance &&
           std::abs(qGreen(p) - qGreen(q)) <= kChannelTolerance &&
           std::abs(qBlue(p) - qBlue(q)) <= kChannelTolerance;
}

inline int CountDiffering(const QImage& a, const QImage& b)
{
    int differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            differing += NearColour(a.pixel(x, y), b.pixel(x, y)) ? 0 : 1;
    }
    return differing;
}

// The editor's windows on `show`, as a user opening it would get them. False when it did not open.
inline bool OpenEditorOn(const char* show, EditorDocLink* link)
{
    LoadEditorSettings("");
    MakeEditorWindows(link, true);
    FSpec spec = PathFSpec(show);
    return OpenDocumentFile(&spec, true);
}

inline bool SaveScreenshot(const char* program, const QImage& shot, const char* path)
{
    if (!shot.isNull() && shot.save(QString::fromLocal8Bit(path), "PNG"))
        return true;
    std::fprintf(stderr, "%s: cannot take or write the screenshot\n", program);
    return false;
}

// The screenshot against the kept reference (or, with PX_UPDATE_REFERENCE, the new reference).
inline int CompareWithReference(const char* program, const QImage& shot, const char* referencePath,
                                const char* screenshotPath)
{
    if (std::getenv("PX_UPDATE_REFERENCE")) {
        if (!shot.save(QString::fromLocal8Bit(referencePath), "PNG"))
            return kCheckFailed;
        std::printf("reference written to %s\n", referencePath);
        return kCheckPassed;
    }
    QImage reference =
        QImage(QString::fromLocal8Bit(referencePath)).convertToFormat(QImage::Format_RGB32);
    if (reference.isNull() || reference.size() != shot.size()) {
        std::fprintf(stderr, "%s: no reference picture of the screenshot's size\n", program);
        return kCheckFailed;
    }
    int differing = CountDiffering(shot, reference);
    double share = static_cast<double>(differing) / (shot.width() * shot.height());
    std::printf("%d pixels differ from the reference (%.3f%%)\n", differing, share * 100);
    if (share > kDifferingShare) {
        std::fprintf(stderr, "%s: the screen differs from %s; see %s\n", program, referencePath,
                     screenshotPath);
        return kCheckFailed;
    }
    return kCheckPassed;
}

// The whole program: `program show.plx reference.png screenshot.png`. Skips without a display;
// runs `check` in a Qt application on the X display with a settings folder of its own (so the
// picture does not depend on earlier runs), then takes the editor down again.
inline int RunWindowCheck(int argc, char** argv, const char* program,
                          int (*check)(const char* show, const char* referencePath,
                                       const char* screenshotPath))
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s show.plx reference.png screenshot.png\n", program);
        return kCheckFailed;
    }
    if (!std::getenv("DISPLAY")) {
        std::fprintf(stderr, "%s: skipped, no X display\n", program);
        return kCheckSkipped;
    }
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("QT_SCALE_FACTOR", "1", 1);
    char folder[] = "/tmp/px_window_check_XXXXXX";
    if (!mkdtemp(folder))
        return kCheckFailed;
    setenv("XDG_CONFIG_HOME", folder, 1);
    int code = kCheckFailed;
    {
        QApplication app(argc, argv);
        InitEnvironment(nullptr, "Parallaxotron", 101);
        code = check(argv[1], argv[2], argv[3]);
        TakeEditorDown();
        CloseEnvironment();
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return code;
}

}  // namespace pxtest
