// Linkage, platform and layout helpers shared by every header of the Max API.
#ifndef _EXT_PREFIX_H_
#define _EXT_PREFIX_H_

#include <stddef.h>

#if !defined(MAC_VERSION) && !defined(WIN_VERSION) && !defined(LINUX_VERSION)
#if defined(__APPLE__)
#define MAC_VERSION 1
#elif defined(_WIN32)
#define WIN_VERSION 1
#else
#define LINUX_VERSION 1
#endif
#endif

#if defined(_WIN64) || defined(__LP64__)
#define C74_X64 1
#endif

#if defined(__aarch64__) || defined(__arm__)
#define C74_ARM 1
#else
#define C74_INTEL 1
#endif

#ifdef __cplusplus
#define BEGIN_USING_C_LINKAGE extern "C" {
#define END_USING_C_LINKAGE }
#else
#define BEGIN_USING_C_LINKAGE
#define END_USING_C_LINKAGE
#endif

#define calcoffset(x, y) offsetof(x, y)
#define structmembersize(structname, membername) (sizeof(((structname*)0)->membername))

#if !defined(C74_ENABLE_STATIC_ASSERT) && defined(_DEBUG)
#define C74_ENABLE_STATIC_ASSERT 1
#endif
#if defined(C74_ENABLE_STATIC_ASSERT) && C74_ENABLE_STATIC_ASSERT && defined(__cplusplus)
#define C74_STATIC_ASSERT(exp, msg) static_assert(exp, msg)
#else
#define C74_STATIC_ASSERT(exp, msg)
#endif

#endif
