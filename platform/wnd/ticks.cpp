#include "platform/wnd/ticks.h"

#include <chrono>
#include <thread>

namespace {
constexpr long kTicksPerSecond = 60;
}

long GetMilliTime()
{
    // steady_clock is the monotonic clock, which on this platform counts from system start.
    auto since = std::chrono::steady_clock::now().time_since_epoch();
    auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(since).count();
    return static_cast<long>(microseconds * kTicksPerSecond / 1000000);
}

long GetMilliTimeFreq() { return kTicksPerSecond; }

void Delay(long ms, bool)
{
    long end = GetMilliTime() + ms * kTicksPerSecond / 1000;
    while (GetMilliTime() < end)
        std::this_thread::yield();
}

uint32_t TicksToElapsedMilliseconds(long ticks)
{
    // 16.67 ms a tick in single precision, as the clock was always read; 2^32 is the first float
    // that no longer fits.
    float ms = static_cast<float>(ticks) * 16.67f;
    if (ms >= 4294967296.0f)
        return 0xFFFFFFFFu;
    if (ms <= 0.0f)
        return 0;
    return static_cast<uint32_t>(ms);
}

uint32_t GetElapsedTime() { return TicksToElapsedMilliseconds(GetMilliTime()); }
