#include "dsp/KalviDspAudioProcessorWithAutoMute.h"

#include "dsp/KalviDspAudioProcessorWithOscInAudioInterrupt.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cfenv>
#include <cstdint>
#include <thread>
#include <vector>

namespace vlk {
namespace {

// Writes 7 into every output and counts its calls.
template <typename Base> class SevensProcessor : public Base
{
public:
    using Base::Base;

    void Process(float** outputs, float**, std::uint32_t numSamples) override
    {
        ++processCalls;
        for (std::uint32_t channel = 0; channel < this->getNumOutlets(); ++channel)
            for (std::uint32_t frame = 0; frame < numSamples; ++frame)
                outputs[channel][frame] = 7.0f;
    }

    int processCalls = 0;
};

using Processor = SevensProcessor<AudioProcessorWithAutoMute>;

// The host's double vectors; input c holds c + 1 on every frame.
class Host
{
public:
    Host(std::uint32_t numInlets, std::uint32_t numOutlets, std::uint32_t numSamples)
        : numSamples(numSamples), inputs(numInlets), outputs(numOutlets, std::vector<double>(numSamples))
    {
        for (std::uint32_t channel = 0; channel < numInlets; ++channel) {
            inputs[channel].assign(numSamples, channel + 1.0);
            inputPointers.push_back(inputs[channel].data());
        }
        for (auto& output : outputs)
            outputPointers.push_back(output.data());
    }

    void perform(AudioProcessorBase& processor, long bypass = 0, long mute = 0, int times = 1)
    {
        for (int vector = 0; vector < times; ++vector)
            processor.perform(outputPointers.data(), inputPointers.data(), numSamples, 0, mute, bypass);
    }
    void silenceInputs()
    {
        for (auto& input : inputs)
            std::fill(input.begin(), input.end(), 0.0);
    }

    std::uint32_t numSamples;
    std::vector<std::vector<double>> inputs;
    std::vector<std::vector<double>> outputs;

private:
    std::vector<double*> inputPointers;
    std::vector<double*> outputPointers;
};

// perform and prepare set the denormal mode for good on the calling thread: each case starts from the default
// floating-point environment, whatever ran before on this thread, and gives the one it found back.
class AudioProcessorWithAutoMuteTest : public testing::Test
{
protected:
    void SetUp() override
    {
        std::fegetenv(&environment);
        std::fesetenv(FE_DFL_ENV);
    }
    void TearDown() override { std::fesetenv(&environment); }

private:
    std::fenv_t environment;
};

using AudioProcessorWithAutoMuteConnections = AudioProcessorWithAutoMuteTest;
using AudioProcessorWithAutoMuteBypass = AudioProcessorWithAutoMuteTest;
using AudioProcessorWithAutoMuteAnalysis = AudioProcessorWithAutoMuteTest;

TEST_F(AudioProcessorWithAutoMuteConnections, NoOutputConnectedStopsProcess)
{
    Processor processor(1, 2);
    Host host(1, 2, 16);
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 1);
    const short counts[] = {1, 0, 0};
    processor.setConnections(counts);
    EXPECT_FALSE(processor.hasConnectedOutput());
    host.perform(processor, 0, 0, 5);
    EXPECT_EQ(processor.processCalls, 1);
    const short one[] = {0, 0, 1};
    processor.setConnections(one);
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 2);
}

TEST_F(AudioProcessorWithAutoMuteConnections, MuteZeroesConnectedOutputsOnly)
{
    Processor processor(0, 2);
    Host host(0, 2, 8);
    host.perform(processor);
    const short counts[] = {1, 0};
    processor.setConnections(counts);
    host.perform(processor, 0, 1);
    EXPECT_EQ(host.outputs[0], std::vector<double>(8, 0.0));
    // What the host does not listen to is not worked on: the last vector stays.
    EXPECT_EQ(host.outputs[1], std::vector<double>(8, 7.0));
    EXPECT_TRUE(processor.isOutputConnected(0));
    EXPECT_FALSE(processor.isOutputConnected(1));
}

TEST_F(AudioProcessorWithAutoMuteBypass, DisconnectedSidesStopTheChannelFromPassing)
{
    Processor processor(3, 3);
    Host host(3, 3, 8);
    host.perform(processor);
    // Input 1 disconnected with its output connected; output 2 disconnected with its input connected.
    const short counts[] = {1, 0, 1, 1, 1, 0};
    processor.setConnections(counts);
    EXPECT_TRUE(processor.isChannelPassing(0));
    EXPECT_FALSE(processor.isChannelPassing(1));
    EXPECT_FALSE(processor.isChannelPassing(2));
    host.perform(processor, 1);
    EXPECT_EQ(host.outputs[0], std::vector<double>(8, 1.0));
    EXPECT_EQ(host.outputs[1], std::vector<double>(8, 0.0));
    EXPECT_EQ(host.outputs[2], std::vector<double>(8, 7.0));
}

TEST_F(AudioProcessorWithAutoMuteBypass, InactiveInputIsNotPassed)
{
    Processor processor(1, 1);
    processor.setAutoMute(1.0f);
    Host host(1, 1, 44100);
    host.silenceInputs();
    host.perform(processor);
    EXPECT_FALSE(processor.isInputActive(0));
    host.inputs[0][44099] = 0.5;
    host.perform(processor, 1);
    EXPECT_TRUE(processor.isInputActive(0));
    EXPECT_EQ(host.outputs[0][44099], 0.5);
}

TEST_F(AudioProcessorWithAutoMuteAnalysis, HalfASecondIsOneSecondOf44100Frames)
{
    Processor processor(1, 1);
    processor.setAutoMute(0.5f);
    Host host(1, 1, 512);
    host.silenceInputs();
    host.perform(processor, 0, 0, 86);
    EXPECT_TRUE(processor.isInputActive(0));
    host.perform(processor);
    EXPECT_FALSE(processor.isInputActive(0));
    // The analysis goes on while muted and while Process does not run.
    host.inputs[0][0] = 1.0;
    host.perform(processor, 0, 1);
    EXPECT_TRUE(processor.isInputActive(0));
}

TEST_F(AudioProcessorWithAutoMuteAnalysis, RateOfTheProcessorDoesNotChangeTheThreshold)
{
    Processor processor(1, 1);
    processor.prepare(512, false, 96000.0f);
    processor.setAutoMute(1.0f);
    Host host(1, 1, 512);
    host.silenceInputs();
    host.perform(processor, 0, 0, 86);
    EXPECT_TRUE(processor.isInputActive(0));
    host.perform(processor);
    EXPECT_FALSE(processor.isInputActive(0));
}

TEST_F(AudioProcessorWithAutoMuteAnalysis, ZeroTurnsTheAnalysisOff)
{
    Processor processor(2, 1);
    processor.setAutoMute(1.0f);
    Host host(2, 1, 44100);
    host.silenceInputs();
    host.perform(processor);
    EXPECT_FALSE(processor.isInputActive(0));
    processor.setAutoMute(0.0f);
    host.perform(processor);
    EXPECT_TRUE(processor.isInputActive(0));
    EXPECT_TRUE(processor.isInputActive(1));
    processor.setAutoMuteEnabled(true);
    host.perform(processor);
    EXPECT_FALSE(processor.isInputActive(0));
}

TEST_F(AudioProcessorWithAutoMuteAnalysis, WithoutInputsOnlyTheOutputsDecide)
{
    SevensProcessor<AudioProcessorWithOscInAudioInterrupt> processor(0, 1);
    processor.setAutoMute(1.0f);
    Host host(0, 1, 44100);
    host.perform(processor, 0, 0, 3);
    EXPECT_EQ(processor.processCalls, 3);
    const short none[] = {0};
    processor.setConnections(none);
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 3);
}

// The attribute's messages come from any thread while the audio thread analyses: a race here is what the
// thread sanitizer build looks for.
TEST_F(AudioProcessorWithAutoMuteAnalysis, SettingsChangeWhileTheAudioThreadRuns)
{
    Processor processor(2, 2);
    Host host(2, 2, 64);
    host.silenceInputs();
    std::atomic<bool> done = false;
    std::thread messages([&] {
        for (int message = 0; !done.load(); ++message) {
            processor.setAutoMute(static_cast<float>(message % 4));
            processor.setAutoMuteEnabled(message % 3 == 0);
            processor.getDspStatus();
        }
    });
    host.perform(processor, 0, 0, 2000);
    done = true;
    messages.join();
    EXPECT_EQ(processor.processCalls, 2000);
}

} // namespace
} // namespace vlk
