#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <cstdint>

namespace vlk {

// The track table of a chna chunk. The four sequences run in parallel, one entry per track record; their
// length comes from the chunk's size, not from the two counters.
struct ChnaChunk
{
    std::uint16_t numTracks = 0;
    std::uint16_t numUids = 0;
    Vector<unsigned short> trackIndices;
    // 12, 14 and 11 bytes wide; empty for an identifier of zero bytes only.
    Vector<String> audioTrackUids;
    Vector<String> audioTrackFormatIdRefs;
    Vector<String> audioPackFormatIdRefs;
};

} // namespace vlk
