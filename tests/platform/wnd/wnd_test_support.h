#pragma once
// Helpers for the window layer's tests: a window that records its messages, and synthetic Qt
// input sent the way the system would send it.

#include <QApplication>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>
#include <functional>
#include <vector>

#include "platform/wnd/cpwnd.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/window_widgets_qt.h"

struct Received {
    const CPWnd* window;
    unsigned int msg;
    long wParam;
    long lParam;
};

inline bool operator==(const Received& a, const Received& b)
{
    return a.window == b.window && a.msg == b.msg && a.wParam == b.wParam && a.lParam == b.lParam;
}

// Records every message; answers `paintAnswer` to 1003 and 0 to the rest; counts OnDraw calls.
class RecordingWindow : public CPWnd {
public:
    explicit RecordingWindow(std::vector<Received>* sharedLog = nullptr) : shared(sharedLog) {}

    long HandleEvent(unsigned int msg, long wParam, long lParam) override
    {
        Received r{this, msg, wParam, lParam};
        log.push_back(r);
        if (shared)
            shared->push_back(r);
        if (onMessage)
            onMessage(msg, wParam, lParam);
        return msg == kMsgPaint ? paintAnswer : 0;
    }
    void OnDraw() override { ++draws; }

    int Count(unsigned int msg) const
    {
        int n = 0;
        for (const Received& r : log)
            n += r.msg == msg;
        return n;
    }
    // The messages other than paint and the idle tick, in order.
    std::vector<unsigned int> InputMessages() const
    {
        std::vector<unsigned int> out;
        for (const Received& r : log) {
            if (r.msg != kMsgPaint && r.msg != kMsgMouseMoved)
                out.push_back(r.msg);
        }
        return out;
    }
    const Received* Last(unsigned int msg) const
    {
        for (auto it = log.rbegin(); it != log.rend(); ++it) {
            if (it->msg == msg)
                return &*it;
        }
        return nullptr;
    }

    std::vector<Received> log;
    std::vector<Received>* shared;
    std::function<void(unsigned int, long, long)> onMessage;
    long paintAnswer = 0;
    int draws = 0;
};

inline QWidget* Content(CPWnd* window) { return GetContentWidget(window); }
inline QWidget* Frame(CPWnd* window) { return GetFrameWidget(window); }

// Lets Qt deliver what is pending (posted events, paints) a few times over.
inline void ProcessEvents()
{
    for (int i = 0; i < 4; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

inline void SendMouse(QWidget* widget, QEvent::Type type, QPoint at, Qt::MouseButton button,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    Qt::MouseButtons held = (type == QEvent::MouseButtonRelease || type == QEvent::MouseMove)
                                ? Qt::MouseButtons()
                                : Qt::MouseButtons(button);
    QMouseEvent event(type, QPointF(at), QPointF(widget->mapToGlobal(at)), button, held, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}

inline void Press(QWidget* widget, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                  Qt::MouseButton button = Qt::LeftButton)
{
    SendMouse(widget, QEvent::MouseButtonPress, at, button, modifiers);
}

inline void Release(QWidget* widget, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                    Qt::MouseButton button = Qt::LeftButton)
{
    SendMouse(widget, QEvent::MouseButtonRelease, at, button, modifiers);
}

inline void Move(QWidget* widget, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    SendMouse(widget, QEvent::MouseMove, at, Qt::NoButton, modifiers);
}

inline void SendKey(QWidget* widget, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers,
                    const QString& text = QString(), bool autoRepeat = false)
{
    QKeyEvent event(type, key, modifiers, text, autoRepeat);
    QCoreApplication::sendEvent(widget, &event);
}

inline void SendWheel(QWidget* widget, QPoint at, QPoint angle,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWheelEvent event(QPointF(at), QPointF(widget->mapToGlobal(at)), QPoint(), angle, Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &event);
}
