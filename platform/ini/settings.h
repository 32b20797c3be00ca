#pragma once
// The settings store: one text of at most 1,023 characters, "[" name "]" CR LF, then
// key=value CR LF lines in the order the keys were first stored. Loaded once at start, saved once
// at exit; everything in between works on the text in memory.

#include <cstddef>

constexpr int kIniSize = 1024;  // the buffer; the text is at most kIniSize - 1 characters
extern char gIniString[kIniSize];

// Copies the value of `key` into `out` (at most `max` characters plus a terminator), or the
// default, itself cut to `max` characters, when the key is absent or has no line end.
void GetIniString(const char* key, const char* defaultValue, char* out, long max);
// The value of `key` read as a signed decimal number ("-12" is -12, "42px" is 42). Text that does
// not start with a number, or a number outside the 32-bit range the settings are written in,
// gives the default, as an absent key does.
long GetIniItem(const char* key, long defaultValue);
// How GetIniItem reads a number: optional blanks and sign, decimal digits up to the first other
// character. False, with `value` untouched, for text without a number or a number outside
// kIniNumberLowest..kIniNumberHighest.
constexpr long long kIniNumberLowest = -2147483647LL - 1;
constexpr long long kIniNumberHighest = 2147483647LL;
bool ReadIniNumber(const char* text, long* value);
// Stores `value` under `key`; removes the CRs of `value` in place first. A change that would take
// the text past 1,023 characters is refused and the old value stays.
void SetIniItem(const char* key, char* value);
void SetIniItem(const char* key, long value);

// Reads the settings file of the program named in gEnv from the preferences folder
// ($XDG_CONFIG_HOME, else ~/.config); a file that does not hold the name is reset to the header.
void LoadIniFile();
// Writes the text to the settings file, replacing the old file whole. A second save with the
// same text since the last load writes nothing (the main window saves on its way out and the
// environment's close saves again: the file is written once).
void SaveIniFile();
// How many times this process has written the settings file.
long GetIniSaveCount();

// The settings file's full path: the preferences folder ($XDG_CONFIG_HOME, else $HOME/.config;
// relative values are ignored) and the program's name. False when there is no such folder, so the
// store lives in memory only, or when the path does not fit in `size` characters and a terminator.
bool GetIniFilePath(char* path, size_t size);

// The store as LoadIniFile leaves it after reading `count` bytes: used by LoadIniFile itself, by
// tests and by the fuzzer. Reads at most kIniSize bytes.
void LoadIniText(const char* bytes, size_t count);
