#include "external/KalviDspMethodDocumentation.h"

namespace vlk {
namespace {

t_object* findClassDescription(t_class* klass)
{
    return static_cast<t_object*>(class_attr_get(klass, gensym("classdescription")));
}

} // namespace

void AddMethodDocumentation(t_class* klass, const char* selector, const char* text)
{
    t_object* description = findClassDescription(klass);
    if (description == nullptr)
        return;
    auto* methods = reinterpret_cast<t_dictionary*>(object_attr_getobj(description, gensym("methods")));
    if (methods == nullptr) {
        methods = dictionary_new();
        object_addattr_format(description, "methods", gensym("object"), 0, "o", methods);
    }
    t_atom entry[2];
    atom_setsym(&entry[0], gensym(text));
    atom_setlong(&entry[1], 0);
    dictionary_appendobject(methods, gensym(selector), reinterpret_cast<t_object*>(atomarray_new(2, entry)));
}

void AddMethodArgumentDocumentation(t_class* klass, const char* selector, const char* argumentName,
                                    const char* argumentType)
{
    t_object* description = findClassDescription(klass);
    if (description == nullptr)
        return;
    auto* methods = reinterpret_cast<t_dictionary*>(object_attr_getobj(description, gensym("methods")));
    if (methods == nullptr)
        return;
    t_object* entry = nullptr;
    if (dictionary_getobject(methods, gensym(selector), &entry) != MAX_ERR_NONE || entry == nullptr)
        return;
    t_atom argument[2];
    atom_setsym(&argument[0], gensym(argumentName));
    atom_setsym(&argument[1], gensym(argumentType));
    atomarray_appendatoms(reinterpret_cast<t_atomarray*>(entry), 2, argument);
}

} // namespace vlk
