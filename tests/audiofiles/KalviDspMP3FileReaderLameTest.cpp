// Layer III streams as an encoder writes them, at every rate of MPEG-1, 2 and 2.5, in each channel mode and
// bit rate mode: the encoder's input is the oracle of the decoded sound.
#include "audiofiles/KalviDspAudioFileReader.h"
#include "audiofiles/KalviDspLameFixtures.h"
#include "audiofiles/KalviDspReaderReads.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace vlk::test {
namespace {

constexpr double sourceSeconds = 2.0;
// lame's encoder delay and the decoder's, of its hybrid and synthesis filters: where the source's first
// sample lies when the reader gives the first audio frame's samples first.
constexpr std::size_t codecDelay = 576 + 529;
constexpr double minimumSnrDb = 20.0;

// The lag of decoded behind source that correlates best, over a window from the source's second quarter: a
// sweep matches at one lag only.
std::size_t findDelay(const std::vector<float>& decoded, const std::vector<float>& source,
                      std::size_t maxDelay)
{
    const std::size_t start = source.size() / 4;
    const std::size_t length = std::min<std::size_t>(8192, source.size() / 2);
    std::size_t bestDelay = 0;
    double bestCorrelation = 0.0;
    for (std::size_t delay = 0; delay <= maxDelay && start + delay + length <= decoded.size(); ++delay) {
        double correlation = 0.0;
        for (std::size_t index = 0; index < length; ++index)
            correlation += static_cast<double>(source[start + index]) * decoded[start + delay + index];
        if (correlation > bestCorrelation) {
            bestCorrelation = correlation;
            bestDelay = delay;
        }
    }
    return bestDelay;
}

double getSnrDb(const std::vector<float>& decoded, const std::vector<float>& source, std::size_t delay)
{
    double signal = 0.0;
    double noise = 0.0;
    for (std::size_t index = 0; index < source.size(); ++index) {
        const double error = (index + delay < decoded.size() ? decoded[index + delay] : 0.0) - source[index];
        signal += static_cast<double>(source[index]) * source[index];
        noise += error * error;
    }
    return 10.0 * std::log10(signal / noise);
}

class MP3FileReaderLame : public testing::TestWithParam<LameEncoding>
{
protected:
    void SetUp() override
    {
        mp3 = encodeWithLame(scratch.path(), "song.mp3", GetParam(), sourceSeconds);
        reader = AudioFileReader::create(File(mp3.path));
    }

    ScratchFolder scratch;
    LameMp3 mp3;
    std::unique_ptr<AudioFileReader> reader;
};

// The length covers the source behind the delay and lame's padding to whole frames, of which it adds less
// than one. Without a tag it is an estimate from the file's size over the first frame's size less its four
// header bytes: some 3 percent more at the table's 144-byte frames.
TEST_P(MP3FileReaderLame, GivesTheEncodersInputBehindTheCodecDelay)
{
    const LameEncoding encoding = GetParam();
    EXPECT_EQ(reader->getNumChannels(), getNumChannels(encoding));
    EXPECT_EQ(reader->getSampleRate(), encoding.sampleRate);
    const std::size_t sourceEnd = mp3.source[0].size() + codecDelay;
    // The reader counts 1152 samples a frame for every version, so an MPEG-2 or 2.5 stream's length is twice
    // its sound; and an untagged free-format stream has no frame size to estimate from when it opens. Both
    // as the reader stands.
    const std::uint32_t samplesPerFrame = getSamplesPerFrame(encoding.sampleRate);
    const double countedPerDecoded = 1152.0 / samplesPerFrame;
    if (encoding.bitRateMode == BitRateMode::freeFormat && !mp3.hasVbrTag) {
        EXPECT_EQ(reader->getNumSamples(), 0u);
    } else {
        EXPECT_GE(reader->getNumSamples(), sourceEnd * countedPerDecoded);
        const double estimateSlack = mp3.hasVbrTag ? 1.0 : 1.03;
        EXPECT_LE(reader->getNumSamples(),
                  (sourceEnd + 2 * samplesPerFrame) * countedPerDecoded * estimateSlack);
    }

    const Channels decoded = readSequentially(*reader, 4096, 1000000);
    ASSERT_EQ(decoded.size(), mp3.source.size());
    ASSERT_GE(decoded[0].size(), sourceEnd);
    EXPECT_EQ(findDelay(decoded[0], mp3.source[0], 4 * codecDelay), codecDelay);
    for (std::size_t channel = 0; channel < decoded.size(); ++channel)
        EXPECT_GT(getSnrDb(decoded[channel], mp3.source[channel], codecDelay), minimumSnrDb)
            << "channel " << channel;
}

// Once a sequential read has indexed the whole stream, a jump anywhere decodes from a few frames before
// its target and drops what lies before it.
TEST_P(MP3FileReaderLame, ReadsAtRandomPositionsEqualTheSequentialRead)
{
    if (getSamplesPerFrame(GetParam().sampleRate) != 1152)
        GTEST_SKIP()
            << "the reader counts 1152 samples a frame: a jump in an MPEG-2 or 2.5 stream misses by half";
    if (GetParam().bitRateMode == BitRateMode::freeFormat)
        GTEST_SKIP()
            << "the scans that measure a free-format frame count frames twice: its table lags its frames";
    constexpr std::uint64_t readFrames = 1500;
    const Channels sequential = readSequentially(*reader, 4096, 1000000);
    ASSERT_GT(sequential[0].size(), readFrames);
    std::mt19937 generator(20250611);
    std::uniform_int_distribution<std::uint64_t> positions(0, sequential[0].size() - readFrames);
    for (int read = 0; read < 20; ++read) {
        const std::uint64_t position = positions(generator);
        EXPECT_EQ(readAt(*reader, position, readFrames), slice(sequential, position, readFrames))
            << "at " << position;
    }
}

// Each rate once at least, each channel mode and bit rate mode at every MPEG version. Constant and free
// format bit rates low enough that lame writes no tag are there too.
INSTANTIATE_TEST_SUITE_P(, MP3FileReaderLame,
                         testing::Values(LameEncoding{44100, 'j', BitRateMode::constant, 128},
                                         LameEncoding{44100, 's', BitRateMode::variable, 2},
                                         LameEncoding{48000, 'm', BitRateMode::constant, 64},
                                         LameEncoding{48000, 'j', BitRateMode::variable, 5},
                                         LameEncoding{32000, 's', BitRateMode::freeFormat, 96},
                                         LameEncoding{32000, 'm', BitRateMode::constant, 32},
                                         LameEncoding{24000, 'j', BitRateMode::constant, 64},
                                         LameEncoding{22050, 'm', BitRateMode::variable, 6},
                                         LameEncoding{22050, 's', BitRateMode::freeFormat, 64},
                                         LameEncoding{16000, 's', BitRateMode::constant, 32},
                                         LameEncoding{16000, 'j', BitRateMode::variable, 4},
                                         LameEncoding{12000, 'm', BitRateMode::constant, 24},
                                         LameEncoding{11025, 's', BitRateMode::variable, 5},
                                         LameEncoding{8000, 'j', BitRateMode::constant, 24},
                                         LameEncoding{8000, 'm', BitRateMode::freeFormat, 16}),
                         [](const testing::TestParamInfo<LameEncoding>& info) {
                             return describe(info.param);
                         });

} // namespace
} // namespace vlk::test
