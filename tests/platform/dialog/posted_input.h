#pragma once
// Input posted to a window's content before a modal loop (a described dialog, the colour picker)
// starts reading: the loop reads it in order, as if the user had clicked and typed. Points are
// content pixels.

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "platform/wnd/wnd_test_support.h"

inline void PostMouse(CPWnd* window, QEvent::Type type, int x, int y, Qt::MouseButtons held)
{
    QWidget* content = Content(window);
    QPoint at(x, y);
    Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QCoreApplication::postEvent(
        content, new QMouseEvent(type, QPointF(at), QPointF(content->mapToGlobal(at)), button, held,
                                 Qt::NoModifier));
}

inline void PostPress(CPWnd* window, int x, int y)
{
    PostMouse(window, QEvent::MouseButtonPress, x, y, Qt::LeftButton);
}
inline void PostRelease(CPWnd* window, int x, int y)
{
    PostMouse(window, QEvent::MouseButtonRelease, x, y, Qt::NoButton);
}
// A move with the button held.
inline void PostDrag(CPWnd* window, int x, int y)
{
    PostMouse(window, QEvent::MouseMove, x, y, Qt::LeftButton);
}
inline void PostMove(CPWnd* window, int x, int y)
{
    PostMouse(window, QEvent::MouseMove, x, y, Qt::NoButton);
}
inline void PostClick(CPWnd* window, int x, int y)
{
    PostPress(window, x, y);
    PostRelease(window, x, y);
}

inline void PostKey(CPWnd* window, int key, const QString& text)
{
    QCoreApplication::postEvent(Content(window),
                                new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text));
}
inline void PostReturn(CPWnd* window) { PostKey(window, Qt::Key_Return, QStringLiteral("\r")); }
inline void PostEscape(CPWnd* window) { PostKey(window, Qt::Key_Escape, QStringLiteral("\x1b")); }
