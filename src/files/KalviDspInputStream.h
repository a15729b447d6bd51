#pragma once

#include "files/KalviDspMemoryBlock.h"

#include <cstdint>

namespace vlk {

// A stream of bytes with a 64-bit position. Reads give short counts, never exceptions; the typed readers
// ask for exactly their size and give 0 when fewer bytes came.
class InputStream
{
public:
    virtual ~InputStream() = default;

    virtual std::int64_t getTotalLength() const noexcept = 0;
    virtual bool isExhausted() const noexcept = 0;
    // The count of bytes read, 0 at the end and on failure.
    virtual std::int64_t read(void* destination, std::int64_t numBytes) noexcept = 0;
    virtual std::int64_t getPosition() const noexcept = 0;
    virtual bool setPosition(std::int64_t position) noexcept = 0;

    // Signed byte, widened.
    int readByte() noexcept;
    short readShort() noexcept;
    short readShortBigEndian() noexcept;
    int readInt() noexcept;
    int readIntBigEndian() noexcept;
    std::uint32_t readUnsignedInt() noexcept;
    std::uint32_t readUnsignedIntBigEndian() noexcept;
    std::int64_t readInt64() noexcept;
    // One read call per byte; nothing for a count at or below 0.
    void skipNextBytes(std::int64_t numBytes) noexcept;
    // Sizes block to the rest of the stream, or to maxBytes when that is smaller and not negative, and
    // reads into it; the count read.
    std::int64_t readIntoMemoryBlock(MemoryBlock& block, std::int64_t maxBytes = -1) noexcept;

private:
    // Little-endian unsigned value of numBytes bytes; 0 on a short read.
    std::uint64_t readLittleEndian(int numBytes) noexcept;
    std::uint64_t readBigEndian(int numBytes) noexcept;
};

} // namespace vlk
