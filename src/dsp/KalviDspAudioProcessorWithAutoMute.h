#pragma once

#include "dsp/KalviDspAudioProcessorBase.h"
#include "dsp/KalviDspInletsActivityAnalyzer.h"

namespace vlk {

// The frame's first refinement: knows which inputs and outputs are connected in the host and which connected
// inputs carry more than digital silence, so that mute, bypass and the choice to run Process obey them.
class AudioProcessorWithAutoMute : public AudioProcessorBase
{
public:
    AudioProcessorWithAutoMute(std::uint32_t numInlets, std::uint32_t numOutlets);
    ~AudioProcessorWithAutoMute() override;

    bool isChannelPassing(std::uint32_t channel) const override;
    bool isOutputConnected(std::uint32_t channel) const override;
    bool isInputActive(std::uint32_t channel) const override;
    bool hasConnectedOutput() const override;
    void setNumInletsStatus(std::uint32_t numInletsInStatus) override;
    void setNumOutletsStatus(std::uint32_t numOutletsInStatus) override;
    void analyzeInputs(float** inputs, std::uint32_t numSamples) override;

    // From dsp64, while audio is stopped: the host's connection count of each input, then of each output.
    virtual void setConnections(const short* counts);
    // From any thread.
    virtual void setAutoMuteEnabled(bool shouldBeEnabled);
    // From any thread: seconds of silence before an input counts as inactive, at most 500; any time up to
    // 1 second is a second, and a time not above 0 turns the analysis off.
    virtual void setAutoMute(float seconds);

protected:
    InletsActivityAnalyzer activityAnalyzer;
};

} // namespace vlk
