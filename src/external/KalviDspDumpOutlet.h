#pragma once

#include "ext.h"

namespace vlk {

// The untyped outlet of every object for its service output, kept in the object's extension store.

// Made before any other outlet, so that it ends up rightmost.
void CreateDumpOutlet(t_object* x);
// Null, after an error line, when the object has none.
void* GetDumpOutlet(t_object* x);
void BangDumpOutlet(t_object* x);

} // namespace vlk
