#include "files/KalviDspInputStream.h"

namespace vlk {

std::uint64_t InputStream::readLittleEndian(int numBytes)
{
    unsigned char bytes[8] = {};
    if (read(bytes, numBytes) != numBytes)
        return 0;
    std::uint64_t value = 0;
    for (int index = numBytes - 1; index >= 0; --index)
        value = (value << 8) | bytes[index];
    return value;
}

std::uint64_t InputStream::readBigEndian(int numBytes)
{
    unsigned char bytes[8] = {};
    if (read(bytes, numBytes) != numBytes)
        return 0;
    std::uint64_t value = 0;
    for (int index = 0; index < numBytes; ++index)
        value = (value << 8) | bytes[index];
    return value;
}

int InputStream::readByte()
{
    return static_cast<signed char>(readLittleEndian(1));
}

short InputStream::readShort()
{
    return static_cast<short>(readLittleEndian(2));
}

short InputStream::readShortBigEndian()
{
    return static_cast<short>(readBigEndian(2));
}

int InputStream::readInt()
{
    return static_cast<int>(readLittleEndian(4));
}

int InputStream::readIntBigEndian()
{
    return static_cast<int>(readBigEndian(4));
}

std::uint32_t InputStream::readUnsignedInt()
{
    return static_cast<std::uint32_t>(readLittleEndian(4));
}

std::uint32_t InputStream::readUnsignedIntBigEndian()
{
    return static_cast<std::uint32_t>(readBigEndian(4));
}

std::int64_t InputStream::readInt64()
{
    return static_cast<std::int64_t>(readLittleEndian(8));
}

void InputStream::skipNextBytes(std::int64_t numBytes)
{
    char byte = 0;
    for (std::int64_t index = 0; index < numBytes; ++index)
        read(&byte, 1);
}

std::int64_t InputStream::readIntoMemoryBlock(MemoryBlock& block, std::int64_t maxBytes)
{
    const std::int64_t remaining = getTotalLength() - getPosition();
    std::int64_t numBytes = maxBytes;
    if (remaining > 0 && (maxBytes < 0 || maxBytes > remaining))
        numBytes = remaining;
    else if (maxBytes < 1)
        return 0;
    block.setSize(static_cast<std::uint64_t>(numBytes));
    // A failed allocation leaves the block empty, and nothing is read.
    if (block.getData() == nullptr)
        return 0;
    return read(block.getData(), numBytes);
}

} // namespace vlk
