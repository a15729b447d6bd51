// Setting, reading and converting atoms.
#include "KalviDspHostAtomDelivery.h"
#include "KalviDspHostAtomFormat.h"
#include "KalviDspHostAtomParser.h"
#include "KalviDspHostAtomText.h"
#include "KalviDspHostObject.h"

#include "ext_atomarray.h"
#include "ext_obex.h"
#include "ext_post.h"
#include "ext_proto.h"
#include "ext_sysmem.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

t_max_err atom_setlong(t_atom* a, t_atom_long b)
{
    if (a == nullptr)
        return MAX_ERR_INVALID_PTR;
    a->a_type = A_LONG;
    a->a_w.w_long = b;
    return MAX_ERR_NONE;
}

t_max_err atom_setfloat(t_atom* a, double b)
{
    if (a == nullptr)
        return MAX_ERR_INVALID_PTR;
    a->a_type = A_FLOAT;
    a->a_w.w_float = b;
    return MAX_ERR_NONE;
}

t_max_err atom_setsym(t_atom* a, t_symbol* b)
{
    if (a == nullptr)
        return MAX_ERR_INVALID_PTR;
    a->a_type = A_SYM;
    a->a_w.w_sym = b;
    return MAX_ERR_NONE;
}

t_max_err atom_setobj(t_atom* a, void* b)
{
    if (a == nullptr)
        return MAX_ERR_INVALID_PTR;
    a->a_type = A_OBJ;
    a->a_w.w_obj = static_cast<t_object*>(b);
    return MAX_ERR_NONE;
}

// A symbol is coerced when its whole text is a number.
t_atom_long atom_getlong(const t_atom* a)
{
    if (a == nullptr)
        return 0;
    switch (a->a_type) {
    case A_LONG:
        return a->a_w.w_long;
    case A_FLOAT:
        return static_cast<t_atom_long>(a->a_w.w_float);
    case A_SYM: {
        std::vector<t_atom> parsed = vlk::host::parseAtoms(a->a_w.w_sym->s_name);
        if (parsed.size() == 1 && parsed[0].a_type != A_SYM)
            return atom_getlong(&parsed[0]);
        return 0;
    }
    default:
        return 0;
    }
}

t_atom_float atom_getfloat(const t_atom* a)
{
    if (a == nullptr)
        return 0;
    switch (a->a_type) {
    case A_LONG:
        return static_cast<t_atom_float>(a->a_w.w_long);
    case A_FLOAT:
        return a->a_w.w_float;
    case A_SYM: {
        std::vector<t_atom> parsed = vlk::host::parseAtoms(a->a_w.w_sym->s_name);
        if (parsed.size() == 1 && parsed[0].a_type != A_SYM)
            return atom_getfloat(&parsed[0]);
        return 0;
    }
    default:
        return 0;
    }
}

t_symbol* atom_getsym(const t_atom* a)
{
    if (a != nullptr && a->a_type == A_SYM && a->a_w.w_sym != nullptr)
        return a->a_w.w_sym;
    return gensym("");
}

void* atom_getobj(const t_atom* a)
{
    return a != nullptr && a->a_type == A_OBJ ? a->a_w.w_obj : nullptr;
}

long atom_gettype(const t_atom* a)
{
    return a == nullptr ? static_cast<long>(A_NOTHING) : a->a_type;
}

long atom_getcharfix(const t_atom* a)
{
    if (a == nullptr)
        return 0;
    if (a->a_type == A_LONG)
        return a->a_w.w_long < 0 ? 0 : (a->a_w.w_long > 255 ? 255 : static_cast<long>(a->a_w.w_long));
    if (a->a_type == A_FLOAT) {
        long value = static_cast<long>(a->a_w.w_float * 255.0);
        return value < 0 ? 0 : (value > 255 ? 255 : value);
    }
    return 0;
}

t_max_err atom_arg_getlong(t_atom_long* c, long idx, long ac, const t_atom* av)
{
    if (c == nullptr || av == nullptr || idx < 0 || idx >= ac)
        return MAX_ERR_GENERIC;
    *c = atom_getlong(av + idx);
    return MAX_ERR_NONE;
}

long atom_arg_getfloat(float* c, long idx, long ac, const t_atom* av)
{
    if (c == nullptr || av == nullptr || idx < 0 || idx >= ac)
        return MAX_ERR_GENERIC;
    *c = static_cast<float>(atom_getfloat(av + idx));
    return MAX_ERR_NONE;
}

long atom_arg_getdouble(double* c, long idx, long ac, const t_atom* av)
{
    if (c == nullptr || av == nullptr || idx < 0 || idx >= ac)
        return MAX_ERR_GENERIC;
    *c = atom_getfloat(av + idx);
    return MAX_ERR_NONE;
}

long atom_arg_getsym(t_symbol** c, long idx, long ac, const t_atom* av)
{
    if (c == nullptr || av == nullptr || idx < 0 || idx >= ac)
        return MAX_ERR_GENERIC;
    *c = atom_getsym(av + idx);
    return MAX_ERR_NONE;
}

t_max_err atom_alloc(long* ac, t_atom** av, char* alloc)
{
    return atom_alloc_array(1, ac, av, alloc);
}

t_max_err atom_alloc_array(long minsize, long* ac, t_atom** av, char* alloc)
{
    if (ac == nullptr || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    if (alloc != nullptr)
        *alloc = 0;
    if (*ac != 0 && *av != nullptr && *ac >= minsize)
        return MAX_ERR_NONE;
    *av = reinterpret_cast<t_atom*>(sysmem_newptrclear(sizeof(t_atom) * static_cast<std::size_t>(minsize)));
    if (*av == nullptr) {
        *ac = 0;
        return MAX_ERR_OUT_OF_MEM;
    }
    *ac = minsize;
    if (alloc != nullptr)
        *alloc = 1;
    return MAX_ERR_NONE;
}

t_max_err atom_setparse(long* ac, t_atom** av, const char* parsestr)
{
    return vlk::host::deliverAtoms(vlk::host::parseAtoms(parsestr == nullptr ? "" : parsestr), ac, av);
}

t_max_err atom_setformat(long* ac, t_atom** av, const char* fmt, ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    std::vector<t_atom> atoms = vlk::host::formatAtoms(fmt, arguments);
    va_end(arguments);
    return vlk::host::deliverAtoms(atoms, ac, av);
}

t_max_err atom_gettext(long ac, t_atom* av, long* textsize, char** text, long /*flags*/)
{
    if (textsize == nullptr || text == nullptr)
        return MAX_ERR_INVALID_PTR;
    const std::string result = vlk::host::atomsToText(ac, av);
    if (*text == nullptr || *textsize <= 0) {
        *text = sysmem_newptr(result.size() + 1);
        if (*text == nullptr)
            return MAX_ERR_OUT_OF_MEM;
        *textsize = static_cast<long>(result.size() + 1);
    }
    std::strncpy(*text, result.c_str(), static_cast<std::size_t>(*textsize));
    (*text)[*textsize - 1] = '\0';
    return MAX_ERR_NONE;
}

long atomisatomarray(t_atom* a)
{
    t_symbol* name = a != nullptr && a->a_type == A_OBJ ? object_classname(a->a_w.w_obj) : nullptr;
    return name == gensym("atomarray") ? 1 : 0;
}

long atomisdictionary(t_atom* a)
{
    t_symbol* name = a != nullptr && a->a_type == A_OBJ ? object_classname(a->a_w.w_obj) : nullptr;
    return name == gensym("dictionary") ? 1 : 0;
}

namespace {

template <typename T, typename Set> t_max_err setArray(long ac, t_atom* av, long count, T* vals, Set set)
{
    if (av == nullptr || vals == nullptr)
        return MAX_ERR_INVALID_PTR;
    for (long i = 0; i < ac && i < count; ++i)
        set(av + i, vals[i]);
    return MAX_ERR_NONE;
}

template <typename T, typename Get> t_max_err getArray(long ac, t_atom* av, long count, T* vals, Get get)
{
    if (av == nullptr || vals == nullptr)
        return MAX_ERR_INVALID_PTR;
    for (long i = 0; i < ac && i < count; ++i)
        vals[i] = static_cast<T>(get(av + i));
    return MAX_ERR_NONE;
}

} // namespace

t_max_err atom_setlong_array(long ac, t_atom* av, long count, t_atom_long* vals)
{
    return setArray(ac, av, count, vals, atom_setlong);
}

t_max_err atom_setfloat_array(long ac, t_atom* av, long count, float* vals)
{
    return setArray(ac, av, count, vals, atom_setfloat);
}

t_max_err atom_setdouble_array(long ac, t_atom* av, long count, double* vals)
{
    return setArray(ac, av, count, vals, atom_setfloat);
}

t_max_err atom_setsym_array(long ac, t_atom* av, long count, t_symbol** vals)
{
    return setArray(ac, av, count, vals, atom_setsym);
}

t_max_err atom_getlong_array(long ac, t_atom* av, long count, t_atom_long* vals)
{
    return getArray(ac, av, count, vals, atom_getlong);
}

t_max_err atom_getfloat_array(long ac, t_atom* av, long count, float* vals)
{
    return getArray(ac, av, count, vals, atom_getfloat);
}

t_max_err atom_getdouble_array(long ac, t_atom* av, long count, double* vals)
{
    return getArray(ac, av, count, vals, atom_getfloat);
}

t_max_err atom_getsym_array(long ac, t_atom* av, long count, t_symbol** vals)
{
    return getArray(ac, av, count, vals, atom_getsym);
}

void postatom(t_atom* ap)
{
    if (ap != nullptr)
        post("%s", vlk::host::atomToText(*ap).c_str());
}
