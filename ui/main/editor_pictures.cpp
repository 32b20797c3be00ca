#include "ui/main/editor_pictures.h"

#include "platform/draw/bitmap_draw.h"
#include "platform/draw/draw_shapes.h"

namespace {

// Paints the tile scaled to rect: the stripes keep the tile's proportions, so at twice the size
// each line is two pixels wide, every edge on a whole pixel.
bool PaintBackgroundTile(const tagRECT& rect, int /*picture*/)
{
    long width = rect.right - rect.left;
    if (width < 1 || rect.bottom <= rect.top)
        return false;
    DrawBar(kTileGround, rect);
    for (int column = 0; column < kBackgroundTileSize; column += kTileStripe) {
        int from = rect.left + static_cast<int>(column * width / kBackgroundTileSize);
        int to = rect.left + static_cast<int>((column + 1) * width / kBackgroundTileSize);
        if (to > from)
            DrawBar(kTileLine, {from, rect.top, to, rect.bottom});
    }
    return true;
}

}  // namespace

void RegisterEditorPictures() { RegisterBitmapPainter(kBackgroundTile, PaintBackgroundTile); }
