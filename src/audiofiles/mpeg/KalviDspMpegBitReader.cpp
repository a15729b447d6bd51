#include "audiofiles/mpeg/KalviDspMpegBitReader.h"

namespace vlk {

void MpegBitReader::refill() noexcept
{
    while (numCached <= 56) {
        const std::uint64_t byte = nextByte >= 0 && nextByte < numBytes ? bytes[nextByte] : 0u;
        cache |= byte << (56 - numCached);
        numCached += 8;
        ++nextByte;
    }
}

void MpegBitReader::skipBeyondCache(std::int64_t numBits) noexcept
{
    if (numBits <= 0)
        return;
    bitPosition += numBits;
    nextByte = bitPosition >> 3;
    cache = 0;
    numCached = 0;
    refill();
    const int withinByte = static_cast<int>(bitPosition & 7);
    cache <<= withinByte;
    numCached -= withinByte;
}

} // namespace vlk
