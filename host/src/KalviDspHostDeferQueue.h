#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace vlk::host {

// The main thread's queue of deferred calls. Any thread may queue; only the main thread drains.
class DeferQueue
{
public:
    static DeferQueue& instance();

    // The main thread is the one that loaded the host, unless a program names another.
    static bool isMainThread();
    static void setMainThread();

    void pushFront(std::function<void()> call);
    void pushBack(std::function<void()> call);
    // Runs the queued calls in order, also those they queue, on the calling thread; returns how many ran.
    // Stops after a million, so that a call that always queues itself again cannot hang the caller.
    int drain();
    // Returns once a call is queued or wake is called (since the last wait), or after the time-out.
    void waitForWork(std::chrono::milliseconds timeout);
    void wake();

private:
    std::function<void()> takeFront();

    // Guards calls and woken.
    std::mutex lock;
    std::condition_variable changed;
    std::deque<std::function<void()>> calls;
    bool woken = false;
};

} // namespace vlk::host
