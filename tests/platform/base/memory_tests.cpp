// The raw block allocator: usable blocks, a zero-byte block, and failure as null.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "platform/base/memory.h"

namespace {

TEST(MemBlock, BlockHoldsEveryByteAskedFor)
{
    auto* block = static_cast<unsigned char*>(AllocMemBlock(4096));
    ASSERT_NE(block, nullptr);
    std::memset(block, 0xA5, 4096);
    EXPECT_EQ(block[0], 0xA5);
    EXPECT_EQ(block[4095], 0xA5);
    FreeMemBlock(block);
}

TEST(MemBlock, ZeroBytesAnswersADistinctBlockThatCanBeFreed)
{
    void* first = AllocMemBlock(0);
    void* second = AllocMemBlock(0);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    FreeMemBlock(first);
    FreeMemBlock(second);
}

TEST(MemBlock, ImpossibleSizeAnswersNullWithoutThrowing)
{
    EXPECT_EQ(AllocMemBlock(SIZE_MAX - 16), nullptr);
}

}  // namespace
