#pragma once
// Row lists for the described dialog tests, laid out as the callers lay them out: one 64-byte
// row per text, the rest of each row zero.

#include <cstring>
#include <string>
#include <vector>

#include "platform/dialog/dialog_rows.h"

inline std::vector<char> Rows(const std::vector<std::string>& texts)
{
    std::vector<char> rows(texts.size() * kDialogRowSize, 0);
    for (size_t i = 0; i < texts.size(); ++i)
        std::strncpy(&rows[i * kDialogRowSize], texts[i].c_str(), kDialogRowSize - 1);
    return rows;
}
