// The raw block allocator: usable blocks, a zero-byte block, large blocks on huge-page
// boundaries, failure as null, and the unused end of a block given back.

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

TEST(MemBlock, ReleasedTailReadsAsZerosAndTheRestIsKept)
{
    constexpr size_t kSize = size_t{16} << 20;
    constexpr size_t kKeep = size_t{5} << 20;  // whole pages of a 2 MB-aligned block
    auto* block = static_cast<unsigned char*>(AllocMemBlock(kSize));
    ASSERT_NE(block, nullptr);
    std::memset(block, 0x5A, kSize);
    ReleaseMemBlockTail(block, kKeep, kSize);
    EXPECT_EQ(block[0], 0x5A);
    EXPECT_EQ(block[kKeep - 1], 0x5A);
#if defined(__linux__)
    EXPECT_EQ(block[kKeep], 0);
    EXPECT_EQ(block[kSize - 1], 0);
#endif
    // Still one whole block: written again and freed as usual.
    std::memset(block, 0x11, kSize);
    EXPECT_EQ(block[kSize - 1], 0x11);
    FreeMemBlock(block);
}

TEST(MemBlock, ReleasingNothingOrANullBlockIsHarmless)
{
    auto* block = static_cast<unsigned char*>(AllocMemBlock(100));
    ASSERT_NE(block, nullptr);
    std::memset(block, 7, 100);
    ReleaseMemBlockTail(block, 100, 100);
    ReleaseMemBlockTail(block, 10, 100);  // no whole page inside
    ReleaseMemBlockTail(nullptr, 0, 4096 * 4);
    EXPECT_EQ(block[99], 7);
    EXPECT_EQ(block[10], 7);
    FreeMemBlock(block);
}

}  // namespace
