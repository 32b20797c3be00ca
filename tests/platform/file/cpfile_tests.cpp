#include "platform/file/cpfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/base/file_types.h"
#include "platform/file/paths.h"
#include "support/file_size_limit.h"
#include "support/temp_dir.h"

namespace {

FSpec PathSpec(const std::string& path)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::strncpy(spec.name, path.c_str(), sizeof spec.name - 1);
    return spec;
}

std::vector<unsigned char> Counting(size_t size)
{
    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < size; i++)
        bytes[i] = static_cast<unsigned char>(i * 13 + 1);
    return bytes;
}

}  // namespace

TEST(CPFile, NewFileIsClosedWithTheProgramsOwnTypes)
{
    CPFile file;
    EXPECT_EQ(file.GetFileNum(), 0);
    EXPECT_EQ(file.GetFileType(), TypeCode("PXSH"));
    EXPECT_EQ(file.GetCreatorType(), TypeCode("HLBK"));
}

TEST(CPFile, TypeCodesGiveTheirFourCharacterValues)
{
    CPFile file;
    file.SetFileType(1);
    file.SetCreatorType(1);
    EXPECT_EQ(file.GetFileType(), TypeCode("TPIC"));
    EXPECT_EQ(file.GetCreatorType(), TypeCode("ogle"));
    file.SetFileType(2);
    file.SetCreatorType(2);
    EXPECT_EQ(file.GetFileType(), TypeCode("PXST"));
    EXPECT_EQ(file.GetCreatorType(), TypeCode("HLBP"));
    file.SetFileType(0);
    file.SetCreatorType(0);
    EXPECT_EQ(file.GetFileType(), TypeCode("PXSH"));
    EXPECT_EQ(file.GetCreatorType(), TypeCode("HLBK"));
    file.SetFileType(TypeCode("TEXT"));
    file.SetCreatorType(TypeCode("****"));
    EXPECT_EQ(file.GetFileType(), TypeCode("TEXT"));
    EXPECT_EQ(file.GetCreatorType(), TypeCode("****"));
}

TEST(CPFile, OpenReadsAnExistingFileAndHandsBackPathForm)
{
    pxtest::TempDir dir;
    std::string path = dir.File("in.bin");
    ASSERT_TRUE(pxtest::WriteText(path, "hello"));
    FSpec spec = PathSpec(path);
    CPFile file;
    ASSERT_TRUE(file.Open(&spec, kFileRead));
    EXPECT_NE(file.GetFileNum(), 0);
    EXPECT_TRUE(IsPathForm(*file.GetFSpec()));
    EXPECT_EQ(std::string(file.GetFSpec()->name), path);
    char buffer[5] = {};
    EXPECT_EQ(file.Read(buffer, 5), 5);
    EXPECT_EQ(std::string(buffer, 5), "hello");
    EXPECT_EQ(file.GetFileLength(), 5);
}

TEST(CPFile, ReferencesAreDistinctAndNotReusedAtOnce)
{
    pxtest::TempDir dir;
    std::string path = dir.File("a");
    ASSERT_TRUE(pxtest::WriteText(path, "a"));
    FSpec spec = PathSpec(path);
    CPFile first(&spec, kFileRead);
    CPFile second(&spec, kFileRead);
    ASSERT_NE(first.GetFileNum(), 0);
    ASSERT_NE(second.GetFileNum(), 0);
    EXPECT_NE(first.GetFileNum(), second.GetFileNum());
    // A new reference is not handed the number just given up.
    short old = first.GetFileNum();
    first.Close();
    EXPECT_EQ(first.GetFileNum(), 0);
    CPFile third(&spec, kFileRead);
    EXPECT_NE(third.GetFileNum(), old);
}

TEST(CPFile, OpenForReadOfAMissingFileFails)
{
    pxtest::TempDir dir;
    FSpec spec = PathSpec(dir.File("missing"));
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileRead));
    EXPECT_EQ(file.GetFileNum(), 0);
    EXPECT_FALSE(pxtest::FileExists(dir.File("missing")));
}

TEST(CPFile, OpenOfTheEmptySpecFails)
{
    FSpec spec{};
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileRead));
    EXPECT_FALSE(file.Open(&spec, kFileWrite));
    EXPECT_FALSE(file.Open(nullptr, kFileRead | kFileWrite));
    EXPECT_EQ(file.GetFileNum(), 0);
}

TEST(CPFile, OpenForWriteInAMissingFolderFailsCleanly)
{
    pxtest::TempDir dir;
    std::string path = dir.File("no-such-folder/out.plx");
    FSpec spec = PathSpec(path);
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileWrite));
    EXPECT_EQ(file.GetFileNum(), 0);
    EXPECT_FALSE(pxtest::FileExists(dir.File("no-such-folder")));
    EXPECT_EQ(file.Write("x", 1), 1);  // still answers the count, writes nowhere
}

TEST(CPFile, OpenOfAFolderFails)
{
    pxtest::TempDir dir;
    FSpec spec = PathSpec(dir.Path());
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileRead));
    EXPECT_FALSE(file.Open(&spec, 0));
}

TEST(CPFile, OpenForWriteCreatesTheFileWithItsTypes)
{
    pxtest::TempDir dir;
    std::string path = dir.File("picture.tga");
    FSpec spec = PathSpec(path);
    CPFile file;
    file.SetFileType(1);
    file.SetCreatorType(1);
    ASSERT_TRUE(file.Open(&spec, kFileWrite));
    EXPECT_EQ(file.Write("TGA", 3), 3);
    file.Close();
    EXPECT_EQ(pxtest::ReadText(path), "TGA");
    char type[4];
    char creator[4];
    if (!GetFileTypeAndCreator(path.c_str(), type, creator)) {
        if (!SetFileTypeAndCreator(path.c_str(), "TEST", "TEST"))
            GTEST_SKIP() << "this file system keeps no extended attributes";
        FAIL() << "the types were not stored at creation";
    }
    EXPECT_EQ(std::string(type, 4), "TPIC");
    EXPECT_EQ(std::string(creator, 4), "ogle");
}

TEST(CPFile, OpenForWriteLeavesAnExistingFilesTypesAlone)
{
    pxtest::TempDir dir;
    std::string path = dir.File("show.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "old"));
    if (!SetFileTypeAndCreator(path.c_str(), "PXSH", "HLBK"))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    FSpec spec = PathSpec(path);
    CPFile file;
    file.SetFileType(TypeCode("TEXT"));
    ASSERT_TRUE(file.Open(&spec, kFileWrite));
    file.Close();
    char type[4];
    char creator[4];
    ASSERT_TRUE(GetFileTypeAndCreator(path.c_str(), type, creator));
    EXPECT_EQ(std::string(type, 4), "PXSH");
}

TEST(CPFile, OpenForWriteKeepsTheOldLengthUntilWrittenPast)
{
    pxtest::TempDir dir;
    std::string path = dir.File("long.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "0123456789"));
    FSpec spec = PathSpec(path);
    CPFile file;
    ASSERT_TRUE(file.Open(&spec, kFileWrite));
    EXPECT_EQ(file.GetFileLength(), 10);
    file.Write("abc", 3);
    EXPECT_EQ(file.GetFileLength(), 10);
    file.Close();
    EXPECT_EQ(pxtest::ReadText(path), "abc3456789");  // the old tail stays

    ASSERT_TRUE(file.Open(&spec, kFileWrite));
    file.Write("ABCDEFGHIJKL", 12);
    EXPECT_EQ(file.GetFileLength(), 12);
    file.Close();
    EXPECT_EQ(pxtest::ReadText(path), "ABCDEFGHIJKL");
}

TEST(CPFile, WriteThenReadBackAcrossOpens)
{
    pxtest::TempDir dir;
    std::string path = dir.File("round.bin");
    FSpec spec = PathSpec(path);
    std::vector<unsigned char> bytes = Counting(3000);
    {
        CPFile file(&spec, kFileWrite);
        ASSERT_NE(file.GetFileNum(), 0);
        EXPECT_EQ(file.Write(reinterpret_cast<const char*>(bytes.data()), 3000), 3000);
    }  // the destructor closes
    EXPECT_EQ(pxtest::ReadBytes(path), bytes);
    CPFile file(&spec, kFileRead);
    std::vector<unsigned char> back(3000);
    EXPECT_EQ(file.Read(reinterpret_cast<char*>(back.data()), 3000), 3000);
    EXPECT_EQ(back, bytes);
}

TEST(CPFile, ReadAndWriteModeDoesBoth)
{
    pxtest::TempDir dir;
    std::string path = dir.File("both.bin");
    FSpec spec = PathSpec(path);
    CPFile file;
    ASSERT_TRUE(file.Open(&spec, kFileRead | kFileWrite));
    file.Write("abcdef", 6);
    file.Seek(2, kSeekFromStart);
    char buffer[3] = {};
    EXPECT_EQ(file.Read(buffer, 3), 3);
    EXPECT_EQ(std::string(buffer, 3), "cde");
}

TEST(CPFile, ModeZeroTakesWhateverTheSystemAllows)
{
    pxtest::TempDir dir;
    std::string path = dir.File("any.bin");
    ASSERT_TRUE(pxtest::WriteText(path, "xyz"));
    FSpec spec = PathSpec(path);
    CPFile file;
    ASSERT_TRUE(file.Open(&spec, 0));
    char buffer[3] = {};
    EXPECT_EQ(file.Read(buffer, 3), 3);
    file.Seek(0, kSeekFromStart);
    file.Write("X", 1);
    file.Close();
    EXPECT_EQ(pxtest::ReadText(path), "Xyz");
}

TEST(CPFile, ModeZeroSettlesForReadingWhenWritingIsRefused)
{
    pxtest::TempDir dir;
    std::string path = dir.File("read-only.bin");
    ASSERT_TRUE(pxtest::WriteText(path, "xyz"));
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    if (::access(path.c_str(), W_OK) == 0)
        GTEST_SKIP() << "running with rights that ignore file permissions";
    FSpec spec = PathSpec(path);
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileRead | kFileWrite));
    ASSERT_TRUE(file.Open(&spec, 0));
    char buffer[3] = {};
    EXPECT_EQ(file.Read(buffer, 3), 3);
}

TEST(CPFile, ModeZeroSettlesForReadingAFileNoUserMayWrite)
{
    // Read-only kernel attributes refuse writing whatever the rights of the user.
    const char* path = "/sys/kernel/uevent_seqnum";
    if (::access(path, R_OK) != 0)
        GTEST_SKIP() << "no kernel attribute files here";
    FSpec spec = PathSpec(path);
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileRead | kFileWrite));
    EXPECT_TRUE(file.Open(&spec, 0));
}

TEST(CPFile, ModeZeroDoesNotCreate)
{
    pxtest::TempDir dir;
    FSpec spec = PathSpec(dir.File("absent"));
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, 0));
    EXPECT_FALSE(pxtest::FileExists(dir.File("absent")));
}

TEST(CPFile, ShortReadAnswersZeroButFillsTheBuffer)
{
    pxtest::TempDir dir;
    std::string path = dir.File("short");
    ASSERT_TRUE(pxtest::WriteText(path, "abc"));
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, 8), 0);
    EXPECT_EQ(std::string(buffer, 3), "abc");
    EXPECT_EQ(file.Read(buffer, 1), 0);  // at the end
}

TEST(CPFile, ReadOf70000BytesAnswers4464)
{
    pxtest::TempDir dir;
    std::string path = dir.File("large");
    std::vector<unsigned char> bytes = Counting(100000);
    ASSERT_TRUE(pxtest::WriteBytes(path, bytes));
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    std::vector<char> buffer(70000);
    EXPECT_EQ(file.Read(buffer.data(), 70000), 4464);
    EXPECT_EQ(std::memcmp(buffer.data(), bytes.data(), 70000), 0);
    file.Seek(0, kSeekFromStart);
    EXPECT_EQ(file.Read(buffer.data(), 65536), 0);  // 65,536 modulo 65,536
    file.Seek(0, kSeekFromStart);
    EXPECT_EQ(file.Read(buffer.data(), 40000), 40000);
}

TEST(CPFile, SeekOriginOneIsTheEndAndTwoIsTheCurrentPosition)
{
    pxtest::TempDir dir;
    std::string path = dir.File("seek");
    ASSERT_TRUE(pxtest::WriteText(path, "0123456789"));
    FSpec spec = PathSpec(path);
    CPFile file(&spec, kFileRead);
    char c = 0;

    EXPECT_EQ(file.Seek(3, kSeekFromStart), 1);
    EXPECT_EQ(file.Seek(0, 2), 1);  // stays where it is
    EXPECT_EQ(file.Read(&c, 1), 1);
    EXPECT_EQ(c, '3');

    EXPECT_EQ(file.Seek(0, 1), 1);  // the end
    EXPECT_EQ(file.Read(&c, 1), 0);

    file.Seek(-2, 1);
    EXPECT_EQ(file.Read(&c, 1), 1);
    EXPECT_EQ(c, '8');

    file.Seek(2, 0);
    file.Seek(3, 2);
    EXPECT_EQ(file.Read(&c, 1), 1);
    EXPECT_EQ(c, '5');
}

TEST(CPFile, SeekAlwaysAnswersOne)
{
    CPFile closed;
    EXPECT_EQ(closed.Seek(10, 0), 1);
    EXPECT_EQ(closed.Seek(-10, 7), 1);
}

TEST(CPFile, ClosedFileReadsNothingAndHasNoLength)
{
    CPFile file;
    char buffer[4];
    EXPECT_EQ(file.Read(buffer, 4), 0);
    EXPECT_EQ(file.Write("abcd", 4), 4);
    EXPECT_EQ(file.GetFileLength(), 0);
    file.Close();  // closing twice is harmless
    EXPECT_EQ(file.GetFileNum(), 0);
}

TEST(CPFile, NativeFormSpecOpensTheSameFile)
{
    pxtest::TempDir dir;
    std::string path = dir.File("native.bin");
    ASSERT_TRUE(pxtest::WriteText(path, "native"));
    FSpec spec{};
    spec.vRefNum = kVolumeRefNum;
    spec.parID = GetFolderID(dir.Path().c_str());
    std::strcpy(spec.name, "native.bin");
    CPFile file(&spec, kFileRead);
    ASSERT_NE(file.GetFileNum(), 0);
    EXPECT_TRUE(IsPathForm(*file.GetFSpec()));
    EXPECT_EQ(std::string(file.GetFSpec()->name), path);
    EXPECT_EQ(file.GetFileLength(), 6);
}

TEST(CPFile, SetFileNumAdoptsAnOpenReference)
{
    pxtest::TempDir dir;
    std::string path = dir.File("adopt");
    ASSERT_TRUE(pxtest::WriteText(path, "adopted"));
    FSpec spec = PathSpec(path);
    CPFile owner(&spec, kFileRead);
    ASSERT_NE(owner.GetFileNum(), 0);
    CPFile adopter;
    adopter.SetFileNum(owner.GetFileNum());
    owner.SetFileNum(0);  // hands it over without closing
    EXPECT_EQ(adopter.GetFileLength(), 7);
    char buffer[7] = {};
    EXPECT_EQ(adopter.Read(buffer, 7), 7);
    EXPECT_EQ(std::string(buffer, 7), "adopted");
    adopter.Close();
    EXPECT_EQ(adopter.GetFileNum(), 0);
}

TEST(CPFile, ReopeningClosesThePreviousFile)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteText(dir.File("one"), "1"));
    ASSERT_TRUE(pxtest::WriteText(dir.File("two"), "22"));
    FSpec one = PathSpec(dir.File("one"));
    FSpec two = PathSpec(dir.File("two"));
    CPFile file(&one, kFileRead);
    short first = file.GetFileNum();
    ASSERT_TRUE(file.Open(&two, kFileRead));
    EXPECT_EQ(file.GetFileLength(), 2);
    CPFile stale;
    stale.SetFileNum(first);
    EXPECT_EQ(stale.GetFileLength(), 0);  // the first reference names nothing any more
    stale.SetFileNum(0);
}

namespace {

TEST(CPFile, PipeIsRefusedAtOnceForReadingAndWriting)
{
    pxtest::TempDir dir;
    std::string path = dir.File("pipe.tga");
    ASSERT_EQ(mkfifo(path.c_str(), 0666), 0);
    FSpec spec = PathSpec(path);
    CPFile file;
    EXPECT_FALSE(file.Open(&spec, kFileRead)) << "no writer will ever come: the open must not wait";
    EXPECT_FALSE(file.Open(&spec, kFileWrite));
    EXPECT_FALSE(file.Open(&spec, 0));
    EXPECT_EQ(file.GetFileNum(), 0);
}

TEST(CPFile, DeviceAndFolderAreRefused)
{
    pxtest::TempDir dir;
    FSpec device = PathSpec("/dev/null");
    FSpec folder = PathSpec(dir.Path());
    CPFile file;
    EXPECT_FALSE(file.Open(&device, kFileRead));
    EXPECT_FALSE(file.Open(&folder, kFileRead));
}

TEST(CPFile, ShortWriteIsRememberedWithItsReason)
{
    pxtest::TempDir dir;
    FSpec spec = PathSpec(dir.File("short.bin"));
    CPFile file(&spec, kFileWrite);
    ASSERT_NE(file.GetFileNum(), 0);
    EXPECT_EQ(file.WriteError(), 0);
    std::vector<char> bytes(8192, 'x');
    {
        pxtest::FileSizeLimit limit(1000);
        EXPECT_EQ(file.Write(bytes.data(), 8192), 8192) << "the count is answered as ever";
    }
    EXPECT_EQ(file.WriteError(), EFBIG);
    file.Close();
    ASSERT_TRUE(file.Open(&spec, kFileWrite));
    EXPECT_EQ(file.WriteError(), 0) << "a new open starts clean";
}

}  // namespace
