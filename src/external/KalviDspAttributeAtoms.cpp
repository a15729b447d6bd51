#include "external/KalviDspAttributeAtoms.h"

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
