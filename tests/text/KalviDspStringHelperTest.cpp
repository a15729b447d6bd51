#include "text/KalviDspStringHelper.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <locale>

namespace vlk {
namespace {

TEST(IntegerText, SmallValuesAndBoundsOfEveryWidth)
{
    EXPECT_EQ(toString(0), "0");
    EXPECT_EQ(toString(20), "20");
    EXPECT_EQ(toString(21), "21");
    EXPECT_EQ(toString(-1), "-1");
    EXPECT_EQ(toString(-20), "-20");
    EXPECT_EQ(toString(INT_MIN), "-2147483648");
    EXPECT_EQ(toString(INT_MAX), "2147483647");
    EXPECT_EQ(toString(UINT_MAX), "4294967295");
    EXPECT_EQ(toString(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(toString(LONG_MIN), "-9223372036854775808");
    EXPECT_EQ(toString(ULLONG_MAX), "18446744073709551615");
    EXPECT_EQ(toString(100ul), "100");
    EXPECT_EQ(toString(1000000007ll), "1000000007");
}

TEST(DoubleText, FastRoadRoundsHalfUpWithFixedDecimals)
{
    EXPECT_EQ(doubleToString(0.5, 2), "0.50");
    EXPECT_EQ(doubleToString(0.125, 2), "0.13");
    EXPECT_EQ(doubleToString(0.05, 1), "0.1");
    EXPECT_EQ(doubleToString(9.96, 1), "10.0");
    EXPECT_EQ(doubleToString(0, 3), "0.000");
    EXPECT_EQ(doubleToString(123.456, 6), "123.456000");
    EXPECT_EQ(doubleToString(-2.5, 1), "-2.5");
    EXPECT_EQ(doubleToString(12345.6789, 3), "12345.679");
}

TEST(DoubleText, NegativeValueThatRoundsToZeroKeepsItsSign)
{
    EXPECT_EQ(doubleToString(-0.001, 2), "-0.00");
    EXPECT_EQ(doubleToString(-0.0, 2), "0.00");
}

TEST(DoubleText, StreamRoadForLargeValuesAndOtherDecimalCounts)
{
    EXPECT_EQ(doubleToString(1e21, 2), "1e+21");
    EXPECT_EQ(doubleToString(1e20, 2), "1e+20");
    EXPECT_EQ(doubleToString(-1e20, 3), "-1e+20");
    EXPECT_EQ(doubleToString(2.5, 0), "2.5");
    EXPECT_EQ(doubleToString(3.14159265, 0), "3.14159");
    EXPECT_EQ(doubleToString(3.14159265, 8), "3.1415927");
    EXPECT_EQ(doubleToString(INFINITY, 2), "inf");
    EXPECT_EQ(doubleToString(-INFINITY, 2), "-inf");
}

TEST(DoubleText, ValuesBeyondA64BitScaleStayInFixedForm)
{
    EXPECT_EQ(doubleToString(1e19, 2), "10000000000000000000.00");
    EXPECT_EQ(doubleToString(-1e19, 1), "-10000000000000000000.0");
}

TEST(DoubleText, FloatsAndDoublesUseTheDefaultForm)
{
    EXPECT_EQ(toString(0.1f), "0.1");
    EXPECT_EQ(toString(1234567.0), "1.23457e+06");
    EXPECT_EQ(toString(-42.0), "-42");
}

TEST(NumberFormat, PrintsWithTheGivenFormat)
{
    EXPECT_EQ(formatNumber("%.2f", 3.14159), "3.14");
    EXPECT_EQ(formatNumber("%05.1f", 2.5f), "002.5");
    EXPECT_EQ(formatNumber("%02d", 7), "07");
    EXPECT_EQ(formatNumber("%d Hz", -3), "-3 Hz");
}

TEST(NumberFormat, TextBeyondTheBufferIsCutAt55Characters)
{
    EXPECT_EQ(formatNumber("%070d", 1), String(55, '0'));
}

// Sets a locale whose decimal separator is the comma for the whole process, and puts C back afterwards.
class NumberTextUnderUserLocale : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr)
            << "the locale de_DE.UTF-8 is missing: the project's setup generates it";
        std::locale::global(std::locale("de_DE.UTF-8"));
    }

    void TearDown() override
    {
        std::locale::global(std::locale::classic());
        std::setlocale(LC_ALL, "C");
    }
};

TEST_F(NumberTextUnderUserLocale, DecimalPointStaysAPoint)
{
    char userText[16];
    std::snprintf(userText, sizeof(userText), "%.1f", 1.5);
    ASSERT_STREQ(userText, "1,5") << "the locale did not take effect, so this test proves nothing";

    EXPECT_EQ(doubleToString(1.5, 2), "1.50");
    EXPECT_EQ(doubleToString(1234.5, 0), "1234.5");
    EXPECT_EQ(doubleToString(1e21, 2), "1e+21");
    EXPECT_EQ(doubleToString(1e19, 1), "10000000000000000000.0");
    EXPECT_EQ(toString(0.25f), "0.25");
    EXPECT_EQ(toString(1234567.0), "1.23457e+06");
    EXPECT_EQ(formatNumber("%.2f", 3.5), "3.50");
    EXPECT_EQ(formatNumber("%.1f", 0.5f), "0.5");
}

TEST(NumberCheck, WalkOfSignsDotsAndExponent)
{
    EXPECT_TRUE(isNumber("0"));
    EXPECT_TRUE(isNumber("-1.5"));
    EXPECT_TRUE(isNumber("+.5"));
    EXPECT_TRUE(isNumber("5."));
    EXPECT_TRUE(isNumber("1e5"));
    EXPECT_TRUE(isNumber("1E-5"));
    EXPECT_TRUE(isNumber("1e2.5"));
    EXPECT_TRUE(isNumber("-1.5e+3"));
    EXPECT_TRUE(isNumber("1-2"));
    EXPECT_TRUE(isNumber("1-2e3+4"));

    EXPECT_FALSE(isNumber(""));
    EXPECT_FALSE(isNumber("+-1"));
    EXPECT_FALSE(isNumber("e5"));
    EXPECT_FALSE(isNumber("-e5"));
    EXPECT_FALSE(isNumber("."));
    EXPECT_FALSE(isNumber("-"));
    EXPECT_FALSE(isNumber("1e"));
    EXPECT_FALSE(isNumber("1e5e5"));
    EXPECT_FALSE(isNumber("1..2"));
    EXPECT_FALSE(isNumber("1e--2"));
    EXPECT_FALSE(isNumber(" 1"));
    EXPECT_FALSE(isNumber("1a"));
}

TEST(NumberCheck, HexadecimalTextNeedsOnlyHexDigitsBehindThePrefix)
{
    EXPECT_TRUE(isNumber("0x"));
    EXPECT_TRUE(isNumber("0x1fA"));
    EXPECT_FALSE(isNumber("0xG"));
    EXPECT_FALSE(isNumber("0x1 "));
    EXPECT_FALSE(isNumber("0X1"));
}

TEST(IntegerCheck, WholeNonNegativeValuesOnly)
{
    EXPECT_TRUE(isInteger("3"));
    EXPECT_TRUE(isInteger("3.0"));
    EXPECT_TRUE(isInteger("3e2"));
    EXPECT_TRUE(isInteger("0"));
    EXPECT_TRUE(isInteger("0x10"));
    EXPECT_FALSE(isInteger("-3"));
    EXPECT_FALSE(isInteger("3.5"));
    EXPECT_FALSE(isInteger("1e-2"));
    EXPECT_FALSE(isInteger("1e30"));
    EXPECT_FALSE(isInteger("three"));
    EXPECT_FALSE(isInteger(""));
}

TEST(StackArrayStream, KeepsWhatFitsAndDropsTheRest)
{
    char array[StringHelper::StackArrayStream::capacity];
    StringHelper::StackArrayStream buffer(array);
    const String text(60, 'x');
    buffer.sputn(text.data(), static_cast<std::streamsize>(text.size()));
    EXPECT_EQ(buffer.length(), StringHelper::StackArrayStream::capacity);
    EXPECT_EQ(buffer.getloc(), std::locale::classic());
}

} // namespace
} // namespace vlk
