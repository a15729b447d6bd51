#pragma once

#include "ext_proto.h"

#include <cstdint>
#include <mutex>
#include <vector>

namespace vlk::host {

// The scheduler of the host's clocks. Its logical time is the audio's: each rendered vector adds its
// duration, and between renders time stands still. Clocks that are due run right after each vector on the
// audio thread, as a scheduler in the audio interrupt runs them, and on the main thread whenever it asks,
// after a script line; either way before the next vector. Any thread may set a clock.
class Scheduler
{
public:
    static Scheduler& instance();
    // True on a thread while it runs the clocks.
    static bool isRunningClocks();

    // A clock object of the host's class "clock"; freed with object_free, which unsets it.
    t_clock* createClock(void* owner, method function);
    void set(t_clock* clock, double when);
    void unset(t_clock* clock);
    // The clock's free method: it is unset and forgotten.
    void forget(t_clock* clock);
    double now();

    // Audio thread, after a vector.
    void advance(double milliseconds);
    // Runs the clocks that are due, in the order of their times, then of their setting; also those they set
    // for a time that is already due.
    void runDueClocks();

private:
    struct Entry
    {
        t_clock* clock;
        void* owner;
        method function;
        bool isSet = false;
        double when = 0.0;
        std::uint64_t order = 0;
    };

    Entry* find(t_clock* clock);
    // Takes the next due entry, unsetting it; false when none is due.
    bool takeNextDue(Entry& taken);

    // Held while clocks run, so that a clock freed meanwhile on another thread waits for them; recursive
    // because a clock's function sets and frees clocks.
    std::recursive_mutex lock;
    std::vector<Entry> entries;
    double time = 0.0;
    std::uint64_t settings = 0;
};

} // namespace vlk::host
