#pragma once
// UTF-8 texts in fixed-size buffers: a text cut to fit is cut between characters, never inside one.

#include <cstddef>

// True for the bytes that continue a UTF-8 sequence (10xxxxxx): no character starts there.
inline bool IsUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Copies at most `limit` bytes of `text` into `out` and ends it with a terminator, backing off so
// that no UTF-8 sequence is cut (`out` holds limit + 1 bytes). Reads no further than limit + 1
// bytes of `text`; null copies as "". Answers the bytes copied.
size_t CopyUtf8(char* out, const char* text, size_t limit);
