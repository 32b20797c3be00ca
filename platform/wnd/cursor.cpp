#include "platform/wnd/cursor.h"

#include <QGuiApplication>
#include <QPixmap>
#include <map>

#include "platform/wnd/cursor_pictures_qt.h"

namespace {

int sCursorImage = kCursorImageArrow;

QCursor CursorFor(int image)
{
    switch (image) {
    case kCursorImageIBeam:
        return QCursor(Qt::IBeamCursor);
    case kCursorImageCrosshair:
        return QCursor(Qt::CrossCursor);
    case kCursorImageWait:
        return QCursor(Qt::WaitCursor);
    case kCursorImageArrow:
        return QCursor(Qt::ArrowCursor);
    default:
        break;
    }
    // The drawn pictures are painted once and kept for the run.
    static std::map<int, QImage> painted;
    auto found = painted.find(image);
    if (found == painted.end())
        found = painted.emplace(image, DrawCursorPicture(image)).first;
    return QCursor(QPixmap::fromImage(found->second), kCursorHotSpot, kCursorHotSpot);
}

}  // namespace

int CursorImageForKind(int kind)
{
    switch (kind) {
    case 3:
        return kCursorImageIBeam;
    case 2:
        return kCursorImageCrosshair;
    case 10:
        return kCursorImagePlus;
    case 11:
        return kCursorImageWait;
    case 5:
    case 13:
        return kCursorImageMove;
    case 6:
    case 8:
        return kCursorImageResize;
    case 9:
        return kCursorImageSlide;
    case 7:
        return kCursorImageVertical;
    case 12:
        return kCursorImageRotate;
    case 14:
        return kCursorImageTilt;
    default:
        return kCursorImageArrow;
    }
}

void ChangeCursor(int kind)
{
    int image = CursorImageForKind(kind);
    bool same = image == sCursorImage;
    sCursorImage = image;
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;
    // The windows ask on every pointer move; an unchanged shape is left alone.
    if (same && QGuiApplication::overrideCursor())
        return;
    // One override cursor for the whole program, replaced at every change, as the system cursor
    // was: it shows over every window until the next change.
    if (QGuiApplication::overrideCursor())
        QGuiApplication::changeOverrideCursor(CursorFor(image));
    else
        QGuiApplication::setOverrideCursor(CursorFor(image));
}

int GetCursorImage() { return sCursorImage; }
