#pragma once
// "Set KeyFrame Options": a key's position, width and rotation as whole numbers, and its ease
// (kind, speed, no curves) as radio buttons, a slider and a check box.
//
// A key's Ease packs the three: kind button b (0 Use Default, 1 In & Out, 2 In, 3 Out, 4 None)
// x 1000, + the speed (even, so its lowest bit stays free), + 1 for no curves.

#include "doc/key.h"
#include "platform/dialog/dialog_rows.h"

class CPWnd;

// The dialog's rows, in order.
enum KeyDialogRow {
    kKeyRowX,
    kKeyRowY,
    kKeyRowWidth,
    kKeyRowRotation,
    kKeyRowDefault,  // the five ease buttons
    kKeyRowInOut,
    kKeyRowIn,
    kKeyRowOut,
    kKeyRowNone,
    kKeyRowSpeed,
    kKeyRowNoCurves,
    kKeyDialogRows
};

struct KeyDialogLists {
    char descriptions[kKeyDialogRows * kDialogRowSize] = {};
    char values[kKeyDialogRows * kDialogRowSize] = {};
};

// The rows with the key's values in them.
KeyDialogLists MakeKeyDialog(const KeyStruct& key);
// The dialog's values stored back into the key (an OK).
void ReadKeyDialog(const KeyDialogLists& lists, KeyStruct& key);

// Runs the dialog over `owner` at (x, y) of its window pixels, with the viewer hidden meanwhile;
// true when OK was pressed and `key` now holds the values.
bool RunKeyDialog(CPWnd* owner, int x, int y, KeyStruct& key);
