#include "KalviDspHostBoxFactory.h"

#include "KalviDspHostAttribute.h"
#include "KalviDspHostClass.h"
#include "KalviDspHostExternalLoader.h"

#include "ext_obex.h"
#include "ext_proto.h"
#include "ext_sysmem.h"

namespace vlk::host {
namespace {

t_class* boxClass()
{
    static t_class* c = makeHostClass("newobj", sizeof(t_object), nullptr);
    return c;
}

t_class* findClass(t_symbol* name, std::string& failure)
{
    if (t_class* c = class_findbyname(gensym("box"), name))
        return c;
    if (!ExternalLoader::instance().load(name->s_name, failure))
        return nullptr;
    t_class* c = class_findbyname(gensym("box"), name);
    if (c == nullptr)
        failure = std::string("the external does not register the class ") + name->s_name;
    return c;
}

void appendDefault(t_dictionary* d, t_object* attribute)
{
    long ac = 0;
    t_atom* av = nullptr;
    if (object_attr_getvalueof(attribute, gensym("default"), &ac, &av) == MAX_ERR_NONE && ac > 0) {
        t_symbol* name = Attribute::of(attribute)->name();
        if (ac == 1)
            dictionary_appendatom(d, name, av);
        else
            dictionary_appendatoms(d, name, ac, av);
    }
    sysmem_freeptr(av);
}

} // namespace

t_dictionary* BoxFactory::makeBoxDictionary(t_class* c, long ac, t_atom* av)
{
    t_dictionary* d = dictionary_new();
    for (t_object* attribute : ClassRecord::of(c)->attributes)
        appendDefault(d, attribute);
    attr_args_dictionary(d, static_cast<short>(ac), av);
    return d;
}

BoxFactory::Result BoxFactory::create(const std::vector<t_atom>& atoms)
{
    Result result;
    if (atoms.empty() || atoms[0].a_type != A_SYM) {
        result.failure = "no class name";
        return result;
    }
    t_symbol* name = atoms[0].a_w.w_sym;
    t_class* c = findClass(name, result.failure);
    if (c == nullptr)
        return result;
    result.classFound = true;
    std::vector<t_atom> arguments(atoms.begin() + 1, atoms.end());
    t_dictionary* d = nullptr;
    if (c->c_flags & CLASS_FLAG_NEWDICTIONARY) {
        d = makeBoxDictionary(c, static_cast<long>(arguments.size()), arguments.data());
        arguments.resize(static_cast<std::size_t>(
            attr_args_offset(static_cast<short>(arguments.size()), arguments.data())));
        t_atom dictionaryAtom;
        atom_setobj(&dictionaryAtom, d);
        arguments.push_back(dictionaryAtom);
    }
    t_object* box = static_cast<t_object*>(object_alloc(boxClass()));
    t_symbol* boxSymbol = gensym("#B");
    t_object* previousBox = boxSymbol->s_thing;
    boxSymbol->s_thing = box;
    result.object = static_cast<t_object*>(
        object_new_typed(gensym("box"), name, static_cast<long>(arguments.size()), arguments.data()));
    boxSymbol->s_thing = previousBox;
    object_free(d);
    if (result.object == nullptr) {
        object_free(box);
        result.failure = std::string("could not create ") + name->s_name;
    } else {
        object_obex_storeflags(result.object, boxSymbol, box, OBJ_FLAG_OBJ);
    }
    return result;
}

} // namespace vlk::host
