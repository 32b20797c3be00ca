#pragma once
// What the editor's commands keep in the document besides the show itself: the key clipboard and
// the show file the show was opened from or saved to.

#include <cstdint>

#include "doc/key.h"
#include "platform/file/fspec.h"

// The clipboard's marker while it holds no key.
constexpr int32_t kClipboardEmpty = -9999;

struct KeyClipboard {
    KeyStruct key{};
    int32_t marker = kClipboardEmpty;

    bool HoldsKey() const { return marker != kClipboardEmpty; }
    void Put(const KeyStruct& copied)
    {
        key = copied;
        marker = 0;
    }
};

// The current show file: its record and its path text. Cleared with the show.
struct ShowFileRecord {
    FSpec spec{};
    char path[kFSpecNameSize] = {};

    bool IsSet() const { return path[0] != 0; }
    // Records `file`; its path text is what GetFSpecPath makes of it (empty when it makes none).
    void Set(const FSpec& file);
    void Clear();
};
