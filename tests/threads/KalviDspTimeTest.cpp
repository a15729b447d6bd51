#include "threads/KalviDspTime.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <sys/time.h>
#include <thread>

namespace {

constexpr std::uint32_t maximum = 0xFFFFFFFFu;

TEST(MillisecondCounterRule, StepBackOfAtMostASecondKeepsTheLastValue)
{
    EXPECT_EQ(vlk::millisecondCounterToKeep(1500, 2000), 2000u);
    EXPECT_EQ(vlk::millisecondCounterToKeep(1000, 2000), 2000u);
    EXPECT_EQ(vlk::millisecondCounterToKeep(0, 1000), 1000u);
}

TEST(MillisecondCounterRule, LargerJumpBackReplacesTheLastValue)
{
    EXPECT_EQ(vlk::millisecondCounterToKeep(999, 2000), 999u);
    EXPECT_EQ(vlk::millisecondCounterToKeep(0, 1001), 0u);
}

TEST(MillisecondCounterRule, ForwardStepAndWrapReplaceTheLastValue)
{
    EXPECT_EQ(vlk::millisecondCounterToKeep(2001, 2000), 2001u);
    EXPECT_EQ(vlk::millisecondCounterToKeep(2000, 2000), 2000u);
    EXPECT_EQ(vlk::millisecondCounterToKeep(5, maximum - 10), 5u);
}

TEST(MillisecondCounterRule, CounterAdvancesWithTime)
{
    const std::uint32_t before = vlk::getMillisecondCounter();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_GE(vlk::getMillisecondCounter() - before, 30u);
}

TEST(WallClock, OffsetIsReadOnTheFirstCallEvenAtTheMaximumCounter)
{
    EXPECT_TRUE(vlk::wallClockOffsetIsStale(1234, maximum));
    EXPECT_TRUE(vlk::wallClockOffsetIsStale(maximum, maximum));
}

TEST(WallClock, OffsetIsReadAgainOnlyAfterAStepBackOfMoreThanTenMilliseconds)
{
    EXPECT_FALSE(vlk::wallClockOffsetIsStale(1000, 1010));
    EXPECT_TRUE(vlk::wallClockOffsetIsStale(1000, 1011));
    EXPECT_FALSE(vlk::wallClockOffsetIsStale(1011, 1000));
    EXPECT_TRUE(vlk::wallClockOffsetIsStale(3, maximum - 1));
}

TEST(WallClock, AgreesWithTheSystemWallClock)
{
    timeval now{};
    gettimeofday(&now, nullptr);
    const std::int64_t system = static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_usec / 1000;
    EXPECT_LT(std::llabs(vlk::getCurrentTimeMilliseconds() - system), 2000);
    // A second call runs on the stored offset.
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    gettimeofday(&now, nullptr);
    const std::int64_t later = static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_usec / 1000;
    EXPECT_LT(std::llabs(vlk::getCurrentTimeMilliseconds() - later), 2000);
}

} // namespace
