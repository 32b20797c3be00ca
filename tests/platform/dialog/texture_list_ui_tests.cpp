// The colour picker's textures: which files of a folder are listed, in what order and how many,
// and their pictures made small. The pictures are written here with Qt's own writers.

#include "platform/dialog/texture_list.h"

#include <gtest/gtest.h>
#include <QImage>
#include <QString>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace {

bool SavePicture(const std::string& path, uint32_t rgb, int width = 4, int height = 4)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(0xFF000000u | rgb);
    return image.save(QString::fromStdString(path));
}

// Four quarters: red top-left, green top-right, blue bottom-left, white bottom-right.
bool SaveQuarters(const std::string& path, int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            bool right = x >= width / 2, bottom = y >= height / 2;
            uint32_t rgb =
                bottom ? (right ? 0xFFFFFFu : 0x0000FFu) : (right ? 0x00FF00u : 0xFF0000u);
            image.setPixel(x, y, 0xFF000000u | rgb);
        }
    }
    return image.save(QString::fromStdString(path));
}

uint32_t At(const std::vector<uint32_t>& pixels, int x, int y)
{
    return pixels[size_t(y) * kTexturePreviewWidth + size_t(x)];
}

std::vector<std::string> Names(const std::vector<std::string>& paths)
{
    std::vector<std::string> names;
    for (const std::string& path : paths)
        names.push_back(std::filesystem::path(path).filename().string());
    return names;
}

// ---------------------------------------------------------------------------------------------
// ListTextures

TEST(ListTextures, NoFolderListsNothing)
{
    EXPECT_TRUE(ListTextures(nullptr).empty());
    EXPECT_TRUE(ListTextures("").empty());
}

TEST(ListTextures, AMissingFolderListsNothing)
{
    pxtest::TempDir dir;
    EXPECT_TRUE(ListTextures(dir.File("not-there").c_str()).empty());
}

TEST(ListTextures, AnEmptyFolderListsNothing)
{
    pxtest::TempDir dir;
    EXPECT_TRUE(ListTextures(dir.Path().c_str()).empty());
}

TEST(ListTextures, AFileNamedAsTheFolderListsNothing)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("single.png"), 0x808080));
    EXPECT_TRUE(ListTextures(dir.File("single.png").c_str()).empty());
}

TEST(ListTextures, ListsPictureFilesOnlyWithTheirFullPaths)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("stone.png"), 0x808080));
    ASSERT_TRUE(SavePicture(dir.File("wood.bmp"), 0x804020));
    ASSERT_TRUE(SavePicture(dir.File("sky.jpg"), 0x4080FF));
    ASSERT_TRUE(pxtest::WriteText(dir.File("notes.txt"), "not a picture"));
    ASSERT_TRUE(pxtest::WriteText(dir.File("README"), "nor this"));
    std::filesystem::create_directory(dir.File("folder.png"));
    std::vector<std::string> paths = ListTextures(dir.Path().c_str());
    EXPECT_EQ(paths, (std::vector<std::string>{dir.File("sky.jpg"), dir.File("stone.png"),
                                               dir.File("wood.bmp")}));
}

TEST(ListTextures, ExtensionsCountWhateverTheirCase)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("loud.PNG"), 0x808080));
    ASSERT_TRUE(SavePicture(dir.File("mixed.Bmp"), 0x808080));
    EXPECT_EQ(Names(ListTextures(dir.Path().c_str())),
              (std::vector<std::string>{"loud.PNG", "mixed.Bmp"}));
}

TEST(ListTextures, SortsByNameWithoutRegardToCase)
{
    pxtest::TempDir dir;
    for (const char* name : {"b.png", "C.png", "a.png", "D.png", "e.bmp"})
        ASSERT_TRUE(SavePicture(dir.File(name), 0x808080)) << name;
    EXPECT_EQ(Names(ListTextures(dir.Path().c_str())),
              (std::vector<std::string>{"a.png", "b.png", "C.png", "D.png", "e.bmp"}));
}

TEST(ListTextures, ListsAtMostTheFirstMaxTexturesByName)
{
    pxtest::TempDir dir;
    const int files = kMaxTextures + 4;
    // Written last to first, so that the order on disk is not the order by name.
    for (int i = files - 1; i >= 0; --i) {
        char name[32];
        std::snprintf(name, sizeof name, "t%03d.png", i);
        ASSERT_TRUE(SavePicture(dir.File(name), 0x808080, 1, 1)) << name;
    }
    std::vector<std::string> paths = ListTextures(dir.Path().c_str());
    ASSERT_EQ(paths.size(), size_t(kMaxTextures));
    EXPECT_EQ(paths.front(), dir.File("t000.png"));
    char last[32];
    std::snprintf(last, sizeof last, "t%03d.png", kMaxTextures - 1);
    EXPECT_EQ(paths.back(), dir.File(last));
}

TEST(ListTextures, AFolderWithATrailingSlashListsTheSamePaths)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("stone.png"), 0x808080));
    std::string withSlash = dir.Path() + "/";
    EXPECT_EQ(ListTextures(withSlash.c_str()), (std::vector<std::string>{dir.File("stone.png")}));
}

TEST(ListTextures, FolderAndFileNamesAreUtf8BothWays)
{
    pxtest::TempDir dir;
    const std::string folder = dir.File("Stoffe \xC3\xA4\xC3\xB6");  // "Stoffe äö"
    ASSERT_TRUE(std::filesystem::create_directory(folder));
    const std::string file = folder + "/Gr\xC3\xBCn.png";  // "Grün.png"
    ASSERT_TRUE(SavePicture(file, 0x00FF00));
    ASSERT_TRUE(pxtest::FileExists(file)) << "written under its UTF-8 name";
    std::vector<std::string> paths = ListTextures(folder.c_str());
    ASSERT_EQ(paths, std::vector<std::string>{file});
    std::vector<uint32_t> pixels;
    EXPECT_TRUE(LoadTexturePreview(paths[0], &pixels));
    EXPECT_EQ(pixels.at(0), 0x00FF00u);
}

// ---------------------------------------------------------------------------------------------
// LoadTexturePreview

TEST(LoadTexturePreview, ScalesALargePictureDownTo96By64TopRowFirst)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SaveQuarters(dir.File("big.png"), 192, 128));
    std::vector<uint32_t> pixels;
    ASSERT_TRUE(LoadTexturePreview(dir.File("big.png"), &pixels));
    ASSERT_EQ(pixels.size(), size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
    // Away from the quarters' borders, where scaling may blend.
    EXPECT_EQ(At(pixels, 10, 10), 0xFF0000u);
    EXPECT_EQ(At(pixels, 85, 10), 0x00FF00u);
    EXPECT_EQ(At(pixels, 10, 55), 0x0000FFu);
    EXPECT_EQ(At(pixels, 85, 55), 0xFFFFFFu);
    EXPECT_EQ(At(pixels, 0, 0), 0xFF0000u);
    EXPECT_EQ(At(pixels, 95, 63), 0xFFFFFFu);
}

TEST(LoadTexturePreview, StretchesASmallPictureUpTo96By64)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SaveQuarters(dir.File("small.bmp"), 4, 2));
    std::vector<uint32_t> pixels;
    ASSERT_TRUE(LoadTexturePreview(dir.File("small.bmp"), &pixels));
    ASSERT_EQ(pixels.size(), size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
    EXPECT_EQ(At(pixels, 5, 5), 0xFF0000u);
    EXPECT_EQ(At(pixels, 90, 5), 0x00FF00u);
    EXPECT_EQ(At(pixels, 5, 58), 0x0000FFu);
    EXPECT_EQ(At(pixels, 90, 58), 0xFFFFFFu);
}

TEST(LoadTexturePreview, EveryWordIsZeroRedGreenBlue)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("plain.png"), 0x123456, 10, 10));
    std::vector<uint32_t> pixels;
    ASSERT_TRUE(LoadTexturePreview(dir.File("plain.png"), &pixels));
    ASSERT_EQ(pixels.size(), size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
    int others = 0;
    for (uint32_t word : pixels)
        others += word != 0x00123456u;
    EXPECT_EQ(others, 0) << "the top byte is always 0";
    const auto* bytes = reinterpret_cast<const unsigned char*>(pixels.data());
    EXPECT_EQ(bytes[0], 0x56) << "blue first in memory";
    EXPECT_EQ(bytes[1], 0x34);
    EXPECT_EQ(bytes[2], 0x12);
    EXPECT_EQ(bytes[3], 0x00);
}

TEST(LoadTexturePreview, APictureWithTransparencyStillHasAnEmptyTopByte)
{
    pxtest::TempDir dir;
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(0x80FF8040u);
    ASSERT_TRUE(image.save(QString::fromStdString(dir.File("glass.png"))));
    std::vector<uint32_t> pixels;
    ASSERT_TRUE(LoadTexturePreview(dir.File("glass.png"), &pixels));
    ASSERT_FALSE(pixels.empty());
    int withTopByte = 0;
    for (uint32_t word : pixels)
        withTopByte += (word >> 24) != 0;
    EXPECT_EQ(withTopByte, 0);
}

TEST(LoadTexturePreview, AFileThatIsNoPictureFailsAndEmptiesThePixels)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteText(dir.File("fake.png"), "this is text, not a PNG"));
    std::vector<uint32_t> pixels(17, 0xDEADBEEFu);
    EXPECT_FALSE(LoadTexturePreview(dir.File("fake.png"), &pixels));
    EXPECT_TRUE(pixels.empty());
}

TEST(LoadTexturePreview, AMissingFileFailsAndEmptiesThePixels)
{
    pxtest::TempDir dir;
    std::vector<uint32_t> pixels(17, 0xDEADBEEFu);
    EXPECT_FALSE(LoadTexturePreview(dir.File("gone.png"), &pixels));
    EXPECT_TRUE(pixels.empty());
    pixels.assign(3, 1u);
    EXPECT_FALSE(LoadTexturePreview("", &pixels));
    EXPECT_TRUE(pixels.empty());
}

TEST(LoadTexturePreview, ReplacesWhatThePixelsHeldBefore)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(SavePicture(dir.File("plain.png"), 0x336699));
    std::vector<uint32_t> pixels(100000, 0xDEADBEEFu);
    ASSERT_TRUE(LoadTexturePreview(dir.File("plain.png"), &pixels));
    ASSERT_EQ(pixels.size(), size_t(kTexturePreviewWidth) * kTexturePreviewHeight);
    EXPECT_EQ(pixels.back(), 0x336699u);
}

}  // namespace
