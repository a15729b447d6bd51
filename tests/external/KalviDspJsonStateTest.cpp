#include "KalviDspHostTestSupport.h"
#include "KalviDspStateTestObject.h"

#include "external/KalviDspDictionaryState.h"
#include "external/KalviDspJsonState.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace vlk::external::test {
namespace {

using host::test::ConsoleCapture;
using host::test::ScratchFolder;
using Lines = std::vector<std::string>;

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

struct JsonValueCase
{
    const char* atoms;
    const char* json;
};

// A symbol of host::test::atoms text stands in quotes where it holds a blank or a quote.
const JsonValueCase jsonValueCases[] = {
    {"", ""},
    {"7", "7"},
    {"1.5", "1.500000"},
    {"word", "\"word\""},
    {"1 2 3", "[ 1, 2, 3 ]"},
    {"1. 2. 3.", "[ 1.000000, 2.000000, 3.000000 ]"},
    {"1 last", "[ 1, \"last\"]"},
    // Floats pass through 32 bits, and are never written in exponent form.
    {"0.1 1e20", "[ 0.100000, 100000002004087734272.000000 ]"},
    // No escape: the file is then no JSON.
    {"\"say \\\"hi\\\"\"", "\"say \"hi\"\""},
};

TEST(AtomsToJsonValue, FormsOfOneAndSeveralAtoms)
{
    for (const JsonValueCase& c : jsonValueCases) {
        std::vector<t_atom> atoms = host::test::atoms(c.atoms);
        String value = "left over";
        AtomsToJsonValue(static_cast<long>(atoms.size()), atoms.data(), value);
        EXPECT_EQ(value, c.json) << c.atoms;
    }
}

TEST(AtomsToJsonValue, AnAtomOfAnotherTypeLeavesNoTraceNotEvenItsSeparator)
{
    t_atom atoms[3];
    atom_setlong(&atoms[0], 1);
    atom_setobj(&atoms[1], nullptr);
    atom_setlong(&atoms[2], 3);
    String value;
    AtomsToJsonValue(3, atoms, value);
    EXPECT_EQ(value, "[ 1, 3 ]");
    AtomsToJsonValue(1, &atoms[1], value);
    EXPECT_EQ(value, "");
}

TEST(WriteDictionaryAsJson, TheStateOfEveryAttributeKind)
{
    ScratchFolder scratch;
    StateTestObject* x = newStateTestObject();
    x->alpha = -3;
    x->beta = 0.1f;
    x->delta[2] = 2.5;
    t_dictionary* d = MakeDictionaryFromAttributes(&x->ob);
    const std::string path = scratch.path() + "/state.json";
    EXPECT_TRUE(WriteDictionaryAsJson(&x->ob, d, path.c_str()));
    EXPECT_EQ(contents(path), "{\n"
                              "    \"alpha\" : -3, \n"
                              "    \"beta\" : 0.100000, \n"
                              "    \"delta\" : [ 0.000000, 0.000000, 2.500000 ], \n"
                              "    \"gamma\" : \"g\", \n"
                              "    \"grow\" : 0, \n"
                              "    \"twice\" : 0\n"
                              "}\n");
    object_free(d);
    object_free(x);
}

// A nested dictionary is no atom the format knows: its line keeps the key and the separator alone.
TEST(WriteDictionaryAsJson, OneEntryHasNoCommaAndANestedDictionaryNoValue)
{
    ScratchFolder scratch;
    t_dictionary* d = dictionary_new();
    dictionary_appenddictionary(d, gensym("inner"), reinterpret_cast<t_object*>(dictionary_new()));
    const std::string nested = scratch.path() + "/nested.json";
    EXPECT_TRUE(WriteDictionaryAsJson(nullptr, d, nested.c_str()));
    EXPECT_EQ(contents(nested), "{\n    \"inner\" : \n}\n");
    object_free(d);
}

TEST(WriteDictionaryAsJson, AFileThatCantBeOpenedIsAQuietFalse)
{
    ScratchFolder scratch;
    t_dictionary* d = dictionary_new();
    ConsoleCapture console;
    EXPECT_FALSE(WriteDictionaryAsJson(nullptr, d, (scratch.path() + "/missing/x.json").c_str()));
    EXPECT_FALSE(WriteDictionaryAsJson(nullptr, nullptr, (scratch.path() + "/x.json").c_str()));
    EXPECT_EQ(console.lines(), Lines{});
    object_free(d);
}

} // namespace
} // namespace vlk::external::test
