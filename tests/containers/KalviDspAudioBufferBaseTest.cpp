#include "containers/KalviDspAudioBufferBase.h"

#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspFile.h"
#include "files/KalviDspScratchFolder.h"
#include "math/KalviDspMatrix.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace vlk {
namespace {

using test::ScratchFolder;

// Channel c, frame f holds 100 * c + f: every sample tells where it came from.
class NumberedBuffer : public AudioBuffer
{
public:
    NumberedBuffer(std::uint32_t numChannels, std::uint64_t numSamples) : AudioBuffer(numChannels, numSamples)
    {
        for (std::uint32_t channel = 0; channel < numChannels; ++channel)
            for (std::uint64_t frame = 0; frame < numSamples; ++frame)
                getChannel(channel)[frame] = static_cast<float>(100 * channel + frame);
    }
};

std::vector<float> channelOf(const AudioBufferBase& buffer, std::uint32_t channel)
{
    return {buffer.getChannel(channel), buffer.getChannel(channel) + buffer.getNumSamples()};
}

TEST(AudioBufferBaseEmpty, ZeroByZeroClearsCopiesAndDiesQuietly)
{
    AudioBuffer buffer;
    buffer.clear();
    Matrix<float> matrix(3, 4, 1.0f);
    buffer.copyToMatrix(matrix);
    EXPECT_EQ(matrix.getNumRows(), 0u);
    EXPECT_EQ(matrix.getNumColumns(), 0u);
    // Channels without frames: the pointers lead nowhere and nothing may be written through them.
    AudioBuffer noFrames(2, 0);
    noFrames.clear();
    noFrames.copyToMatrix(matrix);
    EXPECT_EQ(matrix.getNumRows(), 2u);
    EXPECT_EQ(matrix.getNumColumns(), 0u);
}

TEST(AudioBufferBaseFill, ClearAndFillReachEveryFrameOfTheirChannelsOnly)
{
    NumberedBuffer buffer(3, 5);
    buffer.fillChannel(1, -0.5f);
    EXPECT_EQ(channelOf(buffer, 0), (std::vector<float>{0, 1, 2, 3, 4}));
    EXPECT_EQ(channelOf(buffer, 1), std::vector<float>(5, -0.5f));
    EXPECT_EQ(channelOf(buffer, 2), (std::vector<float>{200, 201, 202, 203, 204}));
    buffer.clear();
    for (std::uint32_t channel = 0; channel < 3; ++channel)
        EXPECT_EQ(channelOf(buffer, channel), std::vector<float>(5, 0.0f));
}

TEST(AudioBufferBaseCopy, CopyToChannelStartsAtTheFrameAndAppliesTheGain)
{
    AudioBuffer buffer(2, 6);
    const float source[] = {1.0f, -2.0f, 3.0f};
    buffer.copyToChannel(0, 2, source, 3, 1.0f);
    buffer.copyToChannel(1, 3, source, 3, 0.5f);
    EXPECT_EQ(channelOf(buffer, 0), (std::vector<float>{0, 0, 1, -2, 3, 0}));
    EXPECT_EQ(channelOf(buffer, 1), (std::vector<float>{0, 0, 0, 0.5f, -1, 1.5f}));
}

TEST(AudioBufferBaseCopy, GainOnTheChannelItselfScalesInPlace)
{
    NumberedBuffer buffer(1, 4);
    buffer.copyToChannel(0, 0, buffer.getChannel(0), 4, -2.0f);
    EXPECT_EQ(channelOf(buffer, 0), (std::vector<float>{0, -2, -4, -6}));
}

TEST(AudioBufferBaseCopy, CopyFromBufferTakesWhatBothSidesHold)
{
    const NumberedBuffer source(2, 10);
    AudioBuffer destination(1, 8);
    // 4 frames are left behind source frame 6, 6 behind destination frame 2: 4 are copied.
    destination.copyFromBuffer(0, 2, source, 1, 6, 1.0f);
    EXPECT_EQ(channelOf(destination, 0), (std::vector<float>{0, 0, 106, 107, 108, 109, 0, 0}));
    // 8 left in the source, 3 in the destination: 3 are copied, scaled.
    destination.copyFromBuffer(0, 5, source, 0, 2, 2.0f);
    EXPECT_EQ(channelOf(destination, 0), (std::vector<float>{0, 0, 106, 107, 108, 4, 6, 8}));
}

TEST(AudioBufferBaseCopy, CopyFromBufferBeyondEitherEndCopiesNothing)
{
    const NumberedBuffer source(1, 4);
    AudioBuffer destination(1, 4);
    destination.copyFromBuffer(0, 0, source, 0, 4, 1.0f);
    destination.copyFromBuffer(0, 0, source, 0, 9, 1.0f);
    destination.copyFromBuffer(0, 4, source, 0, 0, 1.0f);
    destination.copyFromBuffer(0, 7, source, 0, 0, 1.0f);
    EXPECT_EQ(channelOf(destination, 0), std::vector<float>(4, 0.0f));
}

TEST(AudioBufferBaseRamp, RunsFromTheFirstValueToExactlyTheLast)
{
    AudioBuffer buffer(2, 5);
    buffer.rampChannel(0, 0.0f, 1.0f);
    EXPECT_EQ(channelOf(buffer, 0), (std::vector<float>{0.0f, 0.25f, 0.5f, 0.75f, 1.0f}));
    EXPECT_EQ(channelOf(buffer, 1), std::vector<float>(5, 0.0f));

    // Steps that do not land on the end in float: the last frame is the end all the same.
    AudioBuffer uneven(1, 7);
    uneven.rampChannel(0, 0.1f, 0.7f);
    EXPECT_EQ(uneven.getChannel(0)[0], 0.1f);
    EXPECT_EQ(uneven.getChannel(0)[6], 0.7f);
    for (int frame = 0; frame < 6; ++frame)
        EXPECT_NEAR(uneven.getChannel(0)[frame], 0.1 + 0.1 * frame, 1e-6);
    // Descending.
    uneven.rampChannel(0, 3.0f, -3.0f);
    EXPECT_EQ(channelOf(uneven, 0), (std::vector<float>{3, 2, 1, 0, -1, -2, -3}));
}

TEST(AudioBufferBaseRamp, OneFrameHoldsTheEndAndNoFrameIsLeftAlone)
{
    AudioBuffer single(1, 1);
    single.rampChannel(0, 0.0f, 1.0f);
    EXPECT_EQ(single.getChannel(0)[0], 1.0f);
    AudioBuffer empty(1, 0);
    empty.rampChannel(0, 0.0f, 1.0f);
}

TEST(AudioBufferBaseMatrix, RowsAreChannelsAndTheMatrixTakesTheBufferSize)
{
    const NumberedBuffer buffer(2, 3);
    Matrix<float> matrix(5, 1, -1.0f);
    buffer.copyToMatrix(matrix);
    ASSERT_EQ(matrix.getNumRows(), 2u);
    ASSERT_EQ(matrix.getNumColumns(), 3u);
    EXPECT_EQ(std::vector<float>(matrix.getData(), matrix.getData() + 6),
              (std::vector<float>{0, 1, 2, 100, 101, 102}));
    // A matrix of the right size is written in place.
    const float* kept = matrix.getData();
    NumberedBuffer(2, 3).copyToMatrix(matrix);
    EXPECT_EQ(matrix.getData(), kept);
}

TEST(AudioBufferBaseSizes, SetNumChannelsAndSamplesKeepTheOtherDimension)
{
    AudioBuffer buffer(2, 10);
    float* const before = buffer.getChannel(0);
    buffer.setNumChannels(2);
    buffer.setNumSamples(10);
    EXPECT_EQ(buffer.getChannel(0), before);
    buffer.setNumChannels(3);
    EXPECT_EQ(buffer.getNumChannels(), 3u);
    EXPECT_EQ(buffer.getNumSamples(), 10u);
    buffer.setNumSamples(4);
    EXPECT_EQ(buffer.getNumChannels(), 3u);
    EXPECT_EQ(buffer.getNumSamples(), 4u);
    EXPECT_EQ(buffer.getChannel(2), buffer.getChannel(0) + 8);
}

// The MAT-file's data element as the format lays it out: dimensions, name and doubles in column order.
struct MatFileContents
{
    std::uint32_t numRows = 0;
    std::uint32_t numColumns = 0;
    std::string name;
    std::vector<double> values;
};

MatFileContents readMatFile(const std::string& bytes)
{
    const auto word = [&](std::size_t offset) {
        std::uint32_t value = 0;
        std::memcpy(&value, bytes.data() + offset, 4);
        return value;
    };
    MatFileContents contents;
    contents.numRows = word(160);
    contents.numColumns = word(164);
    const std::uint32_t nameLength = word(172);
    contents.name = bytes.substr(176, nameLength);
    const std::size_t dataTag = 176 + (nameLength + 7) / 8 * 8;
    EXPECT_EQ(word(dataTag), 9u);
    contents.values.resize(word(dataTag + 4) / 8);
    std::memcpy(contents.values.data(), bytes.data() + dataTag + 8, contents.values.size() * 8);
    EXPECT_EQ(bytes.size(), dataTag + 8 + contents.values.size() * 8);
    return contents;
}

TEST(AudioBufferBaseSave, MatFileHoldsOneRowPerChannel)
{
    const ScratchFolder folder;
    NumberedBuffer buffer(2, 3);
    buffer.getChannel(1)[2] = 0.1f;
    const String path = folder / "buffer.mat";
    ASSERT_TRUE(buffer.saveToFile(File(path), "samples"));
    const MatFileContents contents = readMatFile(test::readWholeFile(path));
    EXPECT_EQ(contents.numRows, 2u);
    EXPECT_EQ(contents.numColumns, 3u);
    EXPECT_EQ(contents.name, "samples");
    // Column order: both channels of frame 0, then of frame 1... and the float widened exactly.
    EXPECT_EQ(contents.values, (std::vector<double>{0, 100, 1, 101, 2, static_cast<double>(0.1f)}));
}

// A file written by libsndfile, an independent writer: 16-bit, frame f of channel c holds
// (f * 16 - 1000) * (c + 1) as an integer.
std::string writeWav(const ScratchFolder& folder, const std::string& name, int numChannels, int numFrames)
{
    SF_INFO info{};
    info.samplerate = 48000;
    info.channels = numChannels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::string path = folder / name;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    std::vector<short> samples;
    for (int frame = 0; frame < numFrames; ++frame)
        for (int channel = 0; channel < numChannels; ++channel)
            samples.push_back(static_cast<short>((frame * 16 - 1000) * (channel + 1)));
    sf_writef_short(file, samples.data(), numFrames);
    sf_close(file);
    return path;
}

float expectedSample(int channel, int frame)
{
    return static_cast<float>((frame * 16 - 1000) * (channel + 1)) / 32768.0f;
}

TEST(AudioBufferBaseLoad, WholeFileReplacesTheBufferSize)
{
    const ScratchFolder folder;
    const std::string path = writeWav(folder, "three.wav", 3, 300);
    AudioBuffer buffer(1, 7);
    ASSERT_TRUE(buffer.loadFromFile(File(path)));
    ASSERT_EQ(buffer.getNumChannels(), 3u);
    ASSERT_EQ(buffer.getNumSamples(), 300u);
    for (int channel = 0; channel < 3; ++channel)
        for (int frame = 0; frame < 300; frame += 37)
            EXPECT_EQ(buffer.getChannel(channel)[frame], expectedSample(channel, frame))
                << channel << " " << frame;
    EXPECT_EQ(buffer.getChannel(2)[299], expectedSample(2, 299));
}

TEST(AudioBufferBaseLoad, NoPathGivesFalseAndLeavesTheBuffer)
{
    AudioBuffer buffer(2, 5);
    EXPECT_FALSE(buffer.loadFromFile(File()));
    EXPECT_FALSE(buffer.loadChannelFromFile(File(), 0));
    EXPECT_EQ(buffer.getNumChannels(), 2u);
    EXPECT_EQ(buffer.getNumSamples(), 5u);
}

TEST(AudioBufferBaseLoad, OneChannelMakesAMonoBuffer)
{
    const ScratchFolder folder;
    const std::string path = writeWav(folder, "stereo.wav", 2, 100);
    AudioBuffer buffer(4, 10);
    ASSERT_TRUE(buffer.loadChannelFromFile(File(path), 1));
    ASSERT_EQ(buffer.getNumChannels(), 1u);
    ASSERT_EQ(buffer.getNumSamples(), 100u);
    for (int frame = 0; frame < 100; ++frame)
        EXPECT_EQ(buffer.getChannel(0)[frame], expectedSample(1, frame)) << frame;
}

TEST(AudioBufferBaseLoad, ChannelBeyondTheFileThrowsWithTheQuotedPath)
{
    const ScratchFolder folder;
    const std::string path = writeWav(folder, "stereo.wav", 2, 10);
    AudioBuffer buffer(1, 3);
    try {
        buffer.loadChannelFromFile(File(path), 2);
        FAIL() << "no exception";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, "Invalid channel index 2 for file \"" + path + "\"");
    }
    EXPECT_EQ(buffer.getNumChannels(), 1u);
    EXPECT_EQ(buffer.getNumSamples(), 3u);
}

} // namespace
} // namespace vlk
