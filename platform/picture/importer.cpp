#include "platform/picture/importer.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QSize>
#include <QString>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>

#include "platform/base/to_qt.h"
#include "platform/picture/decode_qt.h"

namespace {

// Qt refuses to allocate more than this for one decoded picture. The largest picture the
// program takes, 8192 × 8192 at 4 bytes a pixel, is 256 MB; the rest is the decoder's slack.
constexpr int kDecodeLimitMegabytes = 300;

void SetDecodeLimit()
{
    static std::once_flag once;
    std::call_once(once, [] { QImageReader::setAllocationLimit(kDecodeLimitMegabytes); });
}

bool TooLarge(const QSize& size, int maxSide)
{
    return size.width() > maxSide || size.height() > maxSide;
}

// Swaps picture lines y and height − 1 − y, `lineBytes` of each, for every y in the top half.
void TurnLinesOver(unsigned char* first, long lineStep, int height, size_t lineBytes)
{
    for (int y = 0; y < height / 2; ++y) {
        unsigned char* upper = first + static_cast<long>(y) * lineStep;
        unsigned char* lower = first + static_cast<long>(height - 1 - y) * lineStep;
        std::swap_ranges(upper, upper + lineBytes, lower);
    }
}

// Decodes into the caller's rows when the reader announces a size and a 32-bit format with no
// orientation to apply. True when it took the picture on (the result is in `result`); false
// when the picture needs the ordinary way, before anything was read or allocated.
bool DecodeIntoRows(QImageReader& reader, const QSize& announced, PictureRows* rows,
                    ImportResult* result)
{
    QImage::Format format = reader.imageFormat();
    if (!announced.isValid() || announced.isEmpty() ||
        (format != QImage::Format_RGB32 && format != QImage::Format_ARGB32) ||
        reader.transformation() != QImageIOHandler::TransformationNone)
        return false;
    const int width = announced.width();
    const int height = announced.height();
    long lineStep = 0;
    unsigned char* top = rows->AllocateRows(width, height, &lineStep);
    if (top == nullptr) {
        *result = kImportNoMemory;
        return true;
    }
    const size_t lineBytes = static_cast<size_t>(width) * 4;
    const long span = lineStep < 0 ? -lineStep : lineStep;
    if (span < static_cast<long>(lineBytes) || span % 4 != 0 || span > INT32_MAX) {
        *result = kImportNoMemory;
        return true;
    }
    // The image's first line is the lowest address: the top line for a positive step, the
    // bottom line for storage kept bottom line first, which is then turned over afterwards.
    unsigned char* lowest = lineStep < 0 ? top + static_cast<long>(height - 1) * lineStep : top;
    QImage image(lowest, width, height, static_cast<qsizetype>(span), format);
    if (!reader.read(&image) || image.isNull()) {
        *result = kImportUnreadable;
        return true;
    }
    if (image.size() != announced) {
        *result = kImportUnreadable;
        return true;
    }
    if (image.constBits() != lowest || image.format() != format) {
        // The reader made an image of its own after all: copy it over as the ordinary way does.
        if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32) {
            QImage::Format wanted =
                image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
            image.convertTo(wanted);
            if (image.isNull() || image.format() != wanted) {
                *result = kImportNoMemory;
                return true;
            }
        }
        for (int y = 0; y < height; ++y)
            std::memcpy(top + static_cast<long>(y) * lineStep, image.constScanLine(y), lineBytes);
        *result = kImportDone;
        return true;
    }
    if (lineStep < 0)
        TurnLinesOver(top, lineStep, height, lineBytes);
    *result = kImportDone;
    return true;
}

}  // namespace

ImportResult DecodePicture(QIODevice* device, int maxSide, PictureRows* rows)
{
    if (device == nullptr || rows == nullptr)
        return kImportUnreadable;
    SetDecodeLimit();
    QImageReader reader(device);
    reader.setDecideFormatFromContent(true);
    // Camera pictures come upright, as every picture viewer shows them.
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return kImportUnreadable;
    // Most formats tell their size before decoding: a picture too large is refused unread.
    QSize announced = reader.size();
    if (announced.isValid() && TooLarge(announced, maxSide))
        return kImportTooLarge;

    // A picture that the reader decodes as 32-bit pixels in their final orientation goes
    // straight into the caller's rows: the reader fills an image that lies over them, so a large
    // picture is held once instead of twice.
    ImportResult direct = kImportUnreadable;
    if (DecodeIntoRows(reader, announced, rows, &direct))
        return direct;

    QImage image;
    if (!reader.read(&image) || image.isNull())
        return kImportUnreadable;
    if (TooLarge(image.size(), maxSide))
        return kImportTooLarge;

    // RGB32 (alpha bytes 255) and ARGB32 both hold blue, green, red, alpha in memory on this
    // little-endian platform; everything else is converted to one of them.
    if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32) {
        QImage::Format wanted =
            image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
        image.convertTo(wanted);
        if (image.isNull() || image.format() != wanted)
            return kImportNoMemory;
    }

    const int width = image.width();
    const int height = image.height();
    long lineStep = 0;
    unsigned char* top = rows->AllocateRows(width, height, &lineStep);
    if (top == nullptr)
        return kImportNoMemory;
    const size_t lineBytes = static_cast<size_t>(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(top + static_cast<long>(y) * lineStep, image.constScanLine(y), lineBytes);
    return kImportDone;
}

ImportResult ImportPictureFile(const char* path, int maxSide, PictureRows* rows)
{
    if (path == nullptr || *path == '\0')
        return kImportUnreadable;
    QFile file(ToQPath(path));
    if (!file.open(QIODevice::ReadOnly))
        return kImportUnreadable;
    return DecodePicture(&file, maxSide, rows);
}

ImportResult ImportPictureData(const unsigned char* data, size_t size, int maxSide,
                               PictureRows* rows)
{
    if (data == nullptr || size == 0 || size > static_cast<size_t>(INT32_MAX))
        return kImportUnreadable;
    // The bytes are read where they are; nothing is copied.
    QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        return kImportUnreadable;
    return DecodePicture(&buffer, maxSide, rows);
}
