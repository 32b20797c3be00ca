#include "platform/picture/resource_picture.h"

#include <QFile>
#include <QString>
#include <mutex>

#include "platform/picture/decode_qt.h"

// resources/pictures.qrc is compiled into this static library; a static library's initialisers
// are only linked when something names them, so they are registered by hand on first use.
static void RegisterPictureResources()
{
    static std::once_flag once;
    std::call_once(once, [] { Q_INIT_RESOURCE(pictures); });
}

namespace {

// Built-in picture n is ":/pictures/<n>.png".
QString ResourcePath(int resourceId) { return QStringLiteral(":/pictures/%1.png").arg(resourceId); }

// The built-in pictures are the program's own and small; no side limit applies beyond the
// largest picture the program takes.
constexpr int kResourceMaxSide = 8192;

}  // namespace

bool HasResourcePicture(int resourceId)
{
    RegisterPictureResources();
    return QFile::exists(ResourcePath(resourceId));
}

ImportResult LoadResourcePicture(int resourceId, PictureRows* rows)
{
    RegisterPictureResources();
    QFile file(ResourcePath(resourceId));
    if (!file.open(QIODevice::ReadOnly))
        return kImportUnreadable;
    return DecodePicture(&file, kResourceMaxSide, rows);
}
