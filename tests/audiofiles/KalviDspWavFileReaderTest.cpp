#include "audiofiles/KalviDspWavFileReader.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using namespace vlk;
using namespace vlk::test;

namespace {

// 16-bit stereo frames whose samples count up from 1: frame f holds 2f + 1 and 2f + 2.
std::string makeCountingStereo16(int numFrames)
{
    std::string bytes;
    for (int sample = 1; sample <= 2 * numFrames; ++sample)
        bytes += littleEndian16(static_cast<std::uint16_t>(sample));
    return bytes;
}

std::string stereo16Format()
{
    return makeChunk("fmt ", makeFormatContent(1, 2, 44100, 16));
}

// The refusal for bytes, checked against the text with the file's own path.
void expectRefused(const ScratchFolder& scratch, const std::string& bytes, const std::string& what)
{
    EXPECT_EQ(getWavRefusal(scratch, bytes), makeWavRefusalText(scratch / "refused.wav")) << what;
}

std::uint64_t getLength(const ScratchFolder& scratch, const std::string& bytes)
{
    return openWavImage(scratch, bytes)->getNumSamples();
}

} // namespace

TEST(WavFileReaderRefusal, HeaderThatIsNoRiffWave)
{
    const ScratchFolder scratch;
    const std::string chunks = stereo16Format() + makeChunk("data", makeCountingStereo16(4));
    expectRefused(scratch, "", "empty file");
    expectRefused(scratch, "RIF", "three bytes");
    expectRefused(scratch, "RIFX" + littleEndian32(100) + "WAVE" + chunks, "big-endian RIFX");
    expectRefused(scratch, "BW64" + littleEndian32(0xFFFFFFFF) + "WAVE" + chunks, "BW64");
    expectRefused(scratch, "RIFF" + littleEndian32(100) + "AVI " + chunks, "no WAVE");
}

TEST(WavFileReaderRefusal, Bw64IsTypedWavAndRefusedByTheReader)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("bw64.wav", "BW64" + littleEndian32(0xFFFFFFFF) + "WAVE" +
                                                           stereo16Format() + makeChunk("data", "abcd"));
    EXPECT_EQ(AudioFileReader::getFileType(File(path)), "WAV File");
    try {
        AudioFileReader::create(File(path));
        ADD_FAILURE() << "BW64 opened";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, makeWavRefusalText(path));
    }
}

TEST(WavFileReaderRefusal, Rf64WithoutSoundDs64First)
{
    const ScratchFolder scratch;
    const std::string chunks = stereo16Format() + makeChunk("data", makeCountingStereo16(4));
    expectRefused(scratch, "RF64" + littleEndian32(0xFFFFFFFF) + "WAVE" + chunks, "fmt where ds64 belongs");
    const std::string shortDs64 =
        makeChunk("ds64", littleEndian64(1000) + littleEndian64(16) + std::string(11, '\0'));
    expectRefused(scratch, "RF64" + littleEndian32(0xFFFFFFFF) + "WAVE" + shortDs64 + chunks,
                  "ds64 of 27 bytes");
    // The same file with a sound ds64 opens.
    EXPECT_EQ(getLength(scratch, makeRf64File(chunks, 16)), 4u);
}

TEST(WavFileReaderRefusal, NoFormatBeforeTheWalkEnds)
{
    const ScratchFolder scratch;
    expectRefused(scratch, makeRiffFile(makeChunk("data", makeCountingStereo16(4))), "data only");
    // A streamed file's RIFF size of 0 puts the limit before the first chunk.
    expectRefused(scratch, makeRiffFileWithSize(0, stereo16Format() + makeChunk("data", "abcd")),
                  "RIFF size 0");
    // An unknown chunk of size 0 ends the walk before the format.
    expectRefused(scratch, makeRiffFile(makeChunk("junk", "") + stereo16Format()), "empty unknown chunk");
}

TEST(WavFileReaderRefusal, ZeroRateChannelsOrDepth)
{
    const ScratchFolder scratch;
    const std::string data = makeChunk("data", makeCountingStereo16(4));
    expectRefused(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 0, 16)) + data), "rate 0");
    expectRefused(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 0, 44100, 16)) + data),
                  "channels 0");
    expectRefused(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 44100, 0)) + data),
                  "depth 0");
}

TEST(WavFileReaderRefusal, DistrustedDepthThatWouldDivideByZero)
{
    const ScratchFolder scratch;
    const std::string data = makeChunk("data", makeCountingStereo16(4));
    expectRefused(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 0, 0xFFFF, 192000)) + data),
                  "rate 0");
    expectRefused(scratch,
                  makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 0, 48000, 0xFFFF, 192000)) + data),
                  "channels 0");
}

TEST(WavFileReaderRefusal, FrameLargerThanTheScratchBlock)
{
    const ScratchFolder scratch;
    // 721 channels of 64 bits make 5768 bytes a frame; 720 make exactly one block.
    const std::string data = makeChunk("data", std::string(5768 * 2, '\1'));
    expectRefused(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 721, 48000, 64)) + data),
                  "721 channels of 64 bits");
    expectRefused(
        scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 48000, 0xFFFF, 48000 * 5762)) + data),
        "5762 bytes from the average bytes per second");
    EXPECT_EQ(
        getLength(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 720, 48000, 64)) + data)),
        2u);
}

TEST(WavFileReaderRefusal, MoreThan1024Channels)
{
    const ScratchFolder scratch;
    const std::string data = makeChunk("data", std::string(5760, '\1'));
    for (const std::uint16_t channels : {1025, 5760, 65535})
        expectRefused(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, channels, 48000, 8)) + data),
                      std::to_string(channels) + " channels");
    EXPECT_EQ(getLength(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 1024, 48000, 8)) + data)),
              5u);
}

TEST(WavFileReaderRefusal, SizesBeyondTheRangeOfFilePositions)
{
    const ScratchFolder scratch;
    const std::string chunks = stereo16Format() + makeChunk("data", makeCountingStereo16(4));
    expectRefused(scratch, makeRf64File(chunks, 0x8000000000000000u), "negative ds64 data size");
    expectRefused(scratch, makeRf64File(chunks, 0x7FFFFFFFFFFFFFF0u), "data end beyond the largest position");
    std::string hugeRiffSize = makeRf64File(chunks, 16);
    hugeRiffSize.replace(20, 8, littleEndian64(0x7FFFFFFFFFFFFFFFu));
    expectRefused(scratch, hugeRiffSize, "ds64 RIFF size that overflows the limit");
}

TEST(WavFileReaderRefusal, LaterFormatLeavesCountedFramesUnreadable)
{
    const ScratchFolder scratch;
    const std::string image = makeRiffFile(stereo16Format() + makeChunk("data", makeCountingStereo16(4)) +
                                           makeChunk("fmt ", makeFormatContent(2, 2, 44100, 16)));
    expectRefused(scratch, image, "tag 2 after the data");
}

TEST(WavFileReaderRefusal, MissingFileKeepsTheFileReaderText)
{
    const ScratchFolder scratch;
    try {
        WavFileReader reader{File(scratch / "absent.wav")};
        ADD_FAILURE() << "an absent file opened";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, "File \"" + scratch / "absent.wav" + "\" does not exist");
    }
}

TEST(WavFileReaderFormat, CanonicalPcmFile)
{
    const ScratchFolder scratch;
    const auto reader =
        openWavImage(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 48000, 16)) +
                                           makeChunk("data", makeCountingStereo16(10))));
    const AudioFilesMetadata& metadata = reader->getMetadata();
    EXPECT_EQ(metadata.formatName, "WAV File");
    EXPECT_EQ(metadata.getFormatDescription(), "WAV File");
    EXPECT_EQ(metadata.sampleRate, 48000.0);
    EXPECT_EQ(metadata.bitsPerSample, 16);
    EXPECT_EQ(metadata.numChannels, 2u);
    EXPECT_EQ(metadata.numSamples, 10u);
    EXPECT_FALSE(metadata.isFloatingPoint);
    EXPECT_FALSE(metadata.isRF64);
    EXPECT_FALSE(metadata.isBWF);
    EXPECT_FALSE(reader->isAmbisonic());
    EXPECT_EQ(reader->getFileExtension(), ".wav");
    EXPECT_EQ(reader->getFilePath(), scratch / "image.wav");
}

TEST(WavFileReaderFormat, UndecodableTagOpensWithLengthZero)
{
    const ScratchFolder scratch;
    const auto reader =
        openWavImage(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(2, 3, 22050, 4)) +
                                           makeChunk("data", std::string(300, '\7'))));
    EXPECT_EQ(reader->getSampleRate(), 22050.0);
    EXPECT_EQ(reader->getNumChannels(), 3u);
    EXPECT_EQ(reader->getMetadata().bitsPerSample, 4);
    EXPECT_EQ(reader->getNumSamples(), 0u);
}

TEST(WavFileReaderFormat, ExtensibleSubformats)
{
    const ScratchFolder scratch;
    const std::string data = makeChunk("data", makeCountingStereo16(6));
    auto open = [&](const std::string& format) { return openWavImage(scratch, makeRiffFile(format + data)); };

    const auto pcm = open(makeChunk("fmt ", makeExtensibleFormatContent(2, 44100, 16, pcmSubformat)));
    EXPECT_EQ(pcm->getNumSamples(), 6u);
    EXPECT_FALSE(pcm->getMetadata().isFloatingPoint);
    EXPECT_FALSE(pcm->isAmbisonic());

    const auto floats = open(makeChunk("fmt ", makeExtensibleFormatContent(1, 44100, 32, floatSubformat)));
    EXPECT_TRUE(floats->getMetadata().isFloatingPoint);
    EXPECT_EQ(floats->getNumSamples(), 6u);

    const auto ambisonic =
        open(makeChunk("fmt ", makeExtensibleFormatContent(2, 44100, 16, ambisonicPcmSubformat)));
    EXPECT_TRUE(ambisonic->isAmbisonic());
    EXPECT_EQ(ambisonic->getNumSamples(), 6u);

    // The float form of B-format, a foreign subformat and an extensible fmt cut to 16 bytes: no frame size.
    const auto ambisonicFloat =
        open(makeChunk("fmt ", makeExtensibleFormatContent(1, 44100, 32, ambisonicFloatSubformat)));
    EXPECT_EQ(ambisonicFloat->getNumSamples(), 0u);
    EXPECT_EQ(ambisonicFloat->getNumChannels(), 1u);
    const auto foreign =
        open(makeChunk("fmt ", makeExtensibleFormatContent(2, 44100, 16, std::string(16, 'x'))));
    EXPECT_EQ(foreign->getNumSamples(), 0u);
    const auto cut = open(makeChunk("fmt ", makeFormatContent(0xFFFE, 2, 44100, 16)));
    EXPECT_EQ(cut->getNumSamples(), 0u);
    EXPECT_EQ(cut->getMetadata().bitsPerSample, 16);
}

TEST(WavFileReaderFormat, DistrustedDepthComesFromTheAverageBytes)
{
    const ScratchFolder scratch;
    // Stereo at 48000 Hz with 288000 bytes a second: 6 bytes a frame, so 24 bits.
    const std::string samples = littleEndian32(0x123456).substr(0, 3) + std::string("\xFF\xFF\x7F", 3) +
                                std::string("\x00\x00\x80", 3) + std::string("\x01\x00\x00", 3);
    const auto reader =
        openWavImage(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 48000, 0xFFFF, 288000)) +
                                           makeChunk("data", samples)));
    EXPECT_EQ(reader->getMetadata().bitsPerSample, 24);
    ASSERT_EQ(reader->getNumSamples(), 2u);
    const auto buffer = readAllFrames(*reader);
    EXPECT_EQ(buffer->getChannel(0)[0], 0x123456 / 8388608.0f);
    EXPECT_EQ(buffer->getChannel(1)[0], 8388607 / 8388608.0f);
    EXPECT_EQ(buffer->getChannel(0)[1], -1.0f);
    EXPECT_EQ(buffer->getChannel(1)[1], 1 / 8388608.0f);
}

TEST(WavFileReaderFormat, FloatFlagSurvivesALaterIntegerFormat)
{
    const ScratchFolder scratch;
    const auto reader =
        openWavImage(scratch, makeRiffFile(makeChunk("fmt ", makeFormatContent(3, 1, 44100, 32)) +
                                           makeChunk("fmt ", makeFormatContent(1, 1, 44100, 32)) +
                                           makeChunk("data", littleEndian32(0x3F800000))));
    EXPECT_TRUE(reader->getMetadata().isFloatingPoint);
    EXPECT_EQ(readAllFrames(*reader)->getChannel(0)[0], 1.0f);
}

TEST(WavFileReaderChunkWalk, DataBeforeFormatGivesLengthZero)
{
    const ScratchFolder scratch;
    EXPECT_EQ(getLength(scratch, makeRiffFile(makeChunk("data", makeCountingStereo16(4)) + stereo16Format())),
              0u);
}

TEST(WavFileReaderChunkWalk, SecondDataChunkReplacesTheFirst)
{
    const ScratchFolder scratch;
    const std::string second =
        littleEndian16(1000) + littleEndian16(2000) + littleEndian16(3000) + littleEndian16(4000);
    const auto reader =
        openWavImage(scratch, makeRiffFile(stereo16Format() + makeChunk("data", makeCountingStereo16(5)) +
                                           makeChunk("data", second)));
    ASSERT_EQ(reader->getNumSamples(), 2u);
    const auto buffer = readAllFrames(*reader);
    EXPECT_EQ(buffer->getChannel(0)[0], 1000 / 32768.0f);
    EXPECT_EQ(buffer->getChannel(1)[1], 4000 / 32768.0f);
}

TEST(WavFileReaderChunkWalk, EmptyUnknownChunkEndsTheWalkButEmptyListDoesNot)
{
    const ScratchFolder scratch;
    const std::string data = makeChunk("data", makeCountingStereo16(3));
    EXPECT_EQ(getLength(scratch, makeRiffFile(stereo16Format() + makeChunk("junk", "") + data)), 0u);
    for (const char* skipped : {"LIST", "cue ", "INST", "inst", "acid", "smpl"})
        EXPECT_EQ(getLength(scratch, makeRiffFile(stereo16Format() + makeChunk(skipped, "") + data)), 3u)
            << skipped;
    // Recognised chunks of size 0 do not end it either.
    EXPECT_EQ(getLength(scratch, makeRiffFile(stereo16Format() + makeChunk("axml", "") + data)), 3u);
    EXPECT_EQ(getLength(scratch, makeRiffFile(stereo16Format() + makeChunk("junk", "x") + data)), 3u);
}

TEST(WavFileReaderChunkWalk, RiffSizeShorterThanTheFileHidesLaterChunks)
{
    const ScratchFolder scratch;
    const std::string format = stereo16Format();
    const std::string image = makeRiffFileWithSize(static_cast<std::uint32_t>(4 + format.size()),
                                                   format + makeChunk("data", makeCountingStereo16(3)));
    const auto reader = openWavImage(scratch, image);
    EXPECT_EQ(reader->getNumChannels(), 2u);
    EXPECT_EQ(reader->getNumSamples(), 0u);
}

TEST(WavFileReaderChunkWalk, NoDataChunkOpensWithLengthZero)
{
    const ScratchFolder scratch;
    EXPECT_EQ(getLength(scratch, makeRiffFile(stereo16Format())), 0u);
}

TEST(WavFileReaderChunkWalk, OddSizedChunksAreFollowedByTheirPadByte)
{
    const ScratchFolder scratch;
    // An odd LIST and an odd unknown chunk: were the pad byte not skipped, the walk would miss the data.
    const auto reader = openWavImage(scratch, makeRiffFile(makeChunk("LIST", "INFOx") + stereo16Format() +
                                                           makeChunk("odd!", "abc") +
                                                           makeChunk("data", makeCountingStereo16(4))));
    ASSERT_EQ(reader->getNumSamples(), 4u);
    const auto buffer = readAllFrames(*reader);
    EXPECT_EQ(buffer->getChannel(0)[0], 1 / 32768.0f);
    EXPECT_EQ(buffer->getChannel(1)[3], 8 / 32768.0f);
}

TEST(WavFileReaderRf64, LengthComesFromDs64AndChunksBehindDataAreNotSeen)
{
    const ScratchFolder scratch;
    const std::string image =
        makeRf64File(stereo16Format() + makeChunkWithSize("data", 0xFFFFFFFF, makeCountingStereo16(5)) +
                         makeChunk("bext", makeBextContent({})),
                     5 * 4);
    const auto reader = openWavImage(scratch, image);
    EXPECT_TRUE(reader->getMetadata().isRF64);
    EXPECT_FALSE(reader->getMetadata().isBWF);
    EXPECT_EQ(reader->getMetadata().getFormatDescription(), "WAV File (RF64)");
    ASSERT_EQ(reader->getNumSamples(), 5u);
    EXPECT_EQ(readAllFrames(*reader)->getChannel(1)[4], 10 / 32768.0f);
}

TEST(WavFileReaderRf64, Ds64LengthBeyondTheFileReadsAsZeros)
{
    const ScratchFolder scratch;
    const std::uint64_t numFrames = std::uint64_t{1} << 38;
    const auto reader = openWavImage(
        scratch, makeRf64File(stereo16Format() + makeChunk("data", makeCountingStereo16(2)), numFrames * 4));
    ASSERT_EQ(reader->getNumSamples(), numFrames);
    AudioBuffer buffer(2, 8);
    buffer.fillChannel(0, 0.5f);
    buffer.fillChannel(1, 0.5f);
    EXPECT_TRUE(reader->readSamples(buffer, 0, 8, numFrames - 6));
    for (std::uint32_t channel = 0; channel < 2; ++channel)
        for (int frame = 0; frame < 8; ++frame)
            EXPECT_EQ(buffer.getChannel(channel)[frame], 0.0f);
}

TEST(WavFileReaderChunkWalk, RiffDataSizeOfAllOnesIsTakenLiterally)
{
    const ScratchFolder scratch;
    const auto reader =
        openWavImage(scratch, makeRiffFile(stereo16Format() +
                                           makeChunkWithSize("data", 0xFFFFFFFF, makeCountingStereo16(3))));
    ASSERT_EQ(reader->getNumSamples(), 0xFFFFFFFFu / 4);
    AudioBuffer buffer(2, 5);
    EXPECT_TRUE(reader->readSamples(buffer, 0, 5, 1));
    EXPECT_EQ(buffer.getChannel(0)[1], 5 / 32768.0f);
    EXPECT_EQ(buffer.getChannel(0)[2], 0.0f);
    EXPECT_EQ(buffer.getChannel(1)[4], 0.0f);
}
