// The main window's title.

#include "ui/main/show_title.h"

#include <gtest/gtest.h>
#include <cstring>
#include <string>

namespace {

std::string Title(const char* path, const char* product = nullptr)
{
    char out[kTitleSize];
    std::memset(out, '#', sizeof out);
    MakeShowTitle(path, product, out);
    return out;
}

TEST(ShowTitle, NamesTheShowWithoutFolderAndExtension)
{
    EXPECT_EQ(Title("/shows/My Trip.plx"), "Hollerbank Parallaxotron - My Trip");
}

TEST(ShowTitle, WithoutShowIsTheProductAlone)
{
    EXPECT_EQ(Title(nullptr), "Hollerbank Parallaxotron");
}

TEST(ShowTitle, ReducedVariantUsesItsOwnName)
{
    EXPECT_EQ(Title("/a/b.plx", "Slatewhirl"), "Slatewhirl - b");
    EXPECT_EQ(Title(nullptr, "Slatewhirl"), "Slatewhirl");
}

TEST(ShowTitle, LongPathFitsTheTitleBuffer)
{
    std::string path = "/" + std::string(2000, 'x') + ".plx";
    std::string title = Title(path.c_str());
    EXPECT_EQ(title.size(), static_cast<size_t>(kTitleSize - 1));
    EXPECT_EQ(title.rfind("Hollerbank Parallaxotron - xxx", 0), 0u);
}

}  // namespace
