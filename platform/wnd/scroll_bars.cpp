// The scroll bars of a window: where they lie, how far they go, how the user moves them.
//
// A bar's maximum is the extent of the canvas it scrolls over; its value runs from 0 to the
// maximum less the length of canvas the content shows along the bar, so the last position shows
// the canvas's far edge at the window's. The layer tracks the user's clicks itself: an arrow
// moves by a 80th of that span, a page area by an 8th, the thumb by its tracked position; the
// window is then redrawn (1003).

#include "platform/wnd/scroll_bars_qt.h"

#include <QScrollBar>
#include <algorithm>

#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

QScrollBar* Bar(const CPWnd::Impl* impl, int bar)
{
    if (bar == kScrollBarHorizontal)
        return impl->horizontal;
    if (bar == kScrollBarVertical)
        return impl->vertical;
    return nullptr;
}

int VisibleLength(const CPWnd::Impl* impl, int bar)
{
    if (!impl->content)
        return 0;
    if (bar == kScrollBarHorizontal)
        return impl->content->width() - (impl->vertical ? kScrollBarSize : 0);
    return impl->content->height() - (impl->horizontal ? kScrollBarSize : 0);
}

int Maximum(const CPWnd::Impl* impl, int bar)
{
    return bar == kScrollBarHorizontal ? impl->scrollMaxX : impl->scrollMaxY;
}

int Limit(const CPWnd::Impl* impl, int bar)
{
    long limit = static_cast<long>(Maximum(impl, bar)) - VisibleLength(impl, bar);
    return static_cast<int>(std::max(0L, limit));
}

// Gives the Qt bar the range and steps of the window's bar.
void UpdateRange(CPWnd::Impl* impl, int bar)
{
    QScrollBar* scroll = Bar(impl, bar);
    if (!scroll)
        return;
    int limit = Limit(impl, bar);
    scroll->setRange(0, limit);
    scroll->setSingleStep(limit / 80);
    scroll->setPageStep(std::max(1, VisibleLength(impl, bar)));
}

// One step of the user's tracking, before Qt applies it: the layer's own steps and clamps.
void TrackAction(CPWnd* window, int bar, int action)
{
    // A bar can outlive its window for a moment when the window went during an event.
    if (!IsWindowAlive(window))
        return;
    CPWnd::Impl* impl = window->GetImpl();
    QScrollBar* scroll = Bar(impl, bar);
    if (!scroll)
        return;
    int span = Limit(impl, bar);
    long value = scroll->value();
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        value += span / 80;
        break;
    case QAbstractSlider::SliderSingleStepSub:
        value -= span / 80;
        break;
    case QAbstractSlider::SliderPageStepAdd:
        value += span / 8;
        break;
    case QAbstractSlider::SliderPageStepSub:
        value -= span / 8;
        break;
    case QAbstractSlider::SliderToMinimum:
        value = 0;
        break;
    case QAbstractSlider::SliderToMaximum:
        value = span;
        break;
    case QAbstractSlider::SliderMove:
        value = scroll->sliderPosition();
        break;
    default:
        return;
    }
    value = std::clamp(value, 0L, static_cast<long>(span));
    scroll->setSliderPosition(static_cast<int>(value));
    // Qt takes the position as the value once this returns; the paint message follows it.
    window->Redraw();
}

QScrollBar* MakeBar(CPWnd* window, int bar)
{
    CPWnd::Impl* impl = window->GetImpl();
    auto* scroll =
        new QScrollBar(bar == kScrollBarHorizontal ? Qt::Horizontal : Qt::Vertical, impl->content);
    scroll->setFocusPolicy(Qt::NoFocus);
    QObject::connect(scroll, &QAbstractSlider::actionTriggered, scroll,
                     [window, bar](int action) { TrackAction(window, bar, action); });
    return scroll;
}

}  // namespace

void MakeScrollBars(CPWnd* window)
{
    CPWnd::Impl* impl = window->GetImpl();
    if (impl->style & kStyleHorizontalBar)
        impl->horizontal = MakeBar(window, kScrollBarHorizontal);
    if (impl->style & kStyleVerticalBar)
        impl->vertical = MakeBar(window, kScrollBarVertical);
    window->AlignScrollBar(kScrollBarVertical);
    window->AlignScrollBar(kScrollBarHorizontal);
}

void ShowScrollBars(CPWnd* window)
{
    CPWnd::Impl* impl = window->GetImpl();
    for (QScrollBar* scroll : {impl->horizontal.data(), impl->vertical.data()}) {
        if (scroll) {
            scroll->show();
            scroll->update();
        }
    }
}

void ApplyWindowOrigin(CPWnd* window)
{
    // The drawing calls take window coordinates less the port's origin.
    CPWnd::Impl* impl = window->GetImpl();
    impl->port.SetOrigin(impl->originX, impl->originY);
}

// ---- CPWnd's scrolling --------------------------------------------------------------------

void CPWnd::ShowScrollBar(bool, bool)
{
    SetWindowOrigin(0, 0);
    ShowScrollBars(this);
}

int CPWnd::GetViewScrollX() const
{
    QScrollBar* scroll = Bar(GetImpl(), kScrollBarHorizontal);
    return scroll ? scroll->value() : 0;
}

int CPWnd::GetViewScrollY() const
{
    QScrollBar* scroll = Bar(GetImpl(), kScrollBarVertical);
    return scroll ? scroll->value() : 0;
}

void CPWnd::SetViewScrollX(int value, bool redraw)
{
    QScrollBar* scroll = Bar(GetImpl(), kScrollBarHorizontal);
    if (!scroll)
        return;
    scroll->setValue(std::clamp(value, 0, GetScrollLimitX()));
    if (redraw)
        scroll->update();
}

void CPWnd::SetViewScrollY(int value, bool redraw)
{
    QScrollBar* scroll = Bar(GetImpl(), kScrollBarVertical);
    if (!scroll)
        return;
    scroll->setValue(std::clamp(value, 0, GetScrollLimitY()));
    if (redraw)
        scroll->update();
}

void CPWnd::SetViewScrollRange(int maxX, int maxY)
{
    Impl* data = GetImpl();
    data->scrollMaxX = maxX;
    data->scrollMaxY = maxY;
    UpdateRange(data, kScrollBarHorizontal);
    UpdateRange(data, kScrollBarVertical);
}

int CPWnd::GetScrollMaximumX() const { return GetImpl()->scrollMaxX; }

int CPWnd::GetScrollMaximumY() const { return GetImpl()->scrollMaxY; }

int CPWnd::GetScrollLimitX() const { return Limit(GetImpl(), kScrollBarHorizontal); }

int CPWnd::GetScrollLimitY() const { return Limit(GetImpl(), kScrollBarVertical); }

bool CPWnd::ScrollControl(int bar, long delta)
{
    QScrollBar* scroll = Bar(GetImpl(), bar);
    if (!scroll)
        return false;
    long limit = Limit(GetImpl(), bar);
    long value = std::clamp(static_cast<long>(scroll->value()) + delta, 0L, limit);
    if (value == scroll->value())
        return false;
    scroll->setValue(static_cast<int>(value));
    Redraw();
    return true;
}

void CPWnd::AlignScrollBar(int bar)
{
    Impl* data = GetImpl();
    if (!data->content)
        return;
    int width = data->content->width();
    int height = data->content->height();
    if (bar == kScrollBarVertical && data->vertical) {
        int length = data->horizontal ? height - 15 : height + 1;
        data->vertical->setGeometry(width - kScrollBarSize, -1, kScrollBarSize,
                                    std::max(0, length));
    }
    if (bar == kScrollBarHorizontal && data->horizontal) {
        int length = data->vertical ? width - 15 : width + 1;
        data->horizontal->setGeometry(-1, height - 17, std::max(0, length), kScrollBarSize);
    }
    UpdateRange(data, bar);
}
