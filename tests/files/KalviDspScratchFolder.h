#pragma once

#include <optional>
#include <string>

namespace vlk::test {

// A folder made with mkdtemp under /tmp for one test, removed with everything in it at the end.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return folder; }
    // The path of name inside the folder.
    std::string operator/(const std::string& name) const { return folder + "/" + name; }
    // Writes bytes to name inside the folder and gives its path.
    std::string write(const std::string& name, const std::string& bytes) const;

private:
    std::string folder;
};

// Every byte value once, then a run long enough to take several reads of any buffer: content that shows
// a lost, doubled or reordered block.
std::string makePatternBytes(std::size_t length);
std::string readWholeFile(const std::string& path);
bool pathExists(const std::string& path);

// Sets (or with nullopt unsets) an environment variable for one scope; the old state comes back after.
class ScopedEnvironmentVariable
{
public:
    ScopedEnvironmentVariable(const char* name, std::optional<std::string> value);
    ~ScopedEnvironmentVariable();
    ScopedEnvironmentVariable(const ScopedEnvironmentVariable&) = delete;
    ScopedEnvironmentVariable& operator=(const ScopedEnvironmentVariable&) = delete;

private:
    static void set(const char* name, const std::optional<std::string>& value);

    const char* name;
    std::optional<std::string> previous;
};

} // namespace vlk::test
