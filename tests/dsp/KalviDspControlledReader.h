#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

namespace vlk::test {

// A reader of no file, whose frame f of channel c holds frameNumberSample(f, c), and whose reads a test
// slows down or holds: the disk side's pace under the test's control. The player owns it; the test keeps a
// pointer for as long as the player does.
class ControlledReader : public AudioFileReader
{
public:
    ControlledReader(std::uint32_t numChannels, std::uint64_t numFrames,
                     const std::vector<AudioFilesMetadata::Marker>& markers = {});

    String getFileExtension() const override { return ".wav"; }

    // Every read sleeps this long before it writes.
    void setDelayPerRead(std::chrono::microseconds delay);
    // Reads wait at their start while held.
    void holdReads();
    void releaseReads();
    // True once a read is waiting on the hold; false after the time-out.
    bool waitUntilAReadIsHeld(std::chrono::seconds timeout);

protected:
    bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) override;

private:
    void waitWhileHeld();

    std::mutex lock;
    std::condition_variable changed;
    std::chrono::microseconds delayPerRead{0};
    bool holding = false;
    bool aReadIsHeld = false;
};

} // namespace vlk::test
