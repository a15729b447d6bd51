#pragma once

#include "audiofiles/KalviDspAudioFilesMetadata.h"
#include "containers/KalviDspAudioBuffer.h"
#include "containers/KalviDspAudioBufferReference.h"
#include "dsp/KalviDspAudioProcessorWithOscInAudioInterrupt.h"
#include "files/KalviDspFile.h"
#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace vlk {

class AudioFileReader;

// Plays one sound file at a time from disk: numChannels audio outputs and a last output carrying the playback
// position in milliseconds. A ring of float frames stands between the buffering thread, which fills it, and
// Process, which drains it; frames reach the outputs one to one, without rate conversion, gain or fade.
//
// Threads: Process on the audio thread; open, seek, rewind, pause, resume, setLoop and the queries on the
// threads that bring the host's messages; readSamplesFromDisk on the buffering thread, and on the caller of
// seek and rewind. Locks: positionMutex before diskMutex, and listenersLock last.
class AudioFilePlayer : public AudioProcessorWithOscInAudioInterrupt
{
public:
    // Told of the player's progress. Calls come on the thread that detects the event: progressChanged,
    // endOfFile and markerReached on the audio thread, progressChanged(0) on the caller of seek and rewind,
    // bufferingChanged on the audio thread and on the buffering thread. A call from the buffering thread or
    // from seek and rewind holds the player's listenersLock, so a listener that removes itself is not called
    // any more once removeListener returns; such a call must not open, seek or rewind the player.
    class Listener
    {
    public:
        virtual ~Listener() = default;
        // Percent of the region played; past 100 in loop mode when the position output is unconnected.
        virtual void progressChanged(float percent) = 0;
        // Fill of the ring in percent, at most 100.
        virtual void bufferingChanged(float percent) = 0;
        // The region was played to its end with loop off, one vector after its last frame went out.
        virtual void endOfFile() = 0;
        // A marker of the file lies in the span just played.
        virtual void markerReached(const AudioFilesMetadata::Marker& marker) = 0;
    };

    class BufferingThread;

    // The ring holds bufferSize frames per channel, limited to 192000 to 2880000. Starts the buffering
    // thread; throws when it could not be created.
    AudioFilePlayer(std::uint32_t numChannels, std::uint64_t bufferSize);
    ~AudioFilePlayer() override;

    // Swaps in a reader of the file; playback does not start. Throws, keeping the file open before and the
    // whole state, when no reader takes the file.
    void open(const File& file);
    // Starts playing at ms, through to the end of the file, after one chunk was read on this thread. A time
    // not above 0 rewinds.
    void seek(float ms);
    // Starts playing the region between the two times, in either order.
    void seek(float startMs, float endMs);
    // Starts playing from the first frame of the file, without disk access while the ring still holds it.
    void rewind();
    // Only the flag: the positions stay, and the disk side goes on filling the ring.
    void pause();
    void resume();
    void setLoop(bool shouldLoop);
    // Not owned. Null and a listener already present are ignored. Register and remove listeners while no
    // audio runs: the audio thread reads the list without a lock.
    void addListener(Listener* listener);
    void removeListener(Listener* listener);

    // The name of the open file; empty without one.
    String getFileName() const;
    std::uint32_t getNumChannelsInFile() const;
    // At the file's own sample rate; 0 without a file.
    float getLengthInMs() const;
    // The path, then the file's description in parentheses; "no audio file" without one.
    void getInfo(Vector<String>& lines) const;

    // One pass of the disk side: at most 4096 frames into the ring, or the zeros behind a region's end.
    void readSamplesFromDisk();
    // Frames that the next pass may read: the free part of the ring, at most 4096 and the rest of the region.
    std::uint64_t getNumSamplesToReadFromDisk();
    // Frames between the disk side's file position and the region's end.
    std::uint64_t getRemainingSamplesInAudioFile();

    // Frames in the ring, by the one occupancy rule: equal read and write positions mean a full ring unless
    // both are 0 with nothing read since the region started.
    std::uint64_t getNumSamplesInRing() const;
    // The occupancy in percent of the capacity, at most 100.
    float getBufferingPercentage() const;
    std::uint64_t getBufferCapacity() const noexcept { return bufferCapacity; }
    // The channels of the ring: those of the player, or of the widest file opened so far.
    std::uint32_t getNumChannelsInRing() const;
    bool isPlaying() const noexcept { return playing; }
    bool isLooping() const noexcept { return loop; }

    void Process(float** outputChannels, float** inputChannels, std::uint32_t numSamples) override;
    // "output #1"..., then "playback position", then "dumpout".
    String getOutputName(std::int32_t index) const override;
    void vectorSizeChanged(std::uint32_t newVectorSize) override;

private:
    std::unique_ptr<BufferingThread> createBufferingThread();
    void resetPositions();
    std::uint64_t getFrameAt(float ms) const;
    void startRegion(std::uint64_t start, std::uint64_t end);
    bool canRewindWithinRing();
    bool isRegionExhausted();
    void padBehindRegionEnd();
    std::uint64_t zeroRingUpToReadPosition(std::uint64_t from);
    std::uint64_t getPublishedWritePosition(std::uint64_t chunkEnd);
    void readChunk(std::uint64_t numSamples);
    void standStill();
    void playVector(std::uint32_t numSamples);
    void renderFromRing(std::uint32_t numSamples);
    void copyRingToOutputs(std::uint32_t used, std::uint64_t ringFrame, std::uint64_t outputFrame,
                           std::uint64_t count);
    void playRegionEnd();
    void writePositionRamp(std::uint32_t numSamples);
    void writeLoopingPosition(std::uint32_t numSamples);
    double toMilliseconds(std::uint64_t frame) const;
    void scanMarkers(std::uint64_t from, std::uint64_t to);
    void tellProgress(float percent);
    void tellBuffering(float percent);
    void tellBufferingFromDiskSide();
    void tellEndOfFile();

    const std::uint32_t numChannels;
    const std::uint64_t bufferCapacity;
    // The ring is only swapped or cleared under both mutexes, and read by the audio thread under
    // positionMutex: a ring that a wider file replaces is freed when nothing can read it any more.
    std::unique_ptr<AudioBuffer> ring;
    // Under diskMutex; replaced under both mutexes, so the audio thread may read its markers under either.
    std::unique_ptr<AudioFileReader> reader;
    std::unique_ptr<BufferingThread> bufferingThread;
    // The disk side publishes frames with a release store of writePosition, the audio thread hands frames
    // back with a release store of readPosition; each side loads the other's position with acquire.
    std::atomic<std::uint64_t> readPosition{0};
    std::atomic<std::uint64_t> writePosition{0};
    std::atomic<std::uint64_t> filePosition{0};
    std::atomic<std::uint64_t> playedSamples{0};
    std::atomic<std::uint64_t> regionLength{0};
    std::atomic<std::uint64_t> regionStart{0};
    // Held by open, seek and rewind across their resets, and by the audio thread while it renders a vector.
    mutable std::recursive_mutex positionMutex;
    // Held by the disk side from the positions it reads to the frames it writes, and by every reset of the
    // positions and swap of reader or ring, so that no chunk computed before a reset lands after it.
    mutable std::recursive_mutex diskMutex;
    AudioBufferReference outputs;
    std::atomic<bool> playing{false};
    std::atomic<bool> loop{false};
    Vector<Listener*> listeners;
    // Guards listeners against add and remove while the disk side or seek and rewind call them.
    std::recursive_mutex listenersLock;
    std::atomic<bool> ringWrapped{false};
    std::atomic<std::uint64_t> totalSamples{0};
    std::atomic<std::uint32_t> fileChannels{0};
    std::atomic<std::uint64_t> regionEnd{0};
    // The frame's vector size is a plain field of the host's thread; the disk side reads this copy.
    std::atomic<std::uint32_t> vectorSizeOfDiskSide;
};

} // namespace vlk
