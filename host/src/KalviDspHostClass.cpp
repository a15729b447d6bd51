#include "KalviDspHostClass.h"

#include "KalviDspHostClassRegistry.h"

#include "ext_proto.h"
#include "z_dsp.h"

#include <cstdarg>

namespace vlk::host {

ClassRecord* ClassRecord::of(t_class* c)
{
    return c == nullptr ? nullptr : static_cast<ClassRecord*>(c->c_extra);
}

const ClassRecord::Method* ClassRecord::findMethod(t_symbol* name) const
{
    for (const Method& entry : methods)
        if (entry.name == name)
            return &entry;
    return nullptr;
}

void ClassRecord::addMethod(t_symbol* name, method function, std::vector<long> types)
{
    for (Method& entry : methods)
        if (entry.name == name) {
            entry.function = function;
            entry.types = std::move(types);
            return;
        }
    methods.push_back({name, function, std::move(types)});
}

t_class* makeHostClass(const char* name, long size, method freeMethod)
{
    t_class* c = class_new(name, nullptr, freeMethod, size, nullptr, 0, 0);
    class_register(gensym("nobox"), c);
    return c;
}

} // namespace vlk::host

using vlk::host::ClassRecord;
using vlk::host::ClassRegistry;

namespace {

std::vector<long> readTypeList(va_list arguments)
{
    std::vector<long> types;
    for (;;) {
        int type = va_arg(arguments, int);
        if (type == A_NOTHING || types.size() > MSG_MAXARG)
            break;
        types.push_back(type);
    }
    return types;
}

} // namespace

t_class* class_new(const char* name, const method mnew, const method mfree, long size, const method mmenu,
                   short type, ...)
{
    auto* c = new t_class{};
    auto* record = new ClassRecord();
    c->c_sym = gensym(name);
    c->c_freefun = mfree;
    c->c_size = static_cast<t_getbytes_size>(size);
    c->c_menufun = mmenu;
    c->c_extra = record;
    c->c_messlist = record->legacyMessages;
    record->legacyMessages[0].m_sym = reinterpret_cast<t_symbol*>(c);
    record->legacyMessages[1].m_sym = c->c_sym;
    record->legacyMessages[1].m_fun = mnew;
    if (type != A_NOTHING) {
        va_list arguments;
        va_start(arguments, type);
        record->constructorTypes = readTypeList(arguments);
        va_end(arguments);
        record->constructorTypes.insert(record->constructorTypes.begin(), type);
    }
    return c;
}

t_max_err class_addmethod(t_class* c, const method m, const char* name, ...)
{
    ClassRecord* record = ClassRecord::of(c);
    if (record == nullptr || name == nullptr)
        return MAX_ERR_INVALID_PTR;
    va_list arguments;
    va_start(arguments, name);
    std::vector<long> types = readTypeList(arguments);
    va_end(arguments);
    record->addMethod(gensym(name), m, std::move(types));
    c->c_messcount++;
    return MAX_ERR_NONE;
}

t_max_err class_register(t_symbol* name_space, t_class* c)
{
    ClassRecord* record = ClassRecord::of(c);
    if (record == nullptr || name_space == nullptr)
        return MAX_ERR_INVALID_PTR;
    record->nameSpace = name_space;
    c->c_flags |= CLASS_FLAG_REGISTERED;
    if (name_space == gensym("box"))
        c->c_flags |= CLASS_FLAG_BOX;
    ClassRegistry::instance().add(name_space, c->c_sym, c);
    return MAX_ERR_NONE;
}

t_max_err class_alias(t_class* c, t_symbol* aliasname)
{
    ClassRecord* record = ClassRecord::of(c);
    if (record == nullptr || record->nameSpace == nullptr)
        return MAX_ERR_GENERIC;
    ClassRegistry::instance().add(record->nameSpace, aliasname, c);
    return MAX_ERR_NONE;
}

t_class* class_findbyname(t_symbol* name_space, t_symbol* classname)
{
    return ClassRegistry::instance().find(name_space, classname);
}

// Classes stay for the life of the process, as in Max: objects of them may still exist.
t_max_err class_free(t_class* c)
{
    return c == nullptr ? MAX_ERR_INVALID_PTR : MAX_ERR_NONE;
}

void class_dspinit(t_class* c)
{
    if (ClassRecord* record = ClassRecord::of(c))
        record->isSignalClass = true;
}
