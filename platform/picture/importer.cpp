#include "platform/picture/importer.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QSize>
#include <QString>
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
