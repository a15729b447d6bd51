#pragma once

#include "external/KalviDspSfPlayObject.h"

namespace vlk {

// The constructor: argv carries the box's dictionary. Null when the object cannot be made.
void* SfPlayNew(t_symbol* s, long argc, t_atom* argv);
void SfPlayFree(SfPlayObject* x);

} // namespace vlk
