#include "KalviDspHostClassRegistry.h"

namespace vlk::host {

ClassRegistry& ClassRegistry::instance()
{
    static ClassRegistry registry;
    return registry;
}

void ClassRegistry::add(t_symbol* nameSpace, t_symbol* name, t_class* c)
{
    std::lock_guard<std::mutex> guard(lock);
    classes[{nameSpace, name}] = c;
}

t_class* ClassRegistry::find(t_symbol* nameSpace, t_symbol* name) const
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = classes.find({nameSpace, name});
    return found == classes.end() ? nullptr : found->second;
}

} // namespace vlk::host
