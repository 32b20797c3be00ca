#pragma once
// The platform picture importer: every picture format Qt's image readers know (JPEG, PNG, GIF,
// WebP, ...) decoded into 32-bit rows for the image layer.
//
// Pixels are handed over as 4 bytes each in the order blue, green, red, alpha (alpha 255 where
// the file has none), picture rows from the top line down. The caller says where the rows go:
// it is asked once for room and answers the address of the top line and the step in bytes from
// one line to the line below, so storage that keeps the bottom line first gives a negative step.

#include <cstddef>

// Room for a decoded picture, given by the caller.
class PictureRows {
public:
    virtual ~PictureRows() = default;
    // Asked once, with the picture's size in pixels. Answers the address of the top line's first
    // pixel and sets `lineStep` (bytes from one picture line to the next one down; each line
    // holds at least width × 4 bytes); null when there is no room.
    virtual unsigned char* AllocateRows(int width, int height, long* lineStep) = 0;
};

enum ImportResult {
    kImportDone = 0,
    kImportUnreadable,  // not a picture any reader here knows, or a broken one
    kImportTooLarge,    // a side above the caller's limit
    kImportNoMemory,    // the decoder or the caller had no room
};

// Decodes the picture file at `path` (a POSIX path). Pictures wider or higher than `maxSide`
// are refused before they are decoded, whenever the format tells its size up front. Pictures
// that carry an orientation (camera JPEGs) come upright.
ImportResult ImportPictureFile(const char* path, int maxSide, PictureRows* rows);
// The same for a picture held in memory.
ImportResult ImportPictureData(const unsigned char* data, size_t size, int maxSide,
                               PictureRows* rows);
