// The program's own cursor pictures.

#include "platform/wnd/cursor_pictures_qt.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <set>

#include "platform/wnd/cursor.h"

namespace {

// Opaque pixels of about this grey level (0 black, 255 white).
int Count(const QImage& image, int level)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QRgb pixel = image.pixel(x, y);
            n += qAlpha(pixel) == 255 && std::abs(qGray(pixel) - level) < 16;
        }
    }
    return n;
}

TEST(CursorPictures, EachIsA32PixelBlackShapeOutlinedInWhite)
{
    std::set<qint64> distinct;
    for (int picture : {kCursorImageMove, kCursorImageResize, kCursorImageSlide, kCursorImageVertical,
                        kCursorImageRotate, kCursorImageTilt, kCursorImagePlus}) {
        QImage image = DrawCursorPicture(picture);
        ASSERT_FALSE(image.isNull()) << picture;
        EXPECT_EQ(image.size(), QSize(32, 32));
        EXPECT_GT(Count(image, 0), 10) << picture;
        EXPECT_GT(Count(image, 255), 10) << picture;
        // Transparent around the shape.
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << picture;
        EXPECT_EQ(qAlpha(image.pixel(31, 31)), 0) << picture;
        QByteArray bytes(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
        distinct.insert(qHash(bytes));
    }
    EXPECT_EQ(distinct.size(), 7u);
}

TEST(CursorPictures, TheHotSpotLiesOnTheShape)
{
    for (int picture : {kCursorImageMove, kCursorImageSlide, kCursorImageVertical, kCursorImagePlus}) {
        QImage image = DrawCursorPicture(picture);
        EXPECT_EQ(image.pixel(kCursorHotSpot, kCursorHotSpot), 0xFF000000u) << picture;
    }
}

TEST(CursorPictures, NumbersWithoutAPictureGiveNone)
{
    EXPECT_TRUE(DrawCursorPicture(1006).isNull());
    EXPECT_TRUE(DrawCursorPicture(kCursorImageArrow).isNull());
    EXPECT_EQ(MakeProgramCursor(1006).shape(), Qt::ArrowCursor);
    QCursor rotate = MakeProgramCursor(kCursorImageRotate);
    EXPECT_EQ(rotate.shape(), Qt::BitmapCursor);
    EXPECT_EQ(rotate.hotSpot(), QPoint(kCursorHotSpot, kCursorHotSpot));
}

}  // namespace
