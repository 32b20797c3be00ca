// The main window's menu table: order, commands, variants and check marks from the settings.

#include "ui/main/menu_table.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/base/env.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cpmenu.h"

namespace {

class MenuTable : public testing::Test {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        Settings("");
    }
    static void Settings(const std::string& lines)
    {
        std::string text = "[Parallaxotron]\r\n" + lines;
        LoadIniText(text.data(), text.size());
    }
    // The line of a command, or null.
    static const MenuLine* Find(const std::vector<MenuLine>& lines, int command)
    {
        for (const MenuLine& line : lines) {
            if (line.command == command)
                return &line;
        }
        return nullptr;
    }
    static bool Checked(const std::vector<MenuLine>& lines, int command)
    {
        const MenuLine* line = Find(lines, command);
        return line && (line->flags & kMenuItemChecked) != 0;
    }
    static std::vector<int> Commands(const std::vector<MenuLine>& lines)
    {
        std::vector<int> commands;
        for (const MenuLine& line : lines)
            commands.push_back(line.command);
        return commands;
    }
    static std::vector<std::string> Titles(const std::vector<MenuLine>& lines)
    {
        std::vector<std::string> titles;
        for (const MenuLine& line : lines) {
            if (line.command == kMenuTitle)
                titles.push_back(line.text);
        }
        return titles;
    }
};

TEST_F(MenuTable, FullProgramHasTheSixMenusInOrderWithEveryCommand)
{
    MenuVariant full;
    full.canMultiProcess = true;
    std::vector<MenuLine> lines = MainMenuLines(full);
    EXPECT_EQ(Titles(lines),
              (std::vector<std::string>{"File", "Edit", "Options", "Render", "View", "Help"}));
    const int s = kMenuSeparator;
    const int t = kMenuTitle;
    EXPECT_EQ(Commands(lines),
              (std::vector<int>{t,    1010, s,    2005, 2004, 2006, 2003, s,    1013, 1014, 1037,
                                s,    1015, 1016, 1017, s,    2001, t,    9004, 9005, s,    9001,
                                9000, 9002, 9003, s,    1023, 1024, 1022, 1025, t,    1000, 1002,
                                s,    1003, 1004, 1005, 1006, s,    1007, t,    1030, 1031, 1032,
                                s,    1033, 1035, 1034, s,    1036, t,    1041, 1040, s,    1042,
                                1043, s,    1044, 1045, t,    1026}));
    EXPECT_STREQ(Find(lines, 1010)->text, "Load Picture/E");
    EXPECT_STREQ(Find(lines, 2001)->text, "Exit/Q");
    EXPECT_STREQ(Find(lines, 1003)->text, "Slow-in & Slow Out");
    EXPECT_STREQ(Find(lines, 1044)->text, "Enlarge Timeline/>");
    EXPECT_STREQ(Find(lines, 1045)->text, "Contract Timeline/<");
}

TEST_F(MenuTable, EditItemsStartDisabledAndTheRestEnabled)
{
    std::vector<MenuLine> lines = MainMenuLines(MenuVariant{});
    for (int command : {9004, 9005, 9001, 9000, 9002, 9003})
        EXPECT_EQ(Find(lines, command)->flags, kMenuItemDisabled) << command;
    for (int command : {1010, 2005, 2004, 2006, 2003, 1013, 1023, 1036, 1042, 1026})
        EXPECT_EQ(Find(lines, command)->flags, 0) << command;
}

TEST_F(MenuTable, WithoutFrameRateSettingNtscIsChecked)
{
    std::vector<MenuLine> lines = MainMenuLines(MenuVariant{});
    EXPECT_TRUE(Checked(lines, 1015));
    EXPECT_FALSE(Checked(lines, 1016));
    EXPECT_FALSE(Checked(lines, 1017));
}

TEST_F(MenuTable, StoredRateOf3000ChecksNoneOfTheThree)
{
    Settings("FrameRate=3000\r\n");
    std::vector<MenuLine> lines = MainMenuLines(MenuVariant{});
    EXPECT_FALSE(Checked(lines, 1015));
    EXPECT_FALSE(Checked(lines, 1016));
    EXPECT_FALSE(Checked(lines, 1017));
    Settings("FrameRate=2500\r\n");
    EXPECT_TRUE(Checked(MainMenuLines(MenuVariant{}), 1016));
    Settings("FrameRate=2397\r\n");
    EXPECT_TRUE(Checked(MainMenuLines(MenuVariant{}), 1017));
}

TEST_F(MenuTable, EaseType19ChecksNoSlowsAndNoCurves)
{
    Settings("EaseType=19\r\n");
    std::vector<MenuLine> lines = MainMenuLines(MenuVariant{});
    EXPECT_TRUE(Checked(lines, 1006));
    EXPECT_TRUE(Checked(lines, 1007));
    EXPECT_FALSE(Checked(lines, 1003));
    EXPECT_FALSE(Checked(lines, 1004));
    EXPECT_FALSE(Checked(lines, 1005));
}

TEST_F(MenuTable, EaseType16ChecksSlowInAndOutAndNoCurves)
{
    Settings("EaseType=16\r\n");
    std::vector<MenuLine> lines = MainMenuLines(MenuVariant{});
    EXPECT_TRUE(Checked(lines, 1003));
    EXPECT_TRUE(Checked(lines, 1007));
    EXPECT_FALSE(Checked(lines, 1006));
}

TEST_F(MenuTable, NoCurvesLooksAtBit16Only)
{
    Settings("EaseType=33\r\n");  // kind 1, bit 32 set, bit 16 clear
    std::vector<MenuLine> lines = MainMenuLines(MenuVariant{});
    EXPECT_TRUE(Checked(lines, 1004));
    EXPECT_FALSE(Checked(lines, 1007));
}

TEST_F(MenuTable, AutoRescaleShowsCheckedWithoutSetting)
{
    EXPECT_TRUE(Checked(MainMenuLines(MenuVariant{}), 1002));
    Settings("RescaleShow=0\r\n");
    EXPECT_FALSE(Checked(MainMenuLines(MenuVariant{}), 1002));
}

TEST_F(MenuTable, OnOffItemsFollowTheirSettings)
{
    std::vector<MenuLine> off = MainMenuLines(MenuVariant{true, false, false, true, false});
    for (int command : {1000, 1033, 1035, 1034, 1041, 1040})
        EXPECT_FALSE(Checked(off, command)) << command;
    Settings(
        "ShowCameraPath=1\r\nDraftRender=1\r\nBlurFrames=3\r\nMultiProcess=1\r\n"
        "CenterPic=1\r\nShowTVSafe=1\r\n");
    std::vector<MenuLine> on = MainMenuLines(MenuVariant{true, false, false, true, false});
    for (int command : {1000, 1033, 1035, 1034, 1041, 1040})
        EXPECT_TRUE(Checked(on, command)) << command;
}

TEST_F(MenuTable, AspectItemsFollowAspectMode)
{
    EXPECT_TRUE(Checked(MainMenuLines(MenuVariant{}), 1030));
    Settings("AspectMode=5625\r\n");
    EXPECT_TRUE(Checked(MainMenuLines(MenuVariant{}), 1031));
    EXPECT_FALSE(Checked(MainMenuLines(MenuVariant{}), 1032));
    Settings("AspectMode=5626\r\n");
    EXPECT_TRUE(Checked(MainMenuLines(MenuVariant{}), 1032));
    EXPECT_FALSE(Checked(MainMenuLines(MenuVariant{}), 1031));
    EXPECT_FALSE(Checked(MainMenuLines(MenuVariant{}), 1030));
}

TEST_F(MenuTable, WithoutMultiprocessorNoMultipleProcessorsItemAndOtherCommandsUnchanged)
{
    MenuVariant two;
    two.canMultiProcess = true;
    MenuVariant one;
    one.canMultiProcess = false;
    std::vector<int> withItem = Commands(MainMenuLines(two));
    std::vector<int> without = Commands(MainMenuLines(one));
    EXPECT_EQ(Find(MainMenuLines(one), 1034), nullptr);
    ASSERT_NE(Find(MainMenuLines(two), 1034), nullptr);
    std::vector<int> expected;
    for (int command : withItem) {
        if (command != 1034)
            expected.push_back(command);
    }
    EXPECT_EQ(without, expected);
}

TEST_F(MenuTable, HostedFileMenuAppliesOrQuitsInsteadOfRendering)
{
    MenuVariant hosted;
    hosted.standalone = false;
    std::vector<MenuLine> lines = MainMenuLines(hosted);
    const int s = kMenuSeparator;
    std::vector<int> commands = Commands(lines);
    std::vector<int> fileMenu(commands.begin(), commands.begin() + 10);
    EXPECT_EQ(fileMenu,
              (std::vector<int>{kMenuTitle, 1010, s, 2005, 2004, 2006, 2003, s, 2001, 2002}));
    EXPECT_EQ(commands[10], kMenuTitle);
    EXPECT_STREQ(Find(lines, 2001)->text, "Apply Moves and Close/Q");
    EXPECT_STREQ(Find(lines, 2002)->text, "Quit - DON'T Apply changes");
    for (int command : {1013, 1014, 1037, 1015, 1016, 1017})
        EXPECT_EQ(Find(lines, command), nullptr) << command;
}

TEST_F(MenuTable, PicturesFromTheHostTimelineDropLoadPictureAndItsSeparator)
{
    MenuVariant variant;
    variant.getImageFromTimeline = true;
    std::vector<int> commands = Commands(MainMenuLines(variant));
    EXPECT_EQ(std::vector<int>(commands.begin(), commands.begin() + 5),
              (std::vector<int>{kMenuTitle, 2005, 2004, 2006, 2003}));
}

TEST_F(MenuTable, ReducedVariantDropsRatesRenderMenuAndTvSafe)
{
    MenuVariant reduced;
    reduced.slatewhirl = true;
    std::vector<MenuLine> lines = MainMenuLines(reduced);
    EXPECT_EQ(Titles(lines), (std::vector<std::string>{"File", "Edit", "Options", "View", "Help"}));
    std::vector<int> commands = Commands(lines);
    const int s = kMenuSeparator;
    EXPECT_EQ(std::vector<int>(commands.begin(), commands.begin() + 14),
              (std::vector<int>{kMenuTitle, 1010, 1011, s, 2005, 2004, 2006, 2003, s, 1013, 1014,
                                1037, s, 2001}));
    EXPECT_STREQ(Find(lines, 1011)->text, "Load Picture and Jump/~");
    EXPECT_STREQ(Find(lines, 1008)->text, "Set Viewer Aspect Ratio");
    for (int command : {1002, 1015, 1016, 1017, 1030, 1036, 1040})
        EXPECT_EQ(Find(lines, command), nullptr) << command;
}

TEST_F(MenuTable, HelpContentsOnlyWithAHelpFile)
{
    EXPECT_EQ(Find(MainMenuLines(MenuVariant{}), 1020), nullptr);
    MenuVariant withHelp;
    withHelp.hasHelpFile = true;
    EXPECT_NE(Find(MainMenuLines(withHelp), 1020), nullptr);
}

TEST_F(MenuTable, NoMenuHoldsMoreThanSixteenItems)
{
    for (bool standalone : {true, false}) {
        for (bool reduced : {true, false}) {
            MenuVariant variant{standalone, reduced, false, true, true};
            int items = 0;
            for (const MenuLine& line : MainMenuLines(variant)) {
                if (line.command == kMenuTitle)
                    items = 0;
                else
                    EXPECT_LE(++items, kMenuItemCount);
            }
        }
    }
}

}  // namespace
