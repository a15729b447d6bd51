#pragma once

#include "ext_mess.h"

#include <cstdarg>
#include <vector>

namespace vlk::host {

// Atoms from a format of scalar letters, one argument each: c char, l long, f and d double, s symbol,
// o object, a pointer to an atom. Other letters are skipped without taking an argument.
std::vector<t_atom> formatAtoms(const char* fmt, va_list arguments);

} // namespace vlk::host
