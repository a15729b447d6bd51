#pragma once

#include "math/KalviDspMatrix.h"
#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <cstdint>

namespace vlk {

class File;

// Non-interleaved float channels reached through an array of channel pointers: the form in which Process
// receives its vectors and readers write at an offset. No lock: a buffer belongs to one thread at a time,
// or to an arrangement of its owner. Not copyable, since a copy's pointers would lead into the original.
class AudioBufferBase
{
public:
    AudioBufferBase(const AudioBufferBase&) = delete;
    AudioBufferBase& operator=(const AudioBufferBase&) = delete;
    virtual ~AudioBufferBase();

    // Here the pointer array only: the pointers of the channels that stay are kept, new ones are null.
    virtual void resize(std::uint32_t numChannels, std::uint64_t numSamples);
    // No-ops when equal, else a resize keeping the other dimension.
    virtual void setNumChannels(std::uint32_t newNumChannels);
    virtual void setNumSamples(std::uint64_t newNumSamples);
    // A Level 5 MAT-file with one row per channel; a file there before is replaced.
    virtual bool saveToFile(const File& file, const String& variableName);
    // Takes the whole file, resized to its channels and frames. False when no reader takes the file or a read
    // failed.
    virtual bool loadFromFile(const File& file);
    // One channel of the file into a buffer of 1 channel; throws when the file has no such channel.
    virtual bool loadChannelFromFile(const File& file, std::uint32_t channel);
    virtual float getMemoryInMB() const;
    // Frames and channels present in both sizes survive the resize; the rest is zero.
    virtual void resizeKeepingContents(std::uint32_t numChannels, std::uint64_t numSamples) = 0;

    std::uint32_t getNumChannels() const noexcept { return numChannels; }
    std::uint64_t getNumSamples() const noexcept { return numSamples; }
    float* getChannel(std::uint32_t channel) const noexcept { return channels[channel]; }
    float** getArrayOfChannels() noexcept { return channels.data(); }
    // Rows are channels; the matrix is replaced when its size differs.
    void copyToMatrix(Matrix<float>& matrix) const;

    // The operations below run on the audio thread: none allocates, none checks bounds.
    void clear();
    void fillChannel(std::uint32_t channel, float value);
    // With gain 1 a block copy, which touches nothing when source is the destination itself.
    void copyToChannel(std::uint32_t channel, std::uint64_t destinationFrame, const float* source,
                       std::uint64_t count, float gain);
    // As many frames as both buffers hold behind the two starting frames.
    void copyFromBuffer(std::uint32_t channel, std::uint64_t destinationFrame, const AudioBufferBase& source,
                        std::uint32_t sourceChannel, std::uint64_t sourceFrame, float gain);
    // A straight line from "from" to exactly "to" over the channel; a single frame gets "to".
    void rampChannel(std::uint32_t channel, float from, float to);

protected:
    AudioBufferBase() = default;

    std::uint32_t numChannels = 0;
    std::uint64_t numSamples = 0;
    Vector<float*> channels;
};

} // namespace vlk
