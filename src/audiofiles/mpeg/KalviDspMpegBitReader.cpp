#include "audiofiles/mpeg/KalviDspMpegBitReader.h"

namespace vlk {

std::uint32_t MpegBitReader::byteAt(std::int64_t index) const noexcept
{
    return index < numBytes ? bytes[index] : 0u;
}

std::uint32_t MpegBitReader::read(int numBits) noexcept
{
    if (numBits <= 0)
        return 0;
    const std::int64_t first = bitPosition >> 3;
    const std::uint32_t word = byteAt(first) << 24 | byteAt(first + 1) << 16 | byteAt(first + 2) << 8 |
                               byteAt(first + 3);
    const auto shifted = static_cast<std::uint32_t>(word << (bitPosition & 7));
    bitPosition += numBits;
    return shifted >> (32 - numBits);
}

} // namespace vlk
