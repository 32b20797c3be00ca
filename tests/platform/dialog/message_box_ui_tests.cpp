// The message boxes with a QApplication: scripted answers, the record, and real boxes answered
// by clicks and keys from the box's own event loop.

#include "platform/dialog/message_box.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <string>

namespace {

// What a real box looked like when it opened.
struct SeenBox {
    std::string text;
    std::string title;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

// Once the next modal message box is open, records it and hands it to `act`, which must close it.
void WhenBoxOpens(SeenBox* seen, std::function<void(QMessageBox*)> act)
{
    auto* timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, seen, act] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || !box->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        seen->text = box->text().toStdString();
        seen->title = box->windowTitle().toStdString();
        seen->buttons = box->standardButtons();
        seen->icon = box->icon();
        act(box);
    });
    timer->start();
}

void Click(QMessageBox* box, QMessageBox::StandardButton which) { box->button(which)->click(); }

void PressEscape(QMessageBox* box)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(box, &press);
}

TEST(MessageBoxScript, EveryBoxTakesTheOldestAnswer)
{
    ClearMessageBoxScript();
    PushMessageBoxAnswer(kBoxYes);
    PushMessageBoxAnswer(kBoxCancel);
    PushMessageBoxAnswer(kBoxYes);
    PushMessageBoxAnswer(kBoxCancel);
    EXPECT_EQ(CountMessageBoxAnswers(), 4);
    ErrorBox("Flash file successfully made", kNoErrorNumber);    // takes the first
    EXPECT_FALSE(YesNoBox("Are you sure?", "Delete All Keys"));  // cancel is no here
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxYes);
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxCancel);
    EXPECT_EQ(CountMessageBoxAnswers(), 0);

    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 4u);
    EXPECT_EQ(boxes[0].kind, MessageBoxKind::kError);
    EXPECT_EQ(boxes[0].answer, kBoxYes);
    EXPECT_EQ(boxes[1].kind, MessageBoxKind::kYesNo);
    EXPECT_EQ(boxes[1].answer, kBoxNo);
    EXPECT_EQ(boxes[1].title, "Delete All Keys");
    EXPECT_EQ(boxes[2].kind, MessageBoxKind::kYesNoCancel);
    for (const ShownMessageBox& box : boxes)
        EXPECT_EQ(box.way, MessageBoxWay::kScripted);
    EXPECT_TRUE(TakeShownMessageBoxes().empty()) << "taking forgets";
}

TEST(MessageBoxScript, ClearForgetsAnswersAndRecord)
{
    PushMessageBoxAnswer(kBoxYes);
    PushMessageBoxAnswer(kBoxNo);
    EXPECT_TRUE(YesNoBox("Space keys at a uniform speed?", "Uniform Speed"));
    ClearMessageBoxScript();
    EXPECT_EQ(CountMessageBoxAnswers(), 0);
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
}

TEST(MessageBoxScript, RecordKeepsTheLatestBoxesOnly)
{
    ClearMessageBoxScript();
    for (int i = 0; i < 300; ++i) {
        PushMessageBoxAnswer(kBoxYes);
        ErrorBox("box", i);
    }
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 256u);
    EXPECT_EQ(boxes.front().code, 44);
    EXPECT_EQ(boxes.back().code, 299);
}

TEST(MessageBoxShown, ErrorBoxShowsTheNumberAfterTheText)
{
    ClearMessageBoxScript();
    SeenBox seen;
    WhenBoxOpens(&seen, [](QMessageBox* box) { Click(box, QMessageBox::Ok); });
    ErrorBox("Can't read image file", 4);
    EXPECT_EQ(seen.text, "Can't read image file  [ 4 ]");
    EXPECT_EQ(seen.buttons, QMessageBox::Ok);
    EXPECT_EQ(seen.icon, QMessageBox::Warning);
    EXPECT_FALSE(seen.title.empty());
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].way, MessageBoxWay::kShown);
    EXPECT_EQ(boxes[0].shownText, "Can't read image file  [ 4 ]");
}

TEST(MessageBoxShown, MarkerNumberShowsTheTextAlone)
{
    ClearMessageBoxScript();
    SeenBox seen;
    WhenBoxOpens(&seen, [](QMessageBox* box) { PressEscape(box); });
    ErrorBox("Can't open graphics file", kNoErrorNumber);
    EXPECT_EQ(seen.text, "Can't open graphics file");
    EXPECT_EQ(TakeShownMessageBoxes().at(0).answer, kBoxYes);
}

TEST(MessageBoxShown, YesNoBoxAnswersTheButtonClicked)
{
    ClearMessageBoxScript();
    SeenBox seen;
    WhenBoxOpens(&seen, [](QMessageBox* box) { Click(box, QMessageBox::Yes); });
    EXPECT_TRUE(YesNoBox("Do you want to save this show?", "Exit Application"));
    EXPECT_EQ(seen.text, "Do you want to save this show?");
    EXPECT_EQ(seen.title, "Exit Application");
    EXPECT_EQ(seen.buttons, QMessageBox::Yes | QMessageBox::No);

    WhenBoxOpens(&seen, [](QMessageBox* box) { Click(box, QMessageBox::No); });
    EXPECT_FALSE(YesNoBox("Are you sure?", "New Show"));
    WhenBoxOpens(&seen, [](QMessageBox* box) { PressEscape(box); });
    EXPECT_FALSE(YesNoBox("Are you sure?", "New Show")) << "Esc is no";
    EXPECT_EQ(TakeShownMessageBoxes().size(), 3u);
}

TEST(MessageBoxShown, YesNoCancelBoxAnswersEachButtonAndEscCancels)
{
    ClearMessageBoxScript();
    SeenBox seen;
    WhenBoxOpens(&seen, [](QMessageBox* box) { Click(box, QMessageBox::No); });
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxNo);
    EXPECT_EQ(seen.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    EXPECT_EQ(seen.title, "New Show");
    WhenBoxOpens(&seen, [](QMessageBox* box) { Click(box, QMessageBox::Yes); });
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxYes);
    WhenBoxOpens(&seen, [](QMessageBox* box) { Click(box, QMessageBox::Cancel); });
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxCancel);
    WhenBoxOpens(&seen, [](QMessageBox* box) { PressEscape(box); });
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxCancel);

    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 4u);
    EXPECT_EQ(boxes[0].answer, kBoxNo);
    EXPECT_EQ(boxes[1].answer, kBoxYes);
    EXPECT_EQ(boxes[2].answer, kBoxCancel);
    EXPECT_EQ(boxes[3].answer, kBoxCancel);
}

TEST(MessageBoxShown, ScriptedAnswerShowsNoBox)
{
    ClearMessageBoxScript();
    PushMessageBoxAnswer(kBoxYes);
    // A box that opened would never close: this returns only because none does.
    EXPECT_TRUE(YesNoBox("Match moves to new Picture size?", "Match Moves"));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
