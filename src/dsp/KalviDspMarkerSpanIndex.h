#pragma once

#include "audiofiles/KalviDspAudioFilesMetadata.h"
#include "math/KalviDspVector.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace vlk {

// The markers of one file, copied, with their positions sorted: a span of frames finds its markers in
// logarithmic time, whatever the number of markers. Constant once built; any thread may read it while it
// lives.
class MarkerSpanIndex
{
public:
    explicit MarkerSpanIndex(const AudioFilesMetadata& metadata);

    // Whether a marker lies at from <= position < to. Neither allocates nor locks: for the audio thread.
    bool hasMarkerIn(std::uint64_t from, std::uint64_t to) const noexcept;
    // Copies of the markers of the span, in the file's order.
    void getMarkersIn(std::uint64_t from, std::uint64_t to, Vector<AudioFilesMetadata::Marker>& found) const;

private:
    // The first entry at or after from.
    const std::pair<std::uint64_t, std::size_t>* firstAtOrAfter(std::uint64_t from) const noexcept;

    Vector<AudioFilesMetadata::Marker> markers;
    // Position and index in markers, sorted by position, then index.
    Vector<std::pair<std::uint64_t, std::size_t>> byPosition;
};

} // namespace vlk
