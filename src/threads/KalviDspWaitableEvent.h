#pragma once

#include <atomic>
#include <semaphore.h>

namespace vlk {

// A flag that one thread waits for and another sets. A signal given while nobody waits is kept and ends
// the next wait at once; several signals before a wait ends count as one. Signalling takes no lock, so the
// audio thread may wake a waiter.
class WaitableEvent
{
public:
    WaitableEvent();
    ~WaitableEvent();
    WaitableEvent(const WaitableEvent&) = delete;
    WaitableEvent& operator=(const WaitableEvent&) = delete;

    // Blocks until signalled or until the time-out (negative: for ever), then clears the flag. Returns true
    // either way: a time-out and a signal are not told apart. A cancellation point.
    bool wait(int timeoutMilliseconds);
    // Sets the flag and wakes the waiter; never blocks.
    void signal();

private:
    // Holds one count while the flag is set.
    sem_t semaphore;
    std::atomic<bool> triggered{false};
};

} // namespace vlk
