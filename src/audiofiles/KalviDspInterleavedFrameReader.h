#pragma once

#include "files/KalviDspFileReader.h"

#include <array>
#include <cstdint>

namespace vlk {

// The raw read that the native readers share: frames of interleaved samples lying back to back in a file,
// read block by block into a fixed scratch array and handed to a converter. Allocates nothing, since the
// array is part of the object, so the buffering thread may call it once sizes have settled. One thread at a
// time, like the reader that owns it.
class InterleavedFrameReader
{
public:
    // One of the converters of KalviDspSampleConversion.h.
    using Converter = void (*)(int** channels, std::uint64_t destinationOffset,
                               std::uint32_t numDestinationChannels, const std::uint8_t* source,
                               std::uint32_t numSourceChannels, std::uint64_t numFrames);

    // numFrames frames of bytesPerFrame bytes, numChannels samples each, from byte dataOffset on.
    struct Layout
    {
        std::uint64_t dataOffset = 0;
        std::int32_t bytesPerFrame = 0;
        std::uint32_t numChannels = 0;
        std::uint64_t numFrames = 0;
    };

    // Scratch of one block: the size of every read system call. A block is a whole number of frames, so no
    // frame straddles two blocks.
    static constexpr int blockSize = 5760;

    // False for a layout that read could not serve: a frame larger than a block (blocks of no frames would
    // never end), frames of no size, or frames whose byte positions are no file positions.
    static bool canRead(const Layout& layout);

    // numSamples frames from frame position on into channels, through converter; a null converter reads the
    // blocks and writes nothing, so the destination keeps what it held. Bytes missing from a short read are
    // zeros; frames behind numFrames are zeros in every channel up to the first null entry of channels.
    void read(FileReader& file, const Layout& layout, Converter converter, int** channels,
              std::uint64_t numSamples, std::uint64_t position);

private:
    std::array<std::uint8_t, blockSize> block{};
};

} // namespace vlk
