#include "platform/file/endian.h"

#include <utility>

uint32_t Endian(const void* bytes, int count, bool msbFirst)
{
    const unsigned char* in = static_cast<const unsigned char*>(bytes);
    uint32_t value = 0;
    for (int i = 0; i < count; i++) {
        int index = msbFirst ? i : count - 1 - i;
        value = (value << 8) | in[index];
    }
    return value;
}

void MemEndian(void* bytes, long value, int count, bool msbFirst)
{
    // `long` is wider than 32 bits here: every value a 32-bit long holds gives the same bytes, and
    // unsigned 32-bit quantities (colours, lengths) are stored whole.
    unsigned char* out = static_cast<unsigned char*>(bytes);
    for (int i = 0; i < count; i++) {
        unsigned char low = static_cast<unsigned char>(static_cast<unsigned long>(value) & 0xFF);
        out[msbFirst ? count - 1 - i : i] = low;
        value /= 256;
    }
}

void FlopEndian(void* bytes, int count)
{
    unsigned char* data = static_cast<unsigned char*>(bytes);
    for (int i = 0; i < count / 2; i++)
        std::swap(data[i], data[count - 1 - i]);
}
