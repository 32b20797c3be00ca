#include "platform/task/task_queue.h"

#include <gtest/gtest.h>
#include <thread>

TEST(TaskQueue, HandsValuesBackInPostingOrder)
{
    TaskQueue queue;
    queue.Post(1);
    queue.Post(-1);
    queue.Post(7);
    int value = 0;
    ASSERT_TRUE(queue.Wait(&value));
    EXPECT_EQ(value, 1);
    ASSERT_TRUE(queue.Wait(&value));
    EXPECT_EQ(value, -1);
    ASSERT_TRUE(queue.Wait(&value));
    EXPECT_EQ(value, 7);
}

TEST(TaskQueue, WaitBlocksUntilAnotherThreadPosts)
{
    TaskQueue queue;
    int value = 0;
    std::thread poster([&queue] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        queue.Post(42);
    });
    EXPECT_TRUE(queue.Wait(&value));
    EXPECT_EQ(value, 42);
    poster.join();
}

TEST(TaskQueue, CloseMakesAWaitingThreadFail)
{
    TaskQueue queue;
    bool result = true;
    std::thread waiter([&queue, &result] {
        int value = 0;
        result = queue.Wait(&value);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    queue.Close();
    waiter.join();
    EXPECT_FALSE(result);
}

TEST(TaskQueue, ValuesPostedBeforeCloseAreStillTaken)
{
    TaskQueue queue;
    queue.Post(5);
    queue.Close();
    queue.Post(6);  // dropped
    int value = 0;
    EXPECT_TRUE(queue.Wait(&value));
    EXPECT_EQ(value, 5);
    EXPECT_FALSE(queue.Wait(&value));
}
