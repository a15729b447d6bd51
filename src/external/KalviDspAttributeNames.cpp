#include "external/KalviDspAttributeNames.h"

#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspMaxAttribute.h"

#include <cstdlib>

namespace vlk {
namespace {

// Not a consistent order where a value is 0 (5 against 0 gives 1 as 0 against 5 does): the result is then
// whatever qsort makes of it. glibc's qsort stays within the array whatever its comparison answers.
int compareByOrder(const void* a, const void* b)
{
    const std::uint32_t orderA =
        MaxAttribute::FromAttributeObject(*static_cast<t_object* const*>(a)).GetOrder();
    const std::uint32_t orderB =
        MaxAttribute::FromAttributeObject(*static_cast<t_object* const*>(b)).GetOrder();
    if (orderA == 0 || orderA > orderB)
        return 1;
    return orderA < orderB ? -1 : 0;
}

// A name the host lists without an attribute behind it has no order to be sorted by: it is left out.
void sortByOrderAttribute(t_object* object, Vector<String>& names)
{
    Vector<t_object*> attributes;
    for (const String& name : names)
        if (auto* attribute = static_cast<t_object*>(object_attr_get(object, gensym(name.c_str()))))
            attributes.push_back(attribute);
    std::qsort(attributes.data(), attributes.size(), sizeof(t_object*), compareByOrder);
    names.resize(attributes.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = MaxAttribute::FromAttributeObject(attributes[i]).GetName()->s_name;
}

// What Max adds to every box; never the object's state.
bool isBoxAttribute(t_symbol* name)
{
    const CommonSymbols& s = *commonSymbols;
    for (t_symbol* boxName :
         {s.annotation, s.hidden, s.hint, s.ignoreclick, s.patching_rect, s.patching_position,
          s.patching_size, s.presentation, s.presentation_position, s.presentation_rect, s.presentation_size,
          s.varname, s.background, s.parameter_enable})
        if (name == boxName)
            return true;
    return false;
}

bool isState(t_object* object, const String& name)
{
    const MaxAttribute attribute(object, name.c_str());
    if (attribute.IsNull() || attribute.IsInvisible())
        return false;
    if ((attribute.GetFlags() & (ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER)) != 0)
        return false;
    return !isBoxAttribute(attribute.GetName()) &&
           GetNumberOfAtomsNeededToStoreAttribute(object, name.c_str()) != 0;
}

} // namespace

void GetAttributeNames(t_object* object, Vector<String>& names, AttributeSortMode mode)
{
    long count = 0;
    t_symbol** symbols = nullptr;
    if (object_attr_getnames(object, &count, &symbols) != MAX_ERR_NONE || count < 0 || symbols == nullptr)
        count = 0;
    if (mode == AttributeSortMode::Alphabetical)
        symbolarray_sort(count, symbols);
    names.resize(static_cast<std::size_t>(count));
    for (long i = 0; i < count; ++i)
        names[static_cast<std::size_t>(i)] = symbols[i]->s_name;
    if (mode == AttributeSortMode::ByOrderAttribute)
        sortByOrderAttribute(object, names);
    sysmem_freeptr(symbols);
}

void RemoveNonStateAttributes(t_object* object, Vector<String>& names)
{
    Vector<String> kept;
    for (const String& name : names)
        if (isState(object, name))
            kept.push_back(name);
    names = kept;
}

Vector<String> GetStateAttributeNames(t_object* object)
{
    Vector<String> names;
    GetAttributeNames(object, names, AttributeSortMode::Alphabetical);
    RemoveNonStateAttributes(object, names);
    return names;
}

std::uint32_t GetNumberOfAtomsNeededToStoreAttribute(t_object* object, const char* name)
{
    AttributeAtoms value;
    if (!value.fetchOrReport(object, gensym(name), "GetNumberOfAtomsNeededToStoreAttribute"))
        return 0;
    if (value.count() < 0) {
        object_bug(object,
                   "GetNumberOfAtomsNeededToStoreAttribute : error in object_attr_getvalueof %s (ac=%ld)",
                   name, value.count());
        return 0;
    }
    return static_cast<std::uint32_t>(value.count());
}

std::uint32_t GetTotalNumberOfAtoms(t_object* object, const Vector<String>& names)
{
    std::uint32_t total = 0;
    for (const String& name : names)
        total += GetNumberOfAtomsNeededToStoreAttribute(object, name.c_str());
    return total;
}

} // namespace vlk
