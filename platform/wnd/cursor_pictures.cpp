#include "platform/wnd/cursor_pictures_qt.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <functional>

#include "platform/wnd/cursor.h"

namespace {

constexpr int kCursorSize = 32;
constexpr qreal kCentre = kCursorHotSpot + 0.5;  // the middle of the hot spot's pixel

using Figure = std::function<void(QPainter&)>;

// An arrow head with its tip at `tip`, pointing along the unit direction (dx, dy).
QPolygonF Head(QPointF tip, qreal dx, qreal dy)
{
    constexpr qreal kLength = 5.0;
    constexpr qreal kHalfWidth = 3.5;
    QPointF back(tip.x() - dx * kLength, tip.y() - dy * kLength);
    QPointF side(-dy * kHalfWidth, dx * kHalfWidth);
    return QPolygonF({tip, back + side, back - side});
}

// A straight shaft from `from` to `to` with a head at each end.
void DoubleArrow(QPainter& p, QPointF from, QPointF to)
{
    qreal dx = to.x() - from.x();
    qreal dy = to.y() - from.y();
    qreal length = std::hypot(dx, dy);
    dx /= length;
    dy /= length;
    p.drawLine(from, to);
    p.drawPolygon(Head(to, dx, dy));
    p.drawPolygon(Head(from, -dx, -dy));
}

// Paints the figure twice: a wide white pass for the outline, then the black shape on it; at
// `scale` image pixels per cursor pixel, so a screen of that density shows it sharp.
QImage PaintFigure(const Figure& figure, int scale)
{
    QImage image(kCursorSize * scale, kCursorSize * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing, true);
    const QColor colours[2] = {Qt::white, Qt::black};
    const qreal widths[2] = {5.0, 2.0};
    for (int pass = 0; pass < 2; ++pass) {
        p.setPen(QPen(colours[pass], widths[pass], Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        p.setBrush(colours[pass]);
        figure(p);
    }
    return image;
}

void DrawMove(QPainter& p)
{
    DoubleArrow(p, QPointF(kCentre - 12, kCentre), QPointF(kCentre + 12, kCentre));
    DoubleArrow(p, QPointF(kCentre, kCentre - 12), QPointF(kCentre, kCentre + 12));
}

void DrawResize(QPainter& p)
{
    DoubleArrow(p, QPointF(kCentre - 10, kCentre - 10), QPointF(kCentre + 10, kCentre + 10));
    // The corner being pulled.
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({QPointF(kCentre + 3, kCentre - 9), QPointF(kCentre + 9, kCentre - 9),
                              QPointF(kCentre + 9, kCentre - 3)}));
}

void DrawSlide(QPainter& p)
{
    DoubleArrow(p, QPointF(kCentre - 12, kCentre), QPointF(kCentre + 12, kCentre));
    p.drawLine(QPointF(kCentre, kCentre - 8), QPointF(kCentre, kCentre + 8));
}

void DrawVertical(QPainter& p)
{
    DoubleArrow(p, QPointF(kCentre, kCentre - 12), QPointF(kCentre, kCentre + 12));
    p.drawLine(QPointF(kCentre - 8, kCentre), QPointF(kCentre + 8, kCentre));
}

void DrawRotate(QPainter& p)
{
    // Three quarters of a circle round the hot spot, the arrow head at its clockwise end.
    constexpr qreal kRadius = 9.0;
    QRectF circle(kCentre - kRadius, kCentre - kRadius, 2 * kRadius, 2 * kRadius);
    QPainterPath arc;
    arc.arcMoveTo(circle, 90);
    arc.arcTo(circle, 90, -270);
    QBrush brush = p.brush();
    p.setBrush(Qt::NoBrush);
    p.drawPath(arc);
    p.setBrush(brush);
    // The arc ends at the top of the circle heading left.
    p.drawPolygon(Head(QPointF(kCentre - 4, kCentre - kRadius), -1.0, 0.0));
    p.drawEllipse(QPointF(kCentre, kCentre), 1.0, 1.0);
}

void DrawTilt(QPainter& p)
{
    // A frame leaning over, and above it the way it leans.
    QBrush brush = p.brush();
    p.setBrush(Qt::NoBrush);
    p.drawPolygon(
        QPolygonF({QPointF(kCentre - 6, kCentre - 3), QPointF(kCentre + 11, kCentre - 3),
                   QPointF(kCentre + 6, kCentre + 11), QPointF(kCentre - 11, kCentre + 11)}));
    p.setBrush(brush);
    DoubleArrow(p, QPointF(kCentre - 9, kCentre - 9), QPointF(kCentre + 9, kCentre - 9));
}

void DrawPlus(QPainter& p)
{
    p.drawRect(QRectF(kCentre - 2, kCentre - 9, 4, 18));
    p.drawRect(QRectF(kCentre - 9, kCentre - 2, 18, 4));
}

}  // namespace

QImage DrawCursorPicture(int image, int scale)
{
    scale = std::clamp(scale, 1, kLargestCursorScale);
    const auto paint = [scale](const Figure& figure) { return PaintFigure(figure, scale); };
    switch (image) {
    case kCursorImageMove:
        return paint(DrawMove);
    case kCursorImageResize:
        return paint(DrawResize);
    case kCursorImageSlide:
        return paint(DrawSlide);
    case kCursorImageVertical:
        return paint(DrawVertical);
    case kCursorImageRotate:
        return paint(DrawRotate);
    case kCursorImageTilt:
        return paint(DrawTilt);
    case kCursorImagePlus:
        return paint(DrawPlus);
    default:
        return QImage();
    }
}

int CursorScaleFor(qreal devicePixelRatio)
{
    if (!(devicePixelRatio > 1.0))
        return 1;
    return std::min(static_cast<int>(std::ceil(devicePixelRatio - 0.01)), kLargestCursorScale);
}

QCursor MakeProgramCursor(int image)
{
    qreal ratio = 1.0;
    for (QScreen* screen : QGuiApplication::screens())
        ratio = std::max(ratio, screen->devicePixelRatio());
    int scale = CursorScaleFor(ratio);
    QImage picture = DrawCursorPicture(image, scale);
    if (picture.isNull())
        return QCursor(Qt::ArrowCursor);
    // X11 takes the hot spot in the picture's own pixels; the other platforms in cursor pixels.
    int hotSpot = kCursorHotSpot;
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        hotSpot *= scale;
    return QCursor(QPixmap::fromImage(picture), hotSpot, hotSpot);
}
