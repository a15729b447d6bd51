#pragma once

#include "ext.h"
#include "ext_dictionary.h"

namespace vlk {

// An object's state as a Max dictionary: attribute names as keys, in alphabetical order. Every fault is a
// line in the Max window. Thread of the message.

// A long, a float (through 32 bits) or a symbol for a value of one atom, an atom array for several; nothing
// for an empty value. A null dictionary is left alone.
void AppendAttributeToDictionary(t_object* object, t_dictionary* d, t_symbol* name);
// A new dictionary of the state attributes; the caller frees it.
t_dictionary* MakeDictionaryFromAttributes(t_object* object);
// "dictionary uNNN" through the outlet, under a unique registered name, then the dictionary is emptied: its
// contents live as long as the message is processed. False for a null outlet or dictionary.
bool OutputDictionary(void* outlet, t_dictionary* d);
void OutputDictionaryToDumpOutlet(t_object* object, t_dictionary* d);
// Sets each entry's attribute by name, in no promised order and without counting atoms. False for a null
// dictionary or when its keys can't be had.
bool ReadDictionaryIntoAttributes(t_object* object, t_dictionary* d);

} // namespace vlk
