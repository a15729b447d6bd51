#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspPlayerHarness.h"

#include <gtest/gtest.h>

namespace vlk::test {

namespace {

using Kind = RecordingListener::Kind;

float milliseconds(std::uint64_t frame)
{
    return static_cast<float>(static_cast<double>(frame) * 1000.0 / 44100.0);
}

// The looping position adds a float step per frame: it is told apart from its neighbours, not exact.
constexpr float withinAFrame = 0.01f;

struct LoopFixture
{
    LoopFixture(std::int64_t numFrames, std::uint32_t vectorSize)
        : sound(writeFrameNumberFile(folder, "loop.wav", 1, numFrames)), player(1, 192000),
          harness(player, vectorSize)
    {
        player.open(sound.path);
        player.setLoop(true);
    }

    ScratchFolder folder;
    SoundFile sound;
    AudioFilePlayer player;
    RecordingListener listener{player};
    PlayerHarness harness;
};

// Frame i of the output of a loop over [start, end) that began at start.
std::vector<float> loopedFrames(std::uint64_t start, std::uint64_t end, std::size_t count)
{
    std::vector<float> frames(count);
    for (std::size_t index = 0; index < count; ++index)
        frames[index] = frameNumberSample(start + index % (end - start));
    return frames;
}

} // namespace

// 10000 frames in vectors of 441 frames: the wraps fall at a different place in each vector, and the ring
// holds many passes at once.
TEST(AudioFilePlayerLoop, AudioIsGaplessOverManyPasses)
{
    LoopFixture fixture(10000, 441);
    fixture.player.rewind();
    Channels audio;
    fixture.harness.play(audio, 1000);

    EXPECT_EQ(findFirstDifference(loopedFrames(0, 10000, 441000), audio[0]), -1);
    EXPECT_TRUE(fixture.player.isPlaying());
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 0u);
}

TEST(AudioFilePlayerLoop, RegionLoopsBetweenTheTwoTimes)
{
    LoopFixture fixture(100000, 512);
    fixture.player.seek(100.0f, 200.0f);
    Channels audio;
    fixture.harness.play(audio, 100);
    EXPECT_EQ(findFirstDifference(loopedFrames(4410, 8820, 51200), audio[0]), -1);
}

// At the region's last frame the position jumps back to the region's start and stays flat for the rest of
// the vector, and playedSamples restarts from 0 without those frames: the position falls behind the audio.
TEST(AudioFilePlayerLoop, PositionReturnsToTheStartAndStaysFlatForTheRestOfTheVector)
{
    LoopFixture fixture(1000, 300);
    fixture.player.rewind();
    Channels audio;
    std::vector<float> positions;
    fixture.harness.play(audio, 5, &positions);

    // Vector 3 holds frames 900 to 999 then 0 to 199 of the audio.
    EXPECT_EQ(audio[0][999], frameNumberSample(999));
    EXPECT_EQ(audio[0][1000], frameNumberSample(0));
    EXPECT_NEAR(positions[999], milliseconds(999), withinAFrame);
    for (std::size_t index = 1000; index < 1200; ++index)
        ASSERT_EQ(positions[index], 0.0f) << index;
    // playedSamples restarted at 0 and counted the next vector only: its position runs from 0 again, while
    // the audio is 200 frames ahead.
    EXPECT_EQ(positions[1200], 0.0f);
    EXPECT_NEAR(positions[1201], milliseconds(1), withinAFrame);
    EXPECT_EQ(audio[0][1200], frameNumberSample(200));

    const std::vector<RecordingListener::Call> progress = fixture.listener.getCalls(Kind::progress);
    ASSERT_EQ(progress.size(), 6u);
    EXPECT_EQ(progress[3].value, 90.0f);
    EXPECT_EQ(progress[4].value, 0.0f);
    EXPECT_EQ(progress[5].value, 30.0f);
}

TEST(AudioFilePlayerLoop, RegionStartIsWhereThePositionReturns)
{
    LoopFixture fixture(100000, 512);
    fixture.player.seek(100.0f, 110.0f);
    Channels audio;
    std::vector<float> positions;
    fixture.harness.play(audio, 1, &positions);
    // The region holds 441 frames: the position climbs to its last frame, then stays at its start.
    EXPECT_FLOAT_EQ(positions[0], milliseconds(4410));
    EXPECT_NEAR(positions[440], milliseconds(4850), withinAFrame);
    EXPECT_EQ(positions[441], milliseconds(4410));
    EXPECT_EQ(positions[511], milliseconds(4410));
}

// Without the position output nothing resets playedSamples: progress runs past 100 and on.
TEST(AudioFilePlayerLoop, UnconnectedPositionLetsProgressGrowPast100)
{
    LoopFixture fixture(1000, 500);
    fixture.harness.setConnections({1, 0});
    fixture.player.rewind();
    Channels audio;
    fixture.harness.play(audio, 6);

    EXPECT_EQ(findFirstDifference(loopedFrames(0, 1000, 3000), audio[0]), -1);
    EXPECT_EQ(fixture.listener.getCalls(Kind::progress).back().value, 300.0f);
}

TEST(AudioFilePlayerLoop, WithoutFileRunsOnInSilence)
{
    AudioFilePlayer player(2, 192000);
    RecordingListener listener(player);
    PlayerHarness harness(player, 512);
    player.setLoop(true);
    player.resume();
    Channels audio;
    harness.play(audio, 20);
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(listener.count(Kind::endOfFile), 0u);
    EXPECT_EQ(audio[0], std::vector<float>(20 * 512, 0.0f));
}

} // namespace vlk::test
