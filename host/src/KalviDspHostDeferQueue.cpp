#include "KalviDspHostDeferQueue.h"

#include "ext_obex.h"
#include "ext_proto.h"
#include "ext_sysmem.h"
#include "ext_systhread.h"

#include <atomic>
#include <thread>
#include <vector>

namespace vlk::host {
namespace {

std::atomic<std::thread::id>& mainThreadId()
{
    static std::atomic<std::thread::id> id{std::this_thread::get_id()};
    return id;
}

// Taken when the library loads, on the thread that loads it.
[[maybe_unused]] const bool mainThreadTaken = (mainThreadId(), true);

} // namespace

DeferQueue& DeferQueue::instance()
{
    static DeferQueue queue;
    return queue;
}

bool DeferQueue::isMainThread()
{
    return mainThreadId().load() == std::this_thread::get_id();
}

void DeferQueue::setMainThread()
{
    mainThreadId().store(std::this_thread::get_id());
}

void DeferQueue::pushFront(std::function<void()> call)
{
    std::lock_guard<std::mutex> guard(lock);
    calls.push_front(std::move(call));
    changed.notify_all();
}

void DeferQueue::pushBack(std::function<void()> call)
{
    std::lock_guard<std::mutex> guard(lock);
    calls.push_back(std::move(call));
    changed.notify_all();
}

std::function<void()> DeferQueue::takeFront()
{
    std::lock_guard<std::mutex> guard(lock);
    if (calls.empty())
        return {};
    std::function<void()> call = std::move(calls.front());
    calls.pop_front();
    return call;
}

int DeferQueue::drain()
{
    int count = 0;
    while (count < 1000000) {
        std::function<void()> call = takeFront();
        if (!call)
            break;
        call();
        ++count;
    }
    return count;
}

void DeferQueue::waitForWork(std::chrono::milliseconds timeout)
{
    std::unique_lock<std::mutex> guard(lock);
    changed.wait_for(guard, timeout, [this] { return !calls.empty() || woken; });
    woken = false;
}

void DeferQueue::wake()
{
    std::lock_guard<std::mutex> guard(lock);
    woken = true;
    changed.notify_all();
}

} // namespace vlk::host

using vlk::host::DeferQueue;

namespace {

// The call with its own copy of the atoms, which must outlive the caller's.
std::function<void()> deferredCall(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv)
{
    std::vector<t_atom> atoms;
    if (argv != nullptr && argc > 0)
        atoms.assign(argv, argv + argc);
    return [ob, fn, sym, atoms = std::move(atoms)]() mutable {
        using Deferred = void (*)(void*, t_symbol*, long, t_atom*);
        reinterpret_cast<Deferred>(fn)(ob, sym, static_cast<long>(atoms.size()),
                                       atoms.empty() ? nullptr : atoms.data());
    };
}

} // namespace

void* defer(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv)
{
    if (DeferQueue::isMainThread())
        deferredCall(ob, fn, sym, argc, argv)();
    else
        DeferQueue::instance().pushFront(deferredCall(ob, fn, sym, argc, argv));
    return nullptr;
}

void* defer_low(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv)
{
    DeferQueue::instance().pushBack(deferredCall(ob, fn, sym, argc, argv));
    return nullptr;
}

void* defer_medium(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv)
{
    if (DeferQueue::isMainThread())
        deferredCall(ob, fn, sym, argc, argv)();
    else
        DeferQueue::instance().pushBack(deferredCall(ob, fn, sym, argc, argv));
    return nullptr;
}

void* defer_front(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv)
{
    DeferQueue::instance().pushFront(deferredCall(ob, fn, sym, argc, argv));
    return nullptr;
}

short systhread_ismainthread(void)
{
    return DeferQueue::isMainThread() ? 1 : 0;
}
