#include "KalviDspExternalTestObject.h"
#include "KalviDspHostTestSupport.h"

#include "external/KalviDspAtomsToText.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

String textOf(std::vector<t_atom> atoms)
{
    String text = "stale";
    AtomsToText(static_cast<long>(atoms.size()), atoms.data(), text);
    return text;
}

t_atom floatAtom(double value)
{
    t_atom atom;
    atom_setfloat(&atom, value);
    return atom;
}

TEST(AtomsToTextForm, EachAtomIsFollowedByABlank)
{
    EXPECT_EQ(textOf(host::test::atoms("foo 7 -3 bar")), "foo 7 -3 bar ");
    EXPECT_EQ(textOf({}), "");
    String text = "stale";
    AtomsToText(3, nullptr, text);
    EXPECT_EQ(text, "");
}

TEST(AtomsToTextForm, FloatsLoseTrailingZerosButKeepThePoint)
{
    EXPECT_EQ(textOf({floatAtom(1.5)}), "1.5 ");
    EXPECT_EQ(textOf({floatAtom(2.0)}), "2. ");
    EXPECT_EQ(textOf({floatAtom(0.0)}), "0. ");
    EXPECT_EQ(textOf({floatAtom(-0.125)}), "-0.125 ");
    // Single precision, six decimals.
    EXPECT_EQ(textOf({floatAtom(0.1)}), "0.1 ");
    EXPECT_EQ(textOf({floatAtom(1.0 / 3.0)}), "0.333333 ");
    EXPECT_EQ(textOf({floatAtom(16777217.0)}), "16777216. ");
}

TEST(AtomsToTextForm, OtherAtomsAddNothing)
{
    std::vector<t_atom> atoms = host::test::atoms("a 1");
    t_atom object;
    atom_setobj(&object, nullptr);
    atoms.insert(atoms.begin() + 1, object);
    EXPECT_EQ(textOf(atoms), "a 1 ");
}

TEST(InvalidMessageReport, TheAtomsFollowTheTextAndWithoutThemABlankEndsTheLine)
{
    t_object* x = newTestObject();
    host::test::ConsoleCapture console;
    std::vector<t_atom> atoms = host::test::atoms("foo 2.5");
    ReportInvalidMessage(x, static_cast<long>(atoms.size()), atoms.data(), "invalid message : seek");
    ReportInvalidMessage(x, 0, nullptr, "invalid message : seek");
    EXPECT_EQ(console.lines(),
              (std::vector<std::string>{"error: supporttest: invalid message : seek foo 2.5 ",
                                        "error: supporttest: invalid message : seek "}));
    object_free(x);
}

} // namespace
} // namespace vlk::external::test
