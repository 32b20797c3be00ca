// CDIB: the copies that make a different image from this one: a cropped copy (CopyCrop), a
// nearest-neighbour scaled copy inside a border (CopyScale) and an 8-bit copy (Create8Bit).
// All of them work a storage row at a time through line buffers of row size + 32 bytes.

#include "image/cdib.h"

#include <algorithm>
#include <cstring>

namespace {

// One pixel on its way between depths.
struct Colour {
    uint8_t blue;
    uint8_t green;
    uint8_t red;
    uint8_t alpha;
};

// Pixel x of a storage row of the given depth. 16-bit words are little-endian 5-5-5, each field
// shifted up by three bits; only a 32-bit pixel carries alpha.
Colour ReadPixel(const unsigned char* line, long x, int bitsPerPixel, const PaletteEntry* palette)
{
    switch (bitsPerPixel) {
    case 8: {
        const PaletteEntry& entry = palette[line[x]];
        return Colour{entry.blue, entry.green, entry.red, 0};
    }
    case 16: {
        unsigned word = line[2 * x] | (line[2 * x + 1] << 8);
        return Colour{static_cast<uint8_t>((word & 0x1F) << 3),
                      static_cast<uint8_t>(((word >> 5) & 0x1F) << 3),
                      static_cast<uint8_t>(((word >> 10) & 0x1F) << 3), 0};
    }
    case 24:
        return Colour{line[3 * x], line[3 * x + 1], line[3 * x + 2], 0};
    default:
        return Colour{line[4 * x], line[4 * x + 1], line[4 * x + 2], line[4 * x + 3]};
    }
}

// Writes pixel x of a storage row of depth 16, 24 or 32.
void WritePixel(unsigned char* line, long x, int bitsPerPixel, Colour colour)
{
    switch (bitsPerPixel) {
    case 16: {
        unsigned word =
            (colour.blue >> 3) | ((colour.green & 0xF8) << 2) | ((colour.red & 0xF8) << 7);
        line[2 * x] = static_cast<unsigned char>(word & 0xFF);
        line[2 * x + 1] = static_cast<unsigned char>(word >> 8);
        break;
    }
    case 24:
        line[3 * x] = colour.blue;
        line[3 * x + 1] = colour.green;
        line[3 * x + 2] = colour.red;
        break;
    default:
        line[4 * x] = colour.blue;
        line[4 * x + 1] = colour.green;
        line[4 * x + 2] = colour.red;
        line[4 * x + 3] = colour.alpha;
        break;
    }
}

// The source row or column for an offset into the scaled area: truncated toward zero in single
// precision, as the scaler always has. The clamp only catches float rounding at the far edge and
// huge negative borders; in range it changes nothing.
long SourceIndex(long long offset, float step, long size)
{
    auto index = static_cast<long>(static_cast<float>(offset) * step);
    return std::clamp(index, 0L, size - 1);
}

}  // namespace

bool CDIB::CopyCrop(CDIB* destination, const tagRECT& rectangle) const
{
    if (destination == nullptr || destination == this || !HasPixels())
        return false;
    long long cropWidth = static_cast<long long>(rectangle.right) - rectangle.left;
    long long cropHeight = static_cast<long long>(rectangle.bottom) - rectangle.top;
    // A reversed, empty or oversized rectangle is refused by the destination's Create.
    int bitCount = GetBitCount();
    if (!destination->Create(static_cast<long>(cropWidth), static_cast<long>(cropHeight), bitCount))
        return false;
    if (!destination->HasShape(static_cast<long>(cropWidth), static_cast<long>(cropHeight),
                               bitCount))
        return false;
    if (bitCount == 8)
        std::memcpy(destination->GetPalette(), GetPalette(), 256 * sizeof(PaletteEntry));

    long long pixelBytes = PixelBytes();
    long long pictureBytes = pixelBytes * GetWid();  // pixel bytes of one row, padding left out
    long destinationRowBytes = destination->GetRowBytes();
    std::unique_ptr<unsigned char[]> line = NewLineBuffer(destinationRowBytes);
    if (!line)
        return false;

    // The buffer holds one destination row; its byte k is byte (pixelBytes × left + k) of the
    // picture row, so everything left, right, above or below the picture stays cleared (black).
    long long firstByte = pixelBytes * rectangle.left;
    long long from = std::max(firstByte, 0LL);
    long long to = std::min(firstByte + destinationRowBytes, pictureBytes);
    int height = GetHgt();
    for (long long i = 0; i < cropHeight; ++i) {
        long long y = rectangle.top + i;  // picture line, top-down
        std::memset(line.get(), 0, static_cast<size_t>(destinationRowBytes));
        // Picture line y comes from storage row height - y, not height - 1 - y: the one-line
        // shift is kept on purpose, the stage and the renderers position crops with it. It also
        // makes line 0 always black.
        if (y > 0 && y < height && from < to)
            std::memcpy(line.get() + (from - firstByte),
                        GetBitsAdd(static_cast<int>(height - y)) + from,
                        static_cast<size_t>(to - from));
        // The first line is the top of the destination: its highest storage row.
        destination->PutLine(static_cast<int>(cropHeight - 1 - i), line.get());
    }
    return true;
}

bool CDIB::CopyScale(CDIB* destination, long borderColour, int border) const
{
    if (destination == nullptr || !HasPixels() || !destination->HasPixels())
        return false;
    int sourceBits = GetBitCount();
    int destinationBits = destination->GetBitCount();
    long sourceWidth = GetWid();
    long sourceHeight = GetHgt();
    long destinationWidth = destination->GetWid();
    long destinationHeight = destination->GetHgt();
    if (sourceBits == destinationBits && sourceHeight == destinationHeight &&
        sourceWidth == destinationWidth && border == 0)
        return Copy(destination, false);
    // Pixels are written as 16, 24 or 32 bits only; reading and writing one image at once
    // would scale rows that were already overwritten.
    if (destinationBits == 8 || destination == this)
        return false;

    // The scaled area inside the border, in destination pixels; 64-bit so that any border fits.
    long long innerLeft = border;
    long long innerRightEnd = static_cast<long long>(destinationWidth) - border;
    long long innerBottom = border;
    long long innerTopEnd = static_cast<long long>(destinationHeight) - border;
    long long innerWidth = innerRightEnd - innerLeft;
    long long innerHeight = innerTopEnd - innerBottom;
    // Source pixels per destination pixel, in single precision; unused when the border leaves
    // no scaled area.
    float stepX =
        innerWidth > 0 ? static_cast<float>(sourceWidth) / static_cast<float>(innerWidth) : 0.0f;
    float stepY =
        innerHeight > 0 ? static_cast<float>(sourceHeight) / static_cast<float>(innerHeight) : 0.0f;

    Colour frame{static_cast<uint8_t>((borderColour >> 16) & 0xFF),
                 static_cast<uint8_t>((borderColour >> 8) & 0xFF),
                 static_cast<uint8_t>(borderColour & 0xFF), 0};

    std::unique_ptr<unsigned char[]> sourceLine = NewLineBuffer(GetRowBytes());
    std::unique_ptr<unsigned char[]> destinationLine = NewLineBuffer(destination->GetRowBytes());
    if (!sourceLine || !destinationLine)
        return false;
    long sourceLineBytes = GetRowBytes() + 32;
    const PaletteEntry* palette = GetPalette();

    // Storage rows map to storage rows: both images are bottom-up.
    long loadedRow = -1;
    for (long y = 0; y < destinationHeight; ++y) {
        bool rowInside = y >= innerBottom && y < innerTopEnd;
        if (rowInside) {
            long sourceRow = SourceIndex(y - innerBottom, stepY, sourceHeight);
            if (sourceRow != loadedRow) {
                GetLine(static_cast<int>(sourceRow), sourceLine.get(), sourceLineBytes);
                loadedRow = sourceRow;
            }
        }
        for (long x = 0; x < destinationWidth; ++x) {
            Colour colour = frame;
            if (rowInside && x >= innerLeft && x < innerRightEnd) {
                long sourceColumn = SourceIndex(x - innerLeft, stepX, sourceWidth);
                colour = ReadPixel(sourceLine.get(), sourceColumn, sourceBits, palette);
            }
            WritePixel(destinationLine.get(), x, destinationBits, colour);
        }
        destination->PutLine(static_cast<int>(y), destinationLine.get());
    }
    return true;
}

bool CDIB::Create8Bit(CDIB* destination, bool grey) const
{
    if (destination == nullptr || destination == this || !HasPixels())
        return false;
    long width = GetWid();
    long height = GetHgt();
    if (!destination->Create(width, height, 8) || !destination->HasShape(width, height, 8))
        return false;

    int sourceBits = GetBitCount();
    std::unique_ptr<unsigned char[]> sourceLine = NewLineBuffer(GetRowBytes());
    std::unique_ptr<unsigned char[]> indexLine = NewLineBuffer(destination->GetRowBytes());
    if (!sourceLine || !indexLine)
        return false;
    long sourceLineBytes = GetRowBytes() + 32;

    for (int row = 0; row < height; ++row) {
        GetLine(row, sourceLine.get(), sourceLineBytes);
        if (sourceBits == 8) {
            destination->PutLine(row, sourceLine.get());
            continue;
        }
        const unsigned char* pixel = sourceLine.get();
        for (long x = 0; x < width; ++x) {
            unsigned red;
            unsigned green;
            unsigned blue;
            if (sourceBits > 16) {
                // Three bytes per pixel also for 32-bit sources, on purpose: callers reduce
                // 32-bit images to 24 bits first. The stride stays inside a 32-bit row.
                blue = pixel[0];
                green = pixel[1];
                red = pixel[2];
                pixel += 3;
            } else {
                unsigned word = pixel[0] | (pixel[1] << 8);  // little-endian 5-5-5
                red = (word >> 7) & 0xF8;
                green = (word >> 2) & 0xF8;
                blue = (word << 3) & 0xF8;
                pixel += 2;
            }
            unsigned index;
            if (grey) {
                float level = static_cast<float>(red) * 0.3f + static_cast<float>(green) * 0.59f +
                              static_cast<float>(blue) * 0.11f;
                index = std::min(static_cast<unsigned>(level), 255u);
            } else {
                index = (red & 0xE0) | ((green >> 3) & 0x1C) | (blue >> 6);  // 3-3-2
            }
            indexLine[static_cast<size_t>(x)] = static_cast<unsigned char>(index);
        }
        destination->PutLine(row, indexLine.get());
    }

    PaletteEntry* palette = destination->GetPalette();
    for (int i = 0; i < 256; ++i) {
        if (grey) {
            auto level = static_cast<uint8_t>(i);
            palette[i] = PaletteEntry{level, level, level, 0};
        } else {
            palette[i] = PaletteEntry{static_cast<uint8_t>((i & 3) << 5),
                                      static_cast<uint8_t>((i * 8) & 0xE0),
                                      static_cast<uint8_t>(i & 0xE0), 0};
        }
    }
    if (sourceBits == 8)
        std::memcpy(palette, GetPalette(), 256 * sizeof(PaletteEntry));
    return true;
}
