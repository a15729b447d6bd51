#pragma once

#include "ext.h"

namespace vlk {

// The box's dictionary that the host hands to a constructor: a few attributes must be known before the
// processing object exists, the rest are processed once it stands.

// Sets the one attribute from the dictionary's entry.
bool ReadAttributeFromDictionary(t_object* x, t_dictionary* d, t_symbol* key);
// Then count zero-terminated attribute names; all are tried, also after a failure.
bool ReadAttributesFromDictionaryArgument(t_object* x, long argc, t_atom* argv, long count, ...);
// Every attribute of the dictionary; with check, unknown keys are reported first.
bool ProcessDictionaryArgument(t_object* x, long argc, t_atom* argv, bool check);

} // namespace vlk
