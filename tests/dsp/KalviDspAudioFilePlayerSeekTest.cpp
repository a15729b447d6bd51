#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspPlayerHarness.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace vlk::test {

namespace {

using Kind = RecordingListener::Kind;

// A player with a frame-number file open, and a host around it.
struct SeekFixture
{
    explicit SeekFixture(std::int64_t numFrames = 150000, std::uint32_t vectorSize = 512,
                         int fileRate = 44100, float processorRate = 44100.0f)
        : sound(writeFrameNumberFile(folder, "frames.wav", 1, numFrames, fileRate)), player(1, 192000),
          harness(player, vectorSize, processorRate)
    {
        player.open(sound.path);
    }

    // The file frames that the next vectors carry: frame numbers as the samples tell them, -1 for silence.
    std::vector<std::int64_t> playFrames(std::size_t numVectors)
    {
        Channels audio;
        harness.play(audio, numVectors);
        std::vector<std::int64_t> frames;
        for (float sample : audio[0])
            frames.push_back(static_cast<std::int64_t>(sample) - 1);
        return frames;
    }

    static std::vector<std::int64_t> run(std::int64_t first, std::size_t count)
    {
        std::vector<std::int64_t> frames(count);
        for (std::size_t index = 0; index < count; ++index)
            frames[index] = first + static_cast<std::int64_t>(index);
        return frames;
    }

    ScratchFolder folder;
    SoundFile sound;
    AudioFilePlayer player;
    RecordingListener listener{player};
    PlayerHarness harness;
};

float milliseconds(std::uint64_t frame, double sampleRate = 44100.0)
{
    return static_cast<float>(static_cast<double>(frame) * 1000.0 / sampleRate);
}

} // namespace

TEST(AudioFilePlayerSeek, StartsAtTheTruncatedFrameAndTellsProgressZero)
{
    SeekFixture fixture;
    fixture.player.seek(1000.0f);
    EXPECT_TRUE(fixture.player.isPlaying());
    const std::vector<RecordingListener::Call> progress = fixture.listener.getCalls(Kind::progress);
    ASSERT_EQ(progress.size(), 1u);
    EXPECT_EQ(progress[0].value, 0.0f);

    // 1000 * 0.001f * 44100 in float is 44100 exactly; 10.5 ms are 463.05 frames, truncated.
    EXPECT_EQ(fixture.playFrames(1), SeekFixture::run(44100, 512));
    fixture.player.seek(10.5f);
    EXPECT_EQ(fixture.playFrames(1)[0], 463);
}

TEST(AudioFilePlayerSeek, UsesTheProcessorsRateNotTheFiles)
{
    SeekFixture fixture(150000, 512, 22050, 44100.0f);
    fixture.player.seek(1000.0f);
    EXPECT_EQ(fixture.playFrames(1)[0], 44100);
}

TEST(AudioFilePlayerSeek, StartsPlaybackFromPause)
{
    SeekFixture fixture;
    fixture.player.rewind();
    fixture.playFrames(2);
    fixture.player.pause();
    fixture.player.seek(100.0f);
    EXPECT_TRUE(fixture.player.isPlaying());
    EXPECT_EQ(fixture.playFrames(1)[0], 4410);
}

TEST(AudioFilePlayerSeek, NegativeZeroAndNotANumberRewind)
{
    for (float ms : {-5.0f, 0.0f, std::numeric_limits<float>::quiet_NaN()}) {
        SeekFixture fixture;
        fixture.player.seek(2000.0f);
        fixture.playFrames(1);
        fixture.player.seek(ms);
        EXPECT_EQ(fixture.playFrames(2), SeekFixture::run(0, 1024)) << ms;
    }
}

TEST(AudioFilePlayerSeek, PlaysToTheEndOfTheFile)
{
    SeekFixture fixture(50000);
    fixture.player.seek(1000.0f);
    Channels audio;
    fixture.harness.playUntilStopped(audio, 1000);
    ASSERT_GE(audio[0].size(), 50000u - 44100u);
    EXPECT_EQ(audio[0][50000 - 44100 - 1], frameNumberSample(49999));
    EXPECT_EQ(audio[0][50000 - 44100], 0.0f);
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
}

TEST(AudioFilePlayerSeek, PastTheEndGivesSilenceAndTheEndAtTheNextVector)
{
    SeekFixture fixture(50000);
    fixture.player.seek(1.0e30f);
    fixture.harness.perform();
    EXPECT_EQ(fixture.harness.getOutput(0), std::vector<float>(512, 0.0f));
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
    EXPECT_FALSE(fixture.player.isPlaying());
}

TEST(AudioFilePlayerSeekRegion, PlaysBetweenTheTwoTimesInEitherOrder)
{
    for (const auto& [startMs, endMs] : {std::pair{1000.0f, 3000.0f}, std::pair{3000.0f, 1000.0f}}) {
        SeekFixture fixture;
        fixture.player.seek(startMs, endMs);
        Channels audio;
        const std::size_t numVectors = fixture.harness.playUntilStopped(audio, 1000);

        // 88200 frames fill 172 vectors and 136 frames of a 173rd; the end is told in the 174th.
        EXPECT_EQ(numVectors, 174u);
        std::vector<float> expected(fixture.sound.samples[0].begin() + 44100,
                                    fixture.sound.samples[0].begin() + 132300);
        expected.resize(174 * 512, 0.0f);
        EXPECT_EQ(findFirstDifference(expected, audio[0]), -1);
        EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
    }
}

TEST(AudioFilePlayerSeekRegion, TimesAreLimitedToTheFile)
{
    SeekFixture fixture(50000);
    fixture.player.seek(-100.0f, 1.0e9f);
    Channels audio;
    fixture.harness.playUntilStopped(audio, 1000);
    std::vector<float> expected = fixture.sound.samples[0];
    expected.resize(99 * 512, 0.0f);
    EXPECT_EQ(findFirstDifference(expected, audio[0]), -1);
}

TEST(AudioFilePlayerSeekRegion, EmptyRegionEndsAtOnce)
{
    SeekFixture fixture;
    fixture.player.seek(500.0f, 500.0f);
    fixture.harness.perform();
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
    EXPECT_FALSE(fixture.player.isPlaying());
}

// Before the ring wrapped it still holds the file from its first frame: no chunk of the head is read again,
// so the ring keeps what the disk side had read.
TEST(AudioFilePlayerRewind, EarlyRewindRestartsFromTheRing)
{
    SeekFixture fixture(300000);
    fixture.player.rewind();
    fixture.playFrames(40);
    const std::uint64_t writtenBeforeRewind = fixture.player.getNumSamplesInRing() + 40 * 512;
    fixture.player.rewind();
    EXPECT_GE(fixture.player.getNumSamplesInRing(), writtenBeforeRewind);
    EXPECT_EQ(fixture.playFrames(60), SeekFixture::run(0, 60 * 512));
}

TEST(AudioFilePlayerRewind, AfterTheRingWrappedTheHeadIsReadAgain)
{
    SeekFixture fixture(300000);
    fixture.player.rewind();
    fixture.playFrames(400);
    fixture.player.rewind();
    EXPECT_EQ(fixture.playFrames(20), SeekFixture::run(0, 20 * 512));
}

TEST(AudioFilePlayerRewind, AfterARegionThatDidNotStartAtTheHeadTheHeadIsRead)
{
    SeekFixture fixture;
    fixture.player.seek(1000.0f);
    fixture.playFrames(4);
    fixture.player.rewind();
    EXPECT_EQ(fixture.playFrames(4), SeekFixture::run(0, 4 * 512));
}

TEST(AudioFilePlayerRewind, ShortFilePlayedToItsEndPlaysAgainWhole)
{
    SeekFixture fixture(5000);
    for (int pass = 0; pass < 3; ++pass) {
        fixture.player.rewind();
        Channels audio;
        fixture.harness.playUntilStopped(audio, 100);
        std::vector<float> expected = fixture.sound.samples[0];
        expected.resize(11 * 512, 0.0f);
        EXPECT_EQ(findFirstDifference(expected, audio[0]), -1) << "pass " << pass;
    }
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 3u);
}

TEST(AudioFilePlayerPause, HoldsThePositionAndResumeGoesOnWithTheNextFrame)
{
    SeekFixture fixture;
    fixture.player.seek(100.0f);
    fixture.playFrames(3);
    fixture.player.pause();
    EXPECT_FALSE(fixture.player.isPlaying());
    fixture.listener.clear();
    for (int vector = 0; vector < 3; ++vector) {
        fixture.harness.perform();
        EXPECT_EQ(fixture.harness.getOutput(0), std::vector<float>(512, 0.0f));
        EXPECT_EQ(fixture.harness.getOutput(1), std::vector<float>(512, milliseconds(4410 + 3 * 512)));
    }
    EXPECT_EQ(fixture.listener.count(Kind::progress), 0u);

    fixture.player.resume();
    EXPECT_EQ(fixture.playFrames(1), SeekFixture::run(4410 + 3 * 512, 512));
}

// The ring goes on filling while paused.
TEST(AudioFilePlayerPause, DiskSideKeepsFilling)
{
    SeekFixture fixture(300000);
    fixture.player.seek(100.0f);
    fixture.player.pause();
    const std::uint64_t before = fixture.player.getNumSamplesInRing();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (fixture.player.getNumSamplesInRing() <= before && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_GT(fixture.player.getNumSamplesInRing(), before);
}

TEST(AudioFilePlayerPosition, RampRunsFromTheVectorsFirstFrameToItsEnd)
{
    SeekFixture fixture;
    fixture.player.seek(1000.0f);
    for (std::uint64_t vector = 0; vector < 3; ++vector) {
        Channels audio;
        std::vector<float> positions;
        fixture.harness.play(audio, 1, &positions);
        const std::uint64_t begin = 44100 + vector * 512;
        EXPECT_FLOAT_EQ(positions[0], milliseconds(begin));
        EXPECT_FLOAT_EQ(positions[511], milliseconds(begin + 512));
        EXPECT_LT(positions[510], positions[511]);
        EXPECT_LT(positions[0], positions[1]);
    }
}

TEST(AudioFilePlayerPosition, OneFrameVectorsCarryTheEndOfEachFrame)
{
    SeekFixture fixture(50000, 1);
    fixture.player.rewind();
    std::vector<float> positions;
    Channels audio;
    fixture.harness.play(audio, 3, &positions);
    ASSERT_EQ(positions.size(), 3u);
    for (std::uint64_t frame = 0; frame < 3; ++frame)
        EXPECT_FLOAT_EQ(positions[frame], milliseconds(frame + 1));
    EXPECT_EQ(audio[0],
              (std::vector<float>{frameNumberSample(0), frameNumberSample(1), frameNumberSample(2)}));
}

TEST(AudioFilePlayerPosition, ProgressIsThePlayedShareOfTheRegion)
{
    SeekFixture fixture(51200);
    fixture.player.rewind();
    fixture.listener.clear();
    fixture.playFrames(10);
    const std::vector<RecordingListener::Call> progress = fixture.listener.getCalls(Kind::progress);
    ASSERT_EQ(progress.size(), 10u);
    EXPECT_EQ(progress[0].value, 1.0f);
    EXPECT_EQ(progress[9].value, 10.0f);
}

} // namespace vlk::test
