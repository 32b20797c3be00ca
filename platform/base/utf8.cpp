#include "platform/base/utf8.h"

#include <cstring>

size_t CopyUtf8(char* out, const char* text, size_t limit)
{
    size_t length = text ? strnlen(text, limit + 1) : 0;
    if (length > limit) {
        length = limit;
        while (length > 0 && IsUtf8Continuation(text[length]))
            --length;
    }
    if (length > 0)
        std::memcpy(out, text, length);
    out[length] = 0;
    return length;
}
