#pragma once
// The Qt side of a CPWnd, for the portable layer's own files and tests.
//
//   FrameWidget     the outer frame: a desktop window for a top-level CPWnd, else a child of the
//                   parent's content. Holds, top to bottom, the caption bar the layer draws for
//                   a child window with a title bar, the menu bar (top-level windows only), and
//   ContentWidget   the content: shows the backing image, carries the scroll bars, the edit box
//                   and the child windows.

#include <QMenuBar>
#include <QPointer>
#include <QRect>
#include <QScrollBar>
#include <QWidget>
#include <memory>

#include "platform/draw/draw_port.h"
#include "platform/wnd/cpwnd.h"

class FrameWidget;
class ContentWidget;

struct CPWnd::Impl {
    CPWnd* parent = nullptr;
    QPointer<FrameWidget> frame;
    QPointer<ContentWidget> content;
    QPointer<QScrollBar> horizontal;
    QPointer<QScrollBar> vertical;
    int scrollMaxX = kInitialScrollMaximum;
    int scrollMaxY = kInitialScrollMaximum;
    long style = 0;
    bool isFloat = false;
    bool listed = false;
    DrawPort port;
    int originX = 0;
    int originY = 0;
    char title[kMaxTitle + 1] = {};
    bool needsDraw = true;    // the backing image does not show the window yet
    bool painting = false;    // inside the window's own paint message
    int settingGeometry = 0;  // inside SetWinRect: the moves are the program's own
    QRect requestedGeometry;  // the frame geometry SetWinRect asked for
};

// The parts of a window an input event can land on.
enum class WindowPart {
    None,  // not one of the program's windows
    Content,
    ScrollBar,
    EditField,  // the active edit box's field
    Caption,    // the title bar the layer draws
    CloseBox,
    SizeBox,  // bottom-right square of a style 128 window's content
    MenuBar,
    Frame,  // any other part of the frame (a top-level window's own area)
};

class ContentWidget : public QWidget {
public:
    ContentWidget(CPWnd* owner, QWidget* parent);
    CPWnd* owner;  // cleared when the window is destroyed

    // Asks for the window's paint message once the event loop runs (several asks, one message).
    void RequestDraw();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool drawRequested = false;
};

class FrameWidget : public QWidget {
public:
    FrameWidget(CPWnd* owner, QWidget* parent, long style);
    CPWnd* owner;  // cleared when the window is destroyed
    ContentWidget* content;

    // Height of the caption bar drawn here (0 for a top-level window, which the desktop frames).
    int CaptionHeight() const;
    QRect CloseBoxRect() const;  // in frame coordinates; empty without a close box
    // Installs a menu bar above the content (null for none) and answers the one it replaces,
    // which is hidden and given back to the caller.
    QMenuBar* SwapMenuBar(QMenuBar* bar);
    QMenuBar* MenuBar() const { return menuBar; }
    int MenuBarHeight() const;
    // Places the caption, menu bar and content for the frame's size.
    void LayOut();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    long style;
    QPointer<QMenuBar> menuBar;
};

// The window an object belongs to (the innermost one), and which part of it, or null / None.
// Popups and dialogs parented to a window are desktop windows of their own and belong to none.
CPWnd* FindWindowOf(QObject* object, WindowPart* part, QPoint* contentPoint,
                    const QPoint& pointInObject);
QWidget* GetFrameWidget(const CPWnd* window);
QWidget* GetContentWidget(const CPWnd* window);
// The size box of a style 128 window, in content coordinates (empty for other styles).
QRect SizeBoxRect(const CPWnd* window);

// Gives the window its paint message now: its backing image becomes the current port for it (the
// previous port, font and colours are put back afterwards), it gets 1003, and OnDraw when it
// answers 0. Unlisted windows get nothing.
void DeliverPaint(CPWnd* window);
// Asks every visible listed window to copy its backing image to the screen.
void RefreshScreens();
// Brings the window to the front of its siblings (a desktop window is also activated).
void BringToFront(CPWnd* window);
