#pragma once

#include "ext_dictionary.h"

#include <string>
#include <vector>

namespace vlk::host {

// Creates objects from the text of an object box, as a patcher does: the class is found by name (loading its
// external when needed). A class with the dictionary-constructor flag gets its leading arguments followed by
// one dictionary atom, holding each attribute's "default" overridden by the box's "@name values"; any
// other class gets all the arguments. While the constructor runs, "#B" is bound to the object's box.
class BoxFactory
{
public:
    struct Result
    {
        t_object* object = nullptr;
        // False when no class of that name is registered or could be loaded.
        bool classFound = false;
        // Why there is no object.
        std::string failure;
    };

    // atoms: the class name, then the arguments.
    static Result create(const std::vector<t_atom>& atoms);
    // The box dictionary of a class for these arguments; the caller frees it.
    static t_dictionary* makeBoxDictionary(t_class* c, long ac, t_atom* av);
};

} // namespace vlk::host
