#include "platform/base/memory.h"

#include <cstdlib>

void* AllocMemBlock(size_t bytes) { return std::malloc(bytes == 0 ? 1 : bytes); }

void FreeMemBlock(void* block) { std::free(block); }
