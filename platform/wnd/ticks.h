#pragma once
// The tick clock: sixtieths of a second from a monotonic clock, counted from system start.
// Despite the names, GetMilliTime counts ticks; every caller divides by GetMilliTimeFreq.

#include <cstdint>

// The tick count.
long GetMilliTime();
// Ticks per second: 60.
long GetMilliTimeFreq();
// Busy-waits until the tick count reaches its start + ms x 60 / 1000 (truncated). The second
// argument is ignored.
void Delay(long ms, bool ignored);
// Milliseconds since system start as an unsigned 32-bit number (see TicksToElapsedMilliseconds).
uint32_t GetElapsedTime();
// ticks x 16.67 in single precision, saturating at 4,294,967,295: the elapsed time is derived
// from the tick count, not read separately, so both clocks agree.
uint32_t TicksToElapsedMilliseconds(long ticks);
