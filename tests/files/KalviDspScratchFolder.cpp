#include "files/KalviDspScratchFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>

namespace vlk::test {

ScratchFolder::ScratchFolder()
{
    char pattern[] = "/tmp/vlk-files-XXXXXX";
    if (mkdtemp(pattern) == nullptr)
        throw std::runtime_error("mkdtemp failed");
    folder = pattern;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string ScratchFolder::write(const std::string& name, const std::string& bytes) const
{
    const std::string filePath = *this / name;
    std::ofstream(filePath, std::ios::binary) << bytes;
    return filePath;
}

std::string makePatternBytes(std::size_t length)
{
    std::string bytes(length, '\0');
    for (std::size_t index = 0; index < length; ++index)
        bytes[index] = static_cast<char>((index * 7 + index / 256) & 255);
    return bytes;
}

std::string readWholeFile(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream contents;
    contents << stream.rdbuf();
    return contents.str();
}

bool pathExists(const std::string& path)
{
    struct stat info
    {
    };
    return lstat(path.c_str(), &info) == 0;
}

ScopedEnvironmentVariable::ScopedEnvironmentVariable(const char* name, std::optional<std::string> value)
    : name(name)
{
    if (const char* old = std::getenv(name))
        previous = old;
    set(name, value);
}

ScopedEnvironmentVariable::~ScopedEnvironmentVariable()
{
    set(name, previous);
}

void ScopedEnvironmentVariable::set(const char* name, const std::optional<std::string>& value)
{
    if (value)
        setenv(name, value->c_str(), 1);
    else
        unsetenv(name);
}

} // namespace vlk::test
