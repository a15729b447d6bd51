// Atom arrays: objects that own a list of atoms.
#ifndef _EXT_ATOMARRAY_H_
#define _EXT_ATOMARRAY_H_

#include "ext_mess.h"

BEGIN_USING_C_LINKAGE

#define ATOMARRAY_FLAG_FREECHILDREN 1

typedef struct _atomarray t_atomarray;
typedef t_atom t_atom64;

t_atomarray* atomarray_new(long ac, t_atom* av);
void atomarray_flags(t_atomarray* x, long flags);
long atomarray_getflags(t_atomarray* x);
t_max_err atomarray_setatoms(t_atomarray* x, long ac, t_atom* av);
t_max_err atomarray_getatoms(t_atomarray* x, long* ac, t_atom** av);
t_max_err atomarray_copyatoms(t_atomarray* x, long* ac, t_atom** av);
t_atom_long atomarray_getsize(t_atomarray* x);
t_max_err atomarray_getindex(t_atomarray* x, long index, t_atom* av);
t_max_err atomarray_setindex(t_atomarray* x, long index, t_atom* av);
void atomarray_appendatom(t_atomarray* x, t_atom* a);
void atomarray_appendatoms(t_atomarray* x, long ac, t_atom* av);
void atomarray_chuckindex(t_atomarray* x, long index);
void atomarray_clear(t_atomarray* x);
void* atomarray_duplicate(t_atomarray* x);
void* atomarray_clone(t_atomarray* x);

END_USING_C_LINKAGE

#endif
