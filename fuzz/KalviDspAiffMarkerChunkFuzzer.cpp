// The MARK chunk parser on its own: a chunk size, then the chunk's content and whatever follows it.
#include "KalviDspMemoryInputStream.h"

#include "audiofiles/KalviDspAiffMarkerChunk.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vlk::fuzz::parseSizedChunk(data, size, [](vlk::InputStream& stream, std::uint32_t chunkSize) {
        vlk::AudioFilesMetadata metadata;
        // Twice, as from two MARK chunks: the markers add up to at most the bound, and each record takes at
        // least seven bytes of the input.
        vlk::readAiffMarkerChunk(stream, chunkSize, metadata);
        stream.setPosition(0);
        vlk::readAiffMarkerChunk(stream, chunkSize, metadata);
        const std::size_t count = metadata.getNumMarkers();
        if (count > vlk::maxNumAiffMarkers || count > 2 * static_cast<std::size_t>(stream.getTotalLength() / 7))
            std::abort();
        for (std::size_t index = 0; index < count; ++index)
            if (metadata.getMarker(index).name.size() > 255)
                std::abort();
    });
    return 0;
}
