#pragma once

#include "containers/KalviDspAudioBufferBase.h"
#include "files/KalviDspFile.h"
#include "files/KalviDspFileWriter.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vlk::velurdecode {

// A 32-bit float WAV file whose length is known before its first frame, so it is written in one pass: RIFF
// while the file fits its 32-bit sizes, RF64 with a ds64 chunk beyond.
class FloatWavWriter
{
public:
    // Replaces the file and writes the header; throws Exception when it cannot. numChannels from 1 to 16383:
    // a frame's bytes must fit the format's 16-bit block size.
    FloatWavWriter(const File& file, std::uint32_t numChannels, std::uint32_t sampleRate,
                   std::uint64_t numFrames);

    // The first count samples of the buffer's first numChannels channels, as interleaved frames; throws
    // Exception when the write fails. The calls together write exactly the frames the header announced.
    void writeFrames(const AudioBufferBase& buffer, std::uint64_t count);

private:
    std::vector<std::uint8_t> makeHeader() const;

    File file;
    std::unique_ptr<FileWriter> writer;
    std::uint32_t numChannels;
    std::uint32_t sampleRate;
    std::uint64_t numFrames;
    std::uint64_t framesWritten = 0;
    std::vector<std::uint8_t> bytes;
};

} // namespace vlk::velurdecode
