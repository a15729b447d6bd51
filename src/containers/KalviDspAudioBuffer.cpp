#include "containers/KalviDspAudioBuffer.h"

#include "text/KalviDspStringHelper.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <utility>

namespace vlk {

AudioBuffer::AudioBuffer(std::uint32_t numChannels, std::uint64_t numSamples)
{
    resize(numChannels, numSamples);
}

AudioBuffer::~AudioBuffer() = default;

void AudioBuffer::resize(std::uint32_t newNumChannels, std::uint64_t newNumSamples)
{
    if (newNumChannels == numChannels && newNumSamples == numSamples)
        return;
    translateExceptions([&] {
        AudioBufferBase::resize(newNumChannels, newNumSamples);
        resizeData();
        setChannelPointers();
    });
}

void AudioBuffer::resizeData()
{
    const std::uint64_t numElements = numChannels * numSamples;
    data.resize(numElements);
    if (numElements != 0 && data.size() != numElements)
        throw Exception("memory re-allocation failed (numChannels = " + toString(numChannels) +
                            ", numSamples = " + toString(numSamples) + ")",
                        __FILE__, __LINE__);
}

void AudioBuffer::setChannelPointers()
{
    for (std::uint32_t channel = 0; channel < numChannels; ++channel)
        channels[channel] = data.data() + channel * numSamples;
}

float AudioBuffer::getMemoryInMB() const
{
    return static_cast<float>(data.capacity() * sizeof(float)) * 9.536743e-7f;
}

void AudioBuffer::resizeKeepingContents(std::uint32_t newNumChannels, std::uint64_t newNumSamples)
{
    if (newNumChannels == numChannels && newNumSamples == numSamples)
        return;
    AudioBuffer resized(newNumChannels, newNumSamples);
    resized.clear();
    const std::uint32_t keptChannels = std::min(numChannels, newNumChannels);
    const std::uint64_t keptSamples = std::min(numSamples, newNumSamples);
    for (std::uint32_t channel = 0; channel < keptChannels; ++channel)
        resized.copyToChannel(channel, 0, channels[channel], keptSamples, 1.0f);
    // The old block leaves with the temporary; moving a Vector keeps its elements where they are, so the
    // pointers taken over stay valid.
    std::swap(data, resized.data);
    std::swap(channels, resized.channels);
    std::swap(numChannels, resized.numChannels);
    std::swap(numSamples, resized.numSamples);
}

} // namespace vlk
