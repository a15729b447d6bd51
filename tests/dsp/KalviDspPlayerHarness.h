#pragma once

#include "dsp/KalviDspAudioFilePlayer.h"
#include "files/KalviDspScratchFolder.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vlk::test {

// Samples of a sound file, one vector per channel.
using Channels = std::vector<std::vector<float>>;

// A file written in a scratch folder, with its samples as libsndfile reads them back: what a player must
// output bit for bit.
struct SoundFile
{
    String path;
    Channels samples;
    std::size_t getNumFrames() const { return samples.empty() ? 0 : samples[0].size(); }
};

// The file's container follows its name: ".wav" for WAV, or RF64 where the format says so, ".aif" or ".aiff"
// for AIFF and AIFC. format is a libsndfile format (SF_FORMAT_PCM_16, SF_FORMAT_AIFF | SF_FORMAT_PCM_24 ...);
// one that names another container than the extension is refused with std::invalid_argument.

// Full-scale noise, different in every frame and channel, so that a lost, doubled or shifted frame shows.
SoundFile writeNoiseFile(const ScratchFolder& folder, const std::string& name, int format, int numChannels,
                         std::int64_t numFrames, int sampleRate = 44100);
// 32-bit float samples that tell where they come from: frame f of channel c holds f + 1 + 1000000 c, so 0 is
// silence. At most 1000000 frames and 8 channels, to stay exact in a float.
SoundFile writeFrameNumberFile(const ScratchFolder& folder, const std::string& name, int numChannels,
                               std::int64_t numFrames, int sampleRate = 44100);
// The value that writeFrameNumberFile stores.
float frameNumberSample(std::uint64_t frame, std::uint32_t channel = 0);

// Index of the first sample where the two differ bit for bit, or where one ends; -1 when they are equal.
std::int64_t findFirstDifference(const std::vector<float>& expected, const std::vector<float>& actual);

// Records the player's notifications with the thread each came on. Safe to call from several threads. Like
// the host's listener it registers itself and removes itself when destroyed, while the buffering thread may
// still be telling it of the ring's fill.
class RecordingListener : public AudioFilePlayer::Listener
{
public:
    enum class Kind
    {
        progress,
        buffering,
        endOfFile,
        marker
    };
    struct Call
    {
        Kind kind;
        float value = 0.0f;
        std::thread::id thread;
        AudioFilesMetadata::Marker marker;
    };

    explicit RecordingListener(AudioFilePlayer& player);
    ~RecordingListener() override;
    RecordingListener(const RecordingListener&) = delete;
    RecordingListener& operator=(const RecordingListener&) = delete;

    void progressChanged(float percent) override;
    void bufferingChanged(float percent) override;
    void endOfFile() override;
    void markerReached(const AudioFilesMetadata::Marker& marker) override;

    std::vector<Call> getCalls() const;
    std::vector<Call> getCalls(Kind kind) const;
    std::size_t count(Kind kind) const;
    // Calls of that kind that came on a thread other than the given ones.
    std::size_t countFromOtherThreads(Kind kind, std::thread::id first, std::thread::id second) const;
    void clear();

private:
    void record(const Call& call);

    AudioFilePlayer& player;
    mutable std::mutex lock;
    std::vector<Call> calls;
};

// Drives a player as a host does: prepare, setConnections, then perform with double vectors, one vector after
// the other. Used from one thread, which plays the audio thread.
class PlayerHarness
{
public:
    PlayerHarness(AudioFilePlayer& player, std::uint32_t vectorSize, float sampleRate = 44100.0f);

    // Connection counts of the outputs, the position output last. All are connected at first.
    void setConnections(const std::vector<short>& outputCounts);
    // One vector, with the host's mute and bypass flags, then the delivery of its events on this thread
    // unless that is turned off.
    void perform(long mute = 0, long bypass = 0);
    void setDeliversEvents(bool shouldDeliver) { deliversEvents = shouldDeliver; }
    // Waits while the player plays and its ring holds too little for a vector, as a host whose disk keeps up
    // would never see it. False when the ring stayed short for seconds.
    bool waitForRing();
    // The last vector of one output, narrowed back to the float that the player wrote.
    std::vector<float> getOutput(std::uint32_t channel) const;
    float getSample(std::uint32_t channel, std::size_t index) const;

    // Vectors after waitForRing, appended per audio output, until the player stops or maxVectors have run.
    // Answers the number of vectors performed.
    std::size_t playUntilStopped(Channels& audio, std::size_t maxVectors);
    // As many vectors, waiting for the ring before each; the position output is appended to positions when
    // that is given.
    void play(Channels& audio, std::size_t numVectors, std::vector<float>* positions = nullptr);

    std::uint32_t getVectorSize() const { return vectorSize; }

private:
    bool isRingReady() const;
    void appendVector(Channels& audio, std::vector<float>* positions) const;

    AudioFilePlayer& player;
    std::uint32_t vectorSize;
    std::vector<std::vector<double>> outputs;
    std::vector<double*> outputPointers;
    bool deliversEvents = true;
};

} // namespace vlk::test
