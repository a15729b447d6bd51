#include "text/KalviDspStringList.h"

namespace vlk {

Vector<String> split(const String& text, const String& delimiter, bool keepEmpty)
{
    Vector<String> tokens;
    if (text.empty())
        return tokens;
    // An empty delimiter cuts nothing: the whole text is the one token.
    if (delimiter.empty()) {
        tokens.push_back(text);
        return tokens;
    }
    std::string::size_type start = 0;
    while (true) {
        const std::string::size_type end = text.find(delimiter, start);
        const String token(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (keepEmpty || !token.empty())
            tokens.push_back(token);
        if (end == std::string::npos)
            return tokens;
        start = end + delimiter.size();
    }
}

Vector<String> split(const String& text, char delimiter, bool keepEmpty)
{
    return split(text, String(1, delimiter), keepEmpty);
}

String join(const Vector<String>& strings, const String& separator)
{
    String text;
    for (std::size_t i = 0; i < strings.size(); ++i) {
        if (i != 0)
            text.append(separator);
        text.append(strings[i]);
    }
    return text;
}

bool contains(const Vector<String>& strings, const String& text, bool ignoreCase)
{
    return indexOf(strings, text, ignoreCase) != -1;
}

int indexOf(const Vector<String>& strings, const String& text, bool ignoreCase)
{
    for (std::size_t i = 0; i < strings.size(); ++i)
        if (String::equals(strings[i].c_str(), text.c_str(), ignoreCase))
            return static_cast<int>(i);
    return -1;
}

} // namespace vlk
