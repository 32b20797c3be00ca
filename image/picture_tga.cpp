// The Targa reader: uncompressed files (image types 0 to 3) of 8, 16, 24 or 32 bits per pixel.
// Rows are read in file order into storage rows 0, 1, 2, ...; for the usual bottom-left origin
// that is already the image's order, a top-left origin is put right with Flop afterwards.

#include <cstring>

#include "image/cdib.h"
#include "image/picture_read.h"
#include "platform/file/endian.h"

namespace {

constexpr int kHeaderBytes = 18;
constexpr int kTopLeftOrigin = 0x20;  // descriptor bit 5

}  // namespace

int CDIB::LoadTga(CPFile* file)
{
    unsigned char head[kHeaderBytes];
    if (int opened = ReadFileHead(header != nullptr, file, head, sizeof head);
        opened != kPictureLoaded)
        return opened;
    const int idLength = head[0];
    const int colourMapType = head[1];
    const int imageType = head[2];
    const long mapLength = static_cast<long>(Endian(head + 5, 2, false));
    const int mapEntryBits = head[7];
    const long width = static_cast<long>(Endian(head + 12, 2, false));
    const long height = static_cast<long>(Endian(head + 14, 2, false));
    const int depth = head[16];
    const int descriptor = head[17];

    if ((depth != 8 && depth != 16 && depth != 24 && depth != 32) || width < 1 || height < 1)
        return kPictureUnreadable;
    // Run-length types (9 to 11) and anything newer are not read here.
    if (imageType > 3)
        return kPictureCompressed;
    if (width > kMaxImageSide || height > kMaxImageSide)
        return kPictureTooLarge;
    if (!Create(width, height, depth))
        return kPictureNoMemory;
    nominalWidth = static_cast<int16_t>(width);
    nominalHeight = static_cast<int16_t>(height);
    // The colour map is skipped, not used: 8-bit Targa pictures show their indices as grey.
    ResetGreyPalette(this);

    // Past the ID field and the colour map (present only when the map type says so).
    long skip = idLength;
    if (colourMapType == 1)
        skip += mapLength * ((mapEntryBits + 7) / 8);
    file->Seek(kHeaderBytes + skip, kSeekFromStart);

    const long lineBytes = width * (depth / 8);
    for (long row = 0; row < height; ++row) {
        unsigned char* line = GetBitsAdd(static_cast<int>(row));
        std::memset(line, 0, static_cast<size_t>(GetRowBytes()));
        if (!ReadExact(file, line, lineBytes))
            return kPictureUnreadable;
    }
    if ((descriptor & kTopLeftOrigin) != 0)
        Flop();
    return kPictureLoaded;
}
