#include "platform/base/utf8.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(CopyUtf8, CopiesAShortTextWhole)
{
    char out[8];
    EXPECT_EQ(CopyUtf8(out, "abc", 7), 3u);
    EXPECT_STREQ(out, "abc");
}

TEST(CopyUtf8, CutsAtTheLimit)
{
    char out[4];
    EXPECT_EQ(CopyUtf8(out, "abcdef", 3), 3u);
    EXPECT_STREQ(out, "abc");
}

TEST(CopyUtf8, BacksOffRatherThanCutACharacter)
{
    // "a" then "é" (C3 A9): a limit of 2 would end inside the "é".
    char out[3];
    EXPECT_EQ(CopyUtf8(out, "a\xC3\xA9", 2), 1u);
    EXPECT_STREQ(out, "a");
    // A three-byte character (E2 82 AC) cut after one or two of its bytes goes whole.
    char euro[4];
    EXPECT_EQ(CopyUtf8(euro, "\xE2\x82\xAC", 2), 0u);
    EXPECT_STREQ(euro, "");
}

TEST(CopyUtf8, KeepsACharacterThatEndsAtTheLimit)
{
    char out[4];
    EXPECT_EQ(CopyUtf8(out, "a\xC3\xA9z", 3), 3u);
    EXPECT_STREQ(out, "a\xC3\xA9");
}

TEST(CopyUtf8, NullCopiesAsEmpty)
{
    char out[2] = {'x', 'x'};
    EXPECT_EQ(CopyUtf8(out, nullptr, 1), 0u);
    EXPECT_STREQ(out, "");
}

TEST(CopyUtf8, ReadsNoFurtherThanOneByteBeyondTheLimit)
{
    // An unterminated source: only limit + 1 bytes of it may be read.
    const char source[4] = {'a', 'b', 'c', 'd'};
    char out[3];
    EXPECT_EQ(CopyUtf8(out, source, 2), 2u);
    EXPECT_STREQ(out, "ab");
}

TEST(IsUtf8Continuation, OnlyTenPrefixedBytesContinue)
{
    EXPECT_FALSE(IsUtf8Continuation('a'));
    EXPECT_FALSE(IsUtf8Continuation('\xC3'));
    EXPECT_TRUE(IsUtf8Continuation('\xA9'));
    EXPECT_TRUE(IsUtf8Continuation('\x80'));
    EXPECT_FALSE(IsUtf8Continuation('\xE2'));
}
