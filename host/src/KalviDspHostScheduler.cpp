#include "KalviDspHostScheduler.h"

#include "KalviDspHostClass.h"

#include "ext_obex.h"
#include "ext_systhread.h"

#include <algorithm>

namespace vlk::host {
namespace {

thread_local bool runningClocks = false;

using Lock = std::lock_guard<std::recursive_mutex>;

void freeClock(t_clock* clock)
{
    Scheduler::instance().forget(clock);
}

t_class* clockClass()
{
    static t_class* c = makeHostClass("clock", sizeof(t_object), reinterpret_cast<method>(freeClock));
    return c;
}

} // namespace

Scheduler& Scheduler::instance()
{
    static Scheduler scheduler;
    return scheduler;
}

bool Scheduler::isRunningClocks()
{
    return runningClocks;
}

t_clock* Scheduler::createClock(void* owner, method function)
{
    t_clock* clock = object_alloc(clockClass());
    if (clock == nullptr)
        return nullptr;
    const Lock guard(lock);
    entries.push_back({clock, owner, function});
    return clock;
}

Scheduler::Entry* Scheduler::find(t_clock* clock)
{
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [clock](const Entry& entry) { return entry.clock == clock; });
    return found == entries.end() ? nullptr : &*found;
}

void Scheduler::set(t_clock* clock, double when)
{
    const Lock guard(lock);
    if (Entry* entry = find(clock)) {
        entry->isSet = true;
        entry->when = when;
        entry->order = settings++;
    }
}

void Scheduler::unset(t_clock* clock)
{
    const Lock guard(lock);
    if (Entry* entry = find(clock))
        entry->isSet = false;
}

void Scheduler::forget(t_clock* clock)
{
    const Lock guard(lock);
    std::erase_if(entries, [clock](const Entry& entry) { return entry.clock == clock; });
}

double Scheduler::now()
{
    const Lock guard(lock);
    return time;
}

void Scheduler::advance(double milliseconds)
{
    const Lock guard(lock);
    time += milliseconds;
}

bool Scheduler::takeNextDue(Entry& taken)
{
    Entry* next = nullptr;
    for (Entry& entry : entries)
        if (entry.isSet && entry.when <= time &&
            (next == nullptr || entry.when < next->when ||
             (entry.when == next->when && entry.order < next->order)))
            next = &entry;
    if (next == nullptr)
        return false;
    next->isSet = false;
    taken = *next;
    return true;
}

void Scheduler::runDueClocks()
{
    const Lock guard(lock);
    const bool wasRunning = runningClocks;
    runningClocks = true;
    for (Entry due{}; takeNextDue(due);)
        reinterpret_cast<void (*)(void*)>(due.function)(due.owner);
    runningClocks = wasRunning;
}

} // namespace vlk::host

using vlk::host::Scheduler;

t_clock* clock_new(void* obj, method fn)
{
    return Scheduler::instance().createClock(obj, fn);
}

void clock_set(t_clock* x, long when)
{
    Scheduler::instance().set(x, static_cast<double>(when));
}

void clock_delay(t_clock* x, long n)
{
    clock_fdelay(x, static_cast<double>(n));
}

void clock_unset(t_clock* x)
{
    Scheduler::instance().unset(x);
}

void clock_fset(t_clock* x, double when)
{
    Scheduler::instance().set(x, when);
}

void clock_fdelay(t_clock* x, double f)
{
    Scheduler& scheduler = Scheduler::instance();
    scheduler.set(x, scheduler.now() + f);
}

void clock_getftime(double* time)
{
    if (time != nullptr)
        *time = Scheduler::instance().now();
}

long gettime(void)
{
    return static_cast<long>(Scheduler::instance().now());
}

short systhread_istimerthread(void)
{
    return Scheduler::isRunningClocks() ? 1 : 0;
}
