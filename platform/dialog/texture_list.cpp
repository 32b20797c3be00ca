#include "platform/dialog/texture_list.h"

#include <QDir>
#include <QImage>
#include <QImageReader>
#include <QStringList>
#include <cstring>

#include "platform/base/from_qt.h"
#include "platform/base/to_qt.h"

std::vector<std::string> ListTextures(const char* folder)
{
    std::vector<std::string> paths;
    if (!folder || !folder[0])
        return paths;
    QDir dir(ToQPath(folder));
    if (!dir.exists())
        return paths;
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        patterns << QStringLiteral("*.") + QString::fromLatin1(format);
    dir.setNameFilters(patterns);
    dir.setFilter(QDir::Files | QDir::Readable);
    dir.setSorting(QDir::Name | QDir::IgnoreCase);
    const QStringList names = dir.entryList();
    for (const QString& name : names) {
        if (paths.size() >= size_t(kMaxTextures))
            break;
        paths.push_back(FromQPath(dir.absoluteFilePath(name)));
    }
    return paths;
}

bool LoadTexturePreview(const std::string& path, std::vector<uint32_t>* pixels)
{
    pixels->clear();
    QImageReader reader(ToQPath(path));
    reader.setScaledSize(QSize(kTexturePreviewWidth, kTexturePreviewHeight));
    QImage image = reader.read();
    if (image.isNull())
        return false;
    // Formats that cannot scale while reading come back whole.
    if (image.width() != kTexturePreviewWidth || image.height() != kTexturePreviewHeight)
        image = image.scaled(kTexturePreviewWidth, kTexturePreviewHeight, Qt::IgnoreAspectRatio,
                             Qt::FastTransformation);
    image = image.convertToFormat(QImage::Format_RGB32);
    pixels->resize(size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
    for (int y = 0; y < kTexturePreviewHeight; ++y) {
        const auto* line = reinterpret_cast<const uint32_t*>(image.constScanLine(y));
        for (int x = 0; x < kTexturePreviewWidth; ++x)
            (*pixels)[size_t(y) * kTexturePreviewWidth + size_t(x)] = line[x] & 0x00FFFFFFu;
    }
    return true;
}
