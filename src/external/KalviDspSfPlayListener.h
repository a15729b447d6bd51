#pragma once

#include "dsp/KalviDspAudioFilePlayer.h"

#include "ext.h"

#include <atomic>

namespace vlk {

struct SfPlayObject;

// Turns the player's notifications into messages of the object's dump outlet. Progress and buffering are
// thinned: only steps of 0.5 (forward) and of 2.0 (either way) percent go out, and 0 and 100 always.
//
// Patch code never runs on the audio thread nor on the buffering thread: what the audio thread finds is
// delivered by a clock that the perform routine sets, on the scheduler right after the vector, and the
// buffering thread's level goes through a qelem to the main thread.
class SfPlayListener : public AudioFilePlayer::Listener
{
public:
    explicit SfPlayListener(SfPlayObject* owner);
    // Removes itself from the owner's player, then frees its clock and qelem.
    ~SfPlayListener() override;
    SfPlayListener(const SfPlayListener&) = delete;
    SfPlayListener& operator=(const SfPlayListener&) = delete;

    // Audio thread, after the player's vector: sets the clock when events wait.
    void scheduleDelivery();

    void progressChanged(float percent) override;
    void bufferingChanged(float percent) override;
    void endOfFile() override;
    void markerReached(const AudioFilesMetadata::Marker& marker) override;

private:
    static void deliver(SfPlayListener* listener);
    static void sendPendingBuffering(SfPlayListener* listener);
    void sendBuffering(float percent);

    SfPlayObject* owner;
    t_clock* deliveryClock;
    t_qelem* bufferingQelem;
    // The buffering thread's last level, for the qelem.
    std::atomic<float> pendingBuffering{0.0f};
    // The scheduler and the main thread both thin; each value is only ever touched by one of them at a time.
    std::atomic<float> lastProgress{0.0f};
    std::atomic<float> lastBuffering{0.0f};
};

} // namespace vlk
