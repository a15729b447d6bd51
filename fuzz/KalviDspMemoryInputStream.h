#pragma once

#include "files/KalviDspInputStream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace vlk::fuzz {

// The fuzzer's bytes as a stream, so that a parser of chunk contents runs without a file.
class MemoryInputStream : public InputStream
{
public:
    MemoryInputStream(const std::uint8_t* data, std::size_t size)
        : data(data), size(static_cast<std::int64_t>(size))
    {
    }

    std::int64_t getTotalLength() const noexcept override { return size; }
    bool isExhausted() const noexcept override { return position >= size; }
    std::int64_t getPosition() const noexcept override { return position; }

    std::int64_t read(void* destination, std::int64_t numBytes) override
    {
        const std::int64_t count = std::clamp<std::int64_t>(size - position, 0, std::max<std::int64_t>(numBytes, 0));
        if (count > 0)
            std::memcpy(destination, data + position, static_cast<std::size_t>(count));
        position += count;
        return count;
    }

    bool setPosition(std::int64_t newPosition) noexcept override
    {
        position = std::clamp<std::int64_t>(newPosition, 0, size);
        return true;
    }

private:
    const std::uint8_t* data;
    std::int64_t size;
    std::int64_t position = 0;
};

// Hands parse a stream over the input behind its first four bytes, and those bytes as a chunk's size
// (little-endian): the content of a chunk whose header may lie, and whatever follows it. Inputs too short to
// hold a size are passed over.
template <typename Parse> void parseSizedChunk(const std::uint8_t* data, std::size_t size, Parse&& parse)
{
    if (size < 4)
        return;
    const std::uint32_t chunkSize = static_cast<std::uint32_t>(data[0]) |
                                    (static_cast<std::uint32_t>(data[1]) << 8) |
                                    (static_cast<std::uint32_t>(data[2]) << 16) |
                                    (static_cast<std::uint32_t>(data[3]) << 24);
    MemoryInputStream stream(data + 4, size - 4);
    parse(stream, chunkSize);
}

} // namespace vlk::fuzz
