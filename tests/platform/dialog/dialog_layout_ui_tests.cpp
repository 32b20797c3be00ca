// Where a described dialog puts its parts, and what a click there means.

#include "platform/dialog/dialog_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "dialog_test_rows.h"
#include "platform/dialog/dialog_rows.h"
#include "platform/draw/font.h"

namespace {

void ExpectRect(const tagRECT& got, int left, int top, int right, int bottom)
{
    EXPECT_EQ(got.left, left);
    EXPECT_EQ(got.top, top);
    EXPECT_EQ(got.right, right);
    EXPECT_EQ(got.bottom, bottom);
}

class DialogLayoutTest : public testing::Test {
protected:
    void SetUp() override
    {
        rows = Rows({"Width", "@CLoop the show", "@SLevel"});
        SelectDialogFont();
        w = 0;
        for (const char* text : {"Width", "@CLoop the show", "@SLevel"})
            w = std::max(w, static_cast<int>(GetTextWidth(text)));
        layout = MakeDialogLayout(30, 40, 3, rows.data(), false);
    }

    std::vector<char> rows;
    int w = 0;
    DialogLayout layout;
};

TEST_F(DialogLayoutTest, WidthIsTheWidestRowAsWrittenInTheDialogFont)
{
    ASSERT_GT(w, 20);  // the font measures
    EXPECT_EQ(layout.w, w);
    EXPECT_EQ(layout.labelEnd, 30 + w);
}

TEST_F(DialogLayoutTest, DialogIsTwiceTheWidthAndTwentyPixelsARowPlusSeventyEight)
{
    ExpectRect(layout.frame, 30, 40, 30 + 2 * w + 16, 40 + 3 * 20 + 78);
}

TEST_F(DialogLayoutTest, TitleBarAndRowsLieWhereTheyAreDrawn)
{
    int right = 30 + 2 * w + 16;
    ExpectRect(DialogTitleBar(layout), 38, 48, right - 8, 64);
    ExpectRect(DialogRowRect(layout, 0), 30, 76, right, 92);
    ExpectRect(DialogRowRect(layout, 2), 30, 116, right, 132);
    ExpectRect(DialogValueArea(layout, 1), 30 + w + 16, 96, right - 8, 112);
    ExpectRect(DialogCheckBox(layout, 1), 30 + w + 16, 98, 30 + w + 28, 110);
    ExpectRect(DialogRadioButton(layout, 1), 30 + w + 16, 98, 30 + w + 29, 112);
    ExpectRect(DialogSliderBar(layout, 2), 30 + w + 16, 121, right - 19, 129);
    ExpectRect(DialogGroupFrame(layout, 0, 1), 30 + w + 8, 74, right - 4, 114);
}

TEST_F(DialogLayoutTest, ButtonsSitInTheTwoRowsAfterTheItems)
{
    int right = 30 + 2 * w + 16;
    ExpectRect(DialogOkButton(layout), right - 68, 136, right - 8, 152);
    ExpectRect(DialogCancelButton(layout), right - 68, 156, right - 8, 172);
    ExpectRect(DialogApplyButton(layout), 38, 156, 98, 172);
}

TEST_F(DialogLayoutTest, NegativeOrHugeCountsLayOutNoRows)
{
    EXPECT_EQ(MakeDialogLayout(0, 0, -3, rows.data(), true).count, 0);
    EXPECT_EQ(MakeDialogLayout(0, 0, kMaxDialogRows + 1, rows.data(), true).count, 0);
    EXPECT_EQ(MakeDialogLayout(0, 0, 3, nullptr, true).count, 0);
    DialogLayout empty = MakeDialogLayout(5, 6, 0, rows.data(), false);
    ExpectRect(empty.frame, 5, 6, 21, 84);
}

TEST_F(DialogLayoutTest, FarPositionsArePulledBackSoTheSumsNeverOverflow)
{
    DialogLayout far = MakeDialogLayout(INT32_MAX, INT32_MIN, 3, rows.data(), false);
    EXPECT_EQ(far.x, kDialogPositionLimit);
    EXPECT_EQ(far.y, -kDialogPositionLimit);
    EXPECT_GT(far.frame.right, far.frame.left);
    EXPECT_GT(far.frame.bottom, far.frame.top);
}

TEST_F(DialogLayoutTest, ClicksOutsideTheFrameCancelAndItsEdgesBelongToIt)
{
    const tagRECT& f = layout.frame;
    EXPECT_EQ(HitTestDialog(layout, f.left - 1, f.top + 50).kind, DialogHitKind::kOutside);
    EXPECT_EQ(HitTestDialog(layout, f.right + 1, f.top + 50).kind, DialogHitKind::kOutside);
    EXPECT_EQ(HitTestDialog(layout, f.left + 50, f.top - 1).kind, DialogHitKind::kOutside);
    EXPECT_EQ(HitTestDialog(layout, f.left + 50, f.bottom + 1).kind, DialogHitKind::kOutside);
    EXPECT_NE(HitTestDialog(layout, f.left, f.top).kind, DialogHitKind::kOutside);
    EXPECT_NE(HitTestDialog(layout, f.right, f.bottom).kind, DialogHitKind::kOutside);
}

TEST_F(DialogLayoutTest, TitleAndLabelsAreNothing)
{
    EXPECT_EQ(HitTestDialog(layout, layout.labelEnd, 40 + 35).kind, DialogHitKind::kNothing);
    DialogHit label = HitTestDialog(layout, layout.labelEnd + 11, 40 + 36);
    EXPECT_EQ(label.kind, DialogHitKind::kNothing);
    DialogHit item = HitTestDialog(layout, layout.labelEnd + 12, 40 + 36);
    EXPECT_EQ(item.kind, DialogHitKind::kItem);
    EXPECT_EQ(item.row, 0);
}

TEST_F(DialogLayoutTest, RowsAreTwentyPixelsFromTheFirstRowsTop)
{
    int x = layout.labelEnd + 20;
    EXPECT_EQ(HitTestDialog(layout, x, 40 + 36 + 19).row, 0);
    EXPECT_EQ(HitTestDialog(layout, x, 40 + 36 + 20).row, 1);
    EXPECT_EQ(HitTestDialog(layout, x, 40 + 36 + 59).row, 2);
    EXPECT_EQ(HitTestDialog(layout, x, 40 + 36 + 60).kind, DialogHitKind::kOk);
}

TEST_F(DialogLayoutTest, ButtonRowsWithoutApply)
{
    int okRow = 40 + 36 + 60 + 5;
    int cancelRow = okRow + 20;
    EXPECT_EQ(HitTestDialog(layout, 31, okRow).kind, DialogHitKind::kOk);
    EXPECT_EQ(HitTestDialog(layout, layout.frame.right, okRow).kind, DialogHitKind::kOk);
    EXPECT_EQ(HitTestDialog(layout, 31, cancelRow).kind, DialogHitKind::kCancel);
    EXPECT_EQ(HitTestDialog(layout, layout.frame.right, cancelRow).kind, DialogHitKind::kCancel);
    // The strip below the "Cancel" row cancels too.
    EXPECT_EQ(HitTestDialog(layout, 100, layout.frame.bottom).kind, DialogHitKind::kCancel);
}

TEST_F(DialogLayoutTest, ButtonRowsWithApplyTurnOnXPlusEighty)
{
    DialogLayout withApply = MakeDialogLayout(30, 40, 3, rows.data(), true);
    int okRow = 40 + 36 + 60 + 5;
    int cancelRow = okRow + 20;
    EXPECT_EQ(HitTestDialog(withApply, 30 + 79, okRow).kind, DialogHitKind::kApply);
    EXPECT_EQ(HitTestDialog(withApply, 30 + 80, okRow).kind, DialogHitKind::kOk);
    EXPECT_EQ(HitTestDialog(withApply, 30 + 79, cancelRow).kind, DialogHitKind::kApply);
    EXPECT_EQ(HitTestDialog(withApply, 30 + 80, cancelRow).kind, DialogHitKind::kCancel);
}

TEST_F(DialogLayoutTest, SliderRunsFromZeroAtTheBarsStartToHundredAtItsLastColumn)
{
    tagRECT bar = DialogSliderBar(layout, 2);
    EXPECT_EQ(DialogSliderValueAt(layout, 2, bar.left), 0);
    EXPECT_EQ(DialogSliderValueAt(layout, 2, bar.right - 1), 100);
    EXPECT_EQ(DialogSliderValueAt(layout, 2, bar.left - 3), 0);
    EXPECT_EQ(DialogSliderValueAt(layout, 2, bar.right + 3), 100);
    int span = bar.right - bar.left - 1;
    int middle = bar.left + span / 2;
    EXPECT_EQ(DialogSliderValueAt(layout, 2, middle), (span / 2) * 100 / span);
}

TEST(DialogSliderValueAt, BarWithoutWidthAnswersZeroOrHundred)
{
    // No rows to measure: the bar runs from x + 16 to x - 3, backwards.
    DialogLayout empty = MakeDialogLayout(0, 0, 0, nullptr, false);
    tagRECT bar = DialogSliderBar(empty, 0);
    ASSERT_LE(bar.right - bar.left - 1, 0);
    EXPECT_EQ(DialogSliderValueAt(empty, 0, bar.left), 0);
    EXPECT_EQ(DialogSliderValueAt(empty, 0, bar.left - 1), 0);
    EXPECT_EQ(DialogSliderValueAt(empty, 0, bar.left + 1), 100);
}

}  // namespace
