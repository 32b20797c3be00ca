#include "platform/draw/bitmap_draw.h"

#include <algorithm>
#include <map>
#include <vector>

#include "platform/draw/draw_port.h"

namespace {

struct StoredBitmap {
    std::vector<uint32_t> pixels;  // 0xAARRGGBB, top row first
    int width = 0;
    int height = 0;
    BitmapPainter painter = nullptr;
};

std::map<int, StoredBitmap>& Bitmaps()
{
    static std::map<int, StoredBitmap> bitmaps;
    return bitmaps;
}

using Wide = __int128;

}  // namespace

bool RegisterBitmap(int picture, const uint32_t* pixels, int width, int height)
{
    if (!pixels || width < 1 || height < 1)
        return false;
    StoredBitmap stored;
    stored.pixels.assign(pixels, pixels + size_t(width) * size_t(height));
    stored.width = width;
    stored.height = height;
    Bitmaps()[picture] = std::move(stored);
    return true;
}

bool RegisterBitmapPainter(int picture, BitmapPainter painter)
{
    if (!painter) {
        ForgetBitmap(picture);
        return false;
    }
    StoredBitmap stored;
    stored.painter = painter;
    Bitmaps()[picture] = std::move(stored);
    return true;
}

void ForgetBitmap(int picture) { Bitmaps().erase(picture); }

bool HasBitmap(int picture) { return Bitmaps().count(picture) != 0; }

bool DrawBitmap(const tagRECT& rect, int picture, int mode)
{
    auto found = Bitmaps().find(picture);
    DrawPort* port = GetDrawDC();
    if (found == Bitmaps().end() || !port || port->Width() < 1 || port->Height() < 1 ||
        rect.right <= rect.left || rect.bottom <= rect.top)
        return false;
    const StoredBitmap& bitmap = found->second;
    if (bitmap.painter)
        return bitmap.painter(rect, picture);

    const int64_t destWidth = int64_t(rect.right) - rect.left;
    const int64_t destHeight = int64_t(rect.bottom) - rect.top;
    const int64_t imageLeft = int64_t(rect.left) - port->OriginX();
    const int64_t imageTop = int64_t(rect.top) - port->OriginY();
    const int64_t firstColumn = std::max<int64_t>(0, -imageLeft);
    const int64_t endColumn = std::min<int64_t>(destWidth, port->Width() - imageLeft);
    const int64_t firstRow = std::max<int64_t>(0, -imageTop);
    const int64_t endRow = std::min<int64_t>(destHeight, port->Height() - imageTop);
    const bool transparent = mode == kBitmapTransparent;
    for (int64_t y = firstRow; y < endRow; ++y) {
        const uint32_t* source =
            bitmap.pixels.data() +
            static_cast<int64_t>(Wide(y) * bitmap.height / destHeight) * bitmap.width;
        uint32_t* out = port->Row(static_cast<int>(imageTop + y));
        for (int64_t i = firstColumn; i < endColumn; ++i) {
            uint32_t pixel = source[static_cast<int64_t>(Wide(i) * bitmap.width / destWidth)];
            if (transparent && (pixel >> 24) == 0)
                continue;
            out[imageLeft + i] = 0xFF000000u | pixel;
        }
    }
    return true;
}
