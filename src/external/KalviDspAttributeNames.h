#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include "ext.h"

#include <cstdint>

namespace vlk {

// The order in which the attribute services visit an object's attributes. Every caller asks for
// Alphabetical: it is what ties a value of a saved state to its attribute.
enum class AttributeSortMode : std::uint32_t
{
    Unsorted = 0,
    Alphabetical = 1,
    ByOrderAttribute = 2
};

// All attribute names of the object (an attribute object gives its sub-attributes) in the given order.
void GetAttributeNames(t_object* object, Vector<String>& names, AttributeSortMode mode);
// Keeps, in order, the names that are state: visible, readable and settable by the user, none of the
// attributes of a box, and holding at least one atom.
void RemoveNonStateAttributes(t_object* object, Vector<String>& names);
// The state's names: alphabetical, filtered. Asked anew at every use, never cached.
Vector<String> GetStateAttributeNames(t_object* object);

// The count of the attribute's value, fetched in full to be counted; 0 after a bug line on a fault.
std::uint32_t GetNumberOfAtomsNeededToStoreAttribute(t_object* object, const char* name);
std::uint32_t GetTotalNumberOfAtoms(t_object* object, const Vector<String>& names);

} // namespace vlk
