// The key dialog's rows from a key and back: numbers, the ease buttons, speed and no curves.

#include "ui/timeline/key_dialog.h"

#include <gtest/gtest.h>
#include <cmath>
#include <limits>
#include <string>

namespace {

std::string Value(const KeyDialogLists& lists, int row)
{
    char text[kDialogRowSize];
    GetDialogValue(lists.values, row, text);
    return text;
}

std::string Description(const KeyDialogLists& lists, int row)
{
    return std::string(lists.descriptions + row * kDialogRowSize);
}

KeyStruct Key(float ease)
{
    KeyStruct key{};
    key.XPos = 320.7f;
    key.YPos = -12.9f;
    key.Width = 250.2f;
    key.Rotation = 15.5f;
    key.Ease = ease;
    return key;
}

TEST(MakeKeyDialog, RowsInOrder)
{
    KeyDialogLists lists = MakeKeyDialog(Key(0));
    EXPECT_EQ(Description(lists, kKeyRowX), "Horizontal Position");
    EXPECT_EQ(Description(lists, kKeyRowY), "Vertical Position");
    EXPECT_EQ(Description(lists, kKeyRowWidth), "Width");
    EXPECT_EQ(Description(lists, kKeyRowRotation), "Rotation");
    EXPECT_EQ(Description(lists, kKeyRowDefault), "@REases|Use Default");
    EXPECT_EQ(Description(lists, kKeyRowInOut), "@RIn & Out");
    EXPECT_EQ(Description(lists, kKeyRowIn), "@RIn");
    EXPECT_EQ(Description(lists, kKeyRowOut), "@ROut");
    EXPECT_EQ(Description(lists, kKeyRowNone), "@RNone");
    EXPECT_EQ(Description(lists, kKeyRowSpeed), "@SEase Speed");
    EXPECT_EQ(Description(lists, kKeyRowNoCurves), "@CNo Curves");
}

TEST(MakeKeyDialog, NumbersAreTruncated)
{
    KeyDialogLists lists = MakeKeyDialog(Key(0));
    EXPECT_EQ(Value(lists, kKeyRowX), "320");
    EXPECT_EQ(Value(lists, kKeyRowY), "-12");
    EXPECT_EQ(Value(lists, kKeyRowWidth), "250");
    EXPECT_EQ(Value(lists, kKeyRowRotation), "15");
}

TEST(MakeKeyDialog, EaseSelectsItsButtonSpeedAndCurves)
{
    KeyDialogLists lists = MakeKeyDialog(Key(2051));  // In, speed 50, no curves
    EXPECT_EQ(Value(lists, kKeyRowIn), "1");
    EXPECT_EQ(Value(lists, kKeyRowDefault), "");
    EXPECT_EQ(Value(lists, kKeyRowInOut), "");
    EXPECT_EQ(Value(lists, kKeyRowSpeed), "50");
    EXPECT_EQ(Value(lists, kKeyRowNoCurves), "1");
    lists = MakeKeyDialog(Key(0));
    EXPECT_EQ(Value(lists, kKeyRowDefault), "1");
    EXPECT_EQ(Value(lists, kKeyRowSpeed), "0");
    EXPECT_EQ(Value(lists, kKeyRowNoCurves), "");
    // Rounded to the nearest thousand, at most None.
    EXPECT_EQ(Value(MakeKeyDialog(Key(3600)), kKeyRowNone), "1");
    EXPECT_EQ(Value(MakeKeyDialog(Key(9000)), kKeyRowNone), "1");
    EXPECT_EQ(Value(MakeKeyDialog(Key(1499)), kKeyRowInOut), "1");
}

TEST(MakeKeyDialog, DamagedValuesReadAsSafeNumbers)
{
    KeyStruct key = Key(std::numeric_limits<float>::quiet_NaN());
    key.XPos = std::numeric_limits<float>::infinity();
    KeyDialogLists lists = MakeKeyDialog(key);
    EXPECT_EQ(Value(lists, kKeyRowX), "2147483647");
    EXPECT_EQ(Value(lists, kKeyRowDefault), "1");
    EXPECT_EQ(Value(MakeKeyDialog(Key(-5000)), kKeyRowDefault), "1");
}

TEST(ReadKeyDialog, StoresTheTypedNumbersAndEncodesTheEase)
{
    KeyDialogLists lists = MakeKeyDialog(Key(0));
    SetDialogValue(lists.values, kKeyRowX, "100");
    SetDialogValue(lists.values, kKeyRowRotation, "-30");
    SetDialogValue(lists.values, kKeyRowDefault, "");
    SetDialogValue(lists.values, kKeyRowOut, "1");
    SetDialogValue(lists.values, kKeyRowSpeed, "73");  // the lowest bit is cleared
    KeyStruct key = Key(0);
    ReadKeyDialog(lists, key);
    EXPECT_EQ(key.XPos, 100.0f);
    EXPECT_EQ(key.YPos, -12.0f);
    EXPECT_EQ(key.Rotation, -30.0f);
    EXPECT_EQ(key.Ease, 3072.0f);
    SetDialogValue(lists.values, kKeyRowNoCurves, "1");
    ReadKeyDialog(lists, key);
    EXPECT_EQ(key.Ease, 3073.0f);
}

TEST(ReadKeyDialog, UnchangedDialogKeepsTheEase)
{
    for (float ease : {0.0f, 1000.0f, 2050.0f, 3001.0f, 4098.0f, 36.0f}) {
        KeyStruct key = Key(ease);
        ReadKeyDialog(MakeKeyDialog(key), key);
        EXPECT_EQ(key.Ease, ease);
    }
}

}  // namespace
