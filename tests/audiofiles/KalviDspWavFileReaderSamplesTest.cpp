#include "audiofiles/KalviDspWavFileReader.h"

#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

using namespace vlk;
using namespace vlk::test;

namespace {

struct SampleFormat
{
    int subtype;
    int bits;
    const char* name;
};

constexpr SampleFormat sampleFormats[] = {{SF_FORMAT_PCM_U8, 8, "8-bit"},
                                          {SF_FORMAT_PCM_16, 16, "16-bit"},
                                          {SF_FORMAT_PCM_24, 24, "24-bit"},
                                          {SF_FORMAT_PCM_32, 32, "32-bit"},
                                          {SF_FORMAT_FLOAT, 32, "float"}};

struct Container
{
    int major;
    const char* name;
};

constexpr Container containers[] = {
    {SF_FORMAT_WAV, "WAV"}, {SF_FORMAT_WAVEX, "WAVE_FORMAT_EXTENSIBLE"}, {SF_FORMAT_RF64, "RF64"}};

// A file written by libsndfile, the independent writer, and the samples it was given: full-range random
// 32-bit words for integer formats (the writer keeps their top bits), random floats with a few beyond full
// scale for float files.
struct SndfileFixture
{
    std::string path;
    std::vector<std::int32_t> integers;
    std::vector<float> floats;
    int numChannels = 0;
    int numFrames = 0;
};

SndfileFixture writeWithSndfile(const ScratchFolder& scratch, const Container& container,
                                const SampleFormat& format, int numChannels, int numFrames,
                                std::uint32_t seed)
{
    SndfileFixture fixture;
    fixture.path = scratch / (std::string(container.name) + "-" + format.name + "-" +
                              std::to_string(numChannels) + ".wav");
    fixture.numChannels = numChannels;
    fixture.numFrames = numFrames;
    SF_INFO info{};
    info.samplerate = 48000;
    info.channels = numChannels;
    info.format = container.major | format.subtype;
    SNDFILE* file = sf_open(fixture.path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));

    std::mt19937 generator(seed);
    const auto numSamples = static_cast<std::size_t>(numChannels) * numFrames;
    if (format.subtype == SF_FORMAT_FLOAT) {
        std::uniform_real_distribution<float> distribution(-1.5f, 1.5f);
        for (std::size_t index = 0; index < numSamples; ++index)
            fixture.floats.push_back(distribution(generator));
        sf_writef_float(file, fixture.floats.data(), numFrames);
    } else {
        for (std::size_t index = 0; index < numSamples; ++index)
            fixture.integers.push_back(static_cast<std::int32_t>(generator()));
        // Full scale both ways, so that the extremes of every depth are met.
        fixture.integers[0] = std::numeric_limits<std::int32_t>::max();
        fixture.integers[numSamples - 1] = std::numeric_limits<std::int32_t>::min();
        sf_writef_int(file, fixture.integers.data(), numFrames);
    }
    sf_close(file);
    return fixture;
}

// libsndfile's own reading, interleaved.
std::vector<float> readWithSndfile(const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, samples.data(), info.frames);
    sf_close(file);
    return samples;
}

// The value that the conversion rule promises for a written word: the top bits that the depth keeps, as a
// left-justified integer, rounded to single precision and scaled by 2^-31.
float expectedFromWord(std::int32_t word, int bits)
{
    const auto kept =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(word) & (0xFFFFFFFFu << (32 - bits)));
    return static_cast<float>(kept) * 0x1p-31f;
}

// Frame f of channel c of the fixture as the rule promises it.
float expectedSample(const SndfileFixture& fixture, const SampleFormat& format, int frame, int channel)
{
    const auto index = static_cast<std::size_t>(frame) * fixture.numChannels + channel;
    return format.subtype == SF_FORMAT_FLOAT ? fixture.floats[index]
                                             : expectedFromWord(fixture.integers[index], format.bits);
}

// Compares the whole file read through the reader with libsndfile's reading and with the rule; stops at the
// first difference.
void expectSameAsSndfile(const SndfileFixture& fixture, const SampleFormat& format, const std::string& what)
{
    WavFileReader reader{File(fixture.path)};
    ASSERT_EQ(reader.getNumChannels(), static_cast<std::uint32_t>(fixture.numChannels)) << what;
    ASSERT_EQ(reader.getNumSamples(), static_cast<std::uint64_t>(fixture.numFrames)) << what;
    ASSERT_EQ(reader.getMetadata().bitsPerSample, format.bits) << what;
    ASSERT_EQ(reader.getMetadata().isFloatingPoint, format.subtype == SF_FORMAT_FLOAT) << what;
    const auto buffer = readAllFrames(reader);
    const std::vector<float> oracle = readWithSndfile(fixture.path);
    for (int frame = 0; frame < fixture.numFrames; ++frame)
        for (int channel = 0; channel < fixture.numChannels; ++channel) {
            const float actual = buffer->getChannel(channel)[frame];
            const float fromSndfile = oracle[static_cast<std::size_t>(frame) * fixture.numChannels + channel];
            ASSERT_TRUE(bitsEqual(actual, fromSndfile))
                << what << ", frame " << frame << ", channel " << channel;
            ASSERT_TRUE(bitsEqual(actual, expectedSample(fixture, format, frame, channel)))
                << what << ", frame " << frame << ", channel " << channel;
        }
}

// A reader over a libsndfile file with its oracle, for reads of parts of the file.
struct PartialReadFixture
{
    PartialReadFixture(const SampleFormat& format, int numChannels, int numFrames)
        : format(format),
          fixture(writeWithSndfile(scratch, containers[0], format, numChannels, numFrames, 7)),
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
    WavFileReader reader;
};

} // namespace

TEST(WavFileReaderSamples, EveryDepthAndContainerMatchesSndfileBitForBit)
{
    const ScratchFolder scratch;
    std::uint32_t seed = 1;
    for (const Container& container : containers)
        for (const SampleFormat& format : sampleFormats)
            for (int numChannels = 1; numChannels <= 8; ++numChannels) {
                // More frames than one scratch block holds at every frame size here.
                const SndfileFixture fixture =
                    writeWithSndfile(scratch, container, format, numChannels, 3001, seed++);
                expectSameAsSndfile(fixture, format,
                                    std::string(container.name) + " " + format.name + " " +
                                        std::to_string(numChannels) + " channels");
            }
}

TEST(WavFileReaderSamples, SndfileRf64FilesAreRf64)
{
    const ScratchFolder scratch;
    const SndfileFixture fixture = writeWithSndfile(scratch, containers[2], sampleFormats[1], 2, 10, 3);
    WavFileReader reader{File(fixture.path)};
    EXPECT_TRUE(reader.getMetadata().isRF64);
}

TEST(WavFileReaderSamples, ExtremesOfEachDepth)
{
    const ScratchFolder scratch;
    auto readMono = [&](std::uint16_t tag, std::uint16_t bits, const std::string& bytes) {
        const auto reader = openWavImage(scratch, makeSimpleWavFile(tag, 1, bits, bytes));
        const auto buffer = readAllFrames(*reader);
        return std::vector<float>(buffer->getChannel(0), buffer->getChannel(0) + reader->getNumSamples());
    };
    using Values = std::vector<float>;
    EXPECT_EQ(readMono(1, 8, std::string("\x80\x00\xFF\x81", 4)),
              (Values{0.0f, -1.0f, 127 / 128.0f, 1 / 128.0f}));
    EXPECT_EQ(readMono(1, 16, std::string("\x00\x80\xFF\x7F\xFF\xFF", 6)),
              (Values{-1.0f, 32767 / 32768.0f, -1 / 32768.0f}));
    EXPECT_EQ(readMono(1, 24, std::string("\xFF\xFF\x7F\x00\x00\x80", 6)),
              (Values{8388607 / 8388608.0f, -1.0f}));
    // 0x7FFFFFFF rounds up to exactly 1.0 on its way to single precision.
    EXPECT_EQ(readMono(1, 32, littleEndian32(0x7FFFFFFF) + littleEndian32(0x80000000) + littleEndian32(1)),
              (Values{1.0f, -1.0f, 0x1p-31f}));
    const std::vector<float> floats = readMono(3, 32,
                                               littleEndian32(std::bit_cast<std::uint32_t>(2.0f)) +
                                                   littleEndian32(0x7F800000) + littleEndian32(0x7FC00123));
    EXPECT_EQ(floats[0], 2.0f);
    EXPECT_EQ(floats[1], std::numeric_limits<float>::infinity());
    EXPECT_EQ(std::bit_cast<std::uint32_t>(floats[2]), 0x7FC00123u);
}

TEST(WavFileReaderSamples, ReadsAtOffsetsAndPositions)
{
    PartialReadFixture stereo24(sampleFormats[2], 3, 2000);
    stereo24.expectRead(5, 1500, 333);
    stereo24.expectRead(0, 1, 1999);
    stereo24.expectRead(17, 40, 0);
    // Out of order: the file position is set from the frame at every read.
    stereo24.expectRead(0, 10, 1000);
    stereo24.expectRead(2, 10, 10);
}

TEST(WavFileReaderSamples, ReadsAcrossScratchBlockBoundaries)
{
    // 1440 stereo 16-bit frames fill a block exactly; 7 channels of 24 bits leave 6 bytes of it unused.
    PartialReadFixture stereo16(sampleFormats[1], 2, 6000);
    for (const std::uint64_t numFrames : {1439u, 1440u, 1441u, 2880u, 2881u, 5999u})
        for (const std::uint64_t position : {0u, 1u})
            stereo16.expectRead(3, numFrames, position);
    PartialReadFixture sevenChannels24(sampleFormats[2], 7, 1000);
    for (const std::uint64_t numFrames : {273u, 274u, 275u, 548u, 549u, 1000u})
        sevenChannels24.expectRead(0, numFrames, 0);
}

TEST(WavFileReaderSamples, ReadsPastTheEndAreZeroFilled)
{
    PartialReadFixture stereo16(sampleFormats[1], 2, 1000);
    stereo16.expectRead(0, 100, 950);
    stereo16.expectRead(4, 100, 1000);
    stereo16.expectRead(0, 3000, 5000);
    PartialReadFixture mono8(sampleFormats[0], 1, 100);
    mono8.expectRead(1, 7000, 50);
}

TEST(WavFileReaderSamples, DataChunkLongerThanTheFileGivesItsSamplesThenZeros)
{
    const ScratchFolder scratch;
    // 2000 stereo 16-bit frames of 4000 stated: the second scratch block of 1440 frames comes back short,
    // behind a first block that filled the scratch with samples.
    const int numTrueFrames = 2000;
    const int numStatedFrames = 4000;
    const std::string samples = makeRandomBytes(numTrueFrames * 4, 11);
    const auto reader =
        openWavImage(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 44100, 16)) +
                                           makeChunkWithSize("data", numStatedFrames * 4, samples)));
    ASSERT_EQ(reader->getNumSamples(), static_cast<std::uint64_t>(numStatedFrames));
    const auto buffer = readAllFrames(*reader);
    for (std::uint32_t channel = 0; channel < 2; ++channel)
        for (int frame = 0; frame < numStatedFrames; ++frame) {
            float expected = 0.0f;
            if (frame < numTrueFrames) {
                const std::size_t index = (static_cast<std::size_t>(frame) * 2 + channel) * 2;
                const auto sample =
                    static_cast<std::int16_t>(static_cast<std::uint8_t>(samples[index]) |
                                              static_cast<std::uint8_t>(samples[index + 1]) << 8);
                expected = sample / 32768.0f;
            }
            ASSERT_EQ(buffer->getChannel(channel)[frame], expected)
                << "frame " << frame << ", channel " << channel;
        }
}

TEST(WavFileReaderSamples, UnreadableDepthsLeaveTheDestinationAsItWas)
{
    const ScratchFolder scratch;
    // 64-bit floats have a length but are written by nobody: the floats already there stay.
    const auto doubles = openWavImage(scratch, makeSimpleWavFile(3, 1, 64, std::string(8 * 5, '\x3F')));
    ASSERT_EQ(doubles->getNumSamples(), 5u);
    AudioBuffer buffer(1, 5);
    buffer.fillChannel(0, 0.25f);
    EXPECT_TRUE(doubles->readSamples(buffer, 0, 5, 0));
    for (int frame = 0; frame < 5; ++frame)
        EXPECT_EQ(buffer.getChannel(0)[frame], 0.25f);

    // 12 bits: the frame is 3 bytes of a stereo file, and the untouched words are then scaled as integers.
    const auto twelveBits = openWavImage(scratch, makeSimpleWavFile(1, 2, 12, std::string(3 * 4, '\x11')));
    ASSERT_EQ(twelveBits->getNumSamples(), 4u);
    AudioBuffer words(2, 4);
    words.fillChannel(0, std::bit_cast<float>(std::int32_t{1} << 30));
    EXPECT_TRUE(twelveBits->readSamples(words, 0, 4, 0));
    EXPECT_EQ(words.getChannel(0)[3], 0.5f);
}
