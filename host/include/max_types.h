// Scalar types of the Max API on 64-bit targets, and its error codes.
#ifndef _MAX_TYPES_H_
#define _MAX_TYPES_H_

#include <stdint.h>

typedef int8_t t_int8;
typedef uint8_t t_uint8;
typedef int16_t t_int16;
typedef uint16_t t_uint16;
typedef int32_t t_int32;
typedef uint32_t t_uint32;
typedef int64_t t_int64;
typedef uint64_t t_uint64;
typedef unsigned int t_uint;
typedef intptr_t t_ptr_int;
typedef uintptr_t t_ptr_uint;
typedef t_ptr_uint t_ptr_size;
typedef t_ptr_int t_int;
typedef t_ptr_int t_atom_long;
typedef double t_atom_float;
typedef t_atom_long t_max_err;
typedef t_uint32 t_fourcc;
typedef t_ptr_uint t_getbytes_size;
typedef char** t_handle;
typedef char* t_ptr;
typedef t_uint8 t_bool;
typedef t_int16 t_filepath;
typedef int t_refnum;

#define ATOM_LONG_FMT_MODIFIER "ll"
#define ATOM_FLOAT_FMT_MODIFIER "l"
#define C74_ATOM_LONG_MIN INTPTR_MIN
#define C74_ATOM_LONG_MAX INTPTR_MAX

typedef enum
{
    MAX_ERR_NONE = 0,
    MAX_ERR_GENERIC = -1,
    MAX_ERR_INVALID_PTR = -2,
    MAX_ERR_DUPLICATE = -3,
    MAX_ERR_OUT_OF_MEM = -4
} e_max_errorcodes;

#endif
