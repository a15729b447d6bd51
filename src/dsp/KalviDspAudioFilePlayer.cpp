#include "dsp/KalviDspAudioFilePlayer.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "dsp/KalviDspAudioFilePlayerBufferingThread.h"
#include "math/KalviDspVectorImplementation.h"
#include "text/KalviDspStringHelper.h"
#include "text/KalviDspStringList.h"
#include "threads/KalviDspException.h"
#include "threads/KalviDspLog.h"

#include <algorithm>
#include <new>
#include <utility>

// How the threads share the ring. The disk side writes only the free part of the ring, under diskMutex, and
// computes that part under the same lock, so a reset of the positions (open, seek, rewind, all of which take
// diskMutex after positionMutex) never finds a chunk half planned. The audio thread trusts the disk side to
// be ahead and never compares with writePosition. It renders a whole vector under positionMutex, which every
// reset, every swap of the reader and every growth of the ring holds too: a vector that raced one of them
// reads either the old state or the new one, never a ring being cleared, refilled or freed. Since seek and
// rewind clear playing before they lock, the audio thread only waits for them when it was already rendering.

namespace vlk {

namespace {

constexpr std::uint64_t minimumBufferCapacity = 192000;
constexpr std::uint64_t maximumBufferCapacity = 2880000;
// The largest chunk that one pass of the disk side reads.
constexpr std::uint64_t largestChunk = 4096;
// Process wakes the disk side at this fill or below.
constexpr float wakeUpPercent = 75.0f;
constexpr std::int64_t toleratedVectorsAhead = 10;

const char* const remainingSamplesBugText = "AudioFilePlayer::getRemainingSamplesInAudioFile() : bug ? ";

using Lock = std::lock_guard<std::recursive_mutex>;

} // namespace

AudioFilePlayer::AudioFilePlayer(std::uint32_t numChannels, std::uint64_t bufferSize)
    : AudioProcessorWithOscInAudioInterrupt(0, numChannels + 1), numChannels(numChannels),
      bufferCapacity(std::clamp(bufferSize, minimumBufferCapacity, maximumBufferCapacity)),
      ring(std::make_unique<AudioBuffer>(numChannels, bufferCapacity)), vectorSizeOfDiskSide(getVectorSize())
{
    ring->setNumSamples(bufferCapacity);
    ring->clear();
    outputs.resize(numChannels + 1, getVectorSize());
    bufferingThread = createBufferingThread();
    if (bufferingThread == nullptr)
        throw Exception("couldnt create buffering thread", __FILE__, __LINE__);
    bufferingThread->startThread();
}

AudioFilePlayer::~AudioFilePlayer()
{
    bufferingThread->signalThreadShouldExit();
    bufferingThread->stopThread(100);
    listeners.clear();
}

// Null when memory ran out.
std::unique_ptr<AudioFilePlayer::BufferingThread> AudioFilePlayer::createBufferingThread()
{
    try {
        return std::make_unique<BufferingThread>(*this);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void AudioFilePlayer::open(const File& file)
{
    std::unique_ptr<AudioFileReader> newReader = AudioFileReader::create(file);
    if (newReader == nullptr)
        throw Exception("Couldnt open file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
    // A wider file gets a new ring rather than a resize of the old one, which would free the storage under a
    // vector being rendered. The new ring is swapped in under positionMutex, which the audio thread holds for
    // as long as it reads the ring, and the old one is freed behind the locks, when no vector can reach it
    // any more. It is built before any lock, since the audio thread may come to wait for positionMutex, and
    // so that a failed allocation leaves everything as it was. Its samples start at zero.
    std::unique_ptr<AudioBuffer> widerRing;
    if (newReader->getNumChannels() > getNumChannelsInRing())
        widerRing = std::make_unique<AudioBuffer>(newReader->getNumChannels(), bufferCapacity);
    // The reader and ring that are replaced are destroyed once the locks are released.
    std::unique_ptr<AudioFileReader> oldReader;
    std::unique_ptr<AudioBuffer> oldRing;
    {
        const Lock positionGuard(positionMutex);
        {
            const Lock diskGuard(diskMutex);
            if (reader != nullptr) {
                ring->clear();
                playing = false;
                resetPositions();
            }
            oldReader = std::exchange(reader, std::move(newReader));
            // The ring never shrinks; another open may have widened it meanwhile.
            if (widerRing != nullptr && widerRing->getNumChannels() > ring->getNumChannels())
                oldRing = std::exchange(ring, std::move(widerRing));
            totalSamples = reader->getNumSamples();
            fileChannels = reader->getNumChannels();
            regionLength = 0;
            regionStart = 0;
            regionEnd = totalSamples.load();
        }
        bufferingThread->notify();
    }
}

// Under positionMutex and diskMutex.
void AudioFilePlayer::resetPositions()
{
    readPosition.store(0, std::memory_order_release);
    writePosition.store(0, std::memory_order_release);
    filePosition = 0;
    playedSamples = 0;
    ringWrapped = false;
}

void AudioFilePlayer::seek(float ms)
{
    // Before the lock, which is held across a disk read: the audio thread must not be caught waiting for it.
    playing = false;
    const Lock positionGuard(positionMutex);
    // A time that is no number counts as 0, like a negative one: no frame could be computed from it.
    if (!(ms > 0.0f)) {
        rewind();
        return;
    }
    startRegion(getFrameAt(ms), totalSamples);
}

void AudioFilePlayer::seek(float startMs, float endMs)
{
    playing = false;
    const Lock positionGuard(positionMutex);
    std::uint64_t start = getFrameAt(startMs);
    std::uint64_t end = getFrameAt(endMs);
    if (start > end)
        std::swap(start, end);
    startRegion(start, end);
}

// Two float multiplications in this order, truncated, limited to 0 and to the file's length. The limits
// are tested before the conversion, which is undefined for values out of range.
std::uint64_t AudioFilePlayer::getFrameAt(float ms) const
{
    const float frame = ms * 0.001f * sampleRate;
    const std::uint64_t length = totalSamples;
    if (!(frame > 0.0f))
        return 0;
    if (!(static_cast<double>(frame) < static_cast<double>(length)))
        return length;
    return static_cast<std::uint64_t>(frame);
}

// Under positionMutex; playing is false.
void AudioFilePlayer::startRegion(std::uint64_t start, std::uint64_t end)
{
    {
        const Lock diskGuard(diskMutex);
        regionStart = start;
        regionEnd = end;
        regionLength = end - start;
        playedSamples = 0;
        readPosition.store(0, std::memory_order_release);
        writePosition.store(0, std::memory_order_release);
        filePosition = start;
        ringWrapped = false;
    }
    {
        const Lock listenersGuard(listenersLock);
        tellProgress(0.0f);
    }
    // The first chunk is in the ring before playback resumes.
    readSamplesFromDisk();
    playing = true;
}

void AudioFilePlayer::rewind()
{
    playing = false;
    const Lock positionGuard(positionMutex);
    {
        const Lock diskGuard(diskMutex);
        if (canRewindWithinRing()) {
            readPosition.store(0, std::memory_order_release);
            playedSamples = 0;
        } else {
            resetPositions();
        }
        regionLength = totalSamples.load();
        regionEnd = totalSamples.load();
        regionStart = 0;
    }
    {
        const Lock listenersGuard(listenersLock);
        tellProgress(0.0f);
    }
    readSamplesFromDisk();
    playing = true;
}

// Under diskMutex. A ring that never wrapped, filled from a region that began at the file's first frame,
// still holds the file from that frame up to writePosition: playback restarts there without reading the head
// again.
bool AudioFilePlayer::canRewindWithinRing()
{
    if (ringWrapped || reader == nullptr)
        return false;
    if (regionEnd < filePosition) {
        logMessage(remainingSamplesBugText);
        return false;
    }
    return regionEnd != filePosition && regionStart == 0;
}

void AudioFilePlayer::pause()
{
    playing = false;
}

void AudioFilePlayer::resume()
{
    playing = true;
}

void AudioFilePlayer::setLoop(bool shouldLoop)
{
    loop = shouldLoop;
}

void AudioFilePlayer::addListener(Listener* listener)
{
    const Lock listenersGuard(listenersLock);
    if (listener == nullptr || std::find(listeners.begin(), listeners.end(), listener) != listeners.end())
        return;
    listeners.push_back(listener);
}

void AudioFilePlayer::removeListener(Listener* listener)
{
    const Lock listenersGuard(listenersLock);
    const auto found = std::find(listeners.begin(), listeners.end(), listener);
    if (listener != nullptr && found != listeners.end())
        listeners.removeAt(static_cast<std::size_t>(found - listeners.begin()));
}

String AudioFilePlayer::getFileName() const
{
    const Lock diskGuard(diskMutex);
    if (reader == nullptr)
        return {};
    return File(reader->getFilePath()).getFileName();
}

std::uint32_t AudioFilePlayer::getNumChannelsInFile() const
{
    const Lock diskGuard(diskMutex);
    return reader != nullptr ? reader->getNumChannels() : 0;
}

float AudioFilePlayer::getLengthInMs() const
{
    const Lock diskGuard(diskMutex);
    if (reader == nullptr)
        return 0.0f;
    return static_cast<float>(static_cast<double>(totalSamples) * 1000.0 / reader->getSampleRate());
}

void AudioFilePlayer::getInfo(Vector<String>& lines) const
{
    String text = "no audio file";
    {
        const Lock diskGuard(diskMutex);
        if (reader != nullptr) {
            const AudioFilesMetadata& metadata = reader->getMetadata();
            text = reader->getFilePath() + "\n(" + metadata.getChannelsDescription() + ", " +
                   metadata.getSampleRateDescription() + ", " + toString(totalSamples.load()) + " samples, " +
                   metadata.getDurationDescription() + ", " + metadata.getBitDepthDescription() + ", " +
                   metadata.getFormatDescription() + ", " + File(reader->getFilePath()).getSizeText() + ")";
        }
    }
    for (const String& line : split(text, '\n'))
        lines.push_back(line);
}

void AudioFilePlayer::readSamplesFromDisk()
{
    {
        const Lock diskGuard(diskMutex);
        if (reader == nullptr)
            return;
        if (isRegionExhausted()) {
            if (!loop) {
                padBehindRegionEnd();
                return;
            }
            if (regionEnd < filePosition)
                logMessage(remainingSamplesBugText);
            // The loop wraps here, on the disk side, without a gap in the ring.
            filePosition = regionStart.load();
        }
        const std::uint64_t numSamples = getNumSamplesToReadFromDisk();
        if (numSamples != 0)
            readChunk(numSamples);
    }
    tellBufferingFromDiskSide();
}

// Under diskMutex.
bool AudioFilePlayer::isRegionExhausted()
{
    if (regionEnd < filePosition)
        logMessage(remainingSamplesBugText);
    return regionEnd <= filePosition;
}

// Under diskMutex. The last vector of a region reads past its end: what it finds there is silence.
void AudioFilePlayer::padBehindRegionEnd()
{
    writePosition.store(zeroRingUpToReadPosition(writePosition.load(std::memory_order_acquire)),
                        std::memory_order_release);
}

// Under diskMutex. Zeroes the ring from `from` up to readPosition, and answers readPosition, where the disk
// side then stands. Channels of the file beyond the outputs never leave the ring and are left as they are.
std::uint64_t AudioFilePlayer::zeroRingUpToReadPosition(std::uint64_t from)
{
    const std::uint64_t read = readPosition.load(std::memory_order_acquire);
    if (from == read)
        return read;
    const std::uint32_t used = std::min(fileChannels.load(), numChannels);
    const auto zero = [this, used](std::uint64_t start, std::uint64_t count) {
        for (std::uint32_t channel = 0; channel < used; ++channel)
            fill(ring->getChannel(channel) + start, count, 0.0f);
    };
    if (from < read) {
        zero(from, read - from);
    } else {
        zero(from, bufferCapacity - from);
        zero(0, read);
    }
    return read;
}

// Under diskMutex, with filePosition already behind the chunk. The chunk that ends a region without loop is
// published together with the padding behind it: the audio thread's last vector reads past the region's
// end, and only the release of writePosition orders the zeros before that read.
std::uint64_t AudioFilePlayer::getPublishedWritePosition(std::uint64_t chunkEnd)
{
    if (loop || filePosition < regionEnd)
        return chunkEnd;
    return zeroRingUpToReadPosition(chunkEnd);
}

// Under diskMutex. A failed read still advances the positions: the frames it missed stay as the ring held
// them.
void AudioFilePlayer::readChunk(std::uint64_t numSamples)
{
    const std::uint64_t write = writePosition.load(std::memory_order_acquire);
    const std::uint64_t file = filePosition;
    bool succeeded = true;
    if (write + numSamples <= bufferCapacity) {
        succeeded = reader->readSamples(*ring, write, numSamples, file);
        if (write + numSamples >= bufferCapacity)
            ringWrapped = true;
        filePosition = file + numSamples;
        writePosition.store(getPublishedWritePosition((write + numSamples) % bufferCapacity),
                            std::memory_order_release);
    } else {
        ringWrapped = true;
        const std::uint64_t first = bufferCapacity - write;
        const bool firstSucceeded = reader->readSamples(*ring, write, first, file);
        writePosition.store(0, std::memory_order_release);
        filePosition = file + first;
        const bool secondSucceeded = reader->readSamples(*ring, 0, numSamples - first, file + first);
        filePosition = file + numSamples;
        writePosition.store(getPublishedWritePosition(numSamples - first), std::memory_order_release);
        succeeded = firstSucceeded && secondSucceeded;
    }
    if (!succeeded)
        logMessage("AudioFilePlayer::readSamplesFromDisk() Error reading samples in " + getFileName());
}

// Under diskMutex, so that writePosition and filePosition come from one state of the disk side; the audio
// thread moves readPosition and playedSamples meanwhile, which can only free more of the ring than is
// counted.
std::uint64_t AudioFilePlayer::getNumSamplesToReadFromDisk()
{
    const Lock diskGuard(diskMutex);
    const std::uint64_t occupancy = getNumSamplesInRing();
    const std::uint64_t numSamples =
        std::min({bufferCapacity - occupancy, largestChunk, getRemainingSamplesInAudioFile()});
    // The frames that the ring says were consumed, against those that Process counted: up to ten vectors of
    // disagreement pass. Signed, and computed modulo 2 to the 64 as the unsigned positions are.
    const auto consumedByRing = static_cast<std::int64_t>(filePosition - occupancy - regionStart -
                                                          toleratedVectorsAhead * vectorSizeOfDiskSide);
    if (consumedByRing > static_cast<std::int64_t>(playedSamples.load())) {
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

std::uint64_t AudioFilePlayer::getNumSamplesInRing() const
{
    const std::uint64_t read = readPosition.load(std::memory_order_acquire);
    const std::uint64_t write = writePosition.load(std::memory_order_acquire);
    if (read == 0 && write == 0)
        return filePosition == regionStart ? 0 : bufferCapacity;
    if (write > read)
        return write - read;
    return write - read + bufferCapacity;
}

float AudioFilePlayer::getBufferingPercentage() const
{
    const float percent =
        static_cast<float>(getNumSamplesInRing()) / static_cast<float>(bufferCapacity) * 100.0f;
    return std::min(percent, 100.0f);
}

std::uint32_t AudioFilePlayer::getNumChannelsInRing() const
{
    const Lock diskGuard(diskMutex);
    return ring->getNumChannels();
}

void AudioFilePlayer::Process(float** outputChannels, float**, std::uint32_t numSamples)
{
    outputs.setChannels(outputChannels, numChannels + 1, numSamples, 0);
    if (playing) {
        const Lock positionGuard(positionMutex);
        // Looked at again: a vector that waited here for open finds the player stopped and the ring emptied.
        if (playing) {
            playVector(numSamples);
            return;
        }
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
    // Without the position output there is no marker scan either, and in loop mode playedSamples is never
    // reset: the coupling is intended.
    if (isOutputConnected(numChannels)) {
        if (looping)
            writeLoopingPosition(numSamples);
        else
            writePositionRamp(numSamples);
    }
    const std::uint64_t length = regionLength;
    const double progress =
        length == 0 ? 0.0 : static_cast<double>(playedSamples) * 100.0 / static_cast<double>(length);
    tellProgress(static_cast<float>(progress));
}

// Under positionMutex. No check against writePosition: on an underrun the outputs carry stale ring contents.
void AudioFilePlayer::renderFromRing(std::uint32_t numSamples)
{
    const std::uint32_t used = std::min(fileChannels.load(), numChannels);
    // The value is not needed; the acquire makes the frames that the disk side published visible here.
    static_cast<void>(writePosition.load(std::memory_order_acquire));
    const std::uint64_t read = readPosition;
    // A read that ends exactly at the ring's end is not split.
    if (read + numSamples > bufferCapacity) {
        const std::uint64_t first = bufferCapacity - read;
        copyRingToOutputs(used, read, 0, first);
        readPosition.store((read + first) % bufferCapacity, std::memory_order_release);
        copyRingToOutputs(used, readPosition, first, numSamples - first);
        readPosition.store(readPosition + (numSamples - first), std::memory_order_release);
    } else {
        copyRingToOutputs(used, read, 0, numSamples);
        readPosition.store((read + numSamples) % bufferCapacity, std::memory_order_release);
    }
    for (std::uint32_t channel = used; channel < numChannels; ++channel)
        outputs.fillChannel(channel, 0.0f);
    const float percent = getBufferingPercentage();
    if (bufferingThread != nullptr && percent <= wakeUpPercent)
        bufferingThread->notify();
    tellBuffering(percent);
}

// Outputs that are not connected are left unwritten.
void AudioFilePlayer::copyRingToOutputs(std::uint32_t used, std::uint64_t ringFrame,
                                        std::uint64_t outputFrame, std::uint64_t count)
{
    for (std::uint32_t channel = 0; channel < used; ++channel)
        if (isOutputConnected(channel))
            outputs.copyToChannel(channel, outputFrame, ring->getChannel(channel) + ringFrame, count, 1.0f);
}

// Under positionMutex. The end is told one whole vector after the region's last frame went out.
void AudioFilePlayer::playRegionEnd()
{
    outputs.clear();
    if (filePosition < regionEnd)
        logMessage("AudioFilePlayer::Process bug 1 ?");
    if (playedSamples > regionLength + vectorSize)
        logMessage("AudioFilePlayer::Process bug 3 ?");
    tellEndOfFile();
    playing = false;
}

// Under positionMutex. Where end is smaller than the vector, begin wraps as an unsigned number, and the ramp
// starts from a huge time: kept as it is.
void AudioFilePlayer::writePositionRamp(std::uint32_t numSamples)
{
    const std::uint64_t end = std::min(regionStart + playedSamples, regionEnd.load());
    const std::uint64_t begin = end - numSamples;
    scanMarkers(begin, end);
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
    scanMarkers(begin, end);
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

// Under positionMutex, which keeps the reader alive. Near the end of a region the spans overlap, so a marker
// there is told more than once: required.
void AudioFilePlayer::scanMarkers(std::uint64_t from, std::uint64_t to)
{
    if (reader == nullptr)
        return;
    const AudioFilesMetadata& metadata = reader->getMetadata();
    for (std::size_t index = 0; index < metadata.getNumMarkers(); ++index) {
        if (!metadata.isMarkerInRange(index, from, to))
            continue;
        const AudioFilesMetadata::Marker marker = metadata.getMarker(index);
        for (std::size_t listener = 0; listener < listeners.size(); ++listener)
            listeners[listener]->markerReached(marker);
    }
}

String AudioFilePlayer::getOutputName(std::int32_t index) const
{
    if (index >= 0 && static_cast<std::uint32_t>(index) < numChannels)
        return "output #" + toString(index + 1);
    if (index >= 0 && static_cast<std::uint32_t>(index) == numChannels)
        return "playback position";
    return "dumpout";
}

void AudioFilePlayer::vectorSizeChanged(std::uint32_t newVectorSize)
{
    outputs.resize(numChannels + 1, newVectorSize);
    vectorSizeOfDiskSide = newVectorSize;
    if (bufferingThread != nullptr)
        bufferingThread->notify();
}

// The listener calls below walk the list by index, re-reading its length, so a listener may remove itself.
void AudioFilePlayer::tellProgress(float percent)
{
    for (std::size_t index = 0; index < listeners.size(); ++index)
        listeners[index]->progressChanged(percent);
}

void AudioFilePlayer::tellBuffering(float percent)
{
    for (std::size_t index = 0; index < listeners.size(); ++index)
        listeners[index]->bufferingChanged(percent);
}

// The disk side reports the level on every pass, also when it read nothing.
void AudioFilePlayer::tellBufferingFromDiskSide()
{
    const Lock listenersGuard(listenersLock);
    if (!listeners.empty())
        tellBuffering(getBufferingPercentage());
}

void AudioFilePlayer::tellEndOfFile()
{
    for (std::size_t index = 0; index < listeners.size(); ++index)
        listeners[index]->endOfFile();
}

} // namespace vlk
