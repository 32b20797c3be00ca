#pragma once
// Described dialogs: a caller lists its items as description rows (the row language of
// dialog_rows.h) with a parallel list of value rows; CPDialog draws the dialog over the caller's
// window, runs it until it is answered and writes the edits back into the value rows.
//
// Both lists are arrays of kDialogRowSize (64) byte rows. Positions are window pixels of the
// owner, as its drawing takes them (the window's drawing origin applies); the layout is in
// dialog_layout.h. Main thread only.

#include "platform/dialog/dialog_rows.h"

class CPWnd;

// What CPDialog answers.
constexpr int kDialogCancelled =
    0;  // Esc, "Cancel", a click outside the dialog or in another window
constexpr int kDialogConfirmed = 1;  // Return, "OK"
constexpr int kDialogApplied = 2;    // "Apply"

// Runs the dialog with its top-left corner at (x, y) of `owner`. `count` rows; a negative count
// means -count rows and an "Apply" button. Input is read with GetAMessage:
//   Esc ends with 0 and Return with 1 (other keys are not used and go nowhere);
//   a button-down in another window or outside the dialog ends with 0, in the button rows
//   as HitTestDialog tells, above the first row or on a label does nothing, and on an item:
//     "@C" toggles ("" / "1"); "@R" clears every "@R" value of the dialog and sets its own;
//     "@S" follows the pointer while the button is held ("%d", 0..100);
//     "@L" opens the colour picker titled "Choose Color" on the value and stores the colour
//     chosen ("%ld");
//     "@F" opens the file dialog (all files, ".bmp") in the value's folder and stores the
//     folder of the file chosen, its separator kept;
//     a plain field asks GetStringBox: title the dialog's, prompt "Type New Value for " and
//     the description row, note " ( was: " value " )", the value as start text; a confirmed
//     answer replaces the value;
//   any other input is handed to the owner (DispatchAMessage), so it goes on painting.
// The value rows hold the edits whatever the answer; the pixels under the dialog are put back
// before it returns. Answers 0 at once, touching nothing, without a created owner, with more
// than kMaxDialogRows rows, or with rows but no lists.
int CPDialog(CPWnd* owner, int x, int y, int count, const char* descriptions, char* values,
             const char* title);

// Draws the dialog on the current drawing port (see dialog_layout.h for where things go), in
// the dialog font, which stays selected. Nothing is drawn for a count below 0 or above
// kMaxDialogRows, or for rows without lists.
void CPDrawDialog(int x, int y, int count, const char* descriptions, const char* values,
                  const char* title, bool apply);
