#pragma once

#include "ext.h"

namespace vlk::external::test {

// An object of a class of the tests' own, for the support layer's operations; InitCommonSymbols has run.
// Freed with object_free.
t_object* newTestObject();

} // namespace vlk::external::test
