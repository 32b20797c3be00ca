#include "platform/wnd/cpwnd.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/base/to_qt.h"
#include "platform/base/utf8.h"
#include "platform/draw/draw_port.h"
#include "platform/wnd/edit_box_field_qt.h"
#include "platform/wnd/scroll_bars_qt.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_list.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

// Every window object from construction to destruction, so that code running after a handler
// can tell whether the handler deleted its window.
std::vector<const CPWnd*>& AliveWindows()
{
    static std::vector<const CPWnd*> alive;
    return alive;
}

constexpr int kInitialSide = 100;

// A style 256 window goes behind its sibling windows. A desktop window is left where the desktop
// puts it: the program's other windows lie inside it or float over it anyway.
void PlaceBehind(CPWnd* window)
{
    QWidget* frame = GetFrameWidget(window);
    if ((window->GetStyle() & kStyleBehind) && frame && !frame->isWindow())
        frame->lower();
}

Qt::WindowFlags DesktopFlags(long style)
{
    Qt::WindowFlags flags = (style & kStyleFloating) ? Qt::Tool : Qt::Window;
    flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if (style & (kStyleCloseBox | kStyleDocument | kStyleBehind))
        flags |= Qt::WindowCloseButtonHint;
    if (style & kStyleDocument)
        flags |= Qt::WindowMinMaxButtonsHint;
    return flags;
}

}  // namespace

bool IsWindowAlive(const CPWnd* window)
{
    const auto& alive = AliveWindows();
    return window && std::find(alive.begin(), alive.end(), window) != alive.end();
}

CPWnd::CPWnd() : impl(new Impl) { AliveWindows().push_back(this); }

CPWnd::~CPWnd()
{
    Destroy();
    auto& alive = AliveWindows();
    alive.erase(std::remove(alive.begin(), alive.end(), this), alive.end());
    delete impl;
}

long CPWnd::HandleEvent(unsigned int, long, long) { return 0; }

void CPWnd::OnDraw() {}

int CPWnd::Create(CPWnd* parent, long style)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return 0;
    if (IsCreated())
        Destroy();
    InstallShellFilter();

    impl->parent = (parent && parent->IsCreated()) ? parent : nullptr;
    impl->style = style;
    impl->isFloat = (style & kStyleFloating) != 0;
    impl->title[0] = 0;
    impl->needsDraw = true;
    impl->originX = impl->originY = 0;
    impl->scrollMaxX = impl->scrollMaxY = kInitialScrollMaximum;

    QWidget* parentWidget = impl->parent ? impl->parent->impl->content.data() : nullptr;
    auto* frame = new FrameWidget(this, parentWidget, style);
    if (!parentWidget)
        frame->setWindowFlags(DesktopFlags(style));
    frame->hide();
    impl->frame = frame;
    impl->content = frame->content;
    MakeScrollBars(this);
    SetWinRect(0, 0, kInitialSide, kInitialSide, false);

    impl->listed = AddToWindowList(this);
    if (!gFirstWin && impl->listed)
        gFirstWin = this;
    if (impl->isFloat)
        gFloatWin = this;
    PlaceBehind(this);
    SetDrawDC(&impl->port);
    return 1;
}

void CPWnd::Destroy()
{
    // Windows made inside this one go with it, as their system windows do.
    for (const CPWnd* other : std::vector<const CPWnd*>(AliveWindows())) {
        if (IsWindowAlive(other) && other->impl->parent == this)
            const_cast<CPWnd*>(other)->Destroy();
    }
    ForgetWindowInput(this);
    RemoveEditBoxIn(this);
    RemoveFromWindowList(this);
    impl->listed = false;
    impl->parent = nullptr;
    if (gFirstWin == this)
        gFirstWin = nullptr;
    if (gFloatWin == this)
        gFloatWin = nullptr;

    FrameWidget* frame = impl->frame;
    impl->frame = nullptr;
    impl->content = nullptr;
    impl->horizontal = nullptr;
    impl->vertical = nullptr;
    if (!frame)
        return;
    frame->owner = nullptr;
    frame->content->owner = nullptr;
    frame->hide();
    // A window destroyed by its own handler is still in the middle of an event: Qt lets go of
    // it first.
    if (IsDispatchingInput())
        frame->deleteLater();
    else
        delete frame;
}

bool CPWnd::IsCreated() const { return impl->frame != nullptr; }

void CPWnd::Show(int mode)
{
    if (!impl->frame)
        return;
    switch (mode) {
    case 0:
        impl->frame->hide();
        break;
    case 2: {
        tagRECT screen = gScreenRect;
        if (screen.right <= screen.left || screen.bottom <= screen.top) {
            QRect area = QGuiApplication::primaryScreen()->availableGeometry();
            screen = {0, 0, area.width(), area.height()};
        }
        SetWinRect(0, 0, screen.right - screen.left, screen.bottom - screen.top, true);
        break;
    }
    default:
        impl->frame->show();
        PlaceBehind(this);
        if (gFloatWin && gFloatWin != this && gFloatWin->impl->frame)
            gFloatWin->impl->frame->raise();
        break;
    }
}

bool CPWnd::IsVisible() const { return impl->frame && impl->frame->isVisible(); }

void CPWnd::SetWinRect(int left, int top, int right, int bottom, bool show)
{
    FrameWidget* frame = impl->frame;
    if (!frame)
        return;
    QRect target = ToQRect(left, top, right, bottom);
    ++impl->settingGeometry;
    if (frame->isWindow()) {
        frame->setGeometry(target);
        impl->requestedGeometry = frame->geometry();
    } else {
        // Screen pixels to the parent content's own.
        QPoint origin = frame->parentWidget()->mapToGlobal(QPoint(0, 0));
        frame->setGeometry(target.translated(-origin));
        impl->requestedGeometry = target;
    }
    frame->LayOut();
    --impl->settingGeometry;
    if (show) {
        Show(1);
        ShowScrollBars(this);
    }
}

void CPWnd::SetWinRect(const tagRECT& rect, bool show)
{
    SetWinRect(rect.left, rect.top, rect.right, rect.bottom, show);
}

void CPWnd::GetWinRect(tagRECT& rect) const
{
    FrameWidget* frame = impl->frame;
    if (!frame) {
        rect = {0, 0, 0, 0};
        return;
    }
    QPoint topLeft =
        frame->isWindow() ? frame->geometry().topLeft() : frame->mapToGlobal(QPoint(0, 0));
    rect = {topLeft.x(), topLeft.y(), topLeft.x() + frame->width(), topLeft.y() + frame->height()};
}

void CPWnd::GetClientRect(tagRECT& rect) const
{
    if (!impl->content) {
        rect = {0, 0, 0, 0};
        return;
    }
    rect = {0, 0, impl->content->width(), impl->content->height()};
}

int CPWnd::GetCaptionSize() const
{
    if (impl->style & kStyleDocument)
        return kDocumentCaption;
    if (impl->style & kStyleFloating)
        return kFloatingCaption;
    return 0;
}

int CPWnd::GetMenuSize() const
{
    if (!impl->frame)
        return 0;
    auto* top = dynamic_cast<FrameWidget*>(impl->frame->window());
    return top ? top->MenuBarHeight() : 0;
}

int CPWnd::GetScrollSize() const { return kScrollBarSize; }

int CPWnd::GetBorderSize() const
{
    if (!impl->frame)
        return 0;
    return (impl->frame->width() - impl->content->width()) / 2;
}

void CPWnd::SetTitle(const char* title)
{
    CopyUtf8(impl->title, title, kMaxTitle);
    if (!impl->frame)
        return;
    impl->frame->setWindowTitle(ToQString(impl->title));
    impl->frame->update(0, 0, impl->frame->width(), impl->frame->CaptionHeight());
}

void CPWnd::GetTitle(char* out, int max) const
{
    if (!out || max <= 0)
        return;
    CopyUtf8(out, impl->title, static_cast<size_t>(max - 1));
}

void CPWnd::Redraw(const tagRECT&, bool) { Redraw(); }

void CPWnd::Redraw()
{
    // The window being painted is drawing itself already.
    if (!impl->content || impl->painting)
        return;
    impl->needsDraw = true;
    impl->content->RequestDraw();
}

void CPWnd::SetWindowOrigin(int x, int y)
{
    impl->originX = x;
    impl->originY = y;
    ApplyWindowOrigin(this);
}

int CPWnd::GetWindowOriginX() const { return impl->originX; }

int CPWnd::GetWindowOriginY() const { return impl->originY; }

void CPWnd::FullScreen(bool) {}

void CPWnd::SetOrder(CPWnd*, bool) {}

long CPWnd::GetStyle() const { return impl->style; }

bool CPWnd::IsFloat() const { return impl->isFloat; }

CPWnd* CPWnd::GetParent() const { return impl->parent; }

DrawPort* CPWnd::GetPort() { return impl->frame ? &impl->port : nullptr; }

void ContentSized(CPWnd* window)
{
    CPWnd::Impl* impl = window->GetImpl();
    if (!impl->content)
        return;
    int width = impl->content->width();
    int height = impl->content->height();
    if (impl->port.Width() != width || impl->port.Height() != height) {
        impl->port.Resize(width, height);
        ApplyWindowOrigin(window);
        impl->needsDraw = true;
        impl->content->RequestDraw();
    }
    window->AlignScrollBar(kScrollBarVertical);
    window->AlignScrollBar(kScrollBarHorizontal);
}

DrawPort* GetDC(CPWnd* window)
{
    if (!window || !window->IsCreated())
        return nullptr;
    DrawPort* port = window->GetPort();
    SetDrawDC(port);
    return port;
}

void ReleaseDC(CPWnd*, DrawPort*) {}
