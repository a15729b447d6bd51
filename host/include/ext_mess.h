// Symbols, atoms, objects, classes and the atom and class-flag enumerations.
#ifndef _EXT_MESS_H_
#define _EXT_MESS_H_

#include "ext_common.h"
#include "ext_prefix.h"
#include "max_types.h"

BEGIN_USING_C_LINKAGE

// Handles the API passes around without showing their insides: plain void, as object code expects.
typedef void t_outlet;
typedef void t_inlet;
typedef void t_binbuf;
typedef void t_qelem;
typedef void t_clock;
typedef void t_scheduler;
typedef void t_setclock;
typedef void t_toolfile;

typedef void* (*method)(void*);
typedef long (*t_intmethod)(void*);
typedef void* (*zero_meth)(void* x);
typedef void* (*one_meth)(void* x, void* z);
typedef void* (*two_meth)(void* x, void* z, void* a);

typedef struct symbol
{
    char* s_name;
    struct object* s_thing;
} t_symbol;

union word {
    t_atom_long w_long;
    t_atom_float w_float;
    struct symbol* w_sym;
    struct object* w_obj;
};

typedef struct atom
{
    short a_type;
    union word a_w;
} t_atom;

typedef long* (*gimmeback_meth)(void* x, t_symbol* s, long ac, t_atom* av, t_atom* rv);

#define MSG_MAXARG 7
#define MAGIC 1758379419L
#define OB_MAGIC MAGIC
#define ATOM_MAX_STRLEN 32768

typedef struct messlist
{
    struct symbol* m_sym;
    method m_fun;
    char m_type[MSG_MAXARG + 1];
} t_messlist;

typedef struct object
{
    struct messlist* o_messlist;
    t_ptr_int o_magic;
    t_inlet* o_inlet;
    t_outlet* o_outlet;
} t_object;

typedef struct maxclass
{
    struct symbol* c_sym;
    struct object** c_freelist;
    method c_freefun;
    t_getbytes_size c_size;
    char c_tiny;
    char c_noinlet;
    struct symbol* c_filename;
    t_messlist* c_newmess;
    method c_menufun;
    long c_flags;
    long c_messcount;
    t_messlist* c_messlist;
    void* c_attributes;
    void* c_extra;
    long c_obexoffset;
    void* c_methods;
    method c_attr_get;
    method c_attr_gettarget;
    method c_attr_getnames;
    struct maxclass* c_superclass;
} t_class;

typedef t_object t_patcher;
typedef t_object t_box;

typedef enum
{
    A_NOTHING = 0,
    A_LONG,
    A_FLOAT,
    A_SYM,
    A_OBJ,
    A_DEFLONG,
    A_DEFFLOAT,
    A_DEFSYM,
    A_GIMME,
    A_CANT,
    A_SEMI,
    A_COMMA,
    A_DOLLAR,
    A_DOLLSYM,
    A_GIMMEBACK,
    A_DEFER = 0x41,
    A_USURP = 0x42,
    A_DEFER_LOW = 0x43,
    A_USURP_LOW = 0x44
} e_max_atomtypes;

typedef enum
{
    CLASS_FLAG_BOX = 0x00000001L,
    CLASS_FLAG_POLYGLOT = 0x00000002L,
    CLASS_FLAG_NEWDICTIONARY = 0x00000004L,
    CLASS_FLAG_REGISTERED = 0x00000008L,
    CLASS_FLAG_UIOBJECT = 0x00000010L,
    CLASS_FLAG_ALIAS = 0x00000020L,
    CLASS_FLAG_MULTITOUCH = 0x00000040L,
    CLASS_FLAG_DO_NOT_PARSE_ATTR_ARGS = 0x00000080L,
    CLASS_FLAG_DO_NOT_ZERO = 0x00000100L,
    CLASS_FLAG_NOATTRIBUTES = 0x00010000L,
    CLASS_FLAG_OWNATTRIBUTES = 0x00020000L,
    CLASS_FLAG_PARAMETER = 0x00040000L,
    CLASS_FLAG_RETYPEABLE = 0x00080000L,
    CLASS_FLAG_OBJECT_METHOD = 0x00100000L,
    CLASS_FLAG_VISUALIZER = 0x00200000L,
    CLASS_FLAG_USES_PROXIES = 0x00400000L,
    CLASS_FLAG_OWN_DATA = 0x00800000L,
    CLASS_FLAG_DYNAMICCOLOR = 0x01000000L
} e_max_class_flags;

#define A_SETLONG(ap, x) ((ap)->a_type = A_LONG, (ap)->a_w.w_long = (t_atom_long)(x))
#define A_SETFLOAT(ap, x) ((ap)->a_type = A_FLOAT, (ap)->a_w.w_float = (t_atom_float)(x))
#define A_SETSYM(ap, x) ((ap)->a_type = A_SYM, (ap)->a_w.w_sym = (x))
#define A_SETOBJ(ap, x) ((ap)->a_type = A_OBJ, (ap)->a_w.w_obj = (x))
#define A_SETSEMI(ap) ((ap)->a_type = A_SEMI, (ap)->a_w.w_long = 0)
#define A_SETCOMMA(ap) ((ap)->a_type = A_COMMA, (ap)->a_w.w_long = 0)
#define A_SETDOLLAR(ap, x) ((ap)->a_type = A_DOLLAR, (ap)->a_w.w_long = (x))
#define A_SETDOLLSYM(ap, x) ((ap)->a_type = A_DOLLSYM, (ap)->a_w.w_sym = (x))

#define NOGOOD(x) (!(x) || ((t_object*)(x))->o_magic != MAGIC)

END_USING_C_LINKAGE

#endif
