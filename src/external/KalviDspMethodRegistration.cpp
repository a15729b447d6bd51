#include "external/KalviDspMethodRegistration.h"

#include "external/KalviDspMethodDocumentation.h"

namespace vlk {
namespace {

void reportRefusal(t_max_err result, const char* selector)
{
    if (result != MAX_ERR_NONE)
        object_post(nullptr, "error when adding method %s", selector);
}

} // namespace

void AddPostDspStateMethod(t_class* klass, method handler)
{
    class_addmethod(klass, handler, "postdspstate", 0);
    AddMethodDocumentation(klass, "postdspstate", "post information about the dsp connections.");
}

void AddAssistMethod(t_class* klass, method handler)
{
    class_addmethod(klass, handler, "assist", A_CANT, 0);
}

void AddDsp64Method(t_class* klass, method handler)
{
    class_addmethod(klass, handler, "dsp64", A_CANT, 0);
}

void AddGimmeMethod(t_class* klass, const char* selector, method handler)
{
    reportRefusal(class_addmethod(klass, handler, selector, A_GIMME, 0), selector);
}

void AddNoArgumentMethod(t_class* klass, const char* selector, method handler)
{
    reportRefusal(class_addmethod(klass, handler, selector, 0), selector);
}

void AddIntMethod(t_class* klass, method handler)
{
    reportRefusal(class_addmethod(klass, handler, "int", A_LONG, 0), "int");
}

} // namespace vlk
