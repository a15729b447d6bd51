#include "KalviDspExternalTestObject.h"
#include "KalviDspHostTestSupport.h"

#include "external/KalviDspDictionaryArgument.h"
#include "external/KalviDspSfPlayObject.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using Lines = std::vector<std::string>;

// A constructor's arguments: a box argument, then the dictionary.
struct ConstructorArguments
{
    ConstructorArguments()
    {
        dictionary = dictionary_new();
        atom_setsym(&atoms[0], gensym("box"));
        atom_setobj(&atoms[1], dictionary);
    }
    ~ConstructorArguments() { object_free(dictionary); }

    t_dictionary* dictionary;
    t_atom atoms[2];
};

TEST(DictionaryArgument, NamedAttributesAreReadBeforeTheOthers)
{
    t_object* x = newTestObject();
    ConstructorArguments arguments;
    dictionary_appendlong(arguments.dictionary, gensym("numchannels"), 6);
    dictionary_appendlong(arguments.dictionary, gensym("buffersize"), 200000);
    host::test::ConsoleCapture console;
    EXPECT_TRUE(ReadAttributesFromDictionaryArgument(x, 2, arguments.atoms, 1, "numchannels"));
    auto* object = reinterpret_cast<SfPlayObject*>(x);
    EXPECT_EQ(object->numchannels, 6);
    EXPECT_EQ(object->buffersize, 0);
    EXPECT_TRUE(ReadAttributesFromDictionaryArgument(x, 2, arguments.atoms, 0));
    EXPECT_TRUE(ProcessDictionaryArgument(x, 2, arguments.atoms, true));
    EXPECT_EQ(object->buffersize, 200000);
    EXPECT_TRUE(console.lines().empty());
    object_free(x);
}

TEST(DictionaryArgument, AMissingEntryIsReportedAndEveryNameIsStillTried)
{
    t_object* x = newTestObject();
    ConstructorArguments arguments;
    dictionary_appendlong(arguments.dictionary, gensym("buffersize"), 300000);
    host::test::ConsoleCapture console;
    EXPECT_FALSE(ReadAttributesFromDictionaryArgument(x, 2, arguments.atoms, 2, "numchannels", "buffersize"));
    EXPECT_EQ(reinterpret_cast<SfPlayObject*>(x)->buffersize, 300000);
    EXPECT_EQ(console.lines(), (Lines{"error: supporttest: dictionary doesnt have entry for numchannels",
                                      "error: supporttest: error parsing dictionary"}));
    object_free(x);
}

TEST(DictionaryArgument, WithoutADictionaryNothingIsRead)
{
    t_object* x = newTestObject();
    t_atom plain;
    atom_setlong(&plain, 3);
    host::test::ConsoleCapture console;
    EXPECT_FALSE(ReadAttributesFromDictionaryArgument(x, 1, &plain, 1, "numchannels"));
    EXPECT_FALSE(ProcessDictionaryArgument(x, 1, &plain, true));
    EXPECT_EQ(console.lines(), (Lines{"bug: supporttest: couldnt process dictionnary",
                                      "bug: supporttest: couldnt process dictionnary"}));
    object_free(x);
}

TEST(DictionaryArgument, TheCheckReportsKeysThatAreNoAttributes)
{
    t_object* x = newTestObject();
    ConstructorArguments arguments;
    dictionary_appendlong(arguments.dictionary, gensym("colour"), 1);
    host::test::ConsoleCapture console;
    EXPECT_TRUE(ProcessDictionaryArgument(x, 2, arguments.atoms, false));
    EXPECT_TRUE(console.lines().empty());
    EXPECT_TRUE(ProcessDictionaryArgument(x, 2, arguments.atoms, true));
    EXPECT_EQ(console.lines().size(), 1u);
    object_free(x);
}

} // namespace
} // namespace vlk::external::test
