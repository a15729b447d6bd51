#include "KalviDspHostDictionary.h"

#include "KalviDspHostClass.h"

#include "ext_atomarray.h"
#include "ext_obex.h"
#include "ext_sysmem.h"

#include <algorithm>
#include <cstring>

namespace {

using Entry = _dictionary::Entry;

void releaseValue(const t_atom& value)
{
    if (value.a_type == A_OBJ)
        object_free(value.a_w.w_obj);
}

void freeDictionary(t_dictionary* d)
{
    for (const Entry& entry : *d->entries)
        releaseValue(entry.value);
    delete d->entries;
}

t_class* dictionaryClass()
{
    static t_class* c = vlk::host::makeHostClass("dictionary", sizeof(t_dictionary),
                                                 reinterpret_cast<method>(freeDictionary));
    return c;
}

Entry* findEntry(const t_dictionary* d, t_symbol* key)
{
    if (!vlk::host::isDictionary(d))
        return nullptr;
    for (Entry& entry : *d->entries)
        if (entry.key == key)
            return &entry;
    return nullptr;
}

t_max_err append(t_dictionary* d, t_symbol* key, const t_atom& value)
{
    if (!vlk::host::isDictionary(d) || key == nullptr)
        return MAX_ERR_INVALID_PTR;
    if (Entry* entry = findEntry(d, key)) {
        if (!(entry->value.a_type == A_OBJ && value.a_type == A_OBJ &&
              entry->value.a_w.w_obj == value.a_w.w_obj))
            releaseValue(entry->value);
        entry->value = value;
    } else {
        d->entries->push_back({key, value});
    }
    return MAX_ERR_NONE;
}

t_max_err appendObject(t_dictionary* d, t_symbol* key, t_object* value)
{
    t_atom atom;
    atom_setobj(&atom, value);
    return append(d, key, atom);
}

t_max_err getObjectOf(const t_dictionary* d, t_symbol* key, t_object** value, const char* className)
{
    if (value == nullptr)
        return MAX_ERR_INVALID_PTR;
    *value = nullptr;
    Entry* entry = findEntry(d, key);
    if (entry == nullptr || entry->value.a_type != A_OBJ)
        return MAX_ERR_GENERIC;
    if (className != nullptr && object_classname(entry->value.a_w.w_obj) != gensym(className))
        return MAX_ERR_GENERIC;
    *value = entry->value.a_w.w_obj;
    return MAX_ERR_NONE;
}

t_max_err keysOf(const t_dictionary* d, long* numkeys, t_symbol*** keys)
{
    if (!vlk::host::isDictionary(d) || numkeys == nullptr || keys == nullptr)
        return MAX_ERR_INVALID_PTR;
    *keys = reinterpret_cast<t_symbol**>(sysmem_newptr(sizeof(t_symbol*) * d->entries->size()));
    if (*keys == nullptr) {
        *numkeys = 0;
        return MAX_ERR_OUT_OF_MEM;
    }
    for (std::size_t i = 0; i < d->entries->size(); ++i)
        (*keys)[i] = (*d->entries)[i].key;
    *numkeys = static_cast<long>(d->entries->size());
    return MAX_ERR_NONE;
}

t_atom copyValue(const t_atom& value)
{
    if (value.a_type != A_OBJ)
        return value;
    t_atom copy;
    t_symbol* name = object_classname(value.a_w.w_obj);
    if (name == gensym("dictionary"))
        atom_setobj(&copy, dictionary_clone(static_cast<t_dictionary*>(atom_getobj(&value))));
    else if (name == gensym("atomarray"))
        atom_setobj(&copy, atomarray_duplicate(static_cast<t_atomarray*>(atom_getobj(&value))));
    else
        atom_setobj(&copy, nullptr);
    return copy;
}

} // namespace

namespace vlk::host {

bool isDictionary(const void* x)
{
    return x != nullptr && object_class(const_cast<void*>(x)) == dictionaryClass();
}

} // namespace vlk::host

t_dictionary* dictionary_new(void)
{
    auto* d = static_cast<t_dictionary*>(object_alloc(dictionaryClass()));
    if (d != nullptr)
        d->entries = new std::vector<Entry>();
    return d;
}

t_max_err dictionary_appendlong(t_dictionary* d, t_symbol* key, t_atom_long value)
{
    t_atom atom;
    atom_setlong(&atom, value);
    return append(d, key, atom);
}

t_max_err dictionary_appendfloat(t_dictionary* d, t_symbol* key, double value)
{
    t_atom atom;
    atom_setfloat(&atom, value);
    return append(d, key, atom);
}

t_max_err dictionary_appendsym(t_dictionary* d, t_symbol* key, t_symbol* value)
{
    t_atom atom;
    atom_setsym(&atom, value);
    return append(d, key, atom);
}

t_max_err dictionary_appendatom(t_dictionary* d, t_symbol* key, t_atom* value)
{
    if (value == nullptr)
        return MAX_ERR_INVALID_PTR;
    return append(d, key, *value);
}

t_max_err dictionary_appendatoms(t_dictionary* d, t_symbol* key, long argc, t_atom* argv)
{
    if (!vlk::host::isDictionary(d))
        return MAX_ERR_INVALID_PTR;
    return appendObject(d, key, reinterpret_cast<t_object*>(atomarray_new(argc, argv)));
}

t_max_err dictionary_appendatomarray(t_dictionary* d, t_symbol* key, t_object* value)
{
    return appendObject(d, key, value);
}

t_max_err dictionary_appenddictionary(t_dictionary* d, t_symbol* key, t_object* value)
{
    return appendObject(d, key, value);
}

t_max_err dictionary_appendobject(t_dictionary* d, t_symbol* key, t_object* value)
{
    return appendObject(d, key, value);
}

t_max_err dictionary_getlong(const t_dictionary* d, t_symbol* key, t_atom_long* value)
{
    Entry* entry = findEntry(d, key);
    if (entry == nullptr || value == nullptr)
        return MAX_ERR_GENERIC;
    *value = atom_getlong(&entry->value);
    return MAX_ERR_NONE;
}

t_max_err dictionary_getfloat(const t_dictionary* d, t_symbol* key, double* value)
{
    Entry* entry = findEntry(d, key);
    if (entry == nullptr || value == nullptr)
        return MAX_ERR_GENERIC;
    *value = atom_getfloat(&entry->value);
    return MAX_ERR_NONE;
}

t_max_err dictionary_getsym(const t_dictionary* d, t_symbol* key, t_symbol** value)
{
    Entry* entry = findEntry(d, key);
    if (entry == nullptr || value == nullptr)
        return MAX_ERR_GENERIC;
    *value = atom_getsym(&entry->value);
    return MAX_ERR_NONE;
}

t_max_err dictionary_getatom(const t_dictionary* d, t_symbol* key, t_atom* value)
{
    Entry* entry = findEntry(d, key);
    if (entry == nullptr || value == nullptr)
        return MAX_ERR_GENERIC;
    *value = entry->value;
    return MAX_ERR_NONE;
}

t_max_err dictionary_getatoms(const t_dictionary* d, t_symbol* key, long* argc, t_atom** argv)
{
    Entry* entry = findEntry(d, key);
    if (entry == nullptr || argc == nullptr || argv == nullptr)
        return MAX_ERR_GENERIC;
    if (atomisatomarray(&entry->value))
        return atomarray_getatoms(static_cast<t_atomarray*>(atom_getobj(&entry->value)), argc, argv);
    *argc = 1;
    *argv = &entry->value;
    return MAX_ERR_NONE;
}

t_max_err dictionary_copyatoms(const t_dictionary* d, t_symbol* key, long* argc, t_atom** argv)
{
    long count = 0;
    t_atom* atoms = nullptr;
    t_max_err result = dictionary_getatoms(d, key, &count, &atoms);
    if (result != MAX_ERR_NONE)
        return result;
    *argv = reinterpret_cast<t_atom*>(sysmem_newptr(sizeof(t_atom) * static_cast<std::size_t>(count)));
    if (*argv == nullptr)
        return MAX_ERR_OUT_OF_MEM;
    std::memcpy(*argv, atoms, sizeof(t_atom) * static_cast<std::size_t>(count));
    *argc = count;
    return MAX_ERR_NONE;
}

t_max_err dictionary_getatomarray(const t_dictionary* d, t_symbol* key, t_object** value)
{
    return getObjectOf(d, key, value, "atomarray");
}

t_max_err dictionary_getdictionary(const t_dictionary* d, t_symbol* key, t_object** value)
{
    return getObjectOf(d, key, value, "dictionary");
}

t_max_err dictionary_getobject(const t_dictionary* d, t_symbol* key, t_object** value)
{
    return getObjectOf(d, key, value, nullptr);
}

t_max_err dictionary_getdeflong(const t_dictionary* d, t_symbol* key, t_atom_long* value, t_atom_long def)
{
    if (dictionary_getlong(d, key, value) != MAX_ERR_NONE && value != nullptr)
        *value = def;
    return MAX_ERR_NONE;
}

t_max_err dictionary_getdeffloat(const t_dictionary* d, t_symbol* key, double* value, double def)
{
    if (dictionary_getfloat(d, key, value) != MAX_ERR_NONE && value != nullptr)
        *value = def;
    return MAX_ERR_NONE;
}

t_max_err dictionary_getdefsym(const t_dictionary* d, t_symbol* key, t_symbol** value, t_symbol* def)
{
    if (dictionary_getsym(d, key, value) != MAX_ERR_NONE && value != nullptr)
        *value = def;
    return MAX_ERR_NONE;
}

long dictionary_hasentry(const t_dictionary* d, t_symbol* key)
{
    return findEntry(d, key) != nullptr ? 1 : 0;
}

t_atom_long dictionary_getentrycount(const t_dictionary* d)
{
    return vlk::host::isDictionary(d) ? static_cast<t_atom_long>(d->entries->size()) : 0;
}

long dictionary_entryisatomarray(const t_dictionary* d, t_symbol* key)
{
    Entry* entry = findEntry(d, key);
    return entry != nullptr && atomisatomarray(&entry->value);
}

long dictionary_entryisdictionary(const t_dictionary* d, t_symbol* key)
{
    Entry* entry = findEntry(d, key);
    return entry != nullptr && atomisdictionary(&entry->value);
}

// The unordered call gives the entry order too: any order is allowed, this one is the useful one.
t_max_err dictionary_getkeys(const t_dictionary* d, long* numkeys, t_symbol*** keys)
{
    return keysOf(d, numkeys, keys);
}

t_max_err dictionary_getkeys_ordered(const t_dictionary* d, long* numkeys, t_symbol*** keys)
{
    return keysOf(d, numkeys, keys);
}

void dictionary_freekeys(t_dictionary* /*d*/, long /*numkeys*/, t_symbol** keys)
{
    sysmem_freeptr(keys);
}

namespace {

t_max_err removeEntry(t_dictionary* d, t_symbol* key, bool free)
{
    Entry* entry = findEntry(d, key);
    if (entry == nullptr)
        return MAX_ERR_GENERIC;
    if (free)
        releaseValue(entry->value);
    d->entries->erase(d->entries->begin() + (entry - d->entries->data()));
    return MAX_ERR_NONE;
}

} // namespace

t_max_err dictionary_deleteentry(t_dictionary* d, t_symbol* key)
{
    return removeEntry(d, key, true);
}

t_max_err dictionary_chuckentry(t_dictionary* d, t_symbol* key)
{
    return removeEntry(d, key, false);
}

t_max_err dictionary_clear(t_dictionary* d)
{
    if (!vlk::host::isDictionary(d))
        return MAX_ERR_INVALID_PTR;
    for (const Entry& entry : *d->entries)
        releaseValue(entry.value);
    d->entries->clear();
    return MAX_ERR_NONE;
}

t_dictionary* dictionary_clone(t_dictionary* d)
{
    if (!vlk::host::isDictionary(d))
        return nullptr;
    t_dictionary* copy = dictionary_new();
    dictionary_copy_to_existing(d, copy);
    return copy;
}

t_max_err dictionary_clone_to_existing(const t_dictionary* d, t_dictionary* dc)
{
    if (!vlk::host::isDictionary(d) || !vlk::host::isDictionary(dc))
        return MAX_ERR_INVALID_PTR;
    dictionary_clear(dc);
    return dictionary_copy_to_existing(d, dc);
}

t_max_err dictionary_copy_to_existing(const t_dictionary* d, t_dictionary* dc)
{
    if (!vlk::host::isDictionary(d) || !vlk::host::isDictionary(dc))
        return MAX_ERR_INVALID_PTR;
    for (const Entry& entry : *d->entries)
        append(dc, entry.key, copyValue(entry.value));
    return MAX_ERR_NONE;
}
