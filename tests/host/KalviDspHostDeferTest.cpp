#include "KalviDspHostTestSupport.h"

#include "KalviDspHostDeferQueue.h"

#include <gtest/gtest.h>
#include <thread>

namespace vlk::host::test {
namespace {

std::vector<std::string> ran;
std::vector<bool> ranOnMain;

void deferred(void* ob, t_symbol* s, long ac, t_atom* av)
{
    ran.push_back(std::string(static_cast<const char*>(ob)) + " " + (s == nullptr ? "-" : s->s_name) +
                  (ac > 0 ? std::string(1, ' ').append(text(ac, av)) : ""));
    ranOnMain.push_back(systhread_ismainthread() != 0);
}

method fn()
{
    return reinterpret_cast<method>(deferred);
}

class HostDefer : public ::testing::Test
{
protected:
    void SetUp() override
    {
        DeferQueue::setMainThread();
        DeferQueue::instance().drain();
        ran.clear();
        ranOnMain.clear();
    }
};

TEST_F(HostDefer, OnTheMainThreadDeferAndMediumRunAtOnceAndLowWaits)
{
    static char a[] = "a", b[] = "b", c[] = "c";
    std::vector<t_atom> list = atoms("1 2");
    defer_low(a, fn(), gensym("low"), 2, list.data());
    list[0].a_w.w_long = 99;
    defer(b, fn(), gensym("now"), 0, nullptr);
    defer_medium(c, fn(), nullptr, 0, nullptr);
    EXPECT_EQ(ran, (std::vector<std::string>{"b now", "c -"}));
    EXPECT_EQ(DeferQueue::instance().drain(), 1);
    EXPECT_EQ(ran, (std::vector<std::string>{"b now", "c -", "a low 1 2"}));
}

TEST_F(HostDefer, FromAnotherThreadCallsQueueFrontOrBackAndRunOnTheMainThread)
{
    static char a[] = "a", b[] = "b", c[] = "c", d[] = "d";
    std::thread other([] {
        defer_low(a, fn(), nullptr, 0, nullptr);
        defer_medium(b, fn(), nullptr, 0, nullptr);
        defer(c, fn(), nullptr, 0, nullptr);
        defer_front(d, fn(), nullptr, 0, nullptr);
    });
    other.join();
    EXPECT_TRUE(ran.empty());
    DeferQueue::instance().drain();
    EXPECT_EQ(ran, (std::vector<std::string>{"d -", "c -", "a -", "b -"}));
    EXPECT_EQ(ranOnMain, (std::vector<bool>{true, true, true, true}));
}

int qelemRuns = 0;

void qelemTask(void*)
{
    ++qelemRuns;
}

TEST_F(HostDefer, QelemSetsCollapseUntilTheyRunAndUnsetCancels)
{
    qelemRuns = 0;
    void* q = qelem_new(nullptr, reinterpret_cast<method>(qelemTask));
    qelem_set(q);
    qelem_set(q);
    DeferQueue::instance().drain();
    EXPECT_EQ(qelemRuns, 1);
    qelem_set(q);
    qelem_unset(q);
    DeferQueue::instance().drain();
    EXPECT_EQ(qelemRuns, 1);
    qelem_set(q);
    qelem_free(q);
    DeferQueue::instance().drain();
    EXPECT_EQ(qelemRuns, 1);
}

TEST_F(HostDefer, WaitingReturnsWhenWorkArrives)
{
    static char a[] = "a";
    std::thread other([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        defer_low(a, fn(), nullptr, 0, nullptr);
    });
    // Far longer than the other thread takes: returning at all shows the wait ended on the call.
    DeferQueue::instance().waitForWork(std::chrono::seconds(30));
    other.join();
    DeferQueue::instance().drain();
    EXPECT_EQ(ran, (std::vector<std::string>{"a -"}));
}

} // namespace
} // namespace vlk::host::test
