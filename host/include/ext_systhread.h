// Thread tests and mutexes.
#ifndef _EXT_SYSTHREAD_H_
#define _EXT_SYSTHREAD_H_

#include "ext_prefix.h"

BEGIN_USING_C_LINKAGE

typedef void* t_systhread;
typedef void* t_systhread_mutex;
typedef void* t_systhread_cond;

enum
{
    SYSTHREAD_MUTEX_NORMAL = 0,
    SYSTHREAD_MUTEX_ERRORCHECK = 1,
    SYSTHREAD_MUTEX_RECURSIVE = 2
};

short systhread_ismainthread(void);
short systhread_istimerthread(void);
short systhread_isaudiothread(void);
long systhread_mutex_new(t_systhread_mutex* pmutex, long flags);
long systhread_mutex_free(t_systhread_mutex pmutex);
long systhread_mutex_lock(t_systhread_mutex pmutex);
long systhread_mutex_unlock(t_systhread_mutex pmutex);
long systhread_mutex_trylock(t_systhread_mutex pmutex);

END_USING_C_LINKAGE

#endif
