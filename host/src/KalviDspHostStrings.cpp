#include "ext_strings.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

char* strncpy_zero(char* dst, const char* src, long size)
{
    if (dst == nullptr || size <= 0)
        return dst;
    std::size_t length = src == nullptr ? 0 : std::strlen(src);
    if (length > static_cast<std::size_t>(size - 1))
        length = static_cast<std::size_t>(size - 1);
    std::memmove(dst, src, length);
    dst[length] = '\0';
    return dst;
}

char* strncat_zero(char* dst, const char* src, long size)
{
    if (dst == nullptr || size <= 0)
        return dst;
    std::size_t used = strnlen(dst, static_cast<std::size_t>(size));
    if (used >= static_cast<std::size_t>(size))
        return dst;
    strncpy_zero(dst + used, src, size - static_cast<long>(used));
    return dst;
}

int snprintf_zero(char* buffer, size_t count, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    int written = std::vsnprintf(buffer, count, format, arguments);
    va_end(arguments);
    return written;
}
