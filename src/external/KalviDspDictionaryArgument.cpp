#include "external/KalviDspDictionaryArgument.h"

#include <cstdarg>

namespace vlk {

bool ReadAttributeFromDictionary(t_object* x, t_dictionary* d, t_symbol* key)
{
    if (dictionary_hasentry(d, key) != 1) {
        object_error(x, "dictionary doesnt have entry for %s", key->s_name);
        return false;
    }
    t_atom value;
    if (dictionary_getatom(d, key, &value) != MAX_ERR_NONE) {
        object_error(x, "error getting atom value from dict for entry %s", key->s_name);
        return false;
    }
    object_attr_setvalueof(x, key, 1, &value);
    return true;
}

bool ReadAttributesFromDictionaryArgument(t_object* x, long argc, t_atom* argv, long count, ...)
{
    t_dictionary* d = object_dictionaryarg(argc, argv);
    if (d == nullptr) {
        object_bug(x, "couldnt process dictionnary");
        return false;
    }
    bool succeeded = true;
    va_list names;
    va_start(names, count);
    for (long i = 0; i < count; ++i)
        succeeded = ReadAttributeFromDictionary(x, d, gensym(va_arg(names, const char*))) && succeeded;
    va_end(names);
    if (!succeeded)
        object_error(x, "error parsing dictionary");
    return succeeded;
}

bool ProcessDictionaryArgument(t_object* x, long argc, t_atom* argv, bool check)
{
    t_dictionary* d = object_dictionaryarg(argc, argv);
    if (d == nullptr) {
        object_bug(x, "couldnt process dictionnary");
        return false;
    }
    if (check)
        attr_dictionary_check(x, d);
    attr_dictionary_process(x, d);
    return true;
}

} // namespace vlk
