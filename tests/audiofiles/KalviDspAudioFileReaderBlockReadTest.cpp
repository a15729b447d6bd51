#include "audiofiles/KalviDspAudioFileReader.h"

#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <vector>

using namespace vlk;

namespace {

// A reader without a file format: frame f of channel c holds the 24-bit value (f + 1) * 64 + c,
// left-justified, which the scale to float turns into that value / 2^23 exactly. Frames behind numSamples are
// zeros, written up to the first null channel as the real readers do. Every raw read is recorded.
class FakeReader : public AudioFileReader
{
public:
    struct RawRead
    {
        std::uint64_t numSamples;
        std::uint64_t position;
        std::size_t numChannelsBeforeNull;
    };

    FakeReader(std::uint32_t numChannels, std::uint64_t numSamples, bool floatingPoint = false,
               const File& file = File())
        : AudioFileReader(file)
    {
        metadata.numChannels = numChannels;
        metadata.numSamples = numSamples;
        metadata.sampleRate = 48000.0;
        metadata.bitsPerSample = floatingPoint ? 32 : 24;
        metadata.isFloatingPoint = floatingPoint;
        metadata.formatName = "Fake File";
    }

    String getFileExtension() const override { return ".fake"; }

    static float expectedSample(std::uint32_t channel, std::uint64_t frame)
    {
        return static_cast<float>((frame + 1) * 64 + channel) / 8388608.0f;
    }

    std::vector<RawRead> reads;
    // Frames from this one on are left unwritten, as a raw read of a depth it cannot decode does.
    std::uint64_t firstUnwrittenFrame = ~std::uint64_t{0};
    bool failing = false;

protected:
    bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) override
    {
        std::size_t numChannels = 0;
        while (channels[numChannels] != nullptr)
            ++numChannels;
        reads.push_back({numSamples, position, numChannels});
        if (failing)
            return false;
        for (std::size_t channel = 0; channel < numChannels; ++channel) {
            for (std::uint64_t index = 0; index < numSamples && index < firstUnwrittenFrame; ++index) {
                const std::uint64_t frame = position + index;
                const std::int32_t value = frame < metadata.numSamples
                                               ? static_cast<std::int32_t>(((frame + 1) * 64 + channel) << 8)
                                               : 0;
                write(channels[channel] + index, value);
            }
        }
        return true;
    }

    virtual void write(int* destination, std::int32_t value)
    {
        std::memcpy(destination, &value, sizeof(value));
    }
};

// The same reader for a float file: the words written are the floats themselves.
class FakeFloatReader : public FakeReader
{
public:
    FakeFloatReader(std::uint32_t numChannels, std::uint64_t numSamples)
        : FakeReader(numChannels, numSamples, true)
    {
    }

protected:
    void write(int* destination, std::int32_t value) override
    {
        const float sample = value == 0 ? 0.0f : 2.0f;
        std::memcpy(destination, &sample, sizeof(sample));
    }
};

// A reader with an open file, for the path.
class FakeReaderOnFile : public FakeReader
{
public:
    explicit FakeReaderOnFile(const File& file) : FakeReader(1, 1, false, file)
    {
        fileReader = std::make_unique<FileReader>(file);
    }
};

void fillBuffer(AudioBuffer& buffer, float value)
{
    for (std::uint32_t channel = 0; channel < buffer.getNumChannels(); ++channel)
        buffer.fillChannel(channel, value);
}

} // namespace

TEST(AudioFileReaderReadSamples, ZeroFramesSucceedEvenBeyondTheBuffer)
{
    FakeReader reader(2, 100);
    AudioBuffer buffer(2, 10);
    EXPECT_TRUE(reader.readSamples(buffer, 1000, 0, 0));
    EXPECT_TRUE(reader.reads.empty());
}

TEST(AudioFileReaderReadSamples, TooShortOrTooNarrowBufferFailsUntouched)
{
    FakeReader reader(2, 100);
    AudioBuffer buffer(2, 10);
    fillBuffer(buffer, 7.0f);
    EXPECT_FALSE(reader.readSamples(buffer, 5, 6, 0));
    EXPECT_FALSE(reader.readSamples(buffer, 0, 11, 0));
    // An offset so large that offset + count wraps around must not pass as short.
    EXPECT_FALSE(reader.readSamples(buffer, ~std::uint64_t{0}, 2, 0));
    AudioBuffer mono(1, 10);
    fillBuffer(mono, 7.0f);
    EXPECT_FALSE(reader.readSamples(mono, 0, 10, 0));
    EXPECT_TRUE(reader.reads.empty());
    EXPECT_EQ(buffer.getChannel(0)[0], 7.0f);
    EXPECT_EQ(mono.getChannel(0)[9], 7.0f);
}

TEST(AudioFileReaderReadSamples, FramesLandAtTheOffsetAndExtraChannelsStayUntouched)
{
    FakeReader reader(2, 100);
    AudioBuffer buffer(3, 10);
    fillBuffer(buffer, 7.0f);
    ASSERT_TRUE(reader.readSamples(buffer, 4, 6, 20));
    ASSERT_EQ(reader.reads.size(), 1u);
    EXPECT_EQ(reader.reads[0].numSamples, 6u);
    EXPECT_EQ(reader.reads[0].position, 20u);
    // The raw read sees the file's channels and then the closing null, not the buffer's third channel.
    EXPECT_EQ(reader.reads[0].numChannelsBeforeNull, 2u);
    for (std::uint32_t channel = 0; channel < 2; ++channel) {
        for (std::uint64_t index = 0; index < 4; ++index)
            EXPECT_EQ(buffer.getChannel(channel)[index], 7.0f);
        for (std::uint64_t index = 4; index < 10; ++index)
            EXPECT_EQ(buffer.getChannel(channel)[index], FakeReader::expectedSample(channel, 16 + index));
    }
    for (std::uint64_t index = 0; index < 10; ++index)
        EXPECT_EQ(buffer.getChannel(2)[index], 7.0f);
}

TEST(AudioFileReaderReadSamples, FramesBehindTheEndAreZeros)
{
    FakeReader reader(1, 100);
    AudioBuffer buffer(1, 10);
    fillBuffer(buffer, 7.0f);
    ASSERT_TRUE(reader.readSamples(buffer, 0, 10, 95));
    EXPECT_EQ(buffer.getChannel(0)[4], FakeReader::expectedSample(0, 99));
    for (std::uint64_t index = 5; index < 10; ++index)
        EXPECT_EQ(buffer.getChannel(0)[index], 0.0f);
}

TEST(AudioFileReaderReadSamples, FloatFilesAreNotScaled)
{
    FakeFloatReader reader(2, 100);
    AudioBuffer buffer(2, 4);
    ASSERT_TRUE(reader.readSamples(buffer, 0, 4, 0));
    EXPECT_EQ(buffer.getChannel(1)[3], 2.0f);
}

// The scale runs over the whole request after the raw read, so words the raw read left alone are taken as
// integers too.
TEST(AudioFileReaderReadSamples, UnwrittenWordsAreScaledToo)
{
    FakeReader reader(1, 100);
    reader.firstUnwrittenFrame = 2;
    AudioBuffer buffer(1, 4);
    fillBuffer(buffer, std::bit_cast<float>(std::int32_t{1} << 30));
    ASSERT_TRUE(reader.readSamples(buffer, 0, 4, 0));
    EXPECT_EQ(buffer.getChannel(0)[1], FakeReader::expectedSample(0, 1));
    EXPECT_EQ(buffer.getChannel(0)[2], 0.5f);
    EXPECT_EQ(buffer.getChannel(0)[3], 0.5f);
}

TEST(AudioFileReaderReadChannel, BadChannelsOrShortBufferFail)
{
    FakeReader reader(2, 100);
    AudioBuffer buffer(2, 10);
    EXPECT_FALSE(reader.readChannel(buffer, 2, 0, 10, 0, 0));
    EXPECT_FALSE(reader.readChannel(buffer, 0, 0, 10, 2, 0));
    EXPECT_FALSE(reader.readChannel(buffer, 0, 1, 10, 0, 0));
    EXPECT_TRUE(reader.readChannel(buffer, 0, 10, 0, 0, 0));
    EXPECT_TRUE(reader.reads.empty());
}

TEST(AudioFileReaderReadChannel, OneBlockCopiesTheWantedChannelOnly)
{
    FakeReader reader(3, 100);
    AudioBuffer buffer(2, 10);
    fillBuffer(buffer, 7.0f);
    ASSERT_TRUE(reader.readChannel(buffer, 1, 2, 5, 2, 30));
    ASSERT_EQ(reader.reads.size(), 1u);
    EXPECT_EQ(reader.reads[0].numChannelsBeforeNull, 3u);
    for (std::uint64_t index = 0; index < 10; ++index) {
        EXPECT_EQ(buffer.getChannel(0)[index], 7.0f);
        const bool inside = index >= 2 && index < 7;
        EXPECT_EQ(buffer.getChannel(1)[index], inside ? FakeReader::expectedSample(2, 28 + index) : 7.0f)
            << index;
    }
}

TEST(AudioFileReaderReadChannel, BlocksOf65536FramesJoinWithoutAGap)
{
    const std::uint64_t numFrames = 65536 + 1000;
    FakeReader reader(2, 100000);
    AudioBuffer buffer(1, numFrames + 3);
    ASSERT_TRUE(reader.readChannel(buffer, 0, 3, numFrames, 1, 5));
    ASSERT_EQ(reader.reads.size(), 2u);
    EXPECT_EQ(reader.reads[0].numSamples, 65536u);
    EXPECT_EQ(reader.reads[0].position, 5u);
    EXPECT_EQ(reader.reads[1].numSamples, 1000u);
    EXPECT_EQ(reader.reads[1].position, 5u + 65536u);
    for (std::uint64_t index = 0; index < numFrames; ++index)
        ASSERT_EQ(buffer.getChannel(0)[3 + index], FakeReader::expectedSample(1, 5 + index)) << index;
}

TEST(AudioFileReaderReadChannel, FilesOfMoreThan32ChannelsTakeBlocksOf8192Frames)
{
    FakeReader wide(33, 20000);
    AudioBuffer buffer(1, 10000);
    ASSERT_TRUE(wide.readChannel(buffer, 0, 0, 10000, 32, 0));
    ASSERT_EQ(wide.reads.size(), 2u);
    EXPECT_EQ(wide.reads[0].numSamples, 8192u);
    EXPECT_EQ(wide.reads[1].numSamples, 10000u - 8192u);
    EXPECT_EQ(buffer.getChannel(0)[8191], FakeReader::expectedSample(32, 8191));
    EXPECT_EQ(buffer.getChannel(0)[8192], FakeReader::expectedSample(32, 8192));

    FakeReader narrow(32, 20000);
    ASSERT_TRUE(narrow.readChannel(buffer, 0, 0, 10000, 31, 0));
    EXPECT_EQ(narrow.reads.size(), 1u);
}

TEST(AudioFileReaderReadChannel, FailedRawReadIsReportedByBothReads)
{
    FakeReader reader(1, 100);
    reader.failing = true;
    AudioBuffer buffer(1, 4);
    EXPECT_FALSE(reader.readSamples(buffer, 0, 4, 0));
    EXPECT_FALSE(reader.readChannel(buffer, 0, 0, 4, 0, 0));
}

TEST(AudioFileReaderAccessors, DurationAndPath)
{
    FakeReader reader(2, 24000);
    EXPECT_EQ(reader.getDurationInMs(), 500.0);
    EXPECT_EQ(reader.getFilePath(), "");

    const test::ScratchFolder scratch;
    const std::string path = scratch.write("some.fake", "abc");
    const FakeReaderOnFile onFile{File(path)};
    EXPECT_EQ(onFile.getFilePath(), path);
    // The path is told only while a file is open.
    const FakeReader notOpened(1, 1, false, File(path));
    EXPECT_EQ(notOpened.getFilePath(), "");
}
