// The folder the file dialogs start in, kept in the settings.

#include "ui/commands/remembered_folder.h"

#include <gtest/gtest.h>
#include <cstring>
#include <string>

#include "platform/file/paths.h"
#include "platform/ini/settings.h"

namespace {

void EmptySettings()
{
    const char text[] = "[Parallaxotron]\r\n";
    LoadIniText(text, std::strlen(text));
}

TEST(RememberedFolder, NothingKeptGivesAnEmptyRecord)
{
    EmptySettings();
    FSpec folder = RememberedFolder();
    EXPECT_EQ(folder.name[0], 0);
}

TEST(RememberedFolder, TheFolderOfTheLastFileIsKept)
{
    EmptySettings();
    RememberFolderOf(PathFSpec("/shows/summer/trip.plx"));
    char kept[300] = {};
    GetIniString("InitialFolder", "", kept, 255);
    EXPECT_STREQ(kept, "/shows/summer/");
    EXPECT_EQ(GetIniItem("InitialVrefnum", 0), kPathFormMarker);
    EXPECT_EQ(GetIniItem("InitialParID", 0), GetFolderID("/shows/summer/"));
    FSpec folder = RememberedFolder();
    EXPECT_TRUE(IsPathForm(folder));
    EXPECT_STREQ(folder.name, "/shows/summer/");
}

}  // namespace
