#include "containers/KalviDspAudioBufferReference.h"

namespace vlk {

AudioBufferReference::AudioBufferReference() = default;

AudioBufferReference::~AudioBufferReference() = default;

void AudioBufferReference::setChannels(float** newChannels, std::uint32_t newNumChannels,
                                       std::uint64_t newNumSamples, std::uint64_t offset)
{
    resize(newNumChannels, newNumSamples);
    for (std::uint32_t channel = 0; channel < newNumChannels; ++channel)
        channels[channel] = newChannels[channel] + offset;
}

void AudioBufferReference::resizeKeepingContents(std::uint32_t newNumChannels, std::uint64_t newNumSamples)
{
    AudioBufferBase::resize(newNumChannels, newNumSamples);
}

} // namespace vlk
