// The key dialog run with clicks and keys posted to its owner, as a user answers it.

#include "ui/timeline/key_dialog.h"

#include <gtest/gtest.h>
#include <QTimer>

#include "platform/dialog/cpdialog.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/posted_input.h"
#include "platform/wnd/cpwnd.h"

namespace {

constexpr int kX = 20;
constexpr int kY = 10;

class KeyDialog : public testing::Test {
protected:
    void SetUp() override
    {
        owner.Create(nullptr, 0);
        owner.SetWinRect(0, 0, 640, 480, true);
        ProcessEvents();
        key.XPos = 300.0f;
        key.YPos = 200.0f;
        key.Width = 150.0f;
        key.Ease = 0.0f;
    }
    DialogLayout Layout()
    {
        KeyDialogLists lists = MakeKeyDialog(key);
        return MakeDialogLayout(kX, kY, kKeyDialogRows, lists.descriptions, false);
    }
    void ClickItem(int row)
    {
        tagRECT area = DialogValueArea(Layout(), row);
        PostClick(&owner, (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }
    // Clicks the speed slider where it reads `value`; false when no column does.
    bool ClickSpeed(int value)
    {
        DialogLayout layout = Layout();
        tagRECT bar = DialogSliderBar(layout, kKeyRowSpeed);
        for (int x = bar.left; x <= bar.right; ++x)
            if (DialogSliderValueAt(layout, kKeyRowSpeed, x) == value) {
                PostClick(&owner, x, (bar.top + bar.bottom) / 2);
                return true;
            }
        return false;
    }
    bool Run()
    {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [this] { PostEscape(&owner); });
        guard.start(2000);
        bool ok = RunKeyDialog(&owner, kX, kY, key);
        EXPECT_TRUE(guard.isActive()) << "the dialog did not end on the input it was given";
        return ok;
    }

    CPWnd owner;
    KeyStruct key{};
};

TEST_F(KeyDialog, SlowInAtHalfSpeedReadsBackAsTheDialogSays)
{
    ClickItem(kKeyRowIn);
    ASSERT_TRUE(ClickSpeed(50));
    PostReturn(&owner);
    EXPECT_TRUE(Run());
    EXPECT_EQ(key.Ease, 2050.0f);
    EXPECT_EQ(key.XPos, 300.0f);
    // Opened again, the dialog shows what was stored.
    KeyDialogLists lists = MakeKeyDialog(key);
    EXPECT_TRUE(IsDialogValueOn(lists.values, kKeyRowIn));
    EXPECT_EQ(GetDialogNumber(lists.values, kKeyRowSpeed), 50);
}

TEST_F(KeyDialog, NoCurvesAddsOne)
{
    ClickItem(kKeyRowOut);
    ClickItem(kKeyRowNoCurves);
    PostReturn(&owner);
    EXPECT_TRUE(Run());
    EXPECT_EQ(key.Ease, 3001.0f);
}

TEST_F(KeyDialog, CancelChangesNothing)
{
    KeyStruct before = key;
    ClickItem(kKeyRowNone);
    ASSERT_TRUE(ClickSpeed(50));
    PostEscape(&owner);
    EXPECT_FALSE(Run());
    EXPECT_EQ(key.Ease, before.Ease);
    EXPECT_EQ(key.XPos, before.XPos);
}

}  // namespace
