#include "app/cli/message_text.h"

#include <cstdio>

namespace {

void Escape(unsigned char byte, std::string& out)
{
    char text[5];
    std::snprintf(text, sizeof text, "\\x%02X", byte);
    out += text;
}

// The length of the valid UTF-8 sequence starting at `at`; 0 when it is not one.
size_t SequenceLength(const std::string& text, size_t at)
{
    unsigned char lead = static_cast<unsigned char>(text[at]);
    size_t length = 0;
    unsigned long value = 0;
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
    } else {
        return 0;
    }
    if (at + length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i) {
        unsigned char next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (next & 0x3F);
    }
    // Overlong forms, surrogates and values past U+10FFFF are not UTF-8.
    static const unsigned long kSmallest[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (value < kSmallest[length] || (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF)
        return 0;
    return length;
}

}  // namespace

std::string PrintableText(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        unsigned char byte = static_cast<unsigned char>(text[at]);
        size_t length = SequenceLength(text, at);
        if (length == 0 || byte < 0x20 || byte == 0x7F) {
            Escape(byte, out);
            ++at;
            continue;
        }
        out.append(text, at, length);
        at += length;
    }
    return out;
}
