#pragma once

#include "containers/KalviDspAudioBufferBase.h"

namespace vlk {

// A view on samples that belong to somebody else, such as the host's vectors of one Process call. Its
// pointers are not owned.
class AudioBufferReference : public AudioBufferBase
{
public:
    // A 0 by 0 view.
    AudioBufferReference();
    ~AudioBufferReference() override;

    // Points channel c at channels[c] + offset. Runs on the audio thread for every vector: the pointer array
    // is only reallocated when the channel count grows past what it held before.
    void setChannels(float** channels, std::uint32_t numChannels, std::uint64_t numSamples,
                     std::uint64_t offset);
    // A view has no samples of its own to keep: the pointers of the channels that stay are kept, which keeps
    // their contents, and new channels are null until the next setChannels.
    void resizeKeepingContents(std::uint32_t numChannels, std::uint64_t numSamples) override;
};

} // namespace vlk
