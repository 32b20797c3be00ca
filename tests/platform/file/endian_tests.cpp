#include "platform/file/endian.h"

#include <gtest/gtest.h>

TEST(Endian, ReadsMostSignificantFirstWhenAsked)
{
    const unsigned char bytes[4] = {0x12, 0x34, 0x56, 0x78};
    EXPECT_EQ(Endian(bytes, 4, true), 0x12345678u);
    EXPECT_EQ(Endian(bytes, 2, true), 0x1234u);
}

TEST(Endian, ReadsLeastSignificantFirstOtherwise)
{
    const unsigned char bytes[4] = {0x12, 0x34, 0x56, 0x78};
    EXPECT_EQ(Endian(bytes, 4, false), 0x78563412u);
    EXPECT_EQ(Endian(bytes, 2, false), 0x3412u);
    EXPECT_EQ(Endian(bytes, 1, false), 0x12u);
}

TEST(Endian, HighBytesAreNotSignExtended)
{
    const unsigned char bytes[2] = {0xFF, 0xFE};
    EXPECT_EQ(Endian(bytes, 2, true), 0xFFFEu);
    EXPECT_EQ(Endian(bytes, 2, false), 0xFEFFu);
}

TEST(Endian, NoBytesGiveZero)
{
    const unsigned char bytes[1] = {0x55};
    EXPECT_EQ(Endian(bytes, 0, true), 0u);
}

TEST(MemEndian, Stores258BigEndianAs0102)
{
    unsigned char bytes[2] = {};
    MemEndian(bytes, 258, 2, true);
    EXPECT_EQ(bytes[0], 0x01);
    EXPECT_EQ(bytes[1], 0x02);
}

TEST(MemEndian, StoresMinusOneLittleEndianAsFF00)
{
    unsigned char bytes[2] = {0xAA, 0xAA};
    MemEndian(bytes, -1, 2, false);
    EXPECT_EQ(bytes[0], 0xFF);
    EXPECT_EQ(bytes[1], 0x00);
}

TEST(MemEndian, NegativeHighBytesComeFromTruncatedQuotient)
{
    // -257 / 256 truncates to -1, whose low byte is FF; -1 / 256 is 0.
    unsigned char bytes[3] = {};
    MemEndian(bytes, -257, 3, false);
    EXPECT_EQ(bytes[0], 0xFF);
    EXPECT_EQ(bytes[1], 0xFF);
    EXPECT_EQ(bytes[2], 0x00);
    MemEndian(bytes, -1, 2, true);
    EXPECT_EQ(bytes[0], 0x00);
    EXPECT_EQ(bytes[1], 0xFF);
}

TEST(MemEndian, RoundTripsThroughEndianInBothOrders)
{
    unsigned char bytes[4] = {};
    MemEndian(bytes, 0x12345678, 4, true);
    EXPECT_EQ(Endian(bytes, 4, true), 0x12345678u);
    MemEndian(bytes, 0x12345678, 4, false);
    EXPECT_EQ(bytes[0], 0x78);
    EXPECT_EQ(Endian(bytes, 4, false), 0x12345678u);
}

TEST(MemEndian, WritesOnlyCountBytes)
{
    unsigned char bytes[4] = {9, 9, 9, 9};
    MemEndian(bytes, 0x0102, 2, false);
    EXPECT_EQ(bytes[2], 9);
    EXPECT_EQ(bytes[3], 9);
}

TEST(FlopEndian, ReversesEvenCounts)
{
    unsigned char bytes[4] = {1, 2, 3, 4};
    FlopEndian(bytes, 4);
    EXPECT_EQ(bytes[0], 4);
    EXPECT_EQ(bytes[1], 3);
    EXPECT_EQ(bytes[2], 2);
    EXPECT_EQ(bytes[3], 1);
}

TEST(FlopEndian, KeepsTheMiddleByteOfOddCounts)
{
    unsigned char bytes[3] = {1, 2, 3};
    FlopEndian(bytes, 3);
    EXPECT_EQ(bytes[0], 3);
    EXPECT_EQ(bytes[1], 2);
    EXPECT_EQ(bytes[2], 1);
}

TEST(FlopEndian, LeavesOneByteAndBytesPastCountAlone)
{
    unsigned char bytes[3] = {7, 8, 9};
    FlopEndian(bytes, 1);
    EXPECT_EQ(bytes[0], 7);
    FlopEndian(bytes, 2);
    EXPECT_EQ(bytes[0], 8);
    EXPECT_EQ(bytes[1], 7);
    EXPECT_EQ(bytes[2], 9);
}
