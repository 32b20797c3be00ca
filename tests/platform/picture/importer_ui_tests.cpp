#include "platform/picture/importer.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/picture/test_gif.h"
#include "support/temp_dir.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Rows kept top line first, or bottom line first (negative step), with room to spare on each
// line so a step that ignored the line size would show.
class TestRows : public PictureRows {
public:
    explicit TestRows(bool bottomUp = false, bool refuse = false)
        : bottomUp_(bottomUp), refuse_(refuse)
    {
    }
    unsigned char* AllocateRows(int width, int height, long* lineStep) override
    {
        ++calls;
        this->width = width;
        this->height = height;
        if (refuse_)
            return nullptr;
        line_ = static_cast<long>(width) * 4 + 8;
        pixels.assign(static_cast<size_t>(line_ * height), 0xCD);
        if (bottomUp_) {
            *lineStep = -line_;
            return pixels.data() + static_cast<size_t>(line_ * (height - 1));
        }
        *lineStep = line_;
        return pixels.data();
    }
    // Blue, green, red, alpha of picture pixel (x, y), y counted from the top.
    Bytes At(int x, int y) const
    {
        long line = bottomUp_ ? height - 1 - y : y;
        const unsigned char* at = pixels.data() + line * line_ + x * 4;
        return Bytes(at, at + 4);
    }

    int calls = 0;
    int width = 0;
    int height = 0;
    Bytes pixels;

private:
    bool bottomUp_;
    bool refuse_;
    long line_ = 0;
};

// A 3 x 2 picture: a distinct colour at every pixel, with alpha.
QImage SmallPicture(bool alpha)
{
    QImage image(3, 2, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            image.setPixel(
                x, y, qRgba(10 + 80 * x, 20 + 100 * y, 200 - 50 * x, alpha ? 60 + 90 * y : 255));
    return image;
}

Bytes Expected(int x, int y, bool alpha)
{
    return Bytes{static_cast<unsigned char>(200 - 50 * x), static_cast<unsigned char>(20 + 100 * y),
                 static_cast<unsigned char>(10 + 80 * x),
                 static_cast<unsigned char>(alpha ? 60 + 90 * y : 255)};
}

std::string Save(const pxtest::TempDir& dir, const QImage& image, const char* name,
                 const char* format)
{
    std::string path = dir.File(name);
    EXPECT_TRUE(image.save(QString::fromStdString(path), format));
    return path;
}

TEST(ImportPicture, PngArrivesExactlyTopLineFirst)
{
    pxtest::TempDir dir;
    std::string path = Save(dir, SmallPicture(true), "small.png", "PNG");
    TestRows rows;
    ASSERT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportDone);
    EXPECT_EQ(rows.calls, 1);
    EXPECT_EQ(rows.width, 3);
    EXPECT_EQ(rows.height, 2);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(rows.At(x, y), Expected(x, y, true)) << x << "," << y;
    EXPECT_EQ(rows.pixels[12], 0xCD) << "line slack untouched";
}

TEST(ImportPicture, NegativeStepFillsBottomUpStorage)
{
    pxtest::TempDir dir;
    std::string path = Save(dir, SmallPicture(false), "small.png", "PNG");
    TestRows rows(true);
    ASSERT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportDone);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(rows.At(x, y), Expected(x, y, false));
    // Storage line 0 is the bottom picture line.
    EXPECT_EQ(Bytes(rows.pixels.begin(), rows.pixels.begin() + 4), Expected(0, 1, false));
}

// A picture that no reader may allocate an image for: it can only arrive by being decoded
// straight into the caller's rows, with no second copy of it on the way.
TEST(ImportPicture, PngAndJpegAreDecodedStraightIntoTheRows)
{
    pxtest::TempDir dir;
    QImage large(1200, 700, QImage::Format_RGB32);
    for (int y = 0; y < large.height(); ++y)
        for (int x = 0; x < large.width(); ++x)
            large.setPixel(x, y, qRgb(x % 256, y % 256, (x + y) % 256));
    std::string png = Save(dir, large, "large.png", "PNG");
    std::string jpeg = Save(dir, large, "large.jpg", "JPEG");
    TestRows warmUp;
    ASSERT_EQ(ImportPictureFile(png.c_str(), 8192, &warmUp), kImportDone);
    const int limit = QImageReader::allocationLimit();
    QImageReader::setAllocationLimit(2);  // megabytes; the picture is 3.4 MB at 4 bytes a pixel
    for (bool bottomUp : {false, true}) {
        TestRows rows(bottomUp);
        EXPECT_EQ(ImportPictureFile(png.c_str(), 8192, &rows), kImportDone) << bottomUp;
        int wrong = 0;
        for (int y = 0; y < 700; ++y) {
            for (int x = 0; x < 1200; ++x) {
                Bytes expected{static_cast<unsigned char>((x + y) % 256),
                               static_cast<unsigned char>(y % 256),
                               static_cast<unsigned char>(x % 256), 255};
                wrong += rows.At(x, y) != expected ? 1 : 0;
            }
        }
        EXPECT_EQ(wrong, 0) << bottomUp;
        EXPECT_EQ(rows.pixels[4800], 0xCD) << "line slack untouched";
        TestRows fromJpeg(bottomUp);
        EXPECT_EQ(ImportPictureFile(jpeg.c_str(), 8192, &fromJpeg), kImportDone) << bottomUp;
        EXPECT_NEAR(fromJpeg.At(600, 650)[2], 600 % 256, 12);
        EXPECT_NEAR(fromJpeg.At(600, 650)[1], 650 % 256, 12);
    }
    QImageReader::setAllocationLimit(limit);
}

TEST(ImportPicture, IndexedPicturesAreConvertedAndOpaque)
{
    pxtest::TempDir dir;
    QImage indexed = SmallPicture(false).convertToFormat(QImage::Format_Indexed8);
    ASSERT_EQ(indexed.format(), QImage::Format_Indexed8);
    std::string png = Save(dir, indexed, "small.png", "PNG");

    // The same picture as a GIF: one table entry per pixel.
    std::vector<unsigned char> table;
    std::vector<unsigned char> indices;
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            Bytes want = Expected(x, y, false);
            table.insert(table.end(), {want[2], want[1], want[0]});
            indices.push_back(static_cast<unsigned char>(indices.size()));
        }
    std::string gif = dir.File("small.gif");
    ASSERT_TRUE(pxtest::WriteBytes(gif, pxtest::MakeGif(3, 2, table, indices)));

    for (const std::string& path : {png, gif}) {
        TestRows rows;
        ASSERT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportDone) << path;
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 3; ++x)
                EXPECT_EQ(rows.At(x, y), Expected(x, y, false)) << path;
    }
}

TEST(ImportPicture, JpegArrivesCloseToItsColoursAndOpaque)
{
    pxtest::TempDir dir;
    QImage flat(16, 16, QImage::Format_RGB32);
    flat.fill(QColor(200, 120, 40));
    std::string path = Save(dir, flat, "flat.jpg", "JPEG");
    TestRows rows;
    ASSERT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportDone);
    EXPECT_EQ(rows.width, 16);
    Bytes pixel = rows.At(7, 9);
    EXPECT_LE(std::abs(pixel[0] - 40), 4);
    EXPECT_LE(std::abs(pixel[1] - 120), 4);
    EXPECT_LE(std::abs(pixel[2] - 200), 4);
    EXPECT_EQ(pixel[3], 255);
}

TEST(ImportPicture, CameraOrientationIsApplied)
{
    pxtest::TempDir dir;
    QImage wide(8, 4, QImage::Format_RGB32);
    wide.fill(Qt::white);
    QImageWriter writer(QString::fromStdString(dir.File("turned.jpg")), "jpeg");
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    ASSERT_TRUE(writer.write(wide));
    TestRows rows;
    ASSERT_EQ(ImportPictureFile(dir.File("turned.jpg").c_str(), 8192, &rows), kImportDone);
    EXPECT_EQ(rows.width, 4);
    EXPECT_EQ(rows.height, 8);
}

TEST(ImportPicture, FormatIsToldByContentNotName)
{
    pxtest::TempDir dir;
    std::string path = Save(dir, SmallPicture(true), "picture.tga", "PNG");
    TestRows rows;
    ASSERT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportDone);
    EXPECT_EQ(rows.At(2, 1), Expected(2, 1, true));
}

TEST(ImportPicture, SidesAboveTheLimitAreRefusedUnread)
{
    pxtest::TempDir dir;
    QImage wide(9000, 2, QImage::Format_RGB32);
    wide.fill(Qt::black);
    std::string path = Save(dir, wide, "wide.png", "PNG");
    TestRows rows;
    EXPECT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportTooLarge);
    EXPECT_EQ(rows.calls, 0);
    EXPECT_EQ(ImportPictureFile(path.c_str(), 9000, &rows), kImportDone)
        << "the limit itself is fine";
    EXPECT_EQ(ImportPictureFile(path.c_str(), 8999, &rows), kImportTooLarge);
}

TEST(ImportPicture, WhatIsNoPictureIsUnreadable)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteText(dir.File("words.txt"), "this is not a picture at all\n"));
    TestRows rows;
    EXPECT_EQ(ImportPictureFile(dir.File("words.txt").c_str(), 8192, &rows), kImportUnreadable);
    EXPECT_EQ(ImportPictureFile(dir.File("missing.png").c_str(), 8192, &rows), kImportUnreadable);
    EXPECT_EQ(ImportPictureFile("", 8192, &rows), kImportUnreadable);
    EXPECT_EQ(ImportPictureFile(nullptr, 8192, &rows), kImportUnreadable);
    EXPECT_EQ(rows.calls, 0);

    // A PNG cut in the middle of its data.
    std::string path = Save(dir, SmallPicture(true), "cut.png", "PNG");
    Bytes bytes = pxtest::ReadBytes(path);
    bytes.resize(bytes.size() / 2);
    ASSERT_TRUE(pxtest::WriteBytes(path, bytes));
    EXPECT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportUnreadable);
}

TEST(ImportPicture, NoRoomFromTheCallerIsNoMemory)
{
    pxtest::TempDir dir;
    std::string path = Save(dir, SmallPicture(true), "small.png", "PNG");
    TestRows rows(false, true);
    EXPECT_EQ(ImportPictureFile(path.c_str(), 8192, &rows), kImportNoMemory);
    EXPECT_EQ(rows.calls, 1);
}

TEST(ImportPicture, PicturesInMemoryAreReadWhereTheyAre)
{
    QByteArray encoded;
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(SmallPicture(true).save(&buffer, "PNG"));
    TestRows rows;
    auto* data = reinterpret_cast<const unsigned char*>(encoded.constData());
    ASSERT_EQ(ImportPictureData(data, static_cast<size_t>(encoded.size()), 8192, &rows),
              kImportDone);
    EXPECT_EQ(rows.At(1, 0), Expected(1, 0, true));
    EXPECT_EQ(ImportPictureData(data, 0, 8192, &rows), kImportUnreadable);
    EXPECT_EQ(ImportPictureData(nullptr, 10, 8192, &rows), kImportUnreadable);
    EXPECT_EQ(ImportPictureData(data, 20, 8192, &rows), kImportUnreadable) << "header only";
}

}  // namespace
