// The MARK chunk parser on its own: a chunk size, then the chunk's content and whatever follows it.
#include "KalviDspMemoryInputStream.h"

#include "audiofiles/KalviDspAiffMarkerChunk.h"
#include "threads/KalviDspLog.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    vlk::setLogDestination(vlk::LogDestination::nowhere);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vlk::fuzz::SizedChunk chunk;
    if (!vlk::fuzz::splitSizedChunk(data, size, chunk))
        return 0;
    vlk::fuzz::MemoryInputStream stream(chunk.content, chunk.contentSize);
    vlk::AudioFilesMetadata metadata;
    // Twice, as from two MARK chunks: the markers add up to at most the bound.
    vlk::readAiffMarkerChunk(stream, chunk.size, metadata);
    stream.setPosition(0);
    vlk::readAiffMarkerChunk(stream, chunk.size, metadata);
    if (metadata.getNumMarkers() > vlk::maxNumAiffMarkers ||
        metadata.getNumMarkers() > 2 * (chunk.contentSize / 7 + 1))
        std::abort();
    for (std::size_t index = 0; index < metadata.getNumMarkers(); ++index)
        if (metadata.getMarker(index).name.size() > 255)
            std::abort();
    return 0;
}
