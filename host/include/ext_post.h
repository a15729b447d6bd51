// The Max window. There is deliberately no error(): glibc exports a function of that name.
#ifndef _EXT_POST_H_
#define _EXT_POST_H_

#include "ext_mess.h"

BEGIN_USING_C_LINKAGE

enum
{
    POSTROW_POST = 0,
    POSTROW_ERROR = 1,
    POSTROW_WARNING = 2,
    POSTROW_BUG = 3,
    POSTROW_BADGE = 4
};

void post(const char* fmt, ...);
void cpost(const char* fmt, ...);
void postatom(t_atom* ap);
void object_post(t_object* x, const char* s, ...);
void object_error(t_object* x, const char* s, ...);
void object_warn(t_object* x, const char* s, ...);
void object_bug(t_object* x, const char* s, ...);
void object_error_obtrusive(t_object* x, const char* s, ...);

#ifdef C74_LEGACY_DEFINES
#define error(...) object_error(NULL, __VA_ARGS__)
#endif

END_USING_C_LINKAGE

#endif
