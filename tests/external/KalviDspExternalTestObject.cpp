#include "KalviDspExternalTestObject.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspSfPlayObject.h"

namespace vlk::external::test {

// As large as the object's own structure, so that the listener's tests may use it as one; numchannels and
// buffersize are plain attributes here.
t_object* newTestObject()
{
    static t_class* c = [] {
        InitCommonSymbols();
        t_class* made = class_new("supporttest", nullptr, nullptr, sizeof(SfPlayObject), nullptr, A_GIMME, 0);
        CLASS_ATTR_LONG(made, "numchannels", 0, SfPlayObject, numchannels);
        CLASS_ATTR_LONG(made, "buffersize", 0, SfPlayObject, buffersize);
        return made;
    }();
    return static_cast<t_object*>(object_alloc(c));
}

} // namespace vlk::external::test
