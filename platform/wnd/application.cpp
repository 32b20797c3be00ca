#include "platform/wnd/application.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/base/to_qt.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

std::unique_ptr<QApplication>& Application()
{
    static std::unique_ptr<QApplication> application;
    return application;
}

// Qt ends the process when the platform it was asked for cannot start; tell beforehand.
bool DisplayReachable()
{
    const char* platform = std::getenv("QT_QPA_PLATFORM");
    if (platform && platform[0] && std::strncmp(platform, "xcb", 3) != 0 &&
        std::strncmp(platform, "wayland", 7) != 0)
        return true;  // offscreen, minimal, vnc...: no display needed
    const char* x11 = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x11 && x11[0]) || (wayland && wayland[0]);
}

}  // namespace

bool StartApplication(int& argc, char** argv)
{
    if (QCoreApplication::instance() || !DisplayReachable())
        return false;
    Application() = std::make_unique<QApplication>(argc, argv);
    return true;
}

void StopApplication() { Application().reset(); }

void ProcessPendingEvents(int milliseconds)
{
    if (!QCoreApplication::instance())
        return;
    QElapsedTimer clock;
    clock.start();
    do {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    } while (clock.elapsed() < milliseconds);
}

bool SaveWindowPicture(CPWnd* window, const char* path)
{
    if (!window || !window->IsCreated() || !path)
        return false;
    QWidget* frame = GetFrameWidget(window);
    if (!frame)
        return false;
    QWidget* top = frame->window();
    QPixmap picture;
    QScreen* screen = top->screen();
    if (screen && top->isVisible())
        picture = screen->grabWindow(top->winId());
    // Platforms that keep no screen (or a window not shown yet) give nothing: draw it instead.
    if (picture.isNull() || picture.size() != top->size() * picture.devicePixelRatio())
        picture = top->grab();
    return !picture.isNull() && picture.save(ToQPath(path), "PNG");
}
