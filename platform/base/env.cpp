#include "platform/base/env.h"

#include <cstring>

EnvRecord gEnv = {"Parallaxotron", 0};
const bool gWin32 = false;

void SetEnvName(const char* name)
{
    std::strncpy(gEnv.name, name ? name : "", kEnvNameSize - 1);
    gEnv.name[kEnvNameSize - 1] = 0;
}
