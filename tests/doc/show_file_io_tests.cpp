// Show files on disk: opening reads the whole file and refuses what is not a show before the
// current show changes; writing puts a complete file in place of the old one or leaves it alone.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "doc_fixture.h"
#include "support/bmp_files.h"
#include "support/file_size_limit.h"
#include "support/temp_dir.h"

namespace {

using pxtest::PathSpec;

class ShowFileIo : public DocFixture {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        UseSettings("");
    }

    // Two real pictures with a key each, starting at 0 and 120.
    void MakeShow()
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("a.bmp"), 40, 30, {200, 10, 10}));
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("b.bmp"), 50, 20, {10, 200, 10}));
        FSpec a = PathSpec(dir.File("a.bmp"));
        FSpec b = PathSpec(dir.File("b.bmp"));
        doc->LoadPicture(&a, 0, 0);
        doc->LoadPicture(&b, 1, 120);
        ASSERT_EQ(doc->picCount, 2);
        doc->SetKey(1, KeyAt(60, 10.0f, 12.0f), 0);
        doc->SetKey(1, KeyAt(40, 20.0f, 5.0f), 1);
        doc->matteColor = 0x123456;
        doc->border = 4;
    }

    pxtest::TempDir dir;
};

TEST_F(ShowFileIo, WrittenFileOpensAsTheSameShow)
{
    MakeShow();
    FSpec file = PathSpec(dir.File("show.plx"));
    ASSERT_TRUE(doc->WriteShowFile(&file));
    CDoc opened;
    ASSERT_EQ(opened.OpenShowFile(&file, false), ShowFileResult::kOpened);
    EXPECT_EQ(opened.picCount, 2);
    for (int pic = 0; pic < 2; ++pic) {
        ASSERT_EQ(opened.keyCount[pic], doc->keyCount[pic]) << pic;
        EXPECT_EQ(std::memcmp(&opened.picSpec[pic], &doc->picSpec[pic], sizeof(FSpec)), 0) << pic;
        EXPECT_EQ(
            std::memcmp(opened.keys[pic], doc->keys[pic], sizeof(KeyStruct) * doc->keyCount[pic]),
            0)
            << pic;
    }
    EXPECT_EQ(opened.matteColor, 0x123456);
    EXPECT_EQ(opened.border, 4);
    EXPECT_EQ(opened.showID, doc->showID);
}

TEST_F(ShowFileIo, ShorterShowWrittenOverALongerOneOpensAsTheShorter)
{
    MakeShow();
    FSpec file = PathSpec(dir.File("show.plx"));
    ASSERT_TRUE(doc->WriteShowFile(&file));
    doc->DeletePic(1);
    ASSERT_TRUE(doc->WriteShowFile(&file));
    EXPECT_EQ(pxtest::ReadBytes(dir.File("show.plx")).size(),
              static_cast<size_t>(doc->SaveShow(nullptr, nullptr)));
    CDoc opened;
    ASSERT_EQ(opened.OpenShowFile(&file, false), ShowFileResult::kOpened);
    EXPECT_EQ(opened.picCount, 1);
}

TEST_F(ShowFileIo, FailedSaveLeavesThePreviousFileAndTheDirtyFlag)
{
    MakeShow();
    FSpec file = PathSpec(dir.File("show.plx"));
    ASSERT_TRUE(doc->WriteShowFile(&file));
    std::vector<unsigned char> before = pxtest::ReadBytes(dir.File("show.plx"));
    doc->dirty = true;
    FSpec nowhere = PathSpec(dir.File("no/such/folder/show.plx"));
    EXPECT_FALSE(doc->WriteShowFile(&nowhere));
    EXPECT_TRUE(doc->dirty);
    EXPECT_EQ(pxtest::ReadBytes(dir.File("show.plx")), before);
}

TEST_F(ShowFileIo, SaveOnAFullDiskKeepsThePreviousShowWholeAndNoTemporary)
{
    MakeShow();
    FSpec file = PathSpec(dir.File("show.plx"));
    ASSERT_TRUE(doc->WriteShowFile(&file));
    std::vector<unsigned char> before = pxtest::ReadBytes(dir.File("show.plx"));
    doc->dirty = true;
    {
        pxtest::FileSizeLimit limit(100);
        EXPECT_FALSE(doc->WriteShowFile(&file));
    }
    EXPECT_TRUE(doc->dirty);
    EXPECT_EQ(pxtest::ReadBytes(dir.File("show.plx")), before);
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        EXPECT_EQ(entry.path().filename().string().find(".partial-"), std::string::npos)
            << entry.path();
}

TEST_F(ShowFileIo, OpeningAFileThatIsNotAShowLeavesTheCurrentShow)
{
    MakeShow();
    ASSERT_TRUE(pxtest::WriteText(dir.File("notes.txt"), "not a show at all"));
    FSpec notes = PathSpec(dir.File("notes.txt"));
    EXPECT_EQ(doc->OpenShowFile(&notes, false), ShowFileResult::kNotAShow);
    EXPECT_EQ(doc->picCount, 2);
    FSpec missing = PathSpec(dir.File("missing.plx"));
    EXPECT_EQ(doc->OpenShowFile(&missing, false), ShowFileResult::kCantOpen);
    EXPECT_EQ(doc->picCount, 2);
    EXPECT_EQ(doc->OpenShowFile(nullptr, false), ShowFileResult::kCantOpen);
    EXPECT_EQ(doc->picCount, 2);
}

}  // namespace
