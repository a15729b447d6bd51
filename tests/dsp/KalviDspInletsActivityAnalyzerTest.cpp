#include "dsp/KalviDspInletsActivityAnalyzer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace vlk {
namespace {

// Vectors of numInlets inputs, silent until written.
class Vectors
{
public:
    Vectors(std::uint32_t numInlets, std::uint32_t numSamples)
        : samples(numInlets, std::vector<float>(numSamples))
    {
        for (auto& input : samples)
            pointers.push_back(input.data());
    }

    void feed(InletsActivityAnalyzer& analyzer, int times = 1)
    {
        for (int vector = 0; vector < times; ++vector)
            analyzer.analyze(pointers.data(), static_cast<std::uint32_t>(samples.size()),
                             static_cast<std::uint32_t>(samples[0].size()));
    }

    std::vector<std::vector<float>> samples;

private:
    std::vector<float*> pointers;
};

TEST(InletsActivityAnalyzerThreshold, SecondsBecomeFramesAt44100)
{
    InletsActivityAnalyzer analyzer(1, 1);
    EXPECT_FALSE(analyzer.isEnabled());
    EXPECT_EQ(analyzer.getThresholdSeconds(), 20.0f);
    EXPECT_EQ(analyzer.getThresholdSamples(), 882000u);
    analyzer.setThreshold(0.5f);
    EXPECT_TRUE(analyzer.isEnabled());
    EXPECT_EQ(analyzer.getThresholdSeconds(), 1.0f);
    EXPECT_EQ(analyzer.getThresholdSamples(), 44100u);
    analyzer.setThreshold(2.5f);
    EXPECT_EQ(analyzer.getThresholdSamples(), 110250u);
    analyzer.setThreshold(1000.0f);
    EXPECT_EQ(analyzer.getThresholdSeconds(), 500.0f);
    EXPECT_EQ(analyzer.getThresholdSamples(), 22050000u);
}

TEST(InletsActivityAnalyzerThreshold, NothingAboveZeroTurnsOffAndKeepsTheThreshold)
{
    InletsActivityAnalyzer analyzer(1, 1);
    for (float seconds : {0.0f, -3.0f, std::numeric_limits<float>::quiet_NaN()}) {
        analyzer.setThreshold(3.0f);
        analyzer.setThreshold(seconds);
        EXPECT_FALSE(analyzer.isEnabled()) << seconds;
        EXPECT_EQ(analyzer.getThresholdSeconds(), 3.0f);
        EXPECT_EQ(analyzer.getThresholdSamples(), 132300u);
    }
    analyzer.setEnabled(true);
    EXPECT_TRUE(analyzer.isEnabled());
    EXPECT_EQ(analyzer.getThresholdSamples(), 132300u);
}

TEST(InletsActivityAnalyzerSilence, InactiveOnThe87thVectorOf512AtOneSecond)
{
    InletsActivityAnalyzer analyzer(1, 1);
    analyzer.setThreshold(1.0f);
    Vectors vectors(1, 512);
    vectors.feed(analyzer, 86);
    EXPECT_TRUE(analyzer.isInletActive(0));
    vectors.feed(analyzer);
    EXPECT_FALSE(analyzer.isInletActive(0));
    // Held at the threshold: one sounding vector brings it back at once, and the count starts over.
    vectors.feed(analyzer, 1000);
    vectors.samples[0][511] = 1e-3f;
    vectors.feed(analyzer);
    EXPECT_TRUE(analyzer.isInletActive(0));
    vectors.samples[0][511] = 0.0f;
    vectors.feed(analyzer, 86);
    EXPECT_TRUE(analyzer.isInletActive(0));
    vectors.feed(analyzer);
    EXPECT_FALSE(analyzer.isInletActive(0));
}

TEST(InletsActivityAnalyzerSilence, NegativeSamplesSoundAndNaNOrSignedZeroDoNot)
{
    InletsActivityAnalyzer analyzer(3, 0);
    analyzer.setThreshold(1.0f);
    Vectors vectors(3, 44100);
    vectors.samples[0][100] = -1e-30f;
    vectors.samples[1][100] = std::numeric_limits<float>::quiet_NaN();
    vectors.samples[2][100] = -0.0f;
    vectors.feed(analyzer);
    EXPECT_TRUE(analyzer.isInletActive(0));
    EXPECT_FALSE(analyzer.isInletActive(1));
    EXPECT_FALSE(analyzer.isInletActive(2));
}

TEST(InletsActivityAnalyzerSilence, InputsCountEachOnItsOwn)
{
    InletsActivityAnalyzer analyzer(2, 1);
    analyzer.setThreshold(1.0f);
    Vectors vectors(2, 4410);
    vectors.samples[1][0] = 0.5f;
    vectors.feed(analyzer, 10);
    EXPECT_FALSE(analyzer.isInletActive(0));
    EXPECT_TRUE(analyzer.isInletActive(1));
}

TEST(InletsActivityAnalyzerDisabled, ConnectedInputsAreActiveAndCountersWait)
{
    InletsActivityAnalyzer analyzer(2, 1);
    analyzer.setThreshold(1.0f);
    Vectors vectors(2, 512);
    vectors.feed(analyzer, 80);
    analyzer.setThreshold(0.0f);
    const short counts[] = {1, 0, 1};
    analyzer.setConnections(counts);
    vectors.feed(analyzer, 50);
    EXPECT_TRUE(analyzer.isInletActive(0));
    EXPECT_FALSE(analyzer.isInletActive(1));
    // Back on, the silence counted before goes on from where it stood.
    analyzer.setEnabled(true);
    vectors.feed(analyzer, 6);
    EXPECT_TRUE(analyzer.isInletActive(0));
    vectors.feed(analyzer);
    EXPECT_FALSE(analyzer.isInletActive(0));
}

TEST(InletsActivityAnalyzerDisabled, DisconnectedInputGoesInactiveAtOnceKeepingItsCount)
{
    InletsActivityAnalyzer analyzer(1, 1);
    analyzer.setThreshold(1.0f);
    Vectors vectors(1, 512);
    vectors.samples[0][0] = 1.0f;
    const short disconnected[] = {0, 1};
    analyzer.setConnections(disconnected);
    vectors.feed(analyzer);
    EXPECT_FALSE(analyzer.isInletActive(0));
    // Reconnected, it is judged by its samples again.
    const short connected[] = {1, 1};
    analyzer.setConnections(connected);
    vectors.feed(analyzer);
    EXPECT_TRUE(analyzer.isInletActive(0));
}

TEST(InletsActivityAnalyzerEmptyVector, InactiveOnlyWhenTheCountStandsAtTheThreshold)
{
    InletsActivityAnalyzer analyzer(1, 1);
    analyzer.setThreshold(1.0f);
    Vectors empty(1, 0);
    Vectors silent(1, 44100);
    empty.feed(analyzer, 3);
    EXPECT_TRUE(analyzer.isInletActive(0));
    silent.feed(analyzer);
    EXPECT_FALSE(analyzer.isInletActive(0));
    analyzer.reset();
    EXPECT_TRUE(analyzer.isInletActive(0));
    empty.feed(analyzer);
    EXPECT_TRUE(analyzer.isInletActive(0));
}

TEST(InletsActivityAnalyzerSizes, NewInputCountStartsActiveWithNoSilenceCounted)
{
    InletsActivityAnalyzer analyzer(1, 1);
    analyzer.setThreshold(1.0f);
    Vectors one(1, 44100);
    one.feed(analyzer);
    EXPECT_FALSE(analyzer.isInletActive(0));
    analyzer.setNumInletsStatus(2);
    EXPECT_TRUE(analyzer.isInletActive(0));
    EXPECT_TRUE(analyzer.isInletActive(1));
    Vectors two(2, 44099);
    two.feed(analyzer);
    EXPECT_TRUE(analyzer.isInletActive(1));
    // Fewer vectors than the status has inputs: only those given are read.
    analyzer.analyze(nullptr, 0, 512);
    EXPECT_TRUE(analyzer.isInletActive(1));
}

} // namespace
} // namespace vlk
