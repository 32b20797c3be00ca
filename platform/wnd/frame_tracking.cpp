#include "platform/wnd/frame_tracking_qt.h"

#include <QGuiApplication>
#include <QPointer>
#include <QRubberBand>
#include <QScreen>
#include <algorithm>

#include "platform/wnd/shell.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

struct Tracking {
    bool active = false;
    FrameAction action = FrameAction::TitleBar;
    CPWnd* window = nullptr;
    QPoint start;      // the press, in screen pixels
    QRect startFrame;  // the frame then, in its parent's coordinates
    QSize size;        // the size reached by a size-box drag
    QPointer<QRubberBand> outline;
};

Tracking sTracking;

FrameWidget* FrameOf(CPWnd* window)
{
    return IsWindowAlive(window) ? window->GetImpl()->frame.data() : nullptr;
}

QSize ScreenSize()
{
    if (gScreenRect.right > gScreenRect.left && gScreenRect.bottom > gScreenRect.top)
        return QSize(gScreenRect.right - gScreenRect.left, gScreenRect.bottom - gScreenRect.top);
    QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry().size()
                  : QSize(kSmallestWindowWidth, kSmallestWindowHeight);
}

QSize ClampSize(QSize size)
{
    QSize largest = ScreenSize();
    return QSize(std::clamp(size.width(), kSmallestWindowWidth,
                            std::max(kSmallestWindowWidth, largest.width())),
                 std::clamp(size.height(), kSmallestWindowHeight,
                            std::max(kSmallestWindowHeight, largest.height())));
}

void EndTracking()
{
    delete sTracking.outline.data();
    sTracking = Tracking();
}

// The frame's rectangle as SetWinRect takes it: screen pixels.
QRect ScreenFrame(FrameWidget* frame)
{
    if (frame->isWindow())
        return frame->geometry();
    return QRect(frame->mapToGlobal(QPoint(0, 0)), frame->size());
}

}  // namespace

void StartTracking(FrameAction action, CPWnd* window, QPoint global)
{
    EndTracking();
    FrameWidget* frame = FrameOf(window);
    if (!frame)
        return;
    sTracking.active = true;
    sTracking.action = action;
    sTracking.window = window;
    sTracking.start = global;
    sTracking.startFrame = frame->geometry();
    sTracking.size = frame->size();
    if (action == FrameAction::SizeBox) {
        auto* outline = new QRubberBand(QRubberBand::Rectangle,
                                        frame->isWindow() ? nullptr : frame->parentWidget());
        outline->setGeometry(sTracking.startFrame);
        outline->show();
        sTracking.outline = outline;
    }
}

bool IsTracking() { return sTracking.active; }

void TrackPointer(QPoint global)
{
    if (!sTracking.active)
        return;
    FrameWidget* frame = FrameOf(sTracking.window);
    if (!frame) {
        EndTracking();
        return;
    }
    QPoint delta = global - sTracking.start;
    switch (sTracking.action) {
    case FrameAction::TitleBar: {
        CPWnd::Impl* impl = sTracking.window->GetImpl();
        ++impl->settingGeometry;
        frame->move(sTracking.startFrame.topLeft() + delta);
        --impl->settingGeometry;
        break;
    }
    case FrameAction::SizeBox:
        sTracking.size = ClampSize(sTracking.startFrame.size() + QSize(delta.x(), delta.y()));
        if (sTracking.outline)
            sTracking.outline->setGeometry(QRect(sTracking.startFrame.topLeft(), sTracking.size));
        break;
    case FrameAction::CloseBox:
        break;
    }
}

void FinishTracking(QPoint global)
{
    if (!sTracking.active)
        return;
    TrackPointer(global);
    if (!sTracking.active)
        return;
    FrameAction action = sTracking.action;
    CPWnd* window = sTracking.window;
    QSize startSize = sTracking.startFrame.size();
    QSize size = sTracking.size;
    EndTracking();

    FrameWidget* frame = FrameOf(window);
    if (!frame)
        return;
    CPWnd::Impl* impl = window->GetImpl();
    switch (action) {
    case FrameAction::TitleBar:
        impl->requestedGeometry = ScreenFrame(frame);
        WindowMovedByUser(window);
        break;
    case FrameAction::SizeBox:
        if (size == startSize)
            break;
        ++impl->settingGeometry;
        frame->resize(size);
        frame->LayOut();
        --impl->settingGeometry;
        impl->requestedGeometry = ScreenFrame(frame);
        WindowResizedByUser(window);
        break;
    case FrameAction::CloseBox:
        if (frame->CloseBoxRect().contains(frame->mapFromGlobal(global)))
            QuitAppleEventHandler();
        break;
    }
}

void ForgetTracking(CPWnd* window)
{
    if (sTracking.active && sTracking.window == window)
        EndTracking();
}
