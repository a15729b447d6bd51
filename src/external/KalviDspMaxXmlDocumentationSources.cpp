// Where the reference page finds what the class knows of itself.
#include "external/KalviDspMaxAttribute.h"
#include "external/KalviDspMaxXmlDocumentation.h"

#include "ext_atomarray.h"
#include "ext_dictionary.h"

namespace vlk {
namespace {

String atomText(t_atomarray* array, long index)
{
    t_atom atom;
    if (atomarray_getindex(array, index, &atom) != MAX_ERR_NONE)
        return String();
    return atom_getsym(&atom)->s_name;
}

t_atomarray* listOf(t_object* classDescription, const char* name)
{
    return classDescription == nullptr
               ? nullptr
               : reinterpret_cast<t_atomarray*>(object_attr_getobj(classDescription, gensym(name)));
}

void readNames(t_atomarray* array, Vector<String>& names)
{
    if (array == nullptr)
        return;
    names.resize(static_cast<std::size_t>(atomarray_getsize(array)));
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = atomText(array, static_cast<long>(i));
}

// An entry of the methods dictionary: the description, the long 0, then a name and a type per argument.
void readMethod(t_symbol* key, t_atomarray* entry, MethodDescription& method)
{
    method.name = key->s_name;
    method.description = atomText(entry, 0);
    const long size = atomarray_getsize(entry);
    const std::size_t numPairs = static_cast<std::size_t>(size / 2);
    method.argumentNames.resize(numPairs);
    method.argumentTypes.resize(numPairs);
    if (size <= 3)
        return;
    for (std::size_t i = 1; i < numPairs; ++i) {
        method.argumentNames[i] = atomText(entry, static_cast<long>(2 * i));
        method.argumentTypes[i] = atomText(entry, static_cast<long>(2 * i + 1));
    }
}

} // namespace

t_object* MaxXmlDocumentation::findClassDescription(const char* operation) const
{
    auto* description =
        static_cast<t_object*>(class_attr_get(object_class(object), gensym("classdescription")));
    if (description == nullptr)
        object_post(nullptr, "MaxXmlDocumentation::%s no %s class attribute", operation, "classdescription");
    return description;
}

String MaxXmlDocumentation::GetExternalVersion() const
{
    return MaxAttribute(object, "externalversion").GetSymbolLabel().value_or("unknown version");
}

void MaxXmlDocumentation::GetObjectListOfInletsDescription(Vector<String>& names) const
{
    names.clear();
    readNames(listOf(findClassDescription("GetObjectListOfInletsDescription"), "inlets"), names);
}

void MaxXmlDocumentation::GetObjectListOfOutletsDescription(Vector<String>& names) const
{
    names.clear();
    readNames(listOf(findClassDescription("GetObjectListOfOutletsDescription"), "outlets"), names);
}

// Three atoms per argument: name, description, type.
void MaxXmlDocumentation::GetObjectListOfArguments(Vector<String>& names, Vector<String>& descriptions,
                                                   Vector<String>& types) const
{
    names.clear();
    descriptions.clear();
    types.clear();
    t_atomarray* arguments = listOf(findClassDescription("GetObjectListOfArguments"), "arguments");
    if (arguments == nullptr)
        return;
    const std::size_t count = static_cast<std::size_t>(atomarray_getsize(arguments) / 3);
    names.resize(count);
    descriptions.resize(count);
    types.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        names[i] = atomText(arguments, static_cast<long>(3 * i));
        descriptions[i] = atomText(arguments, static_cast<long>(3 * i + 1));
        types[i] = atomText(arguments, static_cast<long>(3 * i + 2));
    }
}

// A key without an object keeps an empty entry.
void MaxXmlDocumentation::getObjectMethodsDescription(Vector<MethodDescription>& methods) const
{
    methods.clear();
    t_object* classDescription = findClassDescription("getObjectMethodsDescription");
    auto* dictionary =
        classDescription == nullptr
            ? nullptr
            : reinterpret_cast<t_dictionary*>(object_attr_getobj(classDescription, gensym("methods")));
    if (dictionary == nullptr)
        return;
    long numKeys = 0;
    t_symbol** keys = nullptr;
    if (dictionary_getkeys_ordered(dictionary, &numKeys, &keys) != MAX_ERR_NONE || numKeys < 0)
        return;
    methods.resize(static_cast<std::size_t>(numKeys));
    for (long i = 0; i < numKeys; ++i) {
        t_object* entry = nullptr;
        if (dictionary_getobject(dictionary, keys[i], &entry) == MAX_ERR_NONE && entry != nullptr)
            readMethod(keys[i], reinterpret_cast<t_atomarray*>(entry), methods[static_cast<std::size_t>(i)]);
    }
    dictionary_freekeys(dictionary, numKeys, keys);
}

// A text without a comma is one entry; an empty one gives one empty entry.
void MaxXmlDocumentation::GetObjectSeeAlso(Vector<String>& names) const
{
    String text = MaxAttribute(object, "classseealso").GetLabel("");
    text.removeAll(' ');
    names.clear();
    std::size_t start = 0;
    for (std::size_t comma = text.find(','); comma != String::npos; comma = text.find(',', start)) {
        names.push_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    names.push_back(text.substr(start));
}

} // namespace vlk
