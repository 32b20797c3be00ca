#pragma once
// The raw block allocator of the program: pixel blocks and filter work areas.
// A failed allocation answers null; nothing throws.

#include <cstddef>

void* AllocMemBlock(size_t bytes);
void FreeMemBlock(void* block);
// Gives the memory pages that lie wholly past the first `keep` of a block's `size` bytes back to
// the system. The block stays whole and valid; what was there reads as zeros afterwards.
void ReleaseMemBlockTail(void* block, size_t keep, size_t size);
