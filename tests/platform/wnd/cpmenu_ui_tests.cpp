// The menu bar: the command table, items and their states, the bar it replaces.

#include "platform/wnd/cpmenu.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <string>

#include "wnd_test_support.h"

namespace {

struct MenuDesk {
    RecordingWindow main;
    CPMenu menu;
    MenuDesk()
    {
        main.Create(nullptr, kStyleBehind);
        main.SetWinRect(10, 10, 510, 410, true);
        menu.Create(&main);
    }
    QList<QAction*> Items(int m) { return menu.GetMenuBar()->actions().at(m)->menu()->actions(); }
};

TEST(MenuTable, StartsEmptyWith9999)
{
    MenuDesk desk;
    for (int m = 0; m < kMenuCount; ++m)
        for (int i = 0; i < kMenuItemCount; ++i)
            ASSERT_EQ(desk.menu.GetID(m, i), kEmptyMenuSlot);
}

TEST(MenuTable, GetIDOutsideTheTableIsMinusOne)
{
    MenuDesk desk;
    EXPECT_EQ(desk.menu.GetID(8, 0), -1);
    EXPECT_EQ(desk.menu.GetID(0, 16), -1);
    EXPECT_EQ(desk.menu.GetID(-1, 0), -1);
    EXPECT_EQ(desk.menu.GetID(0, -1), -1);
    EXPECT_EQ(desk.menu.GetID(7, 15), kEmptyMenuSlot);
}

TEST(MenuTable, ItemsAndSeparatorsTakeSlotsInOrder)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("File", 0);
    desk.menu.AddItem(1010, "Load Picture/E", 0);
    desk.menu.AddItem(-1, "", 0);
    desk.menu.AddItem(2005, "New Show/N", 0);
    desk.menu.AddTopLevel("Edit", 0);
    desk.menu.AddItem(9004, "Undo/Z", kMenuItemDisabled);
    EXPECT_EQ(desk.menu.GetID(0, 0), 1010);
    EXPECT_EQ(desk.menu.GetID(0, 1), -1);
    EXPECT_EQ(desk.menu.GetID(0, 2), 2005);
    EXPECT_EQ(desk.menu.GetID(0, 3), kEmptyMenuSlot);
    EXPECT_EQ(desk.menu.GetID(1, 0), 9004);
    QList<QAction*> file = desk.Items(0);
    ASSERT_EQ(file.size(), 3);
    EXPECT_TRUE(file[1]->isSeparator());
    EXPECT_FALSE(desk.menu.IsItemEnabled(1, 0));
    EXPECT_TRUE(desk.menu.IsItemEnabled(0, 0));
}

TEST(MenuTable, SeventeenthItemLeavesTheMenuAndTableUnchanged)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("Many", 0);
    for (int i = 0; i < kMenuItemCount; ++i)
        desk.menu.AddItem(3000 + i, "Item", 0);
    desk.menu.AddTopLevel("Next", 0);
    desk.menu.AddItem(4000, "First", 0);
    // Back to a full menu: a ninth menu is refused, so the items after it go nowhere.
    for (int m = 2; m < kMenuCount; ++m)
        desk.menu.AddTopLevel("More", 0);
    desk.menu.AddTopLevel("Ninth", 0);
    desk.menu.AddItem(5000, "Lost", 0);
    EXPECT_EQ(desk.menu.GetMenuCount(), kMenuCount);
    EXPECT_EQ(desk.menu.GetMenuBar()->actions().size(), kMenuCount);
    EXPECT_EQ(desk.menu.GetItemCount(7), 0);

    MenuDesk full;
    full.menu.AddTopLevel("Many", 0);
    for (int i = 0; i < kMenuItemCount; ++i)
        full.menu.AddItem(3000 + i, "Item", 0);
    full.menu.AddItem(3999, "Seventeenth", 0);
    EXPECT_EQ(full.Items(0).size(), kMenuItemCount);
    EXPECT_EQ(full.menu.GetItemCount(0), kMenuItemCount);
    for (int i = 0; i < kMenuItemCount; ++i)
        EXPECT_EQ(full.menu.GetID(0, i), 3000 + i);
    EXPECT_EQ(full.menu.GetID(1, 0), kEmptyMenuSlot);
}

TEST(MenuItems, SlashLetterIsAShortcutShownBesideTheText)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("View", 0);
    desk.menu.AddItem(1044, "Enlarge Timeline/>", 0);
    desk.menu.AddItem(1003, "Slow-in & Slow Out", kMenuItemChecked);
    desk.menu.AddItem(1010, "Load Picture/E", 0);
    QList<QAction*> items = desk.Items(0);
    EXPECT_EQ(items[0]->text(), QString("Enlarge Timeline\tCtrl+>"));
    EXPECT_EQ(items[1]->text(), QString("Slow-in && Slow Out"));
    EXPECT_EQ(items[2]->text(), QString("Load Picture\tCtrl+E"));
    // The key itself reaches the program as 1017 only.
    EXPECT_TRUE(items[2]->shortcut().isEmpty());
    EXPECT_TRUE(items[1]->isChecked());
    EXPECT_TRUE(desk.menu.IsItemChecked(0, 1));
    EXPECT_FALSE(items[0]->isCheckable());
}

TEST(MenuItems, TitleIsCutAt255Characters)
{
    MenuDesk desk;
    std::string title(300, 't');
    desk.menu.AddTopLevel(title.c_str(), 0);
    EXPECT_EQ(desk.menu.GetMenuBar()->actions().at(0)->text().size(), 255);
}

TEST(MenuItems, DisabledMenuDisablesAllItsItems)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("Render", kMenuDisabled);
    desk.menu.AddItem(1030, "4:3 Aspect Ratio", 0);
    EXPECT_FALSE(desk.menu.GetMenuBar()->actions().at(0)->isEnabled());
    EXPECT_FALSE(desk.menu.IsItemEnabled(0, 0));
}

TEST(MenuSetState, ChecksAndDisablesTheFirstOccurrenceInEachMenu)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("One", 0);
    desk.menu.AddItem(7, "a", 0);
    desk.menu.AddItem(7, "b", 0);
    desk.menu.AddTopLevel("Two", 0);
    desk.menu.AddItem(8, "c", 0);
    desk.menu.AddItem(7, "d", 0);
    desk.menu.SetState(7, 3);
    EXPECT_TRUE(desk.menu.IsItemChecked(0, 0));
    EXPECT_FALSE(desk.menu.IsItemEnabled(0, 0));
    EXPECT_FALSE(desk.menu.IsItemChecked(0, 1));
    EXPECT_TRUE(desk.menu.IsItemEnabled(0, 1));
    EXPECT_TRUE(desk.menu.IsItemChecked(1, 1));
    EXPECT_FALSE(desk.menu.IsItemEnabled(1, 1));
    EXPECT_TRUE(desk.menu.IsItemEnabled(1, 0));
    EXPECT_TRUE(desk.Items(0)[0]->isChecked());
    EXPECT_FALSE(desk.Items(0)[0]->isEnabled());

    desk.menu.SetState(7, 0);
    EXPECT_FALSE(desk.menu.IsItemChecked(0, 0));
    EXPECT_TRUE(desk.menu.IsItemEnabled(0, 0));
    EXPECT_FALSE(desk.Items(0)[0]->isCheckable());
    desk.menu.SetState(7, 2);
    EXPECT_FALSE(desk.menu.IsItemChecked(1, 1));
    EXPECT_FALSE(desk.menu.IsItemEnabled(1, 1));
}

TEST(MenuSetCheck, SetsAndClearsTheMark)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("File", 0);
    desk.menu.AddItem(1015, "NTSC", kMenuItemChecked);
    desk.menu.AddItem(1016, "PAL", 0);
    desk.menu.SetCheck(1015, false);
    desk.menu.SetCheck(1016, true);
    EXPECT_FALSE(desk.menu.IsItemChecked(0, 0));
    EXPECT_TRUE(desk.menu.IsItemChecked(0, 1));
    EXPECT_TRUE(desk.Items(0)[1]->isChecked());
    EXPECT_TRUE(desk.menu.IsItemEnabled(0, 1));
}

TEST(MenuChoosing, AnItemBroadcastsItsCommandAndKeepsTheProgramsCheckMark)
{
    MenuDesk desk;
    RecordingWindow other;
    other.Create(&desk.main, 0);
    desk.menu.AddTopLevel("Options", 0);
    desk.menu.AddItem(1000, "Show Camera Path", 0);
    desk.menu.AddItem(1002, "Auto-Rescale Show", kMenuItemChecked);
    QAction* rescale = desk.Items(0)[1];
    rescale->trigger();
    // The program decides the marks; choosing does not flip it.
    EXPECT_TRUE(rescale->isChecked());
    EXPECT_EQ(desk.main.Count(kMsgCommand), 0);
    ProcessEvents();
    ASSERT_EQ(desk.main.Count(kMsgCommand), 1);
    EXPECT_EQ(desk.main.Last(kMsgCommand)->wParam, 1002);
    EXPECT_EQ(other.Last(kMsgCommand)->wParam, 1002);
}

TEST(MenuItemList, EntriesHangUnderTheItemAndBroadcastTheirOwnCommands)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("File", 0);
    desk.menu.AddItem(2004, "Load Show/O", 0);
    desk.menu.AddItem(2006, "Recent Shows", 0);
    desk.menu.AddItem(2003, "Save Show/S", 0);
    desk.menu.SetItemList(2006, {{2010, "trip  (/shows/trip.plx)"}, {2011, "a&b"}});
    EXPECT_EQ(desk.menu.GetItemCount(0), 3);  // the entries take no slots
    QMenu* list = desk.Items(0)[1]->menu();
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->actions().size(), 2);
    EXPECT_EQ(list->actions()[1]->text().toStdString(), "a&&b");
    EXPECT_TRUE(desk.menu.IsItemEnabled(0, 1));
    list->actions()[1]->trigger();
    ProcessEvents();
    ASSERT_EQ(desk.main.Count(kMsgCommand), 1);
    EXPECT_EQ(desk.main.Last(kMsgCommand)->wParam, 2011);

    // A new list replaces the old one; an empty one disables the item.
    desk.menu.SetItemList(2006, {{2010, "other"}});
    EXPECT_EQ(list->actions().size(), 1);
    ASSERT_EQ(desk.menu.GetItemList(2006).size(), 1u);
    EXPECT_EQ(desk.menu.GetItemList(2006)[0].text, "other");
    desk.menu.SetItemList(2006, {});
    EXPECT_FALSE(desk.menu.IsItemEnabled(0, 1));
    EXPECT_TRUE(desk.menu.GetItemList(2099).empty());
}

TEST(MenuCommand, ItemSeventeenOrMenu1008IsMinusOne)
{
    MenuDesk desk;
    desk.menu.AddTopLevel("File", 0);
    desk.menu.AddItem(1010, "Load Picture/E", 0);
    EXPECT_EQ(MenuCommand(1000, 1), 1010);
    EXPECT_EQ(MenuCommand(1000, 2), kEmptyMenuSlot);
    EXPECT_EQ(MenuCommand(1000, 17), -1);
    EXPECT_EQ(MenuCommand(1008, 1), -1);
    EXPECT_EQ(MenuCommand(999, 1), -1);
    EXPECT_EQ(MenuCommand(1000, 0), -1);
}

TEST(RestoreOriginalMenu, PutsBackTheBarThatWasThereOnce)
{
    RecordingWindow main;
    main.Create(nullptr, kStyleBehind);
    auto* frame = static_cast<FrameWidget*>(Frame(&main));
    CPMenu first;
    first.Create(&main);
    first.AddTopLevel("First", 0);
    QMenuBar* firstBar = first.GetMenuBar();
    EXPECT_EQ(frame->MenuBar(), firstBar);
    {
        CPMenu second;
        second.Create(&main);
        EXPECT_EQ(frame->MenuBar(), second.GetMenuBar());
        EXPECT_EQ(second.GetMenuCount(), 0);
        second.RestoreOriginalMenu();
        EXPECT_EQ(frame->MenuBar(), firstBar);
        // Only once: a second restore changes nothing.
        first.RestoreOriginalMenu();
        EXPECT_EQ(frame->MenuBar(), nullptr);
        second.RestoreOriginalMenu();
        EXPECT_EQ(frame->MenuBar(), nullptr);
    }
    EXPECT_EQ(frame->MenuBar(), nullptr);
}

TEST(RestoreOriginalMenu, TheDestructorRestores)
{
    RecordingWindow main;
    main.Create(nullptr, kStyleBehind);
    auto* frame = static_cast<FrameWidget*>(Frame(&main));
    {
        CPMenu menu;
        menu.Create(&main);
        EXPECT_NE(frame->MenuBar(), nullptr);
    }
    EXPECT_EQ(frame->MenuBar(), nullptr);
    // A menu bar whose window went first goes quietly.
    auto* menu = new CPMenu;
    menu->Create(&main);
    main.Destroy();
    delete menu;
}

}  // namespace
