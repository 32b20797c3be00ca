// The message boxes with no QApplication: the command line. Nothing may block; alerts go to
// stderr and the questions take their safe defaults.

#include "platform/dialog/message_box.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(MessageBoxConsole, ErrorBoxWritesTheNumberedTextToStderr)
{
    ClearMessageBoxScript();
    testing::internal::CaptureStderr();
    ErrorBox("Can't read image file", 3);
    ErrorBox("Not enough memory to load image", kNoErrorNumber);
    std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said, "Can't read image file  [ 3 ]\nNot enough memory to load image\n");
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].way, MessageBoxWay::kConsole);
    EXPECT_EQ(boxes[0].kind, MessageBoxKind::kError);
    EXPECT_EQ(boxes[0].code, 3);
    EXPECT_EQ(boxes[0].text, "Can't read image file");
    EXPECT_EQ(boxes[0].shownText, "Can't read image file  [ 3 ]");
    EXPECT_EQ(boxes[1].shownText, "Not enough memory to load image");
}

TEST(MessageBoxConsole, NegativeNumbersOtherThanTheMarkerAreShown)
{
    ClearMessageBoxScript();
    testing::internal::CaptureStderr();
    ErrorBox("Error making movie!", -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error making movie!  [ -1 ]\n");
    EXPECT_EQ(TakeShownMessageBoxes().at(0).shownText, "Error making movie!  [ -1 ]");
}

TEST(MessageBoxConsole, YesNoBoxAnswersNo)
{
    ClearMessageBoxScript();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(YesNoBox("Are you sure?", "Delete Picture"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Delete Picture: Are you sure? (answered no)\n");
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].kind, MessageBoxKind::kYesNo);
    EXPECT_EQ(boxes[0].title, "Delete Picture");
    EXPECT_EQ(boxes[0].answer, kBoxNo);
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
}

TEST(MessageBoxConsole, YesNoCancelBoxAnswersCancel)
{
    ClearMessageBoxScript();
    testing::internal::CaptureStderr();
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxCancel);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "New Show: Do you want to save current show? (answered cancel)\n");
    EXPECT_EQ(TakeShownMessageBoxes().at(0).answer, kBoxCancel);
}

TEST(MessageBoxConsole, ScriptedAnswersWinOverTheDefaults)
{
    ClearMessageBoxScript();
    PushMessageBoxAnswer(kBoxYes);
    PushMessageBoxAnswer(kBoxNo);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(YesNoBox("Match moves to new Picture size?", "Match Moves"));
    EXPECT_EQ(YesNoCancelBox("Do you want to save current show?", "New Show"), kBoxNo);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].way, MessageBoxWay::kScripted);
    EXPECT_EQ(boxes[1].way, MessageBoxWay::kScripted);
}

TEST(MessageBoxConsole, NullTextsShowAsEmpty)
{
    ClearMessageBoxScript();
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_TRUE(YesNoBox(nullptr, nullptr));
    ShownMessageBox box = TakeShownMessageBoxes().at(0);
    EXPECT_EQ(box.text, "");
    EXPECT_EQ(box.title, "");
}

}  // namespace
