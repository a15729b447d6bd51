#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vlk::test {

using Channels = std::vector<std::vector<float>>;

// The file through the reader factory: its numSamples frames, read at once, one vector per channel.
Channels readThroughReader(const std::string& path);
// Every frame through readSamples in consecutive blocks of blockFrames, through the first read that fails
// (a reader that reports the end so) and fills its rest with zeros, or through maxFrames.
Channels readSequentially(AudioFileReader& reader, std::uint64_t blockFrames, std::uint64_t maxFrames);
Channels readAt(AudioFileReader& reader, std::uint64_t position, std::uint64_t numFrames);
Channels slice(const Channels& channels, std::uint64_t position, std::uint64_t numFrames);

} // namespace vlk::test
