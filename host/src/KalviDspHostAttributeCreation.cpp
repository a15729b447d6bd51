// Making attributes and attaching them to classes, objects and other attributes.
#include "KalviDspHostAtomFormat.h"
#include "KalviDspHostAtomParser.h"
#include "KalviDspHostAttribute.h"
#include "KalviDspHostClass.h"
#include "KalviDspHostObject.h"

#include "ext_proto.h"

#include <algorithm>

using vlk::host::Attribute;

namespace {

// A self-stored attribute holding the atoms, converted to its type.
t_object* makeValuedAttribute(const char* name, const t_symbol* type, long flags, long ac, const t_atom* av)
{
    t_object* attribute = Attribute::create(name, type, flags, nullptr, nullptr, Attribute::Storage::self);
    if (attribute != nullptr)
        Attribute::of(attribute)->setValue(attribute, ac, av);
    return attribute;
}

t_max_err addToClass(t_class* c, t_object* attribute)
{
    vlk::host::ClassRecord* record = vlk::host::ClassRecord::of(c);
    if (record == nullptr || Attribute::of(attribute) == nullptr)
        return MAX_ERR_INVALID_PTR;
    for (t_object*& existing : record->attributes)
        if (Attribute::of(existing)->name() == Attribute::of(attribute)->name()) {
            existing = attribute;
            return MAX_ERR_NONE;
        }
    record->attributes.push_back(attribute);
    return MAX_ERR_NONE;
}

t_max_err addAttributeAttribute(t_object* attribute, const char* attrname2, const t_symbol* type, long flags,
                                const std::vector<t_atom>& atoms)
{
    if (Attribute::of(attribute) == nullptr)
        return MAX_ERR_INVALID_PTR;
    t_object* sub =
        makeValuedAttribute(attrname2, type, flags, static_cast<long>(atoms.size()), atoms.data());
    vlk::host::addInstanceAttribute(attribute, sub);
    return MAX_ERR_NONE;
}

t_object* classAttribute(t_class* c, const char* attrname)
{
    return static_cast<t_object*>(class_attr_get(c, gensym(attrname)));
}

t_max_err addToObject(t_object* x, const char* attrname, const t_symbol* type, long flags,
                      const std::vector<t_atom>& atoms)
{
    if (vlk::host::ObjectRecord::of(x) == nullptr)
        return MAX_ERR_INVALID_PTR;
    vlk::host::addInstanceAttribute(
        x, makeValuedAttribute(attrname, type, flags, static_cast<long>(atoms.size()), atoms.data()));
    return MAX_ERR_NONE;
}

} // namespace

t_object* attr_offset_new(const char* name, const t_symbol* type, long flags, const method mget,
                          const method mset, long offset)
{
    return Attribute::create(name, type, flags, mget, mset, Attribute::Storage::member, offset);
}

t_object* attr_offset_array_new(const char* name, t_symbol* type, long size, long flags, method mget,
                                method mset, long offsetcount, long offset)
{
    return Attribute::create(name, type, flags, mget, mset, Attribute::Storage::memberArray, offset, size,
                             offsetcount);
}

t_object* attribute_new(const char* name, t_symbol* type, long flags, method mget, method mset)
{
    return Attribute::create(name, type, flags, mget, mset, Attribute::Storage::self);
}

t_max_err class_addattr(t_class* c, t_object* attr)
{
    return addToClass(c, attr);
}

void* class_attr_get(t_class* x, t_symbol* attrname)
{
    vlk::host::ClassRecord* record = vlk::host::ClassRecord::of(x);
    if (record == nullptr)
        return nullptr;
    for (t_object* attribute : record->attributes)
        if (Attribute::of(attribute)->name() == attrname)
            return attribute;
    return nullptr;
}

t_max_err class_addattr_atoms(t_class* c, const char* attrname, t_symbol* type, long flags, long ac,
                              t_atom* av)
{
    return addToClass(c, makeValuedAttribute(attrname, type, flags, ac, av));
}

t_max_err class_addattr_parse(t_class* c, const char* attrname, t_symbol* type, long flags,
                              const char* parsestr)
{
    std::vector<t_atom> atoms = vlk::host::parseAtoms(parsestr == nullptr ? "" : parsestr);
    return class_addattr_atoms(c, attrname, type, flags, static_cast<long>(atoms.size()), atoms.data());
}

t_max_err class_addattr_format(t_class* c, const char* attrname, t_symbol* type, long flags, const char* fmt,
                               ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    std::vector<t_atom> atoms = vlk::host::formatAtoms(fmt, arguments);
    va_end(arguments);
    return class_addattr_atoms(c, attrname, type, flags, static_cast<long>(atoms.size()), atoms.data());
}

t_max_err class_attr_addattr_atoms(t_class* c, const char* attrname, const char* attrname2, t_symbol* type,
                                   long flags, long ac, t_atom* av)
{
    return addAttributeAttribute(classAttribute(c, attrname), attrname2, type, flags,
                                 std::vector<t_atom>(av, av + (av == nullptr ? 0 : ac)));
}

t_max_err class_attr_addattr_parse(t_class* c, const char* attrname, const char* attrname2, t_symbol* type,
                                   long flags, const char* parsestr)
{
    return addAttributeAttribute(classAttribute(c, attrname), attrname2, type, flags,
                                 vlk::host::parseAtoms(parsestr == nullptr ? "" : parsestr));
}

t_max_err class_attr_addattr_format(t_class* c, const char* attrname, const char* attrname2,
                                    const t_symbol* type, long flags, const char* fmt, ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    std::vector<t_atom> atoms = vlk::host::formatAtoms(fmt, arguments);
    va_end(arguments);
    return addAttributeAttribute(classAttribute(c, attrname), attrname2, type, flags, atoms);
}

t_object* class_attr_attr_get(t_class* c, t_symbol* attrname, t_symbol* attrname2)
{
    return static_cast<t_object*>(object_attr_get(class_attr_get(c, attrname), attrname2));
}

t_max_err class_attr_attr_getvalueof(t_class* c, t_symbol* attrname, t_symbol* attrname2, long* argc,
                                     t_atom** argv)
{
    return object_attr_getvalueof(class_attr_get(c, attrname), attrname2, argc, argv);
}

t_max_err object_addattr(void* x, t_object* attr)
{
    if (vlk::host::ObjectRecord::of(x) == nullptr || Attribute::of(attr) == nullptr)
        return MAX_ERR_INVALID_PTR;
    vlk::host::addInstanceAttribute(x, attr);
    return MAX_ERR_NONE;
}

namespace {

t_max_err detachAttribute(void* x, t_symbol* attrsym, bool free)
{
    vlk::host::ObjectRecord* record = vlk::host::ObjectRecord::of(x);
    if (record == nullptr)
        return MAX_ERR_INVALID_PTR;
    auto found = std::find_if(record->attributes.begin(), record->attributes.end(),
                              [attrsym](t_object* a) { return Attribute::of(a)->name() == attrsym; });
    if (found == record->attributes.end())
        return MAX_ERR_GENERIC;
    t_object* attribute = *found;
    record->attributes.erase(found);
    if (free)
        object_free(attribute);
    return MAX_ERR_NONE;
}

} // namespace

t_max_err object_deleteattr(void* x, t_symbol* attrsym)
{
    return detachAttribute(x, attrsym, true);
}

t_max_err object_chuckattr(void* x, t_symbol* attrsym)
{
    return detachAttribute(x, attrsym, false);
}

t_max_err object_addattr_atoms(t_object* x, const char* attrname, t_symbol* type, long flags, long ac,
                               t_atom* av)
{
    return addToObject(x, attrname, type, flags, std::vector<t_atom>(av, av + (av == nullptr ? 0 : ac)));
}

t_max_err object_addattr_parse(t_object* x, const char* attrname, t_symbol* type, long flags,
                               const char* parsestr)
{
    return addToObject(x, attrname, type, flags, vlk::host::parseAtoms(parsestr == nullptr ? "" : parsestr));
}

t_max_err object_addattr_format(t_object* x, const char* attrname, t_symbol* type, long flags,
                                const char* fmt, ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    std::vector<t_atom> atoms = vlk::host::formatAtoms(fmt, arguments);
    va_end(arguments);
    return addToObject(x, attrname, type, flags, atoms);
}

t_max_err object_attr_addattr_atoms(t_object* x, const char* attrname, const char* attrname2, t_symbol* type,
                                    long flags, long ac, t_atom* av)
{
    return addAttributeAttribute(static_cast<t_object*>(object_attr_get(x, gensym(attrname))), attrname2,
                                 type, flags, std::vector<t_atom>(av, av + (av == nullptr ? 0 : ac)));
}

t_max_err object_attr_addattr_parse(t_object* x, const char* attrname, const char* attrname2, t_symbol* type,
                                    long flags, const char* parsestr)
{
    return addAttributeAttribute(static_cast<t_object*>(object_attr_get(x, gensym(attrname))), attrname2,
                                 type, flags, vlk::host::parseAtoms(parsestr == nullptr ? "" : parsestr));
}

t_max_err object_attr_addattr_format(t_object* x, const char* attrname, const char* attrname2,
                                     const t_symbol* type, long flags, const char* fmt, ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    std::vector<t_atom> atoms = vlk::host::formatAtoms(fmt, arguments);
    va_end(arguments);
    return addAttributeAttribute(static_cast<t_object*>(object_attr_get(x, gensym(attrname))), attrname2,
                                 type, flags, atoms);
}
