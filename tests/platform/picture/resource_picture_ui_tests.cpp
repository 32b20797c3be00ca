#include "platform/picture/resource_picture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

class TopDownRows : public PictureRows {
public:
    unsigned char* AllocateRows(int width, int height, long* lineStep) override
    {
        this->width = width;
        this->height = height;
        pixels.assign(static_cast<size_t>(width) * height * 4, 0);
        *lineStep = static_cast<long>(width) * 4;
        return pixels.data();
    }
    // Blue, green, red, alpha of (x, y) from the top.
    Bytes At(int x, int y) const
    {
        const unsigned char* at = pixels.data() + (static_cast<size_t>(y) * width + x) * 4;
        return Bytes(at, at + 4);
    }
    int width = 0;
    int height = 0;
    Bytes pixels;
};

TEST(ResourcePicture, PlaceholderIsBuiltIn)
{
    EXPECT_TRUE(HasResourcePicture(kPlaceholderPicture));
    EXPECT_FALSE(HasResourcePicture(134));
    EXPECT_FALSE(HasResourcePicture(-1));
}

TEST(ResourcePicture, PlaceholderShowsAFrameACrossAndACamera)
{
    TopDownRows rows;
    ASSERT_EQ(LoadResourcePicture(kPlaceholderPicture, &rows), kImportDone);
    ASSERT_EQ(rows.width, 320);
    ASSERT_EQ(rows.height, 240);
    // Colours as tools/draw_placeholder.py draws them, blue first.
    EXPECT_EQ(rows.At(3, 3), (Bytes{96, 96, 96, 255})) << "frame";
    EXPECT_EQ(rows.At(316, 236), (Bytes{96, 96, 96, 255})) << "frame";
    EXPECT_EQ(rows.At(160, 20), (Bytes{200, 200, 200, 255})) << "ground";
    EXPECT_EQ(rows.At(40, 32), (Bytes{40, 40, 176, 255})) << "cross, near its top-left end";
    EXPECT_EQ(rows.At(280, 32), (Bytes{40, 40, 176, 255})) << "cross, near its top-right end";
    EXPECT_EQ(rows.At(160, 140), (Bytes{84, 52, 36, 255})) << "lens";
    EXPECT_EQ(rows.At(210, 100), (Bytes{120, 220, 250, 255})) << "flash";
}

TEST(ResourcePicture, UnknownNumberIsUnreadable)
{
    TopDownRows rows;
    EXPECT_EQ(LoadResourcePicture(134, &rows), kImportUnreadable);
    EXPECT_EQ(rows.width, 0);
}

}  // namespace
