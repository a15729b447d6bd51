#include "dsp/KalviDspAudioProcessorBase.h"

#include "math/KalviDspVectorImplementation.h"
#include "text/KalviDspDisplayText.h"
#include "text/KalviDspStringHelper.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vlk {

AudioProcessorBase::LatencyListener::~LatencyListener() = default;

AudioProcessorBase::AudioProcessorBase(std::uint32_t numInlets, std::uint32_t numOutlets)
    : numInlets(numInlets), numOutlets(numOutlets)
{
}

AudioProcessorBase::~AudioProcessorBase() = default;

void AudioProcessorBase::ProcessBypass(float** outputs, float** inputs, std::uint32_t numSamples)
{
    const std::uint32_t used = std::min(numInlets, numOutlets);
    for (std::uint32_t channel = 0; channel < used; ++channel) {
        if (isChannelPassing(channel) && isInputActive(channel))
            copyWithGain(outputs[channel], inputs[channel], numSamples, 1.0f);
        else if (isOutputConnected(channel))
            fill(outputs[channel], numSamples, 0.0f);
    }
    for (std::uint32_t channel = used; channel < numOutlets; ++channel)
        if (isOutputConnected(channel))
            fill(outputs[channel], numSamples, 0.0f);
}

void AudioProcessorBase::ProcessBypass(double** outputs, double** inputs, std::uint32_t numSamples)
{
    const std::uint32_t used = std::min(numInlets, numOutlets);
    for (std::uint32_t channel = 0; channel < used; ++channel) {
        if (isChannelPassing(channel) && isInputActive(channel)) {
            if (outputs[channel] != inputs[channel])
                std::memcpy(outputs[channel], inputs[channel], numSamples * sizeof(double));
        } else if (isOutputConnected(channel)) {
            fill(outputs[channel], numSamples, 0.0);
        }
    }
    for (std::uint32_t channel = used; channel < numOutlets; ++channel)
        if (isOutputConnected(channel))
            fill(outputs[channel], numSamples, 0.0);
}

void AudioProcessorBase::ProcessMute(float** outputs, std::uint32_t numSamples)
{
    for (std::uint32_t channel = 0; channel < numOutlets; ++channel)
        if (isOutputConnected(channel))
            fill(outputs[channel], numSamples, 0.0f);
}

void AudioProcessorBase::ProcessMute(double** outputs, std::uint32_t numSamples)
{
    for (std::uint32_t channel = 0; channel < numOutlets; ++channel)
        if (isOutputConnected(channel))
            fill(outputs[channel], numSamples, 0.0);
}

String AudioProcessorBase::getInputName(std::int32_t index) const
{
    if (index >= 0 && static_cast<std::uint32_t>(index) < numInlets)
        return "input #" + toString(index + 1);
    return {};
}

String AudioProcessorBase::getOutputName(std::int32_t index) const
{
    if (index >= 0 && static_cast<std::uint32_t>(index) < numOutlets)
        return "output #" + toString(index + 1);
    return "dumpout";
}

Vector<String> AudioProcessorBase::getExtraInfo() const
{
    return {};
}

void AudioProcessorBase::sampleRateChanged(float) {}

void AudioProcessorBase::vectorSizeChanged(std::uint32_t) {}

void AudioProcessorBase::prepareFinished() {}

std::uint32_t AudioProcessorBase::getLatency() const
{
    return 0;
}

bool AudioProcessorBase::isChannelPassing(std::uint32_t) const
{
    return true;
}

bool AudioProcessorBase::isOutputConnected(std::uint32_t) const
{
    return true;
}

bool AudioProcessorBase::isInputActive(std::uint32_t) const
{
    return true;
}

bool AudioProcessorBase::hasConnectedOutput() const
{
    return true;
}

void AudioProcessorBase::setNumInletsStatus(std::uint32_t) {}

void AudioProcessorBase::setNumOutletsStatus(std::uint32_t) {}

void AudioProcessorBase::beforeProcess() {}

void AudioProcessorBase::analyzeInputs(float**, std::uint32_t) {}

void AudioProcessorBase::prepare(std::uint32_t newVectorSize, bool force, float newSampleRate)
{
    if (newSampleRate == sampleRate && newVectorSize == vectorSize && !force) {
        disableDenormals();
        return;
    }
    // A rate that is no number is taken as unknown, like 0: clamping would keep it, and every time in
    // milliseconds computed from it would be no number either.
    if (newSampleRate == 0.0f || std::isnan(newSampleRate))
        sampleRate = 44100.0f;
    else
        sampleRate = std::clamp(newSampleRate, 8000.0f, 384000.0f);
    sampleRateChanged(sampleRate);
    vectorSize = newVectorSize != 0 ? newVectorSize : 512;
    // Sized here, on the host's thread, so that perform finds them sized: the audio thread allocates nothing.
    inputBuffer.resize(numInlets, vectorSize);
    outputBuffer.resize(numOutlets, vectorSize);
    vectorSizeChanged(vectorSize);
    prepareFinished();
    disableDenormals();
}

void AudioProcessorBase::perform(double** outputs, double** inputs, std::uint32_t numSamples, long disabled,
                                 long mute, long bypass)
{
    muted.store(disabled == 1 || mute == 1, std::memory_order_relaxed);
    bypassed.store(bypass == 1, std::memory_order_relaxed);
    inputBuffer.resize(numInlets, numSamples);
    outputBuffer.resize(numOutlets, numSamples);
    for (std::uint32_t channel = 0; channel < numInlets; ++channel)
        convert(inputBuffer.getChannel(channel), inputs[channel], numSamples);
    float** const floatInputs = numInlets != 0 ? inputBuffer.getArrayOfChannels() : nullptr;
    beforeProcess();
    analyzeInputs(floatInputs, numSamples);
    chooseAndRun(floatInputs, numSamples);
    for (std::uint32_t channel = 0; channel < numOutlets; ++channel)
        convert(outputs[channel], outputBuffer.getChannel(channel), numSamples);
}

void AudioProcessorBase::chooseAndRun(float** inputs, std::uint32_t numSamples)
{
    float** const outputs = outputBuffer.getArrayOfChannels();
    if (!forceProcessing && numOutlets != 0 && !hasConnectedOutput()) {
        ProcessMute(outputs, numSamples);
    } else if (muted.load(std::memory_order_relaxed)) {
        ProcessMute(outputs, numSamples);
    } else if (bypassed.load(std::memory_order_relaxed)) {
        ProcessBypass(outputs, inputs, numSamples);
    } else {
        disableDenormals();
        Process(outputs, inputs, numSamples);
    }
}

Vector<String> AudioProcessorBase::getDspStatus() const
{
    Vector<String> lines;
    lines.push_back("samplerate           : " + getSampleRateText(true, sampleRate) + "\n");
    lines.push_back("buffersize           : " + toString(vectorSize) + "\n");
    const std::uint32_t latency = getLatency();
    if (!muted.load(std::memory_order_relaxed) && !bypassed.load(std::memory_order_relaxed) && latency != 0) {
        const auto milliseconds =
            static_cast<std::uint64_t>(static_cast<float>(latency) * 1000.0f / sampleRate);
        lines.push_back("latency              : " + toString(latency) +
                        " samples = " + toString(milliseconds) + " ms\n");
    } else {
        lines.push_back("latency              : 0\n");
    }
    return lines;
}

} // namespace vlk
