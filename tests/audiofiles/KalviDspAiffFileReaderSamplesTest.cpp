#include "audiofiles/KalviDspAiffFileReader.h"

#include "audiofiles/KalviDspAiffFixtures.h"
#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <vector>

using namespace vlk;
using namespace vlk::test;

namespace {

// A form that libsndfile writes, and the compression type the test puts in its place where that writer
// names the same layout otherwise (it calls 24-bit little-endian "42n1"; "fl32" and "FL32" are one form).
struct SampleFormat
{
    int format;
    int bits;
    const char* name;
    const char* renamedCompression;
};

constexpr SampleFormat sampleFormats[] = {
    {SF_FORMAT_AIFF | SF_FORMAT_PCM_S8, 8, "8-bit", nullptr},
    {SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 16, "16-bit", nullptr},
    {SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 24, "24-bit", nullptr},
    {SF_FORMAT_AIFF | SF_FORMAT_PCM_32, 32, "32-bit", nullptr},
    {SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE, 16, "sowt 16-bit", nullptr},
    {SF_FORMAT_AIFF | SF_FORMAT_PCM_24 | SF_ENDIAN_LITTLE, 24, "sowt 24-bit", "sowt"},
    {SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 32, "FL32", nullptr},
    {SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 32, "fl32", "fl32"},
};

bool isFloat(const SampleFormat& format)
{
    return (format.format & SF_FORMAT_SUBMASK) == SF_FORMAT_FLOAT;
}

// A file written by libsndfile, and what libsndfile reads back from it, interleaved: its integers,
// left-justified in 32 bits, and its floats.
struct SndfileFixture
{
    std::string path;
    std::vector<std::int32_t> integers;
    std::vector<float> floats;
    int numChannels = 0;
    int numFrames = 0;
};

// Full-range random words (the writer keeps their top bits) with both extremes, or random floats with some
// beyond full scale.
void writeSamples(SNDFILE* file, const SampleFormat& format, std::size_t numSamples, int numFrames,
                  std::uint32_t seed)
{
    std::mt19937 generator(seed);
    if (isFloat(format)) {
        std::uniform_real_distribution<float> distribution(-1.5f, 1.5f);
        std::vector<float> floats(numSamples);
        for (float& sample : floats)
            sample = distribution(generator);
        sf_writef_float(file, floats.data(), numFrames);
        return;
    }
    std::vector<std::int32_t> integers(numSamples);
    for (std::int32_t& sample : integers)
        sample = static_cast<std::int32_t>(generator());
    integers.front() = std::numeric_limits<std::int32_t>::max();
    integers.back() = std::numeric_limits<std::int32_t>::min();
    sf_writef_int(file, integers.data(), numFrames);
}

SndfileFixture writeWithSndfile(const ScratchFolder& scratch, const SampleFormat& format, int numChannels,
                                int numFrames, std::uint32_t seed)
{
    SndfileFixture fixture;
    fixture.path = scratch / (std::string(format.name) + "-" + std::to_string(numChannels) + ".aif");
    fixture.numChannels = numChannels;
    SF_INFO info{};
    info.samplerate = 48000;
    info.channels = numChannels;
    info.format = format.format;
    SNDFILE* file = sf_open(fixture.path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    const auto numSamples = static_cast<std::size_t>(numChannels) * numFrames;
    writeSamples(file, format, numSamples, numFrames, seed);
    sf_close(file);

    // Read back before any renaming: what libsndfile makes of its own file is the oracle.
    SF_INFO readInfo{};
    file = sf_open(fixture.path.c_str(), SFM_READ, &readInfo);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    // An odd count of 8-bit mono samples gets a frame of padding that the writer counts in the file's length.
    fixture.numFrames = static_cast<int>(readInfo.frames);
    fixture.integers.resize(static_cast<std::size_t>(numChannels) * fixture.numFrames);
    fixture.floats.resize(fixture.integers.size());
    sf_readf_int(file, fixture.integers.data(), readInfo.frames);
    sf_seek(file, 0, SEEK_SET);
    sf_readf_float(file, fixture.floats.data(), readInfo.frames);
    sf_close(file);
    if (format.renamedCompression != nullptr)
        renameCompression(fixture.path, format.renamedCompression);
    return fixture;
}

// Frame f of channel c as the conversion rule makes it of libsndfile's integer: rounded to single precision
// and scaled by 2^-31; floats as libsndfile reads them.
float expectedSample(const SndfileFixture& fixture, const SampleFormat& format, int frame, int channel)
{
    const auto index = static_cast<std::size_t>(frame) * fixture.numChannels + channel;
    return isFloat(format) ? fixture.floats[index] : static_cast<float>(fixture.integers[index]) * 0x1p-31f;
}

void expectSameAsSndfile(const SndfileFixture& fixture, const SampleFormat& format, const std::string& what)
{
    const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(File(fixture.path));
    ASSERT_NE(dynamic_cast<AiffFileReader*>(reader.get()), nullptr) << what;
    ASSERT_EQ(reader->getNumChannels(), static_cast<std::uint32_t>(fixture.numChannels)) << what;
    ASSERT_EQ(reader->getNumSamples(), static_cast<std::uint64_t>(fixture.numFrames)) << what;
    ASSERT_EQ(reader->getSampleRate(), 48000.0) << what;
    ASSERT_EQ(reader->getMetadata().bitsPerSample, format.bits) << what;
    ASSERT_EQ(reader->getMetadata().isFloatingPoint, isFloat(format)) << what;
    const auto buffer = readAllFrames(*reader);
    // At 8 and 32 bits libsndfile's floats are scaled otherwise; at 16 and 24 they are ours too.
    const bool sameFloats = format.bits == 16 || format.bits == 24 || isFloat(format);
    for (int frame = 0; frame < fixture.numFrames; ++frame)
        for (int channel = 0; channel < fixture.numChannels; ++channel) {
            const float actual = buffer->getChannel(static_cast<std::uint32_t>(channel))[frame];
            ASSERT_TRUE(bitsEqual(actual, expectedSample(fixture, format, frame, channel)))
                << what << ", frame " << frame << ", channel " << channel;
            if (sameFloats) {
                ASSERT_TRUE(bitsEqual(
                    actual, fixture.floats[static_cast<std::size_t>(frame) * fixture.numChannels + channel]))
                    << what << ", frame " << frame << ", channel " << channel;
            }
        }
}

// A reader over a libsndfile file with its oracle, for reads of parts of the file.
struct PartialReadFixture
{
    PartialReadFixture(const SampleFormat& format, int numChannels, int numFrames)
        : format(format), fixture(writeWithSndfile(scratch, format, numChannels, numFrames, 7)),
          reader(File(fixture.path))
    {
    }

    // Reads numFrames frames at position into a buffer at bufferOffset and checks every sample of the buffer.
    void expectRead(std::uint64_t bufferOffset, std::uint64_t numFrames, std::uint64_t position)
    {
        expectPartialRead(
            reader, fixture.numChannels, fixture.numFrames,
            [this](int frame, int channel) { return expectedSample(fixture, format, frame, channel); },
            bufferOffset, numFrames, position);
    }

    ScratchFolder scratch;
    SampleFormat format;
    SndfileFixture fixture;
    AiffFileReader reader;
};

} // namespace

TEST(AiffFileReaderSamples, EveryFormMatchesSndfileBitForBit)
{
    const ScratchFolder scratch;
    std::uint32_t seed = 1;
    for (const SampleFormat& format : sampleFormats)
        for (int numChannels = 1; numChannels <= 8; ++numChannels) {
            // More frames than one scratch block holds at every frame size here.
            const SndfileFixture fixture = writeWithSndfile(scratch, format, numChannels, 3001, seed++);
            expectSameAsSndfile(fixture, format,
                                std::string(format.name) + " " + std::to_string(numChannels) + " channels");
        }
}

TEST(AiffFileReaderSamples, ReadsAtOffsetsAndPositionsInAnyOrder)
{
    PartialReadFixture threeChannels24(sampleFormats[2], 3, 2000);
    threeChannels24.expectRead(5, 1500, 333);
    threeChannels24.expectRead(0, 1, 1999);
    // Out of order: the file position is set from the frame at every read.
    threeChannels24.expectRead(0, 10, 1000);
    threeChannels24.expectRead(2, 10, 10);
    // Behind the end: zeros.
    threeChannels24.expectRead(0, 100, 1950);
    threeChannels24.expectRead(4, 100, 2000);
    PartialReadFixture stereoFloat(sampleFormats[6], 2, 100);
    stereoFloat.expectRead(1, 200, 90);
}

TEST(AiffFileReaderSamples, ReadsAcrossScratchBlockBoundaries)
{
    // 1440 stereo 16-bit frames fill a block exactly; 7 channels of 24 bits leave 6 bytes of it unused.
    PartialReadFixture stereo16(sampleFormats[1], 2, 6000);
    for (const std::uint64_t numFrames : {1439u, 1440u, 1441u, 2880u, 2881u, 5999u})
        for (const std::uint64_t position : {0u, 1u})
            stereo16.expectRead(3, numFrames, position);
    PartialReadFixture sevenChannelsSowt24(sampleFormats[5], 7, 1000);
    for (const std::uint64_t numFrames : {273u, 274u, 275u, 548u, 549u, 1000u})
        sevenChannelsSowt24.expectRead(0, numFrames, 0);
}

// "sowt" stores 16-bit samples as a WAV file does: the two readers give the same floats.
TEST(AiffFileReaderSamples, Sowt16ReadsAsTheSameWavFile)
{
    const ScratchFolder scratch;
    std::vector<short> samples;
    std::mt19937 generator(5);
    for (int index = 0; index < 3 * 2500; ++index)
        samples.push_back(static_cast<short>(generator()));
    std::vector<std::unique_ptr<AudioBuffer>> buffers;
    for (const int format :
         {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE}) {
        const std::string path = scratch / ("same" + std::to_string(buffers.size()));
        SF_INFO info{};
        info.samplerate = 44100;
        info.channels = 3;
        info.format = format;
        SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
        ASSERT_NE(file, nullptr);
        sf_writef_short(file, samples.data(), 2500);
        sf_close(file);
        buffers.push_back(readAllFrames(*AudioFileReader::create(File(path))));
    }
    for (std::uint32_t channel = 0; channel < 3; ++channel)
        for (int frame = 0; frame < 2500; ++frame)
            ASSERT_TRUE(
                bitsEqual(buffers[1]->getChannel(channel)[frame], buffers[0]->getChannel(channel)[frame]))
                << "channel " << channel << ", frame " << frame;
}
