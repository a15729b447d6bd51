#include "external/KalviDspMaxAttribute.h"

#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspMaxErrorName.h"
#include "text/KalviDspStringHelper.h"

namespace vlk {
namespace {

// MAX_ERR_GENERIC is what the host says of a sub-attribute that does not exist.
bool isFault(t_max_err result)
{
    return result != MAX_ERR_NONE && result != MAX_ERR_GENERIC;
}

const t_attr* fieldsOf(t_object* attribute)
{
    return reinterpret_cast<const t_attr*>(attribute);
}

} // namespace

MaxAttribute::MaxAttribute(t_object* object, const char* name)
    : attribute(static_cast<t_object*>(object_attr_get(object, gensym(name))))
{
}

MaxAttribute MaxAttribute::FromAttributeObject(t_object* attributeObject)
{
    return MaxAttribute(attributeObject);
}

t_symbol* MaxAttribute::GetName() const
{
    return fieldsOf(attribute)->name;
}

t_symbol* MaxAttribute::GetType() const
{
    return fieldsOf(attribute)->type;
}

long MaxAttribute::GetFlags() const
{
    return fieldsOf(attribute)->flags;
}

// The value is fetched twice, the first time only to see that there is one.
std::uint32_t MaxAttribute::GetOrder() const
{
    if (attribute == nullptr)
        return 0;
    {
        AttributeAtoms probe;
        const t_max_err result = probe.fetch(attribute, commonSymbols->order);
        if (isFault(result) || probe.isEmpty())
            return 0;
    }
    AttributeAtoms order;
    const t_max_err result = order.fetch(attribute, commonSymbols->order);
    if (isFault(result)) {
        object_post(nullptr, "Error in MaxAttribute::GetOrder : %s", GetMaxErrorName(result));
        return 0;
    }
    if (order.count() != 0 && order.atoms()[0].a_type == A_LONG)
        return static_cast<std::uint32_t>(atom_getlong(order.atoms()));
    object_post(nullptr, "bug ? order attribute is supposed to be of type long for %s", GetName()->s_name);
    return 0;
}

bool MaxAttribute::IsInvisible() const
{
    if (attribute == nullptr)
        return false;
    AttributeAtoms invisible;
    const t_max_err result = invisible.fetch(attribute, commonSymbols->invisible);
    if (isFault(result)) {
        object_post(nullptr, "MaxAttribute::IsInvisible : %s in object_attr_getvalueof",
                    GetMaxErrorName(result));
        return false;
    }
    if (invisible.isEmpty())
        return false;
    if (invisible.atoms()[0].a_type != A_LONG) {
        object_post(nullptr, "error attribute invisible not typed long ??");
        return false;
    }
    return atom_getlong(invisible.atoms()) == 1;
}

String MaxAttribute::GetValueOf(t_symbol* subAttribute, const char* defaultValue) const
{
    if (attribute == nullptr)
        return defaultValue;
    AttributeAtoms value;
    const t_max_err result = value.fetch(attribute, subAttribute);
    if (isFault(result)) {
        object_post(nullptr, "MaxAttribute::GetValueOf : %s in object_attr_getvalueof (%s %s)",
                    GetMaxErrorName(result), subAttribute->s_name, GetName()->s_name);
        return defaultValue;
    }
    if (value.isEmpty())
        return defaultValue;
    const t_atom& first = value.atoms()[0];
    switch (first.a_type) {
    case A_SYM:
        return atom_getsym(&first)->s_name;
    case A_FLOAT:
        return formatNumber("%.2f", static_cast<float>(atom_getfloat(&first)));
    case A_LONG:
        return toString(static_cast<long long>(atom_getlong(&first)));
    default:
        object_post(nullptr, "MaxAttribute::GetValueOf : %s (%s): unhandled atom type ?", GetName()->s_name,
                    subAttribute->s_name);
        return defaultValue;
    }
}

String MaxAttribute::GetLabel(const char* defaultValue) const
{
    return GetValueOf(commonSymbols->label, defaultValue);
}

std::optional<String> MaxAttribute::GetSymbolLabel() const
{
    if (attribute == nullptr)
        return std::nullopt;
    AttributeAtoms label;
    if (label.fetch(attribute, commonSymbols->label) != MAX_ERR_NONE || label.isEmpty() ||
        label.atoms()[0].a_type != A_SYM)
        return std::nullopt;
    return String(atom_getsym(label.atoms())->s_name);
}

void MaxAttribute::GetEnumChoices(Vector<String>& choices, const char* defaultValue) const
{
    const Vector<String> onlyTheDefault{String(defaultValue)};
    if (attribute == nullptr) {
        choices = onlyTheDefault;
        return;
    }
    AttributeAtoms values;
    const t_max_err result = values.fetch(attribute, commonSymbols->enumvals);
    if (isFault(result)) {
        object_post(nullptr, "MaxAttribute::GetEnumChoices : %s in object_attr_getvalueof",
                    GetMaxErrorName(result));
        choices = onlyTheDefault;
        return;
    }
    if (values.isEmpty()) {
        choices = onlyTheDefault;
        return;
    }
    choices.clear();
    choices.resize(static_cast<std::size_t>(values.count()));
    for (long i = 0; i < values.count(); ++i) {
        if (values.atoms()[i].a_type == A_SYM)
            choices[static_cast<std::size_t>(i)] = atom_getsym(&values.atoms()[i])->s_name;
        else
            object_post(nullptr, "enumvals attribute with an atom that is not a symbol ??");
    }
}

} // namespace vlk
