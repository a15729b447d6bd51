// Files that no native reader takes, through the platform's audio file services, in the formats that
// Debian's ffmpeg writes: lossless ones against their source, lossy ones against FFmpeg's own decode.
#include "audiofiles/KalviDspCoreAudioFileReader.h"

#include "audiofiles/KalviDspFfmpegFixtures.h"
#include "files/KalviDspScratchFolder.h"
#include "threads/KalviDspException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>

// The test executable is linked with --wrap=ExtAudioFileSeek, so that the reader's seeks pass through here.
extern "C" OSStatus __real_ExtAudioFileSeek(ExtAudioFileRef file, SInt64 frame);

namespace {
int numServiceSeeks = 0;
} // namespace

extern "C" OSStatus __wrap_ExtAudioFileSeek(ExtAudioFileRef file, SInt64 frame)
{
    ++numServiceSeeks;
    return __real_ExtAudioFileSeek(file, frame);
}

namespace vlk::test {
namespace {

constexpr double sourceSeconds = 2.0;

float maxDifference(const Channels& first, const Channels& second)
{
    float difference = 0.0f;
    for (std::size_t channel = 0; channel < first.size(); ++channel)
        for (std::size_t index = 0; index < first[channel].size(); ++index)
            difference = std::max(difference, std::fabs(first[channel][index] - second[channel][index]));
    return difference;
}

// The raw read, which the block read reaches only with a destination for every channel.
class CoreAudioFileReaderPeer : public CoreAudioFileReader
{
public:
    using CoreAudioFileReader::CoreAudioFileReader;
    using CoreAudioFileReader::readRawSamples;
};

class CoreAudioFileReaderFormats : public testing::TestWithParam<FfmpegFormat>
{
protected:
    void SetUp() override
    {
        file = encodeWithFfmpeg(scratch.path(), "sound", GetParam(), sourceSeconds);
        reader = AudioFileReader::create(File(file.path));
    }

    ScratchFolder scratch;
    EncodedFile file;
    std::unique_ptr<AudioFileReader> reader;
};

// The length of a lossless file is its source's. A lossy one holds the source and at most what FFmpeg's
// decode gives: MP4's edit list ends the sound before the encoder's padding, which FFmpeg's tools keep. A
// block over the end is delivered whole, silent behind the sound.
TEST_P(CoreAudioFileReaderFormats, DescribesTheFileAndReadsTheOraclesSoundThenSilence)
{
    const FfmpegFormat& format = GetParam();
    const AudioFilesMetadata& metadata = reader->getMetadata();
    EXPECT_EQ(metadata.numChannels, 2u);
    EXPECT_EQ(metadata.sampleRate, format.sampleRate);
    EXPECT_EQ(metadata.bitsPerSample, 32);
    EXPECT_TRUE(metadata.isFloatingPoint);
    String expectedName = String(format.extension + 1);
    expectedName.toUpper();
    EXPECT_EQ(metadata.formatName, expectedName + " File");
    EXPECT_EQ(reader->getFileExtension(), "");
    const auto sourceFrames = static_cast<std::uint64_t>(sourceSeconds * format.sampleRate);
    const std::uint64_t length = reader->getNumSamples();
    if (format.isLossless) {
        EXPECT_EQ(length, sourceFrames);
    } else {
        EXPECT_GE(length, sourceFrames);
    }
    ASSERT_LE(length, file.oracle[0].size());

    constexpr std::uint64_t tailFrames = 1000;
    const Channels whole = readAt(*reader, 0, length + tailFrames);
    EXPECT_EQ(slice(whole, 0, length), slice(file.oracle, 0, length));
    for (const std::vector<float>& channel : slice(whole, length, tailFrames))
        EXPECT_TRUE(std::all_of(channel.begin(), channel.end(), [](float sample) { return sample == 0.0f; }));
}

TEST_P(CoreAudioFileReaderFormats, ReadsInThousandFrameStepsWithoutSeeking)
{
    const std::uint64_t length = reader->getNumSamples();
    numServiceSeeks = 0;
    const Channels stepped = readSequentially(*reader, 1000, length);
    EXPECT_LE(numServiceSeeks, 1);
    EXPECT_EQ(slice(stepped, 0, length), readAt(*reader, 0, length));
}

TEST_P(CoreAudioFileReaderFormats, SeeksLandOnTheExactFrame)
{
    constexpr std::uint64_t readFrames = 1000;
    const std::uint64_t length = reader->getNumSamples();
    const Channels sequential = readAt(*reader, 0, length);
    std::mt19937 generator(20261123);
    std::uniform_int_distribution<std::uint64_t> positions(0, length - readFrames);
    for (int read = 0; read < 20; ++read) {
        const std::uint64_t position = positions(generator);
        EXPECT_LE(
            maxDifference(readAt(*reader, position, readFrames), slice(sequential, position, readFrames)),
            GetParam().seekTolerance)
            << "at " << position;
    }
}

INSTANTIATE_TEST_SUITE_P(, CoreAudioFileReaderFormats, testing::ValuesIn(getFfmpegFormats()),
                         [](const testing::TestParamInfo<FfmpegFormat>& info) { return info.param.name; });

TEST(CoreAudioFileReader, NamesTheFormatByTheLastExtension)
{
    const ScratchFolder scratch;
    const EncodedFile flac = encodeWithFfmpeg(scratch.path(), "take", getFfmpegFormats()[0], 0.1);
    const struct
    {
        const char* name;
        const char* formatName;
    } cases[] = {{"take.two.flac", "FLAC File"}, {"take.Flac", "FLAC File"}, {"take", " File"}};
    for (const auto& testCase : cases) {
        std::filesystem::copy_file(flac.path, scratch / testCase.name);
        EXPECT_EQ(AudioFileReader::create(File(scratch / testCase.name))->getMetadata().formatName,
                  testCase.formatName);
    }
}

TEST(CoreAudioFileReader, SkipsANullChannel)
{
    const ScratchFolder scratch;
    const EncodedFile flac = encodeWithFfmpeg(scratch.path(), "take", getFfmpegFormats()[0], 0.1);
    CoreAudioFileReaderPeer reader{File(flac.path)};
    ASSERT_TRUE(reader.isOpened());
    std::vector<float> left(1000);
    int* channels[] = {reinterpret_cast<int*>(left.data()), nullptr, nullptr};
    ASSERT_TRUE(reader.readRawSamples(channels, left.size(), 100));
    EXPECT_EQ(left, slice(flac.oracle, 100, left.size())[0]);
}

} // namespace
} // namespace vlk::test
