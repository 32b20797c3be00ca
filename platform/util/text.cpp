#include "platform/util/text.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/base/env.h"
#include "platform/base/utf8.h"
#include "platform/draw/font.h"

namespace {

constexpr int kStripCRLimit = 512;    // the line buffers the callers read settings into
constexpr int kFilePathLimit = 1022;  // the longest path text any caller builds, kept whole

bool IsPathSeparator(char c, long position)
{
    // A ":" or "\" opening the text is part of the name (a name may begin with one); a "/"
    // opening it is the root of a POSIX path.
    if (c == '/')
        return true;
    return position > 0 && (c == ':' || c == '\\');
}

// Index of the last separator among the first `limit` characters, or -1.
long LastSeparator(const char* text, long limit)
{
    long last = -1;
    for (long i = 0; i < limit && text[i]; i++) {
        if (IsPathSeparator(text[i], i))
            last = i;
    }
    return last;
}

// Start of the UTF-8 character that ends just before `end`, so shrinking never leaves half of
// one behind.
size_t PreviousCharacter(const char* text, size_t end)
{
    if (end == 0)
        return 0;
    size_t i = end - 1;
    while (i > 0 && IsUtf8Continuation(text[i]))
        i--;
    return i;
}

long WidthOf(const std::string& text) { return GetTextWidth(text.c_str()); }

std::string DebugFilePath()
{
    const char* name = gEnv.name[0] ? gEnv.name : "Parallaxotron";
    const char* cache = std::getenv("XDG_CACHE_HOME");
    if (cache && cache[0] == '/')
        return std::string(cache) + "/" + name + "/debug.txt";
    const char* home = std::getenv("HOME");
    if (home && home[0] == '/')
        return std::string(home) + "/.cache/" + name + "/debug.txt";
    return std::string("/tmp/") + name + "/debug.txt";
}

}  // namespace

void StripCR(char* text)
{
    if (!text)
        return;
    int out = 0;
    for (int i = 0; i < kStripCRLimit && text[i]; i++) {
        if (text[i] != '\r' && text[i] != '\n')
            text[out++] = text[i];
    }
    text[out] = 0;
}

void StripTrailingZeros(char* text)
{
    if (!text || !std::strchr(text, '.'))
        return;
    size_t length = std::strlen(text);
    while (length > 0 && text[length - 1] == '0')
        length--;
    if (length > 0 && text[length - 1] == '.')
        length--;
    text[length] = 0;
}

void StripFileExt(char* text)
{
    if (!text)
        return;
    char* dot = std::strchr(text, '.');
    if (dot)
        *dot = 0;
}

void StripFilePath(char* text)
{
    if (!text)
        return;
    long separator = LastSeparator(text, kFilePathLimit);
    if (separator < 0)
        return;
    long start = separator + 1;
    long end = start;
    while (end < kFilePathLimit && text[end])
        end++;
    std::memmove(text, text + start, end - start);
    text[end - start] = 0;
}

void StripFileName(char* text)
{
    if (!text)
        return;
    long separator = LastSeparator(text, static_cast<long>(std::strlen(text)));
    text[separator + 1] = 0;
}

void lowercase(char* text)
{
    for (; text && *text; text++) {
        if (*text >= 'A' && *text <= 'Z')
            *text = static_cast<char>(*text - 'A' + 'a');
    }
}

void uppercase(char* text)
{
    for (; text && *text; text++) {
        if (*text >= 'a' && *text <= 'z')
            *text = static_cast<char>(*text - 'a' + 'A');
    }
}

long ShrinkTextWidth(char* text, long width, const char* ellipsis)
{
    if (!text)
        return 0;
    long whole = GetTextWidth(text);
    if (whole <= width)
        return whole;

    std::string tail = ellipsis ? ellipsis : "";
    size_t length = std::strlen(text);
    if (WidthOf(tail) > width) {
        length = 0;
    } else {
        while (length > 0 && WidthOf(std::string(text, length) + tail) > width)
            length = PreviousCharacter(text, length);
    }
    std::memcpy(text + length, tail.c_str(), tail.size() + 1);
    return GetTextWidth(text);
}

long WrapText(char* text, long width)
{
    if (!text || GetTextWidth(text) <= width)
        return 0;
    for (long i = static_cast<long>(std::strlen(text)) - 1; i >= 0; i--) {
        if (text[i] == ' ' && WidthOf(std::string(text, i)) <= width) {
            text[i] = 0;
            return i + 1;
        }
    }
    text[0] = 0;
    return 0;
}

int Split(char* text, char** parts, char separator)
{
    if (!text)
        return 0;
    int count = 0;
    parts[count++] = text;
    for (char* c = text; *c; c++) {
        if (*c == separator) {
            *c = 0;
            parts[count++] = c + 1;
        }
    }
    return count;
}

void GetDebugFilePath(char* out, long max)
{
    if (!out || max <= 0)
        return;
    std::string path = DebugFilePath();
    size_t count = path.size() < size_t(max - 1) ? path.size() : size_t(max - 1);
    std::memcpy(out, path.data(), count);
    out[count] = 0;
}

void DebugStream(const char* text, long length, char end)
{
    std::filesystem::path path = DebugFilePath();
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (!file)
        return;  // debugging output never stops the program
    if (text) {
        size_t count = length == 0 ? std::strlen(text) : length > 0 ? size_t(length) : 0;
        std::fwrite(text, 1, count, file);
    }
    if (end != 0)
        std::fputc(end, file);
    std::fclose(file);
}
