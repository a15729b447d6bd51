#include "dsp/KalviDspAudioProcessorWithAutoMute.h"

namespace vlk {

AudioProcessorWithAutoMute::AudioProcessorWithAutoMute(std::uint32_t numInlets, std::uint32_t numOutlets)
    : AudioProcessorBase(numInlets, numOutlets), activityAnalyzer(numInlets, numOutlets)
{
}

AudioProcessorWithAutoMute::~AudioProcessorWithAutoMute() = default;

bool AudioProcessorWithAutoMute::isChannelPassing(std::uint32_t channel) const
{
    return activityAnalyzer.isInletConnected(channel) && activityAnalyzer.isOutletConnected(channel);
}

bool AudioProcessorWithAutoMute::isOutputConnected(std::uint32_t channel) const
{
    return activityAnalyzer.isOutletConnected(channel);
}

bool AudioProcessorWithAutoMute::isInputActive(std::uint32_t channel) const
{
    return activityAnalyzer.isInletActive(channel);
}

bool AudioProcessorWithAutoMute::hasConnectedOutput() const
{
    return activityAnalyzer.hasConnectedOutlet();
}

void AudioProcessorWithAutoMute::setNumInletsStatus(std::uint32_t numInletsInStatus)
{
    activityAnalyzer.setNumInletsStatus(numInletsInStatus);
}

void AudioProcessorWithAutoMute::setNumOutletsStatus(std::uint32_t numOutletsInStatus)
{
    activityAnalyzer.setNumOutletsStatus(numOutletsInStatus);
}

void AudioProcessorWithAutoMute::analyzeInputs(float** inputs, std::uint32_t numSamples)
{
    activityAnalyzer.analyze(inputs, numInlets, numSamples);
}

void AudioProcessorWithAutoMute::setConnections(const short* counts)
{
    activityAnalyzer.setConnections(counts);
}

void AudioProcessorWithAutoMute::setAutoMuteEnabled(bool shouldBeEnabled)
{
    activityAnalyzer.setEnabled(shouldBeEnabled);
}

void AudioProcessorWithAutoMute::setAutoMute(float seconds)
{
    activityAnalyzer.setThreshold(seconds);
}

} // namespace vlk
