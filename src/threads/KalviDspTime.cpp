#include "threads/KalviDspTime.h"

#include <atomic>
#include <limits>
#include <mutex>
#include <sys/time.h>
#include <time.h>

namespace vlk {

namespace {

std::uint64_t getMonotonicMicroseconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

std::int64_t getWallClockMilliseconds()
{
    timeval now{};
    gettimeofday(&now, nullptr);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_usec / 1000;
}

} // namespace

std::uint32_t millisecondCounterToKeep(std::uint32_t counter, std::uint32_t last)
{
    return counter < last && last - counter <= 1000 ? last : counter;
}

bool wallClockOffsetIsStale(std::uint32_t counter, std::uint32_t last)
{
    return last == std::numeric_limits<std::uint32_t>::max() || (counter < last && last - counter > 10);
}

std::uint32_t getMillisecondCounter()
{
    // Callers racing on the stored value lose nothing: each store is a counter reading of its own.
    static std::atomic<std::uint32_t> lastCounter{0};
    const auto counter = static_cast<std::uint32_t>(getMonotonicMicroseconds() / 1000);
    lastCounter.store(millisecondCounterToKeep(counter, lastCounter.load(std::memory_order_relaxed)),
                      std::memory_order_relaxed);
    return counter;
}

std::int64_t getCurrentTimeMilliseconds()
{
    // The offset and the counter it was taken with change together.
    static std::mutex clockLock;
    static std::uint32_t lastCounter = std::numeric_limits<std::uint32_t>::max();
    static std::int64_t offset = 0;

    const std::lock_guard<std::mutex> guard(clockLock);
    const std::uint32_t counter = getMillisecondCounter();
    if (wallClockOffsetIsStale(counter, lastCounter))
        offset = getWallClockMilliseconds() - counter;
    lastCounter = counter;
    return counter + offset;
}

} // namespace vlk
