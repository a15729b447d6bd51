#include "audiofiles/KalviDspSampleConversion.h"

#include <bit>
#include <cstring>

namespace vlk {

namespace {

// The words are stored with memcpy: the destination is float memory seen through int pointers.
inline void storeWord(int* destination, std::uint32_t word)
{
    std::memcpy(destination, &word, sizeof(word));
}

template <std::uint32_t sampleSize, typename Decode>
void convertChannels(int** channels, std::uint64_t destinationOffset, std::uint32_t numDestinationChannels,
                     const std::uint8_t* source, std::uint32_t numSourceChannels, std::uint64_t numFrames,
                     Decode decode)
{
    const std::uint64_t stride = std::uint64_t{numSourceChannels} * sampleSize;
    for (std::uint32_t channel = 0; channel < numDestinationChannels; ++channel) {
        if (channels[channel] == nullptr)
            continue;
        int* destination = channels[channel] + destinationOffset;
        if (channel >= numSourceChannels) {
            std::memset(destination, 0, numFrames * sizeof(int));
            continue;
        }
        const std::uint8_t* sample = source + std::uint64_t{channel} * sampleSize;
        if (stride < sizeof(int) &&
            static_cast<const void*>(sample) == static_cast<const void*>(destination)) {
            for (std::uint64_t frame = numFrames; frame-- > 0;)
                storeWord(destination + frame, decode(sample + frame * stride));
        } else {
            for (std::uint64_t frame = 0; frame < numFrames; ++frame)
                storeWord(destination + frame, decode(sample + frame * stride));
        }
    }
}

std::uint32_t decodeUInt8(const std::uint8_t* bytes)
{
    return std::uint32_t{static_cast<std::uint8_t>(bytes[0] ^ 0x80)} << 24;
}

std::uint32_t decodeInt8(const std::uint8_t* bytes)
{
    return std::uint32_t{bytes[0]} << 24;
}

std::uint32_t decodeInt16LittleEndian(const std::uint8_t* bytes)
{
    return (std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8) << 16;
}

std::uint32_t decodeInt24LittleEndian(const std::uint8_t* bytes)
{
    return (std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16) << 8;
}

std::uint32_t decodeWord32LittleEndian(const std::uint8_t* bytes)
{
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

std::uint32_t decodeInt16BigEndian(const std::uint8_t* bytes)
{
    return (std::uint32_t{bytes[1]} | std::uint32_t{bytes[0]} << 8) << 16;
}

std::uint32_t decodeInt24BigEndian(const std::uint8_t* bytes)
{
    return (std::uint32_t{bytes[2]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[0]} << 16) << 8;
}

std::uint32_t decodeWord32BigEndian(const std::uint8_t* bytes)
{
    return std::uint32_t{bytes[3]} | std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[0]} << 24;
}

} // namespace

void convertUInt8(int** channels, std::uint64_t destinationOffset, std::uint32_t numDestinationChannels,
                  const std::uint8_t* source, std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<1>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeUInt8);
}

void convertInt8(int** channels, std::uint64_t destinationOffset, std::uint32_t numDestinationChannels,
                 const std::uint8_t* source, std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<1>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeInt8);
}

void convertInt16LittleEndian(int** channels, std::uint64_t destinationOffset,
                              std::uint32_t numDestinationChannels, const std::uint8_t* source,
                              std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<2>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeInt16LittleEndian);
}

void convertInt24LittleEndian(int** channels, std::uint64_t destinationOffset,
                              std::uint32_t numDestinationChannels, const std::uint8_t* source,
                              std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<3>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeInt24LittleEndian);
}

void convertInt32LittleEndian(int** channels, std::uint64_t destinationOffset,
                              std::uint32_t numDestinationChannels, const std::uint8_t* source,
                              std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<4>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeWord32LittleEndian);
}

void convertFloat32LittleEndian(int** channels, std::uint64_t destinationOffset,
                                std::uint32_t numDestinationChannels, const std::uint8_t* source,
                                std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<4>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeWord32LittleEndian);
}

void convertInt16BigEndian(int** channels, std::uint64_t destinationOffset,
                           std::uint32_t numDestinationChannels, const std::uint8_t* source,
                           std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<2>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeInt16BigEndian);
}

void convertInt24BigEndian(int** channels, std::uint64_t destinationOffset,
                           std::uint32_t numDestinationChannels, const std::uint8_t* source,
                           std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<3>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeInt24BigEndian);
}

void convertInt32BigEndian(int** channels, std::uint64_t destinationOffset,
                           std::uint32_t numDestinationChannels, const std::uint8_t* source,
                           std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<4>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeWord32BigEndian);
}

void convertFloat32BigEndian(int** channels, std::uint64_t destinationOffset,
                             std::uint32_t numDestinationChannels, const std::uint8_t* source,
                             std::uint32_t numSourceChannels, std::uint64_t numFrames)
{
    convertChannels<4>(channels, destinationOffset, numDestinationChannels, source, numSourceChannels,
                       numFrames, decodeWord32BigEndian);
}

void convertToFloat(int* samples, std::uint64_t numSamples)
{
    constexpr float scale = 0x1p-31f;
    static_assert(std::bit_cast<std::uint32_t>(scale) == 0x30000000u);
    for (std::uint64_t index = 0; index < numSamples; ++index) {
        int word;
        std::memcpy(&word, samples + index, sizeof(word));
        const float value = static_cast<float>(word) * scale;
        std::memcpy(samples + index, &value, sizeof(value));
    }
}

} // namespace vlk
