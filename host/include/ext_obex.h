// Classes, objects, messages, attributes and atoms.
#ifndef _EXT_OBEX_H_
#define _EXT_OBEX_H_

#include "ext_dictionary.h"
#include "ext_mess.h"
#include "ext_proto.h"

BEGIN_USING_C_LINKAGE

typedef enum
{
    ATTR_FLAGS_NONE = 0x00000000,
    ATTR_GET_OPAQUE = 0x00000001,
    ATTR_SET_OPAQUE = 0x00000002,
    ATTR_GET_OPAQUE_USER = 0x00000100,
    ATTR_SET_OPAQUE_USER = 0x00000200,
    ATTR_GET_DEFER = 0x00010000,
    ATTR_GET_USURP = 0x00020000,
    ATTR_GET_DEFER_LOW = 0x00040000,
    ATTR_GET_USURP_LOW = 0x00080000,
    ATTR_SET_DEFER = 0x01000000,
    ATTR_SET_USURP = 0x02000000,
    ATTR_SET_DEFER_LOW = 0x04000000,
    ATTR_SET_USURP_LOW = 0x08000000,
    ATTR_IS_JBOXATTR = 0x10000000,
    ATTR_DIRTY = 0x20000000
} e_max_attrflags;

typedef enum
{
    OBJ_FLAG_OBJ = 0x00000000,
    OBJ_FLAG_REF = 0x00000001,
    OBJ_FLAG_DATA = 0x00000002,
    OBJ_FLAG_MEMORY = 0x00000004,
    OBJ_FLAG_SILENT = 0x00000100,
    OBJ_FLAG_INHERITABLE = 0x00000200,
    OBJ_FLAG_ITERATING = 0x00001000,
    OBJ_FLAG_CLONE = 0x00002000,
    OBJ_FLAG_DANGER = 0x20000000,
    OBJ_FLAG_DEBUG = 0x40000000
} e_max_objflags;

typedef struct _attr
{
    t_object ob;
    t_symbol* name;
    t_symbol* type;
    long flags;
    method get;
    method set;
    void* filterget;
    void* filterset;
    void* reserved;
} t_attr;

#define ATTR_SET_DIRTY(x) (((t_attr*)(x))->flags |= ATTR_DIRTY)
#define ATTR_UNSET_DIRTY(x) (((t_attr*)(x))->flags &= ~ATTR_DIRTY)
#define ATTR_GET_DIRTY(x) (((t_attr*)(x))->flags & ATTR_DIRTY)

#define CLASS_BOX gensym("box")
#define CLASS_NOBOX gensym("nobox")

t_class* class_new(const char* name, C74_CONST method mnew, C74_CONST method mfree, long size,
                   C74_CONST method mmenu, short type, ...);
t_max_err class_addmethod(t_class* c, C74_CONST method m, const char* name, ...);
t_max_err class_register(t_symbol* name_space, t_class* c);
t_max_err class_alias(t_class* c, t_symbol* aliasname);
t_class* class_findbyname(t_symbol* name_space, t_symbol* classname);
t_max_err class_free(t_class* c);
t_max_err class_addattr(t_class* c, t_object* attr);
void* class_attr_get(t_class* x, t_symbol* attrname);
t_max_err class_addattr_parse(t_class* c, const char* attrname, t_symbol* type, long flags,
                              const char* parsestr);
t_max_err class_addattr_format(t_class* c, const char* attrname, t_symbol* type, long flags, const char* fmt,
                               ...);
t_max_err class_addattr_atoms(t_class* c, const char* attrname, t_symbol* type, long flags, long ac,
                              t_atom* av);
t_max_err class_attr_addattr_parse(t_class* c, const char* attrname, const char* attrname2, t_symbol* type,
                                   long flags, const char* parsestr);
t_max_err class_attr_addattr_format(t_class* c, const char* attrname, const char* attrname2,
                                    const t_symbol* type, long flags, const char* fmt, ...);
t_max_err class_attr_addattr_atoms(t_class* c, const char* attrname, const char* attrname2, t_symbol* type,
                                   long flags, long ac, t_atom* av);
t_object* class_attr_attr_get(t_class* c, t_symbol* attrname, t_symbol* attrname2);
t_max_err class_attr_attr_getvalueof(t_class* c, t_symbol* attrname, t_symbol* attrname2, long* argc,
                                     t_atom** argv);

void* object_alloc(t_class* c);
t_max_err object_free(void* x);
void* object_new_imp(void* p1, void* p2, void* p3, void* p4, void* p5, void* p6, void* p7, void* p8, void* p9,
                     void* p10);
void* object_new_typed(t_symbol* name_space, t_symbol* classname, long ac, t_atom* av);
t_class* object_class(void* x);
t_symbol* object_classname(void* x);
void* object_method_imp(void* x, void* sym, void* p1, void* p2, void* p3, void* p4, void* p5, void* p6,
                        void* p7, void* p8);
t_max_err object_method_typed(void* x, t_symbol* s, long ac, t_atom* av, t_atom* rv);
method object_getmethod(void* x, t_symbol* s);

// The pointer-sized forwarding of the 64-bit SDK: a double argument becomes an integer here.
#define C74_PAD_OBJECT_METHOD(x, s, a1, a2, a3, a4, a5, a6, a7, a8, ...)                                     \
    object_method_imp((void*)(x), (void*)(s), (void*)(t_ptr_int)(a1), (void*)(t_ptr_int)(a2),                \
                      (void*)(t_ptr_int)(a3), (void*)(t_ptr_int)(a4), (void*)(t_ptr_int)(a5),                \
                      (void*)(t_ptr_int)(a6), (void*)(t_ptr_int)(a7), (void*)(t_ptr_int)(a8))
#define object_method(...) C74_PAD_OBJECT_METHOD(__VA_ARGS__, 0, 0, 0, 0, 0, 0, 0, 0, 0)
#define C74_PAD_OBJECT_NEW(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, ...)                                     \
    object_new_imp((void*)(t_ptr_int)(a1), (void*)(t_ptr_int)(a2), (void*)(t_ptr_int)(a3),                   \
                   (void*)(t_ptr_int)(a4), (void*)(t_ptr_int)(a5), (void*)(t_ptr_int)(a6),                   \
                   (void*)(t_ptr_int)(a7), (void*)(t_ptr_int)(a8), (void*)(t_ptr_int)(a9),                   \
                   (void*)(t_ptr_int)(a10))
#define object_new(...) C74_PAD_OBJECT_NEW(__VA_ARGS__, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)

t_max_err object_obex_store(void* x, t_symbol* key, t_object* val);
t_max_err object_obex_storeflags(void* x, t_symbol* key, t_object* val, long flags);
t_max_err object_obex_lookup(void* x, t_symbol* key, t_object** val);
void object_obex_dumpout(void* x, t_symbol* s, long argc, t_atom* argv);

t_max_err object_notify(void* x, t_symbol* s, void* data);
t_max_err object_attach_byptr(void* x, void* object_to_attach);
t_max_err object_detach_byptr(void* x, void* object_to_detach);
t_max_err object_attr_touch(t_object* x, t_symbol* attrname);

t_object* attr_offset_new(const char* name, const t_symbol* type, long flags, C74_CONST method mget,
                          C74_CONST method mset, long offset);
t_object* attr_offset_array_new(const char* name, t_symbol* type, long size, long flags, method mget,
                                method mset, long offsetcount, long offset);
t_object* attribute_new(const char* name, t_symbol* type, long flags, method mget, method mset);
t_max_err object_addattr(void* x, t_object* attr);
t_max_err object_deleteattr(void* x, t_symbol* attrsym);
t_max_err object_chuckattr(void* x, t_symbol* attrsym);
t_max_err object_addattr_parse(t_object* x, const char* attrname, t_symbol* type, long flags,
                               const char* parsestr);
t_max_err object_addattr_format(t_object* x, const char* attrname, t_symbol* type, long flags,
                                const char* fmt, ...);
t_max_err object_addattr_atoms(t_object* x, const char* attrname, t_symbol* type, long flags, long ac,
                               t_atom* av);
t_max_err object_attr_addattr_parse(t_object* x, const char* attrname, const char* attrname2, t_symbol* type,
                                    long flags, const char* parsestr);
t_max_err object_attr_addattr_format(t_object* x, const char* attrname, const char* attrname2,
                                     const t_symbol* type, long flags, const char* fmt, ...);
t_max_err object_attr_addattr_atoms(t_object* x, const char* attrname, const char* attrname2, t_symbol* type,
                                    long flags, long ac, t_atom* av);

void* object_attr_get(void* x, t_symbol* attrname);
t_max_err object_attr_getvalueof(void* x, t_symbol* s, long* argc, t_atom** argv);
t_max_err object_attr_setvalueof(void* x, t_symbol* s, long argc, t_atom* argv);
t_atom_long object_attr_getlong(void* x, t_symbol* s);
t_max_err object_attr_setlong(void* x, t_symbol* s, t_atom_long c);
t_atom_float object_attr_getfloat(void* x, t_symbol* s);
t_max_err object_attr_setfloat(void* x, t_symbol* s, t_atom_float c);
t_symbol* object_attr_getsym(void* x, t_symbol* s);
t_max_err object_attr_setsym(void* x, t_symbol* s, t_symbol* c);
char object_attr_getchar(void* x, t_symbol* s);
t_max_err object_attr_setchar(void* x, t_symbol* s, char c);
t_object* object_attr_getobj(void* x, t_symbol* s);
t_max_err object_attr_setobj(void* x, t_symbol* s, t_object* o);
t_max_err object_attr_getnames(void* x, long* argc, t_symbol*** argv);
long object_attr_usercanset(void* x, t_symbol* s);
long object_attr_usercanget(void* x, t_symbol* s);
t_max_err object_attr_setparse(t_object* x, t_symbol* s, const char* parsestr);

t_max_err attr_addfilter_clip(void* x, double min, double max, long usemin, long usemax);
t_max_err attr_addfilterset_clip(void* x, double min, double max, long usemin, long usemax);
t_max_err attr_addfilterget_clip(void* x, double min, double max, long usemin, long usemax);
t_max_err attr_addfilter_clip_scale(void* x, double scale, double min, double max, long usemin, long usemax);
t_max_err attr_addfilterset_clip_scale(void* x, double scale, double min, double max, long usemin,
                                       long usemax);
t_max_err attr_addfilterget_clip_scale(void* x, double scale, double min, double max, long usemin,
                                       long usemax);
t_max_err attr_addfilterset_proc(void* x, method proc);
t_max_err attr_addfilterget_proc(void* x, method proc);

long attr_args_offset(short ac, t_atom* av);
void attr_args_process(void* x, short ac, t_atom* av);
void attr_args_dictionary(t_dictionary* x, short ac, t_atom* av);
t_dictionary* object_dictionaryarg(long ac, t_atom* av);
void attr_dictionary_process(void* x, t_dictionary* d);
void attr_dictionary_check(void* x, t_dictionary* d);

t_max_err atom_setlong(t_atom* a, t_atom_long b);
t_max_err atom_setfloat(t_atom* a, double b);
t_max_err atom_setsym(t_atom* a, t_symbol* b);
t_max_err atom_setobj(t_atom* a, void* b);
t_atom_long atom_getlong(const t_atom* a);
t_atom_float atom_getfloat(const t_atom* a);
t_symbol* atom_getsym(const t_atom* a);
void* atom_getobj(const t_atom* a);
long atom_gettype(const t_atom* a);
long atom_getcharfix(const t_atom* a);
t_max_err atom_arg_getlong(t_atom_long* c, long idx, long ac, const t_atom* av);
long atom_arg_getfloat(float* c, long idx, long ac, const t_atom* av);
long atom_arg_getdouble(double* c, long idx, long ac, const t_atom* av);
long atom_arg_getsym(t_symbol** c, long idx, long ac, const t_atom* av);
t_max_err atom_alloc(long* ac, t_atom** av, char* alloc);
t_max_err atom_alloc_array(long minsize, long* ac, t_atom** av, char* alloc);
t_max_err atom_setparse(long* ac, t_atom** av, const char* parsestr);
t_max_err atom_setformat(long* ac, t_atom** av, const char* fmt, ...);
t_max_err atom_gettext(long ac, t_atom* av, long* textsize, char** text, long flags);
long atomisatomarray(t_atom* a);
long atomisdictionary(t_atom* a);
t_max_err atom_setlong_array(long ac, t_atom* av, long count, t_atom_long* vals);
t_max_err atom_setfloat_array(long ac, t_atom* av, long count, float* vals);
t_max_err atom_setdouble_array(long ac, t_atom* av, long count, double* vals);
t_max_err atom_setsym_array(long ac, t_atom* av, long count, t_symbol** vals);
t_max_err atom_getlong_array(long ac, t_atom* av, long count, t_atom_long* vals);
t_max_err atom_getfloat_array(long ac, t_atom* av, long count, float* vals);
t_max_err atom_getdouble_array(long ac, t_atom* av, long count, double* vals);
t_max_err atom_getsym_array(long ac, t_atom* av, long count, t_symbol** vals);

t_symbol* symbol_unique(void);
t_symbol* symbol_stripquotes(t_symbol* s);
t_max_err symbolarray_sort(long ac, t_symbol** av);

END_USING_C_LINKAGE

#endif
