// CPDrawDialog: painting a described dialog from its rows. Where each part goes is worked out in
// dialog_layout.cpp; this file only puts the parts down, in row order.

#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/dialog/cpdialog.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/draw/font.h"
#include "platform/util/text.h"

namespace {

constexpr long kBlack = 0x000000;
constexpr long kWhite = 0xFFFFFF;
constexpr long kSliderDone = 0x606060;
constexpr long kFolderFace = 0xE0E0E0;
constexpr int kTitleCorner = 4;
constexpr int kButtonCorner = 10;
constexpr int kFolderTextMargin = 9;  // the folder text keeps clear of the box's right side

// Texts sit 14 pixels above the bottom of their row, so the 10-point font's baseline is 4 above it.
int TextTop(const tagRECT& row) { return row.bottom - 14; }

void DrawLabel(const DialogLayout& layout, const tagRECT& row, const char* text, bool colon)
{
    char label[kDialogTextSize];
    std::snprintf(label, sizeof label, colon ? "%s:" : "%s", text);
    DrawText(kBlack, label, layout.labelEnd + 12, TextTop(row), kTextRight);
}

void DrawButton(const tagRECT& rect, const char* text)
{
    DrawRoundBar(kWhite, rect, kButtonCorner);
    DrawRoundBox(kBlack, rect, kButtonCorner, 1);
    DrawText(kBlack, text, rect.left + (rect.right - rect.left) / 2, TextTop(rect), kTextCentre);
}

// The four lines around a radio group, the top one broken where the title sits on it.
void DrawGroupFrame(const tagRECT& frame, const char* title)
{
    DrawLine(kDialogShadow, frame.left, frame.bottom, frame.right, frame.bottom, 1);
    DrawLine(kDialogShadow, frame.left, frame.top, frame.left, frame.bottom, 1);
    DrawLine(kDialogShadow, frame.right, frame.top, frame.right, frame.bottom, 1);
    int middle = frame.left + (frame.right - frame.left) / 2;
    long width = title[0] ? GetTextWidth(title) : 0;
    if (width <= 0) {
        DrawLine(kDialogShadow, frame.left, frame.top, frame.right, frame.top, 1);
        return;
    }
    int gapLeft = middle - static_cast<int>(width / 2) - 3;
    int gapRight = gapLeft + static_cast<int>(width) + 5;
    if (gapLeft > frame.left)
        DrawLine(kDialogShadow, frame.left, frame.top, gapLeft, frame.top, 1);
    if (gapRight < frame.right)
        DrawLine(kDialogShadow, gapRight, frame.top, frame.right, frame.top, 1);
    // Centred across the line: the capitals reach from 3 pixels above it to 4 below.
    DrawText(kBlack, title, middle, frame.top - 6, kTextCentre);
}

void DrawRow(const DialogLayout& layout, int i, const DialogRow& row, const char* values,
             const std::vector<int>& groups)
{
    char value[kDialogRowSize];
    GetDialogValue(values, i, value);
    tagRECT line = DialogRowRect(layout, i);
    tagRECT area = DialogValueArea(layout, i);
    switch (row.kind) {
    case DialogItem::kField:
        DrawBar(kWhite, area);
        DrawBox(kBlack, area, 1);
        DrawText(kBlack, value, layout.labelEnd + 20, TextTop(line), kTextLeft);
        DrawLabel(layout, line, row.label, false);
        break;
    case DialogItem::kCheck:
        DrawCheck(kWhite, DialogCheckBox(layout, i), value[0] != 0);
        DrawLabel(layout, line, row.label, false);
        break;
    case DialogItem::kRadio:
        if (row.groupStart) {
            int last = i;
            while (last + 1 < layout.count && groups[last + 1] == i)
                ++last;
            DrawGroupFrame(DialogGroupFrame(layout, i, last), row.groupTitle);
        }
        DrawRadio(kBlack, DialogRadioButton(layout, i), value[0] != 0);
        DrawText(kBlack, row.label, layout.labelEnd + 30, TextTop(line), kTextLeft);
        break;
    case DialogItem::kSlider:
        DrawLabel(layout, line, row.label, true);
        DrawSlider(kDialogFace, kSliderDone, DialogSliderBar(layout, i), GetDialogNumber(values, i),
                   100, false);
        break;
    case DialogItem::kColour:
        DrawLabel(layout, line, row.label, true);
        DrawBar(GetDialogNumber(values, i) & 0xFFFFFF, area);
        DrawBox(kBlack, area, 1);
        break;
    case DialogItem::kFolder: {
        DrawLabel(layout, line, row.label, true);
        DrawBar(kFolderFace, area);
        DrawBox(kBlack, area, 1);
        // Room for the value and the ellipsis ShrinkTextWidth may add.
        char shown[kDialogTextSize];
        std::strcpy(shown, value);
        ShrinkTextWidth(shown, (area.right - area.left) - kFolderTextMargin, "...");
        DrawText(kBlack, shown, layout.labelEnd + 20, TextTop(line), kTextLeft);
        break;
    }
    }
}

}  // namespace

void CPDrawDialog(int x, int y, int count, const char* descriptions, const char* values,
                  const char* title, bool apply)
{
    if (count < 0 || count > kMaxDialogRows || (count > 0 && (!descriptions || !values)))
        return;
    DialogLayout layout = MakeDialogLayout(x, y, count, descriptions, apply);

    DrawBar(kDialogFace, layout.frame);
    DrawSplitBox(kDialogLight, kDialogShadow, layout.frame);
    DrawRoundBar(kBlack, DialogTitleBar(layout), kTitleCorner);
    DrawText(kWhite, title ? title : "", layout.labelEnd + 8, layout.y + 9, kTextCentre);

    std::vector<int> groups(static_cast<size_t>(layout.count));
    FindRadioGroups(descriptions, layout.count, groups.data());
    for (int i = 0; i < layout.count; ++i) {
        DialogRow row;
        ReadDialogRow(descriptions, i, &row);
        DrawRow(layout, i, row, values, groups);
    }

    DrawButton(DialogOkButton(layout), "OK");
    DrawButton(DialogCancelButton(layout), "Cancel");
    if (layout.apply)
        DrawButton(DialogApplyButton(layout), "Apply");
}
