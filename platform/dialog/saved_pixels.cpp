#include "platform/dialog/saved_pixels.h"

#include <algorithm>
#include <cstring>

#include "platform/draw/draw_port.h"

void SavedPixels::Save(DrawPort* target, const tagRECT& rect)
{
    port = target;
    pixels.clear();
    width = height = 0;
    if (!port)
        return;
    portWidth = port->Width();
    portHeight = port->Height();
    // Window pixels to image pixels, in 64 bits: the rectangle may lie anywhere.
    int64_t x0 = int64_t(rect.left) - port->OriginX();
    int64_t y0 = int64_t(rect.top) - port->OriginY();
    int64_t x1 = int64_t(rect.right) - port->OriginX() + 1;
    int64_t y1 = int64_t(rect.bottom) - port->OriginY() + 1;
    x0 = std::max<int64_t>(x0, 0);
    y0 = std::max<int64_t>(y0, 0);
    x1 = std::min<int64_t>(x1, portWidth);
    y1 = std::min<int64_t>(y1, portHeight);
    if (x1 <= x0 || y1 <= y0)
        return;
    left = static_cast<int>(x0);
    top = static_cast<int>(y0);
    width = static_cast<int>(x1 - x0);
    height = static_cast<int>(y1 - y0);
    pixels.resize(size_t(width) * size_t(height));
    for (int row = 0; row < height; ++row)
        std::memcpy(&pixels[size_t(row) * size_t(width)], port->Row(top + row) + left,
                    size_t(width) * sizeof(uint32_t));
}

void SavedPixels::Restore()
{
    if (!port || pixels.empty())
        return;
    if (port->Width() != portWidth || port->Height() != portHeight)
        return;
    for (int row = 0; row < height; ++row)
        std::memcpy(port->Row(top + row) + left, &pixels[size_t(row) * size_t(width)],
                    size_t(width) * sizeof(uint32_t));
}
