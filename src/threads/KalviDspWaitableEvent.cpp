#include "threads/KalviDspWaitableEvent.h"

#include <cerrno>
#include <time.h>

namespace vlk {

namespace {

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
    sem_init(&semaphore, 0, 0);
}

WaitableEvent::~WaitableEvent()
{
    sem_destroy(&semaphore);
}

// Both waits are cancellation points. The monotonic clock, so that setting the wall clock neither stretches
// nor cuts a wait short; an interrupted wait sleeps again.
bool WaitableEvent::wait(int timeoutMilliseconds)
{
    int result = 0;
    if (timeoutMilliseconds < 0) {
        while ((result = sem_wait(&semaphore)) != 0 && errno == EINTR) {
        }
    } else {
        const timespec deadline = getDeadlineAfter(timeoutMilliseconds);
        while ((result = sem_clockwait(&semaphore, CLOCK_MONOTONIC, &deadline)) != 0 && errno == EINTR) {
        }
    }
    // Cleared only with the count taken, so that flag and count agree. A signal that comes between the
    // wake-up and this line counts with the one that woke the wait.
    if (result == 0)
        triggered.store(false, std::memory_order_release);
    return true;
}

void WaitableEvent::signal()
{
    if (!triggered.exchange(true, std::memory_order_acq_rel))
        sem_post(&semaphore);
}

} // namespace vlk
