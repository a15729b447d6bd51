#pragma once

#include "ext_atomarray.h"

#include <vector>

// The SDK leaves t_atomarray opaque; this is the host's layout of it.
struct _atomarray
{
    t_object ob;
    std::vector<t_atom>* atoms;
    long flags;
};
