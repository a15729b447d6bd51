// Mutexes and critical regions over POSIX mutexes.
#include "ext_critical.h"
#include "ext_systhread.h"

#include <pthread.h>

namespace {

pthread_mutex_t* newMutex(bool recursive)
{
    auto* mutex = new pthread_mutex_t;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, recursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_NORMAL);
    pthread_mutex_init(mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    return mutex;
}

pthread_mutex_t* globalRegion()
{
    static pthread_mutex_t* region = newMutex(true);
    return region;
}

pthread_mutex_t* regionOf(t_critical x)
{
    return x == nullptr ? globalRegion() : x;
}

} // namespace

void critical_new(t_critical* x)
{
    if (x != nullptr)
        *x = newMutex(true);
}

void critical_enter(t_critical x)
{
    pthread_mutex_lock(regionOf(x));
}

void critical_exit(t_critical x)
{
    pthread_mutex_unlock(regionOf(x));
}

void critical_free(t_critical x)
{
    if (x == nullptr)
        return;
    pthread_mutex_destroy(x);
    delete x;
}

short critical_tryenter(t_critical x)
{
    return pthread_mutex_trylock(regionOf(x)) == 0 ? 0 : 1;
}

long systhread_mutex_new(t_systhread_mutex* pmutex, long flags)
{
    if (pmutex == nullptr)
        return 1;
    *pmutex = newMutex(flags == SYSTHREAD_MUTEX_RECURSIVE);
    return 0;
}

long systhread_mutex_free(t_systhread_mutex pmutex)
{
    critical_free(static_cast<pthread_mutex_t*>(pmutex));
    return 0;
}

long systhread_mutex_lock(t_systhread_mutex pmutex)
{
    return pmutex == nullptr ? 1 : pthread_mutex_lock(static_cast<pthread_mutex_t*>(pmutex));
}

long systhread_mutex_unlock(t_systhread_mutex pmutex)
{
    return pmutex == nullptr ? 1 : pthread_mutex_unlock(static_cast<pthread_mutex_t*>(pmutex));
}

long systhread_mutex_trylock(t_systhread_mutex pmutex)
{
    return pmutex == nullptr ? 1
                             : (pthread_mutex_trylock(static_cast<pthread_mutex_t*>(pmutex)) == 0 ? 0 : 1);
}
