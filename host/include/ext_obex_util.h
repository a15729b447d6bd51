// The attribute macros: each creates an attribute or gives an existing one an attribute of its own.
#ifndef _EXT_OBEX_UTIL_H_
#define _EXT_OBEX_UTIL_H_

#include "ext_obex.h"
#include "ext_proto.h"

#define C74_ATTR_OFFSET_NEW(c, attrname, typename, flags, structname, structmember)                          \
    class_addattr((c), attr_offset_new(attrname, gensym(typename), (flags), (method)0L, (method)0L,          \
                                       calcoffset(structname, structmember)))

#define CLASS_ATTR_CHAR(c, attrname, flags, structname, structmember)                                        \
    {                                                                                                        \
        C74_STATIC_ASSERT(structmembersize(structname, structmember) == sizeof(char), "char member");        \
        C74_ATTR_OFFSET_NEW(c, attrname, "char", flags, structname, structmember);                           \
    }
#define CLASS_ATTR_LONG(c, attrname, flags, structname, structmember)                                        \
    {                                                                                                        \
        C74_STATIC_ASSERT(structmembersize(structname, structmember) == sizeof(long), "long member");        \
        C74_ATTR_OFFSET_NEW(c, attrname, "long", flags, structname, structmember);                           \
    }
#define CLASS_ATTR_ATOM_LONG(c, attrname, flags, structname, structmember)                                   \
    {                                                                                                        \
        C74_STATIC_ASSERT(structmembersize(structname, structmember) == sizeof(t_atom_long), "t_atom_long"); \
        C74_ATTR_OFFSET_NEW(c, attrname, "atom_long", flags, structname, structmember);                      \
    }
#define CLASS_ATTR_INT32(c, attrname, flags, structname, structmember)                                       \
    {                                                                                                        \
        C74_STATIC_ASSERT(structmembersize(structname, structmember) == sizeof(t_int32), "t_int32 member");  \
        C74_ATTR_OFFSET_NEW(c, attrname, "int32", flags, structname, structmember);                          \
    }
#define CLASS_ATTR_FILEPATH(c, attrname, flags, structname, structmember)                                    \
    C74_ATTR_OFFSET_NEW(c, attrname, "filepath", flags, structname, structmember)
#define CLASS_ATTR_FLOAT(c, attrname, flags, structname, structmember)                                       \
    {                                                                                                        \
        C74_STATIC_ASSERT(structmembersize(structname, structmember) == sizeof(float), "float member");      \
        C74_ATTR_OFFSET_NEW(c, attrname, "float32", flags, structname, structmember);                        \
    }
#define CLASS_ATTR_DOUBLE(c, attrname, flags, structname, structmember)                                      \
    {                                                                                                        \
        C74_STATIC_ASSERT(structmembersize(structname, structmember) == sizeof(double), "double member");    \
        C74_ATTR_OFFSET_NEW(c, attrname, "float64", flags, structname, structmember);                        \
    }
#define CLASS_ATTR_SYM(c, attrname, flags, structname, structmember)                                         \
    C74_ATTR_OFFSET_NEW(c, attrname, "symbol", flags, structname, structmember)
#define CLASS_ATTR_ATOM(c, attrname, flags, structname, structmember)                                        \
    C74_ATTR_OFFSET_NEW(c, attrname, "atom", flags, structname, structmember)
#define CLASS_ATTR_OBJ(c, attrname, flags, structname, structmember)                                         \
    C74_ATTR_OFFSET_NEW(c, attrname, "object", flags, structname, structmember)
#define CLASS_ATTR_OFFSET_DUMMY(c, attrname, flags, typesym)                                                 \
    class_addattr((c), attr_offset_new(attrname, (typesym), (flags), (method)0L, (method)0L, 0))

#define C74_ATTR_ARRAY_NEW(c, attrname, typename, flags, structname, structmember, size, countoffset)        \
    class_addattr((c),                                                                                       \
                  attr_offset_array_new(attrname, gensym(typename), (size), (flags), (method)0L, (method)0L, \
                                        (countoffset), calcoffset(structname, structmember)))
#define CLASS_ATTR_CHAR_ARRAY(c, attrname, flags, structname, structmember, size)                            \
    C74_ATTR_ARRAY_NEW(c, attrname, "char", flags, structname, structmember, size, 0)
#define CLASS_ATTR_LONG_ARRAY(c, attrname, flags, structname, structmember, size)                            \
    C74_ATTR_ARRAY_NEW(c, attrname, "long", flags, structname, structmember, size, 0)
#define CLASS_ATTR_ATOM_LONG_ARRAY(c, attrname, flags, structname, structmember, size)                       \
    C74_ATTR_ARRAY_NEW(c, attrname, "atom_long", flags, structname, structmember, size, 0)
#define CLASS_ATTR_FLOAT_ARRAY(c, attrname, flags, structname, structmember, size)                           \
    C74_ATTR_ARRAY_NEW(c, attrname, "float32", flags, structname, structmember, size, 0)
#define CLASS_ATTR_DOUBLE_ARRAY(c, attrname, flags, structname, structmember, size)                          \
    C74_ATTR_ARRAY_NEW(c, attrname, "float64", flags, structname, structmember, size, 0)
#define CLASS_ATTR_SYM_ARRAY(c, attrname, flags, structname, structmember, size)                             \
    C74_ATTR_ARRAY_NEW(c, attrname, "symbol", flags, structname, structmember, size, 0)
#define CLASS_ATTR_ATOM_ARRAY(c, attrname, flags, structname, structmember, size)                            \
    C74_ATTR_ARRAY_NEW(c, attrname, "atom", flags, structname, structmember, size, 0)
#define CLASS_ATTR_OBJ_ARRAY(c, attrname, flags, structname, structmember, size)                             \
    C74_ATTR_ARRAY_NEW(c, attrname, "object", flags, structname, structmember, size, 0)
#define CLASS_ATTR_LONG_VARSIZE(c, attrname, flags, structname, structmember, sizemember, maxsize)           \
    C74_ATTR_ARRAY_NEW(c, attrname, "long", flags, structname, structmember, maxsize,                        \
                       calcoffset(structname, sizemember))
#define CLASS_ATTR_ATOM_LONG_VARSIZE(c, attrname, flags, structname, structmember, sizemember, maxsize)      \
    C74_ATTR_ARRAY_NEW(c, attrname, "atom_long", flags, structname, structmember, maxsize,                   \
                       calcoffset(structname, sizemember))
#define CLASS_ATTR_FLOAT_VARSIZE(c, attrname, flags, structname, structmember, sizemember, maxsize)          \
    C74_ATTR_ARRAY_NEW(c, attrname, "float32", flags, structname, structmember, maxsize,                     \
                       calcoffset(structname, sizemember))
#define CLASS_ATTR_DOUBLE_VARSIZE(c, attrname, flags, structname, structmember, sizemember, maxsize)         \
    C74_ATTR_ARRAY_NEW(c, attrname, "float64", flags, structname, structmember, maxsize,                     \
                       calcoffset(structname, sizemember))
#define CLASS_ATTR_SYM_VARSIZE(c, attrname, flags, structname, structmember, sizemember, maxsize)            \
    C74_ATTR_ARRAY_NEW(c, attrname, "symbol", flags, structname, structmember, maxsize,                      \
                       calcoffset(structname, sizemember))
#define CLASS_ATTR_ATOM_VARSIZE(c, attrname, flags, structname, structmember, sizemember, maxsize)           \
    C74_ATTR_ARRAY_NEW(c, attrname, "atom", flags, structname, structmember, maxsize,                        \
                       calcoffset(structname, sizemember))

#define STRUCT_ATTR_LONG(c, flags, structname, structmember)                                                 \
    CLASS_ATTR_LONG(c, #structmember, flags, structname, structmember)
#define STRUCT_ATTR_FLOAT(c, flags, structname, structmember)                                                \
    CLASS_ATTR_FLOAT(c, #structmember, flags, structname, structmember)
#define STRUCT_ATTR_DOUBLE(c, flags, structname, structmember)                                               \
    CLASS_ATTR_DOUBLE(c, #structmember, flags, structname, structmember)
#define STRUCT_ATTR_SYM(c, flags, structname, structmember)                                                  \
    CLASS_ATTR_SYM(c, #structmember, flags, structname, structmember)

#define CLASS_ATTR_ACCESSORS(c, attrname, getter, setter)                                                    \
    {                                                                                                        \
        t_object* theattr = (t_object*)class_attr_get(c, gensym(attrname));                                  \
        object_method(theattr, gensym("setmethod"), gensym("get"), getter);                                  \
        object_method(theattr, gensym("setmethod"), gensym("set"), setter);                                  \
    }

#define CLASS_ATTR_FILTER_CLIP(c, attrname, minval, maxval)                                                  \
    attr_addfilter_clip(class_attr_get(c, gensym(attrname)), minval, maxval, 1, 1)
#define CLASS_ATTR_FILTER_MIN(c, attrname, minval)                                                           \
    attr_addfilter_clip(class_attr_get(c, gensym(attrname)), minval, 0, 1, 0)
#define CLASS_ATTR_FILTER_MAX(c, attrname, maxval)                                                           \
    attr_addfilter_clip(class_attr_get(c, gensym(attrname)), 0, maxval, 0, 1)

// C only, as in the SDK: the result of object_method is a pointer.
#define CLASS_ATTR_ADD_FLAGS(c, attrname, mask)                                                              \
    {                                                                                                        \
        t_object* theattr = (t_object*)class_attr_get(c, gensym(attrname));                                  \
        long oldflags = (long)object_method(theattr, gensym("getflags"));                                    \
        object_method(theattr, gensym("setflags"), oldflags | (mask));                                       \
    }
#define CLASS_ATTR_REMOVE_FLAGS(c, attrname, mask)                                                           \
    {                                                                                                        \
        t_object* theattr = (t_object*)class_attr_get(c, gensym(attrname));                                  \
        long oldflags = (long)object_method(theattr, gensym("getflags"));                                    \
        object_method(theattr, gensym("setflags"), oldflags & ~(mask));                                      \
    }

#define CLASS_ATTR_ATTR_PARSE class_attr_addattr_parse
#define CLASS_ATTR_ATTR_FORMAT class_attr_addattr_format
#define CLASS_ATTR_ATTR_ATOMS class_attr_addattr_atoms
#define STATIC_ATTR_PARSE class_addattr_parse
#define STATIC_ATTR_FORMAT class_addattr_format
#define STATIC_ATTR_ATOMS class_addattr_atoms
#define OBJ_ATTR_PARSE object_addattr_parse
#define OBJ_ATTR_FORMAT object_addattr_format
#define OBJ_ATTR_ATOMS object_addattr_atoms
#define OBJ_ATTR_ATTR_PARSE object_attr_addattr_parse
#define OBJ_ATTR_ATTR_FORMAT object_attr_addattr_format
#define OBJ_ATTR_ATTR_ATOMS object_attr_addattr_atoms

// Attribute attributes typed like the attribute itself ask the attribute for its type.
#define C74_ATTR_ATTR_OWN_TYPE(c, attrname, attrname2, flags, parsestr)                                      \
    {                                                                                                        \
        t_object* theattr = (t_object*)class_attr_get(c, gensym(attrname));                                  \
        class_attr_addattr_parse(c, attrname, attrname2,                                                     \
                                 (t_symbol*)object_method(theattr, gensym("gettype")), flags, parsestr);     \
    }
#define CLASS_ATTR_DEFAULT(c, attrname, flags, parsestr)                                                     \
    C74_ATTR_ATTR_OWN_TYPE(c, attrname, "default", flags, parsestr)
#define CLASS_ATTR_MIN(c, attrname, flags, parsestr)                                                         \
    C74_ATTR_ATTR_OWN_TYPE(c, attrname, "min", flags, parsestr)
#define CLASS_ATTR_MAX(c, attrname, flags, parsestr)                                                         \
    C74_ATTR_ATTR_OWN_TYPE(c, attrname, "max", flags, parsestr)
#define CLASS_ATTR_DEFAULTNAME(c, attrname, flags, parsestr)                                                 \
    C74_ATTR_ATTR_OWN_TYPE(c, attrname, "defaultname", flags, parsestr)
#define CLASS_ATTR_SAVE(c, attrname, flags)                                                                  \
    class_attr_addattr_parse(c, attrname, "save", gensym("long"), flags, "1")
#define CLASS_ATTR_SELFSAVE(c, attrname, flags)                                                              \
    class_attr_addattr_parse(c, attrname, "selfsave", gensym("long"), flags, "1")
#define CLASS_ATTR_DONTSAVE(c, attrname, flags)                                                              \
    class_attr_addattr_parse(c, attrname, "dontsave", gensym("long"), flags, "1")
#define CLASS_ATTR_PAINT(c, attrname, flags)                                                                 \
    class_attr_addattr_parse(c, attrname, "paint", gensym("long"), flags, "1")
#define CLASS_ATTR_DEFAULT_SAVE(c, attrname, flags, parsestr)                                                \
    {                                                                                                        \
        CLASS_ATTR_DEFAULT(c, attrname, flags, parsestr);                                                    \
        CLASS_ATTR_SAVE(c, attrname, flags);                                                                 \
    }
#define CLASS_ATTR_DEFAULT_PAINT(c, attrname, flags, parsestr)                                               \
    {                                                                                                        \
        CLASS_ATTR_DEFAULT(c, attrname, flags, parsestr);                                                    \
        CLASS_ATTR_PAINT(c, attrname, flags);                                                                \
    }
#define CLASS_ATTR_DEFAULT_SAVE_PAINT(c, attrname, flags, parsestr)                                          \
    {                                                                                                        \
        CLASS_ATTR_DEFAULT(c, attrname, flags, parsestr);                                                    \
        CLASS_ATTR_SAVE(c, attrname, flags);                                                                 \
        CLASS_ATTR_PAINT(c, attrname, flags);                                                                \
    }
#define CLASS_ATTR_STYLE(c, attrname, flags, parsestr)                                                       \
    class_attr_addattr_parse(c, attrname, "style", gensym("symbol"), flags, parsestr)
#define CLASS_ATTR_LABEL(c, attrname, flags, labelstr)                                                       \
    class_attr_addattr_format(c, attrname, "label", gensym("symbol"), flags, "s", gensym_tr(labelstr))
#define CLASS_ATTR_STYLE_LABEL(c, attrname, flags, stylestr, labelstr)                                       \
    {                                                                                                        \
        CLASS_ATTR_STYLE(c, attrname, flags, stylestr);                                                      \
        CLASS_ATTR_LABEL(c, attrname, flags, labelstr);                                                      \
    }
#define CLASS_ATTR_CATEGORY(c, attrname, flags, parsestr)                                                    \
    class_attr_addattr_parse(c, attrname, "category", gensym("symbol"), flags, str_tr(parsestr))
#define CLASS_ATTR_ENUM(c, attrname, flags, parsestr)                                                        \
    {                                                                                                        \
        CLASS_ATTR_STYLE(c, attrname, flags, "enum");                                                        \
        class_attr_addattr_parse(c, attrname, "enumvals", gensym("atom"), flags, parsestr);                  \
    }
#define CLASS_ATTR_ENUMINDEX(c, attrname, flags, parsestr)                                                   \
    {                                                                                                        \
        CLASS_ATTR_STYLE(c, attrname, flags, "enumindex");                                                   \
        class_attr_addattr_parse(c, attrname, "enumvals", gensym("atom"), flags, parsestr);                  \
    }
#define CLASS_ATTR_INVISIBLE(c, attrname, flags)                                                             \
    class_attr_addattr_parse(c, attrname, "invisible", gensym("long"), flags, "1")
#define CLASS_ATTR_ORDER(c, attrname, flags, parsestr)                                                       \
    class_attr_addattr_parse(c, attrname, "order", gensym("long"), flags, parsestr)
#define CLASS_ATTR_BASIC(c, attrname, flags)                                                                 \
    class_attr_addattr_parse(c, attrname, "basic", gensym("long"), flags, "1")
#define CLASS_ATTR_ATOMARRAY(c, attrname, flags)                                                             \
    class_attr_addattr_parse(c, attrname, "atomarray", gensym("long"), flags, "1")

#endif
