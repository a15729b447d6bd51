#pragma once

#include "ext.h"

namespace vlk {

// The value of an attribute, or of a sub-attribute of an attribute object, as the host hands it over: the
// atoms belong to the holder, which frees them with sysmem_freeptr.
class AttributeAtoms
{
public:
    AttributeAtoms() = default;
    ~AttributeAtoms();
    AttributeAtoms(const AttributeAtoms&) = delete;
    AttributeAtoms& operator=(const AttributeAtoms&) = delete;

    // object_attr_getvalueof with the host allocating; its result. Frees what an earlier fetch held.
    t_max_err fetch(void* object, t_symbol* name);
    long count() const { return ac; }
    t_atom* atoms() const { return av; }
    // A count below 1 or no array: nothing to show or store.
    bool isEmpty() const { return ac < 1 || av == nullptr; }

private:
    long ac = 0;
    t_atom* av = nullptr;
};

// The state services' copy of one atom through the accessors of its type, floats narrowed to 32 bits; false,
// with to untouched, for a type other than long, float and symbol.
bool CopyStateAtom(const t_atom& from, t_atom& to);

} // namespace vlk
