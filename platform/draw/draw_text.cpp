#include "platform/draw/draw_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <QString>
#include <cstdint>
#include <cstring>

#include "platform/base/to_qt.h"
#include "platform/base/utf8.h"
#include "platform/draw/coverage.h"
#include "platform/draw/draw_port.h"
#include "platform/draw/draw_port_qt.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"
#include "platform/draw/font_qt.h"

namespace {

constexpr size_t kMaxTextBytes = 255;

}  // namespace

void DrawText(long colour, const char* text, int x, int y, int align)
{
    SetColor(colour);
    DrawPort* port = GetDrawDC();
    if (!port || !text || !*text)
        return;
    QImage& image = port->GetBacking().image;
    if (image.isNull())
        return;

    char cut[kMaxTextBytes + 1];
    CopyUtf8(cut, text, kMaxTextBytes);
    const int64_t width = GetTextWidth(cut);
    int64_t start = x;
    if (align == kTextRight)
        start = int64_t(x) - width;
    else if (align == kTextCentre)
        start = int64_t(x) - width / 2;

    QFont font = CurrentQtFont();
    font.setStyleStrategy(QFont::NoAntialias);
    QFontMetrics metrics(font);
    // Image pixels from here on; a text wholly outside the image is not handed to Qt at all, so
    // no coordinate reaches it that it cannot hold.
    const int64_t left = start - port->OriginX();
    const int64_t baseline = int64_t(y) + gDrawState.fontSize - port->OriginY();
    const int64_t slack = metrics.maxWidth() + 2;  // italic overhang and the like
    if (left - slack > image.width() || left + width + slack < 0 ||
        baseline - metrics.ascent() - slack > image.height() ||
        baseline + metrics.descent() + slack < 0)
        return;

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::TextAntialiasing, false);
    if (gDrawState.textOpaque) {
        QRect box(int(left), int(baseline - metrics.ascent()), int(width),
                  metrics.ascent() + metrics.descent());
        painter.fillRect(box, ToQColor(gDrawState.backColor));
    }
    painter.setFont(font);
    painter.setPen(ToQColor(colour));
    painter.drawText(QPointF(double(left), double(baseline)), ToQString(cut));
}
