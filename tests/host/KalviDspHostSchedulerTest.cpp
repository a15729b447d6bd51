#include "KalviDspHostScheduler.h"

#include "ext.h"
#include "ext_systhread.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vlk::host::test {
namespace {

struct Tick
{
    std::string name;
    std::vector<std::string>* log;
    t_clock* clock = nullptr;
    t_clock* toSetAgain = nullptr;
    t_clock* toFree = nullptr;
};

void tick(Tick* t)
{
    t->log->push_back(t->name + (systhread_istimerthread() != 0 ? "@timer" : "@other"));
    if (t->toSetAgain != nullptr)
        clock_delay(t->toSetAgain, 0);
    if (t->toFree != nullptr) {
        freeobject(t->toFree);
        t->toFree = nullptr;
    }
}

t_clock* newClock(Tick& t)
{
    t.clock = clock_new(&t, reinterpret_cast<method>(tick));
    return t.clock;
}

// Clocks go off in the order of their times, then of their setting, once the audio's time reaches them.
TEST(HostScheduler, ClocksRunInTheOrderOfTheirTimesAsTheAudiosTimeReachesThem)
{
    Scheduler& scheduler = Scheduler::instance();
    std::vector<std::string> log;
    Tick late{"late", &log}, soon{"soon", &log}, sameTime{"same", &log}, unset{"unset", &log};
    newClock(late);
    newClock(soon);
    newClock(sameTime);
    newClock(unset);
    clock_fdelay(late.clock, 10.0);
    clock_fdelay(soon.clock, 2.5);
    clock_fdelay(sameTime.clock, 2.5);
    clock_delay(unset.clock, 1);
    clock_unset(unset.clock);
    scheduler.runDueClocks();
    EXPECT_EQ(log, std::vector<std::string>{});
    scheduler.advance(5.0);
    scheduler.runDueClocks();
    scheduler.advance(5.0);
    scheduler.runDueClocks();
    EXPECT_EQ(log, (std::vector<std::string>{"soon@timer", "same@timer", "late@timer"}));
    EXPECT_EQ(systhread_istimerthread(), 0);
    for (Tick* t : {&late, &soon, &sameTime, &unset})
        freeobject(t->clock);
}

// A clock set for now from a clock runs in the same pass; one freed by another's function never runs.
TEST(HostScheduler, ClocksSetOrFreedByAClockTakeEffectAtOnce)
{
    Scheduler& scheduler = Scheduler::instance();
    std::vector<std::string> log;
    Tick first{"first", &log}, echo{"echo", &log}, doomed{"doomed", &log};
    newClock(first);
    newClock(echo);
    newClock(doomed);
    first.toSetAgain = echo.clock;
    first.toFree = doomed.clock;
    clock_delay(first.clock, 0);
    clock_delay(doomed.clock, 0);
    scheduler.runDueClocks();
    EXPECT_EQ(log, (std::vector<std::string>{"first@timer", "echo@timer"}));
    freeobject(first.clock);
    freeobject(echo.clock);
}

} // namespace
} // namespace vlk::host::test
