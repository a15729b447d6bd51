#pragma once

#include "ext_obex.h"

#include <memory>
#include <vector>

namespace vlk::host {

// What the host keeps of a class beside the SDK's t_class, reached through c_extra. A class is built on the
// thread that loads it and is read-only afterwards, so lookups take no lock.
class ClassRecord
{
public:
    struct Method
    {
        t_symbol* name;
        method function;
        // The declared argument types, without the closing 0.
        std::vector<long> types;
    };

    static ClassRecord* of(t_class* c);

    const Method* findMethod(t_symbol* name) const;
    void addMethod(t_symbol* name, method function, std::vector<long> types);
    // The class attributes in the order they were added; the class owns them.
    std::vector<t_object*> attributes;
    std::vector<long> constructorTypes;
    bool isSignalClass = false;
    t_symbol* nameSpace = nullptr;
    // Entry -1 holds the class, as the legacy ob_class expects of o_messlist.
    t_messlist legacyMessages[2] = {};

private:
    std::vector<Method> methods;
};

// A class that the host itself uses for its objects (attributes, dictionaries, ...), registered in nobox.
t_class* makeHostClass(const char* name, long size, method freeMethod);

} // namespace vlk::host
