#pragma once
// The folder the file dialogs start in: the one the last file was chosen from, kept in the
// settings as "InitialFolder" (a full path) and "InitialVrefnum" / "InitialParID" (the numbers
// of the file record it came from).

#include "platform/file/fspec.h"

// The remembered folder: the path when one is kept, else the two numbers. False when nothing
// is remembered; `folder` is then untouched.
bool RememberedFolder(FSpec* folder);
// Remembers the folder of `file` (path form): its path up to and including the last separator,
// and the record's numbers. A record without a path remembers nothing.
void RememberFolderOf(const FSpec& file);
