#include "platform/wnd/window_widgets_qt.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFont>
#include <QLineEdit>
#include <QMoveEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>

#include "platform/base/to_qt.h"
#include "platform/draw/draw_port_qt.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"
#include "platform/wnd/edit_box_field_qt.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_list.h"

namespace {

const QEvent::Type kDrawRequest = static_cast<QEvent::Type>(QEvent::registerEventType());

constexpr int kSizeBoxSize = 16;
constexpr QRgb kCaptionTop = 0xFFE8E8E8;
constexpr QRgb kCaptionBottom = 0xFFC4C4C4;
constexpr QRgb kCaptionLine = 0xFF808080;

}  // namespace

// ---- Content ------------------------------------------------------------------------------

ContentWidget::ContentWidget(CPWnd* owner, QWidget* parent) : QWidget(parent), owner(owner)
{
    // Every pixel comes from the backing image; pointer moves are wanted with no button held.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
}

void ContentWidget::RequestDraw()
{
    if (drawRequested)
        return;
    drawRequested = true;
    QCoreApplication::postEvent(this, new QEvent(kDrawRequest));
}

bool ContentWidget::event(QEvent* event)
{
    if (event->type() == kDrawRequest) {
        drawRequested = false;
        if (owner && owner->GetImpl()->needsDraw && isVisible()) {
            DeliverPaint(owner);
            update();
        }
        return true;
    }
    if (event->type() == QEvent::Show && owner && owner->GetImpl()->needsDraw)
        RequestDraw();
    return QWidget::event(event);
}

void ContentWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (!owner) {
        painter.fillRect(rect(), Qt::white);
        return;
    }
    const QImage& image = owner->GetImpl()->port.GetBacking().image;
    QRect part = event->rect() & image.rect();
    if (!part.isEmpty())
        painter.drawImage(part, image, part);
    if (image.width() < width() || image.height() < height()) {
        painter.fillRect(image.width(), 0, width() - image.width(), height(), Qt::white);
        painter.fillRect(0, image.height(), image.width(), height() - image.height(), Qt::white);
    }
    QRect grip = SizeBoxRect(owner);
    if (!grip.isEmpty()) {
        // Three diagonal ridges: the corner the window is resized by.
        painter.setPen(QColor(0x80, 0x80, 0x80));
        for (int i = 4; i <= 12; i += 4)
            painter.drawLine(grip.right() - i, grip.bottom() - 1, grip.right() - 1,
                             grip.bottom() - i);
    }
}

void ContentWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (owner)
        ContentSized(owner);
}

// ---- Frame --------------------------------------------------------------------------------

FrameWidget::FrameWidget(CPWnd* owner, QWidget* parent, long style)
    : QWidget(parent), owner(owner), content(new ContentWidget(owner, this)), style(style)
{
}

int FrameWidget::CaptionHeight() const
{
    if (isWindow())
        return 0;
    if (style & kStyleDocument)
        return kDocumentCaption;
    if (style & kStyleFloating)
        return kFloatingCaption;
    return 0;
}

QRect FrameWidget::CloseBoxRect() const
{
    int caption = CaptionHeight();
    if (caption == 0 || !(style & (kStyleCloseBox | kStyleDocument | kStyleBehind)))
        return QRect();
    int side = caption - 10;
    return QRect(7, (caption - side) / 2, side, side);
}

int FrameWidget::MenuBarHeight() const
{
    // A bar the desktop shows in its own place (the global menu) takes no room in the window.
    if (!menuBar || menuBar->isNativeMenuBar())
        return 0;
    return menuBar->sizeHint().height();
}

QMenuBar* FrameWidget::SwapMenuBar(QMenuBar* bar)
{
    QMenuBar* old = menuBar;
    if (old == bar)
        return old;
    if (old)
        old->hide();
    menuBar = bar;
    if (bar) {
        bar->setParent(this);
        bar->show();
    }
    LayOut();
    return old;
}

void FrameWidget::LayOut()
{
    int top = CaptionHeight();
    if (menuBar && !menuBar->isNativeMenuBar()) {
        int height = MenuBarHeight();
        menuBar->setGeometry(0, top, width(), height);
        top += height;
    }
    content->setGeometry(0, top, width(), std::max(0, height() - top));
    if (owner)
        ContentSized(owner);
}

void FrameWidget::paintEvent(QPaintEvent*)
{
    int caption = CaptionHeight();
    if (caption == 0)
        return;
    QPainter painter(this);
    QLinearGradient shade(0, 0, 0, caption);
    shade.setColorAt(0, QColor::fromRgb(kCaptionTop));
    shade.setColorAt(1, QColor::fromRgb(kCaptionBottom));
    painter.fillRect(0, 0, width(), caption, shade);
    painter.setPen(QColor::fromRgb(kCaptionLine));
    painter.drawLine(0, caption - 1, width() - 1, caption - 1);

    QRect box = CloseBoxRect();
    if (!box.isEmpty()) {
        painter.fillRect(box, Qt::white);
        painter.drawRect(box.adjusted(0, 0, -1, -1));
    }

    char title[kMaxTitle + 1] = {};
    if (owner)
        owner->GetTitle(title, sizeof title);
    QFont font(ToQString(StandardFontFamily()));
    font.setPixelSize(caption >= kDocumentCaption ? 12 : 10);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::black);
    QRect text(0, 0, width(), caption - 1);
    if (!box.isEmpty())
        text.adjust(box.right() + 4, 0, -(box.right() + 4), 0);
    painter.drawText(text, Qt::AlignCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(ToQString(title), Qt::ElideRight,
                                                      std::max(0, text.width())));
}

void FrameWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    LayOut();
    if (!owner || !isWindow())
        return;
    CPWnd::Impl* impl = owner->GetImpl();
    // A size the program did not ask for comes from the desktop: the user resized the window.
    if (event->spontaneous() && impl->settingGeometry == 0 &&
        size() != impl->requestedGeometry.size()) {
        impl->requestedGeometry = geometry();
        WindowResizedByUser(owner);
    }
}

void FrameWidget::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    if (!owner || !isWindow())
        return;
    CPWnd::Impl* impl = owner->GetImpl();
    if (event->spontaneous() && impl->settingGeometry == 0 &&
        geometry().topLeft() != impl->requestedGeometry.topLeft()) {
        impl->requestedGeometry = geometry();
        WindowMovedByUser(owner);
    }
}

void FrameWidget::closeEvent(QCloseEvent* event)
{
    // The desktop's close button is the close box: the program decides, through 1007.
    event->ignore();
    if (owner)
        QuitAppleEventHandler();
}

void FrameWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && owner && isWindow() && isActiveWindow())
        WindowActivated(owner);
}

// ---- Look-ups -------------------------------------------------------------------------------

QWidget* GetFrameWidget(const CPWnd* window)
{
    return window ? window->GetImpl()->frame.data() : nullptr;
}

QWidget* GetContentWidget(const CPWnd* window)
{
    return window ? window->GetImpl()->content.data() : nullptr;
}

QRect SizeBoxRect(const CPWnd* window)
{
    const CPWnd::Impl* impl = window->GetImpl();
    if (!(impl->style & kStyleDocument) || !impl->content)
        return QRect();
    return QRect(impl->content->width() - kSizeBoxSize, impl->content->height() - kSizeBoxSize,
                 kSizeBoxSize, kSizeBoxSize);
}

CPWnd* FindWindowOf(QObject* object, WindowPart* part, QPoint* contentPoint,
                    const QPoint& pointInObject)
{
    *part = WindowPart::None;
    *contentPoint = QPoint();
    if (!object || !object->isWidgetType())
        return nullptr;
    QWidget* widget = static_cast<QWidget*>(object);
    QWidget* field = ActiveEditField();
    bool inField = false;
    for (QWidget* p = widget; p; p = p->parentWidget()) {
        if (p == field)
            inField = true;
        if (auto* content = dynamic_cast<ContentWidget*>(p)) {
            if (!content->owner)
                return nullptr;
            QPoint at = widget->mapTo(content, pointInObject);
            *contentPoint = at;
            if (inField)
                *part = WindowPart::EditField;
            else if (p != widget && dynamic_cast<QScrollBar*>(widget) &&
                     widget->parentWidget() == content)
                *part = WindowPart::ScrollBar;
            else if (SizeBoxRect(content->owner).contains(at))
                *part = WindowPart::SizeBox;
            else
                *part = WindowPart::Content;
            return content->owner;
        }
        if (auto* frame = dynamic_cast<FrameWidget*>(p)) {
            if (!frame->owner)
                return nullptr;
            QPoint inFrame = widget->mapTo(frame, pointInObject);
            *contentPoint = inFrame - frame->content->pos();
            if (p != widget)
                *part = WindowPart::MenuBar;
            else if (frame->CloseBoxRect().contains(inFrame))
                *part = WindowPart::CloseBox;
            else if (inFrame.y() < frame->CaptionHeight())
                *part = WindowPart::Caption;
            else
                *part = WindowPart::Frame;
            return frame->owner;
        }
        // A desktop window that is not one of ours: a popup menu, a message box.
        if (p->isWindow())
            return nullptr;
    }
    return nullptr;
}

// ---- Painting and order -----------------------------------------------------------------------

void DeliverPaint(CPWnd* window)
{
    if (!window || !IsWindowListed(window))
        return;
    CPWnd::Impl* impl = window->GetImpl();
    if (impl->painting)
        return;
    // A paint can come in the middle of someone else's drawing (a modal loop reads input while a
    // dialog is drawn on another window): that drawing's port, font and colours are kept.
    DrawPort* previousPort = GetDrawDC();
    DrawState previousState = gDrawState;
    FontRecord* previousFont = pCurFont;

    DispatchScope scope;
    impl->needsDraw = false;
    impl->painting = true;
    SetDrawDC(&impl->port);
    long handled = window->HandleEvent(kMsgPaint, 0, 0);
    if (IsWindowAlive(window)) {
        if (handled == 0 && IsWindowListed(window))
            window->OnDraw();
        impl->painting = false;
        if (impl->content)
            impl->content->update();
    }

    SetDrawDC(previousPort);
    gDrawState = previousState;
    pCurFont = previousFont;
}

void RefreshScreens()
{
    for (int i = 0; i < gWindowList.count; ++i) {
        CPWnd::Impl* impl = gWindowList.windows[i]->GetImpl();
        if (impl->content && impl->content->isVisible())
            impl->content->update();
    }
}

void BringToFront(CPWnd* window)
{
    if (!window || !window->GetImpl()->frame)
        return;
    FrameWidget* frame = window->GetImpl()->frame;
    frame->raise();
    if (frame->isWindow() && frame->isVisible())
        frame->activateWindow();
}
