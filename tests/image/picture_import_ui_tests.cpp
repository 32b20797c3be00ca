// Pictures through the platform importer: files the program's own readers do not take arrive as
// 32-bit images, storage row 0 the bottom line. Runs with a QApplication, so every message box
// is answered by script.

#include "image/picture_import.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <cstdlib>
#include <string>

#include "image/cdib.h"
#include "image/cdib_pixels.h"
#include "image/picture_files.h"
#include "platform/dialog/message_box.h"

namespace {

using namespace pxtest;

// 4 x 3, a distinct colour at every pixel, alpha varying by line.
QImage Picture()
{
    QImage image(4, 3, QImage::Format_ARGB32);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            image.setPixel(x, y, qRgba(30 * x + 5, 70 * y + 9, 250 - 40 * x, 100 + 70 * y));
    return image;
}

// Blue, green, red, alpha of picture pixel (x, y), y from the top.
Bytes PicturePixel(int x, int y, bool alpha)
{
    return Bytes{static_cast<unsigned char>(250 - 40 * x), static_cast<unsigned char>(70 * y + 9),
                 static_cast<unsigned char>(30 * x + 5),
                 static_cast<unsigned char>(alpha ? 100 + 70 * y : 255)};
}

// The picture as a GIF (Qt does not write GIF): one table entry per pixel, so exact.
std::string SaveGif(const TempDir& dir, const char* name)
{
    std::vector<unsigned char> table;
    std::vector<unsigned char> indices;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            Bytes want = PicturePixel(x, y, false);
            table.insert(table.end(), {want[2], want[1], want[0]});
            indices.push_back(static_cast<unsigned char>(indices.size()));
        }
    std::string path = dir.File(name);
    EXPECT_TRUE(WriteBytes(path, MakeGif(4, 3, table, indices)));
    return path;
}

std::string SaveWithQt(const TempDir& dir, const QImage& image, const char* name,
                       const char* format)
{
    std::string path = dir.File(name);
    EXPECT_TRUE(image.save(QString::fromStdString(path), format)) << name;
    return path;
}

int LoadThroughFile(CDIB& image, const std::string& path, bool viaMacLoadPict = false)
{
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    return viaMacLoadPict ? MacLoadPict(&image, &file) : image.Load(&file);
}

TEST(ImportedPicture, PngArrivesAsThirtyTwoBitsBottomLineFirst)
{
    TempDir dir;
    std::string path = SaveWithQt(dir, Picture(), "picture.png", "PNG");
    CDIB image(1, 1, 8);
    ASSERT_EQ(LoadThroughFile(image, path, true), 0);
    EXPECT_EQ(image.GetBitCount(), 32);
    EXPECT_EQ(image.GetWid(), 4);
    EXPECT_EQ(image.GetHgt(), 3);
    EXPECT_EQ(image.nominalWidth, 4);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(Pixel(image, x, 2 - y), PicturePixel(x, y, true)) << x << "," << y;
}

TEST(ImportedPicture, LoadHandsJpegPngAndGifToTheImporter)
{
    TempDir dir;
    QImage opaque = Picture().convertToFormat(QImage::Format_RGB32);
    for (const char* format : {"PNG", "GIF", "JPEG"}) {
        std::string name = std::string("picture.") + format;
        std::string path = std::string(format) == "GIF"
                               ? SaveGif(dir, name.c_str())
                               : SaveWithQt(dir, opaque, name.c_str(), format);
        CDIB image(1, 1, 24);
        ASSERT_EQ(LoadThroughFile(image, path), 0) << format;
        EXPECT_EQ(image.GetBitCount(), 32) << format;
        EXPECT_EQ(image.GetWid(), 4);
        EXPECT_EQ(image.GetHgt(), 3);
        Bytes pixel = Pixel(image, 1, 2);  // top line
        Bytes want = PicturePixel(1, 0, false);
        int slack = std::string(format) == "JPEG" ? 48 : 0;  // a 4 x 3 JPEG keeps only rough colour
        for (int b = 0; b < 3; ++b)
            EXPECT_LE(std::abs(pixel[b] - want[b]), slack) << format << " byte " << b;
        EXPECT_EQ(pixel[3], 255) << format;
    }
}

TEST(ImportedPicture, FileLoaderAnswersOneForAnImportedPicture)
{
    TempDir dir;
    std::string path = SaveWithQt(dir, Picture(), "picture.jpg", "JPEG");
    FSpec spec = PathSpec(path);
    CDIB image(1, 1, 24);
    ClearMessageBoxScript();
    EXPECT_EQ(image.Load(&spec, nullptr, true), 1);
    EXPECT_EQ(image.GetBitCount(), 32);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
}

TEST(ImportedPicture, TooLargeIsReportedWithTheSizeMessage)
{
    TempDir dir;
    QImage wide(9000, 1, QImage::Format_RGB32);
    wide.fill(Qt::gray);
    std::string path = SaveWithQt(dir, wide, "wide.png", "PNG");
    CDIB image(1, 1, 24);
    EXPECT_EQ(LoadThroughFile(image, path), 2);
    FSpec spec = PathSpec(path);
    ClearMessageBoxScript();
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_EQ(image.Load(&spec, nullptr, true), 0);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].shownText, "Images must be smaller than 8192 pixels");
    EXPECT_EQ(boxes[0].way, MessageBoxWay::kScripted);
}

TEST(ImportedPicture, UnknownBytesAreUnreadable)
{
    TempDir dir;
    ASSERT_TRUE(WriteText(dir.File("notes.txt"), "twelve bytes and more of plain text"));
    CDIB image(1, 1, 24);
    EXPECT_EQ(LoadThroughFile(image, dir.File("notes.txt"), true), 3);
    EXPECT_EQ(LoadThroughFile(image, dir.File("notes.txt")), 3);
    FSpec spec = PathSpec(dir.File("notes.txt"));
    ClearMessageBoxScript();
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_EQ(image.Load(&spec, nullptr, true), 0);
    EXPECT_EQ(TakeShownMessageBoxes().at(0).shownText, "Can't read image file  [ 3 ]");
}

TEST(ImportedPicture, FileKnownOnlyByItsNumberIsReadThroughMemory)
{
    TempDir dir;
    std::string path = SaveWithQt(dir, Picture(), "picture.png", "PNG");
    FSpec spec = PathSpec(path);
    CPFile opened(&spec, kFileRead);
    CPFile adopted;
    adopted.SetFileNum(opened.GetFileNum());
    ASSERT_EQ(adopted.GetFSpec()->name[0], '\0');
    CDIB image(1, 1, 24);
    int result = MacLoadPict(&image, &adopted);
    adopted.SetFileNum(0);  // the file stays with `opened`
    ASSERT_EQ(result, 0);
    EXPECT_EQ(Pixel(image, 3, 0), PicturePixel(3, 2, true));
}

TEST(ImportedPicture, ByNameToo)
{
    TempDir dir;
    std::string path = SaveGif(dir, "picture.gif");
    FSpec spec = PathSpec(path);
    CDIB image(1, 1, 24);
    EXPECT_EQ(MacLoadPict(&image, &spec), 0);
    EXPECT_EQ(image.GetWid(), 4);
    FSpec missing = PathSpec(dir.File("missing.gif"));
    EXPECT_EQ(MacLoadPict(&image, &missing), 3);
}

TEST(ImportedPicture, TargetWithoutHeaderIsRefused)
{
    TempDir dir;
    std::string path = SaveWithQt(dir, Picture(), "picture.png", "PNG");
    CDIB empty(0, 0, 24);
    EXPECT_EQ(LoadThroughFile(empty, path, true), 4);
    EXPECT_EQ(empty.header, nullptr);
}

TEST(ImportedPicture, RefusedCreateIsOutOfMemory)
{
    TempDir dir;
    std::string path = SaveWithQt(dir, Picture(), "picture.png", "PNG");
    SpyDIB image;
    image.fail = true;
    EXPECT_EQ(LoadThroughFile(image, path, true), 6);
    EXPECT_EQ(image.lastBits, 32);
}

TEST(BuiltInPicture, PlaceholderIsAThirtyTwoBitPicture)
{
    CDIB image(1, 1, 8);
    ASSERT_TRUE(BitmapToDIB(&image, 133));
    EXPECT_EQ(image.GetWid(), 320);
    EXPECT_EQ(image.GetHgt(), 240);
    EXPECT_EQ(image.GetBitCount(), 32);
    // The frame's grey in both corners, the top line at the highest storage row.
    EXPECT_EQ(Pixel(image, 2, 239), (Bytes{96, 96, 96, 255}));
    EXPECT_EQ(Pixel(image, 317, 0), (Bytes{96, 96, 96, 255}));
    // The sky above the camera, between the cross's arms.
    EXPECT_EQ(Pixel(image, 160, 219), (Bytes{200, 200, 200, 255}));
}

TEST(BuiltInPicture, UnknownNumberLeavesTheImageAlone)
{
    CDIB image(5, 5, 24);
    EXPECT_FALSE(BitmapToDIB(&image, 9999));
    EXPECT_EQ(image.GetWid(), 5);
    EXPECT_EQ(image.GetBitCount(), 24);
    EXPECT_FALSE(BitmapToDIB(nullptr, 133));
}

TEST(JpegPictureLibrary, IsNotPartOfTheProgram)
{
    EXPECT_FALSE(JP_DllInstalled());
    TempDir dir;
    std::string path = SaveWithQt(dir, Picture(), "picture.jpg", "JPEG");
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    CDIB image(2, 2, 24);
    image.bits[0] = 77;
    unsigned char buffer[16] = {};
    long width = -1;
    long height = -1;
    EXPECT_EQ(JP_JpegToMem(&file, buffer, sizeof buffer, &width, &height), 0);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(JP_JpegToDIB(&image, &file), 0);
    EXPECT_EQ(JP_JpegFromDIB(&image, &file, 90), 0);
    EXPECT_EQ(image.bits[0], 77);
    // Without the library LoadJpeg cannot read; the platform importer does instead.
    EXPECT_EQ(image.LoadJpeg(&file), 3);
    CDIB empty(0, 0, 24);
    EXPECT_EQ(empty.LoadJpeg(&file), 4);
    EXPECT_EQ(image.Load(&file), 0);
    EXPECT_EQ(image.GetBitCount(), 32);
}

}  // namespace
