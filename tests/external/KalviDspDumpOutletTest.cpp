#include "KalviDspExternalTestObject.h"
#include "KalviDspHostTestSupport.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspOutletSendFormatted.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using Lines = std::vector<std::string>;

TEST(DumpOutlet, IsFoundInTheExtensionStoreAndBangs)
{
    t_object* x = newTestObject();
    CreateDumpOutlet(x);
    t_object* stored = nullptr;
    object_obex_lookup(x, gensym("dumpout"), &stored);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(GetDumpOutlet(x), stored);
    host::test::OutletCapture capture(stored);
    BangDumpOutlet(x);
    EXPECT_EQ(capture.messages(), Lines{"bang"});
    object_free(x);
}

TEST(DumpOutlet, WithoutOneTheBangReportsTwice)
{
    t_object* x = newTestObject();
    host::test::ConsoleCapture console;
    EXPECT_EQ(GetDumpOutlet(x), nullptr);
    BangDumpOutlet(x);
    EXPECT_EQ(console.lines(),
              (Lines{"error: supporttest: no dump outlet", "error: supporttest: no dump outlet",
                     "error: supporttest: no dump outlet"}));
    object_free(x);
}

TEST(OutletSendFormattedAtoms, EachLetterTakesItsArgument)
{
    t_object* x = newTestObject();
    CreateDumpOutlet(x);
    host::test::OutletCapture capture(GetDumpOutlet(x));
    // A float goes through single precision: 2^24 + 1 has no float of its own.
    OutletSendFormatted(GetDumpOutlet(x), gensym("mixed"), "fils", 4, 16777217.0, -7,
                        static_cast<std::int64_t>(1) << 40, gensym("name"));
    OutletSendFormatted(GetDumpOutlet(x), gensym("none"), "", 0);
    EXPECT_EQ(capture.messages(), (Lines{"mixed 16777216. -7 1099511627776 name", "none"}));
    object_free(x);
}

TEST(OutletSendFormattedAtoms, AnotherLetterSkipsItsAtomWithoutTakingAnArgument)
{
    t_object* x = newTestObject();
    CreateDumpOutlet(x);
    host::test::OutletCapture capture(GetDumpOutlet(x));
    OutletSendFormatted(GetDumpOutlet(x), gensym("gap"), "i-i", 3, 1, 2);
    const Lines messages = capture.messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].rfind("gap 1 ", 0), 0u) << messages[0];
    EXPECT_EQ(messages[0].substr(messages[0].size() - 2), " 2") << messages[0];
    object_free(x);
}

} // namespace
} // namespace vlk::external::test
