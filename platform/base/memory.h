#pragma once
// The raw block allocator of the program: pixel blocks and filter work areas.
// A failed allocation answers null; nothing throws.

#include <cstddef>

void* AllocMemBlock(size_t bytes);
void FreeMemBlock(void* block);
