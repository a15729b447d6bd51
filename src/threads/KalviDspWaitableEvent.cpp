#include "threads/KalviDspWaitableEvent.h"

#include <time.h>

namespace vlk {

namespace {

// Unlocks on every way out of a wait, the forced unwinding of a cancelled thread included: a cancelled
// pthread_cond_wait takes the mutex back before the thread unwinds.
class MutexUnlocker
{
public:
    explicit MutexUnlocker(pthread_mutex_t& mutex) : mutex(mutex) {}
    ~MutexUnlocker() { pthread_mutex_unlock(&mutex); }
    MutexUnlocker(const MutexUnlocker&) = delete;
    MutexUnlocker& operator=(const MutexUnlocker&) = delete;

private:
    pthread_mutex_t& mutex;
};

timespec getDeadlineAfter(int timeoutMilliseconds)
{
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += timeoutMilliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(timeoutMilliseconds % 1000) * 1000000;
    if (deadline.tv_nsec >= 1000000000) {
        deadline.tv_sec += 1;
        deadline.tv_nsec -= 1000000000;
    }
    return deadline;
}

} // namespace

WaitableEvent::WaitableEvent()
{
    // The monotonic clock, so that setting the wall clock neither stretches nor cuts a wait short.
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&condition, &attributes);
    pthread_condattr_destroy(&attributes);
    pthread_mutex_init(&mutex, nullptr);
}

WaitableEvent::~WaitableEvent()
{
    pthread_cond_destroy(&condition);
    pthread_mutex_destroy(&mutex);
}

bool WaitableEvent::wait(int timeoutMilliseconds)
{
    pthread_mutex_lock(&mutex);
    const MutexUnlocker unlocker(mutex);
    // The loops sleep again after a spurious wake-up, which would otherwise end a wait early.
    if (timeoutMilliseconds < 0) {
        while (!triggered)
            pthread_cond_wait(&condition, &mutex);
    } else {
        const timespec deadline = getDeadlineAfter(timeoutMilliseconds);
        while (!triggered && pthread_cond_timedwait(&condition, &mutex, &deadline) == 0) {
        }
    }
    triggered = false;
    return true;
}

void WaitableEvent::signal()
{
    pthread_mutex_lock(&mutex);
    triggered = true;
    pthread_cond_signal(&condition);
    pthread_mutex_unlock(&mutex);
}

} // namespace vlk
