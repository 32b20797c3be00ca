// The TIFF reader: uncompressed files in either byte order, 1 to 4 samples of 8 bits per pixel,
// grey or RGB, interleaved, one strip or several, strip offsets of 16 or 32 bits. Only the first
// directory is read. Other variants (planes stored apart, 1-, 4- or 16-bit samples, palette,
// CMYK, YCbCr, Lab) are refused rather than read as wrong pixels; the file loader then offers
// them to the platform importer.
//
// The directory is read through a 4,096-byte window on the file (a bigger directory is cut to
// what fits); every read is bounded by the file's length, so a bogus offset or count ends as a
// short read, never as a long loop or a large allocation.

#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "image/cdib.h"
#include "image/picture_read.h"
#include "platform/file/endian.h"

namespace {

constexpr long kWindowBytes = 4096;
constexpr int kEntryBytes = 12;

enum TiffTag {
    kTagWidth = 256,
    kTagHeight = 257,
    kTagBitsPerSample = 258,
    kTagCompression = 259,
    kTagPhotometric = 262,
    kTagStripOffsets = 273,
    kTagSamples = 277,
    kTagRowsPerStrip = 278,
    kTagPlanarConfiguration = 284,
};

enum TiffPhotometric { kPhotometricGrey = 1, kPhotometricRgb = 2 };
enum TiffPlanar { kPlanarSeparate = 2 };

enum TiffType { kTypeByte = 1, kTypeShort = 3, kTypeLong = 4 };

// A window of the file held in the work buffer: `bytes` bytes from file offset `start`.
struct Window {
    unsigned char* data;
    int64_t start = 0;
    long bytes = 0;

    // Fills the window from `offset`, as far as the file goes.
    void Load(CPFile* file, int64_t offset)
    {
        start = offset;
        bytes = std::min(kWindowBytes, BytesFrom(file, offset));
        if (bytes > 0) {
            file->Seek(static_cast<long>(offset), kSeekFromStart);
            if (!ReadExact(file, data, bytes))
                bytes = 0;
        }
    }
    // True when `count` bytes from file offset `offset` lie inside the window.
    bool Holds(int64_t offset, int64_t count) const
    {
        return offset >= start && offset + count <= start + bytes;
    }
};

// The value of a directory entry that holds one number, by its type (a 16-bit value sits in the
// first two bytes of the value field in either byte order).
uint32_t EntryValue(const unsigned char* entry, bool msbFirst)
{
    switch (Endian(entry + 2, 2, msbFirst)) {
    case kTypeByte:
        return entry[8];
    case kTypeShort:
        return Endian(entry + 8, 2, msbFirst);
    default:
        return Endian(entry + 8, 4, msbFirst);
    }
}

// True when every value of a BitsPerSample entry (one per sample; only the first four are looked
// at, as no more samples are read) is 8. The values sit in the entry when they fit its four
// bytes, else at the offset it holds; that table is read through the file, bounded by its length.
bool SamplesAreBytes(const unsigned char* entry, CPFile* file, bool msbFirst)
{
    const uint32_t type = Endian(entry + 2, 2, msbFirst);
    const int valueBytes = type == kTypeByte    ? 1
                           : type == kTypeShort ? 2
                           : type == kTypeLong  ? 4
                                                : 0;
    const uint32_t count = Endian(entry + 4, 4, msbFirst);
    if (valueBytes == 0 || count == 0)
        return false;
    const uint32_t looked = std::min<uint32_t>(count, 4);
    unsigned char values[16] = {};
    if (static_cast<int64_t>(count) * valueBytes <= 4) {
        std::memcpy(values, entry + 8, 4);
    } else {
        const int64_t tableAt = Endian(entry + 8, 4, msbFirst);
        const long bytes = static_cast<long>(looked) * valueBytes;
        if (BytesFrom(file, tableAt) < bytes)
            return false;
        file->Seek(static_cast<long>(tableAt), kSeekFromStart);
        if (!ReadExact(file, values, bytes))
            return false;
    }
    for (uint32_t i = 0; i < looked; ++i)
        if (Endian(values + i * valueBytes, valueBytes, msbFirst) != 8)
            return false;
    return true;
}

}  // namespace

int CDIB::LoadTif(CPFile* file)
{
    if (header == nullptr)
        return kPictureNoTarget;
    if (file == nullptr)
        return kPictureUnreadable;
    std::unique_ptr<unsigned char[]> work(new (std::nothrow) unsigned char[kWindowBytes]);
    if (!work)
        return kPictureNoMemory;

    Window window{work.get()};
    window.Load(file, 0);
    const unsigned char* head = window.data;
    if (window.bytes < 8)
        return kPictureUnreadable;
    bool msbFirst;
    if (head[0] == 'I' && head[1] == 'I' && head[2] == 42)
        msbFirst = false;
    else if (head[0] == 'M' && head[1] == 'M' && head[3] == 42)
        msbFirst = true;
    else
        return kPictureUnreadable;

    // The first directory: its entry count, then the entries, read again from its own offset
    // when they do not lie in the bytes already held.
    const int64_t directory = Endian(head + 4, 4, msbFirst);
    if (!window.Holds(directory, 2))
        window.Load(file, directory);
    if (!window.Holds(directory, 2))
        return kPictureUnreadable;
    long entries = static_cast<long>(Endian(window.data + (directory - window.start), 2, msbFirst));
    if (!window.Holds(directory, 2 + static_cast<int64_t>(entries) * kEntryBytes)) {
        window.Load(file, directory);
        entries = std::min(entries, (window.bytes - 2) / kEntryBytes);
    }

    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t samples = 1;                // no tag 277: one sample, grey
    uint32_t rowsPerStrip = 0xFFFFFFFF;  // no tag 278: the whole picture in one strip
    uint32_t stripCount = 0;
    uint32_t stripType = 0;
    bool byteSamples = false;  // no tag 258: one bit per sample, which this reader cannot take
    bool colourModel = true;   // no tag 262: grey or RGB by the sample count
    bool interleaved = true;   // no tag 284: the samples of a pixel stored together
    unsigned char stripField[4] = {0, 0, 0, 0};  // the entry's value field: offsets or their place
    const unsigned char* entry = window.data + (directory - window.start) + 2;
    for (long i = 0; i < entries; ++i, entry += kEntryBytes) {
        switch (Endian(entry, 2, msbFirst)) {
        case kTagWidth:
            width = EntryValue(entry, msbFirst);
            if (width > kMaxImageSide)
                return kPictureTooLarge;
            break;
        case kTagHeight:
            height = EntryValue(entry, msbFirst);
            if (height > kMaxImageSide)
                return kPictureTooLarge;
            break;
        case kTagBitsPerSample:
            byteSamples = SamplesAreBytes(entry, file, msbFirst);
            break;
        case kTagCompression:
            if (EntryValue(entry, msbFirst) != 1)
                return kPictureCompressed;
            break;
        case kTagPhotometric: {
            const uint32_t model = EntryValue(entry, msbFirst);
            colourModel = model == kPhotometricGrey || model == kPhotometricRgb;
            break;
        }
        case kTagPlanarConfiguration:
            interleaved = EntryValue(entry, msbFirst) != kPlanarSeparate;
            break;
        case kTagStripOffsets:
            stripType = Endian(entry + 2, 2, msbFirst);
            stripCount = Endian(entry + 4, 4, msbFirst);
            std::memcpy(stripField, entry + 8, 4);
            break;
        case kTagSamples:
            samples = EntryValue(entry, msbFirst);
            break;
        case kTagRowsPerStrip:
            rowsPerStrip = EntryValue(entry, msbFirst);
            break;
        default:
            break;  // every other tag is of no use here
        }
    }
    if (width == 0 || height == 0 || stripCount == 0 || rowsPerStrip == 0)
        return kPictureUnreadable;
    // Variants whose bytes would come out as wrong pixels here.
    if (!byteSamples || !colourModel || !interleaved)
        return kPictureUnreadable;
    if (samples < 1 || samples > 4 || (stripType != kTypeShort && stripType != kTypeLong))
        return kPictureUnreadable;

    const int bitCount = static_cast<int>(samples) * 8;
    if (!Create(width, height, bitCount))
        return kPictureNoMemory;
    nominalWidth = static_cast<int16_t>(width);
    nominalHeight = static_cast<int16_t>(height);
    ResetGreyPalette(this);

    // The strip offsets: in the entry itself when they fit in its four bytes, else in a table.
    // No more strips are needed than the picture has rows.
    const int offsetBytes = stripType == kTypeShort ? 2 : 4;
    const uint32_t used = std::min<uint32_t>(stripCount, height);
    std::vector<unsigned char> table(static_cast<size_t>(used) * offsetBytes);
    if (static_cast<int64_t>(stripCount) * offsetBytes <= 4) {
        std::memcpy(table.data(), stripField, table.size());
    } else {
        const int64_t tableAt = Endian(stripField, 4, msbFirst);
        if (BytesFrom(file, tableAt) < static_cast<long>(table.size()))
            return kPictureUnreadable;
        file->Seek(static_cast<long>(tableAt), kSeekFromStart);
        if (!ReadExact(file, table.data(), static_cast<long>(table.size())))
            return kPictureUnreadable;
    }

    // Rows arrive top line first; they go to storage rows 0, 1, 2, ... and are turned over at
    // the end. One strip holds the whole picture whatever the rows-per-strip tag says.
    const long lineBytes = static_cast<long>(width) * static_cast<long>(samples);
    const uint32_t stripRows = used == 1 ? height : rowsPerStrip;
    uint32_t row = 0;
    for (uint32_t strip = 0; strip < used && row < height; ++strip) {
        const long offset =
            static_cast<long>(Endian(table.data() + strip * offsetBytes, offsetBytes, msbFirst));
        file->Seek(offset, kSeekFromStart);
        const uint32_t rows = std::min(stripRows, height - row);
        for (uint32_t i = 0; i < rows; ++i, ++row)
            if (!ReadExact(file, GetBitsAdd(static_cast<int>(row)), lineBytes))
                return kPictureUnreadable;
    }
    // Too few strips for the picture's rows.
    if (row < height)
        return kPictureUnreadable;

    // Colour rows are red first; grey and two-sample rows are left as they are.
    if (bitCount == 24 || bitCount == 32)
        FlopRGB2BGR();
    Flop();
    return kPictureLoaded;
}
