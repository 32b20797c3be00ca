#include "platform/base/memory.h"

#include <cstdint>
#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace {

// Blocks this large (whole pictures, frames) are placed on 2 MB boundaries and offered to the
// system as huge pages: the camera filters read a picture across many rows at once, which with
// 4 KB pages costs an address translation miss on almost every read.
constexpr size_t kHugePage = size_t{2} << 20;
constexpr size_t kHugeBlock = size_t{8} << 20;

}  // namespace

void* AllocMemBlock(size_t bytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (bytes >= kHugeBlock && bytes <= SIZE_MAX - kHugePage) {
        size_t rounded = (bytes + kHugePage - 1) & ~(kHugePage - 1);
        void* block = std::aligned_alloc(kHugePage, rounded);
        if (block != nullptr)
            madvise(block, rounded, MADV_HUGEPAGE);
        return block;
    }
#endif
    return std::malloc(bytes == 0 ? 1 : bytes);
}

void FreeMemBlock(void* block) { std::free(block); }

void ReleaseMemBlockTail(void* block, size_t keep, size_t size)
{
#if defined(__linux__) && defined(MADV_DONTNEED)
    if (block == nullptr || keep >= size)
        return;
    constexpr uintptr_t kPage = 4096;
    uintptr_t from = (reinterpret_cast<uintptr_t>(block) + keep + kPage - 1) & ~(kPage - 1);
    uintptr_t to = (reinterpret_cast<uintptr_t>(block) + size) & ~(kPage - 1);
    if (from < to)
        madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
#else
    (void)block;
    (void)keep;
    (void)size;
#endif
}
