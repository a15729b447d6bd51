// The disk side of the player: the buffering thread's passes, and the first read of seek and rewind. It is
// the ring's producer: it writes only frames that the audio thread has handed back, and publishes a chunk
// once it is whole.
#include "dsp/KalviDspAudioFilePlayer.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "math/KalviDspVectorImplementation.h"
#include "text/KalviDspStringHelper.h"
#include "threads/KalviDspLog.h"

#include <algorithm>

namespace vlk {

namespace {

constexpr std::int64_t toleratedVectorsAhead = 10;

const char* const remainingSamplesBugText = "AudioFilePlayer::getRemainingSamplesInAudioFile() : bug ? ";

using Lock = std::lock_guard<std::recursive_mutex>;

// How much a count grew since it was last reported; it counts as reported then.
std::uint64_t takeGrowth(const std::atomic<std::uint64_t>& count, std::uint64_t& reported)
{
    const std::uint64_t now = count.load(std::memory_order_relaxed);
    const std::uint64_t growth = now - reported;
    reported = now;
    return growth;
}

} // namespace

void AudioFilePlayer::readSamplesFromDisk()
{
    bool tellsLevel = false;
    {
        const Lock diskGuard(diskMutex);
        reportAudioThreadFaults();
        tellsLevel = fillRing();
    }
    // The disk side tells the level on every pass, also when it read nothing, once its lock is released.
    if (tellsLevel)
        tellBufferingFromDiskSide();
}

// Under diskMutex. True when the pass is to tell the ring's level: not without a reader, nor when it padded
// a region's end.
bool AudioFilePlayer::fillRing()
{
    if (reader == nullptr)
        return false;
    skipFramesPlayedAsSilence();
    if (isRegionExhausted()) {
        if (!loop) {
            // The last vector of a region reads past its end: what it finds there is silence.
            const FrameFifo::Span free = fifo.getWriteSpan(fifo.getFreeSpace());
            zeroBlocks(free);
            fifo.finishedWrite(free.size());
            return false;
        }
        if (regionEnd < filePosition)
            logMessage(remainingSamplesBugText);
        // The loop wraps here, on the disk side, without a gap in the ring.
        filePosition = regionStart.load();
    }
    const std::uint64_t numSamples = getNumSamplesToReadFromDisk();
    if (numSamples != 0)
        readChunk(numSamples);
    return true;
}

// Under diskMutex.
bool AudioFilePlayer::isRegionExhausted()
{
    if (regionEnd < filePosition)
        logMessage(remainingSamplesBugText);
    return regionEnd <= filePosition;
}

// Under diskMutex. Frames that Process played as silence while the ring was empty are skipped in the file,
// so that the sound comes back in time with the position. Only an empty ring is the producer's to skip:
// frames already in it are dropped by Process itself, and until the producer publishes, Process can take
// nothing of what is owed.
void AudioFilePlayer::skipFramesPlayedAsSilence()
{
    if (fifo.getNumReady() != 0)
        return;
    const std::uint64_t owed = framesOwed.exchange(0, std::memory_order_acq_rel);
    if (owed == 0)
        return;
    skippedSinceReset = true;
    framesDelivered += owed;
    const std::uint64_t start = regionStart;
    const std::uint64_t end = regionEnd;
    const std::uint64_t file = filePosition;
    if (file > end)
        return;
    if (owed < end - file)
        filePosition = file + owed;
    else if (loop && end > start)
        filePosition = start + (owed - (end - file)) % (end - start);
    else
        filePosition = end;
}

// Under diskMutex; numSamples fits the free part of the ring. The chunk that ends a region without loop is
// published together with the padding behind it: the audio thread's last vector reads past the region's end.
void AudioFilePlayer::readChunk(std::uint64_t numSamples)
{
    const FrameFifo::Span free = fifo.getWriteSpan(fifo.getFreeSpace());
    readBlocks(free.part(0, numSamples), filePosition);
    filePosition += numSamples;
    framesDelivered += numSamples;
    std::uint64_t published = numSamples;
    if (!loop && filePosition >= regionEnd) {
        zeroBlocks(free.part(numSamples, free.size() - numSamples));
        published = free.size();
    }
    fifo.finishedWrite(published);
}

// Under diskMutex. The part after the ring's end is read whatever the first part answered. A part that failed
// is zeroed: the frames it missed would otherwise be those of an earlier pass.
void AudioFilePlayer::readBlocks(const FrameFifo::Span& span, std::uint64_t fileFrame)
{
    bool failed = false;
    if (!readIntoRing(span.start1, span.count1, fileFrame)) {
        zeroBlocks(span.part(0, span.count1));
        failed = true;
    }
    if (!readIntoRing(span.start2, span.count2, fileFrame + span.count1)) {
        zeroBlocks(span.part(span.count1, span.count2));
        failed = true;
    }
    if (failed)
        logMessage("AudioFilePlayer::readSamplesFromDisk() Error reading samples in " + getFileName());
}

// Under diskMutex. The file's channels beyond the outputs are read into one scratch channel that nobody reads,
// so that the ring costs what the outputs need, whatever number of channels a file claims.
bool AudioFilePlayer::readIntoRing(std::uint64_t ringFrame, std::uint64_t numSamples, std::uint64_t fileFrame)
{
    const auto channelsInFile = static_cast<std::uint32_t>(diskChannels.size());
    for (std::uint64_t done = 0; done < numSamples;) {
        const std::uint64_t count = std::min(numSamples - done, largestChunk);
        for (std::uint32_t channel = 0; channel < channelsInFile; ++channel)
            diskChannels[channel] = channel < numChannels ? ring.getChannel(channel) + ringFrame + done
                                                          : discardedSamples.getChannel(0);
        diskView.setChannels(diskChannels.data(), channelsInFile, count, 0);
        if (!reader->readSamples(diskView, 0, count, fileFrame + done))
            return false;
        done += count;
    }
    return true;
}

// Under diskMutex.
void AudioFilePlayer::zeroBlocks(const FrameFifo::Span& span)
{
    const std::uint32_t used = std::min(fileChannels.load(), numChannels);
    for (std::uint32_t channel = 0; channel < used; ++channel) {
        fill(ring.getChannel(channel) + span.start1, span.count1, 0.0f);
        fill(ring.getChannel(channel) + span.start2, span.count2, 0.0f);
    }
}

// Under diskMutex. What the audio thread counted instead of logging, once per pass in which it happened.
void AudioFilePlayer::reportAudioThreadFaults()
{
    if (const std::uint64_t silent = takeGrowth(underrunFrames, reportedUnderrunFrames))
        logMessage("AudioFilePlayer::Process underrun : " + toString(silent) + " frames of silence");
    if (takeGrowth(faults.endWithFramesLeft, reportedEndsWithFramesLeft) != 0)
        logMessage("AudioFilePlayer::Process bug 1 ?");
    if (takeGrowth(faults.playedPastTheEnd, reportedPlaysPastTheEnd) != 0)
        logMessage("AudioFilePlayer::Process bug 3 ?");
    if (const std::uint64_t lost = takeGrowth(faults.eventsLost, reportedEventsLost))
        logMessage("AudioFilePlayer::Process : " + toString(lost) + " events lost, nobody delivered them");
}

// Under diskMutex, so that the disk side's counts come from one of its states; the audio thread meanwhile can
// only free more of the ring than is counted.
std::uint64_t AudioFilePlayer::getNumSamplesToReadFromDisk()
{
    const Lock diskGuard(diskMutex);
    const std::uint64_t occupancy = fifo.getNumReady();
    const std::uint64_t numSamples =
        std::min({bufferCapacity - occupancy, largestChunk, getRemainingSamplesInAudioFile()});
    // The frames that the ring says were consumed, against those that Process rendered: up to ten vectors of
    // disagreement pass. Counted since the region started, also over the passes of a loop. Signed, and
    // computed modulo 2 to the 64 as the unsigned counts are.
    const auto consumedByRing =
        static_cast<std::int64_t>(framesDelivered - occupancy - toleratedVectorsAhead * vectorSizeOfDiskSide);
    if (consumedByRing > static_cast<std::int64_t>(framesRendered.load())) {
        logMessage("AudioFilePlayer::getNumSamplesToReadFromDisk() : too fast ? ");
        return 0;
    }
    return numSamples;
}

std::uint64_t AudioFilePlayer::getRemainingSamplesInAudioFile()
{
    const Lock diskGuard(diskMutex);
    if (reader == nullptr)
        return 0;
    const std::uint64_t end = regionEnd;
    const std::uint64_t file = filePosition;
    if (end < file) {
        logMessage(remainingSamplesBugText);
        return 0;
    }
    return end - file;
}

} // namespace vlk
