#pragma once

#include "ext.h"

#include <memory>

namespace vlk {

struct SysmemDeleter
{
    void operator()(void* block) const { sysmem_freeptr(block); }
};
// Atoms of the host's memory: what a caller receives is release()d to it.
using AtomArray = std::unique_ptr<t_atom[], SysmemDeleter>;

// The value of an attribute, or of a sub-attribute of an attribute object, as the host hands it over: the
// atoms belong to the holder, which frees them with sysmem_freeptr.
class AttributeAtoms
{
public:
    // object_attr_getvalueof with the host allocating; its result. Frees what an earlier fetch held.
    t_max_err fetch(void* object, t_symbol* name);
    // fetch; false on a fault, after the bug line "operation : ERROR in object_attr_getvalueof (name)".
    bool fetchOrReport(t_object* object, t_symbol* name, const char* operation);
    long count() const { return ac; }
    t_atom* atoms() const { return values.get(); }
    // A count below 1 or no array: nothing to show or store.
    bool isEmpty() const { return ac < 1 || values == nullptr; }

private:
    long ac = 0;
    AtomArray values;
};

// False, after the error line "no attribute name", when the object has no such attribute.
bool HasAttributeOrReport(t_object* object, t_symbol* name);

// count atoms from sysmem_newptr, zeroed when asked; std::bad_alloc when the host has no memory, for the host
// boundary to report.
AtomArray NewAtoms(long count, bool cleared = false);

// The state services' copy of one atom through the accessors of its type, floats narrowed to 32 bits; false,
// with to untouched, for a type other than long, float and symbol.
bool CopyStateAtom(const t_atom& from, t_atom& to);

} // namespace vlk
