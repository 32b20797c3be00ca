#pragma once
// CDIB: the one raster image of the program, in the layout of a device-independent bitmap.
//
// Pixels live in storage rows, padded to 4 bytes, bottom row first: storage row 0 is the bottom
// line of the picture. Depths: 8 (palette index), 16 (5-5-5, little-endian word), 24 (B, G, R),
// 32 (B, G, R, A). Sizes 1 to 8192 in each direction. Colours passed as one value are 0x00BBGGRR.
//
// Every operation checks for a header first and answers false / 0 / null, or does nothing,
// when the image is empty.

#include <cstdint>
#include <memory>

#include "platform/base/types.h"

class CPFile;
struct FSpec;

// The 40-byte bitmap information header, little-endian, followed in the same block by the palette.
struct BitmapInfoHeader {
    uint32_t biSize;  // always 40
    int32_t biWidth;
    int32_t biHeight;  // positive: bottom-up rows
    uint16_t biPlanes;
    uint16_t biBitCount;
    uint32_t biCompression;
    uint32_t biSizeImage;
    int32_t biXPelsPerMeter;
    int32_t biYPelsPerMeter;
    uint32_t biClrUsed;
    uint32_t biClrImportant;
};
static_assert(sizeof(BitmapInfoHeader) == 40, "the bitmap information header is 40 bytes");

struct PaletteEntry {
    uint8_t blue;
    uint8_t green;
    uint8_t red;
    uint8_t reserved;
};

constexpr long kMaxImageSide = 8192;

class CDIB {
public:
    // Creates the image; a failed Create leaves it empty (no header), with nothing reported.
    CDIB(long width, long height, int bitsPerPixel);
    virtual ~CDIB();
    CDIB(const CDIB&) = delete;
    CDIB& operator=(const CDIB&) = delete;

    // Same width, height and depth as now: true at once, pixels kept. Otherwise a new all-zero
    // image; false (image unchanged) when a side is outside 1..8192, false and empty when memory
    // runs out.
    virtual bool Create(long width, long height, int bitsPerPixel);

    // Picture files (picture_*.cpp). Load(CPFile*) recognises the format from the first bytes
    // and answers the reader's result code (0 loaded; see the readers below). Load(FSpec*, ...)
    // opens the file (or the same name in `alternativeFolder`) and answers 1 loaded, 0 failed
    // and reported in a message box, 2 failed silently and replaced by the placeholder picture.
    // Save formats: 1 Targa, 2 nothing written, any other BMP; a file name with ".tga" in it is
    // always a Targa. Save(FSpec*) reports its failures in a message box.
    virtual int Load(CPFile* file);
    virtual int Load(FSpec* file, FSpec* alternativeFolder, bool showErrors);
    virtual bool Save(CPFile* file, int format);
    virtual bool Save(FSpec* file, int format);
    // Puts the image (or the `source` part of it, rows counted from the top) on the drawing port
    // `drawContext` (a DrawPort; the current port when null), scaled into `destination`.
    virtual void Draw(tagRECT& destination, void* drawContext);
    virtual void Draw(tagRECT& destination, tagRECT& source, void* drawContext);

    // Width and |height| in pixels; with a non-zero multiple, (value / multiple + 1) * multiple:
    // always one whole multiple of slack, also for exact multiples. 0 without a header.
    int GetWid(int multiple = 0) const;
    int GetHgt(int multiple = 0) const;
    // Bit count of the header; 0 without a header.
    int GetBitCount() const;
    // Bytes per storage row: pixel bytes padded to a multiple of 4.
    long GetRowBytes() const;
    // First byte of storage row `row`; null without a header.
    unsigned char* GetBitsAdd(int row) const;
    // The palette entries that follow the header (256 for 8-bit images); null without a header.
    PaletteEntry* GetPalette() const;

    // Copies min(row size, maxBytes) bytes of storage row `row` into buffer.
    void GetLine(int row, unsigned char* buffer, long maxBytes) const;
    // Copies one whole row (row size bytes) from buffer into storage row `row`.
    void PutLine(int row, const unsigned char* buffer);

    // Copies the pixels (not the palette); with create, makes the destination the same size first.
    bool Copy(CDIB* destination, bool create) const;
    // Exchanges everything the two images hold (pixels, palette, sizes, flags) without copying.
    void Swap(CDIB& other);
    // Cuts a rectangle given in top-down picture coordinates; picture line y comes from storage
    // row height - y (one line of shift, top line black), parts outside the picture are black.
    bool CopyCrop(CDIB* destination, const tagRECT& rectangle) const;
    // Nearest-neighbour scale into the already created destination, inside a frame of `border`
    // pixels of borderColour on every side.
    bool CopyScale(CDIB* destination, long borderColour, int border) const;
    // An 8-bit copy: grey ramp or 3-3-2 colour.
    bool Create8Bit(CDIB* destination, bool grey) const;

    bool Flop();               // mirrors the storage rows top to bottom
    bool FlopFields();         // swaps the two fields of an interlaced frame
    bool FlopRGB2BGR();        // swaps the first and third byte of every pixel
    bool SetAlpha(int alpha);  // 32-bit only
    // A 32-bit image becomes a 24-bit one in place, its alpha dropped: the rows are packed in
    // the same block and the rest of the block is given back. False and unchanged otherwise.
    bool DropAlpha();

    // The readers, each answering 0 or a result code (1 compressed, 2 too large, 3 unreadable,
    // 5 fewer than 256 colours, 6 no memory).
    int LoadBmp(CPFile* file);
    int LoadTga(CPFile* file);
    int LoadTif(CPFile* file);
    int LoadPsd(CPFile* file);
    int LoadJpeg(CPFile* file);

    // Camera resampling (camera_filter*.cpp). This image is the 32-bit destination, already
    // created at the output size; the window is in source pixels and storage rows, angles in
    // degrees. part: 0 all rows, 1 first half, 2 second half. fieldCode: row step (/10 + 1)
    // and field (% 10).
    bool FilterCropMulti(CDIB* source, float left, float top, float width, float height,
                         float angle, float tiltV, float tiltH, int quality, int fieldCode);
    bool FilterCrop(CDIB* source, float left, float top, float width, float height, float angle,
                    float tiltV, float tiltH, int part, int quality, int fieldCode);
    bool FilterRot(CDIB* source, float left, float top, float width, float height, float angle,
                   float tiltV, float tiltH, int part, int quality, int fieldCode);

    // Picture adjustments (adjust_*.cpp), in place; colours are 0x00BBGGRR.
    void VideoColors();
    void Contrast(int contrast, int brightness);
    void Tint(long colour);
    void Blur(int unused);
    int BlurAlpha();
    void Dissolve(CDIB* other, float t);
    bool SetAlphaEdge(int alpha);
    bool AddAlpha(CDIB* matte);

    // Owned blocks; public because the readers, filters and renderers work on them directly.
    BitmapInfoHeader* header = nullptr;  // header + palette, one block
    unsigned char* bits = nullptr;       // pixel block, AllocMemBlock / FreeMemBlock
    int16_t nominalWidth = 0;            // as asked of Create, or as read from a file
    int16_t nominalHeight = 0;
    bool useRotFilter = false;  // the camera filters take their rotating path for this source

private:
    // Both blocks present: the only state in which rows may be touched.
    bool HasPixels() const { return header != nullptr && bits != nullptr; }
    // Bytes of one pixel (bit count / 8); 0 without a header.
    int PixelBytes() const { return GetBitCount() / 8; }
    // True when this image holds pixels of exactly this width, height and depth; the copying
    // operations check their destination with it after calling its Create.
    bool HasShape(long width, long height, int bitsPerPixel) const;
    // A cleared line buffer of `bytes` + 32 bytes from the ordinary heap; null when memory runs
    // out. The 32 spare bytes are the slack every line buffer of this class carries.
    static std::unique_ptr<unsigned char[]> NewLineBuffer(long bytes);
};
