// Dictionaries: symbol keys in the order they were first appended, each holding one atom.
#ifndef _EXT_DICTIONARY_H_
#define _EXT_DICTIONARY_H_

#include "ext_mess.h"

BEGIN_USING_C_LINKAGE

typedef struct _dictionary t_dictionary;

t_dictionary* dictionary_new(void);
t_max_err dictionary_appendlong(t_dictionary* d, t_symbol* key, t_atom_long value);
t_max_err dictionary_appendfloat(t_dictionary* d, t_symbol* key, double value);
t_max_err dictionary_appendsym(t_dictionary* d, t_symbol* key, t_symbol* value);
t_max_err dictionary_appendatom(t_dictionary* d, t_symbol* key, t_atom* value);
t_max_err dictionary_appendatoms(t_dictionary* d, t_symbol* key, long argc, t_atom* argv);
t_max_err dictionary_appendatomarray(t_dictionary* d, t_symbol* key, t_object* value);
t_max_err dictionary_appenddictionary(t_dictionary* d, t_symbol* key, t_object* value);
t_max_err dictionary_appendobject(t_dictionary* d, t_symbol* key, t_object* value);
t_max_err dictionary_getlong(const t_dictionary* d, t_symbol* key, t_atom_long* value);
t_max_err dictionary_getfloat(const t_dictionary* d, t_symbol* key, double* value);
t_max_err dictionary_getsym(const t_dictionary* d, t_symbol* key, t_symbol** value);
t_max_err dictionary_getatom(const t_dictionary* d, t_symbol* key, t_atom* value);
t_max_err dictionary_getatoms(const t_dictionary* d, t_symbol* key, long* argc, t_atom** argv);
t_max_err dictionary_copyatoms(const t_dictionary* d, t_symbol* key, long* argc, t_atom** argv);
t_max_err dictionary_getatomarray(const t_dictionary* d, t_symbol* key, t_object** value);
t_max_err dictionary_getdictionary(const t_dictionary* d, t_symbol* key, t_object** value);
t_max_err dictionary_getobject(const t_dictionary* d, t_symbol* key, t_object** value);
t_max_err dictionary_getdeflong(const t_dictionary* d, t_symbol* key, t_atom_long* value, t_atom_long def);
t_max_err dictionary_getdeffloat(const t_dictionary* d, t_symbol* key, double* value, double def);
t_max_err dictionary_getdefsym(const t_dictionary* d, t_symbol* key, t_symbol** value, t_symbol* def);
long dictionary_hasentry(const t_dictionary* d, t_symbol* key);
t_atom_long dictionary_getentrycount(const t_dictionary* d);
long dictionary_entryisatomarray(const t_dictionary* d, t_symbol* key);
long dictionary_entryisdictionary(const t_dictionary* d, t_symbol* key);
t_max_err dictionary_getkeys(const t_dictionary* d, long* numkeys, t_symbol*** keys);
t_max_err dictionary_getkeys_ordered(const t_dictionary* d, long* numkeys, t_symbol*** keys);
void dictionary_freekeys(t_dictionary* d, long numkeys, t_symbol** keys);
t_max_err dictionary_deleteentry(t_dictionary* d, t_symbol* key);
t_max_err dictionary_chuckentry(t_dictionary* d, t_symbol* key);
t_max_err dictionary_clear(t_dictionary* d);
t_dictionary* dictionary_clone(t_dictionary* d);
t_max_err dictionary_clone_to_existing(const t_dictionary* d, t_dictionary* dc);
t_max_err dictionary_copy_to_existing(const t_dictionary* d, t_dictionary* dc);

END_USING_C_LINKAGE

#endif
