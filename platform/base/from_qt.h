#pragma once
// Qt's values in the program's terms: the one place they come back from Qt (to_qt.h is the way
// there), in the same encodings. Keys and modifiers, which only ever come from Qt, are read in
// platform/wnd/input_qt.h. For the Qt side of the portable layer only.

#include <QFile>
#include <QRect>
#include <QString>
#include <string>

#include "platform/base/types.h"

// UTF-8 bytes.
inline std::string FromQString(const QString& text) { return text.toUtf8().toStdString(); }

// The file system's own bytes for a name Qt holds (its local 8-bit encoding).
inline std::string FromQPath(const QString& path) { return QFile::encodeName(path).toStdString(); }

// (x, y, width, height) as left, top, right, bottom, with right and bottom outside.
inline tagRECT FromQRect(const QRect& rect)
{
    return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}
