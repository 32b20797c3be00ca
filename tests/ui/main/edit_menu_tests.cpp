// The Edit menu's states from the document's selection, clipboard and undo ring.

#include "ui/main/edit_menu.h"

#include <gtest/gtest.h>

namespace {

TEST(EditMenuState, SelectionZeroEnablesCopyOnly)
{
    EditMenuState state = EditMenuStateFor(0, false, 0, 0);
    EXPECT_TRUE(state.copy);
    EXPECT_FALSE(state.cut);
    EXPECT_FALSE(state.del);
    EXPECT_FALSE(state.paste);
}

TEST(EditMenuState, NoSelectionEnablesNone)
{
    EditMenuState state = EditMenuStateFor(-1, false, 0, 0);
    EXPECT_FALSE(state.copy);
    EXPECT_FALSE(state.cut);
    EXPECT_FALSE(state.del);
}

TEST(EditMenuState, LaterKeyEnablesCutCopyAndDelete)
{
    EditMenuState state = EditMenuStateFor(3, false, 0, 0);
    EXPECT_TRUE(state.copy);
    EXPECT_TRUE(state.cut);
    EXPECT_TRUE(state.del);
}

TEST(EditMenuState, PasteFollowsTheClipboard)
{
    EXPECT_TRUE(EditMenuStateFor(-1, true, 0, 0).paste);
    EXPECT_FALSE(EditMenuStateFor(2, false, 0, 0).paste);
}

TEST(EditMenuState, UndoAndRedoFollowTheirCounts)
{
    EditMenuState state = EditMenuStateFor(-1, false, 2, 0);
    EXPECT_TRUE(state.undo);
    EXPECT_FALSE(state.redo);
    state = EditMenuStateFor(-1, false, 0, 1);
    EXPECT_FALSE(state.undo);
    EXPECT_TRUE(state.redo);
}

}  // namespace
