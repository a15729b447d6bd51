#include "audiofiles/KalviDspMP3FileReader.h"

#include "audiofiles/mpeg/KalviDspMpegTestStreams.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <random>

namespace vlk::test {
namespace {

// An ID3v2 header stating a tag of size bytes behind it, and the tag's bytes.
std::string makeId3Tag(std::uint32_t size, bool topBitInSize = false)
{
    std::string tag = "ID3\4";
    tag += '\0';
    tag += '\0';
    for (const int shift : {21, 14, 7, 0})
        tag += static_cast<char>(((size >> shift) & 0x7F) | (topBitInSize && shift == 0 ? 0x80 : 0));
    return tag + std::string(size, '\0');
}

// Channel by channel, numSamples from position on.
std::vector<std::vector<float>> read(AudioFileReader& reader, std::uint64_t position, std::uint64_t numSamples,
                                     bool* result = nullptr)
{
    AudioBuffer buffer(reader.getNumChannels(), numSamples);
    buffer.setNumSamples(numSamples);
    const bool read = reader.readSamples(buffer, 0, numSamples, position);
    if (result != nullptr)
        *result = read;
    std::vector<std::vector<float>> channels;
    for (std::uint32_t channel = 0; channel < reader.getNumChannels(); ++channel)
        channels.emplace_back(buffer.getChannel(channel), buffer.getChannel(channel) + numSamples);
    return channels;
}

// The decoder's own output of the stream, by channel.
std::vector<std::vector<float>> decodeChannels(const std::string& path)
{
    const DecodedStream decoded = decodeMpegStream(path);
    std::vector<std::vector<float>> channels(static_cast<std::size_t>(decoded.numChannels));
    for (std::size_t index = 0; index < decoded.samples.size(); ++index)
        channels[index % channels.size()].push_back(decoded.samples[index]);
    return channels;
}

std::vector<float> slice(const std::vector<float>& samples, std::size_t from, std::size_t count)
{
    return std::vector<float>(samples.begin() + static_cast<std::ptrdiff_t>(from),
                              samples.begin() + static_cast<std::ptrdiff_t>(from + count));
}

class MP3FileReaderLayer2 : public testing::Test
{
protected:
    void SetUp() override
    {
        bytes = readFileBytes(getMpegTestPath("l2-fl16.bit"));
        path = scratch.write("song.mp3", bytes);
        expected = decodeChannels(path);
        reader = AudioFileReader::create(File(path));
    }

    ScratchFolder scratch;
    std::string bytes;
    std::string path;
    std::vector<std::vector<float>> expected;
    std::unique_ptr<AudioFileReader> reader;
};

TEST_F(MP3FileReaderLayer2, DescribesTheStreamAsFloatsOf1152SamplesAFrame)
{
    const AudioFilesMetadata& metadata = reader->getMetadata();
    EXPECT_EQ(metadata.formatName, "MP3 File");
    EXPECT_EQ(metadata.bitsPerSample, 32);
    EXPECT_TRUE(metadata.isFloatingPoint);
    EXPECT_EQ(metadata.numChannels, 2u);
    EXPECT_EQ(metadata.sampleRate, 48000.0);
    // Without a tag: the file's bytes over the first frame's size without its header bytes (764 for 256
    // kbit/s at 48 kHz).
    EXPECT_EQ(metadata.numSamples, bytes.size() / 764 * 1152);
}

TEST_F(MP3FileReaderLayer2, SequentialReadsGiveTheDecodersSamples)
{
    std::vector<float> left;
    for (std::uint64_t position = 0; position < 20000; position += 1000) {
        const auto block = read(*reader, position, 1000);
        left.insert(left.end(), block[0].begin(), block[0].end());
        EXPECT_EQ(block[1], slice(expected[1], position, 1000)) << position;
    }
    EXPECT_EQ(left, slice(expected[0], 0, 20000));
}

// Inside the indexed part a jump back decodes from up to four frames before the target: the same samples
// as the sequential read.
TEST_F(MP3FileReaderLayer2, ABackwardReadInsideTheIndexedPartEqualsTheSequentialRead)
{
    read(*reader, 0, 30000);
    for (const std::uint64_t position : {5000u, 4000u, 12345u, 0u, 1152u * 8, 1152u})
        EXPECT_EQ(read(*reader, position, 3000)[0], slice(expected[0], position, 3000)) << position;
}

// The stream's end gives one block of zeros, which a read still within it gets with true; a read beyond it
// gets the zeros and false. The stream is read once first, so that the end lies in the indexed part.
TEST_F(MP3FileReaderLayer2, ReadsPastTheEndGiveZeros)
{
    const std::uint64_t end = expected[0].size();
    read(*reader, 0, end);
    bool result = false;
    const auto lastPart = read(*reader, end - 100, 1000, &result);
    EXPECT_TRUE(result);
    EXPECT_EQ(slice(lastPart[0], 0, 100), slice(expected[0], end - 100, 100));
    EXPECT_EQ(slice(lastPart[0], 100, 900), std::vector<float>(900, 0.0f));
    const auto beyond = read(*reader, end + 900, 1000, &result);
    EXPECT_FALSE(result);
    EXPECT_EQ(beyond[1], std::vector<float>(1000, 0.0f));
}

// Beyond the indexed part the stream falls back to the last entry of the frame table while the frame
// counter is set three frames past it: the samples come three frames early. Kept as it is.
TEST_F(MP3FileReaderLayer2, AJumpBeyondTheIndexedPartComesThreeFramesEarly)
{
    const std::uint64_t position = 1152 * 40;
    EXPECT_EQ(read(*reader, position, 2000)[0], slice(expected[0], position - 3 * 1152, 2000));
}

class MP3FileReaderLayer3Jumps : public testing::TestWithParam<const char*>
{
};

// A Layer III frame takes main data from the frames before it and overlaps the previous granule: a jump
// anywhere in the indexed part still gives the sequential read's samples.
TEST_P(MP3FileReaderLayer3Jumps, AReadAnywhereInTheIndexedPartEqualsTheSequentialRead)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("song.mp3", readFileBytes(getMpegTestPath(GetParam())));
    const std::vector<std::vector<float>> expected = decodeChannels(path);
    const auto reader = AudioFileReader::create(File(path));
    const std::uint64_t end = expected[0].size();
    read(*reader, 0, end);
    std::mt19937 random(7);
    for (int jump = 0; jump < 20; ++jump) {
        const std::uint64_t position = std::uniform_int_distribution<std::uint64_t>(0, end - 3000)(random);
        const auto block = read(*reader, position, 3000);
        for (std::size_t channel = 0; channel < expected.size(); ++channel)
            EXPECT_EQ(block[channel], slice(expected[channel], position, 3000)) << position;
    }
}

// A large reservoir at 48 kHz, block switching, and every bit rate in turn at 32 kHz.
INSTANTIATE_TEST_SUITE_P(ComplianceStreams, MP3FileReaderLayer3Jumps,
                         testing::Values("l3-compl.bit", "l3-si_block.bit", "l3-he_32khz.bit"));

TEST(MP3FileReaderTags, AnId3TagIsSkippedUnlessItsSizeIsMalformed)
{
    const ScratchFolder scratch;
    const std::string stream = readFileBytes(getMpegTestPath("l2-fl13.bit"));
    const std::vector<float> plain = decodeChannels(scratch.write("plain.mp3", stream))[0];
    for (const bool malformed : {false, true}) {
        const auto reader = AudioFileReader::create(File(scratch.write("tagged.mp3", makeId3Tag(4086, malformed) + stream)));
        EXPECT_EQ(reader->getNumChannels(), 1u) << malformed;
        EXPECT_EQ(read(*reader, 0, 5000)[0], slice(plain, 0, 5000)) << malformed;
    }
}

TEST(MP3FileReaderRefusal, FilesWithoutFramesAreNotValidMp3Files)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("refused.mp3", std::string(40000, '\0'));
    try {
        AudioFileReader::create(File(path));
        ADD_FAILURE() << "no refusal";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, "file \"" + path + "\" is not a valid MP3 file");
    }
}

} // namespace
} // namespace vlk::test
