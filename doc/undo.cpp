// The undo ring: 32 entries, each a key with its picture and action code in Reserved.

#include "doc/cdoc.h"

#include <algorithm>

void CDoc::Do(const KeyStruct& key, int action, int pic)
{
    if (pic < 0 || pic >= kMaxPictures)
        return;
    undoHead = (undoHead + 1) % kUndoEntries;
    undoCount = std::min(undoCount + 1, kUndoEntries);
    KeyStruct& entry = undoRing[undoHead];
    entry = key;
    entry.Reserved[0] = static_cast<int16_t>(pic);
    entry.Reserved[1] = static_cast<int16_t>(action);
}

void CDoc::UnDoAction()
{
    if (undoHead < 0 || undoHead >= kUndoEntries)
        return;
    KeyStruct& entry = undoRing[undoHead];
    int pic = entry.Reserved[0];
    int action = entry.Reserved[1];
    if (pic < 0 || pic >= kMaxPictures)
        return;

    if (action == kUndoDeletedKey) {
        // Put the deleted key back at its sorted place; the entry now deletes it again.
        if (keyCount[pic] >= kMaxKeys)
            return;
        KeyStruct& restored = keys[pic][keyCount[pic]];
        restored = entry;
        restored.Reserved[1] = 0;
        keyCount[pic] += 1;
        SortKeys(pic);
        entry.Reserved[1] = kUndoRedelete;
    } else if (action == kUndoRedelete) {
        // Only the entry's own picture: keys of other pictures at the same frame stay.
        for (int key = 0; key < keyCount[pic]; ++key) {
            if (keys[pic][key].Frame != entry.Frame)
                continue;
            entry = keys[pic][key];
            entry.Reserved[0] = static_cast<int16_t>(pic);
            entry.Reserved[1] = kUndoDeletedKey;
            keyCount[pic] -= 1;
            for (int later = key; later < keyCount[pic]; ++later)
                keys[pic][later] = keys[pic][later + 1];
            break;
        }
    } else if (action == kUndoPictureSwap) {
        // A swap is its own inverse: the entry stays as it is.
        FlopPic(pic, entry.Frame);
    } else if (action >= 0 && action < kMaxKeys) {
        KeyStruct current = keys[pic][action];
        keys[pic][action] = entry;
        keys[pic][action].Reserved[1] = 0;
        entry = current;
        entry.Reserved[0] = static_cast<int16_t>(pic);
        entry.Reserved[1] = static_cast<int16_t>(action);
    } else {
        return;
    }
    dirty = true;
}

void CDoc::UnDo()
{
    if (undoCount <= 0)
        return;
    UnDoAction();
    undoHead = (undoHead + kUndoEntries - 1) % kUndoEntries;
    redoCount = std::min(redoCount + 1, kUndoEntries);
    undoCount = std::max(undoCount - 1, 0);
}

void CDoc::ReDo()
{
    if (redoCount <= 0)
        return;
    undoHead = (undoHead + 1) % kUndoEntries;
    UnDoAction();
    undoCount = std::min(undoCount + 1, kUndoEntries);
    redoCount = std::max(redoCount - 1, 0);
}
