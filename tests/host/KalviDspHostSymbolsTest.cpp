#include "KalviDspHostTestSupport.h"

#include <cstring>
#include <gtest/gtest.h>
#include <set>
#include <thread>

namespace vlk::host::test {
namespace {

TEST(HostSymbols, EqualTextGivesTheSameSymbolWithItsOwnCopy)
{
    char text[] = "velur-symbol";
    t_symbol* first = gensym(text);
    text[0] = 'x';
    EXPECT_EQ(gensym("velur-symbol"), first);
    EXPECT_STREQ(first->s_name, "velur-symbol");
    EXPECT_NE(gensym("xelur-symbol"), first);
    EXPECT_EQ(gensym("a-fresh-symbol-never-bound")->s_thing, nullptr);
    EXPECT_EQ(gensym(""), gensym(""));
}

TEST(HostSymbols, ThreadsInterningTheSameNamesAgree)
{
    constexpr int numThreads = 4;
    constexpr int numNames = 500;
    std::vector<std::vector<t_symbol*>> seen(numThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < numThreads; ++t)
        threads.emplace_back([t, &seen] {
            for (int i = 0; i < numNames; ++i)
                seen[t].push_back(gensym(("threaded-" + std::to_string((i * (t + 1)) % numNames)).c_str()));
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int t = 0; t < numThreads; ++t)
        for (int i = 0; i < numNames; ++i)
            EXPECT_EQ(seen[t][i], gensym(("threaded-" + std::to_string((i * (t + 1)) % numNames)).c_str()));
}

TEST(HostSymbols, UniqueSymbolsAreNewAndShapedLikeU123456789)
{
    gensym("u100000000");
    std::set<t_symbol*> made;
    for (int i = 0; i < 20; ++i) {
        t_symbol* unique = symbol_unique();
        EXPECT_EQ(unique->s_name[0], 'u');
        EXPECT_EQ(std::strlen(unique->s_name), 10u);
        EXPECT_NE(unique, gensym("u100000000"));
        EXPECT_TRUE(made.insert(unique).second);
    }
}

TEST(HostSymbols, SymbolArraysSortAlphabeticallyByByte)
{
    std::vector<t_symbol*> names = {gensym("numchannels"), gensym("automute"), gensym("Zeta"),
                                    gensym("buffersize"),  gensym("loop"),     gensym("bypass")};
    ASSERT_EQ(symbolarray_sort(static_cast<long>(names.size()), names.data()), MAX_ERR_NONE);
    std::vector<std::string> texts;
    for (t_symbol* name : names)
        texts.push_back(name->s_name);
    EXPECT_EQ(texts,
              (std::vector<std::string>{"Zeta", "automute", "buffersize", "bypass", "loop", "numchannels"}));
}

TEST(HostSymbols, StripQuotesRemovesOnePair)
{
    EXPECT_EQ(symbol_stripquotes(gensym("\"a b\"")), gensym("a b"));
    EXPECT_EQ(symbol_stripquotes(gensym("plain")), gensym("plain"));
    EXPECT_EQ(symbol_stripquotes(gensym("\"")), gensym("\""));
}

TEST(HostCommonSymbols, FieldsHoldTheirNamesAndNothingIsEmpty)
{
    common_symbols_init();
    EXPECT_EQ(_sym_dumpout, gensym("dumpout"));
    EXPECT_EQ(_sym_dictionary, gensym("dictionary"));
    EXPECT_EQ(_sym_attr_modified, gensym("attr_modified"));
    EXPECT_EQ(_sym__preset, gensym("_preset"));
    EXPECT_EQ(_sym_nothing, gensym(""));
    EXPECT_EQ(_sym_write, gensym("write"));
    EXPECT_EQ(common_symbols_gettable(), _common_symbols);
}

} // namespace
} // namespace vlk::host::test
