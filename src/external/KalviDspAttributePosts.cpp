#include "external/KalviDspAttributePosts.h"

#include "external/KalviDspAtomsToText.h"
#include "external/KalviDspAttributeAtoms.h"
#include "external/KalviDspAttributeNames.h"

namespace vlk {

void PostValueOfAttribute(t_object* object, const char* name)
{
    if (!HasAttributeOrReport(object, gensym(name)))
        return;
    AttributeAtoms value;
    if (value.fetchOrReport(object, gensym(name), "PostValueOfAttribute") && !value.isEmpty())
        PostAtoms(object, value.count(), value.atoms(), name);
}

void PostAllAttributes(t_object* object)
{
    const Vector<String> names = GetStateAttributeNames(object);
    object_post(object, "found %d attributes", static_cast<int>(names.size()));
    for (const String& name : names)
        PostValueOfAttribute(object, name.c_str());
}

void PostAtoms(t_object* object, long count, const t_atom* atoms, const char* name)
{
    String text;
    AtomsToText(count, atoms, text);
    object_post(object, "%s : %s", name, text.c_str());
}

} // namespace vlk
