#include "KalviDspHostTestSupport.h"
#include "KalviDspStateTestObject.h"

#include "external/KalviDspAttributeDump.h"
#include "external/KalviDspDumpOutlet.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using host::test::ConsoleCapture;
using host::test::OutletCapture;
using Lines = std::vector<std::string>;

TEST(AttributeDump, AllIsOneListWithEveryEntryClosedByAComma)
{
    StateTestObject* x = newStateTestObject();
    x->delta[0] = 0.5;
    OutletCapture capture(GetDumpOutlet(&x->ob));
    DumpAllAttributes(&x->ob, GetDumpOutlet(&x->ob));
    EXPECT_EQ(capture.messages(),
              Lines{"list alpha 0 , beta 0. , delta 0.5 0. 0. , gamma g , grow 0 , twice 0 ,"});
    object_free(x);
}

TEST(AttributeDump, AnAttributeWithoutAtomsSendsNothingAndSaysNothing)
{
    StateTestObject* x = newStateTestObject();
    OutletCapture capture(GetDumpOutlet(&x->ob));
    ConsoleCapture console;
    DumpAttribute(&x->ob, "zeta", GetDumpOutlet(&x->ob));
    x->zetaLength = 2;
    DumpAttribute(&x->ob, "zeta", GetDumpOutlet(&x->ob));
    DumpAllAttributes(&x->ob, nullptr);
    EXPECT_EQ(capture.messages(), Lines{"zeta 0 0"});
    EXPECT_EQ(console.lines(), Lines{"error: statetest: no dump outlet"});
    object_free(x);
}

} // namespace
} // namespace vlk::external::test
