#include "platform/wnd/button_pictures.h"

#include <QPainter>
#include <QPen>
#include <QPolygonF>
#include <algorithm>

#include "platform/base/to_qt.h"
#include "platform/draw/draw_port.h"
#include "platform/draw/draw_port_qt.h"

namespace {

enum class Symbol { Stop, Forwards, Backwards, AddKey, Apply };
enum class Look { Normal, Pressed, Disabled };

struct ButtonPicture {
    int number;
    Symbol symbol;
    Look look;
};

constexpr ButtonPicture kPictures[] = {
    {102, Symbol::Stop, Look::Normal},
    {103, Symbol::Forwards, Look::Pressed},
    {104, Symbol::Forwards, Look::Disabled},
    {105, Symbol::Backwards, Look::Normal},
    {106, Symbol::Backwards, Look::Pressed},
    {107, Symbol::Backwards, Look::Disabled},
    {108, Symbol::Forwards, Look::Normal},
    {109, Symbol::Stop, Look::Pressed},
    {110, Symbol::Stop, Look::Disabled},
    {111, Symbol::AddKey, Look::Normal},
    {112, Symbol::AddKey, Look::Pressed},
    {kPanelButtonPressed, Symbol::Apply, Look::Pressed},
    {kPanelButtonNormal, Symbol::Apply, Look::Normal},
};

const ButtonPicture* FindPicture(int number)
{
    for (const ButtonPicture& picture : kPictures) {
        if (picture.number == number)
            return &picture;
    }
    return nullptr;
}

constexpr QRgb kFace = 0xFFD4D4D4;
constexpr QRgb kPressedFace = 0xFFA8A8A8;
constexpr QRgb kLight = 0xFFFFFFFF;
constexpr QRgb kShade = 0xFF606060;
constexpr QRgb kEdge = 0xFF303030;
constexpr QRgb kInk = 0xFF000000;
constexpr QRgb kGreyInk = 0xFF909090;

void PaintFace(QPainter& p, const QRect& r, Look look)
{
    p.fillRect(r, QColor::fromRgb(look == Look::Pressed ? kPressedFace : kFace));
    p.setPen(QColor::fromRgb(kEdge));
    p.drawRect(r.adjusted(0, 0, -1, -1));
    if (r.width() < 4 || r.height() < 4)
        return;
    QRect inner = r.adjusted(1, 1, -2, -2);
    QColor topLeft = QColor::fromRgb(look == Look::Pressed ? kShade : kLight);
    QColor bottomRight = QColor::fromRgb(look == Look::Pressed ? kLight : kShade);
    p.setPen(topLeft);
    p.drawLine(inner.topLeft(), inner.topRight());
    p.drawLine(inner.topLeft(), inner.bottomLeft());
    p.setPen(bottomRight);
    p.drawLine(inner.bottomLeft(), inner.bottomRight());
    p.drawLine(inner.topRight(), inner.bottomRight());
}

void PaintSymbol(QPainter& p, const QRect& r, Symbol symbol, Look look)
{
    qreal side = std::min(r.width(), r.height()) * 0.5;
    if (side < 2)
        return;
    QPointF centre(r.left() + r.width() / 2.0, r.top() + r.height() / 2.0);
    if (look == Look::Pressed)
        centre += QPointF(1, 1);
    QColor ink = QColor::fromRgb(look == Look::Disabled ? kGreyInk : kInk);
    p.setPen(Qt::NoPen);
    p.setBrush(ink);
    qreal half = side / 2;
    switch (symbol) {
    case Symbol::Stop:
        p.drawRect(
            QRectF(centre.x() - half * 0.8, centre.y() - half * 0.8, side * 0.8, side * 0.8));
        break;
    case Symbol::Forwards:
        p.setRenderHint(QPainter::Antialiasing, true);
        p.drawPolygon(QPolygonF({QPointF(centre.x() - half * 0.8, centre.y() - half),
                                 QPointF(centre.x() + half, centre.y()),
                                 QPointF(centre.x() - half * 0.8, centre.y() + half)}));
        break;
    case Symbol::Backwards:
        p.setRenderHint(QPainter::Antialiasing, true);
        p.drawPolygon(QPolygonF({QPointF(centre.x() + half * 0.8, centre.y() - half),
                                 QPointF(centre.x() - half, centre.y()),
                                 QPointF(centre.x() + half * 0.8, centre.y() + half)}));
        break;
    case Symbol::AddKey: {
        qreal bar = std::max(2.0, side / 4);
        p.drawRect(QRectF(centre.x() - bar / 2, centre.y() - half, bar, side));
        p.drawRect(QRectF(centre.x() - half, centre.y() - bar / 2, side, bar));
        break;
    }
    case Symbol::Apply: {
        // A tick: a short stroke down to the bottom point and a long one up to the right.
        p.setRenderHint(QPainter::Antialiasing, true);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(ink, std::max(1.5, side / 5), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(centre.x() - half, centre.y()),
                                  QPointF(centre.x() - half * 0.3, centre.y() + half * 0.7),
                                  QPointF(centre.x() + half, centre.y() - half * 0.8)}));
        break;
    }
    }
}

}  // namespace

bool IsButtonPicture(int picture) { return FindPicture(picture) != nullptr; }

bool DrawButtonPicture(const tagRECT& rect, int picture)
{
    const ButtonPicture* found = FindPicture(picture);
    DrawPort* port = GetDrawDC();
    if (!found || !port || rect.right <= rect.left || rect.bottom <= rect.top)
        return false;
    QImage& image = port->GetBacking().image;
    if (image.isNull())
        return false;
    QPainter p(&image);
    // Window coordinates are taken from the drawing origin, as every drawing call takes them.
    p.translate(-port->OriginX(), -port->OriginY());
    QRect r = ToQRect(rect);
    PaintFace(p, r, found->look);
    PaintSymbol(p, r, found->symbol, found->look);
    return true;
}
