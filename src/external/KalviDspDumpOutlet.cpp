#include "external/KalviDspDumpOutlet.h"

#include "external/KalviDspCommonSymbols.h"

namespace vlk {

void CreateDumpOutlet(t_object* x)
{
    void* outlet = outlet_new(x, nullptr);
    object_obex_store(x, maxCommonSymbols->s_dumpout, static_cast<t_object*>(outlet));
}

void* GetDumpOutlet(t_object* x)
{
    t_object* outlet = nullptr;
    object_obex_lookup(x, maxCommonSymbols->s_dumpout, &outlet);
    if (outlet == nullptr)
        object_error(x, "no dump outlet");
    return outlet;
}

// Without an outlet the line comes twice: once from the lookup, once here.
void BangDumpOutlet(t_object* x)
{
    void* outlet = GetDumpOutlet(x);
    if (outlet == nullptr) {
        object_error(x, "no dump outlet");
        return;
    }
    outlet_bang(outlet);
}

} // namespace vlk
