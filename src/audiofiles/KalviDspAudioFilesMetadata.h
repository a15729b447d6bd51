#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <cstddef>
#include <cstdint>

namespace vlk {

// What the player, the info text and the buffer loader may know about a sound file. Constant once the
// reader that holds it is built, so any thread may read it while that reader lives.
class AudioFilesMetadata
{
public:
    struct Marker
    {
        std::uint32_t identifier = 0;
        // Sample frame in the file, not checked against the file's length.
        std::uint32_t position = 0;
        String name;
    };

    AudioFilesMetadata() = default;
    // Copies own copies of the markers.
    AudioFilesMetadata(const AudioFilesMetadata& other);
    AudioFilesMetadata& operator=(const AudioFilesMetadata& other);
    ~AudioFilesMetadata();

    std::size_t getNumMarkers() const;
    // Stores a heap copy owned by this record.
    void addMarker(const Marker& marker);
    // A copy; a default marker for an index out of range.
    Marker getMarker(std::size_t index) const;
    // from <= position < to; false for an index out of range.
    bool isMarkerInRange(std::size_t index, std::uint64_t from, std::uint64_t to) const;

    // "WAV File (RF64 / BWF)".
    String getFormatDescription() const;
    // "1 channel", "2 channels"; 0 is told in the singular too.
    String getChannelsDescription() const;
    // "44.1 kHz" for the rates of a fixed list, "88200 Hz" for all others.
    String getSampleRateDescription() const;
    String getBitDepthDescription() const;
    String getDurationDescription() const;

    double sampleRate = 0.0;
    std::int32_t bitsPerSample = 0;
    std::uint64_t numSamples = 0;
    std::uint32_t numChannels = 0;
    bool isFloatingPoint = false;
    String formatName = "unknown";
    bool isRF64 = false;
    bool isBWF = false;
    // Owned by the record, in the file's order.
    Vector<Marker*> markers;

private:
    void deleteMarkers();
};

} // namespace vlk
