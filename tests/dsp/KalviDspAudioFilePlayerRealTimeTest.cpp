// What the audio thread may count on, with a reader whose pace the test controls: Process never waits for
// the player's other threads, never plays a frame the disk side has not written, keeps the sound in time
// with the position when the disk side is late, and allocates nothing.
#include "dsp/KalviDspAllocationCounter.h"
#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspControlledReader.h"
#include "dsp/KalviDspPlayerHarness.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <thread>

namespace vlk::test {
namespace {

using namespace std::chrono_literals;

struct ControlledPlayer
{
    explicit ControlledPlayer(std::uint64_t numFrames, std::uint32_t vectorSize = 64,
                              const std::vector<AudioFilesMetadata::Marker>& markers = {})
        : harness(player, vectorSize)
    {
        auto made = std::make_unique<ControlledReader>(1, numFrames, markers);
        reader = made.get();
        player.open(std::move(made));
    }

    AudioFilePlayer player{1, 192000};
    PlayerHarness harness;
    ControlledReader* reader = nullptr;
};

// A message runs while the disk side is held inside a read, and vectors meanwhile, each after a resume, as a
// vector that finds the player taken would. They must all return while the read is held: a vector that waited
// for the player would never return. A watchdog then lets the read go, and the test fails.
void expectVectorsDoNotWaitFor(ControlledPlayer& fixture, const std::function<void()>& message)
{
    fixture.reader->holdReads();
    // Open waits for the buffering thread's read: the vectors make room in the ring for it to begin one.
    for (int vector = 0; vector < 100000 && !fixture.reader->waitUntilAReadIsHeld(0s); ++vector)
        fixture.harness.perform();
    ASSERT_TRUE(fixture.reader->waitUntilAReadIsHeld(20s));
    std::thread messageThread(message);
    const std::uint64_t busyBefore = fixture.player.getNumBusyVectors();
    auto vectors = std::async(std::launch::async, [&fixture, busyBefore] {
        for (int attempt = 0; attempt < 1000000 && fixture.player.getNumBusyVectors() < busyBefore + 3;
             ++attempt) {
            fixture.player.resume();
            fixture.harness.perform();
        }
    });
    const bool returned = vectors.wait_for(20s) == std::future_status::ready;
    fixture.reader->releaseReads();
    messageThread.join();
    vectors.wait();
    EXPECT_TRUE(returned);
    EXPECT_GE(fixture.player.getNumBusyVectors(), busyBefore + 3);
}

TEST(AudioFilePlayerRealTime, ProcessNeverWaitsForSeekRewindOrOpenInsideADiskRead)
{
    ControlledPlayer fixture(400000);
    fixture.player.rewind();
    expectVectorsDoNotWaitFor(fixture, [&] { fixture.player.seek(1000.0f); });
    expectVectorsDoNotWaitFor(fixture, [&] { fixture.player.rewind(); });
    // Last: the reader is replaced.
    expectVectorsDoNotWaitFor(fixture,
                              [&] { fixture.player.open(std::make_unique<ControlledReader>(1, 1000)); });
}

// Every sample of an output is either silence or the frame of the file that the position says is playing.
std::uint64_t countFramesOutOfTime(ControlledPlayer& fixture, std::size_t numVectors,
                                   std::uint64_t loopLength)
{
    std::uint64_t outOfTime = 0;
    const std::uint32_t vectorSize = fixture.harness.getVectorSize();
    for (std::size_t vector = 0; vector < numVectors && fixture.player.isPlaying(); ++vector) {
        fixture.harness.perform();
        for (std::uint32_t i = 0; i < vectorSize; ++i) {
            const float sample = fixture.harness.getSample(0, i);
            const std::uint64_t frame = (vector * vectorSize + i) % loopLength;
            outOfTime += sample != 0.0f && sample != frameNumberSample(frame);
        }
    }
    return outOfTime;
}

// Vectors come as fast as the test can make them, far faster than the reader: most of the sound is missing.
TEST(AudioFilePlayerRealTime, ASlowDiskGivesSilenceAndFramesInTimeNeverStaleOnes)
{
    ControlledPlayer fixture(2000000);
    fixture.reader->setDelayPerRead(2ms);
    fixture.player.rewind();
    EXPECT_EQ(countFramesOutOfTime(fixture, 40000, 2000000), 0u);
    EXPECT_GT(fixture.player.getNumUnderrunFrames(), 0u);
}

TEST(AudioFilePlayerRealTime, ASlowDiskInALoopNeverPlaysAFrameOfAnEarlierPass)
{
    ControlledPlayer fixture(20000);
    fixture.reader->setDelayPerRead(1ms);
    fixture.player.setLoop(true);
    fixture.player.rewind();
    EXPECT_EQ(countFramesOutOfTime(fixture, 20000, 20000), 0u);
    EXPECT_GT(fixture.player.getNumUnderrunFrames(), 0u);
}

// Thirty minutes of a 10000-frame loop at 44.1 kHz, as fast as the disk side fills the ring: the position
// output's pass counting never stops the disk side, and every pass is the file.
TEST(AudioFilePlayerRealTime, ALoopWithThePositionConnectedPlaysEveryPassForThirtyMinutes)
{
    constexpr std::uint64_t loopLength = 10000;
    constexpr std::uint32_t vectorSize = 512;
    ControlledPlayer fixture(loopLength, vectorSize);
    fixture.player.setLoop(true);
    fixture.player.rewind();
    const std::size_t numVectors = 30 * 60 * 44100 / vectorSize;
    std::uint64_t wrong = 0;
    for (std::size_t vector = 0; vector < numVectors; ++vector) {
        ASSERT_TRUE(fixture.harness.waitForRing()) << vector;
        fixture.harness.perform();
        for (std::uint32_t i = 0; i < vectorSize; ++i)
            wrong +=
                fixture.harness.getSample(0, i) != frameNumberSample((vector * vectorSize + i) % loopLength);
    }
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(fixture.player.getNumUnderrunFrames(), 0u);
}

TEST(AudioFilePlayerRealTime, PerformAllocatesNothingOverAWholeFileWithLongMarkerNames)
{
    std::vector<AudioFilesMetadata::Marker> markers;
    for (std::uint32_t index = 0; index < 50; ++index)
        markers.push_back({index, index * 1000, String(200, static_cast<char>('a' + index % 26))});
    ControlledPlayer fixture(50000, 64, markers);
    fixture.harness.setDeliversEvents(false);
    fixture.player.rewind();
    std::size_t allocations = 0;
    std::size_t numMarkers = 0;
    RecordingListener listener(fixture.player);
    while (fixture.player.isPlaying()) {
        ASSERT_TRUE(fixture.harness.waitForRing());
        {
            const AllocationCountingScope scope;
            fixture.harness.perform();
            allocations += scope.getCount();
        }
        fixture.player.deliverQueuedEvents();
        numMarkers += listener.count(RecordingListener::Kind::marker);
        listener.clear();
    }
    EXPECT_EQ(allocations, 0u);
    EXPECT_EQ(numMarkers, 50u);
}

} // namespace
} // namespace vlk::test
