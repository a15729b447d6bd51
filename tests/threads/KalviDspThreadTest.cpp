#include "threads/KalviDspThread.h"

#include "threads/KalviDspWaitableEvent.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <time.h>

namespace {

using Clock = std::chrono::steady_clock;

// Polls for up to ten seconds: the machine may be busy.
bool eventually(const std::function<bool()>& condition)
{
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (!condition() && Clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

bool isRunningThread(const vlk::Thread& thread)
{
    const std::lock_guard<std::recursive_mutex> guard(vlk::Thread::threadListLock());
    const auto& threads = vlk::Thread::runningThreads();
    return std::find(threads.begin(), threads.end(), &thread) != threads.end();
}

// Waits for notifications until asked to exit.
class ObedientThread : public vlk::Thread
{
public:
    explicit ObedientThread(const vlk::String& name = "obedient") : Thread(name) {}
    ~ObedientThread() override { stopThread(5000); }

    std::atomic<int> bodies{0};

private:
    void run() override
    {
        ++bodies;
        while (!threadShouldExit())
            wait(-1);
    }
};

// Sleeps in nanosleep and never looks at the exit request; counts the unwinding of its cancels.
class SleepingThread : public vlk::Thread
{
public:
    SleepingThread() : Thread("sleeping") {}
    ~SleepingThread() override { stopThread(0); }

    std::atomic<int> bodies{0};
    std::atomic<int> unwound{0};

private:
    struct UnwindCounter
    {
        std::atomic<int>& count;
        ~UnwindCounter() { ++count; }
    };

    void run() override
    {
        const UnwindCounter counter{unwound};
        ++bodies;
        for (;;) {
            const timespec step{0, 1000000};
            nanosleep(&step, nullptr);
        }
    }
};

// Waits on its event for ever and never looks at the exit request.
class DeafThread : public vlk::Thread
{
public:
    DeafThread() : Thread("deaf") {}
    ~DeafThread() override { stopThread(0); }

    std::atomic<int> bodies{0};

private:
    void run() override
    {
        ++bodies;
        for (;;)
            wait(-1);
    }
};

// Records what the body sees of itself, then returns.
class ProbeThread : public vlk::Thread
{
public:
    explicit ProbeThread(const vlk::String& name) : Thread(name) {}
    ~ProbeThread() override { stopThread(5000); }

    std::atomic<bool> done{false};
    char name[64] = {};
    bool idMatches = false;
    bool registered = false;

private:
    void run() override
    {
        pthread_getname_np(pthread_self(), name, sizeof(name));
        idMatches = pthread_equal(getThreadId(), pthread_self()) != 0;
        registered = isRunningThread(*this);
        done = true;
    }
};

vlk::String nameGivenTo(const vlk::String& threadName)
{
    ProbeThread thread(threadName);
    thread.startThread();
    EXPECT_TRUE(eventually([&] { return thread.done.load(); }));
    thread.stopThread(5000);
    return thread.name;
}

TEST(ThreadStop, NeverStartedThreadReturnsTrueAtOnce)
{
    ObedientThread thread;
    const auto start = Clock::now();
    EXPECT_TRUE(thread.stopThread(10000));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(1));
}

TEST(ThreadStop, BodyThatExitsWhenAskedEndsWithinTheTimeOut)
{
    // The body waits without time limit: only the notify of the stop can end it in time.
    ObedientThread thread;
    thread.startThread();
    ASSERT_TRUE(eventually([&] { return thread.bodies == 1; }));
    EXPECT_TRUE(thread.stopThread(10000));
    EXPECT_FALSE(isRunningThread(thread));
    EXPECT_EQ(thread.getThreadId(), pthread_t{});
}

TEST(ThreadStop, ZeroTimeOutCancelsABodyInNanosleepAndUnwindsIt)
{
    auto thread = std::make_unique<SleepingThread>();
    thread->startThread();
    ASSERT_TRUE(eventually([&] { return thread->bodies == 1; }));
    EXPECT_FALSE(thread->stopThread(0));
    EXPECT_EQ(thread->unwound, 1);
    EXPECT_FALSE(isRunningThread(*thread));
    EXPECT_EQ(thread->getThreadId(), pthread_t{});
    // The cancelled thread no longer touches the object: under the address sanitizer this shows.
    thread.reset();

    {
        const std::lock_guard<std::recursive_mutex> guard(vlk::Thread::threadListLock());
    }
    ObedientThread next;
    next.startThread();
    ASSERT_TRUE(eventually([&] { return next.bodies == 1; }));
    EXPECT_TRUE(next.stopThread(10000));
    vlk::WaitableEvent event;
    event.signal();
    EXPECT_TRUE(event.wait(-1));
}

TEST(ThreadStop, CancelInAWaitLeavesTheEventUsable)
{
    DeafThread thread;
    thread.startThread();
    ASSERT_TRUE(eventually([&] { return thread.bodies == 1; }));
    EXPECT_FALSE(thread.stopThread(20));
    // A mutex left locked by the cancelled wait would block here for ever.
    thread.notify();
    thread.startThread();
    ASSERT_TRUE(eventually([&] { return thread.bodies == 2; }));
    EXPECT_FALSE(thread.stopThread(0));
}

TEST(ThreadStop, CancelRightAfterTheStartLeavesNoTrace)
{
    // Most rounds cancel the thread during its start-up; none may leave a trace in the registry.
    for (int round = 0; round < 20; ++round) {
        SleepingThread thread;
        thread.startThread();
        EXPECT_FALSE(thread.stopThread(0));
        EXPECT_EQ(thread.bodies, thread.unwound);
        EXPECT_FALSE(isRunningThread(thread));
    }
}

TEST(ThreadStart, SecondStartOfARunningThreadOnlyClearsTheExitRequest)
{
    ObedientThread thread;
    thread.startThread();
    thread.signalThreadShouldExit();
    thread.startThread();
    EXPECT_FALSE(thread.threadShouldExit());
    ASSERT_TRUE(eventually([&] { return thread.bodies == 1; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(thread.bodies, 1);
    EXPECT_TRUE(thread.stopThread(10000));
}

TEST(ThreadStart, StoppedThreadStartsAgain)
{
    ObedientThread thread;
    thread.startThread();
    ASSERT_TRUE(eventually([&] { return thread.bodies == 1; }));
    EXPECT_TRUE(thread.stopThread(10000));
    thread.startThread();
    ASSERT_TRUE(eventually([&] { return thread.bodies == 2; }));
    EXPECT_TRUE(isRunningThread(thread));
    EXPECT_TRUE(thread.stopThread(10000));
}

TEST(ThreadEnd, BodyThatReturnsWasRegisteredAndLeavesTheThreadIdle)
{
    ProbeThread thread("returning");
    thread.startThread();
    ASSERT_TRUE(eventually([&] { return thread.getThreadId() == pthread_t{}; }));
    EXPECT_TRUE(thread.done);
    EXPECT_TRUE(thread.idMatches);
    EXPECT_TRUE(thread.registered);
    EXPECT_FALSE(isRunningThread(thread));
    EXPECT_TRUE(thread.stopThread(0));
}

TEST(ThreadRegistry, HoldsEveryRunningThreadOnce)
{
    ObedientThread first;
    ObedientThread second;
    first.startThread();
    second.startThread();
    ASSERT_TRUE(eventually([&] { return isRunningThread(first) && isRunningThread(second); }));
    {
        const std::lock_guard<std::recursive_mutex> guard(vlk::Thread::threadListLock());
        const auto& threads = vlk::Thread::runningThreads();
        EXPECT_EQ(std::count(threads.begin(), threads.end(), &first), 1);
    }
    EXPECT_TRUE(first.stopThread(10000));
    EXPECT_FALSE(isRunningThread(first));
    EXPECT_TRUE(isRunningThread(second));
}

TEST(ThreadName, LongNameIsCutToFifteenBytes)
{
    EXPECT_STREQ(nameGivenTo("vlk::AudioFilePlayer::BufferingThread").c_str(), "vlk::AudioFileP");
    EXPECT_STREQ(nameGivenTo("exactly15bytes!").c_str(), "exactly15bytes!");
}

TEST(ThreadName, CutDoesNotSplitAUtf8Character)
{
    EXPECT_STREQ(nameGivenTo("abcdefghijklmn\xC3\xA9xyz").c_str(), "abcdefghijklmn");
}

TEST(ThreadName, EmptyNameKeepsTheInheritedName)
{
    // A new thread starts with the name of the thread that created it.
    char inherited[64] = {};
    pthread_getname_np(pthread_self(), inherited, sizeof(inherited));
    EXPECT_STREQ(nameGivenTo("").c_str(), inherited);
}

} // namespace
