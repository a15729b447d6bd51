#pragma once

#include <string>

namespace vlk::test {

// text as one word of a shell command: in single quotes, each single quote in it closed, escaped and reopened.
inline std::string shellQuoted(const std::string& text)
{
    std::string result = "'";
    for (const char character : text)
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return result + "'";
}

} // namespace vlk::test
