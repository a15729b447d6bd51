#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace vlk::host {

// Writes 32-bit float WAV files: a RIFF header, "fmt " with format 3, "fact" and "data"; the sizes are
// filled in when the file is closed. Files stop growing short of 4 GiB, where RIFF sizes end.
class WavWriter
{
public:
    WavWriter() = default;
    ~WavWriter();
    WavWriter(const WavWriter&) = delete;
    WavWriter& operator=(const WavWriter&) = delete;

    bool open(const std::string& path, int numChannels, double sampleRate);
    bool isOpen() const { return file != nullptr; }
    int getNumChannels() const { return channels; }
    // Interleaved frames.
    bool write(const float* frames, std::size_t numFrames);
    bool close();

private:
    bool writeHeader();

    std::FILE* file = nullptr;
    int channels = 0;
    std::uint32_t rate = 0;
    std::uint64_t framesWritten = 0;
};

} // namespace vlk::host
