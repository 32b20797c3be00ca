// The application-wide event filter: the system's input on the program's windows becomes
// numbered messages. Ordinarily each is handed to its window at once; while a modal loop reads
// input (GetAMessage) it is kept for the loop instead. Events on anything that is not one of the
// program's windows (message boxes, popup menus, file dialogs) are left to Qt.
//
//   button down   in the content: the window comes to the front (the main window stays
//                 behind), then the floating window; 1009 with the bits and the point. On a
//                 scroll bar Qt tracks it (scroll_bars.cpp); on a title bar, size box or close
//                 box the frame is tracked (frame_tracking.cpp); a click strictly inside the
//                 active edit box is the edit box's
//   button up     1012 for the right button and for the up that ends a double click, else 1011;
//                 it goes to the window that took the button-down
//   pointer move  1013 to the window under the pointer (or holding the button)
//   wheel         1021 / 1022 with the notches
//   key down      sLastKey from the modifiers; the active edit box takes every key but Esc;
//                 with Command (Ctrl) 1017 to the main window, which flashes its menu bar;
//                 else 1019 to the window with the keyboard
//   key up        sLastKey cleared; 1018
//   quit          1007 to the main window; an open-documents request: the first file only

#include <QApplication>
#include <QCursor>
#include <QFileOpenEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPalette>
#include <QPointer>
#include <QTimer>
#include <QWheelEvent>
#include <memory>

#include "platform/base/from_qt.h"
#include "platform/base/types.h"
#include "platform/util/rect.h"
#include "platform/wnd/edit_box.h"
#include "platform/wnd/edit_box_field_qt.h"
#include "platform/wnd/frame_tracking_qt.h"
#include "platform/wnd/input_qt.h"
#include "platform/wnd/input_queue_qt.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_list.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

constexpr int kWheelNotch = 120;        // Qt's eighths of a degree in one notch
constexpr int kFlashMilliseconds = 60;  // each half of a menu-bar flash

// The window that took the last button-down in its content, and how.
CPWnd* sPressWindow = nullptr;
bool sPressEndsDoubleClick = false;

// Wheel turns below a notch add up until they make one.
CPWnd* sWheelWindow = nullptr;
int sWheelX = 0;
int sWheelY = 0;

// An open-documents request names its files one event each; the first of a batch is taken.
bool sOpenBatch = false;

class ShellFilter : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};

QPointer<ShellFilter> sFilter;

bool StrictlyInside(const tagRECT& r, QPoint p)
{
    return p.x() > r.left && p.x() < r.right && p.y() > r.top && p.y() < r.bottom;
}

// Hands one message to a window the ordinary way.
void Dispatch(CPWnd* window, unsigned int msg, long wParam, long lParam)
{
    {
        DispatchScope scope;
        PostAMessage(window, msg, wParam, lParam);
    }
    RefreshScreens();
    CheckLoopEnd();
}

void RaiseFloatingWindow()
{
    if (QWidget* frame = GetFrameWidget(gFloatWin))
        frame->raise();
}

// The window comes to the front unless it is the main window; the floating one stays on top.
void MakeCurrent(CPWnd* window)
{
    if (window != gFirstWin)
        BringToFront(window);
    RaiseFloatingWindow();
}

// Two flashes of the main window's menu bar (inverted, normal, inverted, normal), left to run
// while the program goes on.
bool sFlashing = false;

void FlashMenuBar()
{
    QWidget* main = GetFrameWidget(gFirstWin);
    auto* frame = main ? dynamic_cast<FrameWidget*>(main->window()) : nullptr;
    QPointer<QMenuBar> bar = frame ? frame->MenuBar() : nullptr;
    if (!bar || sFlashing)
        return;
    sFlashing = true;
    QPalette normal = bar->palette();
    QPalette inverted = normal;
    inverted.setColor(QPalette::Window, normal.color(QPalette::Highlight));
    inverted.setColor(QPalette::Button, normal.color(QPalette::Highlight));
    inverted.setColor(QPalette::ButtonText, normal.color(QPalette::HighlightedText));
    inverted.setColor(QPalette::WindowText, normal.color(QPalette::HighlightedText));
    bar->setAutoFillBackground(true);
    for (int step = 0; step < 4; ++step) {
        QTimer::singleShot(step * kFlashMilliseconds, QCoreApplication::instance(),
                           [bar, step, normal, inverted]() {
                               if (step == 3)
                                   sFlashing = false;
                               if (bar)
                                   bar->setPalette(step % 2 == 0 ? inverted : normal);
                           });
    }
}

bool HandlePress(QObject* object, QMouseEvent* event)
{
    WindowPart part;
    QPoint at;
    CPWnd* window = FindWindowOf(object, &part, &at, event->position().toPoint());
    if (!window || !IsWindowListed(window))
        return false;
    if (part == WindowPart::Frame)
        return false;
    bool usable = event->button() == Qt::LeftButton || event->button() == Qt::RightButton;
    if (IsReadingInput()) {
        if (usable)
            RecordInput(window, kMsgButtonDown, 0, MakePointParam(at.x(), at.y()), at, object,
                        event);
        return true;
    }
    ReplayUnreadInput();
    if (!usable)
        return part == WindowPart::Content;
    QPoint global = event->globalPosition().toPoint();
    switch (part) {
    case WindowPart::MenuBar:
        return false;
    case WindowPart::ScrollBar:
        MakeCurrent(window);
        return false;
    case WindowPart::Caption:
        MakeCurrent(window);
        StartTracking(FrameAction::TitleBar, window, global);
        return true;
    case WindowPart::CloseBox:
        StartTracking(FrameAction::CloseBox, window, global);
        return true;
    case WindowPart::SizeBox:
        MakeCurrent(window);
        StartTracking(FrameAction::SizeBox, window, global);
        return true;
    case WindowPart::EditField:
        if (StrictlyInside(gEditRect, at))
            return false;
        break;
    default:
        if (window == ActiveEditOwner() && StrictlyInside(gEditRect, at)) {
            gMacEditBox->Focus();
            return true;
        }
        break;
    }
    MakeCurrent(window);
    if (QWidget* content = GetContentWidget(window))
        content->setFocus(Qt::MouseFocusReason);
    sPressWindow = window;
    sPressEndsDoubleClick = event->type() == QEvent::MouseButtonDblClick;
    Dispatch(window, kMsgButtonDown, ButtonBits(event->modifiers()),
             MakePointParam(at.x(), at.y()));
    return true;
}

// While a modal loop reads input, a pointer event is recorded for it and goes no further;
// otherwise what was recorded and left unread is delivered first and the event goes on.
bool TakenByModalLoop(CPWnd* window, int message, QPoint at, QObject* object, QMouseEvent* event)
{
    if (IsReadingInput()) {
        RecordInput(window, message, 0, MakePointParam(at.x(), at.y()), at, object, event);
        return true;
    }
    ReplayUnreadInput();
    return false;
}

bool HandleRelease(QObject* object, QMouseEvent* event)
{
    if (IsTracking()) {
        FinishTracking(event->globalPosition().toPoint());
        return true;
    }
    WindowPart part;
    QPoint at;
    CPWnd* window = FindWindowOf(object, &part, &at, event->position().toPoint());
    if (!window || !IsWindowListed(window) || part == WindowPart::Frame)
        return false;
    if (TakenByModalLoop(window, kMsgButtonUp, at, object, event))
        return true;
    if (part == WindowPart::ScrollBar || part == WindowPart::MenuBar)
        return false;
    // The field's own click ends in the field.
    if (part == WindowPart::EditField && sPressWindow != window)
        return false;
    bool secondary = event->button() == Qt::RightButton || sPressEndsDoubleClick;
    sPressWindow = nullptr;
    sPressEndsDoubleClick = false;
    Dispatch(window, secondary ? kMsgSecondaryUp : kMsgButtonUp, ButtonBits(event->modifiers()),
             MakePointParam(at.x(), at.y()));
    return true;
}

bool HandleMove(QObject* object, QMouseEvent* event)
{
    if (IsTracking()) {
        TrackPointer(event->globalPosition().toPoint());
        return true;
    }
    WindowPart part;
    QPoint at;
    CPWnd* window = FindWindowOf(object, &part, &at, event->position().toPoint());
    if (!window || !IsWindowListed(window))
        return false;
    if (TakenByModalLoop(window, kMsgMouseMoved, at, object, event))
        return true;
    // Over the field, the field sees the pointer first (its selection drags); what it leaves
    // comes on to the window's content.
    if (part != WindowPart::Content && part != WindowPart::SizeBox)
        return false;
    Dispatch(window, kMsgMouseMoved, MoveBits(event->modifiers()), MakePointParam(at.x(), at.y()));
    return true;
}

bool HandleWheel(QObject* object, QWheelEvent* event)
{
    WindowPart part;
    QPoint at;
    CPWnd* window = FindWindowOf(object, &part, &at, event->position().toPoint());
    if (!window || !IsWindowListed(window) || part == WindowPart::MenuBar ||
        part == WindowPart::Frame)
        return false;
    if (IsReadingInput()) {
        RecordInput(window, 0, 0, 0, at, object, event);
        return true;
    }
    ReplayUnreadInput();
    // The field leaves the wheel alone; it comes on to the window's content.
    if (part == WindowPart::EditField)
        return false;
    if (window != sWheelWindow) {
        sWheelWindow = window;
        sWheelX = sWheelY = 0;
    }
    QPoint angle = event->angleDelta();
    bool sideways = angle.x() != 0 || (event->modifiers() & Qt::ShiftModifier);
    int& total = sideways ? sWheelX : sWheelY;
    total += angle.x() != 0 ? angle.x() : angle.y();
    // Turning the wheel away from the user scrolls towards the start: negative notches.
    int notches = -(total / kWheelNotch);
    total %= kWheelNotch;
    if (notches != 0)
        Dispatch(window, sideways ? kMsgWheelHorizontal : kMsgWheelVertical, notches,
                 MakePointParam(at.x(), at.y()));
    return true;
}

// The pointer in the window's content, for input that carries no position of its own.
QPoint PointerIn(CPWnd* window)
{
    QWidget* content = GetContentWidget(window);
    return content ? content->mapFromGlobal(QCursor::pos()) : QPoint();
}

// Hands a key to the active edit box's field. What the field leaves unused would travel on to
// the window; it goes nowhere instead.
bool sForwardingToField = false;

void ForwardToField(QLineEdit* field, QKeyEvent* event)
{
    std::unique_ptr<QEvent> copy(event->clone());
    sForwardingToField = true;
    QCoreApplication::sendEvent(field, copy.get());
    sForwardingToField = false;
}

bool HandleKey(QObject* object, QKeyEvent* event, bool down)
{
    if (sForwardingToField)
        return object != ActiveEditField();
    if (IsModifierKey(event->key()))
        return false;
    WindowPart part;
    QPoint at;
    CPWnd* window = FindWindowOf(object, &part, &at, QPoint());
    if (!window || !IsWindowListed(window))
        return false;
    long character = KeyCharacter(event);
    if (character == 0)
        return false;
    QLineEdit* field = ActiveEditField();
    // Held keys repeat as presses; the releases between them are not the key coming up.
    if (!down && event->isAutoRepeat()) {
        if (field)
            ForwardToField(field, event);
        return true;
    }

    sLastKey = down ? KeyState(event->modifiers()) : 0;
    if (IsReadingInput()) {
        QPoint pointer = PointerIn(window);
        RecordInput(window, down ? kMsgKeyDown : kMsgKeyUp, character, 0, pointer, object, event);
        return true;
    }
    ReplayUnreadInput();
    if (!down) {
        Dispatch(window, kMsgKeyUp, character, 0);
        if (field && ActiveEditField() == field)
            ForwardToField(field, event);
        return true;
    }
    if (field && character != kCharEscape) {
        ForwardToField(field, event);
        return true;
    }
    if (event->modifiers() & Qt::ControlModifier) {
        if (gFirstWin)
            Dispatch(gFirstWin, kMsgShortcut, character, kShortcutMark);
        FlashMenuBar();
        return true;
    }
    Dispatch(window, kMsgKeyDown, character, 0);
    return true;
}

void HandleFileOpen(QFileOpenEvent* event)
{
    if (sOpenBatch)
        return;
    sOpenBatch = true;
    // The rest of the batch comes before the event loop turns again.
    QTimer::singleShot(0, QCoreApplication::instance(), []() { sOpenBatch = false; });
    std::string path = FromQPath(event->file());
    const char* paths[] = {path.c_str()};
    OpenAppleEventHandler(1, paths);
}

bool ShellFilter::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Quit:
        if (object != QCoreApplication::instance() || !gFirstWin)
            return false;
        QuitAppleEventHandler();
        return true;
    case QEvent::FileOpen:
        if (object != QCoreApplication::instance())
            return false;
        HandleFileOpen(static_cast<QFileOpenEvent*>(event));
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return HandlePress(object, static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        return HandleRelease(object, static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        return HandleMove(object, static_cast<QMouseEvent*>(event));
    case QEvent::Wheel:
        return HandleWheel(object, static_cast<QWheelEvent*>(event));
    case QEvent::KeyPress:
        return HandleKey(object, static_cast<QKeyEvent*>(event), true);
    case QEvent::KeyRelease:
        return HandleKey(object, static_cast<QKeyEvent*>(event), false);
    default:
        return false;
    }
}

}  // namespace

void InstallShellFilter()
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app || sFilter)
        return;
    // A child of the application: it goes when the application does.
    sFilter = new ShellFilter(app);
    app->installEventFilter(sFilter);
}

CPWnd* WindowHoldingButton()
{
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        return nullptr;
    return sPressWindow;
}

void ForgetPress(CPWnd* window)
{
    if (sPressWindow == window) {
        sPressWindow = nullptr;
        sPressEndsDoubleClick = false;
    }
    if (sWheelWindow == window)
        sWheelWindow = nullptr;
}
