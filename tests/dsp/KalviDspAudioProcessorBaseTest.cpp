#include "dsp/KalviDspAudioProcessorBase.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace vlk {
namespace {

// A product that is a denormal unless the denormal mode flushes it; volatile keeps it from being folded.
float denormalProduct()
{
    volatile float a = 1e-20f;
    volatile float b = 1e-20f;
    return a * b;
}

// Output c of each vector is input c, or 0 when there is none, plus 10 * (c + 1): every output tells
// that Process wrote it and from what.
class RecordingProcessor : public AudioProcessorBase
{
public:
    RecordingProcessor(std::uint32_t numInlets, std::uint32_t numOutlets)
        : AudioProcessorBase(numInlets, numOutlets)
    {
    }

    void Process(float** outputs, float** inputs, std::uint32_t numSamples) override
    {
        ++processCalls;
        productInProcess = denormalProduct();
        for (std::uint32_t channel = 0; channel < numOutlets; ++channel)
            for (std::uint32_t frame = 0; frame < numSamples; ++frame)
                outputs[channel][frame] = (channel < numInlets ? inputs[channel][frame] : 0.0f) +
                                          10.0f * static_cast<float>(channel + 1);
    }
    void sampleRateChanged(float rate) override { events.push_back("rate " + std::to_string(rate)); }
    void vectorSizeChanged(std::uint32_t size) override { events.push_back("size " + std::to_string(size)); }
    void prepareFinished() override { events.push_back("finished"); }
    bool hasConnectedOutput() const override { return connected; }
    std::uint32_t getLatency() const override { return latency; }
    void beforeProcess() override { events.push_back("before"); }
    void analyzeInputs(float** inputs, std::uint32_t numSamples) override
    {
        events.push_back(std::string("analyze ") + (inputs == nullptr ? "null " : "inputs ") +
                         std::to_string(numSamples));
    }

    void setForceProcessing(bool force) { forceProcessing = force; }

    int processCalls = 0;
    float productInProcess = -1.0f;
    std::vector<std::string> events;
    bool connected = true;
    std::uint32_t latency = 0;
};

// The host's side of perform: double vectors of one size for every inlet and outlet.
class HostVectors
{
public:
    HostVectors(std::uint32_t numInlets, std::uint32_t numOutlets, std::uint32_t numSamples)
        : inputs(numInlets, std::vector<double>(numSamples)),
          outputs(numOutlets, std::vector<double>(numSamples, -99.0))
    {
        for (auto& input : inputs)
            inputPointers.push_back(input.data());
        for (auto& output : outputs)
            outputPointers.push_back(output.data());
    }

    // Input c, frame f holds c + 0.1 * (f + 1).
    void fillInputs()
    {
        for (std::size_t channel = 0; channel < inputs.size(); ++channel)
            for (std::size_t frame = 0; frame < inputs[channel].size(); ++frame)
                inputs[channel][frame] = static_cast<double>(channel) + 0.1 * static_cast<double>(frame + 1);
    }

    void perform(AudioProcessorBase& processor, long disabled = 0, long mute = 0, long bypass = 0)
    {
        processor.perform(outputPointers.data(), inputPointers.data(),
                          static_cast<std::uint32_t>(outputs.empty() ? inputs[0].size() : outputs[0].size()),
                          disabled, mute, bypass);
    }

    // What a float pipeline makes of input c, frame f.
    double narrowed(std::size_t channel, std::size_t frame) const
    {
        return static_cast<double>(static_cast<float>(inputs[channel][frame]));
    }

    std::vector<std::vector<double>> inputs;
    std::vector<std::vector<double>> outputs;

private:
    std::vector<double*> inputPointers;
    std::vector<double*> outputPointers;
};

// perform and prepare set the denormal mode for good on the calling thread: each case starts from the default
// floating-point environment, whatever ran before on this thread, and gives the one it found back.
class AudioProcessorTest : public testing::Test
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

using AudioProcessorBasePrepare = AudioProcessorTest;
using AudioProcessorBasePerform = AudioProcessorTest;
using AudioProcessorBaseBypass = AudioProcessorTest;
using AudioProcessorBaseDspStatus = AudioProcessorTest;

TEST_F(AudioProcessorBasePrepare, LimitsTheRateAndDefaultsZeros)
{
    RecordingProcessor processor(0, 1);
    processor.prepare(64, false, 0.0f);
    EXPECT_EQ(processor.getSampleRate(), 44100.0f);
    EXPECT_EQ(processor.getVectorSize(), 64u);
    processor.prepare(0, false, 7000.0f);
    EXPECT_EQ(processor.getSampleRate(), 8000.0f);
    EXPECT_EQ(processor.getVectorSize(), 512u);
    processor.prepare(128, false, 400000.0f);
    EXPECT_EQ(processor.getSampleRate(), 384000.0f);
    processor.prepare(128, false, -48000.0f);
    EXPECT_EQ(processor.getSampleRate(), 8000.0f);
    processor.prepare(128, false, std::nanf(""));
    EXPECT_EQ(processor.getSampleRate(), 44100.0f);
    processor.prepare(128, false, 8000.0f);
    EXPECT_EQ(processor.getSampleRate(), 8000.0f);
    processor.prepare(128, false, 384000.0f);
    EXPECT_EQ(processor.getSampleRate(), 384000.0f);
}

TEST_F(AudioProcessorBasePrepare, NotifiesInOrderOnlyOnChangeOrForce)
{
    RecordingProcessor processor(0, 1);
    processor.prepare(512, false, 44100.0f);
    EXPECT_TRUE(processor.events.empty());
    processor.prepare(512, true, 44100.0f);
    EXPECT_EQ(processor.events, (std::vector<std::string>{"rate 44100.000000", "size 512", "finished"}));
    processor.events.clear();
    // A change of either value notifies all three, with the values as stored. 0 is compared as given, so it
    // differs from the 512 that it stands for.
    processor.prepare(0, false, 44100.0f);
    EXPECT_EQ(processor.events, (std::vector<std::string>{"rate 44100.000000", "size 512", "finished"}));
    processor.events.clear();
    processor.prepare(256, false, 0.0f);
    EXPECT_EQ(processor.events, (std::vector<std::string>{"rate 44100.000000", "size 256", "finished"}));
    processor.events.clear();
    processor.prepare(256, false, 1e6f);
    EXPECT_EQ(processor.events, (std::vector<std::string>{"rate 384000.000000", "size 256", "finished"}));
}

TEST_F(AudioProcessorBasePrepare, SetsTheDenormalModeAlsoWhenNothingChanged)
{
    RecordingProcessor processor(0, 1);
    ASSERT_GT(denormalProduct(), 0.0f);
    processor.prepare(512, false, 44100.0f);
    EXPECT_EQ(denormalProduct(), 0.0f);
}

TEST_F(AudioProcessorBasePerform, NarrowsInputsAndWidensOutputs)
{
    RecordingProcessor processor(2, 3);
    HostVectors host(2, 3, 4);
    host.fillInputs();
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 1);
    for (std::size_t frame = 0; frame < 4; ++frame) {
        EXPECT_EQ(host.outputs[0][frame],
                  static_cast<double>(static_cast<float>(host.narrowed(0, frame)) + 10.0f));
        EXPECT_EQ(host.outputs[1][frame],
                  static_cast<double>(static_cast<float>(host.narrowed(1, frame)) + 20.0f));
        EXPECT_EQ(host.outputs[2][frame], 30.0);
    }
    EXPECT_EQ(processor.events, (std::vector<std::string>{"before", "analyze inputs 4"}));
}

TEST_F(AudioProcessorBasePerform, ProcessRunsInTheDenormalMode)
{
    RecordingProcessor processor(0, 1);
    HostVectors host(0, 1, 8);
    host.perform(processor);
    EXPECT_EQ(processor.productInProcess, 0.0f);
}

TEST_F(AudioProcessorBasePerform, NoInputsGiveNullToTheAnalysis)
{
    RecordingProcessor processor(0, 2);
    HostVectors host(0, 2, 16);
    host.perform(processor);
    EXPECT_EQ(processor.events, (std::vector<std::string>{"before", "analyze null 16"}));
    EXPECT_EQ(host.outputs[1], std::vector<double>(16, 20.0));
}

TEST_F(AudioProcessorBasePerform, MuteWinsOverBypassAndSilencesTheOutputs)
{
    RecordingProcessor processor(2, 2);
    HostVectors host(2, 2, 8);
    host.fillInputs();
    host.perform(processor);
    host.perform(processor, 0, 1, 1);
    EXPECT_EQ(processor.processCalls, 1);
    EXPECT_EQ(host.outputs[0], std::vector<double>(8, 0.0));
    EXPECT_EQ(host.outputs[1], std::vector<double>(8, 0.0));
    host.perform(processor, 1, 0, 0);
    EXPECT_EQ(processor.processCalls, 1);
    EXPECT_EQ(host.outputs[0], std::vector<double>(8, 0.0));
    // The analysis runs on every vector, whatever runs after it.
    EXPECT_EQ(processor.events.size(), 6u);
}

TEST_F(AudioProcessorBasePerform, OnlyTheValueOneSwitches)
{
    RecordingProcessor processor(1, 1);
    HostVectors host(1, 1, 4);
    host.perform(processor, 2, -1, 2);
    EXPECT_EQ(processor.processCalls, 1);
}

TEST_F(AudioProcessorBasePerform, NoConnectedOutputMeansNoProcess)
{
    RecordingProcessor processor(1, 2);
    HostVectors host(1, 2, 8);
    host.fillInputs();
    host.perform(processor);
    processor.connected = false;
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 1);
    EXPECT_EQ(host.outputs[0], std::vector<double>(8, 0.0));
    EXPECT_EQ(host.outputs[1], std::vector<double>(8, 0.0));
    processor.setForceProcessing(true);
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 2);
}

TEST_F(AudioProcessorBasePerform, ProcessorWithoutOutputsStillProcesses)
{
    RecordingProcessor processor(1, 0);
    processor.connected = false;
    HostVectors host(1, 0, 8);
    host.perform(processor);
    EXPECT_EQ(processor.processCalls, 1);
}

TEST_F(AudioProcessorBasePerform, VectorSizeMayChangeFromCallToCall)
{
    RecordingProcessor processor(1, 1);
    for (std::uint32_t size : {64u, 256u, 1u, 64u}) {
        HostVectors host(1, 1, size);
        host.fillInputs();
        host.perform(processor);
        EXPECT_EQ(host.outputs[0][size - 1],
                  static_cast<double>(static_cast<float>(host.narrowed(0, size - 1)) + 10.0f));
    }
}

TEST_F(AudioProcessorBaseBypass, ThreeInputsFourOutputsPassThreeAndZeroTheFourth)
{
    RecordingProcessor processor(3, 4);
    HostVectors host(3, 4, 8);
    host.fillInputs();
    host.perform(processor);
    EXPECT_EQ(host.outputs[3], std::vector<double>(8, 40.0));
    host.perform(processor, 0, 0, 1);
    EXPECT_EQ(processor.processCalls, 1);
    for (std::size_t channel = 0; channel < 3; ++channel)
        for (std::size_t frame = 0; frame < 8; ++frame)
            EXPECT_EQ(host.outputs[channel][frame], host.narrowed(channel, frame));
    EXPECT_EQ(host.outputs[3], std::vector<double>(8, 0.0));
}

TEST_F(AudioProcessorBaseBypass, FourInputsThreeOutputsPassTheFirstThree)
{
    RecordingProcessor processor(4, 3);
    HostVectors host(4, 3, 8);
    host.fillInputs();
    host.perform(processor, 0, 0, 1);
    EXPECT_EQ(processor.processCalls, 0);
    for (std::size_t channel = 0; channel < 3; ++channel)
        for (std::size_t frame = 0; frame < 8; ++frame)
            EXPECT_EQ(host.outputs[channel][frame], host.narrowed(channel, frame));
}

TEST_F(AudioProcessorBaseBypass, DoubleVectorsFollowTheSameSteps)
{
    RecordingProcessor processor(1, 2);
    std::vector<double> input{0.1, 0.2, 0.3};
    std::vector<double> first(3, 5.0);
    std::vector<double> second(3, 5.0);
    double* inputs[] = {input.data()};
    double* outputs[] = {first.data(), second.data()};
    processor.ProcessBypass(outputs, inputs, 3);
    EXPECT_EQ(first, input);
    EXPECT_EQ(second, std::vector<double>(3, 0.0));
    // In place: nothing to copy.
    double* same[] = {input.data(), second.data()};
    processor.ProcessBypass(same, inputs, 3);
    EXPECT_EQ(input, (std::vector<double>{0.1, 0.2, 0.3}));
    first.assign(3, 5.0);
    processor.ProcessMute(outputs, 3);
    EXPECT_EQ(first, std::vector<double>(3, 0.0));
}

TEST(AudioProcessorBaseNames, NumberedFromOneAndDumpoutBeyond)
{
    RecordingProcessor processor(2, 3);
    EXPECT_EQ(processor.getInputName(0), "input #1");
    EXPECT_EQ(processor.getInputName(1), "input #2");
    EXPECT_EQ(processor.getInputName(2), "");
    EXPECT_EQ(processor.getInputName(-1), "");
    EXPECT_EQ(processor.getOutputName(0), "output #1");
    EXPECT_EQ(processor.getOutputName(2), "output #3");
    EXPECT_EQ(processor.getOutputName(3), "dumpout");
    EXPECT_EQ(processor.getOutputName(-1), "dumpout");
    EXPECT_EQ(processor.getOutputName(1000), "dumpout");
    EXPECT_TRUE(processor.getExtraInfo().empty());
}

std::vector<String> statusOf(const AudioProcessorBase& processor)
{
    const Vector<String> lines = processor.getDspStatus();
    return {lines.begin(), lines.end()};
}

TEST_F(AudioProcessorBaseDspStatus, TextsOfRateVectorSizeAndLatency)
{
    RecordingProcessor processor(0, 1);
    EXPECT_EQ(statusOf(processor),
              (std::vector<String>{"samplerate           : 44.1 kHz\n", "buffersize           : 512\n",
                                   "latency              : 0\n"}));
    processor.prepare(64, false, 48000.0f);
    processor.latency = 480;
    EXPECT_EQ(statusOf(processor),
              (std::vector<String>{"samplerate           : 48 kHz\n", "buffersize           : 64\n",
                                   "latency              : 480 samples = 10 ms\n"}));
    // The milliseconds are truncated: 100 frames at 22050 Hz are 4.53 ms.
    processor.prepare(64, false, 22050.0f);
    processor.latency = 100;
    EXPECT_EQ(statusOf(processor)[0], "samplerate           : 22050 Hz\n");
    EXPECT_EQ(statusOf(processor)[2], "latency              : 100 samples = 4 ms\n");
    // Muted or bypassed, no latency is told.
    HostVectors host(0, 1, 4);
    host.perform(processor, 0, 0, 1);
    EXPECT_EQ(statusOf(processor)[2], "latency              : 0\n");
    host.perform(processor, 0, 1, 0);
    EXPECT_EQ(statusOf(processor)[2], "latency              : 0\n");
    host.perform(processor);
    EXPECT_EQ(statusOf(processor)[2], "latency              : 100 samples = 4 ms\n");
}

} // namespace
} // namespace vlk
