#include "external/KalviDspDspObject.h"

namespace vlk {

void* AllocateObject(t_class* klass)
{
    return object_alloc(klass);
}

void SetClassDictionaryConstructor(t_class* klass)
{
    klass->c_flags |= CLASS_FLAG_NEWDICTIONARY;
}

void SetupDspObject(t_pxobject* x, long numInlets, long numOutlets, bool noInPlace)
{
    z_dsp_setup(x, numInlets);
    for (long i = 0; i < numOutlets; ++i)
        outlet_new(x, "signal");
    if (noInPlace)
        x->z_misc = Z_NO_INPLACE;
}

void FreeDspObject(t_pxobject* x)
{
    z_dsp_free(x);
}

} // namespace vlk
