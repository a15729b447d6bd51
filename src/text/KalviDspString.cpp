#include "text/KalviDspString.h"

#include "threads/KalviDspException.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace vlk {

namespace {

String foldedCopy(const String& text)
{
    String folded(text);
    folded.toLower();
    return folded;
}

int toIndex(std::string::size_type position)
{
    return position == std::string::npos ? -1 : static_cast<int>(position);
}

bool isSpace(char character)
{
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

} // namespace

// Function-local statics: built once even when two threads touch them first at the same time.
const String& String::emptyString()
{
    static const String emptyString;
    return emptyString;
}

const String& String::lineFeed()
{
    static const String lineFeedString("\n");
    return lineFeedString;
}

int String::indexOf(char character, bool ignoreCase) const
{
    if (!ignoreCase)
        return toIndex(find(character));
    return toIndex(
        foldedCopy(*this).find(static_cast<char>(std::tolower(static_cast<unsigned char>(character)))));
}

int String::indexOf(const String& text, bool ignoreCase) const
{
    if (!ignoreCase)
        return toIndex(find(text));
    return toIndex(foldedCopy(*this).find(foldedCopy(text)));
}

int String::lastIndexOf(char character, bool ignoreCase) const
{
    if (!ignoreCase)
        return toIndex(rfind(character));
    return toIndex(
        foldedCopy(*this).rfind(static_cast<char>(std::tolower(static_cast<unsigned char>(character)))));
}

int String::lastIndexOf(const String& text, bool ignoreCase) const
{
    if (!ignoreCase)
        return toIndex(rfind(text));
    return toIndex(foldedCopy(*this).rfind(foldedCopy(text)));
}

bool String::contains(char character) const
{
    return find(character) != npos;
}

bool String::contains(const String& text, bool ignoreCase) const
{
    return indexOf(text, ignoreCase) != -1;
}

bool String::containsAnyOf(const String& characterSet) const
{
    return find_first_of(characterSet) != npos;
}

bool String::startsWith(char character) const
{
    return !empty() && front() == character;
}

bool String::startsWith(const String& text, bool ignoreCase) const
{
    if (text.size() > size())
        return false;
    return equals(substring(0, static_cast<int>(text.size())).c_str(), text.c_str(), ignoreCase);
}

bool String::endsWith(char character) const
{
    return !empty() && back() == character;
}

bool String::endsWith(const String& text) const
{
    if (empty() || text.empty() || text.size() > size())
        return false;
    return compare(size() - text.size(), text.size(), text) == 0;
}

bool String::equals(const char* a, const char* b, bool ignoreCase)
{
    // A null pointer reads as the empty text rather than crashing in the C library.
    a = a != nullptr ? a : "";
    b = b != nullptr ? b : "";
    return (ignoreCase ? strcasecmp(a, b) : std::strcmp(a, b)) == 0;
}

String String::substring(int start, int end) const
{
    // A negative start is taken as 0: the safe reading of a position before the text.
    start = std::max(start, 0);
    end = std::min(end, static_cast<int>(size()));
    if (end <= start)
        return String();
    return String(substr(static_cast<size_type>(start), static_cast<size_type>(end - start)));
}

String String::substring(int start) const
{
    return substring(start, static_cast<int>(size()));
}

String String::fromFirstOccurrenceOf(const String& text, bool includeText, bool ignoreCase) const
{
    const int index = indexOf(text, ignoreCase);
    if (index < 0)
        return String();
    return substring(includeText ? index : index + static_cast<int>(text.size()));
}

String String::upToFirstOccurrenceOf(const String& text, bool includeText, bool ignoreCase) const
{
    const int index = indexOf(text, ignoreCase);
    if (index < 0)
        return *this;
    return substring(0, includeText ? index + static_cast<int>(text.size()) : index);
}

void String::removeFirst(const String& text, bool ignoreCase)
{
    const int index = indexOf(text, ignoreCase);
    if (index >= 0)
        erase(static_cast<size_type>(index), text.size());
}

void String::removeLast(const String& text, bool ignoreCase)
{
    const int index = lastIndexOf(text, ignoreCase);
    if (index >= 0)
        erase(static_cast<size_type>(index), text.size());
}

void String::replace(const String& from, const String& to)
{
    if (from.empty())
        return;
    // The search goes on behind the inserted text, so a replacement that contains from still ends.
    for (size_type position = find(from); position != npos; position = find(from, position + to.size()))
        std::string::replace(position, from.size(), to);
}

void String::removeAll(const String& text)
{
    replace(text, String());
}

void String::removeAll(char character)
{
    erase(std::remove(begin(), end(), character), end());
}

void String::dropLastCharacters(int n)
{
    const size_type count = std::min(static_cast<size_type>(std::max(n, 0)), size());
    erase(size() - count);
}

String String::withoutLast(char character) const
{
    String copy(*this);
    if (copy.endsWith(character))
        copy.pop_back();
    return copy;
}

String String::withoutTrailing(const String& text) const
{
    String copy(*this);
    while (copy.endsWith(text))
        copy.erase(copy.size() - text.size());
    return copy;
}

void String::resize(size_type length, char fill)
{
    try {
        std::string::resize(length, fill);
    } catch (const std::exception& exception) {
        throw Exception(exception, __FILE__, __LINE__);
    }
}

void String::prepend(char character)
{
    try {
        insert(begin(), character);
    } catch (const std::exception& exception) {
        throw Exception(exception, __FILE__, __LINE__);
    }
}

void String::toLower()
{
    for (char& character : *this)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
}

void String::toUpper()
{
    for (char& character : *this)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
}

void String::trimStart()
{
    erase(begin(), std::find_if_not(begin(), end(), isSpace));
}

void String::trimEnd()
{
    erase(std::find_if_not(rbegin(), rend(), isSpace).base(), end());
}

void String::trim()
{
    trimEnd();
    trimStart();
}

bool String::isQuoted() const
{
    // A lone quote character opens a quotation that never closes: it is not quoted.
    if (size() < 2)
        return false;
    return front() == back() && (front() == '"' || front() == '\'');
}

String String::quoted(char quoteCharacter) const
{
    if (isQuoted())
        return *this;
    return quoteCharacter + *this + quoteCharacter;
}

void String::unquoted()
{
    if (!isQuoted())
        return;
    pop_back();
    erase(begin());
}

int String::toInt() const
{
    return std::atoi(c_str());
}

String operator+(const String& a, const String& b)
{
    String result(a);
    result.append(b);
    return result;
}

String operator+(const String& a, const char* b)
{
    String result(a);
    result.append(b);
    return result;
}

String operator+(const char* a, const String& b)
{
    String result(a);
    result.append(b);
    return result;
}

String operator+(const String& a, char b)
{
    String result(a);
    result.push_back(b);
    return result;
}

String operator+(char a, const String& b)
{
    String result(1, a);
    result.append(b);
    return result;
}

String operator+(const String& a, std::string b)
{
    b.insert(0, a);
    return String(std::move(b));
}

String operator+(std::string a, const String& b)
{
    a.append(b);
    return String(std::move(a));
}

} // namespace vlk
