// GetStringBox: scripted answers, the record tests read back, and the real box answered from its
// own event loop.

#include "platform/dialog/string_box.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include <cstring>
#include <functional>
#include <string>

namespace {

class StringBoxTest : public testing::Test {
protected:
    void SetUp() override { ClearStringBoxScript(); }
    void TearDown() override { ClearStringBoxScript(); }
};

// Once the next modal dialog is open, hands it to `act`, which must close it.
void WhenBoxOpens(std::function<void(QDialog*)> act)
{
    auto* timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (box == nullptr || !box->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        act(box);
    });
    timer->start();
}

TEST_F(StringBoxTest, ScriptedAnswerReplacesTheValue)
{
    char value[64] = "old";
    PushStringBoxAnswer("new");
    EXPECT_TRUE(GetStringBox(value, "Title", "Type New Value for Width", " ( was: old )"));
    EXPECT_STREQ(value, "new");
    std::vector<ShownStringBox> boxes = TakeShownStringBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].title, "Title");
    EXPECT_EQ(boxes[0].prompt, "Type New Value for Width");
    EXPECT_EQ(boxes[0].note, " ( was: old )");
    EXPECT_EQ(boxes[0].start, "old");
    EXPECT_EQ(boxes[0].answer, "new");
    EXPECT_TRUE(boxes[0].ok);
    EXPECT_EQ(boxes[0].way, StringBoxWay::kScripted);
}

TEST_F(StringBoxTest, CancelLeavesTheValueAndAnswersFalse)
{
    char value[64] = "keep";
    PushStringBoxCancel();
    EXPECT_FALSE(GetStringBox(value, "T", "P", nullptr));
    EXPECT_STREQ(value, "keep");
    std::vector<ShownStringBox> boxes = TakeShownStringBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_FALSE(boxes[0].ok);
    EXPECT_EQ(boxes[0].answer, "keep");
}

TEST_F(StringBoxTest, AnswersAreTakenOldestFirst)
{
    char value[64] = "";
    PushStringBoxAnswer("one");
    PushStringBoxCancel();
    PushStringBoxAnswer(nullptr);
    EXPECT_EQ(CountStringBoxAnswers(), 3);
    EXPECT_TRUE(GetStringBox(value, nullptr, nullptr, nullptr));
    EXPECT_STREQ(value, "one");
    EXPECT_FALSE(GetStringBox(value, nullptr, nullptr, nullptr));
    EXPECT_TRUE(GetStringBox(value, nullptr, nullptr, nullptr));
    EXPECT_STREQ(value, "");
    EXPECT_EQ(CountStringBoxAnswers(), 0);
}

TEST_F(StringBoxTest, LongAnswerIsCutToSixtyThreeCharacters)
{
    char value[64 + 8];
    std::memset(value, '#', sizeof value);
    value[0] = 0;
    PushStringBoxAnswer(std::string(100, 'x').c_str());
    EXPECT_TRUE(GetStringBox(value, "T", "P", "N"));
    EXPECT_EQ(std::strlen(value), 63u);
    EXPECT_EQ(value[64], '#');  // nothing past the row
}

TEST_F(StringBoxTest, CutNeverSplitsACharacter)
{
    // 62 ASCII characters, then a two-byte character that would straddle the 63rd byte.
    std::string answer = std::string(62, 'a') + "\xC3\xA9" + "z";
    char value[64] = "";
    PushStringBoxAnswer(answer.c_str());
    EXPECT_TRUE(GetStringBox(value, "T", "P", "N"));
    EXPECT_EQ(std::string(value), std::string(62, 'a'));
}

TEST_F(StringBoxTest, StartTextIsReadNoFurtherThanARow)
{
    char value[80];
    std::memset(value, 'v', sizeof value);
    value[79] = 0;
    PushStringBoxCancel();
    EXPECT_FALSE(GetStringBox(value, "T", "P", "N"));
    EXPECT_EQ(TakeShownStringBoxes()[0].start, std::string(63, 'v'));
}

TEST_F(StringBoxTest, NullValueAnswersFalseAndTakesNoAnswer)
{
    PushStringBoxAnswer("x");
    EXPECT_FALSE(GetStringBox(nullptr, "T", "P", "N"));
    EXPECT_EQ(CountStringBoxAnswers(), 1);
}

TEST_F(StringBoxTest, RecordKeepsTheLatestBoxesOnly)
{
    char value[64] = "";
    for (int i = 0; i < 300; ++i) {
        PushStringBoxAnswer(std::to_string(i).c_str());
        GetStringBox(value, "T", "P", "N");
    }
    std::vector<ShownStringBox> boxes = TakeShownStringBoxes();
    ASSERT_EQ(boxes.size(), 256u);
    EXPECT_EQ(boxes.front().answer, "44");
    EXPECT_EQ(boxes.back().answer, "299");
}

TEST_F(StringBoxTest, ShownBoxOffersTheValueSelectedAndTakesWhatIsTyped)
{
    std::string prompt;
    std::string title;
    bool selected = false;
    WhenBoxOpens([&](QDialog* box) {
        title = box->windowTitle().toStdString();
        prompt = box->findChild<QLabel*>("prompt")->text().toStdString();
        auto* field = box->findChild<QLineEdit*>("value");
        selected = field->selectedText() == "640";
        field->setText("720");
        box->accept();
    });
    char value[64] = "640";
    EXPECT_TRUE(GetStringBox(value, "Movie", "Type New Value for Width", " ( was: 640 )"));
    EXPECT_STREQ(value, "720");
    EXPECT_EQ(title, "Movie");
    EXPECT_EQ(prompt, "Type New Value for Width ( was: 640 )");
    EXPECT_TRUE(selected);
    EXPECT_EQ(TakeShownStringBoxes()[0].way, StringBoxWay::kShown);
}

TEST_F(StringBoxTest, ShownBoxCancelledKeepsTheValue)
{
    WhenBoxOpens([](QDialog* box) {
        box->findChild<QLineEdit*>("value")->setText("changed");
        box->reject();
    });
    char value[64] = "640";
    EXPECT_FALSE(GetStringBox(value, "Movie", "P", "N"));
    EXPECT_STREQ(value, "640");
}

}  // namespace
