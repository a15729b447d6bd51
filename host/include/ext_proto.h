// Outlets, deferred calls, binbufs, file dialogs and symbols.
#ifndef _EXT_PROTO_H_
#define _EXT_PROTO_H_

#include "ext_mess.h"

BEGIN_USING_C_LINKAGE

t_symbol* gensym(const char* s);
t_symbol* gensym_tr(const char* s);
char* str_tr(const char* s);

void* outlet_new(void* x, const char* s);
void* bangout(void* x);
void* intout(void* x);
void* floatout(void* x);
void* listout(void* x);
void* outlet_bang(t_outlet* x);
void* outlet_int(t_outlet* x, t_atom_long n);
void* outlet_float(t_outlet* x, double f);
void* outlet_list(t_outlet* x, t_symbol* s, short ac, t_atom* av);
void* outlet_anything(t_outlet* x, t_symbol* s, short ac, t_atom* av);
void outlet_atoms(void* out, short argc, t_atom* argv);

void* defer(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv);
void* defer_low(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv);
void* defer_medium(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv);
void* defer_front(void* ob, method fn, t_symbol* sym, short argc, t_atom* argv);

void* qelem_new(void* obj, method fn);
void qelem_set(t_qelem* q);
void qelem_unset(t_qelem* q);
void qelem_front(t_qelem* q);
void qelem_free(t_qelem* q);

t_clock* clock_new(void* obj, method fn);
void clock_set(t_clock* x, long when);
void clock_delay(t_clock* x, long n);
void clock_unset(t_clock* x);
void clock_fset(t_clock* x, double when);
void clock_fdelay(t_clock* x, double f);
void clock_getftime(double* time);
long gettime(void);

void freeobject(void* op);
void* typedmess(t_object* op, t_symbol* msg, short argc, t_atom* argp);
method getfn(t_object* op, t_symbol* msg);
method egetfn(t_object* op, t_symbol* msg);
method zgetfn(t_object* op, t_symbol* msg);

void* binbuf_new(void);
void binbuf_insert(t_binbuf* x, t_symbol* s, short argc, t_atom* argv);
void binbuf_append(t_binbuf* x, t_symbol* s, short argc, t_atom* argv);
void binbuf_vinsert(void* x, char* fmt, ...);
short binbuf_totext(t_binbuf* x, char** dstText, t_ptr_size* sizep);
short binbuf_getatom(t_binbuf* x, long* p1, long* p2, t_atom* ap);
#define binbuf_free freeobject

short open_dialog(char* name, short* volptr, t_fourcc* typeptr, t_fourcc* types, short ntypes);
short saveas_dialog(char* filename, short* path, short* binptr);
short saveasdialog_extended(char* name, short* vol, t_fourcc* type, t_fourcc* typelist, short numtypes);

END_USING_C_LINKAGE

#endif
