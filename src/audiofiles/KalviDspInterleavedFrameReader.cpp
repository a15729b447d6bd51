#include "audiofiles/KalviDspInterleavedFrameReader.h"

#include <algorithm>
#include <limits>

namespace vlk {

bool InterleavedFrameReader::canRead(const Layout& layout)
{
    if (layout.bytesPerFrame > blockSize)
        return false;
    if (layout.numFrames == 0)
        return true;
    if (layout.bytesPerFrame <= 0)
        return false;
    const auto largestPosition = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return layout.dataOffset <= largestPosition &&
           layout.numFrames <=
               (largestPosition - layout.dataOffset) / static_cast<std::uint64_t>(layout.bytesPerFrame);
}

// Runs on the buffering thread, or on the thread of a seek, under the player's diskMutex. The position is set
// from the frame number at every call, so reads may come in any order.
void InterleavedFrameReader::read(FileReader& file, const Layout& layout, Converter converter, int** channels,
                                  std::uint64_t numSamples, std::uint64_t position)
{
    const std::uint64_t length = layout.numFrames;
    const std::uint64_t available = position < length ? std::min(numSamples, length - position) : 0;
    if (available > 0) {
        const auto frameSize = static_cast<std::uint64_t>(layout.bytesPerFrame);
        file.setPosition(static_cast<std::int64_t>(frameSize * position + layout.dataOffset));
        const std::uint64_t framesPerBlock = blockSize / frameSize;
        for (std::uint64_t done = 0; done < available;) {
            const std::uint64_t numFrames = std::min(available - done, framesPerBlock);
            const auto numBytes = static_cast<std::int64_t>(numFrames * frameSize);
            const std::int64_t numRead = file.read(block.data(), numBytes);
            std::fill(block.begin() + numRead, block.begin() + numBytes, 0);
            if (converter != nullptr)
                converter(channels, done, layout.numChannels, block.data(), layout.numChannels, numFrames);
            done += numFrames;
        }
    }
    if (available < numSamples)
        for (int** channel = channels; *channel != nullptr; ++channel)
            std::fill(*channel + available, *channel + numSamples, 0);
}

} // namespace vlk
