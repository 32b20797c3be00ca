#include "image/rlc.h"

#include <algorithm>
#include <cstring>

long RLCUnPack(const unsigned char* input, long inputBytes, unsigned char* output, long outputBytes)
{
    if (input == nullptr || output == nullptr || inputBytes <= 0 || outputBytes <= 0)
        return 0;
    long in = 0;
    long out = 0;
    while (out < outputBytes && in < inputBytes) {
        const int n = static_cast<signed char>(input[in++]);
        if (n >= 0) {
            const long count =
                std::min({static_cast<long>(n) + 1, inputBytes - in, outputBytes - out});
            std::memcpy(output + out, input + in, static_cast<size_t>(count));
            in += count;
            out += count;
        } else if (n != -128) {
            if (in >= inputBytes)
                break;
            const long count = std::min(static_cast<long>(1 - n), outputBytes - out);
            std::memset(output + out, input[in++], static_cast<size_t>(count));
            out += count;
        }
    }
    return out;
}
