#pragma once

#include "z_dsp.h"

namespace vlk {

// Allocation and the signal side of an object of the package.

void* AllocateObject(t_class* klass);
// The class's constructor is handed the box's dictionary among its arguments.
void SetClassDictionaryConstructor(t_class* klass);
// numInlets signal inlets, numOutlets signal outlets; with noInPlace the host never lets an input and an
// output share a vector.
void SetupDspObject(t_pxobject* x, long numInlets, long numOutlets, bool noInPlace);
void FreeDspObject(t_pxobject* x);

} // namespace vlk
