// The audio thread's side of the player: one vector at a time from the ring to the outputs, the position
// output, and the events it queues. It neither waits, allocates nor logs: the lock is only tried, faults are
// counted for the disk side to report, and the listeners hear of the vector once it is done.
#include "dsp/KalviDspAudioFilePlayer.h"

#include "dsp/KalviDspAudioFilePlayerBufferingThread.h"
#include "dsp/KalviDspMarkerSpanIndex.h"

#include <algorithm>

namespace vlk {

namespace {

// Process wakes the disk side at this fill or below.
constexpr float wakeUpPercent = 75.0f;

} // namespace

// The lock is tried rather than taken: open, seek and rewind hold it across a disk read, and have stopped
// the player before they took it. A vector that finds it taken stands still, as a stopped player does.
void AudioFilePlayer::Process(float** outputChannels, float**, std::uint32_t numSamples)
{
    outputs.setChannels(outputChannels, numChannels + 1, numSamples, 0);
    if (playing) {
        std::unique_lock<std::recursive_mutex> positionGuard(positionMutex, std::try_to_lock);
        if (positionGuard.owns_lock() && playing) {
            playVector(numSamples);
            return;
        }
        if (!positionGuard.owns_lock())
            busyVectors.fetch_add(1, std::memory_order_relaxed);
    }
    standStill();
}

// Silence, and the position where the player stands.
void AudioFilePlayer::standStill()
{
    for (std::uint32_t channel = 0; channel < numChannels; ++channel)
        outputs.fillChannel(channel, 0.0f);
    const std::uint64_t frame = std::min(regionStart + playedSamples, regionEnd.load());
    outputs.fillChannel(numChannels, static_cast<float>(toMilliseconds(frame)));
}

// Under positionMutex.
void AudioFilePlayer::playVector(std::uint32_t numSamples)
{
    const bool looping = loop;
    if (playedSamples < regionLength || looping) {
        renderFromRing(numSamples);
        playedSamples += numSamples;
    } else {
        playRegionEnd();
    }
    // Without the position output there is no marker either, and in loop mode playedSamples is never reset:
    // the coupling is intended.
    if (isOutputConnected(numChannels)) {
        if (looping)
            writeLoopingPosition(numSamples);
        else
            writePositionRamp(numSamples);
    }
    const std::uint64_t length = regionLength;
    const double progress =
        length == 0 ? 0.0 : static_cast<double>(playedSamples) * 100.0 / static_cast<double>(length);
    queue({Event::Kind::progress, static_cast<float>(progress)});
}

// Under positionMutex.
void AudioFilePlayer::renderFromRing(std::uint32_t numSamples)
{
    const std::uint32_t used = std::min(fileChannels.load(), numChannels);
    if (used != 0)
        readFromRing(used, numSamples);
    for (std::uint32_t channel = used; channel < numChannels; ++channel)
        outputs.fillChannel(channel, 0.0f);
    framesRendered += numSamples;
    const float percent = getBufferingPercentage();
    if (bufferingThread != nullptr && percent <= wakeUpPercent)
        bufferingThread->notify();
    queue({Event::Kind::buffering, percent});
}

// Under positionMutex. Only published frames are read. Those the disk side has not written yet go out as
// silence, where the design played whatever the ring held, and are owed: the sound then skips them, to stay
// in time with the position.
void AudioFilePlayer::readFromRing(std::uint32_t used, std::uint32_t numSamples)
{
    // One count of the frames ready for both: a chunk published after it may stand for a time that is owed,
    // and is only read once the next vector has dropped what it owes.
    const std::uint64_t ready = fifo.getNumReady();
    const std::uint64_t dropped = dropFramesPlayedAsSilence(ready);
    const FrameFifo::Span span = fifo.getReadSpan(std::min<std::uint64_t>(numSamples, ready - dropped));
    copyRingToOutputs(used, span);
    if (const std::uint64_t missing = numSamples - span.size()) {
        for (std::uint32_t channel = 0; channel < used; ++channel)
            if (isOutputConnected(channel))
                std::fill(outputs.getChannel(channel) + span.size(), outputs.getChannel(channel) + numSamples,
                          0.0f);
        // Owed before the frames read are handed back, for the reason told at dropFramesPlayedAsSilence.
        framesOwed.fetch_add(missing, std::memory_order_acq_rel);
        underrunFrames.fetch_add(missing, std::memory_order_relaxed);
    }
    fifo.finishedRead(span.size());
}

// Under positionMutex. Frames in the ring that stood for a time already played as silence are dropped, out of
// the ready ones; answers how many. The debt shrinks before the frames are handed back: the disk side takes
// the debt only from an empty ring, and must not find the ring empty with these frames still counted in it.
std::uint64_t AudioFilePlayer::dropFramesPlayedAsSilence(std::uint64_t ready)
{
    const std::uint64_t dropped = std::min(framesOwed.load(std::memory_order_acquire), ready);
    if (dropped == 0)
        return 0;
    framesOwed.fetch_sub(dropped, std::memory_order_acq_rel);
    fifo.finishedRead(dropped);
    return dropped;
}

// Outputs that are not connected are left unwritten.
void AudioFilePlayer::copyRingToOutputs(std::uint32_t used, const FrameFifo::Span& span)
{
    for (std::uint32_t channel = 0; channel < used; ++channel) {
        if (!isOutputConnected(channel))
            continue;
        const float* const samples = ring.getChannel(channel);
        outputs.copyToChannel(channel, 0, samples + span.start1, span.count1, 1.0f);
        outputs.copyToChannel(channel, span.count1, samples + span.start2, span.count2, 1.0f);
    }
}

// Under positionMutex. The end is told one whole vector after the region's last frame went out.
void AudioFilePlayer::playRegionEnd()
{
    outputs.clear();
    if (filePosition < regionEnd)
        faults.endWithFramesLeft.fetch_add(1, std::memory_order_relaxed);
    if (playedSamples > regionLength + vectorSize)
        faults.playedPastTheEnd.fetch_add(1, std::memory_order_relaxed);
    queue({Event::Kind::endOfFile});
    playing = false;
}

// Under positionMutex. Where end is smaller than the vector, begin wraps as an unsigned number, and the ramp
// starts from a huge time: kept as it is.
void AudioFilePlayer::writePositionRamp(std::uint32_t numSamples)
{
    const std::uint64_t end = std::min(regionStart + playedSamples, regionEnd.load());
    const std::uint64_t begin = end - numSamples;
    queueMarkers(begin, end);
    const double factor = 1.0 / static_cast<double>(sampleRate);
    outputs.rampChannel(numChannels, static_cast<float>(static_cast<double>(begin) * 1000.0 * factor),
                        static_cast<float>(static_cast<double>(end) * 1000.0 * factor));
}

// Under positionMutex. At the region's end the position jumps back to its start and stays there for the rest
// of the vector, and playedSamples restarts from 0 without counting those frames: the position loses up to
// one vector at each pass while the audio, which the ring delivers, stays gapless. Kept as it is.
void AudioFilePlayer::writeLoopingPosition(std::uint32_t numSamples)
{
    const std::uint64_t end = regionStart + playedSamples;
    const std::uint64_t begin = end - numSamples;
    queueMarkers(begin, end);
    const std::uint64_t last = regionEnd;
    const float step = 1000.0f / sampleRate;
    float* const position = outputs.getChannel(numChannels);
    float value = static_cast<float>(toMilliseconds(begin));
    for (std::uint32_t index = 0; index < numSamples; ++index) {
        position[index] = value;
        if (begin + 1 + index < last) {
            value += step;
        } else {
            value = static_cast<float>(toMilliseconds(regionStart));
            playedSamples = 0;
        }
    }
}

double AudioFilePlayer::toMilliseconds(std::uint64_t frame) const
{
    return static_cast<double>(frame) * 1000.0 / static_cast<double>(sampleRate);
}

// Under positionMutex, which keeps the markers alive. Only whether the span holds a marker is looked up here;
// which ones is for the delivery. Near the end of a region the spans overlap, so a marker there is told more
// than once: required.
void AudioFilePlayer::queueMarkers(std::uint64_t from, std::uint64_t to)
{
    if (markers != nullptr && markers->hasMarkerIn(from, to))
        queue({Event::Kind::markers, 0.0f, from, to, markersGeneration.load()});
}

void AudioFilePlayer::queue(const Event& event)
{
    if (!events.push(event))
        faults.eventsLost.fetch_add(1, std::memory_order_relaxed);
}

} // namespace vlk
