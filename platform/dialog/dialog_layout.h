#pragma once
// Where everything of a described dialog lies, in window pixels of the window it is drawn over,
// and what a click there means. Drawing (CPDrawDialog) and input (CPDialog) both work from here,
// so a click always lands on what was drawn.
//
// For a dialog at (x, y) of `count` rows whose widest description row is w pixels wide in the
// dialog font, with L = x + w the end of the label column and `right` = x + 2w + 16:
//
//   dialog          (x, y) - (right, y + 20 count + 78)
//   title bar       (x + 8, y + 8) - (right - 8, y + 24)
//   row i           y + 36 + 20i to y + 52 + 20i; clicks belong to row (click y - y - 36) / 20
//   value area      L + 16 to right - 8
//   "OK"            row count, right - 68 to right - 8
//   "Cancel"        row count + 1, right - 68 to right - 8; "Apply" x + 8 to x + 68 beside it

#include "platform/base/types.h"

// Positions beyond this many pixels from the window's origin are pulled back to it, so that the
// layout's sums never overflow; such a dialog lies far outside any window either way.
constexpr int kDialogPositionLimit = 1 << 24;

constexpr int kDialogRowPitch = 20;
constexpr int kDialogRowHeight = 16;
constexpr int kDialogFirstRow = 36;  // first row's top below the dialog's top
constexpr int kDialogButtonWidth = 60;
constexpr int kDialogApplyEnd = 80;  // clicks left of x + 80 in the button rows mean "Apply"

constexpr long kDialogFace = 0xC0C0C0;
constexpr long kDialogLight = 0xFFFFFF;
constexpr long kDialogShadow = 0x404040;

struct DialogLayout {
    int x = 0;
    int y = 0;
    int count = 0;       // rows
    bool apply = false;  // has an "Apply" button
    int w = 0;           // the widest description row, as written, in the dialog font
    int labelEnd = 0;    // L = x + w
    tagRECT frame = {0, 0, 0, 0};
};

// Makes the dialog font current: Sans10, or a 10-point record of the standard family when the
// environment has not made the fonts.
void SelectDialogFont();

// Measures the rows (count of them, 0 when count is negative or above kMaxDialogRows) in the
// dialog font, which it leaves selected.
DialogLayout MakeDialogLayout(int x, int y, int count, const char* descriptions, bool apply);

tagRECT DialogTitleBar(const DialogLayout& layout);
// Row `row` from the dialog's left to its right, top and bottom as listed above.
tagRECT DialogRowRect(const DialogLayout& layout, int row);
tagRECT DialogValueArea(const DialogLayout& layout, int row);
// The 12 x 12 check box at the value area's left, 2 pixels below the row's top.
tagRECT DialogCheckBox(const DialogLayout& layout, int row);
// The radio button: the row-high square at the value area's left, shrunk by 2 on top and 3 on
// the right.
tagRECT DialogRadioButton(const DialogLayout& layout, int row);
// The slider's bar: from the value area's left to right - 19, from 5 to 13 pixels below the
// row's top.
tagRECT DialogSliderBar(const DialogLayout& layout, int row);
// The frame around a radio group of rows first..last: from L + 8 to right - 4, 2 pixels above
// the first row and below the last, so that neighbouring groups share a line.
tagRECT DialogGroupFrame(const DialogLayout& layout, int first, int last);
tagRECT DialogOkButton(const DialogLayout& layout);
tagRECT DialogCancelButton(const DialogLayout& layout);
tagRECT DialogApplyButton(const DialogLayout& layout);

enum class DialogHitKind {
    kOutside,  // outside the dialog: cancels
    kNothing,  // above the first row, or on a label: ignored
    kItem,     // on row `row`, right of L + 12
    kOk,
    kApply,
    kCancel,
};

struct DialogHit {
    DialogHitKind kind = DialogHitKind::kNothing;
    int row = -1;
};

// What a button-down at (clickX, clickY), window pixels, means. The dialog's edges belong to it.
// In the row after the items a click means "OK", but "Apply" left of x + 80 when the dialog has
// it; in any lower row a click left of x + 80 means "Apply" when the dialog has it, and
// "Cancel" otherwise.
DialogHit HitTestDialog(const DialogLayout& layout, int clickX, int clickY);

// The slider value (0..100) for a pointer at clickX over row `row`'s bar: the bar's first column
// is 0 and its last 100, worked in floating point and truncated, so the knob DrawSlider draws
// for the answer lies under the pointer; left of the bar 0, right of it 100. A bar without width
// answers 0 for a pointer on or left of its start and 100 right of it.
int DialogSliderValueAt(const DialogLayout& layout, int row, int clickX);
