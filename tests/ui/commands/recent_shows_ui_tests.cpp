// The recent shows: kept in the settings, newest first, listed under the File menu, opened with
// the save question, and dropped when they are gone.

#include "ui/commands/recent_shows.h"

#include "support/editor_fixture.h"

namespace {

class RecentShowList : public pxtest::Editor {
protected:
    std::string SavedDemoCopy(const std::string& name)
    {
        std::string path = dir.File(name);
        FSpec spec = PathFSpec(path.c_str());
        EXPECT_TRUE(pDoc->WriteShowFile(&spec));
        return path;
    }
    static std::vector<std::string> MenuTexts()
    {
        std::vector<std::string> texts;
        for (const MenuListEntry& entry : pMain->Menu.GetItemList(kCmdRecentShows))
            texts.push_back(entry.text);
        return texts;
    }
};

TEST_F(RecentShowList, NewestFirstWithoutRepeatsAndAtMostFour)
{
    Start();
    for (const char* path :
         {"/s/a.plx", "/s/b.plx", "/s/c.plx", "/s/a.plx", "/s/d.plx", "/s/e.plx"})
        NoteRecentShow(path);
    EXPECT_EQ(RecentShows(),
              (std::vector<std::string>{"/s/e.plx", "/s/d.plx", "/s/a.plx", "/s/c.plx"}));
    char stored[300] = {};
    GetIniString("RecentShow1", "", stored, 255);
    EXPECT_STREQ(stored, "/s/e.plx");
    EXPECT_EQ(MenuTexts(), (std::vector<std::string>{"e  (/s/e.plx)", "d  (/s/d.plx)",
                                                     "a  (/s/a.plx)", "c  (/s/c.plx)"}));
    ForgetRecentShow("/s/a.plx");
    EXPECT_EQ(RecentShows(), (std::vector<std::string>{"/s/e.plx", "/s/d.plx", "/s/c.plx"}));
    EXPECT_EQ(RecentShowOfCommand(kCmdFirstRecentShow + 2), "/s/c.plx");
    EXPECT_EQ(RecentShowOfCommand(kCmdFirstRecentShow + 3), "");
    EXPECT_EQ(RecentShowOfCommand(kCmdFirstRecentShow - 1), "");
}

TEST_F(RecentShowList, TheMenuShowsTheListKeptFromTheLastRun)
{
    Start("RecentShow1=/shows/trip.plx\r\nRecentShow2=/shows/walk.plx\r\n");
    EXPECT_EQ(MenuTexts(),
              (std::vector<std::string>{"trip  (/shows/trip.plx)", "walk  (/shows/walk.plx)"}));
    EXPECT_TRUE(Enabled(kCmdRecentShows));
}

TEST_F(RecentShowList, AnEmptyListLeavesTheItemOff)
{
    Start();
    EXPECT_TRUE(MenuTexts().empty());
    EXPECT_FALSE(Enabled(kCmdRecentShows));
}

TEST_F(RecentShowList, ChoosingAnEntryOpensItAfterTheSaveQuestion)
{
    StartWithDemo();
    std::string first = SavedDemoCopy("first.plx");
    std::string second = SavedDemoCopy("second.plx");
    NoteRecentShow(first.c_str());
    NoteRecentShow(second.c_str());
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxCancel);
    Command(kCmdFirstRecentShow + 1);
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - demo");

    PushMessageBoxAnswer(kBoxNo);
    QMenu* list = nullptr;
    int menu = 0;
    int item = 0;
    ASSERT_TRUE(Locate(kCmdRecentShows, &menu, &item));
    list = pMain->Menu.GetMenuBar()->actions().at(menu)->menu()->actions().at(item)->menu();
    ASSERT_NE(list, nullptr);
    list->actions().at(1)->trigger();  // "first"
    ProcessEvents();
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - first");
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_EQ(RecentShows().front(), first);
    TakeShownMessageBoxes();
}

TEST_F(RecentShowList, AShowThatIsGoneIsSaidAndDropped)
{
    StartWithDemo();
    std::string gone = dir.File("gone.plx");
    NoteRecentShow(gone.c_str());
    NoteRecentShow(pxtest::kDemoShow.c_str());
    PushMessageBoxAnswer(kBoxYes);
    Command(kCmdFirstRecentShow + 1);
    EXPECT_EQ(RecentShows(), (std::vector<std::string>{pxtest::kDemoShow}));
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0].find("no longer there"), std::string::npos);
    EXPECT_EQ(pDoc->picCount, 4);
}

TEST_F(RecentShowList, SavingAShowPutsItFirst)
{
    StartWithDemo();
    std::string path = dir.File("saved.plx");
    PushFileDialogAnswer(path.c_str());
    Command(2003);
    EXPECT_EQ(RecentShows().front(), path);
    EXPECT_EQ(MenuTexts().front(), "saved  (" + path + ")");
}

}  // namespace
