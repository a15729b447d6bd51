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

struct EndFixture
{
    explicit EndFixture(std::int64_t numFrames)
        : sound(writeFrameNumberFile(folder, "end.wav", 1, numFrames)), player(1, 192000),
          harness(player, 512)
    {
        player.open(sound.path);
    }

    ScratchFolder folder;
    SoundFile sound;
    AudioFilePlayer player;
    RecordingListener listener{player};
    PlayerHarness harness;
};

} // namespace

// 1000 frames: the second vector carries the last 488 frames and 24 zeros, the third tells the end.
TEST(AudioFilePlayerEndOfFile, IsToldOnceOneVectorAfterTheLastFrame)
{
    EndFixture fixture(1000);
    fixture.player.rewind();
    Channels audio;
    std::vector<float> positions;
    fixture.harness.play(audio, 2, &positions);
    EXPECT_EQ(audio[0][999], frameNumberSample(999));
    EXPECT_EQ(std::vector<float>(audio[0].begin() + 1000, audio[0].end()), std::vector<float>(24, 0.0f));
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 0u);
    EXPECT_TRUE(fixture.player.isPlaying());

    fixture.harness.play(audio, 1, &positions);
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
    EXPECT_FALSE(fixture.player.isPlaying());
    EXPECT_EQ(std::vector<float>(audio[0].begin() + 1024, audio[0].end()), std::vector<float>(512, 0.0f));
    // The ramp of the end's vector stops at the region's end, one vector back from there.
    EXPECT_FLOAT_EQ(positions[1024], milliseconds(1000 - 512));
    EXPECT_FLOAT_EQ(positions[1535], milliseconds(1000));

    for (int vector = 0; vector < 5; ++vector)
        fixture.harness.perform();
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
    EXPECT_EQ(fixture.harness.getOutput(1), std::vector<float>(512, milliseconds(1000)));
}

TEST(AudioFilePlayerEndOfFile, FileOfWholeVectorsEndsInTheNextVector)
{
    EndFixture fixture(1024);
    fixture.player.rewind();
    Channels audio;
    const std::size_t numVectors = fixture.harness.playUntilStopped(audio, 100);
    EXPECT_EQ(numVectors, 3u);
    EXPECT_EQ(audio[0][1023], frameNumberSample(1023));
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 1u);
}

// Progress is not limited: the last vector of the region counts its zeros too.
TEST(AudioFilePlayerEndOfFile, ProgressOfTheLastVectorsPasses100)
{
    EndFixture fixture(1000);
    fixture.player.rewind();
    fixture.listener.clear();
    Channels audio;
    fixture.harness.playUntilStopped(audio, 100);
    const std::vector<RecordingListener::Call> progress = fixture.listener.getCalls(Kind::progress);
    ASSERT_EQ(progress.size(), 3u);
    EXPECT_EQ(progress[1].value, 102.4f);
    EXPECT_EQ(progress[2].value, 102.4f);
}

TEST(AudioFilePlayerEndOfFile, ResumeAfterTheEndTellsItAgain)
{
    EndFixture fixture(1000);
    fixture.player.rewind();
    Channels audio;
    fixture.harness.playUntilStopped(audio, 100);
    fixture.player.resume();
    fixture.harness.perform();
    EXPECT_EQ(fixture.listener.count(Kind::endOfFile), 2u);
    EXPECT_FALSE(fixture.player.isPlaying());
}

// Once the file was read to its end the disk side pads the ring up to the read position: the ring reads full.
TEST(AudioFilePlayerEndOfFile, DiskSidePadsTheRingFull)
{
    EndFixture fixture(1000);
    fixture.player.rewind();
    Channels audio;
    fixture.harness.playUntilStopped(audio, 100);
    fixture.player.readSamplesFromDisk();
    EXPECT_EQ(fixture.player.getNumSamplesInRing(), 192000u);
    EXPECT_EQ(fixture.player.getBufferingPercentage(), 100.0f);
    EXPECT_EQ(fixture.player.getNumSamplesToReadFromDisk(), 0u);
}

// With no file there is nothing to play: the end comes at once. The region's end is 0, so the position ramp
// begins at 0 minus a vector, wrapped to a huge frame number, and ends at 0.
TEST(AudioFilePlayerEndOfFile, ResumeWithoutFileEndsAtTheNextVector)
{
    AudioFilePlayer player(2, 192000);
    RecordingListener listener(player);
    PlayerHarness harness(player, 512);
    player.resume();
    harness.perform();
    EXPECT_EQ(listener.count(Kind::endOfFile), 1u);
    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(harness.getOutput(0), std::vector<float>(512, 0.0f));
    EXPECT_GT(harness.getSample(2, 0), 1.0e17f);
    EXPECT_EQ(harness.getSample(2, 511), 0.0f);
}

} // namespace vlk::test
