// Drawing a raster image on a window's port: the scaling and depth conversion belong to DIBDraw.

#include "image/cdib.h"
#include "platform/draw/dib_draw.h"

void CDIB::Draw(tagRECT& destination, void* drawContext)
{
    if (header == nullptr)
        return;
    tagRECT whole{0, 0, GetWid(), GetHgt()};
    Draw(destination, whole, drawContext);
}

void CDIB::Draw(tagRECT& destination, tagRECT& source, void* drawContext)
{
    if (header == nullptr)
        return;
    const unsigned char* palette =
        GetBitCount() == 8 ? reinterpret_cast<const unsigned char*>(GetPalette()) : nullptr;
    DIBDraw(destination, source, bits, GetWid(), header->biHeight, GetRowBytes(), GetBitCount(),
            static_cast<DrawPort*>(drawContext), palette);
}
