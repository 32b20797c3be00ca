// The Photoshop reader: the flattened picture of a grey, indexed or RGB file with 8 bits per
// channel, raw or run-length packed. Layers, masks and image resources are skipped by their
// lengths. At most four channels are read; each is a plane of rows, top line first.

#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "image/cdib.h"
#include "image/picture_read.h"
#include "image/rlc.h"
#include "platform/file/endian.h"

namespace {

constexpr int kHeaderBytes = 30;
constexpr long kPaletteBytes = 768;      // 256 reds, 256 greens, 256 blues
constexpr long kPackedRowLimit = 65536;  // a packed row's byte count is a 16-bit number

enum PsdMode { kModeBitmap = 0, kModeGrey = 1, kModeIndexed = 2, kModeRgb = 3, kModeCmyk = 4 };

// Skips a section whose 4-byte length comes next; false when the length is not there.
bool SkipSection(CPFile* file, bool msbFirst)
{
    unsigned char length[4];
    if (!ReadExact(file, length, 4))
        return false;
    file->Seek(static_cast<long>(Endian(length, 4, msbFirst)), kSeekFromCurrent);
    return true;
}

}  // namespace

int CDIB::LoadPsd(CPFile* file)
{
    unsigned char head[kHeaderBytes];
    if (int opened = ReadFileHead(header != nullptr, file, head, sizeof head);
        opened != kPictureLoaded)
        return opened;
    // Big-endian as Photoshop writes it; the signature read backwards marks a file whose numbers
    // were all written the other way round.
    bool msbFirst;
    if (std::memcmp(head, "8BPS", 4) == 0)
        msbFirst = true;
    else if (std::memcmp(head, "SPB8", 4) == 0)
        msbFirst = false;
    else
        return kPictureUnreadable;
    const uint32_t version = Endian(head + 4, 2, msbFirst);
    const uint32_t channels = Endian(head + 12, 2, msbFirst);
    const uint32_t height = Endian(head + 14, 4, msbFirst);
    const uint32_t width = Endian(head + 18, 4, msbFirst);
    const uint32_t channelBits = Endian(head + 22, 2, msbFirst);
    const uint32_t mode = Endian(head + 24, 2, msbFirst);
    const uint32_t colourDataLength = Endian(head + 26, 4, msbFirst);

    // Version 2 is the large-document form, whose section lengths are 8 bytes.
    if (version != 1)
        return kPictureUnreadable;
    if (mode >= kModeCmyk)
        return kPictureUnreadable;
    if (width > kMaxImageSide || height > kMaxImageSide)
        return kPictureTooLarge;
    if (channelBits < 8)
        return kPictureFewColours;
    // 16- and 32-bit channels would be read as twice or four times as many 8-bit samples.
    if (channelBits != 8 || channels == 0 || width == 0 || height == 0)
        return kPictureUnreadable;

    // The colour data: an indexed picture's palette. Only its first 768 bytes matter.
    unsigned char palette[kPaletteBytes] = {};
    const long kept = static_cast<long>(std::min<uint32_t>(colourDataLength, kPaletteBytes));
    if (!ReadExact(file, palette, kept))
        return kPictureUnreadable;
    file->Seek(static_cast<long>(colourDataLength - static_cast<uint32_t>(kept)), kSeekFromCurrent);
    // Image resources, then layers and masks.
    if (!SkipSection(file, msbFirst) || !SkipSection(file, msbFirst))
        return kPictureUnreadable;
    unsigned char compressionField[2];
    if (!ReadExact(file, compressionField, 2))
        return kPictureUnreadable;
    const uint32_t compression = Endian(compressionField, 2, msbFirst);
    // 2 and 3 are the zip variants.
    if (compression > 1)
        return kPictureCompressed;

    const int bitCount = channels >= 4 ? 32 : 24;
    if (!Create(width, height, bitCount))
        return kPictureNoMemory;
    const int pixelBytes = bitCount / 8;
    // Grey and indexed pictures are their first channel; RGB takes up to four (the fourth is
    // alpha).
    const uint32_t used = mode == kModeRgb ? std::min<uint32_t>(channels, 4) : 1;

    std::unique_ptr<unsigned char[]> line(new (std::nothrow) unsigned char[width]);
    if (!line)
        return kPictureNoMemory;
    const bool packed = compression == 1;
    std::unique_ptr<unsigned char[]> packedRow;
    std::vector<uint16_t> rowCounts;
    if (packed) {
        // The byte counts of every row of every channel come first; those of the channels that
        // are not read are skipped.
        packedRow.reset(new (std::nothrow) unsigned char[kPackedRowLimit]);
        const size_t countBytes = static_cast<size_t>(used) * height * 2;
        std::unique_ptr<unsigned char[]> table(new (std::nothrow) unsigned char[countBytes]);
        if (!packedRow || !table)
            return kPictureNoMemory;
        if (!ReadExact(file, table.get(), static_cast<long>(countBytes)))
            return kPictureUnreadable;
        rowCounts.resize(static_cast<size_t>(used) * height);
        for (size_t i = 0; i < rowCounts.size(); ++i)
            rowCounts[i] = static_cast<uint16_t>(Endian(table.get() + 2 * i, 2, msbFirst));
        file->Seek(static_cast<long>(channels - used) * static_cast<long>(height) * 2,
                   kSeekFromCurrent);
    }

    for (uint32_t channel = 0; channel < used; ++channel) {
        for (uint32_t r = 0; r < height; ++r) {
            if (packed) {
                const long count = rowCounts[static_cast<size_t>(channel) * height + r];
                if (!ReadExact(file, packedRow.get(), count))
                    return kPictureUnreadable;
                if (RLCUnPack(packedRow.get(), count, line.get(), static_cast<long>(width)) !=
                    static_cast<long>(width))
                    return kPictureUnreadable;
            } else if (!ReadExact(file, line.get(), static_cast<long>(width))) {
                return kPictureUnreadable;
            }

            // File row r, counted from the top, is storage row height - 1 - r.
            unsigned char* out = GetBitsAdd(static_cast<int>(height - 1 - r));
            const unsigned char* in = line.get();
            if (mode == kModeRgb) {
                // Red, green, blue, alpha go to bytes 2, 1, 0, 3 of a pixel.
                static constexpr int kByteOfChannel[4] = {2, 1, 0, 3};
                const int at = kByteOfChannel[channel];
                for (uint32_t x = 0; x < width; ++x)
                    out[x * pixelBytes + at] = in[x];
            } else if (mode == kModeIndexed) {
                for (uint32_t x = 0; x < width; ++x, out += pixelBytes) {
                    out[0] = palette[512 + in[x]];
                    out[1] = palette[256 + in[x]];
                    out[2] = palette[in[x]];
                }
            } else {
                for (uint32_t x = 0; x < width; ++x, out += pixelBytes)
                    out[0] = out[1] = out[2] = in[x];
            }
        }
    }
    return kPictureLoaded;
}
