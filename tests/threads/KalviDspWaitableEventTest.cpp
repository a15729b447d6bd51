#include "threads/KalviDspWaitableEvent.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

long long millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

TEST(WaitableEventWait, TimeOutReturnsTrueAfterTheTimeOut)
{
    vlk::WaitableEvent event;
    const auto start = Clock::now();
    EXPECT_TRUE(event.wait(50));
    EXPECT_GE(millisecondsSince(start), 50);
}

TEST(WaitableEventWait, TimeOutJustBelowASecondCarriesIntoTheSeconds)
{
    // Unless the clock stands in its first millisecond, 999 ms of nanoseconds overflow the deadline's
    // nanosecond field; a deadline left uncarried would end the wait at once.
    vlk::WaitableEvent event;
    const auto start = Clock::now();
    EXPECT_TRUE(event.wait(999));
    EXPECT_GE(millisecondsSince(start), 999);
}

TEST(WaitableEventSignal, SignalGivenWhileNobodyWaitsEndsTheNextWaitAtOnce)
{
    vlk::WaitableEvent event;
    event.signal();
    const auto start = Clock::now();
    EXPECT_TRUE(event.wait(10000));
    EXPECT_LT(millisecondsSince(start), 5000);
}

TEST(WaitableEventSignal, WaitConsumesTheSignalAndSeveralCountAsOne)
{
    vlk::WaitableEvent event;
    event.signal();
    event.signal();
    event.wait(10000);
    const auto start = Clock::now();
    event.wait(50);
    EXPECT_GE(millisecondsSince(start), 50);
}

TEST(WaitableEventSignal, WakesAWaiterWithoutTimeLimit)
{
    vlk::WaitableEvent event;
    std::atomic<bool> woken{false};
    std::thread waiter([&] {
        event.wait(-1);
        woken = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    event.signal();
    waiter.join();
    EXPECT_TRUE(woken);
}

} // namespace
