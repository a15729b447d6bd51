// The table of symbols interned once for every object: the subset of Max's table that velur's objects read.
// Each field s_NAME holds gensym("NAME"), except s_nothing, which holds the empty symbol.
#ifndef _COMMONSYMS_H_
#define _COMMONSYMS_H_

#include "ext_common.h"
#include "ext_mess.h"

BEGIN_USING_C_LINKAGE

typedef struct _common_symbols_table
{
    long version;
    t_symbol* s__preset;
    t_symbol* s_anything;
    t_symbol* s_assist;
    t_symbol* s_atom;
    t_symbol* s_atom_long;
    t_symbol* s_atomarray;
    t_symbol* s_attr_modified;
    t_symbol* s_attributes;
    t_symbol* s_bang;
    t_symbol* s_basic;
    t_symbol* s_box;
    t_symbol* s_category;
    t_symbol* s_char;
    t_symbol* s_clear;
    t_symbol* s_default;
    t_symbol* s_defaultname;
    t_symbol* s_description;
    t_symbol* s_dictionary;
    t_symbol* s_dontsave;
    t_symbol* s_dsp;
    t_symbol* s_dsp64;
    t_symbol* s_dsp_add64;
    t_symbol* s_dump;
    t_symbol* s_dumpout;
    t_symbol* s_enumvals;
    t_symbol* s_float;
    t_symbol* s_float32;
    t_symbol* s_float64;
    t_symbol* s_free;
    t_symbol* s_get;
    t_symbol* s_getflags;
    t_symbol* s_getname;
    t_symbol* s_gettype;
    t_symbol* s_getvalueof;
    t_symbol* s_int;
    t_symbol* s_invisible;
    t_symbol* s_label;
    t_symbol* s_list;
    t_symbol* s_long;
    t_symbol* s_max;
    t_symbol* s_min;
    t_symbol* s_modified;
    t_symbol* s_name;
    t_symbol* s_nobox;
    t_symbol* s_notify;
    t_symbol* s_nothing;
    t_symbol* s_object;
    t_symbol* s_obsolete;
    t_symbol* s_order;
    t_symbol* s_paint;
    t_symbol* s_pointer;
    t_symbol* s_preset;
    t_symbol* s_read;
    t_symbol* s_recallpreset;
    t_symbol* s_save;
    t_symbol* s_selfsave;
    t_symbol* s_set;
    t_symbol* s_setflags;
    t_symbol* s_setmethod;
    t_symbol* s_setname;
    t_symbol* s_setvalueof;
    t_symbol* s_signal;
    t_symbol* s_size;
    t_symbol* s_style;
    t_symbol* s_symbol;
    t_symbol* s_type;
    t_symbol* s_units;
    t_symbol* s_value;
    t_symbol* s_write;
} t_common_symbols_table;

// Each external has its own pointer, set by common_symbols_init from common/commonsyms.c.
C74_HIDDEN extern t_common_symbols_table* _common_symbols;

t_common_symbols_table* common_symbols_gettable(void);
void common_symbols_init(void);

#define _sym__preset (_common_symbols->s__preset)
#define _sym_anything (_common_symbols->s_anything)
#define _sym_assist (_common_symbols->s_assist)
#define _sym_atom (_common_symbols->s_atom)
#define _sym_atom_long (_common_symbols->s_atom_long)
#define _sym_atomarray (_common_symbols->s_atomarray)
#define _sym_attr_modified (_common_symbols->s_attr_modified)
#define _sym_attributes (_common_symbols->s_attributes)
#define _sym_bang (_common_symbols->s_bang)
#define _sym_basic (_common_symbols->s_basic)
#define _sym_box (_common_symbols->s_box)
#define _sym_category (_common_symbols->s_category)
#define _sym_char (_common_symbols->s_char)
#define _sym_clear (_common_symbols->s_clear)
#define _sym_default (_common_symbols->s_default)
#define _sym_defaultname (_common_symbols->s_defaultname)
#define _sym_description (_common_symbols->s_description)
#define _sym_dictionary (_common_symbols->s_dictionary)
#define _sym_dontsave (_common_symbols->s_dontsave)
#define _sym_dsp (_common_symbols->s_dsp)
#define _sym_dsp64 (_common_symbols->s_dsp64)
#define _sym_dsp_add64 (_common_symbols->s_dsp_add64)
#define _sym_dump (_common_symbols->s_dump)
#define _sym_dumpout (_common_symbols->s_dumpout)
#define _sym_enumvals (_common_symbols->s_enumvals)
#define _sym_float (_common_symbols->s_float)
#define _sym_float32 (_common_symbols->s_float32)
#define _sym_float64 (_common_symbols->s_float64)
#define _sym_free (_common_symbols->s_free)
#define _sym_get (_common_symbols->s_get)
#define _sym_getflags (_common_symbols->s_getflags)
#define _sym_getname (_common_symbols->s_getname)
#define _sym_gettype (_common_symbols->s_gettype)
#define _sym_getvalueof (_common_symbols->s_getvalueof)
#define _sym_int (_common_symbols->s_int)
#define _sym_invisible (_common_symbols->s_invisible)
#define _sym_label (_common_symbols->s_label)
#define _sym_list (_common_symbols->s_list)
#define _sym_long (_common_symbols->s_long)
#define _sym_max (_common_symbols->s_max)
#define _sym_min (_common_symbols->s_min)
#define _sym_modified (_common_symbols->s_modified)
#define _sym_name (_common_symbols->s_name)
#define _sym_nobox (_common_symbols->s_nobox)
#define _sym_notify (_common_symbols->s_notify)
#define _sym_nothing (_common_symbols->s_nothing)
#define _sym_object (_common_symbols->s_object)
#define _sym_obsolete (_common_symbols->s_obsolete)
#define _sym_order (_common_symbols->s_order)
#define _sym_paint (_common_symbols->s_paint)
#define _sym_pointer (_common_symbols->s_pointer)
#define _sym_preset (_common_symbols->s_preset)
#define _sym_read (_common_symbols->s_read)
#define _sym_recallpreset (_common_symbols->s_recallpreset)
#define _sym_save (_common_symbols->s_save)
#define _sym_selfsave (_common_symbols->s_selfsave)
#define _sym_set (_common_symbols->s_set)
#define _sym_setflags (_common_symbols->s_setflags)
#define _sym_setmethod (_common_symbols->s_setmethod)
#define _sym_setname (_common_symbols->s_setname)
#define _sym_setvalueof (_common_symbols->s_setvalueof)
#define _sym_signal (_common_symbols->s_signal)
#define _sym_size (_common_symbols->s_size)
#define _sym_style (_common_symbols->s_style)
#define _sym_symbol (_common_symbols->s_symbol)
#define _sym_type (_common_symbols->s_type)
#define _sym_units (_common_symbols->s_units)
#define _sym_value (_common_symbols->s_value)
#define _sym_write (_common_symbols->s_write)

END_USING_C_LINKAGE

#endif
