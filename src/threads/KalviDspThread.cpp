#include "threads/KalviDspThread.h"

#include "threads/KalviDspWaitableEvent.h"

#include <algorithm>
#include <new>
#include <time.h>

// Cancellation. The cancel of stopThread stays deferred: a body ends only at a cancellation point (a wait,
// nanosleep, read, ...), where glibc unwinds its stack and runs its destructors. A body must therefore
// neither swallow that unwinding in a catch (...) that does not rethrow, nor let it cross a noexcept
// function: either ends the process. Once cancelled, the thread no longer owns its bookkeeping: stopThread
// clears handle, id and registry entry itself, and the Launch lock decides which side does it when the body
// ends just as the cancel comes. For the same reason the thread is created joinable and detaches itself only
// when it ends on its own: stopThread joins a cancelled one, for a second at most, so that the Thread may be
// destroyed as soon as stopThread returns; only a body that never reaches a cancellation point outlasts it.

namespace vlk {

namespace {

constexpr int startSignalTimeoutMilliseconds = 10000;
constexpr time_t cancelGraceSeconds = 1;
constexpr long pollStepNanoseconds = 5000000;
constexpr std::size_t maximumNameLength = 15;

// The kernel keeps 15 bytes of a name; the cut moves back to the start of a UTF-8 character.
void nameCurrentThread(const String& name)
{
    std::size_t length = std::min(name.size(), maximumNameLength);
    while (length > 0 && length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80)
        --length;
    pthread_setname_np(pthread_self(), name.substr(0, length).c_str());
}

} // namespace

// What one start shares with the thread it creates. The thread holds it to its very end, so it outlives a
// Thread destroyed while a cancelled body still unwinds past the grace of the join.
struct Thread::Launch
{
    explicit Launch(Thread& thread) : thread(thread) {}

    Thread& thread;
    // Held by the thread while it writes its bookkeeping, and by stopThread when it decides to cancel.
    std::mutex lock;
    // Under lock: stopThread took the bookkeeping over.
    bool cancelled = false;
};

Thread::Thread(const String& name)
    : threadName(name), startSignal(std::make_unique<WaitableEvent>()),
      defaultEvent(std::make_unique<WaitableEvent>())
{
}

Thread::~Thread()
{
    stopThread(100);
}

void Thread::startThread()
{
    const std::lock_guard<std::recursive_mutex> guard(startStopLock);
    exitRequested = false;
    if (threadHandle == 0) {
        createThread();
        startSignal->signal();
    }
}

bool Thread::stopThread(int timeoutMilliseconds)
{
    const std::lock_guard<std::recursive_mutex> guard(startStopLock);
    if (threadHandle == 0)
        return true;
    signalThreadShouldExit();
    notify();
    for (int step = 0; step < timeoutMilliseconds / 5 && threadHandle != 0; ++step) {
        const timespec pollStep{0, pollStepNanoseconds};
        nanosleep(&pollStep, nullptr);
    }
    return !cancelUnlessEnded();
}

void Thread::signalThreadShouldExit()
{
    exitRequested = true;
}

bool Thread::threadShouldExit() const
{
    return exitRequested;
}

void Thread::notify()
{
    defaultEvent->signal();
}

bool Thread::wait(int timeoutMilliseconds)
{
    return defaultEvent->wait(timeoutMilliseconds);
}

pthread_t Thread::getThreadId() const
{
    return threadId;
}

std::recursive_mutex& Thread::threadListLock()
{
    // Never destroyed, so that a thread still ending while the process exits finds it.
    static auto* lock = new std::recursive_mutex;
    return *lock;
}

const Vector<Thread*>& Thread::runningThreads()
{
    return registry();
}

Vector<Thread*>& Thread::registry()
{
    // Under threadListLock; never destroyed, like the lock.
    static auto* threads = new Vector<Thread*>;
    return *threads;
}

void Thread::removeFromRunningThreads(Thread& thread)
{
    const std::lock_guard<std::recursive_mutex> guard(threadListLock());
    Vector<Thread*>& threads = registry();
    const auto found = std::find(threads.begin(), threads.end(), &thread);
    if (found != threads.end())
        threads.removeAt(static_cast<std::size_t>(found - threads.begin()));
}

// Under startStopLock. A failure, for want of memory too, leaves the Thread idle without a word.
void Thread::createThread()
{
    try {
        auto newLaunch = std::make_shared<Launch>(*this);
        auto handedLaunch = std::make_unique<std::shared_ptr<Launch>>(newLaunch);
        // The new thread takes this lock first, so it never finds the handle unset.
        const std::lock_guard<std::mutex> launchGuard(newLaunch->lock);
        pthread_t handle{};
        if (pthread_create(&handle, nullptr, threadEntry, handedLaunch.get()) != 0)
            return;
        handedLaunch.release();
        launch = newLaunch;
        threadHandle = handle;
        threadId = handle;
    } catch (const std::bad_alloc&) {
    }
}

// Under startStopLock. False when the body ended by itself before the cancel could be given.
bool Thread::cancelUnlessEnded()
{
    {
        const std::lock_guard<std::mutex> launchGuard(launch->lock);
        if (threadHandle == 0)
            return false;
        // The thread takes this lock before it clears the handle and detaches itself: the handle is valid.
        launch->cancelled = true;
        pthread_cancel(threadHandle);
    }
    const pthread_t handle = threadHandle.exchange(0);
    threadId = 0;
    removeFromRunningThreads(*this);
    joinCancelledThread(handle);
    return true;
}

// Waits for the unwinding of a cancel to end; a thread that outlasts the grace is left to end on its own.
void Thread::joinCancelledThread(pthread_t handle)
{
    // The join takes a deadline of the wall clock, which a clock change may stretch or cut: a grace only.
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += cancelGraceSeconds;
    if (pthread_timedjoin_np(handle, nullptr, &deadline) != 0)
        pthread_detach(handle);
}

// Not noexcept: the unwinding of a cancel passes through here.
void* Thread::threadEntry(void* handedLaunch)
{
    const std::unique_ptr<std::shared_ptr<Launch>> handed(
        static_cast<std::shared_ptr<Launch>*>(handedLaunch));
    const std::shared_ptr<Launch> launch = std::move(*handed);

    if (!enter(*launch))
        return nullptr;
    // A cancel given during the start-up ends the thread here, before its body. It is seen by its flag rather
    // than acted on by pthread_testcancel: an unwinding that begins on a thread this young trips
    // AddressSanitizer's own stack bookkeeping now and then, and returning ends the thread just as well.
    if (wasCancelled(*launch))
        return nullptr;
    launch->thread.run();
    leave(*launch);
    return nullptr;
}

// On the new thread, before the body. False when stopThread cancelled the thread before it got here.
bool Thread::enter(Launch& launch)
{
    Thread& thread = launch.thread;
    {
        const std::lock_guard<std::mutex> launchGuard(launch.lock);
        if (launch.cancelled)
            return false;
        const std::lock_guard<std::recursive_mutex> listGuard(threadListLock());
        registry().push_back(&thread);
        thread.threadId = pthread_self();
    }
    if (!thread.threadName.empty())
        nameCurrentThread(thread.threadName);
    // A time-out is no error: the body starts anyway.
    thread.startSignal->wait(startSignalTimeoutMilliseconds);
    return true;
}

bool Thread::wasCancelled(Launch& launch)
{
    const std::lock_guard<std::mutex> launchGuard(launch.lock);
    return launch.cancelled;
}

// On the thread, after a body that returned. Touches the Thread only when no cancel took it over: after a
// cancel the Thread may be gone, and stopThread joins the thread.
void Thread::leave(Launch& launch)
{
    const std::lock_guard<std::mutex> launchGuard(launch.lock);
    if (launch.cancelled)
        return;
    removeFromRunningThreads(launch.thread);
    launch.thread.threadHandle = 0;
    launch.thread.threadId = 0;
    pthread_detach(pthread_self());
}

} // namespace vlk
