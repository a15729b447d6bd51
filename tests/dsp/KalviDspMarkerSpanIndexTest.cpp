#include "dsp/KalviDspMarkerSpanIndex.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

AudioFilesMetadata metadataWithMarkers()
{
    AudioFilesMetadata metadata;
    // Stored out of the order of their positions, two at one position.
    for (const AudioFilesMetadata::Marker& marker : {AudioFilesMetadata::Marker{1, 500, "late"},
                                                     {2, 100, "early"},
                                                     {3, 300, "middle"},
                                                     {4, 100, "twin"}})
        metadata.addMarker(marker);
    return metadata;
}

std::vector<std::uint32_t> identifiersIn(const MarkerSpanIndex& index, std::uint64_t from, std::uint64_t to)
{
    Vector<AudioFilesMetadata::Marker> found;
    index.getMarkersIn(from, to, found);
    std::vector<std::uint32_t> identifiers;
    for (const AudioFilesMetadata::Marker& marker : found)
        identifiers.push_back(marker.identifier);
    return identifiers;
}

struct SpanCase
{
    std::uint64_t from;
    std::uint64_t to;
    std::vector<std::uint32_t> identifiers;
};

TEST(MarkerSpanIndex, FindsTheMarkersOfAHalfOpenSpanInStoredOrder)
{
    const MarkerSpanIndex index(metadataWithMarkers());
    const SpanCase cases[] = {
        {0, 1000, {1, 2, 3, 4}}, {100, 101, {2, 4}}, {101, 300, {}},  {300, 501, {1, 3}}, {0, 100, {}},
        {500, 500, {}},          {600, 0, {}},       {501, 1000, {}},
    };
    for (const SpanCase& c : cases) {
        EXPECT_EQ(identifiersIn(index, c.from, c.to), c.identifiers) << c.from << " " << c.to;
        EXPECT_EQ(index.hasMarkerIn(c.from, c.to), !c.identifiers.empty()) << c.from << " " << c.to;
    }
}

} // namespace
} // namespace vlk
