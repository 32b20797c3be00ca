#include "platform/base/scripted_answers.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

using Script = ScriptedAnswers<int, std::string>;

TEST(ScriptedAnswers, AnswersAreTakenOldestFirst)
{
    Script script;
    script.Push(1);
    script.Push(2);
    EXPECT_EQ(script.CountAnswers(), 2);
    int answer = 0;
    ASSERT_TRUE(script.Take(&answer));
    EXPECT_EQ(answer, 1);
    ASSERT_TRUE(script.Take(&answer));
    EXPECT_EQ(answer, 2);
    EXPECT_EQ(script.CountAnswers(), 0);
}

TEST(ScriptedAnswers, TakingFromAnEmptyQueueLeavesTheAnswerAlone)
{
    Script script;
    int answer = 7;
    EXPECT_FALSE(script.Take(&answer));
    EXPECT_EQ(answer, 7);
}

TEST(ScriptedAnswers, TakeRecordHandsBackOldestFirstAndForgets)
{
    Script script;
    script.Record("first");
    script.Record("second");
    EXPECT_EQ(script.LastRecorded(), "second");
    EXPECT_EQ(script.TakeRecord(), (std::vector<std::string>{"first", "second"}));
    EXPECT_TRUE(script.TakeRecord().empty());
    EXPECT_EQ(script.LastRecorded(), "");
    // Taking the record does not reset the count of questions asked.
    EXPECT_EQ(script.CountRecorded(), 2);
}

TEST(ScriptedAnswers, RecordKeepsTheLatestOnlyButCountsEvery)
{
    Script script;
    const int asked = int(kScriptRecordLimit) + 10;
    for (int i = 0; i < asked; ++i)
        script.Record(std::to_string(i));
    EXPECT_EQ(script.CountRecorded(), asked);
    std::vector<std::string> kept = script.TakeRecord();
    ASSERT_EQ(kept.size(), kScriptRecordLimit);
    EXPECT_EQ(kept.front(), "10");
    EXPECT_EQ(kept.back(), std::to_string(asked - 1));
}

TEST(ScriptedAnswers, ClearForgetsAnswersRecordAndCount)
{
    Script script;
    script.Push(1);
    script.Record("asked");
    script.Clear();
    EXPECT_EQ(script.CountAnswers(), 0);
    EXPECT_EQ(script.CountRecorded(), 0);
    EXPECT_TRUE(script.TakeRecord().empty());
}

TEST(ScriptedAnswers, AnotherThreadCanRecordWhileTheMainThreadTakes)
{
    Script script;
    constexpr int kEach = 2000;
    for (int i = 0; i < kEach; ++i)
        script.Push(i);
    std::thread other([&script] {
        for (int i = 0; i < kEach; ++i)
            script.Record("other");
    });
    int taken = 0;
    int answer = 0;
    while (script.Take(&answer))
        ++taken;
    other.join();
    EXPECT_EQ(taken, kEach);
    EXPECT_EQ(script.CountRecorded(), kEach);
}

}  // namespace
