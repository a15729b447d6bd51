// The player's construction, the swap of its reader, its transport and its queries: the threads that bring
// the host's messages.
#include "dsp/KalviDspAudioFilePlayer.h"

#include "audiofiles/KalviDspAudioFileDescription.h"
#include "audiofiles/KalviDspAudioFileReader.h"
#include "dsp/KalviDspAudioFilePlayerBufferingThread.h"
#include "dsp/KalviDspMarkerSpanIndex.h"
#include "text/KalviDspStringHelper.h"
#include "text/KalviDspStringList.h"
#include "threads/KalviDspException.h"
#include "threads/KalviDspLog.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace vlk {

namespace {

constexpr std::uint64_t minimumBufferCapacity = 192000;
constexpr std::uint64_t maximumBufferCapacity = 2880000;

using Lock = std::lock_guard<std::recursive_mutex>;

} // namespace

AudioFilePlayer::AudioFilePlayer(std::uint32_t numChannels, std::uint64_t bufferSize)
    : AudioProcessorWithOscInAudioInterrupt(0, numChannels + 1), numChannels(numChannels),
      bufferCapacity(std::clamp(bufferSize, minimumBufferCapacity, maximumBufferCapacity)),
      ring(numChannels, bufferCapacity), discardedSamples(1, largestChunk), fifo(bufferCapacity),
      vectorSizeOfDiskSide(getVectorSize())
{
    ring.setNumSamples(bufferCapacity);
    ring.clear();
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
    open(std::move(newReader));
}

// Whatever can fail or take long happens before any lock, so that a failure leaves everything as it was.
void AudioFilePlayer::open(std::unique_ptr<AudioFileReader> newReader)
{
    if (newReader == nullptr)
        throw Exception("Couldnt open file " + String().quoted(), __FILE__, __LINE__);
    auto newMarkers = std::make_unique<MarkerSpanIndex>(newReader->getMetadata());
    Vector<float*> newDiskChannels(newReader->getNumChannels());
    // Stopped before the locks, as seek does, so that the audio thread stands still instead of finding them
    // taken. A player without a file keeps its flag.
    if (fileIsOpen)
        playing = false;
    swapInReader(std::move(newReader), std::move(newMarkers), newDiskChannels);
    bufferingThread->notify();
}

// The reader and markers that are replaced are destroyed once the locks are released. The ring is not
// cleared: no frame of it can be read before the disk side has written it again.
void AudioFilePlayer::swapInReader(std::unique_ptr<AudioFileReader> newReader,
                                   std::unique_ptr<MarkerSpanIndex> newMarkers, Vector<float*>& newDiskChannels)
{
    std::unique_ptr<AudioFileReader> oldReader;
    std::unique_ptr<MarkerSpanIndex> oldMarkers;
    const Lock positionGuard(positionMutex);
    const Lock diskGuard(diskMutex);
    if (reader != nullptr) {
        playing = false;
        resetPositions(0);
    }
    oldReader = std::exchange(reader, std::move(newReader));
    fileIsOpen = true;
    {
        const std::lock_guard<std::mutex> markersGuard(markersLock);
        oldMarkers = std::exchange(markers, std::move(newMarkers));
        ++markersGeneration;
    }
    std::swap(diskChannels, newDiskChannels);
    totalSamples = reader->getNumSamples();
    fileChannels = reader->getNumChannels();
    regionLength = 0;
    regionStart = 0;
    regionEnd = totalSamples.load();
}

// Under positionMutex and diskMutex: neither side runs.
void AudioFilePlayer::resetPositions(std::uint64_t fileFrame)
{
    fifo.reset();
    filePosition = fileFrame;
    playedSamples = 0;
    framesRendered = 0;
    framesDelivered = 0;
    framesOwed = 0;
    skippedSinceReset = false;
}

void AudioFilePlayer::seek(float ms)
{
    // A time that is no number counts as 0, like a negative one: no frame could be computed from it.
    if (!(ms > 0.0f)) {
        rewind();
        return;
    }
    // Before the lock, which is held across a disk read: the audio thread must not find it taken while
    // playing.
    playing = false;
    const std::uint64_t start = getFrameAt(ms);
    startRegion(start, totalSamples);
}

void AudioFilePlayer::seek(float startMs, float endMs)
{
    playing = false;
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

// playing is false. The first chunk is in the ring before playback resumes. Progress 0 and the level are
// told once the locks are released, before playing resumes, so that they still come before anything the
// audio thread finds.
void AudioFilePlayer::startRegion(std::uint64_t start, std::uint64_t end)
{
    std::optional<float> level;
    {
        const Lock positionGuard(positionMutex);
        const Lock diskGuard(diskMutex);
        regionStart = start;
        regionEnd = end;
        regionLength = end - start;
        resetPositions(start);
        if (fillRing())
            level = getBufferingPercentage();
    }
    tellProgressAndFirstRead(level);
    playing = true;
}

void AudioFilePlayer::rewind()
{
    playing = false;
    std::optional<float> level;
    {
        const Lock positionGuard(positionMutex);
        const Lock diskGuard(diskMutex);
        if (canRewindWithinRing()) {
            fifo.restartReading();
            playedSamples = 0;
            framesRendered = 0;
            framesOwed = 0;
        } else {
            resetPositions(0);
        }
        regionLength = totalSamples.load();
        regionEnd = totalSamples.load();
        regionStart = 0;
        if (fillRing())
            level = getBufferingPercentage();
    }
    tellProgressAndFirstRead(level);
    playing = true;
}

// Under diskMutex. A ring that never wrapped nor skipped, filled from a region that began at the file's first
// frame, still holds the file from that frame on: playback restarts there without reading the head again.
bool AudioFilePlayer::canRewindWithinRing()
{
    if (fifo.hasWrapped() || skippedSinceReset || reader == nullptr)
        return false;
    if (regionEnd < filePosition) {
        logMessage("AudioFilePlayer::getRemainingSamplesInAudioFile() : bug ? ");
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
        if (reader != nullptr)
            text = describeAudioFile(*reader);
    }
    for (const String& line : split(text, '\n'))
        lines.push_back(line);
}

std::uint64_t AudioFilePlayer::getNumSamplesInRing() const
{
    return fifo.getNumReady();
}

float AudioFilePlayer::getBufferingPercentage() const
{
    const float percent =
        static_cast<float>(getNumSamplesInRing()) / static_cast<float>(bufferCapacity) * 100.0f;
    return std::min(percent, 100.0f);
}

std::uint32_t AudioFilePlayer::getNumChannelsInRing() const
{
    return ring.getNumChannels();
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

} // namespace vlk
