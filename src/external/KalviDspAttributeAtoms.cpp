#include "external/KalviDspAttributeAtoms.h"

#include "external/KalviDspMaxErrorName.h"

#include <new>

namespace vlk {

t_max_err AttributeAtoms::fetch(void* object, t_symbol* name)
{
    values.reset();
    ac = 0;
    t_atom* av = nullptr;
    const t_max_err result = object_attr_getvalueof(object, name, &ac, &av);
    values.reset(av);
    return result;
}

bool AttributeAtoms::fetchOrReport(t_object* object, t_symbol* name, const char* operation)
{
    const t_max_err result = fetch(object, name);
    if (result != MAX_ERR_NONE)
        object_bug(object, "%s : %s in object_attr_getvalueof (%s)", operation, GetMaxErrorName(result),
                   name->s_name);
    return result == MAX_ERR_NONE;
}

bool HasAttributeOrReport(t_object* object, t_symbol* name)
{
    if (object_attr_get(object, name) != nullptr)
        return true;
    object_error(object, "no attribute %s", name->s_name);
    return false;
}

AtomArray NewAtoms(long count, bool cleared)
{
    const t_ptr_size size = sizeof(t_atom) * static_cast<t_ptr_size>(count < 0 ? 0 : count);
    AtomArray atoms(reinterpret_cast<t_atom*>(cleared ? sysmem_newptrclear(size) : sysmem_newptr(size)));
    if (atoms == nullptr)
        throw std::bad_alloc();
    return atoms;
}

bool CopyStateAtom(const t_atom& from, t_atom& to)
{
    switch (from.a_type) {
    case A_LONG:
        atom_setlong(&to, atom_getlong(&from));
        return true;
    case A_FLOAT:
        atom_setfloat(&to, static_cast<float>(atom_getfloat(&from)));
        return true;
    case A_SYM:
        atom_setsym(&to, atom_getsym(&from));
        return true;
    default:
        return false;
    }
}

} // namespace vlk
