#include "files/KalviDspFileReader.h"

#include "files/KalviDspFileHandle.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlk {

FileReader::FileReader(const File& file) : file(file)
{
    if (!file.existsAsFile())
        throw Exception("File " + file.getFullPathName().quoted() + " does not exist", __FILE__, __LINE__);
    fileHandle = openForReading(file);
    if (fileHandle == 0)
        throw Exception("Could not open file " + file.getFullPathName().quoted() + " for reading", __FILE__,
                        __LINE__);
    struct stat info
    {
    };
    if (fstat(fileHandle, &info) == 0)
        totalLength = info.st_size;
}

// Each reader closes its own descriptor: handing the same one to two destructors would let the second
// close a descriptor that another open has been given in between. The duplicate is kept above 0, which
// stands for none.
FileReader::FileReader(const FileReader& other)
    : InputStream(other), file(other.file), totalLength(other.totalLength),
      currentPosition(other.currentPosition), needToSeek(true)
{
    if (other.fileHandle != 0)
        fileHandle = std::max(::fcntl(other.fileHandle, F_DUPFD_CLOEXEC, 1), 0);
}

FileReader::~FileReader()
{
    if (fileHandle != 0)
        ::close(fileHandle);
}

std::int64_t FileReader::read(void* destination, std::int64_t numBytes)
{
    if (numBytes < 1 || fileHandle == 0)
        return 0;
    if (needToSeek) {
        if (::lseek(fileHandle, currentPosition, SEEK_SET) != currentPosition)
            return 0;
        needToSeek = false;
    }
    // A failing read counts as nothing read, so that the position stays where the bytes are.
    const ssize_t numRead =
        std::max<ssize_t>(::read(fileHandle, destination, static_cast<std::size_t>(numBytes)), 0);
    currentPosition += numRead;
    return numRead;
}

bool FileReader::setPosition(std::int64_t position) noexcept
{
    const std::int64_t clamped = std::clamp<std::int64_t>(position, 0, totalLength);
    if (clamped != currentPosition) {
        currentPosition = clamped;
        needToSeek = true;
    }
    return true;
}

} // namespace vlk
