#pragma once
// What the picture file readers share: their result codes and reads that fit CPFile's rules.
//
// CPFile::Read answers 0 for a read that meets the end of the file and reports counts modulo
// 65,536, so everything here reads in pieces of at most 32 KB and says only "all there" or not.

#include <algorithm>
#include <cstdint>

#include "image/cdib.h"
#include "platform/file/cpfile.h"

// Result codes of the readers and of CDIB::Load(CPFile*).
enum PictureResult {
    kPictureLoaded = 0,
    kPictureCompressed = 1,  // a compressed variant
    kPictureTooLarge = 2,    // a side above 8192
    kPictureUnreadable = 3,  // bad header, short read
    kPictureNoTarget = 4,    // the target image has no header
    kPictureFewColours = 5,  // fewer than 8 bits per pixel
    kPictureNoMemory = 6,    // no room for the image or a work buffer
};

constexpr long kReadPiece = 32768;

// Reads exactly `count` bytes at the current position; false when the file ends first (what was
// there is in the buffer).
inline bool ReadExact(CPFile* file, void* buffer, long count)
{
    auto* at = static_cast<char*>(buffer);
    while (count > 0) {
        long piece = std::min(count, kReadPiece);
        if (file->Read(at, piece) != piece)
            return false;
        at += piece;
        count -= piece;
    }
    return true;
}

// The opening every reader shares: an image to load into, a file, and the file's first `count`
// bytes read into `head`. Answers kPictureLoaded when all of them are there.
inline int ReadFileHead(bool hasTarget, CPFile* file, void* head, long count)
{
    if (!hasTarget)
        return kPictureNoTarget;
    if (file == nullptr)
        return kPictureUnreadable;
    file->Seek(0, kSeekFromStart);
    return ReadExact(file, head, count) ? kPictureLoaded : kPictureUnreadable;
}

// Bytes of the file from `offset` to its end; 0 when the offset is at or past the end.
inline long BytesFrom(CPFile* file, int64_t offset)
{
    int64_t left = static_cast<int64_t>(file->GetFileLength()) - offset;
    return left > 0 ? static_cast<long>(left) : 0;
}

// Sets the palette of an 8-bit image to the grey ramp Create gives a new one. Readers call it
// because Create keeps an existing image of the same size as it is, palette included.
inline void ResetGreyPalette(CDIB* image)
{
    PaletteEntry* palette = image->GetPalette();
    if (palette == nullptr || image->GetBitCount() != 8)
        return;
    for (int i = 0; i < 256; ++i) {
        auto level = static_cast<uint8_t>(i);
        palette[i] = PaletteEntry{level, level, level, 0};
    }
}
