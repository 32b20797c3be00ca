#include "image/rlc.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/malformed_files.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Unpacks into a row of `size` bytes that sits between guard bytes, and checks the guards.
struct Unpacked {
    long written;
    Bytes row;
};

Unpacked Unpack(const Bytes& input, long size)
{
    Bytes buffer(static_cast<size_t>(size) + 16, 0xCD);
    long written =
        RLCUnPack(input.data(), static_cast<long>(input.size()), buffer.data() + 8, size);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(buffer[static_cast<size_t>(i)], 0xCD) << "written before the row";
        EXPECT_EQ(buffer[buffer.size() - 1 - static_cast<size_t>(i)], 0xCD)
            << "written past the row";
    }
    return Unpacked{written, Bytes(buffer.begin() + 8, buffer.begin() + 8 + size)};
}

TEST(RlcUnPack, CountZeroOrMoreCopiesThatManyPlusOneBytes)
{
    Unpacked out = Unpack({2, 10, 20, 30, 0, 40}, 4);
    EXPECT_EQ(out.written, 4);
    EXPECT_EQ(out.row, (Bytes{10, 20, 30, 40}));
}

TEST(RlcUnPack, NegativeCountRepeatsTheNextByteOneMinusCountTimes)
{
    // -1 repeats twice, -127 repeats 128 times.
    Unpacked out = Unpack({0xFF, 7, 0x81, 9}, 130);
    EXPECT_EQ(out.written, 130);
    EXPECT_EQ(out.row[0], 7);
    EXPECT_EQ(out.row[1], 7);
    for (size_t i = 2; i < 130; ++i)
        ASSERT_EQ(out.row[i], 9) << i;
}

TEST(RlcUnPack, MinusOneHundredTwentyEightDoesNothing)
{
    Unpacked out = Unpack({0x80, 0x80, 1, 5, 6, 0x80}, 2);
    EXPECT_EQ(out.written, 2);
    EXPECT_EQ(out.row, (Bytes{5, 6}));
}

TEST(RlcUnPack, LiteralRunIsCutAtTheRowsEnd)
{
    Unpacked out = Unpack({5, 1, 2, 3, 4, 5, 6}, 3);
    EXPECT_EQ(out.written, 3);
    EXPECT_EQ(out.row, (Bytes{1, 2, 3}));
}

TEST(RlcUnPack, RepeatRunIsCutAtTheRowsEnd)
{
    Unpacked out = Unpack({0x81, 4}, 5);
    EXPECT_EQ(out.written, 5);
    EXPECT_EQ(out.row, (Bytes{4, 4, 4, 4, 4}));
}

TEST(RlcUnPack, StopsWhenTheRowIsFullLeavingTheRestOfTheInput)
{
    Unpacked out = Unpack({1, 8, 9, 0xFD, 3}, 2);
    EXPECT_EQ(out.written, 2);
    EXPECT_EQ(out.row, (Bytes{8, 9}));
}

TEST(RlcUnPack, LiteralRunCutByTheInputsEndDecodesShort)
{
    // The count asks for four bytes; two are there.
    Unpacked out = Unpack({3, 1, 2}, 4);
    EXPECT_EQ(out.written, 2);
    EXPECT_EQ(out.row[0], 1);
    EXPECT_EQ(out.row[1], 2);
    EXPECT_EQ(out.row[2], 0xCD);  // untouched
}

TEST(RlcUnPack, RepeatWithoutItsByteDecodesShort)
{
    Unpacked out = Unpack({0, 6, 0xFE}, 4);
    EXPECT_EQ(out.written, 1);
    EXPECT_EQ(out.row[0], 6);
}

TEST(RlcUnPack, InputUsedUpBeforeTheRowIsFullDecodesShort)
{
    Unpacked out = Unpack({0xFE, 1}, 10);
    EXPECT_EQ(out.written, 3);
}

TEST(RlcUnPack, EmptyInputOrRowWritesNothing)
{
    unsigned char row[4] = {0xCD, 0xCD, 0xCD, 0xCD};
    const unsigned char input[2] = {0, 1};
    EXPECT_EQ(RLCUnPack(input, 0, row, 4), 0);
    EXPECT_EQ(RLCUnPack(input, 2, row, 0), 0);
    EXPECT_EQ(RLCUnPack(nullptr, 2, row, 4), 0);
    EXPECT_EQ(RLCUnPack(input, 2, nullptr, 4), 0);
    EXPECT_EQ(row[0], 0xCD);
}

TEST(RlcUnPack, MixedRunsMakeTheWholeRow)
{
    Unpacked out = Unpack({0xFD, 0, 1, 0x11, 0x22, 0x80, 0xFF, 0x33}, 8);
    EXPECT_EQ(out.written, 8);
    EXPECT_EQ(out.row, (Bytes{0, 0, 0, 0, 0x11, 0x22, 0x33, 0x33}));
}

}  // namespace

// The damaged rows kept in tests/data/rlc/malformed/: two bytes of row size (low byte first), then
// the packed bytes. Each file's name starts with the number of bytes the row must get; nothing is
// written outside the row.
TEST(RlcUnPack, EveryKeptMalformedRowUnpacksOnlyWithinItsRow)
{
    std::vector<pxtest::MalformedFile> files = pxtest::MalformedFiles("rlc");
    ASSERT_GE(files.size(), 5u);
    for (const pxtest::MalformedFile& file : files) {
        SCOPED_TRACE(file.path);
        const Bytes& bytes = file.bytes;
        ASSERT_GE(bytes.size(), 2u);
        long size = bytes[0] | bytes[1] << 8;
        Unpacked unpacked = Unpack(Bytes(bytes.begin() + 2, bytes.end()), size);
        EXPECT_EQ(unpacked.written, file.code);
    }
}
