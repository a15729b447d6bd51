#pragma once

#include <pthread.h>

namespace vlk {

// A flag that one thread waits for and another sets. A signal given while nobody waits is kept and ends
// the next wait at once; several signals before a wait count as one.
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
    // Sets the flag and wakes one waiter.
    void signal();

private:
    pthread_cond_t condition;
    pthread_mutex_t mutex;
    // Under mutex.
    bool triggered = false;
};

} // namespace vlk
