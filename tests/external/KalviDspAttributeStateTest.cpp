#include "KalviDspHostTestSupport.h"
#include "KalviDspStateTestObject.h"

#include "external/KalviDspAttributeNames.h"
#include "external/KalviDspAttributeState.h"
#include "external/KalviDspCommonSymbols.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using host::test::atoms;
using host::test::ConsoleCapture;
using Lines = std::vector<std::string>;

std::string stateOf(t_object* x)
{
    long ac = 0;
    t_atom* av = nullptr;
    kalvimax_getvalueof(x, &ac, &av);
    const std::string text = host::test::text(ac, av);
    sysmem_freeptr(av);
    return text;
}

void setState(t_object* x, const std::string& text)
{
    std::vector<t_atom> values = atoms(text);
    kalvimax_setvalueof(x, static_cast<long>(values.size()), values.data());
}

struct StateTest : ::testing::Test
{
    StateTestObject* object = newStateTestObject();
    t_object* x = &object->ob;
    ~StateTest() override { object_free(x); }
};

TEST_F(StateTest, TheStateIsTheVisibleUserAttributesWithAtomsInAlphabeticalOrder)
{
    EXPECT_EQ(GetStateAttributeNames(x),
              (Vector<String>{"alpha", "beta", "delta", "gamma", "grow", "twice"}));
    object->zetaLength = 2;
    EXPECT_EQ(GetStateAttributeNames(x),
              (Vector<String>{"alpha", "beta", "delta", "gamma", "grow", "twice", "zeta"}));
    EXPECT_EQ(GetTotalNumberOfAtoms(x, GetStateAttributeNames(x)), 10u);
}

struct Ordered
{
    t_object ob;
    long values[3];
};

TEST(AttributeNames, SortModesOrderTheHostsList)
{
    InitCommonSymbols();
    // Classes live as long as the process, as in the host.
    static t_class* c = [] {
        t_class* made = class_new("ordertest", nullptr, nullptr, sizeof(Ordered), nullptr, A_GIMME, 0);
        CLASS_ATTR_LONG(made, "beta", 0, Ordered, values[0]);
        CLASS_ATTR_ORDER(made, "beta", 0, "3");
        CLASS_ATTR_LONG(made, "gamma", 0, Ordered, values[1]);
        CLASS_ATTR_ORDER(made, "gamma", 0, "1");
        CLASS_ATTR_LONG(made, "alpha", 0, Ordered, values[2]);
        CLASS_ATTR_ORDER(made, "alpha", 0, "2");
        return made;
    }();
    auto* x = static_cast<t_object*>(object_alloc(c));
    const std::pair<AttributeSortMode, Vector<String>> cases[] = {
        {AttributeSortMode::Unsorted, {"beta", "gamma", "alpha"}},
        {AttributeSortMode::Alphabetical, {"alpha", "beta", "gamma"}},
        {AttributeSortMode::ByOrderAttribute, {"gamma", "alpha", "beta"}},
    };
    for (const auto& [mode, expected] : cases) {
        Vector<String> names{"left over"};
        GetAttributeNames(x, names, mode);
        EXPECT_EQ(names, expected) << static_cast<int>(mode);
    }
    object_free(x);
}

TEST_F(StateTest, GetValueOfThenSetValueOfRestoresEveryAttributeThroughThirtyTwoBitFloats)
{
    object->delta[1] = 0.1;
    object->zetaLength = 1;
    setState(x, "7 2.5 0.25 0.1 -1 word 1 3 9");
    EXPECT_EQ(stateOf(x), "7 2.5 0.25 0.1 -1. word 1 3 9");
    EXPECT_EQ(object->delta[1], static_cast<double>(0.1f));
    EXPECT_EQ(object->grow, 1);
    EXPECT_EQ(object->zeta[0], 9);

    long ac = 0;
    t_atom* av = nullptr;
    kalvimax_getvalueof(x, &ac, &av);
    StateTestObject* copy = newStateTestObject();
    copy->zetaLength = 1;
    kalvimax_setvalueof(&copy->ob, ac, av);
    EXPECT_EQ(stateOf(&copy->ob), stateOf(x));
    sysmem_freeptr(av);
    object_free(copy);
}

TEST_F(StateTest, AStateOfAnotherCountIsRefusedWhole)
{
    ConsoleCapture console;
    setState(x, "7 2.5 0.25 0.1 -1 word 1");
    setState(x, "7 2.5 0.25 0.1 -1 word 1 3 4");
    setState(x, "");
    EXPECT_EQ(object->alpha, 0);
    EXPECT_EQ(console.lines(),
              (Lines{"error: statetest: setvalueof error (received 7 atoms. 8 atoms were expected)",
                     "error: statetest: setvalueof error (received 9 atoms. 8 atoms were expected)"}));
}

// grow comes before zeta and lengthens it: the run runs out behind it.
TEST_F(StateTest, ASetterThatLengthensALaterAttributeStopsTheRunAtItsEnd)
{
    object->zetaLength = 1;
    ConsoleCapture console;
    setState(x, "1 0 0 0 0 g 3 0 5");
    EXPECT_EQ(object->grow, 3);
    EXPECT_EQ(object->zeta[0], 0);
    EXPECT_EQ(console.lines(), Lines{"error: statetest: error reading atoms in kalvimax_setvalueof"});
}

TEST_F(StateTest, TheCallersMemoryIsWarnedOfAndFilled)
{
    std::vector<t_atom> memory(8);
    long ac = static_cast<long>(memory.size());
    t_atom* av = memory.data();
    object->alpha = 42;
    ConsoleCapture console;
    kalvimax_getvalueof(x, &ac, &av);
    EXPECT_EQ(av, memory.data());
    EXPECT_EQ(host::test::text(ac, av), "42 0. 0. 0. 0. g 0 0");
    EXPECT_EQ(console.lines(), Lines{"warning: statetest: kalvimax_getvalueof : memory passed in"});
}

// Writing stops at the caller's count instead of running past its memory.
TEST_F(StateTest, TooSmallACallersMemoryIsNotOverrun)
{
    std::vector<t_atom> memory(3);
    long ac = 2;
    t_atom* av = memory.data();
    atom_setlong(&memory[2], -5);
    ConsoleCapture console;
    kalvimax_getvalueof(x, &ac, &av);
    EXPECT_EQ(atom_getlong(&memory[2]), -5);
    EXPECT_EQ(console.lines().back(),
              "error: statetest: 8 atoms allocated but 2 atoms stored by the pattrstorage");
}

TEST_F(StateTest, PresetAppendsARecallMessageToTheBoundBinbuf)
{
    object->alpha = 3;
    void* binbuf = binbuf_new();
    gensym("_preset")->s_thing = static_cast<t_object*>(binbuf);
    kalvimax_preset(x);
    gensym("_preset")->s_thing = nullptr;
    kalvimax_preset(x);
    std::vector<t_atom> message;
    long index = 0, unused = 0;
    for (t_atom atom; binbuf_getatom(binbuf, &index, &unused, &atom) == 0;)
        message.push_back(atom);
    ASSERT_EQ(message.size(), 12u);
    EXPECT_EQ(atom_getobj(&message[0]), x);
    EXPECT_EQ(host::test::text(10, message.data() + 1), "statetest recallpreset 3 0. 0. 0. 0. g 0 0");
    object_free(binbuf);

    setState(x, "0 0 0 0 0 g 0 0");
    kalvimax_recallpreset(x, gensym("recallpreset"), 8, message.data() + 3);
    EXPECT_EQ(object->alpha, 3);
}

TEST(StatelessObject, HasAnEmptyStateThatNoPresetOrSetValueOfTakes)
{
    t_object* x = newStatelessTestObject();
    long ac = 5;
    t_atom* av = nullptr;
    ConsoleCapture console;
    kalvimax_getvalueof(x, &ac, &av);
    EXPECT_EQ(ac, 0);
    EXPECT_NE(av, nullptr);
    sysmem_freeptr(av);
    kalvimax_preset(x);
    setState(x, "1");
    EXPECT_EQ(console.lines(),
              (Lines{"error: statelesstest: error in kalvimax_preset",
                     "error: statelesstest: setvalueof error (received 1 atoms. 0 atoms were expected)"}));
    object_free(x);
}

} // namespace
} // namespace vlk::external::test
