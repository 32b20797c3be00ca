// "Advanced Options": its rows, what OK stores, the folder written only when one was picked, the
// viewer-shape dialog behind "Special Aspect Ratio", and Cancel.

#include "ui/dialogs/advanced_options.h"

#include <gtest/gtest.h>
#include <string>

#include "platform/task/worker.h"
#include "support/editor_fixture.h"
#include "ui/dialogs/viewer_aspect.h"
#include "ui/viewer/cview.h"

namespace {

using pxtest::kDemoShow;

using pxtest::RowText;

TEST(AdvancedOptionsRows, DescribeTheDialogInOrder)
{
    AdvancedOptionsLists lists = MakeAdvancedOptionsDialog(AdvancedValues{});
    const char* expected[kAdvancedOptionsRows] = {
        "@CFlop Field Order",     "@CFlop Top Field",           "@CMulti-Proc Offset",
        "@CSpecial Aspect Ratio", "@FAlternative Image Folder", "@CShow Pic Errors",
        "@CViewer on 2nd Screen",
    };
    for (int row = 0; row < kAdvancedOptionsRows; ++row)
        EXPECT_EQ(RowText(lists.descriptions, row), expected[row]);
}

TEST(AdvancedOptionsRows, ShowTheValuesWithSpecialAspectUnchecked)
{
    AdvancedValues values;
    values.fieldSwap = true;
    values.flopTopField = false;
    values.multiProcOffset = 0;
    values.showPicError = true;
    values.dualScreen = true;
    std::string longFolder = "/" + std::string(100, 'f') + "/";
    std::snprintf(values.folder, sizeof values.folder, "%s", longFolder.c_str());
    AdvancedOptionsLists lists = MakeAdvancedOptionsDialog(values);
    EXPECT_EQ(RowText(lists.values, kAdvancedRowFieldSwap), "1");
    EXPECT_EQ(RowText(lists.values, kAdvancedRowTopField), "");
    // An offset of 0 is an empty row: "0" would show the box checked.
    EXPECT_EQ(RowText(lists.values, kAdvancedRowMultiProc), "");
    EXPECT_EQ(RowText(lists.values, kAdvancedRowSpecialAspect), "");
    EXPECT_EQ(RowText(lists.values, kAdvancedRowFolder), longFolder.substr(0, 63));
    EXPECT_EQ(RowText(lists.values, kAdvancedRowPicErrors), "1");
    EXPECT_EQ(RowText(lists.values, kAdvancedRowSecondScreen), "1");
}

TEST(AdvancedOptionsRows, FolderCountsAsPickedOnlyWhenItChanged)
{
    AdvancedValues values;
    std::string longFolder = "/" + std::string(100, 'f') + "/";
    std::snprintf(values.folder, sizeof values.folder, "%s", longFolder.c_str());
    AdvancedOptionsLists lists = MakeAdvancedOptionsDialog(values);
    AdvancedChoice same = ReadAdvancedOptionsDialog(lists, values);
    EXPECT_FALSE(same.folderPicked);
    EXPECT_EQ(std::string(same.values.folder), longFolder) << "the whole folder is kept";
    SetDialogValue(lists.values, kAdvancedRowFolder, "/pictures/");
    AdvancedChoice picked = ReadAdvancedOptionsDialog(lists, values);
    EXPECT_TRUE(picked.folderPicked);
    EXPECT_EQ(std::string(picked.values.folder), "/pictures/");
}

TEST(AdvancedOptionsRows, MultiProcessorOffsetCheck)
{
    AdvancedValues values;
    values.multiProcOffset = 3;
    AdvancedOptionsLists lists = MakeAdvancedOptionsDialog(values);
    EXPECT_EQ(ReadAdvancedOptionsDialog(lists, values).values.multiProcOffset, 3);
    SetDialogValue(lists.values, kAdvancedRowMultiProc, "");
    EXPECT_EQ(ReadAdvancedOptionsDialog(lists, values).values.multiProcOffset, 0);
    values.multiProcOffset = 0;
    SetDialogValue(lists.values, kAdvancedRowMultiProc, "1");
    EXPECT_EQ(ReadAdvancedOptionsDialog(lists, values).values.multiProcOffset, 1);
}

class AdvancedOptions : public pxtest::Editor {
protected:
    void StartDemo(const std::string& settings = "")
    {
        Start(settings);
        ASSERT_TRUE(OpenShow(kDemoShow));
        gMultiProcOffset = 0;
    }
    static void ClickAdvancedRow(int row)
    {
        ClickRow(kAdvancedOptionsRows, MakeAdvancedOptionsDialog(AdvancedValues{}).descriptions,
                 row);
    }
};

TEST_F(AdvancedOptions, OkStoresTheFlagsAndGoesToFrameZero)
{
    StartDemo();
    gCurFrame = 30;
    ClickAdvancedRow(kAdvancedRowFieldSwap);
    ClickAdvancedRow(kAdvancedRowTopField);
    ClickAdvancedRow(kAdvancedRowMultiProc);
    ClickAdvancedRow(kAdvancedRowPicErrors);
    ClickAdvancedRow(kAdvancedRowSecondScreen);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { PostAMessage(pMain, kMsgCommand, kAdvancedOptionsCommand, 0); });
    EXPECT_TRUE(pDoc->fieldSwap);
    EXPECT_TRUE(pDoc->flopTopField);
    EXPECT_EQ(gMultiProcOffset, 1);
    EXPECT_TRUE(pDoc->showPicError) << "ShowPicError=0 at start; the click turned it on";
    EXPECT_TRUE(pViewer->dualScreen);
    EXPECT_EQ(Setting("FieldSwap"), "1");
    EXPECT_EQ(Setting("FlopTopField"), "1");
    EXPECT_EQ(Setting("MultiProcOffset"), "1");
    EXPECT_EQ(Setting("ShowPicError"), "1");
    EXPECT_EQ(Setting("DualScreenViewer"), "1");
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_TRUE(pViewer->IsVisible());
    gMultiProcOffset = 0;
}

TEST_F(AdvancedOptions, AltImageFolderIsWrittenOnlyWhenAFolderWasPicked)
{
    StartDemo();
    char kept[kTextSetting];
    std::snprintf(kept, sizeof kept, "%s", pDoc->altImageFolder);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SpecialOptions(); });
    EXPECT_EQ(Setting("AltImageFolder"), "?");
    EXPECT_STREQ(pDoc->altImageFolder, kept);

    std::string picked = dir.File("pictures/one.bmp");
    PushFileDialogAnswer(picked.c_str());
    ClickAdvancedRow(kAdvancedRowFolder);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SpecialOptions(); });
    EXPECT_EQ(Setting("AltImageFolder"), dir.File("pictures/"));
    EXPECT_EQ(std::string(pDoc->altImageFolder), dir.File("pictures/"));
}

TEST_F(AdvancedOptions, SpecialAspectRatioOpensTheViewerShapeDialog)
{
    StartDemo();
    ClickAdvancedRow(kAdvancedRowSpecialAspect);
    PostReturn(EditorDialogOwner());
    // The viewer-shape dialog that follows reads the next input.
    ClickRow(kViewerAspectRows, MakeViewerAspectDialog(0.75f, 0.0f).descriptions, kAspectRowSquare);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SpecialOptions(); });
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, 1.0f);
    EXPECT_EQ(Setting("AspectMode"), "10000");
}

TEST_F(AdvancedOptions, DialogIsDrawnOverTheStage)
{
    StartDemo();
    EXPECT_TRUE(ShownOverTheStage([] { pMain->SpecialOptions(); }));
}

TEST_F(AdvancedOptions, CancelChangesNothing)
{
    StartDemo();
    ClickAdvancedRow(kAdvancedRowFieldSwap);
    ClickAdvancedRow(kAdvancedRowSpecialAspect);
    PostEscape(EditorDialogOwner());
    RunAnswered([] { pMain->SpecialOptions(); });
    EXPECT_FALSE(pDoc->fieldSwap);
    EXPECT_EQ(Setting("FieldSwap"), "?");
    EXPECT_EQ(pDoc->aspectMode, 7500);
    EXPECT_TRUE(pViewer->IsVisible());
}

}  // namespace
