// The raw block allocator: usable blocks, a zero-byte block, large blocks on huge-page
// boundaries, and failure as null.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "platform/base/memory.h"

// Under the address sanitizer, a failed allocation answers null here as it does in the program,
// instead of stopping the test.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }

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
    EXPECT_EQ(AllocMemBlock(SIZE_MAX / 2), nullptr);
}

#if defined(__linux__)
TEST(MemBlock, LargeBlockStartsOnA2MBBoundaryAndHoldsEveryByte)
{
    constexpr size_t kBytes = (size_t{8} << 20) + 3;  // a picture-sized block, not whole pages
    auto* block = static_cast<unsigned char*>(AllocMemBlock(kBytes));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % (uintptr_t{2} << 20), 0u);
    std::memset(block, 0x5A, kBytes);
    EXPECT_EQ(block[0], 0x5A);
    EXPECT_EQ(block[kBytes - 1], 0x5A);
    FreeMemBlock(block);
}
#endif

}  // namespace
