#include "external/KalviDspJsonState.h"

#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspMaxErrorName.h"
#include "external/KalviDspMaxPaths.h"
#include "text/KalviDspStringHelper.h"

#include "ext_atomarray.h"
#include "ext_path.h"

#include <fstream>
#include <ostream>

namespace vlk {
namespace {

constexpr t_fourcc jsonType = 0x4A534F4E;
constexpr std::size_t maxProposedNameBytes = 512;

// The text of one atom; a number's blank behind it only where the last place of a list asks for one.
String atomText(const t_atom& atom, bool withBlank)
{
    const char* blank = withBlank ? " " : "";
    switch (atom.a_type) {
    case A_SYM:
        return "\"" + String(atom_getsym(&atom)->s_name) + "\"";
    case A_FLOAT:
        return formatNumber("%f", static_cast<float>(atom_getfloat(&atom))) + blank;
    case A_LONG:
        return toString(static_cast<long long>(atom_getlong(&atom))) + blank;
    default:
        return String();
    }
}

String entryValue(t_atom& entry)
{
    String value;
    if (atomisatomarray(&entry) != 1) {
        AtomsToJsonValue(1, &entry, value);
        return value;
    }
    long ac = 0;
    t_atom* av = nullptr;
    atomarray_copyatoms(static_cast<t_atomarray*>(atom_getobj(&entry)), &ac, &av);
    const AtomArray copy(av);
    AtomsToJsonValue(ac, copy.get(), value);
    return value;
}

} // namespace

bool WriteDictionaryAsJson(t_object* object, t_dictionary* d, const char* path)
{
    if (d == nullptr)
        return false;
    std::filebuf file;
    if (file.open(path, std::ios::out | std::ios::trunc) == nullptr)
        return false;
    std::ostream stream(&file);
    long numKeys = 0;
    t_symbol** keys = nullptr;
    const t_max_err result = dictionary_getkeys_ordered(d, &numKeys, &keys);
    if (result != MAX_ERR_NONE || numKeys < 0) {
        object_error(object, "couldnt get dict key : %s", GetMaxErrorName(result));
        return false;
    }
    stream << "{\n";
    for (long i = 0; i < numKeys; ++i) {
        stream << "    \"" << keys[i]->s_name << "\" : ";
        t_atom entry;
        if (dictionary_getatom(d, keys[i], &entry) != MAX_ERR_NONE) {
            // The line stays unfinished: the next entry follows on it.
            object_error(object, "entry %s is not atom ? ", keys[i]->s_name);
            continue;
        }
        stream << entryValue(entry) << (i != numKeys - 1 ? ", " : "") << "\n";
    }
    dictionary_freekeys(d, numKeys, keys);
    stream << "}\n";
    stream.flush();
    file.close();
    return true;
}

void AtomsToJsonValue(long count, const t_atom* atoms, String& value)
{
    value.clear();
    if (count <= 0 || atoms == nullptr)
        return;
    if (count == 1) {
        value = atomText(atoms[0], false);
        return;
    }
    value = "[ ";
    for (long i = 0; i < count - 1; ++i) {
        const String text = atomText(atoms[i], false);
        // An atom of another type leaves no trace, not even its separator.
        if (!text.empty())
            value += text + ", ";
    }
    value += atomText(atoms[count - 1], true) + "]";
}

String ChooseJsonFileToSave()
{
    char name[maxProposedNameBytes] = "file.json";
    short folder = 0;
    t_fourcc type = 0;
    t_fourcc types[1] = {jsonType};
    if (saveasdialog_extended(name, &folder, &type, types, 1) != 0)
        return String();
    char path[MAX_PATH_CHARS] = "";
    if (path_topotentialname(folder, name, path, 0) != 0)
        return String();
    return MaxPathToPosixPath(path);
}

} // namespace vlk
