#include "platform/dialog/dialog_rows.h"

#include <cstdlib>
#include <cstring>

namespace {

const char* RowAt(const char* rows, int index)
{
    return rows + static_cast<long>(index) * kDialogRowSize;
}

// Copies the row's text: up to its NUL, never more than 63 characters.
void CopyRowText(const char* row, char* out)
{
    size_t length = strnlen(row, kDialogRowText);
    std::memcpy(out, row, length);
    out[length] = 0;
}

DialogItem KindOfMark(char letter)
{
    switch (letter) {
    case 'C':
        return DialogItem::kCheck;
    case 'R':
        return DialogItem::kRadio;
    case 'S':
        return DialogItem::kSlider;
    case 'L':
        return DialogItem::kColour;
    case 'F':
        return DialogItem::kFolder;
    default:
        return DialogItem::kField;
    }
}

}  // namespace

void ReadDialogRow(const char* descriptions, int index, DialogRow* row)
{
    *row = DialogRow();
    CopyRowText(RowAt(descriptions, index), row->text);
    if (row->text[0] == '@')
        row->kind = KindOfMark(row->text[1]);
    if (row->kind == DialogItem::kField) {
        // A plain row, or an "@" with a letter that is no type: labelled with the whole text.
        std::memcpy(row->label, row->text, sizeof row->label);
        return;
    }
    const char* rest = row->text + 2;
    const char* bar = row->kind == DialogItem::kRadio ? std::strchr(rest, '|') : nullptr;
    if (bar) {
        row->groupStart = true;
        size_t titleLength = static_cast<size_t>(bar - rest);
        std::memcpy(row->groupTitle, rest, titleLength);
        row->groupTitle[titleLength] = 0;
        rest = bar + 1;
    }
    std::strcpy(row->label, rest);
}

void GetDialogValue(const char* values, int index, char* out)
{
    CopyRowText(RowAt(values, index), out);
}

void SetDialogValue(char* values, int index, const char* text)
{
    char* row = values + static_cast<long>(index) * kDialogRowSize;
    size_t length = text ? strnlen(text, kDialogRowText) : 0;
    std::memset(row, 0, kDialogRowSize);
    if (length > 0)
        std::memcpy(row, text, length);
}

bool IsDialogValueOn(const char* values, int index) { return RowAt(values, index)[0] != 0; }

long GetDialogNumber(const char* values, int index)
{
    char text[kDialogRowSize];
    GetDialogValue(values, index, text);
    return std::strtol(text, nullptr, 10);
}

void FindRadioGroups(const char* descriptions, int count, int* groups)
{
    int open = -1;
    for (int i = 0; i < count; ++i) {
        DialogRow row;
        ReadDialogRow(descriptions, i, &row);
        if (row.kind != DialogItem::kRadio)
            open = -1;
        else if (row.groupStart)
            open = i;
        groups[i] = row.kind == DialogItem::kRadio ? open : -1;
    }
}
