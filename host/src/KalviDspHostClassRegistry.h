#pragma once

#include "ext_mess.h"

#include <map>
#include <mutex>
#include <utility>

namespace vlk::host {

// Registered classes by name space and name. Any thread may look up.
class ClassRegistry
{
public:
    static ClassRegistry& instance();

    void add(t_symbol* nameSpace, t_symbol* name, t_class* c);
    t_class* find(t_symbol* nameSpace, t_symbol* name) const;

private:
    // Guards classes.
    mutable std::mutex lock;
    std::map<std::pair<t_symbol*, t_symbol*>, t_class*> classes;
};

} // namespace vlk::host
