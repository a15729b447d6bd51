#pragma once

#include "audiofiles/KalviDspChnaChunk.h"
#include "files/KalviDspInputStream.h"

#include <cstdint>

namespace vlk {

// Reads the content of a chna chunk from the stream's position. The number of track records comes from
// chunkSize, (chunkSize - 4) / 40, not from the chunk's two counters.
ChnaChunk parseChnaChunk(InputStream& stream, std::uint32_t chunkSize);

} // namespace vlk
