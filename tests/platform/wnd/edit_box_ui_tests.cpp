// The one-line edit box.

#include "platform/wnd/edit_box.h"

#include <gtest/gtest.h>
#include <QLineEdit>
#include <string>

#include "platform/draw/draw_state.h"
#include "platform/wnd/edit_box_field_qt.h"
#include "wnd_test_support.h"

namespace {

struct Owner {
    RecordingWindow window;
    Owner()
    {
        window.Create(nullptr, 0);
        window.SetWinRect(10, 10, 410, 210, true);
    }
};

TEST(CPEditBox, CreateMakesTheActiveFieldInItsRectangle)
{
    Owner owner;
    CPEditBox box;
    ASSERT_TRUE(box.Create(&owner.window, 20, 30, 80, 20, nullptr));
    EXPECT_EQ(gMacEditBox, &box);
    EXPECT_EQ(gEditRect.left, 20);
    EXPECT_EQ(gEditRect.top, 30);
    EXPECT_EQ(gEditRect.right, 100);
    EXPECT_EQ(gEditRect.bottom, 50);
    ASSERT_NE(box.GetField(), nullptr);
    EXPECT_EQ(box.GetField()->geometry(), QRect(20, 30, 80, 20));
    EXPECT_EQ(box.GetField()->parentWidget(), Content(&owner.window));
    EXPECT_EQ(ActiveEditField(), box.GetField());
    EXPECT_EQ(ActiveEditOwner(), &owner.window);
}

TEST(CPEditBox, CreateWithoutAWindowFails)
{
    CPEditBox box;
    EXPECT_FALSE(box.Create(nullptr, 0, 0, 10, 10, nullptr));
    RecordingWindow never;
    EXPECT_FALSE(box.Create(&never, 0, 0, 10, 10, nullptr));
    EXPECT_EQ(gMacEditBox, nullptr);
}

TEST(CPEditBox, ANewEditBoxDisposesOfTheActiveOne)
{
    Owner owner;
    CPEditBox first, second;
    first.Create(&owner.window, 0, 0, 50, 20, nullptr);
    second.Create(&owner.window, 0, 30, 50, 20, nullptr);
    EXPECT_FALSE(first.IsOpen());
    EXPECT_EQ(gMacEditBox, &second);
    EXPECT_EQ(gEditRect.top, 30);
}

TEST(CPEditBox, SetStringSelectsAndGetStringTerminates)
{
    Owner owner;
    CPEditBox box;
    box.Create(&owner.window, 0, 0, 200, 20, nullptr);
    box.SetString("00:01:15", true);
    EXPECT_EQ(box.GetField()->text(), QString("00:01:15"));
    EXPECT_EQ(box.GetField()->selectedText(), QString("00:01:15"));
    char out[5] = "????";
    box.GetString(out, 5);
    EXPECT_STREQ(out, "00:0");
    box.GetString(out, 1);
    EXPECT_STREQ(out, "");
    box.SetString("12", false);
    EXPECT_TRUE(box.GetField()->selectedText().isEmpty());
}

TEST(CPEditBox, SetStringShortensTheTextToTheWidthLessEight)
{
    Owner owner;
    CPEditBox box;
    FontRecord font = {"Sans", 12, 0};
    box.Create(&owner.window, 0, 0, 60, 20, &font);
    std::string longText(80, 'W');
    DrawState before = gDrawState;
    FontRecord* current = pCurFont;
    box.SetString(longText.c_str(), false);
    // The program's drawing state is left as it was.
    EXPECT_EQ(pCurFont, current);
    EXPECT_EQ(gDrawState.fontSize, before.fontSize);
    EXPECT_EQ(gDrawState.textOpaque, before.textOpaque);
    std::string kept = box.GetField()->text().toStdString();
    EXPECT_LT(kept.size(), longText.size());
    EXPECT_GT(kept.size(), 0u);
    EXPECT_EQ(kept, std::string(kept.size(), 'W'));
    // Measured in the field's font, it fits the width less 8 and one more letter would not.
    SelectFont(&font, -1, 0);
    EXPECT_LE(GetTextWidth(kept.c_str()), 60 - kEditMargin);
    EXPECT_GT(GetTextWidth((kept + "W").c_str()), 60 - kEditMargin);
    gDrawState = before;
    pCurFont = current;
}

TEST(CPEditBox, GetStringKeepsWholeCharacters)
{
    Owner owner;
    CPEditBox box;
    box.Create(&owner.window, 0, 0, 200, 20, nullptr);
    box.SetString("a\xC3\xA9z", false);
    char out[3];
    box.GetString(out, 3);
    EXPECT_STREQ(out, "a");
}

TEST(CPEditBox, RemoveAndTheDestructorClearTheActiveBox)
{
    Owner owner;
    {
        CPEditBox box;
        box.Create(&owner.window, 0, 0, 50, 20, nullptr);
        box.Remove();
        EXPECT_EQ(gMacEditBox, nullptr);
        EXPECT_EQ(gEditRect.right, 0);
        EXPECT_FALSE(box.IsOpen());
        box.Create(&owner.window, 0, 0, 50, 20, nullptr);
        EXPECT_EQ(gMacEditBox, &box);
    }
    EXPECT_EQ(gMacEditBox, nullptr);
}

TEST(CPEditBox, GoesWithItsWindow)
{
    CPEditBox box;
    {
        Owner owner;
        box.Create(&owner.window, 0, 0, 50, 20, nullptr);
    }
    EXPECT_EQ(gMacEditBox, nullptr);
    EXPECT_FALSE(box.IsOpen());
}

TEST(CPEditBox, FocusMakesItActiveAgainAndSetFontChangesItsFont)
{
    Owner owner;
    CPEditBox box;
    box.Create(&owner.window, 5, 6, 50, 20, nullptr);
    gMacEditBox = nullptr;
    box.Focus();
    EXPECT_EQ(gMacEditBox, &box);
    EXPECT_EQ(gEditRect.left, 5);
    FontRecord big = {"Sans", 20, kFontBold};
    box.SetFont(&big);
    EXPECT_EQ(box.GetField()->font().pixelSize(), 19);
    EXPECT_TRUE(box.GetField()->font().bold());
}

}  // namespace
