// Writing an image as a Targa or BMP file (still images and "Make Still Image" output).

#include <algorithm>
#include <cstring>

#include "image/cdib.h"
#include "image/picture_read.h"
#include "platform/base/file_types.h"
#include "platform/base/replace_file.h"
#include "platform/dialog/message_box.h"
#include "platform/file/cpfile.h"
#include "platform/file/endian.h"
#include "platform/file/paths.h"

namespace {

enum SaveFormat { kSaveTarga = 1, kSaveNothing = 2 };

constexpr int kTargaHeaderBytes = 18;
constexpr int kBmpFileHeaderBytes = 14;
constexpr int kBmpInfoHeaderBytes = 40;

// Writes `count` bytes in pieces small enough for CPFile.
void WriteAll(CPFile* file, const unsigned char* bytes, long count)
{
    while (count > 0) {
        const long piece = std::min(count, kReadPiece);
        file->Write(reinterpret_cast<const char*>(bytes), piece);
        bytes += piece;
        count -= piece;
    }
}

// Type 2 (uncompressed true colour) for every depth, with no colour map even for 8-bit images;
// origin bottom-left, so storage rows go out from row 0 without their padding.
void WriteTarga(CDIB* image, CPFile* file)
{
    const int bits = image->GetBitCount();
    const int width = image->GetWid();
    const int height = image->GetHgt();
    unsigned char head[kTargaHeaderBytes] = {};
    head[2] = 2;
    MemEndian(head + 12, width, 2, false);
    MemEndian(head + 14, height, 2, false);
    head[16] = static_cast<unsigned char>(bits);
    // Alpha bits: 8 for a 32-bit image, none otherwise.
    head[17] = static_cast<unsigned char>(std::max(bits - 24, 0) + bits % 8);
    file->Write(reinterpret_cast<const char*>(head), sizeof head);
    const long lineBytes = static_cast<long>(width) * (bits / 8);
    for (int row = 0; row < height; ++row)
        WriteAll(file, image->GetBitsAdd(row), lineBytes);
}

// The file header, the information header as the image holds it, the palette, the padded rows.
// The stated data offset counts three bytes per palette entry while four are written, so an
// 8-bit file says 822 and its rows start at 1078. Files already written say so and the program's
// own reader seeks to the stated offset: the count stays as it is.
void WriteBmp(CDIB* image, CPFile* file)
{
    const int entries = image->GetBitCount() == 8 ? 256 : 0;
    const long rowBlock = image->GetRowBytes() * image->GetHgt();
    const long dataOffset = kBmpFileHeaderBytes + kBmpInfoHeaderBytes + 3L * entries;
    unsigned char head[kBmpFileHeaderBytes + kBmpInfoHeaderBytes] = {};
    head[0] = 'B';
    head[1] = 'M';
    MemEndian(head + 2, rowBlock + dataOffset, 4, false);
    MemEndian(head + 10, dataOffset, 4, false);
    const BitmapInfoHeader& info = *image->header;
    unsigned char* at = head + kBmpFileHeaderBytes;
    MemEndian(at + 0, info.biSize, 4, false);
    MemEndian(at + 4, info.biWidth, 4, false);
    MemEndian(at + 8, info.biHeight, 4, false);
    MemEndian(at + 12, info.biPlanes, 2, false);
    MemEndian(at + 14, info.biBitCount, 2, false);
    MemEndian(at + 16, info.biCompression, 4, false);
    MemEndian(at + 20, info.biSizeImage, 4, false);
    MemEndian(at + 24, info.biXPelsPerMeter, 4, false);
    MemEndian(at + 28, info.biYPelsPerMeter, 4, false);
    MemEndian(at + 32, info.biClrUsed, 4, false);
    MemEndian(at + 36, info.biClrImportant, 4, false);
    file->Write(reinterpret_cast<const char*>(head), sizeof head);
    if (entries > 0)
        WriteAll(file, reinterpret_cast<const unsigned char*>(image->GetPalette()), 4L * entries);
    WriteAll(file, image->bits, rowBlock);
}

bool NamesTarga(const char* name)
{
    return std::strstr(name, ".TGA") != nullptr || std::strstr(name, ".tga") != nullptr;
}

}  // namespace

bool CDIB::Save(CPFile* file, int format)
{
    if (format == kSaveNothing)
        return true;
    if (header == nullptr || bits == nullptr || file == nullptr)
        return false;
    if (format == kSaveTarga)
        WriteTarga(this, file);
    else
        WriteBmp(this, file);
    return true;
}

bool CDIB::Save(FSpec* file, int format)
{
    if (header == nullptr || file == nullptr)
        return false;
    // The name wins over the format asked for.
    if (NamesTarga(file->name))
        format = kSaveTarga;
    // Written whole beside the old file and put in its place only when complete: a full disk or
    // a stopped program never leaves a cut picture, nor the tail of a longer older one.
    char path[kMaxPathLength + 1] = {};
    FileReplacement replacement(GetFSpecPath(file, path) ? path : "");
    CPFile out;
    FSpec partial{};
    if (replacement.Begin())
        partial = PathFSpec(replacement.TemporaryPath().c_str());
    if (partial.name[0] == '\0' || !out.Open(&partial, kFileWrite)) {
        ErrorBox("Error opening graphics file", kNoErrorNumber);
        return false;
    }
    if (format == kSaveTarga)
        SetFileTypeAndCreator(partial.name, "TPIC", "ogle");
    bool written = Save(&out, format);
    int writeError = out.WriteError();
    out.Close();
    if (writeError != 0)
        replacement.FailWriting(writeError);
    if (!written || writeError != 0 || !replacement.Commit()) {
        replacement.Abandon();
        // The loader's wording, for saving as well.
        ErrorBox("Error loading graphics file", kNoErrorNumber);
        return false;
    }
    return true;
}
