#include "dsp/KalviDspInletsActivityAnalyzer.h"

#include <algorithm>

namespace vlk {

InletsActivityAnalyzer::InletsActivityAnalyzer(std::uint32_t numInlets, std::uint32_t numOutlets)
    : InletsOutletsConnectionsStatus(numInlets, numOutlets), inletActive(numInlets), silentSamples(numInlets)
{
    reset();
}

InletsActivityAnalyzer::~InletsActivityAnalyzer() = default;

void InletsActivityAnalyzer::setNumInlets(std::uint32_t numInlets)
{
    inletActive.resize(numInlets);
    silentSamples.resize(numInlets);
}

void InletsActivityAnalyzer::reset()
{
    std::fill(silentSamples.begin(), silentSamples.end(), std::uint64_t(0));
    std::fill(inletActive.begin(), inletActive.end(), short(1));
}

void InletsActivityAnalyzer::analyze(float** inputs, std::uint32_t numInputs, std::uint32_t numSamples)
{
    // A status sized apart from the processor's inputs never reads past the vectors it was given.
    const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(numInputs, inletStatus.size()));
    if (!enabled.load(std::memory_order_relaxed)) {
        for (std::uint32_t inlet = 0; inlet < count; ++inlet)
            inletActive[inlet] = inletStatus[inlet] == 1 ? 1 : 0;
        return;
    }
    const std::uint64_t threshold = thresholdSamples.load(std::memory_order_relaxed);
    for (std::uint32_t inlet = 0; inlet < count; ++inlet)
        analyzeInlet(inlet, inputs[inlet], numSamples, threshold);
}

void InletsActivityAnalyzer::analyzeInlet(std::uint32_t inlet, const float* samples, std::uint32_t numSamples,
                                          std::uint64_t threshold)
{
    if (inletStatus[inlet] != 1) {
        inletActive[inlet] = 0;
        return;
    }
    // The first sample that is greater or smaller than 0 ends the scan: a NaN counts as silence.
    const bool sounding = std::any_of(samples, samples + numSamples,
                                      [](float sample) { return sample > 0.0f || sample < 0.0f; });
    if (sounding) {
        silentSamples[inlet] = 0;
        inletActive[inlet] = 1;
    } else {
        silentSamples[inlet] += numSamples;
    }
    if (silentSamples[inlet] >= threshold) {
        // Held at the threshold so that the counter cannot run away.
        silentSamples[inlet] = threshold;
        inletActive[inlet] = 0;
    }
}

void InletsActivityAnalyzer::setEnabled(bool shouldBeEnabled) noexcept
{
    enabled.store(shouldBeEnabled, std::memory_order_relaxed);
}

void InletsActivityAnalyzer::setThreshold(float seconds) noexcept
{
    if (!(seconds > 0.0f)) {
        enabled.store(false, std::memory_order_relaxed);
        return;
    }
    enabled.store(true, std::memory_order_relaxed);
    // Any time between 0 and 1 second is a second.
    const float limited = std::clamp(seconds, 1.0f, 500.0f);
    thresholdSeconds.store(limited, std::memory_order_relaxed);
    thresholdSamples.store(static_cast<std::uint64_t>(limited * sampleRate), std::memory_order_relaxed);
}

} // namespace vlk
