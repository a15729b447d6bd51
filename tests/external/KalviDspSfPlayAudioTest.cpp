// What velur.sfplay~ sounds like: velurhost's recordings of its signal outlets against the files it played.
#include "KalviDspExternalTestSupport.h"
#include "KalviDspHostTestSupport.h"
#include "audiofiles/KalviDspFfmpegFixtures.h"
#include "audiofiles/KalviDspLameFixtures.h"
#include "audiofiles/KalviDspReaderReads.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sndfile.h>

namespace vlk::external::test {
namespace {

using host::test::ScratchFolder;

constexpr double sampleRate = 44100.0;

// Distinct values in [-1, 1] for every frame and channel.
float noise(long frame, int channel)
{
    const long mixed = (frame * 7919 + channel * 104729 + frame * frame % 977) % 20001;
    return static_cast<float>(mixed - 10000) / 10000.0f;
}

// Frame k carries (k + 1) / 65536: the value tells which frame played, and silence is told apart.
float frameNumber(long frame, int)
{
    return static_cast<float>(frame + 1) / 65536.0f;
}

std::vector<float> readFloats(const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, samples.data(), info.frames);
    sf_close(file);
    return samples;
}

bool noSanitizerReport(const std::string& errors)
{
    return errors.find("Sanitizer") == std::string::npos && errors.find("runtime error") == std::string::npos;
}

// The pace, and the starts that precede the audio: a ring that was never filled through its end restarts in
// place and reads one more chunk, which gives the buffering thread a head start at the faster pace.
struct Pace
{
    const char* speed;
    const char* starts;
};

class SfPlayPace : public ::testing::TestWithParam<Pace>
{
};

// At real time and at a faster pace that the buffering thread keeps up with, every frame of the file leaves
// the object as it is in the file, the last outlet ramps through the position, and the end is silence.
TEST_P(SfPlayPace, TheRecordingHoldsTheFileBitForBitAndThePositionRamp)
{
    ScratchFolder scratch;
    const long numFrames = 22050;
    writeFloatWav(scratch.path() + "/noise.wav", 2, numFrames, noise);
    const std::string out = scratch.path() + "/out.wav";
    const HostRun run = runVelurhost(scratch.path(),
                                     "!new velur.sfplay~ @numchannels 2\nopen noise.wav\n" +
                                         std::string(GetParam().starts) + "!dsp on\n!run 375v\n",
                                     speedKeepingUp(GetParam().speed) + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_TRUE(noSanitizerReport(run.errors)) << run.errors;
    const Recording recording = readRecording(out);
    ASSERT_EQ(recording.numChannels, 3);
    ASSERT_EQ(recording.numFrames, 375 * 64);
    long mismatches = 0;
    for (long k = 0; k < numFrames; ++k)
        for (int c = 0; c < 2; ++c)
            mismatches += recording.at(k, c) != noise(k, c);
    EXPECT_EQ(mismatches, 0);
    for (long k = numFrames; k < recording.numFrames; ++k)
        ASSERT_EQ(recording.at(k, 0), 0.0f) << k;
    // Each vector ramps over the time of one vector up to its end, which the file's end limits.
    for (long k = 0; k < numFrames; ++k) {
        const double end = static_cast<double>(std::min(k / 64 * 64 + 64, numFrames));
        const double expected =
            (end - 64.0 + static_cast<double>(k % 64) * 64.0 / 63.0) * 1000.0 / sampleRate;
        ASSERT_NEAR(recording.at(k, 2), expected, 1e-3) << k;
    }
    // Stopped at the end, the position stands at the file's length.
    EXPECT_EQ(recording.at(recording.numFrames - 1, 2), 500.0f);
}

void PrintTo(const Pace& pace, std::ostream* stream)
{
    *stream << "speed " << pace.speed;
}

INSTANTIATE_TEST_SUITE_P(RealTimeAndFaster, SfPlayPace,
                         ::testing::Values(Pace{"1", "1\n"}, Pace{"20", "1\n1\n"}),
                         [](const ::testing::TestParamInfo<Pace>& info) {
                             return std::string("speed") + info.param.speed;
                         });

TEST(SfPlayAudio, AnAiffFilePlaysAsLibsndfileReadsIt)
{
    ScratchFolder scratch;
    const std::string path = scratch.path() + "/tune.aif";
    writeAiff(path, 2, 20000, {},
              [](long k, int c) { return static_cast<short>((k * 37 + c * 9001) % 65536 - 32768); });
    const std::vector<float> expected = readFloats(path);
    const std::string out = scratch.path() + "/out.wav";
    // Five starts read the whole file into the ring before the audio runs.
    const HostRun run =
        runVelurhost(scratch.path(),
                     "!new velur.sfplay~ @numchannels 2\nopen tune.aif\n1\n1\n1\n1\n1\n!dsp on\n!run 330v\n",
                     speedKeepingUp("20") + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    const Recording recording = readRecording(out);
    long mismatches = 0;
    for (long k = 0; k < 20000; ++k)
        for (int c = 0; c < 2; ++c)
            mismatches += recording.at(k, c) != expected[static_cast<std::size_t>(2 * k + c)];
    EXPECT_EQ(mismatches, 0);
}

// Five starts fill most of the ring before the audio runs; decoding the rest keeps up with real time, not
// with twenty times it under the sanitizers.
void expectPlaysAsTheReaderGivesIt(const ScratchFolder& scratch, const std::string& name)
{
    const std::vector<std::vector<float>> expected =
        vlk::test::readThroughReader(scratch.path() + "/" + name);
    const auto numFrames = static_cast<long>(expected[0].size());
    const std::string out = scratch.path() + "/out.wav";
    const HostRun run =
        runVelurhost(scratch.path(),
                     "!new velur.sfplay~ @numchannels 2\nopen " + name + "\n1\n1\n1\n1\n1\n!dsp on\n!run " +
                         std::to_string(numFrames / 64 + 2) + "v\n",
                     speedKeepingUp("1") + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    const Recording recording = readRecording(out);
    long mismatches = 0;
    for (long k = 0; k < recording.numFrames; ++k)
        for (int c = 0; c < 2; ++c)
            mismatches +=
                recording.at(k, c) != (k < numFrames ? expected[c][static_cast<std::size_t>(k)] : 0.0f);
    EXPECT_EQ(mismatches, 0) << name;
}

TEST(SfPlayAudio, AnMp3FilePlaysAsTheReaderDecodesIt)
{
    using namespace vlk::test;
    ScratchFolder scratch;
    encodeWithLame(scratch.path(), "song.mp3", {32000, 's', BitRateMode::variable, 3}, 0.5);
    expectPlaysAsTheReaderGivesIt(scratch, "song.mp3");
}

TEST(SfPlayAudio, FilesOfThePlatformPlayAsTheReaderGivesThem)
{
    using namespace vlk::test;
    ScratchFolder scratch;
    for (const FfmpegFormat& format : getFfmpegFormats()) {
        encodeWithFfmpeg(scratch.path(), format.name, format, 0.5);
        expectPlaysAsTheReaderGivesIt(scratch, std::string(format.name) + format.extension);
    }
}

TEST(SfPlayAudio, LoopingIsGaplessOverTheFileAndOverARegion)
{
    ScratchFolder scratch;
    const long numFrames = 10000;
    writeFloatWav(scratch.path() + "/count.wav", 1, numFrames, frameNumber);
    const std::string out = scratch.path() + "/out.wav";
    // Three starts read the whole file into the ring; after the seek, the buffering thread wraps the region
    // on its own. 100 ms to 200 ms are the frames 4410 to 8819.
    const HostRun run =
        runVelurhost(scratch.path(),
                     "!new velur.sfplay~ @loop 1\nopen count.wav\n1\n1\n1\n!dsp on\n!run 500v\n"
                     "seek 100 200\n!run 500v\n",
                     speedKeepingUp("4") + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    for (const std::string& line : run.lines)
        EXPECT_NE(line, "dump: bang");
    const Recording recording = readRecording(out);
    ASSERT_EQ(recording.numFrames, 1000 * 64);
    for (long k = 0; k < 500 * 64; ++k)
        ASSERT_EQ(recording.at(k, 0), frameNumber(k % numFrames, 0)) << k;
    for (long k = 0; k < 500 * 64; ++k)
        ASSERT_EQ(recording.at(500 * 64 + k, 0), frameNumber(4410 + k % 4410, 0)) << k;
}

// The bang at the end reaches the patch after the vector that found the end, and a 1 sent back at once
// starts the file again at the next vector: 1000 frames, their padding to 16 vectors, one silent vector.
TEST(SfPlayAudio, AnEndBangAnsweredWithOneRestartsTheFile)
{
    ScratchFolder scratch;
    const long numFrames = 1000;
    writeFloatWav(scratch.path() + "/count.wav", 1, numFrames, frameNumber);
    const std::string out = scratch.path() + "/out.wav";
    const HostRun run = runVelurhost(
        scratch.path(), "!new velur.sfplay~\nopen count.wav\n!answer bang 1\n!dsp on\n1\n!run 34v\n",
        speedKeepingUp("20") + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(std::count(run.lines.begin(), run.lines.end(), "dump: bang"), 2);
    const Recording recording = readRecording(out);
    const long secondStart = 17 * 64;
    ASSERT_EQ(recording.numFrames, 34 * 64);
    for (long k = 0; k < secondStart; ++k)
        ASSERT_EQ(recording.at(k, 0), k < numFrames ? frameNumber(k, 0) : 0.0f) << k;
    for (long k = 0; k < numFrames; ++k)
        ASSERT_EQ(recording.at(secondStart + k, 0), frameNumber(k, 0)) << k;
}

// Muted, bypassed or disabled, the object is silent and its file stands still: afterwards it goes on with the
// frame that was next.
TEST(SfPlayAudio, MuteBypassAndDisableAreSilentAndFrozen)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/count.wav", 1, 44100, frameNumber);
    const std::string out = scratch.path() + "/out.wav";
    const HostRun run =
        runVelurhost(scratch.path(),
                     "!new velur.sfplay~\nopen count.wav\n1\n!dsp on\n!run 10v\n"
                     "mute 1\n!run 10v\nmute 0\n!run 10v\nbypass 1\n!run 10v\nbypass 0\n!run 10v\n"
                     "!disable 1\n!run 10v\n!disable 0\n!run 10v\n",
                     speedKeepingUp("20") + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    const Recording recording = readRecording(out);
    ASSERT_EQ(recording.numFrames, 70 * 64);
    long next = 0;
    for (long k = 0; k < recording.numFrames; ++k) {
        const bool silent = (k / 640) % 2 == 1;
        if (silent) {
            ASSERT_EQ(recording.at(k, 0), 0.0f) << k;
            ASSERT_EQ(recording.at(k, 1), 0.0f) << k;
        } else {
            ASSERT_EQ(recording.at(k, 0), frameNumber(next++, 0)) << k;
        }
    }
}

TEST(SfPlayAudio, ASecondFileReplacesTheFirstWhilePlaying)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/count.wav", 1, 44100, frameNumber);
    writeFloatWav(scratch.path() + "/noise.wav", 1, 44100, noise);
    const std::string out = scratch.path() + "/out.wav";
    const HostRun run =
        runVelurhost(scratch.path(),
                     "!new velur.sfplay~\nopen count.wav\n1\n!dsp on\n!run 50v\nopen noise.wav\n"
                     "!run 5v\n1\n!run 50v\n",
                     speedKeepingUp("20") + " --out " + shellQuoted(out));
    ASSERT_EQ(run.status, 0) << run.errors;
    const Recording recording = readRecording(out);
    ASSERT_EQ(recording.numFrames, 105 * 64);
    for (long k = 0; k < 50 * 64; ++k)
        ASSERT_EQ(recording.at(k, 0), frameNumber(k, 0)) << k;
    // Opening stops playback; the new file plays from its start.
    for (long k = 50 * 64; k < 55 * 64; ++k)
        ASSERT_EQ(recording.at(k, 0), 0.0f) << k;
    for (long k = 0; k < 50 * 64; ++k)
        ASSERT_EQ(recording.at(55 * 64 + k, 0), noise(k, 0)) << k;
}

TEST(SfPlayMarkers, MarkersOfAnAiffFileAreToldWhileThePositionOutletIsConnected)
{
    ScratchFolder scratch;
    writeAiff(scratch.path() + "/marked.aif", 1, 44100, {{1, 1000, "one"}, {0xFFFE, 30000, "later"}},
              [](long, int) { return static_cast<short>(100); });
    const std::string play = "open marked.aif\n1\n!dsp on\n!run 1100ms\n!dsp off\n";
    const HostRun connected = runVelurhost(scratch.path(), "!new velur.sfplay~\n" + play, "--speed 20");
    const HostRun unconnected =
        runVelurhost(scratch.path(), "!new velur.sfplay~\n!disconnect 2\n" + play, "--speed 20");
    ASSERT_EQ(connected.status, 0) << connected.errors;
    ASSERT_EQ(unconnected.status, 0) << unconnected.errors;
    std::vector<std::string> markers;
    for (const std::string& line : connected.lines)
        if (line.rfind("dump: marker", 0) == 0)
            markers.push_back(line);
    EXPECT_EQ(markers,
              (std::vector<std::string>{"dump: marker 1 1000 one", "dump: marker 65534 30000 later"}));
    for (const std::string& line : unconnected.lines)
        EXPECT_EQ(line.rfind("dump: marker", 0), std::string::npos) << line;
}

// Replacing, seeking and looping while the audio runs, with the buffering thread at work: the sanitizers of
// the build watch velurhost and the module.
// Each file is started by a message that reads its first chunk: a resume right after an open, with loop on,
// would play the ring while the disk side first fills it, which the player allows and the race detector
// rightly reports.
TEST(SfPlayConcurrency, OpeningSeekingAndReplacingFilesWhileAudioRuns)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/a.wav", 2, 100000, noise);
    writeFloatWav(scratch.path() + "/b.wav", 3, 30000, frameNumber);
    writeAiff(scratch.path() + "/c.aif", 1, 20000, {{3, 500, "m"}},
              [](long k, int) { return static_cast<short>(k); });
    const HostRun run =
        runVelurhost(scratch.path(),
                     "!new velur.sfplay~ @numchannels 2 @buffersize 192000\n!dsp on\nopen a.wav\n1\n"
                     "!run 40v\nopen b.wav\n!run 10v\n1\n!run 40v\nseek 100\n!run 20v\n"
                     "seek 300 50\n!run 30v\nopen c.aif\nloop 1\n1\n!run 40v\nseek 10 20\n"
                     "!run 60v\nopen a.wav\n1\npause\n!run 10v\nresume\nseek 2000\n!run 30v\n"
                     "loop 0\nopen b.wav\n1\n!run 400v\n",
                     "--speed 10");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_TRUE(noSanitizerReport(run.errors)) << run.errors;
}

} // namespace
} // namespace vlk::external::test
