#include "files/KalviDspFileHandle.h"

#include "threads/KalviDspException.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlk {

namespace {

// O_CLOEXEC throughout: the library's descriptors must not leak into programs that the host starts.
int openOrThrow(const File& file, int flags)
{
    const int descriptor = ::open(file.getFullPathName().c_str(), flags | O_CLOEXEC, 0644);
    if (descriptor < 0)
        throw Exception("Couldnt open file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
    return descriptor;
}

} // namespace

// Only regular files are read. O_NONBLOCK keeps the open of a FIFO from waiting for a writer that may never
// come; it changes nothing for a regular file's reads.
int openForReading(const File& file)
{
    return translateExceptions([&] {
        const int descriptor = openOrThrow(file, O_RDONLY | O_NONBLOCK);
        struct stat info
        {
        };
        if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
            ::close(descriptor);
            throw Exception("Couldnt open file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
        }
        return descriptor;
    });
}

int openForWriting(const File& file)
{
    return translateExceptions([&] {
        if (!file.existsAsFile())
            return openOrThrow(file, O_RDWR | O_CREAT);
        const int descriptor = openOrThrow(file, O_RDWR);
        ::lseek(descriptor, 0, SEEK_END);
        return descriptor;
    });
}

std::int64_t writeFully(int descriptor, const void* buffer, std::int64_t length) noexcept
{
    const auto* bytes = static_cast<const char*>(buffer);
    std::int64_t written = 0;
    while (written < length) {
        const ssize_t result =
            ::write(descriptor, bytes + written, static_cast<std::size_t>(length - written));
        if (result < 0 && errno == EINTR)
            continue;
        if (result <= 0)
            break;
        written += result;
    }
    return written;
}

} // namespace vlk
