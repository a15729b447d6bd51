#pragma once

#include "files/KalviDspFile.h"
#include "files/KalviDspFileWriter.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vlk::velurtone {

// A 16-bit PCM WAV file written from interleaved float frames in [-1, 1]. The header's sizes are known
// up front, so the file is written in one pass.
class PcmWavWriter
{
public:
    // Replaces the file; throws when it cannot be written.
    PcmWavWriter(const File& file, std::uint32_t numChannels, std::uint32_t sampleRate,
                 std::uint32_t numFrames);

    // False once a write failed; frames beyond the announced count are not written.
    bool writeFrames(const std::vector<float>& interleaved);

private:
    bool writeHeader();

    std::unique_ptr<FileWriter> writer;
    std::uint32_t numChannels;
    std::uint32_t sampleRate;
    std::uint32_t numFrames;
    std::uint32_t framesWritten = 0;
};

} // namespace vlk::velurtone
