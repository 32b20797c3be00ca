// CPDialog driven by synthetic clicks and keys: every item kind, the button rows, cancelling,
// and what the dialog leaves behind.

#include "platform/dialog/cpdialog.h"

#include <gtest/gtest.h>
#include <QTimer>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "dialog_test_rows.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/string_box.h"
#include "platform/draw/draw_port.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"
#include "platform/file/file_dialog.h"
#include "platform/wnd/cpwnd.h"
#include "posted_input.h"

namespace {

std::string Value(const std::vector<char>& values, int row)
{
    return std::string(&values[size_t(row) * kDialogRowSize]);
}

// The dialog under test: every kind of row, two radio groups.
enum Row { kName, kLoop, kSmall, kLarge, kSlow, kFast, kLevel, kColour, kFolder, kRows };

const std::vector<std::string> kDescriptions = {"Name",    "@CLoop",       "@RSize|Small",
                                                "@RLarge", "@RSpeed|Slow", "@RFast",
                                                "@SLevel", "@LColour",     "@FFolder"};

class CPDialogTest : public testing::Test {
protected:
    static constexpr int kX = 20;
    static constexpr int kY = 10;

    void SetUp() override
    {
        owner.Create(nullptr, 0);
        owner.SetWinRect(0, 0, 640, 480, true);
        other.Create(nullptr, 0);
        other.SetWinRect(650, 0, 750, 100, true);
        ProcessEvents();
        owner.log.clear();
        ClearStringBoxScript();
        ClearFileDialogScript();
        ClearMessageBoxScript();
        descriptions = Rows(kDescriptions);
        values = Rows({"old", "", "1", "", "1", "", "50", "255", "/tmp/"});
    }

    void TearDown() override
    {
        ClearStringBoxScript();
        ClearFileDialogScript();
    }

    DialogLayout Layout(int count = kRows, bool apply = false)
    {
        return MakeDialogLayout(kX, kY, count, descriptions.data(), apply);
    }
    // The middle of row `row`'s value area.
    QPoint OnItem(int row)
    {
        tagRECT area = DialogValueArea(Layout(), row);
        return QPoint((area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }

    // Input for the owner (or `window`), in its content pixels.
    void PostPress(QPoint at, CPWnd* window = nullptr)
    {
        ::PostPress(window ? window : &owner, at.x(), at.y());
    }
    void PostRelease(QPoint at) { ::PostRelease(&owner, at.x(), at.y()); }
    void PostMove(QPoint at, bool held)
    {
        if (held)
            PostDrag(&owner, at.x(), at.y());
        else
            ::PostMove(&owner, at.x(), at.y());
    }
    void PostClick(QPoint at) { ::PostClick(&owner, at.x(), at.y()); }
    void PostKey(int key, const char* text) { ::PostKey(&owner, key, QString::fromLatin1(text)); }
    void PostReturn() { ::PostReturn(&owner); }
    void PostEscape() { ::PostEscape(&owner); }

    // Runs the dialog on the input posted so far. Should the script not end it, Esc arrives
    // after two seconds, so a broken dialog fails the test instead of hanging it.
    int Run(int count = kRows, const char* title = "Options")
    {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [this] {
            timedOut = true;
            PostEscape();
        });
        guard.start(2000);
        int result = CPDialog(&owner, kX, kY, count, descriptions.data(), values.data(), title);
        EXPECT_FALSE(timedOut) << "the dialog did not end on the input it was given";
        ProcessEvents();
        return result;
    }

    RecordingWindow owner;
    RecordingWindow other;
    std::vector<char> descriptions;
    std::vector<char> values;
    bool timedOut = false;
};

TEST_F(CPDialogTest, EscCancels)
{
    PostEscape();
    EXPECT_EQ(Run(), kDialogCancelled);
}

TEST_F(CPDialogTest, ReturnConfirms)
{
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(Value(values, kName), "old");
}

TEST_F(CPDialogTest, OtherKeysAreNotUsed)
{
    PostKey(Qt::Key_A, "a");
    PostKey(Qt::Key_Tab, "\t");
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(owner.Count(kMsgKeyDown), 0);
}

TEST_F(CPDialogTest, CheckBoxClickStoresOneAndASecondClearsIt)
{
    PostClick(OnItem(kLoop));
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(Value(values, kLoop), "1");

    PostClick(OnItem(kLoop));
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(Value(values, kLoop), "");
}

TEST_F(CPDialogTest, CheckBoxHoldingZeroIsOnAndAClickClearsIt)
{
    std::strcpy(&values[kLoop * kDialogRowSize], "0");
    PostClick(OnItem(kLoop));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kLoop), "");
}

TEST_F(CPDialogTest, RadioClickClearsTheButtonsOfEveryGroup)
{
    PostClick(OnItem(kLarge));
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(Value(values, kSmall), "");
    EXPECT_EQ(Value(values, kLarge), "1");
    EXPECT_EQ(Value(values, kSlow), "");
    EXPECT_EQ(Value(values, kFast), "");
}

TEST_F(CPDialogTest, RadioClickOnASetButtonKeepsItSet)
{
    PostClick(OnItem(kSmall));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kSmall), "1");
    EXPECT_EQ(Value(values, kSlow), "");
}

TEST_F(CPDialogTest, SliderClickedLeftOfItsStartStoresZero)
{
    tagRECT bar = DialogSliderBar(Layout(), kLevel);
    DialogLayout layout = Layout();
    // Right of the labels (else the click is ignored), left of the bar.
    ASSERT_LT(layout.labelEnd + 12, bar.left);
    PostClick(QPoint(layout.labelEnd + 13, bar.top + 2));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kLevel), "0");
}

TEST_F(CPDialogTest, SliderClickedRightOfItsEndStoresHundred)
{
    tagRECT bar = DialogSliderBar(Layout(), kLevel);
    tagRECT frame = Layout().frame;
    ASSERT_LT(bar.right + 5, frame.right);
    PostClick(QPoint(bar.right + 5, bar.top + 2));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kLevel), "100");
}

TEST_F(CPDialogTest, SliderFollowsThePointerWhileTheButtonIsHeld)
{
    DialogLayout layout = Layout();
    tagRECT bar = DialogSliderBar(layout, kLevel);
    int quarter = bar.left + (bar.right - bar.left) / 4;
    int threeQuarters = bar.left + 3 * (bar.right - bar.left) / 4;
    PostPress(QPoint(bar.left, bar.top));
    PostMove(QPoint(quarter, bar.top + 40), true);  // off the row: the drag still follows
    PostMove(QPoint(threeQuarters, bar.top), true);
    PostRelease(QPoint(threeQuarters, bar.top));
    PostMove(QPoint(bar.left, bar.top), false);  // after the release: the value stays
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kLevel),
              std::to_string(DialogSliderValueAt(layout, kLevel, threeQuarters)));
    EXPECT_GT(std::stoi(Value(values, kLevel)), 50);
    EXPECT_LT(std::stoi(Value(values, kLevel)), 100);
}

TEST_F(CPDialogTest, PlainFieldAsksForItsNewValue)
{
    PushStringBoxAnswer("new name");
    PostClick(OnItem(kName));
    PostReturn();
    EXPECT_EQ(Run(kRows, "Picture Options"), kDialogConfirmed);
    EXPECT_EQ(Value(values, kName), "new name");
    std::vector<ShownStringBox> boxes = TakeShownStringBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].title, "Picture Options");
    EXPECT_EQ(boxes[0].prompt, "Type New Value for Name");
    EXPECT_EQ(boxes[0].note, " ( was: old )");
    EXPECT_EQ(boxes[0].start, "old");
}

TEST_F(CPDialogTest, PlainFieldKeepsItsValueWhenTheQuestionIsCancelled)
{
    PushStringBoxCancel();
    PostClick(OnItem(kName));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kName), "old");
    EXPECT_EQ(TakeShownStringBoxes().size(), 1u);
}

TEST_F(CPDialogTest, ColourRowOpensThePickerAndStoresItsColourAsDecimal)
{
    std::strcpy(&values[kColour * kDialogRowSize], "00255");
    PostClick(OnItem(kColour));
    PostReturn();  // confirms the picker: the colour as it was
    PostReturn();  // confirms the dialog
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(Value(values, kColour), "255");
}

TEST_F(CPDialogTest, ColourRowKeepsItsTextWhenThePickerIsCancelled)
{
    std::strcpy(&values[kColour * kDialogRowSize], "00255");
    PostClick(OnItem(kColour));
    PostEscape();  // the picker
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(Value(values, kColour), "00255");
}

TEST_F(CPDialogTest, FolderRowStoresTheFolderOfTheFileChosen)
{
    PushFileDialogAnswer("/work/textures/stone.bmp");
    PostClick(OnItem(kFolder));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kFolder), "/work/textures/");
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_FALSE(request.save);
    ASSERT_FALSE(request.nameFilters.empty());
    EXPECT_EQ(request.nameFilters[0], "All Files (*)");
    EXPECT_EQ(request.folder, "/tmp");  // it starts in the folder the row names
}

TEST_F(CPDialogTest, FolderRowKeepsItsValueWhenTheFileDialogIsCancelled)
{
    PushFileDialogCancel();
    PostClick(OnItem(kFolder));
    PostReturn();
    Run();
    EXPECT_EQ(Value(values, kFolder), "/tmp/");
}

TEST_F(CPDialogTest, ClicksOnTheTitleAndOnLabelsAreIgnored)
{
    DialogLayout layout = Layout();
    std::vector<char> before = values;
    PostClick(QPoint(layout.labelEnd, layout.y + 12));           // the title bar
    PostClick(QPoint(layout.labelEnd + 11, OnItem(kLoop).y()));  // the check box's label
    PostClick(QPoint(layout.x + 2, OnItem(kLarge).y()));         // far left on a radio row
    PostReturn();
    EXPECT_EQ(Run(), kDialogConfirmed);
    EXPECT_EQ(values, before);
}

TEST_F(CPDialogTest, ClickOutsideTheDialogCancels)
{
    tagRECT frame = Layout().frame;
    PostClick(QPoint(frame.right + 1, frame.top + 5));
    EXPECT_EQ(Run(), kDialogCancelled);
}

TEST_F(CPDialogTest, ClickInAnotherWindowCancels)
{
    PostPress(QPoint(5, 5), &other);
    EXPECT_EQ(Run(), kDialogCancelled);
}

TEST_F(CPDialogTest, EditsStayInTheValueRowsWhenCancelled)
{
    PostClick(OnItem(kLoop));
    PostEscape();
    EXPECT_EQ(Run(), kDialogCancelled);
    EXPECT_EQ(Value(values, kLoop), "1");
}

TEST_F(CPDialogTest, OkButtonConfirmsAndCancelButtonCancels)
{
    tagRECT ok = DialogOkButton(Layout());
    PostClick(QPoint(ok.left + 5, ok.top + 5));
    EXPECT_EQ(Run(), kDialogConfirmed);

    tagRECT cancel = DialogCancelButton(Layout());
    PostClick(QPoint(cancel.left + 5, cancel.top + 5));
    EXPECT_EQ(Run(), kDialogCancelled);
}

TEST_F(CPDialogTest, WithoutApplyTheLeftOfTheButtonRowsIsOkAndCancel)
{
    DialogLayout layout = Layout();
    PostClick(QPoint(layout.x + 10, DialogOkButton(layout).top + 4));
    EXPECT_EQ(Run(), kDialogConfirmed);
    PostClick(QPoint(layout.x + 10, DialogCancelButton(layout).top + 4));
    EXPECT_EQ(Run(), kDialogCancelled);
}

TEST_F(CPDialogTest, MinusThreeRowsGivesAThreeRowDialogWithApply)
{
    DialogLayout layout = Layout(3, true);
    EXPECT_EQ(layout.frame.bottom - layout.frame.top, 20 * 3 + 78);
    tagRECT apply = DialogApplyButton(layout);

    PostClick(QPoint(apply.left + 5, apply.top + 5));
    EXPECT_EQ(Run(-3), kDialogApplied);

    // The "OK" row left of x + 80 applies too; right of it confirms.
    tagRECT ok = DialogOkButton(layout);
    PostClick(QPoint(layout.x + 79, ok.top + 5));
    EXPECT_EQ(Run(-3), kDialogApplied);
    PostClick(QPoint(layout.x + 80, ok.top + 5));
    EXPECT_EQ(Run(-3), kDialogConfirmed);

    // Lower rows right of x + 80 cancel.
    PostClick(QPoint(layout.x + 80, apply.top + 5));
    EXPECT_EQ(Run(-3), kDialogCancelled);

    // Its fourth row is the "OK" row now: a click there where the fourth item would be confirms.
    tagRECT fourth = DialogValueArea(layout, 3);
    PostClick(QPoint(fourth.left + 2, fourth.top + 4));
    EXPECT_EQ(Run(-3), kDialogConfirmed);
    EXPECT_EQ(Value(values, 3), "");
}

TEST_F(CPDialogTest, OtherInputGoesToTheOwnerSoItKeepsWorking)
{
    tagRECT frame = Layout().frame;
    QPoint away(frame.right + 20, frame.bottom + 20);
    PostMove(away, false);
    PostReturn();
    Run();
    const Received* moved = owner.Last(kMsgMouseMoved);
    ASSERT_NE(moved, nullptr);
    EXPECT_EQ(moved->lParam, MakePointParam(away.x(), away.y()));
    EXPECT_EQ(owner.Count(kMsgButtonDown), 0);
}

TEST_F(CPDialogTest, PixelsUnderTheDialogArePutBack)
{
    DrawPort* port = owner.GetPort();
    ASSERT_NE(port, nullptr);
    for (int y = 0; y < port->Height(); ++y)
        for (int x = 0; x < port->Width(); ++x)
            port->Row(y)[x] = 0xFF000000u | uint32_t(x * 3) << 16 | uint32_t(y) << 8;
    std::vector<uint32_t> before;
    for (int y = 0; y < port->Height(); ++y)
        before.insert(before.end(), port->Row(y), port->Row(y) + port->Width());

    bool drawnWhileOpen = false;
    QTimer peek;
    QObject::connect(&peek, &QTimer::timeout, [&] {
        tagRECT title = DialogTitleBar(Layout());
        drawnWhileOpen = port->PixelAt(title.left + 20, title.top + 2) == 0xFF000000u;
        PostEscape();
    });
    peek.setSingleShot(true);
    peek.start(50);
    EXPECT_EQ(Run(), kDialogCancelled);
    EXPECT_TRUE(drawnWhileOpen);

    std::vector<uint32_t> after;
    for (int y = 0; y < port->Height(); ++y)
        after.insert(after.end(), port->Row(y), port->Row(y) + port->Width());
    EXPECT_EQ(after, before);
}

TEST_F(CPDialogTest, CallersFontAndDrawingStateComeBack)
{
    FontRecord* callers = MakeFont("Sans", 20, kFontBold);
    SelectFont(callers, -1, 0);
    DrawState before = gDrawState;
    PostEscape();
    Run();
    EXPECT_EQ(pCurFont, callers);
    EXPECT_EQ(gDrawState.fontSize, before.fontSize);
    EXPECT_EQ(gDrawState.fontStyle, before.fontStyle);
    EXPECT_EQ(gDrawState.fontPixelSize, before.fontPixelSize);
    RemoveFont(callers);
}

TEST_F(CPDialogTest, RefusesWithoutAnOwnerOrListsOrWithTooManyRows)
{
    EXPECT_EQ(CPDialog(nullptr, 0, 0, kRows, descriptions.data(), values.data(), "t"),
              kDialogCancelled);
    RecordingWindow notCreated;
    EXPECT_EQ(CPDialog(&notCreated, 0, 0, kRows, descriptions.data(), values.data(), "t"),
              kDialogCancelled);
    EXPECT_EQ(CPDialog(&owner, 0, 0, kRows, nullptr, values.data(), "t"), kDialogCancelled);
    EXPECT_EQ(CPDialog(&owner, 0, 0, kRows, descriptions.data(), nullptr, "t"), kDialogCancelled);
    EXPECT_EQ(CPDialog(&owner, 0, 0, kMaxDialogRows + 1, descriptions.data(), values.data(), "t"),
              kDialogCancelled);
    EXPECT_EQ(CPDialog(&owner, 0, 0, INT_MIN, descriptions.data(), values.data(), "t"),
              kDialogCancelled);
}

TEST_F(CPDialogTest, DialogOfNoRowsHasOnlyItsButtons)
{
    DialogLayout layout = MakeDialogLayout(kX, kY, 0, descriptions.data(), false);
    EXPECT_EQ(layout.frame.bottom - layout.frame.top, 78);
    // Nothing to measure: the dialog is 16 pixels wide, and its first row is the "OK" row.
    EXPECT_EQ(layout.frame.right - layout.frame.left, 16);
    PostClick(QPoint(layout.x + 8, layout.y + 36 + 4));
    EXPECT_EQ(Run(0), kDialogConfirmed);
}

TEST_F(CPDialogTest, EmptyDialogWithoutListsOrTitleStillRuns)
{
    PostReturn();
    EXPECT_EQ(CPDialog(&owner, kX, kY, 0, nullptr, nullptr, nullptr), kDialogConfirmed);
}

}  // namespace
