// Reading and writing attribute values from C: the opaque flags bar only what they name.
#include "KalviDspHostAtomParser.h"
#include "KalviDspHostAttribute.h"
#include "KalviDspHostClass.h"
#include "KalviDspHostObject.h"

#include "ext_proto.h"
#include "ext_sysmem.h"

using vlk::host::Attribute;
using vlk::host::findAttribute;

namespace {

// The first atom of the value, or an A_NOTHING atom.
t_atom firstAtom(void* x, t_symbol* s)
{
    t_atom result;
    result.a_type = A_NOTHING;
    result.a_w.w_long = 0;
    long ac = 0;
    t_atom* av = nullptr;
    if (object_attr_getvalueof(x, s, &ac, &av) == MAX_ERR_NONE && ac > 0 && av != nullptr)
        result = av[0];
    sysmem_freeptr(av);
    return result;
}

} // namespace

void* object_attr_get(void* x, t_symbol* attrname)
{
    return findAttribute(x, attrname);
}

t_max_err object_attr_getvalueof(void* x, t_symbol* s, long* argc, t_atom** argv)
{
    t_object* attribute = findAttribute(x, s);
    if (attribute == nullptr || (Attribute::of(attribute)->flags() & ATTR_GET_OPAQUE))
        return MAX_ERR_GENERIC;
    return Attribute::of(attribute)->getValue(static_cast<t_object*>(x), argc, argv);
}

t_max_err object_attr_setvalueof(void* x, t_symbol* s, long argc, t_atom* argv)
{
    t_object* attribute = findAttribute(x, s);
    if (attribute == nullptr || (Attribute::of(attribute)->flags() & ATTR_SET_OPAQUE))
        return MAX_ERR_GENERIC;
    t_max_err result = Attribute::of(attribute)->setValue(static_cast<t_object*>(x), argc, argv);
    vlk::host::notifyAttributeChanged(static_cast<t_object*>(x), attribute);
    return result;
}

t_atom_long object_attr_getlong(void* x, t_symbol* s)
{
    t_atom atom = firstAtom(x, s);
    return atom_getlong(&atom);
}

t_max_err object_attr_setlong(void* x, t_symbol* s, t_atom_long c)
{
    t_atom atom;
    atom_setlong(&atom, c);
    return object_attr_setvalueof(x, s, 1, &atom);
}

t_atom_float object_attr_getfloat(void* x, t_symbol* s)
{
    t_atom atom = firstAtom(x, s);
    return atom_getfloat(&atom);
}

t_max_err object_attr_setfloat(void* x, t_symbol* s, t_atom_float c)
{
    t_atom atom;
    atom_setfloat(&atom, c);
    return object_attr_setvalueof(x, s, 1, &atom);
}

t_symbol* object_attr_getsym(void* x, t_symbol* s)
{
    t_atom atom = firstAtom(x, s);
    return atom_getsym(&atom);
}

t_max_err object_attr_setsym(void* x, t_symbol* s, t_symbol* c)
{
    t_atom atom;
    atom_setsym(&atom, c);
    return object_attr_setvalueof(x, s, 1, &atom);
}

char object_attr_getchar(void* x, t_symbol* s)
{
    t_atom atom = firstAtom(x, s);
    return static_cast<char>(atom_getlong(&atom));
}

t_max_err object_attr_setchar(void* x, t_symbol* s, char c)
{
    return object_attr_setlong(x, s, c);
}

t_object* object_attr_getobj(void* x, t_symbol* s)
{
    t_atom atom = firstAtom(x, s);
    return static_cast<t_object*>(atom_getobj(&atom));
}

t_max_err object_attr_setobj(void* x, t_symbol* s, t_object* o)
{
    t_atom atom;
    atom_setobj(&atom, o);
    return object_attr_setvalueof(x, s, 1, &atom);
}

// The class's attributes in the order they were added, then the object's own.
t_max_err object_attr_getnames(void* x, long* argc, t_symbol*** argv)
{
    vlk::host::ObjectRecord* record = vlk::host::ObjectRecord::of(x);
    if (record == nullptr || argc == nullptr || argv == nullptr)
        return MAX_ERR_INVALID_PTR;
    std::vector<t_symbol*> names;
    for (t_object* attribute : vlk::host::ClassRecord::of(record->klass)->attributes)
        names.push_back(Attribute::of(attribute)->name());
    for (t_object* attribute : record->attributes)
        names.push_back(Attribute::of(attribute)->name());
    *argv = reinterpret_cast<t_symbol**>(sysmem_newptr(sizeof(t_symbol*) * names.size()));
    if (*argv == nullptr) {
        *argc = 0;
        return MAX_ERR_OUT_OF_MEM;
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        (*argv)[i] = names[i];
    *argc = static_cast<long>(names.size());
    return MAX_ERR_NONE;
}

long object_attr_usercanset(void* x, t_symbol* s)
{
    t_object* attribute = findAttribute(x, s);
    return attribute != nullptr &&
           !(Attribute::of(attribute)->flags() & (ATTR_SET_OPAQUE | ATTR_SET_OPAQUE_USER));
}

long object_attr_usercanget(void* x, t_symbol* s)
{
    t_object* attribute = findAttribute(x, s);
    return attribute != nullptr &&
           !(Attribute::of(attribute)->flags() & (ATTR_GET_OPAQUE | ATTR_GET_OPAQUE_USER));
}

t_max_err object_attr_setparse(t_object* x, t_symbol* s, const char* parsestr)
{
    std::vector<t_atom> atoms = vlk::host::parseAtoms(parsestr == nullptr ? "" : parsestr);
    return object_attr_setvalueof(x, s, static_cast<long>(atoms.size()), atoms.data());
}

t_max_err object_attr_touch(t_object* x, t_symbol* attrname)
{
    t_object* attribute = findAttribute(x, attrname);
    if (attribute == nullptr)
        return MAX_ERR_GENERIC;
    vlk::host::notifyAttributeChanged(x, attribute);
    return MAX_ERR_NONE;
}

namespace {

t_max_err addClip(void* x, bool onSet, bool onGet, double scale, double min, double max, long usemin,
                  long usemax)
{
    Attribute* attribute = Attribute::of(x);
    if (attribute == nullptr)
        return MAX_ERR_INVALID_PTR;
    attribute->setClip(onSet, onGet, scale, min, max, usemin != 0, usemax != 0);
    return MAX_ERR_NONE;
}

} // namespace

t_max_err attr_addfilter_clip(void* x, double min, double max, long usemin, long usemax)
{
    return addClip(x, true, true, 1, min, max, usemin, usemax);
}

t_max_err attr_addfilterset_clip(void* x, double min, double max, long usemin, long usemax)
{
    return addClip(x, true, false, 1, min, max, usemin, usemax);
}

t_max_err attr_addfilterget_clip(void* x, double min, double max, long usemin, long usemax)
{
    return addClip(x, false, true, 1, min, max, usemin, usemax);
}

t_max_err attr_addfilter_clip_scale(void* x, double scale, double min, double max, long usemin, long usemax)
{
    return addClip(x, true, true, scale, min, max, usemin, usemax);
}

t_max_err attr_addfilterset_clip_scale(void* x, double scale, double min, double max, long usemin,
                                       long usemax)
{
    return addClip(x, true, false, scale, min, max, usemin, usemax);
}

t_max_err attr_addfilterget_clip_scale(void* x, double scale, double min, double max, long usemin,
                                       long usemax)
{
    return addClip(x, false, true, scale, min, max, usemin, usemax);
}

t_max_err attr_addfilterset_proc(void* x, method proc)
{
    Attribute* attribute = Attribute::of(x);
    if (attribute == nullptr)
        return MAX_ERR_INVALID_PTR;
    attribute->setProc(true, proc);
    return MAX_ERR_NONE;
}

t_max_err attr_addfilterget_proc(void* x, method proc)
{
    Attribute* attribute = Attribute::of(x);
    if (attribute == nullptr)
        return MAX_ERR_INVALID_PTR;
    attribute->setProc(false, proc);
    return MAX_ERR_NONE;
}
