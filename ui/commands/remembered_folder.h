#pragma once
// The folder the file dialogs start in: the folder of the last file chosen in any of them, kept
// in the settings ("InitialFolder", with "InitialVrefnum" and "InitialParID" beside it).

#include "platform/file/fspec.h"

// The remembered folder as a path-form record; empty when none is kept.
FSpec RememberedFolder();
// Keeps the folder of `file` (a path-form record, as the dialogs hand back).
void RememberFolderOf(const FSpec& file);
