#include "doc/timecode.h"

#include <gtest/gtest.h>
#include <climits>
#include <string>

#include "doc/globals.h"

namespace {

class TimecodeTest : public testing::Test {
protected:
    void SetUp() override { savedRate = gFrameRate; }
    void TearDown() override { gFrameRate = savedRate; }

    static std::string Text(long frame, bool shortForm = false)
    {
        char out[kTimecodeSize];
        FrameToString(out, frame, shortForm);
        return out;
    }

    static long Parse(const char* text, long incoming = 0)
    {
        long frame = incoming;
        StringToFrame(&frame, text);
        return frame;
    }

    long savedRate = 0;
};

}  // namespace

TEST_F(TimecodeTest, At2997MinutesUseTheExactRate)
{
    gFrameRate = 2997;
    EXPECT_EQ(Text(1800), "00:01:00:02");  // 1798 frames make the minute
    EXPECT_EQ(Text(1798), "00:01:00:00");
    EXPECT_EQ(Text(29), "00:00:00:29");
    EXPECT_EQ(Text(30), "00:00:01:00");
}

TEST_F(TimecodeTest, At2997ParsingUsesTheRoundedRate)
{
    gFrameRate = 2997;
    EXPECT_EQ(Parse("00:01:00:00"), 1800);
    EXPECT_EQ(Parse("01:00:00:00"), 108000);
}

TEST_F(TimecodeTest, At2997HoursUseTheExactRate)
{
    gFrameRate = 2997;
    EXPECT_EQ(Text(107892), "01:00:00:00");  // 29.97 * 3600
}

TEST_F(TimecodeTest, At2500WholeHoursAndSeconds)
{
    gFrameRate = 2500;
    EXPECT_EQ(Text(90000), "01:00:00:00");
    EXPECT_EQ(Text(25), "00:00:01:00");
    EXPECT_EQ(Text(24), "00:00:00:24");
    EXPECT_EQ(Text(90000 + 1500 * 2 + 25 * 3 + 4), "01:02:03:04");
}

TEST_F(TimecodeTest, At2400TwentyFourFramesASecond)
{
    gFrameRate = 2400;
    EXPECT_EQ(Text(24), "00:00:01:00");
    EXPECT_EQ(Text(1440), "00:01:00:00");
    EXPECT_EQ(Text(86400), "01:00:00:00");
    EXPECT_EQ(Parse("01:00:00:00"), 86400);
    EXPECT_EQ(Parse("1:23"), 47);
}

TEST_F(TimecodeTest, At2500TextReadsBackAsTheSameFrame)
{
    gFrameRate = 2500;
    for (long frame : {0L, 1L, 24L, 25L, 1499L, 1500L, 89999L, 90000L, 123456L, 1079999L}) {
        EXPECT_EQ(Parse(Text(frame).c_str()), frame) << frame;
    }
}

TEST_F(TimecodeTest, NegativeFrameHasAPointBeforeTheFrames)
{
    gFrameRate = 2997;
    EXPECT_EQ(Text(-31), "00:00:01.01");
    EXPECT_EQ(Text(-31, true), "00:01.01");
}

TEST_F(TimecodeTest, TwelveHoursWrapToHourZero)
{
    gFrameRate = 2500;
    EXPECT_EQ(Text(12 * 90000), "00:00:00:00");
    EXPECT_EQ(Text(11 * 90000), "11:00:00:00");
    EXPECT_EQ(Text(13 * 90000), "01:00:00:00");
}

TEST_F(TimecodeTest, ShortFormLeavesOutTheHours)
{
    gFrameRate = 2500;
    EXPECT_EQ(Text(90000 + 1500 * 2 + 25 * 3 + 4, true), "02:03:04");
    EXPECT_EQ(Text(0, true), "00:00:00");
}

TEST_F(TimecodeTest, ExtremeFramesStayWithinTheTable)
{
    gFrameRate = 2997;
    for (long frame : {LONG_MIN, LONG_MIN + 1, LONG_MAX}) {
        std::string text = Text(frame);
        ASSERT_EQ(text.size(), 11u);
        for (int i : {0, 1, 3, 4, 6, 7, 9, 10})
            EXPECT_TRUE(text[i] >= '0' && text[i] <= '9') << text;
    }
    EXPECT_EQ(Text(LONG_MIN)[8], '.');
    EXPECT_EQ(Text(LONG_MAX)[8], ':');
}

TEST_F(TimecodeTest, DigitsReadFromTheEndInPairs)
{
    gFrameRate = 2997;
    EXPECT_EQ(Parse("123"), 30 + 23);  // 1 second and 23 frames
    EXPECT_EQ(Parse("5"), 5);
    EXPECT_EQ(Parse("12345"), 1 * 1800 + 23 * 30 + 45);
    EXPECT_EQ(Parse("1:2:3:4"), 1 * 108000 + 2 * 1800 + 3 * 30 + 4);
}

TEST_F(TimecodeTest, RelativeEntriesMoveTheIncomingValue)
{
    gFrameRate = 2997;
    EXPECT_EQ(Parse("+10", 100), 110);
    EXPECT_EQ(Parse("-10", 100), 90);
    EXPECT_EQ(Parse("-1:00", 100), 70);
    EXPECT_EQ(Parse("10", 100), 10);  // absolute otherwise
}

TEST_F(TimecodeTest, SeparatorsAreFree)
{
    gFrameRate = 2997;
    long expected = Parse("01:02:03:04");
    EXPECT_EQ(Parse("01.02.03.04"), expected);
    EXPECT_EQ(Parse("01 02 03 04"), expected);
    EXPECT_EQ(Parse("01;02,03x04"), expected);
    EXPECT_EQ(expected, 108000 + 2 * 1800 + 3 * 30 + 4);
}

TEST_F(TimecodeTest, GroupsBeyondHoursAreIgnored)
{
    gFrameRate = 2500;
    EXPECT_EQ(Parse("99:01:00:00:00"), 90000);
}

TEST_F(TimecodeTest, TextWithoutDigitsLeavesTheValue)
{
    gFrameRate = 2997;
    EXPECT_EQ(Parse("", 42), 42);
    EXPECT_EQ(Parse("abc", 42), 42);
    EXPECT_EQ(Parse("+", 42), 42);
}

TEST_F(TimecodeTest, NegativeFrameWrittenThenReadGivesItsMagnitude)
{
    gFrameRate = 2500;
    EXPECT_EQ(Parse(Text(-31).c_str()), 31);  // the "." is just another separator
}
