#pragma once

#include "containers/KalviDspAudioBuffer.h"
#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <atomic>
#include <cstdint>

namespace vlk {

// Root of the library's processors. A derived class writes Process; the frame converts the host's double
// vectors to float and back, and decides on each vector whether Process runs at all: with no connected
// output, muted, or bypassed, it does not.
class AudioProcessorBase
{
public:
    // Told by a processor whose latency changes. Not owned.
    class LatencyListener
    {
    public:
        virtual ~LatencyListener();
        virtual void latencyChanged(std::uint32_t numFrames) = 0;
    };

    AudioProcessorBase(std::uint32_t numInlets, std::uint32_t numOutlets);
    AudioProcessorBase(const AudioProcessorBase&) = delete;
    AudioProcessorBase& operator=(const AudioProcessorBase&) = delete;
    virtual ~AudioProcessorBase();

    // Audio thread. inputs is null when the processor has no input.
    virtual void Process(float** outputs, float** inputs, std::uint32_t numSamples) = 0;
    // Inputs that pass and are active go through, every other connected output is zeroed.
    virtual void ProcessBypass(float** outputs, float** inputs, std::uint32_t numSamples);
    virtual void ProcessBypass(double** outputs, double** inputs, std::uint32_t numSamples);
    // Zeroes every connected output.
    virtual void ProcessMute(float** outputs, std::uint32_t numSamples);
    virtual void ProcessMute(double** outputs, std::uint32_t numSamples);
    // "input #1"...; empty out of range.
    virtual String getInputName(std::int32_t index) const;
    // "output #1"...; "dumpout" out of range.
    virtual String getOutputName(std::int32_t index) const;
    virtual Vector<String> getExtraInfo() const;
    // Notifications of prepare, on the host's thread while audio is off.
    virtual void sampleRateChanged(float newSampleRate);
    virtual void vectorSizeChanged(std::uint32_t newVectorSize);
    virtual void prepareFinished();
    // In frames.
    virtual std::uint32_t getLatency() const;
    // Connection and activity status, asked on the audio thread.
    virtual bool isChannelPassing(std::uint32_t channel) const;
    virtual bool isOutputConnected(std::uint32_t channel) const;
    virtual bool isInputActive(std::uint32_t channel) const;
    virtual bool hasConnectedOutput() const;
    virtual void setNumInletsStatus(std::uint32_t numInletsInStatus);
    virtual void setNumOutletsStatus(std::uint32_t numOutletsInStatus);
    // Audio thread, on every vector before the decision on what runs, also when muted or bypassed.
    virtual void beforeProcess();
    virtual void analyzeInputs(float** inputs, std::uint32_t numSamples);

    // Host's thread, while audio is off. A sample rate of 0 means 44100, others are limited to 8000 to
    // 384000; a vector size of 0 means 512. Without force, unchanged values notify nobody.
    void prepare(std::uint32_t newVectorSize, bool force, float newSampleRate);
    // Audio thread: the host's entry for each vector. disabled, mute and bypass count when they are 1.
    void perform(double** outputs, double** inputs, std::uint32_t numSamples, long disabled, long mute,
                 long bypass);
    // Sample rate, vector size and latency, one line each, each ending in a line feed.
    Vector<String> getDspStatus() const;

    float getSampleRate() const noexcept { return sampleRate; }
    std::uint32_t getVectorSize() const noexcept { return vectorSize; }
    std::uint32_t getNumInlets() const noexcept { return numInlets; }
    std::uint32_t getNumOutlets() const noexcept { return numOutlets; }

protected:
    std::uint32_t numInlets;
    std::uint32_t numOutlets;
    float sampleRate = 44100.0f;
    std::uint32_t vectorSize = 512;
    // Written by perform on the audio thread; atomic because getDspStatus reads them from the message thread.
    std::atomic<bool> muted = false;
    std::atomic<bool> bypassed = false;
    // Lets Process run with no connected output. Nothing in this system sets it.
    bool forceProcessing = false;
    AudioBuffer inputBuffer;
    AudioBuffer outputBuffer;
    AudioBuffer auxiliaryBuffer;
    Vector<LatencyListener*> latencyListeners;

private:
    void chooseAndRun(float** inputs, std::uint32_t numSamples);
};

} // namespace vlk
