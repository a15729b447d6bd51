// Main-thread tasks whose repeated settings collapse until they run.
#include "KalviDspHostDeferQueue.h"

#include "ext_proto.h"

#include <atomic>
#include <memory>

using vlk::host::DeferQueue;

namespace {

// Shared by the handle and the queued call, so that a call still queued after qelem_free does nothing.
struct Qelem
{
    void* object;
    method function;
    std::atomic<bool> pending{false};
    std::atomic<bool> freed{false};
};

using QelemHandle = std::shared_ptr<Qelem>;

void queueQelem(t_qelem* q, bool front)
{
    if (q == nullptr)
        return;
    QelemHandle qelem = *static_cast<QelemHandle*>(q);
    if (qelem->pending.exchange(true))
        return;
    auto call = [qelem] {
        if (qelem->pending.exchange(false) && !qelem->freed.load())
            reinterpret_cast<void (*)(void*)>(qelem->function)(qelem->object);
    };
    if (front)
        DeferQueue::instance().pushFront(call);
    else
        DeferQueue::instance().pushBack(call);
}

} // namespace

void* qelem_new(void* obj, method fn)
{
    auto qelem = std::make_shared<Qelem>();
    qelem->object = obj;
    qelem->function = fn;
    return new QelemHandle(std::move(qelem));
}

void qelem_set(t_qelem* q)
{
    queueQelem(q, false);
}

void qelem_front(t_qelem* q)
{
    queueQelem(q, true);
}

void qelem_unset(t_qelem* q)
{
    if (q != nullptr)
        (*static_cast<QelemHandle*>(q))->pending.store(false);
}

void qelem_free(t_qelem* q)
{
    if (q == nullptr)
        return;
    auto* handle = static_cast<QelemHandle*>(q);
    (*handle)->freed.store(true);
    delete handle;
}
