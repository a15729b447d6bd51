#include "text/KalviDspStringHelper.h"

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale.h>
#include <locale>
#include <ostream>

namespace vlk {

namespace StringHelper {

StackArrayStream::StackArrayStream(char* array) : array(array)
{
    setp(array, array + capacity);
    pubimbue(std::locale::classic());
}

int StackArrayStream::length() const
{
    return static_cast<int>(pptr() - array);
}

} // namespace StringHelper

namespace {

// Written without a digit loop: the common small values cost a copy into the short-string buffer only.
constexpr const char* smallNumbers[] = {"0",  "1",  "2",  "3",  "4",  "5",  "6",  "7",  "8",  "9", "10",
                                        "11", "12", "13", "14", "15", "16", "17", "18", "19", "20"};

String unsignedToString(unsigned long long value, bool negative)
{
    if (!negative && value <= 20)
        return String(smallNumbers[value]);
    char buffer[24];
    char* start = buffer + sizeof(buffer);
    do {
        *--start = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    if (negative)
        *--start = '-';
    return String(start, static_cast<std::size_t>(buffer + sizeof(buffer) - start));
}

// The magnitude is taken in unsigned arithmetic, so the smallest value of each width needs no literal.
String signedToString(long long value)
{
    const bool negative = value < 0;
    const unsigned long long magnitude =
        negative ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    return unsignedToString(magnitude, negative);
}

String streamToString(double value, int numDecimals, bool fixed)
{
    char array[StringHelper::StackArrayStream::capacity];
    StringHelper::StackArrayStream buffer(array);
    std::ostream stream(&buffer);
    stream.imbue(std::locale::classic());
    if (fixed)
        stream.setf(std::ios::fixed, std::ios::floatfield);
    if (numDecimals > 0)
        stream.precision(numDecimals);
    stream << value;
    return String(array, static_cast<std::size_t>(buffer.length()));
}

// Digits written from the right; the point comes after numDecimals digits, and at least one digit stands
// before it.
String fixedPointToString(std::uint64_t scaled, int numDecimals, bool negative)
{
    char buffer[32];
    char* start = buffer + sizeof(buffer);
    int written = 0;
    while (scaled != 0 || written <= numDecimals) {
        if (written == numDecimals)
            *--start = '.';
        *--start = static_cast<char>('0' + scaled % 10);
        scaled /= 10;
        ++written;
    }
    if (negative)
        *--start = '-';
    return String(start, static_cast<std::size_t>(buffer + sizeof(buffer) - start));
}

locale_t classicLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

template <typename T> String formatWithClassicLocale(const char* format, T value)
{
    char buffer[56];
    // uselocale changes the calling thread only, so other threads keep printing in their own locale.
    const locale_t previous = uselocale(classicLocale());
    const int length = std::snprintf(buffer, sizeof(buffer), format, value);
    uselocale(previous);
    if (length < 0)
        return String();
    return String(buffer, std::min(static_cast<std::size_t>(length), sizeof(buffer) - 1));
}

} // namespace

String toString(int value)
{
    return signedToString(value);
}

String toString(unsigned int value)
{
    return unsignedToString(value, false);
}

String toString(long value)
{
    return signedToString(value);
}

String toString(unsigned long value)
{
    return unsignedToString(value, false);
}

String toString(long long value)
{
    return signedToString(value);
}

String toString(unsigned long long value)
{
    return unsignedToString(value, false);
}

String toString(float value)
{
    return doubleToString(value, 0);
}

String toString(double value)
{
    return doubleToString(value, 0);
}

String doubleToString(double value, int numDecimals)
{
    if (value > -1e20 && value < 1e20 && numDecimals >= 1 && numDecimals <= 6) {
        const double scaled = std::abs(value) * std::pow(10.0, numDecimals) + 0.5;
        // Beyond 2^63 the scaled value has no 64-bit integer: the stream writes the same fixed form.
        if (scaled >= 0x1p63)
            return streamToString(value, numDecimals, true);
        return fixedPointToString(static_cast<std::uint64_t>(scaled), numDecimals, !(value >= 0));
    }
    return streamToString(value, numDecimals, false);
}

String formatNumber(const char* format, double value)
{
    return formatWithClassicLocale(format, value);
}

String formatNumber(const char* format, float value)
{
    return formatWithClassicLocale(format, static_cast<double>(value));
}

String formatNumber(const char* format, int value)
{
    return formatWithClassicLocale(format, value);
}

bool isNumber(const String& text)
{
    if (text.empty())
        return false;
    if (text.startsWith("0x"))
        return std::all_of(text.begin() + 2, text.end(),
                           [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; });
    int digits = 0, signs = 0, dots = 0;
    bool exponent = false;
    for (const char c : text) {
        if (c == '+' || c == '-') {
            if (++signs > 1)
                return false;
        } else if (c >= '0' && c <= '9') {
            ++digits;
        } else if (c == '.') {
            if (++dots > 1)
                return false;
        } else if (c == 'e' || c == 'E') {
            if (exponent || digits == 0)
                return false;
            exponent = true;
            digits = signs = dots = 0;
        } else {
            return false;
        }
    }
    return digits > 0;
}

bool isInteger(const String& text)
{
    if (!isNumber(text))
        return false;
    const double value = std::atof(text.c_str());
    // Only values that an unsigned 64-bit integer holds are converted: anything else would be undefined.
    if (!(value >= 0 && value < 0x1p64))
        return false;
    return static_cast<double>(static_cast<std::uint64_t>(value)) == value;
}

} // namespace vlk
