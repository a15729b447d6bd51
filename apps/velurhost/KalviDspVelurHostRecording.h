#pragma once

#include "KalviDspHostWavWriter.h"

#include <string>

namespace vlk::velurhost {

// The file of --out: opened at the first recorded frames with their channel count, which must not change.
// Main thread.
class Recording
{
public:
    Recording(const std::string& path, double sampleRate) : path(path), sampleRate(sampleRate) {}

    void write(const float* frames, std::size_t numFrames, int numChannels);
    // Empty while all went well.
    const std::string& getFailure() const { return failure; }
    // A file that never got frames is written empty, with numChannels channels.
    void close(int numChannels);

private:
    std::string path;
    double sampleRate;
    host::WavWriter writer;
    std::string failure;
};

} // namespace vlk::velurhost
