#pragma once

#include "ext.h"

namespace vlk {

// Sends selector with count atoms through the outlet. format holds one letter per atom, each taking the next
// further argument: 'f' a double, stored through a 32-bit float; 'i' an int; 'l' a 64-bit integer; 's' a
// symbol. Any other letter leaves its atom as allocated and takes no argument.
void OutletSendFormatted(void* outlet, t_symbol* selector, const char* format, short count, ...);

} // namespace vlk
