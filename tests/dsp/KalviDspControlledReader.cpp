#include "dsp/KalviDspControlledReader.h"

#include "dsp/KalviDspPlayerHarness.h"

#include <cstring>
#include <thread>

namespace vlk::test {

ControlledReader::ControlledReader(std::uint32_t numChannels, std::uint64_t numFrames,
                                   const std::vector<AudioFilesMetadata::Marker>& markers)
    : AudioFileReader(File("controlled.wav"))
{
    metadata.numChannels = numChannels;
    metadata.numSamples = numFrames;
    metadata.sampleRate = 44100.0;
    metadata.bitsPerSample = 32;
    metadata.isFloatingPoint = true;
    metadata.formatName = "WAV";
    for (const AudioFilesMetadata::Marker& marker : markers)
        metadata.addMarker(marker);
}

void ControlledReader::setDelayPerRead(std::chrono::microseconds delay)
{
    const std::lock_guard<std::mutex> guard(lock);
    delayPerRead = delay;
}

void ControlledReader::holdReads()
{
    const std::lock_guard<std::mutex> guard(lock);
    holding = true;
    aReadIsHeld = false;
}

void ControlledReader::releaseReads()
{
    const std::lock_guard<std::mutex> guard(lock);
    holding = false;
    changed.notify_all();
}

bool ControlledReader::waitUntilAReadIsHeld(std::chrono::seconds timeout)
{
    std::unique_lock<std::mutex> guard(lock);
    return changed.wait_for(guard, timeout, [this] { return aReadIsHeld; });
}

void ControlledReader::waitWhileHeld()
{
    std::unique_lock<std::mutex> guard(lock);
    if (holding) {
        aReadIsHeld = true;
        changed.notify_all();
        changed.wait(guard, [this] { return !holding; });
    }
}

// Frames behind the end read as zeros, as from a file.
bool ControlledReader::readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position)
{
    waitWhileHeld();
    std::chrono::microseconds delay;
    {
        const std::lock_guard<std::mutex> guard(lock);
        delay = delayPerRead;
    }
    if (delay.count() > 0)
        std::this_thread::sleep_for(delay);
    for (std::uint32_t channel = 0; channels[channel] != nullptr; ++channel)
        for (std::uint64_t i = 0; i < numSamples; ++i) {
            const float value =
                position + i < metadata.numSamples ? frameNumberSample(position + i, channel) : 0.0f;
            std::memcpy(&channels[channel][i], &value, sizeof(value));
        }
    return true;
}

} // namespace vlk::test
