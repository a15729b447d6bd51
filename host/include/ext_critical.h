// Recursive critical regions; 0 names the one global region.
#ifndef _EXT_CRITICAL_H_
#define _EXT_CRITICAL_H_

#include "ext_prefix.h"
#include <pthread.h>

BEGIN_USING_C_LINKAGE

typedef pthread_mutex_t* t_critical;

void critical_new(t_critical* x);
void critical_enter(t_critical x);
void critical_exit(t_critical x);
void critical_free(t_critical x);
short critical_tryenter(t_critical x);

END_USING_C_LINKAGE

#endif
