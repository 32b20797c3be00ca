// CDIB: creation, the header and palette block, row access and the plain whole-image copy.
// The cropping, scaling and 8-bit copies are in cdib_copy.cpp; the in-place row and byte
// swaps in cdib_flop.cpp.

#include "image/cdib.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "platform/base/memory.h"

namespace {

// Every pixel block is allocated this much longer than its rows: readers that step a few bytes
// past the last pixel of the last row stay inside the block.
constexpr size_t kSpareBytes = 4;

// Bytes of one storage row: pixel bytes padded up to a multiple of four. Depths below 8 bits
// come out as zero bytes per pixel, which is why Create refuses them.
long RowBytesFor(long width, int bitsPerPixel) { return (width * (bitsPerPixel / 8) + 3) & ~3L; }

// The header block holds the 40-byte header and then `entries` palette entries. It comes from
// ::operator new so that the header and palette structures live in it without a constructor.
BitmapInfoHeader* AllocHeaderBlock(int entries)
{
    size_t bytes = sizeof(BitmapInfoHeader) + sizeof(PaletteEntry) * static_cast<size_t>(entries);
    return static_cast<BitmapInfoHeader*>(::operator new(bytes, std::nothrow));
}

void FreeHeaderBlock(BitmapInfoHeader* header) { ::operator delete(header); }

}  // namespace

CDIB::CDIB(long width, long height, int bitsPerPixel)
{
    // A failed Create leaves the image empty; there is no one to tell.
    Create(width, height, bitsPerPixel);
}

CDIB::~CDIB()
{
    FreeHeaderBlock(header);
    if (bits != nullptr)
        FreeMemBlock(bits);
}

bool CDIB::Create(long width, long height, int bitsPerPixel)
{
    // Unchanged dimensions cost nothing and keep the pixels: the renderers call this every frame.
    if (HasShape(width, height, bitsPerPixel))
        return true;

    if (width < 1 || width > kMaxImageSide || height < 1 || height > kMaxImageSide)
        return false;
    // Only whole-byte depths hold pixels here; 2- and 4-bit images would get rows of zero bytes
    // and nothing in the program makes them, so they are refused like every other depth.
    if (bitsPerPixel != 8 && bitsPerPixel != 16 && bitsPerPixel != 24 && bitsPerPixel != 32)
        return false;
    int entries = bitsPerPixel == 8 ? 256 : 0;

    FreeHeaderBlock(header);
    header = nullptr;
    if (bits != nullptr)
        FreeMemBlock(bits);
    bits = nullptr;

    BitmapInfoHeader* newHeader = AllocHeaderBlock(entries);
    if (newHeader == nullptr)
        return false;
    long rowBytes = RowBytesFor(width, bitsPerPixel);
    size_t rowBlock = static_cast<size_t>(rowBytes) * static_cast<size_t>(height);
    auto* newBits = static_cast<unsigned char*>(AllocMemBlock(rowBlock + kSpareBytes));
    if (newBits == nullptr) {
        // No half-made image: without pixels the header goes too.
        FreeHeaderBlock(newHeader);
        return false;
    }
    // Only the rows are cleared; the spare bytes past them are never part of the picture.
    std::memset(newBits, 0, rowBlock);

    newHeader->biSize = sizeof(BitmapInfoHeader);
    newHeader->biWidth = static_cast<int32_t>(width);
    newHeader->biHeight = static_cast<int32_t>(height);  // positive: storage row 0 is the bottom
    newHeader->biPlanes = 1;
    newHeader->biBitCount = static_cast<uint16_t>(bitsPerPixel);
    newHeader->biCompression = 0;
    newHeader->biSizeImage = 0;
    newHeader->biXPelsPerMeter = 1600;
    newHeader->biYPelsPerMeter = 1600;
    newHeader->biClrUsed = 0;
    newHeader->biClrImportant = 0;

    // A grey ramp, so that an 8-bit image made here shows its indices as levels of grey.
    auto* palette = reinterpret_cast<PaletteEntry*>(newHeader + 1);
    for (int i = 0; i < entries; ++i) {
        auto level = static_cast<uint8_t>(i);
        palette[i] = PaletteEntry{level, level, level, 0};
    }

    header = newHeader;
    bits = newBits;
    nominalWidth = static_cast<int16_t>(width);
    nominalHeight = static_cast<int16_t>(height);
    return true;
}

int CDIB::GetWid(int multiple) const
{
    if (header == nullptr)
        return 0;
    int value = header->biWidth;
    // Always one whole multiple more, also for exact multiples: callers want slack.
    return multiple != 0 ? (value / multiple + 1) * multiple : value;
}

int CDIB::GetHgt(int multiple) const
{
    if (header == nullptr)
        return 0;
    auto value = static_cast<int>(std::abs(static_cast<long long>(header->biHeight)));
    return multiple != 0 ? (value / multiple + 1) * multiple : value;
}

int CDIB::GetBitCount() const { return header != nullptr ? header->biBitCount : 0; }

long CDIB::GetRowBytes() const
{
    if (header == nullptr)
        return 0;
    return RowBytesFor(header->biWidth, header->biBitCount);
}

unsigned char* CDIB::GetBitsAdd(int row) const
{
    if (!HasPixels())
        return nullptr;
    // No range check: the filters address rows they have bounded themselves.
    return bits + static_cast<ptrdiff_t>(row) * GetRowBytes();
}

PaletteEntry* CDIB::GetPalette() const
{
    if (header == nullptr)
        return nullptr;
    return reinterpret_cast<PaletteEntry*>(header + 1);
}

void CDIB::GetLine(int row, unsigned char* buffer, long maxBytes) const
{
    // `row` is a storage row (0 = bottom line); a row outside the image reads nothing.
    if (!HasPixels() || buffer == nullptr || row < 0 || row >= GetHgt() || maxBytes <= 0)
        return;
    long count = std::min(GetRowBytes(), maxBytes);
    std::memcpy(buffer, GetBitsAdd(row), static_cast<size_t>(count));
}

void CDIB::PutLine(int row, const unsigned char* buffer)
{
    // `row` is a storage row; the whole row is written, padding included.
    if (!HasPixels() || buffer == nullptr || row < 0 || row >= GetHgt())
        return;
    std::memcpy(GetBitsAdd(row), buffer, static_cast<size_t>(GetRowBytes()));
}

void CDIB::Swap(CDIB& other)
{
    std::swap(header, other.header);
    std::swap(bits, other.bits);
    std::swap(nominalWidth, other.nominalWidth);
    std::swap(nominalHeight, other.nominalHeight);
    std::swap(useRotFilter, other.useRotFilter);
}

bool CDIB::Copy(CDIB* destination, bool create) const
{
    if (destination == nullptr || !HasPixels())
        return false;
    if (create && !destination->Create(GetWid(), GetHgt(), GetBitCount()))
        return false;
    if (!destination->HasPixels())
        return false;
    // Without `create` the caller promises an image of the same shape; should it be smaller, only
    // what fits is copied. The palette stays the destination's own.
    size_t ours = static_cast<size_t>(GetRowBytes()) * static_cast<size_t>(GetHgt());
    size_t theirs = static_cast<size_t>(destination->GetRowBytes()) *
                    static_cast<size_t>(destination->GetHgt());
    std::memmove(destination->bits, bits, std::min(ours, theirs));
    return true;
}

bool CDIB::HasShape(long width, long height, int bitsPerPixel) const
{
    return HasPixels() && GetWid() == width && GetHgt() == height && GetBitCount() == bitsPerPixel;
}

std::unique_ptr<unsigned char[]> CDIB::NewLineBuffer(long bytes)
{
    if (bytes < 0)
        return nullptr;
    return std::unique_ptr<unsigned char[]>(
        new (std::nothrow) unsigned char[static_cast<size_t>(bytes) + 32]());
}
