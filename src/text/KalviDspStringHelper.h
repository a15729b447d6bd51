#pragma once

#include "text/KalviDspString.h"

#include <cstdint>
#include <streambuf>

namespace vlk {

namespace StringHelper {

// A stream buffer over 48 bytes of the caller's array, imbued with the classic locale: number printing
// that neither allocates nor depends on the user's locale. What does not fit is lost.
class StackArrayStream : public std::streambuf
{
public:
    static constexpr int capacity = 48;
    explicit StackArrayStream(char* array);
    // The characters written so far.
    int length() const;

private:
    char* array;
};

} // namespace StringHelper

// Plain decimal text; 0 to 20 come from fixed literals, without a digit loop.
String toString(int value);
String toString(unsigned int value);
String toString(long value);
String toString(unsigned long value);
String toString(long long value);
String toString(unsigned long long value);
// doubleToString with 0 decimals.
String toString(float value);
String toString(double value);

// A fast fixed-point road for |value| < 1e20 and 1 to 6 decimals, otherwise the classic stream form.
String doubleToString(double value, int numDecimals);

// sprintf with the classic locale into 56 bytes; the format must give at most 55 characters.
String formatNumber(const char* format, double value);
String formatNumber(const char* format, float value);
String formatNumber(const char* format, int value);

// The walk of the character rules is kept as it stands: "1-2" passes, "+-1" does not.
bool isNumber(const String& text);
// A number whose value survives a conversion to an unsigned 64-bit integer: negatives are no integers.
bool isInteger(const String& text);

} // namespace vlk
