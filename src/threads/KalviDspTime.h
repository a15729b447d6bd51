#pragma once

#include <cstdint>

namespace vlk {

// Milliseconds of a monotonic clock, in 32 bits: it wraps after about 49 days. Any thread.
std::uint32_t getMillisecondCounter();

// Milliseconds since 1970 of the wall clock, advanced by the millisecond counter between readings of the
// wall clock. Any thread.
std::int64_t getCurrentTimeMilliseconds();

// The counter's stored value after reading counter: a step back of at most a second is jitter and keeps
// last; anything else, a larger jump back or a wrap included, replaces it.
std::uint32_t millisecondCounterToKeep(std::uint32_t counter, std::uint32_t last);

// True when the wall clock must be read again: on the first call (last is the maximum, its starting value)
// and when the counter went back by more than 10 milliseconds, which its wrap does too.
bool wallClockOffsetIsStale(std::uint32_t counter, std::uint32_t last);

} // namespace vlk
