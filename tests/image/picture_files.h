#pragma once
// Picture files made by the tests themselves, byte by byte: BMP, Targa, TIFF and Photoshop
// files whose pixels, read back, are the pattern of cdib_pixels.h (PatternByte(x, storage row,
// byte)). Options make the variants and the broken files the readers must refuse.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "platform/file/cpfile.h"
#include "platform/file/fspec.h"
#include "platform/picture/test_gif.h"
#include "support/malformed_files.h"
#include "support/temp_dir.h"

namespace pxtest {

using Bytes = std::vector<unsigned char>;

inline void Put(Bytes& bytes, size_t at, uint32_t value, int count, bool msbFirst)
{
    if (bytes.size() < at + count)
        bytes.resize(at + count);
    for (int i = 0; i < count; ++i) {
        int shift = msbFirst ? 8 * (count - 1 - i) : 8 * i;
        bytes[at + i] = static_cast<unsigned char>(value >> shift);
    }
}

inline void Append(Bytes& bytes, uint32_t value, int count, bool msbFirst)
{
    Put(bytes, bytes.size(), value, count, msbFirst);
}

inline void AppendText(Bytes& bytes, const char* text)
{
    for (; *text != '\0'; ++text)
        bytes.push_back(static_cast<unsigned char>(*text));
}

// An FSpec in path form.
inline FSpec PathSpec(const std::string& path)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::snprintf(spec.name, sizeof spec.name, "%s", path.c_str());
    return spec;
}

// Writes the bytes to a file of the folder and runs `read` on it through an open CPFile.
inline int ReadThrough(const TempDir& dir, const Bytes& bytes,
                       const std::function<int(CPFile*)>& read, const char* name = "picture")
{
    std::string path = dir.File(name);
    if (!WriteBytes(path, bytes))
        return -1;
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    if (file.GetFileNum() == 0)
        return -1;
    return read(&file);
}

// True when every pixel byte of the image is its pattern byte.
inline ::testing::AssertionResult HasPattern(const CDIB& image)
{
    int pixelBytes = image.GetBitCount() / 8;
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            for (int b = 0; b < pixelBytes; ++b)
                if (image.GetBitsAdd(row)[x * pixelBytes + b] != PatternByte(x, row, b))
                    return ::testing::AssertionFailure()
                           << "pixel " << x << " of storage row " << row << ", byte " << b << " is "
                           << int(image.GetBitsAdd(row)[x * pixelBytes + b]) << ", not "
                           << int(PatternByte(x, row, b));
    return ::testing::AssertionSuccess();
}

// The palette the test files carry: distinct in every channel.
inline PaletteEntry FilePaletteEntry(int i)
{
    return PaletteEntry{static_cast<uint8_t>(i), static_cast<uint8_t>(255 - i),
                        static_cast<uint8_t>((i * 3) & 255), 0};
}

inline bool IsGreyRamp(const CDIB& image)
{
    const PaletteEntry* palette = image.GetPalette();
    for (int i = 0; i < 256; ++i)
        if (palette[i].blue != i || palette[i].green != i || palette[i].red != i ||
            palette[i].reserved != 0)
            return false;
    return true;
}

// ---- BMP ----------------------------------------------------------------------------------

struct BmpOptions {
    long width = 3;
    long height = 2;
    int bits = 24;
    uint32_t compression = 0;
    uint32_t infoSize = 40;   // the information header's own size field, and its true length
    int64_t heightField = 0;  // written instead of height when not 0 (negative: top-down)
    int64_t widthField = 0;   // written instead of width when not 0
    uint32_t coloursUsed = 0;
    long gap = 0;             // bytes between the palette and the rows
    int64_t statedSize = -1;  // the file size field; -1: the true size
    int64_t dataOffset = -1;  // the offset field; -1: where the rows are
    long keepBytes = -1;      // cut the file to this many bytes when not -1
};

inline long RowBytes(long width, int bits) { return (width * (bits / 8) + 3) & ~3L; }

inline Bytes MakeBmp(const BmpOptions& o)
{
    Bytes bytes;
    AppendText(bytes, "BM");
    Append(bytes, 0, 4, false);  // size, below
    Append(bytes, 0, 4, false);
    Append(bytes, 0, 4, false);  // offset, below
    Append(bytes, o.infoSize, 4, false);
    Append(bytes, static_cast<uint32_t>(o.widthField != 0 ? o.widthField : o.width), 4, false);
    Append(bytes, static_cast<uint32_t>(o.heightField != 0 ? o.heightField : o.height), 4, false);
    Append(bytes, 1, 2, false);
    Append(bytes, static_cast<uint32_t>(o.bits), 2, false);
    Append(bytes, o.compression, 4, false);
    Append(bytes, 0, 4, false);
    Append(bytes, 2835, 4, false);
    Append(bytes, 2835, 4, false);
    Append(bytes, o.coloursUsed, 4, false);
    Append(bytes, 0, 4, false);
    bytes.resize(14 + o.infoSize, 0);
    if (o.bits == 8) {
        for (int i = 0; i < 256; ++i) {
            PaletteEntry entry = FilePaletteEntry(i);
            bytes.insert(bytes.end(), {entry.blue, entry.green, entry.red, entry.reserved});
        }
    }
    bytes.resize(bytes.size() + o.gap, 0xEE);
    size_t rowsAt = bytes.size();
    long rowBytes = RowBytes(o.width, o.bits);
    int pixelBytes = o.bits / 8;
    for (long row = 0; row < o.height; ++row) {
        Bytes line(rowBytes, 0);
        if (pixelBytes > 0)
            for (long x = 0; x < o.width; ++x)
                for (int b = 0; b < pixelBytes; ++b)
                    line[x * pixelBytes + b] = PatternByte(x, row, b);
        bytes.insert(bytes.end(), line.begin(), line.end());
    }
    Put(bytes, 2, static_cast<uint32_t>(o.statedSize >= 0 ? o.statedSize : int64_t(bytes.size())),
        4, false);
    Put(bytes, 10, static_cast<uint32_t>(o.dataOffset >= 0 ? o.dataOffset : int64_t(rowsAt)), 4,
        false);
    if (o.keepBytes >= 0)
        bytes.resize(o.keepBytes);
    return bytes;
}

// ---- Targa --------------------------------------------------------------------------------

struct TgaOptions {
    long width = 3;
    long height = 2;
    int depth = 24;
    int type = 2;
    int descriptor = 0;
    int idLength = 0;
    int mapType = 0;
    int mapLength = 0;
    int mapBits = 24;
    long keepBytes = -1;
};

// Rows in file order: storage row i for a bottom-left origin, storage row height - 1 - i for a
// top-left one (descriptor bit 5).
inline Bytes MakeTga(const TgaOptions& o)
{
    Bytes bytes;
    bytes.push_back(static_cast<unsigned char>(o.idLength));
    bytes.push_back(static_cast<unsigned char>(o.mapType));
    bytes.push_back(static_cast<unsigned char>(o.type));
    Append(bytes, 0, 2, false);
    Append(bytes, static_cast<uint32_t>(o.mapLength), 2, false);
    bytes.push_back(static_cast<unsigned char>(o.mapBits));
    Append(bytes, 0, 4, false);
    Append(bytes, static_cast<uint32_t>(o.width), 2, false);
    Append(bytes, static_cast<uint32_t>(o.height), 2, false);
    bytes.push_back(static_cast<unsigned char>(o.depth));
    bytes.push_back(static_cast<unsigned char>(o.descriptor));
    for (int i = 0; i < o.idLength; ++i)
        bytes.push_back(static_cast<unsigned char>('A' + i % 26));
    if (o.mapType == 1)
        bytes.resize(bytes.size() + static_cast<size_t>(o.mapLength) * ((o.mapBits + 7) / 8), 0x77);
    int pixelBytes = o.depth / 8;
    bool topLeft = (o.descriptor & 0x20) != 0;
    for (long i = 0; i < o.height; ++i) {
        long row = topLeft ? o.height - 1 - i : i;
        for (long x = 0; x < o.width; ++x)
            for (int b = 0; b < pixelBytes; ++b)
                bytes.push_back(PatternByte(x, row, b));
    }
    if (o.keepBytes >= 0)
        bytes.resize(o.keepBytes);
    return bytes;
}

// ---- TIFF ---------------------------------------------------------------------------------

struct TifOptions {
    long width = 3;
    long height = 5;
    int samples = 3;
    bool bigEndian = false;
    long rowsPerStrip = 0;  // 0: one strip, no rows-per-strip tag
    int offsetType = 4;     // 3: 16-bit strip offsets, 4: 32-bit
    uint32_t compression = 1;
    bool samplesTag = true;
    long dataGap = 0;            // bytes between the header and the first strip
    long stripCountExtra = 0;    // strips listed beyond those the rows need (their offsets: 0)
    long stripCountLess = 0;     // strips the table leaves out
    bool directoryLoop = false;  // the next-directory offset points back at the directory
    uint32_t heightTag = 0;      // written instead of height when not 0
    uint32_t widthTag = 0;
    uint32_t samplesValue = 0;     // written instead of samples when not 0
    int64_t stripOffsetShift = 0;  // added to every strip offset
    long keepBytes = -1;
    int bits = 8;                    // 8 or 16 (each pattern byte v written as the 16-bit v × 257)
    bool bitsPerSampleList = false;  // tag 258 lists one value per sample, not one for all
    int bitsTag = -1;      // written as tag 258 instead of `bits` when 0 or more; -2: no tag 258
    int photometric = -1;  // written as tag 262 instead of grey or RGB when 0 or more
    bool planar = false;   // planes stored apart (tag 284 = 2): one set of strips per sample
};

// Rows in file order are the picture's lines from the top, red first: file line i is storage
// row height - 1 - i, and for 3 or 4 samples bytes 0 and 2 change places.
inline Bytes MakeTif(const TifOptions& o)
{
    const bool m = o.bigEndian;
    Bytes bytes;
    AppendText(bytes, m ? "MM" : "II");
    Append(bytes, 42, 2, m);
    Append(bytes, 0, 4, m);  // directory offset, below
    bytes.resize(bytes.size() + o.dataGap, 0x55);

    const long strips = o.rowsPerStrip > 0 ? (o.height + o.rowsPerStrip - 1) / o.rowsPerStrip : 1;
    const long rowsEach = o.rowsPerStrip > 0 ? o.rowsPerStrip : o.height;
    std::vector<uint32_t> offsets;
    const long planes = o.planar ? o.samples : 1;
    std::vector<Bytes> stripData(static_cast<size_t>(strips * planes));
    for (long i = 0; i < o.height; ++i) {
        long row = o.height - 1 - i;
        for (long plane = 0; plane < planes; ++plane) {
            Bytes& data = stripData[static_cast<size_t>(plane * strips + i / rowsEach)];
            for (long x = 0; x < o.width; ++x)
                for (int b = 0; b < (o.planar ? 1 : o.samples); ++b) {
                    int channel = o.planar ? static_cast<int>(plane) : b;
                    int source = (o.samples >= 3 && channel < 3) ? 2 - channel : channel;
                    if (o.bits == 16)
                        Append(data, PatternByte(x, row, source) * 257u, 2, m);
                    else
                        data.push_back(PatternByte(x, row, source));
                }
        }
    }
    // Strips are stored last first, so a reader that ignored the offsets would read them wrong.
    offsets.resize(stripData.size());
    for (long s = static_cast<long>(stripData.size()) - 1; s >= 0; --s) {
        offsets[s] = static_cast<uint32_t>(bytes.size() + o.stripOffsetShift);
        bytes.insert(bytes.end(), stripData[s].begin(), stripData[s].end());
        bytes.push_back(0x99);  // a byte between strips: rows are never read across it
    }
    const long listed = static_cast<long>(stripData.size()) + o.stripCountExtra - o.stripCountLess;
    offsets.resize(listed, 0);
    const int offsetBytes = o.offsetType == 3 ? 2 : 4;
    uint32_t tableAt = 0;
    if (listed * offsetBytes > 4) {
        if (bytes.size() % 2)
            bytes.push_back(0);
        tableAt = static_cast<uint32_t>(bytes.size());
        for (uint32_t offset : offsets)
            Append(bytes, offset, offsetBytes, m);
    }

    struct Entry {
        uint32_t tag, type, count;
        Bytes field;
    };
    auto number = [m](uint32_t tag, uint32_t type, uint32_t value) {
        Bytes field(4, 0);
        Put(field, 0, value, type == 3 ? 2 : 4, m);
        return Entry{tag, type, 1, field};
    };
    std::vector<Entry> entries;
    entries.push_back(number(256, 4, o.widthTag ? o.widthTag : static_cast<uint32_t>(o.width)));
    entries.push_back(number(257, 3, o.heightTag ? o.heightTag : static_cast<uint32_t>(o.height)));
    const uint32_t bitsValue = static_cast<uint32_t>(o.bitsTag >= 0 ? o.bitsTag : o.bits);
    if (o.bitsPerSampleList) {
        // One value per sample: in the entry when they fit its four bytes, else in a table.
        Bytes field(4, 0);
        if (o.samples > 2) {
            if (bytes.size() % 2)
                bytes.push_back(0);
            Put(field, 0, static_cast<uint32_t>(bytes.size()), 4, m);
            for (int b = 0; b < o.samples; ++b)
                Append(bytes, b == o.samples - 1 ? bitsValue : static_cast<uint32_t>(o.bits), 2, m);
        } else {
            for (int b = 0; b < o.samples; ++b) {
                const uint32_t value =
                    b == o.samples - 1 ? bitsValue : static_cast<uint32_t>(o.bits);
                Put(field, static_cast<size_t>(b * 2), value, 2, m);
            }
        }
        entries.push_back(Entry{258, 3, static_cast<uint32_t>(o.samples), field});
    } else if (o.bitsTag != -2) {
        entries.push_back(number(258, 3, bitsValue));
    }
    entries.push_back(number(259, 3, o.compression));
    const uint32_t model = o.photometric >= 0 ? static_cast<uint32_t>(o.photometric)
                           : o.samples >= 3   ? 2
                                              : 1;
    entries.push_back(number(262, 3, model));
    Bytes stripField(4, 0);
    if (listed * offsetBytes > 4)
        Put(stripField, 0, tableAt, 4, m);
    else
        for (long s = 0; s < listed; ++s)
            Put(stripField, static_cast<size_t>(s * offsetBytes), offsets[s], offsetBytes, m);
    entries.push_back(
        Entry{273, static_cast<uint32_t>(o.offsetType), static_cast<uint32_t>(listed), stripField});
    if (o.samplesTag)
        entries.push_back(
            number(277, 3, o.samplesValue ? o.samplesValue : static_cast<uint32_t>(o.samples)));
    if (o.rowsPerStrip > 0)
        entries.push_back(number(278, 4, static_cast<uint32_t>(o.rowsPerStrip)));
    if (o.planar)
        entries.push_back(number(284, 3, 2));

    if (bytes.size() % 2)
        bytes.push_back(0);
    const uint32_t directory = static_cast<uint32_t>(bytes.size());
    Put(bytes, 4, directory, 4, m);
    Append(bytes, static_cast<uint32_t>(entries.size()), 2, m);
    for (const Entry& entry : entries) {
        Append(bytes, entry.tag, 2, m);
        Append(bytes, entry.type, 2, m);
        Append(bytes, entry.count, 4, m);
        bytes.insert(bytes.end(), entry.field.begin(), entry.field.end());
    }
    Append(bytes, o.directoryLoop ? directory : 0, 4, m);
    if (o.keepBytes >= 0)
        bytes.resize(o.keepBytes);
    return bytes;
}

// ---- PackBits, as the Photoshop files pack their rows -------------------------------------

inline Bytes PackBits(const Bytes& row)
{
    Bytes out;
    size_t i = 0;
    while (i < row.size()) {
        size_t run = 1;
        while (i + run < row.size() && run < 128 && row[i + run] == row[i])
            ++run;
        if (run >= 3) {
            out.push_back(
                static_cast<unsigned char>(static_cast<signed char>(1 - static_cast<int>(run))));
            out.push_back(row[i]);
            i += run;
            continue;
        }
        size_t start = i;
        size_t literal = 0;
        while (i < row.size() && literal < 128) {
            if (i + 2 < row.size() && row[i] == row[i + 1] && row[i] == row[i + 2])
                break;
            ++i;
            ++literal;
        }
        out.push_back(static_cast<unsigned char>(literal - 1));
        out.insert(out.end(), row.begin() + static_cast<long>(start),
                   row.begin() + static_cast<long>(i));
    }
    return out;
}

// ---- Photoshop ----------------------------------------------------------------------------

struct PsdOptions {
    long width = 3;
    long height = 2;
    int channels = 3;
    int mode = 3;  // 1 grey, 2 indexed, 3 RGB, 4 CMYK
    int channelBits = 8;
    int version = 1;
    int compression = 0;         // 0 raw, 1 packed
    bool littleEndian = false;   // "SPB8" with every number the other way round
    long colourDataLength = -1;  // -1: 768 for indexed pictures, 0 otherwise
    long resourcesLength = 12;
    long layersLength = 20;
    uint32_t widthField = 0;  // written instead of width when not 0
    uint32_t heightField = 0;
    long keepBytes = -1;
    // Changes the packed rows before they are written (the row's index is channel × height +
    // file row); the byte counts follow the changed rows.
    std::function<void(long, Bytes&)> editPackedRow = {};
};

// Channel value of file row r (from the top): what the reader must put into the byte of the
// pixel that the channel fills, so that the image comes out as the pattern.
inline unsigned char PsdSample(const PsdOptions& o, int channel, long x, long r)
{
    long row = o.height - 1 - r;
    if (o.mode == 3) {
        static const int kByteOf[4] = {2, 1, 0, 3};
        return PatternByte(x, row, channel < 4 ? kByteOf[channel] : 0);
    }
    return PatternByte(x, row, channel);
}

inline Bytes MakePsd(const PsdOptions& o)
{
    const bool m = !o.littleEndian;
    Bytes bytes;
    AppendText(bytes, m ? "8BPS" : "SPB8");
    Append(bytes, static_cast<uint32_t>(o.version), 2, m);
    bytes.resize(bytes.size() + 6, 0);
    Append(bytes, static_cast<uint32_t>(o.channels), 2, m);
    Append(bytes, o.heightField ? o.heightField : static_cast<uint32_t>(o.height), 4, m);
    Append(bytes, o.widthField ? o.widthField : static_cast<uint32_t>(o.width), 4, m);
    Append(bytes, static_cast<uint32_t>(o.channelBits), 2, m);
    Append(bytes, static_cast<uint32_t>(o.mode), 2, m);
    long colourData = o.colourDataLength >= 0 ? o.colourDataLength : (o.mode == 2 ? 768 : 0);
    Append(bytes, static_cast<uint32_t>(colourData), 4, m);
    for (long i = 0; i < colourData; ++i) {
        // 256 reds, 256 greens, 256 blues of FilePaletteEntry; anything after them is junk.
        long channel = i / 256;
        PaletteEntry entry = FilePaletteEntry(static_cast<int>(i % 256));
        unsigned char value = channel == 0   ? entry.red
                              : channel == 1 ? entry.green
                              : channel == 2 ? entry.blue
                                             : 0xAB;
        bytes.push_back(value);
    }
    Append(bytes, static_cast<uint32_t>(o.resourcesLength), 4, m);
    bytes.resize(bytes.size() + o.resourcesLength, 0x3C);
    Append(bytes, static_cast<uint32_t>(o.layersLength), 4, m);
    bytes.resize(bytes.size() + o.layersLength, 0x4D);
    Append(bytes, static_cast<uint32_t>(o.compression), 2, m);

    std::vector<Bytes> rows;
    for (int c = 0; c < o.channels; ++c)
        for (long r = 0; r < o.height; ++r) {
            Bytes row;
            for (long x = 0; x < o.width; ++x)
                row.push_back(PsdSample(o, c, x, r));
            rows.push_back(row);
        }
    if (o.compression == 1) {
        for (size_t i = 0; i < rows.size(); ++i) {
            rows[i] = PackBits(rows[i]);
            if (o.editPackedRow)
                o.editPackedRow(static_cast<long>(i), rows[i]);
        }
        for (const Bytes& row : rows)
            Append(bytes, static_cast<uint32_t>(row.size()), 2, m);
    }
    for (const Bytes& row : rows)
        bytes.insert(bytes.end(), row.begin(), row.end());
    if (o.keepBytes >= 0)
        bytes.resize(o.keepBytes);
    return bytes;
}

}  // namespace pxtest
