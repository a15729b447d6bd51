#pragma once

#include <cstdint>

namespace vlk {

// Reads a frame's bits, most significant first, from a byte array. Bits behind the array's end read as 0:
// a damaged frame that asks for more bits than it has decodes to nonsense, never past the array.
class MpegBitReader
{
public:
    MpegBitReader() = default;
    MpegBitReader(const std::uint8_t* bytes, std::int32_t numBytes) : bytes(bytes), numBytes(numBytes) {}

    // Up to 24 bits; 0 bits give 0.
    std::uint32_t read(int numBits) noexcept;
    bool readBit() noexcept { return read(1) != 0; }
    void skip(int numBits) noexcept { bitPosition += numBits; }
    // Bits read so far.
    std::int64_t getPosition() const noexcept { return bitPosition; }

private:
    std::uint32_t byteAt(std::int64_t index) const noexcept;

    const std::uint8_t* bytes = nullptr;
    std::int32_t numBytes = 0;
    std::int64_t bitPosition = 0;
};

} // namespace vlk
