// The chna chunk parser on its own: a chunk size, then the chunk's content and whatever follows it.
#include "KalviDspMemoryInputStream.h"

#include "audiofiles/KalviDspWavChnaParser.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vlk::fuzz::parseSizedChunk(data, size, [](vlk::InputStream& stream, std::uint32_t chunkSize) {
        const vlk::ChnaChunk chunk = vlk::parseChnaChunk(stream, chunkSize);
        // No record lies wholly behind the end of the bytes.
        if (chunk.trackIndices.size() > static_cast<std::size_t>(stream.getTotalLength() / 40 + 1) ||
            chunk.audioTrackUids.size() != chunk.trackIndices.size())
            std::abort();
    });
    return 0;
}
