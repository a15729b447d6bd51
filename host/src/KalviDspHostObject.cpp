#include "KalviDspHostObject.h"

#include "KalviDspHostClass.h"
#include "KalviDspHostDictionaryRegistry.h"
#include "KalviDspHostDspGraph.h"
#include "KalviDspHostOutlet.h"

#include "ext_proto.h"
#include "ext_sysmem.h"

#include <cstdlib>
#include <cstring>

namespace vlk::host {
namespace {

struct alignas(16) ObjectHeader
{
    ObjectRecord* record;
};

ObjectHeader* headerOf(const void* x)
{
    return const_cast<ObjectHeader*>(static_cast<const ObjectHeader*>(x) - 1);
}

void releaseStored(const ObjectRecord::Stored& entry)
{
    if (entry.flags & (OBJ_FLAG_REF | OBJ_FLAG_DATA))
        return;
    if (entry.flags & OBJ_FLAG_MEMORY)
        sysmem_freeptr(entry.value);
    else
        object_free(entry.value);
}

} // namespace

ObjectRecord* ObjectRecord::of(const void* x)
{
    if (x == nullptr || static_cast<const t_object*>(x)->o_magic != MAGIC)
        return nullptr;
    return headerOf(x)->record;
}

ObjectRecord::~ObjectRecord()
{
    for (t_object* attribute : attributes)
        object_free(attribute);
    for (const Stored& entry : store)
        releaseStored(entry);
}

std::vector<Outlet*> outletsLeftToRight(void* x)
{
    std::vector<Outlet*> result;
    if (ObjectRecord* record = ObjectRecord::of(x))
        for (auto it = record->outlets.rbegin(); it != record->outlets.rend(); ++it)
            result.push_back(it->get());
    return result;
}

} // namespace vlk::host

using vlk::host::ObjectRecord;

void* object_alloc(t_class* c)
{
    if (c == nullptr)
        return nullptr;
    const std::size_t total = sizeof(vlk::host::ObjectHeader) + c->c_size;
    void* raw = (c->c_flags & CLASS_FLAG_DO_NOT_ZERO) ? std::malloc(total) : std::calloc(1, total);
    if (raw == nullptr)
        return nullptr;
    auto* header = static_cast<vlk::host::ObjectHeader*>(raw);
    header->record = new ObjectRecord(c);
    auto* object = reinterpret_cast<t_object*>(header + 1);
    object->o_messlist = vlk::host::ClassRecord::of(c)->legacyMessages + 1;
    object->o_magic = MAGIC;
    object->o_inlet = nullptr;
    object->o_outlet = nullptr;
    return object;
}

t_max_err object_free(void* x)
{
    if (x == nullptr)
        return MAX_ERR_NONE;
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr)
        return MAX_ERR_INVALID_PTR;
    if (vlk::host::DictionaryRegistry::instance().keepsAliveOnFree(x))
        return MAX_ERR_NONE;
    // A signal object leaves the chain before its free method runs, even one that forgot z_dsp_free: the
    // audio thread must not call a perform routine whose state is being taken apart.
    vlk::host::DspGraph::instance().forget(static_cast<t_object*>(x));
    if (record->klass->c_freefun != nullptr)
        reinterpret_cast<void (*)(void*)>(record->klass->c_freefun)(x);
    delete record;
    static_cast<t_object*>(x)->o_magic = 0;
    std::free(vlk::host::headerOf(x));
    return MAX_ERR_NONE;
}

void freeobject(void* op)
{
    object_free(op);
}

t_class* object_class(void* x)
{
    ObjectRecord* record = ObjectRecord::of(x);
    return record == nullptr ? nullptr : record->klass;
}

t_symbol* object_classname(void* x)
{
    t_class* c = object_class(x);
    return c == nullptr ? nullptr : c->c_sym;
}

// Values stored without flags are references: the dump outlet, the box and the patcher are not the store's.
t_max_err object_obex_store(void* x, t_symbol* key, t_object* val)
{
    return object_obex_storeflags(x, key, val, OBJ_FLAG_REF);
}

t_max_err object_obex_storeflags(void* x, t_symbol* key, t_object* val, long flags)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr || key == nullptr)
        return MAX_ERR_INVALID_PTR;
    for (ObjectRecord::Stored& entry : record->store)
        if (entry.key == key) {
            if (entry.value != val)
                vlk::host::releaseStored(entry);
            entry.value = val;
            entry.flags = flags;
            return MAX_ERR_NONE;
        }
    record->store.push_back({key, val, flags});
    return MAX_ERR_NONE;
}

t_max_err object_obex_lookup(void* x, t_symbol* key, t_object** val)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (val != nullptr)
        *val = nullptr;
    if (record == nullptr || val == nullptr)
        return MAX_ERR_INVALID_PTR;
    for (const ObjectRecord::Stored& entry : record->store)
        if (entry.key == key) {
            *val = entry.value;
            return MAX_ERR_NONE;
        }
    return MAX_ERR_GENERIC;
}

void object_obex_dumpout(void* x, t_symbol* s, long argc, t_atom* argv)
{
    t_object* outlet = nullptr;
    if (object_obex_lookup(x, gensym("dumpout"), &outlet) == MAX_ERR_NONE && outlet != nullptr)
        outlet_anything(outlet, s, static_cast<short>(argc), argv);
}

t_max_err object_attach_byptr(void* x, void* object_to_attach)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr || object_to_attach == nullptr)
        return MAX_ERR_INVALID_PTR;
    record->clients.push_back(object_to_attach);
    return MAX_ERR_NONE;
}

t_max_err object_detach_byptr(void* x, void* object_to_detach)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr)
        return MAX_ERR_INVALID_PTR;
    std::erase(record->clients, object_to_detach);
    return MAX_ERR_NONE;
}

// Attached clients hear it; an unregistered object's own notify is not called by a plain object_notify.
t_max_err object_notify(void* x, t_symbol* s, void* data)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr)
        return MAX_ERR_INVALID_PTR;
    const std::vector<void*> clients = record->clients;
    for (void* client : clients)
        object_method(client, gensym("notify"), nullptr, s, x, data);
    return MAX_ERR_NONE;
}
