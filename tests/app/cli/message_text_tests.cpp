// Names in messages: UTF-8 as it is, every other byte as \xNN.

#include <gtest/gtest.h>

#include <string>

#include "app/cli/message_text.h"

namespace {

TEST(PrintableText, Utf8PassesUnchanged)
{
    EXPECT_EQ(PrintableText("/home/zoë/Bilder/日本.plx"), "/home/zoë/Bilder/日本.plx");
    EXPECT_EQ(PrintableText("emoji \xF0\x9F\x8E\xAC"), "emoji \xF0\x9F\x8E\xAC");
}

TEST(PrintableText, InvalidBytesAndControlsAreEscaped)
{
    EXPECT_EQ(PrintableText("sh\xFFow"), "sh\\xFFow");
    EXPECT_EQ(PrintableText("cut \xC3"), "cut \\xC3");
    EXPECT_EQ(PrintableText("overlong \xC0\xAF"), "overlong \\xC0\\xAF");
    EXPECT_EQ(PrintableText("surrogate \xED\xA0\x80"), "surrogate \\xED\\xA0\\x80");
    EXPECT_EQ(PrintableText("two\nlines\r"), "two\\x0Alines\\x0D");
    EXPECT_EQ(PrintableText(std::string("nul\0in", 6)), "nul\\x00in");
}

}  // namespace
