#include "external/KalviDspCommonSymbols.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

TEST(CommonSymbolsTable, HoldsTheWholeVocabularyInOrder)
{
    InitCommonSymbols();
    ASSERT_NE(commonSymbols, nullptr);
    EXPECT_EQ(sizeof(CommonSymbols), 405 * sizeof(t_symbol*));
    // The first and last entries, and those whose texts are no identifiers.
    EXPECT_EQ(commonSymbols->active, gensym("active"));
    EXPECT_EQ(commonSymbols->sourceairabsorption, gensym("sourceairabsorption"));
    EXPECT_EQ(commonSymbols->comma, gensym(","));
    EXPECT_EQ(commonSymbols->empty, gensym(""));
    EXPECT_EQ(commonSymbols->buffer_tilde, gensym("buffer~"));
    EXPECT_EQ(commonSymbols->dist_times_equal, gensym("dist*="));
    EXPECT_EQ(commonSymbols->long_, gensym("long"));
    const auto* fields = reinterpret_cast<t_symbol* const*>(commonSymbols);
    EXPECT_EQ(fields[0], gensym("active"));
    EXPECT_EQ(fields[46], gensym(","));
    EXPECT_EQ(fields[404], gensym("sourceairabsorption"));
}

TEST(CommonSymbolsTable, EveryFieldIsFilledAndASecondRunChangesNothing)
{
    InitCommonSymbols();
    const CommonSymbols first = *commonSymbols;
    InitCommonSymbols();
    const auto* before = reinterpret_cast<t_symbol* const*>(&first);
    const auto* after = reinterpret_cast<t_symbol* const*>(commonSymbols);
    for (std::size_t i = 0; i < 405; ++i) {
        ASSERT_NE(after[i], nullptr) << i;
        EXPECT_EQ(after[i], before[i]) << i;
    }
    EXPECT_EQ(maxCommonSymbols, common_symbols_gettable());
    EXPECT_EQ(maxCommonSymbols->s_dumpout, gensym("dumpout"));
}

} // namespace
} // namespace vlk::external::test
