#pragma once

#include "containers/KalviDspAudioBufferBase.h"

namespace vlk {

// Owns its samples in one block: channel c starts at element c * numSamples, without gaps or padding.
class AudioBuffer : public AudioBufferBase
{
public:
    // Allocates at once; the samples are zero.
    AudioBuffer(std::uint32_t numChannels = 0, std::uint64_t numSamples = 0);
    ~AudioBuffer() override;

    // Returns at once when both sizes are unchanged, so that it can be called on every vector. Otherwise the
    // block is resized with its samples left where they lie, not moved to the new channel stride: a buffer
    // that must be silent afterwards is cleared by its caller.
    void resize(std::uint32_t numChannels, std::uint64_t numSamples) override;
    // The bytes reserved by the block.
    float getMemoryInMB() const override;
    void resizeKeepingContents(std::uint32_t numChannels, std::uint64_t numSamples) override;

private:
    void resizeData();
    void setChannelPointers();

    Vector<float> data;
};

} // namespace vlk
