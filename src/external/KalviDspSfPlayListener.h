#pragma once

#include "dsp/KalviDspAudioFilePlayer.h"

#include <atomic>

namespace vlk {

struct SfPlayObject;

// Turns the player's notifications into messages of the object's dump outlet, sent at once from the thread
// that brings them. Progress and buffering are thinned: only steps of 0.5 (forward) and of 2.0 (either way)
// percent go out, and 0 and 100 always.
class SfPlayListener : public AudioFilePlayer::Listener
{
public:
    explicit SfPlayListener(SfPlayObject* owner);
    // Removes itself from the owner's player.
    ~SfPlayListener() override;

    void progressChanged(float percent) override;
    void bufferingChanged(float percent) override;
    void endOfFile() override;
    void markerReached(const AudioFilesMetadata::Marker& marker) override;

private:
    SfPlayObject* owner;
    // Each is touched by the audio thread and by another one (seek's caller, the buffering thread).
    std::atomic<float> lastProgress{0.0f};
    std::atomic<float> lastBuffering{0.0f};
};

} // namespace vlk
