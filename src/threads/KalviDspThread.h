#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <pthread.h>

namespace vlk {

class WaitableEvent;

// A background thread with a cooperative stop and a cancel after a time-out. A subclass puts its body in
// run, and stops the thread in its own destructor, while run still exists. A body must catch every
// exception it raises: one that leaves run ends the process.
class Thread
{
public:
    explicit Thread(const String& name);
    virtual ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    // Starts the body unless it runs already; either way clears the exit request. A failure to create the
    // thread leaves it idle without a word.
    void startThread();
    // Asks the body to return and gives it the time-out to do so, in steps of 5 milliseconds; then cancels
    // it. True when it ended by itself or never ran, false when it was cancelled. Never from the body.
    bool stopThread(int timeoutMilliseconds);
    void signalThreadShouldExit();
    bool threadShouldExit() const;
    // Ends the body's current or next wait.
    void notify();
    // For the body: sleeps until notified or until the time-out (negative: for ever). Always true.
    bool wait(int timeoutMilliseconds);
    // The running thread, 0 when idle.
    pthread_t getThreadId() const;

    // The process-wide registry of started threads, taken after a Thread's own start-stop lock. Hold
    // threadListLock while reading runningThreads.
    static std::recursive_mutex& threadListLock();
    static const Vector<Thread*>& runningThreads();

protected:
    // The body, on the new thread.
    virtual void run() = 0;

private:
    struct Launch;

    static void* threadEntry(void* handedLaunch);
    static bool enter(Launch& launch);
    static bool wasCancelled(Launch& launch);
    static void leave(Launch& launch);
    void createThread();
    bool cancelUnlessEnded();
    static void joinCancelledThread(pthread_t handle);
    static Vector<Thread*>& registry();
    static void removeFromRunningThreads(Thread& thread);

    String threadName;
    std::atomic<pthread_t> threadHandle{0};
    // Serialises startThread and stopThread.
    std::recursive_mutex startStopLock;
    std::unique_ptr<WaitableEvent> startSignal;
    std::unique_ptr<WaitableEvent> defaultEvent;
    std::atomic<pthread_t> threadId{0};
    // The exit request; the name threadShouldExit belongs to its query.
    std::atomic<bool> exitRequested{false};
    // Shared with the thread of the latest start. Under startStopLock.
    std::shared_ptr<Launch> launch;
};

} // namespace vlk
