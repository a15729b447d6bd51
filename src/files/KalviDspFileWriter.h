#pragma once

#include "files/KalviDspFile.h"

#include <cstdint>

namespace vlk {

// An unbuffered writer: each write is a system call, and an existing file is appended to. The descriptor is
// closed by the destructor; there is no flush of its own. Used by one thread at a time.
class FileWriter
{
public:
    // Creates the missing folders and opens the file; throws when either fails. When the position cannot
    // be read the writer stays without a descriptor, and every write gives false.
    explicit FileWriter(const File& file);
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;
    ~FileWriter();

    // -1 after a failed setPosition.
    std::int64_t getPosition() const noexcept { return currentPosition; }
    // From the start of the file; false when the position could not be reached.
    bool setPosition(std::int64_t position) noexcept;

    // Each write is true when all bytes were written; the position advances by those that were.
    bool write(const void* buffer, std::int64_t length) noexcept;
    // One byte at a time, stopping at the first failure; true for a count of 0.
    bool writeRepeatedByte(std::uint8_t byte, std::int64_t count) noexcept;
    // The value's bytes in the machine's order.
    bool writeByte(char value) noexcept;
    bool writeShort(short value) noexcept;
    bool writeInt(int value) noexcept;
    bool writeDouble(double value) noexcept;

private:
    File file;
    std::int64_t currentPosition = 0;
    int fileHandle = 0;
};

} // namespace vlk
