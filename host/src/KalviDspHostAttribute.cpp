#include "KalviDspHostAttribute.h"

#include "KalviDspHostAtomDelivery.h"
#include "KalviDspHostClass.h"
#include "KalviDspHostObject.h"

#include "ext_proto.h"
#include "ext_sysmem.h"

#include <new>

namespace vlk::host {
namespace {

struct AttributeObject
{
    t_attr attr;
    Attribute* record;
};

using Getter = t_max_err (*)(void*, void*, long*, t_atom**);
using Setter = t_max_err (*)(void*, void*, long, t_atom*);
using ProcFilter = t_max_err (*)(void*, void*, long, t_atom*);

void freeAttribute(AttributeObject* x)
{
    delete x->record;
}

void* setMethod(AttributeObject* x, t_symbol* which, method m)
{
    if (which == gensym("get"))
        x->attr.get = m;
    else if (which == gensym("set"))
        x->attr.set = m;
    return nullptr;
}

void* getType(AttributeObject* x)
{
    return x->attr.type;
}

void* getName(AttributeObject* x)
{
    return x->attr.name;
}

void* getFlags(AttributeObject* x)
{
    return reinterpret_cast<void*>(static_cast<t_ptr_int>(x->attr.flags));
}

void* setFlags(AttributeObject* x, t_ptr_int flags)
{
    x->attr.flags = static_cast<long>(flags);
    return nullptr;
}

void* setName(AttributeObject* x, t_symbol* name)
{
    x->attr.name = name;
    return nullptr;
}

t_class* attributeClass()
{
    static t_class* c = [] {
        t_class* made =
            makeHostClass("attr", sizeof(AttributeObject), reinterpret_cast<method>(freeAttribute));
        class_addmethod(made, reinterpret_cast<method>(setMethod), "setmethod", A_CANT, 0);
        class_addmethod(made, reinterpret_cast<method>(getType), "gettype", A_CANT, 0);
        class_addmethod(made, reinterpret_cast<method>(getName), "getname", A_CANT, 0);
        class_addmethod(made, reinterpret_cast<method>(getFlags), "getflags", A_CANT, 0);
        class_addmethod(made, reinterpret_cast<method>(setFlags), "setflags", A_CANT, 0);
        class_addmethod(made, reinterpret_cast<method>(setName), "setname", A_CANT, 0);
        return made;
    }();
    return c;
}

} // namespace

t_object* Attribute::create(const char* name, const t_symbol* type, long flags, method getter, method setter,
                            Storage storage, long offset, long size, long countOffset)
{
    auto* object = static_cast<AttributeObject*>(object_alloc(attributeClass()));
    if (object == nullptr)
        return nullptr;
    auto* record = new Attribute();
    object->record = record;
    record->attr = &object->attr;
    object->attr.name = gensym(name);
    object->attr.type = const_cast<t_symbol*>(type);
    object->attr.flags = flags;
    object->attr.get = getter;
    object->attr.set = setter;
    record->type = AttributeType(type);
    record->storage = storage;
    record->offset = offset;
    record->size = size < 1 ? 1 : size;
    record->countOffset = countOffset;
    return &object->attr.ob;
}

Attribute* Attribute::of(const void* x)
{
    if (object_class(const_cast<void*>(x)) != attributeClass())
        return nullptr;
    return static_cast<const AttributeObject*>(x)->record;
}

std::vector<t_atom> Attribute::readDefault(t_object* owner) const
{
    if (storage == Storage::self)
        return ownValue;
    const char* base = reinterpret_cast<const char*>(owner) + offset;
    long count = 1;
    if (storage == Storage::memberArray) {
        count = size;
        if (countOffset != 0) {
            count = *reinterpret_cast<const long*>(reinterpret_cast<const char*>(owner) + countOffset);
            count = count < 0 ? 0 : (count > size ? size : count);
        }
    }
    std::vector<t_atom> values;
    for (long i = 0; i < count; ++i)
        values.push_back(type.read(base + static_cast<std::size_t>(i) * type.elementSize()));
    return values;
}

void Attribute::writeDefault(t_object* owner, const std::vector<t_atom>& values)
{
    if (storage == Storage::self) {
        ownValue.clear();
        for (const t_atom& value : values)
            ownValue.push_back(type.convert(value));
        return;
    }
    if (values.empty())
        return;
    char* base = reinterpret_cast<char*>(owner) + offset;
    long count = 1;
    if (storage == Storage::memberArray) {
        count = static_cast<long>(values.size()) < size ? static_cast<long>(values.size()) : size;
        if (countOffset != 0)
            *reinterpret_cast<long*>(reinterpret_cast<char*>(owner) + countOffset) = count;
    }
    for (long i = 0; i < count; ++i)
        type.write(base + static_cast<std::size_t>(i) * type.elementSize(),
                   values[static_cast<std::size_t>(i)]);
}

void Attribute::clipAtoms(const Clip& clip, bool divide, long ac, t_atom* av) const
{
    if (!clip.active)
        return;
    for (long i = 0; i < ac; ++i) {
        t_atom& atom = av[i];
        if (atom.a_type != A_LONG && atom.a_type != A_FLOAT)
            continue;
        double value = atom_getfloat(&atom);
        if (clip.scale != 1 && clip.scale != 0)
            value = divide ? value / clip.scale : value * clip.scale;
        if (clip.useMin && value < clip.min)
            value = clip.min;
        if (clip.useMax && value > clip.max)
            value = clip.max;
        if (atom.a_type == A_LONG)
            atom_setlong(&atom, static_cast<t_atom_long>(value));
        else
            atom_setfloat(&atom, value);
    }
}

t_max_err Attribute::getValue(t_object* owner, long* ac, t_atom** av)
{
    if (ac == nullptr || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    t_max_err result = MAX_ERR_NONE;
    if (attr->get != nullptr)
        result = reinterpret_cast<Getter>(attr->get)(owner, attr, ac, av);
    else
        result = deliverAtoms(readDefault(owner), ac, av);
    if (result != MAX_ERR_NONE || *av == nullptr)
        return result;
    clipAtoms(getClipFilter, true, *ac, *av);
    if (getProcFilter != nullptr)
        reinterpret_cast<ProcFilter>(getProcFilter)(owner, attr, *ac, *av);
    return MAX_ERR_NONE;
}

t_max_err Attribute::setValue(t_object* owner, long ac, const t_atom* av)
{
    std::vector<t_atom> values(av, av + (av == nullptr || ac < 0 ? 0 : ac));
    clipAtoms(setClipFilter, false, static_cast<long>(values.size()), values.data());
    if (setProcFilter != nullptr)
        reinterpret_cast<ProcFilter>(setProcFilter)(owner, attr, static_cast<long>(values.size()),
                                                    values.data());
    if (attr->set != nullptr)
        return reinterpret_cast<Setter>(attr->set)(owner, attr, static_cast<long>(values.size()),
                                                   values.data());
    writeDefault(owner, values);
    return MAX_ERR_NONE;
}

void Attribute::setClip(bool onSet, bool onGet, double scale, double min, double max, bool useMin,
                        bool useMax)
{
    const Clip clip{true, scale, min, max, useMin, useMax};
    if (onSet)
        setClipFilter = clip;
    if (onGet)
        getClipFilter = clip;
}

void Attribute::setProc(bool onSet, method proc)
{
    (onSet ? setProcFilter : getProcFilter) = proc;
}

t_object* findAttribute(const void* x, t_symbol* name)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr)
        return nullptr;
    for (t_object* attribute : record->attributes)
        if (Attribute::of(attribute)->name() == name)
            return attribute;
    for (t_object* attribute : ClassRecord::of(record->klass)->attributes)
        if (Attribute::of(attribute)->name() == name)
            return attribute;
    return nullptr;
}

void addInstanceAttribute(void* x, t_object* attribute)
{
    ObjectRecord* record = ObjectRecord::of(x);
    if (record == nullptr || Attribute::of(attribute) == nullptr)
        return;
    for (t_object*& existing : record->attributes)
        if (Attribute::of(existing)->name() == Attribute::of(attribute)->name()) {
            if (existing != attribute)
                object_free(existing);
            existing = attribute;
            return;
        }
    record->attributes.push_back(attribute);
}

void notifyAttributeChanged(t_object* x, t_object* attribute)
{
    if (object_getmethod(x, gensym("notify")) != nullptr)
        object_method(x, gensym("notify"), nullptr, gensym("attr_modified"), x, attribute);
    object_notify(x, gensym("attr_modified"), attribute);
}

} // namespace vlk::host
