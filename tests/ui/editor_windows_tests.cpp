#include "ui/editor_windows.h"

#include <gtest/gtest.h>

#include "platform/wnd/messages.h"

TEST(EditorWindows, NoWindowExistsBeforeTheMainWindowMakesThem)
{
    EXPECT_EQ(pMain, nullptr);
    EXPECT_EQ(pStage, nullptr);
    EXPECT_EQ(pTime, nullptr);
    EXPECT_EQ(pViewer, nullptr);
}

TEST(EditorWindows, TheStageEditMessageIsNoneOfTheShellsMessages)
{
    // The shell's own messages run from 1001 to 1020, with 12345 ending the loop.
    EXPECT_FALSE(kMsgEditEnded >= 1001 && kMsgEditEnded <= 1020);
    EXPECT_NE(kMsgEditEnded, kMsgEndLoop);
}

TEST(EditorWindows, DialogsHaveNoOwnerBeforeTheWindowsExist)
{
    // Before the main window there is nothing to draw a dialog over (CPDialog then answers 0).
    EXPECT_EQ(EditorDialogOwner(), nullptr);
}
