// Fuzzes RLCUnPack. The first two bytes give the row's size (0 to 4,095), the rest is the packed
// input. The row is unpacked into a buffer of exactly that size (the sanitizer sees any byte
// written past it; the input is copied to a buffer of its exact size for the same reason) and
// compared with a plain model of the rules.

#include <cstdint>
#include <cstring>
#include <vector>

#include "image/rlc.h"

namespace {

void Check(bool condition)
{
    if (!condition)
        __builtin_trap();
}

// Count byte n: 0..127 copies n + 1 bytes, -127..-1 repeats the next byte 1 - n times, -128 is
// nothing; a run is cut at the row's end or the input's end, and the row ends when full.
std::vector<unsigned char> Model(const std::vector<unsigned char>& in, size_t size)
{
    std::vector<unsigned char> out;
    size_t at = 0;
    while (out.size() < size && at < in.size()) {
        int n = static_cast<signed char>(in[at++]);
        if (n == -128)
            continue;
        if (n >= 0) {
            for (int i = 0; i <= n && at < in.size() && out.size() < size; ++i)
                out.push_back(in[at++]);
            // A literal cut by the row's end leaves its remaining bytes unread; nothing follows.
        } else {
            if (at >= in.size())
                break;
            unsigned char value = in[at++];
            for (int i = 0; i < 1 - n && out.size() < size; ++i)
                out.push_back(value);
        }
    }
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const size_t rowBytes =
        (static_cast<size_t>(data[0]) | static_cast<size_t>(data[1]) << 8) % 4096;
    std::vector<unsigned char> input(data + 2, data + size);
    std::vector<unsigned char> row(rowBytes);
    unsigned char* inputAt = input.empty() ? nullptr : input.data();
    unsigned char* rowAt = row.empty() ? nullptr : row.data();
    long written =
        RLCUnPack(inputAt, static_cast<long>(input.size()), rowAt, static_cast<long>(rowBytes));
    Check(written >= 0 && static_cast<size_t>(written) <= rowBytes);
    std::vector<unsigned char> expected = Model(input, rowBytes);
    Check(static_cast<size_t>(written) == expected.size());
    // An empty row has no buffer to compare (and memcmp takes no null pointers, even for 0).
    Check(expected.empty() || std::memcmp(row.data(), expected.data(), expected.size()) == 0);
    return 0;
}
