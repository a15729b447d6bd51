#include "containers/KalviDspAudioBufferBase.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "files/KalviDspFile.h"
#include "math/KalviDspVectorImplementation.h"
#include "text/KalviDspStringHelper.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <memory>

namespace vlk {

AudioBufferBase::~AudioBufferBase() = default;

void AudioBufferBase::resize(std::uint32_t newNumChannels, std::uint64_t newNumSamples)
{
    if (newNumChannels != numChannels) {
        numChannels = newNumChannels;
        // Growth appends null pointers and keeps the first ones; shrinking keeps the array's memory, so a
        // view that changes its channel count back and forth settles without allocating.
        channels.resize(newNumChannels);
    }
    numSamples = newNumSamples;
}

void AudioBufferBase::setNumChannels(std::uint32_t newNumChannels)
{
    if (newNumChannels != numChannels)
        resize(newNumChannels, numSamples);
}

void AudioBufferBase::setNumSamples(std::uint64_t newNumSamples)
{
    if (newNumSamples != numSamples)
        resize(numChannels, newNumSamples);
}

bool AudioBufferBase::saveToFile(const File& file, const String& variableName)
{
    Matrix<float> matrix;
    copyToMatrix(matrix);
    return matrix.writeToMatFile(file, variableName, true);
}

bool AudioBufferBase::loadFromFile(const File& file)
{
    const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(file);
    if (reader == nullptr)
        return false;
    resize(reader->getNumChannels(), reader->getNumSamples());
    return reader->readSamples(*this, 0, numSamples, 0);
}

bool AudioBufferBase::loadChannelFromFile(const File& file, std::uint32_t channel)
{
    const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(file);
    if (reader == nullptr)
        return false;
    if (channel >= reader->getNumChannels())
        throw Exception("Invalid channel index " + toString(channel) + " for file " +
                            file.getFullPathName().quoted(),
                        __FILE__, __LINE__);
    resize(1, reader->getNumSamples());
    return reader->readChannel(*this, 0, 0, numSamples, channel, 0);
}

float AudioBufferBase::getMemoryInMB() const
{
    return 0.0f;
}

void AudioBufferBase::clear()
{
    if (numSamples == 0)
        return;
    for (std::uint32_t channel = 0; channel < numChannels; ++channel)
        fill(channels[channel], numSamples, 0.0f);
}

void AudioBufferBase::fillChannel(std::uint32_t channel, float value)
{
    fill(channels[channel], numSamples, value);
}

void AudioBufferBase::copyToChannel(std::uint32_t channel, std::uint64_t destinationFrame,
                                    const float* source, std::uint64_t count, float gain)
{
    copyWithGain(channels[channel] + destinationFrame, source, count, gain);
}

void AudioBufferBase::copyFromBuffer(std::uint32_t channel, std::uint64_t destinationFrame,
                                     const AudioBufferBase& source, std::uint32_t sourceChannel,
                                     std::uint64_t sourceFrame, float gain)
{
    // A starting frame at or past the end copies nothing rather than letting the unsigned count wrap.
    if (sourceFrame >= source.numSamples || destinationFrame >= numSamples)
        return;
    const std::uint64_t count = std::min(source.numSamples - sourceFrame, numSamples - destinationFrame);
    copyToChannel(channel, destinationFrame, source.channels[sourceChannel] + sourceFrame, count, gain);
}

void AudioBufferBase::rampChannel(std::uint32_t channel, float from, float to)
{
    if (numSamples == 0)
        return;
    float* samples = channels[channel];
    const std::uint64_t last = numSamples - 1;
    if (last > 0) {
        const float step = (to - from) / static_cast<float>(last);
        for (std::uint64_t frame = 0; frame < last; ++frame)
            samples[frame] = static_cast<float>(frame) * step + from;
    }
    samples[last] = to;
}

void AudioBufferBase::copyToMatrix(Matrix<float>& matrix) const
{
    if (matrix.getNumRows() != numChannels || matrix.getNumColumns() != numSamples)
        matrix = Matrix<float>(numChannels, numSamples);
    for (std::uint32_t channel = 0; channel < numChannels; ++channel)
        std::copy_n(channels[channel], numSamples, matrix.getData() + channel * numSamples);
}

} // namespace vlk
