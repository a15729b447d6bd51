#include "KalviDspHostTestSupport.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspMethodDocumentation.h"
#include "external/KalviDspMethodRegistration.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

struct Documented
{
    t_object ob;
    t_symbol* classdescription;
};

// Classes live as long as the process, as in the host.
t_class* documentedClass(const char* name, bool withDescription)
{
    static auto* const classes = new std::vector<t_class*>();
    t_class* c = class_new(name, nullptr, nullptr, sizeof(Documented), nullptr, A_GIMME, 0);
    classes->push_back(c);
    if (withDescription)
        CLASS_ATTR_SYM(c, "classdescription", ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER, Documented,
                       classdescription);
    return c;
}

// The entries of the methods dictionary, one text per selector: the selector, then its atoms.
std::vector<std::string> entries(t_class* c)
{
    std::vector<std::string> found;
    auto* methods = reinterpret_cast<t_dictionary*>(
        object_attr_getobj(class_attr_get(c, gensym("classdescription")), gensym("methods")));
    if (methods == nullptr)
        return found;
    long numKeys = 0;
    t_symbol** keys = nullptr;
    dictionary_getkeys_ordered(methods, &numKeys, &keys);
    for (long i = 0; i < numKeys; ++i) {
        t_object* entry = nullptr;
        dictionary_getobject(methods, keys[i], &entry);
        long ac = 0;
        t_atom* av = nullptr;
        atomarray_getatoms(reinterpret_cast<t_atomarray*>(entry), &ac, &av);
        found.push_back(std::string(keys[i]->s_name) + " " + host::test::text(ac, av));
    }
    dictionary_freekeys(methods, numKeys, keys);
    return found;
}

TEST(MethodDocumentation, EntriesKeepTheOrderOfInsertionAndTakeArguments)
{
    InitCommonSymbols();
    t_class* c = documentedClass("documented", true);
    AddMethodDocumentation(c, "open", "opens a file");
    AddPostDspStateMethod(c, nullptr);
    AddMethodDocumentation(c, "never registered", "still documented");
    AddMethodArgumentDocumentation(c, "open", "name", "symbol");
    AddMethodArgumentDocumentation(c, "absent", "name", "symbol");
    EXPECT_EQ(entries(c), (std::vector<std::string>{
                              "open \"opens a file\" 0 name symbol",
                              "postdspstate \"post information about the dsp connections.\" 0",
                              "never registered \"still documented\" 0",
                          }));
}

TEST(MethodDocumentation, AClassWithoutDescriptionIsLeftAlone)
{
    t_class* c = documentedClass("undocumented", false);
    AddMethodDocumentation(c, "open", "opens a file");
    AddMethodArgumentDocumentation(c, "open", "name", "symbol");
    EXPECT_EQ(class_attr_get(c, gensym("classdescription")), nullptr);
}

} // namespace
} // namespace vlk::external::test
