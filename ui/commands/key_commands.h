#pragma once
// The Edit menu: undo and redo, the key clipboard (copy, cut, paste, delete of the key at the
// current frame) and the picture-wide edits (delete the picture, delete its keys, space its keys
// at a uniform speed). Each command checks the document's state itself, whatever the menu shows:
// shortcuts reach it with the items disabled.

void UndoCommand();           // 9004
void RedoCommand();           // 9005
void CopyKeyCommand();        // 9000: the selected key (0 or more) into the clipboard
void CutKeyCommand();         // 9001: copy, then delete; only for a selection of 1 or more
void DeleteKeyCommand();      // 9003: only for a selection of 1 or more
void PasteKeyCommand();       // 9002: the clipboard's camera over the key at the current frame
void DeletePictureCommand();  // 1023
void DeleteAllKeysCommand();  // 1024
void UniformSpeedCommand();   // 1022

// After an edit: the current frame again (the windows redraw) and the Edit items in step.
void GotoCurrentFrame();
