#pragma once

#include "ext_mess.h"

namespace vlk::host {

// Delivers a message as a patch would: the method of that name with its types; else int and float stand in
// for each other; else an attribute of that name is set, or "getNAME" sends its value out the dump outlet;
// else the anything method; else "doesn't understand" in the Max window. A_CANT methods are not reachable.
// rv, when given, receives an A_GIMMEBACK method's result (else becomes A_NOTHING).
void* dispatchMessage(t_object* x, t_symbol* selector, long ac, t_atom* av, t_atom* rv = nullptr);

} // namespace vlk::host
