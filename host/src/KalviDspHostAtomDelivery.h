#pragma once

#include "ext_mess.h"

#include <vector>

namespace vlk::host {

// Hands atoms to a caller who either gave storage (*ac > 0 and *av set: at most *ac atoms are written) or
// asked for an array from sysmem_newptr, which the caller frees with sysmem_freeptr. *ac becomes the count
// given.
t_max_err deliverAtoms(const std::vector<t_atom>& atoms, long* ac, t_atom** av);

} // namespace vlk::host
