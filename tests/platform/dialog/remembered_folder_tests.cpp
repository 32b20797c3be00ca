// The folder the file dialogs start in, kept in the settings.

#include "platform/dialog/remembered_folder.h"

#include <gtest/gtest.h>
#include <string>

#include "platform/file/paths.h"
#include "platform/ini/settings.h"

namespace {

std::string Setting(const char* key)
{
    char value[300] = {};
    GetIniString(key, "?", value, sizeof value - 1);
    return value;
}

class RememberedFolderTest : public testing::Test {
protected:
    void SetUp() override { LoadIniText("", 0); }
};

TEST_F(RememberedFolderTest, NothingRememberedAnswersFalse)
{
    FSpec folder{1, 2, "kept"};
    EXPECT_FALSE(RememberedFolder(&folder));
    EXPECT_STREQ(folder.name, "kept");
}

TEST_F(RememberedFolderTest, AChosenFileLeavesItsFolderAndNumbers)
{
    FSpec show = PathFSpec("/shows/summer/beach.plx");
    RememberFolderOf(show);
    EXPECT_EQ(Setting("InitialFolder"), "/shows/summer/");
    EXPECT_EQ(Setting("InitialVrefnum"), "9991");
    EXPECT_EQ(Setting("InitialParID"), "9991");
    FSpec folder{};
    ASSERT_TRUE(RememberedFolder(&folder));
    EXPECT_TRUE(IsPathForm(folder));
    EXPECT_STREQ(folder.name, "/shows/summer/");
}

TEST_F(RememberedFolderTest, WithoutAPathTheNumbersAreTheFolder)
{
    SetIniItem("InitialVrefnum", -1L);
    SetIniItem("InitialParID", 42L);
    FSpec folder{};
    ASSERT_TRUE(RememberedFolder(&folder));
    // The record is packed: its numbers are read by value.
    int volume = folder.vRefNum;
    int parent = folder.parID;
    EXPECT_EQ(volume, -1);
    EXPECT_EQ(parent, 42);
    EXPECT_STREQ(folder.name, "");
}

TEST_F(RememberedFolderTest, ARecordWithoutAPathRemembersNothing)
{
    FSpec empty{};
    RememberFolderOf(empty);
    EXPECT_EQ(Setting("InitialFolder"), "?");
    EXPECT_EQ(Setting("InitialVrefnum"), "?");
}

}  // namespace
