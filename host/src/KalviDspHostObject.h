#pragma once

#include "KalviDspHostOutlet.h"

#include "ext_obex.h"

#include <memory>
#include <vector>

namespace vlk::host {

// What the host keeps of each object it allocated, in a header in front of the object's own memory.
// Outlets, attributes and the store change on the thread that creates and configures the object.
class ObjectRecord
{
public:
    struct Stored
    {
        t_symbol* key;
        t_object* value;
        long flags;
    };

    // Null for anything that is not a live object of this host.
    static ObjectRecord* of(const void* x);

    explicit ObjectRecord(t_class* c) : klass(c) {}
    ~ObjectRecord();

    t_class* klass;
    std::vector<Stored> store;
    // In creation order: the first one is the rightmost.
    std::vector<std::unique_ptr<Outlet>> outlets;
    // Attributes of this instance only, owned by it.
    std::vector<t_object*> attributes;
    std::vector<void*> clients;
};

// The outlets of x from left to right.
std::vector<Outlet*> outletsLeftToRight(void* x);

} // namespace vlk::host
