#include "platform/ini/settings.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/env.h"
#include "platform/base/file_types.h"
#include "platform/base/replace_file.h"

char gIniString[kIniSize];

// Sections: helpers for the text, helpers for the file, values (reading, writing, loading from
// bytes), loading and saving the settings file.

namespace {

constexpr size_t kMaxText = kIniSize - 1;    // 1,023 characters and the terminator
constexpr size_t kMaxAppend = kIniSize - 3;  // a new line must leave room for its CR LF

// What this run wrote last, so that saving the same text again writes nothing.
bool sWrittenSinceLoad = false;
std::string sLastWritten;
long sSaveCount = 0;

// ---------------------------------------------------------------------------------------------
// [SECTION] Helpers for the text

// The buffer is global and anyone may write into it; the last character stays NUL so that every
// search below ends inside the buffer, whatever was put there.
size_t TextLength()
{
    gIniString[kMaxText] = 0;
    return std::strlen(gIniString);
}

// The first "key=" anywhere in the text. Deliberately not anchored to a line start: a key that
// is the tail of another key matches inside it, so the program's keys are named to avoid that.
char* FindKey(const std::string& pattern)
{
    TextLength();
    return std::strstr(gIniString, pattern.c_str());
}

void RemoveCRs(char* text)
{
    char* to = text;
    for (const char* from = text; *from; ++from)
        if (*from != '\r')
            *to++ = *from;
    *to = 0;
}

// A copy of the program's name, safe even if the record lost its terminator.
std::string ProgramName() { return std::string(gEnv.name, strnlen(gEnv.name, kEnvNameSize - 1)); }

// ---------------------------------------------------------------------------------------------
// [SECTION] Helpers for the file

const char kFileType[] = "TEXT";
const char kFileCreator[] = "ttxt";  // the plain text editor's, so the file opens there

struct SettingsFile {
    std::string folder;  // the preferences folder
    std::string path;    // folder + "/" + the program's name
};

// The user's configuration folder: $XDG_CONFIG_HOME, else $HOME/.config. Relative values are
// ignored, as the freedesktop rules ask. False when neither gives a folder: the store then lives
// in memory only for this run.
bool FindSettingsFile(SettingsFile& file)
{
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    if (config && config[0] == '/')
        file.folder = config;
    else if (home && home[0] == '/')
        file.folder = std::string(home) + "/.config";
    else
        return false;

    // The name becomes a file name: one that would climb folders or name none has no file.
    std::string name = ProgramName();
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        return false;
    file.path = file.folder + "/" + name;
    return true;
}

// mkdir -p. New folders are private to the user, as configuration folders should be.
bool MakeFolder(const std::string& folder)
{
    for (size_t slash = folder.find('/', 1); slash != std::string::npos;
         slash = folder.find('/', slash + 1))
        mkdir(folder.substr(0, slash).c_str(), 0700);
    mkdir(folder.c_str(), 0700);
    struct stat info;
    return stat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// Makes a file's new name or removal durable along with its contents.
void SyncFolder(const std::string& folder)
{
    int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    fsync(fd);
    close(fd);
}

// Creates the empty settings file if there is none. False when it neither exists nor could be
// made, which skips the reading.
bool CreateSettingsFile(const SettingsFile& file)
{
    if (!MakeFolder(file.folder))
        return false;
    int fd = open(file.path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0)
        return errno == EEXIST;
    SetFileTypeAndCreator(file.path.c_str(), kFileType, kFileCreator);
    fsync(fd);
    close(fd);
    SyncFolder(file.folder);
    return true;
}

// Reads at most kIniSize bytes of the settings file into `bytes`; answers how many were read.
size_t ReadSettingsFile(const SettingsFile& file, char* bytes)
{
    if (!CreateSettingsFile(file))
        return 0;
    // Non-blocking so that a pipe put in the file's place cannot hold the start-up; anything but
    // a plain file is not read at all.
    int fd = open(file.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return 0;
    struct stat info;
    size_t count = 0;
    if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
        while (count < kIniSize) {
            ssize_t got = read(fd, bytes + count, kIniSize - count);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                break;
            count += static_cast<size_t>(got);
        }
    }
    close(fd);
    return count;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// [SECTION] Values: reading, writing, loading from bytes

void GetIniString(const char* key, const char* defaultValue, char* out, long max)
{
    if (!out || max < 0)
        return;
    const char* source = defaultValue ? defaultValue : "";
    size_t length = strnlen(source, static_cast<size_t>(max));
    if (key) {
        std::string pattern = std::string(key) + "=";
        const char* found = FindKey(pattern);
        const char* value = found ? found + pattern.size() : nullptr;
        // A value ends at the first CR after its "="; a line never ended is treated as absent.
        const char* end = value ? std::strchr(value, '\r') : nullptr;
        if (end) {
            source = value;
            length = static_cast<size_t>(end - value);
            if (length > static_cast<size_t>(max))
                length = static_cast<size_t>(max);
        }
    }
    std::memmove(out, source, length);
    out[length] = 0;
}

bool ReadIniNumber(const char* text, long* value)
{
    if (text == nullptr || value == nullptr)
        return false;
    errno = 0;
    char* end = nullptr;
    const long long number = std::strtoll(text, &end, 10);
    if (end == text || errno == ERANGE || number < kIniNumberLowest || number > kIniNumberHighest)
        return false;
    *value = static_cast<long>(number);
    return true;
}

long GetIniItem(const char* key, long defaultValue)
{
    char text[32];
    std::snprintf(text, sizeof text, "%ld", defaultValue);
    char value[256];
    GetIniString(key, text, value, 255);
    long number = defaultValue;
    return ReadIniNumber(value, &number) ? number : defaultValue;
}

void SetIniItem(const char* key, char* value)
{
    if (!key || !value)
        return;
    // Only CRs go: a CR would end the value early. An LF is kept as it is.
    RemoveCRs(value);
    // Copies, so that a value or key taken from the store itself cannot be moved under our feet.
    const std::string newValue = value;
    const std::string pattern = std::string(key) + "=";

    size_t length = TextLength();
    char* found = FindKey(pattern);
    if (found) {
        char* at = found + pattern.size();
        char* rest = std::strchr(at, '\r');
        if (!rest)
            return;  // a line without its end is left alone
        size_t head = static_cast<size_t>(at - gIniString);
        size_t restLength = length - static_cast<size_t>(rest - gIniString);
        // Refused rather than grown: the buffer is fixed, and the old value is better than a
        // store cut somewhere in the middle of a line.
        if (head + newValue.size() + restLength > kMaxText)
            return;
        std::memmove(at + newValue.size(), rest, restLength + 1);
        std::memcpy(at, newValue.data(), newValue.size());
        return;
    }

    // A new key goes at the end, in the order keys were first stored; a full store drops it.
    if (length + pattern.size() + newValue.size() > kMaxAppend)
        return;
    std::string line = pattern + newValue + "\r\n";
    std::memcpy(gIniString + length, line.c_str(), line.size() + 1);
}

void SetIniItem(const char* key, long value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%ld", value);
    SetIniItem(key, text);
}

void LoadIniText(const char* bytes, size_t count)
{
    sWrittenSinceLoad = false;
    // Cleared first: the text is not cut at the bytes read, so a short text ends at the zeros
    // after it, and an embedded NUL ends it early.
    std::memset(gIniString, 0, kIniSize);
    if (bytes && count > 0)
        std::memcpy(gIniString, bytes, count < kIniSize ? count : kIniSize);
    gIniString[kMaxText] = 0;

    // Text that does not name the program is some other program's file, or damaged: start over.
    std::string name = ProgramName();
    if (!std::strstr(gIniString, name.c_str())) {
        std::memset(gIniString, 0, kIniSize);
        std::snprintf(gIniString, kIniSize, "[%s]\r\n", name.c_str());
    }
}

// ---------------------------------------------------------------------------------------------
// [SECTION] Loading and saving the settings file

bool GetIniFilePath(char* path, size_t size)
{
    SettingsFile file;
    if (!path || !FindSettingsFile(file) || file.path.size() + 1 > size)
        return false;
    std::memcpy(path, file.path.c_str(), file.path.size() + 1);
    return true;
}

void LoadIniFile()
{
    SettingsFile file;
    if (!FindSettingsFile(file))
        return;
    // A file that cannot be made or read leaves nothing to read: the store starts as the header.
    char bytes[kIniSize];
    size_t count = ReadSettingsFile(file, bytes);
    LoadIniText(bytes, count);
}

void SaveIniFile()
{
    if (sWrittenSinceLoad && sLastWritten == gIniString)
        return;
    SettingsFile file;
    if (!FindSettingsFile(file) || !MakeFolder(file.folder))
        return;

    // Replaced whole through a new file renamed over the old one: a save that fails half-way
    // (full disk, crash) keeps the previous settings instead of an empty or cut file.
    FileReplacement replacement(file.path);
    if (!replacement.Begin())
        return;
    // The text only, up to its NUL: the file holds no terminator.
    if (!replacement.Write(gIniString, TextLength()))
        return;
    SetFileTypeAndCreator(replacement.TemporaryPath().c_str(), kFileType, kFileCreator);
    if (!replacement.Commit())
        return;
    sWrittenSinceLoad = true;
    sLastWritten = gIniString;
    ++sSaveCount;
}

long GetIniSaveCount() { return sSaveCount; }
