#include "KalviDspFuzzScratchFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlk::fuzz {

namespace {

// In memory where the machine has it: the file is written, opened and removed at every execution.
std::string makeScratchFolder()
{
    char inMemory[] = "/dev/shm/velur-fuzz-XXXXXX";
    char onDisk[] = "/tmp/velur-fuzz-XXXXXX";
    const char* folder = ::mkdtemp(inMemory);
    if (folder == nullptr)
        folder = ::mkdtemp(onDisk);
    if (folder == nullptr)
        std::abort();
    static std::string made;
    made = folder;
    std::atexit([] { ::rmdir(made.c_str()); });
    return made;
}

} // namespace

std::string writeScratchFile(const std::uint8_t* bytes, std::size_t size, const char* extension)
{
    static const std::string scratchFolder = makeScratchFolder();
    const std::string path = scratchFolder + "/input" + extension;
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        std::abort();
    for (std::size_t written = 0; written < size;) {
        const ssize_t count = ::write(descriptor, bytes + written, size - written);
        if (count <= 0)
            std::abort();
        written += static_cast<std::size_t>(count);
    }
    ::close(descriptor);
    return path;
}

} // namespace vlk::fuzz
