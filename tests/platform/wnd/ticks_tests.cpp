// The tick clock.

#include "platform/wnd/ticks.h"

#include <gtest/gtest.h>
#include <chrono>

namespace {

TEST(Ticks, SixtyASecond)
{
    EXPECT_EQ(GetMilliTimeFreq(), 60);
    auto start = std::chrono::steady_clock::now();
    long first = GetMilliTime();
    while (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(120)) {
    }
    long later = GetMilliTime();
    // 120 ms is 7.2 ticks.
    EXPECT_GE(later - first, 6);
    EXPECT_LE(later - first, 9);
}

TEST(Ticks, NeverGoBack)
{
    long previous = GetMilliTime();
    for (int i = 0; i < 10000; ++i) {
        long now = GetMilliTime();
        ASSERT_GE(now, previous);
        previous = now;
    }
}

TEST(TickDelay, WaitsUntilTheTickCountHasPassed)
{
    long start = GetMilliTime();
    Delay(100, true);
    // 100 ms x 60 / 1000 = 6 ticks.
    EXPECT_GE(GetMilliTime() - start, 6);
    start = GetMilliTime();
    Delay(10, false);  // 0.6 ticks: truncated to none
    EXPECT_LE(GetMilliTime() - start, 1);
}

TEST(ElapsedTime, IsTicksTimesSixteenPointSixSeven)
{
    EXPECT_EQ(TicksToElapsedMilliseconds(0), 0u);
    EXPECT_EQ(TicksToElapsedMilliseconds(60), static_cast<uint32_t>(60 * 16.67f));
    EXPECT_EQ(TicksToElapsedMilliseconds(3600), 60012u);
    uint32_t now = GetElapsedTime();
    EXPECT_NEAR(static_cast<double>(now), GetMilliTime() * 16.67, 200.0);
}

TEST(ElapsedTime, SaturatesAtTheLargest32BitNumber)
{
    // 257,650,000 ticks would be 4,295,025,500 ms.
    EXPECT_EQ(TicksToElapsedMilliseconds(257650000L), 4294967295u);
    EXPECT_EQ(TicksToElapsedMilliseconds(1000000000L), 4294967295u);
    EXPECT_LT(TicksToElapsedMilliseconds(257000000L), 4294967295u);
}

}  // namespace
