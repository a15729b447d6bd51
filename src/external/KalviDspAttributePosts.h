#pragma once

#include "ext.h"

namespace vlk {

// Attribute values as lines of the Max window, "name : atoms". Thread of the message.

// "no attribute %s" when the object has none of that name; an empty value posts nothing.
void PostValueOfAttribute(t_object* object, const char* name);
// A count line, then one line per state attribute, alphabetically.
void PostAllAttributes(t_object* object);
void PostAtoms(t_object* object, long count, const t_atom* atoms, const char* name);

} // namespace vlk
