#pragma once
// LookForFile: what the program offers when a file it was asked to open cannot be opened.

#include "platform/file/fspec.h"

class CPWnd;

// With no owner, only tells "Can't open file!" (no number) and answers false. Otherwise asks
// "Do you want to look for it?" under "Can't Open File!"; on yes opens the file dialog (all
// files) in the folder remembered by "InitialFolder" (or, without one, "InitialVrefnum" and
// "InitialParID"), and the file chosen replaces `spec` (path form). False on no or cancel, with
// `spec` untouched, and for a null `spec` (nothing is asked then).
bool LookForFile(CPWnd* owner, FSpec* file);

// The folder the file dialogs were last in: the path remembered by "InitialFolder", else the
// numbers of "InitialVrefnum" and "InitialParID". False, with `folder` untouched, when nothing
// is remembered.
bool GetRememberedFolder(FSpec* folder);
