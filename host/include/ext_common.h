// Export and visibility macros and the small numeric helpers.
#ifndef _EXT_COMMON_H_
#define _EXT_COMMON_H_

#ifdef WIN_VERSION
#define C74_EXPORT __declspec(dllexport)
#define C74_HIDDEN
#define C74_MUST_CHECK
#else
#define C74_EXPORT __attribute__((visibility("default")))
#define C74_HIDDEN __attribute__((visibility("hidden")))
#define C74_MUST_CHECK __attribute__((warn_unused_result))
#endif

#if defined(C74_NO_CONST) && C74_NO_CONST
#define C74_CONST
#else
#define C74_CONST const
#endif

#ifndef MIN
#define MIN(a, b) ((a) < (b) ? (a) : (b))
#endif
#ifndef MAX
#define MAX(a, b) ((a) > (b) ? (a) : (b))
#endif
#ifndef ABS
#define ABS(x) ((x) < 0 ? -(x) : (x))
#endif
#define CLAMP(a, lo, hi) ((a) < (lo) ? (lo) : ((a) > (hi) ? (hi) : (a)))
#define CLIP_ASSIGN(a, lo, hi) ((a) = ((a) < (lo) ? (lo) : ((a) > (hi) ? (hi) : (a))))
#define INRANGE(v, lo, hi) ((v) <= (hi) && (v) >= (lo))

#endif
