// Memory blocks that remember their size.
#ifndef _EXT_SYSMEM_H_
#define _EXT_SYSMEM_H_

#include "ext_prefix.h"
#include "max_types.h"

BEGIN_USING_C_LINKAGE

t_ptr sysmem_newptr(t_ptr_size size);
t_ptr sysmem_newptrclear(t_ptr_size size);
t_ptr sysmem_resizeptr(void* ptr, t_ptr_size newsize);
t_ptr sysmem_resizeptrclear(void* ptr, t_ptr_size newsize);
t_ptr_size sysmem_ptrsize(void* ptr);
void sysmem_freeptr(void* ptr);
void sysmem_copyptr(const void* src, void* dst, t_ptr_size bytes);
t_handle sysmem_newhandle(t_ptr_size size);
t_handle sysmem_newhandleclear(t_ptr_size size);
t_max_err sysmem_resizehandle(t_handle handle, t_ptr_size newsize);
t_ptr_size sysmem_handlesize(t_handle handle);
void sysmem_freehandle(t_handle handle);

END_USING_C_LINKAGE

#endif
