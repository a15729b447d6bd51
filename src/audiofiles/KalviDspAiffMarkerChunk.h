#pragma once

#include "audiofiles/KalviDspAudioFilesMetadata.h"
#include "files/KalviDspInputStream.h"

#include <cstdint>

namespace vlk {

// The most markers a file gives, over all its MARK chunks: as many as one chunk's count can state.
constexpr std::size_t maxNumAiffMarkers = 65535;

// Appends the markers of a MARK chunk whose content starts at the stream's position, in the file's order.
// The chunk's count is believed only as far as the chunk's size and the file hold whole records, and the
// metadata never holds more than maxNumAiffMarkers: a small file that claims millions of markers costs
// what its bytes hold.
void readAiffMarkerChunk(InputStream& stream, std::uint32_t chunkSize, AudioFilesMetadata& metadata);

} // namespace vlk
