#pragma once

#include "dsp/KalviDspAudioFilePlayer.h"
#include "threads/KalviDspThread.h"

#include <atomic>

namespace vlk {

// The one background thread of a player: keeps the ring topped up. It decides only when to run; what is
// read is decided by readSamplesFromDisk. Three rhythms come from its waits: every 1000 ms while the ring is
// at 97 percent or more, one chunk every 100 ms below that, and one chunk per audio vector while Process
// wakes it at 75 percent or less.
class AudioFilePlayer::BufferingThread : public Thread
{
public:
    explicit BufferingThread(AudioFilePlayer& player);
    // Stops the thread while run still exists, after forgetting the player.
    ~BufferingThread() override;

protected:
    void run() override;

private:
    void readWhileRingHasRoom();

    // Not owned; null once the thread object is being destroyed.
    std::atomic<AudioFilePlayer*> player;
};

} // namespace vlk
