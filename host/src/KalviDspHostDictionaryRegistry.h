#pragma once

#include "ext_dictionary.h"

#include <map>
#include <mutex>

namespace vlk::host {

// Dictionaries registered by name, with the count of their holders: the registering owner counts as one,
// each retain as one more. Any thread may use it.
class DictionaryRegistry
{
public:
    static DictionaryRegistry& instance();

    t_dictionary* add(t_dictionary* d, t_symbol** name);
    t_max_err remove(t_dictionary* d);
    t_dictionary* retain(t_symbol* name);
    t_max_err release(t_dictionary* d);
    t_symbol* nameOf(t_dictionary* d);
    // For object_free: true when x is a registered dictionary that another holder still uses, in which case
    // this holder's count is dropped instead; a dictionary whose last holder frees it leaves the registry.
    bool keepsAliveOnFree(void* x);

private:
    struct Registration
    {
        t_dictionary* dictionary;
        int holders;
    };

    std::map<t_symbol*, Registration>::iterator findByPointer(t_dictionary* d);

    // Guards registrations.
    std::mutex lock;
    std::map<t_symbol*, Registration> registrations;
};

} // namespace vlk::host
