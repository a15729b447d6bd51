#pragma once

#include "ext.h"

namespace vlk {

// A message's documentation lives in the class, in the "methods" dictionary of the classdescription
// attribute, in the order of insertion, which is the order of the reference page. Both work for any
// selector, registered or not, and do nothing while the class has no classdescription.

// Appends the entry: the text, then the long 0.
void AddMethodDocumentation(t_class* klass, const char* selector, const char* text);
// Appends the argument's name and type to the selector's entry, when there is one.
void AddMethodArgumentDocumentation(t_class* klass, const char* selector, const char* argumentName,
                                    const char* argumentType);

} // namespace vlk
