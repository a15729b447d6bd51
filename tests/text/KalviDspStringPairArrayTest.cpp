#include "text/KalviDspStringPairArray.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

TEST(StringPairArraySet, AppendsNewKeysInOrder)
{
    StringPairArray pairs;
    pairs.set("b", "1");
    pairs.set("a", "2");
    EXPECT_EQ(pairs.keys, (Vector<String>{"b", "a"}));
    EXPECT_EQ(pairs.values, (Vector<String>{"1", "2"}));
}

TEST(StringPairArraySet, ReplacesTheValueOfAKnownKeyInPlace)
{
    StringPairArray pairs;
    pairs.set("a", "1");
    pairs.set("b", "2");
    pairs.set("A", "3");
    EXPECT_EQ(pairs.keys, (Vector<String>{"a", "b"}));
    EXPECT_EQ(pairs.values, (Vector<String>{"3", "2"}));
}

TEST(StringPairArraySet, CaseMattersWhenAsked)
{
    StringPairArray pairs(false);
    pairs.set("a", "1");
    pairs.set("A", "2");
    EXPECT_EQ(pairs.keys, (Vector<String>{"a", "A"}));
    EXPECT_EQ(pairs.values, (Vector<String>{"1", "2"}));
}

TEST(StringPairArraySet, ValuesKeepTheirBytes)
{
    StringPairArray pairs;
    const String padded("ab\0\0", 4);
    pairs.set("bwav originator", padded);
    pairs.set("empty", "");
    EXPECT_EQ(pairs.values[0].size(), 4u);
    EXPECT_EQ(pairs.values[0], padded);
    EXPECT_EQ(pairs.values[1], "");
}

} // namespace
} // namespace vlk
