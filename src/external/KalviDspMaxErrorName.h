#pragma once

#include "ext.h"

namespace vlk {

// The name of a host error code for the Max window; "unknown MAX_ERR" for any other value.
const char* GetMaxErrorName(t_max_err error);

} // namespace vlk
