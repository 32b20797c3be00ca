// The BMP reader: uncompressed bottom-up files of 8, 16, 24 or 32 bits per pixel, whose padded
// rows are the image's own storage rows and are read in one piece.

#include <cstring>

#include "image/cdib.h"
#include "image/picture_read.h"
#include "platform/file/endian.h"

namespace {

constexpr int kFileHeaderBytes = 14;
constexpr int kInfoHeaderBytes = 40;
constexpr long kPaletteBytes = 256 * 4;

bool IsBmpMark(const unsigned char* bytes)
{
    return (bytes[0] == 'B' && bytes[1] == 'M') || (bytes[0] == 'M' && bytes[1] == 'B');
}

}  // namespace

int CDIB::LoadBmp(CPFile* file)
{
    unsigned char head[kFileHeaderBytes + kInfoHeaderBytes];
    if (int opened = ReadFileHead(header != nullptr, file, head, sizeof head);
        opened != kPictureLoaded)
        return opened;
    if (!IsBmpMark(head))
        return kPictureUnreadable;
    // Every field little-endian, assembled byte by byte.
    const uint32_t statedSize = Endian(head + 2, 4, false);
    const uint32_t dataOffset = Endian(head + 10, 4, false);
    const uint32_t infoSize = Endian(head + 14, 4, false);
    const uint32_t width = Endian(head + 18, 4, false);
    const uint32_t height = Endian(head + 22, 4, false);
    const int bitCount = static_cast<int>(Endian(head + 28, 2, false));
    const uint32_t compression = Endian(head + 30, 4, false);

    // The 12-byte header of the oldest files lays its fields out differently.
    if (infoSize < kInfoHeaderBytes)
        return kPictureUnreadable;
    if ((compression & 0xFF) != 0)
        return kPictureCompressed;
    // Taken as unsigned: a top-down file (negative height) is refused here as too large.
    if (width > kMaxImageSide || height > kMaxImageSide)
        return kPictureTooLarge;
    if (bitCount < 8)
        return kPictureFewColours;
    // An empty picture or a depth with no whole-byte pixels cannot be held; that is the file's
    // fault, not a lack of memory.
    if (width == 0 || height == 0 ||
        (bitCount != 8 && bitCount != 16 && bitCount != 24 && bitCount != 32))
        return kPictureUnreadable;
    // Create keeps an image of the same shape as it is, old rows included.
    const bool reused = GetWid() == static_cast<int>(width) &&
                        GetHgt() == static_cast<int>(height) && GetBitCount() == bitCount;
    if (!Create(width, height, bitCount))
        return kPictureNoMemory;

    if (bitCount == 8) {
        // 256 entries straight after the information header, whatever its colour count says;
        // a file that ends sooner leaves the grey ramp in the entries it lacks.
        ResetGreyPalette(this);
        const int64_t paletteAt = kFileHeaderBytes + static_cast<int64_t>(infoSize);
        const long available = std::min(kPaletteBytes, BytesFrom(file, paletteAt));
        if (available > 0) {
            unsigned char entries[kPaletteBytes];
            file->Seek(static_cast<long>(paletteAt), kSeekFromStart);
            if (ReadExact(file, entries, available))
                std::memcpy(GetPalette(), entries, static_cast<size_t>(available));
        }
    }

    // The rows as they lie from the stated offset: as many bytes as the stated file size leaves
    // after it, at most the whole row block; the whole block when the size leaves nothing.
    const long rowBlock = GetRowBytes() * static_cast<long>(height);
    int64_t stated = static_cast<int64_t>(statedSize) - static_cast<int64_t>(dataOffset);
    const long count = (stated <= 0 || stated > rowBlock) ? rowBlock : static_cast<long>(stated);
    file->Seek(static_cast<long>(dataOffset), kSeekFromStart);
    if (!ReadExact(file, bits, count))
        return kPictureUnreadable;
    // A reused image would otherwise keep old rows below the ones read; a new one is all zero.
    if (reused)
        std::memset(bits + count, 0, static_cast<size_t>(rowBlock - count));
    return kPictureLoaded;
}
