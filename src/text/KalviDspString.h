#pragma once

#include <string>
#include <type_traits>

namespace vlk {

// The library's text: the standard string with text operations and no field of its own. Text is bytes.
// Searches answer -1 when nothing is found; with ignoreCase both sides are folded with tolower on copies,
// which allocates: not for the audio thread.
class String : public std::string
{
public:
    using std::string::string;
    String() = default;
    String(const std::string& text) : std::string(text) {}
    String(std::string&& text) noexcept : std::string(std::move(text)) {}

    // Process-wide constants made on first use, returned by reference instead of building a String. Not named
    // empty(): that would hide the standard query.
    static const String& emptyString();
    static const String& lineFeed();

    int indexOf(char character, bool ignoreCase = false) const;
    int indexOf(const String& text, bool ignoreCase = false) const;
    int lastIndexOf(char character, bool ignoreCase = false) const;
    int lastIndexOf(const String& text, bool ignoreCase = false) const;
    bool contains(char character) const;
    bool contains(const String& text, bool ignoreCase = false) const;
    // True when one character of this String is in characterSet.
    bool containsAnyOf(const String& characterSet) const;
    bool startsWith(char character) const;
    bool startsWith(const String& text, bool ignoreCase = false) const;
    // False on an empty String, on either side for the String form.
    bool endsWith(char character) const;
    bool endsWith(const String& text) const;
    // strcmp, or strcasecmp with ignoreCase.
    static bool equals(const char* a, const char* b, bool ignoreCase = false);

    // end is clamped to the length; empty when end is not above start or start is beyond the end.
    String substring(int start, int end) const;
    String substring(int start) const;
    // Text from (or behind) the first occurrence; empty when not found.
    String fromFirstOccurrenceOf(const String& text, bool includeText, bool ignoreCase = false) const;
    // Text up to (or through) the first occurrence; the whole String when not found.
    String upToFirstOccurrenceOf(const String& text, bool includeText, bool ignoreCase = false) const;

    // In place; cut one occurrence out, no effect when not found.
    void removeFirst(const String& text, bool ignoreCase = false);
    void removeLast(const String& text, bool ignoreCase = false);
    // All occurrences, left to right, going on behind the inserted text; no effect for an empty from.
    void replace(const String& from, const String& to);
    void removeAll(const String& text);
    void removeAll(char character);
    // In place; n is clamped to the length.
    void dropLastCharacters(int n);
    // A copy without the last character when it is that one.
    String withoutLast(char character) const;
    // A copy with every trailing occurrence of text removed.
    String withoutTrailing(const String& text) const;

    // The standard resize and a character in front; failures become vlk::Exception.
    void resize(size_type length, char fill = '\0');
    void prepend(char character);

    void toLower();
    void toUpper();
    void trimStart();
    void trimEnd();
    void trim();

    // True when the first and last characters are both " or both '; an empty String is not.
    bool isQuoted() const;
    // A copy in quotes, unless it is quoted already with either kind of quote.
    String quoted(char quoteCharacter = '"') const;
    // In place: removes one pair of enclosing quotes of either kind.
    void unquoted();

    int toInt() const;
};

String operator+(const String& a, const String& b);
String operator+(const String& a, const char* b);
String operator+(const char* a, const String& b);
String operator+(const String& a, char b);
String operator+(char a, const String& b);
// Mixed with a standard string: taken by value so that these win over the standard overloads for rvalues too,
// instead of being ambiguous with them.
String operator+(const String& a, std::string b);
String operator+(std::string a, const String& b);
// A number added to a String would become one character: toString says what is meant.
template <typename Number>
requires std::is_arithmetic_v<Number> &&(!std::is_same_v<Number, char>)String operator+(const String& a,
                                                                                        Number b) = delete;
template <typename Number>
requires std::is_arithmetic_v<Number> &&(!std::is_same_v<Number, char>)String
operator+(Number a, const String& b) = delete;

} // namespace vlk

template <> struct std::hash<vlk::String> : std::hash<std::string>
{
};
