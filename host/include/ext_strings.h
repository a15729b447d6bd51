// Bounded string copies that always terminate.
#ifndef _EXT_STRINGS_H_
#define _EXT_STRINGS_H_

#include "ext_prefix.h"

BEGIN_USING_C_LINKAGE

char* strncpy_zero(char* dst, const char* src, long size);
char* strncat_zero(char* dst, const char* src, long size);
int snprintf_zero(char* buffer, size_t count, const char* format, ...);

END_USING_C_LINKAGE

#endif
