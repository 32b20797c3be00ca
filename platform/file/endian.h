#pragma once
// Multi-byte numbers in either byte order, as every file reader and writer stores them.

#include <cstdint>

// The value of `count` bytes, most significant first when `msbFirst`, else least significant
// first. With more than four bytes only the low 32 bits of the value are kept.
uint32_t Endian(const void* bytes, int count, bool msbFirst);

// Stores `value` in `count` bytes in the given order. Each next byte comes from the value divided
// by 256 with truncation toward zero, not from a shift: for negative values only the lowest byte
// is two's complement (-1 in two bytes little-endian is FF 00). Files written so are read back
// by the same rule, so the arithmetic stays.
void MemEndian(void* bytes, long value, int count, bool msbFirst);

// Reverses `count` bytes in place; the middle byte of an odd count stays.
void FlopEndian(void* bytes, int count);
