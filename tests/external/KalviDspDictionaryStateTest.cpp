#include "KalviDspHostTestSupport.h"
#include "KalviDspStateTestObject.h"

#include "external/KalviDspDictionaryState.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

TEST(ReadDictionaryIntoAttributes, ListsAndSingleAtomsSetAttributesByName)
{
    StateTestObject* x = newStateTestObject();
    t_dictionary* d = dictionary_new();
    EXPECT_TRUE(ReadDictionaryIntoAttributes(&x->ob, d));
    std::vector<t_atom> list = host::test::atoms("1 2 3");
    dictionary_appendatoms(d, gensym("delta"), 3, list.data());
    dictionary_appendlong(d, gensym("secret"), 5);
    dictionary_appendsym(d, gensym("gamma"), gensym("read"));
    EXPECT_TRUE(ReadDictionaryIntoAttributes(&x->ob, d));
    EXPECT_EQ(x->delta[2], 3.0);
    // Unlike a state run, a dictionary reaches attributes that are no state.
    EXPECT_EQ(x->secret, 5);
    EXPECT_EQ(x->gamma, gensym("read"));
    EXPECT_FALSE(ReadDictionaryIntoAttributes(&x->ob, nullptr));
    object_free(d);
    object_free(x);
}

TEST(OutputDictionary, NeedsAnOutletAndADictionary)
{
    t_dictionary* d = dictionary_new();
    EXPECT_FALSE(OutputDictionary(nullptr, d));
    EXPECT_FALSE(OutputDictionary(reinterpret_cast<void*>(1), nullptr));
    object_free(d);
}

} // namespace
} // namespace vlk::external::test
