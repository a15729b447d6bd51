#pragma once

#include <cstdint>

namespace vlk {

// Reads a frame's bits, most significant first, from a byte array. Bits behind the array's end read as 0:
// a damaged frame that asks for more bits than it has decodes to nonsense, never past the array. The next
// 57 to 64 bits wait in a word, so that a read is a shift, and the Huffman trees can be walked a bit at a time.
class MpegBitReader
{
public:
    MpegBitReader() = default;
    MpegBitReader(const std::uint8_t* bytes, std::int32_t numBytes) : bytes(bytes), numBytes(numBytes) {}

    // Up to 24 bits; 0 bits give 0.
    std::uint32_t read(int numBits) noexcept
    {
        if (numBits <= 0)
            return 0;
        if (numCached < numBits)
            refill();
        const auto value = static_cast<std::uint32_t>(cache >> (64 - numBits));
        cache <<= numBits;
        numCached -= numBits;
        bitPosition += numBits;
        return value;
    }
    bool readBit() noexcept
    {
        if (numCached == 0)
            refill();
        const bool bit = (cache >> 63) != 0;
        cache <<= 1;
        --numCached;
        ++bitPosition;
        return bit;
    }
    // The next numBits (up to 24, at least 1) without reading them.
    std::uint32_t peek(int numBits) noexcept
    {
        if (numCached < numBits)
            refill();
        return static_cast<std::uint32_t>(cache >> (64 - numBits));
    }
    void skip(std::int64_t numBits) noexcept
    {
        if (numBits < 0 || numBits >= numCached) {
            skipBeyondCache(numBits);
            return;
        }
        cache <<= numBits;
        numCached -= static_cast<int>(numBits);
        bitPosition += numBits;
    }
    // Bits read or skipped so far.
    std::int64_t getPosition() const noexcept { return bitPosition; }

private:
    void refill() noexcept;
    void skipBeyondCache(std::int64_t numBits) noexcept;

    const std::uint8_t* bytes = nullptr;
    std::int32_t numBytes = 0;
    std::int64_t bitPosition = 0;
    // The byte that the next refill takes.
    std::int64_t nextByte = 0;
    // The next numCached bits, from the most significant one down.
    std::uint64_t cache = 0;
    int numCached = 0;
};

} // namespace vlk
