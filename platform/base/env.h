#pragma once
// The environment record kept by the application shell, and platform flags read everywhere.

constexpr int kEnvNameSize = 64;  // the program's name: 63 characters and a terminator

struct EnvRecord {
    char name[kEnvNameSize];  // names the settings file and heads its text
    int kind;                 // start-up kind given to InitEnvironment (101: stand-alone program)
};

extern EnvRecord gEnv;

// False on this platform: the other platform's byte order and file conventions never apply.
extern const bool gWin32;

// Copies the program's name into gEnv, cut to 63 characters.
void SetEnvName(const char* name);
