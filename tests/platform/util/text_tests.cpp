#include "platform/util/text.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace {

// Runs a helper on a copy of text in a roomy buffer and answers the result.
template <typename Helper>
std::string Apply(Helper helper, const std::string& text)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.resize(text.size() + 16, 0);
    helper(buffer.data());
    return buffer.data();
}

}  // namespace

TEST(StripCR, RemovesEveryCarriageReturnAndLineFeed)
{
    EXPECT_EQ(Apply(StripCR, "a\r\nb\rc\nd\r\n"), "abcd");
    EXPECT_EQ(Apply(StripCR, "plain"), "plain");
    EXPECT_EQ(Apply(StripCR, "\r\n"), "");
}

TEST(StripCR, ExaminesOnlyTheFirst512Characters)
{
    std::string text(600, 'x');
    text[10] = '\r';
    text[500] = '\n';
    std::string result = Apply(StripCR, text);
    EXPECT_EQ(result, std::string(510, 'x'));  // 512 examined, two removed, the rest dropped

    std::string exact(512, 'y');
    EXPECT_EQ(Apply(StripCR, exact), exact);
    EXPECT_EQ(Apply(StripCR, exact + "z"), exact);
}

TEST(StripTrailingZeros, RemovesZerosAfterThePointAndALonePoint)
{
    EXPECT_EQ(Apply(StripTrailingZeros, "2.500"), "2.5");
    EXPECT_EQ(Apply(StripTrailingZeros, "3.000"), "3");
    EXPECT_EQ(Apply(StripTrailingZeros, "10.0"), "10");
    EXPECT_EQ(Apply(StripTrailingZeros, "1.25"), "1.25");
}

TEST(StripTrailingZeros, TextWithoutPointIsLeftAlone)
{
    EXPECT_EQ(Apply(StripTrailingZeros, "100"), "100");
    EXPECT_EQ(Apply(StripTrailingZeros, "0"), "0");
}

TEST(StripFileExt, CutsAtTheFirstDot)
{
    EXPECT_EQ(Apply(StripFileExt, "a.b.c"), "a");
    EXPECT_EQ(Apply(StripFileExt, "show.plx"), "show");
    EXPECT_EQ(Apply(StripFileExt, "noext"), "noext");
    EXPECT_EQ(Apply(StripFileExt, ".hidden"), "");
}

TEST(StripFilePath, KeepsTheNameAfterTheLastSeparator)
{
    EXPECT_EQ(Apply(StripFilePath, "Disk:Shows:a.plx"), "a.plx");
    EXPECT_EQ(Apply(StripFilePath, "C:\\Shows\\b.plx"), "b.plx");
    EXPECT_EQ(Apply(StripFilePath, "/home/me/shows/c.plx"), "c.plx");
    EXPECT_EQ(Apply(StripFilePath, "Disk:mixed\\x/d.plx"), "d.plx");
    EXPECT_EQ(Apply(StripFilePath, "name.plx"), "name.plx");
    EXPECT_EQ(Apply(StripFilePath, "Disk:Shows:"), "");
}

TEST(StripFilePath, ColonOrBackslashInFirstPositionIsNotASeparator)
{
    EXPECT_EQ(Apply(StripFilePath, ":a.plx"), ":a.plx");
    EXPECT_EQ(Apply(StripFilePath, "\\a.plx"), "\\a.plx");
    EXPECT_EQ(Apply(StripFilePath, ":Shows:a.plx"), "a.plx");
}

TEST(StripFilePath, SlashInFirstPositionIsASeparator)
{
    EXPECT_EQ(Apply(StripFilePath, "/a.plx"), "a.plx");
}

TEST(StripFilePath, OnlyTheFirst1022CharactersAreConsidered)
{
    // A separator beyond the first 1,022 characters is not seen: the text stays whole.
    std::string far(1030, 'a');
    far += ":name";
    EXPECT_EQ(Apply(StripFilePath, far), far);

    // The last position searched is 1,021; what follows is kept up to the same limit.
    std::string last(1021, 'b');
    last += ":";
    last += std::string(50, 'c');
    EXPECT_EQ(Apply(StripFilePath, last), "");

    std::string inside(1000, 'd');
    inside += "/";
    inside += std::string(100, 'e');
    EXPECT_EQ(Apply(StripFilePath, inside), std::string(21, 'e'));
}

TEST(StripFileName, KeepsTheFolderWithItsSeparator)
{
    EXPECT_EQ(Apply(StripFileName, "Disk:Shows:a.plx"), "Disk:Shows:");
    EXPECT_EQ(Apply(StripFileName, "C:\\Shows\\b.plx"), "C:\\Shows\\");
    EXPECT_EQ(Apply(StripFileName, "/home/me/c.plx"), "/home/me/");
}

TEST(StripFileName, NoSeparatorAfterTheFirstCharacterEmptiesTheText)
{
    EXPECT_EQ(Apply(StripFileName, "a.plx"), "");
    EXPECT_EQ(Apply(StripFileName, ":a.plx"), "");
    EXPECT_EQ(Apply(StripFileName, "\\a.plx"), "");
    EXPECT_EQ(Apply(StripFileName, "/a.plx"), "/");
}

TEST(LowercaseAndUppercase, ConvertEveryLetterInPlace)
{
    EXPECT_EQ(Apply(lowercase, "Show 12.PLX"), "show 12.plx");
    EXPECT_EQ(Apply(uppercase, "Show 12.plx"), "SHOW 12.PLX");
    EXPECT_EQ(Apply(uppercase, "\xc3\xa9t\xc3\xa9"), "\xc3\xa9T\xc3\xa9");  // other bytes stay
}

TEST(Split, CutsAtEverySeparatorAndCountsTheParts)
{
    char text[] = "one,two,,four";
    char* parts[8] = {};
    ASSERT_EQ(Split(text, parts, ','), 4);
    EXPECT_STREQ(parts[0], "one");
    EXPECT_STREQ(parts[1], "two");
    EXPECT_STREQ(parts[2], "");
    EXPECT_STREQ(parts[3], "four");
}

TEST(Split, TextWithoutSeparatorIsOnePart)
{
    char text[] = "whole";
    char* parts[2] = {};
    EXPECT_EQ(Split(text, parts, ','), 1);
    EXPECT_EQ(parts[0], text);
    char empty[] = "";
    EXPECT_EQ(Split(empty, parts, ','), 1);
    char trailing[] = "a;";
    EXPECT_EQ(Split(trailing, parts, ';'), 2);
    EXPECT_STREQ(parts[1], "");
    EXPECT_EQ(Split(nullptr, parts, ';'), 0);
}

class DebugStreamTest : public testing::Test {
protected:
    void SetUp() override
    {
        const char* old = std::getenv("XDG_CACHE_HOME");
        hadCache = old != nullptr;
        if (old)
            oldCache = old;
        setenv("XDG_CACHE_HOME", dir.Path().c_str(), 1);
    }
    void TearDown() override
    {
        if (hadCache)
            setenv("XDG_CACHE_HOME", oldCache.c_str(), 1);
        else
            unsetenv("XDG_CACHE_HOME");
    }
    std::string DebugFile()
    {
        char path[1024];
        GetDebugFilePath(path, sizeof path);
        return path;
    }

    pxtest::TempDir dir;
    bool hadCache = false;
    std::string oldCache;
};

TEST_F(DebugStreamTest, FileLivesInTheCacheFolder)
{
    EXPECT_EQ(DebugFile(), dir.Path() + "/Parallaxotron/debug.txt");
}

TEST_F(DebugStreamTest, AppendsTheGivenBytesAndTheEndCharacter)
{
    DebugStream("hello world", 5, '\n');
    DebugStream("second", 0, 0);
    DebugStream("x", 0, '|');
    EXPECT_EQ(pxtest::ReadText(DebugFile()), "hello\nsecondx|");
}

TEST_F(DebugStreamTest, PathIsCutToTheBuffer)
{
    char small[8];
    GetDebugFilePath(small, sizeof small);
    EXPECT_EQ(std::strlen(small), 7u);
    EXPECT_EQ(std::string(small), DebugFile().substr(0, 7));
}
