#include "KalviDspHostDspGraph.h"

#include "KalviDspHostClass.h"
#include "KalviDspHostObject.h"
#include "KalviDspHostOutlet.h"

#include "ext_proto.h"

#include <algorithm>
#include <cstring>

namespace vlk::host {
namespace {

std::vector<Outlet*> signalOutlets(t_object* x)
{
    std::vector<Outlet*> result;
    for (Outlet* outlet : outletsLeftToRight(x))
        if (outlet->isSignal())
            result.push_back(outlet);
    return result;
}

int placement(const t_pxobject* x)
{
    if (x->z_misc & Z_PUT_FIRST)
        return 0;
    return (x->z_misc & Z_PUT_LAST) ? 2 : 1;
}

void* addToChain(t_object* /*chain*/, t_object* x, t_perfroutine64 f, long flags, void* userparam)
{
    DspGraph::instance().addPerform(x, f, flags, userparam);
    return nullptr;
}

t_object* newChainObject()
{
    static t_class* c = [] {
        t_class* made = makeHostClass("dspchain", sizeof(t_object), nullptr);
        class_addmethod(made, reinterpret_cast<method>(addToChain), "dsp_add64", A_CANT, 0);
        return made;
    }();
    return static_cast<t_object*>(object_alloc(c));
}

} // namespace

DspGraph& DspGraph::instance()
{
    static DspGraph graph;
    return graph;
}

void DspGraph::add(t_pxobject* x)
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    x->z_disabled = disabled ? 1 : 0;
    members.push_back({x, {}, true});
    dirty = true;
}

void DspGraph::forget(t_object* x)
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    auto isGone = [x](const auto& entry) { return &entry.object->z_ob == x; };
    if (std::find_if(members.begin(), members.end(), isGone) == members.end())
        return;
    std::erase_if(members, isGone);
    std::erase_if(chain, isGone);
    std::erase_if(buffers, [x](const std::unique_ptr<Buffers>& entry) { return entry->object == x; });
    dirty = true;
}

bool DspGraph::isInChain(t_object* x)
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    return running && buffersOf(x) != nullptr;
}

void DspGraph::setDisabled(bool isDisabled)
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    disabled = isDisabled;
    for (Member& member : members)
        member.object->z_disabled = disabled ? 1 : 0;
}

void DspGraph::setConnectedOutlets(t_object* x, std::vector<bool> connected)
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    for (Member& member : members)
        if (&member.object->z_ob == x) {
            member.connected = std::move(connected);
            member.allConnected = false;
        }
}

void DspGraph::start()
{
    running.store(true, std::memory_order_release);
    compile();
}

void DspGraph::stop()
{
    running.store(false, std::memory_order_release);
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    chain.clear();
    buffers.clear();
    computeLayout();
}

void DspGraph::prepare()
{
    bool mustCompile = false;
    {
        std::lock_guard<std::recursive_mutex> guard(chainLock);
        mustCompile = dirty && isRunning();
        if (!mustCompile)
            computeLayout();
    }
    if (mustCompile)
        compile();
}

int DspGraph::getNumOutputChannels()
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    computeLayout();
    return static_cast<int>(layout.size());
}

// The dsp64 methods run with chainLock taken, so the audio thread waits for the whole chain.
void DspGraph::compile()
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    chain.clear();
    buffers.clear();
    std::vector<Member*> order;
    for (Member& member : members)
        order.push_back(&member);
    std::stable_sort(order.begin(), order.end(), [](const Member* a, const Member* b) {
        return placement(a->object) < placement(b->object);
    });
    if (chainObject == nullptr)
        chainObject = newChainObject();
    compiling = &chain;
    for (Member* member : order)
        compileObject(*member, chainObject);
    compiling = nullptr;
    dirty = false;
    computeLayout();
}

void DspGraph::compileObject(Member& member, t_object* chainObject)
{
    t_pxobject* x = member.object;
    method dsp64 = object_getmethod(x, gensym("dsp64"));
    if ((x->z_misc & Z_DONT_ADD) || dsp64 == nullptr)
        return;
    const std::size_t numIns = x->z_count < 0 ? 0 : static_cast<std::size_t>(x->z_count);
    const std::size_t numOuts = signalOutlets(&x->z_ob).size();
    auto entry = std::make_unique<Buffers>();
    entry->object = &x->z_ob;
    entry->storage.assign(numIns + numOuts, std::vector<double>(static_cast<std::size_t>(vectorSize), 0.0));
    for (std::size_t i = 0; i < numIns + numOuts; ++i)
        (i < numIns ? entry->ins : entry->outs).push_back(entry->storage[i].data());
    buffers.push_back(std::move(entry));
    // Inlets first, then outlets: nothing feeds the inlets here.
    std::vector<short> count(numIns + numOuts, 0);
    for (std::size_t i = 0; i < numOuts; ++i)
        count[numIns + i] =
            member.allConnected || (i < member.connected.size() && member.connected[i]) ? 1 : 0;
    using Dsp64 = void (*)(t_object*, t_object*, short*, double, long, long);
    reinterpret_cast<Dsp64>(dsp64)(&x->z_ob, chainObject, count.data(), sampleRate, vectorSize, 0);
}

void DspGraph::addPerform(t_object* x, t_perfroutine64 perform, long flags, void* userparam)
{
    Buffers* entry = buffersOf(x);
    if (compiling == nullptr || entry == nullptr || perform == nullptr)
        return;
    compiling->push_back({reinterpret_cast<t_pxobject*>(x), perform, flags, userparam, entry});
}

DspGraph::Buffers* DspGraph::buffersOf(t_object* x)
{
    for (auto& entry : buffers)
        if (entry->object == x)
            return entry.get();
    return nullptr;
}

void DspGraph::computeLayout()
{
    layout.clear();
    for (Member& member : members) {
        Buffers* entry = buffersOf(&member.object->z_ob);
        const std::size_t numOuts = signalOutlets(&member.object->z_ob).size();
        for (std::size_t i = 0; i < numOuts; ++i)
            layout.push_back(entry != nullptr && i < entry->outs.size() ? entry->outs[i] : nullptr);
    }
}

void DspGraph::renderVector(float* frames)
{
    std::lock_guard<std::recursive_mutex> guard(chainLock);
    const long n = vectorSize;
    for (auto& entry : buffers)
        for (double* out : entry->outs)
            std::memset(out, 0, sizeof(double) * static_cast<std::size_t>(n));
    for (const Perform& perform : chain) {
        t_pxobject* x = perform.object;
        if (x->z_disabled && !(x->z_misc & Z_IGNORE_DISABLE))
            continue;
        Buffers& io = *perform.buffers;
        perform.routine(&x->z_ob, chainObject, io.ins.data(), static_cast<long>(io.ins.size()),
                        io.outs.data(), static_cast<long>(io.outs.size()), n, perform.flags,
                        perform.userparam);
    }
    if (frames == nullptr)
        return;
    const std::size_t channels = layout.size();
    for (std::size_t c = 0; c < channels; ++c)
        for (long i = 0; i < n; ++i)
            frames[static_cast<std::size_t>(i) * channels + c] =
                layout[c] == nullptr ? 0.0f : static_cast<float>(layout[c][i]);
}

} // namespace vlk::host
