// The program's own cursor pictures.

#include "platform/wnd/cursor_pictures_qt.h"

#include <gtest/gtest.h>
#include <cmath>
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

// Of the pixels the shape touches, the share that is neither black nor white (edge smoothing).
double SoftShare(const QImage& image)
{
    int touched = 0;
    int soft = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 0)
                continue;
            ++touched;
            soft += qAlpha(pixel) < 255 || (qGray(pixel) > 15 && qGray(pixel) < 240);
        }
    }
    return touched ? static_cast<double>(soft) / touched : 0.0;
}

TEST(CursorPictures, EachIsA32PixelBlackShapeOutlinedInWhite)
{
    std::set<qint64> distinct;
    for (int picture :
         {kCursorImageMove, kCursorImageResize, kCursorImageSlide, kCursorImageVertical,
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
    for (int picture :
         {kCursorImageMove, kCursorImageSlide, kCursorImageVertical, kCursorImagePlus}) {
        QImage image = DrawCursorPicture(picture);
        EXPECT_EQ(image.pixel(kCursorHotSpot, kCursorHotSpot), 0xFF000000u) << picture;
    }
}

TEST(CursorPictures, AtTwiceTheDensityThePictureHasFourTimesThePixels)
{
    for (int picture :
         {kCursorImageMove, kCursorImageResize, kCursorImageSlide, kCursorImageVertical,
          kCursorImageRotate, kCursorImageTilt, kCursorImagePlus}) {
        QImage single = DrawCursorPicture(picture, 1);
        QImage twice = DrawCursorPicture(picture, 2);
        EXPECT_EQ(twice.size(), QSize(64, 64)) << picture;
        EXPECT_EQ(twice.devicePixelRatio(), 2.0) << picture;
        // Drawn anew on the finer grid: the shape keeps its size in cursor pixels (about four
        // times the device pixels), and its edges are no softer in device pixels than at 1x.
        double black = static_cast<double>(Count(twice, 0)) / Count(single, 0);
        double white = static_cast<double>(Count(twice, 255)) / Count(single, 255);
        EXPECT_GT(black, 3.5) << picture;
        EXPECT_LT(black, 10.0) << picture;
        EXPECT_GT(white, 3.5) << picture;
        EXPECT_LT(white, 10.0) << picture;
        EXPECT_LE(SoftShare(twice), SoftShare(single)) << picture;
        if (picture != kCursorImageResize && picture != kCursorImageRotate &&
            picture != kCursorImageTilt) {
            for (int dy = 0; dy < 2; ++dy)
                for (int dx = 0; dx < 2; ++dx)
                    EXPECT_EQ(twice.pixel(2 * kCursorHotSpot + dx, 2 * kCursorHotSpot + dy),
                              0xFF000000u)
                        << picture;
        }
    }
}

TEST(CursorPictures, ScaleIsTheWholeNumberAboveTheScreensRatio)
{
    EXPECT_EQ(CursorScaleFor(1.0), 1);
    EXPECT_EQ(CursorScaleFor(0.5), 1);
    EXPECT_EQ(CursorScaleFor(1.25), 2);
    EXPECT_EQ(CursorScaleFor(2.0), 2);
    EXPECT_EQ(CursorScaleFor(3.0), 3);
    EXPECT_EQ(CursorScaleFor(9.0), kLargestCursorScale);
    EXPECT_EQ(CursorScaleFor(std::nan("")), 1);
    EXPECT_EQ(DrawCursorPicture(kCursorImageMove, 0).size(), QSize(32, 32));
    EXPECT_EQ(DrawCursorPicture(kCursorImageMove, 99).size(), QSize(128, 128));
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
