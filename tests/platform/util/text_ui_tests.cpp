// ShrinkTextWidth and WrapText measure in the current font, so they run with Qt started.

#include <gtest/gtest.h>
#include <cstring>
#include <string>

#include "platform/draw/font.h"
#include "platform/util/text.h"

namespace {

class MeasuredTextTest : public testing::Test {
protected:
    void SetUp() override
    {
        font = MakeFont("Geneva", 12, 0);
        SelectFont(font, -1, 0);
    }
    void TearDown() override { RemoveFont(font); }

    FontRecord* font = nullptr;
};

}  // namespace

TEST_F(MeasuredTextTest, ShrinkLeavesAFittingTextAlone)
{
    char text[64] = "Sunset.tga";
    long width = GetTextWidth(text);
    ASSERT_GT(width, 0);
    EXPECT_EQ(ShrinkTextWidth(text, width, "..."), width);
    EXPECT_STREQ(text, "Sunset.tga");
    EXPECT_EQ(ShrinkTextWidth(text, width + 50, "..."), width);
    EXPECT_STREQ(text, "Sunset.tga");
}

TEST_F(MeasuredTextTest, ShrinkCutsTheEndAndAppendsTheEllipsis)
{
    const std::string original = "A rather long picture name.tga";
    char text[64];
    std::strcpy(text, original.c_str());
    long limit = GetTextWidth(text) / 2;

    long result = ShrinkTextWidth(text, limit, "...");
    std::string shrunk = text;
    ASSERT_GE(shrunk.size(), 3u);
    EXPECT_EQ(shrunk.substr(shrunk.size() - 3), "...");
    EXPECT_EQ(result, GetTextWidth(text));
    EXPECT_LE(result, limit);

    // As many characters as fit are kept: one more would not fit.
    std::string kept = shrunk.substr(0, shrunk.size() - 3);
    ASSERT_LT(kept.size(), original.size());
    EXPECT_EQ(original.substr(0, kept.size()), kept);
    std::string oneMore = original.substr(0, kept.size() + 1) + "...";
    EXPECT_GT(GetTextWidth(oneMore.c_str()), limit);
}

TEST_F(MeasuredTextTest, ShrinkNarrowerThanTheEllipsisLeavesTheEllipsisAlone)
{
    char text[64] = "Sunset over the bay.tga";
    long ellipsis = GetTextWidth("...");
    ASSERT_GT(ellipsis, 1);
    EXPECT_EQ(ShrinkTextWidth(text, ellipsis - 1, "..."), ellipsis);
    EXPECT_STREQ(text, "...");

    char other[64] = "Sunset";
    ShrinkTextWidth(other, 0, "...");
    EXPECT_STREQ(other, "...");
}

TEST_F(MeasuredTextTest, ShrinkToExactlyTheEllipsisKeepsNoCharacter)
{
    char text[64] = "Sunset over the bay.tga";
    long ellipsis = GetTextWidth("...");
    ShrinkTextWidth(text, ellipsis, "...");
    EXPECT_STREQ(text, "...");
}

TEST_F(MeasuredTextTest, ShrinkNeverLeavesHalfACharacter)
{
    // Every character is two bytes in UTF-8; a cut between them would be replaced on drawing.
    char text[128] = "\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9";
    long limit = GetTextWidth(text) / 2;
    ShrinkTextWidth(text, limit, "...");
    std::string shrunk = text;
    ASSERT_GT(shrunk.size(), 3u);
    EXPECT_EQ((shrunk.size() - 3) % 2, 0u);
    EXPECT_EQ(shrunk.substr(shrunk.size() - 3), "...");
}

TEST_F(MeasuredTextTest, WrapLeavesAFittingTextAlone)
{
    char text[64] = "short line";
    EXPECT_EQ(WrapText(text, GetTextWidth(text)), 0);
    EXPECT_STREQ(text, "short line");
}

TEST_F(MeasuredTextTest, WrapCutsAtTheLastSpaceThatFits)
{
    char text[64] = "one two three four";
    long limit = GetTextWidth("one two three");  // "one two three" fits, the whole does not
    long rest = WrapText(text, limit);
    EXPECT_EQ(rest, 14);
    EXPECT_STREQ(text, "one two three");
    EXPECT_STREQ(text + rest, "four");
}

TEST_F(MeasuredTextTest, WrapSkipsSpacesWhoseLineIsTooWide)
{
    char text[64] = "one two three four";
    long limit = GetTextWidth("one two thr");
    long rest = WrapText(text, limit);
    EXPECT_EQ(rest, 8);
    EXPECT_STREQ(text, "one two");
    EXPECT_STREQ(text + rest, "three four");
}

TEST_F(MeasuredTextTest, WrapWithoutAUsableSpaceEmptiesTheText)
{
    char text[64] = "unbreakable";
    EXPECT_EQ(WrapText(text, GetTextWidth(text) - 1), 0);
    EXPECT_STREQ(text, "");

    char words[64] = "longfirstword second";
    EXPECT_EQ(WrapText(words, GetTextWidth("longfirst")), 0);
    EXPECT_STREQ(words, "");
}
