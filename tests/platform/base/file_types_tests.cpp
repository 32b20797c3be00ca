#include "platform/base/file_types.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

TEST(FileTypes, TypeAndCreatorReadBackWhereTheFileSystemKeepsThem)
{
    pxtest::TempDir dir;
    std::string path = dir.File("show.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));
    if (!SetFileTypeAndCreator(path.c_str(), "PXSH", "HLBK"))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    char type[4] = {};
    char creator[4] = {};
    ASSERT_TRUE(GetFileTypeAndCreator(path.c_str(), type, creator));
    EXPECT_EQ(std::string(type, 4), "PXSH");
    EXPECT_EQ(std::string(creator, 4), "HLBK");
}

TEST(FileTypes, MissingFileIsRefusedQuietly)
{
    pxtest::TempDir dir;
    std::string path = dir.File("absent");
    EXPECT_FALSE(SetFileTypeAndCreator(path.c_str(), "TEXT", "ttxt"));
    char type[4];
    char creator[4];
    EXPECT_FALSE(GetFileTypeAndCreator(path.c_str(), type, creator));
    EXPECT_FALSE(SetFileTypeAndCreator(nullptr, "TEXT", "ttxt"));
}

TEST(FileTypes, FileWithoutTypesAnswersFalse)
{
    pxtest::TempDir dir;
    std::string path = dir.File("plain");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));
    char type[4];
    char creator[4];
    EXPECT_FALSE(GetFileTypeAndCreator(path.c_str(), type, creator));
}
