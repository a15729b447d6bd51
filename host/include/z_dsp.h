// Signal objects: the header of every signal object, the 64-bit chain and the audio settings.
#ifndef _Z_DSP_H_
#define _Z_DSP_H_

#include "ext_obex.h"

BEGIN_USING_C_LINKAGE

typedef double t_sample;
typedef double t_double;
typedef float t_float;

#define Z_NO_INPLACE 1
#define Z_PUT_LAST 2
#define Z_PUT_FIRST 4
#define Z_IGNORE_DISABLE 8
#define Z_DONT_ADD 16
#define Z_MC_INLETS 32

#define SYS_MAXBLKSIZE 2048
#define MC_MAX_CHANS 1024
#define MC_MAX_IO 64
#define DSP_ADD64_FLAG_INTERNALITEM 1

typedef struct t_pxdata
{
    long z_in;
    void* z_proxy;
    long z_disabled;
    short z_count;
    short z_misc;
} t_pxdata;

typedef struct t_pxobject
{
    struct object z_ob;
    long z_in;
    void* z_proxy;
    long z_disabled;
    short z_count;
    short z_misc;
} t_pxobject;

typedef struct _signal
{
    long s_n;
    t_sample* s_vec;
    float s_sr;
    struct _signal* s_next;
    struct _signal* s_nextused;
    short s_refcount;
    short s_size;
    char* s_ptr;
} t_signal;

typedef void (*t_perfroutine64)(t_object* x, t_object* dsp64, double** ins, long numins, double** outs,
                                long numouts, long sampleframes, long flags, void* userparam);
typedef t_int* (*t_perfroutine)(t_int* args);

void z_dsp_setup(t_pxobject* x, long nsignals);
void z_dsp_free(t_pxobject* x);
void dsp_resize(t_pxobject* x, long nsignals);
void class_dspinit(t_class* c);
void dsp_add64(t_object* chain, t_object* x, t_perfroutine64 f, long flags, void* userparam);
float sys_getsr(void);
int sys_getblksize(void);
int sys_getmaxblksize(void);
int sys_getdspstate(void);
int sys_getdspobjdspstate(t_object* o);

#define dsp_setup z_dsp_setup
#define dsp_free z_dsp_free

END_USING_C_LINKAGE

#endif
