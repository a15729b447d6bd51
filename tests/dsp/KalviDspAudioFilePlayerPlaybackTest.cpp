#include "audiofiles/KalviDspAiffFixtures.h"
#include "audiofiles/KalviDspFfmpegFixtures.h"
#include "audiofiles/KalviDspLameFixtures.h"
#include "audiofiles/KalviDspReaderReads.h"
#include "audiofiles/KalviDspWavFixtures.h"
#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspPlayerHarness.h"
#include "threads/KalviDspException.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <thread>

namespace vlk::test {

namespace {

using Kind = RecordingListener::Kind;

std::size_t vectorsToPlay(std::size_t numFrames, std::uint32_t vectorSize)
{
    return (numFrames + vectorSize - 1) / vectorSize;
}

// The file, then zeros up to the end of the last vector that carried any of it, then the silent vector in
// which the end is told.
void expectWholeFileThenSilence(const SoundFile& sound, const Channels& audio, std::uint32_t vectorSize)
{
    const std::size_t numFrames = sound.getNumFrames();
    const std::size_t playedFrames = (vectorsToPlay(numFrames, vectorSize) + 1) * vectorSize;
    ASSERT_EQ(audio.size(), sound.samples.size());
    for (std::size_t channel = 0; channel < audio.size(); ++channel) {
        std::vector<float> expected = sound.samples[channel];
        expected.resize(playedFrames, 0.0f);
        EXPECT_EQ(findFirstDifference(expected, audio[channel]), -1) << "channel " << channel;
    }
}

// Opens the file, starts it from its first frame and plays vectors until the player stops; answers their
// count.
std::size_t playFromStart(AudioFilePlayer& player, const SoundFile& sound, std::uint32_t vectorSize,
                          Channels& audio)
{
    PlayerHarness harness(player, vectorSize);
    player.open(sound.path);
    player.rewind();
    return harness.playUntilStopped(audio, 10000);
}

// A form that libsndfile writes, and the compression type put in its place where libsndfile names an AIFC
// layout otherwise than the reader does: it calls 24-bit little-endian "42n1", and floats "FL32", a spelling
// the reader takes as well as "fl32".
struct FormatCase
{
    const char* name;
    int format;
    int numChannels;
    const char* renamedCompression = nullptr;
};

std::string getFileName(const FormatCase& formatCase)
{
    return (formatCase.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_AIFF ? "noise.aif" : "noise.wav";
}

std::ostream& operator<<(std::ostream& stream, const FormatCase& formatCase)
{
    return stream << formatCase.name << " x" << formatCase.numChannels;
}

class AudioFilePlayerPlaybackFormats : public testing::TestWithParam<FormatCase>
{
};

} // namespace

// 250000 frames through a ring of 192000 frames: the ring wraps on both sides. A vector of 441 frames does
// not divide the ring, so the audio thread splits reads at the ring's end too.
TEST_P(AudioFilePlayerPlaybackFormats, OutputsEveryFrameBitForBitThenSilence)
{
    const FormatCase formatCase = GetParam();
    ScratchFolder folder;
    const SoundFile sound =
        writeNoiseFile(folder, getFileName(formatCase), formatCase.format, formatCase.numChannels, 250000);
    if (formatCase.renamedCompression != nullptr)
        renameCompression(sound.path, formatCase.renamedCompression);
    AudioFilePlayer player(static_cast<std::uint32_t>(formatCase.numChannels), 192000);
    RecordingListener listener(player);

    Channels audio;
    const std::size_t numVectors = playFromStart(player, sound, 441, audio);

    EXPECT_EQ(numVectors, vectorsToPlay(250000, 441) + 1);
    expectWholeFileThenSilence(sound, audio, 441);
    EXPECT_EQ(listener.count(Kind::endOfFile), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    , AudioFilePlayerPlaybackFormats,
    testing::Values(FormatCase{"pcm8", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 1},
                    FormatCase{"pcm8", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 3},
                    FormatCase{"pcm16", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1},
                    FormatCase{"pcm16", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2},
                    FormatCase{"pcm16", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8},
                    FormatCase{"pcm24", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 2},
                    FormatCase{"pcm24", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 6},
                    FormatCase{"pcm32", SF_FORMAT_WAV | SF_FORMAT_PCM_32, 2},
                    FormatCase{"float", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1},
                    FormatCase{"float", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 8},
                    FormatCase{"rf64pcm24", SF_FORMAT_RF64 | SF_FORMAT_PCM_24, 2},
                    FormatCase{"rf64float", SF_FORMAT_RF64 | SF_FORMAT_FLOAT, 4},
                    FormatCase{"aiff8", SF_FORMAT_AIFF | SF_FORMAT_PCM_S8, 1},
                    FormatCase{"aiff8", SF_FORMAT_AIFF | SF_FORMAT_PCM_S8, 5},
                    FormatCase{"aiff16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 2},
                    FormatCase{"aiff16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 7},
                    FormatCase{"aiff24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 3},
                    FormatCase{"aiff32", SF_FORMAT_AIFF | SF_FORMAT_PCM_32, 4},
                    FormatCase{"sowt16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE, 1},
                    FormatCase{"sowt16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE, 6},
                    FormatCase{"sowt24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24 | SF_ENDIAN_LITTLE, 2, "sowt"},
                    FormatCase{"sowt24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24 | SF_ENDIAN_LITTLE, 8, "sowt"},
                    FormatCase{"fl32", SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 1, "fl32"},
                    FormatCase{"fl32", SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 8, "fl32"},
                    FormatCase{"FL32", SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 2}),
    [](const testing::TestParamInfo<FormatCase>& info) {
        return std::string(info.param.name) + "x" + std::to_string(info.param.numChannels);
    });

// 192000 is a whole number of 512-frame vectors: every read of the audio thread ends exactly at the ring's
// end, which must not be taken for a split.
TEST(AudioFilePlayerPlayback, VectorsThatDivideTheSmallestRingReadAcrossItsEndBitForBit)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "noise.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, 400000);
    AudioFilePlayer player(2, 100);
    ASSERT_EQ(player.getBufferCapacity(), 192000u);
    Channels audio;
    playFromStart(player, sound, 512, audio);

    expectWholeFileThenSilence(sound, audio, 512);
}

TEST(AudioFilePlayerPlayback, LargestRingWrapsBitForBit)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "long.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 3000000);
    AudioFilePlayer player(1, 3000000);
    ASSERT_EQ(player.getBufferCapacity(), 2880000u);
    Channels audio;
    playFromStart(player, sound, 2048, audio);

    expectWholeFileThenSilence(sound, audio, 2048);
}

// A host's pace: a little time passes between vectors, and the ring stays high enough that the buffering
// thread runs in its slower rhythms most of the time.
TEST(AudioFilePlayerPlayback, PlaysBitForBitAtAHostsPace)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "noise.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 2, 220000);
    AudioFilePlayer player(2, 192000);
    PlayerHarness harness(player, 256);
    player.open(sound.path);
    player.rewind();

    Channels audio;
    while (player.isPlaying()) {
        std::this_thread::sleep_for(std::chrono::microseconds(300));
        harness.play(audio, 1);
    }

    expectWholeFileThenSilence(sound, audio, 256);
}

// The decoder's floats pass the ring unchanged: the player outputs what the reader gives, then silence.
TEST(AudioFilePlayerPlayback, AnMp3FilePlaysAsItsReaderDecodesIt)
{
    ScratchFolder folder;
    const LameMp3 mp3 =
        encodeWithLame(folder.path(), "song.mp3", {44100, 'j', BitRateMode::variable, 4}, 1.5);
    const SoundFile sound{mp3.path, readThroughReader(mp3.path)};
    AudioFilePlayer player(2, 192000);
    Channels audio;
    playFromStart(player, sound, 441, audio);

    expectWholeFileThenSilence(sound, audio, 441);
}

// The same for every format that the platform's services read.
TEST(AudioFilePlayerPlayback, FilesOfThePlatformPlayAsTheirReaderGivesThem)
{
    ScratchFolder folder;
    for (const FfmpegFormat& format : getFfmpegFormats()) {
        const EncodedFile file = encodeWithFfmpeg(folder.path(), format.name, format, 0.5);
        const SoundFile sound{file.path, readThroughReader(file.path)};
        AudioFilePlayer player(2, 192000);
        Channels audio;
        playFromStart(player, sound, 441, audio);
        SCOPED_TRACE(format.name);
        expectWholeFileThenSilence(sound, audio, 441);
    }
}

TEST(AudioFilePlayerPlayback, RingSizeIsLimitedToItsRange)
{
    EXPECT_EQ(AudioFilePlayer(2, 100).getBufferCapacity(), 192000u);
    EXPECT_EQ(AudioFilePlayer(2, 191999).getBufferCapacity(), 192000u);
    EXPECT_EQ(AudioFilePlayer(2, 500000).getBufferCapacity(), 500000u);
    EXPECT_EQ(AudioFilePlayer(2, 2880001).getBufferCapacity(), 2880000u);
}

TEST(AudioFilePlayerChannels, FileWithFewerChannelsLeavesTheOtherOutputsSilent)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "stereo.wav", 2, 3000);
    AudioFilePlayer player(4, 192000);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    player.rewind();

    Channels audio;
    harness.play(audio, 4);

    EXPECT_EQ(findFirstDifference(
                  std::vector<float>(sound.samples[1].begin(), sound.samples[1].begin() + 2048), audio[1]),
              -1);
    EXPECT_EQ(audio[2], std::vector<float>(2048, 0.0f));
    EXPECT_EQ(audio[3], std::vector<float>(2048, 0.0f));
}

// The ring costs what the outputs need, whatever the file holds: a wide file's first channels reach the
// outputs, and a narrower file after it plays its own channels, with silence on the others.
TEST(AudioFilePlayerChannels, RingKeepsTheOutputsChannelsWhateverTheFilesHold)
{
    ScratchFolder folder;
    const SoundFile mono = writeFrameNumberFile(folder, "mono.wav", 1, 3000);
    const SoundFile octo = writeFrameNumberFile(folder, "octo.wav", 8, 3000);
    AudioFilePlayer player(2, 192000);
    PlayerHarness harness(player, 512);

    player.open(octo.path);
    player.rewind();
    Channels audio;
    harness.play(audio, 2);
    EXPECT_EQ(player.getNumChannelsInRing(), 2u);
    EXPECT_EQ(player.getNumChannelsInFile(), 8u);
    ASSERT_EQ(audio.size(), 2u);
    EXPECT_EQ(audio[0][0], frameNumberSample(0, 0));
    EXPECT_EQ(audio[1][1023], frameNumberSample(1023, 1));

    player.open(mono.path);
    EXPECT_EQ(player.getNumChannelsInRing(), 2u);
    EXPECT_FALSE(player.isPlaying());
    player.rewind();
    audio.clear();
    harness.play(audio, 2);
    EXPECT_EQ(audio[0][0], frameNumberSample(0));
    EXPECT_EQ(audio[0][1023], frameNumberSample(1023));
    // The second output has no file channel: silent, not the rest of the wider file.
    EXPECT_EQ(audio[1], std::vector<float>(1024, 0.0f));
}

TEST(AudioFilePlayerConnections, UnconnectedAudioOutputIsLeftUnwritten)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "stereo.wav", 2, 3000);
    AudioFilePlayer player(2, 192000);
    PlayerHarness harness(player, 512);
    harness.setConnections({1, 0, 1});
    player.open(sound.path);
    player.rewind();

    Channels audio;
    harness.play(audio, 2);

    EXPECT_EQ(audio[0][1000], frameNumberSample(1000));
    EXPECT_EQ(audio[1], std::vector<float>(1024, 0.0f));
}

TEST(AudioFilePlayerConnections, WithoutAnyConnectedOutputNothingAdvances)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "mono.wav", 1, 3000);
    AudioFilePlayer player(1, 192000);
    RecordingListener listener(player);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    player.rewind();
    listener.clear();

    harness.setConnections({0, 0});
    for (int vector = 0; vector < 10; ++vector)
        harness.perform();
    harness.setConnections({1, 1});
    Channels audio;
    harness.play(audio, 1);

    EXPECT_EQ(audio[0][0], frameNumberSample(0));
    EXPECT_EQ(listener.getCalls(Kind::progress).size(), 1u);
}

TEST(AudioFilePlayerConnections, MuteAndBypassSilenceTheOutputsAndHoldThePlayer)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "mono.wav", 1, 3000);
    AudioFilePlayer player(1, 192000);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    player.rewind();
    Channels audio;
    harness.play(audio, 1);

    harness.perform(1, 0);
    EXPECT_EQ(harness.getOutput(0), std::vector<float>(512, 0.0f));
    EXPECT_EQ(harness.getOutput(1), std::vector<float>(512, 0.0f));
    harness.perform(0, 1);
    EXPECT_EQ(harness.getOutput(0), std::vector<float>(512, 0.0f));
    harness.perform(1, 1);
    EXPECT_EQ(harness.getOutput(0), std::vector<float>(512, 0.0f));

    audio.clear();
    harness.play(audio, 1);
    EXPECT_EQ(audio[0][0], frameNumberSample(512));
}

TEST(AudioFilePlayerNames, OutputsThenPositionThenDumpOutlet)
{
    AudioFilePlayer player(2, 192000);
    EXPECT_EQ(player.getNumInlets(), 0u);
    EXPECT_EQ(player.getNumOutlets(), 3u);
    EXPECT_EQ(player.getOutputName(0), "output #1");
    EXPECT_EQ(player.getOutputName(1), "output #2");
    EXPECT_EQ(player.getOutputName(2), "playback position");
    EXPECT_EQ(player.getOutputName(3), "dumpout");
    EXPECT_EQ(player.getOutputName(-1), "dumpout");
}

TEST(AudioFilePlayerQueries, WithoutFile)
{
    AudioFilePlayer player(2, 192000);
    Vector<String> lines;
    player.getInfo(lines);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "no audio file");
    EXPECT_EQ(player.getFileName(), "");
    EXPECT_EQ(player.getNumChannelsInFile(), 0u);
    EXPECT_EQ(player.getLengthInMs(), 0.0f);
    EXPECT_EQ(player.getRemainingSamplesInAudioFile(), 0u);
}

// Each form with its suffix, each unit of size and each form of duration, as literal texts. The last file is
// sparse: past a gigabyte, it takes no room on disk.
TEST(AudioFilePlayerQueries, InfoDescribesEveryFormExactly)
{
    struct InfoCase
    {
        std::string name;
        std::string bytes;
        std::uint64_t sparseSize;
        std::string description;
    };
    BextContent broadcast;
    broadcast.description = "take 1";
    const std::string bext = makeChunk("bext", makeBextContent(broadcast));
    const std::vector<InfoCase> cases{
        {"mono24.wav",
         makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 1, 48000, 24)) +
                      makeChunk("data", std::string(144000, '\0'))),
         0, "(1 channel, 48 kHz, 48000 samples, 1.00 sec, 24 bits, WAV File, 144.04 Ko)"},
        {"float.wav",
         makeRf64File(makeChunk("fmt ", makeFormatContent(3, 2, 96000, 32)) +
                          makeChunkWithSize("data", 0xFFFFFFFF, std::string(800, '\0')),
                      800),
         0, "(2 channels, 96 kHz, 100 samples, 1.0 ms, 32 bits, WAV File (RF64), 0.88 Ko)"},
        {"broadcast.wav",
         makeRiffFile(bext + makeChunk("fmt ", makeFormatContent(1, 8, 22050, 16)) +
                      makeChunk("data", std::string(1120000, '\0'))),
         0, "(8 channels, 22.05 kHz, 70000 samples, 3.17 sec, 16 bits, WAV File (BWF), 1.12 Mo)"},
        {"both.wav",
         makeRf64File(makeChunk("fmt ", makeFormatContent(1, 1, 11025, 8)) + bext +
                          makeChunkWithSize("data", 0xFFFFFFFF, std::string(441, '\0')),
                      441),
         0, "(1 channel, 11025 Hz, 441 samples, 40.0 ms, 8 bits, WAV File (RF64 / BWF), 1.13 Ko)"},
        {"stereo.aif",
         makeFormFile("AIFF", makeAiffChunk("COMM", makeCommonContent(2, 16000, 16, 32000)) +
                                  makeAiffChunk("SSND", makeSoundDataContent(std::string(64000, '\0')))),
         0, "(2 channels, 32 kHz, 16000 samples, 500 ms, 16 bits, AIFF File, 64.05 Ko)"},
        {"sowt.aif",
         makeFormFile("AIFC", makeAiffChunk("FVER", makeVersionContent()) +
                                  makeAiffChunk("COMM", makeAifcCommonContent(6, 4410, 24, 44100, "sowt")) +
                                  makeAiffChunk("SSND", makeSoundDataContent(std::string(79380, '\0')))),
         0, "(6 channels, 44.1 kHz, 4410 samples, 100 ms, 24 bits, AIFF File, 79.47 Ko)"},
        {"float.aif",
         makeFormFile("AIFC", makeAiffChunk("FVER", makeVersionContent()) +
                                  makeAiffChunk("COMM", makeAifcCommonContent(1, 260000, 32, 8000, "fl32")) +
                                  makeAiffChunk("SSND", makeSoundDataContent(std::string(1040000, '\0')))),
         0, "(1 channel, 8 kHz, 260000 samples, 33 sec, 32 bits, AIFF File, 1.04 Mo)"},
        {"long.wav",
         makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 44100, 16)) +
                      makeChunkWithSize("data", 1000000000, "")),
         44 + 1000000000ull,
         "(2 channels, 44.1 kHz, 250000000 samples, 1 h 34 min 29 sec, 16 bits, WAV File, 1.00 Go)"},
    };

    ScratchFolder folder;
    AudioFilePlayer player(2, 192000);
    for (const InfoCase& infoCase : cases) {
        const std::string path = folder.write(infoCase.name, infoCase.bytes);
        if (infoCase.sparseSize != 0)
            std::filesystem::resize_file(path, infoCase.sparseSize);
        player.open(String(path));
        Vector<String> lines{"kept"};
        player.getInfo(lines);
        ASSERT_EQ(lines.size(), 3u) << infoCase.name;
        EXPECT_EQ(lines[0], "kept");
        EXPECT_EQ(lines[1], path);
        EXPECT_EQ(lines[2], infoCase.description) << infoCase.name;
    }
}

// The length uses the file's own rate, whatever the processor's is.
TEST(AudioFilePlayerQueries, NameChannelsAndLengthOfTheFile)
{
    ScratchFolder folder;
    const SoundFile sound =
        writeNoiseFile(folder, "half.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 3, 24000, 48000);
    AudioFilePlayer player(2, 192000);
    player.prepare(512, true, 96000.0f);
    player.open(sound.path);
    EXPECT_EQ(player.getFileName(), "half.wav");
    EXPECT_EQ(player.getNumChannelsInFile(), 3u);
    EXPECT_EQ(player.getLengthInMs(), 500.0f);
}

TEST(AudioFilePlayerOpen, EmptyPathIsRefusedAndTheOpenFileStays)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "mono.wav", 1, 3000);
    AudioFilePlayer player(1, 192000);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    player.rewind();

    try {
        player.open(File());
        FAIL() << "no exception";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, "Couldnt open file \"\"");
    }
    EXPECT_THROW(player.open(String(folder / "missing.wav")), Exception);
    EXPECT_THROW(player.open(String(folder.write("junk.wav", "not a sound file at all"))), Exception);

    EXPECT_EQ(player.getFileName(), "mono.wav");
    EXPECT_TRUE(player.isPlaying());
    Channels audio;
    harness.play(audio, 1);
    EXPECT_EQ(audio[0][0], frameNumberSample(0));
}

// Opening loads but does not start: with the region still empty, a resume runs into the end at once.
TEST(AudioFilePlayerOpen, OpenDoesNotStartAndResumeRightAfterItEndsAtOnce)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "mono.wav", 1, 3000);
    AudioFilePlayer player(1, 192000);
    RecordingListener listener(player);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    EXPECT_FALSE(player.isPlaying());

    player.resume();
    harness.perform();

    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(listener.count(Kind::endOfFile), 1u);
    EXPECT_EQ(harness.getOutput(0), std::vector<float>(512, 0.0f));
}

TEST(AudioFilePlayerListeners, NullAndDuplicatesAreIgnoredAndOrderIsKept)
{
    std::vector<int> order;
    struct OrderListener : AudioFilePlayer::Listener
    {
        OrderListener(std::vector<int>& order, int id) : order(order), id(id) {}
        void progressChanged(float) override {}
        void bufferingChanged(float) override {}
        void endOfFile() override { order.push_back(id); }
        void markerReached(const AudioFilesMetadata::Marker&) override {}
        std::vector<int>& order;
        int id;
    };
    // Declared before the player, so that they outlive it.
    OrderListener first(order, 1), second(order, 2), third(order, 3);
    AudioFilePlayer player(1, 192000);
    PlayerHarness harness(player, 512);
    player.addListener(nullptr);
    player.addListener(&first);
    player.addListener(&second);
    player.addListener(&first);
    player.addListener(&third);
    player.removeListener(nullptr);
    player.removeListener(&second);
    player.removeListener(&second);

    player.resume();
    harness.perform();

    EXPECT_EQ(order, (std::vector<int>{1, 3}));
}

} // namespace vlk::test
