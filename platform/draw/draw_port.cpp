#include "platform/draw/draw_port.h"

#include "platform/draw/draw_port_qt.h"

namespace {
DrawPort* gCurrentPort = nullptr;
}

DrawPort::DrawPort() : backing(std::make_unique<Backing>()) {}

DrawPort::~DrawPort()
{
    if (gCurrentPort == this)
        gCurrentPort = nullptr;
}

void DrawPort::Resize(int width, int height)
{
    if (width < 1 || height < 1) {
        backing->image = QImage();
        return;
    }
    backing->image = QImage(width, height, QImage::Format_RGB32);
    backing->image.fill(0xFFFFFFFFu);
}

int DrawPort::Width() const { return backing->image.width(); }

int DrawPort::Height() const { return backing->image.height(); }

uint32_t DrawPort::PixelAt(int x, int y) const
{
    if (!backing->image.valid(x, y))
        return 0;
    return reinterpret_cast<const uint32_t*>(backing->image.constScanLine(y))[x];
}

uint32_t* DrawPort::Row(int y)
{
    if (y < 0 || y >= backing->image.height())
        return nullptr;
    return reinterpret_cast<uint32_t*>(backing->image.scanLine(y));
}

void DrawPort::SetOrigin(int x, int y) { backing->image.setOffset(QPoint(x, y)); }

int DrawPort::OriginX() const { return backing->image.offset().x(); }

int DrawPort::OriginY() const { return backing->image.offset().y(); }

void SetDrawDC(DrawPort* port) { gCurrentPort = port; }

DrawPort* GetDrawDC() { return gCurrentPort; }
