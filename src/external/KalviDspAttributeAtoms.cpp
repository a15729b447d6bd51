#include "external/KalviDspAttributeAtoms.h"

namespace vlk {

AttributeAtoms::~AttributeAtoms()
{
    sysmem_freeptr(av);
}

t_max_err AttributeAtoms::fetch(void* object, t_symbol* name)
{
    sysmem_freeptr(av);
    ac = 0;
    av = nullptr;
    return object_attr_getvalueof(object, name, &ac, &av);
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
