// Building and edging the alpha channel: a one-pixel border of one alpha for the renderer, and an
// alpha channel taken from a matte image of the same size.

#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "image/cdib.h"

namespace {

// Blue, green and red of pixel x of a storage row of `pixelBytes` bytes per pixel. Palette
// pixels are looked up; 16-bit words are little-endian 5-5-5, each field shifted up by three
// bits; deeper pixels give their first three bytes.
std::array<unsigned char, 3> ReadColour(const unsigned char* line, int x, int pixelBytes,
                                        const PaletteEntry* palette)
{
    switch (pixelBytes) {
    case 1: {
        const PaletteEntry& entry = palette[line[x]];
        return {entry.blue, entry.green, entry.red};
    }
    case 2: {
        unsigned word = line[2 * x] | (line[2 * x + 1] << 8);
        return {static_cast<unsigned char>((word & 0x1F) << 3),
                static_cast<unsigned char>(((word >> 5) & 0x1F) << 3),
                static_cast<unsigned char>(((word >> 10) & 0x1F) << 3)};
    }
    default: {
        const unsigned char* pixel = line + static_cast<long>(x) * pixelBytes;
        return {pixel[0], pixel[1], pixel[2]};
    }
    }
}

}  // namespace

bool CDIB::SetAlphaEdge(int alpha)
{
    if (!HasPixels() || GetBitCount() != 32)
        return false;
    auto value = static_cast<unsigned char>(alpha & 0xFF);
    int width = GetWid();
    int height = GetHgt();
    for (int row = 0; row < height; ++row) {
        unsigned char* line = GetBitsAdd(row);
        if (row == 0 || row == height - 1) {
            for (int x = 0; x < width; ++x)
                line[x * 4 + 3] = value;
        } else {
            line[3] = value;
            line[(width - 1) * 4 + 3] = value;
        }
    }
    return true;
}

bool CDIB::AddAlpha(CDIB* matte)
{
    if (!HasPixels() || matte == nullptr || !matte->HasPixels())
        return false;
    int width = GetWid();
    int height = GetHgt();
    if (matte->GetWid() != width || matte->GetHgt() != height)
        return false;

    // The old pixels (and, for a palette image, its colours) are kept aside while the image is
    // made again at 32 bits.
    int oldBytes = PixelBytes();
    long oldRowBytes = GetRowBytes();
    size_t blockBytes = static_cast<size_t>(oldRowBytes) * static_cast<size_t>(height);
    std::unique_ptr<unsigned char[]> oldBits(new (std::nothrow) unsigned char[blockBytes]);
    if (!oldBits)
        return false;
    std::memcpy(oldBits.get(), bits, blockBytes);
    std::array<PaletteEntry, 256> oldPalette{};
    if (oldBytes == 1)
        std::memcpy(oldPalette.data(), GetPalette(), sizeof(oldPalette));

    // A matte that is this very image is read from the kept pixels: the re-made rows no longer
    // hold it.
    bool selfMatte = matte == this;
    int matteBytes = selfMatte ? oldBytes : matte->PixelBytes();
    long matteRowBytes = selfMatte ? oldRowBytes : matte->GetRowBytes();

    // Everything that can run out of memory is taken before the image is made again, so that a
    // refusal up to here leaves it as it was.
    std::unique_ptr<unsigned char[]> matteLine = NewLineBuffer(matteRowBytes);
    std::unique_ptr<unsigned char[]> outLine = NewLineBuffer(static_cast<long>(width) * 4);
    if (!matteLine || !outLine)
        return false;
    if (!Create(width, height, 32) || !HasShape(width, height, 32))
        return false;

    for (int row = 0; row < height; ++row) {
        const unsigned char* oldLine = oldBits.get() + static_cast<size_t>(row) * oldRowBytes;
        if (selfMatte)
            std::memcpy(matteLine.get(), oldLine, static_cast<size_t>(matteRowBytes));
        else
            matte->GetLine(row, matteLine.get(), matteRowBytes);
        unsigned char* out = outLine.get();
        for (int x = 0; x < width; ++x, out += 4) {
            std::array<unsigned char, 3> colour =
                ReadColour(oldLine, x, oldBytes, oldPalette.data());
            out[0] = colour[0];
            out[1] = colour[1];
            out[2] = colour[2];
            // The matte's first byte: its palette index, the low byte of its word, or its blue.
            out[3] = matteLine[static_cast<size_t>(x) * matteBytes];
        }
        PutLine(row, outLine.get());
    }
    return true;
}
