// LookForFile: what is offered for a file that cannot be opened.

#include "platform/dialog/look_for_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "platform/dialog/message_box.h"
#include "platform/file/file_dialog.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cpwnd.h"
#include "support/temp_dir.h"

namespace {

class LookForFileTest : public testing::Test {
protected:
    void SetUp() override
    {
        ClearMessageBoxScript();
        ClearFileDialogScript();
        LoadIniText("", 0);
        owner.Create(nullptr, 0);
        std::strcpy(missing.name, "/nowhere/lost.plx");
        missing.vRefNum = 9991;
        missing.parID = 9991;
    }
    void TearDown() override
    {
        ClearMessageBoxScript();
        ClearFileDialogScript();
    }

    CPWnd owner;
    FSpec missing{};
};

TEST_F(LookForFileTest, WithoutOwnerOnlyTellsTheFileCannotBeOpened)
{
    PushMessageBoxAnswer(kBoxYes);  // acknowledges the alert
    EXPECT_FALSE(LookForFile(nullptr, &missing));
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].kind, MessageBoxKind::kError);
    EXPECT_EQ(boxes[0].shownText, "Can't open file!");
    EXPECT_EQ(CountFileDialogRequests(), 0);
    EXPECT_STREQ(missing.name, "/nowhere/lost.plx");
}

TEST_F(LookForFileTest, AnsweringNoLeavesTheRecord)
{
    PushMessageBoxAnswer(kBoxNo);
    EXPECT_FALSE(LookForFile(&owner, &missing));
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].kind, MessageBoxKind::kYesNo);
    EXPECT_EQ(boxes[0].text, "Do you want to look for it?");
    EXPECT_EQ(boxes[0].title, "Can't Open File!");
    EXPECT_EQ(CountFileDialogRequests(), 0);
    EXPECT_STREQ(missing.name, "/nowhere/lost.plx");
}

TEST_F(LookForFileTest, FileChosenReplacesTheRecord)
{
    pxtest::TempDir dir;
    std::string found = dir.File("found.plx");
    FILE* file = std::fopen(found.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    char folder[300];
    std::snprintf(folder, sizeof folder, "%s", dir.Path().c_str());
    SetIniItem("InitialFolder", folder);

    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogAnswer(found.c_str());
    EXPECT_TRUE(LookForFile(&owner, &missing));
    EXPECT_EQ(std::string(missing.name), found);
    // Copies: the record is packed, and its fields may lie off their alignment.
    int16_t volume = missing.vRefNum;
    int32_t parent = missing.parID;
    EXPECT_EQ(volume, 9991);
    EXPECT_EQ(parent, 9991);
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_FALSE(request.save);
    EXPECT_EQ(request.folder, dir.Path());
}

TEST_F(LookForFileTest, CancelledFileDialogLeavesTheRecord)
{
    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogCancel();
    EXPECT_FALSE(LookForFile(&owner, &missing));
    EXPECT_STREQ(missing.name, "/nowhere/lost.plx");
}

TEST_F(LookForFileTest, NullRecordAsksNothing)
{
    EXPECT_FALSE(LookForFile(&owner, nullptr));
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
}

}  // namespace
