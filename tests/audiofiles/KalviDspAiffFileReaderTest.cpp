#include "audiofiles/KalviDspAiffFileReader.h"

#include "audiofiles/KalviDspAiffFixtures.h"
#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

using namespace vlk;
using namespace vlk::test;
using namespace std::string_literals;

namespace {

using Values = std::vector<float>;

std::string common(std::uint16_t numChannels, std::uint32_t numFrames, std::uint16_t bits,
                   double rate = 44100)
{
    return makeAiffChunk("COMM", makeCommonContent(numChannels, numFrames, bits, rate));
}

std::string soundData(const std::string& sampleBytes, std::uint32_t offset = 0)
{
    return makeAiffChunk("SSND", makeSoundDataContent(sampleBytes, offset));
}

// Big-endian 16-bit samples.
std::string samples16(std::initializer_list<std::int16_t> values)
{
    std::string bytes;
    for (const std::int16_t value : values)
        bytes += bigEndian16(static_cast<std::uint16_t>(value));
    return bytes;
}

// The 16-bit sample that two file bytes make when they are read as big-endian.
float sampleOf(char high, char low)
{
    return static_cast<std::int16_t>(static_cast<std::uint8_t>(high) << 8 | static_cast<std::uint8_t>(low)) /
           32768.0f;
}

std::vector<float> readMono(const ScratchFolder& scratch, const std::string& bytes)
{
    return readFirstChannel(*openAiffImage(scratch, bytes));
}

} // namespace

TEST(AiffFileReaderRefusal, ForeignHeadersAndFormTypes)
{
    const ScratchFolder scratch;
    const std::string chunks = common(1, 2, 16) + soundData(samples16({1, 2}));
    for (const std::string& bytes :
         {""s, "FO"s, "RIFF\0\0\0\x30WAVE"s + chunks, makeFormFile("WAVE", chunks),
          makeFormFile("aiff", chunks), "form"s + makeFormFile("AIFF", chunks).substr(4)}) {
        const std::string path = scratch / "refused.aif";
        EXPECT_EQ(getAiffRefusal(scratch, bytes), makeAiffRefusalText(path)) << bytes.size() << " bytes";
    }
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", chunks)), "");
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFC", chunks)), "");
}

TEST(AiffFileReaderRefusal, FormSizeThatEndsBeforeTheFirstChunk)
{
    const ScratchFolder scratch;
    const std::string chunks = common(1, 2, 16) + soundData(samples16({1, 2}));
    EXPECT_NE(getAiffRefusal(scratch, makeFormFileWithSize("AIFF", 4, chunks)), "");
    EXPECT_NE(getAiffRefusal(scratch, makeFormFileWithSize("AIFF", 0, chunks)), "");
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFileWithSize("AIFF", 5, chunks)), "");
}

TEST(AiffFileReaderRefusal, MissingOrUnsoundCommonChunk)
{
    const ScratchFolder scratch;
    const std::string sound = soundData(samples16({1, 2}));
    for (const std::string& chunks :
         {sound, makeAiffChunk("ANNO", "no format") + sound, common(0, 2, 16) + sound,
          common(1, 2, 0) + sound, common(1, 2, 16, 1.5) + sound, common(1, 2, 16, -44100) + sound,
          common(1, 2, 16, 1 << 30) + sound,
          // Cut inside the rate: the missing bytes read as 0.
          makeAiffChunk("COMM", makeCommonContent(1, 2, 16, 44100).substr(0, 9))})
        EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", chunks)),
                  makeAiffRefusalText(scratch / "refused.aif"));
}

// A rate out of range stops the walk at once, even behind a sound COMM.
TEST(AiffFileReaderRefusal, SecondCommonChunkWithAnUnsoundRate)
{
    const ScratchFolder scratch;
    EXPECT_NE(getAiffRefusal(scratch, makeFormFile("AIFF", common(1, 2, 16) + common(1, 2, 16, 1.0) +
                                                               soundData(samples16({1, 2})))),
              "");
}

TEST(AiffFileReaderRefusal, CompressionTypesOtherThanTheFive)
{
    const ScratchFolder scratch;
    const std::string sound = samples16({1, 2});
    for (const std::string& compression :
         {"ima4"s, "ADP4"s, "alaw"s, "ulaw"s, "fl64"s, "SOWT"s, "none"s, "\0\0\0\0"s})
        EXPECT_EQ(getAiffRefusal(scratch, makeSimpleAifcFile(1, 16, compression, sound)),
                  makeAiffRefusalText(scratch / "refused.aif"))
            << compression;
    for (const std::string compression : {"NONE", "twos", "sowt", "fl32", "FL32"})
        EXPECT_EQ(getAiffRefusal(scratch, makeSimpleAifcFile(1, 16, compression, sound)), "") << compression;
}

TEST(AiffFileReaderRefusal, ForeignVersionBeforeTheCommonChunk)
{
    const ScratchFolder scratch;
    const std::string foreign = makeAiffChunk("FVER", bigEndian32(0x12345678));
    const std::string chunks = common(1, 2, 16) + soundData(samples16({1, 2}));
    EXPECT_NE(getAiffRefusal(scratch, makeFormFile("AIFC", foreign + chunks)), "");
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFC", makeAiffChunk("FVER", bigEndian32(0)) + chunks)),
              "");
}

// Behind COMM a foreign version ends the walk, and the file is accepted without its SSND: the length is
// COMM's and the samples are the file's first bytes.
TEST(AiffFileReaderRefusal, ForeignVersionBehindTheCommonChunkEndsTheWalk)
{
    const ScratchFolder scratch;
    const std::string image =
        makeFormFile("AIFC", common(1, 3, 16) + makeAiffChunk("FVER", bigEndian32(0x12345678)) +
                                 soundData(samples16({100, 200, 300})));
    const auto reader = openAiffImage(scratch, image);
    EXPECT_EQ(reader->getNumSamples(), 3u);
    EXPECT_EQ(readFirstChannel(*reader),
              (Values{sampleOf('F', 'O'), sampleOf('R', 'M'), sampleOf(image[4], image[5])}));
}

// Files that no read could serve are refused rather than read wrongly or for ever.
TEST(AiffFileReaderRefusal, LayoutsThatNoReadCouldServe)
{
    const ScratchFolder scratch;
    const std::string refusal = makeAiffRefusalText(scratch / "refused.aif");
    // 961 channels of 48 bits make a frame wider than the 5760-byte scratch block; 960 fill it.
    EXPECT_EQ(
        getAiffRefusal(scratch, makeFormFile("AIFF", common(961, 1, 48) + soundData(std::string(5766, 1)))),
        refusal);
    EXPECT_EQ(
        getAiffRefusal(scratch, makeFormFile("AIFF", common(960, 1, 48) + soundData(std::string(5760, 1)))),
        "");
    // Channel counts beyond 1024, and negative ones, which widen to billions.
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", common(1025, 1, 8) + soundData(std::string(1025, 1)))),
              refusal);
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", common(1024, 1, 8) + soundData(std::string(1024, 1)))),
              "");
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", common(0xFFFE, 0, 0xFFF0))), refusal);
    // An offset that places the first sample before the start of the file.
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", common(1, 2, 16) +
                                                               makeAiffChunk("SSND", bigEndian32(0xFFFFFF00) +
                                                                                         bigEndian32(0) +
                                                                                         samples16({1, 2})))),
              refusal);
    // Frames counted by COMM with no SSND to bound them: a negative count widens to more than any file.
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", common(2, 0xFFFFFFFF, 16))), refusal);
    // Frames of no size: four bits of one channel, with frames counted.
    EXPECT_EQ(getAiffRefusal(scratch, makeFormFile("AIFF", common(1, 10, 4))), refusal);
}

TEST(AiffFileReaderRefusal, ShortAifFileThroughTheFactory)
{
    const ScratchFolder scratch;
    for (const std::string& bytes : {""s, "FOR"s, "\0\0\0"s}) {
        const std::string path = scratch.write("short.aif", bytes);
        try {
            AudioFileReader::create(File(path));
            ADD_FAILURE() << "accepted";
        } catch (const Exception& exception) {
            EXPECT_EQ(exception.message, makeAiffRefusalText(path));
        }
    }
}

TEST(AiffFileReaderMetadata, FieldsOfAPlainFile)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write(
        "plain.aif", makeFormFile("AIFF", common(2, 3, 24, 96000) + soundData(std::string(3 * 2 * 3, '\1'))));
    const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(File(path));
    ASSERT_NE(dynamic_cast<AiffFileReader*>(reader.get()), nullptr);
    const AudioFilesMetadata& metadata = reader->getMetadata();
    EXPECT_EQ(metadata.formatName, "AIFF File");
    EXPECT_EQ(reader->getFileExtension(), ".aiff");
    EXPECT_EQ(reader->getFilePath(), path);
    EXPECT_EQ(metadata.sampleRate, 96000.0);
    EXPECT_EQ(metadata.numChannels, 2u);
    EXPECT_EQ(metadata.bitsPerSample, 24);
    EXPECT_EQ(metadata.numSamples, 3u);
    EXPECT_FALSE(metadata.isFloatingPoint);
    EXPECT_FALSE(metadata.isRF64);
    EXPECT_FALSE(metadata.isBWF);
    EXPECT_EQ(metadata.getNumMarkers(), 0u);
}

TEST(AiffFileReaderMetadata, RatesThroughTheFile)
{
    const ScratchFolder scratch;
    const std::string sound = soundData(samples16({1}));
    EXPECT_EQ(openAiffImage(scratch, makeFormFile("AIFF", common(1, 1, 16, 48000) + sound))->getSampleRate(),
              48000.0);
    EXPECT_EQ(
        openAiffImage(scratch, makeFormFile("AIFF", common(1, 1, 16, 11025.5) + sound))->getSampleRate(),
        11025.0);
}

// The header is the file's type: a FORM file named .wav goes to this reader.
TEST(AiffFileReaderMetadata, FactoryTakesFormFilesWhateverTheirName)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("misnamed.wav", makeSimpleAiffFile(1, 16, samples16({5, 6})));
    const auto reader = AudioFileReader::create(File(path));
    EXPECT_EQ(reader->getMetadata().formatName, "AIFF File");
    EXPECT_EQ(readFirstChannel(*reader), (Values{5 / 32768.0f, 6 / 32768.0f}));
}

// The chunk's size still counts the eight bytes of offset and block size: they make two more stereo 16-bit
// frames, which lie behind the end of this file and read as zeros.
TEST(AiffFileReaderMetadata, SoundDataBoundsTheLength)
{
    const ScratchFolder scratch;
    const auto reader = openAiffImage(
        scratch, makeFormFile("AIFF", common(2, 1000, 16) + soundData(samples16({1, 2, 3, 4}))));
    ASSERT_EQ(reader->getNumSamples(), 4u);
    const auto buffer = readAllFrames(*reader);
    EXPECT_EQ(Values(buffer->getChannel(1), buffer->getChannel(1) + 4),
              (Values{2 / 32768.0f, 4 / 32768.0f, 0, 0}));

    EXPECT_EQ(
        openAiffImage(scratch, makeFormFile("AIFF", common(1, 3, 16) + soundData(samples16({1, 2, 3, 4, 5}))))
            ->getNumSamples(),
        3u);
}

TEST(AiffFileReaderMetadata, SoundDataBeforeCommonTakesTheCountUnchecked)
{
    const ScratchFolder scratch;
    const auto reader =
        openAiffImage(scratch, makeFormFile("AIFF", soundData(samples16({7, 8, 9})) + common(1, 500, 16)));
    ASSERT_EQ(reader->getNumSamples(), 500u);
    const std::vector<float> samples = readFirstChannel(*reader);
    EXPECT_EQ(Values(samples.begin(), samples.begin() + 3),
              (Values{7 / 32768.0f, 8 / 32768.0f, 9 / 32768.0f}));
    // Behind the SSND chunk lies the COMM chunk, then the end of the file.
    EXPECT_EQ(samples[3], sampleOf('C', 'O'));
    EXPECT_EQ(samples[499], 0.0f);
}

TEST(AiffFileReaderMetadata, MissingSoundDataReadsTheFileFromItsStart)
{
    const ScratchFolder scratch;
    const std::string image = makeFormFile("AIFF", common(1, 4, 16));
    EXPECT_EQ(readMono(scratch, image), (Values{sampleOf('F', 'O'), sampleOf('R', 'M'),
                                                sampleOf(image[4], image[5]), sampleOf(image[6], image[7])}));
}

TEST(AiffFileReaderMetadata, OffsetSkipsBytesBeforeTheSamples)
{
    const ScratchFolder scratch;
    EXPECT_EQ(readMono(scratch, makeFormFile("AIFF", common(1, 2, 16) + soundData(samples16({-3, 3}), 6))),
              (Values{-3 / 32768.0f, 3 / 32768.0f}));
}

TEST(AiffFileReaderMetadata, SoundDataLongerThanTheFileEndsInZeros)
{
    const ScratchFolder scratch;
    const auto reader = openAiffImage(
        scratch,
        makeFormFile("AIFF", common(1, 100, 16) + makeAiffChunkWithSize("SSND", 8 + 200,
                                                                        bigEndian32(0) + bigEndian32(0) +
                                                                            samples16({11, 12}))));
    ASSERT_EQ(reader->getNumSamples(), 100u);
    const std::vector<float> samples = readFirstChannel(*reader);
    EXPECT_EQ(samples[1], 12 / 32768.0f);
    EXPECT_EQ(std::count(samples.begin() + 2, samples.end(), 0.0f), 98);
}

// Writers that pad an odd chunk, as the format asks, put the walk out of step: the next identifier is read
// one byte early, and the SSND behind is lost.
TEST(AiffFileReaderChunkWalk, OddChunkWithItsPadByteHidesWhatFollows)
{
    const ScratchFolder scratch;
    const std::string image = makeFormFile("AIFF", common(1, 2, 16) + makeAiffChunk("ANNO", "odd") +
                                                       soundData(samples16({40, 50})));
    const auto reader = openAiffImage(scratch, image);
    EXPECT_EQ(reader->getNumSamples(), 2u);
    EXPECT_EQ(readFirstChannel(*reader), (Values{sampleOf('F', 'O'), sampleOf('R', 'M')}));
}

TEST(AiffFileReaderChunkWalk, OddChunkWithoutPadAndEvenChunksAreWalkedThrough)
{
    const ScratchFolder scratch;
    const std::string sound = soundData(samples16({40, 50}));
    const Values expected{40 / 32768.0f, 50 / 32768.0f};
    EXPECT_EQ(readMono(scratch, makeFormFile("AIFF", common(1, 2, 16) +
                                                         makeAiffChunkWithSize("ANNO", 3, "odd") + sound)),
              expected);
    EXPECT_EQ(readMono(scratch, makeFormFile("AIFF", common(1, 2, 16) + makeAiffChunk("ANNO", "even") +
                                                         makeAiffChunk("APPL", "") + sound)),
              expected);
}

TEST(AiffFileReaderChunkWalk, ChunksBehindTheFormSizeAreNotSeen)
{
    const ScratchFolder scratch;
    const std::string chunks = common(1, 2, 16);
    const auto reader =
        openAiffImage(scratch, makeFormFileWithSize("AIFF", static_cast<std::uint32_t>(4 + chunks.size()),
                                                    chunks + soundData(samples16({40, 50}))));
    EXPECT_EQ(readFirstChannel(*reader)[0], sampleOf('F', 'O'));
}

TEST(AiffFileReaderChunkWalk, ChunkRunningPastTheEndEndsTheWalk)
{
    const ScratchFolder scratch;
    const auto reader = openAiffImage(
        scratch, makeFormFile("AIFF", common(1, 2, 16) + makeAiffChunkWithSize("ANNO", 0xFFFFFFFF, "x") +
                                          soundData(samples16({40, 50}))));
    EXPECT_EQ(readFirstChannel(*reader)[0], sampleOf('F', 'O'));
}

TEST(AiffFileReaderCompression, ByteOrderByCompressionType)
{
    const ScratchFolder scratch;
    const std::string bytes = "\x12\x34\xFF\x80"s;
    const Values bigEndian{0x1234 / 32768.0f, -128 / 32768.0f};
    const Values littleEndian{0x3412 / 32768.0f, static_cast<std::int16_t>(0x80FF) / 32768.0f};
    EXPECT_EQ(readMono(scratch, makeSimpleAifcFile(1, 16, "NONE", bytes)), bigEndian);
    EXPECT_EQ(readMono(scratch, makeSimpleAifcFile(1, 16, "twos", bytes)), bigEndian);
    EXPECT_EQ(readMono(scratch, makeSimpleAifcFile(1, 16, "sowt", bytes)), littleEndian);
    // 24 bits of "sowt": the three bytes reversed.
    EXPECT_EQ(readMono(scratch, makeSimpleAifcFile(1, 24, "sowt", "\xFF\xFF\x7F\x00\x00\x80"s)),
              (Values{8388607 / 8388608.0f, -1.0f}));
    EXPECT_EQ(readMono(scratch, makeSimpleAiffFile(1, 24, "\x7F\xFF\xFF\x80\x00\x00"s)),
              (Values{8388607 / 8388608.0f, -1.0f}));
}

// Without the compression field an AIFC file is big-endian, whatever an earlier COMM said.
TEST(AiffFileReaderCompression, CommonChunkOfEighteenBytesIsBigEndian)
{
    const ScratchFolder scratch;
    const std::string plain = makeAiffChunk("COMM", makeCommonContent(1, 2, 16, 44100));
    const std::string swapped = makeAiffChunk("COMM", makeAifcCommonContent(1, 2, 16, 44100, "sowt"));
    const std::string sound = soundData("\x12\x34\xFF\x80"s);
    const Values bigEndian{0x1234 / 32768.0f, -128 / 32768.0f};
    EXPECT_EQ(
        readMono(scratch, makeFormFile("AIFC", makeAiffChunk("FVER", makeVersionContent()) + plain + sound)),
        bigEndian);
    EXPECT_EQ(readMono(scratch, makeFormFile("AIFC", swapped + plain + sound)), bigEndian);
}

TEST(AiffFileReaderCompression, ExtremesOfEachDepth)
{
    const ScratchFolder scratch;
    // The 8-bit byte 0x80 is -1.0 here, unlike in a WAV file.
    EXPECT_EQ(readMono(scratch, makeSimpleAiffFile(1, 8, "\x80\x00\x7F\xFF"s)),
              (Values{-1.0f, 0.0f, 127 / 128.0f, -1 / 128.0f}));
    EXPECT_EQ(readMono(scratch, makeSimpleAifcFile(1, 8, "sowt", "\x80\x7F"s)),
              (Values{-1.0f, 127 / 128.0f}));
    EXPECT_EQ(readMono(scratch, makeSimpleAiffFile(1, 16, "\x80\x00\x7F\xFF"s)),
              (Values{-1.0f, 32767 / 32768.0f}));
    // 0x7FFFFFFF rounds up to exactly 1.0 on its way to single precision.
    EXPECT_EQ(
        readMono(scratch, makeSimpleAiffFile(
                              1, 32, bigEndian32(0x7FFFFFFF) + bigEndian32(0x80000000) + bigEndian32(1))),
        (Values{1.0f, -1.0f, 0x1p-31f}));
    EXPECT_EQ(readMono(scratch, makeSimpleAifcFile(1, 32, "sowt", "\x01\0\0\0\0\0\0\x80"s)),
              (Values{0x1p-31f, -1.0f}));
}

TEST(AiffFileReaderCompression, FloatsPassBitForBit)
{
    const ScratchFolder scratch;
    const std::string floats = bigEndian32(std::bit_cast<std::uint32_t>(2.0f)) + bigEndian32(0xFF800000) +
                               bigEndian32(0x7FC00123) + bigEndian32(std::bit_cast<std::uint32_t>(-0.25f));
    for (const char* compression : {"fl32", "FL32"}) {
        const auto reader = openAiffImage(scratch, makeSimpleAifcFile(1, 32, compression, floats));
        EXPECT_TRUE(reader->getMetadata().isFloatingPoint);
        const std::vector<float> samples = readFirstChannel(*reader);
        EXPECT_EQ(samples[0], 2.0f);
        EXPECT_EQ(samples[1], -std::numeric_limits<float>::infinity());
        EXPECT_EQ(std::bit_cast<std::uint32_t>(samples[2]), 0x7FC00123u);
        EXPECT_EQ(samples[3], -0.25f);
    }
}

// A 12-bit file gets frames of one byte instead of two: its blocks are read and nothing is written, and the
// words already in the destination are then scaled as integers.
TEST(AiffFileReaderCompression, OtherDepthsWriteNothing)
{
    const ScratchFolder scratch;
    const auto reader =
        openAiffImage(scratch, makeFormFile("AIFF", common(1, 4, 12) + soundData("\x11\x11\x22\x22"s)));
    ASSERT_EQ(reader->getNumSamples(), 4u);
    AudioBuffer words(1, 4);
    std::fill_n(reinterpret_cast<std::int32_t*>(words.getChannel(0)), 4, 1 << 30);
    EXPECT_TRUE(reader->readSamples(words, 0, 4, 0));
    EXPECT_EQ(Values(words.getChannel(0), words.getChannel(0) + 4), (Values{0.5f, 0.5f, 0.5f, 0.5f}));
}
