#include "KalviDspHostMessageDispatch.h"

#include "KalviDspHostAttribute.h"
#include "KalviDspHostClass.h"
#include "KalviDspHostObject.h"
#include "KalviDspHostTypedCall.h"

#include "ext_obex.h"
#include "ext_post.h"
#include "ext_proto.h"
#include "ext_sysmem.h"

#include <cstring>

namespace vlk::host {
namespace {

using GimmeBack = t_max_err (*)(void*, t_symbol*, long, t_atom*, t_atom*);

void* callMethod(t_object* x, const ClassRecord::Method& entry, t_symbol* selector, long ac, t_atom* av,
                 t_atom* rv)
{
    const long first = entry.types.empty() ? static_cast<long>(A_NOTHING) : entry.types.front();
    switch (first) {
    case A_GIMME:
        return callGimme(entry.function, x, selector, ac, av);
    case A_GIMMEBACK:
        reinterpret_cast<GimmeBack>(entry.function)(x, selector, ac, av, rv);
        return nullptr;
    case A_DEFER:
    case A_USURP:
        return defer(x, entry.function, selector, static_cast<short>(ac), av);
    case A_DEFER_LOW:
    case A_USURP_LOW:
        return defer_low(x, entry.function, selector, static_cast<short>(ac), av);
    default:
        break;
    }
    TypedCall call(x, entry.types, ac, av);
    if (!call.fits()) {
        object_error(x, "bad arguments for message \"%s\"", selector->s_name);
        return nullptr;
    }
    return call.call(entry.function);
}

bool setAttributeByMessage(t_object* x, t_symbol* selector, long ac, t_atom* av)
{
    t_object* attribute = findAttribute(x, selector);
    if (attribute == nullptr ||
        (Attribute::of(attribute)->flags() & (ATTR_SET_OPAQUE | ATTR_SET_OPAQUE_USER)))
        return false;
    object_attr_setvalueof(x, selector, ac, av);
    return true;
}

bool getAttributeByMessage(t_object* x, t_symbol* selector)
{
    if (std::strncmp(selector->s_name, "get", 3) != 0 || selector->s_name[3] == '\0')
        return false;
    t_symbol* name = gensym(selector->s_name + 3);
    t_object* attribute = findAttribute(x, name);
    if (attribute == nullptr ||
        (Attribute::of(attribute)->flags() & (ATTR_GET_OPAQUE | ATTR_GET_OPAQUE_USER)))
        return false;
    long ac = 0;
    t_atom* av = nullptr;
    if (object_attr_getvalueof(x, name, &ac, &av) == MAX_ERR_NONE)
        object_obex_dumpout(x, name, ac, av);
    sysmem_freeptr(av);
    return true;
}

bool isCallable(const ClassRecord::Method* entry)
{
    return entry != nullptr && (entry->types.empty() || entry->types.front() != A_CANT);
}

} // namespace

void* dispatchMessage(t_object* x, t_symbol* selector, long ac, t_atom* av, t_atom* rv)
{
    t_atom ignored;
    t_atom* result = rv == nullptr ? &ignored : rv;
    result->a_type = A_NOTHING;
    result->a_w.w_long = 0;
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr || selector == nullptr)
        return nullptr;
    const ClassRecord* klass = ClassRecord::of(record->klass);
    if (const ClassRecord::Method* entry = klass->findMethod(selector); isCallable(entry))
        return callMethod(x, *entry, selector, ac, av, result);
    if (selector == gensym("float") || selector == gensym("int")) {
        t_symbol* other = gensym(selector == gensym("float") ? "int" : "float");
        if (const ClassRecord::Method* entry = klass->findMethod(other); isCallable(entry))
            return callMethod(x, *entry, other, ac, av, result);
    }
    if (setAttributeByMessage(x, selector, ac, av) || getAttributeByMessage(x, selector))
        return nullptr;
    if (const ClassRecord::Method* entry = klass->findMethod(gensym("anything")); isCallable(entry))
        return callMethod(x, *entry, selector, ac, av, result);
    object_error(x, "doesn't understand \"%s\"", selector->s_name);
    return nullptr;
}

} // namespace vlk::host

using vlk::host::ClassRecord;
using vlk::host::ObjectRecord;

void* object_method_imp(void* x, void* sym, void* p1, void* p2, void* p3, void* p4, void* p5, void* p6,
                        void* p7, void* p8)
{
    method function = object_getmethod(x, static_cast<t_symbol*>(sym));
    if (function == nullptr)
        return nullptr;
    using Untyped = void* (*)(void*, void*, void*, void*, void*, void*, void*, void*, void*);
    return reinterpret_cast<Untyped>(function)(x, p1, p2, p3, p4, p5, p6, p7, p8);
}

t_max_err object_method_typed(void* x, t_symbol* s, long ac, t_atom* av, t_atom* rv)
{
    if (ObjectRecord::of(x) == nullptr)
        return MAX_ERR_INVALID_PTR;
    vlk::host::dispatchMessage(static_cast<t_object*>(x), s, ac, av, rv);
    return MAX_ERR_NONE;
}

void* typedmess(t_object* op, t_symbol* msg, short argc, t_atom* argp)
{
    return vlk::host::dispatchMessage(op, msg, argc, argp);
}

method object_getmethod(void* x, t_symbol* s)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr)
        return nullptr;
    const ClassRecord::Method* entry = ClassRecord::of(record->klass)->findMethod(s);
    return entry == nullptr ? nullptr : entry->function;
}

method zgetfn(t_object* op, t_symbol* msg)
{
    return object_getmethod(op, msg);
}

method getfn(t_object* op, t_symbol* msg)
{
    method function = object_getmethod(op, msg);
    if (function == nullptr)
        object_error(op, "doesn't understand \"%s\"", msg == nullptr ? "" : msg->s_name);
    return function;
}

namespace {

void* doNothing(void*)
{
    return nullptr;
}

} // namespace

method egetfn(t_object* op, t_symbol* msg)
{
    method function = object_getmethod(op, msg);
    return function == nullptr ? reinterpret_cast<method>(doNothing) : function;
}

void* object_new_typed(t_symbol* name_space, t_symbol* classname, long ac, t_atom* av)
{
    t_class* c = class_findbyname(name_space, classname);
    ClassRecord* record = ClassRecord::of(c);
    if (record == nullptr || record->legacyMessages[1].m_fun == nullptr)
        return nullptr;
    method constructor = record->legacyMessages[1].m_fun;
    if (!record->constructorTypes.empty() && record->constructorTypes.front() == A_GIMME) {
        using Gimme = void* (*)(t_symbol*, long, t_atom*);
        return reinterpret_cast<Gimme>(constructor)(classname, ac, av);
    }
    vlk::host::TypedCall call(nullptr, record->constructorTypes, ac, av);
    return call.fits() ? call.call(constructor) : nullptr;
}

void* object_new_imp(void* p1, void* p2, void* p3, void* p4, void* p5, void* p6, void* p7, void* p8, void* p9,
                     void* p10)
{
    t_class* c = class_findbyname(static_cast<t_symbol*>(p1), static_cast<t_symbol*>(p2));
    ClassRecord* record = ClassRecord::of(c);
    if (record == nullptr || record->legacyMessages[1].m_fun == nullptr)
        return nullptr;
    using Untyped = void* (*)(void*, void*, void*, void*, void*, void*, void*, void*);
    return reinterpret_cast<Untyped>(record->legacyMessages[1].m_fun)(p3, p4, p5, p6, p7, p8, p9, p10);
}
