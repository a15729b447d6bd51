#include "external/KalviDspDictionaryState.h"

#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspAttributeNames.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspMaxErrorName.h"

#include "ext_atomarray.h"
#include "ext_dictobj.h"

namespace vlk {
namespace {

void appendOneAtom(t_object* object, t_dictionary* d, t_symbol* name, const t_atom& atom)
{
    switch (atom.a_type) {
    case A_LONG:
        dictionary_appendlong(d, name, atom_getlong(&atom));
        break;
    case A_FLOAT:
        dictionary_appendfloat(d, name, static_cast<float>(atom_getfloat(&atom)));
        break;
    case A_SYM:
        dictionary_appendsym(d, name, atom_getsym(&atom));
        break;
    default:
        object_warn(object, "unknown atom type in AppendAttributeToDictionary");
        break;
    }
}

void setAttributeFromEntry(t_object* object, t_symbol* key, t_atom& entry)
{
    if (atomisatomarray(&entry) != 1) {
        object_attr_setvalueof(object, key, 1, &entry);
        return;
    }
    long ac = 0;
    t_atom* av = nullptr;
    atomarray_copyatoms(static_cast<t_atomarray*>(atom_getobj(&entry)), &ac, &av);
    const AtomArray copy(av);
    object_attr_setvalueof(object, key, ac, copy.get());
}

} // namespace

void AppendAttributeToDictionary(t_object* object, t_dictionary* d, t_symbol* name)
{
    if (d == nullptr)
        return;
    if (!HasAttributeOrReport(object, name))
        return;
    AttributeAtoms value;
    if (!value.fetchOrReport(object, name, "AppendAttributeToDictionary") || value.isEmpty())
        return;
    if (value.count() == 1) {
        appendOneAtom(object, d, name, value.atoms()[0]);
        return;
    }
    for (long i = 0; i < value.count(); ++i)
        if (value.atoms()[i].a_type == A_FLOAT)
            atom_setfloat(&value.atoms()[i], static_cast<float>(atom_getfloat(&value.atoms()[i])));
    dictionary_appendatoms(d, name, value.count(), value.atoms());
}

t_dictionary* MakeDictionaryFromAttributes(t_object* object)
{
    t_dictionary* d = dictionary_new();
    for (const String& name : GetStateAttributeNames(object))
        AppendAttributeToDictionary(object, d, gensym(name.c_str()));
    return d;
}

bool OutputDictionary(void* outlet, t_dictionary* d)
{
    if (outlet == nullptr || d == nullptr)
        return false;
    t_symbol* name = symbol_unique();
    dictobj_register(d, &name);
    t_atom nameAtom;
    atom_setsym(&nameAtom, name);
    outlet_anything(outlet, maxCommonSymbols->s_dictionary, 1, &nameAtom);
    dictionary_clear(d);
    return true;
}

void OutputDictionaryToDumpOutlet(t_object* object, t_dictionary* d)
{
    void* outlet = GetDumpOutlet(object);
    if (outlet == nullptr)
        object_error(object, "no dump outlet");
    if (!OutputDictionary(outlet, d))
        object_error(object, "couldnt outlet dictionary");
}

bool ReadDictionaryIntoAttributes(t_object* object, t_dictionary* d)
{
    if (d == nullptr)
        return false;
    long numKeys = 0;
    t_symbol** keys = nullptr;
    const t_max_err result = dictionary_getkeys(d, &numKeys, &keys);
    if (result != MAX_ERR_NONE || numKeys < 0) {
        object_error(object, "couldnt get dict key : %s", GetMaxErrorName(result));
        return false;
    }
    for (long i = 0; i < numKeys; ++i) {
        t_atom entry;
        if (dictionary_getatom(d, keys[i], &entry) != MAX_ERR_NONE)
            object_error(object, "entry %s is not atom ? ", keys[i]->s_name);
        else
            setAttributeFromEntry(object, keys[i], entry);
    }
    dictionary_freekeys(d, numKeys, keys);
    return true;
}

} // namespace vlk
