#pragma once
// Which Edit menu items are enabled for the document's state.

struct EditMenuState {
    bool cut = false;
    bool copy = false;
    bool paste = false;
    bool del = false;  // "Delete"
    bool undo = false;
    bool redo = false;
};

// selection: the key selection (-1 none; 0 is key 0, which can be copied but not cut or
// deleted); clipboardHoldsKey: the clipboard is not empty; undo and redo counts of the ring.
EditMenuState EditMenuStateFor(int selection, bool clipboardHoldsKey, int undoCount, int redoCount);
