#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include "ext.h"

namespace vlk {

// Attribute values through an outlet. A null outlet is refused with "no dump outlet". Thread of the message.

// "name atoms..."; an empty value sends nothing.
void DumpAttribute(t_object* object, const char* name, void* outlet);
// One list of the named attributes, each entry closed by a comma symbol, the last one too:
// "automute 20. , buffersize 480000 , ... ,".
void DumpAllAttributes(t_object* object, void* outlet, const Vector<String>& names);
// The same for the state attributes, alphabetically.
void DumpAllAttributes(t_object* object, void* outlet);

} // namespace vlk
