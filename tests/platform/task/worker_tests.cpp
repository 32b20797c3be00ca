#include "platform/task/worker.h"

#include <gtest/gtest.h>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// Every test leaves the process without a worker, whatever it did.
class Worker : public testing::Test {
protected:
    void TearDown() override { CloseMP(); }
};

// An argument block as the camera filters fill one: what to do and where the results go.
struct FillJob {
    int* target;
    int first;
    int last;  // one past the final index
    std::thread::id* ranOn;
    unsigned char tail[256 - sizeof(int*) - 2 * sizeof(int) - sizeof(std::thread::id*)];
};
static_assert(sizeof(FillJob) == kTaskArgumentSize);

int FillValues(void* arguments)
{
    FillJob* job = static_cast<FillJob*>(arguments);
    for (int i = job->first; i < job->last; i++)
        job->target[i] = (i ^ (i >> 3)) * 7 + 11;
    if (job->ranOn)
        *job->ranOn = std::this_thread::get_id();
    return 1;
}

struct CopyCheck {
    const void* seenAddress;
    unsigned char seenBytes[kTaskArgumentSize];
};
CopyCheck gCopyCheck;

int RecordArguments(void* arguments)
{
    gCopyCheck.seenAddress = arguments;
    std::memcpy(gCopyCheck.seenBytes, arguments, kTaskArgumentSize);
    // Writing into the copy must not reach the caller's block.
    std::memset(arguments, 0xEE, kTaskArgumentSize);
    return 0;
}

int gCalls = 0;
int CountCall(void*)
{
    gCalls++;
    return 0;
}

}  // namespace

TEST_F(Worker, OneProcessorMakesNoWorker)
{
    EXPECT_FALSE(InitMPWithProcessors(1));
    EXPECT_FALSE(gCanMultiProcess);
    EXPECT_EQ(gTaskData, nullptr);
    EXPECT_EQ(gNotificationQueue, nullptr);
    EXPECT_FALSE(InitMPWithProcessors(0));
    EXPECT_FALSE(gCanMultiProcess);
}

TEST_F(Worker, TwoProcessorsMakeTheWorkerAndItsQueues)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    EXPECT_TRUE(gCanMultiProcess);
    ASSERT_NE(gTaskData, nullptr);
    EXPECT_NE(gTaskData->task, nullptr);
    EXPECT_NE(gTaskData->requests, nullptr);
    EXPECT_NE(gTaskData->results, nullptr);
    EXPECT_NE(gNotificationQueue, nullptr);
}

TEST_F(Worker, InitMPFollowsTheMachinesProcessorCount)
{
    bool several = std::thread::hardware_concurrency() > 1;
    EXPECT_EQ(InitMP(), several);
    EXPECT_EQ(gCanMultiProcess, several);
    EXPECT_EQ(gTaskData != nullptr, several);
}

TEST_F(Worker, StartAndStopTwiceInARowLeavesNothingBehind)
{
    for (int round = 0; round < 2; round++) {
        ASSERT_TRUE(InitMPWithProcessors(2));
        gCalls = 0;
        char block[kTaskArgumentSize] = {};
        _beginthread(CountCall, 0, block);
        Sleep(0);
        EXPECT_EQ(gCalls, 1);
        CloseMP();
        EXPECT_FALSE(gCanMultiProcess);
        EXPECT_EQ(gTaskData, nullptr);
        EXPECT_EQ(gNotificationQueue, nullptr);
    }
    CloseMP();  // a second stop does nothing
    EXPECT_EQ(gTaskData, nullptr);
}

TEST_F(Worker, StartingAgainReplacesTheRunningWorker)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    ASSERT_TRUE(InitMPWithProcessors(4));  // the first worker is stopped and freed, not leaked
    ASSERT_NE(gTaskData, nullptr);
    EXPECT_TRUE(gCanMultiProcess);
    gCalls = 0;
    char block[kTaskArgumentSize] = {};
    _beginthread(CountCall, 0, block);
    Sleep(0);
    EXPECT_EQ(gCalls, 1);
}

TEST_F(Worker, FunctionRunsOnTheWorkerThread)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    std::vector<int> values(8, 0);
    std::thread::id ranOn;
    FillJob job = {values.data(), 0, 8, &ranOn, {}};
    EXPECT_EQ(_beginthread(FillValues, 0, &job), 0);
    Sleep(0);
    EXPECT_NE(ranOn, std::this_thread::get_id());
    EXPECT_EQ(values[7], (7 ^ 0) * 7 + 11);
}

TEST_F(Worker, ArgumentsAre256BytesCopiedWhole)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    unsigned char block[kTaskArgumentSize];
    for (int i = 0; i < kTaskArgumentSize; i++)
        block[i] = static_cast<unsigned char>(i * 7 + 3);
    _beginthread(RecordArguments, 0x12345678, block);
    Sleep(0);
    EXPECT_EQ(gCopyCheck.seenAddress, gTaskData->arguments);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(gCopyCheck.seenAddress) % alignof(std::max_align_t), 0u);
    EXPECT_NE(gCopyCheck.seenAddress, static_cast<const void*>(block));
    EXPECT_EQ(std::memcmp(gCopyCheck.seenBytes, block, kTaskArgumentSize), 0);
    EXPECT_EQ(gCopyCheck.seenBytes[255], 252);  // the last byte came along too
    EXPECT_EQ(block[0], 3);                     // the worker's writes stayed in its copy
    EXPECT_EQ(gTaskData->word, 0x12345678u);
}

TEST_F(Worker, SplitJobMatchesTheWholeJobOnOneThread)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    constexpr int kCount = 100001;
    std::vector<int> whole(kCount, -1);
    std::vector<int> split(kCount, -1);

    FillJob all = {whole.data(), 0, kCount, nullptr, {}};
    FillValues(&all);

    // The worker takes the first half, the caller the rest, as the camera filters split rows.
    FillJob workerHalf = {split.data(), 0, kCount / 2, nullptr, {}};
    FillJob callerHalf = {split.data(), kCount / 2, kCount, nullptr, {}};
    _beginthread(FillValues, 0, &workerHalf);
    FillValues(&callerHalf);
    Sleep(0);
    EXPECT_EQ(split, whole);
}

TEST_F(Worker, ManyRequestsInSequenceEachRunOnce)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    gCalls = 0;
    char block[kTaskArgumentSize] = {};
    for (int i = 0; i < 50; i++) {
        _beginthread(CountCall, 0, block);
        Sleep(0);
    }
    EXPECT_EQ(gCalls, 50);
}

TEST_F(Worker, SleepWithNothingOutstandingReturnsAtOnce)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    Sleep(0);
    Sleep(1000);
    EXPECT_FALSE(gTaskData->outstanding);
}

TEST_F(Worker, SecondRequestWaitsForTheFirstInsteadOfOverwritingIt)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    gCalls = 0;
    char block[kTaskArgumentSize] = {};
    _beginthread(CountCall, 0, block);
    _beginthread(CountCall, 0, block);
    Sleep(0);
    Sleep(0);  // nothing left: must not block
    EXPECT_EQ(gCalls, 2);
}

TEST_F(Worker, StopWaitsForAnUnfinishedRequest)
{
    ASSERT_TRUE(InitMPWithProcessors(2));
    gCalls = 0;
    char block[kTaskArgumentSize] = {};
    _beginthread(CountCall, 0, block);
    CloseMP();
    EXPECT_EQ(gCalls, 1);
    EXPECT_EQ(gTaskData, nullptr);
}

TEST_F(Worker, WithoutAWorkerTheFunctionRunsOnTheCaller)
{
    EXPECT_FALSE(InitMPWithProcessors(1));
    std::vector<int> values(4, 0);
    std::thread::id ranOn;
    FillJob job = {values.data(), 0, 4, &ranOn, {}};
    EXPECT_EQ(_beginthread(FillValues, 0, &job), 0);
    Sleep(0);
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    EXPECT_EQ(values[3], 3 * 7 + 11);
}

TEST(TaskMP, RunsRequestOneAndAnswersZeroThenEndsOnAnyOtherValue)
{
    TaskQueue requests;
    TaskQueue results;
    TaskData block{};
    block.requests = &requests;
    block.results = &results;
    block.function = CountCall;
    gCalls = 0;
    int exitCode = 0;
    std::thread task([&block, &exitCode] { exitCode = TaskMP(&block); });
    requests.Post(1);
    int answer = 99;
    ASSERT_TRUE(results.Wait(&answer));
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(gCalls, 1);
    requests.Post(7);
    ASSERT_TRUE(results.Wait(&answer));
    EXPECT_EQ(answer, -1);
    task.join();
    EXPECT_EQ(exitCode, -1);
    EXPECT_EQ(gCalls, 1);
}

TEST(TaskMP, EndsWithTheErrorWhenTheWaitFails)
{
    TaskQueue requests;
    TaskQueue results;
    TaskData block{};
    block.requests = &requests;
    block.results = &results;
    requests.Close();
    EXPECT_EQ(TaskMP(&block), kTaskWaitFailed);
}

TEST(WorkerGlobals, StartCleared)
{
    EXPECT_FALSE(gMultiProcess);
    EXPECT_EQ(gMultiProcOffset, 0);
}
