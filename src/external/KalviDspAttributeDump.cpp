#include "external/KalviDspAttributeDump.h"

#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspAttributeNames.h"
#include "external/KalviDspCommonSymbols.h"

#include <algorithm>

namespace vlk {
namespace {

t_atom symbolAtom(t_symbol* symbol)
{
    t_atom atom;
    atom_setsym(&atom, symbol);
    return atom;
}

// Writes "name atoms... ," to places from next on, never past capacity; the places written.
long writeEntry(t_object* object, const String& name, t_atom* places, long next, long capacity)
{
    AttributeAtoms value;
    if (!value.fetchOrReport(object, gensym(name.c_str()), "DumpAllAttributes") || value.isEmpty())
        return 0;
    Vector<t_atom> entry{symbolAtom(gensym(name.c_str()))};
    for (long i = 0; i < value.count(); ++i) {
        t_atom copy;
        if (CopyStateAtom(value.atoms()[i], copy))
            entry.push_back(copy);
        else
            object_warn(object, "unknown atom type in kalvimax_dumpattributes");
    }
    entry.push_back(symbolAtom(commonSymbols->comma));
    // The value may have grown since it was counted: capacity keeps the writes inside the array.
    const long written = std::min(static_cast<long>(entry.size()), capacity - next);
    std::copy(entry.begin(), entry.begin() + written, places + next);
    return written;
}

} // namespace

void DumpAttribute(t_object* object, const char* name, void* outlet)
{
    if (outlet == nullptr) {
        object_error(object, "no dump outlet");
        return;
    }
    if (!HasAttributeOrReport(object, gensym(name)))
        return;
    AttributeAtoms value;
    if (value.fetchOrReport(object, gensym(name), "DumpAttribute") && !value.isEmpty())
        outlet_anything(outlet, gensym(name), static_cast<short>(value.count()), value.atoms());
}

void DumpAllAttributes(t_object* object, void* outlet, const Vector<String>& names)
{
    if (outlet == nullptr) {
        object_error(object, "no dump outlet");
        return;
    }
    const long count =
        static_cast<long>(GetTotalNumberOfAtoms(object, names)) + 2 * static_cast<long>(names.size());
    const AtomArray atoms = NewAtoms(count);
    long written = 0;
    for (const String& name : names)
        written += writeEntry(object, name, atoms.get(), written, count);
    if (written == count)
        outlet_list(outlet, nullptr, static_cast<short>(count), atoms.get());
    else
        object_error(object, "%d atoms allocated but %d atoms dumped", static_cast<int>(count),
                     static_cast<int>(written));
}

void DumpAllAttributes(t_object* object, void* outlet)
{
    if (outlet == nullptr) {
        object_error(object, "no dump outlet");
        return;
    }
    DumpAllAttributes(object, outlet, GetStateAttributeNames(object));
}

} // namespace vlk
