// The row language of the described dialogs.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "dialog_test_rows.h"
#include "platform/dialog/dialog_rows.h"

namespace {

DialogRow Read(const std::vector<char>& rows, int index)
{
    DialogRow row;
    ReadDialogRow(rows.data(), index, &row);
    return row;
}

TEST(ReadDialogRow, PlainRowIsAFieldLabelledWithItsText)
{
    DialogRow row = Read(Rows({"Width"}), 0);
    EXPECT_EQ(row.kind, DialogItem::kField);
    EXPECT_STREQ(row.label, "Width");
    EXPECT_STREQ(row.text, "Width");
    EXPECT_FALSE(row.groupStart);
}

TEST(ReadDialogRow, EachMarkGivesItsKindAndTheLabelAfterIt)
{
    std::vector<char> rows = Rows({"@CLoop", "@RFast", "@SSpeed", "@LColour", "@FFolder"});
    const DialogItem kinds[] = {DialogItem::kCheck, DialogItem::kRadio, DialogItem::kSlider,
                                DialogItem::kColour, DialogItem::kFolder};
    const char* labels[] = {"Loop", "Fast", "Speed", "Colour", "Folder"};
    for (int i = 0; i < 5; ++i) {
        DialogRow row = Read(rows, i);
        EXPECT_EQ(row.kind, kinds[i]) << i;
        EXPECT_STREQ(row.label, labels[i]) << i;
    }
}

TEST(ReadDialogRow, RadioWithBarOpensAGroupUnderItsTitle)
{
    DialogRow row = Read(Rows({"@RFields|Upper first"}), 0);
    EXPECT_EQ(row.kind, DialogItem::kRadio);
    EXPECT_TRUE(row.groupStart);
    EXPECT_STREQ(row.groupTitle, "Fields");
    EXPECT_STREQ(row.label, "Upper first");
}

TEST(ReadDialogRow, BarInAnotherKindOfRowIsPartOfTheLabel)
{
    DialogRow row = Read(Rows({"@CA|B"}), 0);
    EXPECT_EQ(row.kind, DialogItem::kCheck);
    EXPECT_FALSE(row.groupStart);
    EXPECT_STREQ(row.label, "A|B");
}

TEST(ReadDialogRow, UnknownMarkAndEmptyRowAreFields)
{
    std::vector<char> rows = Rows({"@XOdd", "", "@"});
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Read(rows, i).kind, DialogItem::kField) << i;
    EXPECT_STREQ(Read(rows, 0).label, "@XOdd");
    EXPECT_STREQ(Read(rows, 1).label, "");
}

TEST(ReadDialogRow, MarkCountsOnlyAtTheRowsStart)
{
    DialogRow row = Read(Rows({"Size @C"}), 0);
    EXPECT_EQ(row.kind, DialogItem::kField);
    EXPECT_STREQ(row.label, "Size @C");
}

TEST(ReadDialogRow, RowWithoutTerminatorIsReadAsSixtyThreeCharacters)
{
    std::vector<char> rows(2 * kDialogRowSize, 'a');
    rows[1 * kDialogRowSize] = 0;
    rows[0] = '@';
    rows[1] = 'C';
    DialogRow row = Read(rows, 0);
    EXPECT_EQ(std::strlen(row.text), size_t(kDialogRowText));
    EXPECT_EQ(std::strlen(row.label), size_t(kDialogRowText - 2));
    EXPECT_EQ(row.kind, DialogItem::kCheck);
}

TEST(DialogValue, GetCutsAtSixtyThreeCharacters)
{
    std::vector<char> values(kDialogRowSize, 'x');
    char out[kDialogRowSize];
    GetDialogValue(values.data(), 0, out);
    EXPECT_EQ(std::strlen(out), size_t(kDialogRowText));
}

TEST(DialogValue, SetStopsAtSixtyThreeCharactersAndClearsTheRest)
{
    std::vector<char> values(3 * kDialogRowSize, '#');
    std::string longText(100, 'v');
    SetDialogValue(values.data(), 1, longText.c_str());
    EXPECT_EQ(std::string(&values[kDialogRowSize], kDialogRowText), std::string(63, 'v'));
    EXPECT_EQ(values[2 * kDialogRowSize - 1], 0);
    // The neighbours are untouched.
    EXPECT_EQ(values[kDialogRowSize - 1], '#');
    EXPECT_EQ(values[2 * kDialogRowSize], '#');

    SetDialogValue(values.data(), 1, "ab");
    EXPECT_STREQ(&values[kDialogRowSize], "ab");
    for (int i = 2; i < kDialogRowSize; ++i)
        EXPECT_EQ(values[kDialogRowSize + i], 0) << i;
    SetDialogValue(values.data(), 1, nullptr);
    EXPECT_STREQ(&values[kDialogRowSize], "");
}

TEST(DialogValue, OnlyAnEmptyValueIsOff)
{
    std::vector<char> values = Rows({"", "0", "1", " "});
    EXPECT_FALSE(IsDialogValueOn(values.data(), 0));
    EXPECT_TRUE(IsDialogValueOn(values.data(), 1));
    EXPECT_TRUE(IsDialogValueOn(values.data(), 2));
    EXPECT_TRUE(IsDialogValueOn(values.data(), 3));
}

TEST(DialogValue, NumbersReadWithSignAndBlanks)
{
    std::vector<char> values = Rows({"42", " -12", "abc", "16711680", "99999999999999999999999"});
    EXPECT_EQ(GetDialogNumber(values.data(), 0), 42);
    EXPECT_EQ(GetDialogNumber(values.data(), 1), -12);
    EXPECT_EQ(GetDialogNumber(values.data(), 2), 0);
    EXPECT_EQ(GetDialogNumber(values.data(), 3), 0xFF0000);
    EXPECT_EQ(GetDialogNumber(values.data(), 4), std::numeric_limits<long>::max());
}

TEST(FindRadioGroups, GroupsRunFromTheirBarRowOverThePlainRadioRowsAfter)
{
    std::vector<char> rows =
        Rows({"Name", "@RSize|Small", "@RLarge", "@RSpeed|Slow", "@RFast", "@CLoop", "@RLone"});
    int groups[7];
    FindRadioGroups(rows.data(), 7, groups);
    const int expected[7] = {-1, 1, 1, 3, 3, -1, -1};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(groups[i], expected[i]) << i;
}

}  // namespace
