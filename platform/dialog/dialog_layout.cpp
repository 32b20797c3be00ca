#include "platform/dialog/dialog_layout.h"

#include <algorithm>

#include "platform/dialog/dialog_rows.h"
#include "platform/draw/font.h"
#include "platform/wnd/shell.h"

namespace {

// What the dialogs are set in when the environment has not made Sans10.
FontRecord sFallbackFont = {"Sans", 10, 0};

// A row's widest text is 63 characters; this only keeps an absurd font within the layout's sums.
constexpr long kWidestRow = 1 << 16;

int RowTop(const DialogLayout& layout, int row)
{
    return layout.y + kDialogFirstRow + kDialogRowPitch * row;
}

}  // namespace

void SelectDialogFont() { SelectFont(Sans10 ? Sans10 : &sFallbackFont, -1, 0); }

DialogLayout MakeDialogLayout(int x, int y, int count, const char* descriptions, bool apply)
{
    DialogLayout layout;
    layout.x = std::clamp(x, -kDialogPositionLimit, kDialogPositionLimit);
    layout.y = std::clamp(y, -kDialogPositionLimit, kDialogPositionLimit);
    layout.count = count >= 0 && count <= kMaxDialogRows && descriptions ? count : 0;
    layout.apply = apply;
    SelectDialogFont();
    long widest = 0;
    for (int i = 0; i < layout.count; ++i) {
        DialogRow row;
        ReadDialogRow(descriptions, i, &row);
        widest = std::max(widest, GetTextWidth(row.text));
    }
    layout.w = static_cast<int>(std::min(widest, kWidestRow));
    layout.labelEnd = layout.x + layout.w;
    layout.frame = {layout.x, layout.y, layout.x + 2 * layout.w + 16,
                    layout.y + kDialogRowPitch * layout.count + 78};
    return layout;
}

tagRECT DialogTitleBar(const DialogLayout& layout)
{
    return {layout.x + 8, layout.y + 8, layout.frame.right - 8, layout.y + 24};
}

tagRECT DialogRowRect(const DialogLayout& layout, int row)
{
    int top = RowTop(layout, row);
    return {layout.x, top, layout.frame.right, top + kDialogRowHeight};
}

tagRECT DialogValueArea(const DialogLayout& layout, int row)
{
    int top = RowTop(layout, row);
    return {layout.labelEnd + 16, top, layout.frame.right - 8, top + kDialogRowHeight};
}

tagRECT DialogCheckBox(const DialogLayout& layout, int row)
{
    int left = layout.labelEnd + 16;
    int top = RowTop(layout, row) + 2;
    return {left, top, left + 12, top + 12};
}

tagRECT DialogRadioButton(const DialogLayout& layout, int row)
{
    int left = layout.labelEnd + 16;
    int top = RowTop(layout, row);
    return {left, top + 2, left + kDialogRowHeight - 3, top + kDialogRowHeight};
}

tagRECT DialogSliderBar(const DialogLayout& layout, int row)
{
    int top = RowTop(layout, row);
    return {layout.labelEnd + 16, top + 5, layout.frame.right - 19, top + 13};
}

tagRECT DialogGroupFrame(const DialogLayout& layout, int first, int last)
{
    return {layout.labelEnd + 8, RowTop(layout, first) - 2, layout.frame.right - 4,
            RowTop(layout, last) + kDialogRowHeight + 2};
}

tagRECT DialogOkButton(const DialogLayout& layout)
{
    int top = RowTop(layout, layout.count);
    return {layout.frame.right - 68, top, layout.frame.right - 8, top + kDialogRowHeight};
}

tagRECT DialogCancelButton(const DialogLayout& layout)
{
    int top = RowTop(layout, layout.count + 1);
    return {layout.frame.right - 68, top, layout.frame.right - 8, top + kDialogRowHeight};
}

tagRECT DialogApplyButton(const DialogLayout& layout)
{
    int top = RowTop(layout, layout.count + 1);
    return {layout.x + 8, top, layout.x + 8 + kDialogButtonWidth, top + kDialogRowHeight};
}

DialogHit HitTestDialog(const DialogLayout& layout, int clickX, int clickY)
{
    DialogHit hit;
    const tagRECT& frame = layout.frame;
    if (clickX < frame.left || clickX > frame.right || clickY < frame.top ||
        clickY > frame.bottom) {
        hit.kind = DialogHitKind::kOutside;
        return hit;
    }
    // Within the dialog every difference below is small; the clamp on the position saw to it.
    int below = clickY - layout.y - kDialogFirstRow;
    if (below < 0)
        return hit;  // the title: nothing to do
    int row = below / kDialogRowPitch;
    bool applyZone = layout.apply && clickX < layout.x + kDialogApplyEnd;
    if (row == layout.count) {
        hit.kind = applyZone ? DialogHitKind::kApply : DialogHitKind::kOk;
        return hit;
    }
    if (row > layout.count) {
        hit.kind = applyZone ? DialogHitKind::kApply : DialogHitKind::kCancel;
        return hit;
    }
    if (clickX < layout.labelEnd + 12)
        return hit;  // on the label
    hit.kind = DialogHitKind::kItem;
    hit.row = row;
    return hit;
}

int DialogSliderValueAt(const DialogLayout& layout, int row, int clickX)
{
    tagRECT bar = DialogSliderBar(layout, row);
    double span = double(bar.right) - double(bar.left) - 1.0;
    double along = double(clickX) - double(bar.left);
    if (span <= 0.0)
        return along > 0.0 ? 100 : 0;
    // Hundredths first, then the division: 29 columns of 100 give 29, not 28.999...
    double hundredths = std::clamp(along * 100.0 / span, 0.0, 100.0);
    return static_cast<int>(hundredths);
}
