// The player's listeners: registration, and the calls that tell them what happened. Every call holds
// listenersLock, so that a listener removed on another thread is not called any more, and no other lock of
// the player: a listener may open, seek or rewind.
#include "dsp/KalviDspAudioFilePlayer.h"

#include "dsp/KalviDspMarkerSpanIndex.h"

#include <algorithm>

namespace vlk {

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

} // namespace

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

// The lock also makes this thread the queue's one consumer.
void AudioFilePlayer::deliverQueuedEvents()
{
    const Lock listenersGuard(listenersLock);
    Event event;
    while (events.pop(event)) {
        switch (event.kind) {
        case Event::Kind::progress:
            tellProgress(event.percent);
            break;
        case Event::Kind::buffering:
            tellBuffering(event.percent);
            break;
        case Event::Kind::endOfFile:
            tellEndOfFile();
            break;
        case Event::Kind::markers:
            tellMarkers(event);
            break;
        }
    }
}

void AudioFilePlayer::tellProgressAndFirstRead(std::optional<float> level)
{
    const Lock listenersGuard(listenersLock);
    tellProgress(0.0f);
    if (level && !listeners.empty())
        tellBuffering(*level);
}

// The calls below walk the list by index, re-reading its length, so a listener may remove itself.
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

// Markers of a file that another has replaced since the vector are not told. They are copied under
// markersLock and told without it.
void AudioFilePlayer::tellMarkers(const Event& event)
{
    Vector<AudioFilesMetadata::Marker> found;
    {
        const std::lock_guard<std::mutex> markersGuard(markersLock);
        if (markers == nullptr || event.generation != markersGeneration.load())
            return;
        markers->getMarkersIn(event.from, event.to, found);
    }
    for (const AudioFilesMetadata::Marker& marker : found)
        for (std::size_t index = 0; index < listeners.size(); ++index)
            listeners[index]->markerReached(marker);
}

} // namespace vlk
