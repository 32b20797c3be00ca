#pragma once
// The program's values as Qt takes them: the one place they cross into Qt (from_qt.h is the way
// back). For the Qt side of the portable layer only; the program's other layers never see Qt.
//
//   texts       UTF-8 bytes, NUL-terminated
//   paths       the file system's own bytes, read in its local 8-bit encoding, so a name Qt hands
//               back (from_qt.h) is byte for byte the one the program gave
//   rectangles  tagRECT (left, top, right, bottom; right and bottom outside) as Qt's
//               (x, y, width, height); an upside-down rectangle is empty
//   colours     0x00BBGGRR (red in the low byte) as an opaque QColor

#include <QColor>
#include <QFile>
#include <QRect>
#include <QString>
#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/base/types.h"

inline QString ToQString(const char* text) { return text ? QString::fromUtf8(text) : QString(); }

inline QString ToQString(const QByteArray& text) { return QString::fromUtf8(text); }

inline QString ToQString(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline QString ToQPath(const char* path) { return path ? QFile::decodeName(path) : QString(); }

inline QString ToQPath(const std::string& path)
{
    return QFile::decodeName(QByteArray(path.data(), static_cast<qsizetype>(path.size())));
}

inline QRect ToQRect(int32_t left, int32_t top, int32_t right, int32_t bottom)
{
    // Widened first: the sides of an extreme rectangle do not fit in 32 bits.
    int64_t width = std::clamp<int64_t>(int64_t(right) - left, 0, INT32_MAX);
    int64_t height = std::clamp<int64_t>(int64_t(bottom) - top, 0, INT32_MAX);
    return QRect(left, top, static_cast<int>(width), static_cast<int>(height));
}

inline QRect ToQRect(const tagRECT& rect)
{
    return ToQRect(rect.left, rect.top, rect.right, rect.bottom);
}

inline QColor ToQColor(long colour)
{
    return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                  static_cast<int>((colour >> 16) & 0xFF));
}
