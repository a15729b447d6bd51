#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/wait.h>

namespace vlk::test {

// text as one word of a shell command: in single quotes, each single quote in it closed, escaped and
// reopened.
inline std::string shellQuoted(const std::string& text)
{
    std::string result = "'";
    for (const char character : text)
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return result + "'";
}

// Runs command, whose standard error it sends to errorPath, with no input. Throws std::runtime_error with
// the tool's description, its status and what it wrote there when it fails.
inline void runShellCommand(const std::string& command, const std::string& errorPath, const std::string& tool)
{
    const int status = std::system((command + " </dev/null 2>" + shellQuoted(errorPath)).c_str());
    if (status != 0) {
        std::ifstream errors(errorPath);
        std::ostringstream text;
        text << errors.rdbuf();
        throw std::runtime_error(tool + " failed with status " +
                                 std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : status) + ": " +
                                 command + ": " + text.str());
    }
}

} // namespace vlk::test
