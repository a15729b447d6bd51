#pragma once

#include "ext_dictionary.h"

#include <vector>

// The SDK leaves t_dictionary opaque; this is the host's layout of it. Entries keep the order in which their
// keys first came; a new value for a key takes the old one's place. Object values belong to the dictionary.
struct _dictionary
{
    struct Entry
    {
        t_symbol* key;
        t_atom value;
    };

    t_object ob;
    std::vector<Entry>* entries;
};

namespace vlk::host {

bool isDictionary(const void* x);

} // namespace vlk::host
