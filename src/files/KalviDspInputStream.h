#pragma once

#include "files/KalviDspMemoryBlock.h"

#include <cstdint>

namespace vlk {

// A stream of bytes with a 64-bit position. Reads give short counts, never exceptions; the typed readers
// ask for exactly their size and give 0 when fewer bytes came. The reads are not noexcept all the same: a
// read is a cancellation point, and the unwinding of a cancelled buffering thread must pass through them.
class InputStream
{
public:
    virtual ~InputStream() = default;

    virtual std::int64_t getTotalLength() const noexcept = 0;
    virtual bool isExhausted() const noexcept = 0;
    // The count of bytes read, 0 at the end and on failure.
    virtual std::int64_t read(void* destination, std::int64_t numBytes) = 0;
    virtual std::int64_t getPosition() const noexcept = 0;
    virtual bool setPosition(std::int64_t position) noexcept = 0;

    // Signed byte, widened.
    int readByte();
    short readShort();
    short readShortBigEndian();
    int readInt();
    int readIntBigEndian();
    std::uint32_t readUnsignedInt();
    std::uint32_t readUnsignedIntBigEndian();
    std::int64_t readInt64();
    // One read call per byte; nothing for a count at or below 0.
    void skipNextBytes(std::int64_t numBytes);
    // Sizes block to the rest of the stream, or to maxBytes when that is smaller and not negative, and
    // reads into it; the count read.
    std::int64_t readIntoMemoryBlock(MemoryBlock& block, std::int64_t maxBytes = -1);

private:
    // Little-endian unsigned value of numBytes bytes; 0 on a short read.
    std::uint64_t readLittleEndian(int numBytes);
    std::uint64_t readBigEndian(int numBytes);
};

} // namespace vlk
