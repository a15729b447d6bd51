// Passing dictionaries between objects by registered name.
#ifndef _EXT_DICTOBJ_H_
#define _EXT_DICTOBJ_H_

#include "ext_dictionary.h"

BEGIN_USING_C_LINKAGE

#define DICTOBJ_ATOM_FLAGS_DEFAULT 0
#define DICTOBJ_ATOM_FLAGS_REGISTER 1

t_dictionary* dictobj_register(t_dictionary* d, t_symbol** name);
t_max_err dictobj_unregister(t_dictionary* d);
t_dictionary* dictobj_findregistered_retain(t_symbol* name);
t_dictionary* dictobj_findregistered_clone(t_symbol* name);
t_max_err dictobj_release(t_dictionary* d);
t_symbol* dictobj_namefromptr(t_dictionary* d);

END_USING_C_LINKAGE

#endif
