#include "text/KalviDspStringList.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

TEST(StringListSplit, DropsEmptyTokensUnlessAsked)
{
    EXPECT_EQ(split("a,,b,", ','), (Vector<String>{"a", "b"}));
    EXPECT_EQ(split("a,,b,", ',', true), (Vector<String>{"a", "", "b", ""}));
    EXPECT_EQ(split(",a", ',', true), (Vector<String>{"", "a"}));
    EXPECT_EQ(split(",,", ','), Vector<String>());
}

TEST(StringListSplit, EmptyTextGivesNoTokenEvenWithKeepEmpty)
{
    EXPECT_TRUE(split("", ',').empty());
    EXPECT_TRUE(split("", ',', true).empty());
    EXPECT_TRUE(split("", String(", "), true).empty());
}

TEST(StringListSplit, DelimiterMayBeSeveralCharacters)
{
    EXPECT_EQ(split("one, two, three", String(", ")), (Vector<String>{"one", "two", "three"}));
    EXPECT_EQ(split("a::::b", String("::"), true), (Vector<String>{"a", "", "b"}));
    EXPECT_EQ(split("abc", String("")), (Vector<String>{"abc"}));
    EXPECT_EQ(split("abc", String("x")), (Vector<String>{"abc"}));
}

TEST(StringListJoin, PutsNoSeparatorBehindTheLast)
{
    EXPECT_EQ(join({"a", "b", "c"}, ", "), "a, b, c");
    EXPECT_EQ(join({"a"}, ", "), "a");
    EXPECT_EQ(join({}, ", "), "");
    EXPECT_EQ(join({"", ""}, "/"), "/");
}

TEST(StringListJoin, UndoesSplitWithKeepEmpty)
{
    const String text("/a//b/");
    EXPECT_EQ(join(split(text, '/', true), "/"), text);
}

TEST(StringListSearch, FindsWholeEntriesOnly)
{
    const Vector<String> names{"alpha", "Beta", "gamma"};
    EXPECT_EQ(indexOf(names, "Beta"), 1);
    EXPECT_EQ(indexOf(names, "beta"), -1);
    EXPECT_EQ(indexOf(names, "beta", true), 1);
    EXPECT_EQ(indexOf(names, "alp"), -1);
    EXPECT_TRUE(contains(names, "GAMMA", true));
    EXPECT_FALSE(contains(names, "GAMMA"));
    EXPECT_FALSE(contains(Vector<String>(), ""));
}

} // namespace
} // namespace vlk
