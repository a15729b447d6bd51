#pragma once

#include "dsp/KalviDspInletsOutletsConnectionsStatus.h"

#include <atomic>
#include <cstdint>

namespace vlk {

// Watches which connected inputs carry anything but digital silence. An input goes inactive the instant its
// run of silence reaches the threshold, and active again with the first vector holding a non-zero sample:
// no ramp, no attack. Analysis runs on the audio thread; the settings come from any thread.
class InletsActivityAnalyzer : public InletsOutletsConnectionsStatus
{
public:
    InletsActivityAnalyzer(std::uint32_t numInlets, std::uint32_t numOutlets);
    ~InletsActivityAnalyzer() override;

    void setNumInlets(std::uint32_t numInlets) override;
    // Every input active, every counter 0.
    void reset() override;

    // Audio thread: one vector of the first numInputs inputs. Allocates nothing.
    void analyze(float** inputs, std::uint32_t numInputs, std::uint32_t numSamples);
    // An index beyond the inputs counts as inactive.
    bool isInletActive(std::uint32_t inlet) const noexcept
    {
        return inlet < inletActive.size() && inletActive[inlet] == 1;
    }

    void setEnabled(bool shouldBeEnabled) noexcept;
    // Not above 0 turns the analysis off and keeps the threshold; otherwise turns it on with the seconds
    // limited to 1 to 500.
    void setThreshold(float seconds) noexcept;
    bool isEnabled() const noexcept { return enabled.load(std::memory_order_relaxed); }
    float getThresholdSeconds() const noexcept { return thresholdSeconds.load(std::memory_order_relaxed); }
    std::uint64_t getThresholdSamples() const noexcept
    {
        return thresholdSamples.load(std::memory_order_relaxed);
    }

private:
    void analyzeInlet(std::uint32_t inlet, const float* samples, std::uint32_t numSamples,
                      std::uint64_t threshold);

    Vector<short> inletActive;
    // Frames of silence in a row, per input.
    Vector<std::uint64_t> silentSamples;
    // Nothing ever sets the processor's rate here: thresholds are counted at 44100 Hz whatever the processor
    // runs at, and that is how the auto-mute time has always been understood.
    const float sampleRate = 44100.0f;
    std::atomic<bool> enabled = false;
    std::atomic<float> thresholdSeconds = 20.0f;
    std::atomic<std::uint64_t> thresholdSamples = 882000;
};

} // namespace vlk
