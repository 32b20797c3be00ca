#pragma once
// The row language of the described dialogs: what each description row asks for, and reading
// and writing the parallel value rows.
//
// Both lists are arrays of kDialogRowSize-byte rows, row i at byte i x kDialogRowSize. A row's
// text ends at its first NUL or after 63 characters, whichever comes first, so a row that fills
// all 64 bytes is still read safely. A description row has a type only when it begins with "@"
// and one of the letters below; anything else, an empty row included, is a plain value field
// labelled with the row's text.
//
//   "@C" label                  check box      value "" off, anything else on; clicks store "1"
//   "@R" label                  radio button   as a check box
//   "@R" title "|" label        radio button that opens a group framed under `title`
//   "@S" label                  slider 0..100  value "%d"
//   "@L" label                  colour swatch  value "%ld", 0x00BBGGRR
//   "@F" label                  folder field   value the folder path

constexpr int kDialogRowSize = 64;    // bytes of a row, terminator included
constexpr int kDialogRowText = 63;    // characters a row holds; copies into a row stop here
constexpr int kDialogTextSize = 256;  // texts built from rows: "label:", prompts, notes
// Dialogs of more rows than this are refused (no screen shows them); the row lists are then
// never touched.
constexpr int kMaxDialogRows = 256;

enum class DialogItem {
    kField,   // plain value field, edited as text
    kCheck,   // "@C"
    kRadio,   // "@R"
    kSlider,  // "@S"
    kColour,  // "@L"
    kFolder,  // "@F"
};

struct DialogRow {
    DialogItem kind = DialogItem::kField;
    char text[kDialogRowSize] = {};        // the row as written, "@" mark included
    char label[kDialogRowSize] = {};       // what is written beside the item
    char groupTitle[kDialogRowSize] = {};  // "@R" rows that open a group: the text before "|"
    bool groupStart = false;               // an "@R" row holding "|"
};

// Reads description row `index` (the caller keeps index within its list).
void ReadDialogRow(const char* descriptions, int index, DialogRow* row);

// The text of value row `index`, cut at 63 characters, into `out` (kDialogRowSize bytes).
void GetDialogValue(const char* values, int index, char* out);
// Stores `text` (null as "") in value row `index`: at most 63 characters, the rest of the row
// cleared. Nothing outside the row's 64 bytes is written.
void SetDialogValue(char* values, int index, const char* text);
// A check or radio row is on when its first character is not NUL ("0" is on).
bool IsDialogValueOn(const char* values, int index);
// The value read as a decimal number (leading blanks and a sign allowed; no digits gives 0;
// values beyond a long saturate).
long GetDialogNumber(const char* values, int index);

// The radio group of each row: -1 for rows outside any group, otherwise the index of the row
// that opened it. A group runs from an "@R" row with "|" over the "@R" rows without "|" that
// follow it, and ends at any other row. `groups` holds `count` entries.
void FindRadioGroups(const char* descriptions, int count, int* groups);
