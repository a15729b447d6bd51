#include "text/KalviDspString.h"

#include "threads/KalviDspException.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

TEST(StringConstants, AreTheSameObjectOnEveryCall)
{
    EXPECT_EQ(&String::emptyString(), &String::emptyString());
    EXPECT_TRUE(String::emptyString().empty());
    EXPECT_EQ(&String::lineFeed(), &String::lineFeed());
    EXPECT_EQ(String::lineFeed(), "\n");
}

TEST(StringSearch, AnswersMinusOneWhenAbsent)
{
    const String text("abcabc");
    EXPECT_EQ(text.indexOf('c'), 2);
    EXPECT_EQ(text.lastIndexOf('c'), 5);
    EXPECT_EQ(text.indexOf("bc"), 1);
    EXPECT_EQ(text.lastIndexOf("bc"), 4);
    EXPECT_EQ(text.indexOf('z'), -1);
    EXPECT_EQ(text.indexOf("abd"), -1);
    EXPECT_EQ(text.lastIndexOf("zz"), -1);
    EXPECT_EQ(String().indexOf('a'), -1);
}

TEST(StringSearch, IgnoreCaseFoldsBothSides)
{
    const String text("Hello WORLD");
    EXPECT_EQ(text.indexOf("world"), -1);
    EXPECT_EQ(text.indexOf("world", true), 6);
    EXPECT_EQ(text.indexOf(String("HELLO"), true), 0);
    EXPECT_EQ(text.indexOf('w', true), 6);
    EXPECT_EQ(text.lastIndexOf('L', true), 9);
    EXPECT_EQ(text.lastIndexOf("O", true), 7);
    EXPECT_TRUE(text.contains("o w", true));
    EXPECT_FALSE(text.contains("o w"));
}

TEST(StringSearch, ContainsAnyOfLooksAtSingleCharacters)
{
    EXPECT_TRUE(String("a/b").containsAnyOf("\\/:"));
    EXPECT_FALSE(String("ab").containsAnyOf("\\/:"));
    EXPECT_FALSE(String("ab").containsAnyOf(""));
    EXPECT_TRUE(String("a.b").contains('.'));
}

TEST(StringEnds, StartAndEndWithEmptySides)
{
    const String text("file.wav");
    EXPECT_TRUE(text.startsWith('f'));
    EXPECT_TRUE(text.startsWith("FILE", true));
    EXPECT_FALSE(text.startsWith("FILE"));
    EXPECT_FALSE(String("fi").startsWith("file"));
    EXPECT_TRUE(text.endsWith(".wav"));
    EXPECT_TRUE(text.endsWith('v'));
    EXPECT_FALSE(text.endsWith(".aif"));
    EXPECT_FALSE(String("av").endsWith(".wav"));
    EXPECT_FALSE(text.endsWith(""));
    EXPECT_FALSE(String().endsWith(""));
    EXPECT_FALSE(String().endsWith('a'));
    EXPECT_FALSE(String().startsWith('a'));
}

TEST(StringEquals, ComparesWithOrWithoutCase)
{
    EXPECT_TRUE(String::equals("abc", "abc"));
    EXPECT_FALSE(String::equals("abc", "ABC"));
    EXPECT_TRUE(String::equals("abc", "ABC", true));
    EXPECT_FALSE(String::equals("abc", "abcd", true));
    EXPECT_TRUE(String::equals(nullptr, ""));
}

TEST(StringSubstring, ClampsItsBounds)
{
    const String text("abcdef");
    EXPECT_EQ(text.substring(1, 3), "bc");
    EXPECT_EQ(text.substring(2, 100), "cdef");
    EXPECT_EQ(text.substring(3, 3), "");
    EXPECT_EQ(text.substring(4, 2), "");
    EXPECT_EQ(text.substring(6, 9), "");
    EXPECT_EQ(text.substring(7), "");
    EXPECT_EQ(text.substring(-2, 2), "ab");
    EXPECT_EQ(text.substring(4), "ef");
    EXPECT_EQ(text.substring(0), text);
}

TEST(StringOccurrence, FromAndUpToTheFirstOne)
{
    const String text("key=value=x");
    EXPECT_EQ(text.fromFirstOccurrenceOf("=", false), "value=x");
    EXPECT_EQ(text.fromFirstOccurrenceOf("=", true), "=value=x");
    EXPECT_EQ(text.fromFirstOccurrenceOf("#", true), "");
    EXPECT_EQ(text.upToFirstOccurrenceOf("=", false), "key");
    EXPECT_EQ(text.upToFirstOccurrenceOf("=", true), "key=");
    EXPECT_EQ(text.upToFirstOccurrenceOf("#", false), text);
    EXPECT_EQ(text.fromFirstOccurrenceOf("VALUE", false, true), "=x");
}

TEST(StringOccurrence, RemoveFirstAndLastCutOneOccurrence)
{
    String first("a-b-c");
    first.removeFirst("-");
    EXPECT_EQ(first, "ab-c");
    String last("a-b-c");
    last.removeLast("-");
    EXPECT_EQ(last, "a-bc");
    String caseless("xABxab");
    caseless.removeLast("AB", true);
    EXPECT_EQ(caseless, "xABx");
    String absent("abc");
    absent.removeFirst("z");
    absent.removeLast("z");
    EXPECT_EQ(absent, "abc");
}

TEST(StringReplace, ReplacesEveryOccurrenceLeftToRight)
{
    String text("aaa");
    text.replace("aa", "b");
    EXPECT_EQ(text, "ba");
    String path("a//b//c");
    path.replace("//", "/");
    EXPECT_EQ(path, "a/b/c");
}

TEST(StringReplace, GoesOnBehindTheInsertedText)
{
    String text("aXa");
    text.replace("a", "aa");
    EXPECT_EQ(text, "aaXaa");
    String nested("ab");
    nested.replace("b", "bb");
    EXPECT_EQ(nested, "abb");
}

TEST(StringReplace, EmptyFromChangesNothing)
{
    String text("abc");
    text.replace("", "x");
    EXPECT_EQ(text, "abc");
}

TEST(StringReplace, RemoveAllTakesStringsAndCharacters)
{
    String text("a b  c");
    text.removeAll(' ');
    EXPECT_EQ(text, "abc");
    String words("one, two, three");
    words.removeAll(", ");
    EXPECT_EQ(words, "onetwothree");
}

TEST(StringTail, DropLastCharactersClampsToTheLength)
{
    String text("abcdef");
    text.dropLastCharacters(2);
    EXPECT_EQ(text, "abcd");
    text.dropLastCharacters(10);
    EXPECT_EQ(text, "");
    String untouched("ab");
    untouched.dropLastCharacters(-1);
    EXPECT_EQ(untouched, "ab");
}

TEST(StringTail, WithoutLastAndWithoutTrailing)
{
    EXPECT_EQ(String("dir/").withoutLast('/'), "dir");
    EXPECT_EQ(String("dir").withoutLast('/'), "dir");
    EXPECT_EQ(String("").withoutLast('/'), "");
    EXPECT_EQ(String("a///").withoutTrailing("/"), "a");
    EXPECT_EQ(String("x.0.0").withoutTrailing(".0"), "x");
    EXPECT_EQ(String("abab").withoutTrailing("ab"), "");
    EXPECT_EQ(String("abc").withoutTrailing(""), "abc");
}

TEST(StringStorage, ResizeFillsAndPrependPutsInFront)
{
    String text("ab");
    text.resize(4, 'x');
    EXPECT_EQ(text, "abxx");
    text.resize(1);
    EXPECT_EQ(text, "a");
    text.prepend('>');
    EXPECT_EQ(text, ">a");
}

TEST(StringStorage, ResizeBeyondTheMaximumBecomesAVlkException)
{
    String text("ab");
    testing::internal::CaptureStderr();
    EXPECT_THROW(text.resize(String::npos), Exception);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(text, "ab");
}

TEST(StringCase, FoldsByteByByte)
{
    String text("MiXeD 1\xE9");
    text.toLower();
    EXPECT_EQ(text, "mixed 1\xE9");
    text.toUpper();
    EXPECT_EQ(text, "MIXED 1\xE9");
}

TEST(StringTrim, RemovesWhitespaceAtEitherEnd)
{
    String both(" \t a b \r\n");
    both.trim();
    EXPECT_EQ(both, "a b");
    String start("  a ");
    start.trimStart();
    EXPECT_EQ(start, "a ");
    String end("  a ");
    end.trimEnd();
    EXPECT_EQ(end, "  a");
    String blank(" \n ");
    blank.trim();
    EXPECT_EQ(blank, "");
}

TEST(StringQuotes, IsQuotedNeedsTheSameQuoteAtBothEnds)
{
    EXPECT_TRUE(String("\"a\"").isQuoted());
    EXPECT_TRUE(String("'a'").isQuoted());
    EXPECT_TRUE(String("\"\"").isQuoted());
    EXPECT_FALSE(String("\"a'").isQuoted());
    EXPECT_FALSE(String("a\"").isQuoted());
    EXPECT_FALSE(String("\"").isQuoted());
    EXPECT_FALSE(String().isQuoted());
}

TEST(StringQuotes, QuotedLeavesAQuotedTextAlone)
{
    EXPECT_EQ(String("a b").quoted(), "\"a b\"");
    EXPECT_EQ(String("a").quoted('\''), "'a'");
    EXPECT_EQ(String("'a'").quoted(), "'a'");
    EXPECT_EQ(String("\"a\"").quoted('\''), "\"a\"");
    EXPECT_EQ(String().quoted(), "\"\"");
}

TEST(StringQuotes, UnquotedRemovesOnePair)
{
    String twice("\"'a'\"");
    twice.unquoted();
    EXPECT_EQ(twice, "'a'");
    twice.unquoted();
    EXPECT_EQ(twice, "a");
    String plain("a\"");
    plain.unquoted();
    EXPECT_EQ(plain, "a\"");
}

TEST(StringConversion, ToIntReadsTheLeadingNumber)
{
    EXPECT_EQ(String("42").toInt(), 42);
    EXPECT_EQ(String(" -7x").toInt(), -7);
    EXPECT_EQ(String("x").toInt(), 0);
}

TEST(StringConcatenation, KeepsTheStringType)
{
    const String name("a");
    const String joined = "<" + name + '>' + String("b") + "c";
    EXPECT_EQ(joined, "<a>bc");
    EXPECT_EQ('[' + name, "[a");
}

TEST(StringConcatenation, MixesWithStandardStringsOfEitherValueCategory)
{
    const String name("a");
    const std::string standard("s");
    const String left = name + std::string("x") + standard;
    const String right = std::string("x") + name + String("y");
    EXPECT_EQ(left, "axs");
    EXPECT_EQ(right, "xay");
    EXPECT_EQ(standard + name, "sa");
}

} // namespace
} // namespace vlk
