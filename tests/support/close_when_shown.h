#pragma once
// For tests that run the editor's message loop: close a window once it shows, the way the
// desktop asks (its close event), so the loop ends.

#include <QApplication>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace pxtest {

// Once a visible top-level window titled `title` is there, calls `seen` and closes the window.
// Looks again every 20 ms until then.
inline void CloseWindowWhenShown(const QString& title, std::function<void()> seen)
{
    QTimer::singleShot(20, [title, seen]() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowTitle() == title) {
                seen();
                widget->close();
                return;
            }
        }
        CloseWindowWhenShown(title, seen);
    });
}

}  // namespace pxtest
