#include "external/KalviDspAttributeState.h"

#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspAttributeNames.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspHostBoundary.h"
#include "external/KalviDspMaxErrorName.h"

#include <algorithm>

namespace vlk {
namespace {

// Copies the attribute's atoms to places from next on, up to capacity; the places used.
long storeAttribute(t_object* x, const String& name, t_atom* places, long next, long capacity)
{
    AttributeAtoms value;
    if (!value.fetchOrReport(x, gensym(name.c_str()), "kalvimax_getvalueof"))
        return 0;
    if (value.count() < 0 || value.atoms() == nullptr) {
        // The arguments stand in the order of the format here, which they did not before: a count printed as
        // text would read an integer as a pointer.
        object_bug(x, "kalvimax_getvalueof : error in object_attr_getvalueof %s (tmpac=%ld)", name.c_str(),
                   value.count());
        return 0;
    }
    long stored = 0;
    for (long i = 0; i < value.count() && next + stored < capacity; ++i) {
        if (CopyStateAtom(value.atoms()[i], places[next + stored]))
            ++stored;
        else
            object_bug(x, "kalvimax_getvalueof : unknown atom type");
    }
    return stored;
}

// Reads the attribute's present count of atoms from av at index, sets it; false when the run ran out.
bool setAttributeFromRun(t_object* x, const String& name, const t_atom* av, long total, long& index)
{
    const long count = GetNumberOfAtomsNeededToStoreAttribute(x, name.c_str());
    if (count == 0)
        return true;
    // Cleared, so that a place an unknown atom leaves is an empty atom rather than stale memory.
    const AtomArray values = NewAtoms(count, true);
    for (long place = 0; place < count; ++place) {
        // Tested before the read rather than after it: a setter that lengthened a later attribute would
        // otherwise read one atom past the caller's run.
        if (index >= total) {
            object_error(x, "error reading atoms in kalvimax_setvalueof");
            return false;
        }
        if (CopyStateAtom(av[index], values[place]))
            ++index;
        else
            object_warn(x, "unknown atom type in kalvimax_setvalueof");
    }
    const t_max_err result = object_attr_setvalueof(x, gensym(name.c_str()), count, values.get());
    if (result != MAX_ERR_NONE)
        object_error(x, "%s in object_attr_setvalueof %s", GetMaxErrorName(result), name.c_str());
    return true;
}

void getState(t_object* x, long* ac, t_atom** av)
{
    if (ac == nullptr || av == nullptr) {
        object_bug(x, "kalvimax_getvalueof : there is a problem");
        return;
    }
    const Vector<String> names = GetStateAttributeNames(x);
    const long total = GetTotalNumberOfAtoms(x, names);
    if (*ac > 0 && *av != nullptr) {
        object_warn(x, "kalvimax_getvalueof : memory passed in");
    } else {
        *av = NewAtoms(total).release();
        *ac = total;
    }
    // The caller's count bounds the writes into its own memory, which is not checked otherwise.
    long stored = 0;
    for (const String& name : names)
        stored += storeAttribute(x, name, *av, stored, *ac);
    if (stored != total)
        object_error(x, "%d atoms allocated but %d atoms stored by the pattrstorage", static_cast<int>(total),
                     static_cast<int>(stored));
}

void setState(t_object* x, long ac, const t_atom* av)
{
    if (ac < 1 || av == nullptr)
        return;
    const Vector<String> names = GetStateAttributeNames(x);
    const long total = GetTotalNumberOfAtoms(x, names);
    if (total != ac) {
        object_error(x, "setvalueof error (received %d atoms. %d atoms were expected)", static_cast<int>(ac),
                     static_cast<int>(total));
        return;
    }
    long index = 0;
    for (const String& name : names)
        if (!setAttributeFromRun(x, name, av, total, index))
            break;
}

void storePreset(t_object* x)
{
    const long total = GetTotalNumberOfAtoms(x, GetStateAttributeNames(x));
    const long count = total + 3;
    const AtomArray message = NewAtoms(count);
    atom_setobj(&message[0], x);
    atom_setsym(&message[1], object_classname(x));
    atom_setsym(&message[2], commonSymbols->recallpreset);
    long stateCount = 0;
    t_atom* stateAtoms = nullptr;
    kalvimax_getvalueof(x, &stateCount, &stateAtoms);
    const AtomArray state(stateAtoms);
    // A state of no atoms is refused too: there would be nothing to recall.
    if (stateCount < 1 || state == nullptr || stateCount != total) {
        object_error(x, "error in kalvimax_preset");
        return;
    }
    std::copy(state.get(), state.get() + total, message.get() + 3);
    if (auto* binbuf = static_cast<t_binbuf*>(gensym("_preset")->s_thing))
        binbuf_insert(binbuf, nullptr, static_cast<short>(count), message.get());
}

} // namespace

t_max_err kalvimax_getvalueof(t_object* x, long* ac, t_atom** av)
{
    CallAtHostBoundary(x, errorWords, [&] { getState(x, ac, av); });
    return MAX_ERR_NONE;
}

t_max_err kalvimax_setvalueof(t_object* x, long ac, t_atom* av)
{
    CallAtHostBoundary(x, errorWords, [&] { setState(x, ac, av); });
    return MAX_ERR_NONE;
}

void kalvimax_preset(t_object* x)
{
    CallAtHostBoundary(x, errorWords, [x] { storePreset(x); });
}

void kalvimax_recallpreset(t_object* x, t_symbol* /*s*/, long ac, t_atom* av)
{
    kalvimax_setvalueof(x, ac, av);
}

} // namespace vlk
