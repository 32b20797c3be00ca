#include "ui/main/show_title.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/util/text.h"

void MakeShowTitle(const char* path, const char* productName, char* out)
{
    std::string title = productName ? productName : kProductTitle;
    if (path) {
        char name[kTitleSize];
        std::strncpy(name, path, sizeof name - 1);
        name[sizeof name - 1] = 0;
        StripFilePath(name);
        StripFileExt(name);
        title += " - ";
        title += name;
    }
    size_t length = std::min(title.size(), static_cast<size_t>(kTitleSize - 1));
    std::memcpy(out, title.data(), length);
    out[length] = 0;
}
