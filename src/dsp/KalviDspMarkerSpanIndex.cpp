#include "dsp/KalviDspMarkerSpanIndex.h"

#include <algorithm>

namespace vlk {

MarkerSpanIndex::MarkerSpanIndex(const AudioFilesMetadata& metadata)
{
    markers.resize(metadata.getNumMarkers());
    byPosition.resize(metadata.getNumMarkers());
    for (std::size_t index = 0; index < markers.size(); ++index) {
        markers[index] = metadata.getMarker(index);
        byPosition[index] = {markers[index].position, index};
    }
    std::sort(byPosition.begin(), byPosition.end());
}

const std::pair<std::uint64_t, std::size_t>*
MarkerSpanIndex::firstAtOrAfter(std::uint64_t from) const noexcept
{
    return std::lower_bound(byPosition.data(), byPosition.data() + byPosition.size(),
                            std::pair<std::uint64_t, std::size_t>{from, 0});
}

bool MarkerSpanIndex::hasMarkerIn(std::uint64_t from, std::uint64_t to) const noexcept
{
    const auto* first = firstAtOrAfter(from);
    return first != byPosition.data() + byPosition.size() && first->first < to;
}

void MarkerSpanIndex::getMarkersIn(std::uint64_t from, std::uint64_t to,
                                   Vector<AudioFilesMetadata::Marker>& found) const
{
    Vector<std::size_t> indices;
    for (const auto* entry = firstAtOrAfter(from);
         entry != byPosition.data() + byPosition.size() && entry->first < to; ++entry)
        indices.push_back(entry->second);
    std::sort(indices.begin(), indices.end());
    for (const std::size_t index : indices)
        found.push_back(markers[index]);
}

} // namespace vlk
