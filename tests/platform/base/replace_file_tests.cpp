// Replacing whole files: the new bytes or the old file, never a mixture and never a stray
// temporary file.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "platform/base/replace_file.h"
#include "support/file_size_limit.h"
#include "support/small_disk.h"
#include "support/temp_dir.h"

namespace {

// Names in the folder other than `keep`.
std::vector<std::string> Others(const std::string& folder, const std::string& keep)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::string name = entry.path().filename().string();
        if (name != keep)
            names.push_back(name);
    }
    return names;
}

TEST(ReplaceFile, ShorterContentsLeaveNoOldTail)
{
    pxtest::TempDir dir;
    std::string path = dir.File("notes.txt");
    ASSERT_TRUE(pxtest::WriteText(path, "a long first version of the file"));
    std::string error = "unset";
    ASSERT_TRUE(ReplaceFile(path, "short", 5, &error));
    EXPECT_EQ(pxtest::ReadText(path), "short");
    EXPECT_EQ(error, "");
    EXPECT_TRUE(Others(dir.Path(), "notes.txt").empty());
}

TEST(ReplaceFile, FileSizeLimitKeepsThePreviousFileAndNoTemporary)
{
    pxtest::TempDir dir;
    std::string path = dir.File("big.bin");
    ASSERT_TRUE(pxtest::WriteText(path, "previous"));
    std::vector<char> bytes(64 * 1024, 'x');
    std::string error;
    {
        pxtest::FileSizeLimit limit(4096);
        EXPECT_FALSE(ReplaceFile(path, bytes.data(), bytes.size(), &error));
    }
    EXPECT_EQ(pxtest::ReadText(path), "previous");
    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(LastFileReplacementError(), error);
    EXPECT_TRUE(Others(dir.Path(), "big.bin").empty());
}

TEST(ReplaceFile, FullDiskKeepsThePreviousFileAndNoTemporary)
{
    pxtest::SmallDisk disk(64 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << disk.Reason();
    std::string path = disk.File("show.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "the show as it was"));
    std::vector<char> bytes(256 * 1024, 'x');
    std::string error;
    EXPECT_FALSE(ReplaceFile(path, bytes.data(), bytes.size(), &error));
    EXPECT_EQ(pxtest::ReadText(path), "the show as it was");
    EXPECT_NE(error.find("No space left on device"), std::string::npos) << error;
    EXPECT_TRUE(Others(disk.Path(), "show.plx").empty());
}

TEST(ReplaceFile, ReadOnlyFolderIsRefusedWithItsReason)
{
    pxtest::SmallDisk disk(64 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << disk.Reason();
    std::string path = disk.File("frame.tga");
    ASSERT_TRUE(pxtest::WriteText(path, "old frame"));
    ASSERT_TRUE(disk.MakeReadOnly());
    std::string error;
    EXPECT_FALSE(ReplaceFile(path, "new", 3, &error));
    EXPECT_EQ(error, "cannot create a file in " + disk.Path() + ": Read-only file system");
    EXPECT_EQ(pxtest::ReadText(path), "old frame");
}

TEST(ReplaceFile, MissingFolderIsRefused)
{
    pxtest::TempDir dir;
    std::string error;
    EXPECT_FALSE(ReplaceFile(dir.File("no/such/file"), "x", 1, &error));
    EXPECT_NE(error.find("No such file or directory"), std::string::npos) << error;
}

TEST(ReplaceFile, LongestLeafNameStillGetsATemporaryBeside)
{
    pxtest::TempDir dir;
    std::string path = dir.File(std::string(255, 'n'));
    ASSERT_TRUE(ReplaceFile(path, "x", 1));
    EXPECT_EQ(pxtest::ReadText(path), "x");
}

TEST(FileReplacement, AnotherWriterFillsTheTemporaryAndCommitPutsItInPlace)
{
    pxtest::TempDir dir;
    std::string path = dir.File("movie.mov");
    ASSERT_TRUE(pxtest::WriteText(path, "older movie"));
    FileReplacement replacement(path);
    ASSERT_TRUE(replacement.Begin());
    EXPECT_EQ(std::filesystem::path(replacement.TemporaryPath()).parent_path().string(),
              dir.Path());
    ASSERT_TRUE(pxtest::WriteText(replacement.TemporaryPath(), "new movie"));
    EXPECT_EQ(pxtest::ReadText(path), "older movie");
    ASSERT_TRUE(replacement.Commit());
    EXPECT_EQ(pxtest::ReadText(path), "new movie");
    EXPECT_TRUE(Others(dir.Path(), "movie.mov").empty());
}

TEST(FileReplacement, AbandonedOrDroppedReplacementLeavesTheTargetAlone)
{
    pxtest::TempDir dir;
    std::string path = dir.File("still.bmp");
    ASSERT_TRUE(pxtest::WriteText(path, "kept"));
    {
        FileReplacement dropped(path);
        ASSERT_TRUE(dropped.Begin());
        ASSERT_TRUE(dropped.Write("half", 4));
    }
    FileReplacement abandoned(path);
    ASSERT_TRUE(abandoned.Begin());
    abandoned.Abandon();
    EXPECT_FALSE(abandoned.Commit());
    EXPECT_EQ(pxtest::ReadText(path), "kept");
    EXPECT_TRUE(Others(dir.Path(), "still.bmp").empty());
}

TEST(ReplaceFile, FolderOrDeviceOfThatNameIsRefusedAndAPipeIsReplaced)
{
    pxtest::TempDir dir;
    std::string error;
    std::filesystem::create_directory(dir.File("folder"));
    EXPECT_FALSE(ReplaceFile(dir.File("folder"), "x", 1, &error));
    EXPECT_EQ(error, "a folder has that name");
    EXPECT_FALSE(ReplaceFile("/dev/null", "x", 1, &error));
    EXPECT_EQ(error, "a device has that name");
    ASSERT_EQ(mkfifo(dir.File("pipe").c_str(), 0666), 0);
    ASSERT_TRUE(ReplaceFile(dir.File("pipe"), "x", 1, &error)) << error;
    EXPECT_TRUE(std::filesystem::is_regular_file(dir.File("pipe")));
}

}  // namespace
