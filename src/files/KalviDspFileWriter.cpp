#include "files/KalviDspFileWriter.h"

#include "files/KalviDspFileHandle.h"
#include "threads/KalviDspException.h"

#include <unistd.h>

namespace vlk {

FileWriter::FileWriter(const File& file) : file(file)
{
    if (!file.createParentDirectory())
        throw Exception("Couldnt create or write in folder " +
                            file.getParentDirectory().getFullPathName().quoted(),
                        __FILE__, __LINE__);
    fileHandle = openForWriting(file);
    currentPosition = ::lseek(fileHandle, 0, SEEK_CUR);
    if (currentPosition < 0) {
        ::close(fileHandle);
        fileHandle = 0;
    }
}

FileWriter::~FileWriter()
{
    if (fileHandle != 0)
        ::close(fileHandle);
}

bool FileWriter::setPosition(std::int64_t position) noexcept
{
    if (position == currentPosition)
        return true;
    const bool reached = fileHandle != 0 && ::lseek(fileHandle, position, SEEK_SET) == position;
    currentPosition = reached ? position : -1;
    return reached;
}

bool FileWriter::write(const void* buffer, std::int64_t length) noexcept
{
    if (fileHandle == 0 || length < 0)
        return false;
    const std::int64_t written = writeFully(fileHandle, buffer, length);
    currentPosition += written;
    return written == length;
}

bool FileWriter::writeRepeatedByte(std::uint8_t byte, std::int64_t count) noexcept
{
    for (std::int64_t index = 0; index < count; ++index)
        if (!write(&byte, 1))
            return false;
    return true;
}

bool FileWriter::writeByte(char value) noexcept
{
    return write(&value, sizeof value);
}

bool FileWriter::writeShort(short value) noexcept
{
    return write(&value, sizeof value);
}

bool FileWriter::writeInt(int value) noexcept
{
    return write(&value, sizeof value);
}

bool FileWriter::writeDouble(double value) noexcept
{
    return write(&value, sizeof value);
}

} // namespace vlk
