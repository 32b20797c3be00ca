#include "doc/edit_state.h"

#include <cstring>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/file/paths.h"

void ShowFileRecord::Set(const FSpec& file)
{
    spec = file;
    char text[kMaxPathLength + 1] = {};
    if (!GetFSpecPath(&file, text))
        text[0] = 0;
    std::strncpy(path, text, sizeof path - 1);
    path[sizeof path - 1] = 0;
}

void ShowFileRecord::Clear()
{
    std::memset(&spec, 0, sizeof spec);
    std::memset(path, 0, sizeof path);
}

int CDoc::GetKeySelection() const { return FindKey(gCurFrame); }
