#pragma once
// "Advanced Options": field order, the two-processor split, the folder where missing pictures
// are looked for, picture error messages and the viewer's second screen, as rows for the
// described dialog. A check on "Special Aspect Ratio" opens the viewer-shape dialog next.

#include "doc/cdoc.h"
#include "platform/dialog/dialog_rows.h"

// The command that opens the dialog.
constexpr int kAdvancedOptionsCommand = 1036;

enum AdvancedOptionsRow {
    kAdvancedRowFieldSwap,
    kAdvancedRowTopField,
    kAdvancedRowMultiProc,
    kAdvancedRowSpecialAspect,
    kAdvancedRowFolder,
    kAdvancedRowPicErrors,
    kAdvancedRowSecondScreen,
    kAdvancedOptionsRows
};

struct AdvancedValues {
    bool fieldSwap = false;
    bool flopTopField = false;
    int multiProcOffset = 0;         // gMultiProcOffset
    char folder[kTextSetting] = {};  // the alternative picture folder
    bool showPicError = true;
    bool dualScreen = false;  // the viewer may go to a second screen
};

struct AdvancedOptionsLists {
    char descriptions[kAdvancedOptionsRows * kDialogRowSize] = {};
    char values[kAdvancedOptionsRows * kDialogRowSize] = {};
};

// The rows showing `values`; "Special Aspect Ratio" always unchecked, the folder cut to 63
// characters.
AdvancedOptionsLists MakeAdvancedOptionsDialog(const AdvancedValues& values);

// What OK changes, from the rows and the values shown.
struct AdvancedChoice {
    AdvancedValues values;
    bool folderPicked = false;   // a folder was picked: only then is "AltImageFolder" written
    bool specialAspect = false;  // open the viewer-shape dialog
};
// The multi-processor check keeps an offset other than 1 that was on; turned on it is 1, off 0.
AdvancedChoice ReadAdvancedOptionsDialog(const AdvancedOptionsLists& lists,
                                         const AdvancedValues& shown);
