#include "KalviDspHostAtomArray.h"

#include "KalviDspHostClass.h"

#include "ext_obex.h"
#include "ext_sysmem.h"

#include <cstring>

namespace {

void freeChildren(t_atomarray* x)
{
    if (!(x->flags & ATOMARRAY_FLAG_FREECHILDREN))
        return;
    for (t_atom& atom : *x->atoms)
        if (atom.a_type == A_OBJ)
            object_free(atom.a_w.w_obj);
}

void freeAtomArray(t_atomarray* x)
{
    freeChildren(x);
    delete x->atoms;
}

t_class* atomArrayClass()
{
    static t_class* c =
        vlk::host::makeHostClass("atomarray", sizeof(t_atomarray), reinterpret_cast<method>(freeAtomArray));
    return c;
}

bool isAtomArray(t_atomarray* x)
{
    return x != nullptr && object_class(x) == atomArrayClass();
}

} // namespace

t_atomarray* atomarray_new(long ac, t_atom* av)
{
    auto* x = static_cast<t_atomarray*>(object_alloc(atomArrayClass()));
    if (x == nullptr)
        return nullptr;
    x->atoms = new std::vector<t_atom>();
    if (av != nullptr && ac > 0)
        x->atoms->assign(av, av + ac);
    return x;
}

void atomarray_flags(t_atomarray* x, long flags)
{
    if (isAtomArray(x))
        x->flags = flags;
}

long atomarray_getflags(t_atomarray* x)
{
    return isAtomArray(x) ? x->flags : 0;
}

t_max_err atomarray_setatoms(t_atomarray* x, long ac, t_atom* av)
{
    if (!isAtomArray(x))
        return MAX_ERR_INVALID_PTR;
    freeChildren(x);
    x->atoms->clear();
    if (av != nullptr && ac > 0)
        x->atoms->assign(av, av + ac);
    return MAX_ERR_NONE;
}

t_max_err atomarray_getatoms(t_atomarray* x, long* ac, t_atom** av)
{
    if (!isAtomArray(x) || ac == nullptr || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    *ac = static_cast<long>(x->atoms->size());
    *av = x->atoms->data();
    return MAX_ERR_NONE;
}

t_max_err atomarray_copyatoms(t_atomarray* x, long* ac, t_atom** av)
{
    if (!isAtomArray(x) || ac == nullptr || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    *av = reinterpret_cast<t_atom*>(sysmem_newptr(sizeof(t_atom) * x->atoms->size()));
    if (*av == nullptr) {
        *ac = 0;
        return MAX_ERR_OUT_OF_MEM;
    }
    std::memcpy(*av, x->atoms->data(), sizeof(t_atom) * x->atoms->size());
    *ac = static_cast<long>(x->atoms->size());
    return MAX_ERR_NONE;
}

t_atom_long atomarray_getsize(t_atomarray* x)
{
    return isAtomArray(x) ? static_cast<t_atom_long>(x->atoms->size()) : 0;
}

t_max_err atomarray_getindex(t_atomarray* x, long index, t_atom* av)
{
    if (!isAtomArray(x) || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    if (index < 0 || index >= static_cast<long>(x->atoms->size()))
        return MAX_ERR_GENERIC;
    *av = (*x->atoms)[static_cast<std::size_t>(index)];
    return MAX_ERR_NONE;
}

t_max_err atomarray_setindex(t_atomarray* x, long index, t_atom* av)
{
    if (!isAtomArray(x) || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    if (index < 0 || index >= static_cast<long>(x->atoms->size()))
        return MAX_ERR_GENERIC;
    (*x->atoms)[static_cast<std::size_t>(index)] = *av;
    return MAX_ERR_NONE;
}

void atomarray_appendatom(t_atomarray* x, t_atom* a)
{
    if (isAtomArray(x) && a != nullptr)
        x->atoms->push_back(*a);
}

void atomarray_appendatoms(t_atomarray* x, long ac, t_atom* av)
{
    if (isAtomArray(x) && av != nullptr && ac > 0)
        x->atoms->insert(x->atoms->end(), av, av + ac);
}

void atomarray_chuckindex(t_atomarray* x, long index)
{
    if (isAtomArray(x) && index >= 0 && index < static_cast<long>(x->atoms->size()))
        x->atoms->erase(x->atoms->begin() + index);
}

void atomarray_clear(t_atomarray* x)
{
    if (!isAtomArray(x))
        return;
    freeChildren(x);
    x->atoms->clear();
}

// The copy shares any objects it holds, so it never frees them.
void* atomarray_duplicate(t_atomarray* x)
{
    if (!isAtomArray(x))
        return nullptr;
    return atomarray_new(static_cast<long>(x->atoms->size()), x->atoms->data());
}

void* atomarray_clone(t_atomarray* x)
{
    return atomarray_duplicate(x);
}
