#pragma once

#include "audiofiles/KalviDspAudioFilesMetadata.h"
#include "containers/KalviDspAudioBuffer.h"
#include "containers/KalviDspAudioBufferReference.h"
#include "containers/KalviDspFixedQueue.h"
#include "containers/KalviDspFrameFifo.h"
#include "dsp/KalviDspAudioProcessorWithOscInAudioInterrupt.h"
#include "files/KalviDspFile.h"
#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace vlk {

class AudioFileReader;
class MarkerSpanIndex;

// Plays one sound file at a time from disk: numChannels audio outputs and a last output carrying the playback
// position in milliseconds. A ring of float frames stands between the buffering thread, which fills it, and
// Process, which drains it; frames reach the outputs one to one, without rate conversion, gain or fade.
//
// Threads: Process on the audio thread, which never waits: it only tries positionMutex, and stands still for
// a vector when open, seek or rewind hold it. open, seek, rewind, pause, resume, setLoop, the queries and
// deliverQueuedEvents on the threads that bring the host's messages; readSamplesFromDisk on the buffering
// thread, and on the caller of seek and rewind. Locks, in this order: listenersLock, positionMutex,
// diskMutex, markersLock. No listener is called under positionMutex or diskMutex.
class AudioFilePlayer : public AudioProcessorWithOscInAudioInterrupt
{
public:
    // Told of the player's progress, never on the audio thread and never under a lock of the player but
    // listenersLock. What the audio thread finds (progress, buffering, endOfFile, markerReached) is queued
    // and told by deliverQueuedEvents; progressChanged(0) and the level after the first read come on the
    // caller of seek and rewind; the buffering thread tells bufferingChanged itself, so a listener hands
    // that on to where it may run patch code. A listener that removeListener returned from is not called
    // any more.
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
    // The same with a reader made by the caller; null is refused with the same exception as an empty path.
    void open(std::unique_ptr<AudioFileReader> newReader);
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
    // Not owned. Null and a listener already present are ignored.
    void addListener(Listener* listener);
    void removeListener(Listener* listener);

    // Audio thread, after a vector: whether events wait for deliverQueuedEvents.
    bool hasQueuedEvents() const noexcept { return !events.isEmpty(); }
    // Tells the listeners what the audio thread queued, in order, on a thread where they may run patch code:
    // the host's scheduler, right after the vector that raised it. Not on the audio thread.
    void deliverQueuedEvents();

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

    // Frames in the ring, counted exactly: a ring that the audio thread drained is empty.
    std::uint64_t getNumSamplesInRing() const;
    // The occupancy in percent of the capacity, at most 100.
    float getBufferingPercentage() const;
    std::uint64_t getBufferCapacity() const noexcept { return bufferCapacity; }
    // The channels of the ring: those of the player's outputs, whatever the file holds.
    std::uint32_t getNumChannelsInRing() const;
    bool isPlaying() const noexcept { return playing; }
    bool isLooping() const noexcept { return loop; }
    // Frames that Process output as silence because the disk side had not written them yet.
    std::uint64_t getNumUnderrunFrames() const noexcept { return underrunFrames; }
    // Vectors during which Process stood still because open, seek or rewind held the player.
    std::uint64_t getNumBusyVectors() const noexcept { return busyVectors; }

    void Process(float** outputChannels, float** inputChannels, std::uint32_t numSamples) override;
    // "output #1"..., then "playback position", then "dumpout".
    String getOutputName(std::int32_t index) const override;
    void vectorSizeChanged(std::uint32_t newVectorSize) override;

private:
    // What the audio thread found, queued for deliverQueuedEvents.
    struct Event
    {
        enum class Kind : std::uint8_t
        {
            progress,
            buffering,
            endOfFile,
            // The markers of the span [from, to) of the file that generation opened.
            markers
        };
        Kind kind = Kind::progress;
        float percent = 0.0f;
        std::uint64_t from = 0;
        std::uint64_t to = 0;
        std::uint64_t generation = 0;
    };
    // Counters of what the audio thread may not log itself; the disk side reports their growth.
    struct AudioThreadFaults
    {
        std::atomic<std::uint64_t> endWithFramesLeft{0};
        std::atomic<std::uint64_t> playedPastTheEnd{0};
        std::atomic<std::uint64_t> eventsLost{0};
    };

    std::unique_ptr<BufferingThread> createBufferingThread();

    // Message threads.
    void swapInReader(std::unique_ptr<AudioFileReader> newReader, std::unique_ptr<MarkerSpanIndex> newMarkers,
                      Vector<float*>& newDiskChannels);
    void resetPositions(std::uint64_t fileFrame);
    std::uint64_t getFrameAt(float ms) const;
    void startRegion(std::uint64_t start, std::uint64_t end);
    bool canRewindWithinRing();
    void tellProgressAndFirstRead(std::optional<float> level);

    // Disk side, under diskMutex; true when the pass tells its level.
    bool fillRing();
    bool isRegionExhausted();
    void skipFramesPlayedAsSilence();
    void readChunk(std::uint64_t numSamples);
    void readBlocks(const FrameFifo::Span& span, std::uint64_t fileFrame);
    bool readIntoRing(std::uint64_t ringFrame, std::uint64_t numSamples, std::uint64_t fileFrame);
    void zeroBlocks(const FrameFifo::Span& span);
    void reportAudioThreadFaults();

    // Audio thread, under positionMutex.
    void standStill();
    void playVector(std::uint32_t numSamples);
    void renderFromRing(std::uint32_t numSamples);
    void readFromRing(std::uint32_t used, std::uint32_t numSamples);
    std::uint64_t dropFramesPlayedAsSilence(std::uint64_t ready);
    void copyRingToOutputs(std::uint32_t used, const FrameFifo::Span& span);
    void playRegionEnd();
    void writePositionRamp(std::uint32_t numSamples);
    void writeLoopingPosition(std::uint32_t numSamples);
    double toMilliseconds(std::uint64_t frame) const;
    void queueMarkers(std::uint64_t from, std::uint64_t to);
    void queue(const Event& event);

    // Listeners, under listenersLock.
    void tellProgress(float percent);
    void tellBuffering(float percent);
    void tellBufferingFromDiskSide();
    void tellEndOfFile();
    void tellMarkers(const Event& event);

    // The most frames that the disk side reads in one pass.
    static constexpr std::uint64_t largestChunk = 4096;

    const std::uint32_t numChannels;
    const std::uint64_t bufferCapacity;
    // The samples, one channel per output; their positions are in fifo.
    AudioBuffer ring;
    // Under diskMutex: where a read puts each channel of the file, and the scratch channel that takes the
    // file's channels beyond the outputs.
    Vector<float*> diskChannels;
    AudioBufferReference diskView;
    AudioBuffer discardedSamples;
    FrameFifo fifo;
    // Under diskMutex; replaced under positionMutex and diskMutex.
    std::unique_ptr<AudioFileReader> reader;
    // Whether reader was ever set, for open to know without waiting for a read in progress.
    std::atomic<bool> fileIsOpen{false};
    // The reader's markers: read by Process under positionMutex, by deliverQueuedEvents under markersLock,
    // replaced under all three; generation counts the replacements.
    std::unique_ptr<MarkerSpanIndex> markers;
    std::atomic<std::uint64_t> markersGeneration{0};
    std::unique_ptr<BufferingThread> bufferingThread;
    std::atomic<std::uint64_t> filePosition{0};
    std::atomic<std::uint64_t> playedSamples{0};
    std::atomic<std::uint64_t> regionLength{0};
    std::atomic<std::uint64_t> regionStart{0};
    // Frames that Process output since the region started, and frames the disk side read into the ring or
    // skipped: the disk side's sanity check compares the two, which playedSamples, reset at every pass of a
    // loop, could not serve.
    std::atomic<std::uint64_t> framesRendered{0};
    std::atomic<std::uint64_t> framesDelivered{0};
    // Frames that Process played as silence for want of samples and that are still to be dropped: from the
    // ring by Process, or from the file by the disk side when the ring is empty. The sound then stays in
    // time with the position.
    std::atomic<std::uint64_t> framesOwed{0};
    std::atomic<std::uint64_t> underrunFrames{0};
    std::atomic<std::uint64_t> busyVectors{0};
    // Set when the disk side skipped frames: the ring no longer holds the head of the file in order.
    std::atomic<bool> skippedSinceReset{false};
    AudioThreadFaults faults;
    // Under diskMutex: the counts that the disk side has reported.
    std::uint64_t reportedUnderrunFrames = 0;
    std::uint64_t reportedEndsWithFramesLeft = 0;
    std::uint64_t reportedPlaysPastTheEnd = 0;
    std::uint64_t reportedEventsLost = 0;
    // Held by open, seek and rewind across their resets and first read; the audio thread only tries it.
    mutable std::recursive_mutex positionMutex;
    // Held by the disk side from the positions it reads to the frames it writes, and by every reset of the
    // positions and swap of reader or ring, so that no chunk computed before a reset lands after it.
    mutable std::recursive_mutex diskMutex;
    std::mutex markersLock;
    AudioBufferReference outputs;
    std::atomic<bool> playing{false};
    std::atomic<bool> loop{false};
    Vector<Listener*> listeners;
    // Guards listeners and the consumer side of events.
    std::recursive_mutex listenersLock;
    // A vector raises at most four events; this holds the events of many vectors whose delivery is late.
    FixedQueue<Event, 1024> events;
    std::atomic<std::uint64_t> totalSamples{0};
    std::atomic<std::uint32_t> fileChannels{0};
    std::atomic<std::uint64_t> regionEnd{0};
    // The frame's vector size is a plain field of the host's thread; the disk side reads this copy.
    std::atomic<std::uint32_t> vectorSizeOfDiskSide;
};

} // namespace vlk
