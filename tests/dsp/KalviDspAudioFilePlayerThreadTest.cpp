#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspPlayerHarness.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sndfile.h>
#include <thread>

// Timing is the behaviour of the buffering thread: its rhythms are checked with tolerances of several times
// what they should take.

namespace vlk::test {

namespace {

using Kind = RecordingListener::Kind;
using Clock = std::chrono::steady_clock;

// Plays as an audio thread does, on its own thread, while the player plays; idles while it does not.
class AudioThread
{
public:
    // Without delivery, the events of the vectors wait for a thread that delivers them.
    explicit AudioThread(AudioFilePlayer& player, std::uint32_t vectorSize = 512, bool delivers = true)
        : harness(player, vectorSize), thread([this, &player] { run(player); })
    {
        harness.setDeliversEvents(delivers);
    }
    ~AudioThread() { stop(); }

    void stop()
    {
        running = false;
        if (thread.joinable())
            thread.join();
    }
    std::thread::id getId() const { return id; }
    std::size_t getNumVectors() const { return numVectors; }

private:
    void run(AudioFilePlayer& player)
    {
        while (running) {
            if (!player.isPlaying()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                continue;
            }
            if (harness.waitForRing()) {
                harness.perform();
                ++numVectors;
            }
        }
    }

    PlayerHarness harness;
    std::atomic<bool> running{true};
    std::atomic<std::size_t> numVectors{0};
    std::thread thread;
    const std::thread::id id = thread.get_id();
};

bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(20))
{
    const auto deadline = Clock::now() + limit;
    while (!condition()) {
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// Calls of the disk side: those that came on neither of the given threads.
std::size_t countDiskSideCalls(const RecordingListener& listener, std::thread::id audio = {})
{
    return listener.countFromOtherThreads(Kind::buffering, std::this_thread::get_id(), audio);
}

// Fills the ring on this thread, the way the disk side would if it were fast, until nothing more fits.
void fillRing(AudioFilePlayer& player)
{
    while (player.getNumSamplesToReadFromDisk() != 0)
        player.readSamplesFromDisk();
}

} // namespace

// This thread plays the host's scheduler: it delivers what the audio thread queued.
TEST(AudioFilePlayerThreads, NothingIsToldOnTheAudioThreadAndItsEventsComeWhereTheyAreDelivered)
{
    ScratchFolder folder;
    const SoundFile sound = writeFrameNumberFile(folder, "long.wav", 1, 300000);
    AudioFilePlayer player(1, 192000);
    RecordingListener listener(player);
    player.open(sound.path);
    const std::thread::id scheduler = std::this_thread::get_id();
    AudioThread audio(player, 512, false);
    const auto deliverUntil = [&player](const std::function<bool()>& condition) {
        return waitUntil([&] {
            player.deliverQueuedEvents();
            return condition();
        });
    };

    player.seek(100.0f);
    ASSERT_TRUE(deliverUntil([&] { return audio.getNumVectors() > 20; }));
    player.seek(6500.0f);
    ASSERT_TRUE(deliverUntil([&] { return listener.count(Kind::endOfFile) == 1; }));
    ASSERT_TRUE(deliverUntil([&] { return countDiskSideCalls(listener, audio.getId()) > 0; }));
    audio.stop();

    for (Kind kind : {Kind::progress, Kind::buffering, Kind::endOfFile})
        EXPECT_EQ(listener.countFromOtherThreads(kind, audio.getId(), audio.getId()), listener.count(kind));
    EXPECT_EQ(listener.countFromOtherThreads(Kind::progress, scheduler, scheduler), 0u);
    EXPECT_EQ(listener.countFromOtherThreads(Kind::endOfFile, scheduler, scheduler), 0u);
    // Buffering is delivered here and told by the seeks' own reads here, and by the buffering thread.
    std::set<std::thread::id> bufferingThreads;
    for (const RecordingListener::Call& call : listener.getCalls(Kind::buffering))
        bufferingThreads.insert(call.thread);
    EXPECT_EQ(bufferingThreads.size(), 2u);
    EXPECT_EQ(bufferingThreads.count(scheduler), 1u);
}

TEST(AudioFilePlayerBufferingThread, ReadsAChunkAbout10TimesASecondBetween75And97Percent)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "long.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 300000);
    AudioFilePlayer player(1, 192000);
    RecordingListener listener(player);
    player.open(sound.path);

    std::this_thread::sleep_for(std::chrono::seconds(1));

    const std::size_t passes = countDiskSideCalls(listener);
    EXPECT_GE(passes, 3u);
    EXPECT_LE(passes, 30u);
    // One chunk of 4096 frames a pass, and no pass while nothing plays lets the fill reach 97 percent.
    EXPECT_NEAR(player.getNumSamplesInRing(), static_cast<double>(passes * 4096), 3 * 4096.0);
}

TEST(AudioFilePlayerBufferingThread, ReadsAChunkPerVectorAt75PercentOrLess)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "long.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 300000);
    AudioFilePlayer player(1, 192000);
    RecordingListener listener(player);
    PlayerHarness harness(player, 64);
    player.open(sound.path);
    player.rewind();
    listener.clear();

    // 50 vectors in about 100 milliseconds: the 100-millisecond rhythm would read once or twice.
    Channels audio;
    for (int vector = 0; vector < 50; ++vector) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        harness.play(audio, 1);
    }

    EXPECT_GE(countDiskSideCalls(listener), 10u);
}

TEST(AudioFilePlayerBufferingThread, SleepsAt97PercentAndLooksAgainWithinASecondOnceTheRingDrains)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "long.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 300000);
    AudioFilePlayer player(1, 192000);
    RecordingListener listener(player);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    player.rewind();
    player.pause();
    fillRing(player);
    ASSERT_EQ(player.getBufferingPercentage(), 100.0f);
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    listener.clear();

    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    EXPECT_EQ(countDiskSideCalls(listener), 0u);

    // 12 vectors bring the fill to 96.8 percent, above the 75 percent at which Process would wake the thread.
    player.resume();
    for (int vector = 0; vector < 12; ++vector)
        harness.perform();
    ASSERT_LT(player.getBufferingPercentage(), 97.0f);
    listener.clear();
    const auto drained = Clock::now();
    ASSERT_TRUE(waitUntil([&] { return countDiskSideCalls(listener) > 0; }, std::chrono::seconds(5)));
    EXPECT_LT(Clock::now() - drained, std::chrono::milliseconds(3000));
}

// The disk side reads only the free part of the ring: a ring filled to the last frame plays the file's head
// intact while the thread refills behind the audio.
TEST(AudioFilePlayerBufferingThread, NeverWritesPastTheReadPosition)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "long.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, 300000);
    AudioFilePlayer player(2, 192000);
    PlayerHarness harness(player, 512);
    player.open(sound.path);
    player.rewind();
    player.pause();
    fillRing(player);
    for (int pass = 0; pass < 5; ++pass)
        player.readSamplesFromDisk();
    EXPECT_EQ(player.getNumSamplesInRing(), 192000u);

    player.resume();
    harness.perform();
    Channels audio{harness.getOutput(0), harness.getOutput(1)};
    harness.play(audio, 450);

    for (std::size_t channel = 0; channel < 2; ++channel) {
        const std::vector<float> expected(sound.samples[channel].begin(),
                                          sound.samples[channel].begin() + 451 * 512);
        EXPECT_EQ(findFirstDifference(expected, audio[channel]), -1) << "channel " << channel;
    }
}

// The destructor grants the thread 100 milliseconds, after which it would be cancelled: a thread in its
// 1000-millisecond wait must wake and end at once. The fastest of three runs ignores a loaded machine.
TEST(AudioFilePlayerBufferingThread, EndsFromItsLongWaitWithinTheDestructorsGrace)
{
    ScratchFolder folder;
    const SoundFile sound = writeNoiseFile(folder, "long.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 250000);
    auto fastest = Clock::duration::max();
    for (int run = 0; run < 3; ++run) {
        auto player = std::make_unique<AudioFilePlayer>(1, 192000);
        player->open(sound.path);
        fillRing(*player);
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        const auto start = Clock::now();
        player.reset();
        fastest = std::min(fastest, Clock::now() - start);
    }
    EXPECT_LT(fastest, std::chrono::milliseconds(90));
}

// Under the sanitizers: everything the message threads do to a player while another thread renders, a file
// wider than the outputs included, and a resume right after an open with loop on, which plays the ring while
// the disk side fills it.
TEST(AudioFilePlayerRaces, OpenSeekRewindAndAWiderFileWhileRendering)
{
    ScratchFolder folder;
    const SoundFile stereo = writeFrameNumberFile(folder, "stereo.wav", 2, 200000);
    const SoundFile octo = writeNoiseFile(folder, "octo.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8, 60000);
    const SoundFile mono = writeNoiseFile(folder, "mono.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 1, 60000);
    for (int round = 0; round < 4; ++round) {
        AudioFilePlayer player(2, 192000);
        RecordingListener listener(player);
        AudioThread audio(player, 256);
        const auto letItPlay = [&] {
            const std::size_t vectors = audio.getNumVectors();
            waitUntil([&] { return audio.getNumVectors() > vectors + 3 || !player.isPlaying(); },
                      std::chrono::seconds(2));
        };
        for (int step = 0; step < 3; ++step) {
            player.open(stereo.path);
            player.rewind();
            letItPlay();
            player.seek(500.0f);
            letItPlay();
            player.seek(900.0f, 100.0f);
            player.setLoop(step % 2 == 0);
            letItPlay();
            player.pause();
            player.resume();
            player.open(octo.path);
            letItPlay();
            player.rewind();
            letItPlay();
            Vector<String> lines;
            player.getInfo(lines);
            EXPECT_EQ(player.getFileName(), "octo.wav");
            player.open(mono.path);
            player.setLoop(true);
            player.resume();
            letItPlay();
            player.seek(100.0f);
            letItPlay();
        }
        audio.stop();
        EXPECT_EQ(player.getNumChannelsInRing(), 2u);

        player.open(stereo.path);
        player.setLoop(false);
        player.rewind();
        PlayerHarness harness(player, 512);
        Channels played;
        harness.play(played, 4);
        const std::vector<float> expected(stereo.samples[1].begin(), stereo.samples[1].begin() + 2048);
        EXPECT_EQ(findFirstDifference(expected, played[1]), -1);
    }
}

} // namespace vlk::test
