// Fuzzes the settings store. The input is loaded as a settings file; then its own lines, split at
// the first "=", become keys and values for reads and writes. Every result is compared with a
// plain model of the same rules written on std::string, and after every step the store must be a
// terminated text of at most 1,023 characters.

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/base/env.h"
#include "platform/ini/settings.h"

namespace {

constexpr size_t kMaxText = kIniSize - 1;
constexpr size_t kMaxPieces = 48;

void Check(bool condition)
{
    if (!condition)
        __builtin_trap();
}

// The text up to its first NUL, as a C string would see it.
std::string CText(const std::string& bytes) { return std::string(bytes.c_str()); }

// The store's rules, written the long way round.
struct Model {
    std::string text;

    void Load(const std::string& bytes)
    {
        text = CText(bytes.substr(0, kMaxText));
        std::string name = gEnv.name;
        if (text.find(name) == std::string::npos)
            text = "[" + name + "]\r\n";
    }

    // Where the value of `key` starts and the CR that ends it; false when either is missing.
    bool FindValue(const std::string& key, size_t& start, size_t& end) const
    {
        size_t at = text.find(key + "=");
        if (at == std::string::npos)
            return false;
        start = at + key.size() + 1;
        end = text.find('\r', start);
        return end != std::string::npos;
    }

    std::string Get(const std::string& key, const std::string& defaultValue, size_t max) const
    {
        size_t start = 0;
        size_t end = 0;
        if (FindValue(key, start, end))
            return text.substr(start, std::min(end - start, max));
        return defaultValue.substr(0, max);
    }

    // True when the value was stored.
    bool Set(const std::string& key, std::string value)
    {
        value.erase(std::remove(value.begin(), value.end(), '\r'), value.end());
        if (text.find(key + "=") == std::string::npos) {
            if (text.size() + key.size() + 1 + value.size() > kMaxText - 2)
                return false;
            text += key + "=" + value + "\r\n";
            return true;
        }
        size_t start = 0;
        size_t end = 0;
        if (!FindValue(key, start, end))
            return false;
        std::string changed = text.substr(0, start) + value + text.substr(end);
        if (changed.size() > kMaxText)
            return false;
        text = changed;
        return true;
    }
};

void CheckStore(const Model& model)
{
    Check(std::memchr(gIniString, 0, kIniSize) != nullptr);
    size_t length = std::strlen(gIniString);
    Check(length <= kMaxText);
    Check(model.text == std::string(gIniString, length));
}

std::string Read(const std::string& key, const std::string& defaultValue, long max)
{
    // Exactly max + 1 characters, so that the sanitizer sees any write past them.
    std::vector<char> out(static_cast<size_t>(max) + 1);
    GetIniString(key.c_str(), defaultValue.c_str(), out.data(), max);
    Check(std::memchr(out.data(), 0, out.size()) != nullptr);
    return std::string(out.data());
}

long NumberFrom(const std::string& piece)
{
    long number = 0;
    std::memcpy(&number, piece.data(), std::min(piece.size(), sizeof number));
    return number;
}

// The range of the settings' numbers.
bool Within32Bits(long long number)
{
    return number >= -2147483647LL - 1 && number <= 2147483647LL;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    Model model;
    LoadIniText(input.data(), input.size());
    model.Load(input);
    CheckStore(model);

    size_t pieces = 0;
    for (size_t begin = 0; begin < input.size() && pieces < kMaxPieces; ++pieces) {
        size_t end = std::min(input.find('\n', begin), input.size());
        std::string piece = CText(input.substr(begin, end - begin));
        begin = end + 1;

        size_t equals = piece.find('=');
        std::string key = piece.substr(0, equals);
        std::string value = equals == std::string::npos ? "" : piece.substr(equals + 1);
        char buffer[32];

        switch ((pieces + piece.size()) % 5) {
        case 0: {
            long max = static_cast<long>(piece.size() % 40);
            Check(Read(key, value, max) == model.Get(key, value, static_cast<size_t>(max)));
            Check(Read(key, value, 1023) == model.Get(key, value, 1023));
            break;
        }
        case 1:
        case 2: {
            // The second kind repeats the value to push the store against its limit.
            std::string stored = value;
            if ((pieces + piece.size()) % 5 == 2)
                for (size_t i = piece.size() % 64; i > 0 && stored.size() < 4096; --i)
                    stored += value;
            std::string cleaned = stored;
            cleaned.erase(std::remove(cleaned.begin(), cleaned.end(), '\r'), cleaned.end());
            bool accepted = model.Set(key, stored);
            SetIniItem(key.c_str(), stored.data());
            Check(std::string(stored.c_str()) == cleaned);  // CRs removed in place, nothing else
            CheckStore(model);
            // The key holds no "=", so its first occurrence is the line just written.
            if (accepted)
                Check(Read(key, "", 1023) == cleaned);
            break;
        }
        case 3: {
            long number = NumberFrom(piece);
            std::snprintf(buffer, sizeof buffer, "%ld", number);
            bool accepted = model.Set(key, buffer);
            SetIniItem(key.c_str(), number);
            CheckStore(model);
            // Numbers beyond 32 bits are written whole but read as the default.
            if (accepted)
                Check(GetIniItem(key.c_str(), number ^ 1) ==
                      (Within32Bits(number) ? number : (number ^ 1)));
            break;
        }
        default: {
            long fallback = NumberFrom(value);
            std::snprintf(buffer, sizeof buffer, "%ld", fallback);
            const std::string text = model.Get(key, buffer, 255);
            char* end = nullptr;
            errno = 0;
            long long number = std::strtoll(text.c_str(), &end, 10);
            bool readable = end != text.c_str() && errno != ERANGE && Within32Bits(number);
            Check(GetIniItem(key.c_str(), fallback) ==
                  (readable ? static_cast<long>(number) : fallback));
            break;
        }
        }
        CheckStore(model);
    }

    // What a save and a new start would do: the text loaded again is the same text, unless the
    // writes above took the program's name out of it.
    std::string saved(gIniString);
    LoadIniText(saved.data(), saved.size());
    model.Load(saved);
    CheckStore(model);
    return 0;
}
