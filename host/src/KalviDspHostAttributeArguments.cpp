// Attribute values from a box's arguments and from dictionaries.
#include "KalviDspHostAttribute.h"
#include "KalviDspHostDictionary.h"

#include "ext_atomarray.h"
#include "ext_obex.h"
#include "ext_post.h"

#include <vector>

namespace {

bool isAttributeName(const t_atom& atom)
{
    return atom.a_type == A_SYM && atom.a_w.w_sym->s_name[0] == '@';
}

// Calls found(name, ac, av) for each "@name values..." run; the values run to the next @ symbol.
template <typename Found> void forEachRun(short ac, t_atom* av, Found found)
{
    long i = attr_args_offset(ac, av);
    while (i < ac) {
        long end = i + 1;
        while (end < ac && !isAttributeName(av[end]))
            ++end;
        found(gensym(av[i].a_w.w_sym->s_name + 1), end - i - 1, av + i + 1);
        i = end;
    }
}

} // namespace

long attr_args_offset(short ac, t_atom* av)
{
    for (long i = 0; i < ac && av != nullptr; ++i)
        if (isAttributeName(av[i]))
            return i;
    return ac < 0 ? 0 : ac;
}

void attr_args_process(void* x, short ac, t_atom* av)
{
    forEachRun(ac, av, [x](t_symbol* name, long count, t_atom* values) {
        if (object_attr_setvalueof(x, name, count, values) != MAX_ERR_NONE)
            object_error(static_cast<t_object*>(x), "no attribute %s", name->s_name);
    });
}

// One value makes a plain entry, several an atom array.
void attr_args_dictionary(t_dictionary* x, short ac, t_atom* av)
{
    forEachRun(ac, av, [x](t_symbol* name, long count, t_atom* values) {
        if (count == 1)
            dictionary_appendatom(x, name, values);
        else
            dictionary_appendatoms(x, name, count, values);
    });
}

t_dictionary* object_dictionaryarg(long ac, t_atom* av)
{
    for (long i = ac - 1; i >= 0 && av != nullptr; --i)
        if (av[i].a_type == A_OBJ && vlk::host::isDictionary(av[i].a_w.w_obj))
            return reinterpret_cast<t_dictionary*>(av[i].a_w.w_obj);
    return nullptr;
}

// In the dictionary's order; keys that name no attribute are left to attr_dictionary_check.
void attr_dictionary_process(void* x, t_dictionary* d)
{
    long numKeys = 0;
    t_symbol** keys = nullptr;
    if (dictionary_getkeys_ordered(d, &numKeys, &keys) != MAX_ERR_NONE)
        return;
    for (long i = 0; i < numKeys; ++i) {
        if (vlk::host::findAttribute(x, keys[i]) == nullptr)
            continue;
        long count = 0;
        t_atom* values = nullptr;
        if (dictionary_getatoms(d, keys[i], &count, &values) == MAX_ERR_NONE) {
            std::vector<t_atom> copy(values, values + count);
            object_attr_setvalueof(x, keys[i], count, copy.data());
        }
    }
    dictionary_freekeys(d, numKeys, keys);
}

void attr_dictionary_check(void* x, t_dictionary* d)
{
    long numKeys = 0;
    t_symbol** keys = nullptr;
    if (dictionary_getkeys_ordered(d, &numKeys, &keys) != MAX_ERR_NONE)
        return;
    for (long i = 0; i < numKeys; ++i)
        if (vlk::host::findAttribute(x, keys[i]) == nullptr)
            object_error(static_cast<t_object*>(x), "%s is not a valid attribute", keys[i]->s_name);
    dictionary_freekeys(d, numKeys, keys);
}
